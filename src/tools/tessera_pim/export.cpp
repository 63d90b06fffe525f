// The command export: everything of the volume, or of some days, as files of other programs.
#include "interchange/calendar_exporter.h"
#include "records/property_numbers.h"
#include "tools/tessera_pim/commands.h"

#include <QSaveFile>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstring>

namespace
{
// Standard output, or a file that appears whole or not at all.
class COutput
{
public:
    explicit COutput(const QString& name) : m_file(name), m_isFile(!name.isEmpty()) {}
    bool Open()
    {
        if (!m_isFile)
            return true;
        m_file.setDirectWriteFallback(false);
        return m_file.open(QIODevice::WriteOnly);
    }
    bool Write(const QByteArray& bytes)
    {
        if (m_isFile)
            return m_file.write(bytes) == bytes.size() && m_file.flush();
        const bool good =
            std::fwrite(bytes.constData(), 1, size_t(bytes.size()), stdout) == size_t(bytes.size());
        m_error = good ? 0 : errno;
        return good;
    }
    bool Finish()
    {
        if (m_isFile)
            return m_file.commit();
        const bool good = std::fflush(stdout) == 0;
        m_error = good ? 0 : errno;
        return good;
    }
    QString Fault() const
    {
        return m_isFile ? m_file.fileName() + QStringLiteral(": ") + m_file.errorString()
                        : QStringLiteral("The output cannot be written: ") +
                              QString::fromLocal8Bit(std::strerror(m_error));
    }

private:
    QSaveFile m_file;
    bool m_isFile;
    int m_error = 0;
};
} // namespace

int RunExport(const CExportOptions& options)
{
    std::shared_ptr<CPropertyVolume> volume;
    CStatus status =
        CPropertyVolume::Open(options.Volume, PimSchema(), CPropertyVolume::Mode::ReadOnly, volume);
    std::unique_ptr<IPOutlookApp> app;
    if (status) {
        app = MakePOutlookApp(volume);
        status = app->Logon();
    }
    if (!status) {
        PrintError(status.Text());
        return kExitNothing;
    }
    std::signal(SIGPIPE, SIG_IGN); // told like any other fault
    COutput output(options.Output);
    if (!output.Open()) {
        PrintError(output.Fault());
        return kExitNothing;
    }
    CExportRange range;
    range.FirstDay = options.FirstDay;
    range.LastDay = options.LastDay;
    range.Calendar = !options.Output.endsWith(QLatin1String(".vcf"), Qt::CaseInsensitive);
    range.Contacts = !options.Output.endsWith(QLatin1String(".ics"), Qt::CaseInsensitive);
    bool written = true;
    CCalendarExporter exporter(*app, *volume,
                               [&](const QByteArray& bytes) { return written = output.Write(bytes); });
    status = exporter.Export(range);
    if (!written || (status && !output.Finish())) {
        PrintError(output.Fault());
        return kExitNothing;
    }
    if (!status) {
        PrintError(status.Text());
        return kExitNothing;
    }
    return kExitDone;
}
