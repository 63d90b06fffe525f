#include "pim/task_list.h"

#include "pim/appointment_reader.h"
#include "pim/filter_match.h"
#include "records/property_numbers.h"
#include "records/recurrence_blob.h"
#include "settings/settings.h"
#include "util/string_ids.h"
#include "util/string_store.h"

#include <unordered_map>

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
    kNoteDocument,
    kRecId,
    kRowCount
};
constexpr CEPROPID kRows[kRowCount] = {
    Prop::Subject,   Prop::Sensitivity,      Prop::ReminderSet,  Prop::TaskStart,
    Prop::TaskDue,   Prop::TaskPriority,     Prop::TaskComplete, Prop::TaskCompletedDate,
    Prop::Recurring, Prop::TaskReminderTime, Prop::Note,         Prop::NoteDocument,
    Prop::RecId};

constexpr quint32 kNoCategoryGroup = 1000;
enum GroupSort { kByCategory = 105, kByCompletion = 106, kByPriority = 107 };

DATE DateOfRow(const CEPROPVAL& row)
{
    return row.Found() ? DateOfFileTime(row.Number) : NO_DATE;
}
} // namespace

// ---- reading

CTaskReader::CTaskReader(CCategoryStore& categories) : m_categories(categories)
{
    GetTimeZoneInformation(&m_zone);
    m_categories.BeginPass();
}

bool CTaskReader::Open(const std::shared_ptr<CPropertyVolume>& volume)
{
    return CPimDatabase::Open(volume, kTasksDatabase, true);
}

CEOID CTaskReader::ReadTask(CTask& task)
{
    const CEOID oid = ReadRecordProps(kRows, m_rows);
    if (oid == 0)
        return 0;
    const auto number = [this](Row row, qint64 otherwise) {
        return m_rows[row].Found() ? m_rows[row].Number : otherwise;
    };
    if (m_rows[kSubject].Found())
        task.Subject = std::move(m_rows[kSubject].Text);
    task.Sensitivity = int(number(kSensitivity, 0));
    task.Start = DateOfRow(m_rows[kStart]); // dates, the same in every zone
    task.End = DateOfRow(m_rows[kDue]);
    task.ReminderSet = number(kReminderSet, 0) != 0;
    if (task.ReminderSet && m_rows[kReminderTime].Found())
        task.ReminderTime = UtcToLocal(DateOfFileTime(m_rows[kReminderTime].Number), m_zone);
    task.Priority = int(number(kPriority, 1));
    task.CompletedDate = DateOfRow(m_rows[kCompletedDate]);
    task.Complete = number(kComplete, 0) != 0 || task.CompletedDate != NO_DATE;
    task.Recurrence = number(kRecurring, 0) != 0 ? 1 : 0;
    task.HasNote = (m_rows[kNote].Found() && !m_rows[kNote].Text.isEmpty()) ||
                   (m_rows[kNoteDocument].Found() && HasNoteContent(BytesOf(m_rows[kNoteDocument].Bytes)));
    task.RecordOid = oid;
    if (m_rows[kRecId].Found())
        task.ItemId = quint32(m_rows[kRecId].Number) + kTaskTag;
    m_categories.ReadItemCategories(task);
    task.Visible = MatchesFilter(g_Settings.GetActiveFilter(), task.Categories);
    return oid;
}

void CTaskList::Load(const std::shared_ptr<CPropertyVolume>& volume)
{
    if (m_loaded)
        return;
    m_loaded = true;
    CTaskReader reader(m_categories);
    if (!reader.Open(volume) || reader.Seek(SeekType::Beginning) == 0)
        return;
    const DATE cutoff = g_Settings.m_completedCutoff;
    for (;;) {
        CCalendarTask task;
        if (reader.ReadTask(task) == 0)
            break;
        // NO_DATE as the cut-off takes every completed task away.
        if (task.Complete && (task.CompletedDate < cutoff || cutoff == NO_DATE))
            continue;
        const CEOID oid = task.RecordOid;
        m_tasks.emplace_hint(m_tasks.end(), oid, std::move(task));
    }
}

void CTaskList::Clear()
{
    DropGroups();
    m_tasks.clear();
    m_loaded = false;
}

// ---- groups

bool MatchesItemsToView(const CTask& task, int today)
{
    const int due = DayNumber(task.End);
    switch (g_Settings.TasksView.ItemsToView) {
    case 255:
        return true;
    case 1:
        return due < today;
    case 2:
        return !task.Complete;
    case 4:
        return task.Complete;
    case 8:
        return due == today;
    case 16:
        return due >= today && due <= today + 6;
    case 32:
        return due >= today && due <= today + 29;
    case 64:
        return due >= today;
    case 128:
        return task.End == NO_DATE;
    default:
        return false;
    }
}

void CTaskGroup::Add(const CTask& task, bool matches, Where where)
{
    auto entry = std::make_unique<CTaskListEntry>();
    task.CopyTo(*entry);
    entry->MatchesView = matches;
    VisibleCount += entry->Visible && matches ? 1 : 0;
    Tasks.insert(where == Where::Last ? Tasks.end() : PlaceOfTask(Tasks, *entry), std::move(entry));
}

