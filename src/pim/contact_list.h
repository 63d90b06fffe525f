// The contacts, and the special events that they put on days: birthdays and anniversaries.
// Shape: read whole, once, on the first need; the order by name is made when it is asked for.
// Units: dates are day numbers, NO_DATE none.
// Errors: without the database the list stays empty, and a later call tries again.
#pragma once
#include "pim/items.h"
#include "pim/pim_database.h"
#include "util/date_time.h"

#include <vector>

// A contact, or an attendee: `Name` then the recipient's name and `Detail` the address.
class CContactInfo : public CPimRecord
{
public:
    int GetKind() const override { return kKindContact; }
    // Fills the two keys from the name: accents folded, letters or the digits of a phone's keys.
    void BuildSearchKeys(bool keypad);

    QString Name, Detail;
    int Birthday = int(NO_DATE), Anniversary = int(NO_DATE);
    bool Preferred = false;              // sorts ahead of the others
    QString SearchKey, SearchKeyCompact; // the compact one is without what has no mapping
    QString Uid;                         // only when asked for
};

// The day within a range on which the year's return of a date falls, 29 February as 28 February.
struct CSpecialDay {
    int Day = 0;
    int Age = 0; // -1 when the date's year is not known
};
bool FindSpecialDay(int date, int firstDay, int lastDay, CSpecialDay* found);
QString SpecialEventSubject(int kind, const QString& name, int age); // an age of -1 is not shown

class CContactList
{
public:
    void Load(const std::shared_ptr<CPropertyVolume>& volume, bool withUids);
    void Clear();
    bool IsLoaded() const { return !m_contacts.empty(); }
    const std::vector<CContactInfo>& Sorted();
    const std::vector<CContactInfo>& Unsorted() const { return m_contacts; }
    static bool Precedes(const CContactInfo& a, const CContactInfo& b);
    void Remove(const std::vector<CEOID>& sortedOids);
    void Read(const std::shared_ptr<CPropertyVolume>& volume, const std::vector<CEOID>& oids, bool withUids);

private:
    std::vector<CContactInfo> m_contacts;
    bool m_sorted = false;
};
