#include "pattern_text.h"

#include <QStringList>
#include <algorithm>

namespace
{
const QStringList kWeekdays = {"SU", "MO", "TU", "WE", "TH", "FR", "SA"};

int MonthsOf(int day)
{
    const QDate date = QDate(1899, 12, 30).addDays(day);
    return date.year() * 12 + date.month();
}

bool HitsMonth(const CRecurrencePattern& p, int day, int start)
{
    if ((MonthsOf(day) - MonthsOf(start)) % p.Interval != 0)
        return false;
    const QDate date = QDate(1899, 12, 30).addDays(day);
    if (p.Type == PatternType::Monthly || p.Type == PatternType::Yearly)
        return date.day() == std::min(p.DayOfMonth, date.daysInMonth());
    const auto selected = [&p, &date](int d) {
        return d >= 1 && d <= date.daysInMonth() &&
               (p.DayMask >> (QDate(date.year(), date.month(), d).dayOfWeek() % 7) & 1);
    };
    if (!selected(date.day()))
        return false;
    int before = 0, after = 0;
    for (int d = 1; d <= date.daysInMonth(); ++d) {
        before += d < date.day() && selected(d);
        after += d > date.day() && selected(d);
    }
    return p.Instance == 5 ? after == 0 : before + 1 == p.Instance;
}
} // namespace

int DayOf(const QString& iso)
{
    return int(QDate(1899, 12, 30).daysTo(QDate::fromString(iso, Qt::ISODate)));
}
QString IsoOf(int day)
{
    return QDate(1899, 12, 30).addDays(day).toString(Qt::ISODate);
}

CRecurrencePattern PatternOf(const QString& text)
{
    CRecurrencePattern p;
    const QStringList words = text.split(' ', Qt::SkipEmptyParts);
    p.Type =
        int(QStringList{"daily", "weekly", "monthly", "ordinal", "-", "yearly", "yearly-ordinal"}.indexOf(
            words[0]));
    p.EndKind = PatternEndKind::Never;
    int count = 0, minutes = 60;
    for (int i = 1; i + 1 < words.size(); i += 2) {
        const QString &word = words[i], &value = words[i + 1];
        if (word == "every")
            p.Interval = value.toInt();
        if (word == "from")
            p.PatternStart = DayOf(value);
        if (word == "until")
            p.EndKind = PatternEndKind::Date, p.PatternEnd = DayOf(value);
        if (word == "count")
            p.EndKind = PatternEndKind::Count, count = p.Occurrences = value.toInt();
        if (word == "day")
            p.DayOfMonth = value.toInt();
        if (word == "nth")
            p.Instance = value.toInt();
        if (word == "raw-mask")
            p.DayMask = value.toInt();
        if (word == "days")
            for (const QString& day : value.split(','))
                p.DayMask |= 1 << kWeekdays.indexOf(day);
        if (word == "at")
            p.StartMinute = value.left(2).toInt() * 60 + value.mid(3).toInt();
        if (word == "lasting")
            minutes = value.toInt();
        if (word == "without")
            for (const QString& day : value.split(',')) {
                CRecurrenceException e;
                e.OriginalDay = DayOf(day);
                p.Exceptions.push_back(e);
            }
    }
    p.EndMinute = p.StartMinute + minutes;
    if (count > 0)
        p.PatternEnd = DayOfOccurrence(p, count);
    return p;
}

bool RuleHits(const CRecurrencePattern& p, int day)
{
    const int start = DayNumber(p.PatternStart);
    if (day < start)
        return false;
    if (p.Type == PatternType::Daily)
        return (day - start) % p.Interval == 0;
    if (p.Type == PatternType::Weekly) {
        const int sunday = day - DayOfWeekOf(day), first = start - DayOfWeekOf(start);
        return (p.DayMask >> DayOfWeekOf(day) & 1) && (sunday - first) / 7 % p.Interval == 0;
    }
    return HitsMonth(p, day, start);
}

QStringList ExpandByDays(const CRecurrencePattern& p, int firstDay, int lastDay)
{
    QStringList days;
    const int start = DayNumber(p.PatternStart);
    for (int day = start; day <= lastDay && day <= p.PatternEnd; ++day) {
        const bool deleted =
            std::any_of(p.Exceptions.begin(), p.Exceptions.end(),
                        [day](const CRecurrenceException& e) { return e.OriginalDay == day; });
        if (day + p.EndMinute / 1440 >= firstDay && !deleted && RuleHits(p, day))
            days += IsoOf(day);
    }
    return days;
}

QStringList Expand(const CRecurrencePattern& p, int firstDay, int lastDay)
{
    std::vector<COccurrence> found;
    ExpandPattern(p, firstDay, lastDay, found);
    QStringList days;
    for (const COccurrence& o : found)
        days += IsoOf(DayNumber(o.Start));
    return days;
}
