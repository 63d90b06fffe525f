// The order of tasks, on days and in groups.
#include "pim/task_list.h"
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
std::array<CLevel, 3> GroupLevels()
{
    const auto& by = g_Settings.TasksView;
    return {{{by.Sort1, by.Sort1Direction}, {by.Sort2, by.Sort2Direction}, {by.Sort3, by.Sort3Direction}}};
}

// The keys of one task as numbers, for comparing it with many; the lower one comes first.
struct CSortKeys {
    std::array<double, 4> Levels;   // 0 where the subject counts
    std::array<quint64, 4> Letters; // the first sixteen of the subject
    const CTask* Task;
};

bool IsBySubject(const CLevel& level)
{
    return level.Key == 4 || level.Key == 104;
}

std::array<quint64, 4> FirstLetters(const QString& subject)
{
    std::array<quint64, 4> letters{};
    for (qsizetype i = 0; i < 16; ++i) {
        quint64& word = letters[size_t(i / 4)];
        word = word << 16 | (i < subject.size() ? subject[i].toCaseFolded().unicode() : 0);
    }
    return letters;
}

double NumberOf(const CTask& task, const CLevel& level)
{
    const double sign = level.Direction == 1 ? -1 : 1;
    switch (level.Key >= 100 ? level.Key - 100 : level.Key) {
    case 0:
        return sign * task.End;
    case 1:
        return sign * task.Start;
    case 2:
        return -sign * task.Priority;
    case 3:
        return task.Complete ? -sign : 0;
    default:
        return 0;
    }
}

// Letters of two units stand behind others than their first unit does.
bool HasPairs(const QString& text)
{
    return std::any_of(text.begin(), text.end(), [](QChar c) { return c.isSurrogate(); });
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
    return CompareInGroups(*this, other);
}

int CompareInGroups(const CTask& a, const CTask& b)
{
    return CompareByLevels(a, b, GroupLevels());
}

void SortForGroups(std::vector<const CTask*>& tasks)
{
    const auto three = GroupLevels();
    const std::array<CLevel, 4> levels = {three[0], three[1], three[2], {4, 0}};
    std::vector<CSortKeys> keys;
    keys.reserve(tasks.size());
    bool pairs = false;
    for (const CTask* task : tasks) {
        pairs = pairs || HasPairs(task->Subject);
        keys.push_back({{}, FirstLetters(task->Subject), task});
        for (size_t i = 0; i < levels.size(); ++i)
            keys.back().Levels[i] = NumberOf(*task, levels[i]);
    }
    std::stable_sort(keys.begin(), keys.end(), [&](const CSortKeys& a, const CSortKeys& b) {
        if (pairs)
            return CompareInGroups(*a.Task, *b.Task) > 0;
        for (size_t i = 0; i < levels.size(); ++i) {
            if (a.Levels[i] != b.Levels[i])
                return a.Levels[i] < b.Levels[i];
            if (!IsBySubject(levels[i]))
                continue;
            if (a.Letters != b.Letters)
                return levels[i].Direction == 1 ? a.Letters > b.Letters : a.Letters < b.Letters;
            if (const int order = a.Task->CompareBy(*b.Task, 4, levels[i].Direction))
                return order > 0;
        }
        return false;
    });
    for (size_t i = 0; i < tasks.size(); ++i)
        tasks[i] = keys[i].Task;
}
