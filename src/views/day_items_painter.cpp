#include "views/day_items_painter.h"
#include "drawing/image_store.h"
#include "drawing/paint.h"
#include "drawing/picture_ids.h"
#include "drawing/screen_metrics.h"
#include "drawing/text.h"
#include "pim/pim_store.h"
#include "settings/item_text.h"
#include "settings/settings.h"
#include "settings/title_formats.h"
#include "touch/white_picture.h"
#include "util/string_ids.h"
#include "util/string_store.h"

#include <QPainter>
#include <algorithm>

namespace
{
constexpr int kPriorityLow = 0, kPriorityHigh = 2;
constexpr int kShortDateFormat = 4; // of the day titles' table
constexpr COLORREF kRowLine = 0xC0C0C0;
constexpr COLORREF kTwoToneSecond = kColorWhite;
constexpr int kTwoToneAlpha = 50;
constexpr unsigned kLineText = kTextSingleLine | kTextVCentre | kTextNoPrefix | kTextWordEllipsis;
enum LeadingRects { kNone, kCategoryColors };

// A task tells its due date, or that it has none, unless it is due on the day.
bool TellsDate(const CPimItem& task, int day)
{
    return task.End == NO_DATE || DayNumber(task.End) != day;
}

// As it stands before the subject.
QString DatePrefix(const CTask& task)
{
    if (task.End == NO_DATE)
        return GetString(StrUndatedPrefix);
    QString date;
    FormatViewTitle(kDayTitleFormats, kShortDateFormat, task.End, NO_DATE, &date);
    return GetString(StrDatedPrefix).replace(QLatin1String("%s"), date);
}

// The same on a line of its own.
QString DateAlone(const CTask& task)
{
    QString text = DatePrefix(task).trimmed();
    if (text.endsWith(u':'))
        text.chop(1);
    return text.trimmed();
}

// The items that show, in their order.
template <class Visit> void ForEachItem(const CDayItems& day, bool includeTasks, Visit visit)
{
    for (const auto& appointment : day.Appointments) {
        if (appointment->Visible)
            visit(*appointment);
    }
    for (const auto& task : day.Tasks) {
        if (includeTasks && task->Visible)
            visit(*task);
    }
}
// From and to, shorter where the line is, at last the start alone.
QString TimeThatFits(const CAppointment& item, int day, const QFont& font, int width)
{
    constexpr struct {
        bool Compact, OnlyStart;
    } kForms[] = {{false, false}, {true, false}, {false, true}, {true, true}};
    QString text;
    for (const auto& form : kForms) {
        text = FormatTimeRange(item.Start, item.End, day, form.Compact, form.OnlyStart, item.EndsPreviousDay);
        if (TextWidth(font, text) <= width)
            break;
    }
    return text;
}
} // namespace

struct CDayItemsPainter::Line {
    QPainter& Dc;
    QRect Rest;   // what is left of the first line
    QRect Second; // the second line, empty without one
    int Day;
    bool Bright; // on a ground of the highlight colour
    COLORREF Ground;

    void Picture(int id, int x) const
    {
        const QPoint at(x, Rest.y() + (Rest.height() - g_ImageStore.Image(id).Height()) / 2);
        if (Bright)
            DrawWhitePicture(Dc, at, id, Ground);
        else
            DrawImage(g_ImageStore.Image(id), Dc, at.x(), at.y());
    }
    // At the left end of what is left; takes the picture's width and the gap.
    void LeadingPicture(int id, int gap)
    {
        const CAlphaImage& image = g_ImageStore.Image(id);
        if (!image.IsValid())
            return;
        Picture(id, Rest.x());
        Rest.setLeft(Rest.x() + image.Width() + gap);
    }
    void Text(const QString& text, const QRect& box) const
    {
        if (box.width() > 0)
            DrawText(Dc, text, box, kLineText);
    }
};

