// One instance per user and name, and numbered messages to it, over a socket of the session.
// The lock beside the socket decides who the instance is, so that racing starts are safe and what
// a killed process left behind blocks nobody.
// Works before the application object exists; only `Listen` needs the event loop.
#pragma once
#include "desktop/named_lock.h"

#include <QByteArray>
#include <QObject>
#include <functional>
#include <map>
#include <memory>

class QSocketNotifier;

// The numbers are public: never renumber.
enum InstanceMessage : quint32 {
    kMessageClose = 16,    // end yourself
    kMessageShow = 24,     // come to the foreground
    kMessageRequest = 1900 // a command line waits in the registry
};

struct CInstanceMessage {
    quint32 Number = 0;
    quint64 wParam = 0;
    qint64 lParam = 0;
    QByteArray Token; // activation token of the desktop, for the foreground
};

// The name that processes of this user find one another by.
QByteArray InstanceName(const QByteArray& windowClass);

// The running instance as another process sees it.
class CInstanceWindow
{
public:
    // Null when no instance answers to that name.
    static std::unique_ptr<CInstanceWindow> Find(const QByteArray& name);
    ~CInstanceWindow();

    // False when the instance has gone before it took the message. One that is busy takes it later.
    bool Post(const CInstanceMessage& message, int waitMs = 3000);

private:
    explicit CInstanceWindow(int socket) : m_socket(socket) {}
    int m_socket;
};

// This process as the instance.
class CInstance : public QObject
{
public:
    using Handler = std::function<void(const CInstanceMessage&)>;

    explicit CInstance(QByteArray name);
    ~CInstance() override;

    bool Claim(); // false while another process is the instance
    bool ClaimWithin(int milliseconds);
    bool IsClaimed() const { return m_listener >= 0; }
    // Messages arrive through the event loop, those sent since the claim too. Without a claim yet
    // it is tried again until the other process has gone.
    void Listen(Handler handler);
    void Resign(); // the name is free for another process at once

    const QByteArray& Name() const { return m_name; }

private:
    struct Peer {
        QByteArray Received;
        std::unique_ptr<QSocketNotifier> Notifier;
    };
    bool OpenSocket();
    void Watch();
    void Accept();
    void Read(int socket);
    void Dispatch(const CInstanceMessage& message);
    void Drop(int socket);
    void timerEvent(QTimerEvent* event) override;

    QByteArray m_name;
    CNamedLock m_lock;
    int m_listener = -1;
    std::unique_ptr<QSocketNotifier> m_notifier;
    std::map<int, Peer> m_peers;
    Handler m_handler;
    int m_retryTimer = 0;
};
