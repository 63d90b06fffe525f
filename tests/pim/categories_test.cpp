// Category names and numbers, the categories of items, and filters over them.
#include "pim_fixture.h"

#include "pim/filter_match.h"

namespace
{
class Categories : public PimTest
{
protected:
    void WriteCategory(int number, const char* name)
    {
        if (!m_volume)
            OpenStore();
        const std::vector<CEPROPVAL> rows = {{Prop::CategoryNumber, number},
                                             {Prop::CategoryName, QString(name)}};
        ASSERT_TRUE(m_volume->WriteRecord(kCategoryDatabase, 0, rows, {}, nullptr));
    }
    void Assign(quint32 item, int number)
    {
        const std::vector<CEPROPVAL> rows = {{Prop::AssocItem, item}, {Prop::AssocCategory, number}};
        ASSERT_TRUE(m_volume->WriteRecord(kCategoryAssocDatabase, 0, rows, {}, nullptr));
    }
    QString Read(quint32 itemId)
    {
        CAppointment item(kKindAppointment, CAppointment::Blank{});
        item.ItemId = itemId;
        m_store.Categories().ReadItemCategories(item);
        return m_store.Categories().GetNamesText(item.Categories);
    }
};
} // namespace

TEST_F(Categories, NamesAreOrderedUniqueAndFoundInAnyCase)
{
    WriteCategory(3, "travel");
    WriteCategory(1, "Work");
    WriteCategory(2, "Club");
    WriteCategory(4, "WORK");
    WriteCategory(5, "");
    OpenStore();
    CCategoryStore& store = m_store.Categories();
    ASSERT_EQ(store.GetCount(), 3);
    EXPECT_EQ(store.GetAt(0)->Name, "Club");
    EXPECT_EQ(store.GetAt(2)->Name, "Work");
    EXPECT_EQ(store.GetAt(3), nullptr);
    EXPECT_EQ(store.FindByName("TRAVEL")->Id, 3);
    EXPECT_EQ(store.FindByName("trave"), nullptr);
    EXPECT_EQ(store.FindById(4)->Name, "Work"); // the same category
    EXPECT_EQ(store.NumberOf("club"), 2);
    EXPECT_EQ(store.NameOf(99), std::nullopt);
}

TEST_F(Categories, ANewOneIsLocalUntilItIsStored)
{
    OpenStore();
    CCategoryStore& store = m_store.Categories();
    const qint32 first = store.AddLocal("Garden")->Id;
    EXPECT_LT(first, 0);
    EXPECT_EQ(store.AddLocal("GARDEN")->Id, first);
    EXPECT_LT(store.AddLocal("Boat")->Id, first);
    WriteCategory(7, "Garden");
    store.Load();
    EXPECT_EQ(store.FindByName("Garden")->Id, 7);
    EXPECT_EQ(store.FindById(first)->Name, "Garden"); // an editor may still hold the number
    EXPECT_EQ(store.GetCount(), 2);
    store.Load();
    EXPECT_EQ(store.FindById(first)->Id, 7); // however often
}

TEST_F(Categories, LocalOnesAreStoredOnce)
{
    WriteCategory(3, "Work");
    OpenStore();
    CCategoryStore& store = m_store.Categories();
    const qint32 garden = store.AddLocal("Garden")->Id;
    store.SetColor(garden, 0x00FF00);
    EXPECT_TRUE(store.StoreLocal());
    EXPECT_TRUE(store.StoreLocal());
    const qint32 stored = store.FindByName("Garden")->Id;
    EXPECT_GT(stored, 3);
    EXPECT_EQ(store.FindById(garden)->Id, stored);
    EXPECT_EQ(store.FindById(stored)->Color, 0x00FF00u);
    OpenStore();
    EXPECT_EQ(store.GetCount(), 2);
    EXPECT_EQ(store.FindByName("garden")->Id, stored);
}

TEST_F(Categories, AFilterFollowsALocalOneIntoTheStore)
{
    OpenStore();
    CCategoryStore& store = m_store.Categories();
    const qint32 garden = store.AddLocal("Garden")->Id, boat = store.AddLocal("Boat")->Id;
    g_Settings.m_filters.assign(2, CFilter());
    g_Settings.m_filters[1].IncludeIds = {garden, 3};
    g_Settings.m_filters[1].ExcludeIds = {boat};
    std::vector<CFilter> copy = g_Settings.m_filters; // of a form that is open
    WriteCategory(7, "garden");
    store.Load();
    EXPECT_EQ(g_Settings.m_filters[1].IncludeIds, (std::set<qint32>{3, 7}));
    EXPECT_EQ(g_Settings.m_filters[1].ExcludeIds, std::set<qint32>{boat});
    store.PutStoredNumbers(copy);
    EXPECT_EQ(copy[1].IncludeIds, (std::set<qint32>{3, 7}));
    g_Settings.m_filters.clear();
}

TEST_F(Categories, ALookThatIsNotSavedYetOutlivesANotice)
{
    WriteCategory(1, "Work");
    OpenStore();
    CCategoryStore& store = m_store.Categories();
    store.SetColor(1, 0x00FF00);
    store.SetImageName(1, "zip:a|b|c");
    WriteCategory(2, "Club");
    store.Load();
    EXPECT_EQ(store.FindByName("Work")->Color, 0x00FF00u);
    EXPECT_EQ(store.FindByName("Work")->ImageName, "zip:a|b|c");
    EXPECT_EQ(store.FindByName("Club")->Color, kColorNotSet);
    OpenStore(); // the program's next start
    EXPECT_EQ(store.FindByName("Work")->Color, kColorNotSet);
}

