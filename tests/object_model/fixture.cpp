#include "fixture.h"

#include "platform/locale.h"
#include "records/property_numbers.h"
#include "records/recurrence_blob.h"

#include <QDateTime>

namespace
{
TimeZoneInformation MakeZone(int bias, SystemTime standard, SystemTime daylight)
{
    TimeZoneInformation zone;
    zone.Bias = bias;
    zone.DaylightBias = -60;
    zone.StandardDate = standard;
    zone.DaylightDate = daylight;
    return zone;
}
} // namespace

TimeZoneInformation BerlinZone()
{
    return MakeZone(-60, {0, 10, 0, 5, 3, 0, 0, 0}, {0, 3, 0, 5, 2, 0, 0, 0});
}
TimeZoneInformation NewYorkZone()
{
    return MakeZone(300, {0, 11, 0, 1, 2, 0, 0, 0}, {0, 3, 0, 2, 2, 0, 0, 0});
}
TimeZoneInformation SydneyZone()
{
    return MakeZone(-600, {0, 4, 0, 1, 3, 0, 0, 0}, {0, 10, 0, 1, 2, 0, 0, 0});
}
TimeZoneInformation PlainZone(int bias)
{
    TimeZoneInformation zone;
    zone.Bias = bias;
    return zone;
}

DATE At(const char* iso)
{
    const QString text = QString::fromLatin1(iso);
    const QDate date = QDate::fromString(text.left(10), Qt::ISODate);
    EXPECT_TRUE(date.isValid()) << iso;
    const int minutes = text.size() > 10 ? text.mid(11, 2).toInt() * 60 + text.mid(14, 2).toInt() : 0;
    return DayNumberOf(date.year(), date.month(), date.day()) + minutes / 1440.0;
}

QString IsoOf(DATE date)
{
    if (date == NO_DATE)
        return QStringLiteral("none");
    const SystemTime t = SystemTimeOf(date);
    const QString day = QString::asprintf("%04d-%02d-%02d", t.wYear, t.wMonth, t.wDay);
    return t.wHour || t.wMinute ? day + QString::asprintf(" %02d:%02d", t.wHour, t.wMinute) : day;
}

const CEPROPVAL* CReadRecord::Find(CEPROPID id) const
{
    for (const CEPROPVAL& row : Rows)
        if (row.propid == id && row.Found())
            return &row;
    return nullptr;
}

CRecurrencePattern CReadRecord::Pattern() const
{
    CRecurrencePattern pattern;
    if (Has(Prop::Zone))
        ParseRecurrenceZone(pattern, BytesOf(Find(Prop::Zone)->Bytes));
    if (Has(Prop::Recurrence)) {
        const QByteArray& blob = Find(Prop::Recurrence)->Bytes;
        const int used = ParseRecurrence(pattern, BytesOf(blob));
        EXPECT_EQ(used, blob.size() - pattern.SkippedTail.size());
    }
    return pattern;
}

ObjectModel::ObjectModel() : m_locale(MakeLocale("en_US"))
{
    SetLocale(m_locale.get());
    SetClock(&m_clock);
    SetZone(BerlinZone());
    SetNow("2026-01-10 12:00");
    Reopen();
}

ObjectModel::~ObjectModel()
{
    m_app.reset();
    m_volume.reset();
    SetClock(nullptr);
    SetTimeZone(nullptr);
    SetLocale(nullptr);
}

void ObjectModel::Reopen()
{
    m_app.reset();
    m_volume.reset();
    const CStatus status = CPropertyVolume::Open(m_folder.filePath("pim.vol"), PimSchema(),
                                                 CPropertyVolume::Mode::Create, m_volume);
    ASSERT_TRUE(status) << status.Text().toStdString();
    m_app = MakePOutlookApp(m_volume);
    ASSERT_TRUE(m_app->Logon());
}

void ObjectModel::SetNow(const char* iso)
{
    TimeZoneInformation zone;
    GetTimeZoneInformation(&zone);
    m_clock.Set(FileTimeOfDate(LocalToUtc(At(iso), zone)));
}

