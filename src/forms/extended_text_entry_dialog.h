// The help for a text field: a full-screen editor, a canned phrase or a contact, in three big cells.
// Run answers kDone when the text changed hands; kCancelled also after an aid that was cancelled.
#pragma once
#include "forms/cell_grid.h"
#include "forms/form_dialog.h"

class CExtendedTextEntryDialog : public CFormDialog
{
public:
    enum Mode { kSubject = 1, kLocation = 2, kNote = 3 };

    // The selection counts line ends as one; a start of -1 is unknown.
    CExtendedTextEntryDialog(const QString& text, int selectionStart, int selectionEnd, Mode mode);
    const QString& GetText() const { return m_text; }
    int GetCaret() const { return m_caret; } // -1: nothing was taken
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
    CPaintedPart ContentPart(int index) const override { return CellPart(m_cells, index, CurrentFactor()); }
    void PressContentPart(int index) override { RunAid(index); }

private:
    void RunAid(int cell);
    bool EditFullScreen();
    void Insert(const QString& text);

    QString m_text;
    int m_start, m_end;
    Mode m_mode;
    int m_caret = -1;
    CCellGrid m_cells{1, 3};
    int m_pressed = -1; // the cell that the finger went down on
};

// What a field takes of an edited text: one line, but for a note.
QString TextForField(QString text, CExtendedTextEntryDialog::Mode mode);
