#include "interchange/task_lines.h"

#include "interchange/property_line.h"
#include "interchange/rule_text.h"
#include "records/occurrences.h"

#include <algorithm>

namespace
{
const CTimeForm kDays{CTimeForm::Date, ";VALUE=DATE", nullptr};

int DayOf(const std::optional<qint64>& wall)
{
    return wall ? DayOfWall(*wall) : 0;
}

int DayOf(DATE date)
{
    return date == NO_DATE ? 0 : DayNumber(date);
}

CTextLines LinesOf(const CKeptLines& kept, std::initializer_list<const char*> names)
{
    CTextLines found;
    for (const std::string& line : kept.Lines)
        for (const char* name : names)
            if (NameOfLine(line) == name)
                found.push_back(line);
    return found;
}

CTextLines Joined(CTextLines first, const CTextLines& second)
{
    AddKept(second, first);
    return first;
}

bool IsCancelled(const CKeptLines& kept)
{
    const CTextLines lines = LinesOf(kept, {"STATUS"});
    return !lines.empty() && EqualsUpper(TrimBlanks(CPropertyLine(lines.back()).Value), "CANCELLED");
}

// Whether a kept priority still means what the task says; a file counts from 1, the highest.
bool KeepsPriority(const CKeptLines& kept, int importance)
{
    const CTextLines lines = LinesOf(kept, {"PRIORITY"});
    if (lines.empty())
        return false;
    const int priority = std::atoi(std::string(CPropertyLine(lines.back()).Value).c_str());
    return importance == (priority >= 1 && priority <= 4 ? 2 : priority >= 6 && priority <= 9 ? 0 : 1);
}

void AddState(ITask& task, const CKeptLines& kept, CTextLines& lines)
{
    const DATE completed = task.get_DateCompleted();
    if (task.get_Complete() && completed != NO_DATE) {
        TimeZoneInformation device;
        GetTimeZoneInformation(&device);
        lines.push_back("COMPLETED:" + MomentText(WallOfDate(LocalToUtc(completed, device))) + 'Z');
    }
    if (!IsCancelled(kept) && (task.get_Complete() || LinesOf(kept, {"STATUS"}).empty()))
        lines.push_back(task.get_Complete() ? "STATUS:COMPLETED" : "STATUS:NEEDS-ACTION");
    if (task.get_Importance() != 1 && !KeepsPriority(kept, task.get_Importance()))
        lines.push_back(task.get_Importance() > 1 ? "PRIORITY:1" : "PRIORITY:9");
}
} // namespace

CImportedTask CTaskExporter::Read(const CTextLines& lines)
{
    CImportedEvent event;
    CTextLines all{"UID:x"};
    AddKept(lines, all);
    m_reader.Read(ComponentOf("VTODO", all), &event);
    return event.Task;
}

void CTaskExporter::UseZones(const CKeptLines& kept)
{
    for (const std::string& line : kept.Lines)
        if (!CPropertyLine(line).Parameter("TZID").empty())
            m_zoneWriter.FormOf(line, false, nullptr);
}

// Kept lines with a time stand as long as they tell the task's days.
void CTaskExporter::AddDates(ITask& task, const CKeptLines& kept, CTextLines& head)
{
    const int start = DayOf(task.get_StartDate()), due = DayOf(task.get_DueDate());
    CTextLines keptStart = LinesOf(kept, {"DTSTART"});
    if (DayOf(Read(keptStart).Start) == start)
        AddKept(keptStart, head);
    else if (start != 0)
        head.push_back(kDays.Line("DTSTART", WallOfDay(start)));
    const CTextLines keptEnd = LinesOf(kept, {"DUE", "DURATION"});
    if (DayOf(Read(Joined(head, keptEnd)).Due) == due)
        AddKept(keptEnd, head);
    else if (due != 0)
        head.push_back(kDays.Line("DUE", WallOfDay(due)));
}

