// Birthdays and anniversaries: which day, which age, which text, and what notices make of them.
#include "pim/contact_list.h"
#include "pim/view_mask.h"
#include "pim_fixture.h"

namespace
{
class SpecialEvents : public PimTest
{
protected:
    CEOID WriteContact(const QString& name, const char* birthday, const char* anniversary = nullptr,
                       CEOID oid = 0)
    {
        std::vector<CEPROPVAL> rows{{Prop::ContactName, name}};
        if (birthday)
            rows.emplace_back(Prop::ContactBirthday, qint64(FileTimeOfDate(At(birthday))));
        if (anniversary)
            rows.emplace_back(Prop::ContactAnniversary, qint64(FileTimeOfDate(At(anniversary))));
        CEOID written = 0;
        EXPECT_TRUE(m_volume->WriteRecord(kContactsDatabase, oid, rows, {}, &written));
        return written;
    }
};

struct DayCase {
    const char *Date, *First, *Last, *Day; // Day null: none
    int Age;
};
constexpr DayCase kDays[] = {
    {"1980-03-22", "2026-03-01", "2026-04-04", "2026-03-22", 46},
    {"1980-03-22", "2026-03-22", "2026-03-22", "2026-03-22", 46},
    {"1980-03-22", "2026-03-23", "2026-04-30", nullptr, 0},
    {"2026-03-22", "2026-03-01", "2026-03-31", "2026-03-22", 0},
    {"2027-03-22", "2026-03-01", "2026-03-31", nullptr, 0},
    {"1990-01-03", "2025-12-28", "2026-01-31", "2026-01-03", 36},
    {"1990-12-30", "2025-12-28", "2026-01-31", "2025-12-30", 35},
    {"2026-12-30", "2025-12-28", "2026-01-31", nullptr, 0},
    {"2000-02-29", "2026-02-01", "2026-02-28", "2026-02-28", 26},
    {"2000-02-29", "2028-02-01", "2028-02-28", "2028-02-28", 28},
    {"2000-02-29", "2028-02-29", "2028-03-31", nullptr, 0},
    {"1850-06-01", "2026-06-01", "2026-06-30", "2026-06-01", 176},
    {"1899-12-30", "1899-12-01", "1900-01-31", "1899-12-30", 0},
    {"1604-02-29", "2026-02-01", "2026-02-28", "2026-02-28", -1}, // the year is not known
};
} // namespace

TEST(SpecialDay, FallsInTheRightYearWithTheRightAge)
{
    for (const DayCase& c : kDays) {
        CSpecialDay at;
        const bool found = FindSpecialDay(Day(c.Date), Day(c.First), Day(c.Last), &at);
        ASSERT_EQ(found, c.Day != nullptr) << c.Date << " in " << c.First;
        if (!found)
            continue;
        EXPECT_EQ(std::pair(at.Day, at.Age), std::pair(Day(c.Day), c.Age)) << c.Date << " in " << c.First;
    }
    CSpecialDay at;
    EXPECT_FALSE(FindSpecialDay(int(NO_DATE), Day("4500-12-01"), Day("4501-01-31"), &at));
}

TEST(SpecialDay, SubjectTakesTheNameAsItStands)
{
    EXPECT_EQ(SpecialEventSubject(kKindBirthday, "50%d %s", 7), "50%d %s B.D. (7)");
    EXPECT_EQ(SpecialEventSubject(kKindAnniversary, "Ann", 0), "Ann Ann. (0)");
    EXPECT_EQ(SpecialEventSubject(kKindBirthday, "Ann", -1), "Ann B.D.");
    EXPECT_EQ(SpecialEventSubject(kKindAnniversary, "Ann", -1), "Ann Ann.");
}

