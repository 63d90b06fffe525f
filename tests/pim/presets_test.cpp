// Presets and plain records of a recurrence: written, read back and described.
#include "pim_fixture.h"

#include "platform/locale.h"
#include "util/catalogue.h"
#include "util/string_ids.h"
#include "util/string_store.h"

namespace
{
using Data = CRecurrencePatternData;

class Presets : public PimTest
{
protected:
    Presets()
    {
        OpenStore();
        m_app = MakePOutlookApp(m_volume);
        EXPECT_TRUE(m_app->Logon());
        UseLocale("en_US");
    }
    ~Presets() override
    {
        SetLocale(nullptr);
        LoadLanguageLibrary({}, {}, {});
    }
    void UseLocale(const char* name)
    {
        SetLocale(nullptr);
        m_locale = MakeLocale(name);
        SetLocale(m_locale.get());
    }
    std::unique_ptr<IAppointment> New(const char* start)
    {
        auto item = m_app->CreateAppointment();
        item->put_Start(At(start));
        item->put_End(At(start) + 1 / 24.0);
        return item;
    }
    // What the fields of a stored pattern are, its start and end.
    QString Stored(quint32 itemId)
    {
        std::unique_ptr<IAppointment> item;
        EXPECT_TRUE(m_app->GetAppointmentFromOid(itemId, item));
        if (!item || !item->get_IsRecurring())
            return "plain";
        const CRecurrencePattern& p = item->GetRecurrencePattern()->Pattern();
        return QString("%1 every %2 mask %3 day %4 nth %5 from %6 to %7")
            .arg(p.Type)
            .arg(p.Interval)
            .arg(p.DayMask)
            .arg(p.DayOfMonth)
            .arg(p.Instance)
            .arg(Iso(p.PatternStart).left(10), Iso(p.PatternEnd).left(10));
    }
    CAppointment ReadForEditing(quint32 itemId)
    {
        CAppointment item;
        const auto target = m_store.GetEditTarget(*m_app, itemId, 0, nullptr);
        EXPECT_TRUE(target);
        if (target)
            m_store.ReadAppointmentFromModel(*target, item);
        return item;
    }
    int PresetOf(const CAppointment& item, Data& data)
    {
        int preset = -7;
        EXPECT_TRUE(m_store.GetPresetIndex(m_app.get(), &item, nullptr, preset, data));
        return preset;
    }
    bool Save(const CAppointment& item, int preset, const Data* data = nullptr)
    {
        return m_store.SaveAppointment(m_app.get(), item, {}, preset, false, data, nullptr, 0, nullptr);
    }
    // A new item with that preset; the identifier.
    quint32 Write(const char* start, int preset, const Data* data = nullptr)
    {
        CAppointment item;
        item.Subject = "subject";
        item.Start = At(start);
        item.End = At(start) + 1 / 24.0;
        item.Recurrence = preset != 0;
        EXPECT_TRUE(Save(item, preset, data));
        m_store.LoadRange(Day(start), Day(start), Day(start));
        m_store.DrainNotices();
        const CDayItems* day = m_store.FindDay(Day(start));
        return day && !day->Appointments.empty() ? day->Appointments[0]->ItemId : 0;
    }

