// Chooses the icon of a category among all that the store's archives offer.
// Shape: the groups as headings, a grid of the large pictures below each, scrolled by the finger.
// The store is scanned when the dialog opens, and again when the density changes under it.
#pragma once
#include "drawing/icon_store.h"
#include "forms/form_dialog.h"
#include "pages/icon_grid_layout.h"
#include "touch/i_touch_client.h"
#include "touch/touch_navigator.h"

#include <vector>

class CIconPicker : public CFormDialog, private ITouchClient
{
public:
    explicit CIconPicker(const QString& reference = QString()); // is selected at first
    QString GetReference() const; // of the selected icon; take it when Run answered kDone

    int IconCount() const { return int(m_icons.size()); }
    int GetSelected() const { return m_selected; } // -1: none
    void Select(int icon);
    QRect IconRect(int icon) const; // in the dialog's surface, scrolled
    const CIconGridLayout& Grid() const { return m_grid; }

protected:
    void OnLayout(const QRect& client) override;
    void PaintContent(QPainter& dc, const QRect& client) override;
    void OnDone() override;
    void OnKey(int key) override;
    void OnLButtonDown(QPoint at) override { m_touch.OnLButtonDown(at.x(), at.y()); }
    void OnMouseMove(QPoint at) override { m_touch.OnMouseMove(at.x(), at.y()); }
    void OnLButtonUp(QPoint at) override { m_touch.OnLButtonUp(at.x(), at.y()); }
    void OnWheel(int angle) override;
    int ContentPartCount() const override { return std::max(IconCount(), 1); }
    CPaintedPart ContentPart(int index) const override;
    void PressContentPart(int index) override { Select(index); }

private:
    int RenderContent(quint32 value, QPainter& dc, quint32 paintArgument, int scroll, int width,
                      int height) override;
    bool OnPress(quint32 value, int x, int y) override;
    void OnDragStart(quint32) override {}
    void OnTap(quint32 value, int x, int y) override;
    void Scan();
    void LayOut(int width);
    void PaintHeading(QPainter& dc, const QRect& rect, const QString& group) const;
    void PaintCell(QPainter& dc, const QRect& rect, int icon) const;
    QString EmptyText() const;

    QString m_reference; // of the selected icon, or what to select
    CIconGroups m_groups;
    std::vector<const CIconEntry*> m_icons; // of m_groups, in order
    int m_scannedFor = 0;                   // density
    int m_selected = -1;
    CIconGridLayout m_grid;
    CTouchNavigator m_touch;
};
