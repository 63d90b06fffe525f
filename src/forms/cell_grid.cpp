#include "forms/cell_grid.h"
#include "drawing/image_store.h"
#include "drawing/paint.h"
#include "drawing/screen_metrics.h"
#include "drawing/text.h"
#include "forms/form_parts.h"
#include "settings/settings.h"
#include "settings/system_colors.h"
#include "touch/device_pixels.h"
#include "touch/virtual_keys.h"

#include <QPainter>
#include <algorithm>

namespace
{
// Design pixels.
constexpr int kGap = 8;          // between cells
constexpr int kPadding = 6;      // inside them
constexpr int kNarrowParts = 12; // less of it in cells narrower than so many
constexpr int kPartGap = 4;
constexpr int kDiscSize = 32;
constexpr int kLeastHeight = 40;

constexpr int kFontText = 4, kFontTextSmall = 6, kFontHint = 3, kFontCaption = 4;
constexpr int kColorSelectedText = 503;
constexpr quint32 kFrameAlpha = 120; // of black over the selection's colour

int TextRoom(int width)
{
    return width - 2 * std::min(D(kPadding), width / kNarrowParts);
}
} // namespace

struct CCellGrid::Parts {
    int Picture = 0; // height; 0 without one
    CFittedText Text, Hint;

    int Height() const
    {
        const int above = Picture > 0 && Text.Height() > 0 ? D(kPartGap) : 0;
        const int between = Hint.Height() > 0 ? D(kPartGap) : 0;
        return Picture + above + Text.Height() + between + Hint.Height();
    }
    // Too low a cell gives up its picture first, then what explains it.
    void ShrinkTo(int room)
    {
        if (Height() > room && Text.Height() > 0)
            Picture = 0;
        if (Height() > room)
            Hint = {};
    }
};

void CCellGrid::SetShape(int columns, int rows)
{
    m_columns = columns;
    m_rows = rows;
}

void CCellGrid::AddCell(CCell cell)
{
    Q_ASSERT(GetCount() < m_columns * m_rows);
    m_cells.push_back(std::move(cell));
}

// ---- layout

CCellGrid::Parts CCellGrid::PartsOf(const CCell& cell, int width) const
{
    const int room = TextRoom(width);
    Parts parts;
    if (cell.ImageId > 0)
        parts.Picture = g_ImageStore.Image(cell.ImageId).Height();
    else if (!cell.Badge.isEmpty())
        parts.Picture = D(kDiscSize);
    parts.Text = FitText(cell.Text, {kFontText, kFontTextSmall}, room);
    parts.Hint = FitText(cell.Hint, {kFontHint}, room);
    return parts;
}

int CCellGrid::CaptionHeight() const
{
    return m_caption.isEmpty() ? 0 : LineHeight(g_ImageStore.Font(kFontCaption)) + D(kPartGap);
}

int CCellGrid::HeightOfRows(int cellHeight) const
{
    return CaptionHeight() + m_rows * (cellHeight + D(kGap)) - D(kGap);
}

int CCellGrid::HeightFor(int width) const
{
    const int cellWidth = (width + D(kGap)) / m_columns - D(kGap);
    int tallest = D(kLeastHeight);
    for (const CCell& cell : m_cells)
        tallest = std::max(tallest, PartsOf(cell, cellWidth).Height() + 2 * D(kPadding));
    return HeightOfRows(tallest);
}

void CCellGrid::SetArea(const QRect& area)
{
    m_area = area;
    m_rects.clear();
    const QRect cells = area.adjusted(0, CaptionHeight(), 0, 0);
    const int width = cells.width() + D(kGap), height = cells.height() + D(kGap);
    for (int n = 0; n < GetCount(); ++n) {
        const int column = n % m_columns, row = n / m_columns;
        const int left = width * column / m_columns, top = height * row / m_rows;
        const int right = width * (column + 1) / m_columns - D(kGap);
        const int bottom = height * (row + 1) / m_rows - D(kGap);
        m_rects.emplace_back(cells.x() + left, cells.y() + top, std::max(right - left, 0),
                             std::max(bottom - top, 0));
    }
}

QRect CCellGrid::CellRect(int index) const
{
    return index >= 0 && index < int(m_rects.size()) ? m_rects[size_t(index)] : QRect();
}

int CCellGrid::HitTest(QPoint at) const
{
    const auto hit =
        std::find_if(m_rects.begin(), m_rects.end(), [at](const QRect& r) { return r.contains(at); });
    return hit == m_rects.end() ? -1 : int(hit - m_rects.begin());
}

