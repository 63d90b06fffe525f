#include <QImage>
#include <QTest>
#include <QTimer>

#include "drawing/paint.h"
#include "touch/command_ids.h"
#include "touch/touch_menu.h"
#include "touch_fixture.h"

namespace
{
class Menu : public CTouchTest
{
protected:
    void SetUp() override
    {
        CTouchTest::SetUp();
        Window.resize(240, 320);
        Window.show();
        for (int n = 0; n < 12; ++n)
            Long.AddRow(QStringLiteral("Row %1").arg(n), 100 + n, 0, n == 9);
    }
    // Runs the menu, with `act` as what the user does.
    int Run(CTouchMenu& menu, std::function<void()> act)
    {
        QTimer::singleShot(0, &Window, std::move(act));
        return menu.Run(&Window);
    }
    QPoint CentreOf(const CTouchMenu& menu, int row) const
    {
        const QRect list = menu.Layout().List;
        return {list.x() + 60, list.y() + row * CTouchMenu::RowHeight() + CTouchMenu::RowHeight() / 2};
    }
    QWidget Window;
    CTouchMenu Long;
};
} // namespace

TEST_F(Menu, PartsTileThePage)
{
    for (const QSize size :
         {QSize(240, 320), QSize(320, 240), QSize(480, 640), QSize(1200, 800), QSize(200, 60)}) {
        for (const bool title : {false, true}) {
            const CTouchMenuLayout layout = CTouchMenuLayout::Of(size, title, 240);
            const QRect& page = layout.Page;
            EXPECT_TRUE(QRect(QPoint(0, 0), size).contains(page) || size.height() < 100);
            EXPECT_LE(page.width(), 420);
            EXPECT_EQ(layout.List.y(), title ? layout.Title.y() + 28 : page.y());
            EXPECT_EQ(layout.Keys.y(), layout.List.y() + layout.List.height());
            EXPECT_EQ(layout.Keys.height(), 40);
            EXPECT_EQ(layout.List.width(), page.width());
        }
    }
    const CTouchMenuLayout card = CTouchMenuLayout::Of({1200, 800}, true, 200);
    EXPECT_EQ(card.Page, QRect(390, 266, 420, 268)) << "a card as high as its rows, in the middle";
    EXPECT_EQ(CTouchMenuLayout::Of({1200, 300}, true, 2000).Page, QRect(390, 20, 420, 260));
}

TEST_F(Menu, TapChoosesTheRowUnderIt)
{
    CTouchMenu menu(QStringLiteral("Dentist"));
    menu.AddRow(QStringLiteral("Delete"), CmdDelete, 711);
    menu.AddRow(QStringLiteral("Duplicate"), CmdDuplicate, 712);
    int shown = 0;
    const int command = Run(menu, [&] {
        ASSERT_EQ(CTouchMenu::Current(), &menu);
        shown = menu.isVisible() && menu.geometry() == Window.rect();
        QTest::mouseClick(&menu, Qt::LeftButton, {}, CentreOf(menu, 1));
    });
    EXPECT_EQ(command, CmdDuplicate);
    EXPECT_TRUE(shown);
    EXPECT_EQ(CTouchMenu::Current(), nullptr);
    EXPECT_FALSE(menu.isVisible());
}

TEST_F(Menu, WaysOutChooseNothing)
{
    struct {
        const char* Name;
        std::function<void(CTouchMenu&)> Act;
    } const ways[] = {
        {"escape", [](CTouchMenu& m) { QTest::keyClick(&m, Qt::Key_Escape); }},
        {"back key", [](CTouchMenu& m) { QTest::keyClick(&m, Qt::Key_Back); }},
        {"own soft key",
         [](CTouchMenu& m) { QTest::mouseClick(&m, Qt::LeftButton, {}, m.Layout().Keys.center()); }},
        {"below the rows",
         [](CTouchMenu& m) {
             QTest::mouseClick(&m, Qt::LeftButton, {}, m.Layout().List.bottomLeft() + QPoint(20, -5));
         }},
    };
    for (const auto& way : ways) {
        SCOPED_TRACE(way.Name);
        CTouchMenu menu;
        menu.AddRow(QStringLiteral("Delete"), CmdDelete, 711);
        EXPECT_EQ(Run(menu, [&] { way.Act(menu); }), CmdNone);
    }
}

TEST_F(Menu, TapBesideTheCardClosesIt)
{
    Window.resize(900, 600);
    CTouchMenu menu;
    menu.AddRow(QStringLiteral("Delete"), CmdDelete, 711);
    EXPECT_EQ(Run(menu, [&] { QTest::mouseClick(&menu, Qt::LeftButton, {}, {10, 10}); }), CmdNone);
}

