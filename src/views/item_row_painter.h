// Paints one item as a row of the daily, list and search views and tells the height it needed.
// Two layouts (several lines, single line) and three kinds of row.
// Units: surface pixels. A null painter measures: the same height, nothing painted.
// Errors: a missing image takes no room; an empty text draws nothing.
#pragma once
#include "pim/items.h"
#include "util/color.h"
#include "views/item_looks.h"

#include <QRect>
#include <QString>
#include <memory>
#include <vector>

class QPainter;

struct CRowPainterSetup {
    bool SingleLine = false;
    bool OnlyStartTime = false;
    int LeadingRects = 0;                                   // 0 none, 1 category colours, 2 status colours
    int FontText = 0, FontSubject = 0, FontSubjectPast = 0; // font numbers
    COLORREF Subject = 0, Time = 0, Location = 0, Special = 0;
    COLORREF Selection = 0; // of the background that selected rows are painted over
    bool DateLine = false;  // of several lines: an appointment's dates below its subject
};

// An icon at a row's right end.
struct CRowIcon {
    int ImageId = 0; // of a status, or
    QRect Rect;
    const CAlphaImage* Picture = nullptr; // of a category; the image store's
};
struct CRowIcons {
    std::vector<CRowIcon> Icons;
    int Width = 0;  // used, from the right
    int Bottom = 0; // of the lowest line of icons
};

class CItemRowPainter
{
public:
    CItemRowPainter();
    ~CItemRowPainter();

    void InitRowPainter(const CRowPainterSetup& setup); // fonts, colours and pictures must be loaded

    // Each paints inside `rect` from its top and returns the height of the row, however high `rect`
    // is; `day` is the row's day number. `selected`: painted over the selection background.
    int PaintAppointmentRow(QPainter* dc, const QRect& rect, const CAppointment& item, int day,
                            bool includeLocation, bool selected);
    // `checkBox` gets the box's rectangle in the coordinates of `rect`.
    int PaintTaskRow(QPainter* dc, const QRect& rect, const CTask& item, bool selected,
                     QRect* checkBox = nullptr);
    int PaintSpecialRow(QPainter* dc, const QRect& rect, const CAppointment& item, bool selected);

    COLORREF StatusColor(int busyStatus) const { return m_colors.OfStatus(busyStatus); }
    int TimeColumnWidth() const { return m_timeColumnWidth; }
    // The icons of an item from x leftwards, at most five; two in a line, but for the last, with
    // several lines.
    CRowIcons LayOutStatusIcons(const CPimItem& item, int x, int y, int lineHeight) const;

private:
    struct Row; // what the steps of one row hand on
    Row BeginRow(QPainter* dc, const QRect& rect, bool selected);
    int DrawRowText(const Row& row, const QString& text, QRect rect, COLORREF color, int font);
    int MeasureHeight(const QString& text, int width, int font);
    int MeasureLineWidth(const QString& text, int font);
    QPainter& MeasuringDc(int font);

    static CRowIcons LayOutCategoryIcons(const CPimItem& item, int x, int y, int lineHeight); // on one line
    int DrawTimeText(Row& row, const CAppointment& item, int day);
    void DrawPicture(const Row& row, int imageId, int x, int y) const;
    void DrawStatusIcons(const Row& row, const CRowIcons& icons) const;
    void DrawAllDayImage(Row& row);
    int PaintAppointmentLines(Row& row, const CAppointment& item, int day, bool includeLocation);
    int PaintAppointmentLine(Row& row, const CAppointment& item, int day, bool includeLocation);
    int PaintTaskLines(Row& row, const CTask& item, const QString& due, COLORREF dueColor);
    int PaintTaskLine(Row& row, const CTask& item, const QString& due, COLORREF dueColor);
    QRect DrawCheckBox(Row& row, const CTask& item) const;
    QString DueText(const CTask& item, COLORREF& color) const;
    QRect TakeLeadingRect(Row& row) const;
    void FillLeadingRect(const Row& row, QRect rect, int height, COLORREF color) const;

    CRowPainterSetup m_setup;
    int m_timeColumnWidth = 0;
    int m_textHeight = 0, m_subjectHeight = 0; // one line in those fonts
    CItemColors m_colors;
    COLORREF m_colorSelectedText = 0;

    struct Measures;
    std::unique_ptr<Measures> m_measures;
};
