// The properties of an event; its dates are put together in event_dates.cpp.
#include "interchange/content_hash.h"
#include "interchange/file_duration.h"
#include "interchange/import_limits.h"
#include "interchange/imported_event.h"
#include "interchange/property_line.h"

#include <algorithm>

namespace
{
constexpr FileTime kUnixEpoch = 116444736000000000; // 1970 in file time

QString AddressOf(std::string_view value)
{
    value = TrimBlanks(value);
    if (value.size() >= 7 && EqualsUpper(value.substr(0, 7), "MAILTO:"))
        value.remove_prefix(7);
    const QString address =
        Tidy(QString::fromUtf8(value.data(), qsizetype(value.size())), ImportLimit::TextChars / 16, true)
            .trimmed();
    return address == kNoMail ? QString() : address;
}

FileTime UtcFileTime(std::string_view value)
{
    CFileMoment moment;
    if (!ParseMoment(value, &moment) || moment.Wall * 10000000 + kUnixEpoch == kUnknownChange)
        return 0;
    return moment.Wall * 10000000 + kUnixEpoch;
}

bool OnlyCommonName(const CPropertyLine& line)
{
    const std::string_view name = line.Parameter("CN");
    // Name, equals sign, perhaps quotes.
    return line.Parameters.empty() || (!name.empty() && line.Parameters.size() <= name.size() + 5);
}
} // namespace

CAttendee AttendeeOf(const CPropertyLine& line)
{
    CAttendee attendee;
    attendee.Address = AddressOf(line.Value);
    attendee.Name = Tidy(TextOf(line.Parameter("CN")), ImportLimit::TextChars / 16, true).trimmed();
    if (attendee.Name.isEmpty())
        attendee.Name = attendee.Address;
    return attendee;
}

bool CEventReader::Read(const CComponent& component, CImportedEvent* event)
{
    m_component = &component;
    m_event = event;
    *event = CImportedEvent();
    event->Line = component.FirstLine;
    m_start = m_end = m_length = m_rule = nullptr;
    m_dateLists.clear();
    m_kept.clear();
    m_hasSubject = m_hasLocation = m_hasNote = m_isTransparent = m_isTentative = false;
    m_desktopBusy = -1;
    m_alarmSeconds.reset();
    m_alarmMoment.reset();
    m_alarmByDue = false;
    event->IsTask = component.Name == "VTODO";
    ReadLines();
    if (event->IsTask)
        FinishTaskDates();
    else if (!FinishDates())
        return false;
    FinishState();
    event->Kept = QString::fromUtf8(m_kept.data(), qsizetype(m_kept.size()));
    return true;
}

void CEventReader::ReadLines()
{
    CContentHash hash;
    bool junk = false;
    for (size_t i = 0; i < m_component->Lines.size(); ++i) {
        const CComponent::Line& at = m_component->Lines[i];
        const std::string_view text = m_component->LineText(at);
        if (text.starts_with("BEGIN:")) {
            const size_t last = ReadNested(i);
            for (; i <= last; ++i)
                hash.Add(m_component->LineText(m_component->Lines[i]));
            i = last;
            continue;
        }
        const CPropertyLine line(text);
        if (!line.IsValid) {
            if (!junk)
                m_report.LeftOut(at.Number, QStringLiteral("a line that is no property"));
            junk = true;
            continue;
        }
        if (EqualsUpper(line.Name, "DTSTAMP")) { // the time of the export, not of the item
            if (m_event->LastChange == 0)
                m_event->LastChange = UtcFileTime(line.Value);
            continue;
        }
        hash.Add(text);
        const bool isRead = ReadDate(line, at) || ReadText(line, at) ||
                            (m_event->IsTask && ReadTaskState(line, at)) || ReadState(line) ||
                            ReadPerson(line, text);
        if (!isRead)
            Keep(text);
    }
    m_event->Hash = hash.Value();
    if (!m_event->Uid.isEmpty())
        return;
    CContentHash second(1);
    for (const CComponent::Line& at : m_component->Lines)
        if (!m_component->LineText(at).starts_with("DTSTAMP"))
            second.Add(m_component->LineText(at));
    m_event->Uid = QString::asprintf("%016llx%016llx@content", static_cast<unsigned long long>(m_event->Hash),
                                     static_cast<unsigned long long>(second.Value()));
}

void CEventReader::Keep(std::string_view text)
{
    m_kept.append(text);
    m_kept.push_back('\n');
}

void CEventReader::KeepParameters(const CPropertyLine& line)
{
    if (line.Parameters.empty())
        return;
    m_kept.append(line.Name).append(";").append(line.Parameters).append(":\n");
}