void CDayItemsPainter::Init(const CDayItemsLook& look)
{
    m_look = look;
    m_colors.Fetch();
    m_fontHeight = ::LineHeight(g_ImageStore.Font(look.Font));
    const CAlphaImage& reference = g_ImageStore.Image(PictureSmallRecurring);
    m_lineHeight = std::max(m_fontHeight, reference.IsValid() ? reference.Height() + D(2) : 0);
}

// ---- layout

int CDayItemsPainter::HeightOf(const CPimItem& item, int day) const
{
    const bool two = m_look.TwoLines && (item.GetKind() != kKindTask || TellsDate(item, day));
    return two ? 2 * m_lineHeight : m_lineHeight;
}

int CDayItemsPainter::Gap() const
{
    return m_look.TwoLines ? D(1) + D(1) : 0;
}

QRect CDayItemsPainter::CheckBoxOf(const CPimItem& item, const QRect& row) const
{
    if (item.GetKind() != kKindTask)
        return {};
    const CAlphaImage& image = g_ImageStore.Image(
        static_cast<const CTask&>(item).Complete ? PictureSmallTaskCompleted : PictureSmallTaskActive);
    return {row.x() + D(1), row.y() + (m_lineHeight - image.Height()) / 2, image.Width(), image.Height()};
}

std::vector<CDayItemRow> CDayItemsPainter::LayOut(const CDayItems& day, const QRect& rect) const
{
    std::vector<CDayItemRow> rows;
    int top = rect.y();
    ForEachItem(day, m_look.IncludeTasks, [&](const CPimItem& item) {
        const QRect row(rect.x() + D(1), top, rect.width() - 2 * D(1), HeightOf(item, day.Day));
        rows.push_back({CItemIdentity::Of(item), row, CheckBoxOf(item, row)});
        top += row.height() + Gap();
    });
    return rows;
}

// ---- paint

int CDayItemsPainter::PaintDayItems(QPainter& dc, const CDayItems& day, const QRect& rect, int scroll,
                                    const CItemIdentity& selected, std::vector<CDayItemRow>* rows) const
{
    if (m_look.UseHighlightColors)
        FillTwoTone(dc, rect, m_look.Background, kTwoToneSecond, kTwoToneAlpha, false);
    else
        FillSolid(dc, rect, m_look.Background);
    if (rows)
        *rows = LayOut(day, rect);
    dc.setFont(g_ImageStore.Font(m_look.Font));
    int top = rect.y();
    ForEachItem(day, m_look.IncludeTasks, [&](const CPimItem& item) {
        const QRect row(rect.x() + D(1), top + scroll, rect.width() - 2 * D(1), HeightOf(item, day.Day));
        top += row.height() + Gap();
        if (row.y() + row.height() + Gap() <= rect.y() || row.y() >= rect.y() + rect.height())
            return;
        PaintRow(dc, item, day.Day, row, !selected.IsNull() && CItemIdentity::Of(item) == selected);
    });
    if (top == rect.y() && g_Settings.WeekView.HideNoAppointments == 0) {
        dc.setPen(ToQColor(m_look.UseHighlightColors ? m_look.HighlightText : m_look.GeneralText));
        DrawText(dc, GetString(StrNoAppointments),
                 QRect(rect.x() + D(1), top + scroll, rect.width() - 2 * D(1), m_lineHeight), kLineText);
        top += m_lineHeight;
    }
    return top;
}

void CDayItemsPainter::PaintRow(QPainter& dc, const CPimItem& item, int day, const QRect& rect,
                                bool selected) const
{
    if (selected)
        DrawSelectionBackground(dc, rect, m_look.Selection);
    Line line{dc,
              {rect.x(), rect.y(), rect.width(), m_lineHeight},
              {},
              day,
              selected || m_look.UseHighlightColors,
              selected ? m_look.Selection : m_look.Background};
    if (rect.height() > m_lineHeight)
        line.Second = line.Rest.translated(0, m_lineHeight);
    if (item.GetKind() == kKindTask)
        PaintTask(line, static_cast<const CTask&>(item));
    else
        PaintAppointment(line, static_cast<const CAppointment&>(item));
    if (m_look.TwoLines)
        FillSolid(dc, {rect.x(), rect.y() + rect.height(), rect.width(), D(1)}, kRowLine);
}

