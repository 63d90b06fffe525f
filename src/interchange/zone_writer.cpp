#include "interchange/zone_writer.h"

#include "interchange/property_line.h"

#include <QTimeZone>
#include <algorithm>
#include <cmath>

namespace
{
constexpr int kFirstYear = 1970, kLastYear = 2037;
constexpr int kRuleYear = 1601; // from which on a zone of two rules goes by them

std::string OffsetText(int seconds)
{
    const int minutes = std::abs(seconds) / 60;
    return QString::asprintf("%c%02d%02d", seconds < 0 ? '-' : '+', minutes / 60, minutes % 60).toStdString();
}

struct CObservance {
    bool Daylight = false;
    int From = 0, To = 0; // seconds east
    std::vector<qint64> Walls;
    std::string Rule;
};

void Write(const CObservance& observance, CTextLines& lines)
{
    const std::string name = observance.Daylight ? "DAYLIGHT" : "STANDARD";
    lines.push_back("BEGIN:" + name);
    lines.push_back("DTSTART:" + MomentText(observance.Walls.front()));
    lines.push_back("TZOFFSETFROM:" + OffsetText(observance.From));
    lines.push_back("TZOFFSETTO:" + OffsetText(observance.To));
    if (!observance.Rule.empty())
        lines.push_back("RRULE:" + observance.Rule);
    std::string dates;
    for (size_t i = 1; i < observance.Walls.size(); ++i)
        dates += (i == 1 ? "RDATE:" : ",") + MomentText(observance.Walls[i]);
    if (!dates.empty())
        lines.push_back(dates);
    lines.push_back("END:" + name);
}

std::string RuleText(const SystemTime& rule)
{
    static const char* const kDays[] = {"SU", "MO", "TU", "WE", "TH", "FR", "SA"};
    return "FREQ=YEARLY;BYMONTH=" + std::to_string(rule.wMonth) +
           ";BYDAY=" + (rule.wDay >= 5 ? std::string("-1") : std::to_string(std::max<int>(rule.wDay, 1))) +
           kDays[rule.wDayOfWeek % 7];
}

// The first change of that year by a rule.
qint64 OnsetOf(const SystemTime& rule, int year)
{
    const int first = DayNumberOf(year, rule.wMonth, 1);
    const int next = DayNumberOf(year + rule.wMonth / 12, rule.wMonth % 12 + 1, 1);
    int day = first + (rule.wDayOfWeek % 7 - DayOfWeekOf(first) + 7) % 7 +
              (std::clamp<int>(rule.wDay, 1, 5) - 1) * 7;
    while (day >= next)
        day -= 7;
    return WallOfDay(day) + rule.wHour * 3600 + rule.wMinute * 60;
}

std::vector<CObservance> RulesOf(const TimeZoneInformation& record, int year)
{
    const int standard = -(record.Bias + record.StandardBias) * 60,
              daylight = -(record.Bias + record.DaylightBias) * 60;
    if (record.StandardDate.wMonth == 0 || record.DaylightDate.wMonth == 0)
        return {{false, -record.Bias * 60, -record.Bias * 60, {WallOf(year, 1, 1)}, {}}};
    return {{true, standard, daylight, {OnsetOf(record.DaylightDate, year)}, RuleText(record.DaylightDate)},
            {false, daylight, standard, {OnsetOf(record.StandardDate, year)}, RuleText(record.StandardDate)}};
}

CTextLines BlockOf(const std::string& name, const std::vector<CObservance>& observances)
{
    CTextLines lines{"BEGIN:VTIMEZONE", "TZID:" + name};
    for (const CObservance& observance : observances)
        Write(observance, lines);
    lines.push_back("END:VTIMEZONE");
    return lines;
}

// The changes since 1970, by what they change; the last two go on by their rules.
std::vector<CObservance> HistoryOf(const QByteArray& id, int year)
{
    const QTimeZone zone(id);
    TimeZoneInformation now, later;
    const bool goesOn = ZoneRecordOf(id, year, &now) && ZoneRecordOf(id, year + 1, &later) && now == later;
    const qint64 begin = WallOf(kFirstYear, 1, 1);
    const auto at = [](qint64 seconds) { return QDateTime::fromSecsSinceEpoch(seconds, Qt::UTC); };
    int offset = zone.offsetFromUtc(at(begin));
    std::vector<CObservance> all{{false, offset, offset, {begin}, {}}};
    const qint64 end = WallOf(goesOn ? year : kLastYear + 1, 1, 1);
    for (const QTimeZone::OffsetData& change : zone.transitions(at(begin + 1), at(end))) {
        const int to = change.offsetFromUtc;
        if (to == offset || change.atUtc.toSecsSinceEpoch() - offset >= end)
            continue;
        const qint64 wall = change.atUtc.toSecsSinceEpoch() + offset;
        const bool daylight = change.daylightTimeOffset > 0;
        auto same = std::find_if(all.begin() + 1, all.end(), [&](const CObservance& o) {
            return o.From == offset && o.To == to && o.Daylight == daylight;
        });
        if (same == all.end())
            same = all.insert(all.end(), {daylight, offset, to, {}, {}});
        same->Walls.push_back(wall);
        offset = to;
    }
    if (goesOn && now.StandardDate.wMonth != 0)
        for (const CObservance& rule : RulesOf(now, year))
            all.push_back(rule);
    return all;
}
} // namespace

