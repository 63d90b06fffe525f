#include "forms/form_dialog.h"
#include "forms/menu_bars.h"
#include "forms_fixture.h"
#include "touch/command_ids.h"

#include <QPainter>

namespace
{
// Shows nothing, and writes down what it is handed.
class CPlainDialog : public CFormDialog
{
public:
    explicit CPlainDialog(const QString& title = QStringLiteral("Title")) : CFormDialog(title) {}
    bool Slides = false;
    QStringList Story;

protected:
    bool SlidesIn() const override { return Slides; }
    int ContentHeight(int) override { return 100; }
    void PaintContent(QPainter& dc, const QRect& client) override { dc.fillRect(client, Qt::green); }
    void OnKey(int key) override { Story << QStringLiteral("key %1").arg(key); }
    void OnKeyUp(int key) override { Story << QStringLiteral("up %1").arg(key); }
    void OnLButtonDown(QPoint at) override { Story << QStringLiteral("down %1,%2").arg(at.x()).arg(at.y()); }
    void OnLButtonUp(QPoint) override { Story << QStringLiteral("lifted"); }
    void OnWheel(int angle) override { Story << QStringLiteral("wheel %1").arg(angle); }
};

using FormDialog = CFormsTest;
} // namespace

TEST_F(FormDialog, PartsTileThePage)
{
    for (const QSize size : {QSize(240, 320), QSize(320, 240), QSize(480, 640), QSize(481, 500),
                             QSize(1200, 800), QSize(700, 90), QSize(200, 60), QSize(1, 1)}) {
        for (const int content : {0, 100, 5000}) {
            const CFormDialogLayout layout = CFormDialogLayout::Of(size, true, content);
            const QRect& page = layout.Page;
            EXPECT_EQ(page.width(), std::min(size.width(), 480));
            EXPECT_EQ(layout.Title.topLeft(), page.topLeft());
            EXPECT_EQ(layout.Client.y(), page.y() + 28);
            EXPECT_EQ(layout.Keys.y(), layout.Client.y() + layout.Client.height());
            if (size.height() < 68)
                continue;
            EXPECT_TRUE(QRect(QPoint(0, 0), size).contains(page)) << size.width();
            EXPECT_EQ(layout.Keys.y() + layout.Keys.height(), page.y() + page.height());
            if (size.width() <= 480) {
                EXPECT_EQ(page.size(), size);
            }
        }
    }
    EXPECT_EQ(CFormDialogLayout::Of({1200, 800}, true, 100).Page, QRect(360, 316, 480, 168));
    EXPECT_EQ(CFormDialogLayout::Of({1200, 800}, true, 5000).Page, QRect(360, 20, 480, 760));
    EXPECT_TRUE(CFormDialogLayout::Of({240, 320}, false, 0).Title.isEmpty());
}

