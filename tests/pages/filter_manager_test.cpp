#include "forms/forms_fixture.h"
#include "pages/category_manager.h"
#include "pages/filter_manager.h"
#include "pim/pim_store.h"
#include "util/string_ids.h"

#include <QComboBox>
#include <QLineEdit>
#include <QTemporaryDir>

namespace
{
// The rows in order; an upper-case letter is a row that shows.
constexpr struct {
    char Letter;
    quint32 Id;
} kRows[] = {
    {'n', StrFilterNumber},       {'c', CFilterManager::kNumber}, {'t', StrFilterName},
    {'m', CFilterManager::kName}, {'i', StrIncludeCategories},    {'j', CFilterManager::kIncludeMode},
    {'k', StrIncludedNames},      {'e', StrExcludeCategories},    {'f', CFilterManager::kExcludeMode},
    {'g', StrExcludedNames}};

class FilterManager : public CFormsTest
{
protected:
    void SetUp() override
    {
        CFormsTest::SetUp();
        g_Settings.General.SlidingScreens = 0;
        g_Settings.m_installFolder = Folder.path(); // the category manager saves there
        PimStore().Categories().Close();
        for (const char* name : {"Work", "Family", "Sport"})
            Ids.push_back(PimStore().Categories().AddLocal(QString::fromLatin1(name))->Id);
        for (size_t n = 0; n < Filters.size(); ++n)
            Filters[n].Name = "Filter " + QString::number(n + 1);
    }
    void TearDown() override
    {
        PimStore().Categories().Close();
        g_Settings.m_installFolder.clear();
        CFormsTest::TearDown();
    }
    static QString Shown(const CFilterManager& form)
    {
        QString shown;
        for (const auto& row : kRows)
            shown += form.RowRect(row.Id).isEmpty() ? QChar(row.Letter) : QChar(row.Letter).toUpper();
        return shown;
    }
    template <typename Control> static Control* Live(CFilterManager& form)
    {
        for (Control* control : form.findChildren<Control*>()) {
            if (control->isVisible())
                return control;
        }
        ADD_FAILURE() << "no such control";
        return nullptr;
    }
    // Right and Left in the list of the row, as often as there are signs in `steps`.
    static void Step(CFilterManager& form, quint32 id, const char* steps)
    {
        Click(form, form.RowRect(id).center());
        auto* const list = Live<QComboBox>(form);
        for (; list && *steps; ++steps)
            QTest::keyClick(list, *steps == '+' ? Qt::Key_Right : Qt::Key_Left);
    }
    static QString Value(const CFilterManager& form, quint32 id)
    {
        for (const CFieldRow& row : form.Rows()) {
            if (row.Id == id)
                return row.Value;
        }
        return "no row";
    }
    QTemporaryDir Folder;
    std::vector<CFilter> Filters = std::vector<CFilter>(20);
    std::vector<qint32> Ids;
};
} // namespace

TEST_F(FilterManager, AModePutsTheOtherSideOutOfUse)
{
    constexpr struct {
        int Include, Exclude; // before
        quint32 Row;
        const char* Steps;
        int IncludeAfter, ExcludeAfter;
        const char* Shown;
    } kCases[] = {
        {0, 0, CFilterManager::kIncludeMode, "", 0, 0, "NCTMIJKEFG"},
        {0, 0, CFilterManager::kIncludeMode, "+", 1, 0, "NCTMIJKEFG"},
        {0, 1, CFilterManager::kIncludeMode, "+", 1, 1, "NCTMIJKEFG"},
        {0, 1, CFilterManager::kIncludeMode, "++", 2, 0, "NCTMIJKefg"},
        {0, 1, CFilterManager::kIncludeMode, "-", 3, 1, "NCTMIJkefg"},
        {3, 1, CFilterManager::kIncludeMode, "+", 0, 1, "NCTMIJKEFG"},
        {2, 0, CFilterManager::kIncludeMode, "-", 1, 0, "NCTMIJKEFG"},
        {1, 0, CFilterManager::kExcludeMode, "+", 1, 1, "NCTMIJKEFG"},
        {1, 0, CFilterManager::kExcludeMode, "-", 0, 2, "NCTMijkEFG"},
        {0, 2, CFilterManager::kExcludeMode, "-", 0, 1, "NCTMIJKEFG"},
        {0, 2, CFilterManager::kExcludeMode, "", 0, 2, "NCTMijkEFG"},
        // As only another program's file can have it: there is still a row to change it by.
        {2, 2, CFilterManager::kIncludeMode, "", 2, 0, "NCTMIJKefg"},
        {3, 2, CFilterManager::kIncludeMode, "", 3, 0, "NCTMIJkefg"},
        {77, -3, CFilterManager::kIncludeMode, "", 77, -3, "NCTMIJKEFG"},
    };
    for (const auto& test : kCases) {
        SCOPED_TRACE(testing::Message() << test.Include << ' ' << test.Exclude << ' ' << test.Steps);
        Filters[0].IncludeMode = test.Include;
        Filters[0].ExcludeMode = test.Exclude;
        CFilterManager form(Filters, 0);
        EXPECT_EQ(Run(form,
                      [&] {
                          Step(form, test.Row, test.Steps);
                          EXPECT_EQ(Shown(form), test.Shown);
                          QTest::keyClick(&form, Qt::Key_F1);
                      }),
                  CFormDialog::kDone);
        EXPECT_EQ(Filters[0].IncludeMode, test.IncludeAfter);
        EXPECT_EQ(Filters[0].ExcludeMode, test.ExcludeAfter);
    }
}

