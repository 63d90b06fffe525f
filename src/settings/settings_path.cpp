#include "settings/settings_path.h"

#include "platform/registry.h"

#include <QStandardPaths>

QString FindInstallFolder()
{
    const std::optional<QString> path = CRegistry::ReadString(kRegistryKey, QStringLiteral("InstallPath"));
    if (path && !path->isEmpty())
        return *path;
    const QString data = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation);
    return data.isEmpty() ? QString() : data + QStringLiteral("/tessera");
}
