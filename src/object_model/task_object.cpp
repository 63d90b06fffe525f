#include "object_model/task_object.h"

#include "object_model/outlook_app.h"
#include "records/occurrences.h"
#include "records/recurrence_blob.h"

#include <algorithm>

namespace
{
enum Row {
    kSubject,
    kSensitivity,
    kReminderSet,
    kStart,
    kDue,
    kPriority,
    kComplete,
    kCompletedDate,
    kRecurring,
    kReminderTime,
    kNote,
    kZone,
    kRecurrence,
    kForeign // and on: kForeignRows
};
constexpr CEPROPID kOwnIds[kForeign] = {
    Prop::Subject,      Prop::Sensitivity,  Prop::ReminderSet,       Prop::TaskStart, Prop::TaskDue,
    Prop::TaskPriority, Prop::TaskComplete, Prop::TaskCompletedDate, Prop::Recurring, Prop::TaskReminderTime,
    Prop::Note,         Prop::TaskZone,     Prop::TaskRecurrence,
};
constexpr auto kIds = WithForeignRows(kOwnIds);

void PutDate(CRecordRows& rows, CEPROPID id, DATE date)
{
    if (date == NO_DATE)
        rows.Remove(id);
    else
        rows.Number(id, FileTimeOfDate(date));
}

DATE DateOfRow(const CEPROPVAL& row)
{
    return row.Found() ? DateOfFileTime(row.Number) : NO_DATE;
}

// The first day after `day` on which the series shows; 0 if there is none.
int NextDay(const CRecurrencePattern& pattern, int day)
{
    CPatternIterator at(pattern, day + 1);
    for (; !at.AtEnd(); at.Next()) {
        const auto isDeleted = [&at](const CRecurrenceException& e) {
            return e.Deleted && e.OriginalDay == at.Day();
        };
        if (at.Day() > day && std::none_of(pattern.Exceptions.begin(), pattern.Exceptions.end(), isDeleted))
            return at.Day();
    }
    return 0;
}
} // namespace

std::span<const CEPROPID> TaskRows()
{
    return kIds;
}

CTaskObject::CTaskObject(COutlookApp& app, CEOID oid, quint32 itemId, const std::vector<CEPROPVAL>& rows)
    : CItemBase(app, oid, itemId)
{
    const auto number = [&rows](Row row, qint64 otherwise) {
        return rows[row].Found() ? rows[row].Number : otherwise;
    };
    m_subject = rows[kSubject].Text;
    m_body = rows[kNote].Text;
    m_sensitivity = int(number(kSensitivity, 0));
    m_importance = int(number(kPriority, 1));
    m_start = WholeDay(DateOfRow(rows[kStart]));
    m_due = WholeDay(DateOfRow(rows[kDue]));
    m_completed = DateOfRow(rows[kCompletedDate]);
    m_complete = number(kComplete, 0) != 0 || m_completed != NO_DATE;
    m_reminderSet = number(kReminderSet, 0) != 0;
    if (rows[kReminderTime].Found())
        m_reminderTime = UtcToLocal(DateOfFileTime(rows[kReminderTime].Number), app.Zone());
    m_foreign = ReadForeign(std::span(rows).subspan(kForeign));
    if (number(kRecurring, 0) == 0)
        return;
    CRecurrencePattern pattern;
    ParseRecurrenceZone(pattern, BytesOf(rows[kZone].Bytes));
    ParseRecurrence(pattern, BytesOf(rows[kRecurrence].Bytes));
    m_wasRecurring = pattern.Type >= 0;
    if (m_wasRecurring)
        m_series = std::make_unique<CPatternObject>(app, pattern, true, oid, itemId);
}

void CTaskObject::put_Complete(bool complete)
{
    Set(m_complete, complete, Changed::Complete);
    if (!complete)
        m_completed = NO_DATE;
}

void CTaskObject::put_Foreign(const CForeignData& data)
{
    m_foreign = data;
    m_changed |= Changed::Foreign;
}

// ---- recurrence

IRecurrencePattern* CTaskObject::GetRecurrencePattern()
{
    if (!m_series) {
        m_series = std::make_unique<CPatternObject>(m_app, Anchor(), Anchor());
        m_series->SetAllDay(true);
    }
    return m_series.get();
}

void CTaskObject::ClearRecurrencePattern()
{
    if (m_series)
        m_cleared = std::move(m_series);
}

// To the next day of the pattern, with all dates alike. False when that was the last.
bool CTaskObject::MoveOn(const CRecurrencePattern& pattern)
{
    const DATE anchor = Anchor();
    const int from = anchor == NO_DATE ? DayNumber(pattern.PatternStart) : DayNumber(anchor);
    const int next = NextDay(pattern, from);
    if (next == 0)
        return false;
    if (anchor == NO_DATE)
        m_due = next;
    for (DATE* date : {&m_start, &m_due}) {
        if (anchor != NO_DATE && *date != NO_DATE)
            *date += next - from;
    }
    if (m_reminderTime != NO_DATE)
        m_reminderTime += next - from;
    m_complete = false;
    m_completed = NO_DATE;
    m_changed |= Changed::Times | Changed::Complete | Changed::Reminder;
    return true;
}

CStatus CTaskObject::SkipRecurrence()
{
    const CStatus none(StatusKind::NotFound, QStringLiteral("The task has no further date."));
    if (!m_series)
        return none;
    const auto before = std::tuple(m_start, m_due, m_complete, m_completed, m_reminderTime, m_changed);
    if (!MoveOn(m_series->Pattern()))
        return none;
    const CStatus status = Save();
    if (!status)
        std::tie(m_start, m_due, m_complete, m_completed, m_reminderTime, m_changed) = before;
    return status;
}

// ---- saving

