// The one global object of the PIM data: all that views read, and the writing of what editors hand in.
// Shape: days are asked for by day number; the cache grows by whole month grids, 70 days at most.
// Errors: a missing volume or database gives empty lists, no message. Writing tells a failure by its
//   result and, where the user has to know, through IWriterQuestions.
#pragma once
#include "object_model/object_model.h"
#include "pim/category_store.h"
#include "pim/contact_list.h"
#include "pim/day_items.h"
#include "pim/recurrence_presets.h"
#include "pim/task_list.h"
#include "pim/view_mask.h"
#include "platform/property_volume.h"

#include <functional>
#include <memory>

// What writing asks and tells the user; the side of the windows gives one.
class IWriterQuestions
{
public:
    virtual ~IWriterQuestions() = default;
    enum class Choice { None, First, Second };
    // Two buttons with an explanation each. None: the user went back.
    virtual Choice AskTwoWays(const QString& question, const QString& first, const QString& firstText,
                              const QString& second, const QString& secondText) = 0;
    virtual void ShowMessage(const QString& text, const QString& title) = 0;
};

struct CSearchRequest; // item_search.h
class ISearchSink;
enum class FoundState : int;

class CPimStore
{
public:
    CPimStore();
    ~CPimStore();

    // Opens what is read all the time; `setNextEvent` re-arms timer 2 of the owner (milliseconds
    // from now, a day at most; -1 stops it). The volume may be null: everything is empty then.
    void Initialize(std::shared_ptr<CPropertyVolume> volume, std::function<void(qint64)> setNextEvent = {});
    void Shutdown();
    bool IsOpen() const;
    const std::shared_ptr<CPropertyVolume>& Volume() const;
    CCategoryStore& Categories(); // the same object as long as the store lives

    // The main request: remembers the current day, loads what is missing, re-arms the timer.
    bool LoadRange(DATE currentDay, int firstDay, int lastDay);
    DATE CursorDate() const; // whole day; NO_DATE before the first LoadRange
    CDayItems* FindDay(int day);
    void Clear(); // drops all cached days
    COLORREF GetItemColor(const CPimItem& item) const;
    bool OnNextEventTimer(DATE now); // true if the moment changed
    // The contacts in order of name, loaded by force; a reference lives until the next notice.
    const std::vector<CContactInfo>& Contacts();
    // The tasks in groups as the tasks view shows them, read at the first use; a reference lives
    // until the next notice.
    const CTaskList::CGroups& GetTaskGroups();
    void RebuildTaskGroups();  // after a change of their sort settings
    void RefreshTaskMatches(); // after a change of the items to view
    void ReapplyFilter();

    // Digests one notice; the result is a mask of ViewMask bits.
    int OnDatabaseNotification(int dwParam, quint32 uType, CEOID oid);
    struct CDrain {
        int Mask = 0;
        bool Overflowed = false; // more than 500: the cache was cleared and loaded anew
        int Notices = 0;
        int LastParam = 0;
        quint32 LastType = 0;
        CEOID LastOid = 0;
    };
    // All notices since the last drain, in one go.
    CDrain DrainNotices();

    // Fetched when asked for. `occurrenceDay` is the original day of an occurrence, 0 for the item.
    bool GetItemTexts(quint32 itemId, DATE date, int occurrenceDay, int kind, QString& note,
                      QString& attendees);
    bool ReadAttendees(quint32 itemId, std::vector<CAttendee>& attendees);
    bool ReadReminderMinutes(CAppointment& item); // which the cache does not know; false: left alone
    // The occurrence of an appointment on that day (or the item itself), as the cache would hold
    // it. One that was moved to the day wins over the one that the pattern puts there.
    bool ReadOccurrence(quint32 itemId, int day, CAppointment& item);
    // From the object, with exact values, for editing: an all-day end is the last day itself.
    void ReadAppointmentFromModel(IAppointment& item, CAppointment& appointment);
    // The UID of a record, empty when it has none; quick for records loaded after KeepUids(true).
    QString GetUid(CEOID oid);
    void KeepUids(bool keep);

