// The folder of this user's sockets and locks: $XDG_RUNTIME_DIR, else one of our own below /tmp
// that nobody else may enter.
#pragma once
#include <QByteArray>

// Empty when there is none that is the user's alone: no instance can be found or be one then.
QByteArray RuntimeFolder();
