// The weekly view's layout and its pictures.
#include "drawing/image_store.h"
#include "drawing/paint.h"
#include "drawing/screen_metrics.h"
#include "drawing/text.h"
#include "pim/pim_store.h"
#include "settings/settings.h"
#include "settings/title_formats.h"
#include "settings/week_number.h"
#include "touch/device_pixels.h"
#include "views/spoken_texts.h"
#include "views/week_range.h"
#include "views/weekly_view.h"

#include <QPainter>
#include <algorithm>

namespace
{
constexpr int kFontItems = 700, kFontTitle = 701;
constexpr COLORREF kPopOutEdge = 0x1F0F0A;
constexpr quint32 kShadowAlpha = 128;
constexpr int kTwoToneAlpha = 50;
constexpr int kMostPopOut = 3;
constexpr int kDefaultDayFormat = 0; // when the stored index is none of the table's
} // namespace

// ---- layout

int CWeeklyView::Growth() const
{
    return D(2 * std::clamp(g_Settings.WeekView.PopOut, 0, kMostPopOut));
}

void CWeeklyView::PrepareLook()
{
    const auto color = [](int id) { return g_Settings.ResolveColor(id); };
    const auto& settings = g_Settings.WeekView;
    const COLORREF grounds[kGrounds] = {color(5003), color(5005), color(5010), color(5004)};
    for (int n = 0; n < kGrounds; ++n) {
        CDayItemsLook look;
        look.Font = kFontItems;
        look.IncludeTasks = g_Settings.Tasks.IncludeInCalendar == 1;
        look.UseHighlightColors = n == kSelected;
        look.Background = grounds[n];
        look.HighlightText = color(503);
        look.GeneralText = color(5001);
        look.AppointmentText = color(5002);
        m_painters[size_t(n)].Init(look);
    }
    m_colorTitleText = color(5006);
    m_colorTitleBack = g_Settings.ResolveChosenColor(5007, 5004);
    m_timeline.reset();
    const int place = settings.IncludeTimelinesBar == 1 || settings.IncludeTimelinesBar == 2
                          ? settings.IncludeTimelinesBar
                          : 0;
    if (place)
        m_timeline = std::make_unique<CTimelineBar>(
            CTimelineColors{color(5008), color(5009), color(5011), kColorWhite, kTwoToneAlpha, color(5012)});
    m_tiles = CWeekTiles({SurfaceSize(), place, CTimelineBar::Height(), settings.StartOnToday == 1,
                          settings.VerticalScrolling == 1});
    m_pictureValid = false;
}

void CWeeklyView::LayOutPopOut(bool keepScroll)
{
    const int day = CursorDay();
    m_popOutRect = PimStore().FindDay(day) ? m_tiles.PopOut(day - m_firstDay, Growth()) : QRect();
    const bool placed = m_touch.SetArea(m_popOutRect);
    const bool scrolled = !keepScroll && m_touch.SetScroll(0, 0);
    if (!placed && !scrolled)
        m_touch.Redraw(true);
    if (keepScroll && !m_touch.IsTouched() && m_touch.Scroll() < 0)
        m_touch.ScrollBy(0); // the list may have become shorter
}

CWeeklyView::Ground CWeeklyView::GroundOf(int day) const
{
    if (day == GetToday())
        return kToday;
    int first, second;
    GetWeekendColumns(&first, &second);
    const int weekday = DayOfWeekOf(day);
    return weekday == first || weekday == second ? kWeekend : kPlain;
}

// ---- paint

void CWeeklyView::PaintView(QPainter& dc, QSize size)
{
    if (!m_pictureValid || m_picture.size() != size)
        PaintTiles();
    const auto mode = dc.compositionMode();
    dc.setCompositionMode(QPainter::CompositionMode_Source);
    dc.drawImage(0, 0, m_picture);
    dc.setCompositionMode(mode);
    const QRect bar = m_tiles.Bar();
    if (m_timeline)
        m_timeline->Paint(dc, bar.x(), bar.y(), bar.width(), m_timelineDay);
    if (m_popOutRect.isEmpty())
        return;
    if (Growth()) { // what the tile itself covers need not be darkened
        const QRect shadow = m_popOutRect.translated(D(2), D(2));
        BlendRect(dc, {m_popOutRect.x() + m_popOutRect.width(), shadow.y(), D(2), shadow.height()},
                  kColorBlack, kShadowAlpha);
        BlendRect(dc, {shadow.x(), m_popOutRect.y() + m_popOutRect.height(), shadow.width() - D(2), D(2)},
                  kColorBlack, kShadowAlpha);
    }
    m_touch.PaintTo(dc, m_touch.Area().x(), m_touch.Area().y());
}

