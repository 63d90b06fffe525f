// A hand that does anything, on a calendar that another program changes meanwhile. The same seed does
// the same again. TESSERA_RANDOM_STEPS and TESSERA_RANDOM_SEED make it longer or other.
#include <QKeyEvent>
#include <QMouseEvent>
#include <QTimer>
#include <QWheelEvent>
#include <random>
#include <set>

#include "forms/form_dialog.h"
#include "shell_fixture.h"
#include "touch/numbered_timers.h"
#include "touch/timer_ids.h"
#include "touch/touch_menu.h"
#include "views/item_row_view.h"

namespace
{
constexpr QSize kSizes[] = {{240, 320}, {320, 240}, {480, 640}, {160, 120}, {720, 400}};
constexpr int kKeys[] = {Qt::Key_Left,   Qt::Key_Right,    Qt::Key_Up,  Qt::Key_Down, Qt::Key_Return,
                         Qt::Key_Escape, Qt::Key_PageDown, Qt::Key_F1,  Qt::Key_F2,   Qt::Key_1,
                         Qt::Key_4,      Qt::Key_6,        Qt::Key_2,   Qt::Key_5,    Qt::Key_9};

class RandomInput : public ShellFixture
{
protected:
    static int FromEnvironment(const char* name, int fallback)
    {
        bool given = false;
        const int value = qEnvironmentVariableIntValue(name, &given);
        return given ? value : fallback;
    }
    int Below(int limit) { return int(m_random() % unsigned(std::max(limit, 1))); }

    QWidget& Target()
    {
        if (CTouchMenu* menu = CTouchMenu::Current())
            return *menu;
        if (CFormDialog* dialog = CFormDialog::Current())
            return *dialog;
        return *m_frame;
    }
    // To whatever lies there, like a window system.
    static void Mouse(QWidget& top, QEvent::Type type, QPoint at)
    {
        QWidget* const child = top.childAt(at);
        QWidget& target = child ? *child : top;
        const QPointF local = target.mapFrom(&top, at);
        const bool moves = type == QEvent::MouseMove;
        QMouseEvent event(type, local, target.mapToGlobal(local), moves ? Qt::NoButton : Qt::LeftButton,
                          type == QEvent::MouseButtonRelease ? Qt::NoButton : Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(&target, &event);
    }
    QPoint Anywhere(const QWidget& target) { return {Below(target.width()), Below(target.height())}; }

    // Each part goes to what is on top then: the part before may have opened or closed something.
    void Stroke(int way)
    {
        QPoint at = Anywhere(Target());
        Mouse(Target(), QEvent::MouseButtonPress, at);
        for (int n = way > 0 ? Below(4) : 0; n > 0; --n) {
            at += QPoint(Below(2 * way) - way, Below(way) - way / 2);
            Mouse(Target(), QEvent::MouseMove, at);
        }
        if (CCalendarView* view = m_frame->CurrentView())
            view->DateOverlay().Timers().Fire(kTimerOverlay);
        Mouse(Target(), QEvent::MouseButtonRelease, at);
    }
    void Key()
    {
        const int key = kKeys[Below(int(std::size(kKeys)))];
        for (const auto type : {QEvent::KeyPress, QEvent::KeyRelease}) {
            QWidget& top = Target();
            QWidget* const target = &top == m_frame.get() && m_frame->CurrentView() ? m_frame->CurrentView() : &top;
            QKeyEvent event(type, key, Qt::NoModifier);
            QCoreApplication::sendEvent(target, &event);
        }
    }
    void Wheel()
    {
        QWidget* const target = m_frame->CurrentView();
        const QPointF at = Anywhere(*target);
        QWheelEvent event(at, target->mapToGlobal(at), {}, {0, Below(2) ? 120 : -120}, Qt::NoButton,
                          Qt::NoModifier, Qt::NoScrollPhase, false);
        QCoreApplication::sendEvent(target, &event);
    }
    void Change()
    {
        Add("Brought by another program", kToday + Below(40) - 20, Below(23));
        m_frame->OnDatabaseChange(PimStore().DrainNotices());
    }
    void Step()
    {
        const int what = Below(100);
        if (what < 35)
            Stroke(0);
        else if (what < 60)
            Stroke(120);
        else if (what < 85)
            Key();
        else if (what < 93)
            Wheel();
        else if (what < 95)
            m_frame->resize(kSizes[Below(int(std::size(kSizes)))]);
        else
            Change();
        m_frame->Timers().Kill(kTimerExit);
        m_frame->Snapshot();
        Check();
    }
    void Check()
    {
        ASSERT_TRUE(m_frame->IsUp());
        const CCalendarView* view = m_frame->CurrentView();
        ASSERT_NE(view, nullptr);
        EXPECT_TRUE(m_frame->rect().contains(view->geometry())) << "seed " << m_seed;
        m_views.insert(view->GetViewKind());
        m_days.insert(DayNumber(PimStore().CursorDate()));
        m_pages += CTouchMenu::Current() || CFormDialog::Current();
        const auto* rows = dynamic_cast<const CItemRowView*>(view);
        if (!rows || !rows->SelectedRow())
            return;
        bool found = false;
        int bottom = 0;
        for (int n = 0; const CPaintingOrderItem* row = rows->Rows().GetAt(n); ++n) {
            found = found || row == rows->SelectedRow();
            EXPECT_GE(row->m_bottom, row->m_top);
            EXPECT_GE(row->m_top, bottom);
            bottom = row->m_bottom;
        }
        EXPECT_TRUE(found) << "the selection is no row; seed " << m_seed;
    }
    // The next step is due before this one: it may run a dialog, which the next one then meets.
    void Next()
    {
        if (m_steps-- <= 0 || HasFailure()) {
            Leave();
            return;
        }
        QTimer::singleShot(0, m_frame.get(), [this] { Next(); });
        Step();
    }
    void Leave()
    {
        if (CTouchMenu* menu = CTouchMenu::Current())
            menu->Choose(CmdNone);
        else if (CFormDialog* dialog = CFormDialog::Current())
            dialog->End(CFormDialog::kCancelled);
        else
            m_over = true;
        if (!m_over)
            QTimer::singleShot(0, m_frame.get(), [this] { Leave(); });
    }

    int m_seed = FromEnvironment("TESSERA_RANDOM_SEED", 1);
    int m_steps = FromEnvironment("TESSERA_RANDOM_STEPS", 1500);
    bool m_over = false;
    std::set<int> m_views, m_days; // that it came to
    int m_pages = 0;               // steps within menus and dialogs
    std::mt19937 m_random{unsigned(m_seed)};
};
} // namespace

TEST_F(RandomInput, TheFrameStaysSane)
{
    for (int n = 0; n < 120; ++n)
        Add("Long meeting about the next quarter", kToday + n % 40 - 20, 7 + n % 12);
    SetPause([](int) {});
    Start();
    ASSERT_TRUE(m_created);
    m_frame->show();
    Next();
    while (!m_over && !HasFatalFailure())
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    EXPECT_TRUE(m_frame->IsUp());
    EXPECT_EQ(CFormDialog::Current(), nullptr);
    EXPECT_GE(m_views.size(), 3U);
    EXPECT_GE(m_days.size(), 10U);
    EXPECT_GE(m_pages, 20);
    SetPause({});
}
