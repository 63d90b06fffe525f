// A locale whose every answer a test can set; English names, month before day, Sunday first.
#pragma once
#include "platform/locale.h"

#include <QStringList>
#include <map>

class CFakeLocale : public ILocale
{
public:
    CFakeLocale() { SetLocale(this); }
    ~CFakeLocale() override { SetLocale(nullptr); }

    QString Value(LocaleValue value) const override { return Values.at(value); }
    QString DayName(int dayOfWeek, bool abbreviated) const override
    {
        static const QStringList names = {"Sunday",   "Monday", "Tuesday", "Wednesday",
                                          "Thursday", "Friday", "Saturday"};
        return abbreviated ? names.value(dayOfWeek).left(3) : names.value(dayOfWeek);
    }
    QString MonthName(int month, bool abbreviated, bool) const override
    {
        static const QStringList names = {"January",   "February", "March",    "April",
                                          "May",       "June",     "July",     "August",
                                          "September", "October",  "November", "December"};
        return abbreviated ? names.value(month - 1).left(3) : names.value(month - 1);
    }
    int Compare(const QString& a, const QString& b) const override
    {
        return a.compare(b, Qt::CaseInsensitive);
    }

    std::map<LocaleValue, QString> Values = {
        {LocaleValue::ShortDate, "M/d/yyyy"},
        {LocaleValue::LongDate, "dddd, MMMM d, yyyy"},
        {LocaleValue::TimeFormat, "h:mm:ss tt"},
        {LocaleValue::DateSeparator, "/"},
        {LocaleValue::TimeSeparator, ":"},
        {LocaleValue::DateOrder, "0"},
        {LocaleValue::TimeMode, "0"},
        {LocaleValue::FirstDayOfWeek, "6"},
        {LocaleValue::FirstWeekOfYear, "0"},
        {LocaleValue::AmText, "AM"},
        {LocaleValue::PmText, "PM"},
    };
};
