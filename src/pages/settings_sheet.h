// The screen of the settings: ten cells, each of which opens a page. All pages edit one copy of the
// settings; "Done" takes it over and writes the settings file, "Cancel" drops it.
// Categories keep themselves: what is changed of them stands at once.
#pragma once
#include "forms/row_list_dialog.h"
#include "settings/settings.h"

class CSettingsSheet : public CRowListDialog
{
public:
    static constexpr int kNoPage = 5; // from here on no page opens by itself
    // The cells in order; the first seven are the pages.
    enum Cell { kColors = 7, kCategories, kAbout, kCellCount };

    explicit CSettingsSheet(int startPage = kNoPage);
    CSettings& Settings() { return m_settings; } // the copy
    int RowHeight() const override;

protected:
    int RowCount() const override { return kCellCount; }
    void PaintRow(QPainter& dc, int index, const QRect& rect, bool selected) override;
    void OnRowTapped(int index, int x, bool wasSelected) override;
    CPaintedPart RowPart(int index) const override;
    void TakeFocus() override;
    void OnDone() override;

private:
    CSettings m_settings;
    int m_startPage;
};