bool CEventReader::ReadDate(const CPropertyLine& line, const CComponent::Line& at)
{
    const auto first = [&](const CComponent::Line*& place) {
        if (place)
            m_report.LeftOut(at.Number,
                             QStringLiteral("a second %1")
                                 .arg(QString::fromLatin1(line.Name.data(), qsizetype(line.Name.size()))));
        else
            place = &at;
        return true;
    };
    if (EqualsUpper(line.Name, "DTSTART"))
        return first(m_start);
    if (EqualsUpper(line.Name, m_event->IsTask ? "DUE" : "DTEND"))
        return first(m_end);
    if (EqualsUpper(line.Name, "DURATION"))
        return first(m_length);
    if (EqualsUpper(line.Name, "RRULE"))
        return first(m_rule);
    if (EqualsUpper(line.Name, "EXDATE") || EqualsUpper(line.Name, "RDATE")) {
        m_dateLists.push_back(&at);
        return true;
    }
    if (EqualsUpper(line.Name, "RECURRENCE-ID")) {
        CFileMoment moment;
        if (!ParseMoment(line.Value, &moment)) {
            m_report.LeftOut(at.Number, QStringLiteral("RECURRENCE-ID is no date"));
            return true;
        }
        m_event->RecurrenceId = moment;
        m_event->RecurrenceZone = ZoneOf(line, moment);
        m_event->ThisAndFuture = EqualsUpper(line.Parameter("RANGE"), "THISANDFUTURE");
        return true;
    }
    if (EqualsUpper(line.Name, "LAST-MODIFIED")) {
        m_event->LastChange = UtcFileTime(line.Value);
        return true;
    }
    return false;
}

bool CEventReader::ReadText(const CPropertyLine& line, const CComponent::Line& at)
{
    const auto take = [&](bool& had, QString& place, int limit, bool oneLine) {
        if (had) { // another language
            Keep(m_component->LineText(at));
            return true;
        }
        had = true;
        place = TextOf(line.Value);
        if (place.size() > limit)
            m_report.LeftOut(at.Number, QStringLiteral("the rest of a text beyond %1 characters").arg(limit));
        place = Tidy(std::move(place), limit, oneLine);
        KeepParameters(line);
        return true;
    };
    if (EqualsUpper(line.Name, "SUMMARY"))
        return take(m_hasSubject, m_event->Subject, ImportLimit::TextChars, true);
    if (EqualsUpper(line.Name, "LOCATION") && !m_event->IsTask)
        return take(m_hasLocation, m_event->Location, ImportLimit::TextChars, true);
    if (EqualsUpper(line.Name, "DESCRIPTION"))
        return take(m_hasNote, m_event->Note, ImportLimit::NoteChars, false);
    if (EqualsUpper(line.Name, "CATEGORIES")) {
        for (QString name : TextListOf(line.Value, ImportLimit::Categories)) {
            name = Tidy(name.replace(QLatin1Char(','), QLatin1Char(';')), ImportLimit::TextChars / 128, true)
                       .trimmed();
            if (!name.isEmpty() && m_event->Categories.size() < ImportLimit::Categories &&
                !m_event->Categories.contains(name, Qt::CaseInsensitive))
                m_event->Categories.append(name);
        }
        return true;
    }
    if (EqualsUpper(line.Name, "UID")) {
        const std::string_view uid = TrimBlanks(line.Value).substr(0, ImportLimit::TextChars / 32);
        m_event->Uid = QString::fromUtf8(uid.data(), qsizetype(uid.size()));
        return true;
    }
    return false;
}

bool CEventReader::ReadState(const CPropertyLine& line)
{
    const std::string_view value = TrimBlanks(line.Value);
    if (EqualsUpper(line.Name, "CLASS")) {
        m_event->Sensitivity = EqualsUpper(value, "PRIVATE") || EqualsUpper(value, "CONFIDENTIAL") ? 2 : 0;
        return EqualsUpper(value, "PRIVATE") || EqualsUpper(value, "PUBLIC"); // others are kept as well
    }
    if (EqualsUpper(line.Name, "TRANSP") && !m_event->IsTask) {
        m_isTransparent = EqualsUpper(value, "TRANSPARENT");
        return true;
    }
    if (EqualsUpper(line.Name, "STATUS")) {
        m_event->Cancelled = EqualsUpper(value, "CANCELLED");
        m_isTentative = EqualsUpper(value, "TENTATIVE");
        return false;
    }
    if (EqualsUpper(line.Name, "SEQUENCE")) {
        m_event->Sequence = QByteArray(value.data(), qsizetype(value.size())).toUInt();
        return true;
    }
    if (EqualsUpper(line.Name, "X-MICROSOFT-CDO-BUSYSTATUS")) {
        static constexpr std::string_view kNames[] = {"FREE", "TENTATIVE", "BUSY", "OOF"};
        for (int i = 0; i < 4; ++i)
            if (EqualsUpper(value, kNames[i]))
                m_desktopBusy = i;
    }
    return false;
}

