// Any bytes as a calendar file: read in blocks, translated and written into a volume, twice. That
// the second import of a file changes nothing is tested on sound files; bytes in which several items
// and their changes share one identifier may need the second import to settle.
#include "interchange/calendar_importer.h"
#include "platform/clock.h"
#include "platform/time_zone.h"
#include "records/property_numbers.h"

#include <QDir>
#include <QTemporaryDir>
#include <cstdint>
#include <cstdlib>

namespace
{
struct CBench {
    CBench()
    {
        SetClock(&Clock);
        TimeZoneInformation berlin;
        ZoneRecordOf("Europe/Berlin", 2026, &berlin);
        Zone = std::make_unique<CFixedTimeZone>(berlin);
        SetTimeZone(Zone.get());
        Folder = std::make_unique<QTemporaryDir>(QDir(QStringLiteral("/dev/shm")).exists()
                                                     ? QStringLiteral("/dev/shm/tessera-fuzz-XXXXXX")
                                                     : QString());
        if (!CPropertyVolume::Open(Folder->filePath(QStringLiteral("pim.vol")), PimSchema(),
                                   CPropertyVolume::Mode::Create, Volume))
            abort();
    }
    // Every input finds the volume empty: all of it is one transaction that is taken back.
    void Begin()
    {
        if (!Volume->Begin(false))
            abort();
        App = MakePOutlookApp(Volume);
        if (!App->Logon())
            abort();
    }
    void End()
    {
        App.reset();
        Volume->Rollback();
    }

    CManualClock Clock{134175708000000000}; // March 2026
    std::unique_ptr<CFixedTimeZone> Zone;
    std::unique_ptr<QTemporaryDir> Folder;
    std::shared_ptr<CPropertyVolume> Volume;
    std::unique_ptr<IPOutlookApp> App;
};

void Import(CBench& bench, const uint8_t* data, size_t size)
{
    CImportReport report([](int line, const QString& text) {
        if (line < 0 || text.isEmpty())
            abort();
    });
    CCalendarImporter importer(*bench.App, report);
    size_t at = 0;
    const ImportResult result = importer.Import([&](char* buffer, qint64 room) {
        const size_t got = std::min({size_t(room), size - at, size_t(1021)});
        std::copy_n(data + at, got, buffer);
        at += got;
        return qint64(got);
    });
    if (result == ImportResult::WriteFailed || result == ImportResult::ReadFailed)
        abort();
}
} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    static CBench bench;
    bench.Begin();
    Import(bench, data, size);
    Import(bench, data, size);
    bench.End();
    return 0;
}
