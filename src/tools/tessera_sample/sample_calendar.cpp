#include "tools/tessera_sample/sample_calendar.h"
#include "settings/settings.h"
#include "settings/settings_path.h"
#include "util/date_time.h"

#include <QDir>
#include <QFileInfo>

namespace
{
constexpr int kMinutesPerDay = 1440;
constexpr int At(int hour, int minute = 0) { return hour * 60 + minute; }

enum Busy { kFree, kTentative, kBusy, kOutOfOffice };
enum Flag : unsigned { kNone = 0, kAllDay = 1, kPrivate = 2, kAttendees = 4 };
constexpr int kNoReminder = -1;

struct CSampleItem {
    int Day;     // from today
    int Start;   // minutes after midnight
    int Minutes; // of an all-day item: whole days of minutes
    const char* Subject;
    const char* Location;
    const char* Categories;
    Busy Status;
    int Reminder; // minutes before the start
    unsigned Flags;
    const char* Note;
};

constexpr CSampleItem kItems[] = {
    {-1, 0, 4 * kMinutesPerDay, "Ann is in town", "", "Family", kFree, kNoReminder, kAllDay, ""},
    {0, At(10), 90, "Project review", "Room 12", "Work", kBusy, 15, kAttendees,
     "Bring the figures of the last month.\nSlides: http://www.example.org/review\nDial in: 030 5550 1234"},
    {0, At(11), 15, "Call the dentist", "", "Private", kTentative, 5, kNone, "030 5550 4711"},
    {0, At(12, 30), 60, "Lunch with Peter", "Cafe Nord", "Private", kBusy, 30, kNone, ""},
    {0, At(14), 150, "Write the quarterly report", "", "Work", kBusy, kNoReminder, kNone, ""},
    {0, At(18), 45, "Pick up the bicycle", "Harbour Street 7", "", kFree, 60, kNone, "The receipt is in the wallet."},
    {0, At(20), 150, "Cinema", "Old Harbour", "Friends", kOutOfOffice, kNoReminder, kPrivate, ""},
    {-1, At(9), 45, "Interview", "Room 3", "Work", kBusy, 15, kAttendees, ""},
    {-1, At(15), 60, "Vet", "", "Family", kBusy, 30, kNone, ""},
    {-2, 0, kMinutesPerDay, "Tax return", "", "Private", kFree, kNoReminder, kAllDay, "Ask for the new form."},
    {1, At(8, 30), 30, "School: parents' morning", "Gymnasium", "Family", kBusy, 60, kNone, ""},
    {1, At(13), 120, "Workshop", "Town Hall", "Work", kTentative, 15, kAttendees, ""},
    {1, At(22, 10), 560, "Night train to Vienna", "Main station, platform 4", "Travel", kOutOfOffice, 120, kNone,
     "Carriage 262, berth 31"},
    {2, 0, 3 * kMinutesPerDay, "Conference", "Vienna", "Work, Travel", kOutOfOffice, kNoReminder, kAllDay, ""},
    {3, At(19), 180, "Dinner with the speakers", "Am Ufer", "Work, Friends", kBusy, 60, kNone, ""},
    {5, At(17), 60, "Haircut", "", "Private", kBusy, 30, kNone, ""},
    {6, At(0), 30, "Server maintenance", "", "Work", kTentative, 15, kNone, ""},
    {9, At(11), 90, "House inspection", "", "", kBusy, 1440, kNone, ""},
    {-6, At(18), 120, "Choir concert", "St. Mary", "Friends", kBusy, kNoReminder, kNone, ""},
};

enum Day : int { kSunday = 1, kMonday = 2, kTuesday = 4, kWednesday = 8, kThursday = 16, kFriday = 32, kSaturday = 64 };
constexpr int kThatDay = 0; // the mask of the weekday on which the series begins

struct CSampleSeries {
    CSampleItem First;
    OlRecurs Type;
    int Interval;
    int Mask;       // weekly and nth
    int Instance;   // nth
    int Occurrences; // 0: without an end
    int Skipped;     // the occurrence that many days from today is deleted; 0 none
};

constexpr CSampleSeries kSeries[] = {
    {{-56, At(9, 15), 15, "Stand-up meeting", "Room 12", "Work", kBusy, 5, kNone, ""},
     OlRecurs::Weekly, 1, kMonday | kTuesday | kWednesday | kThursday | kFriday, 0, 0, 0},
    {{-28, At(17, 30), 60, "Piano lesson", "Music school", "Family", kBusy, 30, kNone, ""}, OlRecurs::Weekly, 1, kThatDay, 0, 0, 7},
    {{-20, At(7), 60, "Gym", "", "Private", kFree, kNoReminder, kNone, ""}, OlRecurs::Daily, 2, 0, 0, 40, 2},
    {{-365, 0, kMinutesPerDay, "Pay the rent", "", "Private", kFree, 480, kAllDay, ""}, OlRecurs::Monthly, 1, 0, 0, 0, 0},
    {{-70, At(19, 30), 150, "Chess club", "Town Hall", "Friends", kBusy, kNoReminder, kNone, ""},
     OlRecurs::MonthlyNth, 1, kThatDay, 2, 0, 0},
    {{-1461 + 4, 0, kMinutesPerDay, "Wedding day of Ann and Peter", "", "Family", kFree, 1440, kAllDay, ""},
     OlRecurs::Yearly, 12, 0, 0, 0, 0},
};

constexpr int kNoDate = 10000;
constexpr struct {
    int Start, Due; // days from today, kNoDate for none
    const char* Subject;
    const char* Categories;
    int Importance; // 0 low, 1 normal, 2 high
    bool Complete;
    int EveryDays; // 0: once
} kTasks[] = {
    {kNoDate, -2, "Pay the electricity bill", "Private", 2, false, 0},
    {kNoDate, 0, "Water the plants", "Family", 1, false, 7},
    {-1, 3, "Prepare the talk", "Work", 1, false, 0},
    {kNoDate, 0, "Order the tickets", "Travel", 1, true, 0},
    {kNoDate, kNoDate, "Renew the passport", "Private", 0, false, 0},
};

constexpr struct {
    const char* Name;
    int Birthday, Anniversary; // days from today, kNoDate for none
    int YearsAgo;
} kContacts[] = {{"Anna Berg", 0, kNoDate, 34}, {"Mira Holt", 12, kNoDate, 41}, {"Ana and Luis Sousa", kNoDate, 2, 9}};

constexpr struct {
    const char *Name, *Address;
} kAttendeeList[] = {{"Mira Holt", "mira@example.org"}, {"Jonas Weber", "jonas@example.org"}, {"Ana Sousa", "ana@example.org"}};

constexpr struct {
    const char* Category;
    COLORREF Color;
} kCategoryColors[] = {{"Family", Rgb(0x2A, 0x78, 0x12)}, {"Friends", Rgb(0x6A, 0x4F, 0xA3)}, {"Private", Rgb(0xAA, 0x0A, 0x0A)},
                       {"Travel", Rgb(0xC9, 0x8A, 0x1B)}, {"Work", Rgb(0x2F, 0x7F, 0xB8)}};

void PutItem(IAppointment& item, const CSampleItem& sample, int day)
{
    const DATE start = day + double(sample.Start) / kMinutesPerDay;
    item.put_Subject(QString::fromUtf8(sample.Subject));
    item.put_Location(QString::fromUtf8(sample.Location));
    item.put_Start(start);
    item.put_End(start + double(sample.Minutes) / kMinutesPerDay);
    item.put_AllDayEvent(sample.Flags & kAllDay);
    item.put_BusyStatus(sample.Status);
    item.put_Sensitivity(sample.Flags & kPrivate ? 2 : 0);
    item.put_Categories(QString::fromUtf8(sample.Categories));
    item.put_Body(QString::fromUtf8(sample.Note));
    item.put_ReminderSet(sample.Reminder != kNoReminder);
    if (sample.Reminder != kNoReminder)
        item.put_ReminderMinutesBeforeStart(sample.Reminder);
    if (sample.Flags & kAttendees) {
        for (const auto& attendee : kAttendeeList)
            item.get_Recipients()->Add(QString::fromUtf8(attendee.Name))->put_Address(QString::fromUtf8(attendee.Address));
    }
}

// The first day from the series' start on that its pattern has.
int FirstDayOf(const CSampleSeries& series, int today)
{
    int day = today + series.First.Day;
    while (series.Type == OlRecurs::Weekly && series.Mask != kThatDay && !(series.Mask & 1 << DayOfWeekOf(day)))
        ++day;
    return day;
}

CStatus SaveSeries(IPOutlookApp& app, const CSampleSeries& series, int today)
{
    const int day = FirstDayOf(series, today);
    const SystemTime start = SystemTimeOf(day);
    const std::unique_ptr<IAppointment> item = app.CreateAppointment();
    PutItem(*item, series.First, day);
    IRecurrencePattern* pattern = item->GetRecurrencePattern();
    pattern->put_RecurrenceType(series.Type);
    pattern->put_Interval(series.Interval);
    if (series.Type == OlRecurs::Weekly || series.Type == OlRecurs::MonthlyNth)
        pattern->put_DayOfWeekMask(series.Mask ? series.Mask : 1 << DayOfWeekOf(day));
    if (series.Type == OlRecurs::MonthlyNth)
        pattern->put_Instance(series.Instance);
    if (series.Type == OlRecurs::Monthly)
        pattern->put_DayOfMonth(1);
    if (series.Type == OlRecurs::Yearly) {
        pattern->put_DayOfMonth(start.wDay);
        pattern->put_MonthOfYear(start.wMonth);
    }
    if (series.Occurrences)
        pattern->put_Occurrences(series.Occurrences);
    else
        pattern->put_NoEndDate(true);
    if (CStatus saved = item->Save(); !saved || series.Skipped == 0)
        return saved;
    std::unique_ptr<IAppointment> skipped;
    if (!pattern->GetOccurrence(today + series.Skipped, skipped))
        return {};
    return skipped->Delete();
}

// The same day of an earlier year; 29 February becomes the 28th where it must.
DATE YearsBefore(int day, int years)
{
    const SystemTime date = SystemTimeOf(day);
    const bool leapDay = date.wMonth == 2 && date.wDay == 29;
    return DayNumberOf(date.wYear - years, date.wMonth, leapDay ? 28 : date.wDay);
}

CStatus WriteTasks(IPOutlookApp& app, int today)
{
    for (const auto& sample : kTasks) {
        const std::unique_ptr<ITask> task = app.CreateTask();
        task->put_Subject(QString::fromUtf8(sample.Subject));
        task->put_StartDate(sample.Start == kNoDate ? NO_DATE : today + sample.Start);
        task->put_DueDate(sample.Due == kNoDate ? NO_DATE : today + sample.Due);
        task->put_Categories(QString::fromUtf8(sample.Categories));
        task->put_Importance(sample.Importance);
        task->put_Complete(sample.Complete);
        if (sample.EveryDays) {
            task->GetRecurrencePattern()->put_RecurrenceType(OlRecurs::Daily);
            task->GetRecurrencePattern()->put_Interval(sample.EveryDays);
            task->GetRecurrencePattern()->put_NoEndDate(true);
        }
        if (CStatus saved = task->Save(); !saved)
            return saved;
    }
    return {};
}

CStatus WriteContacts(IPOutlookApp& app, int today)
{
    for (const auto& sample : kContacts) {
        const std::unique_ptr<IContact> contact = app.CreateContact();
        contact->put_FileAs(QString::fromUtf8(sample.Name));
        if (sample.Birthday != kNoDate)
            contact->put_Birthday(YearsBefore(today + sample.Birthday, sample.YearsAgo));
        if (sample.Anniversary != kNoDate)
            contact->put_Anniversary(YearsBefore(today + sample.Anniversary, sample.YearsAgo));
        if (CStatus saved = contact->Save(); !saved)
            return saved;
    }
    return {};
}

CStatus WriteAll(IPOutlookApp& app, int today)
{
    if (CStatus written = WriteTasks(app, today); !written)
        return written;
    if (CStatus written = WriteContacts(app, today); !written)
        return written;
    for (const CSampleItem& sample : kItems) {
        const std::unique_ptr<IAppointment> item = app.CreateAppointment();
        PutItem(*item, sample, today + sample.Day);
        if (CStatus saved = item->Save(); !saved)
            return saved;
    }
    for (const CSampleSeries& series : kSeries) {
        if (CStatus saved = SaveSeries(app, series, today); !saved)
            return saved;
    }
    return {};
}
} // namespace

CStatus WriteSampleCalendar(IPOutlookApp& app, int today, int* written)
{
    if (CStatus begun = app.BeginBatch(); !begun)
        return begun;
    if (CStatus failed = WriteAll(app, today); !failed) {
        app.AbandonBatch();
        return failed;
    }
    *written = int(std::size(kItems) + std::size(kSeries) + std::size(kTasks) + std::size(kContacts));
    return app.CommitBatch();
}

void WriteSampleSettings()
{
    g_Settings.Load(false);
    const QString file = g_Settings.m_installFolder + u'/' + kSettingsFileName;
    if (g_Settings.m_installFolder.isEmpty() || QFileInfo::exists(file) || !QDir().mkpath(g_Settings.m_installFolder))
        return;
    g_Settings.LoadFilters();
    for (const auto& row : kCategoryColors)
        g_Settings.m_categories[QString::fromLatin1(row.Category)].Color = row.Color;
    g_Settings.Save();
}
