#include "pim/volume_checker.h"

#include "records/attendees_blob.h"
#include "records/property_numbers.h"
#include "records/recurrence_blob.h"

#include <algorithm>
#include <unordered_map>
#include <unordered_set>

namespace
{
constexpr int kZoneBlobBytes = 48;
constexpr qint64 kLongestOrdinary = 31 * 1440;                                         // minutes
const FileTime kEarliest = FileTimeOfDate(kDayOf1601), kLatest = FileTimeOfDate(2958465); // 1601 to 9999

class CVolumeChecker
{
public:
    CVolumeChecker(CPropertyVolume& volume, QStringList& faults) : m_volume(volume), m_faults(faults) {}
    void Run();

private:
    using Rows = std::vector<CEPROPVAL>;
    template <typename Work>
    void EachRecord(const QString& database, std::span<const CEPROPID> ids, Work work);
    void Tell(const QString& what);
    void CheckItem(const Rows& rows, CEPROPID recId, quint32 tag);
    void CheckAppointment(const Rows& rows);
    void CheckSeries(const QByteArray& recurrence, const QByteArray& zone);
    void CheckExceptions(const CRecurrencePattern& pattern);
    void CheckDate(const CEPROPVAL& row, const char* what);
    void CheckRange(const CEPROPVAL& row, int last, const char* what);
    void CheckAppointments();
    void CheckTasks();
    void CheckContacts();
    void CheckCategories();
    void CheckAssociations();
    bool HasItem(quint32 itemId);

