#include "drawing/archive_maker.h"
#include "drawing/image_store.h"
#include "forms/forms_fixture.h"
#include "pages/category_manager.h"
#include "pages/icon_grid_layout.h"
#include "pages/icon_picker.h"
#include "pim/pim_store.h"
#include "platform/registry.h"
#include "touch/command_ids.h"
#include "touch/virtual_keys.h"

#include <QDir>
#include <QTemporaryDir>

// ---- the grid

namespace
{
constexpr CIconGridLayout::Sizes kSizes{.Heading = 20, .Cell = 40, .Spacing = 4};

struct GridCase {
    int Width;
    std::vector<int> Groups;
    int Columns;
    int Height;
};
const GridCase kGrids[] = {
    {240, {3, 5, 7}, 5, 20 + 48 + 20 + 48 + 20 + 92},
    {320, {3, 0, 8}, 7, 20 + 48 + 20 + 92},
    {47, {2}, 1, 20 + 92}, // no less than one cell stands in a row
    {20, {1}, 1, 20 + 48},
    {240, {}, 5, 0},
    {240, {0, 0}, 5, 0},
};
} // namespace

TEST(IconGrid, CellsLieBelowTheirHeadingsWithoutOverlap)
{
    for (const GridCase& c : kGrids) {
        const CIconGridLayout grid(c.Width, kSizes, c.Groups);
        EXPECT_EQ(grid.Columns(), c.Columns);
        EXPECT_EQ(grid.Height(), c.Height);
        QRegion covered;
        for (int group = 0; group < grid.GroupCount(); ++group)
            covered += grid.HeadingRect(group);
        for (int cell = 0; cell < grid.CellCount(); ++cell) {
            const QRect rect = grid.CellRect(cell);
            EXPECT_FALSE(covered.intersects(rect)) << cell;
            EXPECT_GT(rect.y(), grid.HeadingRect(grid.GroupOf(cell)).bottom());
            EXPECT_EQ(grid.HitTest(rect.center()), cell);
            EXPECT_EQ(grid.HitTest(rect.topLeft() - QPoint(1, 1)), -1);
            covered += rect.adjusted(-2, -2, 2, 2); // half the spacing on each side
        }
        EXPECT_TRUE(grid.CellRect(grid.CellCount()).isEmpty());
        EXPECT_TRUE(grid.CellRect(-1).isEmpty());
    }
}

TEST(IconGrid, KeysGoByCellAndAcrossGroups)
{
    // Five columns: 0..2 | 3..7, 8..9 | 10
    const CIconGridLayout grid(240, kSizes, {3, 7, 1});
    const struct {
        int From, Key, To;
    } cases[] = {
        {0, kKeyLeft, 0}, {2, kKeyRight, 3}, {3, kKeyLeft, 2}, {10, kKeyRight, 10},
        {1, kKeyDown, 4}, {4, kKeyUp, 1},    {7, kKeyUp, 2},   {7, kKeyDown, 9},
        {4, kKeyDown, 9}, {9, kKeyDown, 10}, {10, kKeyUp, 8},  {10, kKeyDown, 10},
        {0, kKeyUp, 0},   {5, kKeyHome, 0},  {5, kKeyEnd, 10}, {5, kKeySpace, 5},
    };
    for (const auto& c : cases)
        EXPECT_EQ(grid.Step(c.From, c.Key), c.To) << c.From << " by " << c.Key;
}

// ---- the dialog

