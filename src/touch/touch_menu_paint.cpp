// The finger menu's layout and its pictures.
#include "drawing/image_store.h"
#include "drawing/paint.h"
#include "drawing/screen_metrics.h"
#include "drawing/text.h"
#include "settings/settings.h"
#include "touch/device_pixels.h"
#include "touch/page_title.h"
#include "touch/touch_menu.h"

#include <QPaintEvent>
#include <QPainter>
#include <QPainterPath>
#include <algorithm>

namespace
{
// Design pixels.
constexpr int kRowHeight = 40;
constexpr int kPageWidth = 420;
constexpr int kPictureSize = 24;
constexpr int kPictureGap = 10;
constexpr int kCardMargin = 20; // least way from a card to the window's edges
constexpr int kCheckSize = 12;

constexpr COLORREF kPageBack = 0xC0C0C0;
constexpr COLORREF kRowBack = kColorWhite;
constexpr COLORREF kHairLine = 0xDDE1DE;
constexpr COLORREF kInk = Rgb(0x2B, 0x3E, 0x55);
constexpr COLORREF kCheckInk = Rgb(0x2A, 0x78, 0x12);
constexpr int kColorSelectedText = 503;
constexpr int kFontRow = 0;

void DrawCheckMark(QPainter& dc, const QRect& box, COLORREF color)
{
    const double u = box.width() / double(kCheckSize);
    QPainterPath path(QPointF(box.x() + 1.5 * u, box.y() + 6.5 * u));
    path.lineTo(box.x() + 4.5 * u, box.y() + 9.5 * u);
    path.lineTo(box.x() + 10.5 * u, box.y() + 2.5 * u);
    dc.save();
    dc.setRenderHint(QPainter::Antialiasing);
    dc.setPen(QPen(ToQColor(color), 2 * u, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    dc.drawPath(path);
    dc.restore();
}
} // namespace

// ---- layout

CTouchMenuLayout CTouchMenuLayout::Of(QSize window, bool hasTitle, int contentHeight)
{
    CTouchMenuLayout layout;
    const int title = hasTitle ? PageTitleHeight() : 0, keys = CSoftKeyBar::Height();
    layout.Page = QRect(QPoint(0, 0), window);
    if (window.width() > D(kPageWidth)) {
        const int room =
            std::max(window.height() - 2 * D(kCardMargin), std::min(window.height(), title + keys));
        const int height = std::min(title + contentHeight + keys, room);
        layout.Page = QRect((window.width() - D(kPageWidth)) / 2, (window.height() - height) / 2,
                            D(kPageWidth), height);
    }
    const QRect& page = layout.Page;
    const int list = std::max(page.height() - title - keys, 0);
    if (hasTitle)
        layout.Title = QRect(page.x(), page.y(), page.width(), title);
    layout.List = QRect(page.x(), page.y() + title, page.width(), list);
    layout.Keys = QRect(page.x(), page.y() + title + list, page.width(), keys);
    return layout;
}

int CTouchMenu::RowHeight()
{
    return D(kRowHeight);
}

CTouchMenuLayout CTouchMenu::Layout() const
{
    return CTouchMenuLayout::Of(ToSurface(size(), m_factor), !m_title.isEmpty(), GetRowCount() * RowHeight());
}

QRect CTouchMenu::RowRect(int index) const
{
    return {0, index * RowHeight(), m_touch.Width(), RowHeight()};
}

int CTouchMenu::RowAt(int y) const
{
    const int index = y < 0 ? -1 : y / RowHeight();
    return index < GetRowCount() ? index : -1;
}

// ---- paint

int CTouchMenu::RenderContent(quint32, QPainter& dc, quint32, int scroll, int width, int height)
{
    FillSolid(dc, {0, 0, width, height}, kPageBack);
    const int first = std::max(-scroll / RowHeight(), 0);
    for (int n = first; n < GetRowCount(); ++n) {
        const QRect rect = RowRect(n).translated(0, scroll);
        if (rect.y() >= height)
            break;
        PaintRow(dc, m_rows[size_t(n)], rect, n == m_selected);
    }
    return GetRowCount() * RowHeight();
}

void CTouchMenu::PaintRow(QPainter& dc, const CTouchMenuRow& row, const QRect& rect, bool selected) const
{
    const QRect body = rect.adjusted(0, 0, 0, -D(1));
    if (selected)
        DrawSelectionBackground(dc, body, GetHighlightColor());
    else
        FillSolid(dc, body, kRowBack);
    FillSolid(dc, {rect.x(), body.y() + body.height(), rect.width(), D(1)}, kHairLine);

    const QRect picture(body.x() + D(kPictureGap), body.y(), D(kPictureSize), body.height());
    if (row.ImageId > 0) {
        const CAlphaImage& image = g_ImageStore.Image(row.ImageId);
        DrawImage(image, dc, picture.x() + (picture.width() - image.Width()) / 2,
                  picture.y() + (picture.height() - image.Height()) / 2);
    }
    const int textLeft = picture.x() + picture.width() + D(kPictureGap);
    int textRight = body.x() + body.width() - D(kPictureGap);
    const COLORREF ink = selected ? g_Settings.ResolveColor(kColorSelectedText) : kInk;
    if (row.Checked) {
        textRight -= D(kCheckSize);
        DrawCheckMark(
            dc, {textRight, body.y() + (body.height() - D(kCheckSize)) / 2, D(kCheckSize), D(kCheckSize)},
            selected ? ink : kCheckInk);
        textRight -= D(kPictureGap);
    }
    dc.setFont(g_ImageStore.Font(kFontRow));
    dc.setPen(ToQColor(ink));
    DrawText(dc, row.Text, QRect(textLeft, body.y(), textRight - textLeft, body.height()),
             kTextVCentre | kTextSingleLine | kTextNoPrefix | kTextEndEllipsis);
}

QImage CTouchMenu::PaintPage(const CTouchMenuLayout& layout)
{
    QImage page(layout.Page.size(), QImage::Format_RGB32);
    if (page.isNull())
        return page;
    QPainter dc(&page);
    dc.translate(-layout.Page.topLeft());
    if (!layout.Title.isEmpty())
        PaintPageTitle(dc, layout.Title, m_title);
    m_touch.PaintTo(dc, layout.List.x(), layout.List.y());
    m_keys.Paint(dc, layout.Keys);
    return page;
}

QImage CTouchMenu::Snapshot()
{
    ApplyLayout();
    m_touch.Redraw(false);
    return PaintPage(Layout());
}

void CTouchMenu::paintEvent(QPaintEvent*)
{
    const int factor = SurfaceFactor(this);
    if (factor != m_factor) {
        m_factor = factor;
        ApplyLayout();
    }
    const CTouchMenuLayout layout = Layout();
    QPainter window(this);
    if (layout.Page.size() != ToSurface(size(), m_factor))
        window.fillRect(rect(), DimColor());
    BlitSurface(window, PaintPage(layout), layout.Page.topLeft(), m_factor);
}
