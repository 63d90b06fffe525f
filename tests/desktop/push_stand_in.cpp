#include "push_stand_in.h"
#include "desktop/object_push.h"

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusContext>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusObjectPath>
#include <QFile>
#include <QTimer>
#include <cstdio>
#include <cstring>

using CInterfaces = QMap<QString, QVariantMap>;
using CManagedObjects = QMap<QDBusObjectPath, CInterfaces>;
Q_DECLARE_METATYPE(CInterfaces)
Q_DECLARE_METATYPE(CManagedObjects)

namespace
{
const QString kTransfer = QStringLiteral("/org/bluez/obex/client/session0/transfer0");

void Tell(const QString& line)
{
    std::printf("%s\n", qPrintable(line));
    std::fflush(stdout);
}

QVariantMap Device(const QString& address, const QString& name, bool paired, const QStringList& services)
{
    return {{"Address", address}, {"Alias", name}, {"Paired", paired}, {"UUIDs", services}};
}
} // namespace

class CBluezStandIn : public QObject
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.DBus.ObjectManager")

public:
    explicit CBluezStandIn(bool powered) : m_powered(powered) {}

public Q_SLOTS:
    CManagedObjects GetManagedObjects()
    {
        const QString push = "00001105-0000-1000-8000-00805F9B34FB";
        const QString audio = "0000110b-0000-1000-8000-00805f9b34fb";
        const auto device = [](const QVariantMap& values) {
            return CInterfaces{{"org.bluez.Device1", values}};
        };
        return {
            {QDBusObjectPath("/org/bluez/hci0"), {{"org.bluez.Adapter1", {{"Powered", m_powered}}}}},
            {QDBusObjectPath("/org/bluez/hci0/dev_1"),
             device(Device("00:00:00:00:00:01", "Tablet", true, {push}))},
            {QDBusObjectPath("/org/bluez/hci0/dev_2"),
             device(Device("00:00:00:00:00:02", "Ears", true, {audio}))},
            {QDBusObjectPath("/org/bluez/hci0/dev_3"),
             device(Device("00:00:00:00:00:03", "Guest", false, {push}))},
            {QDBusObjectPath("/org/bluez/hci0/dev_4"), device(Device("00:00:00:00:00:04", "", true, {}))},
        };
    }

private:
    bool m_powered;
};

// How it behaves stands in the name of the device's address: see the test.
class CObexStandIn : public QObject, protected QDBusContext
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.bluez.obex.Client1")

public Q_SLOTS:
    QDBusObjectPath CreateSession(const QString& address, const QVariantMap& options)
    {
        Tell("session " + address + ' ' + options.value("Target").toString());
        if (address == "refuse")
            sendErrorReply("org.bluez.obex.Error.Failed", "The person said no");
        s_address = address;
        return QDBusObjectPath("/org/bluez/obex/client/session0");
    }
    void RemoveSession(const QDBusObjectPath& session) { Tell("removed " + session.path()); }

public:
    static QString s_address;
};
QString CObexStandIn::s_address;

class CSessionStandIn : public QObject
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.bluez.obex.ObjectPush1")

public Q_SLOTS:
    QDBusObjectPath SendFile(const QString& path, QVariantMap& properties)
    {
        QFile file(path);
        Tell("file " + QString::fromUtf8(file.open(QIODevice::ReadOnly) ? file.readAll() : "unreadable"));
        properties = {{"Status", "queued"}};
        const QString address = CObexStandIn::s_address;
        if (address == "at once")
            Change("complete"); // before the answer
        else if (address == "vanish")
            QTimer::singleShot(50, [] { QCoreApplication::exit(0); });
        else
            QTimer::singleShot(50, this, [this, address] {
                Change("active");
                Change(address == "break" ? "error" : "complete");
            });
        return QDBusObjectPath(kTransfer);
    }

private:
    static void Change(const QString& status)
    {
        QDBusMessage signal =
            QDBusMessage::createSignal(kTransfer, "org.freedesktop.DBus.Properties", "PropertiesChanged");
        signal << QStringLiteral("org.bluez.obex.Transfer1") << QVariantMap{{"Status", status}}
               << QStringList();
        QDBusConnection::sessionBus().send(signal);
    }
};

namespace
{
int RunServices(const char* kind)
{
    qDBusRegisterMetaType<CInterfaces>();
    qDBusRegisterMetaType<CManagedObjects>();
    QDBusConnection bus = QDBusConnection::sessionBus();
    CBluezStandIn bluez(std::strcmp(kind, "off") != 0);
    CObexStandIn obex;
    CSessionStandIn session;
    bool up =
        bus.registerObject("/", &bluez, QDBusConnection::ExportAllSlots) && bus.registerService("org.bluez");
    if (std::strcmp(kind, "no-obex") != 0)
        up = up && bus.registerObject("/org/bluez/obex", &obex, QDBusConnection::ExportAllSlots) &&
             bus.registerObject("/org/bluez/obex/client/session0", &session,
                                QDBusConnection::ExportAllSlots) &&
             bus.registerService("org.bluez.obex");
    Tell(up ? "up" : "no");
    return up ? QCoreApplication::exec() : 1;
}

int SendFile(const char* address, const char* path)
{
    CObjectPush::Start({address, {}}, path, [](bool sent, const QString& detail) {
        Tell(QString(sent ? "sent " : "failed ") + detail);
        QCoreApplication::processEvents(); // the goodbye leaves before we do
        QCoreApplication::exit(0);
    });
    QTimer::singleShot(20000, [] { QCoreApplication::exit(1); });
    return QCoreApplication::exec();
}
} // namespace

int RunPushRole(int argc, char** argv)
{
    if (argc == 3 && std::strcmp(argv[1], "--bluetooth-services") == 0)
        return RunServices(argv[2]);
    if (argc == 2 && std::strcmp(argv[1], "--push-devices") == 0) {
        for (const CPushDevice& device : ListPushDevices())
            Tell(device.Address + ' ' + device.Name);
        return 0;
    }
    if (argc == 4 && std::strcmp(argv[1], "--push-file") == 0)
        return SendFile(argv[2], argv[3]);
    return -1;
}

#include "push_stand_in.moc"
