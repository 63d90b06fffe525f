// Caps on what a foreign file may make us hold or compute, with their reasons.
#pragma once
#include <QtGlobal>

namespace ImportLimit
{
constexpr qint64 BlockBytes = 64 << 10;     // one read
constexpr size_t LineBytes = 24u << 20;     // one unfolded line; a million dates are 16 MB
constexpr size_t ComponentBytes = 1u << 20; // ordinary lines of one component
constexpr size_t OrdinaryLine = 256u << 10; // one of them, the rest of it is cut off
constexpr size_t LongBytes = 8u << 20;      // its attachments, pictures and other long values
constexpr size_t DateListBytes = 64u << 20; // its EXDATE and RDATE lists
constexpr size_t LongLine = 8u << 10;       // from here on a line counts as a long value
constexpr int Depth = 16;                   // components within components
constexpr int TextChars = 32000;            // a subject or place; the blob counts characters in 16 bits
constexpr int NoteChars = 1 << 20;
constexpr int Deletions = 50000;                 // of one series: 137 years of days
constexpr int ChangedOccurrences = 5000;         // of one series
constexpr int Occurrences = 500;                 // of a rule that becomes single items
constexpr int ExpandYears = 10;                  // how far such a rule is followed from its start
constexpr int SplitParts = 31;                   // series that one rule may become
constexpr int RuleBytes = 2000;                  // longest rule text that is looked at
constexpr qint64 RuleDays = 40'000'000;          // days tested for all rules of one file: about 2 s
constexpr int ZoneObservances = 256;             // of one zone block
constexpr int ZoneBlocks = 2000;                 // of one file
constexpr int EqualUids = 1000;                  // items of one UID; finding them again costs their square
constexpr qsizetype KeptChars = 4 << 20;         // of all changed occurrences of one series
constexpr int Categories = 64;                   // of one item
constexpr int Attendees = 1000;                  // of one item
constexpr int FirstYear = 1601, LastYear = 4500; // what the records can hold
} // namespace ImportLimit
