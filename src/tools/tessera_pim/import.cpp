// The command import: reads calendars and contacts and tells what became of them.
#include "interchange/calendar_importer.h"
#include "records/property_numbers.h"
#include "tools/tessera_pim/commands.h"
#include "tools/tessera_pim/progress_bar.h"

#include <QDir>
#include <QFileInfo>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace
{
std::atomic<bool> g_interrupted = false;

void OnInterrupt(int)
{
    g_interrupted = true;
}

// Standard input or a file; closed again at the end.
class CInput
{
public:
    explicit CInput(const std::string& name)
    {
        m_descriptor = name == "-" ? dup(STDIN_FILENO) : open(name.c_str(), O_RDONLY | O_CLOEXEC);
        struct stat info;
        if (m_descriptor >= 0 && fstat(m_descriptor, &info) == 0 && S_ISREG(info.st_mode))
            m_size = info.st_size;
        m_error = m_descriptor < 0 ? errno : 0;
    }
    ~CInput()
    {
        if (m_descriptor >= 0)
            close(m_descriptor);
    }
    CInput(const CInput&) = delete;
    CInput& operator=(const CInput&) = delete;

    bool IsOpen() const { return m_descriptor >= 0; }
    qint64 Size() const { return m_size; } // 0 when nobody knows
    QString Error() const { return QString::fromLocal8Bit(std::strerror(m_error)); }
    qint64 Read(char* buffer, qint64 size)
    {
        for (;;) {
            const ssize_t got = read(m_descriptor, buffer, size_t(size));
            if (got >= 0)
                return got;
            if (errno != EINTR || g_interrupted) {
                m_error = errno;
                return -1;
            }
        }
    }

private:
    int m_descriptor = -1, m_error = 0;
    qint64 m_size = 0;
};

enum class Outcome { All, Some, Nothing };

struct CFileTold {
    const std::string& Name;
    CProgressBar& Bar;
    void operator()(int line, const QString& text) const
    {
        Bar.Clear();
        std::fprintf(stderr, "%s:%d: %s\n", Name.c_str(), line, text.toLocal8Bit().constData());
    }
};

Outcome ImportFile(IPOutlookApp& app, const std::string& name)
{
    const QString shown = QString::fromLocal8Bit(name.c_str());
    CInput input(name);
    if (!input.IsOpen()) {
        PrintError(shown + QStringLiteral(": ") + input.Error());
        return Outcome::Nothing;
    }
    CProgressBar bar(shown, input.Size());
    CImportReport report(CFileTold{name, bar});
    CCalendarImporter importer(app, report);
    const ImportResult result =
        importer.Import([&](char* buffer, qint64 size) { return input.Read(buffer, size); },
                        [&](qint64 bytes) {
                            bar.Show(bytes);
                            return !g_interrupted;
                        });
    bar.Clear();
    std::printf("%s: %lld created, %lld updated, %lld unchanged, %lld left out\n", name.c_str(),
                static_cast<long long>(report.Created), static_cast<long long>(report.Updated),
                static_cast<long long>(report.Unchanged), static_cast<long long>(report.LeftOutCount()));
    std::fflush(stdout);
    switch (result) {
    case ImportResult::Done:
        return report.LeftOutCount() > 0 ? Outcome::Some : Outcome::All;
    case ImportResult::NothingInIt:
        std::fprintf(stderr, "%s:1: there is neither a calendar nor a contact in it\n", name.c_str());
        return Outcome::Nothing;
    case ImportResult::ReadFailed:
        PrintError(shown + QStringLiteral(": cannot be read to its end: ") + input.Error());
        return Outcome::Some;
    case ImportResult::WriteFailed:
        PrintError(QStringLiteral("the volume cannot be written: ") + importer.Failure());
        return report.Created + report.Updated > 0 ? Outcome::Some : Outcome::Nothing;
    case ImportResult::Interrupted:
        break;
    }
    PrintError(shown +
               QStringLiteral(
                   ": interrupted; what is told above is in the volume, the same import goes on from there"));
    return Outcome::Some;
}
} // namespace

int RunImport(const CImportOptions& options)
{
    QDir().mkpath(QFileInfo(options.Volume).absolutePath());
    std::shared_ptr<CPropertyVolume> volume;
    CStatus status =
        CPropertyVolume::Open(options.Volume, PimSchema(), CPropertyVolume::Mode::Create, volume);
    std::unique_ptr<IPOutlookApp> app;
    if (status) {
        app = MakePOutlookApp(volume);
        status = app->Logon();
    }
    if (!status) {
        PrintError(options.Volume + QStringLiteral(": ") + status.Text());
        return kExitNothing;
    }
    struct sigaction action = {};
    action.sa_handler = OnInterrupt;
    sigaction(SIGINT, &action, nullptr);
    sigaction(SIGTERM, &action, nullptr);

    bool any = false, all = true;
    for (const std::string& file : options.Files) {
        if (g_interrupted) {
            all = false;
            break;
        }
        const Outcome outcome = ImportFile(*app, file);
        any = any || outcome != Outcome::Nothing;
        all = all && outcome == Outcome::All;
    }
    app->Logoff();
    return all ? kExitDone : any ? kExitLeftOut : kExitNothing;
}
