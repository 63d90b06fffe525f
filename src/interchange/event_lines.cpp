#include "interchange/event_lines.h"

#include "interchange/import_limits.h"
#include "interchange/property_line.h"

#include <algorithm>

namespace
{
const char kBusyName[] = "X-MICROSOFT-CDO-BUSYSTATUS";
constexpr const char* kBusyNames[] = {"FREE", "TENTATIVE", "BUSY", "OOF"};

std::string AddressLine(const std::string& name, const QString& address)
{
    const bool hasScheme = address.contains(QLatin1Char(':'));
    return name + ':' + (address.isEmpty() || hasScheme ? "" : "mailto:") + address.toStdString();
}

std::string AttendeeLine(const CAttendee& attendee, bool asksForAnswer)
{
    std::string name = "ATTENDEE";
    if (attendee.Name != attendee.Address || asksForAnswer)
        name += ";CN=" + ParameterText(attendee.Name);
    if (asksForAnswer)
        name += ";RSVP=TRUE";
    return AddressLine(name, attendee.Address.isEmpty() ? kNoMail : attendee.Address);
}

// The attendees in their order, each by its kept line where there is one.
void AddAttendees(const CItemValues& values, const CKeptLines& kept, CTextLines& lines)
{
    std::vector<const std::string*> keptLines;
    for (const std::string& line : kept.Lines)
        if (NameOfLine(line) == "ATTENDEE")
            keptLines.push_back(&line);
    for (const CAttendee& attendee : values.Attendees) {
        const auto at = std::find_if(keptLines.begin(), keptLines.end(), [&](const std::string* line) {
            return line && AttendeeOf(CPropertyLine(*line)) == attendee;
        });
        lines.push_back(at == keptLines.end() ? AttendeeLine(attendee, values.IsMessage) : **at);
        if (at != keptLines.end())
            *at = nullptr;
    }
    // What the record could not take in remains, who was removed since does not.
    const bool isFull = values.Attendees.size() >= size_t(ImportLimit::Attendees);
    for (const std::string* line : keptLines)
        if (line && (isFull || AttendeeOf(CPropertyLine(*line)).Name.isEmpty()))
            lines.push_back(*line);
}

// What the kept lines say of the state by themselves.
struct CKeptState {
    bool Cancelled = false, Tentative = false, HasStatus = false;
    int Busy = -1;

