// One event as a file tells it, ready to be written; no store.
// Units: dates of the plan are wall seconds of the event's zone.
#pragma once
#include "interchange/component_reader.h"
#include "interchange/file_moment.h"
#include "interchange/series_builder.h"
#include "interchange/zone_table.h"
#include "records/attendees_blob.h"

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <optional>

struct CImportedEvent {
    QString Uid; // made from the content when the file has none
    quint32 Sequence = 0;
    quint64 Hash = 0; // of all lines but the time stamp
    int Line = 0;

    QString Subject, Location, Note, Organizer;
    QStringList Categories;
    std::vector<CAttendee> Attendees;
    int BusyStatus = 2, Sensitivity = 0;
    bool HasBusyStatus = false; // told by the file, not the default
    bool Cancelled = false;
    std::optional<int> ReminderMinutes;
    FileTime LastChange = 0;
    QString Kept;     // lines that the records have no place for
    QString RuleText; // RRULE as it stands

    CEventDates Dates;
    bool HasEnd = false;
    std::shared_ptr<const CFileZone> Zone; // null: floating, or all-day
    std::optional<CFileMoment> RecurrenceId;
    std::shared_ptr<const CFileZone> RecurrenceZone;
    bool ThisAndFuture = false;
    std::string UnknownZone; // a name that nobody knows, the event floats
};

class CEventReader
{
public:
    CEventReader(CZoneTable& zones, CImportReport& report) : m_zones(zones), m_report(report) {}

    // False when the event has no usable start; that is told.
    bool Read(const CComponent& component, CImportedEvent* event);

private:
    struct CAlarm;
    void ReadLines();
    void ReadLine(const CPropertyLine& line, std::string_view text, int number);
    bool ReadDate(const CPropertyLine& line, std::string_view text, int number);
    bool ReadTextual(const CPropertyLine& line, std::string_view text, int number);
    void ReadStatus(const CPropertyLine& line);
    size_t ReadAlarm(size_t first);
    void KeepAlarm(const CAlarm& alarm, size_t first, size_t last);
    void ReadAttendee(const CPropertyLine& line, std::string_view text);
    void Keep(std::string_view text);
    void KeepNested(size_t first, size_t last);

    bool FinishDates();
    void FinishEnd(qint64 start);
    void FinishRule();
    void FinishListed();
    void ReadDateList(std::string_view text, bool added);
    qint64 WallInZone(const CFileMoment& moment, const std::shared_ptr<const CFileZone>& zone) const;
    std::shared_ptr<const CFileZone> ZoneOf(const CPropertyLine& line, const CFileMoment& moment);

    CZoneTable& m_zones;
    CImportReport& m_report;
    const CComponent* m_component = nullptr;
    CImportedEvent* m_event = nullptr;
    // What is put together when all lines are known.
    std::optional<CFileMoment> m_start, m_end;
    std::shared_ptr<const CFileZone> m_startZone, m_endZone;
    std::string_view m_duration, m_rule;
    int m_startLine = 0, m_endLine = 0, m_ruleLine = 0;
    std::vector<const CComponent::Line*> m_excluded, m_added;
    std::string m_kept;
    bool m_hasSubject = false, m_hasLocation = false, m_hasNote = false, m_busyFromDesktop = false;
    bool m_isTransparent = false, m_isTentative = false;
};
