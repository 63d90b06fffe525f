// The appointments of one identity as the components of a file: the item, and after it what has
// changed of its occurrences. Records into which an import had parted it become one again.
#pragma once
#include "interchange/event_lines.h"
#include "interchange/import_limits.h"
#include "interchange/zone_writer.h"

#include <map>

// A name for an item that never had one, the same each time on this machine.
QString MadeUid(quint32 itemId);

class CEventExporter
{
public:
    CEventExporter(const TimeZoneInformation& device, int year);

    // All records of one UID, sequence and place among equals. Appends whole components, the
    // blocks of their zones before them.
    CStatus Export(IPOutlookApp& app, const std::vector<quint32>& itemIds, CTextLines& lines);
    CZoneWriter& Zones() { return m_zoneWriter; }
    CZoneTable& ZoneTable() { return m_zones; }

    // One appointment or occurrence, saved or not, as what a message tells of it: its own dates and
    // changes with those values, without what only its owner keeps.
    void ExportMessage(IAppointment& item, const CItemValues& values, CTextLines& lines);

private:
    struct CPart {
        std::shared_ptr<IAppointment> Item;
        QString Id;
        const CRecurrencePattern* Series = nullptr;
        CKeptLines Kept;
        CTimeForm Form;
        qint64 Start = 0, End = 0; // on the form's clock

        explicit CPart(std::shared_ptr<IAppointment> item);
    };
    // What is collected of an item's occurrences.
    struct CChanges {
        std::vector<qint64> Deleted;
        std::vector<CTextLines> Components;
    };

    void Place(CPart& part, const std::string& hole, const TimeZoneInformation* record);
    void ExportWhole(std::vector<CPart>& parts, const std::vector<qint64>& lone, CTextLines& lines);
    bool Join(std::vector<CPart>& parts, const CDateLines& dates, CDateLines& joined, CChanges& changes);
    void ExportAlone(CPart& part, const CTextLines& head, const std::vector<qint64>& lone, CTextLines& lines);
    void ExportLone(CPart& part, CTextLines& lines);
    void CollectChanges(CPart& part, CPart& lead, const std::vector<qint64>& lone, CChanges& changes);
    const CKeptLines::CChange* KeptChangeOf(CPart& part, int day, CImportedEvent* event);
    bool StillFits(const CPart& part, const CItemValues& series, const CRecurrenceException& exception,
                   const CImportedEvent& event);
    CTextLines OccurrenceLines(CPart& part, CItemValues values, const CKeptLines& kept,
                               const CRecurrenceException& exception);
    qint64 WallOfName(const std::string& name, const CTimeForm& form, bool* isDate) const;
    CTextLines DateHead(const CTimeForm& form, qint64 start, qint64 end) const;
    CItemValues NamedValues(CPart& part) const;
    bool ReadBack(const CTextLines& lines, CImportedEvent* event);
    void AddComponent(const CTextLines& inner, CTextLines& lines);

    TimeZoneInformation m_device;
    int m_year;
    CZoneTable m_zones;
    CZoneWriter m_zoneWriter;
    CImportReport m_unheard;
    CEventReader m_reader;
    qint64 m_budget = ImportLimit::RuleDays;
};