void CWeeklyView::PaintTiles()
{
    const QSize size = SurfaceSize();
    if (m_picture.size() != size)
        m_picture = QImage(size, QImage::Format_RGB32);
    m_pictureValid = true;
    if (m_picture.isNull())
        return;
    QPainter dc(&m_picture);
    FillSolid(dc, m_picture.rect(), kColorWhite);
    for (int n = 0; n < CWeekTiles::kDays; ++n) {
        CDayItems* day = PimStore().FindDay(m_firstDay + n);
        if (!day)
            return;
        day->CellRect = m_tiles.TileForDay(n);
        PaintTile(dc, *day, day->CellRect, GroundOf(day->Day), 0);
    }
}

// The items, and over them the date in the lower right corner; the result is the content's height.
int CWeeklyView::PaintTile(QPainter& dc, const CDayItems& day, const QRect& tile, Ground ground,
                           int scroll) const
{
    if (tile.isEmpty())
        return 0;
    dc.save();
    dc.setClipRect(tile, Qt::IntersectClip);
    const int bottom = m_painters[size_t(ground)].PaintDayItems(dc, day, tile, scroll);
    QString title;
    if (!FormatViewTitle(kWeekDayFormats, g_Settings.WeekView.DateTitleFormat, day.Day, NO_DATE, &title))
        FormatViewTitle(kWeekDayFormats, kDefaultDayFormat, day.Day, NO_DATE, &title);
    const QSize text = MeasureText(g_ImageStore.Font(kFontTitle), title);
    const QRect box(tile.x() + tile.width() - text.width() - 3, tile.y() + tile.height() - text.height(),
                    text.width() + 3, text.height());
    FillSolid(dc, box, m_colorTitleBack);
    dc.setFont(g_ImageStore.Font(kFontTitle));
    dc.setPen(ToQColor(m_colorTitleText));
    DrawText(dc, title, box.adjusted(0, 0, -1, 0),
             kTextRight | kTextVCentre | kTextSingleLine | kTextNoPrefix);
    dc.restore();
    return bottom + text.height(); // the last item can be scrolled up from under the date
}

int CWeeklyView::RenderContent(quint32, QPainter& dc, quint32, int scroll, int width, int height)
{
    const CDayItems* day = m_hidden ? nullptr : PimStore().FindDay(CursorDay());
    QRect tile(0, 0, width, height);
    if (!day) {
        FillSolid(dc, tile, m_painters[kSelected].Look().Background);
        return 0;
    }
    const int edge = Growth() ? D(1) : 0;
    if (edge) {
        FillSolid(dc, tile, kPopOutEdge);
        tile.adjust(edge, edge, -edge, -edge);
    }
    return PaintTile(dc, *day, tile, kSelected, scroll) + edge;
}

// ---- for readers of the screen

CPaintedPart CWeeklyView::GetPart(int index) const
{
    const int day = m_firstDay + index;
    const CDayItems* const items = PimStore().FindDay(day);
    CPaintedPart part;
    part.Name = items ? SpokenDay(*items, true) : SpokenDate(day);
    part.Role = QAccessible::Cell;
    part.Rect = ToLogical(m_tiles.TileForDay(index), m_factor);
    part.Selected = day == CursorDay();
    return part;
}

// A day is chosen; pressed again it opens.
void CWeeklyView::PressPart(int index)
{
    const int day = m_firstDay + index;
    if (day == CursorDay())
        m_host.ShowDaily(kViewWeekly);
    else
        MoveTo(day);
}
