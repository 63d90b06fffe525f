#include "pim/day_items.h"

#include "pim/day_order.h"
#include "settings/settings.h"
#include "settings/title_formats.h"
#include "util/string_ids.h"
#include "util/string_store.h"

#include <algorithm>

namespace
{
constexpr int kCollapseEmptyDays = 2;

struct CHourMinute {
    int Hour, Minute;
};

CHourMinute TimeOf(DATE date)
{
    const double fraction = std::fabs(date - std::trunc(date));
    const int seconds = std::min(int(fraction * 86400.0 + 0.5), 86399);
    return {seconds / 3600, seconds / 60 % 60};
}
} // namespace

CDayItems::CDayItems(int day, const IItemColors* colors)
    : Collapsed(g_Settings.ListView.EmptyDays == kCollapseEmptyDays), Day(day), Colors(colors)
{
}

CAppointment* CDayItems::FindAppointment(quint32 itemId, DATE start) const
{
    for (const auto& item : Appointments) {
        if (item->ItemId == itemId && item->Start == start)
            return item.get();
    }
    return nullptr;
}

CPimItem* CDayItems::FindByOid(quint32 oid) const
{
    for (const auto& item : Appointments) {
        if (item->RecordOid == oid)
            return item.get();
    }
    for (const auto& task : Tasks) {
        if (task->RecordOid == oid)
            return task.get();
    }
    return nullptr;
}

QString CDayItems::GetTitle() const
{
    QString title;
    if (Day == GetToday())
        return GetString(StringId::StrToday);
    FormatViewTitle(kDayTitleFormats, g_Settings.ListView.DateTitleFormat, Day, Day, &title);
    return title;
}

// ---- adding and removing

void CDayItems::AddAppointment(std::unique_ptr<CAppointment> item, bool recount)
{
    item->Owner = this;
    auto at = Appointments.begin();
    if (!Appointments.empty() && CompareInDay(**at, *item) >= 0) {
        ++at;
        while (at != Appointments.end() && CompareInDay(**at, *item) >= 1)
            ++at;
    }
    Appointments.insert(at, std::move(item));
    if (recount) {
        RecountSlots();
        MarkConflicts();
    }
}

void CDayItems::AddTask(std::unique_ptr<CCalendarTask> task, bool recount)
{
    task->Owner = this;
    Tasks.insert(PlaceOfTask(Tasks, *task), std::move(task));
    m_changed = true;
    if (recount)
        Settle();
}

void CDayItems::RemoveTasks()
{
    m_changed = m_changed || !Tasks.empty();
    Tasks.clear();
}

void CDayItems::RemoveByOid(quint32 oid, bool recount)
{
    if (RemoveOids({oid}) && recount)
        Settle();
}

bool CDayItems::RemoveOids(const std::vector<quint32>& sorted)
{
    const auto isRemoved = [&sorted](const auto& item) {
        return std::binary_search(sorted.begin(), sorted.end(), item->RecordOid);
    };
    const size_t removed = std::erase_if(Appointments, isRemoved) + std::erase_if(Tasks, isRemoved);
    m_changed = m_changed || removed > 0;
    return removed > 0;
}

void CDayItems::Defer(std::unique_ptr<CAppointment> item)
{
    item->Owner = this;
    // The occurrences of one series come in a row, nearly always by their start.
    const CAppointment* last = m_deferred.empty() ? nullptr : m_deferred.back().get();
    m_mayRepeat = m_mayRepeat || !Appointments.empty() ||
                  (last && last->ItemId == item->ItemId && last->Start >= item->Start);
    m_changed = true;
    m_deferred.push_back(std::move(item));
}

void CDayItems::DropRepeated()
{
    struct CKey {
        quint32 ItemId;
        int Kind; // a contact may have two events on one day
        DATE Start;
        size_t Number;
        bool operator<(const CKey& other) const
        {
            return std::tie(ItemId, Kind, Start, Number) <
                   std::tie(other.ItemId, other.Kind, other.Start, other.Number);
        }
    };
    std::vector<CKey> keys;
    for (size_t i = 0; i < Appointments.size(); ++i)
        keys.push_back({Appointments[i]->ItemId, Appointments[i]->Kind, Appointments[i]->Start, i});
    for (size_t i = 0; i < m_deferred.size(); ++i)
        keys.push_back(
            {m_deferred[i]->ItemId, m_deferred[i]->Kind, m_deferred[i]->Start, Appointments.size() + i});
    std::sort(keys.begin(), keys.end());
    for (size_t i = 1; i < keys.size(); ++i) {
        const bool same = keys[i].ItemId == keys[i - 1].ItemId && keys[i].Kind == keys[i - 1].Kind &&
                          keys[i].Start == keys[i - 1].Start;
        if (same && keys[i].Number >= Appointments.size())
            m_deferred[keys[i].Number - Appointments.size()].reset();
    }
    std::erase(m_deferred, nullptr);
}

