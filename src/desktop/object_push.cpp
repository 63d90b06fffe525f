#include "desktop/object_push.h"

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusObjectPath>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusReply>
#include <QDBusServiceWatcher>
#include <QMap>

using CInterfaces = QMap<QString, QVariantMap>;
using CManagedObjects = QMap<QDBusObjectPath, CInterfaces>;
Q_DECLARE_METATYPE(CInterfaces)
Q_DECLARE_METATYPE(CManagedObjects)

namespace
{
const QString kBluez = QStringLiteral("org.bluez");
const QString kObex = QStringLiteral("org.bluez.obex");
const QString kObexRoot = QStringLiteral("/org/bluez/obex");
const QString kProperties = QStringLiteral("org.freedesktop.DBus.Properties");
const QString kPushService = QStringLiteral("00001105-0000-1000-8000-00805f9b34fb"); // object push
constexpr int kAnswerMs = 300;                                                       // of what only lists
constexpr int kConnectMs = 60000; // a device asks its owner before it takes a connection

bool HasName(const QDBusConnection& bus, const QString& name)
{
    if (!bus.isConnected())
        return false;
    for (const char* list : {"ListNames", "ListActivatableNames"}) {
        const QDBusMessage ask = QDBusMessage::createMethodCall(
            QStringLiteral("org.freedesktop.DBus"), QStringLiteral("/org/freedesktop/DBus"),
            QStringLiteral("org.freedesktop.DBus"), QString::fromLatin1(list));
        const QDBusReply<QStringList> names = bus.call(ask, QDBus::Block, kAnswerMs);
        if (names.isValid() && names.value().contains(name))
            return true;
    }
    return false;
}

CManagedObjects AskManagedObjects(const QDBusConnection& bus)
{
    qDBusRegisterMetaType<CInterfaces>();
    qDBusRegisterMetaType<CManagedObjects>();
    QDBusMessage ask = QDBusMessage::createMethodCall(kBluez, QStringLiteral("/"),
                                                      QStringLiteral("org.freedesktop.DBus.ObjectManager"),
                                                      QStringLiteral("GetManagedObjects"));
    ask.setAutoStartService(false);
    const QDBusReply<CManagedObjects> answer = bus.call(ask, QDBus::Block, kAnswerMs);
    return answer.isValid() ? answer.value() : CManagedObjects();
}

// A device that never told its services may take files; one that told them must name ours.
bool TakesFiles(const QVariantMap& device)
{
    const QStringList services = device.value(QStringLiteral("UUIDs")).toStringList();
    return device.value(QStringLiteral("Paired")).toBool() &&
           (services.isEmpty() || services.contains(kPushService, Qt::CaseInsensitive));
}
} // namespace

std::vector<CPushDevice> ListPushDevices()
{
    const QDBusConnection system = QDBusConnection::systemBus();
    if (!HasName(system, kBluez) || !HasName(QDBusConnection::sessionBus(), kObex))
        return {};
    bool powered = false;
    std::vector<CPushDevice> devices;
    for (const CInterfaces& object : AskManagedObjects(system)) {
        powered |=
            object.value(QStringLiteral("org.bluez.Adapter1")).value(QStringLiteral("Powered")).toBool();
        const QVariantMap device = object.value(QStringLiteral("org.bluez.Device1"));
        if (!TakesFiles(device))
            continue;
        const QString address = device.value(QStringLiteral("Address")).toString();
        QString name = device.value(QStringLiteral("Alias")).toString();
        if (name.isEmpty())
            name = address;
        devices.push_back({address, name});
    }
    return powered ? devices : std::vector<CPushDevice>();
}

// ---- sending

CObjectPush::CObjectPush(const QString& path, Done done) : m_path(path), m_done(std::move(done))
{
    auto* gone = new QDBusServiceWatcher(kObex, QDBusConnection::sessionBus(),
                                         QDBusServiceWatcher::WatchForUnregistration, this);
    connect(gone, &QDBusServiceWatcher::serviceUnregistered, this, &CObjectPush::OnServiceGone);
}

void CObjectPush::Start(const CPushDevice& device, const QString& path, Done done)
{
    (new CObjectPush(path, std::move(done)))->Connect(device.Address);
}

void CObjectPush::Connect(const QString& address)
{
    QDBusMessage call = QDBusMessage::createMethodCall(
        kObex, kObexRoot, QStringLiteral("org.bluez.obex.Client1"), QStringLiteral("CreateSession"));
    call << address << QVariantMap{{QStringLiteral("Target"), QStringLiteral("opp")}};
    auto* watcher =
        new QDBusPendingCallWatcher(QDBusConnection::sessionBus().asyncCall(call, kConnectMs), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this](QDBusPendingCallWatcher* answered) {
        const QDBusPendingReply<QDBusObjectPath> reply = *answered;
        if (reply.isError())
            return End(false, reply.error().message());
        m_session = reply.value().path();
        Send();
    });
}

void CObjectPush::Send()
{
    QDBusConnection bus = QDBusConnection::sessionBus();
    bus.connect(kObex, QString(), kProperties, QStringLiteral("PropertiesChanged"), this,
                SLOT(OnPropertiesChanged(QString, QVariantMap, QStringList, QDBusMessage)));
    QDBusMessage call = QDBusMessage::createMethodCall(
        kObex, m_session, QStringLiteral("org.bluez.obex.ObjectPush1"), QStringLiteral("SendFile"));
    call << m_path;
    auto* watcher = new QDBusPendingCallWatcher(bus.asyncCall(call, kConnectMs), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this](QDBusPendingCallWatcher* answered) {
        const QDBusPendingReply<QDBusObjectPath, QVariantMap> reply = *answered;
        if (reply.isError())
            return End(false, reply.error().message());
        m_transfer = reply.argumentAt<0>().path();
        OnStatus(reply.argumentAt<1>().value(QStringLiteral("Status")).toString());
        OnStatus(m_statuses.value(m_transfer));
    });
}

void CObjectPush::OnPropertiesChanged(const QString&, const QVariantMap& changed, const QStringList&,
                                      const QDBusMessage& message)
{
    const QString status = changed.value(QStringLiteral("Status")).toString();
    if (m_transfer.isEmpty())
        m_statuses.insert(message.path(), status);
    else if (message.path() == m_transfer)
        OnStatus(status);
}

void CObjectPush::OnStatus(const QString& status)
{
    if (status == QLatin1String("complete"))
        End(true, {});
    else if (status == QLatin1String("error"))
        End(false, {});
}

void CObjectPush::OnServiceGone()
{
    End(false, {});
}

void CObjectPush::End(bool sent, const QString& detail)
{
    if (!m_done)
        return;
    const Done done = std::exchange(m_done, nullptr);
    if (!m_session.isEmpty()) {
        QDBusMessage call = QDBusMessage::createMethodCall(
            kObex, kObexRoot, QStringLiteral("org.bluez.obex.Client1"), QStringLiteral("RemoveSession"));
        call << QVariant::fromValue(QDBusObjectPath(m_session));
        QDBusConnection::sessionBus().asyncCall(call, kAnswerMs);
    }
    deleteLater();
    done(sent, detail);
}
