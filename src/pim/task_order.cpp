// The order of tasks, on days and in groups.
#include "pim/items.h"
#include "settings/settings.h"

#include <array>

namespace
{
template <typename Value> int Later(const Value& a, const Value& b)
{
    return b > a ? 1 : b < a ? -1 : 0;
}

struct CLevel {
    int Key, Direction;
};

int CompareByLevels(const CTask& a, const CTask& b, const std::array<CLevel, 3>& levels)
{
    for (const CLevel& level : levels) {
        if (const int result = a.CompareBy(b, level.Key, level.Direction))
            return result;
    }
    return a.CompareBy(b, 4, 0);
}
} // namespace

void CTask::CopyTo(CTask& other) const
{
    other.Priority = Priority;
    other.Complete = Complete;
    other.ReminderTime = ReminderTime;
    other.CompletedDate = CompletedDate;
    other.Visible = Visible;
    CopyCommonTo(other);
}

int CTask::CompareBy(const CTask& other, int key, int direction) const
{
    const int sign = direction == 1 ? -1 : 1;
    switch (key >= 100 ? key - 100 : key) {
    case 0:
        return sign * Later(End, other.End);
    case 1:
        return sign * Later(Start, other.Start);
    case 2:
        return -sign * Later(Priority, other.Priority);
    case 3:
        return -sign * Later(int(Complete), int(other.Complete));
    case 4:
        return sign * other.Subject.compare(Subject, Qt::CaseInsensitive);
    default:
        return 0;
    }
}

int CCalendarTask::Compare(const CTask& other) const
{
    const auto& by = g_Settings.Tasks;
    return CompareByLevels(
        *this, other,
        {{{by.Sort1, by.Sort1Direction}, {by.Sort2, by.Sort2Direction}, {by.Sort3, by.Sort3Direction}}});
}

int CTaskListEntry::Compare(const CTask& other) const
{
    const auto& by = g_Settings.TasksView;
    return CompareByLevels(
        *this, other,
        {{{by.Sort1, by.Sort1Direction}, {by.Sort2, by.Sort2Direction}, {by.Sort3, by.Sort3Direction}}});
}
