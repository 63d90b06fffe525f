#include "interchange/file_moment.h"

#include "interchange/import_limits.h"

namespace
{
bool Digits(std::string_view text, size_t from, size_t count, int* value)
{
    if (from + count > text.size())
        return false;
    int sum = 0;
    for (size_t i = from; i < from + count; ++i) {
        if (text[i] < '0' || text[i] > '9')
            return false;
        sum = sum * 10 + (text[i] - '0');
    }
    *value = sum;
    return true;
}

bool ParseTime(std::string_view text, CFileMoment* moment)
{
    if (!text.empty() && (text.back() == 'Z' || text.back() == 'z')) {
        moment->IsUtc = true;
        text.remove_suffix(1);
    }
    int hour = 0, minute = 0, second = 0;
    if ((text.size() != 6 && text.size() != 4) || !Digits(text, 0, 2, &hour) || !Digits(text, 2, 2, &minute))
        return false;
    if (text.size() == 6 && !Digits(text, 4, 2, &second))
        return false;
    const bool endOfDay = hour == 24 && minute == 0 && second == 0;
    if ((hour > 23 && !endOfDay) || minute > 59 || second > 60)
        return false;
    moment->Wall += hour * 3600 + minute * 60 + (second == 60 ? 59 : second); // a leap second
    return true;
}
} // namespace

bool ParseMoment(std::string_view text, CFileMoment* moment)
{
    while (!text.empty() && (text.back() == ' ' || text.back() == '\t'))
        text.remove_suffix(1);
    while (!text.empty() && (text.front() == ' ' || text.front() == '\t'))
        text.remove_prefix(1);
    int year = 0, month = 0, day = 0;
    if (!Digits(text, 0, 4, &year) || !Digits(text, 4, 2, &month) || !Digits(text, 6, 2, &day))
        return false;
    if (year < 1 || month < 1 || month > 12 || day < 1 || day > 31)
        return false;
    const int number = DayNumberOf(year, month, day);
    if (day > 28) {
        int y = 0, m = 0, d = 0;
        CivilOfDayNumber(number, &y, &m, &d);
        if (m != month)
            return false;
    }
    CFileMoment result;
    result.Wall = WallOfDay(number);
    result.IsDate = text.size() == 8;
    if (!result.IsDate && ((text[8] != 'T' && text[8] != 't') || !ParseTime(text.substr(9), &result)))
        return false;
    *moment = result;
    return true;
}

int YearOfWall(qint64 wall)
{
    int year = 0, month = 0, day = 0;
    CivilOfDayNumber(DayOfWall(wall), &year, &month, &day);
    return year;
}

bool IsStorable(qint64 wall)
{
    const int year = YearOfWall(wall);
    return year >= ImportLimit::FirstYear && year <= ImportLimit::LastYear;
}