TEST_F(FormDialog, WaysToEndIt)
{
    const struct {
        const char* Name;
        std::function<void(CFormDialog&)> Act;
        int Result;
    } ways[] = {
        {"F1", [](CFormDialog& d) { QTest::keyClick(&d, Qt::Key_F1); }, CFormDialog::kDone},
        {"F2", [](CFormDialog& d) { QTest::keyClick(&d, Qt::Key_F2); }, CFormDialog::kCancelled},
        {"Escape", [](CFormDialog& d) { QTest::keyClick(&d, Qt::Key_Escape); }, CFormDialog::kCancelled},
        {"back key", [](CFormDialog& d) { QTest::keyClick(&d, Qt::Key_Back); }, CFormDialog::kCancelled},
        {"Done", [](CFormDialog& d) { Click(d, KeyCentre(d, 0)); }, CFormDialog::kDone},
        {"Cancel", [](CFormDialog& d) { Click(d, KeyCentre(d, 1)); }, CFormDialog::kCancelled},
        {"the first answer counts",
         [](CFormDialog& d) {
             QTest::keyClick(&d, Qt::Key_Escape);
             QTest::keyClick(&d, Qt::Key_F1);
         },
         CFormDialog::kCancelled},
        // What does not end it.
        {"the opening press, repeating",
         [](CFormDialog& d) { Key(d, QEvent::KeyPress, Qt::Key_Escape, true); }, kLeftOpen},
        {"release alone", [](CFormDialog& d) { Key(d, QEvent::KeyRelease, Qt::Key_F1); }, kLeftOpen},
        {"other key released",
         [](CFormDialog& d) {
             Key(d, QEvent::KeyPress, Qt::Key_F1);
             Key(d, QEvent::KeyPress, Qt::Key_Left);
             Key(d, QEvent::KeyRelease, Qt::Key_F1);
         },
         kLeftOpen},
        {"finger leaves the keys",
         [](CFormDialog& d) {
             QTest::mousePress(&d, Qt::LeftButton, {}, KeyCentre(d, 0));
             QTest::mouseMove(&d, {20, 20});
             QTest::mouseRelease(&d, Qt::LeftButton, {}, {20, 60});
         },
         kLeftOpen},
        {"finger comes to the keys",
         [](CFormDialog& d) {
             QTest::mousePress(&d, Qt::LeftButton, {}, {20, 60});
             QTest::mouseRelease(&d, Qt::LeftButton, {}, KeyCentre(d, 0));
         },
         kLeftOpen},
    };
    for (const auto& way : ways) {
        CPlainDialog dialog;
        EXPECT_EQ(Run(dialog, [&] { way.Act(dialog); }), way.Result) << way.Name;
        EXPECT_FALSE(dialog.isVisible());
    }
    EXPECT_EQ(Window.Events, 0);
}

TEST_F(FormDialog, TapBesideTheCardChangesNothing)
{
    Window.resize(900, 600);
    CPlainDialog dialog;
    EXPECT_EQ(Run(dialog, [&] { Click(dialog, {10, 10}); }), kLeftOpen);
    EXPECT_EQ(dialog.Story, QStringList());
}

TEST_F(FormDialog, HandsInputOnAndLetsNothingThrough)
{
    CPlainDialog dialog;
    Run(dialog, [&] {
        QTest::keyClick(&dialog, Qt::Key_1);
        QTest::keyClick(&dialog, Qt::Key_Insert); // without a number of its own
        Key(dialog, QEvent::KeyPress, Qt::Key_Return, true);
        Click(dialog, {30, 50});
        Click(dialog, {30, 10}); // the title
        QWheelEvent wheel(QPointF(5, 50), QPointF(5, 50), {}, {0, -120}, Qt::NoButton, {}, Qt::NoScrollPhase,
                          false);
        QCoreApplication::sendEvent(&dialog, &wheel);
        QContextMenuEvent menu(QContextMenuEvent::Mouse, {5, 50}, {5, 50});
        QCoreApplication::sendEvent(&dialog, &menu);
        QTest::mouseClick(&dialog, Qt::RightButton, {}, {30, 50});
    });
    EXPECT_EQ(dialog.Story.join(QStringLiteral("; ")),
              QStringLiteral("key 49; up 49; down 30,50; lifted; wheel -120"));
    EXPECT_EQ(Window.Events, 0);
}

TEST_F(FormDialog, FollowsTheWindowAndGivesTheFocusBack)
{
    QWidget field(&Window);
    field.setFocusPolicy(Qt::StrongFocus);
    field.show();
    Window.activateWindow();
    field.setFocus();
    CPlainDialog dialog;
    Run(dialog, [&] {
        EXPECT_EQ(dialog.geometry(), Window.rect());
        EXPECT_EQ(Window.focusWidget(), &dialog);
        Window.resize(320, 240);
        EXPECT_EQ(dialog.geometry(), QRect(0, 0, 320, 240));
        EXPECT_EQ(dialog.Layout().Page, QRect(0, 0, 320, 240));
        Window.resize(800, 600);
        EXPECT_EQ(dialog.Layout().Page, QRect(160, 216, 480, 168));
    });
    EXPECT_EQ(Window.focusWidget(), &field);
    EXPECT_EQ(dialog.parentWidget(), nullptr);
}

