// tessera-sample: fills an empty calendar with a small sample around today.
#include "platform/volume_path.h"
#include "records/property_numbers.h"
#include "tools/tessera_sample/sample_calendar.h"
#include "util/date_time.h"

#include <QDate>
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

int Fill(const QString& path, int today)
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
    const CStatus status = WriteSampleCalendar(*app, today, &written);
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
    int today = GetToday();
    for (int i = 1; i < argc; ++i) {
        const QString argument = QString::fromLocal8Bit(argv[i]);
        if (std::strcmp(argv[i], "--help") == 0) {
            std::puts(
                "usage: tessera-sample [--volume FILE] [--today DATE]\n"
                "Fills the calendar with a small sample around today, or around an ISO date.\n"
                "One that holds items is left alone.");
            return kExitDone;
        }
        const bool isVolume = argument == QLatin1String("--volume");
        if ((!isVolume && argument != QLatin1String("--today")) || i + 1 >= argc)
            return Complain(QStringLiteral("unknown argument %1").arg(argument), kExitUsage);
        ++i;
        if (isVolume) {
            volume = QFileInfo(QFile::decodeName(argv[i])).absoluteFilePath();
            continue;
        }
        const QDate date = QDate::fromString(QString::fromLocal8Bit(argv[i]), Qt::ISODate);
        if (!date.isValid())
            return Complain(QStringLiteral("%1 is no ISO date").arg(QString::fromLocal8Bit(argv[i])), kExitUsage);
        today = DayNumberOf(date.year(), date.month(), date.day());
    }
    return Fill(volume, today);
}
