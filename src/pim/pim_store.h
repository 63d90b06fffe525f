// The one global object of the PIM data: all that views read.
// Shape: days are asked for by day number; the cache grows by whole month grids, 70 days at most.
// Errors: a missing volume or database gives empty lists, no message.
#pragma once
#include "pim/category_store.h"
#include "pim/day_items.h"
#include "platform/property_volume.h"

#include <functional>
#include <memory>

// Bits of the views that a change concerns.
enum ViewMask { kMaskDaily = 1, kMaskListWeek = 2, kMaskMonth = 4, kMaskTasks = 8, kMaskSearch = 16 };

class CPimStore
{
public:
    CPimStore();
    ~CPimStore();

    // Opens what is read all the time; `setNextEvent` re-arms timer 2 of the owner (milliseconds
    // from now, -1 stops it). The volume may be null: everything is empty then.
    void Initialize(std::shared_ptr<CPropertyVolume> volume, std::function<void(qint64)> setNextEvent = {});
    void Shutdown();
    bool IsOpen() const;
    const std::shared_ptr<CPropertyVolume>& Volume() const;
    CCategoryStore& Categories();

    // The main request: remembers the current day, loads what is missing, re-arms the timer.
    bool LoadRange(DATE currentDay, int firstDay, int lastDay);
    DATE CursorDate() const;        // whole day; NO_DATE before the first LoadRange
    CDayItems* FindDay(int day);
    void Clear();                   // drops all cached days
    COLORREF GetItemColor(const CPimItem& item);
    bool OnNextEventTimer(DATE now); // true if the moment changed
    void ReapplyFilter();

    // Digests one notice; the result is a mask of ViewMask bits.
    int OnDatabaseNotification(int dwParam, quint32 uType, CEOID oid);
    struct CDrain {
        int Mask = 0;
        bool Overflowed = false;    // more than 500: the cache was cleared and loaded anew
        int Notices = 0;
        int LastParam = 0; quint32 LastType = 0; CEOID LastOid = 0;
    };
    // All notices since the last drain, in one go.
    CDrain DrainNotices();

    // Fetched when asked for.
    bool GetItemTexts(quint32 itemId, DATE date, int occurrenceDay, int kind, QString& note, QString& attendees);
    // The occurrence of an appointment on that day (or the item itself), as the cache would hold it.
    bool ReadOccurrence(quint32 itemId, int day, CAppointment& item);

private:
    struct Private;
    std::unique_ptr<Private> d;
};

CPimStore& PimStore(); // the global one
