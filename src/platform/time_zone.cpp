#include "platform/time_zone.h"

#include "platform/clock.h"
#include "platform/zone_rules.h"

#include <QHash>
#include <cmath>
#include <ctime>
#include <sys/stat.h>
#include <unistd.h>

namespace
{
constexpr qint64 kTicksPerMinute = 600000000;
constexpr qint64 kUnixEpoch = 116444736000000000;
constexpr int kUnixDay = 25569;
const char kZoneFolder[] = "/usr/share/zoneinfo/";
const char kLocalZone[] = "/etc/localtime";

// ---- transitions -> record

int MinutesWest(int offset) { return -int(std::lround(offset / 60.0)); }

// The date rule of a transition, in the wall time before it.
SystemTime RuleOf(const CZoneTransition& transition)
{
    const qint64 wall = transition.time + transition.before;
    const qint64 days = wall >= 0 ? wall / 86400 : -((-wall + 86399) / 86400);
    SystemTime rule;
    VariantTimeToSystemTime(double(days + kUnixDay), &rule);
    const int seconds = int(wall - days * 86400);
    const int month = rule.wMonth;
    const int nextMonth = DayNumberOf(rule.wYear + month / 12, month % 12 + 1, 1);
    const bool last = int(days) + kUnixDay + 7 >= nextMonth;
    int week = last ? 5 : (rule.wDay - 1) / 7 + 1;
    // The zone's own rule knows whether the last or, say, the fourth week is meant.
    const CPosixDate* own = transition.rule;
    if (own && own->form == CPosixDate::Form::MonthWeekDay && own->seconds >= 0 && own->seconds < 86400 &&
        own->month == month && own->weekday == rule.wDayOfWeek)
        week = own->week;
    rule.wYear = 0;
    rule.wDay = quint16(week);
    rule.wHour = quint16(seconds / 3600);
    rule.wMinute = quint16(seconds / 60 % 60);
    return rule;
}

// The first step down and the first step up of the year; without both there is no rule.
TimeZoneInformation RecordOf(const CZoneRules& rules, int year, qint64 moment)
{
    TimeZoneInformation record;
    const CZoneTransition* down = nullptr;
    const CZoneTransition* up = nullptr;
    const std::vector<CZoneTransition> transitions = rules.TransitionsOf(year);
    for (const CZoneTransition& transition : transitions) {
        const CZoneTransition*& place = transition.after > transition.before ? up : down;
        if (!place)
            place = &transition;
    }
    if (!down || !up) {
        record.Bias = MinutesWest(rules.OffsetAt(moment));
        return record;
    }
    record.Bias = MinutesWest(down->after);
    record.DaylightBias = MinutesWest(up->after) - record.Bias;
    record.StandardDate = RuleOf(*down);
    record.DaylightDate = RuleOf(*up);
    return record;
}

// ---- record -> the period that holds at a moment

FileTime TransitionOf(const SystemTime& rule, int year, int bias)
{
    const int month = std::min<int>(rule.wMonth, 12);
    const int first = DayNumberOf(year, month, 1);
    const int next = month == 12 ? DayNumberOf(year + 1, 1, 1) : DayNumberOf(year, month + 1, 1);
    const int firstWeekday = ((first + 6) % 7 + 7) % 7;
    int day = first + (rule.wDayOfWeek % 7 - firstWeekday + 7) % 7 + (std::clamp<int>(rule.wDay, 1, 5) - 1) * 7;
    if (day >= next)
        day -= 7;
    const qint64 minutes = qint64(day - kUnixDay) * 1440 + rule.wHour * 60 + rule.wMinute + bias;
    return kUnixEpoch + minutes * kTicksPerMinute;
}

// The period, and the range of moments in which it stays so.
struct CPeriod {
    quint32 period = kTimeZoneUnknown;
    FileTime from = 0;
    FileTime until = 0; // excluded
};

CPeriod PeriodAt(const TimeZoneInformation& zone, FileTime utc)
{
    SystemTime local;
    if (!FileTimeToSystemTime(utc - zone.Bias * kTicksPerMinute, &local))
        return CPeriod{};
    const FileTime newYear =
        kUnixEpoch + (qint64(DayNumberOf(local.wYear, 1, 1) - kUnixDay) * 1440 + zone.Bias) * kTicksPerMinute;
    const FileTime yearEnd =
        kUnixEpoch + (qint64(DayNumberOf(local.wYear + 1, 1, 1) - kUnixDay) * 1440 + zone.Bias) * kTicksPerMinute;
    if (zone.StandardDate.wMonth == 0 || zone.DaylightDate.wMonth == 0)
        return {kTimeZoneUnknown, newYear, yearEnd};
    const FileTime toStandard = TransitionOf(zone.StandardDate, local.wYear, zone.Bias + zone.DaylightBias);
    const FileTime toDaylight = TransitionOf(zone.DaylightDate, local.wYear, zone.Bias + zone.StandardBias);
    const bool southern = toStandard < toDaylight;
    const FileTime first = southern ? toStandard : toDaylight;
    const FileTime second = southern ? toDaylight : toStandard;
    const bool between = utc >= first && utc < second;
    const quint32 period = between == southern ? kTimeZoneStandard : kTimeZoneDaylight;
    if (utc < first)
        return {period, newYear, first};
    return {period, between ? first : second, between ? second : yearEnd};
}

// ---- the system's zone

bool IsZoneName(const QByteArray& name)
{
    if (name.isEmpty() || name.size() > 64 || name.startsWith('/') || name.contains(".."))
        return false;
    for (const char c : name) {
        if (!((c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '/' || c == '_' ||
              c == '-' || c == '+'))
            return false;
    }
    return true;
}

std::optional<CZoneRules> NamedRules(const QByteArray& name)
{
    if (!IsZoneName(name))
        return std::nullopt;
    std::optional<CZoneRules> rules = CZoneRules::FromFile(kZoneFolder + name);
    if (!rules && (name == "UTC" || name == "Etc/UTC" || name == "GMT"))
        rules = CZoneRules::FromPosix("UTC0");
    return rules;
}

std::optional<CZoneRules> SystemRules(const QByteArray& variable)
{
    if (variable.isNull())
        return CZoneRules::FromFile(kLocalZone);
    const QByteArray name = variable.startsWith(':') ? variable.mid(1) : variable;
    if (name.startsWith('/'))
        return CZoneRules::FromFile(name);
    std::optional<CZoneRules> rules = NamedRules(name);
    return rules ? rules : CZoneRules::FromPosix(name);
}

// Keeps the record and looks at what it came from again: the variable each time, the file at
// most twice a second, since the zone is asked for every converted time.
class CSystemTimeZone : public ITimeZone
{
public:
    quint32 GetTimeZoneInformation(TimeZoneInformation* zone) const override
    {
        const FileTime now = Clock().GetUtcTime();
        const bool reloaded = Refresh(now);
        if (reloaded || now < m_period.from || now >= m_period.until)
            m_period = PeriodAt(m_record, now);
        *zone = m_record;
        return m_period.period;
    }

private:
    bool Refresh(FileTime now) const
    {
        const char* variable = getenv("TZ");
        const bool sameVariable = m_loaded && (variable ? m_variable == variable : m_variable.isNull());
        const bool sameYear = now >= m_yearFrom && now < m_yearUntil;
        if (sameVariable && sameYear && (variable || !LocalZoneChanged()))
            return false;
        if (!sameVariable || !m_rules || (!variable && sameYear)) {
            m_variable = variable ? QByteArray(variable, qstrlen(variable)) : QByteArray();
            if (variable && m_variable.isNull())
                m_variable = QByteArray("");
            m_rules = SystemRules(m_variable);
            if (!m_rules)
                m_rules = CZoneRules::FromPosix("UTC0");
        }
        m_loaded = true;
        SetYear(now);
        return true;
    }

    void SetYear(FileTime now) const
    {
        const qint64 moment = (now - kUnixEpoch) / 10000000;
        const int offset = m_rules->OffsetAt(moment);
        SystemTime local;
        if (!FileTimeToSystemTime(now + offset * qint64(10000000), &local))
            local.wYear = 1970;
        m_record = RecordOf(*m_rules, local.wYear, moment);
        const qint64 shift = offset * qint64(10000000);
        const auto yearStart = [shift](int year) {
            return kUnixEpoch + qint64(DayNumberOf(year, 1, 1) - kUnixDay) * 86400 * 10000000 - shift;
        };
        m_yearFrom = yearStart(local.wYear);
        m_yearUntil = yearStart(local.wYear + 1);
        if (m_record.StandardDate.wMonth != 0)
            return;
        // A lone step has no rule; the record holds only up to it or from it on.
        for (const CZoneTransition& transition : m_rules->TransitionsOf(local.wYear)) {
            const FileTime step = kUnixEpoch + transition.time * 10000000;
            FileTime& edge = step <= now ? m_yearFrom : m_yearUntil;
            edge = step <= now ? std::max(edge, step) : std::min(edge, step);
        }
    }

    bool LocalZoneChanged() const
    {
        timespec time{};
        clock_gettime(CLOCK_MONOTONIC_COARSE, &time);
        const qint64 milliseconds = qint64(time.tv_sec) * 1000 + time.tv_nsec / 1000000;
        if (m_lookedAt && milliseconds - m_lookedAt < 500)
            return false;
        m_lookedAt = milliseconds;
        // The link itself changes when another zone is chosen, the file when it is a copy.
        struct stat link{};
        struct stat file{};
        lstat(kLocalZone, &link);
        stat(kLocalZone, &file);
        const auto same = [](const struct stat& a, const struct stat& b) {
            return a.st_ino == b.st_ino && a.st_dev == b.st_dev && a.st_mtim.tv_sec == b.st_mtim.tv_sec &&
                   a.st_mtim.tv_nsec == b.st_mtim.tv_nsec;
        };
        const bool changed = !same(link, m_link) || !same(file, m_file);
        m_link = link;
        m_file = file;
        return changed;
    }

    mutable bool m_loaded = false;
    mutable QByteArray m_variable;
    mutable std::optional<CZoneRules> m_rules;
    mutable TimeZoneInformation m_record;
    mutable CPeriod m_period;
    mutable FileTime m_yearFrom = 0;
    mutable FileTime m_yearUntil = 0;
    mutable qint64 m_lookedAt = 0;
    mutable struct stat m_link{};
    mutable struct stat m_file{};
};

const ITimeZone* g_zone = nullptr;

qint64 BiasTicksOfNow()
{
    TimeZoneInformation zone;
    const quint32 period = GetTimeZoneInformation(&zone);
    int bias = zone.Bias;
    if (period == kTimeZoneDaylight)
        bias += zone.DaylightBias;
    else if (period == kTimeZoneStandard)
        bias += zone.StandardBias;
    return bias * kTicksPerMinute;
}
} // namespace

const ITimeZone& TimeZone()
{
    static const CSystemTimeZone system;
    return g_zone ? *g_zone : system;
}

void SetTimeZone(const ITimeZone* zone) { g_zone = zone; }

bool ZoneRecordOf(const QByteArray& ianaId, int year, TimeZoneInformation* zone)
{
    static QHash<QByteArray, std::optional<CZoneRules>> zones;
    static QHash<std::pair<QByteArray, int>, TimeZoneInformation> records;
    const auto known = records.constFind({ianaId, year});
    if (known != records.constEnd()) {
        *zone = *known;
        return true;
    }
    if (year < 1 || year > 9998)
        return false;
    auto rules = zones.find(ianaId);
    if (rules == zones.end()) {
        if (zones.size() > 1000) // names come from foreign files
            zones.clear();
        rules = zones.insert(ianaId, NamedRules(ianaId));
    }
    if (!*rules)
        return false;
    const qint64 yearEnd = qint64(DayNumberOf(year + 1, 1, 1) - kUnixDay) * 86400 - 1;
    *zone = RecordOf(**rules, year, yearEnd);
    if (records.size() > 5000)
        records.clear();
    records.insert({ianaId, year}, *zone);
    return true;
}

quint32 CFixedTimeZone::GetTimeZoneInformation(TimeZoneInformation* zone) const
{
    *zone = m_zone;
    return PeriodAt(m_zone, Clock().GetUtcTime()).period;
}

bool FileTimeToLocalFileTime(FileTime utc, FileTime* local)
{
    const FileTime result = utc - BiasTicksOfNow();
    if (utc < 0 || result < 0)
        return false;
    *local = result;
    return true;
}

bool LocalFileTimeToFileTime(FileTime local, FileTime* utc)
{
    const FileTime result = local + BiasTicksOfNow();
    if (local < 0 || result < 0)
        return false;
    *utc = result;
    return true;
}