qint64 WallOfDate(DATE date)
{
    return qint64(std::llround(SignedOf(date) * double(kDaySeconds))) - kUnixDay * kDaySeconds;
}

std::string CTimeForm::Value(qint64 wall) const
{
    return Form == Date ? DateText(wall) : MomentText(wall) + (Form == Utc ? "Z" : "");
}

std::string CTimeForm::Line(const std::string& name, qint64 wall) const
{
    return name + Parameters + ':' + Value(wall);
}

CTimeForm CZoneWriter::FormOf(const std::string& kept, bool allDay,
                              const TimeZoneInformation* record)
{
    if (allDay)
        return {CTimeForm::Date, ";VALUE=DATE", nullptr};
    const bool isUtcRecord = record && *record == TimeZoneInformation();
    if (kept.empty()) {
        if (!record || isUtcRecord)
            return {CTimeForm::Utc, {}, UtcZone()};
        return OfRecord(*record);
    }
    const CPropertyLine line(kept);
    const std::string parameters =
        line.Parameters.empty() ? std::string() : ';' + std::string(line.Parameters);
    const std::string name(TrimBlanks(line.Parameter("TZID")));
    if (name.empty())
        return !record || *record == m_device ? CTimeForm{CTimeForm::Floating, parameters, nullptr}
                                              : OfRecord(*record);
    const QByteArray id = m_zones.SystemName(name);
    if (!id.isEmpty()) {
        TimeZoneInformation known;
        const bool isOthers =
            record && *record == m_device && ZoneRecordOf(id, m_year, &known) && !(known == *record);
        if (isOthers) // it was made anew here since
            return OfRecord(*record);
        Use(name, nullptr);
        return {CTimeForm::Named, parameters, m_zones.Find(name)};
    }
    // Nobody knows the zone any more but the series itself.
    return record ? Named(parameters, name, *record) : CTimeForm{CTimeForm::Utc, {}, UtcZone()};
}

CTimeForm CZoneWriter::OfRecord(const TimeZoneInformation& record)
{
    const QByteArray own = QTimeZone::systemTimeZoneId();
    TimeZoneInformation known;
    if (!own.isEmpty() && ZoneRecordOf(own, m_year, &known) && known == record) {
        const std::string name = own.toStdString();
        if (const auto zone = m_zones.Find(name)) {
            Use(name, nullptr);
            return {CTimeForm::Named, ";TZID=" + name, zone};
        }
    }
    const int east = -record.Bias;
    const std::string name =
        QString::asprintf("Zone %c%02d%02d", east < 0 ? '-' : '+', std::abs(east) / 60, std::abs(east) % 60)
            .toStdString();
    return Named(";TZID=\"" + name + '"', name, record);
}

// A zone by its record; its name gets a number when two zones have the same one.
CTimeForm CZoneWriter::Named(const std::string& parameters, const std::string& name,
                             const TimeZoneInformation& record)
{
    std::string own = name;
    for (int n = 2; m_made.contains(own) && !(m_made[own] == record); ++n)
        own = name + ' ' + std::to_string(n);
    m_made[own] = record;
    if (!m_used.contains(own)) {
        const CTextLines block = BlockOf(own, RulesOf(record, kRuleYear));
        m_zones.AddBlock(ComponentOf("VTIMEZONE", {block.begin() + 1, block.end() - 1}));
    }
    Use(own, &record);
    CTimeForm form{CTimeForm::Named, own == name ? parameters : ";TZID=\"" + own + '"', m_zones.Find(own)};
    if (!form.Zone)
        form = {CTimeForm::Floating, {}, nullptr};
    return form;
}

void CZoneWriter::Use(const std::string& name, const TimeZoneInformation* record)
{
    if (!m_used.insert(name).second)
        return;
    const CTextLines block =
        BlockOf(name, record ? RulesOf(*record, kRuleYear) : HistoryOf(m_zones.SystemName(name), m_year));
    m_blocks.insert(m_blocks.end(), block.begin(), block.end());
}

void CZoneWriter::TakeBlocks(CTextLines& lines)
{
    lines.insert(lines.end(), m_blocks.begin(), m_blocks.end());
    m_blocks.clear();
}

DATE CZoneWriter::ToDevice(const CTimeForm& form, qint64 wall) const
{
    return DateOfWall(form.Zone ? WallByRecord(form.Zone->ToUtc(wall), m_device) : wall);
}

qint64 CZoneWriter::FromDevice(const CTimeForm& form, DATE date) const
{
    return form.Zone ? form.Zone->ToWall(WallOfDate(LocalToUtc(date, m_device))) : WallOfDate(date);
}