    explicit CKeptState(const CKeptLines& kept)
    {
        for (const std::string& text : kept.Lines) {
            const CPropertyLine line(text);
            const std::string_view value = TrimBlanks(line.Value);
            if (EqualsUpper(line.Name, "STATUS")) {
                HasStatus = true;
                Cancelled = EqualsUpper(value, "CANCELLED");
                Tentative = EqualsUpper(value, "TENTATIVE");
            } else if (EqualsUpper(line.Name, kBusyName)) {
                for (int i = 0; i < 4; ++i)
                    if (EqualsUpper(value, kBusyNames[i]))
                        Busy = i;
            }
        }
    }
    int Expected(bool isTransparent) const
    {
        return Cancelled ? 0 : Busy >= 0 ? Busy : isTransparent ? 0 : Tentative ? 1 : 2;
    }
};

bool HasTrigger(const CTextLines& block)
{
    return std::any_of(block.begin(), block.end(),
                       [](const std::string& line) { return NameOfLine(line) == "TRIGGER"; });
}

bool IsBeforeStart(const CTextLines& block)
{
    return std::any_of(block.begin(), block.end(), [](const std::string& text) {
        const CPropertyLine line(text);
        return EqualsUpper(line.Name, "TRIGGER") && !EqualsUpper(line.Parameter("RELATED"), "END") &&
               TrimBlanks(line.Value).starts_with("-P");
    });
}

std::string TriggerLine(int minutes)
{
    if (minutes > 0 && minutes % 1440 == 0)
        return "TRIGGER:-P" + std::to_string(minutes / 1440) + 'D';
    return minutes > 0 ? "TRIGGER:-PT" + std::to_string(minutes) + 'M' : std::string("TRIGGER:PT0S");
}

// The reminder first, as a reader takes the first one before the start.
void AddBlocks(const CItemValues& values, const CKeptLines& kept, CTextLines& lines)
{
    const auto isReminder = [](const CTextLines& block) {
        return block.front() == "BEGIN:VALARM" && !HasTrigger(block);
    };
    const bool isKept = std::any_of(kept.Blocks.begin(), kept.Blocks.end(), isReminder);
    if (values.ReminderMinutes && !isKept)
        for (const std::string& line :
             {std::string("BEGIN:VALARM"), TriggerLine(*values.ReminderMinutes),
              std::string("ACTION:DISPLAY"), std::string("DESCRIPTION:Reminder"), std::string("END:VALARM")})
            lines.push_back(line);
    for (const CTextLines& block : kept.Blocks) {
        const bool isAlarm = block.front() == "BEGIN:VALARM";
        if (isAlarm && !values.ReminderMinutes && (!HasTrigger(block) || IsBeforeStart(block)))
            continue; // it was switched off
        lines.push_back(block.front());
        if (isReminder(block))
            lines.push_back(TriggerLine(*values.ReminderMinutes));
        lines.insert(lines.end(), block.begin() + 1, block.end());
    }
}

bool HasHole(const CKeptLines& kept, std::string_view name)
{
    return std::any_of(kept.Lines.begin(), kept.Lines.end(),
                       [&](const std::string& line) { return NameOfLine(line) == name && IsHole(line); });
}

bool HasLine(const CTextLines& lines, std::string_view name)
{
    return std::any_of(lines.begin(), lines.end(),
                       [&](const std::string& line) { return NameOfLine(line) == name; });
}

// Neighbouring lists of the same form are one, as a reader joins them.
void AddDates(const std::string& line, CTextLines& lines)
{
    const size_t header = line.find(':') + 1;
    if (!lines.empty() && line.substr(0, header).find('"') == std::string::npos &&
        lines.back().compare(0, header, line, 0, header) == 0)
        lines.back() += ',' + line.substr(header);
    else
        lines.push_back(line);
}
} // namespace

QStringList SortedNames(const QString& joined)
{
    QStringList names = joined.split(QStringLiteral(", "), Qt::SkipEmptyParts);
    names.sort();
    return names;
}

CItemValues ValuesOf(IAppointment& item)
{
    CItemValues values;
    const CForeignData& foreign = item.Foreign();
    values.Uid = foreign.Uid;
    values.Sequence = foreign.Sequence;
    values.LastChange = foreign.LastChange;
    values.Organizer = foreign.Organizer;
    values.Subject = item.get_Subject();
    values.Location = item.get_Location();
    values.Note = item.get_Body();
    values.Categories = SortedNames(item.get_Categories());
    values.BusyStatus = item.get_BusyStatus();
    values.Sensitivity = item.get_Sensitivity();
    if (item.get_ReminderSet())
        values.ReminderMinutes = std::max(item.get_ReminderMinutesBeforeStart(), 0);
    IRecipients* const recipients = item.get_Recipients();
    for (int i = 1; i <= recipients->get_Count(); ++i)
        values.Attendees.push_back({recipients->Item(i)->get_Name(), recipients->Item(i)->get_Address()});
    return values;
}

void AddIdentity(const CItemValues& values, CTextLines& lines)
{
    lines.push_back("UID:" + values.Uid.toStdString());
    lines.push_back("DTSTAMP:" + UtcText(values.LastChange != 0 ? values.LastChange : kUnknownChange));
    if (values.Sequence != 0 || values.IsMessage)
        lines.push_back("SEQUENCE:" + std::to_string(values.Sequence));
}

std::string Filled(const std::string& line, const CItemValues& values)
{
    const std::string name = NameOfLine(line);
    if (!IsHole(line))
        return line;
    if (name == "SUMMARY")
        return line + EscapedText(values.Subject);
    if (name == "LOCATION")
        return line + EscapedText(values.Location);
    if (name == "DESCRIPTION")
        return line + EscapedText(values.Note);
    if (name == "ORGANIZER")
        return AddressLine(line.substr(0, line.size() - 1), values.Organizer);
    return line;
}

