// All tasks, and the named groups in which the tasks view shows them.
// Shape: the tasks are read as a whole at first use; groups are made of them when they are asked
//   for and follow every change. A task stands in one group for each of its categories, or in one.
// Ownership: the list owns its tasks, a group its entries; a notice may free any of them.
// Errors: without the database the list is empty.
#pragma once
#include "pim/category_store.h"
#include "pim/pim_database.h"

#include <map>

class CTaskReader : public CPimDatabase
{
public:
    explicit CTaskReader(CCategoryStore& categories);
    bool Open(const std::shared_ptr<CPropertyVolume>& volume);
    // The record at the place, into a fresh task. Result its CEOID, 0 at the end.
    CEOID ReadTask(CTask& task);

private:
    CCategoryStore& m_categories;
    TimeZoneInformation m_zone;
    std::vector<CEPROPVAL> m_rows;
};

// As CTaskListEntry::Compare, for any task, and many at once.
int CompareInGroups(const CTask& a, const CTask& b);
void SortForGroups(std::vector<const CTask*>& tasks);

class CTaskGroup : public CPimRecord
{
public:
    int GetKind() const override { return 0; }
    enum class Where { InOrder, Last };
    void Add(const CTask& task, bool matches, Where where);

    // The group's number stands in ItemId.
    QString Name;
    std::vector<std::unique_ptr<CTaskListEntry>> Tasks; // in order
    int VisibleCount = 0;                               // that pass the filter and match the view
};

// Whether a task is one of those that the tasks view is set to show.
bool MatchesItemsToView(const CTask& task, int today = GetToday());

class CTaskList
{
public:
    using CGroups = std::vector<std::unique_ptr<CTaskGroup>>;

    explicit CTaskList(CCategoryStore& categories) : m_categories(categories) {}
    void Load(const std::shared_ptr<CPropertyVolume>& volume); // once, until Clear
    void Clear();
    bool IsLoaded() const { return m_loaded; }
    const std::map<CEOID, CCalendarTask>& All() const { return m_tasks; }

    const CGroups& Groups(); // in order of number, or the reverse
    void DropGroups();       // by changed settings or categories: made anew when asked for
    void RefreshMatches();
    void ReapplyFilter();

    bool Remove(CEOID oid); // whether it was there
    // Reads those records as they are now. Result: those that are there, in the order given.
    std::vector<CCalendarTask*> Read(const std::shared_ptr<CPropertyVolume>& volume,
                                     const std::vector<CEOID>& oids);

private:
    struct CPlacing; // what the placing of many tasks shares
    void BuildGroups();
    void InsertIntoGroups(const CTask& task, const CPlacing& placing);
    CTaskGroup& GroupOf(quint32 number, const QString& name);

    CCategoryStore& m_categories;
    bool m_loaded = false, m_grouped = false;
    std::map<CEOID, CCalendarTask> m_tasks;
    CGroups m_groups;
};
