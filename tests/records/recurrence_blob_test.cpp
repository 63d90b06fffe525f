#include "records/recurrence_blob.h"

#include "pattern_text.h"
#include "records/attendees_blob.h"
#include "records/blob_bytes.h"

#include <gtest/gtest.h>

namespace
{
const char* const kPatterns[] = {
    "daily every 3 from 2024-01-31 until 2024-03-01 at 23:30 lasting 90",
    "weekly every 2 days MO,WE,SU from 2024-01-31 count 5 at 09:15 without 2024-02-12,2024-02-14",
    "monthly every 1 day 31 from 2024-01-31",
    "ordinal every 6 nth 5 days FR from 2024-01-26 without 2024-07-26",
    "yearly every 12 day 29 from 2024-02-29 lasting 1440",
    "yearly-ordinal every 12 nth 4 days TH from 2024-11-28",
};

CRecurrencePattern Read(const QByteArray& blob, int* result = nullptr)
{
    CRecurrencePattern pattern;
    const int used = ParseRecurrence(pattern, BytesOf(blob));
    if (result)
        *result = used;
    return pattern;
}

// A pattern with a deletion and three changes, every flag among them.
CRecurrencePattern Changed()
{
    CRecurrencePattern p = PatternOf("weekly every 1 days MO from 2024-01-01 at 10:00 without "
                                     "2024-01-08,2024-01-15,2024-01-22,2024-01-29");
    for (size_t i = 1; i < 4; ++i) {
        CRecurrenceException& e = p.Exceptions[i];
        e.Deleted = false;
        e.Start = e.OriginalDay + 1 + 0.5;
        e.End = e.Start + 0.25;
    }
    p.ExceptionCount = 4;
    p.Exceptions[1].HasSubject = p.Exceptions[1].HasLocation = true;
    p.Exceptions[1].Subject = QString::fromUtf8("Größe 🎂");
    p.Exceptions[2].HasBusyStatus = p.Exceptions[2].HasAllDay = p.Exceptions[2].AllDay = true;
    p.Exceptions[2].BusyStatus = 3;
    SetOccurrenceNote(p.Exceptions[3], QString::fromUtf8("notes\nof two lines"));
    return p;
}

// The bytes of a foreign writer, by hand: weekly, version `version`, one moved occurrence that has
// every flag and fields that nobody here reads.
QByteArray Foreign(uchar version)
{
    QByteArray b;
    const auto u16 = [&b](int v) { Append16(b, quint16(v)); };
    const auto u32 = [&b](quint32 v) { Append32(b, v); };
    const auto minutes = [](const char* day, int minute) {
        return quint32((DayOf(day) + 109205) * 1440 + minute);
    };
    b.append(char(version)).append("\x30\x04\x30\x0B\x20", 5); // what is not read is not zero
    u16(1);
    b.append("\xAA\xBB\xCC\xDD\xEE\xFF", 6);
    u32(2);
    b.append("\x11\x22\x33\x44", 4);
    u16(0x2A), u16(0x7777); // Monday, Wednesday, Friday
    u16(0x2021), u16(0x6666);
    if (version >= 5)
        b.append("\1\2\3\4\5\6\7\x8", 8);
    u16(10), u16(0x5555), u32(0x01020304);
    u32(2), u32(minutes("2024-01-15", 0)), u32(minutes("2024-01-05", 0));
    u32(0xFFFF0001), u32(minutes("2024-01-06", 0));
    u32(minutes("2024-01-01", 0)), u32(minutes("2024-06-28", 0));
    b.append("\x06\x30\0\0\x09\x30\0\0", 8);
    u32(600), u32(660), u16(1);
    u32(minutes("2024-01-06", 720)), u32(minutes("2024-01-06", 780)), u32(minutes("2024-01-05", 600)),
        u16(0x01FF);
    u16(4), u16(3), AppendUtf16(b, "Sub");
    u32(0xA1A1A1A1), u32(0xA2A2A2A2), u32(0xA3A3A3A3);
    u16(4), u16(2), AppendUtf16(b, "Lo");
    u32(0), u32(0xA4A4A4A4), u32(7);
    u32(5), b.append("INKED", 5);
    b.append("tail", 4);
    return b;
}
} // namespace

TEST(RecurrenceBlob, EveryTypeComesBack)
{
    for (const char* text : kPatterns) {
        CRecurrencePattern pattern = PatternOf(text);
        pattern.ExceptionCount = int(pattern.Exceptions.size());
        const QByteArray blob = WriteRecurrence(pattern);
        int used = 0;
        EXPECT_TRUE(Read(blob, &used) == pattern) << text;
        EXPECT_EQ(used, blob.size()) << text;
    }
    EXPECT_TRUE(Read(WriteRecurrence(Changed())) == Changed());
}

