// A question with two big numbered cells: a tap, its number's key, or Enter on the selected one
// answers it.
#pragma once
#include "forms/cell_grid.h"
#include "forms/form_dialog.h"

class CTwoChoiceDialog : public CFormDialog
{
public:
    // Run answers 1 or 2, or kCancelled.
    CTwoChoiceDialog(const QString& title, const QString& question, const QString& first,
                     const QString& firstHint, const QString& second, const QString& secondHint);
    const QString& GetQuestion() const { return m_question; }
    const CCellGrid& Cells() const { return m_cells; }

protected:
    int GetMenuBarId() const override;
    int ContentHeight(int width) override;
    void OnLayout(const QRect& client) override;
    void PaintContent(QPainter& dc, const QRect& client) override;
    void OnKey(int key) override;
    void OnKeyUp(int key) override;
    void OnLButtonDown(QPoint at) override;
    void OnMouseMove(QPoint at) override;
    void OnLButtonUp(QPoint at) override;
    int ContentPartCount() const override { return m_cells.GetCount(); }
    CPaintedPart ContentPart(int index) const override;
    void PressContentPart(int index) override { End(index + 1); }

private:
    int QuestionHeight(int width) const;

    QString m_question;
    CCellGrid m_cells{2, 1};
    int m_pressed = -1; // the cell that the finger went down on
};