void CDayItems::Settle()
{
    if (!m_changed)
        return;
    if (m_mayRepeat)
        DropRepeated();
    if (!m_deferred.empty()) {
        CDayOrder order;
        for (const auto& item : Appointments)
            order.Append(*item);
        for (const auto& item : m_deferred)
            order.Insert(*item);
        std::vector<std::unique_ptr<CAppointment>> given = std::move(Appointments);
        std::move(m_deferred.begin(), m_deferred.end(), std::back_inserter(given));
        Appointments.clear();
        Appointments.reserve(given.size());
        for (const quint32 number : order.Take())
            Appointments.push_back(std::move(given[number]));
        m_deferred.clear();
        m_deferred.shrink_to_fit();
    }
    m_changed = m_mayRepeat = false;
    MarkConflicts();
    RecountSlots();
}

// ---- conflicts: a and b overlap when b starts before a's end and ends after a's start

void CDayItems::MarkConflicts()
{
    std::vector<CAppointment*> busy;
    for (const auto& item : Appointments) {
        item->Conflict = false;
        if (!item->AllDay && item->BusyStatus != 0)
            busy.push_back(item.get());
    }
    const auto startsBefore = [](const CAppointment* a, const CAppointment* b) {
        return a->Start < b->Start;
    };
    if (!std::is_sorted(busy.begin(), busy.end(), startsBefore))
        std::sort(busy.begin(), busy.end(), startsBefore);
    // Of the items up to each place, the one that ends last and the next, so that none meets itself.
    struct CLatest {
        size_t First, Second;
    };
    std::vector<CLatest> latest(busy.size());
    for (size_t i = 0; i < busy.size(); ++i) {
        if (i == 0) {
            latest[i] = {0, SIZE_MAX};
            continue;
        }
        latest[i] = latest[i - 1];
        if (busy[i]->End > busy[latest[i].First]->End)
            latest[i] = {i, latest[i].First};
        else if (latest[i].Second == SIZE_MAX || busy[i]->End > busy[latest[i].Second]->End)
            latest[i].Second = i;
    }
    for (size_t i = 0; i < busy.size(); ++i) {
        const auto end = std::partition_point(busy.begin(), busy.end(),
                                              [&](const CAppointment* x) { return x->Start < busy[i]->End; });
        if (end == busy.begin())
            continue;
        const CLatest& before = latest[size_t(end - busy.begin()) - 1];
        const size_t other = before.First != i ? before.First : before.Second;
        busy[i]->Conflict = other != SIZE_MAX && busy[other]->End > busy[i]->Start;
    }
}

// ---- the timeline's slots

void CDayItems::SetHourSlots(const CAppointment& item, COLORREF color)
{
    const bool begunBefore = DayNumber(item.Start) < Day;
    const bool endsAfter = DayNumber(item.End) > Day;
    const CHourMinute start = TimeOf(item.Start), end = TimeOf(item.End);
    const int first = begunBefore ? 0 : start.Hour;
    int last = 23;
    if (!endsAfter && begunBefore)
        last = end.Minute >= 5 ? end.Hour : end.Hour - 1;
    else if (!endsAfter)
        last = end.Minute < 15 && start.Hour != end.Hour ? end.Hour - 1 : end.Hour;
    for (int hour = first; hour <= last; ++hour)
        HourSlots[hour] = {item.ItemId, color};
}

void CDayItems::RecountSlots()
{
    std::fill(std::begin(HourSlots), std::end(HourSlots), CHourSlot());
    AppointmentCount = 0;
    TaskCount =
        int(std::count_if(Tasks.begin(), Tasks.end(), [](const auto& task) { return task->Visible; }));
    for (const auto& item : Appointments) {
        if (!item->Visible)
            continue;
        ++AppointmentCount;
        const COLORREF color = Colors ? Colors->GetItemColor(*item) : kColorNotSet;
        if (!item->AllDay) {
            SetHourSlots(*item, color);
            continue;
        }
        HourSlots[24].ItemId = item->ItemId;
        if (HourSlots[24].Color == kColorNotSet)
            HourSlots[24].Color = color;
    }
    if (g_Settings.ListView.EmptyDays == kCollapseEmptyDays)
        Collapsed = Appointments.empty() && Tasks.empty();
}
