// tessera-pim backup: a consistent copy of the volume while others write.
#include "tools/tessera_pim/commands.h"

#include "platform/property_volume.h"
#include "records/property_numbers.h"

int RunBackup(const CBackupOptions& options)
{
    std::shared_ptr<CPropertyVolume> volume;
    CStatus status =
        CPropertyVolume::Open(options.Volume, PimSchema(), CPropertyVolume::Mode::ReadOnly, volume);
    if (status)
        status = volume->Backup(options.File);
    if (!status)
        PrintError(status.Text());
    return status ? kExitDone : kExitNothing;
}
