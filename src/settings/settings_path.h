// Where the program's own files lie.
#pragma once
#include <QString>

inline const QString kSettingsFileName = QStringLiteral("ZELVCalendar.ini");

// The install folder: InstallPath of the registry; without it $XDG_DATA_HOME/tessera, with
// ~/.local/share in the place of an unset XDG_DATA_HOME.
QString FindInstallFolder();
