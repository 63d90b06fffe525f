// Categories and filters in the frame: what is chosen in their dialogs shows in every view.
#include "drawing/archive_maker.h"
#include "drawing/image_store.h"
#include "forms/form_dialog.h"
#include "pages/category_manager.h"
#include "pages/filter_manager.h"
#include "pim/category_store.h"
#include "shell_fixture.h"
#include "views/item_row_view.h"
#include "views/search_view.h"

#include <QDir>
#include <QLineEdit>
#include <QTest>
#include <QTimer>

namespace
{
const QString kReference = QStringLiteral("zip:test.zip:Home:one.png");
constexpr QRgb kIcon = qRgb(255, 0, 190);     // nothing else on the screen has it
constexpr COLORREF kColor = Rgb(20, 120, 50); // nor this

class FrameCategories : public ShellFixture
{
protected:
    ~FrameCategories() override
    {
        m_frame.reset();
        g_Settings.m_categories.clear();
        g_ImageStore.Clear();
        QFile::remove(ArchivePath());
    }
    static QString ArchivePath() { return FindInstallFolder() + "/IconStore/test.zip"; }
    void WriteIcon()
    {
        QDir().mkpath(FindInstallFolder() + "/IconStore");
        WriteArchive(ArchivePath(), IconMembers("Home/one.png", kIcon));
    }
    // An appointment and a task of today.
    void AddItems(const QString& categories)
    {
        const auto item = m_app->CreateAppointment();
        item->put_Subject("Sow");
        item->put_Start(kToday + 10 / 24.0);
        item->put_End(kToday + 11 / 24.0);
        item->put_Categories(categories);
        ASSERT_TRUE(item->Save());
        const auto task = m_app->CreateTask();
        task->put_Subject("Sow beans");
        task->put_DueDate(kToday);
        task->put_Categories(categories);
        ASSERT_TRUE(task->Save());
    }
    // The frame notices what stands in the volume now.
    void Notice() { m_frame->OnDatabaseChange(PimStore().DrainNotices()); }
    void ChangeCategory(const QString& name, const QString& to) // empty: goes
    {
        CPimDatabase database;
        database.Open(m_volume, kCategoryDatabase, true);
        database.Seek(SeekType::Beginning);
        static constexpr CEPROPID kRows[] = {Prop::CategoryName};
        std::vector<CEPROPVAL> rows;
        while (const CEOID oid = database.ReadRecordProps(kRows, rows)) {
            if (rows[0].Text != name)
                continue;
            const std::vector<CEPROPVAL> put = {{Prop::CategoryName, to}};
            ASSERT_TRUE(to.isEmpty() ? m_volume->DeleteRecord(kCategoryDatabase, oid)
                                     : m_volume->WriteRecord(kCategoryDatabase, oid, put, {}, nullptr));
            return Notice();
        }
        FAIL() << "no such category";
    }
    void Show(int kind)
    {
        m_frame->ShowView(kind, -1);
        if (kind != kViewSearch)
            return;
        auto& view = *static_cast<CSearchView*>(m_frame->CurrentView());
        view.TextBox().setText("Sow");
        QTest::keyClick(&view.TextBox(), Qt::Key_Return);
        ASSERT_TRUE(WaitFor([&] { return !view.IsSearching(); }));
    }
    // So many pixels of the view that is shown.
    int Count(QRgb color)
    {
        QCoreApplication::processEvents(); // a look that changed shows when the dialog has gone
        const QImage picture = m_frame->Snapshot().convertToFormat(QImage::Format_RGB32);
        int count = 0;
        for (int y = 0; y < picture.height(); ++y) {
            const auto* line = reinterpret_cast<const QRgb*>(picture.constScanLine(y));
            count += int(std::count(line, line + picture.width(), color));
        }
        return count;
    }
    int CountColor() { return Count(qRgb(int(RedOf(kColor)), int(GreenOf(kColor)), int(BlueOf(kColor)))); }
    // Once the command has opened a dialog of the kind, `act` works in it; it is left in any case.
    template <typename Dialog> void In(int command, const std::function<void(Dialog&)>& act)
    {
        bool opened = false;
        QTimer::singleShot(0, m_frame.get(), [&] {
            auto* const dialog = dynamic_cast<Dialog*>(CFormDialog::Current());
            ASSERT_TRUE(dialog);
            opened = true;
            act(*dialog);
            dialog->End(CFormDialog::kCancelled);
        });
        m_frame->SendCommand(command);
        EXPECT_TRUE(opened);
    }
    int ShownItems()
    {
        const auto* view = dynamic_cast<const CItemRowView*>(m_frame->CurrentView());
        return view ? view->Rows().GetCount() : -1;
    }
};
} // namespace

