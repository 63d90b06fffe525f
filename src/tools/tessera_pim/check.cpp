// tessera-pim check: soundness of the volume and of what its records say.
#include "tools/tessera_pim/commands.h"

#include "pim/volume_checker.h"
#include "records/property_numbers.h"

#include <cstdio>

int RunCheck(const CCheckOptions& options)
{
    std::shared_ptr<CPropertyVolume> volume;
    CStatus status =
        CPropertyVolume::Open(options.Volume, PimSchema(), CPropertyVolume::Mode::ReadOnly, volume);
    QStringList faults;
    if (status)
        status = CheckVolume(*volume, faults);
    for (const QString& fault : faults)
        std::printf("%s\n", fault.toLocal8Bit().constData());
    if (!status) {
        PrintError(status.Text());
        return faults.isEmpty() ? kExitNothing : kExitLeftOut;
    }
    std::printf("%lld appointments, %lld tasks, %lld contacts: %s\n",
                (long long)volume->RecordCount(kAppointmentsDatabase),
                (long long)volume->RecordCount(kTasksDatabase),
                (long long)volume->RecordCount(kContactsDatabase),
                faults.isEmpty() ? "sound" : qPrintable(QStringLiteral("%1 faults").arg(faults.size())));
    return faults.isEmpty() ? kExitDone : kExitLeftOut;
}
