// Reads a VTIMEZONE: its observances become the changes of two centuries, and the record.
#include "interchange/component_reader.h"
#include "interchange/file_moment.h"
#include "interchange/file_zone.h"
#include "interchange/import_limits.h"
#include "interchange/property_line.h"
#include "interchange/recur_rule.h"

#include <algorithm>
#include <optional>

namespace
{
constexpr int kFirstYear = 1900, kEndYear = 2100;
constexpr int kMostOnsets = 500; // of one rule; a clock changes once a year by each

struct CObservance {
    bool Daylight = false;
    std::optional<qint64> Start; // wall time before the change
    std::optional<int> From, To; // offsets
    std::optional<CRecurRule> Rule;
    std::vector<qint64> Dates;
};

struct COnset {
    qint64 Utc = 0, Wall = 0;
    const CObservance* Source = nullptr;
};

// +0100, -0800, +012345; seconds are heeded.
std::optional<int> ParseOffset(std::string_view text)
{
    text = TrimBlanks(text);
    if (text.size() != 5 && text.size() != 7)
        return std::nullopt;
    int sign = 0;
    if (text[0] == '+')
        sign = 1;
    else if (text[0] == '-')
        sign = -1;
    int parts[3] = {0, 0, 0};
    for (size_t i = 1; i < text.size(); ++i) {
        if (sign == 0 || text[i] < '0' || text[i] > '9')
            return std::nullopt;
        parts[(i - 1) / 2] = parts[(i - 1) / 2] * 10 + (text[i] - '0');
    }
    if (parts[0] > 23 || parts[1] > 59 || parts[2] > 59)
        return std::nullopt;
    return sign * (parts[0] * 3600 + parts[1] * 60 + parts[2]);
}

void ReadObservanceLine(const CPropertyLine& line, CObservance& observance)
{
    CFileMoment moment;
    if (EqualsUpper(line.Name, "DTSTART")) {
        if (ParseMoment(line.Value, &moment))
            observance.Start = moment.Wall;
    } else if (EqualsUpper(line.Name, "TZOFFSETFROM")) {
        observance.From = ParseOffset(line.Value);
    } else if (EqualsUpper(line.Name, "TZOFFSETTO")) {
        observance.To = ParseOffset(line.Value);
    } else if (EqualsUpper(line.Name, "RRULE")) {
        CRecurRule rule;
        QString reason, note;
        // A clock that changes more than once a year by one rule is no clock.
        if (ParseRule(line.Value, &rule, &reason, &note) && rule.Frequency == RuleFrequency::Yearly)
            observance.Rule = rule;
    } else if (EqualsUpper(line.Name, "RDATE")) {
        for (size_t from = 0; from < line.Value.size() && observance.Dates.size() < 1000;) {
            const size_t end = std::min(line.Value.find(',', from), line.Value.size());
            if (ParseMoment(line.Value.substr(from, end - from), &moment))
                observance.Dates.push_back(moment.Wall);
            from = end + 1;
        }
    }
}

std::vector<CObservance> ReadObservances(const CComponent& block)
{
    std::vector<CObservance> observances;
    bool inside = false;
    for (const CComponent::Line& at : block.Lines) {
        const std::string_view text = block.LineText(at);
        if (text == "BEGIN:STANDARD" || text == "BEGIN:DAYLIGHT") {
            if (observances.size() >= size_t(ImportLimit::ZoneObservances))
                break;
            inside = true;
            observances.emplace_back().Daylight = text == "BEGIN:DAYLIGHT";
        } else if (text == "END:STANDARD" || text == "END:DAYLIGHT") {
            inside = false;
        } else if (inside) {
            ReadObservanceLine(CPropertyLine(text), observances.back());
        }
    }
    std::erase_if(observances, [](const CObservance& o) { return !o.Start || !o.To; });
    for (CObservance& observance : observances)
        if (!observance.From)
            observance.From = observance.To;
    return observances;
}

void AddOnset(const CObservance& source, qint64 wall, std::vector<COnset>& onsets)
{
    onsets.push_back({wall - *source.From, wall, &source});
}

// All onsets up to the end of the table. One of an ancient rule is taken up at the table's start.
std::vector<COnset> OnsetsOf(const std::vector<CObservance>& observances, qint64* budget)
{
    std::vector<COnset> onsets;
    const int lastDay = DayNumberOf(kEndYear, 1, 1) - 1;
    for (const CObservance& source : observances) {
        AddOnset(source, *source.Start, onsets);
        for (const qint64 wall : source.Dates)
            AddOnset(source, wall, onsets);
        if (!source.Rule)
            continue;
        qint64 start = *source.Start;
        int year = YearOfWall(start);
        if (year < kFirstYear) {
            // The rule's phase stays when whole intervals are passed over.
            const int skip = (kFirstYear - year) / source.Rule->Interval * source.Rule->Interval;
            int y = 0, month = 0, day = 0;
            CivilOfDayNumber(DayOfWall(start), &y, &month, &day);
            start = WallOf(y + skip, month, 1) + SecondOfWall(start);
        }
        CRecurRule rule = *source.Rule;
        if (!rule.HasDayParts()) {
            int y = 0, month = 0, day = 0;
            CivilOfDayNumber(DayOfWall(*source.Start), &y, &month, &day);
            rule.ByMonthDay = {day};
            if (rule.ByMonth.empty())
                rule.ByMonth = {month};
        }
        CRuleWalk walk(rule, start, budget);
        qint64 wall = 0;
        const int most = rule.Count == 0 ? kMostOnsets : std::min(rule.Count, kMostOnsets);
        for (int n = 0; n < most && walk.Next(lastDay, &wall); ++n) {
            const qint64 until = rule.Until ? rule.Until->Wall : 0;
            if (rule.Until && (rule.Until->IsUtc ? wall - *source.From : wall) > until)
                break;
            if (wall > *source.Start)
                AddOnset(source, wall, onsets);
        }
    }
    std::stable_sort(onsets.begin(), onsets.end(),
                     [](const COnset& a, const COnset& b) { return a.Utc < b.Utc; });
    return onsets;
}

// The rule of a record: week 5 is the last.
SystemTime RuleOf(const COnset& onset)
{
    int year = 0, month = 0, day = 0;
    const int number = DayOfWall(onset.Wall);
    CivilOfDayNumber(number, &year, &month, &day);
    const int nextMonth = DayNumberOf(year + month / 12, month % 12 + 1, 1);
    int week = number + 7 >= nextMonth ? 5 : (day - 1) / 7 + 1;
    if (onset.Source->Rule && onset.Source->Rule->ByDay.size() == 1) {
        const int ordinal = onset.Source->Rule->ByDay.front().Ordinal;
        if (ordinal >= 1 && ordinal <= 4)
            week = ordinal;
    }
    const int second = SecondOfWall(onset.Wall);
    SystemTime rule;
    rule.wMonth = quint16(month);
    rule.wDayOfWeek = quint16(DayOfWeekOf(number));
    rule.wDay = quint16(week);
    rule.wHour = quint16(second / 3600);
    rule.wMinute = quint16(second / 60 % 60);
    return rule;
}

int MinutesWest(int offset)
{
    return -int(FloorDiv(offset + 30, 60));
}

TimeZoneInformation RecordOf(const std::vector<COnset>& onsets, int year)
{
    const COnset* up = nullptr;
    const COnset* down = nullptr;
    const COnset* last = nullptr;
    for (const COnset& onset : onsets) {
        const int in = YearOfWall(onset.Wall);
        if (in <= year || !last)
            last = &onset;
        if (in == year && *onset.Source->To > *onset.Source->From)
            up = &onset;
        else if (in == year && *onset.Source->To < *onset.Source->From)
            down = &onset;
    }
    TimeZoneInformation record;
    if (!up || !down) {
        record.Bias = last ? MinutesWest(*last->Source->To) : 0;
        return record;
    }
    record.Bias = MinutesWest(*down->Source->To);
    record.StandardDate = RuleOf(*down);
    record.DaylightDate = RuleOf(*up);
    record.DaylightBias = MinutesWest(*up->Source->To) - record.Bias;
    return record;
}
} // namespace

std::shared_ptr<const CFileZone> MakeBlockZone(const CComponent& block, int currentYear, qint64* budget)
{
    const std::vector<CObservance> observances = ReadObservances(block);
    if (observances.empty())
        return nullptr;
    const std::vector<COnset> onsets = OnsetsOf(observances, budget);
    std::vector<CFileZone::Change> changes;
    int last = *onsets.front().Source->From;
    for (const COnset& onset : onsets) {
        if (*onset.Source->To == last)
            continue;
        last = *onset.Source->To;
        changes.push_back({onset.Utc, last});
    }
    return std::make_shared<CFileZone>(*onsets.front().Source->From, std::move(changes),
                                       RecordOf(onsets, currentYear));
}
