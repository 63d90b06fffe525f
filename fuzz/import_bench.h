// An empty volume in memory for targets that import into it, and the import itself.
#pragma once
#include "interchange/calendar_importer.h"
#include "platform/clock.h"
#include "platform/time_zone.h"
#include "records/property_numbers.h"

#include <QDir>
#include <QTemporaryDir>
#include <cstdint>
#include <cstdlib>

struct CImportBench {
    CImportBench()
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

inline void Import(CImportBench& bench, const uint8_t* data, size_t size)
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
