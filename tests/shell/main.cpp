// The tests of this folder need an application object and a home of their own, but no display.
#include "drawing/image_store.h"

#include <QApplication>
#include <QDir>
#include <QTemporaryDir>
#include <gtest/gtest.h>

int main(int argc, char** argv)
{
    const QTemporaryDir home;
    for (const char* variable : {"HOME", "XDG_DATA_HOME", "XDG_CONFIG_HOME", "XDG_RUNTIME_DIR"})
        qputenv(variable, home.path().toUtf8());
    for (const char* variable :
         {"TESSERA_VOLUME", "XDG_CURRENT_DESKTOP", "XDG_ACTIVATION_TOKEN", "LC_ALL", "LC_MESSAGES", "LANG"})
        qunsetenv(variable);
    QDir().mkpath(home.path() + "/tessera");
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=/nonexistent");
    QApplication app(argc, argv);
    testing::InitGoogleTest(&argc, argv);
    const int result = RUN_ALL_TESTS();
    g_ImageStore.Clear(); // fonts must not outlive the application object
    return result;
}
