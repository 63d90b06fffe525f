#include "pim/item_search.h"

#include "pim/pim_store_private.h"
#include "records/property_numbers.h"
#include "settings/settings.h"

#include <QElapsedTimer>

namespace
{
constexpr int kScanAtOnce = 1000; // some 0.3 ms
// The stored start is UTC, and that of an all-day series lies in another zone.
constexpr int kZoneReachDays = 2;

// A search goes over all items, whatever filter is in force.
bool ReadFound(CTaskReader& reader, CEOID oid, CTask& task)
{
    const bool read = reader.Seek(SeekType::CeOid, {0, qint64(oid)}) == oid && reader.ReadTask(task) == oid;
    task.Visible = true;
    return read;
}

bool ReadFound(CAppointmentReader& reader, CEOID oid, CAppointment& item)
{
    CRecurrencePattern pattern;
    CEOID found = 0;
    if (reader.Seek(SeekType::CeOid, {0, qint64(oid)}) != oid ||
        !reader.ReadAppointment(item, pattern, found, -1, -1) || found != oid)
        return false;
    reader.TakeRecordDates(item, pattern);
    return true;
}

bool ShowsAlike(const CPimItem& a, const CPimItem& b)
{
    return a.Subject == b.Subject && a.Start == b.Start && a.End == b.End && a.HasNote == b.HasNote &&
           a.ReminderSet == b.ReminderSet && a.Recurrence == b.Recurrence && a.Sensitivity == b.Sensitivity &&
           a.Categories == b.Categories;
}

bool ShowsAlike(const CAppointment& a, const CAppointment& b)
{
    return ShowsAlike(static_cast<const CPimItem&>(a), b) && a.Location == b.Location && a.AllDay == b.AllDay &&
           a.BusyStatus == b.BusyStatus && a.HasAttendees == b.HasAttendees;
}

bool ShowsAlike(const CTask& a, const CTask& b)
{
    return ShowsAlike(static_cast<const CPimItem&>(a), b) && a.Priority == b.Priority && a.Complete == b.Complete;
}

template <typename Reader, typename Item> FoundState Refresh(Reader& reader, Item& item, Item& read)
{
    if (!ReadFound(reader, item.RecordOid, read))
        return FoundState::Gone;
    const bool alike = ShowsAlike(item, read);
    read.CopyTo(item);
    return alike ? FoundState::Same : FoundState::Changed;
}
} // namespace

void CSearchRequest::TakeSettings()
{
    const auto& view = g_Settings.SearchView;
    Contains = view.SearchMode == 1;
    SearchTasks = view.SearchType == 0 || view.SearchType == 2;
    SearchAppointments = view.SearchType == 0 || view.SearchType == 1;
    Limit = view.SearchLimit;
    StartRange = view.SearchStart;
    EndRange = view.SearchEnd;
}

int SearchDay(int index, int today, int open)
{
    static constexpr int kDays[] = {-365, -182, -61, -31, 0, 31, 61, 182, 365};
    return index >= 1 && index <= int(std::size(kDays)) ? today + kDays[index - 1] : open;
}

DATE ResultDay(const CPimItem& item)
{
    const DATE date = item.GetKind() == kKindTask && item.End != NO_DATE ? item.End : item.Start;
    return date == NO_DATE ? NO_DATE : DATE(DayNumber(date));
}

// ---- the test

CSubjectTest::CSubjectTest(const QString& text, bool contains) : m_text(text.toLower()), m_contains(contains)
{
    m_plain = m_text.toStdString();
    m_isPlain = std::all_of(m_plain.begin(), m_plain.end(), [](char c) { return uchar(c) < 0x80; });
}

bool CSubjectTest::Fits(const QString& subject) const
{
    const QString lower = subject.toLower();
    return m_contains ? lower.contains(m_text) : lower.startsWith(m_text);
}

bool CSubjectTest::FitsPlain(std::string_view ascii) const
{
    return m_contains ? ascii.find(m_plain) != std::string_view::npos : ascii.starts_with(m_plain);
}

bool CSubjectTest::Fits(std::string_view utf8) const
{
    constexpr size_t kShort = 256;
    if (utf8.size() > kShort)
        return Fits(QString::fromUtf8(utf8.data(), qsizetype(utf8.size())));
    char lower[kShort];
    uchar bits = 0;
    for (size_t i = 0; i < utf8.size(); ++i) {
        const uchar c = uchar(utf8[i]);
        bits |= c;
        lower[i] = char(c + (uchar(c - 'A') < 26 ? 32 : 0));
    }
    if (bits >= 0x80) // lower case may turn other letters into plain ones
        return Fits(QString::fromUtf8(utf8.data(), qsizetype(utf8.size())));
    return m_isPlain && FitsPlain({lower, utf8.size()});
}

// ---- the search

CItemSearch::CItemSearch(std::shared_ptr<CPropertyVolume> volume, CCategoryStore& categories,
                         const CSearchRequest& request)
    : m_volume(std::move(volume)), m_categories(categories), m_request(request),
      m_test(request.Text, request.Contains), m_firstDay(SearchDay(request.StartRange, GetToday(), kSearchDayFirst)),
      m_lastDay(SearchDay(request.EndRange, GetToday(), kSearchDayLast)), m_appointments(categories),
      m_tasks(categories)
{
    if (m_volume && !m_request.Text.isEmpty())
        Enter(Stage::Tasks);
}