void CDayItemsPainter::PaintAppointment(Line& line, const CAppointment& item) const
{
    const int leading = g_Settings.WeekView.LeadingRectColors;
    if (leading) {
        const COLORREF color =
            leading == kCategoryColors ? PimStore().GetItemColor(item) : m_colors.OfStatus(item);
        const int bottom = m_look.TwoLines ? line.Second.y() + m_lineHeight : line.Rest.y() + m_lineHeight;
        if (color != kColorNotSet)
            FillSolid(line.Dc,
                      {line.Rest.x(), line.Rest.y() + D(1), D(3), bottom - D(1) - line.Rest.y() - D(1)},
                      color);
        line.Rest.setLeft(line.Rest.x() + D(5));
        line.Second.setLeft(line.Second.x() + D(5));
    }
    PaintIcons(line, item);
    line.Dc.setPen(
        ToQColor(line.Bright ? m_look.HighlightText : m_colors.OfText(item, m_look.AppointmentText)));
    if (item.AllDay)
        line.LeadingPicture(PictureSmallAllDay, D(2));
    if (m_look.TwoLines) {
        if (!item.AllDay)
            line.Text(TimeThatFits(item, line.Day, line.Dc.font(), line.Rest.width()), line.Rest);
        line.Text(item.Subject, line.Second);
        return;
    }
    const bool withTime = !item.AllDay && g_Settings.WeekView.IncludeStartTime == 1;
    line.Text(withTime ? FormatRowPrefix(line.Day, false, item.Start, item.End) + item.Subject : item.Subject,
              line.Rest);
}

void CDayItemsPainter::PaintTask(Line& line, const CTask& item) const
{
    line.Rest.setLeft(line.Rest.x() + D(1));
    line.LeadingPicture(item.Complete ? PictureSmallTaskCompleted : PictureSmallTaskActive, D(2));
    if (item.Priority == kPriorityHigh)
        line.LeadingPicture(PictureSmallPriorityHigh, D(1));
    else if (item.Priority == kPriorityLow)
        line.LeadingPicture(PictureSmallPriorityLow, D(1));
    PaintIcons(line, item);
    line.Dc.setPen(ToQColor(line.Bright ? m_look.HighlightText : m_colors.OfDue(item)));
    if (!TellsDate(item, line.Day)) {
        line.Text(item.Subject, line.Rest);
    } else if (line.Second.isEmpty()) {
        line.Text(DatePrefix(item) + item.Subject, line.Rest);
    } else {
        line.Text(DateAlone(item), line.Rest);
        line.Text(item.Subject, line.Second.adjusted(D(1), 0, 0, 0));
    }
}

// From the right end leftwards; what is left of the line ends before them.
void CDayItemsPainter::PaintIcons(Line& line, const CPimItem& item) const
{
    int x = line.Rest.x() + line.Rest.width();
    int count = 0;
    for (const StatusPicture& picture : kStatusPictures) {
        const CAlphaImage& image = g_ImageStore.Image(picture.SmallImageId);
        if (count == kMostItemIcons || !image.IsValid() || !picture.Shows(item))
            continue;
        x -= image.Width();
        line.Picture(picture.SmallImageId, x);
        x -= D(2);
        ++count;
    }
    for (const CAlphaImage* const image : CategoryPictures(item)) {
        if (count == kMostItemIcons)
            break;
        x -= image->Width();
        DrawImage(*image, line.Dc, x, line.Rest.y() + (m_lineHeight - image->Height()) / 2);
        x -= D(3);
        ++count;
    }
    line.Rest.setWidth(std::max(0, x - line.Rest.x() + (count ? D(1) : 0)));
}