TEST_F(FormDialog, StaysInFrontOfWhatIsRaisedUnderIt)
{
    QWidget view(&Window);
    view.setFocusPolicy(Qt::StrongFocus);
    view.setGeometry(Window.rect());
    view.show();
    CPlainDialog outer, inner;
    const auto onTop = [&] { return Window.childAt(20, 60); };
    Run(outer, [&] {
        EXPECT_EQ(Run(inner,
                      [&] {
                          EXPECT_EQ(CFormDialog::Current(), &inner);
                          view.raise();
                          view.setFocus();
                          EXPECT_EQ(onTop(), &view);
                          CFormDialog::KeepInFront();
                          EXPECT_EQ(onTop(), &inner);
                          EXPECT_EQ(Window.focusWidget(), &inner);
                      }),
                  kLeftOpen);
        EXPECT_EQ(CFormDialog::Current(), &outer);
        EXPECT_EQ(onTop(), &outer) << "raised together with the inner one";
        EXPECT_EQ(Window.focusWidget(), &outer);
        EXPECT_EQ(outer.Run(&Window), CFormDialog::kNotStarted);
    });
    EXPECT_EQ(CFormDialog::Current(), nullptr);
    CFormDialog::KeepInFront();
}

TEST_F(FormDialog, SlidesInByFiftyEachStep)
{
    const struct {
        QSize Window;
        bool Setting, Wanted;
        QList<int> Places; // of the left edge, at each step
    } cases[] = {
        {{240, 320}, true, true, {240, 190, 140, 90, 40, 0}},
        {{320, 240}, true, true, {320, 270, 220, 170, 120, 70, 20, 0}},
        {{900, 600}, true, true, {250, 200, 150, 100, 50, 0}}, // a card
        {{240, 320}, false, true, {0}},
        {{240, 320}, true, false, {0}},
    };
    for (const auto& c : cases) {
        Window.resize(c.Window);
        g_Settings.General.SlidingScreens = c.Setting;
        CPlainDialog dialog;
        dialog.Slides = c.Wanted;
        QList<int> places;
        Run(dialog, [&] {
            CNumberedTimers& timers = dialog.Timers();
            places << dialog.x();
            if (dialog.x() > 0)
                Click(dialog, {30, 50});
            EXPECT_EQ(timers.PeriodOf(CFormDialog::kTimerSlide), c.Places.size() > 1 ? 50 : -1);
            while (timers.IsRunning(CFormDialog::kTimerSlide)) {
                timers.Fire(CFormDialog::kTimerSlide);
                places << dialog.x();
            }
            EXPECT_EQ(dialog.size(), c.Window);
        });
        EXPECT_EQ(places, c.Places);
        EXPECT_EQ(dialog.Story, QStringList()) << "a finger meant another place";
    }
}

TEST_F(FormDialog, WithoutAWindowItIsOneItself)
{
    Window.hide();
    CPlainDialog dialog;
    const int result = Run(dialog, [&] {
        EXPECT_TRUE(dialog.isWindow() && dialog.isVisible() && dialog.isModal());
        EXPECT_EQ(dialog.size(), Window.size());
        EXPECT_EQ(dialog.windowTitle(), QStringLiteral("Title"));
        dialog.close();
    });
    EXPECT_EQ(result, CFormDialog::kCancelled);
    Window.show();
    EXPECT_EQ(Run(dialog, [&] { EXPECT_FALSE(dialog.isWindow()); }), kLeftOpen) << "runs again, elsewhere";
}

TEST_F(FormDialog, SnapshotIsWhatTheWindowShows)
{
    CPlainDialog dialog;
    Run(dialog, [&] {
        const QImage seen = Window.grab().toImage().convertToFormat(QImage::Format_RGB32);
        EXPECT_EQ(seen, dialog.Snapshot());
        EXPECT_EQ(QColor(seen.pixel(120, 60)), QColor(Qt::green));
        dialog.SetTitle(QString());
        EXPECT_EQ(dialog.Layout().Client.y(), 0);
    });
}
