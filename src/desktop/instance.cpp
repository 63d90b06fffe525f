#include "desktop/instance.h"
#include "desktop/instance_wire.h"

#include <QSocketNotifier>
#include <QTimerEvent>
#include <chrono>
#include <fcntl.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

namespace
{
constexpr int kMaxPeers = 32; // processes that hand over at the same moment
constexpr int kRetryMs = 200;
constexpr int kPollMs = 5;

using SteadyClock = std::chrono::steady_clock;

int MsUntil(SteadyClock::time_point end)
{
    const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(end - SteadyClock::now()).count();
    return left > 0 ? int(left) : 0;
}

bool SendAll(int socket, const QByteArray& bytes)
{
    qsizetype sent = 0;
    while (sent < bytes.size()) {
        const ssize_t n = send(socket, bytes.constData() + sent, size_t(bytes.size() - sent), MSG_NOSIGNAL);
        if (n < 0 && errno == EINTR)
            continue;
        if (n <= 0)
            return false;
        sent += n;
    }
    return true;
}
} // namespace

QByteArray InstanceName(const QByteArray& windowClass)
{
    return windowClass + '-' + QByteArray::number(uint(geteuid()));
}

// ---- the other process

std::unique_ptr<CInstanceWindow> CInstanceWindow::Find(const QByteArray& name)
{
    const int socket = OpenInstanceSocket(name, SocketUse::Connect);
    if (socket < 0)
        return nullptr;
    if (!IsOwnPeer(socket)) {
        close(socket);
        return nullptr;
    }
    return std::unique_ptr<CInstanceWindow>(new CInstanceWindow(socket));
}

CInstanceWindow::~CInstanceWindow()
{
    close(m_socket);
}

bool CInstanceWindow::Post(const CInstanceMessage& message, int waitMs)
{
    if (!SendAll(m_socket, EncodeMessage(message)))
        return false;
    const auto end = SteadyClock::now() + std::chrono::milliseconds(waitMs);
    pollfd wait = {m_socket, POLLIN, 0};
    int ready;
    while ((ready = poll(&wait, 1, MsUntil(end))) < 0 && errno == EINTR) {
    }
    if (ready == 0)
        return true; // busy: the message stands in its queue
    quint32 receipt = 0;
    return recv(m_socket, &receipt, sizeof receipt, MSG_WAITALL) == ssize_t(sizeof receipt) &&
           receipt == message.Number;
}

// ---- this process

CInstance::CInstance(QByteArray name) : m_name(std::move(name)), m_lock(m_name + ".lock") {}

CInstance::~CInstance()
{
    Resign();
}

bool CInstance::OpenSocket()
{
    m_listener = OpenInstanceSocket(m_name, SocketUse::Bind);
    if (m_listener < 0)
        return false;
    if (listen(m_listener, kMaxPeers) == 0 && fcntl(m_listener, F_SETFL, O_NONBLOCK) == 0)
        return true;
    close(m_listener);
    m_listener = -1;
    return false;
}

bool CInstance::Claim()
{
    if (m_listener >= 0)
        return true;
    if (!m_lock.Take())
        return false;
    if (OpenSocket())
        return true;
    m_lock.Release();
    return false;
}

bool CInstance::ClaimWithin(int milliseconds)
{
    const auto end = SteadyClock::now() + std::chrono::milliseconds(milliseconds);
    while (!Claim()) {
        if (MsUntil(end) == 0)
            return false;
        poll(nullptr, 0, kPollMs);
    }
    return true;
}

void CInstance::Listen(Handler handler)
{
    m_handler = std::move(handler);
    if (Claim())
        Watch();
    else
        m_retryTimer = startTimer(kRetryMs);
}

void CInstance::timerEvent(QTimerEvent* event)
{
    if (event->timerId() != m_retryTimer || !Claim())
        return;
    killTimer(m_retryTimer);
    m_retryTimer = 0;
    Watch();
}

void CInstance::Watch()
{
    m_notifier = std::make_unique<QSocketNotifier>(m_listener, QSocketNotifier::Read);
    connect(m_notifier.get(), &QSocketNotifier::activated, this, [this] { Accept(); });
}

void CInstance::Resign()
{
    if (m_retryTimer)
        killTimer(m_retryTimer);
    m_retryTimer = 0;
    m_notifier.reset();
    while (!m_peers.empty())
        Drop(m_peers.begin()->first);
    // The socket's file stays for the next instance to replace: unlinking it here could take
    // away the one that has just replaced it.
    if (m_listener >= 0)
        close(m_listener);
    m_listener = -1;
    m_lock.Release();
}

void CInstance::Accept()
{
    int socket;
    while ((socket = accept4(m_listener, nullptr, nullptr, SOCK_NONBLOCK | SOCK_CLOEXEC)) >= 0) {
        if (!IsOwnPeer(socket) || m_peers.size() >= size_t(kMaxPeers)) {
            close(socket);
            continue;
        }
        auto notifier = std::make_unique<QSocketNotifier>(socket, QSocketNotifier::Read);
        connect(notifier.get(), &QSocketNotifier::activated, this, [this, socket] { Read(socket); });
        m_peers[socket].Notifier = std::move(notifier);
    }
}

void CInstance::Read(int socket)
{
    const auto peer = m_peers.find(socket);
    if (peer == m_peers.end())
        return;
    char buffer[1024];
    const ssize_t count = recv(socket, buffer, sizeof buffer, 0);
    if (count < 0 && (errno == EAGAIN || errno == EINTR))
        return;
    QByteArray& received = peer->second.Received;
    if (count > 0)
        received.append(buffer, count);
    CInstanceMessage message;
    WireState state;
    while ((state = DecodeMessage(received, message)) == WireState::Complete) {
        send(socket, &message.Number, sizeof message.Number, MSG_NOSIGNAL | MSG_DONTWAIT);
        Dispatch(message);
    }
    if (count <= 0 || state == WireState::Malformed)
        Drop(socket);
}

void CInstance::Dispatch(const CInstanceMessage& message)
{
    // Posted, not sent: a handler may run a dialog, and the sender does not wait for it.
    QMetaObject::invokeMethod(
        this,
        [this, message] {
            if (m_handler)
                m_handler(message);
        },
        Qt::QueuedConnection);
}

void CInstance::Drop(int socket)
{
    const auto peer = m_peers.find(socket);
    if (peer == m_peers.end())
        return;
    peer->second.Notifier->setEnabled(false);
    peer->second.Notifier.release()->deleteLater(); // it may be the one that called
    m_peers.erase(peer);
    close(socket);
}