TEST_F(Categories, OfItemsInAnyOrderOfReading)
{
    for (int number = 1; number <= 4; ++number)
        WriteCategory(number, QByteArray(1, char('A' + number - 1)));
    OpenStore();
    for (quint32 item = 1; item <= 200; ++item) {
        for (int number = 1; number <= int(item % 4); ++number)
            Assign(0x40000000u + item * 3, number);
    }
    Assign(0xC0000003u, 4); // above 2^31
    const auto expected = [](quint32 item) {
        return QStringLiteral("A, B, C").left(item % 4 ? int(item % 4) * 3 - 2 : 0);
    };
    m_store.Categories().BeginPass();
    for (quint32 item = 1; item <= 200; ++item)
        ASSERT_EQ(Read(0x40000000u + item * 3), expected(item)) << item;
    for (int item = 200; item >= 1; item -= 3)
        ASSERT_EQ(Read(0x40000000u + quint32(item) * 3), expected(quint32(item))) << item;
    for (const quint32 item : {7u, 7u, 8u, 90u, 91u, 17u, 199u, 1u})
        ASSERT_EQ(Read(0x40000000u + item * 3), expected(item)) << item;
    EXPECT_EQ(Read(0x40000001u), "");
    EXPECT_EQ(Read(0xC0000003u), "D");
    EXPECT_EQ(Read(0xC0000004u), "");
    EXPECT_EQ(Read(0x40000000u + 3), "A");
}

TEST_F(Categories, AnUnknownNumberLoadsTheNamesAnewButOnlyOnce)
{
    OpenStore();
    WriteCategory(1, "Added elsewhere");
    Assign(0x40000001u, 1);
    Assign(0x40000002u, 77); // no such category any longer
    EXPECT_EQ(Read(0x40000001u), "Added elsewhere");
    EXPECT_EQ(Read(0x40000002u), "");
    const CCategory* before = m_store.Categories().GetAt(0);
    Read(0x40000002u);
    EXPECT_EQ(m_store.Categories().GetAt(0), before);
}

TEST(Filter, Matching)
{
    struct Case {
        int IncludeMode;
        std::set<qint32> Include;
        int ExcludeMode;
        std::set<qint32> Exclude;
        const char* Matches; // of the items without, {1}, {2}, {1,2}, {1,2,3}
    };
    const Case cases[] = {
        {0, {}, 0, {}, "11111"},     {0, {1}, 0, {}, "01011"},    {0, {1, 2}, 0, {}, "01111"},
        {1, {1, 2}, 0, {}, "00011"}, {2, {1, 2}, 0, {}, "00010"}, {2, {}, 0, {}, "10000"},
        {3, {1}, 0, {1}, "10000"},   {0, {}, 0, {2}, "11000"},    {0, {}, 1, {1, 2}, "11100"},
        {0, {}, 1, {}, "00000"},     {0, {}, 2, {1, 2}, "11101"}, {0, {}, 2, {}, "01111"},
        {0, {1}, 0, {3}, "01010"},
    };
    const std::vector<std::vector<qint32>> items = {{}, {1}, {2}, {1, 2}, {1, 2, 3}};
    for (const Case& c : cases) {
        CFilter filter;
        filter.IncludeMode = c.IncludeMode;
        filter.IncludeIds = c.Include;
        filter.ExcludeMode = c.ExcludeMode;
        filter.ExcludeIds = c.Exclude;
        std::string matches;
        for (const auto& numbers : items) {
            CCategorySet set;
            for (const qint32 number : numbers)
                set.Insert(number);
            matches += MatchesFilter(filter, set) ? '1' : '0';
        }
        EXPECT_EQ(matches, c.Matches)
            << "include mode " << c.IncludeMode << ", exclude mode " << c.ExcludeMode;
    }
}

TEST_F(Categories, TheFilterInForceHoldsForAllThatIsRead)
{
    WriteCategory(1, "Work");
    Assign(ItemIdOf(WritePlain("Work", "2026-03-10 10:00", 60)), 1);
    WritePlain("Home", "2026-03-10 11:00", 60);
    WriteSeries("Daily", Pattern("daily", "2026-03-01", 720, 60));
    OpenStore();
    const auto visible = [this](const char* iso) {
        QStringList subjects;
        for (const auto& item : m_store.FindDay(Day(iso))->Appointments) {
            if (item->Visible)
                subjects += item->Subject;
        }
        return subjects;
    };
    LoadDay("2026-03-10");
    EXPECT_EQ(visible("2026-03-10"), (QStringList{"Work", "Home", "Daily"}));
    g_Settings.m_activeFilter.IncludeIds = {1};
    m_store.ReapplyFilter();
    EXPECT_EQ(visible("2026-03-10"), QStringList{"Work"});
    EXPECT_EQ(m_store.FindDay(Day("2026-03-10"))->AppointmentCount, 1);
    WritePlain("Later", "2026-03-10 18:00", 60);
    m_store.DrainNotices();
    LoadDay("2026-04-20");
    EXPECT_EQ(visible("2026-03-10"), QStringList{"Work"});
    EXPECT_EQ(visible("2026-04-20"), QStringList());
    EXPECT_EQ(LinesOf("2026-04-20").size(), 1);
}

TEST(FilterMatch, ANewItemTakesWhatTheFilterIncludes)
{
    for (const int mode : {CFilter::kAnyOf, CFilter::kAllOf, CFilter::kOnly}) {
        CFilter filter;
        filter.IncludeMode = mode;
        filter.IncludeIds = {3, 1};
        filter.ExcludeIds = {2};
        CCalendarTask task;
        AddIncludesTo(filter, task);
        EXPECT_TRUE(MatchesFilter(filter, task.Categories)) << mode;
        AddIncludesTo(filter, task); // each once
        EXPECT_EQ(std::vector<qint32>(task.Categories.begin(), task.Categories.end()),
                  (std::vector<qint32>{1, 3}));
    }
}
