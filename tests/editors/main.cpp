// The tests of this folder need an application object, but no display.
#include <QApplication>
#include <gtest/gtest.h>

#include "drawing/image_store.h"

int main(int argc, char** argv)
{
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    LoadResourceLibraries(QString());
    testing::InitGoogleTest(&argc, argv);
    const int result = RUN_ALL_TESTS();
    g_ImageStore.Clear(); // fonts must not outlive the application object
    return result;
}
