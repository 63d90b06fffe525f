#include "keyboard_stand_in.h"
#include "desktop/keyboard_service.h"

#include <QCoreApplication>
#include <QDBusConnection>
#include <QObject>
#include <cstdio>
#include <cstring>

class CKeyboardStandIn : public QObject
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "sm.puri.OSK0")
    Q_PROPERTY(bool Visible MEMBER m_visible)

public Q_SLOTS:
    void SetVisible(bool visible)
    {
        m_visible = visible;
        std::printf("set %d\n", visible);
        std::fflush(stdout);
    }

private:
    bool m_visible = false;
};

int RunKeyboardRole(int argc, char** argv)
{
    if (argc < 2)
        return -1;
    if (std::strcmp(argv[1], "--keyboard-service") == 0) {
        QDBusConnection bus = QDBusConnection::sessionBus();
        CKeyboardStandIn keyboard;
        const bool up =
            bus.registerObject("/sm/puri/OSK0", &keyboard,
                               QDBusConnection::ExportAllSlots | QDBusConnection::ExportAllProperties) &&
            bus.registerService("sm.puri.OSK0");
        std::puts(up ? "up" : "no");
        std::fflush(stdout);
        return up ? QCoreApplication::exec() : 1;
    }
    if (std::strcmp(argv[1], "--keyboard-client") == 0) {
        std::printf("%d", IsOnScreenKeyboardShown());
        ShowOnScreenKeyboard(true);
        std::printf("%d", IsOnScreenKeyboardShown());
        ShowOnScreenKeyboard(false);
        std::printf("%d", IsOnScreenKeyboardShown());
        return 0;
    }
    return -1;
}

#include "keyboard_stand_in.moc"