void ObjectModel::SetZone(const TimeZoneInformation& zone)
{
    auto next = std::make_unique<CFixedTimeZone>(zone);
    SetTimeZone(next.get());
    m_zone = std::move(next);
}

std::unique_ptr<IAppointment> ObjectModel::Get(quint32 itemId)
{
    std::unique_ptr<IAppointment> item;
    const CStatus status = m_app->GetAppointmentFromOid(itemId, item);
    EXPECT_TRUE(status) << status.Text().toStdString();
    return item;
}

CReadRecord ObjectModel::Read(const IAppointment& item)
{
    CReadRecord record;
    const CStatus status = m_volume->ReadWholeRecord(kAppointmentsDatabase, item.RecordOid(), record.Rows);
    EXPECT_TRUE(status) << status.Text().toStdString();
    return record;
}

DATE ObjectModel::ReadStart(const IAppointment& item)
{
    const CReadRecord record = Read(item);
    const FileTime utc = record.Number(Prop::Start);
    FileTime localTicks = 0;
    SystemTime local, utcTime;
    EXPECT_TRUE(FileTimeToLocalFileTime(utc, &localTicks) && FileTimeToSystemTime(localTicks, &local) &&
                FileTimeToSystemTime(utc, &utcTime));
    TimeZoneInformation zone;
    GetTimeZoneInformation(&zone);
    if (record.Number(Prop::AllDay) && !record.Number(Prop::Recurring))
        NormalizeUtcAllDay(utcTime, local);
    else
        CorrectToDaylightOfDate(IsDaylightTime(zone, GetLocalTime()), zone, local);
    return DateOf(local);
}

QStringList ObjectModel::Occurrences(const IAppointment& item, const char* first, const char* last)
{
    const CReadRecord record = Read(item);
    const CRecurrencePattern pattern = record.Pattern();
    TimeZoneInformation zone;
    GetTimeZoneInformation(&zone);
    std::vector<COccurrence> found;
    ExpandPattern(pattern, DayNumber(At(first)) - 1, DayNumber(At(last)) + 1, found);
    QStringList starts;
    for (const COccurrence& o : found) {
        const bool changed = o.ExceptionIndex >= 0 && pattern.Exceptions[size_t(o.ExceptionIndex)].HasAllDay;
        const bool allDay =
            changed ? pattern.Exceptions[size_t(o.ExceptionIndex)].AllDay : record.Number(Prop::AllDay) != 0;
        const int shift = allDay ? 0 : ZoneShift(pattern, zone, o.Start);
        const DATE start = DateOfFileTime(FileTimeOfDate(o.Start) + shift * qint64(600000000));
        if (start >= At(first) && start < At(last) + 1)
            starts += IsoOf(start);
    }
    return starts;
}

std::unique_ptr<IAppointment> ObjectModel::Plain(const char* start, const char* end)
{
    std::unique_ptr<IAppointment> item = m_app->CreateAppointment();
    item->put_Start(At(start));
    item->put_End(At(end));
    return item;
}

std::unique_ptr<IAppointment> ObjectModel::Series()
{
    std::unique_ptr<IAppointment> item = Plain("2026-01-05 10:00", "2026-01-05 11:00");
    item->put_Subject("series");
    item->GetRecurrencePattern()->put_DayOfWeekMask(0x0A);
    EXPECT_TRUE(item->Save());
    return item;
}

std::unique_ptr<IAppointment> ObjectModel::Occurrence(quint32 itemId, const char* day)
{
    std::unique_ptr<IAppointment> occurrence;
    (void)Get(itemId)->GetRecurrencePattern()->GetOccurrence(At(day), occurrence);
    return occurrence;
}

QString ObjectModel::Notices()
{
    std::vector<CVolumeChange> changes;
    EXPECT_TRUE(m_volume->ReadChanges(m_seen, 1000, changes));
    QStringList texts;
    for (const CVolumeChange& change : changes) {
        texts += QString("%1 %2").arg(change.Database).arg(change.Type);
        m_seen = change.Sequence;
    }
    return texts.join(", ");
}