    std::unique_ptr<IPOutlookApp> m_app;
    std::unique_ptr<ILocale> m_locale;
};

// Wednesday the eleventh, and the last Saturday of a month.
struct PresetCase {
    int Preset;
    const char *Start, *Stored, *ListEn, *ListDe, *SentenceEn, *SentenceDe;
};
constexpr PresetCase kCases[] = {
    {0, "2026-03-11 10:00", "plain", "Occurs Once", "Einmalig", "", ""},
    {1, "2026-03-11 10:00", "0 every 1 mask 0 day 0 nth 0 from 2026-03-11 to 4500-12-31", "Every day",
     "Jeden Tag", "Every day, effective 3/11/26", "Täglich ab 11.03.26"},
    {2, "2026-03-11 10:00", "1 every 1 mask 8 day 0 nth 0 from 2026-03-11 to 4500-12-31", "Every Wednesday",
     "Jeden Mittwoch", "Every Wednesday effective 3/11/26", "Every Mittwoch effective 11.03.26"},
    {3, "2026-03-11 10:00", "1 every 2 mask 8 day 0 nth 0 from 2026-03-11 to 4500-12-31",
     "Wednesday every 2 weeks", "Mittwoch every 2 weeks", "Every 2 weeks on Wednesday effective 3/11/26",
     "Alle 2 Wochen am Mittwoch ab 11.03.26"},
    {4, "2026-03-11 10:00", "1 every 3 mask 8 day 0 nth 0 from 2026-03-11 to 4500-12-31",
     "Wednesday every 3 weeks", "Mittwoch every 3 weeks", "Every 3 weeks on Wednesday effective 3/11/26",
     "Alle 3 Wochen am Mittwoch ab 11.03.26"},
    {5, "2026-03-11 10:00", "3 every 1 mask 8 day 0 nth 2 from 2026-03-11 to 4500-12-31",
     "2nd Wednesday every month", "2. Mittwoch im Monat",
     "The second Wednesday of every 1 month(s) effective 3/11/26",
     "The zweite Mittwoch of every 1 month(s) effective 11.03.26"},
    {5, "2026-01-31 10:00", "3 every 1 mask 64 day 0 nth 5 from 2026-01-31 to 4500-12-31",
     "Last Saturday every month", "Last Samstag every month",
     "The last Saturday of every 1 month(s) effective 1/31/26",
     "The last Samstag of every 1 month(s) effective 31.01.26"},
    {6, "2026-03-11 10:00", "2 every 1 mask 0 day 11 nth 0 from 2026-03-11 to 4500-12-31",
     "Day 11 of every month", "Jeden 11. des Monats", "Day 11 of every 1 month(s) effective 3/11/26",
     "Day 11 of every 1 month(s) effective 11.03.26"},
    {7, "2026-03-11 10:00", "2 every 2 mask 0 day 11 nth 0 from 2026-03-11 to 4500-12-31",
     "Day 11 of every 2 months", "Day 11 of every 2 months", "Day 11 of every 2 month(s) effective 3/11/26",
     "Day 11 of every 2 month(s) effective 11.03.26"},
    {8, "2026-03-11 10:00", "2 every 3 mask 0 day 11 nth 0 from 2026-03-11 to 4500-12-31",
     "Day 11 of every 3 months", "Day 11 of every 3 months", "Day 11 of every 3 month(s) effective 3/11/26",
     "Day 11 of every 3 month(s) effective 11.03.26"},
    {9, "2026-03-11 10:00", "2 every 6 mask 0 day 11 nth 0 from 2026-03-11 to 4500-12-31",
     "Day 11 of every 6 months", "Day 11 of every 6 months", "Day 11 of every 6 month(s) effective 3/11/26",
     "Day 11 of every 6 month(s) effective 11.03.26"},
    {10, "2026-03-11 10:00", "5 every 12 mask 0 day 11 nth 0 from 2026-03-11 to 4500-12-31", "Every March 11",
     "Jeden 11. März", "Every March 11 effective 3/11/26", "Jeden 11. März ab 11.03.26"},
};
} // namespace

TEST_F(Presets, AreWrittenReadBackAndDescribed)
{
    const QString german = m_folder.filePath("lang/ActiveLang.qm");
    ASSERT_TRUE(MakeCatalogue(m_folder.filePath("source.ts"), german,
                              {{StrOccursOnce, "Einmalig"},
                               {StrPresetEveryDay, "Jeden Tag"},
                               {StrPresetEveryWeek, "Jeden %s"},
                               {StrPreset2ndOfMonth, "2. %s im Monat"},
                               {StrPresetMonthDay, "Jeden %d. des Monats"},
                               {StrPresetEveryYear, "Jeden %s"},
                               {StrOrdinalSecond, "zweite"},
                               {StrRecurEveryDay, "Täglich ab %s"},
                               {StrRecurEveryWeeks, "Alle %d Wochen am %s ab %s"},
                               {StrRecurYearDay, "Jeden %2$d. %1$s ab %3$s"}}));
    for (const PresetCase& c : kCases) {
        SCOPED_TRACE(QString("%1 from %2").arg(c.Preset).arg(c.Start).toStdString());
        const quint32 id = Write(c.Start, c.Preset);
        EXPECT_EQ(Stored(id), c.Stored);
        const CAppointment item = ReadForEditing(id);
        Data data;
        EXPECT_EQ(PresetOf(item, data), c.Preset);
        EXPECT_EQ(GetPresetTexts(item.Start).value(c.Preset), c.ListEn);
        EXPECT_EQ(m_store.GetRecurrenceText(id), c.SentenceEn);
        UseLocale("de_DE");
        LoadLanguageLibrary(m_folder.filePath("lang"), {}, "de_DE");
        EXPECT_EQ(FormatPreset(c.Preset, item.Start), c.ListDe);
        EXPECT_EQ(m_store.GetRecurrenceText(id), c.SentenceDe);
        UseLocale("en_US");
        LoadLanguageLibrary({}, {}, {});
        // The plain record of a preset writes the same pattern.
        if (c.Preset != 0) {
            auto again = New(c.Start);
            WritePreset(*again->GetRecurrencePattern(), kPresetCustom, item.Start, data);
            ASSERT_TRUE(again->Save());
            EXPECT_EQ(Stored(again->get_Oid()), c.Stored);
            EXPECT_TRUE(again->Delete());
        }
        std::unique_ptr<IAppointment> written;
        ASSERT_TRUE(m_app->GetAppointmentFromOid(id, written));
        EXPECT_TRUE(written->Delete());
        m_store.DrainNotices();
    }
    EXPECT_EQ(FormatPreset(kPresetCustom, At("2026-03-11")), "Custom Recurring Pattern...");
    EXPECT_EQ(FormatPreset(12, At("2026-03-11")) + FormatPreset(-1, At("2026-03-11")), "");
}

