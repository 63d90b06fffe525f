#include "forms/forms_fixture.h"
#include "pages/softkey_dialog.h"
#include "platform/registry.h"

#include <QTemporaryDir>

TEST_F(CFormsTest, AKeyOfTheShellIsToldInTheRegistry)
{
    using Dialog = CSoftkeyDialog;
    const struct {
        int Tapped; // a target, or -1 for the keys that follow
        std::vector<Qt::Key> Keys;
        int Result;
        bool Stored;
    } kCases[] = {
        {Dialog::kLeft, {}, 1, true},
        {Dialog::kRight, {}, 2, true},
        {Dialog::kNone, {}, 0, false},
        {-1, {Qt::Key_Return}, 1, true},
        {-1, {Qt::Key_Right, Qt::Key_Return}, 2, true},
        {-1, {Qt::Key_Right, Qt::Key_Left, Qt::Key_Return}, 1, true},
        {-1, {Qt::Key_Down, Qt::Key_Return}, 0, false},
        {-1, {Qt::Key_Down, Qt::Key_Up, Qt::Key_Return}, 1, true},
        {-1, {Qt::Key_F1}, 1, true},
        {-1, {Qt::Key_F2}, 2, true},
        {-1, {Qt::Key_Escape}, 0, false},
    };
    for (size_t n = 0; n < std::size(kCases); ++n) {
        SCOPED_TRACE(n);
        const auto& c = kCases[n];
        const QTemporaryDir folder;
        CRegistry::SetFolder(folder.path());
        Dialog dialog;
        EXPECT_EQ(Run(dialog,
                      [&] {
                          if (c.Tapped >= 0)
                              Click(dialog, dialog.TargetRect(c.Tapped).center());
                          for (const Qt::Key key : c.Keys)
                              QTest::keyClick(&dialog, key);
                      }),
                  c.Result);
        EXPECT_EQ(CRegistry::ReadString(kRegistryKey, "AppName").value_or("-"),
                  c.Stored ? "ZELV Calendar" : "-");
    }
    CRegistry::SetFolder({});
}

TEST_F(CFormsTest, TheTargetsOfTheShellsKeysKeepApart)
{
    for (const QSize size : {QSize(240, 320), QSize(320, 240), QSize(176, 220), QSize(800, 480)}) {
        Window.resize(size);
        CSoftkeyDialog dialog;
        Run(dialog, [&] {
            for (int a = 0; a < CSoftkeyDialog::kTargetCount; ++a) {
                EXPECT_TRUE(dialog.Layout().Client.contains(dialog.TargetRect(a)));
                for (int b = 0; b < a; ++b)
                    EXPECT_FALSE(dialog.TargetRect(a).intersects(dialog.TargetRect(b)));
            }
        });
    }
}
