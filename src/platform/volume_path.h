// Where the user's calendar lies.
#pragma once
#include <QString>

// TESSERA_VOLUME; without it $XDG_DATA_HOME/tessera/pim.vol.
QString DefaultVolumePath();
