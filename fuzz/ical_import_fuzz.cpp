// Any bytes as a calendar file: read in blocks, translated and written into a volume in memory
// files. What arrives must be found unchanged by a second import of the same bytes.
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
        Open();
    }
    // A volume is used for many inputs, then made anew.
    void Open()
    {
        App.reset();
        Volume.reset();
        Folder = std::make_unique<QTemporaryDir>(QDir(QStringLiteral("/dev/shm")).exists()
                                                     ? QStringLiteral("/dev/shm/tessera-fuzz-XXXXXX")
                                                     : QString());
        if (!CPropertyVolume::Open(Folder->filePath(QStringLiteral("pim.vol")), PimSchema(),
                                   CPropertyVolume::Mode::Create, Volume))
            abort();
        App = MakePOutlookApp(Volume);
        if (!App->Logon())
            abort();
    }

    CManualClock Clock{134175708000000000}; // March 2026
    std::unique_ptr<CFixedTimeZone> Zone;
    std::unique_ptr<QTemporaryDir> Folder;
    std::shared_ptr<CPropertyVolume> Volume;
    std::unique_ptr<IPOutlookApp> App;
};

struct CCounts {
    qint64 Written = 0, Unchanged = 0;
};

CCounts Import(CBench& bench, const uint8_t* data, size_t size)
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
    return {report.Created + report.Updated, report.Unchanged};
}
} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    static CBench bench;
    static int inputs = 0;
    if (++inputs % 500 == 0)
        bench.Open();
    Import(bench, data, size);
    if (Import(bench, data, size).Written > 0)
        abort();
    return 0;
}
