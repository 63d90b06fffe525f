// Random patterns through the recurrence blob and back, in the layout that is written and in the
// older one.
#include "records/recurrence_blob.h"

#include <gtest/gtest.h>
#include <random>

namespace
{
class CRandomPattern
{
public:
    explicit CRandomPattern(unsigned seed) : m_random(seed) {}

    CRecurrencePattern Make()
    {
        constexpr int kTypes[] = {PatternType::Daily,      PatternType::Weekly, PatternType::Monthly,
                                  PatternType::MonthlyNth, PatternType::Yearly, PatternType::YearlyNth};
        CRecurrencePattern p;
        p.Type = kTypes[Pick(0, 5)];
        p.Interval = OneIn(8) ? 999999 : Pick(1, 60);
        const bool ordinal = p.Type == PatternType::MonthlyNth || p.Type == PatternType::YearlyNth;
        if (ordinal || p.Type == PatternType::Weekly)
            p.DayMask = Pick(1, 127);
        if (ordinal)
            p.Instance = Pick(1, 5);
        if (p.Type == PatternType::Monthly || p.Type == PatternType::Yearly)
            p.DayOfMonth = Pick(1, 31);
        p.EndKind = Pick(0, 2);
        p.Occurrences = OneIn(8) ? 65535 : Pick(1, 500);
        p.PatternStart = Pick(-100000, 900000);
        p.PatternEnd = p.PatternStart + Pick(0, 40000);
        p.StartMinute = Pick(0, 1439);
        p.EndMinute = p.StartMinute + (OneIn(5) ? Pick(0, 100000) : Pick(0, 300));
        int day = int(p.PatternStart);
        for (int i = OneIn(10) ? 300 : Pick(0, 6); i > 0; --i)
            p.Exceptions.push_back(Change(day += Pick(1, 40)));
        p.ExceptionCount = int(p.Exceptions.size());
        return p;
    }

private:
    int Pick(int low, int high) { return low + int(m_random() % unsigned(high - low + 1)); }
    bool OneIn(int n) { return Pick(1, n) == 1; }

    QString Text()
    {
        QString text;
        for (int i = OneIn(10) ? 255 : Pick(0, 20); i > 0; --i)
            text += QChar(char16_t(Pick(1, 0xD7FF)));
        return text;
    }

    CRecurrenceException Change(int day)
    {
        CRecurrenceException e;
        e.OriginalDay = day;
        e.Deleted = OneIn(2);
        if (e.Deleted)
            return e;
        const double minutes = (day + 109205.0) * 1440 + Pick(-20000, 20000);
        e.Start = MinutesSince1601ToDate(std::max(minutes, 0.0));
        e.End = MinutesSince1601ToDate(std::max(minutes, 0.0) + Pick(0, 5000));
        if ((e.HasSubject = OneIn(2)))
            e.Subject = Text();
        if ((e.HasLocation = OneIn(2)))
            e.Location = Text();
        if ((e.HasBusyStatus = OneIn(2)))
            e.BusyStatus = Pick(0, 3);
        if ((e.HasAllDay = OneIn(2)))
            e.AllDay = OneIn(2);
        if (OneIn(3))
            SetOccurrenceNote(e, Text());
        return e;
    }

    std::mt19937 m_random;
};

// The layout before version 5 has not the eight bytes in front of the occurrence count.
QByteArray InOlderLayout(QByteArray blob, int type)
{
    const int extraAt = type == PatternType::Daily                                          ? 26
                        : type == PatternType::MonthlyNth || type == PatternType::YearlyNth ? 34
                                                                                            : 30;
    blob[0] = 4;
    return blob.remove(extraAt, 8);
}
} // namespace

TEST(RecurrenceBlobProperty, BothLayoutsDecodeToWhatWasWritten)
{
    for (unsigned seed = 0; seed < 3000; ++seed) {
        SCOPED_TRACE(seed);
        const CRecurrencePattern pattern = CRandomPattern(seed).Make();
        const QByteArray blob = WriteRecurrence(pattern);
        for (const QByteArray& bytes : {blob, InOlderLayout(blob, pattern.Type)}) {
            CRecurrencePattern read;
            ASSERT_EQ(ParseRecurrence(read, BytesOf(bytes)), bytes.size());
            ASSERT_TRUE(read == pattern) << int(bytes[0]);
        }
        // What was read is written as the very same bytes.
        CRecurrencePattern read;
        ParseRecurrence(read, BytesOf(blob));
        ASSERT_EQ(WriteRecurrence(read), blob);
    }
}
