#include "pim/pim_store_private.h"

#include "records/property_numbers.h"

#include <algorithm>

namespace
{
constexpr int kMostNotices = 500;
constexpr int kAllViews = kMaskDaily | kMaskListWeek | kMaskMonth | kMaskTasks | kMaskSearch;
// The clock counts whole seconds, and a timer must not be asked for twice within one.
constexpr double kShortestTimer = 1000, kLongestTimer = 24 * 60 * 60000;
} // namespace

CPimStore::CPimStore() : d(std::make_unique<Private>()) {}
CPimStore::~CPimStore() = default;

CPimStore& PimStore()
{
    static CPimStore store;
    return store;
}

void CPimStore::Initialize(std::shared_ptr<CPropertyVolume> volume, std::function<void(qint64)> setNextEvent)
{
    Shutdown();
    d->Volume = std::move(volume);
    d->SetNextEvent = std::move(setNextEvent);
    // Before anything is read, so that no change falls between.
    d->LastChange = d->Volume ? d->Volume->LastChange() : 0;
    d->Categories.Open(d->Volume);
    d->Cache.SetVolume(d->Volume);
    d->Cache.FetchColors();
}

void CPimStore::Shutdown()
{
    if (d->SetNextEvent)
        d->SetNextEvent(-1);
    d->SetNextEvent = nullptr;
    d->Cache.Clear();
    d->Cache.SetVolume(nullptr);
    d->Categories.Close();
    d->Volume.reset();
    d->CursorDate = NO_DATE;
    d->LastChange = 0;
}

bool CPimStore::IsOpen() const
{
    return d->Volume != nullptr;
}
const std::shared_ptr<CPropertyVolume>& CPimStore::Volume() const
{
    return d->Volume;
}
CCategoryStore& CPimStore::Categories()
{
    return d->Categories;
}

// ---- days

bool CPimStore::LoadRange(DATE currentDay, int firstDay, int lastDay)
{
    d->CursorDate = DayNumber(currentDay);
    const bool loaded = d->Cache.LoadRange(DayNumber(currentDay), firstDay, std::max(firstDay, lastDay));
    d->RearmTimer();
    return loaded;
}

DATE CPimStore::CursorDate() const
{
    return d->CursorDate;
}
CDayItems* CPimStore::FindDay(int day)
{
    return d->Cache.FindDay(day);
}
void CPimStore::Clear()
{
    d->Cache.Clear();
}
COLORREF CPimStore::GetItemColor(const CPimItem& item) const
{
    return d->Cache.GetItemColor(item);
}
const CTaskList::CGroups& CPimStore::GetTaskGroups()
{
    return d->Cache.TaskGroups();
}
void CPimStore::RebuildTaskGroups()
{
    d->Cache.LoadedTasks().DropGroups();
}
void CPimStore::RefreshTaskMatches()
{
    d->Cache.LoadedTasks().RefreshMatches();
}
void CPimStore::ReapplyFilter()
{
    d->Cache.ReapplyFilter();
}
const std::vector<CContactInfo>& CPimStore::Contacts()
{
    d->Cache.LoadContacts(true);
    return d->Cache.Contacts().Sorted();
}
void CPimStore::KeepUids(bool keep)
{
    d->Cache.KeepUids(keep);
}

void CPimStore::Private::RearmTimer()
{
    const DATE now = GetNow();
    Cache.ScanToday(now);
    if (!SetNextEvent)
        return;
    const DATE next = Cache.NextEventTime();
    if (next == NO_DATE)
        SetNextEvent(-1);
    else
        SetNextEvent(std::llround(std::clamp((next - now) * 24 * 60 * 60000, kShortestTimer, kLongestTimer)));
}

bool CPimStore::OnNextEventTimer(DATE now)
{
    const bool changed = d->Cache.ScanToday(now);
    d->RearmTimer();
    return changed;
}

QString CPimStore::GetUid(CEOID oid)
{
    if (const QString* uid = d->Cache.FindUid(oid))
        return *uid;
    CPimDatabase database;
    std::vector<CEPROPVAL> rows;
    const CEPROPID ids[] = {Prop::Uid};
    for (const QString& name : {kAppointmentsDatabase, kTasksDatabase, kContactsDatabase}) {
        if (database.Open(d->Volume, name, false) &&
            database.Seek(SeekType::CeOid, {0, qint64(oid)}) == oid &&
            database.ReadRecordProps(ids, rows) == oid) {
            d->Cache.RememberUid(oid, rows[0].Text);
            return rows[0].Text;
        }
    }
    return QString();
}

// ---- notices

int CPimStore::Private::Digest(const std::vector<CVolumeChange>& changes)
{
    struct CTouched {
        std::vector<CEOID> All, Read;
    } touched[kDbContacts + 1];
    bool categoriesChanged = false;
    // The last word on a record counts.
    for (auto change = changes.rbegin(); change != changes.rend(); ++change) {
        categoriesChanged = categoriesChanged || change->Database == kDbCategories;
        const bool known = change->Type == kNoticeCreated || change->Type == kNoticeChanged ||
                           change->Type == kNoticeDeleted;
        if (!known || change->Database < kDbAppointments || change->Database > kDbContacts)
            continue;
        CTouched& of = touched[change->Database];
        if (std::find(of.All.begin(), of.All.end(), change->Oid) != of.All.end())
            continue;
        of.All.push_back(change->Oid);
        if (change->Type != kNoticeDeleted)
            of.Read.push_back(change->Oid);
    }
    int bits = 0;
    if (categoriesChanged) { // names, colours and what a filter by name means
        Categories.Load();
        Cache.LoadedTasks().DropGroups();
        Cache.ReapplyFilter();
        bits = kAllViews;
    }
    if (CTouched& of = touched[kDbContacts]; !of.All.empty())
        bits |= Cache.ReplaceContacts(std::move(of.All), of.Read);
    for (const int database : {kDbAppointments, kDbTasks})
        std::reverse(touched[database].Read.begin(), touched[database].Read.end());
    if (CTouched& of = touched[kDbTasks]; !of.All.empty())
        bits |= Cache.ReplaceTasks(of.All, of.Read);
    if (CTouched& of = touched[kDbAppointments]; !of.All.empty()) {
        bits |= Cache.ReplaceAppointments(of.All, of.Read);
        RearmTimer();
    }
    return bits;
}

int CPimStore::OnDatabaseNotification(int dwParam, quint32 uType, CEOID oid)
{
    CVolumeChange change;
    change.Database = dwParam - 1;
    change.Type = uType;
    change.Oid = oid;
    return dwParam >= 1 && dwParam <= 3 ? d->Digest({change}) : 0;
}

CPimStore::CDrain CPimStore::DrainNotices()
{
    CDrain drain;
    std::vector<CVolumeChange> changes;
    if (!d->Volume || !d->Volume->ReadChanges(d->LastChange, kMostNotices + 1, changes) || changes.empty())
        return drain;
    d->LastChange = changes.back().Sequence;
    drain.Notices = int(changes.size());
    if (drain.Notices > kMostNotices) {
        d->LastChange = d->Volume->LastChange();
        drain.Overflowed = true;
        drain.Mask = kAllViews;
        d->Categories.Load();
        d->Cache.Reload();
        d->RearmTimer();
        return drain;
    }
    for (const CVolumeChange& change : changes) {
        if (change.Database > kDbContacts)
            continue;
        drain.LastParam = change.Database + 1;
        drain.LastType = change.Type;
        drain.LastOid = change.Oid;
    }
    drain.Mask = d->Digest(changes);
    return drain;
}
