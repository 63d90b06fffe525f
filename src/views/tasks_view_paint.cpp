// The tasks view's look: its rows, the pane, and the measures they share.
#include "drawing/image_store.h"
#include "drawing/paint.h"
#include "drawing/picture_ids.h"
#include "drawing/screen_metrics.h"
#include "drawing/text.h"
#include "pim/pim_store.h"
#include "settings/settings.h"
#include "settings/title_formats.h"
#include "touch/white_picture.h"
#include "util/string_ids.h"
#include "util/string_store.h"
#include "views/item_looks.h"
#include "views/tasks_view.h"

#include <QPainter>
#include <algorithm>

namespace
{
constexpr int kFontTask = 800, kFontTitle = 801;
constexpr quint32 kTwoToneAlpha = 50;
constexpr COLORREF kDateColor = 0x7B5108;
constexpr int kHighPriority = 2, kLowPriority = 0;
constexpr unsigned kLine = kTextSingleLine | kTextVCentre | kTextNoPrefix;

QString DateColumnText(DATE start, DATE due)
{
    QString text;
    FormatViewTitle(kTaskDateFormats, g_Settings.TasksView.DateFormat, start, due, &text);
    return text;
}

int PriorityImage(const CTask& task)
{
    return task.Priority == kHighPriority  ? PicturePriorityHigh
           : task.Priority == kLowPriority ? PicturePriorityLow
                                           : 0;
}

QSize SizeOf(const CAlphaImage& image)
{
    return {image.Width(), image.Height()};
}
} // namespace

void CTasksView::PrepareLook()
{
    const auto color = [](int id) { return g_Settings.ResolveColor(id); };
    m_colors = {color(7001), color(7002), color(7003), color(7004), color(7005),
                color(2001), color(2002), color(2003), color(503)};
    const QFont& task = g_ImageStore.Font(kFontTask);
    const QFont& title = g_ImageStore.Font(kFontTitle);
    m_taskRowHeight = std::max(LineHeight(task), g_ImageStore.Image(PictureTaskCompleted).Height()) + D(2);
    m_titleRowHeight = std::max(LineHeight(title), g_ImageStore.Image(PictureTaskCount).Height()) + D(2);
    m_countWidth = TextWidth(title, QStringLiteral("999"));
    // All digits are as wide in most faces, not in all.
    m_dateColumnWidth = 0;
    for (const auto& [month, day] : {std::pair(4, 19), std::pair(12, 28), std::pair(10, 30)}) {
        const DATE date = DayNumberOf(2020, month, day);
        m_dateColumnWidth = std::max(m_dateColumnWidth, TextWidth(task, DateColumnText(date, date)));
    }
    CItemRowListLook look;
    look.Back = look.Separator = m_colors.Back;
    look.Selection = m_colors.Highlight;
    look.PopOut = g_Settings.TasksView.PopOut;
    m_list.SetLook(look);
    if (m_pane)
        m_pane->PrepareLook();
}

QRect CTasksView::ListArea() const
{
    return CTasksLayout::Of(SurfaceSize(), m_pane != nullptr).List;
}

QRect CTasksView::PaneArea() const
{
    return CTasksLayout::Of(SurfaceSize(), m_pane != nullptr).Pane;
}

void CTasksView::PaintView(QPainter& dc, QSize size)
{
    CItemRowView::PaintView(dc, size);
    const QRect pane = PaneArea();
    if (!pane.isEmpty())
        dc.drawImage(pane.topLeft(), m_pane->Picture(pane.size()));
}

void CTasksView::PaintEmptyList(QPainter& dc, const QRect& rect)
{
    dc.setFont(g_ImageStore.Font(kFontTask));
    dc.setPen(ToQColor(m_colors.Regular));
    DrawText(dc, GetString(StrNoTasks), rect, kLine | kTextCentre | kTextEndEllipsis);
}

int CTasksView::PaintOwnRow(QPainter* dc, CPaintingOrderItem& row, const QRect& rect, bool selected)
{
    if (row.m_item)
        return PaintTask(dc, row, rect, selected);
    return PaintGroupTitle(dc, static_cast<const CTaskGroup&>(*row.m_event), rect, selected);
}

QString CTasksView::NameOfOwnRow(const CPaintingOrderItem& row) const
{
    return static_cast<const CTaskGroup&>(*row.m_event).Name;
}

