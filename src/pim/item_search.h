// The search for items by their subject, in the calling thread and in slices, so that a window
// stays alive while it runs.
// Shape: tasks come first, in the order of their records, then appointments by their start; a
//   series is found once, by its record. The subjects alone are tested as they lie in the volume;
//   a record is read whole only when its subject fits. What was deleted or changed meanwhile is
//   judged as it is when its turn comes.
// Units: bounds are day numbers, both inclusive.
// Ownership: a found item lives for the time of OnMatch; the sink copies what it wants to keep.
// Errors: a database that cannot be opened is passed over.
#pragma once
#include "pim/appointment_reader.h"
#include "pim/task_list.h"

#include <string>
#include <unordered_set>

struct CSearchRequest {
    QString Text;
    bool Contains = true; // else the subject starts with the text
    bool SearchTasks = true;
    bool SearchAppointments = true;
    qint32 Limit = 0; // the search ends with so many results; 0 for no limit
    qint32 StartRange = 0, EndRange = 0; // numbers of SearchDay

    void TakeSettings(); // all but the text, from those of the search view
};

// Where a search begins or ends by an index of its settings, beside `today`; index 0 is open.
constexpr int kSearchDayFirst = 0, kSearchDayLast = 401768; // the open bounds
int SearchDay(int index, int today, int open);

class ISearchSink
{
public:
    virtual ~ISearchSink() = default;
    virtual bool ShouldStop() = 0; // asked before each record that is read and after each slice
    virtual void OnMatch(const CPimItem& item) = 0; // a CAppointment or a CCalendarTask
    virtual void OnProgress() = 0; // after each slice: the place to let a window handle its events
};

// Whether a subject fits, in lower case as the text.
class CSubjectTest
{
public:
    CSubjectTest(const QString& text, bool contains);
    bool Fits(std::string_view utf8) const;
    bool Fits(const QString& subject) const;

private:
    bool FitsPlain(std::string_view ascii) const;

    QString m_text; // in lower case
    std::string m_plain;
    bool m_contains, m_isPlain;
};

class CItemSearch
{
public:
    static constexpr int kSliceMs = 8;

    // What it reads from stays open as long as the search lives, whatever becomes of the store.
    CItemSearch(std::shared_ptr<CPropertyVolume> volume, CCategoryStore& categories, const CSearchRequest& request);

    // Goes on for about so long, and up to the first match. False when the search is over: by its
    // limit, by the end of the records or by the sink.
    bool RunSlice(ISearchSink& sink, int milliseconds = kSliceMs);
    int Found() const { return m_found; }

private:
    enum class Stage { Tasks, Appointments, Done };
    void Enter(Stage stage);
    void Scan();
    void Offer(CEOID oid, ISearchSink& sink);
    void OfferTask(CEOID oid, ISearchSink& sink);
    void OfferAppointment(CEOID oid, ISearchSink& sink);
    void Tell(CPimItem& item, ISearchSink& sink);
    bool IsWithin(const CTask& task) const;

    std::shared_ptr<CPropertyVolume> m_volume;
    CCategoryStore& m_categories;
    CSearchRequest m_request;
    CSubjectTest m_test;
    int m_firstDay, m_lastDay;
    Stage m_stage = Stage::Done;
    bool m_scanned = false; // all subjects of this stage
    CPropertyVolume::CScanPlace m_place;
    std::vector<CEOID> m_candidates; // of the subjects scanned last
    size_t m_next = 0;               // of them
    std::unordered_set<CEOID> m_told; // appointments
    CAppointmentReader m_appointments;
    CTaskReader m_tasks;
    int m_found = 0;
};

// What became of an item that is shown as a result, see CPimStore::RefreshFound.
enum class FoundState : int { Same, Changed, Gone };

// The day under which a result stands: its start, of a task the date it is due, else its start.
// NO_DATE for a task with neither.
DATE ResultDay(const CPimItem& item);
