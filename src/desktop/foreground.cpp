#include "desktop/foreground.h"

#include <QWindow>

void BringToForeground(QWindow& window, const QByteArray& token)
{
    if (!token.isEmpty())
        qputenv("XDG_ACTIVATION_TOKEN", token); // Qt takes it from there, once
    window.raise();
    window.requestActivate();
    qunsetenv("XDG_ACTIVATION_TOKEN");
}
