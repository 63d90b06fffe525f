#include "forms/check_list_dialog.h"
#include "drawing/image_store.h"
#include "drawing/paint.h"
#include "drawing/screen_metrics.h"
#include "drawing/text.h"
#include "forms/field_row.h"
#include "forms/form_parts.h"
#include "settings/color_scheme.h"
#include "settings/system_colors.h"
#include "touch/virtual_keys.h"

#include <QPainter>
#include <algorithm>

namespace
{
// Design pixels.
constexpr int kRowHeight = 36; // with the hair line under it
constexpr int kMargin = 10, kGap = 8, kBoxSize = 16;

constexpr int kFontText = 0;
constexpr int kWheelNotch = 120;
} // namespace

CCheckListDialog::CCheckListDialog(const QString& title, std::vector<CRow> rows)
    : CFormDialog(title), m_rows(std::move(rows))
{
}

int CCheckListDialog::CountChecked() const
{
    return int(std::count_if(m_rows.begin(), m_rows.end(), [](const CRow& row) { return row.Checked; }));
}

int CCheckListDialog::ContentHeight(int)
{
    return int(m_rows.size()) * D(kRowHeight);
}

void CCheckListDialog::OnLayout(const QRect& client)
{
    if (client.isEmpty())
        return;
    if (m_touch.Width() == 0)
        m_touch.Attach(0, this, this, client.x(), client.y(), client.width(), client.height());
    else
        m_touch.SetArea(client);
    m_touch.Redraw(false);
}

QRect CCheckListDialog::RowRect(int index) const
{
    const QRect area = m_touch.Area();
    return {area.x(), area.y() + m_touch.Scroll() + index * D(kRowHeight), area.width(), D(kRowHeight)};
}

// ---- paint

int CCheckListDialog::RenderContent(quint32, QPainter& dc, quint32, int scroll, int width, int height)
{
    FillSolid(dc, {0, 0, width, height}, SystemColor::Window);
    dc.setFont(g_ImageStore.Font(kFontText));
    for (size_t n = 0; n < m_rows.size(); ++n) {
        const QRect rect(0, scroll + int(n) * D(kRowHeight), width, D(kRowHeight) - D(1));
        const bool selected = int(n) == m_selected;
        if (selected)
            DrawSelectionBackground(dc, rect, GetHighlightColor());
        FillSolid(dc, {0, rect.bottom() + 1, width, D(1)}, kFormHairLine);
        const QRect box(D(kMargin), rect.y() + (rect.height() - D(kBoxSize)) / 2, D(kBoxSize), D(kBoxSize));
        PaintCheckBox(dc, box, m_rows[n].Checked, true);
        dc.setPen(ToQColor(selected ? GetHighlightTextColor() : kFormInk));
        const int left = box.right() + 1 + D(kGap);
        DrawText(dc, m_rows[n].Text, QRect(left, rect.y(), width - left - D(kMargin), rect.height()),
                 kTextVCentre | kTextSingleLine | kTextNoPrefix | kTextEndEllipsis);
    }
    return ContentHeight(width);
}

void CCheckListDialog::PaintContent(QPainter& dc, const QRect& client)
{
    m_touch.PaintTo(dc, client.x(), client.y());
}

// ---- input

void CCheckListDialog::Select(int index)
{
    if (m_rows.empty())
        return;
    m_selected = std::clamp(index, 0, int(m_rows.size()) - 1);
    m_touch.EnsureVisible(QRect(0, m_selected * D(kRowHeight), 1, D(kRowHeight)));
    m_touch.Redraw(true);
}

void CCheckListDialog::Toggle(int index)
{
    m_rows[size_t(index)].Checked = !m_rows[size_t(index)].Checked;
    m_touch.Redraw(true);
}

bool CCheckListDialog::OnPress(quint32, int, int y)
{
    const int row = y / D(kRowHeight);
    if (y < 0 || row >= int(m_rows.size()))
        return false;
    m_selected = row;
    return true;
}

void CCheckListDialog::OnTap(quint32, int, int y)
{
    const int row = y / D(kRowHeight);
    if (y >= 0 && row < int(m_rows.size()))
        Toggle(row);
}

void CCheckListDialog::OnKey(int key)
{
    if (key == kKeyUp || key == kKeyDown)
        Select(m_selected + (key == kKeyUp ? -1 : 1));
    else if ((key == kKeyReturn || key == kKeySpace) && !m_rows.empty())
        Toggle(m_selected);
}

void CCheckListDialog::OnLButtonDown(QPoint at)
{
    m_touch.OnLButtonDown(at.x(), at.y());
}

void CCheckListDialog::OnMouseMove(QPoint at)
{
    m_touch.OnMouseMove(at.x(), at.y());
}

void CCheckListDialog::OnLButtonUp(QPoint at)
{
    m_touch.OnLButtonUp(at.x(), at.y());
}

void CCheckListDialog::OnWheel(int angle)
{
    m_touch.ScrollBy(angle * D(kRowHeight) / kWheelNotch);
}