TEST_F(Presets, TheDayAndMonthOfAYearFollowTheLocale)
{
    const std::pair<const char*, const char*> cases[] = {
        {"en_GB", "Every 4 July"},    {"fr_FR", "Every 4 juillet"}, {"es_ES", "Every 4 de julio"},
        {"hu_HU", "Every július 4."}, {"ja_JP", "Every 7月4日"},    {"ru_RU", "Every 4 июля"},
        {"de_AT", "Every 4. Juli"},
    };
    for (const auto& [locale, text] : cases) {
        UseLocale(locale);
        EXPECT_EQ(FormatPreset(10, At("2026-07-04")), text) << locale;
    }
}

namespace
{
struct CustomCase {
    const char* Name;
    void (*Set)(Data&);
    const char *Stored, *Sentence;
};
// All over the default of Wednesday, 11 March 2026.
constexpr CustomCase kCustom[] = {
    {"every weekday", [](Data& d) { d.Interval = 0; },
     "1 every 1 mask 62 day 0 nth 0 from 2026-03-11 to 4500-12-31", "Every weekday, effective 3/11/26"},
    {"every third day up to a date", [](Data& d) { d.Interval = 3, d.EndType = 1; },
     "0 every 3 mask 0 day 0 nth 0 from 2026-03-11 to 2026-05-13", "Every 3 day(s) effective 3/11/26"},
    {"ten times", [](Data& d) { d.EndType = 2; },
     "0 every 1 mask 0 day 0 nth 0 from 2026-03-11 to 2026-03-20", "Every day, effective 3/11/26"},
    {"three days",
     [](Data& d) { d.PatternType = 1, d.Days = {true, true, false, false, false, false, true}; },
     "1 every 1 mask 67 day 0 nth 0 from 2026-03-14 to 4500-12-31",
     "Every Sunday, Monday and Saturday effective 3/14/26"},
    {"two days", [](Data& d) { d.PatternType = 1, d.Interval = 4, d.Days[0] = true; },
     "1 every 4 mask 9 day 0 nth 0 from 2026-03-11 to 4500-12-31",
     "Every 4 weeks on Sunday and Wednesday effective 3/11/26"},
    {"a week of no days takes the start's", [](Data& d) { d.PatternType = 1, d.Days = {}; },
     "1 every 1 mask 8 day 0 nth 0 from 2026-03-11 to 4500-12-31", "Every Wednesday effective 3/11/26"},
    {"the last day of a month",
     [](Data& d) { d.PatternType = 2, d.MonthlyKind = 1, d.Ordinal = 4, d.MonthlyDayKind = 0; },
     "3 every 1 mask 127 day 0 nth 5 from 2026-03-31 to 4500-12-31",
     "The last day of every 1 month(s) effective 3/31/26"},
    {"a weekend day, where the week begins on a Sunday",
     [](Data& d) {
         d.PatternType = 2, d.MonthlyKind = 1, d.Ordinal = 0, d.MonthlyDayKind = 2, d.Interval = 2;
     },
     "3 every 2 mask 96 day 0 nth 1 from 2026-05-01 to 4500-12-31",
     "The first weekend day of every 2 month(s) effective 5/1/26"},
    {"a day number", [](Data& d) { d.PatternType = 2, d.MonthDay = 31, d.Interval = 5; },
     "2 every 5 mask 0 day 31 nth 0 from 2026-03-31 to 4500-12-31",
     "Day 31 of every 5 month(s) effective 3/31/26"},
    {"a date of another month", [](Data& d) { d.PatternType = 3, d.YearMonthDate = 2, d.YearDay = 29; },
     "5 every 12 mask 0 day 29 nth 0 from 2027-02-28 to 4500-12-31", "Every February 29 effective 2/28/27"},
    {"an ordinal day of another month",
     [](Data& d) {
         d.PatternType = 3, d.YearlyKind = 1, d.Ordinal = 3, d.YearlyDayKind = 7, d.YearMonthOrdinal = 11,
         d.YearMonthDate = 5;
     },
     "6 every 12 mask 16 day 0 nth 4 from 2026-11-26 to 4500-12-31",
     "The fourth Thursday of November effective 11/26/26"},
    {"weeks of interval nought", [](Data& d) { d.PatternType = 1, d.Interval = 0; },
     "1 every 1 mask 8 day 0 nth 0 from 2026-03-11 to 4500-12-31", "Every Wednesday effective 3/11/26"},
    {"numbers that no form gives",
     [](Data& d) {
         d.PatternType = 3, d.YearlyKind = 1, d.Ordinal = 99, d.YearlyDayKind = 99, d.YearMonthOrdinal = 99;
     },
     "6 every 12 mask 127 day 0 nth 5 from 2026-03-31 to 4500-12-31",
     "The last day of March effective 3/31/26"},
};
} // namespace