TEST_F(Menu, KeysWalkTheRowsAndChoose)
{
    int tops[2] = {};
    const int command = Run(Long, [&] {
        QTest::keyClick(&Long, Qt::Key_Up); // nothing chosen yet: the last row
        tops[0] = Long.Navigator().Scroll();
        QTest::keyClick(&Long, Qt::Key_Down); // stays there
        for (int n = 0; n < 8; ++n)
            QTest::keyClick(&Long, Qt::Key_Up);
        tops[1] = Long.Navigator().Scroll();
        QTest::keyClick(&Long, Qt::Key_Return);
    });
    EXPECT_EQ(command, 103);
    EXPECT_EQ(tops[0], Long.Layout().List.height() - 12 * 40);
    EXPECT_EQ(tops[1], -3 * 40);
}

TEST_F(Menu, OpensAtTheCheckedRow)
{
    int scroll = 0;
    Run(Long, [&] {
        scroll = Long.Navigator().Scroll();
        Long.Choose(CmdNone);
    });
    EXPECT_EQ(scroll, -(10 * 40 - Long.Layout().List.height() + 1));
}

TEST_F(Menu, SoftKeysAnswerFingerAndKeyboard)
{
    for (const int way : {0, 1, 2, 3}) {
        CTouchMenu menu;
        menu.AddKey(CmdSettings, 719);
        menu.AddKey(CmdNone, 0);
        menu.AddKey(CmdFilterMenu, 705);
        const int command = Run(menu, [&] {
            const QRect keys = menu.Layout().Keys;
            const auto click = [&](int key) {
                QTest::mouseClick(&menu, Qt::LeftButton, {}, CSoftKeyBar::KeyRect(keys, key, 4).center());
            };
            click(1); // the separator
            EXPECT_EQ(CTouchMenu::Current(), &menu);
            if (way % 2 == 0)
                click(way == 0 ? 2 : 3); // the last closes the menu
            else
                QTest::keyClick(&menu, way == 1 ? Qt::Key_F1 : Qt::Key_F2);
        });
        EXPECT_EQ(command, way == 0 ? CmdFilterMenu : way == 1 ? CmdSettings : CmdNone);
    }
}

TEST_F(Menu, ADragIsNoChoice)
{
    const int command = Run(Long, [&] {
        const QPoint at = CentreOf(Long, 2);
        QTest::mousePress(&Long, Qt::LeftButton, {}, at);
        QTest::mouseMove(&Long, at - QPoint(0, 40));
        QTest::mouseRelease(&Long, Qt::LeftButton, {}, at - QPoint(0, 40));
        QTest::keyClick(&Long, Qt::Key_Escape);
    });
    EXPECT_EQ(command, CmdNone);
}

TEST_F(Menu, FollowsTheWindowAndGivesTheFocusBack)
{
    QWidget field(&Window);
    field.setFocusPolicy(Qt::StrongFocus);
    field.show();
    Window.activateWindow();
    field.setFocus();
    QRect seen;
    Run(Long, [&] {
        Window.resize(320, 240);
        seen = Long.geometry();
        Long.Choose(CmdNone);
    });
    EXPECT_EQ(seen, QRect(0, 0, 320, 240));
    EXPECT_EQ(Window.focusWidget(), &field);
}

TEST_F(Menu, PaintsRowsOnThePagesGround)
{
    CTouchMenu menu(QStringLiteral("A subject that is much too long for the title of a menu on this screen"));
    menu.AddRow(QStringLiteral("Delete"), CmdDelete, 711);
    menu.resize(240, 320);
    const QImage page = menu.Snapshot();
    ASSERT_EQ(page.size(), QSize(240, 320));
    EXPECT_EQ(page.pixel(239, 28 + 20), 0xFFFFFFFF);
    EXPECT_EQ(page.pixel(120, 28 + 39), ToQColor(0xDDE1DE).rgb());
    EXPECT_EQ(page.pixel(120, 200), ToQColor(0xC0C0C0).rgb());
}

TEST_F(Menu, ScreenReadersPressRows)
{
    EXPECT_EQ(Run(Long, [&] {
        QAccessibleInterface* const menu = QAccessible::queryAccessibleInterface(&Long);
        EXPECT_EQ(menu->childCount(), 12 + 1) << "and the key that closes";
        QAccessibleInterface* const row = menu->child(9);
        EXPECT_EQ(row->text(QAccessible::Name), QStringLiteral("Row 9"));
        EXPECT_EQ(row->role(), QAccessible::MenuItem);
        EXPECT_TRUE(row->state().checked);
        EXPECT_EQ(menu->indexOfChild(row), 9);
        // Where the finger would find it, as scrolled.
        EXPECT_EQ(menu->childAt(row->rect().center().x(), row->rect().center().y()), row);
        row->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    }), 109);
}
