#include "pim_fixture.h"

#include "records/recurrence_blob.h"

int Day(const char* iso)
{
    return DayNumber(At(iso));
}

DATE At(const char* iso)
{
    int year = 0, month = 0, day = 0, hour = 0, minute = 0;
    EXPECT_GE(std::sscanf(iso, "%d-%d-%d %d:%d", &year, &month, &day, &hour, &minute), 3) << iso;
    return DayNumberOf(year, month, day) + (hour * 3600 + minute * 60) / 86400.0;
}

QString Iso(DATE date)
{
    if (date == NO_DATE)
        return QStringLiteral("none");
    const SystemTime t = SystemTimeOf(date);
    return QString::asprintf("%04d-%02d-%02d %02d:%02d", t.wYear, t.wMonth, t.wDay, t.wHour, t.wMinute);
}

TimeZoneInformation ZoneOf(const char* name)
{
    TimeZoneInformation zone;
    if (qstrcmp(name, "UTC") != 0) {
        EXPECT_TRUE(ZoneRecordOf(name, 2026, &zone)) << name;
    }
    return zone;
}

QStringList Lines(const CDayItems* day)
{
    QStringList lines;
    if (!day)
        return {QStringLiteral("not cached")};
    for (const auto& item : day->Appointments) {
        const QString times = item->AllDay ? QStringLiteral("all day")
                                           : Iso(item->Start).right(5) + u'-' + Iso(item->End).right(5);
        lines += times + u' ' + item->Subject;
    }
    return lines;
}

PimTest::PimTest()
{
    g_Settings = CSettings();
    g_Settings.MonthView.StartDay = 0;
    UseZone("UTC");
    SetClock(&m_clock);
    SetNow("2026-03-15 09:00");
}

PimTest::~PimTest()
{
    m_store.Shutdown();
    SetClock(nullptr);
    SetTimeZone(nullptr);
    g_Settings = CSettings();
}

void PimTest::UseZone(const char* name)
{
    m_zone = std::make_unique<CFixedTimeZone>(ZoneOf(name));
    SetTimeZone(m_zone.get());
}

void PimTest::SetNow(const char* localIso)
{
    TimeZoneInformation zone;
    GetTimeZoneInformation(&zone);
    m_clock.Set(FileTimeOfDate(LocalToUtc(At(localIso), zone)));
}

void PimTest::OpenStore()
{
    if (!m_volume) {
        const CStatus status = CPropertyVolume::Open(m_folder.filePath(QStringLiteral("pim.vol")),
                                                     PimSchema(), CPropertyVolume::Mode::Create, m_volume);
        ASSERT_TRUE(status) << qPrintable(status.Text());
    }
    m_store.Initialize(m_volume, [this](qint64 milliseconds) { m_timers.push_back(milliseconds); });
}

CEOID PimTest::WritePlain(const QString& subject, const char* start, int minutes, bool allDay,
                          std::vector<CEPROPVAL> further)
{
    if (!m_volume)
        OpenStore();
    TimeZoneInformation zone;
    GetTimeZoneInformation(&zone);
    const DATE utc = allDay ? At(start) : LocalToUtc(At(start), zone);
    std::vector<CEPROPVAL> rows = {{Prop::Start, FileTimeOfDate(utc)}, {Prop::Duration, minutes}};
    rows.emplace_back(Prop::Subject, subject);
    if (allDay)
        rows.emplace_back(Prop::AllDay, 1);
    if (minutes > 31 * 1440)
        rows.emplace_back(Prop::LongSpan, minutes);
    rows.insert(rows.end(), further.begin(), further.end());
    CEOID oid = 0;
    EXPECT_TRUE(m_volume->WriteRecord(kAppointmentsDatabase, 0, rows, {}, &oid));
    return oid;
}

CEOID PimTest::WriteSeries(const QString& subject, CRecurrencePattern pattern, bool allDay, const char* zone)
{
    if (!m_volume)
        OpenStore();
    TimeZoneInformation record;
    GetTimeZoneInformation(&record);
    if (zone)
        record = ZoneOf(zone);
    pattern.SetZone(record);
    const DATE start = pattern.PatternStart + pattern.StartMinute / 1440.0;
    std::vector<CEPROPVAL> rows = {{Prop::Start, FileTimeOfDate(LocalToUtc(start, record))},
                                   {Prop::Duration, pattern.EndMinute - pattern.StartMinute},
                                   {Prop::Recurring, 1},
                                   {Prop::AllDay, allDay}};
    rows.emplace_back(Prop::Subject, subject);
    rows.emplace_back(Prop::Recurrence, WriteRecurrence(pattern));
    rows.emplace_back(Prop::Zone, WriteRecurrenceZone(pattern));
    CEOID oid = 0;
    EXPECT_TRUE(m_volume->WriteRecord(kAppointmentsDatabase, 0, rows, {}, &oid));
    return oid;
}

void PimTest::Delete(CEOID oid)
{
    EXPECT_TRUE(m_volume->DeleteRecord(kAppointmentsDatabase, oid));
}

quint32 PimTest::ItemIdOf(CEOID oid)
{
    std::vector<CEPROPVAL> rows;
    EXPECT_TRUE(m_volume->ReadWholeRecord(kAppointmentsDatabase, oid, rows));
    for (const CEPROPVAL& row : rows) {
        if (row.propid == Prop::RecId)
            return quint32(row.Number) + kAppointmentTag;
    }
    return 0;
}

CRecurrencePattern Pattern(const char* kind, const char* start, int startMinute, int minutes, const char* end)
{
    CRecurrencePattern pattern;
    const int day = Day(start);
    const SystemTime date = SystemTimeOf(day);
    const QByteArray name = kind;
    pattern.Type = name == "daily"    ? PatternType::Daily
                   : name == "weekly" ? PatternType::Weekly
                   : name == "yearly" ? PatternType::Yearly
                                      : PatternType::Monthly;
    pattern.Interval = name == "yearly" ? 12 : 1;
    pattern.DayMask = 1 << DayOfWeekOf(day);
    pattern.DayOfMonth = date.wDay;
    pattern.PatternStart = day;
    pattern.PatternEnd = Day(end);
    pattern.StartMinute = startMinute;
    pattern.EndMinute = startMinute + minutes;
    return pattern;
}
