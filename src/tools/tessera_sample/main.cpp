// tessera-sample: fills an empty calendar with a small sample around today.
#include "platform/volume_path.h"
#include "records/property_numbers.h"
#include "tools/tessera_sample/sample_calendar.h"
#include "util/date_time.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <cstdio>
#include <cstring>

namespace
{
constexpr int kExitDone = 0, kExitFailed = 1, kExitUsage = 2;

int Complain(const QString& text, int status)
{
    std::fprintf(stderr, "tessera-sample: %s\n", qUtf8Printable(text));
    return status;
}

qint64 CountItems(CPropertyVolume& volume)
{
    return volume.RecordCount(kAppointmentsDatabase) + volume.RecordCount(kTasksDatabase) +
           volume.RecordCount(kContactsDatabase);
}

int Fill(const QString& path)
{
    QDir().mkpath(QFileInfo(path).path());
    std::shared_ptr<CPropertyVolume> volume;
    if (const CStatus opened =
            CPropertyVolume::Open(path, PimSchema(), CPropertyVolume::Mode::Create, volume);
        !opened)
        return Complain(opened.Text(), kExitFailed);
    if (const qint64 items = CountItems(*volume); items != 0) {
        std::printf("%s holds %lld items; nothing was added\n", qUtf8Printable(path),
                    static_cast<long long>(items));
        return kExitDone;
    }
    const auto app = MakePOutlookApp(volume);
    if (const CStatus on = app->Logon(); !on)
        return Complain(on.Text(), kExitFailed);
    int written = 0;
    const CStatus status = WriteSampleCalendar(*app, GetToday(), &written);
    app->Logoff();
    if (!status)
        return Complain(status.Text(), kExitFailed);
    WriteSampleSettings();
    std::printf("%s: %d sample items\n", qUtf8Printable(path), written);
    return kExitDone;
}
} // namespace

int main(int argc, char** argv)
{
    QString volume = DefaultVolumePath();
    for (int i = 1; i < argc; ++i) {
        if (std::strcmp(argv[i], "--help") == 0) {
            std::puts(
                "usage: tessera-sample [--volume FILE]\n"
                "Fills the calendar with a small sample around today. One that holds items is left alone.");
            return kExitDone;
        }
        if (std::strcmp(argv[i], "--volume") != 0 || i + 1 >= argc)
            return Complain(QStringLiteral("unknown argument %1").arg(QString::fromLocal8Bit(argv[i])),
                            kExitUsage);
        volume = QFileInfo(QFile::decodeName(argv[++i])).absoluteFilePath();
    }
    return Fill(volume);
}
