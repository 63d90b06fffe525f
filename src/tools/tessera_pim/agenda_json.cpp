#include "tools/tessera_pim/agenda_json.h"

#include "pim/category_store.h"

#include <algorithm>
#include <charconv>
#include <cstdio>
#include <cstring>

namespace
{
constexpr size_t kRowBytes = 1024; // of a row without its texts
constexpr size_t kMostPerUnit = 6; // bytes that one UTF-16 unit can become

std::string_view KindName(int kind)
{
    return kind == kKindBirthday ? "birthday" : kind == kKindAnniversary ? "anniversary" : "appointment";
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

void CAgendaJson::Reserve(size_t bytes)
{
    if (m_buffer.size() - m_used < bytes)
        m_buffer.resize(std::max(m_used + bytes, m_buffer.size() * 2));
}

void CAgendaJson::Put(std::string_view text)
{
    std::memcpy(m_buffer.data() + m_used, text.data(), text.size());
    m_used += text.size();
}

void CAgendaJson::PutTwo(int number)
{
    Put(char('0' + number / 10 % 10));
    Put(char('0' + number % 10));
}

void CAgendaJson::PutUtf8(char32_t c)
{
    if (c < 0x80) {
        Put(char(c));
        return;
    }
    const int following = c < 0x800 ? 1 : c < 0x10000 ? 2 : 3;
    static constexpr int kLead[] = {0, 0xC0, 0xE0, 0xF0};
    Put(char(kLead[following] | int(c >> (6 * following))));
    for (int i = following - 1; i >= 0; --i)
        Put(char(0x80 | int(c >> (6 * i) & 0x3F)));
}

void CAgendaJson::Text(const QString& text)
{
    Reserve(kRowBytes + size_t(text.size()) * kMostPerUnit);
    Put('"');
    const QChar* at = text.constData();
    const QChar* const end = at + text.size();
    for (; at != end; ++at) {
        const char16_t c = at->unicode();
        if (c >= 0x20 && c < 0x7F && c != '"' && c != '\\') {
            Put(char(c));
        } else if (c == '"' || c == '\\') {
            Put('\\');
            Put(char(c));
        } else if (c < 0x20) {
            static constexpr char kDigits[] = "0123456789abcdef";
            Put("\\u00");
            Put(kDigits[c >> 4]);
            Put(kDigits[c & 15]);
        } else if (at->isHighSurrogate() && at + 1 != end && at[1].isLowSurrogate()) {
            PutUtf8(QChar::surrogateToUcs4(at[0], at[1]));
            ++at;
        } else {
            PutUtf8(at->isSurrogate() ? char32_t(0xFFFD) : char32_t(c));
        }
    }
    Put('"');
}

void CAgendaJson::Number(int number)
{
    const auto result = std::to_chars(m_buffer.data() + m_used, m_buffer.data() + m_buffer.size(), number);
    m_used = size_t(result.ptr - m_buffer.data());
}

void CAgendaJson::Bool(std::string_view key, bool value)
{
    Put(",\"");
    Put(key);
    Put(value ? "\":true" : "\":false");
}

void CAgendaJson::Date(int day)
{
    if (day == m_lastDay) {
        Put({m_lastDate, sizeof m_lastDate});
        return;
    }
    int year = 0, month = 0, dayOfMonth = 0;
    CivilOfDayNumber(day, &year, &month, &dayOfMonth);
    const size_t from = m_used;
    PutTwo(year / 100);
    PutTwo(year);
    Put('-');
    PutTwo(month);
    Put('-');
    PutTwo(dayOfMonth);
    m_lastDay = day;
    std::memcpy(m_lastDate, m_buffer.data() + from, sizeof m_lastDate);
}

void CAgendaJson::Moment(DATE date)
{
    if (date == NO_DATE) {
        Put("null");
        return;
    }
    const int day = DayNumber(date);
    const int minute = std::clamp(int((date - day) * 1440.0 + 0.5), 0, 1439);
    Put('"');
    Date(day);
    Put('T');
    PutTwo(minute / 60);
    Put(':');
    PutTwo(minute % 60);
    Put('"');
}

void CAgendaJson::CategoryNames(const CCategorySet& set)
{
    Put(",\"categories\":[");
    bool first = true;
    for (const qint32 number : set) {
        const CCategory* category = m_categories.FindById(number);
        if (!category)
            continue;
        if (!first)
            Put(',');
        first = false;
        Text(category->Name);
    }
    Reserve(kRowBytes);
    Put(']');
}

void CAgendaJson::AddAppointment(const CAppointment& item, const QString& uid)
{
    AddItem(item, uid,
            {KindName(item.Kind), item.Location, item.AllDay ? EndOfAllDay(item) : item.End,
             item.IsRecurring() ? item.OriginalStart : NO_DATE, item.AllDay, item.HasAttendees, item.Conflict,
             item.BusyStatus});
    Put("}\n");
}

void CAgendaJson::AddTask(const CTask& item, const QString& uid)
{
    AddItem(item, uid, {"task", QString(), item.End, NO_DATE});
    Bool("complete", item.Complete);
    Put(",\"priority\":");
    Number(item.Priority);
    Put("}\n");
}

// All keys but those of tasks; the object stays open.
void CAgendaJson::AddItem(const CPimItem& item, const QString& uid, const CFields& fields)
{
    Reserve(kRowBytes);
    Put("{\"day\":");
    if (m_rowDay == NO_DATE) {
        Put("null");
    } else {
        Put('"');
        Date(DayNumber(m_rowDay));
        Put('"');
    }
    Put(",\"kind\":\"");
    Put(fields.Kind);
    Put("\",\"id\":");
    Number(int(item.ItemId));
    Put(",\"uid\":");
    if (uid.isEmpty())
        Put("null");
    else
        Text(uid);
    Put(",\"subject\":");
    Text(item.Subject);
    Put(",\"location\":");
    Text(fields.Location);
    Put(",\"start\":");
    Moment(item.Start);
    Put(",\"end\":");
    Moment(fields.End);
    Put(",\"occurrence\":");
    Moment(fields.Occurrence);
    Bool("all_day", fields.AllDay);
    Put(",\"recurrence\":");
    Number(item.Recurrence);
    Put(",\"busy\":");
    Number(fields.BusyStatus);
    Put(",\"sensitivity\":");
    Number(item.Sensitivity);
    CategoryNames(item.Categories);
    Bool("note", item.HasNote);
    Bool("reminder", item.ReminderSet);
    Bool("attendees", fields.HasAttendees);
    Bool("conflict", fields.Conflict);
}

bool CAgendaJson::Flush()
{
    const bool good = std::fwrite(m_buffer.data(), 1, m_used, stdout) == m_used && std::fflush(stdout) == 0;
    m_used = 0;
    return good;
}
