// The offsets of one IANA zone, read from its compiled file or from a POSIX zone text.
// Units: seconds since 1970 UTC; offsets are seconds east of Greenwich.
// Errors: a file or text that is malformed gives nothing; counts are checked against the size.
#pragma once
#include <QByteArray>
#include <optional>
#include <vector>

// One end of the daylight period in a POSIX text.
struct CPosixDate {
    enum class Form { MonthWeekDay, DayOfYear, JulianDay };
    Form form = Form::MonthWeekDay;
    int month = 0;
    int week = 0;    // 1..5, 5 the last
    int weekday = 0; // 0 Sunday
    int day = 0;     // of the other two forms
    int seconds = 2 * 3600; // wall time, may leave the day on either side

    qint64 WallSeconds(int year) const; // since 1970, in the wall time before the transition
};

struct CPosixZone {
    int standardOffset = 0;
    bool hasDaylight = false;
    int daylightOffset = 0;
    CPosixDate toDaylight;
    CPosixDate toStandard;
};

struct CZoneTransition {
    qint64 time = 0;
    int before = 0;
    int after = 0;
    const CPosixDate* rule = nullptr; // when it follows the zone's lasting rule
};

class CZoneRules
{
public:
    static std::optional<CZoneRules> FromFile(const QByteArray& path);
    static std::optional<CZoneRules> FromPosix(const QByteArray& text);

    // Transitions that change the offset, within the calendar year of UTC, in order.
    std::vector<CZoneTransition> TransitionsOf(int year) const;
    int OffsetAt(qint64 time) const;

private:
    bool Parse(const QByteArray& bytes);
    void AppendRuleTransitions(int year, std::vector<CZoneTransition>& transitions) const;

    std::vector<qint64> m_times;
    std::vector<int> m_offsets; // after each time
    int m_firstOffset = 0;
    std::optional<CPosixZone> m_rest; // holds after the last time
};

std::optional<CPosixZone> ParsePosixZone(const QByteArray& text);
