// The daily view's layout and its pictures.
#include "drawing/image_store.h"
#include "drawing/paint.h"
#include "drawing/screen_metrics.h"
#include "drawing/text.h"
#include "settings/settings.h"
#include "util/string_ids.h"
#include "util/string_store.h"
#include "views/daily_view.h"

#include <QPainter>
#include <algorithm>

namespace
{
constexpr int kFontText = 600;
constexpr int kBarAtBottom = 2; // of IncludeTimelines
constexpr COLORREF kPopOutEdge = 0x1F0F0A;
constexpr quint32 kShadowAlpha = 0x80;
constexpr int kCheckBoxMargin = 4; // design pixels around it that still hit
} // namespace

// ---- layout: pure arithmetic, no surface

QRect CDailyView::TimelineArea() const
{
    if (!m_timeline)
        return {};
    const QSize size = SurfaceSize();
    const int height = CTimelineBar::Height();
    return {0, g_Settings.DailyView.IncludeTimelines == kBarAtBottom ? size.height() - height : 0,
            size.width(), height};
}

QRect CDailyView::ListArea() const
{
    const QRect client(QPoint(0, 0), SurfaceSize());
    if (!m_timeline)
        return client;
    const int bar = CTimelineBar::Height();
    return g_Settings.DailyView.IncludeTimelines == kBarAtBottom ? client.adjusted(0, 0, 0, -bar)
                                                                 : client.adjusted(0, bar, 0, 0);
}

int CDailyView::RowPad() const
{
    return D(2 * std::clamp(g_Settings.DailyView.PopOut, 0, 3));
}

QRect CDailyView::RowRect(const CPaintingOrderItem& row) const
{
    return {0, row.m_top, m_rowWidth, row.m_bottom - row.m_top};
}

// Every row gets its place at once, by measuring, so that the content's height never jumps.
void CDailyView::LayOutRows(int width)
{
    m_rowCache.Clear();
    m_rowWidth = width;
    int top = 0;
    for (const auto& row : m_rows) {
        row->m_top = top;
        row->m_bottom = top + PaintItem(nullptr, *row, {0, top, width, 0}, false);
        top = row->m_bottom + D(1);
    }
    // The last row's shadow needs room, too.
    m_contentHeight = m_rows.IsEmpty() ? 0 : top + D(2) + (RowPad() ? RowPad() + D(2) : 0);
    m_dirty = false;
}

CPaintingOrderItem* CDailyView::RowAt(int, int y) const
{
    if (m_selected && y >= m_selected->m_top - RowPad() && y <= m_selected->m_bottom + RowPad())
        return m_selected;
    return m_rows.RowAt(y);
}

bool CDailyView::HitsCheckBox(const CPaintingOrderItem& row, QPoint at) const
{
    const int margin = D(kCheckBoxMargin);
    return row.m_identity.Kind == kKindTask &&
           row.m_checkBox.translated(0, row.m_top).adjusted(-margin, -margin, margin, margin).contains(at);
}

// ---- paint: inside the visible band only

void CDailyView::PaintView(QPainter& dc, QSize size)
{
    if (m_timeline) {
        const QRect bar = TimelineArea();
        m_timeline->Paint(dc, bar.x(), bar.y(), size.width(), m_timelineDay);
    }
    m_touch.PaintTo(dc, m_touch.Area().x(), m_touch.Area().y());
}

int CDailyView::RenderContent(quint32, QPainter& dc, quint32, int scroll, int width, int height)
{
    if (m_dirty || width != m_rowWidth)
        LayOutRows(width);
    if (m_rows.IsEmpty()) {
        FillSolid(dc, {0, 0, width, height}, m_colorBack);
        dc.setFont(g_ImageStore.Font(kFontText));
        dc.setPen(ToQColor(m_colorText));
        DrawText(dc, GetString(StrNoAvailableItems), QRect(0, 0, width, height),
                 kTextCentre | kTextVCentre | kTextSingleLine | kTextNoPrefix);
        return 0;
    }
    int bottom = std::clamp(scroll, 0, height); // rows are opaque: the ground shows beside them only
    FillSolid(dc, {0, 0, width, bottom}, m_colorBack);
    for (int n = m_rows.FirstReaching(-scroll - D(1)); n < m_rows.GetCount(); ++n) {
        CPaintingOrderItem& row = *m_rows.GetAt(n);
        if (row.m_top + scroll >= height)
            break;
        if (&row != m_selected) // that one is painted last and covers its place
            PaintRow(dc, row, scroll);
        bottom = row.m_bottom + scroll + D(1);
        FillSolid(dc, {0, bottom - D(1), width, D(1)}, m_colorSeparator);
    }
    FillSolid(dc, {0, bottom, width, height - bottom}, m_colorBack);
    if (m_selected)
        PaintSelectedRow(dc, *m_selected, scroll);
    m_rowCache.Purge(-scroll - height, -scroll + 2 * height);
    return m_contentHeight;
}

// Paints or, without a painter, measures.
int CDailyView::PaintItem(QPainter* dc, CPaintingOrderItem& row, const QRect& rect, bool selected)
{
    switch (row.m_identity.Kind) {
    case kKindAppointment:
        return m_rowPainter.PaintAppointmentRow(dc, rect, static_cast<CAppointment&>(*row.m_item), row.m_date,
                                                g_Settings.DailyView.IncludeLocation == 1, selected);
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

QImage CDailyView::RowPicture(CPaintingOrderItem& row)
{
    const QRect place(QPoint(0, 0), RowRect(row).size());
    QImage picture(place.size(), QImage::Format_RGB32);
    QPainter dc(&picture);
    FillSolid(dc, place, m_colorBack);
    PaintItem(&dc, row, place, false);
    return picture;
}

// With pop-out the picture is the grown row with its edges; the text stays where it was.
QImage CDailyView::SelectedPicture(CPaintingOrderItem& row)
{
    const int pad = RowPad();
    const QRect place(0, pad, m_rowWidth, RowRect(row).height());
    QRect grown = place.adjusted(0, -pad, 0, pad);
    QImage picture(grown.size(), QImage::Format_RGB32);
    QPainter dc(&picture);
    if (pad) {
        FillSolid(dc, grown, kPopOutEdge);
        grown.adjust(0, D(1), 0, -D(1));
    }
    DrawSelectionBackground(dc, grown, m_colorSelection);
    PaintItem(&dc, row, place, true);
    return picture;
}

void CDailyView::PaintRow(QPainter& dc, CPaintingOrderItem& row, int scroll)
{
    const QImage* picture = m_rowCache.Find(&row);
    if (!picture) {
        m_rowCache.Put(&row, RowPicture(row));
        picture = m_rowCache.Find(&row);
    }
    const auto mode = dc.compositionMode();
    dc.setCompositionMode(QPainter::CompositionMode_Source);
    dc.drawImage(0, row.m_top + scroll, *picture);
    dc.setCompositionMode(mode);
}

void CDailyView::PaintSelectedRow(QPainter& dc, CPaintingOrderItem& row, int scroll)
{
    const int pad = RowPad();
    if (row.m_bottom + pad + D(2) + scroll <= 0 || row.m_top - pad + scroll >= m_touch.Height())
        return;
    if (!m_rowCache.Selected())
        m_rowCache.PutSelected(SelectedPicture(row));
    const QImage& picture = *m_rowCache.Selected();
    dc.drawImage(0, row.m_top - pad + scroll, picture);
    if (pad)
        BlendRect(dc, {S(2), row.m_bottom + pad + scroll, m_rowWidth - D(2), D(2)}, kColorBlack,
                  kShadowAlpha);
}
