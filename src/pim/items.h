// The item classes that appointments and tasks share. Items are light values: the cache holds
// one copy per day on which the item shows; a note's text is fetched only when asked for.
#pragma once
#include "util/color.h"
#include "util/date_time.h"

#include <QString>
#include <algorithm>
#include <memory>
#include <vector>

enum ItemKind {
    kKindAppointment = 2,
    kKindTask = 3,
    kKindContact = 4,
    kKindBirthday = 5,
    kKindAnniversary = 6
};

class CDayItems;

class CPimRecord
{
public:
    virtual ~CPimRecord() = default;
    virtual int GetKind() const = 0;
    virtual void CopyIdsTo(CPimRecord& other) const;

    quint32 ItemId = 0;    // tagged
    quint32 RecordOid = 0; // CEOID
    bool Visible = true;   // passes the filter in force
};

// A small set of category numbers in ascending order.
class CCategorySet
{
public:
    void Insert(qint32 number);
    bool Contains(qint32 number) const;
    void Clear() { m_numbers.clear(); }
    bool IsEmpty() const { return m_numbers.empty(); }
    auto begin() const { return m_numbers.begin(); }
    auto end() const { return m_numbers.end(); }
    bool operator==(const CCategorySet&) const = default;

private:
    std::vector<qint32> m_numbers;
};

class CCategorizedRecord : public CPimRecord
{
public:
    virtual void CopyCategoriesTo(CCategorizedRecord& other) const;

    CDayItems* Owner = nullptr; // the day that holds this copy
    CCategorySet Categories;
};

class CPimItem : public CCategorizedRecord
{
public:
    virtual void CopyCommonTo(CPimItem& other) const;
    bool IsRecurring() const { return Recurrence != 0; }
    bool IsPrivate() const { return Sensitivity == 2; }
    void SetPrivate(bool set) { Sensitivity = set ? 2 : 0; }

    QString Subject;
    DATE Start = NO_DATE; // a task's start date
    DATE End = NO_DATE;   // a task's due date
    bool HasNote = false;
    bool ReminderSet = false;
    int Recurrence = 0;  // 0 plain, 1 recurring, 2 an occurrence with overrides
    int Sensitivity = 0; // 0 normal, 2 private

    // Where the view in front painted the item last, in content coordinates; 0 after a rebuild.
    int LayoutTop = 0, LayoutBottom = 0;
};

// A birthday or anniversary: its item identifier is the contact's.
inline bool IsSpecialEvent(const CPimRecord& item)
{
    return item.GetKind() == kKindBirthday || item.GetKind() == kKindAnniversary;
}

class CAppointment : public CPimItem
{
public:
    // Takes reminder, start and duration from the settings' default values.
    explicit CAppointment(int kind = kKindAppointment);
    struct Blank {
    };
    CAppointment(int kind, Blank) : Kind(kind) {} // without the defaults, for readers
    int GetKind() const override { return Kind; }
    void CopyTo(CAppointment& other) const;

    int Kind;
    bool EndsPreviousDay = false; // the end belongs to the day before
    bool Past = false;
    bool HasAttendees = false;
    bool Conflict = false;
    bool AllDay = false;
    int BusyStatus = 2;
    int ReminderMinutes = 0;
    QString Location;
    int OriginalDay = 0;          // of an occurrence: the day its pattern puts it on; 0 for a plain item
    DATE OriginalStart = NO_DATE; // that occurrence's original start in local time
};

class CTask : public CPimItem
{
public:
    int GetKind() const override { return kKindTask; }
    virtual void CopyTo(CTask& other) const;
    // Negative: this one stands behind the other; positive: before it.
    virtual int Compare(const CTask& other) const = 0;
    // By one key of the settings: 0 due, 1 start, 2 priority, 3 completion, 4 subject, each also
    // 100 higher; others count as equal. Direction 1 is descending.
    int CompareBy(const CTask& other, int key, int direction) const;

    int Priority = 1; // 0 low, 1 normal, 2 high
    bool Complete = false;
    DATE ReminderTime = NO_DATE;
    DATE CompletedDate = NO_DATE;
};

// One copy per day on which it shows; ordered by the settings of section Tasks.
class CCalendarTask : public CTask
{
public:
    int Compare(const CTask& other) const override;
};

// In a group of the tasks view; ordered by the settings of section TasksView.
class CTaskListEntry : public CTask
{
public:
    int Compare(const CTask& other) const override;
    bool MatchesView = true; // by the settings' items to view
};

// Where a new task goes in a list that is in order.
template <typename Task> auto PlaceOfTask(const std::vector<std::unique_ptr<Task>>& tasks, const Task& task)
{
    if (tasks.empty() || tasks.front()->Compare(task) < 0)
        return tasks.begin();
    if (tasks.back()->Compare(task) > 0)
        return tasks.end(); // often, where many come in order
    return std::partition_point(tasks.begin() + 1, tasks.end(),
                                [&task](const auto& x) { return x->Compare(task) > 0; });
}
