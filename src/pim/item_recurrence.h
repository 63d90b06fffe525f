// How a save takes over the recurrence that an editor handed in. Only sources of the store include
// this header.
#pragma once
#include "pim/recurrence_presets.h"

#include <optional>

// What an editor hands in.
struct CRecurrenceWish {
    bool Recurring = false;
    int Preset = kPresetNone;
    const CRecurrencePatternData* Custom = nullptr; // of kPresetCustom
    DATE Start = NO_DATE;
};

// What the target held before anything was put.
struct CStoredRecurrence {
    int Preset = kPresetNone;
    CRecurrencePatternData Data;
    DATE Start = NO_DATE;
};

template <typename Item> std::optional<CStoredRecurrence> ReadStoredRecurrence(Item& target, DATE start)
{
    if (!target.get_IsRecurring())
        return std::nullopt;
    CStoredRecurrence stored;
    stored.Start = start;
    const IRecurrencePattern& pattern = *target.GetRecurrencePattern();
    stored.Preset = FindPreset(pattern, start);
    ReadPatternData(stored.Data, pattern);
    return stored;
}

// Writes what differs from the stored pattern; nothing when nothing does.
void PutWish(IRecurrencePattern& pattern, const std::optional<CStoredRecurrence>& stored,
             const CRecurrenceWish& wish);

// After the item's other dates were put.
template <typename Item>
void PutRecurrence(Item& target, const std::optional<CStoredRecurrence>& stored, const CRecurrenceWish& wish)
{
    if (wish.Recurring && wish.Preset != kPresetNone)
        PutWish(*target.GetRecurrencePattern(), stored, wish);
    else if (target.get_IsRecurring())
        target.ClearRecurrencePattern();
}
