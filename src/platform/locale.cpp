#include "platform/locale.h"

#include <QCollator>
#include <QLocale>
#include <algorithm>
#include <optional>

namespace
{
// Lands whose first week of the year is the first with four days, as ISO 8601 has it.
constexpr const char* kFourDayLands[] = {
    "AD", "AN", "AT", "AX", "BE", "BG", "CH", "CZ", "DE", "DK", "EE", "ES", "FI", "FJ", "FO", "FR", "GB", "GF", "GG",
    "GI", "GP", "GR", "HU", "IE", "IM", "IS", "IT", "JE", "LI", "LT", "LU", "MC", "MQ", "NL", "NO", "PL", "PT", "RE",
    "RU", "SE", "SJ", "SK", "SM", "VA"};

bool CountsFourDays(const QString& land)
{
    const QByteArray code = land.toLatin1();
    return std::any_of(std::begin(kFourDayLands), std::end(kFourDayLands),
                       [&code](const char* other) { return code == other; });
}

// "sr_RS.UTF-8@latin" -> "sr_Latn_RS"; what stands for no land at all acts as American English.
QLocale QtLocaleOf(const QString& name)
{
    QString plain = name.section(u'@', 0, 0).section(u'.', 0, 0);
    if (name.section(u'@', 1, 1) == QLatin1String("latin"))
        plain.replace(u'_', QStringLiteral("_Latn_"));
    const QLocale locale(plain);
    return locale.language() == QLocale::C ? QLocale(QStringLiteral("en_US")) : locale;
}

QString SystemLocaleName()
{
    for (const char* variable : {"LC_ALL", "LC_TIME", "LANG"}) {
        const QString name = qEnvironmentVariable(variable);
        if (!name.isEmpty())
            return name;
    }
    return QString();
}

bool IsInvisible(QChar c) { return c.category() == QChar::Other_Format; }

// What stands between the first two fields of a picture, without marks of direction.
QString SeparatorOf(const QString& picture, const QString& letters, const QString& missing)
{
    QString separator;
    bool inField = false;
    bool seen = false;
    for (const QChar c : picture) {
        const bool letter = letters.contains(c);
        if (seen && !inField && letter)
            return separator.isEmpty() ? missing : separator;
        if (!letter && inField)
            separator.clear();
        inField = letter;
        seen = seen || letter;
        if (!letter && !IsInvisible(c) && c != u'\'')
            separator += c;
    }
    return missing;
}

// The library's time picture in our letters: its h is of 24 hours when no marker stands beside.
QString TimePictureOf(const QLocale& locale)
{
    const QString source = locale.timeFormat(QLocale::ShortFormat);
    QString plain;
    bool quoted = false;
    bool marker = false;
    for (qsizetype i = 0; i < source.size(); ++i) {
        const QChar c = source[i];
        if (c == u'\'')
            quoted = !quoted;
        if (!quoted && c.toLower() == u'a') {
            plain += QStringLiteral("tt");
            marker = true;
            if (i + 1 < source.size() && source[i + 1].toLower() == u'p')
                ++i;
        } else if (quoted || c != u't') {
            plain += c;
        }
    }
    if (!marker)
        plain.replace(u'h', u'H');
    QString separator = SeparatorOf(plain, QStringLiteral("hHm"), QStringLiteral(":"));
    if (separator.trimmed().size() != 1 || separator.trimmed()[0].isLetter())
        separator = QStringLiteral(":");
    const qsizetype minutes = plain.lastIndexOf(u'm');
    if (minutes >= 0)
        plain.insert(minutes + 1, separator + QStringLiteral("ss"));
    return plain.trimmed();
}

class CQtLocale : public ILocale
{
public:
    explicit CQtLocale(const QString& name) : m_locale(QtLocaleOf(name)) {}

    QString Value(LocaleValue value) const override
    {
        switch (value) {
        case LocaleValue::ShortDate:
            return ShortDate();
        case LocaleValue::LongDate:
            return m_locale.dateFormat(QLocale::LongFormat);
        case LocaleValue::TimeFormat:
            return TimeFormat();
        case LocaleValue::DateSeparator:
            return SeparatorOf(ShortDate(), QStringLiteral("dMy"), QStringLiteral("/"));
        case LocaleValue::TimeSeparator:
            return SeparatorOf(TimeFormat(), QStringLiteral("hHm"), QStringLiteral(":"));
        case LocaleValue::DateOrder:
            return DateOrder();
        case LocaleValue::TimeMode:
            return TimeFormat().contains(u'h') ? QStringLiteral("0") : QStringLiteral("1");
        case LocaleValue::FirstDayOfWeek:
            return QString::number(int(m_locale.firstDayOfWeek()) - 1);
        case LocaleValue::FirstWeekOfYear:
            return CountsFourDays(m_locale.name().section(u'_', -1)) ? QStringLiteral("2") : QStringLiteral("0");
        case LocaleValue::AmText:
            return m_locale.amText();
        case LocaleValue::PmText:
            return m_locale.pmText();
        }
        return QString();
    }

    QString DayName(int dayOfWeek, bool abbreviated) const override
    {
        // The short name alone, without the full stop that some languages put in running text.
        const int day = dayOfWeek == 0 ? 7 : dayOfWeek;
        return abbreviated ? m_locale.standaloneDayName(day, QLocale::ShortFormat) : m_locale.dayName(day);
    }

    QString MonthName(int month, bool abbreviated, bool genitive) const override
    {
        const QLocale::FormatType type = abbreviated ? QLocale::ShortFormat : QLocale::LongFormat;
        return genitive ? m_locale.monthName(month, type) : m_locale.standaloneMonthName(month, type);
    }

    int Compare(const QString& a, const QString& b) const override
    {
        if (!m_collator) {
            m_collator.emplace(m_locale);
            m_collator->setCaseSensitivity(Qt::CaseInsensitive);
        }
        return m_collator->compare(a, b);
    }

private:
    const QString& ShortDate() const
    {
        if (m_shortDate.isEmpty())
            m_shortDate = m_locale.dateFormat(QLocale::ShortFormat);
        return m_shortDate;
    }

    const QString& TimeFormat() const
    {
        if (m_timeFormat.isEmpty())
            m_timeFormat = TimePictureOf(m_locale);
        return m_timeFormat;
    }

    QString DateOrder() const
    {
        for (const QChar c : ShortDate()) {
            if (c == u'M')
                return QStringLiteral("0");
            if (c == u'd')
                return QStringLiteral("1");
            if (c == u'y')
                return QStringLiteral("2");
        }
        return QStringLiteral("0");
    }

    QLocale m_locale;
    mutable QString m_shortDate;
    mutable QString m_timeFormat;
    mutable std::optional<QCollator> m_collator; // made when first needed, it is slow to load
};

const ILocale* g_locale = nullptr;
} // namespace

const ILocale& Locale()
{
    if (g_locale)
        return *g_locale;
    static const CQtLocale system(SystemLocaleName());
    return system;
}

void SetLocale(const ILocale* locale) { g_locale = locale; }

std::unique_ptr<ILocale> MakeLocale(const QString& name) { return std::make_unique<CQtLocale>(name); }