    // Searches in one go, in slices between which the sink may let a window handle its events
    // (item_search.h; a CItemSearch does the same by its owner's timer). It ends by the request's
    // limit, by the sink or with the records.
    void Search(const CSearchRequest& request, ISearchSink* sink);
    // Reads a result's record anew after a notice, some 10 us each. Gone: the item stays as it was.
    FoundState RefreshFound(CPimItem& item);

    // ---- writing (appointment_writer.cpp). Occurrences are named by their original day.

    // The appointment to edit: the item, or with `questions` given and a series the one that the user
    // chooses. Null when there is none or the user went back; `onlyOccurrence` says which it is.
    std::unique_ptr<IAppointment> GetEditTarget(IPOutlookApp& app, quint32 itemId, int occurrenceDay,
                                                IWriterQuestions* questions, bool* onlyOccurrence = nullptr);
    // An item identifier of 0 makes a new one. `attendees` null leaves them alone. False when nothing
    // was saved; the user has then been told.
    // `item` is what ReadAppointmentFromModel gave of the edit target, changed: of a series with the
    // start of its first occurrence. An all-day end goes in as the midnight after its last day.
    // A whole item repeats when its flag and `presetIndex` both say so, else its pattern goes.
    // `customPattern` counts with kPresetCustom. A pattern is written only when it is another than
    // the stored one or the start's day was moved; so one that no preset holds survives an edit of
    // the rest. Under a custom pattern whose own start was left alone, a moved start moves it.
    // An occurrence (`onlyOccurrence`, with its original day) ignores pattern, reminder, privacy.
    bool SaveAppointment(IPOutlookApp* app, const CAppointment& item, const QString& note, int presetIndex,
                         bool onlyOccurrence, const CRecurrencePatternData* customPattern,
                         const std::vector<CAttendee>* attendees, int occurrenceDay,
                         IWriterQuestions* questions);
    // What the editors show of an item's recurrence; at most one of the two items is given. 0 for
    // neither, a new one or a plain one, and `data` then stays. Read from the object model anew.
    // Always true.
    bool GetPresetIndex(IPOutlookApp* app, const CAppointment* appointment, const CTask* task, int& preset,
                        CRecurrencePatternData& data);
    // The sentence of an appointment's or task's recurrence; empty when it has none.
    QString GetRecurrenceText(quint32 itemId);
    // A series asks which; without `questions` the occurrence goes, or with day 0 the series.
    bool DeleteAppointment(IPOutlookApp& app, quint32 itemId, int occurrenceDay, IWriterQuestions* questions);
    bool DuplicateItem(IPOutlookApp& app, quint32 itemId);         // of any kind, with its note
    CStatus BeamItem(IPOutlookApp& app, int kind, quint32 itemId); // by ItemKind; a contact too
    // What sessions hand requests, cancellations and beamed items to; borrowed, null for none.
    void SetTransport(IItemTransport* transport);
    IItemTransport* Transport() const;

    // ---- tasks (task_writer.cpp)
    void ReadTaskFromModel(ITask& item, CTask& task);
    // An item identifier of 0 makes a new one. The recurrence as of an appointment; its start is the
    // task's start date, or without one the due date, and of a task with neither today.
    bool SaveTask(IPOutlookApp* app, const CTask& task, const QString& note, int presetIndex,
                  const CRecurrencePatternData* customPattern);
    // A series asks whether all of it goes or its present date alone; without `questions` the date.
    bool DeleteTask(IPOutlookApp& app, quint32 itemId, IWriterQuestions* questions);
    // Completes an active task or activates a complete one; its reminder goes.
    bool ToggleTaskComplete(IPOutlookApp& app, quint32 itemId);

private:
    struct Private;
    std::unique_ptr<Private> d;
};

// The object model for one operation: logged on while it lives.
class CPoomSession
{
public:
    explicit CPoomSession(const std::shared_ptr<CPropertyVolume>& volume);
    ~CPoomSession();
    CPoomSession(const CPoomSession&) = delete;
    CPoomSession& operator=(const CPoomSession&) = delete;
    IPOutlookApp* App() const { return m_app.get(); } // null when there is no volume or the logon failed

private:
    std::unique_ptr<IPOutlookApp> m_app;
};

CPimStore& PimStore(); // the global one
