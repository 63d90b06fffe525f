// A list of texts with a check box each, under soft keys "Done" and "Cancel".
#pragma once
#include "forms/row_list_dialog.h"

#include <vector>

class CCheckListDialog : public CRowListDialog
{
public:
    struct CRow {
        QString Text;
        bool Checked = false;
    };
    CCheckListDialog(const QString& title, std::vector<CRow> rows);
    const std::vector<CRow>& Rows() const { return m_rows; }
    bool IsChecked(int index) const { return m_rows[size_t(index)].Checked; }
    int CountChecked() const;

protected:
    int RowCount() const override { return int(m_rows.size()); }
    void PaintRow(QPainter& dc, int index, const QRect& rect, bool selected) override;
    void OnRowTapped(int index, int x, bool wasSelected) override;
    void OnKey(int key) override;
    CPaintedPart RowPart(int index) const override;

private:
    std::vector<CRow> m_rows;
};

// The paint of such a row: the box, and the text right of it.
void PaintCheckedText(QPainter& dc, const QString& text, bool checked, const QRect& rect, bool selected);
