#include "platform/locale.h"

#include <gtest/gtest.h>

void PrintTo(const QString& text, std::ostream* out) { *out << '"' << text.toStdString() << '"'; }

namespace
{
SystemTime At(int year, int month, int day, int hour = 0, int minute = 0, int second = 0)
{
    SystemTime time;
    time.wYear = quint16(year);
    time.wMonth = quint16(month);
    time.wDay = quint16(day);
    time.wHour = quint16(hour);
    time.wMinute = quint16(minute);
    time.wSecond = quint16(second);
    return time;
}

const SystemTime kMay = At(2024, 5, 3, 9, 5, 7);    // a Friday
const SystemTime kNight = At(2005, 12, 25, 0, 30);  // a Sunday

class CLocaleInForce
{
public:
    explicit CLocaleInForce(const char* name) : m_locale(MakeLocale(QString::fromLatin1(name)))
    {
        SetLocale(m_locale.get());
    }
    ~CLocaleInForce() { SetLocale(nullptr); }

private:
    std::unique_ptr<ILocale> m_locale;
};

struct CPictureCase {
    const char* locale;
    SystemTime time;
    const char* picture;
    const char* text;
};

const CPictureCase kDatePictures[] = {
    {"en_US", kMay, "d dd ddd dddd", "3 03 Fri Friday"},
    {"en_US", kMay, "M MM MMM MMMM", "5 05 May May"},
    {"en_US", kMay, "y yy yyyy gg", "24 24 2024 A.D."},
    {"en_US", kNight, "y yy yyyy", "5 05 2005"},
    {"en_US", kMay, "dddd',' MMM dd yyyy", "Friday, May 03 2024"},
    {"en_US", kMay, "'d' ''d'' 'o''clock'", "d '3' o'clock"},
    {"en_US", kMay, "d 'open", "3 open"},
    {"en_US", kMay, "05/03 - dd/MM/yy", "05/03 - 03/05/24"}, // a date inside a picture stays
    {"en_US", kMay, "hh:mm", "hh:mm"},
    {"en_US", kMay, "", "5/3/24"},
    {"de_DE", kMay, "ddd',' dd MMMM", "Fr, 03 Mai"},
    {"de_DE", At(2024, 3, 9), "d. MMMM yyyy", "9. März 2024"},
    {"de_DE", kMay, "", "03.05.24"},
    {"ru_RU", kMay, "d MMMM yyyy", "3 мая 2024"},
    {"ru_RU", kMay, "MMMM d", "мая 3"},
    {"ru_RU", kMay, "MMMM yyyy", "май 2024"},
    {"ru_RU", kMay, "dddd',' MMMM", "пятница, май"}, // a weekday is no day number
    {"ru_RU", kMay, "'d' MMMM", "d май"},
    {"pl_PL", kMay, "d MMMM", "3 maja"},
    {"pl_PL", kMay, "MMMM", "maj"},
    {"ja_JP", kMay, "yyyy'年'M'月'd'日' dddd", "2024年5月3日 金曜日"},
    {"ja_JP", kMay, "", "2024/05/03"},
    {"en_US", At(2024, 2, 30), "d", ""},
    {"en_US", At(2024, 13, 1), "d", ""},
    {"en_US", SystemTime(), "d", ""},
};

const CPictureCase kTimePictures[] = {
    {"en_US", kMay, "h hh H HH m mm s ss", "9 09 9 09 5 05 7 07"},
    {"en_US", kMay, "hh:mmt", "09:05A"},
    {"en_US", kNight, "h:mm tt", "12:30 AM"},
    {"en_US", At(2024, 1, 1, 12), "h:mm tt", "12:00 PM"},
    {"en_US", At(2024, 1, 1, 23, 59), "h t", "11 P"},
    {"en_US", kMay, "'at' HH 'h'", "at 09 h"},
    {"en_US", kMay, "dd.MM", "dd.MM"},
    {"en_US", kMay, "", "9:05:07 AM"},
    {"de_DE", kMay, "", "09:05:07"},
    {"ru_RU", kMay, "", "09:05:07"},
    {"ja_JP", kMay, "", "9:05:07"},
    {"fi_FI", kMay, "", "9.05.07"},
    {"ja_JP", kMay, "tt h:mm", "午前 9:05"},
    {"en_US", At(2024, 1, 1, 24), "h", ""},
};
} // namespace

TEST(Pictures, Dates)
{
    for (const CPictureCase& c : kDatePictures) {
        SCOPED_TRACE(testing::Message() << c.locale << ' ' << c.picture);
        const CLocaleInForce locale(c.locale);
        const QString picture = QString::fromUtf8(c.picture);
        const DateFlag flag = picture.isEmpty() ? DateFlag::Short : DateFlag::Picture;
        EXPECT_EQ(GetDateFormat(flag, c.time, picture), QString::fromUtf8(c.text));
    }
}

