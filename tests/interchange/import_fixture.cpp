#include "interchange/import_fixture.h"

#include "records/property_numbers.h"

#include <algorithm>

namespace
{
std::string DateText(DATE date, bool allDay)
{
    SystemTime time;
    if (!VariantTimeToSystemTime(date, &time))
        return "none";
    const QString text = allDay ? QString::asprintf("%04d-%02d-%02d", time.wYear, time.wMonth, time.wDay)
                                : QString::asprintf("%04d-%02d-%02d %02d:%02d", time.wYear, time.wMonth,
                                                    time.wDay, time.wHour, time.wMinute);
    return text.toStdString();
}

std::string MinuteText(int minute)
{
    return QString::asprintf("%02d:%02d", minute / 60, minute % 60).toStdString();
}

std::string PatternText(const CRecurrencePattern& p)
{
    static const char* const kTypes[] = {"daily", "weekly", "monthly",   "monthly-nth",
                                         "?",     "yearly", "yearly-nth"};
    std::string text = std::string(kTypes[std::clamp(p.Type, 0, 6)]) + " " + std::to_string(p.Interval);
    if (p.DayMask)
        text += " mask " + std::to_string(p.DayMask);
    if (p.DayOfMonth)
        text += " day " + std::to_string(p.DayOfMonth);
    if (p.Instance)
        text += " nth " + std::to_string(p.Instance);
    text += " from " + DateText(p.PatternStart, true);
    if (p.EndKind != PatternEndKind::Never)
        text += (p.EndKind == PatternEndKind::Count ? " count " + std::to_string(p.Occurrences) + " to "
                                                    : " to ") +
                DateText(p.PatternEnd, true);
    text += " at " + MinuteText(p.StartMinute) + "-" + MinuteText(p.EndMinute) + " bias " +
            std::to_string(p.ZoneBias);
    for (const CRecurrenceException& e : p.Exceptions) {
        text += "; " + DateText(e.OriginalDay, true);
        if (e.Deleted) {
            text += " gone";
            continue;
        }
        text += " is " + DateText(e.Start, false) + ".." + DateText(e.End, false);
        if (e.HasSubject)
            text += " '" + e.Subject.toStdString() + "'";
        if (e.HasLocation)
            text += " @'" + e.Location.toStdString() + "'";
        if (e.HasBusyStatus)
            text += " busy " + std::to_string(e.BusyStatus);
        if (e.HasNoteFlag)
            text += " note '" + e.Note.toStdString() + "'";
    }
    return text;
}
} // namespace

std::string CImported::Counts() const
{
    return std::to_string(Created) + " created " + std::to_string(Updated) + " updated " +
           std::to_string(Unchanged) + " unchanged " + std::to_string(LeftOut) + " left out";
}

ImportTest::ImportTest()
{
    SystemTime now;
    now.wYear = 2026;
    now.wMonth = 3;
    now.wDay = 10;
    now.wHour = 9;
    FileTime utc = 0;
    SystemTimeToFileTime(now, &utc);
    m_clock.Set(utc);
    SetClock(&m_clock);
    TimeZoneInformation berlin;
    EXPECT_TRUE(ZoneRecordOf("Europe/Berlin", 2026, &berlin));
    m_zone = std::make_unique<CFixedTimeZone>(berlin);
    SetTimeZone(m_zone.get());
    FreshVolume();
}

void ImportTest::FreshVolume()
{
    m_app.reset();
    m_volume.reset();
    m_folder = std::make_unique<QTemporaryDir>();
    const CStatus status = CPropertyVolume::Open(m_folder->filePath(QStringLiteral("pim.vol")), PimSchema(),
                                                 CPropertyVolume::Mode::Create, m_volume);
    EXPECT_TRUE(status.IsOk()) << status.Text().toStdString();
    m_app = MakePOutlookApp(m_volume);
    EXPECT_TRUE(m_app->Logon().IsOk());
}