TEST_F(Presets, ACustomRecordIsWrittenAndReadBack)
{
    for (const CustomCase& c : kCustom) {
        SCOPED_TRACE(c.Name);
        Data data = MakeDefaultPattern(At("2026-03-11 10:00"));
        c.Set(data);
        auto item = New("2026-03-11 10:00");
        WritePreset(*item->GetRecurrencePattern(), kPresetCustom, At("2026-03-11 10:00"), data);
        ASSERT_TRUE(item->Save());
        const quint32 id = item->get_Oid();
        EXPECT_EQ(Stored(id), c.Stored);
        EXPECT_EQ(m_store.GetRecurrenceText(id), c.Sentence);
        // What was read is a fixed point: it writes the same pattern and reads the same again.
        Data read = MakeDefaultPattern(At("2026-03-11 10:00"));
        ReadPatternData(read, *item->GetRecurrencePattern());
        WritePatternData(read, *item->GetRecurrencePattern());
        ASSERT_TRUE(item->Save());
        EXPECT_EQ(Stored(id), c.Stored);
        Data again = MakeDefaultPattern(At("2026-03-11 10:00"));
        ReadPatternData(again, *item->GetRecurrencePattern());
        EXPECT_EQ(read, again);
        EXPECT_TRUE(SameRecurrence(read, again));
    }
}

TEST_F(Presets, MasksAndDayKinds)
{
    struct Case {
        int Mask, Kind, Monday, Sunday; // the mask that the kind gives by the locale's first day
    };
    const Case cases[] = {
        {127, 0, 127, 127}, {62, 1, 62, 31}, {31, 1, 62, 31},  {65, 2, 65, 96},
        {96, 2, 65, 96},    {1, 3, 1, 1},    {64, 9, 64, 64},  {2, 4, 2, 2},
        {66, 9, 64, 64},    {12, 6, 8, 8},   {0, 0, 127, 127}, {255, 0, 127, 127},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(DayKindOfMask(c.Mask), c.Kind) << c.Mask;
        UseLocale("de_DE");
        EXPECT_EQ(MaskOfDayKind(c.Kind), c.Monday) << c.Mask;
        UseLocale("en_US");
        EXPECT_EQ(MaskOfDayKind(c.Kind), c.Sunday) << c.Mask;
    }
    EXPECT_EQ(MaskOfDayKind(10), 127);
    EXPECT_EQ(GetDayWord(2) + '/' + GetDayWord(3) + '/' + GetDayWord(9) + '/' + GetDayWord(10),
              "weekend day/Sunday/Saturday/day");
    EXPECT_EQ(GetOrdinalWord(4) + '/' + GetOrdinalWord(5) + '/' + GetOrdinalWord(-1), "last/first/first");
}

