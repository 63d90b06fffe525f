// The compiled zone file: a header, times of 4 bytes for old readers, then the same with 8 bytes,
// then a POSIX text for all later years. Numbers are big-endian.
#include "platform/zone_rules.h"

#include "platform/system_time.h"

#include <QFile>
#include <QtEndian>
#include <algorithm>

namespace
{
constexpr int kUnixDay = 25569;
constexpr qint64 kMaxZoneFile = 1 << 20;

qint64 YearStart(int year) { return qint64(DayNumberOf(year, 1, 1) - kUnixDay) * 86400; }

int YearOf(qint64 time)
{
    int year = 0;
    int month = 0;
    int day = 0;
    const qint64 days = time >= 0 ? time / 86400 : -((-time + 86399) / 86400);
    CivilOfDayNumber(int(std::clamp<qint64>(days, -1000000, 10000000)) + kUnixDay, &year, &month, &day);
    return year;
}

struct CHeader {
    int version = 0;
    qint64 isUtc = 0, isStandard = 0, leaps = 0, times = 0, types = 0, chars = 0;

    bool Read(const QByteArray& bytes, qint64 at)
    {
        if (at + 44 > bytes.size() || bytes.mid(at, 4) != "TZif")
            return false;
        const char* data = bytes.constData() + at;
        version = data[4];
        qint64* const counts[] = {&isUtc, &isStandard, &leaps, &times, &types, &chars};
        for (int i = 0; i < 6; ++i)
            *counts[i] = qFromBigEndian<quint32>(data + 20 + 4 * i);
        return types >= 1 && times <= kMaxZoneFile && types <= 256 && leaps <= kMaxZoneFile &&
               isUtc <= 256 && isStandard <= 256 && chars <= kMaxZoneFile;
    }
    qint64 Size(int timeSize) const
    {
        return times * (timeSize + 1) + types * 6 + chars + leaps * (timeSize + 4) + isStandard + isUtc;
    }
};
} // namespace

std::optional<CZoneRules> CZoneRules::FromFile(const QByteArray& path)
{
    QFile file(QFile::decodeName(path));
    if (!file.open(QIODevice::ReadOnly | QIODevice::Unbuffered))
        return std::nullopt;
    CZoneRules rules;
    if (!rules.Parse(file.read(kMaxZoneFile)))
        return std::nullopt;
    return rules;
}

std::optional<CZoneRules> CZoneRules::FromPosix(const QByteArray& text)
{
    CZoneRules rules;
    rules.m_rest = ParsePosixZone(text);
    if (!rules.m_rest)
        return std::nullopt;
    rules.m_firstOffset = rules.m_rest->standardOffset;
    return rules;
}

bool CZoneRules::Parse(const QByteArray& bytes)
{
    CHeader header;
    if (!header.Read(bytes, 0))
        return false;
    qint64 at = 44;
    int timeSize = 4;
    if (header.version >= '2') {
        at += header.Size(4);
        if (!header.Read(bytes, at))
            return false;
        at += 44;
        timeSize = 8;
    }
    if (at + header.Size(timeSize) > bytes.size())
        return false;
    const char* times = bytes.constData() + at;
    const char* indexes = times + header.times * timeSize;
    const char* types = indexes + header.times;
    m_firstOffset = qFromBigEndian<qint32>(types);
    for (qint64 i = 0; i < header.times; ++i) {
        const int type = quint8(indexes[i]);
        if (type >= header.types)
            return false;
        m_times.push_back(timeSize == 8 ? qFromBigEndian<qint64>(times + 8 * i)
                                        : qint64(qFromBigEndian<qint32>(times + 4 * i)));
        m_offsets.push_back(qFromBigEndian<qint32>(types + 6 * type));
    }
    if (!std::is_sorted(m_times.begin(), m_times.end()))
        return false;
    at += header.Size(timeSize);
    if (timeSize == 8 && at < bytes.size() && bytes[at] == '\n') {
        const qint64 end = bytes.indexOf('\n', at + 1);
        if (end > at + 1)
            m_rest = ParsePosixZone(bytes.mid(at + 1, end - at - 1));
    }
    return true;
}

void CZoneRules::AppendRuleTransitions(int year, std::vector<CZoneTransition>& transitions) const
{
    if (!m_rest || !m_rest->hasDaylight)
        return;
    const CPosixZone& zone = *m_rest;
    const CZoneTransition both[] = {
        {zone.toDaylight.WallSeconds(year) - zone.standardOffset, zone.standardOffset, zone.daylightOffset,
         &zone.toDaylight},
        {zone.toStandard.WallSeconds(year) - zone.daylightOffset, zone.daylightOffset, zone.standardOffset,
         &zone.toStandard}};
    for (const CZoneTransition& transition : both)
        transitions.push_back(transition);
    if (transitions.size() >= 2 && transitions.back().time < transitions[transitions.size() - 2].time)
        std::swap(transitions.back(), transitions[transitions.size() - 2]);
}

std::vector<CZoneTransition> CZoneRules::TransitionsOf(int year) const
{
    const qint64 start = YearStart(year);
    const qint64 end = YearStart(year + 1);
    std::vector<CZoneTransition> byRule;
    AppendRuleTransitions(year, byRule);

    std::vector<CZoneTransition> transitions;
    const size_t first = size_t(std::lower_bound(m_times.begin(), m_times.end(), start) - m_times.begin());
    for (size_t i = first; i < m_times.size() && m_times[i] < end; ++i) {
        const int before = i == 0 ? m_firstOffset : m_offsets[i - 1];
        if (before == m_offsets[i])
            continue;
        CZoneTransition transition{m_times[i], before, m_offsets[i], nullptr};
        for (const CZoneTransition& rule : byRule) {
            if (rule.time == transition.time && rule.after == transition.after)
                transition.rule = rule.rule;
        }
        transitions.push_back(transition);
    }
    const qint64 listed = m_times.empty() ? start : m_times.back();
    for (const CZoneTransition& rule : byRule) {
        if (rule.before != rule.after && rule.time >= start && rule.time < end &&
            (m_times.empty() || rule.time > listed))
            transitions.push_back(rule);
    }
    return transitions;
}

int CZoneRules::OffsetAt(qint64 time) const
{
    const size_t next = size_t(std::upper_bound(m_times.begin(), m_times.end(), time) - m_times.begin());
    if (next < m_times.size() || !m_rest)
        return next == 0 ? m_firstOffset : m_offsets[next - 1];
    // Past the listed times: the last rule transition of this or the year before.
    int offset = m_rest->standardOffset;
    std::vector<CZoneTransition> rules;
    AppendRuleTransitions(YearOf(time) - 1, rules);
    AppendRuleTransitions(YearOf(time), rules);
    for (const CZoneTransition& rule : rules) {
        if (rule.time <= time)
            offset = rule.after;
    }
    return offset;
}
