#include "editors/recurrence_editor.h"
#include "drawing/picture_ids.h"
#include "forms/check_list_dialog.h"
#include "pim/recurrence_presets.h"
#include "platform/locale.h"
#include "util/string_ids.h"
#include "util/string_store.h"

#include <array>

namespace
{
using Data = CRecurrencePatternData;

constexpr FieldRowDesc kRows[] = {
    {StrPattern, PictureRecurring, kRowChoice, kRowHasHeader},
    {StrPatternEvery, kIconNone, kRowChoice, 0},
    {StrPatternDays, kIconNone, kRowText, kRowDigits},
    {StrPatternWeeks, kIconNone, kRowText, kRowDigits},
    {StrPatternWeekDays, kIconNone, kRowLink, 0},
    {StrPatternMonthlyType, kIconNone, kRowChoice, 0},
    {StrPatternMonthlyOrdinal, kIconNone, kRowChoice, 0},
    {StrPatternMonthlyDayWord, kIconNone, kRowChoice, 0},
    {StrPatternMonthDay, kIconNone, kRowChoice, 0},
    {StrPatternMonths, kIconNone, kRowText, kRowDigits},
    {StrPatternYearlyType, kIconNone, kRowChoice, 0},
    {StrPatternYearlyOrdinal, kIconNone, kRowChoice, 0},
    {StrPatternYearlyDayWord, kIconNone, kRowChoice, 0},
    {StrPatternYearlyMonth, kIconNone, kRowChoice, 0},
    {StrPatternYearDay, kIconNone, kRowChoice, 0},
    {StrPatternStart, PictureFormStart, kRowDate, kRowHasHeader},
    {StrPatternEnd, PictureFormEnd, kRowChoice, kRowHasHeader},
    {StrPatternEndDate, kIconNone, kRowDate, 0},
    {StrPatternOccurrences, kIconNone, kRowText, kRowDigits},
};

void AddStrings(QStringList& list, int first, int count)
{
    for (int n = 0; n < count; ++n)
        list << GetString(first + n);
}

void AddWords(QStringList& list, int count, QString (*word)(int))
{
    for (int n = 0; n < count; ++n)
        list << word(n);
}

constexpr int kOrdinals = 5, kDayWords = 10, kMonthDays = 31, kMonths = 12;

// The rows whose list counts from 1.
bool CountsFromOne(quint32 id)
{
    return id == StrPatternYearlyMonth || id == StrPatternMonthDay || id == StrPatternYearDay;
}
} // namespace

CRecurrenceEditor::CRecurrenceEditor(const CRecurrencePatternData& data)
    : CFieldForm(GetString(StrCustomRecurrence), kRows), m_data(data), m_saved(data),
      m_keptInterval(data.Interval)
{
    SetTitleFollowsRow(false);
}

bool CRecurrenceEditor::Save()
{
    m_saved = m_data;
    // "Every weekday" is a choice of the daily pattern alone; the others show the kept interval.
    if (m_saved.Interval == 0 &&
        (m_saved.PatternType == Data::kWeekly || m_saved.PatternType == Data::kMonthly))
        m_saved.Interval = m_keptInterval;
    return true;
}

bool CRecurrenceEditor::FillChoices(quint32 id, QStringList& list)
{
    switch (id) {
    case StrPattern:
        AddStrings(list, StrPatternDaily, 4);
        break;
    case StrPatternEvery:
        AddStrings(list, StrPatternEveryWeekday, 2);
        break;
    case StrPatternMonthlyType:
        AddStrings(list, StrPatternOnDay, 2);
        break;
    case StrPatternYearlyType:
        AddStrings(list, StrPatternOnThisDate, 2);
        break;
    case StrPatternEnd:
        AddStrings(list, StrPatternNoEnd, 3);
        break;
    case StrPatternMonthlyOrdinal:
    case StrPatternYearlyOrdinal:
        AddWords(list, kOrdinals, GetOrdinalWord);
        break;
    case StrPatternMonthlyDayWord:
    case StrPatternYearlyDayWord:
        AddWords(list, kDayWords, GetDayWord);
        break;
    case StrPatternYearlyMonth:
        for (int month = 1; month <= kMonths; ++month)
            list << Locale().MonthName(month, false, false);
        break;
    case StrPatternMonthDay:
    case StrPatternYearDay:
        for (int day = 1; day <= kMonthDays; ++day)
            list << QString::number(day);
        break;
    default:
        return false;
    }
    return true;
}

// ---- exchange

