// Asks once, after installation, which key of the device's shell is to open the calendar. The shell
// reads the answer from the registry; which keys it has is its own affair.
#pragma once
#include "forms/form_dialog.h"

#include <array>

class CSoftkeyDialog : public CFormDialog
{
public:
    enum Target { kLeft, kRight, kNone, kTargetCount };
    static constexpr int kAnswerLeft = 1, kAnswerRight = 2; // of Run, and 0 where nothing is assigned

    CSoftkeyDialog();
    QRect TargetRect(int target) const; // in the dialog's surface

protected:
    int GetMenuBarId() const override;
    void OnLayout(const QRect& client) override;
    void PaintContent(QPainter& dc, const QRect& client) override;
    int ContentPartCount() const override { return kTargetCount; }
    CPaintedPart ContentPart(int index) const override;
    void PressContentPart(int index) override { Choose(index); }
    void OnKey(int key) override;
    void OnKeyUp(int key) override;
    void OnLButtonDown(QPoint at) override;
    void OnLButtonUp(QPoint at) override;

private:
    void PaintLines(QPainter& dc, const QRect& client) const;
    int HitTarget(QPoint at) const;
    void Choose(int target);

    QRect m_question;
    std::array<QRect, kTargetCount> m_targets;
    int m_selected = kLeft, m_pressed = -1;
};
