// The screen of the settings: ten cells, each of which opens a page. All pages edit one copy of the
// settings; "Done" takes it over and writes the settings file, "Cancel" drops it.
// Categories keep themselves: what is changed of them stands at once.
#pragma once
#include "forms/cell_grid.h"
#include "forms/form_dialog.h"
#include "settings/settings.h"

class CSettingsSheet : public CFormDialog
{
public:
    static constexpr int kNoPage = 7; // this and above: no page opens by itself
    // The cells in order; the first seven are the pages.
    enum Cell { kColors = 7, kCategories, kAbout, kCellCount };

    explicit CSettingsSheet(int startPage = kNoPage);
    int GetSelected() const { return m_cells.GetSelected(); }
    QRect CellRect(int index) const { return m_cells.CellRect(index); } // in the dialog's surface
    CSettings& Settings() { return m_settings; }                        // the copy

protected:
    int ContentHeight(int width) override;
    void OnLayout(const QRect& client) override;
    void PaintContent(QPainter& dc, const QRect& client) override;
    int ContentPartCount() const override { return m_cells.GetCount(); }
    CPaintedPart ContentPart(int index) const override;
    void PressContentPart(int index) override;
    void TakeFocus() override;
    void OnKey(int key) override;
    void OnLButtonDown(QPoint at) override;
    void OnLButtonUp(QPoint at) override;
    void OnDone() override;

private:
    void Open(int cell);

    CSettings m_settings;
    CCellGrid m_cells;
    int m_startPage;
    int m_pressed = -1; // the cell where the finger went down
};
