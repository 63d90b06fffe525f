#include "views/task_row_layout.h"
#include "drawing/screen_metrics.h"

#include <algorithm>

namespace
{
constexpr int kPaneHeight = 60; // design pixels, as the next ones
constexpr int kBesideCheckBox = 2;
constexpr int kLeftMargin = 2;
constexpr int kTitleLeft = 15, kBoxLeft = 2, kCountRight = 4, kPictureGap = 2;
constexpr int kCheckBoxRight = 4, kIconGap = 2, kDateGap = 2, kNoDateGap = 1, kPriorityGap = 2;

QRect InMiddle(int x, QSize size, int rowHeight)
{
    return {QPoint(x, (rowHeight - size.height()) / 2), size};
}
} // namespace

CTaskRowLayout CTaskRowLayout::Of(const CTaskRowSizes& sizes)
{
    CTaskRowLayout layout;
    const int height = sizes.Row.height();
    int right = sizes.Row.width() - D(kCheckBoxRight) - sizes.CheckBox.width();
    layout.CheckBox = InMiddle(right, sizes.CheckBox, height);
    right -= D(kBesideCheckBox);
    for (const QSize& icon : sizes.Icons) {
        if (int(layout.Icons.size()) == kMostTaskIcons)
            break;
        right -= icon.width();
        layout.Icons.push_back(InMiddle(right, icon, height));
        right -= D(kIconGap);
    }
    int left = D(kLeftMargin);
    if (sizes.DateColumn > 0) {
        layout.Date = {left, 0, sizes.DateColumn, height};
        left += sizes.DateColumn + D(kDateGap);
    } else {
        left += D(kNoDateGap);
    }
    if (!sizes.Priority.isEmpty()) {
        layout.Priority = InMiddle(left, sizes.Priority, height);
        left += sizes.Priority.width();
    }
    left += D(kPriorityGap);
    layout.Subject = {left, 0, std::max(right - left, 0), height};
    return layout;
}

CGroupTitleLayout CGroupTitleLayout::Of(QSize row, QSize box, QSize picture, int countWidth)
{
    CGroupTitleLayout layout;
    layout.Box = InMiddle(D(kBoxLeft), box, row.height());
    int right = row.width() - D(kCountRight) - countWidth;
    layout.Count = {right, 0, countWidth, row.height()};
    right -= D(kPictureGap) + picture.width();
    layout.Picture = InMiddle(right, picture, row.height());
    const int left = D(kTitleLeft);
    layout.Title = {left, 0, std::max(right - D(kPictureGap) - left, 0), row.height()};
    return layout;
}

CTasksLayout CTasksLayout::Of(QSize view, bool hasPane)
{
    const int pane = hasPane ? std::min(D(kPaneHeight), view.height()) : 0;
    const int list = view.height() - pane;
    return {{0, 0, view.width(), list}, {0, list, view.width(), pane}};
}
