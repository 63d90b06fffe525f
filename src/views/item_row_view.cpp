#include "views/item_row_view.h"
#include "drawing/screen_metrics.h"
#include "touch/command_ids.h"
#include "touch/device_pixels.h"
#include "touch/wait_cursor.h"
#include "views/spoken_texts.h"
#include "views/view_menus.h"

#include <QPainter>

namespace
{
constexpr int kSelectMargin = 8;   // design pixels kept visible beyond a row chosen by key
constexpr int kCheckBoxMargin = 4; // design pixels around it that still hit
} // namespace

CItemRowView::CItemRowView(IViewHost& host, QWidget* parent)
    : CCalendarView(host, parent), m_list(m_rowPainter, this)
{
}

CItemRowView::~CItemRowView() = default;

// ---- data

void CItemRowView::ForgetRows()
{
    m_selected = nullptr;
    m_list.Clear();
}

void CItemRowView::Select(CPaintingOrderItem* row)
{
    m_list.Select(row);
    m_selected = row;
    OnSelectionChanged();
    if (IsScreenRead() && row)
        TellPartSelected(this, Rows().IndexOf(row));
}

// ---- lifecycle

void CItemRowView::OnCreate()
{
    m_created = true;
    PrepareLook();
    const QRect list = ListArea();
    m_touch.Attach(0, this, this, list.x(), list.y(), list.width(), list.height());
}

void CItemRowView::OnResize()
{
    PrepareLook();
    if (!m_touch.SetArea(ListArea()))
        m_touch.Redraw(true);
    update();
}

void CItemRowView::OnDeactivate()
{
    m_hidden = true;
    m_touch.StopMotion();
    m_leftItem = SelectedIdentity();
    m_leftDay = SelectedDay();
    ForgetRows(); // the view in front lets our items go from the cache as it likes
}

// ---- layout and paint

QRect CItemRowView::ListArea() const
{
    return {QPoint(0, 0), SurfaceSize()};
}

CPaintingOrderItem* CItemRowView::RowAt(int, int y) const
{
    return m_list.RowAt(y);
}

QSize CItemRowView::CheckBoxMargin() const
{
    return {D(kCheckBoxMargin), D(kCheckBoxMargin)};
}

void CItemRowView::PaintView(QPainter& dc, QSize)
{
    m_touch.PaintTo(dc, m_touch.Area().x(), m_touch.Area().y());
}

int CItemRowView::RenderContent(quint32, QPainter& dc, quint32, int scroll, int width, int height)
{
    const int content = m_list.Render(dc, scroll, width, height);
    if (m_list.Rows().IsEmpty())
        PaintEmptyList(dc, {0, 0, width, height});
    return content;
}

// ---- input: hit -> command

bool CItemRowView::OnPress(quint32, int x, int y)
{
    Select(RowAt(x, y));
    return true;
}

void CItemRowView::OnTap(quint32, int x, int y)
{
    Select(RowAt(x, y));
    if (!m_selected)
        return;
    if (m_list.HitsCheckBox(*m_selected, {x, y}, CheckBoxMargin()))
        m_host.SendCommand(CmdToggleTask);
    else
        OnRowTap({x, y});
}

void CItemRowView::OnRowTap(QPoint)
{
    RunItemMenu();
}

void CItemRowView::OnContextMenu(QPoint at)
{
    m_touch.CancelTouch(); // its release would come under the menu, as a tap
    if (m_touch.Area().contains(at)) {
        Select(RowAt(at.x(), at.y() - m_touch.Area().y() - m_touch.Scroll()));
        m_touch.Redraw(true);
    }
    if (m_selected)
        RunItemMenu();
}

void CItemRowView::RunItemMenu()
{
    m_stroke.End();
    if (!SelectedItem())
        return;
    CTouchMenu menu(SelectedItem()->Subject);
    AddItemMenuRows(m_host, menu, *SelectedItem());
    RunMenu(menu);
}

void CItemRowView::OnLButtonDown(QPoint at)
{
    m_stroke.Press(at);
    m_touch.OnLButtonDown(at.x(), at.y());
}

void CItemRowView::OnMouseMove(QPoint at)
{
    const int stroke = UsesDateKeys() ? m_stroke.Move(at) : 0;
    if (stroke == 0) {
        m_touch.OnMouseMove(at.x(), at.y());
        return;
    }
    m_touch.CancelTouch();
    StartDateRun(stroke, at);
}

void CItemRowView::OnLButtonUp(QPoint at)
{
    m_stroke.End();
    m_touch.OnLButtonUp(at.x(), at.y());
}

void CItemRowView::ShowRow(const CPaintingOrderItem& row, int direction)
{
    m_touch.EnsureVisible(
        {0, direction > 0 ? row.m_bottom + D(kSelectMargin) : row.m_top - D(kSelectMargin)});
}

void CItemRowView::SelectNeighbour(int direction)
{
    const CWaitCursor wait;
    CPaintingOrderItem* row = m_list.Neighbour(direction);
    if (!row)
        return;
    const bool changed = row != m_selected;
    Select(row);
    ShowRow(*row, direction);
    if (changed)
        m_touch.Redraw(true);
}

// ---- for readers of the screen: the rows, as far as they go

CPaintedPart CItemRowView::GetPart(int index) const
{
    const CPaintingOrderItem& row = *Rows().GetAt(index);
    CPaintedPart part;
    if (row.m_item)
        part = SpokenItem(*row.m_item, row.m_date);
    else
        part.Name = NameOfOwnRow(row);
    const QRect area = m_touch.Area();
    part.Rect = ToLogical(
        QRect(area.x(), area.y() + m_touch.Scroll() + row.m_top, area.width(), row.m_bottom - row.m_top),
        m_factor);
    part.Selected = &row == m_selected;
    return part;
}

// As a tap behind the check box does.
void CItemRowView::PressPart(int index)
{
    const CPaintingOrderItem& row = *Rows().GetAt(index);
    const QPoint at(m_touch.Area().width() / 2, (row.m_top + row.m_bottom) / 2);
    ShowRow(row, -1);
    if (OnPress(0, at.x(), at.y()))
        OnTap(0, at.x(), at.y());
}
