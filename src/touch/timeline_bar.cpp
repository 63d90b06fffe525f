#include "touch/timeline_bar.h"
#include "drawing/image_store.h"
#include "drawing/paint.h"
#include "drawing/picture_ids.h"
#include "drawing/screen_metrics.h"
#include "drawing/text.h"
#include "settings/settings.h"

#include <QPainter>
#include <algorithm>

namespace
{
constexpr int kHours = 24;
constexpr int kAllDaySlot = 24;
constexpr COLORREF kStripGround = kColorWhite;
constexpr COLORREF kBracketColor = Rgb(255, 0, 0);
constexpr int kFontCount = 900;
constexpr int kColorCount = 503;
constexpr int kCountPicture = 13, kCountBox = 18; // design pixels
constexpr int kCountRow = 17;

} // namespace

// ---- layout

int CTimelineBar::StripHeight()
{
    return D(15);
}

int CTimelineBar::StripWidth()
{
    return kHours * D(4) + 2 * D(3);
}

int CTimelineBar::Height()
{
    return D(15) + 6;
}

int CTimelineBar::VerticalHeight()
{
    return Height() + D(kCountRow);
}

int CTimelineBar::VerticalWidth()
{
    return StripWidth() + 2 * S(3);
}

int CTimelineBar::Width()
{
    return S(3) + StripWidth() + S(6) + S(3) + 2 * (S(kCountPicture) + S(kCountBox)) + S(3);
}

QRect CTimelineBar::StripRect(int x, int y)
{
    return {x + S(3), y + (Height() - StripHeight()) / 2, StripWidth(), StripHeight()};
}

QRect CTimelineBar::InnerRect(const QRect& strip)
{
    return strip.adjusted(D(3), D(3), -D(3), -D(3));
}

QRect CTimelineBar::CellRect(const QRect& strip, int hour)
{
    const QRect inner = InnerRect(strip);
    return {inner.x() + hour * D(4), inner.y(), D(4), inner.height()};
}

void CTimelineBar::FindRun(const CTimelineDay& day, quint32 itemId, int& first, int& last)
{
    first = last = -1;
    for (int hour = 0; itemId != 0 && hour < kHours; ++hour) {
        if (day.Slots[size_t(hour)].ItemId != itemId)
            continue;
        if (first < 0)
            first = hour;
        last = hour;
    }
}

// ---- paint

void CTimelineBar::Paint(QPainter& dc, int x, int y, int width, const CTimelineDay& day)
{
    if (width <= 0)
        return;
    const Shown wanted{width, g_ScreenMetrics.Multiple(), m_selectedItem, day};
    if (m_picture.isNull() || !(m_shown == wanted)) {
        m_picture = QImage(width, OwnHeight(), QImage::Format_RGB32);
        m_shown = wanted;
        QPainter painter(&m_picture);
        PaintPicture(painter, width, day);
    }
    dc.drawImage(x, y, m_picture);
}

void CTimelineBar::PaintPicture(QPainter& dc, int width, const CTimelineDay& day) const
{
    const QRect bar(0, 0, width, OwnHeight());
    const QRect strip = StripRect(m_vertical ? std::max(0, (width - VerticalWidth()) / 2) : 0, 0);
    PaintBackground(dc, bar);
    PaintStrip(dc, strip, day);
    int first, last;
    FindRun(day, m_selectedItem, first, last);
    if (first >= 0)
        PaintBracket(dc, strip, first, last);
    PaintCounts(dc, bar, strip, day);
}

void CTimelineBar::PaintBackground(QPainter& dc, const QRect& bar) const
{
    FillTwoTone(dc, bar, m_colors.BarBack, m_colors.BarSecond, quint32(m_colors.BarAlpha), false);
    FillSolid(dc, {bar.x(), bar.y(), bar.width(), 1}, m_colors.BarBorder);
    FillSolid(dc, {bar.x(), bar.y() + bar.height() - 1, bar.width(), 1}, kColorBlack);
}

void CTimelineBar::PaintStrip(QPainter& dc, const QRect& strip, const CTimelineDay& day) const
{
    const QRect inner = InnerRect(strip);
    FillSolid(dc, strip, m_colors.StripBorder);
    FillSolid(dc, strip.adjusted(1, 1, -1, -1), m_colors.StripBack);
    for (int quarter = 1; quarter < 4; ++quarter)
        FillSolid(
            dc, {inner.x() + inner.width() * quarter / 4, inner.y() - D(3), S(1), inner.height() + 2 * D(3)},
            m_colors.StripBorder);
    FillSolid(dc, inner, kStripGround);
    for (int hour = 0; hour < kHours; ++hour) {
        const CTimelineSlot& slot = day.Slots[size_t(hour)];
        if (slot.ItemId != 0)
            FillSolid(dc, CellRect(strip, hour), slot.Color);
    }
    const CTimelineSlot& allDay = day.Slots[kAllDaySlot];
    if (allDay.ItemId != 0)
        FillSolid(dc, {inner.x(), inner.y() + inner.height() - D(2), inner.width(), D(2)}, allDay.Color);
}

void CTimelineBar::PaintBracket(QPainter& dc, const QRect& strip, int first, int last) const
{
    const QRect inner = InnerRect(strip), from = CellRect(strip, first), to = CellRect(strip, last);
    const int pen = D(1), tall = D(2);
    const int left = from.x() - D(2), right = to.x() + to.width() + D(1); // right is the pen's own left edge
    const int top = inner.y() - tall, bottom = inner.y() + inner.height() - 1;
    const auto bracket = [&](int legs, int bow) {
        FillSolid(dc, {left, legs, pen, tall}, kBracketColor);
        FillSolid(dc, {right - pen, legs, pen, tall}, kBracketColor);
        FillSolid(dc, {left, bow, right - left, pen}, kBracketColor);
    };
    bracket(top, top);
    bracket(bottom + 1, bottom + 1 + tall - pen);
}

void CTimelineBar::PaintCounts(QPainter& dc, const QRect& bar, const QRect& strip,
                               const CTimelineDay& day) const
{
    if (m_vertical) {
        const QRect row(bar.x(), bar.y() + Height() - D(2), bar.width(), D(kCountRow));
        PaintCount(dc, row, strip.x() + D(3), PictureAppointmentCount, day.AppointmentCount);
        PaintCount(dc, row, strip.x() + strip.width() / 2 + D(3), PictureTaskCount, day.TaskCount);
        return;
    }
    const int x =
        PaintCount(dc, bar, strip.x() + strip.width() + S(6), PictureAppointmentCount, day.AppointmentCount);
    PaintCount(dc, bar, x + S(3), PictureTaskCount, day.TaskCount);
}

// The picture and its number; the result is where the number's box ends.
int CTimelineBar::PaintCount(QPainter& dc, const QRect& bar, int x, int imageId, int count)
{
    const CAlphaImage& image = g_ImageStore.Image(imageId);
    DrawImage(image, dc, x, bar.y() + (bar.height() - image.Height()) / 2);
    x += image.Width();
    const QFont& font = g_ImageStore.Font(kFontCount);
    const QString text = QString::number(count);
    // A day of a thousand items needs more room than the box usually has.
    const QRect box(x, bar.y(), std::max(S(kCountBox), TextWidth(font, text) + S(4)), bar.height());
    dc.setFont(font);
    dc.setPen(ToQColor(g_Settings.ResolveColor(kColorCount)));
    DrawText(dc, text, box, kTextCentre | kTextVCentre | kTextSingleLine);
    return box.x() + box.width();
}