TEST(RecurrenceBlob, BothVersionsGiveEqualFields)
{
    int used = 0;
    const QByteArray blob = Foreign(5);
    const CRecurrencePattern five = Read(blob, &used);
    EXPECT_EQ(used, blob.size() - 4);
    EXPECT_EQ(five.Type, 1);
    EXPECT_EQ(five.Interval, 2);
    EXPECT_EQ(five.DayMask, 0x2A);
    EXPECT_EQ(five.EndKind, 0);
    EXPECT_EQ(five.Occurrences, 10);
    EXPECT_EQ(five.ExceptionCount, 2);
    EXPECT_EQ(five.PatternStart, DayOf("2024-01-01"));
    EXPECT_EQ(five.PatternEnd, DayOf("2024-06-28"));
    EXPECT_EQ(five.StartMinute, 600);
    EXPECT_EQ(five.EndMinute, 660);
    ASSERT_EQ(five.Exceptions.size(), 2u);
    const CRecurrenceException& e = five.Exceptions[0]; // sorted by day
    EXPECT_EQ(e.OriginalDay, DayOf("2024-01-05"));
    EXPECT_FALSE(e.Deleted);
    EXPECT_EQ(e.Start, DayOf("2024-01-06") + 0.5);
    EXPECT_TRUE(e.HasSubject && e.HasLocation && e.HasBusyStatus && e.HasAllDay && e.HasNoteFlag &&
                e.HasNote);
    EXPECT_EQ(e.Subject + e.Location, QString("SubLo"));
    EXPECT_EQ(e.BusyStatus, 0);
    EXPECT_TRUE(e.AllDay);
    EXPECT_TRUE(five.Exceptions[1].Deleted);

    CRecurrencePattern four = Read(Foreign(4));
    EXPECT_NE(four.SkippedHeader, five.SkippedHeader); // the eight bytes that it has not
    four.SkippedHeader = five.SkippedHeader;
    EXPECT_TRUE(four == five);
}

TEST(RecurrenceBlob, ForeignBytesSurviveAWrite)
{
    // But for the list of new days, which is made anew, all of it.
    QByteArray expected = Foreign(5);
    const qsizetype list = 50;
    std::swap_ranges(expected.begin() + list, expected.begin() + list + 4,
                     expected.begin() + list + 4); // sorted
    expected.replace(list + 8, 4, QByteArray("\1\0\0\0", 4));
    qToLittleEndian(quint16(4), expected.data() + expected.indexOf(QByteArray("S\0u\0b\0", 6)) - 4);
    qToLittleEndian(quint16(3), expected.data() + expected.indexOf(QByteArray("L\0o\0", 4)) - 4);
    qToLittleEndian(quint32(1), expected.data() + expected.indexOf(QByteArray("\xA4\xA4\xA4\xA4", 4)) + 4);
    EXPECT_EQ(WriteRecurrence(Read(Foreign(5))).toHex(' '), expected.toHex(' '));
    EXPECT_TRUE(Read(WriteRecurrence(Read(Foreign(4)))) == Read(Foreign(4)));

    // A note of our own takes the place of the foreign one, the other fields stay.
    CRecurrencePattern p = Read(Foreign(5));
    SetOccurrenceNote(p.Exceptions[0], "ours");
    QByteArray blob = WriteRecurrence(p);
    EXPECT_FALSE(blob.contains("INKED"));
    EXPECT_TRUE(blob.contains("\xA4\xA4\xA4\xA4"));
    EXPECT_EQ(Read(blob).Exceptions[0].Note, QString("ours"));
    ClearOccurrenceNote(p.Exceptions[0]);
    EXPECT_FALSE(Read(WriteRecurrence(p)).Exceptions[0].HasNoteFlag);
    // Another type has no room for the kept header: it is left out, not misplaced.
    p.Type = PatternType::Daily;
    EXPECT_EQ(Read(WriteRecurrence(p)).PatternEnd, p.PatternEnd);
}

TEST(RecurrenceBlob, TheNewDaysAreSorted)
{
    CRecurrencePattern p = Changed();
    std::swap(p.Exceptions[1].Start, p.Exceptions[3].Start);
    const QByteArray blob = WriteRecurrence(p);
    quint32 last = 0;
    for (size_t at = 50 + 4 * 4 + 4; at < 50 + 4 * 4 + 4 + 3 * 4; at += 4) {
        quint32 minutes = 0;
        ASSERT_TRUE(Read32(BytesOf(blob), at, &minutes));
        EXPECT_GT(minutes, last);
        EXPECT_EQ(minutes % 1440, 0u); // days
        last = minutes;
    }
}

TEST(RecurrenceBlob, AnEmptyNoteOverridesTheSeries)
{
    CRecurrencePattern p = Changed();
    SetOccurrenceNote(p.Exceptions[3], QString());
    const CRecurrenceException e = Read(WriteRecurrence(p)).Exceptions[3];
    EXPECT_TRUE(e.HasNoteFlag);
    EXPECT_FALSE(e.HasNote);
}

TEST(RecurrenceBlob, LongTextsAreKeptWhole)
{
    CRecurrencePattern p = Changed();
    p.Exceptions[1].Subject = QString(1000, 'x');
    EXPECT_EQ(Read(WriteRecurrence(p)).Exceptions[1].Subject.size(), 1000);
}

