// The lines of a task: its values as they are now, and what it kept of its file.
#pragma once
#include "interchange/event_lines.h"
#include "interchange/zone_writer.h"

class CTaskExporter
{
public:
    CTaskExporter(CZoneTable& zones, CZoneWriter& zoneWriter)
        : m_zoneWriter(zoneWriter), m_reader(zones, zoneWriter.Device(), m_unheard)
    {
    }
    // A whole component, the blocks of its zones before it.
    void Export(ITask& task, const QString& madeUid, CTextLines& lines);

private:
    void AddDates(ITask& task, const CKeptLines& kept, CTextLines& head);
    void AddRule(ITask& task, const CKeptLines& kept, CTextLines& head, CTextLines& lists);
    void AddReminder(ITask& task, const CKeptLines& kept, const CTextLines& head, CTextLines& lines);
    CImportedTask Read(const CTextLines& lines);
    void UseZones(const CKeptLines& kept);

    CZoneWriter& m_zoneWriter;
    CImportReport m_unheard;
    CEventReader m_reader;
};