ImportTest::~ImportTest()
{
    m_app.reset();
    m_volume.reset();
    SetTimeZone(nullptr);
    SetClock(nullptr);
}

CImported ImportTest::ImportBytes(const std::string& bytes, const CCalendarImporter::Progress& progress)
{
    CImported result;
    CImportReport report([&](int line, const QString& text) {
        result.Told.push_back(std::to_string(line) + ": " + text.toStdString());
    });
    CCalendarImporter importer(*m_app, report);
    size_t at = 0;
    result.Result = importer.Import(
        [&](char* buffer, qint64 size) {
            const size_t got = std::min(size_t(size), bytes.size() - at);
            std::copy_n(bytes.data() + at, got, buffer);
            at += got;
            return qint64(got);
        },
        progress);
    result.Created = report.Created;
    result.Updated = report.Updated;
    result.Unchanged = report.Unchanged;
    result.LeftOut = report.LeftOutCount();
    return result;
}

std::string ImportTest::Calendar(const std::string& components)
{
    std::string text = "BEGIN:VCALENDAR\r\nVERSION:2.0\r\n";
    for (const char c : components + "\nEND:VCALENDAR\n")
        text += c == '\n' ? std::string("\r\n") : std::string(1, c);
    return text;
}

std::string ImportTest::Items(const std::string& uid)
{
    std::vector<std::pair<DATE, std::string>> lines;
    for (const CForeignKey& key : m_app->FindByUid(QString::fromStdString(uid))) {
        std::unique_ptr<IAppointment> item;
        EXPECT_TRUE(m_app->GetAppointmentFromOid(key.ItemId, item).IsOk());
        const bool allDay = item->get_AllDayEvent();
        std::string text = key.OccurrenceId.toStdString() + "|" + item->get_Subject().toStdString() + "|";
        text += item->get_IsRecurring()
                    ? PatternText(item->GetRecurrencePattern()->Pattern())
                    : DateText(item->get_Start(), allDay) + ".." + DateText(item->get_End(), allDay);
        lines.emplace_back(item->get_Start(), text + (allDay ? " all-day" : "") + "\n");
    }
    std::stable_sort(lines.begin(), lines.end(),
                     [](const auto& a, const auto& b) { return a.first < b.first; });
    std::string all;
    for (const auto& [start, text] : lines)
        all += text;
    return all;
}

std::unique_ptr<IAppointment> ImportTest::Open(const std::string& uid, size_t index)
{
    const std::vector<CForeignKey> keys = m_app->FindByUid(QString::fromStdString(uid));
    std::unique_ptr<IAppointment> item;
    EXPECT_LT(index, keys.size()) << uid;
    if (index < keys.size()) {
        EXPECT_TRUE(m_app->GetAppointmentFromOid(keys[index].ItemId, item).IsOk());
    }
    return item;
}

std::string ImportTest::Item(const std::string& uid)
{
    const auto item = Open(uid);
    if (!item)
        return {};
    const CForeignData& foreign = item->Foreign();
    std::string text =
        "subject=" + item->get_Subject().toStdString() + "\nlocation=" + item->get_Location().toStdString() +
        "\nnote=" + item->get_Body().toStdString() + "\nbusy=" + std::to_string(item->get_BusyStatus()) +
        "\nsensitivity=" + std::to_string(item->get_Sensitivity()) +
        "\ncategories=" + item->get_Categories().toStdString() + "\nreminder=" +
        (item->get_ReminderSet() ? std::to_string(item->get_ReminderMinutesBeforeStart()) : "none") +
        "\norganizer=" + foreign.Organizer.toStdString() + "\nattendees=";
    for (int i = 1; i <= item->get_Recipients()->get_Count(); ++i)
        text += item->get_Recipients()->Item(i)->get_Name().toStdString() + "<" +
                item->get_Recipients()->Item(i)->get_Address().toStdString() + ">";
    return text + "\nkept=" + foreign.Text.toStdString();
}

qint64 ImportTest::RecordCount()
{
    return m_volume->RecordCount(kAppointmentsDatabase);
}
