// The order of the appointments in one day, for many at a time.
// Rule: a new item n goes to the head of an empty list or when the head compares below it; else it
//   is inserted behind the head and behind all that follow as long as the next compares above:
//   CompareInDay(next, n) >= 1.
// Shape: the head, and behind it blocks of entries that know their latest start, so that the place
//   is found without walking the list; the result is that of the walk, entry for entry.
#pragma once
#include "pim/items.h"

#include <vector>

// -1 if n is all-day and x is not; else 1 if n starts later than x, 0 if with it, -1 before it.
int CompareInDay(const CAppointment& x, const CAppointment& n);

class CDayOrder
{
public:
    void Append(const CAppointment& item); // as it stands in a list already in order
    void Insert(const CAppointment& item);
    std::vector<quint32> Take() const; // numbers of the items, in the sequence they were given

private:
    struct CEntry {
        DATE Start;
        bool AllDay;
        quint32 Number;
    };
    struct CBlock {
        std::vector<CEntry> Entries;
        DATE Latest = 0;
        bool HasTimed = false;
        void Put(size_t at, const CEntry& entry);
    };
    CEntry Next(const CAppointment& item) { return {item.Start, item.AllDay, m_given++}; }
    void InsertBehindHead(const CEntry& entry);
    void PutInto(size_t block, size_t at, const CEntry& entry);

    quint32 m_given = 0;
    CEntry m_head{};
    std::vector<CBlock> m_blocks;
};
