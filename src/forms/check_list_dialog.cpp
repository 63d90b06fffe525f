#include "forms/check_list_dialog.h"
#include "drawing/screen_metrics.h"
#include "forms/field_row.h"
#include "touch/virtual_keys.h"

#include <algorithm>

namespace
{
constexpr int kMargin = 10, kGap = 8, kBoxSize = 16; // design pixels
} // namespace

CCheckListDialog::CCheckListDialog(const QString& title, std::vector<CRow> rows)
    : CRowListDialog(title), m_rows(std::move(rows))
{
}

int CCheckListDialog::CountChecked() const
{
    return int(std::count_if(m_rows.begin(), m_rows.end(), [](const CRow& row) { return row.Checked; }));
}

void PaintCheckedText(QPainter& dc, const QString& text, bool checked, const QRect& rect, bool selected)
{
    const QRect box(rect.x() + D(kMargin), rect.y() + (rect.height() - D(kBoxSize)) / 2, D(kBoxSize),
                    D(kBoxSize));
    PaintCheckBox(dc, box, checked, true);
    const int left = box.x() + box.width() + D(kGap);
    PaintRowText(dc, text, {left, rect.y(), rect.x() + rect.width() - D(kMargin) - left, rect.height()},
                 selected);
}

void CCheckListDialog::PaintRow(QPainter& dc, int index, const QRect& rect, bool selected)
{
    PaintCheckedText(dc, m_rows[size_t(index)].Text, IsChecked(index), rect, selected);
}

void CCheckListDialog::OnRowTapped(int index, int, bool)
{
    m_rows[size_t(index)].Checked = !IsChecked(index);
    RowsChanged();
}

void CCheckListDialog::OnKey(int key)
{
    if (key == kKeySpace && GetSelected() < RowCount())
        OnRowTapped(GetSelected(), 0, true);
    else
        CRowListDialog::OnKey(key);
}

CPaintedPart CCheckListDialog::RowPart(int index) const
{
    CPaintedPart part;
    part.Name = m_rows[size_t(index)].Text;
    part.Role = QAccessible::CheckBox;
    part.Checkable = true;
    part.Checked = IsChecked(index);
    return part;
}