    CPropertyVolume& m_volume;
    QStringList& m_faults;
    QStringList m_missing;
    QString m_database; // at hand
    CEOID m_oid = 0;
    std::unordered_set<CEOID> m_oids;
    std::unordered_set<quint32> m_itemIds;
    std::unordered_set<qint64> m_categories;
};

void CVolumeChecker::Tell(const QString& what)
{
    m_faults += QStringLiteral("%1, record %2: %3.").arg(m_database).arg(m_oid).arg(what);
}

template <typename Work>
void CVolumeChecker::EachRecord(const QString& database, std::span<const CEPROPID> ids, Work work)
{
    m_database = database;
    const auto handle = m_volume.OpenDatabase(database, {}, true);
    if (!handle) {
        m_missing += QStringLiteral("There is no database %1.").arg(database);
        return;
    }
    Rows rows;
    handle->Seek(SeekType::Beginning);
    while ((m_oid = handle->ReadRecordProps(ids, rows)) != 0) {
        if (!m_oids.insert(m_oid).second)
            Tell(QStringLiteral("another record has the same object identifier"));
        work(rows);
    }
}

// ---- what all items share

void CVolumeChecker::CheckItem(const Rows& rows, CEPROPID recId, quint32 tag)
{
    const auto row =
        std::find_if(rows.begin(), rows.end(), [recId](const CEPROPVAL& r) { return r.propid == recId; });
    if (row == rows.end() || !row->Found() || row->Number <= 0)
        Tell(QStringLiteral("it has no record number"));
    else if (!m_itemIds.insert(quint32(row->Number) + tag).second)
        Tell(QStringLiteral("another item has the same identifier"));
}

void CVolumeChecker::CheckDate(const CEPROPVAL& row, const char* what)
{
    if (row.Found() && (row.Number < kEarliest || row.Number >= kLatest))
        Tell(QStringLiteral("its %1 is no date").arg(QLatin1String(what)));
}

void CVolumeChecker::CheckRange(const CEPROPVAL& row, int last, const char* what)
{
    if (row.Found() && (row.Number < 0 || row.Number > last))
        Tell(QStringLiteral("its %1 is out of range").arg(QLatin1String(what)));
}

void CVolumeChecker::CheckSeries(const QByteArray& recurrence, const QByteArray& zone)
{
    if (zone.size() < kZoneBlobBytes)
        Tell(QStringLiteral("the zone of the series is cut off"));
    CRecurrencePattern pattern;
    ParseRecurrenceZone(pattern, BytesOf(zone));
    const int used = ParseRecurrence(pattern, BytesOf(recurrence));
    if (used == 0)
        Tell(QStringLiteral("the recurrence is of an unknown type"));
    else if (used == -1)
        Tell(QStringLiteral("the counts of changed occurrences disagree"));
    else if (pattern.PatternEnd == NO_DATE ||
             WriteRecurrence(pattern).size() > recurrence.size() + (recurrence[0] < 5 ? 8 : 0))
        Tell(QStringLiteral("the recurrence is cut off"));
    else if (DayNumber(pattern.PatternEnd) < DayNumber(pattern.PatternStart))
        Tell(QStringLiteral("the series ends before it begins"));
    else if (pattern.Interval <= 0 || pattern.StartMinute < 0 || pattern.EndMinute < pattern.StartMinute)
        Tell(QStringLiteral("the recurrence makes no sense"));
    CheckExceptions(pattern);
}

void CVolumeChecker::CheckExceptions(const CRecurrencePattern& pattern)
{
    for (const CRecurrenceException& exception : pattern.Exceptions) {
        if (!exception.Deleted && exception.End < exception.Start)
            Tell(QStringLiteral("a changed occurrence ends before it begins"));
    }
}

// ---- the databases

void CVolumeChecker::CheckAppointment(const Rows& rows)
{
    enum {
        kRecId,
        kStart,
        kDuration,
        kRecurring,
        kSensitivity,
        kBusy,
        kZone,
        kRecurrence,
        kAttendees,
        kLongSpan
    };
    CheckItem(rows, Prop::RecId, kAppointmentTag);
    if (!rows[kStart].Found() || !rows[kDuration].Found())
        Tell(QStringLiteral("it has no start or no duration"));
    CheckDate(rows[kStart], "start");
    CheckRange(rows[kSensitivity], 2, "sensitivity");
    CheckRange(rows[kBusy], 3, "busy status");
    const bool recurring = rows[kRecurring].Found() && rows[kRecurring].Number != 0;
    if (recurring != rows[kRecurrence].Found())
        Tell(recurring ? QStringLiteral("the recurrence of the series is missing")
                       : QStringLiteral("it has a recurrence without being a series"));
    if (recurring && rows[kRecurrence].Found())
        CheckSeries(rows[kRecurrence].Bytes, rows[kZone].Bytes);
    const QByteArray& attendees = rows[kAttendees].Bytes;
    if (WriteAttendees(ParseAttendees(attendees)) != attendees)
        Tell(QStringLiteral("the attendees are cut off"));
    const bool isLong = rows[kDuration].Found() && rows[kDuration].Number > kLongestOrdinary;
    if (rows[kLongSpan].Found() ? rows[kLongSpan].Number != rows[kDuration].Number : isLong && !recurring)
        Tell(QStringLiteral("the index of long appointments does not hold it"));
}

void CVolumeChecker::CheckAppointments()
{
    static constexpr CEPROPID kIds[] = {Prop::RecId,       Prop::Start,      Prop::Duration, Prop::Recurring,
                                        Prop::Sensitivity, Prop::BusyStatus, Prop::Zone,     Prop::Recurrence,
                                        Prop::Attendees,   Prop::LongSpan};
    EachRecord(kAppointmentsDatabase, kIds, [this](const Rows& rows) { CheckAppointment(rows); });
}

void CVolumeChecker::CheckTasks()
{
    static constexpr CEPROPID kIds[] = {Prop::RecId,        Prop::TaskStart,         Prop::TaskDue,
                                        Prop::TaskPriority, Prop::TaskCompletedDate, Prop::TaskRecurrence,
                                        Prop::TaskZone};
    EachRecord(kTasksDatabase, kIds, [this](const Rows& rows) {
        CheckItem(rows, Prop::RecId, kTaskTag);
        CheckDate(rows[1], "start");
        CheckDate(rows[2], "due date");
        CheckRange(rows[3], 2, "priority");
        CheckDate(rows[4], "completion");
        if (rows[5].Found())
            CheckSeries(rows[5].Bytes, rows[6].Bytes);
    });
}

void CVolumeChecker::CheckContacts()
{
    static constexpr CEPROPID kIds[] = {Prop::RecId, Prop::ContactBirthday, Prop::ContactAnniversary};
    EachRecord(kContactsDatabase, kIds, [this](const Rows& rows) {
        CheckItem(rows, Prop::RecId, kContactTag);
        CheckDate(rows[1], "birthday");
        CheckDate(rows[2], "anniversary");
    });
}

void CVolumeChecker::CheckCategories()
{
    static constexpr CEPROPID kIds[] = {Prop::CategoryNumber, Prop::CategoryName};
    EachRecord(kCategoryDatabase, kIds, [this](const Rows& rows) {
        if (!rows[0].Found() || !rows[1].Found() || rows[1].Text.isEmpty())
            Tell(QStringLiteral("the category has no number or no name"));
        else if (!m_categories.insert(rows[0].Number).second)
            Tell(QStringLiteral("another category has the same number"));
    });
}

// An item that was written while the check ran is found by asking again.
bool CVolumeChecker::HasItem(quint32 itemId)
{
    if (m_itemIds.contains(itemId))
        return true;
    static const std::pair<QString, quint32> kTagged[] = {{kAppointmentsDatabase, kAppointmentTag},
                                                          {kTasksDatabase, kTaskTag},
                                                          {kContactsDatabase, kContactTag}};
    for (const auto& [name, tag] : kTagged) {
        const auto handle = m_volume.OpenDatabase(name, {{Prop::RecId}, true}, false);
        if (handle && handle->Seek(SeekType::ValueFirstEqual, {Prop::RecId, qint64(itemId - tag)}) != 0)
            return true;
    }
    return false;
}

void CVolumeChecker::CheckAssociations()
{
    static constexpr CEPROPID kIds[] = {Prop::AssocItem, Prop::AssocCategory};
    EachRecord(kCategoryAssocDatabase, kIds, [this](const Rows& rows) {
        if (!rows[0].Found() || !HasItem(quint32(rows[0].Number)))
            Tell(QStringLiteral("it gives a category to an item that is not there"));
        if (!rows[1].Found() || !m_categories.contains(rows[1].Number))
            Tell(QStringLiteral("it names a category that is not there"));
    });
}

void CVolumeChecker::Run()
{
    CheckAppointments();
    CheckTasks();
    CheckContacts();
    CheckCategories();
    CheckAssociations();
    // They are made in one go; a volume with none of them was cut off before that, and is empty.
    if (m_missing.size() != qsizetype(PimSchema().size()))
        m_faults += m_missing;
}
} // namespace

CStatus CheckVolume(CPropertyVolume& volume, QStringList& faults)
{
    CStatus status = volume.Check(faults);
    if (!status)
        return status;
    CVolumeChecker(volume, faults).Run();
    return volume.TakeReadFault();
}
