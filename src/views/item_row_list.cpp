#include "views/item_row_list.h"
#include "drawing/paint.h"
#include "drawing/screen_metrics.h"

#include <QPainter>
#include <algorithm>

namespace
{
constexpr quint32 kShadowAlpha = 0x80;
constexpr int kMostPopOut = 3;
} // namespace

// ---- rows

void CItemRowList::SetLook(const CItemRowListLook& look)
{
    m_look = look;
    m_pictures.Clear();
    ForgetPlaces();
}

void CItemRowList::Clear()
{
    m_pictures.Clear();
    m_selected = nullptr;
    m_rows.Clear();
    ForgetPlaces();
}

CPaintingOrderItem* CItemRowList::Add(CPimRecord* record, CPimItem* item, int day)
{
    ForgetPlaces();
    return m_rows.InsertInOrder(std::make_unique<CPaintingOrderItem>(record, item, day, m_rows.GetCount()));
}

CPaintingOrderItem* CItemRowList::InsertItem(CPimItem& item, int day, int order)
{
    m_placed = false;
    return m_rows.InsertInOrder(std::make_unique<CPaintingOrderItem>(nullptr, &item, day, order));
}

void CItemRowList::Renew(CPaintingOrderItem& row, int day)
{
    m_placed = false;
    row.m_bottom = row.m_top; // to be measured
    row.m_date = day;
    row.m_identity = CItemIdentity::Of(*row.m_item);
    m_pictures.Drop(&row);
    if (&row == m_selected)
        m_pictures.DropSelected();
}

void CItemRowList::Remove(CPaintingOrderItem* row)
{
    m_placed = false;
    m_pictures.Drop(row);
    if (row == m_selected)
        Select(nullptr);
    m_rows.Erase(row);
}

CPaintingOrderItem* CItemRowList::AddItem(CPimItem& item, int day)
{
    item.LayoutTop = item.LayoutBottom = 0;
    return item.Visible ? Add(nullptr, &item, day) : nullptr;
}

CPaintingOrderItem* CItemRowList::AddOwn(CPimRecord& record, int day)
{
    return Add(&record, nullptr, day);
}

void CItemRowList::Select(CPaintingOrderItem* row)
{
    if (row != m_selected)
        m_pictures.DropSelected();
    m_selected = row;
}

CPaintingOrderItem* CItemRowList::Neighbour(int direction) const
{
    if (m_rows.IsEmpty())
        return nullptr;
    const int last = m_rows.GetCount() - 1;
    const int to = m_selected ? m_rows.IndexOf(m_selected) + direction : (direction > 0 ? 0 : last);
    return m_rows.GetAt(std::clamp(to, 0, last));
}

// ---- layout

int CItemRowList::Pad() const
{
    return D(2 * std::clamp(m_look.PopOut, 0, kMostPopOut));
}

QRect CItemRowList::RowRect(const CPaintingOrderItem& row) const
{
    return {0, row.m_top, m_width, row.m_bottom - row.m_top};
}

// Every row gets its place at once, by measuring, so that the content's height never jumps.
void CItemRowList::LayOut(int width)
{
    if (m_placed && width == m_width)
        return;
    const bool anew = !m_measured || width != m_width;
    if (anew)
        m_pictures.Clear();
    m_width = width;
    int top = m_look.TopMargin;
    for (const auto& row : m_rows) {
        const int known = anew ? 0 : row->m_bottom - row->m_top;
        row->m_top = top;
        row->m_bottom = top + (known ? known : PaintItem(nullptr, *row, {0, top, width, 0}, false));
        top = row->m_bottom + D(1);
    }
    // The last row's shadow needs room, too.
    m_contentHeight = m_rows.IsEmpty() ? 0 : top + m_look.BottomMargin + (Pad() ? Pad() + D(2) : 0);
    m_placed = m_measured = true;
}

CPaintingOrderItem* CItemRowList::RowAt(int y) const
{
    if (m_selected && y >= m_selected->m_top - Pad() && y <= m_selected->m_bottom + Pad())
        return m_selected;
    return m_rows.RowAt(y);
}

bool CItemRowList::HitsCheckBox(const CPaintingOrderItem& row, QPoint at, QSize margin) const
{
    return row.m_identity.Kind == kKindTask &&
           row.m_checkBox.translated(0, row.m_top)
               .adjusted(-margin.width(), -margin.height(), margin.width(), margin.height())
               .contains(at);
}