// ---- selection

void CCellGrid::Select(int index)
{
    m_selected = index >= 0 && index < GetCount() ? index : -1;
}

int CCellGrid::Step(int index, int key) const
{
    const int first = index - index % m_columns;
    const int inRow = std::min(m_columns, GetCount() - first);
    const int column = index % m_columns, row = index / m_columns;
    const int inColumn = (GetCount() - column + m_columns - 1) / m_columns; // the last row may be short
    switch (key) {
    case kKeyLeft:
        return first + (column + inRow - 1) % inRow;
    case kKeyRight:
        return first + (column + 1) % inRow;
    case kKeyUp:
        return (row + inColumn - 1) % inColumn * m_columns + column;
    case kKeyDown:
        return (row + 1) % inColumn * m_columns + column;
    default:
        return index;
    }
}

bool CCellGrid::OnKey(int key)
{
    if (key < kKeyLeft || key > kKeyDown || m_cells.empty())
        return false;
    m_selected = m_selected < 0 ? 0 : Step(m_selected, key);
    return true;
}

// ---- paint

void CCellGrid::Paint(QPainter& dc) const
{
    if (!m_caption.isEmpty()) {
        dc.setFont(g_ImageStore.Font(kFontCaption));
        dc.setPen(ToQColor(kFormInk));
        DrawText(dc, m_caption, QRect(m_area.x(), m_area.y(), m_area.width(), CaptionHeight()),
                 kTextSingleLine | kTextNoPrefix | kTextEndEllipsis);
    }
    std::vector<Parts> parts;
    int tallest = 0; // all cells begin at the same height, so that pictures and texts stand in line
    for (size_t n = 0; n < m_rects.size(); ++n) {
        parts.push_back(PartsOf(m_cells[n], m_rects[n].width()));
        const int room = m_rects[n].height() - 2 * D(1);
        if (parts[n].Height() > room) // before it loses a part
            parts[n].Text = FitText(m_cells[n].Text, {kFontTextSmall}, TextRoom(m_rects[n].width()));
        parts[n].ShrinkTo(room);
        tallest = std::max(tallest, parts[n].Height());
    }
    for (size_t n = 0; n < m_rects.size(); ++n)
        PaintCell(dc, m_cells[n], m_rects[n], parts[n], tallest, int(n) == m_selected);
}

void CCellGrid::PaintCell(QPainter& dc, const CCell& cell, const QRect& rect, const Parts& parts, int tallest,
                          bool selected) const
{
    const COLORREF highlight = GetHighlightColor();
    const COLORREF edge = selected ? Blend(kColorBlack, highlight, kFrameAlpha) : kFormHairLine;
    FillSolid(dc, rect, edge);
    const QRect body = rect.adjusted(D(1), D(1), -D(1), -D(1));
    if (selected)
        DrawSelectionBackground(dc, body, highlight);
    else
        FillSolid(dc, body, SystemColor::Window);

    const COLORREF ink = selected ? g_Settings.ResolveColor(kColorSelectedText) : kFormInk;
    dc.save();
    dc.setClipRect(body, Qt::IntersectClip);
    int y = rect.y() + std::max((rect.height() - tallest) / 2, D(1));
    if (parts.Picture > 0) {
        if (cell.ImageId > 0) {
            const CAlphaImage& image = g_ImageStore.Image(cell.ImageId);
            DrawImage(image, dc, rect.x() + (rect.width() - image.Width()) / 2, y);
        } else {
            PaintDisc(dc, {rect.x() + (rect.width() - parts.Picture) / 2, y, parts.Picture, parts.Picture},
                      cell.Badge, selected ? ink : highlight, selected ? highlight : GetHighlightTextColor());
        }
        y += parts.Picture + D(kPartGap);
    }
    PaintFittedText(dc, parts.Text, {rect.x(), y, rect.width(), parts.Text.Height()}, ink);
    y += parts.Text.Height() + D(kPartGap);
    PaintFittedText(dc, parts.Hint, {rect.x(), y, rect.width(), parts.Hint.Height()},
                    selected ? ink : SystemColor::GrayText);
    dc.restore();
}

CPaintedPart CellPart(const CCellGrid& grid, int index, int k)
{
    const CCell& cell = grid.GetCell(index);
    return {.Name = cell.Text,
            .Value = cell.Hint,
            .Role = QAccessible::Button,
            .Rect = ToLogical(grid.CellRect(index), k),
            .Selected = index == grid.GetSelected()};
}
