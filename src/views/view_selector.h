// The six views as a page of big cells, of which one is chosen.
#pragma once
#include "forms/cell_grid.h"
#include "forms/form_dialog.h"

class CViewSelector : public CFormDialog
{
public:
    explicit CViewSelector(int currentKind);
    int Choose(QWidget* owner); // the ViewKind, -1 for none
    const CCellGrid& Cells() const { return m_grid; }

protected:
    int GetMenuBarId() const override;
    int ContentHeight(int width) override;
    void OnLayout(const QRect& client) override;
    void PaintContent(QPainter& dc, const QRect& client) override;
    void OnDone() override { EndWith(m_grid.GetSelected()); }
    void OnKey(int key) override;
    void OnLButtonDown(QPoint at) override;
    void OnLButtonUp(QPoint at) override;
    int ContentPartCount() const override { return m_grid.GetCount(); }
    CPaintedPart ContentPart(int index) const override;
    void PressContentPart(int index) override { EndWith(index); }

private:
    void EndWith(int index);
    CCellGrid m_grid{2, 3};
};