int CTasksView::PaintGroupTitle(QPainter* dc, const CTaskGroup& group, const QRect& rect, bool selected) const
{
    if (!dc)
        return m_titleRowHeight;
    const QRect row(rect.x(), rect.y(), rect.width(), m_titleRowHeight);
    const COLORREF ground = selected ? m_colors.Highlight : m_colors.TitleBack;
    if (!selected)
        FillTwoTone(*dc, row, ground, kColorWhite, kTwoToneAlpha, false);
    const QString count = QString::number(group.VisibleCount);
    dc->setFont(g_ImageStore.Font(kFontTitle));
    dc->setPen(ToQColor(m_colors.TitleText));
    const int countWidth =
        group.VisibleCount > 999 ? std::max(m_countWidth, TextWidth(dc->font(), count)) : m_countWidth;
    const int box = IsCollapsed(group) ? PictureCollapsed : PictureExpanded;
    const CGroupTitleLayout layout =
        CGroupTitleLayout::Of(row.size(), SizeOf(g_ImageStore.Image(box)),
                              SizeOf(g_ImageStore.Image(PictureTaskCount)), countWidth);
    const QPoint origin = row.topLeft();
    DrawWhitePicture(*dc, layout.Box.topLeft() + origin, box, ground);
    DrawWhitePicture(*dc, layout.Picture.topLeft() + origin, PictureTaskCount, ground);
    DrawText(*dc, count, layout.Count.translated(origin), kLine | kTextRight);
    DrawText(*dc, group.Name, layout.Title.translated(origin), kLine | kTextEndEllipsis);
    return m_titleRowHeight;
}

std::vector<CTasksView::CTaskIcon> CTasksView::IconsOf(const CTask& task) const
{
    std::vector<CTaskIcon> icons;
    for (const StatusPicture& picture : kStatusPictures) {
        if (picture.Shows(task) && g_ImageStore.Image(picture.ImageId).IsValid())
            icons.push_back({picture.ImageId, &g_ImageStore.Image(picture.ImageId)});
    }
    for (const CAlphaImage* const picture : CategoryPictures(task))
        icons.push_back({0, picture});
    if (int(icons.size()) > kMostTaskIcons)
        icons.resize(kMostTaskIcons);
    return icons;
}

int CTasksView::PaintTask(QPainter* dc, CPaintingOrderItem& row, const QRect& rect, bool selected) const
{
    const auto& task = static_cast<const CTask&>(*row.m_item);
    const int box = task.Complete ? PictureTaskCompleted : PictureTaskActive;
    CTaskRowSizes sizes;
    sizes.Row = {rect.width(), m_taskRowHeight};
    sizes.CheckBox = SizeOf(g_ImageStore.Image(box));
    if (!dc) {
        row.m_checkBox = CTaskRowLayout::Of(sizes).CheckBox;
        return sizes.Row.height();
    }
    const std::vector<CTaskIcon> icons = IconsOf(task);
    const int priority = PriorityImage(task);
    sizes.DateColumn = m_dateColumnWidth;
    if (priority)
        sizes.Priority = SizeOf(g_ImageStore.Image(priority));
    for (const CTaskIcon& icon : icons)
        sizes.Icons.push_back(SizeOf(*icon.Icon));
    CTaskRowLayout layout = CTaskRowLayout::Of(sizes);
    row.m_checkBox = layout.CheckBox;
    const QPoint origin = rect.topLeft();
    if (!selected)
        FillSolid(*dc, QRect(origin, sizes.Row), m_colors.TaskBack);
    const auto picture = [&](int id, const QRect& place) {
        if (selected)
            DrawWhitePicture(*dc, place.topLeft() + origin, id, m_colors.Highlight);
        else
            DrawImage(g_ImageStore.Image(id), *dc, place.x() + origin.x(), place.y() + origin.y());
    };
    picture(box, layout.CheckBox);
    for (size_t n = 0; n < layout.Icons.size(); ++n) {
        const QPoint at = layout.Icons[n].topLeft() + origin;
        if (icons[n].ImageId)
            picture(icons[n].ImageId, layout.Icons[n]);
        else
            DrawImage(*icons[n].Icon, *dc, at.x(), at.y());
    }
    if (priority)
        picture(priority, layout.Priority);
    layout.Date.translate(origin);
    layout.Subject.translate(origin);
    PaintTaskTexts(*dc, task, layout, selected);
    return sizes.Row.height();
}

void CTasksView::PaintTaskTexts(QPainter& dc, const CTask& task, const CTaskRowLayout& layout,
                                bool selected) const
{
    dc.setFont(g_ImageStore.Font(kFontTask));
    if (!layout.Date.isEmpty()) {
        dc.setPen(ToQColor(selected ? m_colors.SelectedText : kDateColor));
        DrawText(dc, DateColumnText(task.Start, task.End), layout.Date, kLine);
    }
    const COLORREF color = task.End == NO_DATE                ? m_colors.Undated
                           : DayNumber(task.End) < GetToday() ? m_colors.Overdue
                                                              : m_colors.Regular;
    dc.setPen(ToQColor(selected ? m_colors.SelectedText : color));
    DrawText(dc, task.Subject, layout.Subject, kLine | kTextEndEllipsis);
}
