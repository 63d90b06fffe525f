// Tasks on the cached days.
#include "pim/item_cache.h"

#include "pim/view_mask.h"
#include "settings/settings.h"

namespace
{
// Due first or start first: in the order of a day, so that each task joins its end.
std::vector<const CCalendarTask*> InOrder(const std::map<CEOID, CCalendarTask>& tasks)
{
    std::vector<const CCalendarTask*> sorted;
    sorted.reserve(tasks.size());
    for (const auto& [oid, task] : tasks)
        sorted.push_back(&task);
    std::stable_sort(sorted.begin(), sorted.end(),
                     [](const auto* a, const auto* b) { return a->Compare(*b) > 0; });
    return sorted;
}
} // namespace

CTaskDays DaysOfTask(const CTask& task, int today)
{
    const auto& settings = g_Settings.Tasks;
    CTaskDays days;
    if (task.Complete && settings.IncludeCompleted == 0)
        return days;
    if (task.End == NO_DATE) {
        if (settings.IncludeUndatedOnToday == 1)
            days.Single = today;
        return days;
    }
    days.Due = DayNumber(task.End);
    if (days.Due < today && !task.Complete && settings.IncludeOverdueOnToday == 1)
        days.Single = today;
    if (task.Start != NO_DATE && settings.IncludeActiveTasks == 1)
        days.ActiveFrom = DayNumber(task.Start);
    return days;
}

const CTaskList& CItemCache::Tasks()
{
    m_tasks.Load(m_volume);
    return m_tasks;
}

const CTaskList::CGroups& CItemCache::TaskGroups()
{
    m_tasks.Load(m_volume);
    return m_tasks.Groups();
}

void CItemCache::OfferTasks(int first, int last)
{
    if (g_Settings.Tasks.IncludeInCalendar != 1)
        return;
    const int today = m_tasksToday = GetToday();
    for (const CCalendarTask* task : InOrder(Tasks().All()))
        OfferTask(*task, today, first, last);
}

// After midnight what has no date or is overdue belongs to another day.
void CItemCache::MoveTasksToToday()
{
    if (m_days.empty() || m_tasksToday == GetToday() || g_Settings.Tasks.IncludeInCalendar != 1)
        return;
    for (const auto& day : m_days)
        day->RemoveTasks();
    OfferTasks(FirstDay(), EndDay() - 1);
    SettleDays();
}

// Result: whether a day took it.
bool CItemCache::OfferTask(const CCalendarTask& task, int today, int first, int last)
{
    const CTaskDays days = DaysOfTask(task, today);
    bool taken = false;
    const auto put = [&](int day) {
        if (day < first || day > last)
            return;
        m_days[size_t(day - FirstDay())]->AddTask(std::make_unique<CCalendarTask>(task), false);
        taken = true;
    };
    put(days.Single);
    if (days.Due == CTaskDays::kNone)
        return taken;
    if (days.ActiveFrom != CTaskDays::kNone) {
        for (int day = std::max(days.ActiveFrom, first); day < days.Due && day <= last; ++day)
            put(day);
    }
    put(days.Due);
    return taken;
}

int CItemCache::ReplaceTasks(const std::vector<CEOID>& removed, const std::vector<CEOID>& read)
{
    constexpr int kDayViews = kMaskDaily | kMaskListWeek | kMaskMonth;
    if (!m_tasks.IsLoaded())
        return kMaskTasks | kMaskSearch; // read when they are asked for
    int bits = kMaskTasks | kMaskSearch;
    std::vector<CEOID> sorted = removed;
    std::sort(sorted.begin(), sorted.end());
    for (const auto& day : m_days) {
        if (day->RemoveOids(sorted))
            bits |= kDayViews;
    }
    for (const CEOID oid : removed)
        m_tasks.Remove(oid);
    const int today = GetToday();
    for (const CCalendarTask* task : m_tasks.Read(m_volume, read)) {
        if (g_Settings.Tasks.IncludeInCalendar == 1 && !m_days.empty() &&
            OfferTask(*task, today, FirstDay(), EndDay() - 1))
            bits |= kDayViews;
    }
    SettleDays();
    return bits;
}
