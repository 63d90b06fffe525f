// A window of a hand's size, and dialogs that run in it while the test plays the user.
#pragma once
#include <QTest>
#include <QTimer>
#include <functional>
#include <gtest/gtest.h>

#include "drawing/image_store.h"
#include "drawing/screen_metrics.h"
#include "forms/form_dialog.h"
#include "settings/settings.h"

// Counts what reaches it, to tell whether a dialog lets anything through.
class CCountingWindow : public QWidget
{
public:
    int Events = 0;

protected:
    void keyPressEvent(QKeyEvent*) override { ++Events; }
    void keyReleaseEvent(QKeyEvent*) override { ++Events; }
    void mousePressEvent(QMouseEvent*) override { ++Events; }
    void wheelEvent(QWheelEvent*) override { ++Events; }
    void contextMenuEvent(QContextMenuEvent*) override { ++Events; }
};

class CFormsTest : public testing::Test
{
protected:
    void SetUp() override
    {
        g_ScreenMetrics.Init(96, {240, 320});
        Window.resize(240, 320);
        Window.show();
    }
    void TearDown() override { static_cast<CSettingsValues&>(g_Settings) = CSettings(); }

    // Runs the dialog, with `act` as what the user does; kLeftOpen when that did not end it.
    static constexpr int kLeftOpen = 99;
    int Run(CFormDialog& dialog, std::function<void()> act)
    {
        QTimer::singleShot(0, &Window, [&dialog, act = std::move(act)] {
            act();
            dialog.End(kLeftOpen);
        });
        return dialog.Run(&Window);
    }
    static void Key(QWidget& widget, QEvent::Type type, int key, bool repeated = false)
    {
        QKeyEvent event(type, key, Qt::NoModifier, QString(), repeated);
        QCoreApplication::sendEvent(&widget, &event);
    }
    static void Click(QWidget& widget, QPoint at) { QTest::mouseClick(&widget, Qt::LeftButton, {}, at); }
    static QPoint KeyCentre(const CFormDialog& dialog, int index)
    {
        return CSoftKeyBar::KeyRect(dialog.Layout().Keys, index, dialog.SoftKeys().GetCount()).center();
    }
    CCountingWindow Window;
};
