// Bringing a window of ours to the foreground.
#pragma once
#include <QByteArray>

class QWindow;

// The token of the process that was really started by the user, as it came with its message;
// empty where the desktop uses none. A compositor without a token may only mark the window.
void BringToForeground(QWindow& window, const QByteArray& token);
