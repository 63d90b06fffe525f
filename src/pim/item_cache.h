// The cached days and everything that fills them: loading by whole month grids, spreading of
// items over days, trimming, what notices take away and bring, and the next event of today.
// Shape: days stand in one row without gaps, so that a day is found by its number.
// Units: days are day numbers, both ends of a range included.
// Ownership: the cache owns its days; loading and notices may free any of them.
#pragma once
#include "pim/appointment_reader.h"
#include "pim/contact_list.h"
#include "pim/day_items.h"
#include "pim/task_list.h"

#include <climits>
#include <unordered_map>

// The days on which an item shows, before they are cut to what is cached.
struct CDaySpan {
    int First = 0, Last = 0;
    bool EndsPreviousDay = false; // it runs into the small hours, which count as the day before
};
// `humanTime` is the hour up to which the small hours count so, 0 for never.
CDaySpan SpreadSpan(const CAppointment& item, int humanTime);

// The days on which a task shows, before they are cut to what is cached.
struct CTaskDays {
    static constexpr int kNone = INT_MIN;
    int Due = kNone;
    int ActiveFrom = kNone; // on each day from here up to the due day
    int Single = kNone;     // today, for what has no date or is overdue
};
CTaskDays DaysOfTask(const CTask& task, int today);

class CItemCache : public IItemColors
{
public:
    explicit CItemCache(CCategoryStore& categories) : m_categories(categories) {}
    void SetVolume(std::shared_ptr<CPropertyVolume> volume);
    void FetchColors();
    COLORREF GetItemColor(const CPimItem& item) const override;

    // Result: whether anything was loaded.
    bool LoadRange(int currentDay, int firstDay, int lastDay);
    CDayItems* FindDay(int day) const;
    int CurrentDay() const { return m_currentDay; }
    int FirstDay() const { return m_days.empty() ? 0 : m_days.front()->Day; }
    int Count() const { return int(m_days.size()); }
    void Clear();
    void Reload(); // the same days and the contacts anew
    void ReapplyFilter();

    // Takes the records away from all days and reads those anew that are still there. Result: bits
    // of the views concerned.
    int ReplaceAppointments(std::vector<CEOID> removed, const std::vector<CEOID>& read);

    // Contacts and their special events (special_events.cpp). The list is loaded when special
    // events are shown, or by force. Result: whether it is there.
    bool LoadContacts(bool force);
    CContactList& Contacts() { return m_contacts; }
    int ReplaceContacts(std::vector<CEOID> removed, const std::vector<CEOID>& read);

    // Tasks, on the days and in groups (task_days.cpp); read at the first use.
    const CTaskList& Tasks();
    const CTaskList::CGroups& TaskGroups();
    CTaskList& LoadedTasks() { return m_tasks; } // perhaps not yet
    int ReplaceTasks(const std::vector<CEOID>& removed, const std::vector<CEOID>& read);

    // Marks what of today is past. Result: whether the next moment at which an item ends differs.
    bool ScanToday(DATE now);
    DATE NextEventTime() const { return m_nextEventTime; }

    // UIDs of what is loaded from now on.
    void KeepUids(bool keep) { m_keepUids = keep; }
    const QString* FindUid(CEOID oid) const;
    void RememberUid(CEOID oid, const QString& uid)
    {
        if (m_keepUids)
            m_uids[oid] = uid;
    }

private:
    enum class Pass { Ordinary, Long, Recurring };
    bool WidenToMissing(int& first, int& last);
    void LoadDays(int first, int last);
    void AddEmptyDays(int first, int last);
    void ReadPass(CAppointmentReader& reader, Pass pass, int first, int last);
    int SpreadInstances(CAppointmentReader& reader, CAppointment& item, const CRecurrencePattern& pattern,
                        int first, int last);
    int Spread(const CAppointment& item, bool endsPreviousDay, int first, int last);
    int Spread(const CAppointment& item);
    CAppointmentReader MakeReader();
    int RemoveFromDays(const std::vector<CEOID>& sorted);
    int PlaceContacts(int first, int last, const std::vector<CEOID>* only);
    int PlaceSpecialEvent(const CContactInfo& contact, int kind, const CSpecialDay& at);
    void OfferTasks(int first, int last);
    bool OfferTask(const CCalendarTask& task, int today, int first, int last);
    void MoveTasksToToday();
    void SettleDays();
    void Trim(int firstDay, int lastDay);
    int EndDay() const { return FirstDay() + Count(); }

    CCategoryStore& m_categories;
    std::shared_ptr<CPropertyVolume> m_volume;
    CContactList m_contacts;
    std::vector<std::unique_ptr<CDayItems>> m_days;
    CTaskList m_tasks{m_categories};
    int m_tasksToday = 0; // the day that was today when tasks were put on the days
    int m_currentDay = 0;
    DATE m_nextEventTime = NO_DATE;
    COLORREF m_apptColorRegular = kColorNotSet, m_apptColorAllDay = kColorNotSet;
    bool m_keepUids = false;
    std::unordered_map<CEOID, QString> m_uids;
};
