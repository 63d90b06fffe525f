#include "sequence_model.h"

#include <QDate>
#include <algorithm>

namespace
{
QDate CivilDate(int day)
{
    return QDate(1899, 12, 30).addDays(day);
}

int DayOfWeek(int day)
{
    return CivilDate(day).dayOfWeek() % 7; // 0 Sunday
}

int Months(int day)
{
    return CivilDate(day).year() * 12 + CivilDate(day).month();
}

int WeekOf(int day)
{
    return (day - DayOfWeek(day)) / 7; // weeks begin on Sundays
}

void Sort(CDayLines& lines)
{
    for (auto& [day, shown] : lines)
        std::sort(shown.begin(), shown.end());
}
} // namespace

bool CPlainRule::Hits(int day) const
{
    const QDate date = CivilDate(day);
    switch (What) {
    case Daily:
        return (day - First) % Interval == 0;
    case Weekly:
        return (Mask & 1 << DayOfWeek(day)) != 0 && (WeekOf(day) - WeekOf(First)) % Interval == 0;
    case Monthly:
    case Yearly:
        return (Months(day) - Months(First)) % Interval == 0 &&
               date.day() == std::min(DayOfMonth, date.daysInMonth());
    case MonthlyNth:
        if ((Months(day) - Months(First)) % Interval != 0 || (Mask & 1 << DayOfWeek(day)) == 0)
            return false;
        return Instance == 5 ? date.day() + 7 > date.daysInMonth() : (date.day() + 6) / 7 == Instance;
    }
    return false;
}

std::set<int> CPlainRule::Days(int limit) const
{
    constexpr int kLongest = 5 * 366; // to the first day
    std::set<int> days;
    for (int day = First; day <= (days.empty() ? First + kLongest : limit); ++day) {
        if (!days.empty() && ((Until && day > *Until) || (Count && int(days.size()) >= *Count)))
            break;
        if (Hits(day))
            days.insert(day);
    }
    return days;
}

QString CPlainRule::Text() const
{
    return QString("rule %1 every %2 mask %3 day %4 nth %5 from %6 until %7 count %8")
        .arg(What)
        .arg(Interval)
        .arg(Mask)
        .arg(DayOfMonth)
        .arg(Instance)
        .arg(First)
        .arg(Until.value_or(0))
        .arg(Count.value_or(0));
}

// ---- appointments

void CPlainAppointment::SetRule(const CPlainRule& rule, int limit)
{
    Rule = rule;
    Days = rule.Days(limit);
    Rule->First = *Days.begin();
    Start = OccurrenceStart(Rule->First);
    std::erase_if(Changes, [this](const auto& change) { return !Days.contains(change.first); });
}

void CPlainAppointment::SetTime(int minuteOfDay, int minutes)
{
    for (auto& [day, change] : Changes) {
        const int start = OccurrenceStart(day);
        if (change.Deleted || change.Start != start || change.End != start + Minutes)
            continue;
        change.Start = day * 1440 + minuteOfDay; // it was not moved by itself
        change.End = change.Start + minutes;
    }
    Start = Start / 1440 * 1440 + minuteOfDay;
    Minutes = minutes;
}

std::vector<CShown> CPlainAppointment::Instances() const
{
    if (!Rule)
        return {{Start, Start + Minutes, Subject}};
    std::vector<CShown> shown;
    // A yearly one tells its age, by the day on which the rule puts it.
    const auto aged = [this](const QString& subject, int day) {
        const int years = CivilDate(day).year() - CivilDate(Rule->First).year();
        return Rule->What == CPlainRule::Yearly ? QString("%1 (%2)").arg(subject).arg(years) : subject;
    };
    for (const int day : Days) {
        const auto change = Changes.find(day);
        const int start = OccurrenceStart(day);
        if (change == Changes.end())
            shown.emplace_back(start, start + Minutes, aged(Subject, day));
        else if (!change->second.Deleted)
            shown.emplace_back(change->second.Start, change->second.End,
                               aged(change->second.Subject.value_or(Subject), day));
    }
    return shown;
}

std::vector<int> CPlainAppointment::LiveDays() const
{
    std::vector<int> days;
    for (const int day : Days) {
        const auto change = Changes.find(day);
        if (change == Changes.end() || !change->second.Deleted)
            days.push_back(day);
    }
    return days;
}

// ---- tasks

bool CPlainTask::MoveOn()
{
    const auto next = Days.upper_bound(Anchor());
    if (next == Days.end())
        return false;
    const int by = *next - Anchor();
    for (std::optional<int>* date : {&Start, &Due}) {
        if (*date)
            **date += by;
    }
    Complete = false;
    return true;
}

CShown CPlainTask::Shown() const
{
    return {Start.value_or(0), Due.value_or(0), Subject + (Complete ? " done" : "")};
}

// ---- days

CDayLines CPlainCalendar::AppointmentDays(int first, int last) const
{
    CDayLines lines;
    for (const CPlainAppointment& item : Appointments) {
        for (const CShown& shown : item.Instances()) {
            const auto& [start, end, subject] = shown;
            const int lastMinute = end > start ? end - 1 : end; // midnight is of the day before
            for (int day = std::max(start / 1440, first); day <= std::min(lastMinute / 1440, last); ++day)
                lines[day].emplace_back(start, end, Marked(subject, IsVisible(item.Category)));
        }
    }
    Sort(lines);
    return lines;
}

CDayLines CPlainCalendar::TaskDays(int first, int last, int today) const
{
    CDayLines lines;
    for (const CPlainTask& task : Tasks) {
        std::set<int> days;
        if (!task.Due || (*task.Due < today && !task.Complete))
            days.insert(today);
        for (int day = task.Due ? task.Start.value_or(*task.Due) : last + 1; day < task.Due.value_or(0);
             ++day)
            days.insert(day);
        if (task.Due)
            days.insert(*task.Due);
        for (const int day : days) {
            auto [start, due, subject] = task.Shown();
            if (day >= first && day <= last)
                lines[day].emplace_back(start, due, Marked(subject, IsVisible(task.Category)));
        }
    }
    Sort(lines);
    return lines;
}
