#include "desktop/start_environment.h"

#include <QFile>
#include <QList>

namespace
{
QByteArray Contents(const char* path)
{
    QFile file{QString::fromLatin1(path)};
    return file.open(QIODevice::ReadOnly) ? file.read(4096) : QByteArray();
}
} // namespace

CStartEnvironment::CStartEnvironment()
{
    Put("XDG_CURRENT_DESKTOP", "Tessera");
    Put("QT_QPA_PLATFORMTHEME", nullptr);
    if (IsHandheld() && !qEnvironmentVariableIsSet("QT_WAYLAND_DISABLE_WINDOWDECORATION"))
        Put("QT_WAYLAND_DISABLE_WINDOWDECORATION", "1");
}

void CStartEnvironment::Put(const char* name, const char* value)
{
    m_saved.push_back({name, qEnvironmentVariableIsSet(name) ? std::optional(qgetenv(name)) : std::nullopt});
    if (value)
        qputenv(name, value);
    else
        qunsetenv(name);
}

void CStartEnvironment::Restore()
{
    for (const Saved& saved : m_saved) {
        if (saved.Value)
            qputenv(saved.Name, *saved.Value);
        else
            qunsetenv(saved.Name);
    }
    m_saved.clear();
}

bool IsHandheld(const QByteArray& desktops, const QByteArray& machineInfo, const QByteArray& chassisType)
{
    for (const QByteArray& desktop : desktops.toLower().split(':')) {
        if (desktop == "phosh" || desktop == "plasma-mobile" || desktop.startsWith("sxmo"))
            return true;
    }
    for (QByteArray line : machineInfo.split('\n')) {
        if (!line.startsWith("CHASSIS="))
            continue;
        line = line.mid(8).replace('"', "").trimmed();
        return line == "handset" || line == "tablet";
    }
    const int type = chassisType.trimmed().toInt(); // SMBIOS: 11 hand held, 30 tablet
    return type == 11 || type == 30;
}

bool IsHandheld()
{
    return IsHandheld(qgetenv("XDG_CURRENT_DESKTOP") + ':' +
                          qgetenv("PLASMA_PLATFORM").replace("phone:", "plasma-mobile:"),
                      Contents("/etc/machine-info"), Contents("/sys/class/dmi/id/chassis_type"));
}