TEST(SearchKeys, FoldAccentsAndMapToThePhonesKeys)
{
    struct {
        QString Name, Key, Compact, Keypad, KeypadCompact;
    } const kCases[] = {
        {"Ängström-Ö 7", "angstrom o 7", "angstromo7", "264787661617", "2647876667"},
        {"Straße", "strase", "strase", "787273", "787273"},
        {"Ñandú Łu", "nandu  u", "nanduu",
         "626381"
         "18",
         "626388"},
        {"PqrS tuv WXYZ", "pqrs tuv wxyz", "pqrstuvwxyz", "7777188819999", "77778889999"},
    };
    for (const auto& c : kCases) {
        CContactInfo contact;
        contact.Name = c.Name;
        contact.BuildSearchKeys(false);
        EXPECT_EQ(contact.SearchKey, c.Key);
        EXPECT_EQ(contact.SearchKeyCompact, c.Compact);
        contact.BuildSearchKeys(true);
        EXPECT_EQ(contact.SearchKey, c.Keypad) << qPrintable(c.Name);
        EXPECT_EQ(contact.SearchKeyCompact, c.KeypadCompact);
    }
}

TEST_F(SpecialEvents, StandAheadOfTimedItemsAndOfOneContactBothKinds)
{
    UseZone("America/New_York"); // dates know no zone
    OpenStore();
    WriteContact("Married on her birthday", "1980-03-22", "2005-03-22");
    WriteContact("", "1980-03-22");
    WriteContact("No dates", nullptr);
    WritePlain("Call", "2026-03-22 10:00", 30);
    LoadDay("2026-03-22");
    const CDayItems* day = m_store.FindDay(Day("2026-03-22"));
    ASSERT_TRUE(day);
    EXPECT_EQ(day->Appointments.size(), 3u);
    EXPECT_EQ(Lines(day).filter("all day"), (QStringList{"all day Married on her birthday B.D. (46)",
                                                         "all day Married on her birthday Ann. (21)"}));
    EXPECT_EQ(Lines(day).last().right(4), "Call");
    const CAppointment& event = *day->Appointments.front();
    EXPECT_EQ(event.Kind, kKindBirthday);
    EXPECT_EQ(event.Start, event.End);
    EXPECT_EQ(event.BusyStatus, 0);
    EXPECT_EQ(event.ItemId, 1 + kContactTag);
}

TEST_F(SpecialEvents, SettingKeepsThemAwayUntilTheNextLoad)
{
    g_Settings.General.IncludeSpecialEvents = 0;
    OpenStore();
    WriteContact("Anna", "1980-03-22");
    LoadDay("2026-03-22");
    EXPECT_EQ(LinesOf("2026-03-22"), QStringList());
    EXPECT_EQ(m_store.Contacts().size(), 1u); // by force
    g_Settings.General.IncludeSpecialEvents = 1;
    m_store.Clear();
    LoadDay("2026-03-22");
    EXPECT_EQ(LinesOf("2026-03-22"), QStringList{"all day Anna B.D. (46)"});
}

TEST_F(SpecialEvents, RangesThatGrowHoldEachOnce)
{
    OpenStore();
    WriteContact("Winter", "1990-01-03");
    WriteContact("Last day", "1990-12-31");
    m_store.LoadRange(Day("2025-12-15"), Day("2025-12-15"), Day("2025-12-15"));
    EXPECT_EQ(LinesOf("2025-12-31"), QStringList{"all day Last day B.D. (35)"});
    m_store.LoadRange(Day("2026-01-15"), Day("2026-01-15"), Day("2026-01-15"));
    EXPECT_EQ(LinesOf("2026-01-03"), QStringList{"all day Winter B.D. (36)"});
    EXPECT_EQ(LinesOf("2025-12-31"), QStringList{"all day Last day B.D. (35)"});
}

TEST_F(SpecialEvents, ListIsSortedByNameWithoutRegardToCase)
{
    OpenStore();
    for (const char* name : {"berta", "Caesar", "Anton", "anna"})
        WriteContact(name, nullptr);
    QStringList names;
    for (const CContactInfo& contact : m_store.Contacts())
        names += contact.Name;
    EXPECT_EQ(names, (QStringList{"anna", "Anton", "berta", "Caesar"}));
}

