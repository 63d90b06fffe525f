// Loading, expanding and importing, beside libical on the same rules in the same run.
// The big volume is named by TESSERA_BENCH_VOLUME, the calendar it came from by
// TESSERA_BENCH_CALENDAR; bench/run.sh makes both. Zone and clock are fixed.
#include "pim/pim_store.h"
#include "platform/clock.h"
#include "records/occurrences.h"
#include "records/property_numbers.h"
#include "settings/settings.h"

#include <benchmark/benchmark.h>
#include <libical/ical.h>

#include <cstdlib>
#include <fstream>
#include <sstream>

namespace
{
const int kFirst = DayNumberOf(2026, 3, 1);
const int kLast = DayNumberOf(2026, 3, 31);

constexpr int kMonth = 2026 * 12 + 3;
int MonthOf(const icaltimetype& at) { return at.year * 12 + at.month; }

std::string ReadFile(const char* name)
{
    std::ifstream in(name ? name : "");
    std::stringstream text;
    text << in.rdbuf();
    return text.str();
}

void LoadMarch(benchmark::State& state)
{
    std::shared_ptr<CPropertyVolume> volume;
    const char* path = std::getenv("TESSERA_BENCH_VOLUME");
    if (!path || !CPropertyVolume::Open(QString::fromUtf8(path), PimSchema(), CPropertyVolume::Mode::MustExist, volume)) {
        state.SkipWithError("TESSERA_BENCH_VOLUME names no volume");
        return;
    }
    CPimStore store;
    store.Initialize(volume);
    int items = 0;
    for (auto _ : state) {
        store.Clear();
        store.LoadRange(kFirst, kFirst, kLast);
        items = 0;
        for (int day = kFirst; day <= kLast; ++day)
            items += int(store.FindDay(day)->Appointments.size());
    }
    state.counters["items"] = items;
}
BENCHMARK(LoadMarch)->Unit(benchmark::kMillisecond);

// What libical's iterator needs for the same month, over every rule of the file.
void IteratorMarch(benchmark::State& state)
{
    const std::string text = ReadFile(std::getenv("TESSERA_BENCH_CALENDAR"));
    icalcomponent* calendar = text.empty() ? nullptr : icalparser_parse_string(text.c_str());
    if (!calendar) {
        state.SkipWithError("TESSERA_BENCH_CALENDAR names no calendar");
        return;
    }
    int found = 0;
    for (auto _ : state) {
        found = 0;
        for (icalcomponent* event = icalcomponent_get_first_component(calendar, ICAL_VEVENT_COMPONENT); event;
             event = icalcomponent_get_next_component(calendar, ICAL_VEVENT_COMPONENT)) {
            const icaltimetype start = icalcomponent_get_dtstart(event);
            icalproperty* rule = icalcomponent_get_first_property(event, ICAL_RRULE_PROPERTY);
            if (!rule) {
                found += MonthOf(start) == kMonth;
                continue;
            }
            const icalrecurrencetype recurrence = icalproperty_get_rrule(rule);
            icalrecur_iterator* iterator = icalrecur_iterator_new(recurrence, start);
            // Its own short cut; a rule with a count has none.
            if (recurrence.count == 0 && MonthOf(start) < kMonth)
                icalrecur_iterator_set_start(iterator, icaltime_from_string("20260301T000000"));
            for (icaltimetype at = icalrecur_iterator_next(iterator); !icaltime_is_null_time(at);
                 at = icalrecur_iterator_next(iterator)) {
                if (MonthOf(at) > kMonth)
                    break;
                found += MonthOf(at) == kMonth;
            }
            icalrecur_iterator_free(iterator);
        }
    }
    state.counters["occurrences"] = found;
    icalcomponent_free(calendar);
}
BENCHMARK(IteratorMarch)->Unit(benchmark::kMillisecond);

void ExpandDailySince(benchmark::State& state)
{
    CRecurrencePattern pattern;
    pattern.Type = PatternType::Daily;
    pattern.PatternStart = DayNumberOf(int(state.range(0)), 1, 1);
    pattern.PatternEnd = DayNumberOf(4500, 12, 31);
    pattern.StartMinute = 600;
    pattern.EndMinute = 660;
    std::vector<COccurrence> out;
    for (auto _ : state) {
        out.clear();
        ExpandPattern(pattern, kFirst, kLast, out);
        benchmark::DoNotOptimize(out.data());
    }
    state.counters["occurrences"] = double(out.size());
}
BENCHMARK(ExpandDailySince)->Arg(1990)->Arg(2026)->Unit(benchmark::kMicrosecond);

void IteratorDailySince(benchmark::State& state)
{
    const std::string start = std::to_string(state.range(0)) + "0101T100000";
    int found = 0;
    for (auto _ : state) {
        found = 0;
        icalrecur_iterator* iterator =
            icalrecur_iterator_new(icalrecurrencetype_from_string("FREQ=DAILY"), icaltime_from_string(start.c_str()));
        for (icaltimetype at = icalrecur_iterator_next(iterator); MonthOf(at) <= kMonth;
             at = icalrecur_iterator_next(iterator))
            found += MonthOf(at) == kMonth;
        icalrecur_iterator_free(iterator);
    }
    state.counters["occurrences"] = found;
}
BENCHMARK(IteratorDailySince)->Arg(1990)->Arg(2026)->Unit(benchmark::kMicrosecond);

void BareParse(benchmark::State& state)
{
    const std::string text = ReadFile(std::getenv("TESSERA_BENCH_CALENDAR"));
    for (auto _ : state) {
        icalcomponent* calendar = icalparser_parse_string(text.c_str());
        benchmark::DoNotOptimize(calendar);
        if (calendar)
            icalcomponent_free(calendar);
    }
    state.SetBytesProcessed(int64_t(state.iterations()) * int64_t(text.size()));
}
BENCHMARK(BareParse)->Unit(benchmark::kMillisecond)->Iterations(2);
} // namespace

BENCHMARK_MAIN();
