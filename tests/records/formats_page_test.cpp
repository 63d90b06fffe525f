// The worked examples of docs/formats.md are what the code reads and writes.
#include "records/attendees_blob.h"
#include "records/property_numbers.h"
#include "records/recurrence_blob.h"

#include "pattern_text.h"

#include <QFile>
#include <QRegularExpression>
#include <gtest/gtest.h>

namespace
{
QString Page()
{
    QFile file(QStringLiteral("docs/formats.md"));
    EXPECT_TRUE(file.open(QIODevice::ReadOnly));
    return QString::fromUtf8(file.readAll());
}

// The bytes of a section's example; each line may begin with its offset, which is tested.
QByteArray ExampleOf(const QString& heading)
{
    static const QRegularExpression line(
        QStringLiteral("^    (?: *(\\d+)  )?((?:[0-9a-f]{2}(?: |$))+)(?:  .*)?$"));
    const QString page = Page();
    const qsizetype begin = page.indexOf(QStringLiteral("\n## ") + heading);
    const qsizetype end = page.indexOf(QStringLiteral("\n## "), begin + 1);
    QByteArray bytes;
    for (const QString& text : page.mid(begin, end - begin).split(u'\n')) {
        const QRegularExpressionMatch match = line.match(text);
        if (!match.hasMatch())
            continue;
        const QString offset = match.captured(1);
        EXPECT_TRUE(offset.isEmpty() || offset.toInt() == bytes.size()) << text.toStdString();
        bytes += QByteArray::fromHex(match.captured(2).toLatin1());
    }
    return bytes;
}
} // namespace

TEST(FormatsPage, RecurrenceExample)
{
    const QByteArray blob = ExampleOf(QStringLiteral("The recurrence blob"));
    CRecurrencePattern pattern;
    EXPECT_EQ(ParseRecurrence(pattern, BytesOf(blob)), 118);
    CRecurrencePattern wanted =
        PatternOf("weekly every 1 days MO from 2026-03-02 count 4 at 19:30 lasting 90 without "
                  "2026-03-09,2026-03-16");
    wanted.PatternEnd = DayOf("2026-03-23");
    CRecurrenceException& gala = wanted.Exceptions.at(1);
    gala.Deleted = false;
    gala.Start = MinutesSince1601ToDate(DateToMinutesSince1601(DayOf("2026-03-17")) + 20 * 60);
    gala.End = MinutesSince1601ToDate(DateToMinutesSince1601(gala.Start) + 90);
    gala.HasSubject = true;
    gala.Subject = QStringLiteral("Gala");
    EXPECT_EQ(WriteRecurrence(wanted).toHex(' '), blob.toHex(' '));
    EXPECT_EQ(WriteRecurrence(pattern), blob);
}

TEST(FormatsPage, ZoneAndAttendees)
{
    const QByteArray zone = ExampleOf(QStringLiteral("The zone blob"));
    CRecurrencePattern pattern;
    ParseRecurrenceZone(pattern, BytesOf(zone));
    EXPECT_EQ(pattern.ZoneBias, -60);
    EXPECT_EQ(pattern.ZoneStandardDate.wMonth, 10);
    EXPECT_EQ(pattern.ZoneDaylightDate.wHour, 2);
    EXPECT_EQ(WriteRecurrenceZone(pattern).toHex(' '), zone.toHex(' '));
    const CAttendee ann = {QStringLiteral("Ann"), QStringLiteral("ann@example.org")};
    EXPECT_EQ(WriteAttendees({ann}), ExampleOf(QStringLiteral("The attendees blob")));
}

TEST(FormatsPage, TellsEveryColumn)
{
    const QString page = Page();
    for (const CDatabaseSchema& database : PimSchema()) {
        EXPECT_TRUE(page.contains(u'`' + database.Name + u'`'));
        for (const CPropertyColumn& column : database.Columns) {
            // Telephone numbers, and what stands behind them, are told as ranges.
            const bool inRange = column.Id >= Prop::PhoneMobile && column.Id <= Prop::ContactSuffix;
            const QString number =
                QStringLiteral("0x") + QString::number(column.Id, 16).toUpper().rightJustified(8, u'0');
            EXPECT_TRUE(inRange || page.contains(number)) << column.Name << ' ' << number.toStdString();
        }
    }
}