TEST_F(Presets, TheDefaultPatternComesFromTheDate)
{
    const Data data = MakeDefaultPattern(At("2026-02-28 12:30"));
    EXPECT_EQ(Iso(data.Start), "2026-02-28 12:30");
    EXPECT_EQ(Iso(data.EndDate), "2026-05-02 12:30");
    EXPECT_EQ(data.Days, (std::array<bool, 7>{false, false, false, false, false, false, true}));
    const quint32 numbers[] = {data.Interval,        data.PatternType,   data.EndType, data.Occurrences,
                               data.MonthlyKind,     data.MonthDay,      data.Ordinal, data.MonthlyDayKind,
                               data.YearlyKind,      data.YearMonthDate, data.YearDay, data.YearlyDayKind,
                               data.YearMonthOrdinal};
    const quint32 expected[] = {1, 0, 0, 10, 0, 28, 4, 9, 0, 2, 28, 9, 2};
    EXPECT_TRUE(std::equal(std::begin(numbers), std::end(numbers), std::begin(expected)));
}

// What almost is a preset.
TEST_F(Presets, AnythingElseIsCustom)
{
    using Change = void (*)(IRecurrencePattern&);
    const std::pair<int, Change> cases[] = {
        {1, [](auto& p) { p.put_PatternEndDate(At("2026-06-01")); }},
        {1, [](auto& p) { p.put_Occurrences(5); }},
        {1, [](auto& p) { p.put_Interval(2); }},
        {2, [](auto& p) { p.put_DayOfWeekMask(62); }},
        {4, [](auto& p) { p.put_Interval(4); }},
        {5, [](auto& p) { p.put_Interval(2); }},
        {5, [](auto& p) { p.put_Instance(3); }},
        {6, [](auto& p) { p.put_Interval(4); }},
        {6, [](auto& p) { p.put_DayOfMonth(12); }},
        {10, [](auto& p) { p.put_Interval(24); }}, // the record cannot tell it, the preset must not claim it
        {10, [](auto& p) { p.put_RecurrenceType(OlRecurs::YearlyNth); }},
    };
    for (const auto& [preset, change] : cases) {
        auto item = New("2026-03-11 10:00");
        IRecurrencePattern& pattern = *item->GetRecurrencePattern();
        WritePreset(pattern, preset, item->get_Start(), {});
        EXPECT_EQ(FindPreset(pattern, item->get_Start()), preset);
        change(pattern);
        EXPECT_EQ(FindPreset(pattern, item->get_Start()), kPresetCustom) << preset;
    }
}

// ---- through a save

TEST_F(Presets, AnUntouchedPatternSurvivesAnEditOfTheRest)
{
    // Mondays and Wednesdays, of which the record would keep the last alone, with a kept rule.
    auto item = New("2026-03-04 10:00");
    IRecurrencePattern& pattern = *item->GetRecurrencePattern();
    pattern.put_RecurrenceType(OlRecurs::MonthlyNth);
    pattern.put_DayOfWeekMask(10);
    pattern.put_Instance(2);
    CForeignData foreign;
    foreign.SourceRule = "FREQ=MONTHLY;BYDAY=MO,WE;BYSETPOS=2";
    foreign.Uid = "rule";
    item->put_Foreign(foreign);
    ASSERT_TRUE(item->Save());
    const quint32 id = item->get_Oid();
    const QString stored = Stored(id);
    const auto rule = [&] {
        std::unique_ptr<IAppointment> read;
        EXPECT_TRUE(m_app->GetAppointmentFromOid(id, read));
        return read->Foreign().SourceRule;
    };
    ASSERT_EQ(stored, "3 every 1 mask 10 day 0 nth 2 from 2026-03-04 to 4500-12-31");
    CAppointment edited = ReadForEditing(id);
    Data data = MakeDefaultPattern(edited.Start);
    ASSERT_EQ(PresetOf(edited, data), kPresetCustom);
    edited.Subject = "other";
    ASSERT_TRUE(Save(edited, kPresetCustom, &data));
    EXPECT_EQ(Stored(id), stored);
    EXPECT_EQ(rule(), foreign.SourceRule);
    // One that was touched is what the record says, and the kept rule goes.
    data.Interval = 2;
    ASSERT_TRUE(Save(edited, kPresetCustom, &data));
    EXPECT_EQ(Stored(id), "3 every 2 mask 8 day 0 nth 2 from 2026-03-11 to 4500-12-31");
    EXPECT_EQ(rule(), "");
}

