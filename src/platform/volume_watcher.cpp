#include "platform/volume_watcher.h"

#include <QFile>
#include <QFileInfo>
#include <QSocketNotifier>
#include <QTimer>
#include <sys/inotify.h>
#include <unistd.h>

namespace
{
constexpr int kAskAgainMs = 15;
constexpr int kAskAtMostMs = 500; // a writer's disk may be slow between writing and being done
constexpr int kPollMs = 2000;
} // namespace

struct CVolumeWatcher::Private {
    Private(CVolumeWatcher* owner, std::shared_ptr<CPropertyVolume> borrowed)
        : owner(owner), volume(std::move(borrowed)), log(volume->Path() + QStringLiteral("-wal"))
    {
    }

    void Watch();
    void WatchLog();
    void ReadEvents();
    void WakeUp();
    void AskAgain();
    bool Ask();
    void TellOwnCommit();

    CVolumeWatcher* owner;
    std::shared_ptr<CPropertyVolume> volume;
    QString log;
    int inotify = -1;
    int logWatch = -1;
    int folderWatch = -1;
    std::unique_ptr<QSocketNotifier> notifier;
    QTimer again;
    QTimer poll;
    bool queued = false;
};

CVolumeWatcher::CVolumeWatcher(std::shared_ptr<CPropertyVolume> volume, QObject* parent)
    : QObject(parent), d(std::make_unique<Private>(this, std::move(volume)))
{
    d->again.setSingleShot(true);
    d->again.setTimerType(Qt::PreciseTimer);
    connect(&d->again, &QTimer::timeout, this, [this] { d->AskAgain(); });
    d->poll.setInterval(kPollMs);
    connect(&d->poll, &QTimer::timeout, this, [this] {
        d->WatchLog();
        d->Ask();
        if (!d->volume->IsInPlace())
            Q_EMIT Displaced();
    });
    d->Watch();
    d->volume->SetCommitHook([this] { d->TellOwnCommit(); });
}

CVolumeWatcher::~CVolumeWatcher()
{
    d->volume->SetCommitHook({});
    d->notifier.reset();
    if (d->inotify >= 0)
        close(d->inotify);
}

void CVolumeWatcher::SetPolling(bool on)
{
    if (on && !d->poll.isActive()) {
        d->poll.start();
        d->Ask();
    } else if (!on) {
        d->poll.stop();
    }
}

// The log appears only when the volume has been read or written; the folder tells when it does.
void CVolumeWatcher::Private::Watch()
{
    inotify = inotify_init1(IN_NONBLOCK | IN_CLOEXEC);
    if (inotify < 0)
        return; // the poll remains
    const QByteArray folder = QFile::encodeName(QFileInfo(log).absolutePath());
    folderWatch = inotify_add_watch(inotify, folder.constData(), IN_CREATE | IN_MOVED_TO | IN_ONLYDIR);
    (void)volume->LastChange();
    WatchLog();
    notifier = std::make_unique<QSocketNotifier>(inotify, QSocketNotifier::Read);
    QObject::connect(notifier.get(), &QSocketNotifier::activated, owner, [this] { ReadEvents(); });
}

void CVolumeWatcher::Private::WatchLog()
{
    if (inotify >= 0) // adding the same file again gives the same number
        logWatch = inotify_add_watch(inotify, QFile::encodeName(log).constData(), IN_MODIFY | IN_DELETE_SELF);
}

void CVolumeWatcher::Private::ReadEvents()
{
    alignas(inotify_event) char buffer[8192];
    const QByteArray name = QFile::encodeName(QFileInfo(log).fileName());
    bool woken = false;
    ssize_t size = 0;
    while ((size = read(inotify, buffer, sizeof(buffer))) > 0) {
        for (ssize_t at = 0; at < size;) {
            const auto* event = reinterpret_cast<const inotify_event*>(buffer + at);
            at += ssize_t(sizeof(inotify_event)) + event->len;
            if (event->wd == folderWatch && event->len > 0 && name == event->name) {
                WatchLog();
                woken = true;
            } else if (event->wd == logWatch || (event->mask & IN_Q_OVERFLOW) != 0) {
                woken = true;
            }
        }
    }
    if (woken)
        WakeUp();
}

void CVolumeWatcher::Private::WakeUp()
{
    Ask();
    // The write that woke us may not be visible yet.
    again.start(kAskAgainMs);
}

void CVolumeWatcher::Private::AskAgain()
{
    const int waited = again.interval();
    if (!Ask() && waited * 2 <= kAskAtMostMs)
        again.start(waited * 2);
}

bool CVolumeWatcher::Private::Ask()
{
    if (!volume->ChangedByOthers())
        return false;
    Q_EMIT owner->Changed();
    return true;
}

void CVolumeWatcher::Private::TellOwnCommit()
{
    if (queued)
        return;
    queued = true;
    QMetaObject::invokeMethod(
        owner,
        [this] {
            queued = false;
            Q_EMIT owner->Changed();
        },
        Qt::QueuedConnection);
}
