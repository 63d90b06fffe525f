// The volume alone: reading records in order, a seek for each item's categories, and writing
// items in one transaction, with an order by start and one by name that come in no order.
#include "records/property_numbers.h"

#include <QTemporaryDir>
#include <benchmark/benchmark.h>
#include <random>

namespace
{
constexpr qint64 kTicksPerMinute = 600000000;
constexpr qint64 kFirstStart = 133000000000000000;

std::vector<CEPROPVAL> Appointment(std::mt19937& random, int i)
{
    return {{Prop::Start, kFirstStart + qint64(random() % 2000000) * kTicksPerMinute},
            {Prop::Duration, 60},
            {Prop::Recurring, i % 20 == 0},
            {Prop::Sensitivity, 0},
            {Prop::BusyStatus, 2},
            {Prop::AllDay, 0},
            {Prop::Subject, QStringLiteral("Subject number %1 of the year").arg(i)},
            {Prop::Location, QStringLiteral("Room %1").arg(i % 50)},
            {Prop::ReminderSet, 1},
            {Prop::ReminderMinutes, 15},
            {Prop::Uid, QStringLiteral("%1-%2@example.org").arg(random(), 8, 16, QLatin1Char('0')).arg(i)},
            {Prop::Sequence, 0},
            {Prop::LastChange, kFirstStart},
            {Prop::ContentHash, QByteArray(16, char(i))}};
}

bool WriteItems(CPropertyVolume& volume, int count)
{
    std::mt19937 random(1);
    CStatus status = volume.Begin(false);
    for (int i = 0; i < count && status; ++i) {
        quint32 number = 0;
        status = volume.WriteRecord(kAppointmentsDatabase, 0, Appointment(random, i), {}, nullptr, &number);
        const std::vector<CEPROPVAL> pair = {{Prop::AssocItem, qint64(number + kAppointmentTag)},
                                             {Prop::AssocCategory, qint64(i % 7)}};
        if (status)
            status = volume.WriteRecord(kCategoryAssocDatabase, 0, pair, {}, nullptr);
    }
    return status && volume.Commit();
}

struct CVolume {
    explicit CVolume(int count)
    {
        good = CPropertyVolume::Open(folder.filePath(QStringLiteral("pim.vol")), PimSchema(),
                                     CPropertyVolume::Mode::Create, volume) &&
               WriteItems(*volume, count);
    }
    QTemporaryDir folder;
    std::shared_ptr<CPropertyVolume> volume;
    bool good = false;
};

void WriteBatch(benchmark::State& state)
{
    for (auto _ : state) {
        if (!CVolume(int(state.range(0))).good)
            state.SkipWithError("the volume cannot be written");
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(WriteBatch)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond);

void ReadByStart(benchmark::State& state)
{
    const CVolume volume(20000);
    const CEPROPID ids[] = {Prop::Start,    Prop::Duration,   Prop::Recurring,   Prop::Sensitivity, Prop::BusyStatus,
                            Prop::AllDay,   Prop::Zone,       Prop::Recurrence,  Prop::Note,        Prop::NoteDocument,
                            Prop::Subject,  Prop::Location,   Prop::ReminderSet, Prop::RecId,       Prop::Uid};
    std::vector<CEPROPVAL> rows;
    for (auto _ : state) {
        const auto database = volume.volume->OpenDatabase(kAppointmentsDatabase, {{Prop::Start}}, true);
        for (int i = 0; i < 10000; ++i)
            benchmark::DoNotOptimize(database->ReadRecordProps(ids, rows));
    }
    state.SetItemsProcessed(state.iterations() * 10000);
}
BENCHMARK(ReadByStart)->Unit(benchmark::kMillisecond);

void SeekCategories(benchmark::State& state)
{
    const CVolume volume(20000);
    const auto database = volume.volume->OpenDatabase(kCategoryAssocDatabase,
                                                      {{Prop::AssocItem, Prop::AssocCategory}, true}, true);
    const CEPROPID ids[] = {Prop::AssocItem, Prop::AssocCategory};
    std::vector<CEPROPVAL> rows;
    quint32 number = 0;
    for (auto _ : state) {
        number = (number + 7919) % 20000;
        database->Seek(SeekType::ValueFirstEqual, {Prop::AssocItem, qint64(kAppointmentTag + number + 1)});
        benchmark::DoNotOptimize(database->ReadRecordProps(ids, rows));
    }
}
BENCHMARK(SeekCategories);

void WriteOneDurably(benchmark::State& state)
{
    const CVolume volume(1000);
    const std::vector<CEPROPVAL> rows = {{Prop::Subject, QStringLiteral("changed")}};
    CEOID oid = 1;
    for (auto _ : state) {
        oid = oid < 1990 ? oid + 2 : 1; // the records of both databases alternate
        if (!volume.volume->WriteRecord(kAppointmentsDatabase, oid, rows, {}, nullptr))
            state.SkipWithError("the record cannot be written");
    }
}
BENCHMARK(WriteOneDurably)->Unit(benchmark::kMicrosecond);
} // namespace

BENCHMARK_MAIN();
