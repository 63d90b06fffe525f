#include "settings/title_formats.h"

#include "platform/locale.h"
#include "util/date_time.h"

namespace
{
QString WithSeparator(const char* picture)
{
    return QString::fromLatin1(picture).replace(QStringLiteral("%s"),
                                                GetLocaleInfo(LocaleValue::DateSeparator));
}

QString Format(DATE date, const QString& picture)
{
    return GetDateFormat(DateFlag::Picture, SystemTimeOf(date), picture);
}

// The index for which index 0 stands in the tables that follow the region.
int RegionalIndex()
{
    const QString order = GetLocaleInfo(LocaleValue::DateOrder);
    return order.startsWith(u'0') || order.startsWith(u'2') ? 1 : 3;
}

constexpr const char* kMonthDay = "MM%sdd";
constexpr const char* kDayMonth = "dd%sMM";

bool FormatRange(int index, DATE first, DATE second, QString* text)
{
    if (index < 0 || index > 5)
        return false;
    const int shown = index == 0 ? RegionalIndex() : index;
    const QString picture =
        shown == 5 ? QStringLiteral("MMM dd") : WithSeparator(shown <= 2 ? kMonthDay : kDayMonth);
    const QString begin = Format(first, picture);
    const QString dash = QStringLiteral(" - ");
    if (shown == 2 || shown == 4) // the first date's text is part of the second one's picture
        *text = Format(second, begin + dash + picture + WithSeparator("%syy"));
    else
        *text = begin + dash + Format(second, picture);
    return true;
}

bool FormatTaskDates(int index, DATE start, DATE due, QString* text)
{
    if (index < 0 || index > 5)
        return false;
    const int shown = index == 0 ? RegionalIndex() : index;
    QString result;
    const QString picture = WithSeparator(shown <= 2 ? kMonthDay : kDayMonth);
    if (shown == 1 || shown == 3) {
        if (due != NO_DATE)
            result = Format(due, picture);
    } else if (shown != 5 && (start != NO_DATE || due != NO_DATE)) {
        if (start != NO_DATE)
            result = Format(start, picture);
        result += u'-' + Format(due, picture);
    }
    *text = result;
    return true;
}

bool FormatDayTitle(int index, DATE date, QString* text)
{
    switch (index) {
    case 4:
        *text = GetDateFormat(DateFlag::Short, SystemTimeOf(date));
        return true;
    case 5:
        *text = GetDateFormat(DateFlag::Long, SystemTimeOf(date));
        return true;
    }
    static constexpr const char* kPictures[] = {
        "dddd',' MMM dd", "dddd',' MMM dd yyyy", "ddd',' MMM dd yyyy", "ddd',' MMM dd", nullptr,
        nullptr,          "ddd',' dd MMM yyyy",
    };
    if (index < 0 || index >= int(std::size(kPictures)))
        return false;
    *text = Format(date, QString::fromLatin1(kPictures[index]));
    return true;
}

bool FormatWeekDay(int index, DATE date, QString* text)
{
    static constexpr const char* kPictures[] = {nullptr, "ddd','MM%sdd", "MM%sdd", "ddd','dd%sMM", "dd%sMM"};
    if (index < 0 || index >= int(std::size(kPictures)))
        return false;
    *text = Format(date, WithSeparator(kPictures[index == 0 ? RegionalIndex() : index]));
    return true;
}

bool FormatMonthTitle(int index, DATE date, QString* text)
{
    static constexpr const char* kPictures[] = {"MMMM yyyy", "MMMM',' yy", "MMM yyyy", "MMM',' yy"};
    if (index < 0 || index >= int(std::size(kPictures)))
        return false;
    *text = Format(date, QString::fromLatin1(kPictures[index]));
    return true;
}
} // namespace

bool FormatViewTitle(int table, int index, DATE first, DATE second, QString* text)
{
    switch (table) {
    case kListTitleFormats:
    case kWeekTitleFormats:
        return FormatRange(index, first, second, text);
    case kDayTitleFormats:
    case kDailyTitleFormats:
        return FormatDayTitle(index, first, text);
    case kWeekDayFormats:
        return FormatWeekDay(index, first, text);
    case kMonthTitleFormats:
        return FormatMonthTitle(index, first, text);
    case kTaskDateFormats:
        return FormatTaskDates(index, first, second, text);
    }
    return false;
}
