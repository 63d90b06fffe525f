// Files over Bluetooth: which devices would take one, and the sending, through the system's own
// services (org.bluez on the system bus, org.bluez.obex on the session bus).
// Nothing here waits long: a service that does not answer counts as absent.
#pragma once
#include <QHash>
#include <QObject>
#include <QString>
#include <QStringList>
#include <QVariantMap>
#include <functional>
#include <vector>

class QDBusMessage;

struct CPushDevice {
    QString Address; // as the system writes it, "00:11:22:33:44:55"
    QString Name;    // the owner's name for it
};

// The devices that the owner has paired and that take files; empty without Bluetooth, without a
// powered adapter, or without the object push service.
std::vector<CPushDevice> ListPushDevices();

// Sends one file and tells once how it ended, with what the system said of a failure. Returns at
// once. The file must stay until then. The object deletes itself after it has told.
class CObjectPush : public QObject
{
    Q_OBJECT
public:
    using Done = std::function<void(bool sent, const QString& detail)>;
    static void Start(const CPushDevice& device, const QString& path, Done done);

private Q_SLOTS:
    void OnPropertiesChanged(const QString& interface, const QVariantMap& changed,
                             const QStringList& invalidated, const QDBusMessage& message);
    void OnServiceGone();

private:
    CObjectPush(const QString& path, Done done);
    void Connect(const QString& address);
    void Send();
    void OnStatus(const QString& status);
    void End(bool sent, const QString& detail);

    QString m_path;
    Done m_done;
    QString m_session, m_transfer;      // object paths, once there are some
    QHash<QString, QString> m_statuses; // by transfer: a small file can be through before its path is told
};
