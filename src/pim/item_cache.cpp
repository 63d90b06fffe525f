#include "pim/item_cache.h"

#include "pim/filter_match.h"
#include "pim/view_mask.h"
#include "records/property_numbers.h"
#include "settings/month_grid.h"
#include "settings/settings.h"

#include <algorithm>

namespace
{
constexpr int kMaxDays = 70;
// A plain item that began earlier than this before a range is looked for among the long ones. One
// day more than the longest of the others: the stored time is UTC.
constexpr int kLookBackDays = 32;

bool IsMidnight(DATE date)
{
    return date == std::trunc(date);
}

bool IsVisible(const CPimItem& item)
{
    return MatchesFilter(g_Settings.GetActiveFilter(), item.Categories);
}
} // namespace

void CItemCache::SetVolume(std::shared_ptr<CPropertyVolume> volume)
{
    m_contacts.Clear();
    m_tasks.Clear();
    m_volume = std::move(volume);
}

CDaySpan SpreadSpan(const CAppointment& item, int humanTime)
{
    CDaySpan span{DayNumber(item.Start), DayNumber(item.End), false};
    if (item.AllDay) {
        if (IsMidnight(item.End))
            --span.Last;
    } else if (IsMidnight(item.End) && span.First < span.Last) {
        --span.Last;
    } else if (humanTime > 0 && span.Last - span.First == 1 &&
               std::llround((item.End - span.Last) * 1440.0) <= qint64(humanTime) * 60) {
        span.EndsPreviousDay = true;
        --span.Last;
    }
    // An item without a duration still shows on the day of its start.
    span.Last = std::max(span.Last, span.First);
    return span;
}

// ---- colours and filter

void CItemCache::FetchColors()
{
    m_apptColorRegular = g_Settings.ResolveColor(501);
    m_apptColorAllDay = g_Settings.ResolveColor(502);
}

COLORREF CItemCache::GetItemColor(const CPimItem& item) const
{
    for (const qint32 number : item.Categories) {
        const CCategory* category = m_categories.FindById(number);
        if (category && category->Color != kColorNotSet)
            return category->Color;
    }
    const int kind = item.GetKind();
    const bool isAppointment = kind == kKindAppointment || kind == kKindBirthday || kind == kKindAnniversary;
    const bool allDay = isAppointment && static_cast<const CAppointment&>(item).AllDay;
    return allDay ? m_apptColorAllDay : m_apptColorRegular;
}

void CItemCache::ReapplyFilter()
{
    for (const auto& day : m_days) {
        for (const auto& item : day->Appointments)
            item->Visible = IsVisible(*item);
        for (const auto& task : day->Tasks)
            task->Visible = IsVisible(*task);
        day->RecountSlots();
    }
    m_tasks.ReapplyFilter();
}

// ---- loading

CDayItems* CItemCache::FindDay(int day) const
{
    const int index = day - FirstDay();
    return index >= 0 && index < Count() ? m_days[size_t(index)].get() : nullptr;
}

void CItemCache::Clear()
{
    m_days.clear();
    m_uids.clear();
}

const QString* CItemCache::FindUid(CEOID oid) const
{
    const auto at = m_uids.find(oid);
    return at != m_uids.end() ? &at->second : nullptr;
}

bool CItemCache::LoadRange(int currentDay, int firstDay, int lastDay)
{
    m_currentDay = currentDay;
    MoveTasksToToday();
    if (!m_days.empty() && firstDay >= FirstDay() && lastDay < EndDay())
        return false;
    int first = GetMonthGridStart(firstDay);
    int last = GetMonthGridEnd(lastDay);
    if (!WidenToMissing(first, last))
        return false;
    LoadDays(first, last);
    Trim(firstDay, lastDay);
    return true;
}

// Cuts a range to the days that are missing at one side of the cached ones, or clears these where
// the range is apart or reaches beyond both sides. False when nothing is missing.
bool CItemCache::WidenToMissing(int& first, int& last)
{
    if (m_days.empty())
        return true;
    const int cachedFirst = FirstDay(), cachedLast = EndDay() - 1;
    if (first >= cachedFirst && last <= cachedLast)
        return false;
    if (first >= cachedFirst && first - 1 <= cachedLast)
        first = cachedLast + 1;
    else if (first < cachedFirst && last <= cachedLast && last + 1 >= cachedFirst)
        last = cachedFirst - 1;
    else
        Clear();
    return true;
}

void CItemCache::Reload()
{
    const int first = FirstDay(), last = EndDay() - 1;
    Clear();
    m_contacts.Clear();
    m_tasks.Clear();
    if (last >= first)
        LoadDays(first, last);
}

void CItemCache::AddEmptyDays(int first, int last)
{
    std::vector<std::unique_ptr<CDayItems>> days;
    for (int day = first; day <= last; ++day)
        days.push_back(std::make_unique<CDayItems>(day, this));
    const bool inFront = !m_days.empty() && last < FirstDay();
    m_days.insert(inFront ? m_days.begin() : m_days.end(), std::make_move_iterator(days.begin()),
                  std::make_move_iterator(days.end()));
}

CAppointmentReader CItemCache::MakeReader()
{
    CAppointmentReader reader(m_categories);
    if (m_keepUids)
        reader.SetUidSink([this](CEOID oid, const QString& uid) { m_uids[oid] = uid; });
    return reader;
}

void CItemCache::LoadDays(int first, int last)
{
    AddEmptyDays(first, last);
    CAppointmentReader reader = MakeReader();
    for (const Pass pass : {Pass::Ordinary, Pass::Long, Pass::Recurring})
        ReadPass(reader, pass, first, last);
    OfferTasks(first, last);
    if (g_Settings.General.IncludeSpecialEvents != 0 && LoadContacts(false))
        PlaceContacts(first, last, nullptr);
    SettleDays();
}

