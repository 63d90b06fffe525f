// The dates of an event: start, end, rule and lists, all turned into the event's own zone.
#include "interchange/file_duration.h"
#include "interchange/import_limits.h"
#include "interchange/imported_event.h"
#include "interchange/property_line.h"

#include <algorithm>

namespace
{
constexpr size_t kKeptList = 64u << 10; // longer lists of dates are not kept as text
constexpr int kShownRule = 100;

QString Shown(std::string_view text)
{
    return QString::fromUtf8(text.data(), qsizetype(std::min<size_t>(text.size(), kShownRule)));
}
} // namespace

// Null for a floating time, a date, and a zone that nobody knows.
std::shared_ptr<const CFileZone> CEventReader::ZoneOf(const CPropertyLine& line, const CFileMoment& moment)
{
    if (moment.IsUtc)
        return UtcZone();
    const std::string_view name = moment.IsDate ? std::string_view() : line.Parameter("TZID");
    if (name.empty())
        return nullptr;
    auto zone = m_zones.Find(name);
    if (!zone)
        m_event->UnknownZone = std::string(name.substr(0, kShownRule));
    return zone;
}

// A moment of some zone on the clock of the event; a floating event's clock is the device's.
qint64 CEventReader::WallInEvent(const CFileMoment& moment,
                                 const std::shared_ptr<const CFileZone>& zone) const
{
    if (moment.IsDate || !zone || zone == m_event->Zone)
        return moment.Wall;
    const qint64 utc = zone->ToUtc(moment.Wall);
    return m_event->Zone ? m_event->Zone->ToWall(utc) : WallByRecord(utc, m_device);
}

bool CEventReader::FinishDates()
{
    CFileMoment start;
    if (!m_start) {
        m_report.LeftOut(m_event->Line, QStringLiteral("the event has no start"));
        return false;
    }
    const CPropertyLine line(m_component->LineText(*m_start));
    if (!ParseMoment(line.Value, &start)) {
        m_report.LeftOut(m_start->Number, QStringLiteral("its start is no date: %1").arg(Shown(line.Value)));
        return false;
    }
    if (!IsStorable(start.Wall)) {
        m_report.LeftOut(m_start->Number, QStringLiteral("the calendar holds the years %1 to %2: %3")
                                              .arg(ImportLimit::FirstYear)
                                              .arg(ImportLimit::LastYear)
                                              .arg(Shown(line.Value)));
        return false;
    }
    m_event->Dates.AllDay = start.IsDate;
    m_event->Dates.Start = start.Wall;
    m_event->Zone = ZoneOf(line, start);
    // The zone's name, or that there is none, is nothing that the record holds.
    if (!start.IsDate && !start.IsUtc)
        m_kept.append(line.Name)
            .append(line.Parameters.empty() ? "" : ";")
            .append(line.Parameters)
            .append(":\n");
    FinishEnd(start);
    FinishRule();
    FinishListed();
    return true;
}

void CEventReader::FinishEnd(const CFileMoment& start)
{
    CEventDates& dates = m_event->Dates;
    dates.End = start.Wall + (start.IsDate ? kDaySeconds : 0);
    const CComponent::Line* const at = m_end ? m_end : m_length;
    if (!at)
        return;
    const CPropertyLine line(m_component->LineText(*at));
    CFileMoment end;
    CFileDuration length;
    qint64 wall = dates.Start;
    if (m_end ? !ParseMoment(line.Value, &end) : !ParseDuration(line.Value, &length)) {
        m_report.LeftOut(at->Number, QStringLiteral("its end cannot be read: %1").arg(Shown(line.Value)));
        return;
    }
    m_event->HasEnd = true;
    if (m_end) {
        wall = WallInEvent(end, ZoneOf(line, end));
    } else {
        // Days go by the calendar, hours by the clock.
        wall += length.Days * kDaySeconds;
        wall = m_event->Zone ? m_event->Zone->ToWall(m_event->Zone->ToUtc(wall) + length.Seconds)
                             : wall + length.Seconds;
    }
    if (start.IsDate) // whole days
        wall = WallOfDay(DayOfWall(wall + kDaySeconds - 1));
    if (wall < dates.Start) {
        m_report.LeftOut(at->Number, QStringLiteral("its end lies before its start"));
        return;
    }
    if (!IsStorable(wall)) {
        m_report.LeftOut(at->Number, QStringLiteral("its end lies too far away"));
        return;
    }
    dates.End = std::max(wall, dates.End);
}

