#include "tools/tessera_pim/agenda_json.h"

#include "pim/category_store.h"

#include <charconv>
#include <cstdio>

namespace
{
const char* KindName(int kind)
{
    return kind == kKindBirthday ? "birthday" : kind == kKindAnniversary ? "anniversary" : "appointment";
}

void AppendUtf8(std::string& text, char32_t c)
{
    if (c < 0x80) {
        text += char(c);
    } else if (c < 0x800) {
        text += char(0xC0 | c >> 6);
        text += char(0x80 | (c & 0x3F));
    } else if (c < 0x10000) {
        text += char(0xE0 | c >> 12);
        text += char(0x80 | (c >> 6 & 0x3F));
        text += char(0x80 | (c & 0x3F));
    } else {
        text += char(0xF0 | c >> 18);
        text += char(0x80 | (c >> 12 & 0x3F));
        text += char(0x80 | (c >> 6 & 0x3F));
        text += char(0x80 | (c & 0x3F));
    }
}

void AppendEscape(std::string& text, ushort c)
{
    char escape[8];
    std::snprintf(escape, sizeof escape, "\\u%04x", unsigned(c));
    text += escape;
}

void AppendTwo(std::string& text, int number)
{
    text += char('0' + number / 10);
    text += char('0' + number % 10);
}

// The midnight after the last day of an all-day item.
DATE EndOfAllDay(const CAppointment& item)
{
    if (item.End == NO_DATE)
        return NO_DATE;
    const bool whole = item.End == std::trunc(item.End);
    return std::max(DayNumber(item.End) + (whole ? 0 : 1), DayNumber(item.Start) + 1);
}
} // namespace

void CAgendaJson::Text(const QString& text)
{
    m_text += '"';
    const char16_t* at = reinterpret_cast<const char16_t*>(text.utf16());
    const char16_t* const end = at + text.size();
    for (; at != end; ++at) {
        const char16_t c = *at;
        if (c == '"' || c == '\\') {
            m_text += '\\';
            m_text += char(c);
        } else if (c < 0x20) {
            AppendEscape(m_text, c);
        } else if (QChar::isHighSurrogate(c) && at + 1 != end && QChar::isLowSurrogate(at[1])) {
            AppendUtf8(m_text, QChar::surrogateToUcs4(c, at[1]));
            ++at;
        } else {
            AppendUtf8(m_text, QChar::isSurrogate(c) ? char32_t(0xFFFD) : char32_t(c));
        }
    }
    m_text += '"';
}

void CAgendaJson::Number(int number)
{
    char digits[16];
    const auto result = std::to_chars(digits, digits + sizeof digits, number);
    m_text.append(digits, result.ptr);
}

void CAgendaJson::Bool(const char* key, bool value)
{
    m_text += ",\"";
    m_text += key;
    m_text += value ? "\":true" : "\":false";
}

void CAgendaJson::Date(int day)
{
    if (day != m_lastDay || m_lastDate.empty()) {
        int year = 0, month = 0, dayOfMonth = 0;
        CivilOfDayNumber(day, &year, &month, &dayOfMonth);
        m_lastDay = day;
        m_lastDate.clear();
        AppendTwo(m_lastDate, year / 100 % 100);
        AppendTwo(m_lastDate, year % 100);
        m_lastDate += '-';
        AppendTwo(m_lastDate, month);
        m_lastDate += '-';
        AppendTwo(m_lastDate, dayOfMonth);
    }
    m_text += m_lastDate;
}

void CAgendaJson::Moment(DATE date)
{
    if (date == NO_DATE) {
        m_text += "null";
        return;
    }
    const int day = DayNumber(date);
    const int minute = std::min(int((date - day) * 1440.0 + 0.5), 1439);
    m_text += '"';
    Date(day);
    m_text += 'T';
    AppendTwo(m_text, minute / 60);
    m_text += ':';
    AppendTwo(m_text, minute % 60);
    m_text += '"';
}

void CAgendaJson::CategoryNames(const CCategorySet& set)
{
    m_text += ",\"categories\":[";
    bool first = true;
    for (const qint32 number : set) {
        const CCategory* category = m_categories.FindById(number);
        if (!category)
            continue;
        if (!first)
            m_text += ',';
        first = false;
        Text(category->Name);
    }
    m_text += ']';
}

void CAgendaJson::BeginDay(int day)
{
    Date(day);
    m_text.resize(m_text.size() - m_lastDate.size());
    m_rowHead = "{\"day\":\"" + m_lastDate + "\",\"kind\":\"";
}

void CAgendaJson::AddAppointment(const CAppointment& item, const QString& uid)
{
    m_text += m_rowHead;
    m_text += KindName(item.Kind);
    m_text += "\",\"id\":";
    Number(int(item.ItemId));
    m_text += ",\"uid\":";
    if (uid.isEmpty())
        m_text += "null";
    else
        Text(uid);
    m_text += ",\"subject\":";
    Text(item.Subject);
    m_text += ",\"location\":";
    Text(item.Location);
    m_text += ",\"start\":";
    Moment(item.Start);
    m_text += ",\"end\":";
    Moment(item.AllDay ? EndOfAllDay(item) : item.End);
    m_text += ",\"occurrence\":";
    Moment(item.IsRecurring() ? item.OriginalStart : NO_DATE);
    Bool("all_day", item.AllDay);
    m_text += ",\"recurrence\":";
    Number(item.Recurrence);
    m_text += ",\"busy\":";
    Number(item.BusyStatus);
    m_text += ",\"sensitivity\":";
    Number(item.Sensitivity);
    CategoryNames(item.Categories);
    Bool("note", item.HasNote);
    Bool("reminder", item.ReminderSet);
    Bool("attendees", item.HasAttendees);
    Bool("conflict", item.Conflict);
    m_text += "}\n";
}

bool CAgendaJson::Flush()
{
    const bool good = std::fwrite(m_text.data(), 1, m_text.size(), stdout) == m_text.size() && std::fflush(stdout) == 0;
    m_text.clear();
    return good;
}