TEST_F(FilterManager, StartsOnTheNumberAndEditsOneFilterAfterAnother)
{
    Filters[19].IncludeMode = CFilter::kNoCategories;
    CFilterManager form(Filters, 1);
    Run(form, [&] {
        EXPECT_EQ(form.GetTitle(), "Custom Filter");
        EXPECT_EQ(form.GetSelectedRow(), 1);
        EXPECT_EQ(Live<QComboBox>(form)->count(), 20);
        EXPECT_EQ(Value(form, CFilterManager::kNumber), "2");
        Click(form, form.RowRect(CFilterManager::kName).center());
        Live<QLineEdit>(form)->selectAll();
        QTest::keyClicks(Live<QLineEdit>(form), "Leisure");
        Step(form, CFilterManager::kNumber, "--"); // past the first to the last
        EXPECT_EQ(form.GetIndex(), 19);
        EXPECT_EQ(Value(form, CFilterManager::kName), "Filter 20");
        EXPECT_EQ(Value(form, CFilterManager::kIncludeMode), "No Categories");
        EXPECT_EQ(Shown(form), "NCTMIJkefg");
        Step(form, CFilterManager::kNumber, "++");
        EXPECT_EQ(Value(form, CFilterManager::kName), "Leisure");
        EXPECT_EQ(Shown(form), "NCTMIJKEFG");
        QTest::keyClick(&form, Qt::Key_F1);
    });
    EXPECT_EQ(Filters[1].Name, "Leisure");
    EXPECT_EQ(Filters[0].Name, "Filter 1");
    EXPECT_EQ(Filters[19].Name, "Filter 20");
    EXPECT_EQ(CFilterManager(Filters, 20).GetIndex(), 0);
    EXPECT_EQ(CFilterManager(Filters, -1).GetIndex(), 0);
}

TEST_F(FilterManager, CategoriesAreCheckedOnAPageOfTheirOwn)
{
    Filters[0].IncludeIds = {Ids[1], 4711}; // one is gone
    Filters[0].ExcludeIds = {Ids[0]};
    CFilterManager form(Filters, 0);
    int opened = 0;
    const auto inManager = [&](Qt::Key end) {
        QTimer::singleShot(0, &form, [&opened, end] {
            auto* manager = dynamic_cast<CCategoryManager*>(CFormDialog::Current());
            ASSERT_TRUE(manager);
            ++opened;
            EXPECT_EQ(manager->GetTitle(), "Set Categories");
            EXPECT_EQ(manager->LineText(1), "Sport");
            Click(*manager, manager->BoxColumn(1).center());
            QTest::keyClick(manager, end);
        });
    };
    Run(form, [&] {
        EXPECT_EQ(Value(form, StrIncludedNames), "Family");
        EXPECT_EQ(Value(form, StrExcludedNames), "Work");
        inManager(Qt::Key_F1);
        Click(form, form.RowRect(StrIncludedNames).center());
        EXPECT_EQ(opened, 1);
        EXPECT_EQ(Value(form, StrIncludedNames).split(", ").size(), 2);
        inManager(Qt::Key_Escape);
        Click(form, form.RowRect(StrExcludedNames).center());
        EXPECT_EQ(opened, 2);
        EXPECT_EQ(Value(form, StrExcludedNames), "Work");
        QTest::keyClick(&form, Qt::Key_F1);
    });
    EXPECT_EQ(Filters[0].IncludeIds, (std::set<qint32>{Ids[1], Ids[2]}));
    EXPECT_EQ(Filters[0].ExcludeIds, (std::set<qint32>{Ids[0]}));
}

TEST_F(FilterManager, EachRowHasANameForReadersOfTheScreen)
{
    CFilterManager form(Filters, 0);
    Run(form, [&] {
        for (int n = 0; n < form.GetPartCount(); ++n)
            EXPECT_FALSE(form.GetPart(n).Name.isEmpty()) << n;
        EXPECT_EQ(form.GetPart(1).Name, "Filter Number:");
    });
}
