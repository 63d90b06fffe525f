// One changed appointment from its notice to the painted screen, on a day of 20 items, beside a
// big volume (TESSERA_BENCH_VOLUME) with 2,000 contacts, and with many or no items on the days
// around it. The writing itself is not counted.
#include "drawing/image_store.h"
#include "drawing/screen_metrics.h"
#include "pim/pim_store.h"
#include "platform/clock.h"
#include "records/property_numbers.h"
#include "settings/settings.h"
#include "touch/device_pixels.h"
#include "views/daily_view.h"

#include <QApplication>
#include <QFile>
#include <QImage>
#include <QTemporaryDir>
#include <benchmark/benchmark.h>

namespace
{
constexpr QSize kPhone(1080, 2160);
constexpr int kItems = 20;
constexpr int kContacts = 2000;
const int kDay = DayNumberOf(1999, 3, 10); // before all that the workload holds

class CQuietHost : public IViewHost
{
public:
    void SendCommand(int) override {}
    void UpdateTitle() override {}
    void RebuildSoftKeys() override {}
    void ShowDaily(int) override {}
    void PressSoftKey(int) override {}
};

CEOID WriteAppointment(CPropertyVolume& volume, int day, int number)
{
    const DATE start = day + (8 + number % 12) / 24.0;
    const std::vector<CEPROPVAL> rows = {{Prop::Start, FileTimeOfDate(start)},
                                         {Prop::Duration, 45},
                                         {Prop::Subject, QStringLiteral("Review of the draft %1").arg(number)},
                                         {Prop::Location, QStringLiteral("Room %1").arg(number % 40)},
                                         {Prop::ReminderSet, number % 2}};
    CEOID oid = 0;
    (void)volume.WriteRecord(kAppointmentsDatabase, 0, rows, {}, &oid);
    return oid;
}

// The big one or an empty one, with `others` more items on the days around.
std::shared_ptr<CPropertyVolume> MakeVolume(const QString& path, bool big, int others, CEOID* changed)
{
    std::shared_ptr<CPropertyVolume> volume;
    if (big && !QFile::copy(qEnvironmentVariable("TESSERA_BENCH_VOLUME"), path))
        return nullptr;
    if (!CPropertyVolume::Open(path, PimSchema(), CPropertyVolume::Mode::Create, volume) || !volume->Begin(false))
        return nullptr;
    for (int i = 0; i < kItems; ++i)
        *changed = WriteAppointment(*volume, kDay, i);
    for (int i = 0; i < others; ++i)
        WriteAppointment(*volume, kDay + (i % 2 ? 1 + i % 15 : -1 - i % 7), i);
    for (int i = 0; i < (big ? kContacts : 0); ++i) {
        const std::vector<CEPROPVAL> rows = {
            {Prop::ContactName, QStringLiteral("Person %1").arg(i)},
            {Prop::ContactBirthday, FileTimeOfDate(DayNumberOf(1950 + i % 50, 4 + i % 9, 1 + i % 28))}};
        (void)volume->WriteRecord(kContactsDatabase, 0, rows, {}, nullptr);
    }
    return volume->Commit() ? volume : nullptr;
}

void NoticeToScreen(benchmark::State& state)
{
    const int density = int(state.range(2));
    ForceDensity(density);
    g_ScreenMetrics.Init(density, kPhone);
    LoadResourceLibraries(QString());
    QTemporaryDir folder;
    CEOID changed = 0;
    const auto volume = MakeVolume(folder.filePath(QStringLiteral("pim.vol")), state.range(0) != 0,
                                   int(state.range(1)), &changed);
    if (!volume) {
        state.SkipWithError("TESSERA_BENCH_VOLUME names no volume");
        return;
    }
    PimStore().Initialize(volume);
    PimStore().LoadRange(kDay, kDay, kDay);
    CQuietHost host;
    CDailyView view(host, nullptr);
    view.resize(kPhone);
    view.OnCreate();
    view.Refresh();
    QImage screen(kPhone, QImage::Format_RGB32);
    view.render(&screen);
    size_t rows = 0;
    int n = 0;
    for (auto _ : state) {
        state.PauseTiming();
        const CEPROPVAL subject(Prop::Subject, QStringLiteral("Changed %1").arg(++n));
        (void)volume->WriteRecord(kAppointmentsDatabase, changed, std::span(&subject, 1), {}, nullptr);
        state.ResumeTiming();
        const CPimStore::CDrain drain = PimStore().DrainNotices();
        PimStore().OnNextEventTimer(GetNow());
        if (drain.Mask & kMaskDaily)
            view.OnDataChanged(drain.LastParam, drain.LastType, drain.LastOid);
        view.render(&screen);
        rows = PimStore().FindDay(kDay)->Appointments.size();
    }
    state.counters["items_of_the_day"] = double(rows);
    state.SetLabel(state.range(0) ? "big volume" : "small volume");
    PimStore().Shutdown();
    ForceDensity(-1);
}
BENCHMARK(NoticeToScreen)
    ->Args({0, 0, 192})
    ->Args({0, 10000, 192})
    ->Args({1, 0, 192})
    ->Args({1, 10000, 192})
    ->Args({1, 10000, 384})
    ->Unit(benchmark::kMillisecond);
} // namespace

int main(int argc, char** argv)
{
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    g_ImageStore.Clear();
    return 0;
}
