// What of a task's properties differs from an event's.
#include "interchange/file_duration.h"
#include "interchange/import_limits.h"
#include "interchange/imported_event.h"
#include "interchange/property_line.h"

namespace
{
constexpr int kHighest = 4, kMiddle = 5, kLowest = 9; // a file counts from 1, the highest, to 9
} // namespace

bool CEventReader::ReadTaskState(const CPropertyLine& line, const CComponent::Line& at)
{
    CImportedTask& task = m_event->Task;
    const std::string_view value = TrimBlanks(line.Value);
    if (EqualsUpper(line.Name, "COMPLETED")) {
        task.Completed = TaskMoment(&at);
        task.Complete = true;
        return true;
    }
    if (EqualsUpper(line.Name, "STATUS")) {
        const bool complete = EqualsUpper(value, "COMPLETED");
        task.Complete = task.Complete || complete;
        m_event->Cancelled = EqualsUpper(value, "CANCELLED");
        return complete || EqualsUpper(value, "NEEDS-ACTION"); // others are kept as well
    }
    if (EqualsUpper(line.Name, "PRIORITY")) {
        const int priority = QByteArray(value.data(), qsizetype(value.size())).toInt();
        task.Priority = priority >= 1 && priority <= kHighest       ? 2
                        : priority > kMiddle && priority <= kLowest ? 0
                                                                    : 1;
        return priority == 1 || priority == kMiddle || priority == kLowest; // the record gives these back
    }
    return false;
}

// A moment on the clock of the device; nothing, told, when it cannot be read.
std::optional<qint64> CEventReader::TaskMoment(const CComponent::Line* at)
{
    if (!at)
        return {};
    const CPropertyLine line(m_component->LineText(*at));
    CFileMoment moment;
    if (!ParseMoment(line.Value, &moment) || !IsStorable(moment.Wall)) {
        m_report.LeftOut(at->Number, QStringLiteral("a date of the task that cannot be read or held"));
        return {};
    }
    return WallInEvent(moment, ZoneOf(line, moment));
}

// The record holds days; times are kept as they stand.
void CEventReader::FinishTaskDates()
{
    CImportedTask& task = m_event->Task;
    CEventDates& dates = m_event->Dates;
    dates.AllDay = true;
    task.Start = TaskMoment(m_start);
    task.Due = TaskMoment(m_end);
    for (const CComponent::Line* at : {m_start, m_end, m_end ? nullptr : m_length}) {
        CFileMoment moment;
        if (at && !(ParseMoment(CPropertyLine(m_component->LineText(*at)).Value, &moment) && moment.IsDate))
            Keep(m_component->LineText(*at));
    }
    CFileDuration length;
    if (!task.Due && task.Start && m_length &&
        ParseDuration(CPropertyLine(m_component->LineText(*m_length)).Value, &length) &&
        IsStorable(*task.Start + length.Total()))
        task.Due = *task.Start + length.Total();
    FinishTaskReminder();
    const std::optional<qint64> first = task.Start ? task.Start : task.Due;
    if (!first) {
        if (m_rule) {
            m_report.LeftOut(m_rule->Number, QStringLiteral("the rule of a task without a date"));
            Keep(m_component->LineText(*m_rule));
        }
        return;
    }
    dates.Start = WallOfDay(DayOfWall(*first));
    dates.End = dates.Start + kDaySeconds;
    FinishRule();
    FinishListed();
    if (!dates.Rule)
        return;
    const auto toDay = [](qint64& wall) { wall = WallOfDay(DayOfWall(wall)); };
    if (dates.Rule->Until) {
        toDay(dates.Rule->Until->Wall);
        dates.Rule->Until->IsDate = true;
    }
    // A time of the day has no part in it.
    for (auto* times : {&dates.Rule->ByHour, &dates.Rule->ByMinute, &dates.Rule->BySecond})
        times->clear();
    for (CListedDate& date : dates.Excluded)
        date.IsDate = true;
}

void CEventReader::FinishTaskReminder()
{
    CImportedTask& task = m_event->Task;
    const std::optional<qint64> from = m_alarmByDue || !task.Start ? task.Due : task.Start;
    if (m_alarmMoment)
        task.Reminder = WallInEvent(*m_alarmMoment, m_alarmMoment->IsUtc ? UtcZone() : nullptr);
    else if (m_alarmSeconds && from)
        task.Reminder = *from + *m_alarmSeconds;
    if (task.Reminder && !IsStorable(*task.Reminder))
        task.Reminder.reset();
}
