// Takes in one file of calendars or cards: events and contacts into items of the volume, in batches.
// An item of the file is the one in the volume that has its UID, its place among those of equal
//   UID and sequence, and its occurrence; a higher sequence replaces a lower one. What is equal by
//   content is not touched.
// A changed occurrence is put into its series when that has been read, wherever in the file it
//   stands; one whose series never comes stands alone.
// Memory: one component, and 16 bytes for each UID of the file.
// Errors: a batch that cannot be written leaves the volume as it was after the one before.
#pragma once
#include "interchange/component_spool.h"
#include "interchange/contact_importer.h"
#include "interchange/imported_event.h"
#include "interchange/item_writer.h"
#include "interchange/occurrence_writer.h"

#include <functional>
#include <unordered_map>
#include <unordered_set>

enum class ImportResult { Done, NothingInIt, ReadFailed, WriteFailed, Interrupted };

class CCalendarImporter
{
public:
    // Asked now and then with the number of bytes read; false interrupts.
    using Progress = std::function<bool(qint64 bytes)>;

    CCalendarImporter(IPOutlookApp& app, CImportReport& report);
    ImportResult Import(CLineReader::ReadBytes read, const Progress& progress = {});
    const QString& Failure() const { return m_failure; } // of WriteFailed

private:
    // What of one UID has been read of this file.
    struct Seen {
        quint32 Sequence = 0;
        quint32 Count = 0; // of that sequence
    };
    // The items of one UID in the volume, sorted into those that matter to one event of the file.
    struct Known {
        const CForeignKey* Lead = nullptr; // of the same identity, else of an older sequence
        bool LeadIsSame = false;
        bool Superseded = false; // the volume holds a later one
        std::vector<const CForeignKey*> Others;
        bool Any = false;
    };

    void TakeComponent(const CComponent& component, const std::string& method, bool atEnd);
    void TakeContact(const CComponent& component);
    void TakeEvent(CImportedEvent& event, const std::string& method);
    void TakeTask(CImportedEvent& event, const std::string& method); // task_import.cpp
    void TakeByContent(CImportedEvent& event, const std::string& method);
    Known Sort(const std::vector<CForeignKey>& keys, const CImportedEvent& event, quint32 index) const;
    bool WriteEvent(const CImportedEvent& event, const Known& known, const std::vector<CForeignKey>& keys,
                    quint32 index);
    void KeepPlaceOfLoneOccurrences(const CImportedEvent& event, const std::vector<CForeignKey>& keys,
                                    CSeriesPlan& plan);
    CStatus WriteTask(const CImportedEvent& event, const Known& known, quint32 index);
    void SetAside(const CComponent& component, quint64 uidHash, bool isOccurrence);
    void TakeWaiting(quint64 uidHash);
    void TakeRest();
    bool NextBatch(bool atEnd);
    void Fail(const CStatus& status, int line);

    void WriteFollowing(const CImportedEvent& event);
    void TakeOccurrence(CImportedEvent& event, const CComponent& component, const std::string& method);

    IPOutlookApp& m_app;
    CImportReport& m_report;
    TimeZoneInformation m_device;
    int m_currentYear;
    qint64 m_ruleBudget;
    CZoneTable m_zones;
    CEventReader m_events;
    CItemWriter m_writer;
    COccurrenceWriter m_occurrences;
    CContactImporter m_contacts;
    CComponentSpool m_spool;
    CImportedEvent m_event;
    std::string m_method;

    bool m_volumeHasUids = false;
    std::unordered_map<quint64, Seen> m_seen;               // by hash of the UID
    std::unordered_map<quint64, Seen> m_tasksSeen;          // likewise
    std::unordered_map<quint64, quint32> m_occurrencesSeen; // by hash of UID and occurrence, to the sequence
    std::unordered_set<quint64> m_fullUids;                 // no more changed occurrences are taken for these
    std::unordered_multimap<quint64, qint64> m_waiting;     // occurrences whose series has not come
    std::vector<qint64> m_unknownZones;                     // events of zones that have not come
    std::unordered_map<std::string, bool> m_toldZones;
    int m_inBatch = 0;
    bool m_failed = false;
    QString m_failure;
};
