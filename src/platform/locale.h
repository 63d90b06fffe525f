// The user's locale: the named values and the formatting of dates and times by pictures.
// Pictures: d dd ddd dddd M MM MMM MMMM y yy yyyy gg for dates, h hh H HH m mm s ss t tt for
//   times; text in single quotes stands as it is, '' is a quote; any other character too.
//   MMMM beside a day number takes the genitive where the language has one.
// Ownership: the locale in force is borrowed; SetLocale(nullptr) returns to the system's.
#pragma once
#include "platform/system_time.h"

#include <QString>
#include <memory>

enum class LocaleValue {
    ShortDate,        // picture
    LongDate,         // picture
    TimeFormat,       // picture, with seconds
    DateSeparator,    // LOCALE_SDATE
    TimeSeparator,    // LOCALE_STIME
    DateOrder,        // LOCALE_IDATE: "0" month day year, "1" day month year, "2" year month day
    TimeMode,         // LOCALE_ITIME: "0" twelve hours, "1" twenty-four
    FirstDayOfWeek,   // LOCALE_IFIRSTDAYOFWEEK: "0" Monday .. "6" Sunday
    FirstWeekOfYear,  // LOCALE_IFIRSTWEEKOFYEAR: "0" 1 January, "1" first full, "2" first of four days
    AmText,
    PmText,
};

enum class DateFlag { Picture, Short, Long };
constexpr quint32 kTimeNoSeconds = 2;

class ILocale
{
public:
    virtual ~ILocale() = default;
    virtual QString Value(LocaleValue value) const = 0;
    virtual QString DayName(int dayOfWeek, bool abbreviated) const = 0;       // 0 Sunday
    virtual QString MonthName(int month, bool abbreviated, bool genitive) const = 0; // 1..12
    virtual int Compare(const QString& a, const QString& b) const = 0;        // ignores case
};

const ILocale& Locale();
void SetLocale(const ILocale* locale);
// A locale by its name ("de_DE"), as the system's would answer.
std::unique_ptr<ILocale> MakeLocale(const QString& name);

QString GetDateFormat(DateFlag flag, const SystemTime& time, const QString& picture = QString());
// An empty picture takes the locale's own; the flag kTimeNoSeconds drops seconds from it.
QString GetTimeFormat(quint32 flags, const SystemTime& time, const QString& picture = QString());
inline QString GetLocaleInfo(LocaleValue value) { return Locale().Value(value); }
inline int CompareText(const QString& a, const QString& b) { return Locale().Compare(a, b); }
