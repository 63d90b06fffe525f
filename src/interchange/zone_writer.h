// The zones of an export: how a time is written, and the blocks that tell its zone to others.
// A block goes before the first item that uses it. Zones of the system come with the changes of
// their past; others go by the two rules of their record.
#pragma once
#include "interchange/text_lines.h"
#include "interchange/zone_table.h"

#include <map>
#include <set>

// How the times of one item are written, and the clock that they are told by.
struct CTimeForm {
    enum Kind { Date, Floating, Utc, Named } Form = Utc;
    std::string Parameters;                // behind the property's name, with the first semicolon
    std::shared_ptr<const CFileZone> Zone; // null: the device's clock, or days

    // A property of a wall time of that zone.
    std::string Line(const std::string& name, qint64 wall) const;
    std::string Value(qint64 wall) const;
};

class CZoneWriter
{
public:
    CZoneWriter(CZoneTable& zones, const TimeZoneInformation& device, int year)
        : m_zones(zones), m_device(device), m_year(year)
    {
    }
    // The form that the item came with (`kept`: its DTSTART line without a value, or empty), as far
    // as it still fits; `record` is that of a series, null of a single item.
    CTimeForm FormOf(const std::string& kept, bool allDay, const TimeZoneInformation* record);
    // Blocks of zones that have been used since the last call.
    void TakeBlocks(CTextLines& lines);
    const TimeZoneInformation& Device() const { return m_device; }
    // A wall time of the form's clock as the device shows it, and back.
    DATE ToDevice(const CTimeForm& form, qint64 wall) const;
    qint64 FromDevice(const CTimeForm& form, DATE date) const;

private:
    CTimeForm Named(const std::string& parameters, const std::string& name,
                    const TimeZoneInformation& record);
    CTimeForm OfRecord(const TimeZoneInformation& record);
    void Use(const std::string& name, const TimeZoneInformation* record);

    CZoneTable& m_zones;
    TimeZoneInformation m_device;
    int m_year;
    std::map<std::string, TimeZoneInformation> m_made; // zones that the system does not know
    std::set<std::string> m_used;
    CTextLines m_blocks;
};

// Seconds of 1970 of a date of the model.
qint64 WallOfDate(DATE date);
