// Formatting of dates and times by pictures, with the names of the locale in force.
#include "platform/locale.h"

namespace
{
QString Padded(int number, int width) { return QStringLiteral("%1").arg(number, width, 10, QLatin1Char('0')); }

// Walks a picture: runs of one letter go to `field`, all else stands as it is.
template <typename IsLetter, typename Field>
QString Walk(const QString& picture, IsLetter isLetter, Field field)
{
    QString result;
    for (qsizetype i = 0; i < picture.size();) {
        const QChar c = picture[i];
        if (c == u'\'') {
            if (i + 1 < picture.size() && picture[i + 1] == u'\'') {
                result += c;
                i += 2;
                continue;
            }
            for (++i; i < picture.size(); ++i) {
                if (picture[i] == u'\'') {
                    if (i + 1 >= picture.size() || picture[i + 1] != u'\'')
                        break;
                    ++i;
                }
                result += picture[i];
            }
            ++i;
            continue;
        }
        qsizetype end = i + 1;
        if (isLetter(c)) {
            while (end < picture.size() && picture[end] == c)
                ++end;
            result += field(c, int(end - i));
        } else {
            result += c;
        }
        i = end;
    }
    return result;
}

bool IsDateLetter(QChar c) { return c == u'd' || c == u'M' || c == u'y' || c == u'g'; }
bool IsTimeLetter(QChar c) { return c == u'h' || c == u'H' || c == u'm' || c == u's' || c == u't'; }

bool HasDayNumber(const QString& picture)
{
    bool found = false;
    Walk(picture, IsDateLetter, [&found](QChar c, int count) {
        found = found || (c == u'd' && count <= 2);
        return QString();
    });
    return found;
}

QString YearField(int year, int count)
{
    if (count == 1)
        return QString::number(year % 100);
    return count == 2 ? Padded(year % 100, 2) : Padded(year, 4);
}

QString FormatDate(const SystemTime& time, const QString& picture)
{
    DATE date = 0;
    SystemTime checked = time;
    checked.wHour = checked.wMinute = checked.wSecond = 0;
    // The weekday is that of the date, whatever the caller put there.
    if (!SystemTimeToVariantTime(checked, &date) || !VariantTimeToSystemTime(date, &checked))
        return QString();
    const bool genitive = HasDayNumber(picture);
    return Walk(picture, IsDateLetter, [&](QChar c, int count) {
        if (c == u'y')
            return YearField(checked.wYear, count);
        if (c == u'g')
            return count == 1 ? QStringLiteral("g") : QStringLiteral("A.D.");
        const int number = c == u'd' ? checked.wDay : checked.wMonth;
        if (count <= 2)
            return Padded(number, count);
        return c == u'd' ? Locale().DayName(checked.wDayOfWeek, count == 3)
                         : Locale().MonthName(number, count == 3, genitive);
    });
}

// Takes the seconds out, with the separator before them.
QString WithoutSeconds(const QString& picture)
{
    QString result;
    bool quoted = false;
    for (const QChar c : picture) {
        if (c == u'\'')
            quoted = !quoted;
        if (c != u's' || quoted) {
            result += c;
            continue;
        }
        while (!result.isEmpty() && !IsTimeLetter(result.back()) && result.back() != u'\'')
            result.chop(1);
    }
    return result;
}

QString FormatTimeOfDay(const SystemTime& time, const QString& picture)
{
    const bool morning = time.wHour < 12;
    const int twelve = time.wHour % 12 == 0 ? 12 : time.wHour % 12;
    return Walk(picture, IsTimeLetter, [&](QChar c, int count) {
        const int width = qMin(count, 2);
        switch (c.unicode()) {
        case u'h':
            return Padded(twelve, width);
        case u'H':
            return Padded(time.wHour, width);
        case u'm':
            return Padded(time.wMinute, width);
        case u's':
            return Padded(time.wSecond, width);
        default: {
            const QString text = GetLocaleInfo(morning ? LocaleValue::AmText : LocaleValue::PmText);
            return count == 1 ? text.left(1) : text;
        }
        }
    });
}
} // namespace

QString GetDateFormat(DateFlag flag, const SystemTime& time, const QString& picture)
{
    if (flag == DateFlag::Picture && !picture.isEmpty())
        return FormatDate(time, picture);
    return FormatDate(time, GetLocaleInfo(flag == DateFlag::Long ? LocaleValue::LongDate : LocaleValue::ShortDate));
}

QString GetTimeFormat(quint32 flags, const SystemTime& time, const QString& picture)
{
    if (time.wHour > 23 || time.wMinute > 59 || time.wSecond > 59)
        return QString();
    const QString own = picture.isEmpty() ? GetLocaleInfo(LocaleValue::TimeFormat) : picture;
    return FormatTimeOfDay(time, (flags & kTimeNoSeconds) != 0 ? WithoutSeconds(own) : own);
}
