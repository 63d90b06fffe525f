#include "keyboard_stand_in.h"
#include "push_stand_in.h"

#include <QCoreApplication>
#include <gtest/gtest.h>

int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QCoreApplication app(argc, argv);
    if (const int code = RunKeyboardRole(argc, argv); code >= 0)
        return code;
    if (const int code = RunPushRole(argc, argv); code >= 0)
        return code;
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