namespace
{
class IconPicker : public CFormsTest
{
protected:
    void SetUp() override
    {
        CFormsTest::SetUp();
        QDir(Folder.path()).mkpath(QStringLiteral("IconStore"));
        qputenv("TESSERA_SHARE", Folder.filePath(QStringLiteral("share")).toUtf8());
        CRegistry::SetFolder(Folder.filePath(QStringLiteral("config")));
        g_Settings.m_installFolder = Folder.path();
        PimStore().Categories().Close();
        PimStore().Categories().AddLocal(QStringLiteral("Family"));
        PimStore().Categories().AddLocal(QStringLiteral("Garden"));
    }
    void TearDown() override
    {
        qunsetenv("TESSERA_SHARE");
        CRegistry::SetFolder(QString());
        g_Settings.m_installFolder.clear();
        g_Settings.m_categories.clear();
        PimStore().Categories().Close();
        g_ImageStore.Clear();
        CFormsTest::TearDown();
    }
    // Groups "Home" and "Work" with so many icons each, of different reds.
    void WriteIcons(int home, int work)
    {
        std::vector<CTestMember> members;
        for (int n = 0; n < home + work; ++n) {
            const QByteArray path =
                QByteArray(n < home ? "Home/h" : "Work/w") + QByteArray::number(n) + ".png";
            for (const CTestMember& member : IconMembers(path, qRgb(100 + n, 0, 0)))
                members.push_back(member);
        }
        WriteArchive(Folder.filePath(QStringLiteral("IconStore/a.zip")), members);
    }
    static QString Reference(const char* groupAndFile)
    {
        return QStringLiteral("zip:a.zip:") + QString::fromLatin1(groupAndFile);
    }
    // Runs what the manager opens above itself.
    void InPicker(QWidget& context, std::function<void(CIconPicker&)> act)
    {
        QTimer::singleShot(0, &context, [this, act = std::move(act)] {
            auto* picker = dynamic_cast<CIconPicker*>(CFormDialog::Current());
            ASSERT_TRUE(picker);
            ++Opened;
            act(*picker);
        });
    }
    static const CCategory& Category(const char* name)
    {
        return *PimStore().Categories().FindByName(QString::fromLatin1(name));
    }
    QTemporaryDir Folder;
    int Opened = 0;
};
} // namespace

TEST_F(IconPicker, ATapSelectsAndDoneGivesTheReference)
{
    WriteIcons(3, 3);
    CIconPicker picker;
    const int result = Run(picker, [&] {
        EXPECT_EQ(picker.GetTitle(), "Icon Picker");
        EXPECT_EQ(picker.IconCount(), 6);
        EXPECT_EQ(picker.GetSelected(), -1);
        Click(picker, picker.IconRect(4).center());
        EXPECT_EQ(picker.GetSelected(), 4);
        Click(picker, picker.IconRect(4).topRight() + QPoint(3, 0)); // between two cells
        EXPECT_EQ(picker.GetSelected(), 4);
        Click(picker, KeyCentre(picker, 0));
    });
    EXPECT_EQ(result, CFormDialog::kDone);
    EXPECT_EQ(picker.GetReference(), Reference("Work:w4.png"));
}

TEST_F(IconPicker, KeysSelectAndEnterConfirms)
{
    WriteIcons(3, 3);
    CIconPicker picker;
    const int result = Run(picker, [&] {
        for (const Qt::Key key : {Qt::Key_Right, Qt::Key_Down, Qt::Key_Right})
            QTest::keyClick(&picker, key);
        EXPECT_EQ(picker.GetSelected(), 4);
        QTest::keyClick(&picker, Qt::Key_Return);
    });
    EXPECT_EQ(result, CFormDialog::kDone);
    EXPECT_EQ(picker.GetReference(), Reference("Work:w4.png"));
}

TEST_F(IconPicker, NothingIsChosenByCancelOrWithoutSelection)
{
    WriteIcons(1, 0);
    CIconPicker cancelled(Reference("Home:h0.png"));
    EXPECT_EQ(Run(cancelled, [&] { QTest::keyClick(&cancelled, Qt::Key_Escape); }), CFormDialog::kCancelled);
    CIconPicker unselected(QStringLiteral("zip:gone.zip:Home:h0.png"));
    EXPECT_EQ(Run(unselected, [&] { QTest::keyClick(&unselected, Qt::Key_Return); }),
              CFormDialog::kCancelled);
    EXPECT_EQ(unselected.GetReference(), "");
}

TEST_F(IconPicker, TheSelectedIconIsInViewWithItsMargin)
{
    WriteIcons(40, 60);
    CIconPicker picker(Reference("Work:w57.png"));
    Run(picker, [&] {
        EXPECT_EQ(picker.GetSelected(), 57);
        const QRect client = picker.Layout().Client;
        EXPECT_TRUE(client.contains(picker.IconRect(57).adjusted(0, -20, 0, 20)));
        for (const Qt::Key key : {Qt::Key_PageDown, Qt::Key_End, Qt::Key_Up, Qt::Key_PageUp, Qt::Key_Home}) {
            QTest::keyClick(&picker, key);
            EXPECT_TRUE(client.contains(picker.IconRect(picker.GetSelected())));
        }
        EXPECT_EQ(picker.GetSelected(), 0);
        EXPECT_EQ(picker.IconRect(0).y(), client.y() + picker.Grid().CellRect(0).y()); // and its heading
        QTest::keyClick(&picker, Qt::Key_Escape);
    });
}