void AddTexts(const CItemValues& values, const CKeptLines& kept, CTextLines& lines)
{
    const std::pair<const char*, const QString&> texts[] = {
        {"SUMMARY", values.Subject}, {"LOCATION", values.Location}, {"DESCRIPTION", values.Note}};
    for (const auto& [name, text] : texts)
        if (!(values.IsTask && &text == &values.Location) && !HasHole(kept, name) &&
            (!text.isEmpty() || HasLine(kept.Lines, name)))
            lines.push_back(std::string(name) + ':' + EscapedText(text));
    if (!values.Categories.isEmpty())
        lines.push_back("CATEGORIES:" + EscapedList(values.Categories));
    if (!values.Organizer.isEmpty() && !HasHole(kept, "ORGANIZER"))
        lines.push_back(AddressLine("ORGANIZER", values.Organizer));
    else if (!values.OrganizerName.isEmpty() && values.Organizer.isEmpty())
        lines.push_back("ORGANIZER;CN=" + ParameterText(values.OrganizerName) + ':' + kNoMail.toStdString());
}

void AddClass(int sensitivity, const CKeptLines& kept, CTextLines& lines, bool* keepsClass)
{
    int expected = 0;
    bool has = false;
    for (const std::string& text : kept.Lines) {
        const CPropertyLine line(text);
        if (!EqualsUpper(line.Name, "CLASS"))
            continue;
        has = true;
        expected = EqualsUpper(TrimBlanks(line.Value), "CONFIDENTIAL") ? 2 : 0;
    }
    *keepsClass = has && (expected != 0) == (sensitivity != 0);
    if (sensitivity != 0 && !*keepsClass)
        lines.push_back("CLASS:PRIVATE");
}

void AddKept(const CTextLines& block, CTextLines& lines)
{
    lines.insert(lines.end(), block.begin(), block.end());
}

CTextLines EventLines(const CItemValues& values, const CKeptLines& kept, const CDateLines& dates)
{
    CTextLines lines, lists;
    AddIdentity(values, lines);
    AddKept(dates.Head, lines);
    AddTexts(values, kept, lines);
    bool keepsClass = false;
    AddClass(values.Sensitivity, kept, lines, &keepsClass);
    if (values.BusyStatus == 0)
        lines.push_back("TRANSP:TRANSPARENT");
    const CKeptState state(kept);
    const bool keepsState =
        !values.IsCancelled && state.Expected(values.BusyStatus == 0) == values.BusyStatus;
    AddAttendees(values, kept, lines);
    const bool hasRule = HasLine(dates.Head, "RRULE");
    for (const std::string& line : kept.Lines) {
        const std::string name = NameOfLine(line);
        const bool isRule = name == "RRULE", isList = name == "RDATE" || name == "EXDATE";
        if (name == "DTSTART" || name == "ATTENDEE" || name == "X-TESSERA-START" ||
            (name == "CLASS" && !keepsClass) || (!keepsState && (name == "STATUS" || name == kBusyName)) ||
            (isRule && (hasRule || !dates.KeepsRules)))
            continue;
        if (isList && dates.KeepsRules)
            AddDates(line, lists);
        else if (name == "UID")
            lines.push_back("X-TESSERA-UID" + line.substr(3));
        else if (!isList)
            lines.push_back(Filled(line, values));
    }
    if (values.IsCancelled)
        lines.push_back("STATUS:CANCELLED");
    else if (!keepsState && values.BusyStatus == 1)
        lines.push_back("STATUS:TENTATIVE");
    else if (!keepsState && values.BusyStatus == 3)
        lines.push_back(std::string(kBusyName) + ":OOF");
    for (const std::string& line : dates.Lists)
        AddDates(line, lists);
    AddKept(lists, lines);
    if (!values.IsCancelled)
        AddBlocks(values, kept, lines);
    return lines;
}
