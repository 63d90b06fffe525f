#include "views/view_selector.h"
#include "views_fixture.h"

#include <QTest>
#include <QTimer>

namespace
{
class ViewSelector : public CViewTest
{
protected:
    int Choose(int current, QSize size, const std::function<void(CViewSelector&)>& act)
    {
        QWidget owner;
        owner.resize(size);
        owner.show();
        CViewSelector selector(current);
        QTimer::singleShot(0, &owner, [&] {
            act(selector);
            selector.End(kOpen);
        });
        return selector.Choose(&owner);
    }
    static constexpr int kOpen = 99;
    static constexpr QSize kSize{240, 320};
};
} // namespace

TEST_F(ViewSelector, KeysChoose)
{
    const struct {
        int Current, Key, Result;
    } kCases[] = {
        {0, Qt::Key_1, 0},      {0, Qt::Key_6, 5},  {3, Qt::Key_0, -1},        {3, Qt::Key_Escape, -1},
        {3, Qt::Key_Return, 3}, {2, Qt::Key_F1, 2}, {2, Qt::Key_7, kOpen - 1}, {5, Qt::Key_F2, -1},
    };
    for (const auto& c : kCases)
        EXPECT_EQ(Choose(c.Current, kSize, [&](QWidget& w) { QTest::keyClick(&w, Qt::Key(c.Key)); }),
                  c.Result)
            << c.Key;
    EXPECT_EQ(Choose(0, kSize,
                     [](QWidget& w) {
                         for (const int key : {Qt::Key_Down, Qt::Key_Right, Qt::Key_Return})
                             QTest::keyClick(&w, Qt::Key(key));
                     }),
              3);
}

TEST_F(ViewSelector, TapsChooseOnCellsOnly)
{
    for (const QSize size : {kSize, QSize(320, 240)}) {
        const bool wide = size.width() > size.height();
        EXPECT_EQ(Choose(0, size,
                         [&](CViewSelector& s) {
                             // Three beside one another, or below.
                             EXPECT_EQ(s.Cells().CellRect(2).y() == s.Cells().CellRect(0).y(), wide);
                             EXPECT_EQ(s.Cells().GetCell(4).Text, "5 - Tasks");
                             QTest::mouseClick(&s, Qt::LeftButton, {}, s.Cells().CellRect(4).center());
                         }),
                  4);
        EXPECT_EQ(Choose(0, size,
                         [&](CViewSelector& s) {
                             const QRect first = s.Cells().CellRect(0);
                             QTest::mouseClick(&s, Qt::LeftButton, {}, first.topLeft() - QPoint(3, 3));
                         }),
                  kOpen - 1);
    }
}

TEST_F(ViewSelector, ReadersOfTheScreenPressItsCells)
{
    EXPECT_EQ(Choose(1, kSize,
                     [](CViewSelector& s) {
                         EXPECT_EQ(s.GetPart(5).Name, "6 - Search");
                         EXPECT_TRUE(s.GetPart(1).Selected);
                         s.PressPart(5);
                     }),
              5);
}
