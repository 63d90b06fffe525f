// Reads appointment records and steps through their occurrences; holds what one pass shares: the
// device's zone, whether it is daylight now, and the occurrences of the item at hand.
// Units: days are day numbers, both ends of a range included; items are in local time.
// Errors: a record without a property keeps that field's default; a malformed pattern yields what
//   could be read of it.
// Cost: construction asks for zone and clock, so one reader serves a whole pass.
#pragma once
#include "pim/category_store.h"
#include "pim/items.h"
#include "pim/pim_database.h"
#include "records/occurrences.h"
#include "util/date_time.h"

#include <functional>
#include <memory>
#include <vector>

// Whether a stored note document has content; some short ones stand for an empty note.
bool HasNoteContent(std::span<const uchar> document);

// A date moved by whole minutes, so that equal moments stay equal doubles.
DATE ShiftedByMinutes(DATE date, int minutes);

class CAppointmentReader : public CPimDatabase
{
public:
    explicit CAppointmentReader(CCategoryStore& categories);
    bool Open(const std::shared_ptr<CPropertyVolume>& volume, CEPROPID sort);

    // Reads the record at the place into a fresh `item` and `pattern`. `oid` is 0 at the end. False
    // there, and when a plain item lies outside the range; firstDay -1 means no range. Dates of a
    // series are those of its occurrences only.
    bool ReadAppointment(CAppointment& item, CRecurrencePattern& pattern, CEOID& oid, int firstDay,
                         int lastDay);
    FileTime StoredStart() const { return m_storedStart; } // of the record read last
    // Gives a series just read the dates of its record, which are those of its first occurrence; one
    // that was deleted has no original day.
    void TakeRecordDates(CAppointment& item, const CRecurrencePattern& pattern) const;

    // True while there is another instance of `item` in the range; call in a loop with the same
    // item. `item` then holds the instance, or `override` does when the occurrence was changed.
    bool NextInstance(CAppointment& item, std::unique_ptr<CAppointment>& override, int firstDay, int lastDay,
                      const CRecurrencePattern& pattern);
    // One changed occurrence, wherever it was moved to.
    std::unique_ptr<CAppointment> MakeOverride(const CAppointment& item, const CRecurrencePattern& pattern,
                                               const CRecurrenceException& exception) const;

    const TimeZoneInformation& Zone() const { return m_zone; }
    // Told the UID, or none, of each record that was read and is in range; without it none is read.
    void SetUidSink(std::function<void(CEOID, const QString&)> sink) { m_uidSink = std::move(sink); }

private:
    void ReadDates(const std::vector<CEPROPVAL>& rows, CAppointment& item);
    void ReadTexts(std::vector<CEPROPVAL>& rows, CAppointment& item) const;
    void ExpandOccurrences(const CAppointment& item, int firstDay, int lastDay,
                           const CRecurrencePattern& pattern);
    int ShiftOf(const CRecurrencePattern& pattern, DATE start) const;
    void EndIteration();

    CCategoryStore& m_categories;
    TimeZoneInformation m_zone;
    int m_biasNow = 0; // minutes
    bool m_daylightNow = false;
    FileTime m_storedStart = 0;
    std::vector<CEPROPVAL> m_rows;
    std::function<void(CEOID, const QString&)> m_uidSink;

    quint32 m_lastItemId = 0;
    int m_instanceIndex = -1;             // -1: no iteration
    std::vector<COccurrence> m_instances; // in the pattern's zone
    QString m_subject;                    // of the series, without an age
    bool m_foreignZone = false;
};
