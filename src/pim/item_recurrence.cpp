#include "pim/item_recurrence.h"

#include "pim/pim_store_private.h"
#include "records/property_numbers.h"

namespace
{
// The pattern of a stored item that repeats, with the object that holds it.
struct CItemPattern {
    std::unique_ptr<IAppointment> Appointment;
    std::unique_ptr<ITask> Task;
    IRecurrencePattern* Pattern = nullptr;
};

CItemPattern OpenPattern(IPOutlookApp* app, quint32 itemId)
{
    CItemPattern open;
    const auto take = [&open](auto& item) {
        if (item->get_IsRecurring())
            open.Pattern = item->GetRecurrencePattern();
    };
    if (!app || itemId == 0)
        return open;
    if (itemId >= kTaskTag) {
        if (app->GetTaskFromOid(itemId, open.Task))
            take(open.Task);
    } else if (app->GetAppointmentFromOid(itemId, open.Appointment)) {
        take(open.Appointment);
    }
    return open;
}
} // namespace

void PutWish(IRecurrencePattern& pattern, const std::optional<CStoredRecurrence>& stored,
             const CRecurrenceWish& wish)
{
    const bool custom = wish.Preset == kPresetCustom;
    if (wish.Preset == kPresetKept || (custom && !wish.Custom))
        return;
    const bool moved = stored && wish.Start != NO_DATE && DayNumber(wish.Start) != DayNumber(stored->Start);
    if (stored && wish.Preset == stored->Preset) {
        const bool same = !custom || SameRecurrence(*wish.Custom, stored->Data);
        if (same && (custom || !moved))
            return;
    }
    const DATE start = wish.Start == NO_DATE ? pattern.get_PatternStartDate() : wish.Start;
    CRecurrencePatternData data = custom ? *wish.Custom : CRecurrencePatternData();
    if (moved && DayNumber(data.Start) == DayNumber(stored->Data.Start))
        data.Start = start; // the item's date was moved, not the pattern's own
    WritePreset(pattern, wish.Preset, start, data);
}

bool CPimStore::GetPresetIndex(IPOutlookApp* app, const CAppointment* appointment, const CTask* task,
                               int& preset, CRecurrencePatternData& data)
{
    preset = kPresetNone;
    const CPimItem* item = appointment ? static_cast<const CPimItem*>(appointment) : task;
    if (!item || !item->IsRecurring())
        return true;
    const CItemPattern open = OpenPattern(app, item->ItemId);
    if (!open.Pattern)
        return true;
    const DATE date = task && item->Start == NO_DATE ? item->End : item->Start;
    preset = FindPreset(*open.Pattern, date);
    ReadPatternData(data, *open.Pattern);
    return true;
}

QString CPimStore::GetRecurrenceText(quint32 itemId)
{
    const CPoomSession session(d->Volume);
    const CItemPattern open = OpenPattern(session.App(), itemId);
    if (!open.Pattern)
        return {};
    CRecurrencePatternData data;
    ReadPatternData(data, *open.Pattern);
    return FormatRecurrence(data);
}
