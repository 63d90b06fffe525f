// Everything of the volume, or of some days, as one stream: a calendar, and the contacts' cards
// behind it. Items come in the order of their identity, so that equal volumes give equal bytes.
// Errors: ends with the first item that cannot be read or written.
#pragma once
#include "interchange/card_lines.h"
#include "interchange/event_exporter.h"
#include "interchange/task_lines.h"

#include <functional>

struct CExportRange {
    int FirstDay = 0, LastDay = 0; // day numbers, both inclusive; LastDay 0: everything
    bool Calendar = true, Contacts = true;
};

class CCalendarExporter
{
public:
    using Write = std::function<bool(const QByteArray&)>; // false: it could not

    CCalendarExporter(IPOutlookApp& app, CPropertyVolume& volume, Write write);
    CStatus Export(const CExportRange& range);

private:
    struct CEntry {
        QString Uid;
        quint32 Sequence = 0, EqualsIndex = 0, ItemId = 0;
    };
    std::vector<CEntry> Entries(const QString& database, quint32 tag);
    CStatus ExportEvents(const CExportRange& range);
    CStatus ExportTasks(const CExportRange& range);
    CStatus ExportContacts(const CExportRange& range);
    bool TouchesRange(const std::vector<quint32>& ids, const CExportRange& range);
    CStatus Put(const CTextLines& lines, bool flush);

    IPOutlookApp& m_app;
    CPropertyVolume& m_volume;
    Write m_write;
    QByteArray m_pending;
    TimeZoneInformation m_device;
    CEventExporter m_events;
    CTaskExporter m_tasks;
    CCardExporter m_cards;
};

// The lines that open a calendar; `method` null for none.
CTextLines CalendarHead(const char* method);
