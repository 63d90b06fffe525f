// Paints one item as a row of the daily, list and search views and tells the height it needed.
// Two layouts (several lines, single line) and three kinds of row.
// Units: surface pixels. A null painter measures: the same height, nothing painted.
// Errors: a missing image takes no room; an empty text draws nothing.
#pragma once
#include "pim/items.h"
#include "util/color.h"

#include <QPoint>
#include <QRect>
#include <QSize>
#include <QString>
#include <vector>

class QPainter;

struct CRowPainterSetup {
    bool SingleLine = false;
    bool OnlyStartTime = false;
    int LeadingRects = 0; // 0 none, 1 category colours, 2 status colours
    int FontText = 0, FontSubject = 0, FontSubjectPast = 0; // font numbers
    COLORREF Subject = 0, Time = 0, Location = 0, Special = 0;
};

// The icons at a row's right end: which, and where, by sizes alone.
struct CRowIcon {
    int ImageId = 0;           // 0: the picture of a category
    qint32 Category = 0;
    QSize Size;
    QPoint At;                 // top left
};

class CItemRowPainter
{
public:
    void InitRowPainter(const CRowPainterSetup& setup); // fonts, colours and images must be loaded

    // Each paints inside `rect` from its top and returns the height of the row; `day` is the row's
    // day number. `selected`: painted over the selection background.
    int PaintAppointmentRow(QPainter* dc, const QRect& rect, const CAppointment& item, int day, bool includeLocation,
                            bool selected);
    // `checkBox` gets the box's rectangle in the coordinates of `rect`.
    int PaintTaskRow(QPainter* dc, const QRect& rect, const CTask& item, bool selected, QRect* checkBox = nullptr);
    int PaintSpecialRow(QPainter* dc, const QRect& rect, const CAppointment& item, bool selected);

    int TimeColumnWidth() const { return m_timeColumnWidth; }
    bool IsSingleLine() const { return m_setup.SingleLine; }
    int TextHeight() const { return m_textHeight; }
    COLORREF StatusColor(int busyStatus) const; // kColorNotSet for any other status

    // The icons of an item from x leftwards; at most five.
    std::vector<CRowIcon> LayOutStatusIcons(const CPimItem& item, int x, int y, int lineHeight, int& usedWidth,
                                            int& bottom) const;

private:
    enum Measure { kPaint, kMeasureWidth };
    int DrawRowText(QPainter* dc, const QString& text, QRect rect, COLORREF color, int font, bool centre = false,
                    Measure measure = kPaint) const;
    int DrawTimeText(QPainter* dc, const CAppointment& item, int day, const QRect& rect, bool inColumn, bool selected) const;
    int DrawStatusIcons(QPainter* dc, const CPimItem& item, int x, int y, int lineHeight, int& usedWidth) const;
    int DrawMultiLine(QPainter* dc, QRect rect, int iconX, int lineHeight, const CAppointment& item, int day,
                      bool includeLocation, bool selected) const;
    int DrawSingleLine(QPainter* dc, QRect rect, int iconX, int lineHeight, const CAppointment& item, int day,
                       bool includeLocation, bool selected) const;
    void FillLeadingRect(QPainter* dc, const QRect& rect, COLORREF color) const;
    COLORREF SubjectColor(const CAppointment& item, bool selected) const;

    CRowPainterSetup m_setup;
    int m_timeColumnWidth = 0;
    int m_textHeight = 0, m_subjectHeight = 0;
    COLORREF m_statusColors[4] = {}; // free, busy, tentative, out of office
    COLORREF m_dueColors[3] = {};    // regular, overdue, undated
    COLORREF m_colorSelectedText = 0;
};
