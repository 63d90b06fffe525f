// A time of day by three grids of big cells: hours, minutes, and before or after noon.
#pragma once
#include "forms/cell_grid.h"
#include "forms/form_dialog.h"
#include "util/date_time.h"

#include <array>

class CTimePickerDialog : public CFormDialog
{
public:
    explicit CTimePickerDialog(DATE time); // its day is dropped
    // Of the selected cells: whole five minutes.
    DATE GetTime() const;
    enum Grid { kHours, kMinutes, kHalves, kGridCount };
    const CCellGrid& Cells(Grid grid) const { return m_grids[grid]; }
    Grid ActiveGrid() const { return m_active; }

protected:
    int ContentHeight(int width) override;
    void OnLayout(const QRect& client) override;
    void PaintContent(QPainter& dc, const QRect& client) override;
    void OnKey(int key) override;
    void OnLButtonDown(QPoint at) override;

private:
    void AddCells();
    void SelectTime(DATE time);
    Grid NextGrid() const;

    bool m_twelveHours;
    std::array<CCellGrid, kGridCount> m_grids;
    Grid m_active = kHours;
};