// The days still to come: a task that has moved on begins where it stands.
void CTaskExporter::AddRule(ITask& task, const CKeptLines& kept, CTextLines& head, CTextLines& lists)
{
    const QString source = task.Foreign().SourceRule;
    if (!task.get_IsRecurring()) {
        if (!source.isEmpty())
            head.push_back("RRULE:" + source.toStdString());
        return;
    }
    const CRecurrencePattern& pattern = task.GetRecurrencePattern()->Pattern();
    const DATE date = task.get_StartDate() != NO_DATE ? task.get_StartDate() : task.get_DueDate();
    const int first = DayNumber(pattern.PatternStart), day = date == NO_DATE ? first : DayNumber(date);
    const int passed = day > first ? CountOccurrencesUpTo(pattern, day - 1) : 0;
    if (!source.isEmpty() && passed == 0)
        head.push_back("RRULE:" + source.toStdString());
    else
        head.push_back("RRULE:" + RuleTextOf(pattern, kDays, std::max(pattern.Occurrences - passed, 1)));
    std::string excluded;
    for (const std::string& line : LinesOf(kept, {"EXDATE"}))
        excluded += line;
    for (const CRecurrenceException& exception : pattern.Exceptions)
        if (exception.OriginalDay >= day &&
            excluded.find(DateText(WallOfDay(exception.OriginalDay))) == std::string::npos)
            lists.push_back(kDays.Line("EXDATE", WallOfDay(exception.OriginalDay)));
}

void CTaskExporter::AddReminder(ITask& task, const CKeptLines& kept, const CTextLines& head,
                                CTextLines& lines)
{
    CTextLines all = head;
    for (const CTextLines& block : kept.Blocks)
        AddKept(block, all);
    const std::optional<qint64> told = Read(all).Reminder;
    const DATE own = task.get_ReminderSet() ? task.get_ReminderTime() : NO_DATE;
    const bool fits = own == NO_DATE ? !told : told && *told / 60 == WallOfDate(own) / 60;
    if (!fits && own != NO_DATE)
        AddKept({"BEGIN:VALARM",
                 "TRIGGER;VALUE=DATE-TIME:" + MomentText(WallOfDate(LocalToUtc(own, m_zoneWriter.Device()))) +
                     'Z',
                 "ACTION:DISPLAY", "DESCRIPTION:Reminder", "END:VALARM"},
                lines);
    for (const CTextLines& block : kept.Blocks)
        if (fits || block.front() != "BEGIN:VALARM")
            AddKept(block, lines);
}

void CTaskExporter::Export(ITask& task, const QString& madeUid, CTextLines& lines)
{
    const CForeignData& foreign = task.Foreign();
    const CKeptLines kept(foreign.Text);
    CItemValues values;
    values.IsTask = true;
    values.Uid = foreign.Uid.isEmpty() ? madeUid : foreign.Uid;
    values.Sequence = foreign.Sequence;
    values.LastChange = foreign.LastChange;
    values.Organizer = foreign.Organizer;
    values.Subject = task.get_Subject();
    values.Note = task.get_Body();
    values.Categories = SortedNames(task.get_Categories());
    CTextLines head, own, lists;
    AddDates(task, kept, head);
    const CTextLines dates = head;
    AddRule(task, kept, head, lists);
    AddIdentity(values, own);
    AddKept(head, own);
    AddTexts(values, kept, own);
    bool keepsClass = false;
    AddClass(task.get_Sensitivity(), kept, own, &keepsClass);
    AddState(task, kept, own);
    const bool hasRule = head.size() > dates.size();
    const bool keepsStatus = IsCancelled(kept) || !task.get_Complete();
    const bool keepsPriority = KeepsPriority(kept, task.get_Importance());
    CTextLines keptLists;
    for (const std::string& line : kept.Lines) {
        const std::string name = NameOfLine(line);
        if (name == "DTSTART" || name == "DUE" || (name == "DURATION") || (name == "CLASS" && !keepsClass) ||
            (name == "STATUS" && !keepsStatus) || (name == "PRIORITY" && !keepsPriority) ||
            (name == "RRULE" && hasRule))
            continue;
        (name == "EXDATE" || name == "RDATE" ? keptLists : own).push_back(Filled(line, values));
    }
    AddKept(keptLists, own);
    AddKept(lists, own);
    AddReminder(task, kept, dates, own);
    UseZones(kept);
    m_zoneWriter.TakeBlocks(lines);
    lines.push_back("BEGIN:VTODO");
    AddKept(own, lines);
    lines.push_back("END:VTODO");
}