TEST_F(Presets, EverySecondYearStaysSo)
{
    auto item = New("2026-03-11 10:00");
    IRecurrencePattern& pattern = *item->GetRecurrencePattern();
    pattern.put_RecurrenceType(OlRecurs::Yearly);
    pattern.put_Interval(24);
    ASSERT_TRUE(item->Save());
    const quint32 id = item->get_Oid();
    CAppointment edited = ReadForEditing(id);
    Data data;
    ASSERT_EQ(PresetOf(edited, data), kPresetCustom);
    data.YearDay = 12; // the form has no row for the years
    ASSERT_TRUE(Save(edited, kPresetCustom, &data));
    EXPECT_EQ(Stored(id), "5 every 24 mask 0 day 12 nth 0 from 2026-03-12 to 4500-12-31");
}

TEST_F(Presets, ANewStartMovesThePattern)
{
    const quint32 id = Write("2026-03-11 10:00", 2);
    CAppointment item = ReadForEditing(id);
    item.Start += 1.25;
    item.End += 1.25;
    ASSERT_TRUE(Save(item, 2));
    EXPECT_EQ(Stored(id), "1 every 1 mask 16 day 0 nth 0 from 2026-03-12 to 4500-12-31");
    EXPECT_EQ(Iso(ReadForEditing(id).Start), "2026-03-12 16:00");
    // A custom pattern keeps its days; its own start follows, unless it was put itself.
    Data data;
    item = ReadForEditing(id);
    PresetOf(item, data);
    data.Days[1] = true;
    ASSERT_TRUE(Save(item, kPresetCustom, &data));
    item = ReadForEditing(id);
    ASSERT_EQ(PresetOf(item, data), kPresetCustom);
    item.Start = At("2026-03-14 09:00");
    item.End = At("2026-03-14 11:00");
    ASSERT_TRUE(Save(item, kPresetCustom, &data));
    EXPECT_EQ(Stored(id), "1 every 1 mask 18 day 0 nth 0 from 2026-03-16 to 4500-12-31");
    EXPECT_EQ(Iso(ReadForEditing(id).End), "2026-03-16 11:00");
    item = ReadForEditing(id);
    PresetOf(item, data);
    data.Start = At("2026-04-01");
    ASSERT_TRUE(Save(item, kPresetCustom, &data));
    EXPECT_EQ(Stored(id), "1 every 1 mask 18 day 0 nth 0 from 2026-04-02 to 4500-12-31");
    // Times alone leave the days.
    item = ReadForEditing(id);
    PresetOf(item, data);
    item.Start += 1 / 24.0;
    ASSERT_TRUE(Save(item, kPresetCustom, &data));
    EXPECT_EQ(Iso(ReadForEditing(id).Start), "2026-04-02 10:00");
    // Back to once: the first occurrence stays.
    item = ReadForEditing(id);
    item.Recurrence = 0;
    ASSERT_TRUE(Save(item, 0));
    EXPECT_EQ(Stored(id), "plain");
    EXPECT_EQ(Iso(ReadForEditing(id).Start), "2026-04-02 10:00");
}

TEST_F(Presets, ASeriesOfAnotherZoneKeepsItsBytes)
{
    UseZone("Europe/Berlin");
    const CEOID oid =
        WriteSeries("far", Pattern("weekly", "2026-02-02", 20 * 60, 90), false, "America/New_York");
    const quint32 id = ItemIdOf(oid);
    const auto bytes = [&] {
        std::vector<CEPROPVAL> rows;
        EXPECT_TRUE(m_volume->ReadWholeRecord(kAppointmentsDatabase, oid, rows));
        QByteArray both;
        for (const CEPROPVAL& row : rows) {
            if (row.propid == Prop::Recurrence || row.propid == Prop::Zone)
                both += row.Bytes;
        }
        return both;
    };
    const QByteArray before = bytes();
    CAppointment item = ReadForEditing(id);
    EXPECT_EQ(Iso(item.Start), "2026-02-03 02:00"); // Monday evening there
    Data data;
    const int preset = PresetOf(item, data);
    EXPECT_EQ(preset, 2);
    EXPECT_EQ(FormatPreset(preset, item.Start), "Every Tuesday");
    item.Subject = "renamed";
    item.Location = "here";
    ASSERT_TRUE(Save(item, preset, &data));
    EXPECT_EQ(bytes(), before);
    EXPECT_EQ(ReadForEditing(id).Subject, "renamed");
    item.Start += 1 / 24.0;
    item.End += 1 / 24.0;
    ASSERT_TRUE(Save(item, preset, &data));
    EXPECT_NE(bytes(), before);
    item = ReadForEditing(id);
    EXPECT_EQ(Iso(item.Start) + " " + Iso(item.End), "2026-02-03 03:00 2026-02-03 04:30");
    LoadDay("2026-03-10"); // there the clocks have changed already, here not
    EXPECT_EQ(LinesOf("2026-03-10"), QStringList{"02:00-03:30 renamed"});
}