// The given stage, or the first one after it that has something to search.
void CItemSearch::Enter(Stage stage)
{
    m_candidates.clear();
    m_next = 0;
    m_scanned = false;
    if (stage == Stage::Tasks && !(m_request.SearchTasks && m_tasks.Open(m_volume)))
        stage = Stage::Appointments;
    if (stage == Stage::Appointments &&
        !(m_request.SearchAppointments && m_appointments.Open(m_volume, Prop::Start)))
        stage = Stage::Done;
    m_stage = stage;
    m_place = {};
    if (stage == Stage::Appointments && m_firstDay != kSearchDayFirst)
        m_place.Number = FileTimeOfDate(m_firstDay - kZoneReachDays);
}

void CItemSearch::Scan()
{
    const bool tasks = m_stage == Stage::Tasks;
    const FileTime until = tasks ? std::numeric_limits<FileTime>::max() : FileTimeOfDate(m_lastDay + kZoneReachDays);
    m_candidates.clear();
    m_next = 0;
    const auto look = [&](CEOID oid, std::string_view subject, qint64 start) {
        if (start <= until && m_test.Fits(subject))
            m_candidates.push_back(oid);
    };
    const bool goesOn = m_volume->ScanTexts(tasks ? kTasksDatabase : kAppointmentsDatabase, Prop::Subject,
                                            tasks ? 0 : Prop::Start, m_place, kScanAtOnce, look);
    m_scanned = !goesOn || m_place.Number > until;
}

bool CItemSearch::RunSlice(ISearchSink& sink, int milliseconds)
{
    QElapsedTimer time;
    time.start();
    const int foundBefore = m_found;
    do {
        if (m_stage != Stage::Done && sink.ShouldStop())
            m_stage = Stage::Done;
        if (m_stage == Stage::Done)
            break;
        if (m_next < m_candidates.size()) {
            Offer(m_candidates[m_next++], sink);
        } else if (m_scanned) {
            Enter(m_stage == Stage::Tasks ? Stage::Appointments : Stage::Done);
        } else {
            Scan();
        }
        if (foundBefore == 0 && m_found == 1)
            break;
    } while (time.elapsed() < milliseconds);
    return m_stage != Stage::Done;
}

void CItemSearch::Offer(CEOID oid, ISearchSink& sink)
{
    m_categories.BeginPass(); // other readers may have been between
    if (m_stage == Stage::Tasks)
        OfferTask(oid, sink);
    else
        OfferAppointment(oid, sink);
}

bool CItemSearch::IsWithin(const CTask& task) const
{
    // Without a date a task is within a bound only when that is open.
    const bool begins =
        task.Start == NO_DATE ? m_firstDay == kSearchDayFirst : DayNumber(task.Start) >= m_firstDay;
    const bool ends = task.End == NO_DATE ? m_lastDay == kSearchDayLast : DayNumber(task.End) <= m_lastDay;
    return begins && ends;
}

void CItemSearch::OfferTask(CEOID oid, ISearchSink& sink)
{
    CCalendarTask task;
    if (ReadFound(m_tasks, oid, task) && m_test.Fits(task.Subject) && IsWithin(task))
        Tell(task, sink);
}

void CItemSearch::OfferAppointment(CEOID oid, ISearchSink& sink)
{
    CAppointment item(kKindAppointment, CAppointment::Blank{});
    if (!ReadFound(m_appointments, oid, item) || !m_test.Fits(item.Subject))
        return;
    const int day = DayNumber(item.Start);
    // One that moved to a later day meanwhile is met again there.
    if (day >= m_firstDay && day <= m_lastDay && m_told.insert(oid).second)
        Tell(item, sink);
}

void CItemSearch::Tell(CPimItem& item, ISearchSink& sink)
{
    ++m_found;
    if (m_found == m_request.Limit)
        m_stage = Stage::Done; // before the sink, which may run events
    sink.OnMatch(item);
}

// ---- the store's side

void CPimStore::Search(const CSearchRequest& request, ISearchSink* sink)
{
    if (!sink || sink->ShouldStop())
        return;
    CItemSearch search(d->Volume, d->Categories, request);
    while (search.RunSlice(*sink))
        sink->OnProgress();
}

FoundState CPimStore::RefreshFound(CPimItem& item)
{
    if (!d->Volume)
        return FoundState::Gone;
    if (item.GetKind() == kKindTask) {
        CTaskReader reader(d->Categories);
        CCalendarTask read;
        return reader.Open(d->Volume) ? Refresh<CTaskReader, CTask>(reader, static_cast<CTask&>(item), read)
                                      : FoundState::Gone;
    }
    CAppointmentReader reader(d->Categories);
    CAppointment read(kKindAppointment, CAppointment::Blank{});
    return reader.Open(d->Volume, Prop::Start) ? Refresh(reader, static_cast<CAppointment&>(item), read)
                                               : FoundState::Gone;
}