struct CTaskList::CPlacing {
    CPlacing(const CCategoryStore& categories, CTaskGroup::Where where) : Where(where)
    {
        for (int i = 0; i < categories.GetCount(); ++i)
            IndexOf.emplace(categories.GetAt(i)->Id, i);
    }
    int Today = GetToday();
    CTaskGroup::Where Where;
    std::unordered_map<qint32, int> IndexOf; // by a category's number, in name order
};

CTaskGroup& CTaskList::GroupOf(quint32 number, const QString& name)
{
    const bool descending = g_Settings.TasksView.Sort1Direction == 1;
    const auto at = std::partition_point(m_groups.begin(), m_groups.end(), [&](const auto& group) {
        return descending ? group->ItemId > number : group->ItemId < number;
    });
    if (at != m_groups.end() && (*at)->ItemId == number)
        return **at;
    auto group = std::make_unique<CTaskGroup>();
    group->ItemId = number;
    group->Name = name;
    return **m_groups.insert(at, std::move(group));
}

void CTaskList::InsertIntoGroups(const CTask& task, const CPlacing& placing)
{
    const auto put = [&, matches = MatchesItemsToView(task, placing.Today)](quint32 number, const QString& name) {
        GroupOf(number, name).Add(task, matches, placing.Where);
    };
    switch (g_Settings.TasksView.Sort1) {
    case kByCategory: {
        bool inAny = false;
        for (const qint32 number : task.Categories) {
            const auto at = placing.IndexOf.find(number);
            if (at == placing.IndexOf.end())
                continue;
            put(quint32(at->second) + 1, m_categories.GetAt(at->second)->Name);
            inAny = true;
        }
        if (!inAny)
            put(kNoCategoryGroup, GetString(StringId::StrNoCategory));
        return;
    }
    case kByCompletion:
        put(task.Complete ? 0 : 1,
            GetString(task.Complete ? StringId::StrCompletedTasks : StringId::StrActiveTasks));
        return;
    case kByPriority: {
        constexpr int kNames[] = {StringId::StrLowPriorityTasks, StringId::StrNormalPriorityTasks,
                                  StringId::StrHighPriorityTasks};
        const int priority = std::clamp(task.Priority, 0, 2);
        put(quint32(priority), GetString(kNames[priority]));
        return;
    }
    default:
        put(0, QString());
    }
}

const CTaskList::CGroups& CTaskList::Groups()
{
    if (!m_grouped)
        BuildGroups();
    return m_groups;
}

void CTaskList::DropGroups()
{
    m_groups.clear();
    m_grouped = false;
}

void CTaskList::BuildGroups()
{
    m_grouped = true;
    // Sorted before, so that each entry joins the end of its group.
    std::vector<const CTask*> sorted;
    sorted.reserve(m_tasks.size());
    for (const auto& [oid, task] : m_tasks)
        sorted.push_back(&task);
    SortForGroups(sorted);
    const CPlacing placing(m_categories, CTaskGroup::Where::Last);
    for (const CTask* task : sorted)
        InsertIntoGroups(*task, placing);
}

void CTaskList::RefreshMatches()
{
    const int today = GetToday();
    for (const auto& group : m_groups) {
        group->VisibleCount = 0;
        for (const auto& task : group->Tasks) {
            task->MatchesView = MatchesItemsToView(*task, today);
            group->VisibleCount += task->Visible && task->MatchesView ? 1 : 0;
        }
    }
}

void CTaskList::ReapplyFilter()
{
    const CFilter& filter = g_Settings.GetActiveFilter();
    for (auto& [oid, task] : m_tasks)
        task.Visible = MatchesFilter(filter, task.Categories);
    for (const auto& group : m_groups) {
        for (const auto& task : group->Tasks)
            task->Visible = MatchesFilter(filter, task->Categories);
    }
    RefreshMatches();
}

// ---- changes

bool CTaskList::Remove(CEOID oid)
{
    if (m_tasks.erase(oid) == 0)
        return false;
    for (const auto& group : m_groups) {
        std::erase_if(group->Tasks, [&](const auto& task) {
            if (task->RecordOid != oid)
                return false;
            group->VisibleCount -= task->Visible && task->MatchesView ? 1 : 0;
            return true;
        });
    }
    std::erase_if(m_groups, [](const auto& group) { return group->Tasks.empty(); });
    return true;
}

std::vector<CCalendarTask*> CTaskList::Read(const std::shared_ptr<CPropertyVolume>& volume,
                                            const std::vector<CEOID>& oids)
{
    std::vector<CCalendarTask*> found;
    CTaskReader reader(m_categories);
    if (oids.empty() || !reader.Open(volume))
        return found;
    const CPlacing placing(m_categories, CTaskGroup::Where::InOrder);
    for (const CEOID oid : oids) {
        CCalendarTask task;
        if (reader.Seek(SeekType::CeOid, {0, qint64(oid)}) != oid || reader.ReadTask(task) != oid)
            continue;
        Remove(oid);
        CCalendarTask& kept = m_tasks.emplace(oid, std::move(task)).first->second;
        if (m_grouped)
            InsertIntoGroups(kept, placing);
        found.push_back(&kept);
    }
    return found;
}
