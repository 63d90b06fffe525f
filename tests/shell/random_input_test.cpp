// A hand that does anything, on a calendar that another program changes meanwhile, while the clock goes
// on and the window moves between screens. The same seed does the same again. TESSERA_RANDOM_STEPS and
// TESSERA_RANDOM_SEED make it longer or other; TESSERA_RANDOM_SECONDS bounds it by time instead.
#include <malloc.h>

#include <QApplication>
#include <QContextMenuEvent>
#include <QDir>
#include <QElapsedTimer>
#include <QFileDialog>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QTimer>
#include <QWheelEvent>
#include <array>
#include <random>
#include <set>
#include <string>
#include <typeinfo>

#include "desktop/shell_actions.h"
#include "forms/form_dialog.h"
#include "shell_fixture.h"
#include "touch/numbered_timers.h"
#include "touch/timer_ids.h"
#include "touch/touch_menu.h"
#include "views/item_row_view.h"

namespace
{
constexpr QSize kSizes[] = {{240, 320}, {320, 240}, {480, 640}, {160, 120}, {720, 400}};
constexpr int kDensities[] = {96, 192, 288};
constexpr size_t kGrowth = 16 << 20; // bytes between the run's second and last third
#ifdef __SANITIZE_ADDRESS__
constexpr bool kMeasures = false; // its own allocator tells nothing, but finds leaks
#else
constexpr bool kMeasures = true;
#endif
constexpr int kKeys[] = {Qt::Key_Left,   Qt::Key_Right,    Qt::Key_Up, Qt::Key_Down, Qt::Key_Return,
                         Qt::Key_Escape, Qt::Key_PageDown, Qt::Key_F1, Qt::Key_F2,   Qt::Key_1,
                         Qt::Key_4,      Qt::Key_6,        Qt::Key_2,  Qt::Key_5,    Qt::Key_9,
                         Qt::Key_Tab,    Qt::Key_Space};
// Commands that open pages, however rarely the hand finds their keys.
constexpr int kPageCommands[] = {CmdSettings,       CmdSettings,   CmdSettings,      CmdManageFilters,
                                 CmdNewAppointment, CmdNewTask,    CmdEdit,          CmdOpenItem,
                                 CmdGoTo,           CmdViewButton, CmdSearchOptions, CmdMenu,
                                 CmdFilterMenu,     CmdDelete,     CmdBeam};

class RandomInput : public ShellFixture
{
protected:
    // What the hand saves as files stays in the test's own folder.
    RandomInput() : m_home(qgetenv("HOME")), m_place(QDir::currentPath())
    {
        const QString home = m_folder.filePath("home");
        QDir().mkpath(home);
        qputenv("HOME", home.toUtf8());
        qputenv("XDG_CACHE_HOME", m_folder.filePath("cache").toUtf8());
        QDir::setCurrent(home);
    }
    ~RandomInput() override
    {
        QDir::setCurrent(m_place);
        qputenv("HOME", m_home);
        qunsetenv("XDG_CACHE_HOME");
    }
    static int FromEnvironment(const char* name, int fallback)
    {
        bool given = false;
        const int value = qEnvironmentVariableIntValue(name, &given);
        return given ? value : fallback;
    }
    int Below(int limit) { return int(m_random() % unsigned(std::max(limit, 1))); }

