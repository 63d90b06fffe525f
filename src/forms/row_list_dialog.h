// The base of dialogs that show a scrolled list of rows of one height, painted by the dialog.
// Shape: a dialog brings the number of its rows, paints each, and answers a tap or Enter on one.
// Units: surface pixels; columns within a row count from its left edge.
#pragma once
#include "forms/form_dialog.h"
#include "touch/i_touch_client.h"
#include "touch/touch_navigator.h"

class CRowListDialog : public CFormDialog, private ITouchClient
{
public:
    virtual int RowHeight() const;  // of each, with the hair line under it
    QRect RowRect(int index) const; // in the dialog's surface, scrolled
    int GetSelected() const { return m_selected; }
    void Select(int index); // brings it into view; the nearest one there is

protected:
    using CFormDialog::CFormDialog;

    // ---- what a dialog brings
    virtual int RowCount() const = 0;
    virtual void PaintRow(QPainter& dc, int index, const QRect& rect, bool selected) = 0; // ground is done
    virtual void OnRowTapped(int index, int x, bool wasSelected) = 0;
    virtual void OnRowEntered(int index) { OnRowTapped(index, 0, true); }
    virtual bool ShowsSelection() const { return true; }
    virtual int HeadHeight(int /*width*/) { return 0; } // of what stands above the rows
    virtual void PaintHead(QPainter&, const QRect&) {}
    virtual CPaintedPart RowPart(int index) const = 0; // name, value, role and checks

    // ---- what a dialog uses
    void RowsChanged();          // their number or their texts
    int FirstVisibleRow() const; // that is not cut off at its top
    QRect HeadRect() const { return m_head; }

    int ContentHeight(int width) override;
    void OnLayout(const QRect& client) override;
    void PaintContent(QPainter& dc, const QRect& client) override;
    void OnKey(int key) override;
    void OnLButtonDown(QPoint at) override { m_touch.OnLButtonDown(at.x(), at.y()); }
    void OnMouseMove(QPoint at) override { m_touch.OnMouseMove(at.x(), at.y()); }
    void OnLButtonUp(QPoint at) override { m_touch.OnLButtonUp(at.x(), at.y()); }
    void OnWheel(int angle) override;
    int ContentPartCount() const override { return RowCount(); }
    CPaintedPart ContentPart(int index) const override;
    void PressContentPart(int index) override;

private:
    int RenderContent(quint32 value, QPainter& dc, quint32 paintArgument, int scroll, int width,
                      int height) override;
    bool OnPress(quint32 value, int x, int y) override;
    void OnDragStart(quint32) override {}
    void OnTap(quint32 value, int x, int y) override;
    int RowAt(int y) const; // of the content; -1 past the last

    int m_selected = 0;
    bool m_wasSelected = true; // the row under the finger, before it came down
    QRect m_head;
    CTouchNavigator m_touch;
};

// The paint of a row's text: one line, cut with an ellipsis.
void PaintRowText(QPainter& dc, const QString& text, const QRect& rect, bool selected, bool right = false);
