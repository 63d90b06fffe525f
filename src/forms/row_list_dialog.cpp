#include "forms/row_list_dialog.h"
#include "drawing/image_store.h"
#include "drawing/paint.h"
#include "drawing/screen_metrics.h"
#include "drawing/text.h"
#include "forms/form_parts.h"
#include "settings/color_scheme.h"
#include "settings/system_colors.h"
#include "touch/device_pixels.h"
#include "touch/virtual_keys.h"

#include <QPainter>
#include <algorithm>

namespace
{
constexpr int kRowHeight = 36; // design pixels
constexpr int kFontText = 0;
constexpr int kWheelNotch = 120;
} // namespace

int CRowListDialog::RowHeight() const
{
    return D(kRowHeight);
}

// ---- layout

int CRowListDialog::ContentHeight(int width)
{
    return HeadHeight(width) + std::max(RowCount(), 1) * RowHeight();
}

void CRowListDialog::OnLayout(const QRect& client)
{
    if (client.isEmpty())
        return;
    const int head = std::min(HeadHeight(client.width()), client.height());
    m_head = {client.x(), client.y(), client.width(), head};
    const QRect area(client.x(), client.y() + head, client.width(), std::max(client.height() - head, 1));
    if (m_touch.Width() == 0)
        m_touch.Attach(0, this, this, area.x(), area.y(), area.width(), area.height());
    else
        m_touch.SetArea(area);
    RowsChanged();
    Select(m_selected);
}

QRect CRowListDialog::RowRect(int index) const
{
    const QRect area = m_touch.Area();
    return {area.x(), area.y() + m_touch.Scroll() + index * RowHeight(), area.width(), RowHeight()};
}

int CRowListDialog::FirstVisibleRow() const
{
    return (-m_touch.Scroll() + RowHeight() - 1) / RowHeight();
}

int CRowListDialog::RowAt(int y) const
{
    const int row = y / RowHeight();
    return y < 0 || row >= RowCount() ? -1 : row;
}

void CRowListDialog::RowsChanged()
{
    m_selected = std::clamp(m_selected, 0, std::max(RowCount() - 1, 0));
    if (m_touch.Width() == 0)
        return;
    m_touch.Redraw(true);
    update();
}

void CRowListDialog::Select(int index)
{
    m_selected = std::clamp(index, 0, std::max(RowCount() - 1, 0));
    if (m_touch.Width() == 0)
        return;
    m_touch.EnsureVisible(QRect(0, m_selected * RowHeight(), 1, RowHeight()));
    m_touch.Redraw(true);
}

// ---- paint

int CRowListDialog::RenderContent(quint32, QPainter& dc, quint32, int scroll, int width, int height)
{
    FillSolid(dc, {0, 0, width, height}, SystemColor::Window);
    const int rows = RowCount();
    for (int n = std::max(-scroll / RowHeight(), 0); n < rows; ++n) {
        const QRect rect(0, scroll + n * RowHeight(), width, RowHeight() - D(1));
        if (rect.y() >= height)
            break;
        const bool selected = n == m_selected && ShowsSelection();
        if (selected)
            DrawSelectionBackground(dc, rect, GetHighlightColor());
        FillSolid(dc, {0, rect.y() + rect.height(), width, D(1)}, kFormHairLine);
        PaintRow(dc, n, rect, selected);
    }
    return rows * RowHeight();
}

void CRowListDialog::PaintContent(QPainter& dc, const QRect&)
{
    if (!m_head.isEmpty())
        PaintHead(dc, m_head);
    m_touch.PaintTo(dc, m_touch.Area().x(), m_touch.Area().y());
}

void PaintRowText(QPainter& dc, const QString& text, const QRect& rect, bool selected, bool right)
{
    dc.setFont(g_ImageStore.Font(kFontText));
    dc.setPen(ToQColor(selected ? GetHighlightTextColor() : kFormInk));
    DrawText(dc, text, rect,
             kTextVCentre | kTextSingleLine | kTextNoPrefix | kTextEndEllipsis | (right ? kTextRight : 0u));
}

// ---- input

bool CRowListDialog::OnPress(quint32, int, int y)
{
    const int row = RowAt(y);
    if (row < 0)
        return false;
    m_wasSelected = row == m_selected;
    m_selected = row;
    return true;
}

void CRowListDialog::OnTap(quint32, int x, int y)
{
    const int row = RowAt(y);
    if (row < 0)
        return;
    // A tap that ended before the press delay has selected nothing yet.
    const bool was = m_selected == row && m_wasSelected;
    m_wasSelected = true;
    m_selected = row;
    m_touch.Redraw(true);
    OnRowTapped(row, x, was);
}

void CRowListDialog::OnKey(int key)
{
    const int page = std::max(m_touch.Height() / RowHeight() - 1, 1);
    switch (key) {
    case kKeyUp:
        return Select(m_selected - 1);
    case kKeyDown:
        return Select(m_selected + 1);
    case kKeyPageUp:
        return Select(m_selected - page);
    case kKeyPageDown:
        return Select(m_selected + page);
    case kKeyHome:
        return Select(0);
    case kKeyEnd:
        return Select(RowCount() - 1);
    case kKeyReturn:
        if (m_selected < RowCount())
            OnRowEntered(m_selected);
        return;
    default:
        return;
    }
}

void CRowListDialog::OnWheel(int angle)
{
    m_touch.ScrollBy(angle * RowHeight() / kWheelNotch);
}

// ---- accessibility

CPaintedPart CRowListDialog::ContentPart(int index) const
{
    CPaintedPart part = RowPart(index);
    part.Rect = ToLogical(RowRect(index), CurrentFactor());
    part.Selected = index == m_selected;
    return part;
}

void CRowListDialog::PressContentPart(int index)
{
    Select(index);
    OnRowEntered(index);
}