void CEventReader::FinishRule()
{
    if (!m_rule)
        return;
    const CPropertyLine line(m_component->LineText(*m_rule));
    CRecurRule rule;
    QString reason, note;
    m_event->Dates.Line = m_rule->Number;
    if (!ParseRule(line.Value, &rule, &reason, &note)) {
        m_report.LeftOut(m_rule->Number,
                         QStringLiteral("the rule is not used, %1: %2").arg(reason, Shown(line.Value)));
        Keep(m_component->LineText(*m_rule));
        return;
    }
    if (!note.isEmpty())
        m_report.LeftOut(m_rule->Number, note);
    if (rule.Until && !rule.Until->IsDate) {
        // A whole day ends on a day; its own clock is the device's.
        rule.Until->Wall = WallInEvent(*rule.Until, rule.Until->IsUtc ? UtcZone() : nullptr);
        rule.Until->IsUtc = false;
    }
    m_event->RuleText = QString::fromUtf8(line.Value.data(), qsizetype(line.Value.size()));
    m_event->Dates.Rule = std::move(rule);
}

void CEventReader::FinishListed()
{
    for (const CComponent::Line* at : m_dateLists) {
        const std::string_view text = m_component->LineText(*at);
        const CPropertyLine line(text);
        const bool added = EqualsUpper(line.Name, "RDATE");
        if (m_event->Dates.Line == 0)
            m_event->Dates.Line = at->Number;
        ReadDateList(line, added);
        if (text.size() > kKeptList)
            continue;
        if (added)
            Keep(text);
        else
            m_event->ExcludedText +=
                QString::fromUtf8(text.data(), qsizetype(text.size())) + QLatin1Char('\n');
    }
}

void CEventReader::ReadDateList(const CPropertyLine& line, bool added)
{
    std::vector<CListedDate>& list = added ? m_event->Dates.Added : m_event->Dates.Excluded;
    std::shared_ptr<const CFileZone> zone;
    bool zoneKnown = false, junk = false;
    for (size_t from = 0; from < line.Value.size();) {
        const size_t end = std::min(line.Value.find(',', from), line.Value.size());
        std::string_view text = TrimBlanks(line.Value.substr(from, end - from));
        from = end + 1;
        if (text.empty())
            continue;
        const size_t slash = std::min(text.find('/'), text.size());
        CFileMoment moment;
        if (!ParseMoment(text.substr(0, slash), &moment)) {
            if (!junk)
                m_report.LeftOut(m_event->Dates.Line,
                                 QStringLiteral("a date of a list: %1").arg(Shown(text)));
            junk = true;
            continue;
        }
        if (!zoneKnown && !moment.IsUtc && !moment.IsDate) {
            zone = ZoneOf(line, moment);
            zoneKnown = true;
        }
        const std::shared_ptr<const CFileZone>& own = moment.IsUtc ? UtcZone() : zone;
        CListedDate date;
        date.IsDate = moment.IsDate;
        // On a whole day a moment means its own date.
        date.Wall = m_event->Dates.AllDay && !moment.IsUtc ? moment.Wall : WallInEvent(moment, own);
        CFileMoment periodEnd;
        CFileDuration length;
        if (slash < text.size() && ParseMoment(text.substr(slash + 1), &periodEnd))
            date.End = WallInEvent(periodEnd, periodEnd.IsUtc ? UtcZone() : zone);
        else if (slash < text.size() && ParseDuration(text.substr(slash + 1), &length))
            date.End = date.Wall + length.Total();
        list.push_back(date);
    }
}
