// A window of a hand's size, and dialogs that run in it while the test plays the user.
#pragma once
#include <QComboBox>
#include <QTest>
#include <QTimer>
#include <functional>
#include <gtest/gtest.h>

#include "drawing/image_store.h"
#include "drawing/screen_metrics.h"
#include "forms/field_form.h"
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

    // ---- a hand on a form of rows
    static const CFieldRow* Row(const CFieldForm& form, quint32 id)
    {
        for (const CFieldRow& row : form.Rows()) {
            if (row.Id == id && row.Type != kRowHeader) // whose header has the same number
                return &row;
        }
        return nullptr;
    }
    static void Select(CFieldForm& form, quint32 id)
    {
        const CFieldRow* const row = Row(form, id);
        ASSERT_NE(row, nullptr) << id;
        form.SelectRow(int(row - form.Rows().data()));
        ASSERT_EQ(form.GetSelectedRow(), row - form.Rows().data()) << id;
    }
    template <typename Control> static Control* Live(CFieldForm& form)
    {
        for (Control* control : form.findChildren<Control*>()) {
            if (control->isVisible())
                return control;
        }
        ADD_FAILURE() << "no such control";
        return nullptr;
    }
    static void Choose(CFieldForm& form, quint32 id, int index) // by keys
    {
        Select(form, id);
        auto* list = qobject_cast<QComboBox*>(form.focusWidget());
        ASSERT_TRUE(list) << id;
        const int steps = (index - list->currentIndex() + list->count()) % list->count();
        for (int n = 0; n < steps; ++n)
            QTest::keyClick(list, Qt::Key_Right);
    }
    CCountingWindow Window;
};
