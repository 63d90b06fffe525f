// The days of a month, or of five weeks, as a grid of cells, with one of them popped out.
// Shape: two pictures, of the grid without a selection and with it, so that moving the selection costs
//   the copy of a small block and the paint of one cell. Both are made when somebody asks for the picture.
// Units: surface pixels; days are day numbers. The day in the store's cursor is the selected one.
// Errors: a day that the cache has not stays blank and does not pop out.
#pragma once
#include "pim/day_items.h"
#include "views/mini_timeline.h"
#include "views/month_grid_layout.h"

#include <QImage>
#include <array>

class CMonthGrid
{
public:
    // Fonts, colours and pictures must be loaded; again after a change of any of them.
    void Init();
    // A new size of the view; what has to be known of the rest of it comes along.
    void SetShape(QSize client, QuickListMode quickList, int sideWidth);

    // Moves the selection, and the grid where the day lies outside. True when the grid shows other days
    // now, or when the store had to load some.
    bool SelectDate(int day);
    // The same, but the grid turns to the day's month even where the day stands on it already.
    void GoToDate(int day);
    // Moves the window of five weeks; nothing selected changes.
    void ShiftWeeks(int weeks);
    void Invalidate(); // items, filter or today have changed: all cells are painted anew

    int FirstDay() const { return m_firstDay; }
    int RowCount() const;
    int LastDay() const { return m_firstDay + RowCount() * CMonthGridLayout::kColumns - 1; }
    int MonthDay() const;        // any day of the month that stands for the grid
    int DayAt(QPoint at) const;  // 0 outside the cells
    QRect CellOf(int day) const; // empty when the grid has not that day
    bool IsPoppedOut(QPoint at);

    const CMonthGridLayout& Layout() const { return m_layout; }
    const QImage& Picture(); // brings it up to date
    // What differs in the picture since this was asked last; brings it up to date.
    QRect TakeChanges();

private:
    struct Month {
        int First, Last;
        bool Contains(int day) const { return day >= First && day <= Last; }
    };
    Month ShownMonth() const;
    bool Load(int day);
    void Lay();
    void Update();
    void PaintAllCells();
    void PaintTitleRow(QPainter& dc) const;
    void PaintWeekNumbers(QPainter& dc) const;
    void PaintCell(QPainter& dc, const CDayItems& day, QRect cell, bool selected);
    void PaintIcons(QPainter& dc, const CDayItems& day, const QRect& cell, int timelineBottom) const;
    COLORREF CellColor(int day, bool inMonth) const;
    COLORREF NumberColor(int day, bool inMonth) const;

    int m_firstDay = 0; // 0 before the first date
    int m_selected = 0;
    QSize m_client;
    QuickListMode m_quickList = kQuickListNone;
    int m_sideWidth = 0;
    CMonthGridLayout m_layout;

    QImage m_basePicture, m_picture;
    bool m_baseValid = false;
    int m_shown = 0;    // the day popped out in m_picture
    QRect m_popOutRect; // where it was painted
    QRect m_covered;    // that and its shadow
    QRect m_changes;

    struct Colors {
        COLORREF Days, Today, OtherMonth, Weekend, Selected;
        COLORREF SelectedNumber, Number, OtherNumber, TodayNumber;
        CMiniTimelineColors Timeline;
        COLORREF TitleText, TitleBack, WeekBack, WeekText;
    };
    Colors m_colors{};
    std::array<bool, 7> m_weekend{}; // by day of the week, 0 Sunday
    QSize m_numberSize;              // of the widest number
    int m_today = 0;
};
