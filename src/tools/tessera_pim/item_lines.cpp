#include "tools/tessera_pim/item_lines.h"

#include <cstdio>

namespace
{
QByteArray TimeText(DATE date)
{
    const SystemTime time = SystemTimeOf(date);
    char text[16];
    std::snprintf(text, sizeof text, "%02u:%02u", unsigned(time.wHour), unsigned(time.wMinute));
    return text;
}

QByteArray TimesOnDay(const CAppointment& item, int day)
{
    if (item.AllDay)
        return "all day";
    const QByteArray open = "...  ";
    const bool startsHere = DayNumber(item.Start) == day;
    const bool endsHere = DayNumber(item.End) == day || item.EndsPreviousDay ||
                          (DayNumber(item.End) == day + 1 && item.End == std::trunc(item.End));
    return (startsHere ? TimeText(item.Start) : open) + "-" + (endsHere ? TimeText(item.End) : open);
}

constexpr int kTimesWidth = 11;

QByteArray InColumns(const QByteArray& first, const QByteArray& rest)
{
    return first.leftJustified(kTimesWidth) + "  " + rest;
}
} // namespace

QByteArray OneLine(const QString& text)
{
    QString line = text;
    for (QChar& c : line) {
        if (c.category() == QChar::Other_Control)
            c = u' ';
    }
    return line.toLocal8Bit();
}

QByteArray IsoDay(int day)
{
    const SystemTime date = SystemTimeOf(day);
    char text[24];
    std::snprintf(text, sizeof text, "%04u-%02u-%02u", unsigned(date.wYear), unsigned(date.wMonth),
                  unsigned(date.wDay));
    return text;
}

QByteArray LineOf(const CAppointment& item, int day)
{
    QByteArray text = OneLine(item.Subject);
    if (!item.Location.isEmpty())
        text += " (" + OneLine(item.Location) + ")";
    return InColumns(TimesOnDay(item, day), text);
}

QByteArray LineOf(const CTask& task)
{
    return InColumns(task.Complete ? "done" : "to do", OneLine(task.Subject));
}