TEST_F(Presets, AnAllDaySeriesOfTwoDays)
{
    CAppointment item;
    item.Subject = "fair";
    item.AllDay = true;
    item.Start = At("2026-03-11");
    item.End = At("2026-03-13"); // the midnight after
    item.Recurrence = 1;
    ASSERT_TRUE(Save(item, 3));
    LoadDay("2026-03-25");
    m_store.DrainNotices();
    for (const char* day : {"2026-03-11", "2026-03-12", "2026-03-25", "2026-03-26"})
        EXPECT_EQ(LinesOf(day), QStringList{"all day fair"}) << day;
    for (const char* day : {"2026-03-10", "2026-03-13", "2026-03-18", "2026-03-27"})
        EXPECT_EQ(LinesOf(day), QStringList()) << day;
    // For editing the end is the last day itself, and goes back as the midnight after it.
    CAppointment read = ReadForEditing(m_store.FindDay(Day("2026-03-11"))->Appointments[0]->ItemId);
    EXPECT_EQ(Iso(read.End), "2026-03-12 00:00");
    read.AllDay = false;
    read.Start = At("2026-03-11 09:00");
    read.End = At("2026-03-11 10:00");
    ASSERT_TRUE(Save(read, 3));
    m_store.DrainNotices();
    EXPECT_EQ(LinesOf("2026-03-25"), QStringList{"09:00-10:00 fair"});
    EXPECT_EQ(LinesOf("2026-03-26"), QStringList());
}

TEST_F(Presets, AnOccurrenceLeavesThePatternAlone)
{
    const quint32 id = Write("2026-03-11 10:00", 1);
    CAppointment item = ReadForEditing(id);
    item.Start = At("2026-03-13 15:00");
    item.End = At("2026-03-13 16:00");
    item.Subject = "moved";
    item.ReminderSet = !item.ReminderSet;
    item.SetPrivate(true);
    const QString stored = Stored(id);
    ASSERT_TRUE(m_store.SaveAppointment(m_app.get(), item, "note", 0, true, nullptr, nullptr,
                                        Day("2026-03-13"), nullptr));
    EXPECT_EQ(Stored(id), stored);
    const CAppointment series = ReadForEditing(id);
    EXPECT_FALSE(series.IsPrivate());
    EXPECT_NE(series.ReminderSet, item.ReminderSet);
    EXPECT_EQ(series.Subject, "subject");
    LoadDay("2026-03-13");
    m_store.DrainNotices();
    EXPECT_EQ(LinesOf("2026-03-13"), QStringList{"15:00-16:00 moved"});
    EXPECT_EQ(LinesOf("2026-03-14"), QStringList{"10:00-11:00 subject"});
}

TEST_F(Presets, AnEmptySubjectStaysEmptyUntilOneIsGiven)
{
    const quint32 id = Write("2026-03-11 10:00", 0);
    std::unique_ptr<IAppointment> stored;
    ASSERT_TRUE(m_app->GetAppointmentFromOid(id, stored));
    stored->put_Subject({});
    ASSERT_TRUE(stored->Save());
    CAppointment item = ReadForEditing(id);
    EXPECT_EQ(item.Subject, "No subject");
    for (const char* subject : {"", "given", "No subject"}) {
        item.Location = QString("at ") + subject;
        item.Subject = *subject ? subject : item.Subject;
        ASSERT_TRUE(Save(item, 0));
        ASSERT_TRUE(m_app->GetAppointmentFromOid(id, stored));
        EXPECT_EQ(stored->get_Subject(), subject);
        EXPECT_EQ(stored->get_Location(), item.Location);
    }
}

// ---- tasks