TEST_F(SpecialEvents, NoticesMoveThemAndTellTheViews)
{
    OpenStore();
    LoadDay("2026-03-22"); // the list is still empty
    const CEOID anna = WriteContact("Anna", "1980-03-22");
    WriteContact("Berta", "1980-03-24");
    EXPECT_EQ(m_store.DrainNotices().Mask, kMaskDaily | kMaskListWeek | kMaskMonth);
    EXPECT_EQ(LinesOf("2026-03-22"), QStringList{"all day Anna B.D. (46)"});
    EXPECT_EQ(LinesOf("2026-03-24"), QStringList{"all day Berta B.D. (46)"});

    WriteContact("Anna", "1981-03-23", nullptr, anna);
    EXPECT_EQ(m_store.DrainNotices().Mask, kMaskDaily | kMaskListWeek | kMaskMonth);
    EXPECT_EQ(LinesOf("2026-03-22"), QStringList());
    EXPECT_EQ(LinesOf("2026-03-23"), QStringList{"all day Anna B.D. (45)"});
    EXPECT_EQ(m_store.Contacts().size(), 2u);

    WriteContact("Anna", "1981-08-01", nullptr, anna);
    EXPECT_EQ(m_store.DrainNotices().Mask, kMaskListWeek | kMaskMonth);
    WriteContact("Anna", "1981-09-01", nullptr, anna); // no cached day then or now
    EXPECT_EQ(m_store.DrainNotices().Mask, 0);
    EXPECT_TRUE(m_volume->DeleteRecord(kContactsDatabase, anna));
    EXPECT_EQ(m_store.DrainNotices().Mask, 0);
    EXPECT_EQ(m_store.Contacts().size(), 1u);
}

TEST_F(SpecialEvents, CarryTheContactsCategories)
{
    OpenStore();
    WriteContact("Anna", "1980-03-22");
    CEOID written = 0;
    const CEPROPVAL name[] = {{Prop::CategoryName, QStringLiteral("Friends")}};
    ASSERT_TRUE(m_volume->WriteRecord(kCategoryDatabase, 0, name, {}, &written));
    const CEPROPVAL assoc[] = {{Prop::AssocItem, qint64(1 + kContactTag)}, {Prop::AssocCategory, qint64(1)}};
    ASSERT_TRUE(m_volume->WriteRecord(kCategoryAssocDatabase, 0, assoc, {}, &written));
    m_store.Categories().Load();
    LoadDay("2026-03-22");
    const CDayItems* day = m_store.FindDay(Day("2026-03-22"));
    ASSERT_EQ(day->Appointments.size(), 1u);
    EXPECT_TRUE(day->Appointments[0]->Categories.Contains(1));
    EXPECT_EQ(day->AppointmentCount, 1);
}

TEST_F(SpecialEvents, ADuplicateOfAContactHasItsNoteAndItsEvents)
{
    OpenStore();
    const CPoomSession session(m_volume);
    ASSERT_TRUE(session.App());
    const auto contact = session.App()->CreateContact();
    contact->put_FileAs("Ada");
    contact->put_Birthday(At("1990-03-22"));
    contact->put_Body("likes tea");
    ASSERT_TRUE(contact->Save());
    ASSERT_TRUE(m_store.DuplicateItem(*session.App(), contact->get_Oid()));
    EXPECT_FALSE(m_store.DuplicateItem(*session.App(), contact->get_Oid() + 7));
    LoadDay("2026-03-22");
    EXPECT_EQ(LinesOf("2026-03-22"), (QStringList{"all day Ada B.D. (36)", "all day Ada B.D. (36)"}));
    std::unique_ptr<IContact> copy;
    ASSERT_TRUE(session.App()->GetContactFromOid(contact->get_Oid() + 1, copy));
    EXPECT_EQ(copy->get_Body(), "likes tea");
}
