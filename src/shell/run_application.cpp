#include "shell/run_application.h"
#include "desktop/desktop_colors.h"
#include "desktop/instance.h"
#include "desktop/start_environment.h"
#include "forms/question.h"
#include "pages/softkey_dialog.h"
#include "platform/clock.h"
#include "platform/volume_path.h"
#include "records/property_numbers.h"
#include "settings/color_scheme.h"
#include "shell/command_request.h"
#include "shell/instance_handover.h"
#include "shell/main_frame.h"
#include "shell/options.h"
#include "shell/quit_signals.h"
#include "shell/start_trace.h"
#include "touch/device_pixels.h"
#include "util/string_ids.h"
#include "util/string_store.h"

#include <QApplication>
#include <QCryptographicHash>
#include <QDir>
#include <QFileInfo>
#include <QScreen>
#include <cstdio>
#include <cstdlib>
#include <optional>
#include <utility>

namespace
{
constexpr QSize kWindowSize{420, 672}; // logical: like a big handheld; a finger menu fills it
constexpr int kHighestStatus = 192;

int Complain(const QString& text)
{
    std::fprintf(stderr, "tessera: %s\n", qUtf8Printable(text));
    return kExitUsage;
}

// A display that does not answer is no reason to die with a core: what Qt would abort with.
void TellOfStart(QtMsgType type, const QMessageLogContext&, const QString& text)
{
    if (type == QtFatalMsg) {
        Complain(QStringLiteral("the display cannot be used; --snapshot FILE paints into a picture"));
        std::_Exit(kExitUsage);
    }
    if (qEnvironmentVariableIsSet("QT_DEBUG_PLUGINS"))
        std::fprintf(stderr, "%s\n", qUtf8Printable(text));
}

// The application object, made as quickly as the desktop allows.
struct CApplication {
    explicit CApplication(char* name) : Arguments{name, nullptr}
    {
        QGuiApplication::setHighDpiScaleFactorRoundingPolicy(
            Qt::HighDpiScaleFactorRoundingPolicy::PassThrough);
        QCoreApplication::setApplicationName(QStringLiteral("tessera"));
        QGuiApplication::setDesktopFileName(QStringLiteral("tessera"));
        CStartEnvironment environment;
        const QtMessageHandler handler = qInstallMessageHandler(TellOfStart);
        Application.emplace(Count, Arguments);
        qInstallMessageHandler(handler);
        environment.Restore();
    }
    int Count = 1;
    char* Arguments[2]; // our options are not Qt's
    std::optional<QApplication> Application;
};

bool HasDisplay()
{
    for (const char* variable : {"QT_QPA_PLATFORM", "WAYLAND_DISPLAY", "DISPLAY"}) {
        if (!qEnvironmentVariableIsEmpty(variable))
            return true;
    }
    return false;
}

QString VolumePath(const COptions& options)
{
    return options.Volume.isEmpty() ? DefaultVolumePath() : QFileInfo(options.Volume).absoluteFilePath();
}

// A volume that was named is a calendar of its own, with a window of its own.
QByteArray NameOfInstance(const COptions& options)
{
    QByteArray name = InstanceName(kWindowClass);
    if (!options.Volume.isEmpty() && VolumePath(options) != DefaultVolumePath()) {
        const QByteArray path = VolumePath(options).toUtf8();
        name += '-' + QCryptographicHash::hash(path, QCryptographicHash::Sha1).toHex().left(12);
    }
    return name;
}

CStatus OpenVolume(const COptions& options, CPropertyVolume::Mode mode,
                   std::shared_ptr<CPropertyVolume>& volume)
{
    const QString path = VolumePath(options);
    if (mode == CPropertyVolume::Mode::Create)
        QDir().mkpath(QFileInfo(path).path());
    return CPropertyVolume::Open(path, PimSchema(), mode, volume);
}

// ---- the three ways to run

int ReportDensity(const COptions& options, char* name)
{
    ForceDensity(options.Density);
    if (!HasDisplay())
        qputenv("QT_QPA_PLATFORM", "offscreen");
    const CApplication application(name);
    const QScreen* screen = QGuiApplication::primaryScreen();
    const int density = options.Density != -1
                            ? options.Density
                            : 96 * SurfaceFactorOf(screen ? screen->devicePixelRatio() : 1.0);
    std::printf("%d\n", density);
    return std::min(density, kHighestStatus);
}

int RunSnapshot(const COptions& options, char* name)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    for (const char* variable :
         {"QT_SCALE_FACTOR", "QT_SCREEN_SCALE_FACTORS", "QT_USE_PHYSICAL_DPI", "QT_FONT_DPI"})
        qunsetenv(variable);
    ForceDensity(options.Density == -1 ? 96 : options.Density);
    const CApplication application(name);
    CManualClock clock;
    if (qint64 now = 0; !options.Now.isEmpty() && ParseMoment(options.Now, &now)) {
        clock.Set(now);
        SetClock(&clock);
        if (ParseMoment(options.Now, &now)) // again, by the zone's rules of that year
            clock.Set(now);
    }
    CFrameSetup setup;
    setup.SaveSettings = false;
    const CStatus opened = OpenVolume(options, CPropertyVolume::Mode::ReadOnly, setup.Volume);
    if (!opened && opened.Kind() != StatusKind::NotFound)
        return Complain(opened.Text());
    bool written = false, noItem = false;
    {
        CMainFrame frame(std::move(setup));
        frame.resize(options.Size);
        const CCommandRequest request = std::exchange(g_CommandRequest, {}); // not served at the start
        if (!request.IsSingleItem())
            g_CommandRequest = request;
        const bool created = frame.OnCreate();
        const QImage picture = !created                    ? QImage()
                               : request.IsSingleItem()    ? frame.SnapshotOfItem(request)
                               : !options.Search.isEmpty() ? frame.SnapshotOfSearch(options.Search)
                                                           : frame.Snapshot();
        noItem = created && picture.isNull();
        written = !noItem && picture.save(options.SnapshotFile, "PNG");
    }
    SetClock(nullptr);
    if (noItem)
        return Complain(QStringLiteral("there is no such item"));
    return written ? kExitDone : Complain(QStringLiteral("cannot write %1").arg(options.SnapshotFile));
}