TEST_F(Presets, OfATask)
{
    struct Case {
        const char *Start, *Due;
        int Preset;
        const char *Stored, *Dates;
    };
    const Case cases[] = {
        {"2026-03-09", "2026-03-11", 2, "1 every 1 mask 2 from 2026-03-09", "2026-03-09 2026-03-11"},
        {"", "2026-03-11", 2, "1 every 1 mask 8 from 2026-03-11", "none 2026-03-11"},
        {"", "2026-03-11", 10, "5 every 12 mask 0 from 2026-03-11", "none 2026-03-11"},
        {"", "", 1, "0 every 1 mask 0 from 2026-03-15", "none 2026-03-15"}, // today
    };
    for (const Case& c : cases) {
        CCalendarTask task;
        task.Subject = "task";
        task.Start = *c.Start ? At(c.Start) : NO_DATE;
        task.End = *c.Due ? At(c.Due) : NO_DATE;
        task.Recurrence = 1;
        ASSERT_TRUE(m_store.SaveTask(m_app.get(), task, "note", c.Preset, nullptr));
        m_store.DrainNotices();
        const auto& groups = m_store.GetTaskGroups();
        ASSERT_EQ(groups.size(), 1u);
        const quint32 id = groups.front()->Tasks.front()->ItemId;
        std::unique_ptr<ITask> item;
        ASSERT_TRUE(m_app->GetTaskFromOid(id, item));
        m_store.ReadTaskFromModel(*item, task);
        const auto date = [](DATE day) { return Iso(day).left(10); };
        const auto stored = [&] {
            EXPECT_TRUE(m_app->GetTaskFromOid(id, item));
            const CRecurrencePattern& p = item->GetRecurrencePattern()->Pattern();
            return QString("%1 every %2 mask %3 from %4")
                .arg(p.Type)
                .arg(p.Interval)
                .arg(p.DayMask)
                .arg(date(p.PatternStart));
        };
        EXPECT_EQ(stored(), c.Stored);
        EXPECT_EQ(date(task.Start) + ' ' + date(task.End), c.Dates);
        int preset = -1;
        Data data;
        EXPECT_TRUE(m_store.GetPresetIndex(m_app.get(), nullptr, &task, preset, data));
        EXPECT_EQ(preset, c.Preset);
        // Moved on, an edit of the rest leaves the pattern where it began; a new date moves it.
        ASSERT_TRUE(item->SkipRecurrence());
        m_store.ReadTaskFromModel(*item, task);
        task.Subject = "other";
        ASSERT_TRUE(m_store.SaveTask(m_app.get(), task, {}, preset, &data));
        EXPECT_EQ(stored(), c.Stored);
        EXPECT_EQ(item->get_Body(), "");
        task.Start = task.Start == NO_DATE ? NO_DATE : task.Start + 1;
        task.End += 1;
        ASSERT_TRUE(m_store.SaveTask(m_app.get(), task, {}, preset, &data));
        EXPECT_NE(stored(), c.Stored);
        m_store.ReadTaskFromModel(*item, task);
        EXPECT_EQ(date(item->GetRecurrencePattern()->get_PatternStartDate()),
                  date(task.Start != NO_DATE ? task.Start : task.End));
        task.Recurrence = 0;
        ASSERT_TRUE(m_store.SaveTask(m_app.get(), task, {}, 0, nullptr));
        EXPECT_EQ(m_store.GetRecurrenceText(id), "");
        EXPECT_TRUE(m_app->GetTaskFromOid(id, item) && item->Delete());
        m_store.DrainNotices();
    }
}

TEST_F(Presets, WithoutAnItemThereIsNone)
{
    int preset = 5;
    Data data = MakeDefaultPattern(At("2026-03-11"));
    const Data before = data;
    CAppointment item;
    item.Recurrence = 1;
    item.ItemId = kAppointmentTag + 77;
    for (IPOutlookApp* app : {m_app.get(), static_cast<IPOutlookApp*>(nullptr)}) {
        for (const CAppointment* appointment : {&item, static_cast<CAppointment*>(nullptr)}) {
            preset = 5;
            EXPECT_TRUE(m_store.GetPresetIndex(app, appointment, nullptr, preset, data));
            EXPECT_EQ(preset, 0);
        }
    }
    EXPECT_EQ(data, before);
    EXPECT_EQ(m_store.GetRecurrenceText(kTaskTag + 5), "");
    EXPECT_EQ(m_store.GetRecurrenceText(0), "");
}