TEST(RecurrenceBlob, DisagreeingCountsKeepTheDeletions)
{
    QByteArray blob = WriteRecurrence(Changed());
    int used = 0;
    // The second count stands behind the header of 50 bytes, 4 + 3 days, 6 numbers.
    const qsizetype second = 50 + 4 * 4 + 4 + 3 * 4 + 4 + 4 + 8 + 4 + 4;
    ASSERT_EQ(blob[second], 3);
    blob[second] = 2;
    const CRecurrencePattern p = Read(blob, &used);
    EXPECT_EQ(used, -1);
    ASSERT_EQ(p.Exceptions.size(), 4u);
    for (const CRecurrenceException& e : p.Exceptions)
        EXPECT_TRUE(e.Deleted);
    EXPECT_EQ(p.EndMinute, Changed().EndMinute);
}

TEST(RecurrenceBlob, UnknownTypeReadsNothing)
{
    QByteArray blob = WriteRecurrence(Changed());
    blob[6] = 4;
    int used = 1;
    EXPECT_TRUE(Read(blob, &used) == CRecurrencePattern());
    EXPECT_EQ(used, 0);
}

// Each byte flipped, and the blob cut at each length: whatever comes of it can be expanded and
// written, and what was written reads the same. Copies of the exact length let the sanitizers see
// a read past the end.
TEST(RecurrenceBlob, DamagedBytesDoNoHarm)
{
    const auto survives = [](const QByteArray& damaged) {
        const std::vector<uchar> exact(damaged.begin(), damaged.end());
        CRecurrencePattern p;
        ParseRecurrence(p, exact);
        std::vector<COccurrence> found;
        ExpandPattern(p, DayOf("2024-01-01"), DayOf("2024-01-31"), found);
        EXPECT_TRUE(p.Type == -1 || Read(WriteRecurrence(p)) == p);
        return p;
    };
    for (const QByteArray& whole : {WriteRecurrence(Changed()), Foreign(5), Foreign(4)}) {
        for (qsizetype i = 0; i < whole.size(); ++i)
            for (int value : {0, 0xFF, whole[i] ^ 1, whole[i] ^ 0x80}) {
                QByteArray damaged = whole;
                damaged[i] = char(value);
                survives(damaged);
            }
        CRecurrencePattern last;
        for (qsizetype length = 0; length <= whole.size(); ++length) {
            const CRecurrencePattern p = survives(whole.left(length));
            // What was read so far stands: nothing that a shorter piece told is lost.
            EXPECT_GE(p.Exceptions.size(), last.Exceptions.size());
            EXPECT_TRUE(last.PatternStart == NO_DATE || p.PatternStart == last.PatternStart);
            EXPECT_TRUE(last.Type == -1 || p.Type == last.Type);
            last = p;
        }
        survives(whole + QByteArray(1000, char(0xFF)));
    }
}

TEST(RecurrenceBlob, HugeCountsReadWhatIsThere)
{
    QByteArray blob = WriteRecurrence(Changed());
    qToLittleEndian(quint32(0xFFFFFFFF), blob.data() + 46);
    EXPECT_GE(Read(blob).Exceptions.size(), 4u);
}

TEST(ZoneBlob, ComesBackAndReadsWhatIsThere)
{
    CRecurrencePattern p;
    p.ZoneBias = -330;
    p.ZoneStandardBias = 5;
    p.ZoneDaylightBias = -60;
    p.ZoneStandardDate = {0, 10, 0, 5, 3, 0, 0, 0};
    p.ZoneDaylightDate = {0, 3, 0, 5, 2, 0, 0, 0};
    const QByteArray blob = WriteRecurrenceZone(p);
    EXPECT_EQ(blob.size(), 48);
    EXPECT_EQ(uchar(blob[0]) | uchar(blob[1]) << 8, 0x10000 - 330);
    EXPECT_EQ(blob[32 + 2], 3);
    for (qsizetype length = 0; length <= blob.size(); ++length) {
        const std::vector<uchar> exact(blob.begin(), blob.begin() + length);
        CRecurrencePattern read;
        ParseRecurrenceZone(read, exact);
        EXPECT_EQ(read.ZoneBias, length >= 2 ? -330 : 0);
        EXPECT_EQ(read == p, length >= 32 + 10) << length; // the rest is zero anyway
    }
}

TEST(AttendeesBlob, ComesBackAndStopsAtTheFirstDamage)
{
    const std::vector<CAttendee> list = {
        {"Ada", "ada@example.org"}, {QString::fromUtf8("Zoë 🎂"), ""}, {"", "x"}};
    const QByteArray blob = WriteAttendees(list);
    EXPECT_EQ(ParseAttendees(blob), list);
    EXPECT_TRUE(WriteAttendees({}).isEmpty());
    for (qsizetype length = 0; length < blob.size(); ++length) {
        const std::vector<CAttendee> read = ParseAttendees(QByteArray(blob.constData(), length));
        ASSERT_LT(read.size(), list.size());
        EXPECT_TRUE(std::equal(read.begin(), read.end(), list.begin()));
    }
}
