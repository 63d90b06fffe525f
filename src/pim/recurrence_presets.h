// The twelve recurrences that the editors offer, between the object model's pattern, the plain
// record and the texts. Words and dates follow the locale, sentences the string table.
#pragma once
#include "object_model/object_model.h"
#include "pim/recurrence_data.h"

#include <QStringList>

constexpr int kPresetNone = 0;    // occurs once
constexpr int kPresetCustom = 11; // what the plain record tells
constexpr int kPresetCount = 12;
constexpr int kPresetKept = -1; // for saving alone: the stored pattern stays

// The entry of the editors' list for an item of that start.
QString FormatPreset(int preset, DATE start);
QStringList GetPresetTexts(DATE start); // all twelve, in order

// The preset that a pattern is for an item of that date; kPresetCustom when it is none of the others.
int FindPreset(const IRecurrencePattern& pattern, DATE date);
// Presets 1 to 11; `data` counts for the last alone.
void WritePreset(IRecurrencePattern& pattern, int preset, DATE start, const CRecurrencePatternData& data);
// Fields that the pattern does not tell keep what they were. An end after a count reads as its date.
void ReadPatternData(CRecurrencePatternData& data, const IRecurrencePattern& pattern);
void WritePatternData(const CRecurrencePatternData& data, IRecurrencePattern& pattern);
// Whether both tell the same recurrence: only the fields that count are compared.
bool SameRecurrence(const CRecurrencePatternData& a, const CRecurrencePatternData& b);

QString FormatRecurrence(const CRecurrencePatternData& data); // "Every Monday and Friday effective 3/2/2026"

// Lists of the custom form. A number outside a list falls to its first entry.
QString GetOrdinalWord(int ordinal); // 0 first .. 4 last
QString GetDayWord(int dayKind);     // 0 day .. 9 Saturday
int DayKindOfMask(int mask);         // mask: bit 0 Sunday .. bit 6 Saturday; 0 for an empty one
int MaskOfDayKind(int dayKind);      // weekdays follow the locale's first day of the week