// What a Choice row holds as a plain number; null for the other rows.
quint32* CRecurrenceEditor::NumberOf(quint32 id)
{
    switch (id) {
    case StrPattern:
        return &m_data.PatternType;
    case StrPatternMonthlyType:
        return &m_data.MonthlyKind;
    case StrPatternYearlyType:
        return &m_data.YearlyKind;
    case StrPatternEnd:
        return &m_data.EndType;
    case StrPatternMonthlyOrdinal:
    case StrPatternYearlyOrdinal:
        return &m_data.Ordinal;
    case StrPatternMonthlyDayWord:
        return &m_data.MonthlyDayKind;
    case StrPatternYearlyDayWord:
        return &m_data.YearlyDayKind;
    case StrPatternYearlyMonth:
        return m_data.YearlyKind != 0 ? &m_data.YearMonthOrdinal : &m_data.YearMonthDate;
    case StrPatternMonthDay:
        return &m_data.MonthDay;
    case StrPatternYearDay:
        return &m_data.YearDay;
    default:
        return nullptr;
    }
}

void CRecurrenceEditor::ExchangeChoice(quint32 id, int& index, bool set)
{
    if (id == StrPatternEvery) {
        if (set)
            m_data.Interval = index == 0 ? 0 : m_keptInterval;
        else
            index = m_data.Interval != 0;
    } else if (quint32* const number = NumberOf(id)) {
        const int base = CountsFromOne(id);
        if (set)
            *number = quint32(index + base);
        else
            index = int(*number) - base;
    }
    const bool decides = id == StrPattern || id == StrPatternEvery || id == StrPatternMonthlyType ||
                         id == StrPatternYearlyType || id == StrPatternEnd;
    if (!set || !decides)
        return;
    for (const quint32 row : {StrPatternDays, StrPatternWeeks, StrPatternMonths, StrPatternYearlyMonth})
        ReloadRow(row);
    RelayoutRows();
}

void CRecurrenceEditor::ExchangeText(quint32 id, QString& text, bool set)
{
    quint32& number = id == StrPatternOccurrences ? m_data.Occurrences : m_keptInterval;
    if (set) {
        number = text.toUInt(); // 0 for an empty one
        if (id != StrPatternOccurrences)
            m_data.Interval = number;
        return;
    }
    if (m_keptInterval == 0 && (id == StrPatternWeeks || id == StrPatternMonths))
        m_keptInterval = 1;
    text = QString::number(number);
}

void CRecurrenceEditor::ExchangeDate(quint32 id, DATE& date, bool set)
{
    DATE& held = id == StrPatternStart ? m_data.Start : m_data.EndDate;
    (set ? held : date) = set ? date : held;
}

void CRecurrenceEditor::GetLinkText(quint32, QString& text)
{
    QStringList days;
    for (int day = 0; day < 7; ++day) {
        if (m_data.Days[size_t(day)])
            days << Locale().DayName(day, false);
    }
    text = days.join(GetString(StrListSeparator));
}

void CRecurrenceEditor::OnLinkTapped(quint32 id)
{
    if (id != StrPatternWeekDays)
        return;
    std::vector<CCheckListDialog::CRow> days;
    for (int day = 0; day < 7; ++day)
        days.push_back({Locale().DayName(day, false), m_data.Days[size_t(day)]});
    CCheckListDialog dialog(GetString(StrSelectDays), std::move(days));
    if (dialog.Run(this) != kDone)
        return;
    for (int day = 0; day < 7; ++day)
        m_data.Days[size_t(day)] = dialog.IsChecked(day);
}

// ---- which rows show

void CRecurrenceEditor::RelayoutRows()
{
    const bool daily = m_data.PatternType == Data::kDaily, weekly = m_data.PatternType == Data::kWeekly;
    const bool monthly = m_data.PatternType == Data::kMonthly, yearly = m_data.PatternType == Data::kYearly;
    const bool monthlyOrdinal = m_data.MonthlyKind == 1, yearlyOrdinal = m_data.YearlyKind != 0;
    const std::pair<quint32, bool> shown[] = {
        {StrPatternEvery, daily},
        {StrPatternDays, daily && m_data.Interval != 0},
        {StrPatternWeeks, weekly},
        {StrPatternWeekDays, weekly},
        {StrPatternMonthlyType, monthly},
        {StrPatternMonths, monthly},
        {StrPatternMonthlyOrdinal, monthly && monthlyOrdinal},
        {StrPatternMonthlyDayWord, monthly && monthlyOrdinal},
        {StrPatternMonthDay, monthly && !monthlyOrdinal},
        {StrPatternYearlyType, yearly},
        {StrPatternYearlyMonth, yearly},
        {StrPatternYearDay, yearly && !yearlyOrdinal},
        {StrPatternYearlyOrdinal, yearly && yearlyOrdinal},
        {StrPatternYearlyDayWord, yearly && yearlyOrdinal},
        {StrPatternEndDate, m_data.EndType == Data::kEndDate},
        {StrPatternOccurrences, m_data.EndType == Data::kEndCount},
    };
    for (const auto& [id, visible] : shown)
        SetRowVisible(id, visible, false);
    CFieldForm::RelayoutRows();
}
