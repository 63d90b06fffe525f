#include "platform/volume_path.h"

#include <QFileInfo>
#include <QStandardPaths>

QString DefaultVolumePath()
{
    const QString given = qEnvironmentVariable("TESSERA_VOLUME");
    if (!given.isEmpty())
        return QFileInfo(given).absoluteFilePath();
    return QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) +
           QStringLiteral("/tessera/pim.vol");
}