void CItemCache::ReadPass(CAppointmentReader& reader, Pass pass, int first, int last)
{
    const FileTime lookFrom = FileTimeOfDate(first - kLookBackDays);
    CEOID oid = 0;
    if (pass == Pass::Ordinary && reader.Open(m_volume, Prop::Start))
        oid = reader.Seek(SeekType::ValueGreaterOrEqual, {Prop::Start, lookFrom});
    else if (pass == Pass::Long && reader.Open(m_volume, Prop::LongSpan))
        oid = reader.Seek(SeekType::Beginning);
    else if (pass == Pass::Recurring && reader.Open(m_volume, Prop::Recurring))
        oid = reader.Seek(SeekType::ValueFirstEqual, {Prop::Recurring, 1});
    // One day past the range: the stored time is UTC.
    const FileTime stopAt = FileTimeOfDate(last + 2);
    while (oid != 0) {
        CAppointment item(kKindAppointment, CAppointment::Blank{});
        CRecurrencePattern pattern;
        const bool read = reader.ReadAppointment(item, pattern, oid, first, last);
        if (oid == 0 || (pass == Pass::Ordinary && reader.StoredStart() >= stopAt))
            break;
        if (!read || (item.Recurrence != 0) != (pass == Pass::Recurring))
            continue;
        if (pass == Pass::Long && reader.StoredStart() >= lookFrom)
            continue;
        SpreadInstances(reader, item, pattern, first, last);
    }
}

int CItemCache::SpreadInstances(CAppointmentReader& reader, CAppointment& item,
                                const CRecurrencePattern& pattern, int first, int last)
{
    item.Visible = IsVisible(item);
    int bits = 0;
    std::unique_ptr<CAppointment> override;
    while (reader.NextInstance(item, override, first, last, pattern))
        bits |= Spread(override ? *override : item);
    return bits;
}

int CItemCache::Spread(const CAppointment& item)
{
    const CDaySpan span = SpreadSpan(item, g_Settings.General.HumanTime);
    return Spread(item, span.EndsPreviousDay, std::max(span.First, FirstDay()),
                  std::min(span.Last, EndDay() - 1));
}

int CItemCache::Spread(const CAppointment& item, bool endsPreviousDay, int first, int last)
{
    int bits = 0;
    for (int day = first; day <= last; ++day) {
        auto copy = std::make_unique<CAppointment>(item);
        copy->EndsPreviousDay = endsPreviousDay;
        m_days[size_t(day - FirstDay())]->Defer(std::move(copy));
        bits |= kMaskListWeek | kMaskMonth | (day == m_currentDay ? kMaskDaily : 0);
    }
    return bits;
}

void CItemCache::SettleDays()
{
    for (const auto& day : m_days)
        day->Settle();
}

// One month grid goes, from the side away from the request, as long as the request's own grids
// stay whole.
void CItemCache::Trim(int firstDay, int lastDay)
{
    if (Count() <= kMaxDays)
        return;
    const int first = FirstDay(), last = EndDay() - 1;
    const int wantedFirst = GetMonthGridStart(firstDay), wantedLast = GetMonthGridEnd(lastDay);
    if (first < wantedFirst) {
        const int until = GetMonthGridStart(GetMonthGridEnd(first + 7) + 7) - 1;
        if (until >= first && until < wantedFirst)
            m_days.erase(m_days.begin(), m_days.begin() + (until - first + 1));
    } else if (last > wantedLast) {
        const int from = GetMonthGridEnd(GetMonthGridStart(last - 6) - 7) + 1;
        if (from <= last && from > wantedLast)
            m_days.erase(m_days.begin() + (from - first), m_days.end());
    }
}

// ---- changes

int CItemCache::RemoveFromDays(const std::vector<CEOID>& sorted)
{
    int bits = 0;
    for (const auto& day : m_days) {
        if (day->RemoveOids(sorted))
            bits |= kMaskListWeek | kMaskMonth | (day->Day == m_currentDay ? kMaskDaily : 0);
    }
    for (const CEOID oid : sorted)
        m_uids.erase(oid);
    return bits;
}

int CItemCache::ReplaceAppointments(std::vector<CEOID> removed, const std::vector<CEOID>& read)
{
    std::sort(removed.begin(), removed.end());
    int bits = kMaskSearch | RemoveFromDays(removed);
    CAppointmentReader reader = MakeReader();
    if (!m_days.empty() && !read.empty() && reader.Open(m_volume, Prop::Start)) {
        for (const CEOID oid : read) {
            CEOID found = 0;
            CAppointment item(kKindAppointment, CAppointment::Blank{});
            CRecurrencePattern pattern;
            if (reader.Seek(SeekType::CeOid, {0, qint64(oid)}) == oid &&
                reader.ReadAppointment(item, pattern, found, -1, -1) && found == oid)
                bits |= SpreadInstances(reader, item, pattern, FirstDay(), EndDay() - 1);
        }
    }
    SettleDays();
    return bits;
}

// ---- the next event

bool CItemCache::ScanToday(DATE now)
{
    DATE next = NO_DATE;
    if (const CDayItems* today = FindDay(DayNumber(now))) {
        for (const auto& item : today->Appointments) {
            const bool over = item->End < now;
            item->Past = over && g_Settings.DailyView.PastAppointments != 0 &&
                         item->Kind == kKindAppointment && !item->AllDay;
            // What is over and not marked has no moment to come either.
            if (!over)
                next = std::min(next, item->End);
        }
    }
    const bool changed = next != m_nextEventTime;
    m_nextEventTime = next;
    return changed;
}
