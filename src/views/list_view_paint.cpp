// The list view's look and its rows of its own.
#include "drawing/image_store.h"
#include "drawing/paint.h"
#include "drawing/picture_ids.h"
#include "drawing/screen_metrics.h"
#include "drawing/text.h"
#include "pim/pim_store.h"
#include "settings/settings.h"
#include "touch/white_picture.h"
#include "util/string_ids.h"
#include "util/string_store.h"
#include "views/list_view.h"
#include "views/mini_timeline.h"
#include "views/spoken_texts.h"

#include <QPainter>
#include <algorithm>

namespace
{
constexpr int kFontText = 100, kFontSubject = 101, kFontTitle = 102;
constexpr int kTwoToneAlpha = 50;
constexpr int kTimelineWidth = 20, kLeastTimelineHeight = 8; // design pixels
constexpr int kBoxMargin = 8;                                // behind the expand box, that still hit it
constexpr unsigned kLine = kTextSingleLine | kTextVCentre | kTextNoPrefix;
} // namespace

void CListView::PrepareLook()
{
    const auto color = [](int id) { return g_Settings.ResolveColor(id); };
    const auto& settings = g_Settings.ListView;
    m_colors = {color(4001), color(4002), color(503),  color(4011),
                color(4006), color(4007), color(4008), color(4009)};
    m_rowPainter.InitRowPainter({settings.OneLineMode == 1, settings.OnlyStartTime == 1,
                                 settings.LeadingRectColors, kFontText, kFontSubject, kFontSubject,
                                 m_colors.Subject, color(4003), m_colors.General, color(4004),
                                 m_colors.Selection});
    CItemRowListLook look;
    look.Back = color(4005);
    look.Selection = m_colors.Selection;
    look.Separator = color(4010);
    look.PopOut = settings.PopOut;
    look.IncludeLocation = settings.IncludeLocation == 1;
    look.TopMargin = D(1);
    m_list.SetLook(look);
}

void CListView::PaintEmptyList(QPainter& dc, const QRect& rect)
{
    dc.setFont(g_ImageStore.Font(kFontTitle));
    dc.setPen(ToQColor(m_colors.General));
    DrawText(dc, GetString(StrNoEvents), rect.adjusted(D(4), D(1) + D(4), -D(4), 0),
             kTextWordBreak | kTextNoPrefix);
}

int CListView::PaintOwnRow(QPainter* dc, CPaintingOrderItem& row, const QRect& rect, bool selected)
{
    if (row.m_event == &m_placeholder)
        return PaintEmptyRow(dc, rect, selected);
    return PaintDayTitle(dc, static_cast<const CDayItems&>(*row.m_event), rect, selected);
}

QString CListView::NameOfOwnRow(const CPaintingOrderItem& row) const
{
    return row.m_event == &m_placeholder ? GetString(StrNoAppointments)
                                         : SpokenDay(static_cast<const CDayItems&>(*row.m_event), false);
}

bool CListView::IsOnExpandBox(int x) const
{
    return x <= D(2) + g_ImageStore.Image(PictureExpanded).Width() + D(kBoxMargin);
}

int CListView::TitleHeight() const
{
    return std::max(LineHeight(g_ImageStore.Font(kFontTitle)),
                    g_ImageStore.Image(PictureAppointmentCount).Height());
}

// From the right: the count, its picture, the hours; what is left is the date's.
int CListView::PaintDayTitle(QPainter* dc, const CDayItems& day, const QRect& rect, bool selected) const
{
    const int height = TitleHeight();
    if (!dc)
        return height;
    const QRect row(rect.x(), rect.y(), rect.width(), height);
    const COLORREF ground = selected ? m_colors.Selection : m_colors.TitleBack;
    if (!selected)
        FillTwoTone(*dc, row, ground, kColorWhite, kTwoToneAlpha, false);
    const auto middle = [&row](int inner) { return row.y() + (row.height() - inner) / 2; };
    const auto picture = [&](int id, int x) {
        DrawWhitePicture(*dc, {x, middle(g_ImageStore.Image(id).Height())}, id, ground);
    };
    dc->setFont(g_ImageStore.Font(kFontTitle));
    dc->setPen(ToQColor(m_colors.TitleText));
    const QString count = QString::number(day.AppointmentCount);
    const QRect all = row.adjusted(0, 0, -D(2), 0);
    DrawText(*dc, count, all, kLine | kTextRight);
    int right = all.x() + all.width() - TextWidth(dc->font(), count) - D(2) -
                g_ImageStore.Image(PictureAppointmentCount).Width();
    picture(PictureAppointmentCount, right);
    right -= D(6);
    int bar = std::max(height - 6, D(kLeastTimelineHeight));
    bar -= (height - bar) % 2;
    PaintMiniTimeline(*dc, {right - D(kTimelineWidth + 2), middle(bar), D(kTimelineWidth), bar}, day,
                      {m_colors.TimelineBack, m_colors.TimelineBorder}, true);
    right -= D(kTimelineWidth + 2) + D(6);
    const int box = day.Collapsed ? PictureCollapsed : PictureExpanded;
    picture(box, row.x() + D(2));
    const int left = row.x() + D(2) + g_ImageStore.Image(box).Width() + D(3);
    DrawText(*dc, day.GetTitle(), QRect(left, row.y(), right - left, height), kLine | kTextWordEllipsis);
    return height;
}

int CListView::PaintEmptyRow(QPainter* dc, const QRect& rect, bool selected) const
{
    const QFont& font = g_ImageStore.Font(kFontText);
    const int height = LineHeight(font) + 1;
    if (!dc)
        return height;
    const int left = D(4) + (g_Settings.ListView.OneLineMode == 1 ? m_rowPainter.TimeColumnWidth() : 0);
    dc->setFont(font);
    dc->setPen(ToQColor(selected ? m_colors.SelectedText : m_colors.Subject));
    DrawText(*dc, GetString(StrNoAvailableItems),
             QRect(rect.x() + left, rect.y(), rect.width() - left, height), kLine | kTextWordEllipsis);
    return height;
}