void CEventReader::FinishState()
{
    if (m_desktopBusy >= 0)
        m_event->BusyStatus = m_desktopBusy;
    else if (m_isTransparent)
        m_event->BusyStatus = 0;
    else if (m_isTentative)
        m_event->BusyStatus = 1;
    if (m_event->Cancelled)
        m_event->BusyStatus = 0;
}

bool CEventReader::ReadPerson(const CPropertyLine& line, std::string_view text)
{
    if (EqualsUpper(line.Name, "ORGANIZER")) {
        m_event->Organizer = AddressOf(line.Value);
        KeepParameters(line);
        return true;
    }
    if (!EqualsUpper(line.Name, "ATTENDEE"))
        return false;
    if (m_event->IsTask || m_event->Attendees.size() >= size_t(ImportLimit::Attendees))
        return false; // a task has no place for them
    const CAttendee attendee = AttendeeOf(line);
    if (!attendee.Name.isEmpty())
        m_event->Attendees.push_back(attendee);
    if (attendee.Name.isEmpty() || !OnlyCommonName(line))
        Keep(text); // the parameters are of one attendee among several
    return true;
}

// ---- components within the event

// From a BEGIN line to its END, which always follows; result the last line.
size_t CEventReader::ReadNested(size_t first)
{
    int depth = 0;
    size_t last = first;
    for (; last < m_component->Lines.size(); ++last) {
        const std::string_view text = m_component->LineText(m_component->Lines[last]);
        depth += text.starts_with("BEGIN:") ? 1 : text.starts_with("END:") ? -1 : 0;
        if (depth == 0)
            break;
    }
    last = std::min(last, m_component->Lines.size() - 1);
    if (m_component->LineText(m_component->Lines[first]) == "BEGIN:VALARM") {
        ReadAlarm(first, last);
        return last;
    }
    for (size_t i = first; i <= last; ++i)
        Keep(m_component->LineText(m_component->Lines[i]));
    return last;
}

// The first alarm before the start becomes the reminder; what it says beyond that is kept
// without its trigger. Every other alarm is kept whole.
void CEventReader::ReadAlarm(size_t first, size_t last)
{
    std::string_view trigger;
    bool readable = false, relative = false, plain = true;
    CFileDuration duration;
    for (size_t i = first + 1; i < last; ++i) {
        const CPropertyLine line(m_component->LineText(m_component->Lines[i]));
        if (EqualsUpper(line.Name, "TRIGGER")) {
            trigger = m_component->LineText(m_component->Lines[i]);
            CFileMoment moment;
            relative = ParseDuration(line.Value, &duration);
            readable = relative || ParseMoment(line.Value, &moment);
            const bool atEnd = EqualsUpper(line.Parameter("RELATED"), "END");
            if (m_event->IsTask && readable && !m_alarmSeconds && !m_alarmMoment) {
                m_alarmByDue = atEnd;
                if (relative)
                    m_alarmSeconds = duration.Total();
                else
                    m_alarmMoment = moment;
            }
            relative = relative && !atEnd && duration.Total() <= 0;
        } else if (EqualsUpper(line.Name, "DESCRIPTION")) {
            plain = plain && (line.Value == "Reminder" || line.Value.empty());
        } else {
            plain =
                plain && EqualsUpper(line.Name, "ACTION") && EqualsUpper(TrimBlanks(line.Value), "DISPLAY");
        }
    }
    if (!readable) {
        m_report.LeftOut(m_component->Lines[first].Number, QStringLiteral("an alarm that cannot be read"));
        return;
    }
    const bool isReminder = relative && !m_event->ReminderMinutes && !m_event->IsTask;
    if (isReminder) {
        m_event->ReminderMinutes = int(-duration.Total() / 60);
        if (plain)
            return;
    }
    for (size_t i = first; i <= last; ++i) {
        const std::string_view text = m_component->LineText(m_component->Lines[i]);
        if (!isReminder || text.data() != trigger.data())
            Keep(text);
    }
}
