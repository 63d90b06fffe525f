// POSIX zone texts: std offset [dst [offset] [,start[/time],end[/time]]].
#include "platform/zone_rules.h"

#include "platform/system_time.h"

namespace
{
constexpr int kUnixDay = 25569; // 1 January 1970, counted from 30 December 1899

class CPosixReader
{
public:
    explicit CPosixReader(const QByteArray& text) : m_text(text) {}

    bool AtEnd() const { return m_at >= m_text.size(); }
    char Peek() const { return AtEnd() ? '\0' : m_text[m_at]; }
    bool Take(char c)
    {
        if (Peek() != c)
            return false;
        ++m_at;
        return true;
    }

    bool Name()
    {
        const int start = m_at;
        if (Take('<')) {
            while (!AtEnd() && Peek() != '>')
                ++m_at;
            return Take('>') && m_at - start >= 3;
        }
        while ((Peek() >= 'A' && Peek() <= 'Z') || (Peek() >= 'a' && Peek() <= 'z'))
            ++m_at;
        return m_at - start >= 3;
    }

    bool Number(int low, int high, int* value)
    {
        const int start = m_at;
        int number = 0;
        while (Peek() >= '0' && Peek() <= '9' && m_at - start < 4)
            number = number * 10 + (m_text[m_at++] - '0');
        *value = number;
        return m_at > start && number >= low && number <= high;
    }

    // [+-]hh[:mm[:ss]]
    bool Time(int* seconds)
    {
        const bool negative = Take('-');
        if (!negative)
            Take('+');
        int hours = 0;
        int minutes = 0;
        int rest = 0;
        if (!Number(0, 167, &hours))
            return false;
        if (Take(':') && !Number(0, 59, &minutes))
            return false;
        if (minutes >= 0 && Take(':') && !Number(0, 59, &rest))
            return false;
        *seconds = hours * 3600 + minutes * 60 + rest;
        if (negative)
            *seconds = -*seconds;
        return true;
    }

    bool Date(CPosixDate* date)
    {
        bool good = false;
        if (Take('M')) {
            date->form = CPosixDate::Form::MonthWeekDay;
            good = Number(1, 12, &date->month) && Take('.') && Number(1, 5, &date->week) && Take('.') &&
                   Number(0, 6, &date->weekday);
        } else if (Take('J')) {
            date->form = CPosixDate::Form::JulianDay;
            good = Number(1, 365, &date->day);
        } else {
            date->form = CPosixDate::Form::DayOfYear;
            good = Number(0, 365, &date->day);
        }
        return good && (!Take('/') || Time(&date->seconds));
    }

private:
    const QByteArray& m_text;
    int m_at = 0;
};
} // namespace

qint64 CPosixDate::WallSeconds(int year) const
{
    const int newYear = DayNumberOf(year, 1, 1);
    int dayNumber = newYear + day;
    if (form == Form::JulianDay) {
        // Day 60 is 1 March in every year.
        const bool leap = DayNumberOf(year + 1, 1, 1) - newYear == 366;
        dayNumber = newYear + day - 1 + (leap && day >= 60 ? 1 : 0);
    } else if (form == Form::MonthWeekDay) {
        const int first = DayNumberOf(year, month, 1);
        const int next = month == 12 ? DayNumberOf(year + 1, 1, 1) : DayNumberOf(year, month + 1, 1);
        const int firstWeekday = ((first + 6) % 7 + 7) % 7;
        dayNumber = first + (weekday - firstWeekday + 7) % 7 + (week - 1) * 7;
        while (dayNumber >= next)
            dayNumber -= 7;
    }
    return qint64(dayNumber - kUnixDay) * 86400 + seconds;
}

std::optional<CPosixZone> ParsePosixZone(const QByteArray& text)
{
    CPosixReader reader(text);
    CPosixZone zone;
    int west = 0;
    if (!reader.Name() || !reader.Time(&west))
        return std::nullopt;
    zone.standardOffset = -west;
    if (reader.AtEnd())
        return zone;
    if (!reader.Name())
        return std::nullopt;
    zone.hasDaylight = true;
    zone.daylightOffset = zone.standardOffset + 3600;
    if (!reader.AtEnd() && reader.Peek() != ',') {
        if (!reader.Time(&west))
            return std::nullopt;
        zone.daylightOffset = -west;
    }
    if (reader.AtEnd()) { // without dates the rule of the United States is meant
        zone.toDaylight.month = 3;
        zone.toDaylight.week = 2;
        zone.toStandard.month = 11;
        zone.toStandard.week = 1;
        return zone;
    }
    if (!reader.Take(',') || !reader.Date(&zone.toDaylight) || !reader.Take(',') ||
        !reader.Date(&zone.toStandard) || !reader.AtEnd())
        return std::nullopt;
    return zone;
}
