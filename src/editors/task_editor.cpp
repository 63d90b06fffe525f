#include "editors/task_editor.h"
#include "drawing/picture_ids.h"
#include "forms/question.h"
#include "pim/pim_store.h"
#include "util/string_ids.h"
#include "util/string_store.h"

namespace
{
constexpr FieldRowDesc kRows[] = {
    {StrSubject, PictureFormTaskSubject, kRowText, kRowEntry},
    {StrStartDate, PictureFormStart, kRowDate, kRowInclude},
    {StrEndDate, PictureFormEnd, kRowDate, kRowInclude},
    {StrReminder, PictureReminder, kRowDateTime, kRowInclude},
    {StrPrivate, PicturePrivate, kRowChoice, 0},
    {StrRecurring, PictureRecurring, kRowChoice, 0},
    {StrCustomPattern, kIconNone, kRowLink, 0},
    {StrPriority, PicturePriorityHigh, kRowChoice, kRowMarked},
    {StrCategories, PictureFormCategories, kRowLink, 0},
    {StrNote, PictureNote, kRowText, kRowEntry | kRowMultiLine},
};
constexpr int kPriorityCount = 3;
} // namespace

CTaskEditor::CTaskEditor(IPOutlookApp* app, const CTask& task, const QString& note, const QString& category)
    : CItemEditor(GetString(StrTask), kRows)
{
    static_cast<CTask&>(m_task) = task;
    m_task.Owner = nullptr; // the copy belongs to no day
    m_note = note;
    m_pattern = MakeDefaultPattern(task.End == NO_DATE ? GetToday() : task.End);
    if (m_task.ItemId) {
        PimStore().GetPresetIndex(app, nullptr, &m_task, m_preset, m_pattern);
        m_patternStored = m_preset != kPresetNone;
    } else {
        SeedCategories(category);
    }
    if (m_task.End == NO_DATE) {
        m_task.End = GetToday();
        m_dueIncluded = false;
        m_task.Start = NO_DATE;
    }
    if (m_task.Start == NO_DATE) {
        m_task.Start = m_task.End;
        m_startIncluded = false;
    }
    m_reminderIncluded = m_task.ReminderSet;
    if (!m_reminderIncluded)
        m_task.ReminderTime = m_task.End;
}

void CTaskEditor::InitRows()
{
    CItemEditor::InitRows();
    SetRowVisible(StrStartDate, m_dueIncluded, false);
}

bool CTaskEditor::FillChoices(quint32 id, QStringList& list)
{
    if (id != StrPriority)
        return CItemEditor::FillChoices(id, list);
    AddStrings(list, StrPriorityLow, kPriorityCount);
    return true;
}

void CTaskEditor::ExchangeDate(quint32 id, DATE& date, bool set)
{
    if (!set)
        date = id == StrStartDate ? m_task.Start : id == StrEndDate ? m_task.End : m_task.ReminderTime;
    else if (id == StrStartDate)
        SetStart(date);
    else if (id == StrEndDate)
        SetDue(date);
    else
        m_task.ReminderTime = date;
}

void CTaskEditor::SetStart(DATE date)
{
    MovePattern(m_task.Start, date);
    m_task.Start = date;
    if (m_task.Start > m_task.End) {
        m_task.End = m_task.Start;
        ReloadRow(StrEndDate);
    }
    ReloadRow(StrRecurring);
    ReloadRow(StrCustomPattern);
}

void CTaskEditor::SetDue(DATE date)
{
    // Without a start of its own the task recurs from its due date.
    if (!m_startIncluded) {
        MovePattern(m_task.Start, date);
        m_task.Start = date;
        ReloadRow(StrStartDate);
        ReloadRow(StrRecurring);
        ReloadRow(StrCustomPattern);
    }
    m_task.End = date;
    const int reminderDay = DayNumber(m_task.ReminderTime);
    if (date >= reminderDay)
        return;
    m_task.ReminderTime = DayNumber(date) + (m_task.ReminderTime - reminderDay);
    ReloadRow(StrReminder);
}

void CTaskEditor::ExchangeChoice(quint32 id, int& index, bool set)
{
    if (id == StrPriority)
        (set ? m_task.Priority : index) = set ? index : m_task.Priority;
    else
        CItemEditor::ExchangeChoice(id, index, set);
}

void CTaskEditor::ExchangeInclude(quint32 id, bool& included, bool set)
{
    bool& held = id == StrStartDate ? m_startIncluded : id == StrEndDate ? m_dueIncluded : m_reminderIncluded;
    if (!set) {
        included = held;
        return;
    }
    held = included;
    if (id != StrEndDate)
        return;
    if (!m_dueIncluded)
        m_startIncluded = false; // a start is nothing without a due date
    ReloadRow(StrStartDate);
    SetRowVisible(StrStartDate, m_dueIncluded);
}

bool CTaskEditor::Save()
{
    m_task.ReminderSet = m_reminderIncluded;
    if (!m_startIncluded)
        m_task.Start = NO_DATE;
    if (!m_dueIncluded)
        m_task.End = NO_DATE;
    const CPoomSession session(PimStore().Volume());
    if (!session.App() || !PimStore().SaveTask(session.App(), m_task, m_note, m_preset, &m_pattern))
        ShowMessage(this, GetString(StrSaveFailed), GetString(StrSaveFailedCaption));
    return true;
}