CStatus CTaskObject::CheckDates() const
{
    for (const DATE date : {m_start, m_due}) {
        if (date != NO_DATE && !IsDate(date))
            return {StatusKind::Invalid, QStringLiteral("The task has a date that cannot be stored.")};
    }
    return {};
}

CStatus CTaskObject::PutPattern(CRecordRows& rows, CRecurrencePattern& pattern)
{
    if (!m_series) {
        if (m_wasRecurring) {
            for (const CEPROPID id : {Prop::Recurring, Prop::TaskRecurrence, Prop::TaskZone})
                rows.Remove(id);
            if (!IsChanged(Changed::Foreign))
                rows.Remove(Prop::SourceRule);
        }
        return {};
    }
    if (!m_series->IsTouched()) {
        pattern = m_series->Pattern();
        return {};
    }
    CRecurrencePattern stored;
    CStatus status = m_wasRecurring ? m_app.ReadPattern(ItemTable::Tasks, m_oid, stored) : CStatus();
    if (status)
        status = m_series->PatternToStore(m_wasRecurring ? &stored : nullptr, pattern);
    if (!status)
        return status;
    rows.Number(Prop::Recurring, 1);
    rows.Bytes(Prop::TaskZone, WriteRecurrenceZone(pattern));
    rows.Bytes(Prop::TaskRecurrence, WriteRecurrence(pattern));
    if (!IsChanged(Changed::Foreign))
        rows.Remove(Prop::SourceRule); // it would tell the old series
    return {};
}

void CTaskObject::PutRows(CRecordRows& rows) const
{
    if (IsChanged(Changed::Subject))
        rows.Text(Prop::Subject, m_subject);
    if (IsChanged(Changed::Times)) {
        PutDate(rows, Prop::TaskStart, m_start);
        PutDate(rows, Prop::TaskDue, m_due);
    }
    if (IsChanged(Changed::Priority))
        rows.Number(Prop::TaskPriority, m_importance);
    if (IsChanged(Changed::Sensitivity))
        rows.Number(Prop::Sensitivity, m_sensitivity);
    if (IsChanged(Changed::Complete)) {
        rows.Number(Prop::TaskComplete, m_complete ? 1 : 0);
        PutDate(rows, Prop::TaskCompletedDate, m_complete ? m_completed : NO_DATE);
    }
    if (IsChanged(Changed::Reminder)) {
        rows.Number(Prop::ReminderSet, m_reminderSet ? 1 : 0);
        PutDate(rows, Prop::TaskReminderTime,
                IsDate(m_reminderTime) ? LocalToUtc(m_reminderTime, m_app.Zone()) : NO_DATE);
    }
    if (IsChanged(Changed::Body)) {
        rows.Text(Prop::Note, m_body);
        rows.Remove(Prop::NoteDocument); // it would tell the old text
    }
    if (IsChanged(Changed::Foreign))
        PutForeign(rows, m_foreign);
    else
        rows.Number(Prop::LastChange, Clock().GetUtcTime());
}

CStatus CTaskObject::WriteAll(CRecurrencePattern& pattern, CEOID* oid, quint32* itemId)
{
    CRecordRows& rows = m_app.EmptyRows();
    CStatus status = CheckDates();
    if (status)
        status = PutPattern(rows, pattern);
    if (!status)
        return status;
    // A series that the owner completes goes on; what a file says of it stands.
    const bool completed = m_complete && IsChanged(Changed::Complete);
    if (completed && m_series && m_wasRecurring && !IsChanged(Changed::Foreign))
        (void)MoveOn(pattern); // after its last date it stays complete
    else if (m_series && Anchor() == NO_DATE && m_series->IsTouched()) {
        m_due = pattern.PatternStart;
        m_changed |= Changed::Times;
    }
    if (m_complete && completed && m_completed == NO_DATE && !IsChanged(Changed::Foreign))
        m_completed = UtcToLocal(DateOfFileTime(Clock().GetUtcTime()), m_app.Zone());
    PutRows(rows);
    return WriteRecord(rows, kTasksDatabase, kTaskTag, m_foreign, oid, itemId);
}

CStatus CTaskObject::Save()
{
    CEOID oid = m_oid;
    quint32 itemId = m_itemId;
    CRecurrencePattern pattern;
    const auto before = std::tuple(m_start, m_due, m_complete, m_completed, m_reminderTime, m_changed);
    const CStatus status = m_app.InTransaction([&] { return WriteAll(pattern, &oid, &itemId); });
    if (!status) {
        std::tie(m_start, m_due, m_complete, m_completed, m_reminderTime, m_changed) = before;
        return status;
    }
    const bool touched = m_series ? m_series->IsTouched() : m_wasRecurring;
    if (touched && !IsChanged(Changed::Foreign))
        m_foreign.SourceRule.clear();
    Saved(oid, itemId);
    m_wasRecurring = m_series != nullptr;
    if (m_series)
        m_series->Saved(pattern, oid, itemId);
    return status;
}

std::unique_ptr<ITask> CTaskObject::Copy()
{
    auto copy = std::make_unique<CTaskObject>(m_app);
    copy->m_subject = m_subject;
    copy->m_start = m_start;
    copy->m_due = m_due;
    copy->m_importance = m_importance;
    copy->m_sensitivity = m_sensitivity;
    copy->m_complete = m_complete;
    copy->m_completed = m_completed;
    copy->m_reminderSet = m_reminderSet;
    copy->m_reminderTime = m_reminderTime;
    copy->put_Foreign(ForeignOfCopy(m_foreign));
    copy->m_categories = get_Categories();
    if (m_series) {
        copy->GetRecurrencePattern();
        m_series->CopyTo(*copy->m_series);
    }
    return copy;
}