TEST(Pictures, Times)
{
    for (const CPictureCase& c : kTimePictures) {
        SCOPED_TRACE(testing::Message() << c.locale << ' ' << c.picture);
        const CLocaleInForce locale(c.locale);
        EXPECT_EQ(GetTimeFormat(0, c.time, QString::fromUtf8(c.picture)), QString::fromUtf8(c.text));
    }
}

TEST(Pictures, SecondsAreDroppedOnRequest)
{
    const struct {
        const char* locale;
        const char* picture;
        const char* text;
    } cases[] = {
        {"en_US", "", "9:05 AM"},      {"de_DE", "", "09:05"},           {"fi_FI", "", "9.05"},
        {"en_US", "hh:mmt", "09:05A"}, {"en_US", "H:mm:ss 's'", "9:05 s"}, {"en_US", "h:m:s tt", "9:5 AM"},
    };
    for (const auto& c : cases) {
        const CLocaleInForce locale(c.locale);
        EXPECT_EQ(GetTimeFormat(kTimeNoSeconds, kMay, QString::fromUtf8(c.picture)), QString::fromUtf8(c.text))
            << c.locale << ' ' << c.picture;
    }
}

TEST(Pictures, LongDates)
{
    const std::pair<const char*, const char*> cases[] = {
        {"en_US", "Friday, May 3, 2024"},
        {"de_DE", "Freitag, 3. Mai 2024"},
        {"ru_RU", "пятница, 3 мая 2024 г."},
        {"ja_JP", "2024年5月3日金曜日"},
    };
    for (const auto& [name, text] : cases) {
        const CLocaleInForce locale(name);
        EXPECT_EQ(GetDateFormat(DateFlag::Long, kMay), QString::fromUtf8(text)) << name;
    }
}

TEST(LocaleValues, AreThoseOfTheLand)
{
    const struct {
        const char* locale;
        const char* dateSeparator;
        const char* timeSeparator;
        const char* order;
        const char* timeMode;
        const char* firstDay;
        const char* firstWeek;
    } cases[] = {
        {"en_US", "/", ":", "0", "0", "6", "0"},       {"en_GB", "/", ":", "1", "1", "0", "2"},
        {"de_DE", ".", ":", "1", "1", "0", "2"},       {"de_DE.UTF-8@euro", ".", ":", "1", "1", "0", "2"},
        {"ru_RU", ".", ":", "1", "1", "0", "2"},       {"ja_JP", "/", ":", "2", "1", "6", "0"},
        {"sv_SE", "-", ":", "2", "1", "0", "2"},       {"fi_FI", ".", ".", "1", "1", "0", "2"},
        {"C", "/", ":", "0", "0", "6", "0"},           {"POSIX", "/", ":", "0", "0", "6", "0"},
        {"C.UTF-8", "/", ":", "0", "0", "6", "0"},     {"", "/", ":", "0", "0", "6", "0"},
        {"no such one", "/", ":", "0", "0", "6", "0"}, {"ar_EG", "/", ":", "1", "0", "5", "0"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.locale);
        const CLocaleInForce locale(c.locale);
        EXPECT_EQ(GetLocaleInfo(LocaleValue::DateSeparator), QString::fromLatin1(c.dateSeparator));
        EXPECT_EQ(GetLocaleInfo(LocaleValue::TimeSeparator), QString::fromLatin1(c.timeSeparator));
        EXPECT_EQ(GetLocaleInfo(LocaleValue::DateOrder), QString::fromLatin1(c.order));
        EXPECT_EQ(GetLocaleInfo(LocaleValue::TimeMode), QString::fromLatin1(c.timeMode));
        EXPECT_EQ(GetLocaleInfo(LocaleValue::FirstDayOfWeek), QString::fromLatin1(c.firstDay));
        EXPECT_EQ(GetLocaleInfo(LocaleValue::FirstWeekOfYear), QString::fromLatin1(c.firstWeek));
    }
}

TEST(LocaleValues, ComparingIgnoresCaseAndFollowsTheLanguage)
{
    const CLocaleInForce locale("de_DE");
    EXPECT_EQ(CompareText(QStringLiteral("Ärger"), QStringLiteral("ÄRGER")), 0);
    EXPECT_LT(CompareText(QStringLiteral("Ärger"), QStringLiteral("Bahn")), 0);
    EXPECT_LT(CompareText(QStringLiteral("apfel"), QStringLiteral("Birne")), 0);
    EXPECT_GT(CompareText(QStringLiteral("zebra"), QStringLiteral("Birne")), 0);
}