TEST_F(IconPicker, TellsReadersOfTheScreenNameAndGroup)
{
    WriteIcons(1, 1);
    CIconPicker picker(Reference("Work:w1.png"));
    Run(picker, [&] {
        const CPaintedPart part = picker.GetPart(1);
        EXPECT_EQ(part.Name, "w1");
        EXPECT_EQ(part.Value, "Work");
        EXPECT_TRUE(part.Selected);
        EXPECT_EQ(part.Rect, picker.IconRect(1));
        picker.PressPart(0);
        EXPECT_EQ(picker.GetSelected(), 0);
        QTest::keyClick(&picker, Qt::Key_Escape);
    });
}

TEST_F(IconPicker, WithoutIconsItTellsWhereTheyBelong)
{
    CIconPicker picker;
    const int result = Run(picker, [&] {
        EXPECT_TRUE(picker.GetPart(0).Name.contains(Folder.path() + QStringLiteral("/IconStore")));
        for (const Qt::Key key : {Qt::Key_Down, Qt::Key_PageUp, Qt::Key_Home})
            QTest::keyClick(&picker, key);
        Click(picker, picker.Layout().Client.center());
        picker.Snapshot();
        Click(picker, KeyCentre(picker, 0));
    });
    EXPECT_EQ(result, CFormDialog::kCancelled);
}

TEST_F(IconPicker, ScansAnewWhenTheDensityChanges)
{
    WriteIcons(1, 1);
    CIconPicker picker(Reference("Work:w1.png"));
    Run(picker, [&] {
        EXPECT_EQ(picker.Grid().CellRect(0).width(), 40);
        g_ScreenMetrics.Init(192, {480, 640});
        picker.Snapshot();
        EXPECT_EQ(picker.Grid().CellRect(0).width(), 80);
        EXPECT_EQ(picker.GetSelected(), 1);
        QTest::keyClick(&picker, Qt::Key_Escape);
    });
}

// ---- in the category manager

TEST_F(IconPicker, TheManagersIconColumnSetsTheTappedCategorysIcon)
{
    WriteIcons(2, 2);
    CCategoryManager manager;
    Run(manager, [&] {
        const QImage before = manager.Snapshot();
        InPicker(manager, [](CIconPicker& picker) {
            EXPECT_EQ(picker.GetSelected(), -1);
            picker.Select(3);
            QTest::keyClick(&picker, Qt::Key_Return);
        });
        Click(manager, manager.IconColumn(1).center());
        EXPECT_EQ(Category("Garden").ImageName, Reference("Work:w3.png"));
        const QImage after = manager.Snapshot();
        const QPoint seen =
            manager.IconColumn(1).topLeft() + QPoint(13 + 8, manager.IconColumn(1).height() / 2);
        EXPECT_EQ(after.pixel(seen), qRgb(103, 0, 0));
        EXPECT_NE(before.pixel(seen), qRgb(103, 0, 0));
        InPicker(manager, [](CIconPicker& picker) {
            EXPECT_EQ(picker.GetSelected(), 3);
            picker.Select(0);
            QTest::keyClick(&picker, Qt::Key_Escape);
        });
        Click(manager, manager.IconColumn(1).center());
        EXPECT_EQ(Category("Garden").ImageName, Reference("Work:w3.png"));
        QTest::keyClick(&manager, Qt::Key_F1);
    });
    EXPECT_EQ(Opened, 2);
    EXPECT_EQ(Category("Family").ImageName, "");
    EXPECT_EQ(g_Settings.m_categories[QStringLiteral("Garden")].ImageName, Reference("Work:w3.png"));
}

TEST_F(IconPicker, AnIconChosenAgainIsReadAgain)
{
    const QString reference = Reference("Home:h0.png");
    PimStore().Categories().SetImageName(Category("Family").Id, reference);
    CCategoryManager manager;
    Run(manager, [&] {
        manager.Snapshot();
        EXPECT_FALSE(g_ImageStore.Icon(reference).IsValid());
        WriteIcons(1, 0);
        InPicker(manager, [](CIconPicker& picker) { QTest::keyClick(&picker, Qt::Key_Return); });
        Click(manager, manager.IconColumn(0).center());
        EXPECT_TRUE(g_ImageStore.Icon(reference).IsValid());
        QTest::keyClick(&manager, Qt::Key_F1);
    });
    EXPECT_EQ(Opened, 1);
}