// ---- paint: inside the visible band only

int CItemRowList::Render(QPainter& dc, int scroll, int width, int height)
{
    LayOut(width);
    // Rows are opaque: the ground shows beside them only.
    int bottom = m_rows.IsEmpty() ? 0 : std::clamp(scroll + m_look.TopMargin, 0, height);
    FillSolid(dc, {0, 0, width, bottom}, m_look.Back);
    for (int n = m_rows.FirstReaching(-scroll - D(1)); n < m_rows.GetCount(); ++n) {
        CPaintingOrderItem& row = *m_rows.GetAt(n);
        if (row.m_top + scroll >= height)
            break;
        if (&row != m_selected) // that one is painted last and covers its place
            PaintRow(dc, row, scroll);
        bottom = row.m_bottom + scroll + D(1);
        FillSolid(dc, {0, bottom - D(1), width, D(1)}, m_look.Separator);
    }
    FillSolid(dc, {0, bottom, width, height - bottom}, m_look.Back);
    if (m_selected)
        PaintSelectedRow(dc, scroll, height);
    m_pictures.Purge(-scroll - height, -scroll + 2 * height);
    return m_contentHeight;
}

// Paints or, without a painter, measures.
int CItemRowList::PaintItem(QPainter* dc, CPaintingOrderItem& row, const QRect& rect, bool selected)
{
    if (!row.m_item || (m_ownRows && m_ownRows->PaintsItemRows()))
        return m_ownRows ? m_ownRows->PaintOwnRow(dc, row, rect, selected) : 0;
    switch (row.m_identity.Kind) {
    case kKindAppointment:
        return m_rowPainter.PaintAppointmentRow(dc, rect, static_cast<CAppointment&>(*row.m_item), row.m_date,
                                                m_look.IncludeLocation, selected);
    case kKindTask: {
        QRect box;
        const int height =
            m_rowPainter.PaintTaskRow(dc, rect, static_cast<CTask&>(*row.m_item), selected, &box);
        row.m_checkBox = box.translated(0, -rect.y());
        return height;
    }
    default:
        return m_rowPainter.PaintSpecialRow(dc, rect, static_cast<CAppointment&>(*row.m_item), selected);
    }
}

QImage CItemRowList::RowPicture(CPaintingOrderItem& row)
{
    const QRect place(QPoint(0, 0), RowRect(row).size());
    QImage picture(place.size(), QImage::Format_RGB32);
    QPainter dc(&picture);
    FillSolid(dc, place, m_look.Back);
    PaintItem(&dc, row, place, false);
    return picture;
}

// With pop-out the picture is the grown row with its edges; the text stays where it was.
QImage CItemRowList::SelectedPicture(CPaintingOrderItem& row)
{
    const int pad = Pad();
    const QRect place(0, pad, m_width, RowRect(row).height());
    QRect grown = place.adjusted(0, -pad, 0, pad);
    QImage picture(grown.size(), QImage::Format_RGB32);
    QPainter dc(&picture);
    if (pad) {
        FillSolid(dc, grown, m_look.PopOutEdge);
        grown.adjust(0, D(1), 0, -D(1));
    }
    DrawSelectionBackground(dc, grown, m_look.Selection);
    PaintItem(&dc, row, place, true);
    return picture;
}

void CItemRowList::PaintRow(QPainter& dc, CPaintingOrderItem& row, int scroll)
{
    const QImage* picture = m_pictures.Find(&row);
    if (!picture) {
        m_pictures.Put(&row, RowPicture(row));
        picture = m_pictures.Find(&row);
    }
    const auto mode = dc.compositionMode();
    dc.setCompositionMode(QPainter::CompositionMode_Source);
    dc.drawImage(0, row.m_top + scroll, *picture);
    dc.setCompositionMode(mode);
}

void CItemRowList::PaintSelectedRow(QPainter& dc, int scroll, int height)
{
    const int pad = Pad();
    if (m_selected->m_bottom + pad + D(2) + scroll <= 0 || m_selected->m_top - pad + scroll >= height)
        return;
    if (!m_pictures.Selected())
        m_pictures.PutSelected(SelectedPicture(*m_selected));
    dc.drawImage(0, m_selected->m_top - pad + scroll, *m_pictures.Selected());
    if (pad)
        BlendRect(dc, {S(2), m_selected->m_bottom + pad + scroll, m_width - D(2), D(2)}, kColorBlack,
                  kShadowAlpha);
}