TEST_F(FrameCategories, AnIconAndAColorShowInEveryView)
{
    WriteIcon();
    AddItems("Garden");
    g_Settings.General.SlidingScreens = 0;
    g_Settings.General.TextColorsToUse = 1;
    g_Settings.DailyView.IncludeLeadingRects = 1;
    g_Settings.ListView.LeadingRectColors = g_Settings.WeekView.LeadingRectColors = 1;
    g_Settings.MonthView.ItemsToShow = 2;
    Start().show();
    CCategoryStore& store = PimStore().Categories();
    ASSERT_TRUE(store.FindByName("Garden"));
    const auto look = [&](const char* name, const QString& image, COLORREF color) {
        store.SetImageName(store.FindByName(name)->Id, image);
        store.SetColor(store.FindByName(name)->Id, color);
    };
    for (int kind = kViewDaily; kind <= kViewSearch; ++kind) {
        SCOPED_TRACE(kind);
        look("Garden", QString(), kColorNotSet);
        Show(kind);
        EXPECT_EQ(Count(kIcon), 0);
        EXPECT_EQ(CountColor(), 0);
        look("Garden", kReference, kColor);
        EXPECT_GE(Count(kIcon), 16 * 8) << "its icon";
        if (kind != kViewTasks) { // which colours tasks by their dates
            EXPECT_GE(CountColor(), 8) << "its colour";
        }
    }
}

TEST_F(FrameCategories, ALookGoesByTheNameAndStaysInTheSettings)
{
    WriteIcon();
    AddItems("Garden, Work");
    g_Settings.DailyView.IncludeLeadingRects = 1;
    Start().show();
    CCategoryStore& store = PimStore().Categories();
    store.SetImageName(store.FindByName("Garden")->Id, kReference);
    store.SetColor(store.FindByName("Garden")->Id, kColor);
    store.SaveColorsAndImages(g_Settings);
    const auto names = [] {
        return PimStore().Categories().GetNamesText(
            PimStore().GetTaskGroups().front()->Tasks.front()->Categories);
    };
    EXPECT_GT(Count(kIcon), 0);
    EXPECT_GT(CountColor(), 0);

    ChangeCategory("Garden", "Park"); // another name, with no look of its own
    EXPECT_EQ(Count(kIcon), 0);
    EXPECT_EQ(CountColor(), 0);
    EXPECT_EQ(names(), "Park, Work");
    ChangeCategory("Park", "Garden"); // what the settings know comes back
    EXPECT_GT(Count(kIcon), 0);
    EXPECT_GT(CountColor(), 0);
    EXPECT_EQ(names(), "Garden, Work");

    ChangeCategory("Garden", QString()); // the items keep its number, nobody shows it
    EXPECT_EQ(Count(kIcon), 0);
    EXPECT_EQ(CountColor(), 0);
    EXPECT_EQ(names(), "Work");
    EXPECT_EQ(store.FindByName("Garden"), nullptr);
    store.SaveColorsAndImages(g_Settings);
    EXPECT_EQ(g_Settings.m_categories.at("Garden").ImageName, kReference);

    m_frame.reset();
    Start().show();
    EXPECT_EQ(PimStore().Categories().FindByName("Garden"), nullptr);
    EXPECT_EQ(g_Settings.m_categories.at("Garden").Color, kColor) << "through the file";
}

TEST_F(FrameCategories, ManagedFiltersActWhenTheFormIsDone)
{
    AddItems("Garden");
    Add("No category", kToday, 12);
    g_Settings.General.SlidingScreens = 0;
    Start().show();
    ASSERT_EQ(ShownItems(), 3);
    const qint32 garden = PimStore().Categories().FindByName("Garden")->Id;
    // By keys alone: the second filter, its categories, all three lines up to Done.
    const auto define = [&](CFilterManager& form, bool done) {
        QTest::keyClick(form.focusWidget(), Qt::Key_Right);
        for (int n = 0; n < 3; ++n)
            QTest::keyClick(form.focusWidget(), Qt::Key_Down);
        QTimer::singleShot(0, &form, [] {
            auto* manager = dynamic_cast<CCategoryManager*>(CFormDialog::Current());
            ASSERT_TRUE(manager);
            QTest::keyClick(manager, Qt::Key_Space);
            QTest::keyClick(manager, Qt::Key_F1);
        });
        QTest::keyClick(form.focusWidget(), Qt::Key_Return);
        QTest::keyClick(&form, done ? Qt::Key_F1 : Qt::Key_Escape);
    };
    In<CFilterManager>(CmdManageFilters, [&](CFilterManager& form) { define(form, false); });
    EXPECT_EQ(ShownItems(), 3);
    EXPECT_FALSE(g_Settings.m_filters[1].IsActive());

    In<CFilterManager>(CmdManageFilters, [&](CFilterManager& form) { define(form, true); });
    EXPECT_EQ(g_Settings.m_filters[1].IncludeIds, std::set<qint32>{garden});
    EXPECT_EQ(g_Settings.m_currentFilterIndex, 1);
    EXPECT_EQ(ShownItems(), 2);
    EXPECT_TRUE(m_frame->TitleText().endsWith(" *"));

    m_frame->SendCommand(CmdNoFilter);
    EXPECT_EQ(ShownItems(), 3);
    EXPECT_FALSE(m_frame->TitleText().endsWith(" *"));
    m_frame.reset();
    Start();
    EXPECT_EQ(g_Settings.m_filters[1].IncludeIds, std::set<qint32>{garden}) << "through the file";
    EXPECT_EQ(g_Settings.m_currentFilterIndex, -1);
}