void PlaceWindow(CMainFrame& frame)
{
    const int k = ForcedDensity() == -1 ? 1 : ForcedDensity() / 96;
    const QScreen* screen = QGuiApplication::primaryScreen();
    frame.resize(screen ? (kWindowSize * k).boundedTo(screen->availableSize()) : kWindowSize * k);
}

void AfterFirstPaint(CMainFrame& frame, const CStatus& opened)
{
    TraceFirstPaint();
    frame.StartNotices();
    FetchHighlight([&frame](const CHighlight& highlight) {
        SetSystemColors(highlight.Back, highlight.Text);
        frame.OnSystemColors();
    });
    if (!opened)
        ShowMessage(&frame, opened.Text(), GetString(StrErrorCaption));
}

int RunWindow(const COptions& options, CInstance& instance, char* name)
{
    ForceDensity(options.Density);
    CFrameSetup setup;
    setup.SingleItemMutex = SingleItemMutexOf(instance.Name());
    CStatus opened = OpenVolume(options, CPropertyVolume::Mode::Create, setup.Volume);
    // What cannot be written can often be read.
    const bool onlyRead = !opened && OpenVolume(options, CPropertyVolume::Mode::ReadOnly, setup.Volume);
    if (!opened)
        Complain(opened.Text());
    const CApplication application(name);
    CMainFrame frame(std::move(setup));
    PlaceWindow(frame);
    // Before the frame comes up: a request for one item is served in there.
    const CQuitSignals signals([&frame] { frame.close(); });
    instance.Listen([&frame](const CInstanceMessage& message) { frame.OnInstanceMessage(message); });
    if (!frame.OnCreate()) {
        instance.Resign();
        return kExitDone;
    }
    if (onlyRead)
        opened = {opened.Kind(), FillText(GetString(StrVolumeReadOnly), {VolumePath(options)})};
    if (g_CommandRequest.Kind == RequestKind::SoftKeyDialog) {
        const int answer = CSoftkeyDialog().Run(&frame); // whose window never shows
        instance.Resign();
        return answer;
    }
    frame.SetFirstPaintHook([&frame, &opened] { AfterFirstPaint(frame, opened); });
    frame.show();
    const int status = QCoreApplication::exec();
    instance.Resign();
    return status;
}

int RunRequest(const COptions& options, char* name)
{
    CInstance instance(NameOfInstance(options));
    const CCommandRequest& request = g_CommandRequest;
    if (CheckRunningInstance(instance, request))
        return kExitHandedOver;
    if (!HasDisplay())
        return Complain(QStringLiteral("there is no display; --snapshot FILE paints into a picture"));
    return RunWindow(options, instance, name);
}
} // namespace

int RunTessera(int argc, char** argv, const char* version)
{
    QStringList arguments;
    for (int i = 1; i < argc; ++i)
        arguments << QString::fromLocal8Bit(argv[i]);
    const COptions options = ParseOptions(arguments);
    if (options.What == COptions::Action::Fault) {
        Complain(options.Fault + QStringLiteral("; --help tells what there is"));
        return kExitUsage;
    }
    if (options.What == COptions::Action::Help) {
        std::fputs(qUtf8Printable(UsageText()), stdout);
        return kExitDone;
    }
    if (options.What == COptions::Action::Version) {
        std::printf("tessera %s\n", version);
        return kExitDone;
    }
    ParseCommandLine(g_CommandRequest, options.Request.isNull() ? QLatin1String("") : options.Request);
    if (g_CommandRequest.Kind == RequestKind::ReportDensity)
        return ReportDensity(options, argv[0]);
    if (options.What == COptions::Action::Run)
        return RunRequest(options, argv[0]);
    if (g_CommandRequest.Kind == RequestKind::SoftKeyDialog)
        return Complain(QStringLiteral("a snapshot shows views and items only"));
    return RunSnapshot(options, argv[0]);
}
