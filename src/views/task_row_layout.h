// Where the parts of the tasks view's rows stand: pure arithmetic from sizes to rectangles.
// Units: surface pixels, relative to the row's top left.
#pragma once
#include <QRect>
#include <QSize>
#include <vector>

constexpr int kMostTaskIcons = 4; // status pictures and category icons of one task

struct CTaskRowSizes {
    QSize Row, CheckBox;
    int DateColumn = 0; // 0: no column
    QSize Priority;     // empty for a task of normal priority
    std::vector<QSize> Icons;
};

struct CTaskRowLayout {
    QRect CheckBox, Date, Priority, Subject;
    std::vector<QRect> Icons; // from right to left, at most kMostTaskIcons
    static CTaskRowLayout Of(const CTaskRowSizes& sizes);
};

struct CGroupTitleLayout {
    QRect Box, Title, Picture, Count;
    static CGroupTitleLayout Of(QSize row, QSize box, QSize picture, int countWidth);
};

// The view's list, and below it the preview pane; empty without one.
struct CTasksLayout {
    QRect List, Pane;
    static CTasksLayout Of(QSize view, bool hasPane);
};