    QWidget& Target()
    {
        if (QWidget* popup = QApplication::activePopupWidget())
            return *popup;
        if (QWidget* modal = QApplication::activeModalWidget()) { // the desktop's own, to choose a file
            if (auto* files = qobject_cast<QFileDialog*>(modal)) {
                files->setOption(QFileDialog::ReadOnly); // or it renames the calendar
                if (files->directory() != QDir::current())
                    files->setDirectory(QDir::current()); // or it saves over another's file
            }
            return *modal;
        }
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
        FireTimers();
        Mouse(Target(), QEvent::MouseButtonRelease, at);
    }
    void Key()
    {
        const int key = kKeys[Below(int(std::size(kKeys)))];
        for (const auto type : {QEvent::KeyPress, QEvent::KeyRelease}) {
            QWidget& top = Target();
            QWidget* const target =
                &top == m_frame.get() && m_frame->CurrentView() ? m_frame->CurrentView() : &top;
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
    void FireTimers()
    {
        CCalendarView* const view = m_frame->CurrentView();
        if (!view)
            return;
        view->DateOverlay().Timers().Fire(kTimerOverlay);
        view->Transition().Timers().Fire(kTimerTransition);
    }
    void RightClick()
    {
        QWidget& top = Target();
        const QPoint at = Anywhere(top);
        QWidget* const child = top.childAt(at);
        QWidget& target = child ? *child : top;
        QContextMenuEvent event(QContextMenuEvent::Mouse, target.mapFrom(&top, at), top.mapToGlobal(at));
        QCoreApplication::sendEvent(&target, &event);
    }
    void Bring()
    {
        const int day = kToday + Below(40) - 20;
        if (Below(3) == 0) {
            const auto task = m_app->CreateTask();
            task->put_Subject("Brought to be done");
            task->put_DueDate(day);
            Expect(task->Save());
            m_tasks.push_back(task->get_Oid());
        } else {
            m_brought.push_back(Add("Brought by another program", day, Below(23)));
        }
    }
    static void Expect(const CStatus& status) { EXPECT_TRUE(status) << status.Text().toStdString(); }
    // What is brought is taken away again, so that the calendar does not grow.
    void Change()
    {
        const int what = Below(4);
        std::unique_ptr<IAppointment> item;
        std::unique_ptr<ITask> task;
        if (what == 0 && m_tasks.size() > 10) {
            if (m_app->GetTaskFromOid(TakeOut(m_tasks), task)) {
                Expect(task->Delete());
            }
        } else if (what < 3 && m_brought.size() > 30) {
            if (m_app->GetAppointmentFromOid(TakeOut(m_brought), item)) {
                Expect(item->Delete());
            }
        } else if (what == 3 && !m_brought.empty()) {
            if (m_app->GetAppointmentFromOid(m_brought[size_t(Below(int(m_brought.size())))], item)) {
                item->put_Start(kToday + Below(40) - 20 + Below(48) / 48.0);
                Expect(item->Save());
            }
        } else {
            Bring();
        }
        m_frame->OnDatabaseChange(PimStore().DrainNotices());
    }
    quint32 TakeOut(std::vector<quint32>& from)
    {
        const auto at = from.begin() + Below(int(from.size()));
        const quint32 id = *at;
        from.erase(at);
        return id;
    }
    void TurnClock()
    {
        SetTime(2026, 3, 1 + Below(28), Below(24));
        m_frame->OnClockNotice(1 + Below(3));
    }
    void ChangeWindow()
    {
        if (Below(3) == 0)
            ForceDensity(kDensities[Below(int(std::size(kDensities)))]);
        QSize size;
        do
            size = kSizes[Below(int(std::size(kSizes)))];
        while (size == m_frame->size());
        m_frame->resize(size);
    }
    void ChangeSettings()
    {
        g_Settings.General.SlidingScreens = Below(2);
        g_Settings.General.TouchNavAnimation = Below(2);
        g_Settings.General.TouchNavInvert = Below(2);
    }
    // Whatever the frame has, also what no key or menu of this hand happens to reach.
    void ShowSomeView()
    {
        const int kind = Below(kViewSearch + 1);
        if (CMainFrame::HasView(kind) && &Target() == m_frame.get())
            m_frame->ShowView(kind, -1);
    }
    void OpenPage()
    {
        if (&Target() == m_frame.get())
            m_frame->SendCommand(kPageCommands[Below(int(std::size(kPageCommands)))]);
    }
    void Step()
    {
        const int what = m_what = Below(1000);
        if (what < 350)
            Stroke(0);
        else if (what < 580)
            Stroke(120);
        else if (what < 820)
            Key();
        else if (what < 890)
            Wheel();
        else if (what < 910)
            RightClick();
        else if (what < 930)
            ChangeWindow();
        else if (what < 940)
            TurnClock();
        else if (what < 945)
            ChangeSettings();
        else if (what < 955)
            ShowSomeView();
        else if (what < 970)
            OpenPage();
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
        const DATE cursor = PimStore().CursorDate();
        EXPECT_TRUE(cursor == NO_DATE || SystemTimeOf(DayNumber(cursor)).wYear != 0) << "seed " << m_seed;
        m_days.insert(DayNumber(cursor));
        for (int kind = kViewDaily; kind <= kViewSearch; ++kind) {
            const auto* behind = dynamic_cast<const CItemRowView*>(m_frame->FindView(kind));
            EXPECT_TRUE(!behind || behind == view || behind->Rows().IsEmpty())
                << "view " << kind << " behind " << view->GetViewKind() << " holds rows; seed " << m_seed
                << ", step " << m_done << ", kind " << m_what;
        }
        Measure();
        m_pages += CTouchMenu::Current() || CFormDialog::Current();
        if (const CFormDialog* const dialog = CFormDialog::Current())
            m_dialogs.insert(typeid(*dialog).name());
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
    // The least that a third of the run held: what views and pictures hold comes and goes.
    void Measure()
    {
        const struct mallinfo2 now = mallinfo2();
        const size_t third = size_t(std::min(3 * m_done / std::max(m_limit, 1), 2));
        m_least[third] = std::min(m_least[third], now.uordblks + now.hblkhd);
    }
    bool IsOver() const { return m_seconds > 0 ? m_time.elapsed() > m_seconds * 1000LL : m_done >= m_limit; }
    // The next step is due before this one: it may run a dialog, which the next one then meets.
    void Next()
    {
        if (IsOver() || HasFailure()) {
            Leave();
            return;
        }
        QTimer::singleShot(0, m_frame.get(), [this] { Next(); });
        ++m_done;
        if (m_seconds > 0)
            m_limit = int(double(m_done) * m_seconds * 1000 / double(std::max<qint64>(m_time.elapsed(), 1)));
        Step();
    }
    void Leave()
    {
        if (QWidget* popup = QApplication::activePopupWidget())
            popup->close();
        else if (QWidget* modal = QApplication::activeModalWidget())
            modal->close();
        else if (CTouchMenu* menu = CTouchMenu::Current())
            menu->Choose(CmdNone);
        else if (CFormDialog* dialog = CFormDialog::Current())
            dialog->End(CFormDialog::kCancelled);
        else
            m_over = true;
        if (!m_over)
            QTimer::singleShot(0, m_frame.get(), [this] { Leave(); });
    }

    QByteArray m_home;
    QString m_place;
    int m_seed = FromEnvironment("TESSERA_RANDOM_SEED", 1);
    int m_limit = FromEnvironment("TESSERA_RANDOM_STEPS", 6000); // of steps
    int m_seconds = FromEnvironment("TESSERA_RANDOM_SECONDS", 0);
    int m_done = 0, m_what = 0; // steps, and the last one's number
    QElapsedTimer m_time;
    std::vector<quint32> m_brought, m_tasks;
    std::array<size_t, 3> m_least{SIZE_MAX, SIZE_MAX, SIZE_MAX};
    bool m_over = false;
    std::set<int> m_views, m_days;   // that it came to
    std::set<std::string> m_dialogs; // by their classes
    int m_pages = 0;                 // steps within menus and dialogs
    std::mt19937 m_random{unsigned(m_seed)};
};
} // namespace

TEST_F(RandomInput, TheFrameStaysSane)
{
    for (int n = 0; n < 120; ++n)
        Add("Long meeting about the next quarter", kToday + n % 40 - 20, 7 + n % 12);
    SetPause([](int) {});
    SetProgramStarter([](const QString&, const QStringList&) { return true; });
    m_time.start();
    Start();
    ASSERT_TRUE(m_created);
    m_frame->show();
    Next();
    while (!m_over && !HasFatalFailure())
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    EXPECT_TRUE(m_frame->IsUp());
    EXPECT_EQ(CFormDialog::Current(), nullptr);
    for (int kind = kViewDaily; kind <= kViewSearch; ++kind)
        EXPECT_EQ(m_views.count(kind) != 0, CMainFrame::HasView(kind)) << kind;
    EXPECT_GE(m_days.size(), 10U);
    EXPECT_GE(m_pages, 20);
    EXPECT_GE(m_dialogs.size(), 8U);
    if (kMeasures && m_least[1] != SIZE_MAX && m_least[2] != SIZE_MAX) {
        EXPECT_LT(m_least[2], m_least[1] + kGrowth) << m_done << " steps, seed " << m_seed;
    }
    SetProgramStarter({});
    SetPause({});
}
