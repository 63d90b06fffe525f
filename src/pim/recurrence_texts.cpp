// The words of recurrences: the editors' list, and the sentence that describes a pattern.
#include "pim/recurrence_presets.h"

#include "platform/locale.h"
#include "util/string_ids.h"
#include "util/string_store.h"

#include <algorithm>

namespace
{
// The locale's long date without weekday and year: from the day to the month, or back.
QString MonthAndDay(const SystemTime& date)
{
    const QString picture = GetLocaleInfo(LocaleValue::LongDate);
    qsizetype from = -1, to = -1;
    bool quoted = false;
    for (qsizetype i = 0, length = 1; i < picture.size(); i += length) {
        for (length = 1; i + length < picture.size() && picture[i + length] == picture[i];)
            ++length;
        if (picture[i] == u'\'')
            quoted = quoted != (length % 2 == 1);
        if (quoted || (picture[i] != u'M' && (picture[i] != u'd' || length > 2)))
            continue;
        from = from < 0 ? i : from;
        to = i + length;
    }
    if (from < 0)
        return GetDateFormat(DateFlag::Picture, date, QStringLiteral("d MMMM"));
    // What belongs to a number stays with it: the point of an ordinal, the word for day.
    if (to < picture.size() && (picture[to] == u'.' || picture[to].category() == QChar::Letter_Other))
        ++to;
    return GetDateFormat(DateFlag::Picture, date, picture.mid(from, to - from));
}

QString JoinDays(const std::array<bool, 7>& days)
{
    QStringList names;
    for (int i = 0; i < 7; ++i) {
        if (days[size_t(i)])
            names += Locale().DayName(i, false);
    }
    if (names.size() < 2)
        return names.join(QString());
    const QString last = names.takeLast();
    return names.join(GetString(StrListSeparator)) + GetString(StrListLastSeparator) + last;
}
} // namespace

QString FormatPreset(int preset, DATE start)
{
    constexpr int kOrdinalPreset = 5, kYearlyPreset = 10;
    constexpr int kTexts[] = {StrOccursOnce,        StrPresetEveryDay,    StrPresetEveryWeek,
                              StrPresetEvery2Weeks, StrPresetEvery3Weeks, StrPreset1stOfMonth,
                              StrPresetMonthDay,    StrPresetMonthDay2,   StrPresetMonthDay3,
                              StrPresetMonthDay6,   StrPresetEveryYear,   StrPresetCustom};
    static_assert(std::size(kTexts) == kPresetCount);
    if (preset < 0 || preset >= kPresetCount)
        return {};
    const SystemTime at = SystemTimeOf(start);
    const int text = kTexts[preset] + (preset == kOrdinalPreset ? std::clamp((at.wDay - 1) / 7, 0, 4) : 0);
    QString filling;
    if (preset == kYearlyPreset)
        filling = MonthAndDay(at);
    else if (preset > kOrdinalPreset)
        filling = QString::number(at.wDay);
    else
        filling = Locale().DayName(DayOfWeekOf(DayNumber(start)), false);
    return FillText(GetString(text), {filling});
}

QStringList GetPresetTexts(DATE start)
{
    QStringList texts;
    for (int preset = 0; preset < kPresetCount; ++preset)
        texts += FormatPreset(preset, start);
    return texts;
}

QString GetOrdinalWord(int ordinal)
{
    return GetString(StrOrdinalFirst + (ordinal >= 0 && ordinal <= 4 ? ordinal : 0));
}

QString GetDayWord(int dayKind)
{
    if (dayKind >= 3 && dayKind <= 9)
        return Locale().DayName(dayKind - 3, false);
    return GetString(StrDayWordDay + (dayKind == 1 || dayKind == 2 ? dayKind : 0));
}

QString FormatRecurrence(const CRecurrencePatternData& data)
{
    using Data = CRecurrencePatternData;
    const QString date = GetDateFormat(DateFlag::Short, SystemTimeOf(data.Start));
    const QString interval = QString::number(data.Interval);
    const QString ordinal = GetOrdinalWord(int(data.Ordinal));
    const auto fill = [](int text, const QStringList& texts) { return FillText(GetString(text), texts); };
    switch (data.PatternType) {
    case Data::kWeekly:
        return data.Interval == 1 ? fill(StrRecurEveryWeek, {JoinDays(data.Days), date})
                                  : fill(StrRecurEveryWeeks, {interval, JoinDays(data.Days), date});
    case Data::kMonthly:
        return data.MonthlyKind != 0
                   ? fill(StrRecurMonthOrdinal,
                          {ordinal, GetDayWord(int(data.MonthlyDayKind)), interval, date})
                   : fill(StrRecurMonthDay, {QString::number(data.MonthDay), interval, date});
    case Data::kYearly: {
        const quint32 month = data.YearlyKind != 0 ? data.YearMonthOrdinal : data.YearMonthDate;
        const QString name = Locale().MonthName(int(std::clamp<quint32>(month, 1, 12)), false, false);
        return data.YearlyKind != 0
                   ? fill(StrRecurYearOrdinal, {ordinal, GetDayWord(int(data.YearlyDayKind)), name, date})
                   : fill(StrRecurYearDay, {name, QString::number(data.YearDay), date});
    }
    default:
        return data.Interval == 0   ? fill(StrRecurEveryWeekday, {date})
               : data.Interval == 1 ? fill(StrRecurEveryDay, {date})
                                    : fill(StrRecurEveryDays, {interval, date});
    }
}
