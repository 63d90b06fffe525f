// One event or task as a file tells it, ready to be written; no store.
// Units: dates of the plan are wall seconds of the event's zone.
#pragma once
#include "interchange/component_reader.h"
#include "interchange/file_moment.h"
#include "interchange/property_line.h"
#include "interchange/series_builder.h"
#include "interchange/zone_table.h"
#include "records/attendees_blob.h"

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <optional>

// What a task has beyond an event, or in place of its dates: wall seconds of the device.
struct CImportedTask {
    std::optional<qint64> Start, Due, Completed, Reminder;
    bool Complete = false;
    int Priority = 1;
};

struct CImportedEvent {
    QString Uid; // made from the content when the file has none
    quint32 Sequence = 0;
    quint64 Hash = 0; // of all lines but the time stamp
    int Line = 0;

    QString Subject, Location, Note, Organizer;
    QStringList Categories;
    std::vector<CAttendee> Attendees;
    int BusyStatus = 2, Sensitivity = 0;
    bool Cancelled = false;
    std::optional<int> ReminderMinutes;
    FileTime LastChange = 0;
    // Lines that the records have no place for. One of a property that the record also holds
    // stands there without a value, for its parameters.
    QString Kept;
    QString RuleText;     // RRULE as it stands
    QString ExcludedText; // EXDATE lines as they stand

    CEventDates Dates;
    bool HasEnd = false;
    std::shared_ptr<const CFileZone> Zone; // null: floating, or all-day
    bool IsTask = false;
    CImportedTask Task;
    std::optional<CFileMoment> RecurrenceId;
    std::shared_ptr<const CFileZone> RecurrenceZone;
    bool ThisAndFuture = false;
    std::string UnknownZone; // a name that nobody knows, the event floats
};

// The address of one who has none, for programs that want one.
inline const QString kNoMail = QStringLiteral("invalid:nomail");
// The time stamp of an item of which nobody knows when it was changed: 1970.
constexpr FileTime kUnknownChange = 116444736000000000;

// What an ATTENDEE line says; no name when it says nothing.
CAttendee AttendeeOf(const CPropertyLine& line);

class CEventReader
{
public:
    CEventReader(CZoneTable& zones, const TimeZoneInformation& device, CImportReport& report)
        : m_zones(zones), m_device(device), m_report(report)
    {
    }

    // False when the event has no usable start; that is told.
    bool Read(const CComponent& component, CImportedEvent* event);

private:
    void ReadLines();
    bool ReadDate(const CPropertyLine& line, const CComponent::Line& at);
    bool ReadText(const CPropertyLine& line, const CComponent::Line& at);
    bool ReadState(const CPropertyLine& line);
    bool ReadPerson(const CPropertyLine& line, std::string_view text);
    void KeepParameters(const CPropertyLine& line);
    void Keep(std::string_view text);
    size_t ReadNested(size_t first);
    void ReadAlarm(size_t first, size_t last);
    void FinishState();

    bool FinishDates();
    void FinishEnd(const CFileMoment& start);
    void FinishRule();
    void FinishListed();
    bool ReadTaskState(const CPropertyLine& line, const CComponent::Line& at);
    void FinishTaskDates();
    void FinishTaskReminder();
    std::optional<qint64> TaskMoment(const CComponent::Line* at);
    void ReadDateList(const CPropertyLine& line, bool added);
    qint64 WallInEvent(const CFileMoment& moment, const std::shared_ptr<const CFileZone>& zone) const;
    std::shared_ptr<const CFileZone> ZoneOf(const CPropertyLine& line, const CFileMoment& moment);

    CZoneTable& m_zones;
    TimeZoneInformation m_device;
    CImportReport& m_report;
    const CComponent* m_component = nullptr;
    CImportedEvent* m_event = nullptr;
    // What is put together when all lines are known.
    const CComponent::Line *m_start = nullptr, *m_end = nullptr, *m_length = nullptr, *m_rule = nullptr;
    std::vector<const CComponent::Line*> m_dateLists;
    std::string m_kept;
    bool m_hasSubject = false, m_hasLocation = false, m_hasNote = false;
    bool m_isTransparent = false, m_isTentative = false;
    int m_desktopBusy = -1;
    // Of a task's first alarm.
    std::optional<qint64> m_alarmSeconds; // from the start or the due date
    std::optional<CFileMoment> m_alarmMoment;
    bool m_alarmByDue = false;
};
