// The bar that shows how one day's appointments lie over its hours, with two counts.
// Shape: the counts stand behind the strip of hours, or, in a bar that is too narrow for that, below it.
// Units: surface pixels.
// Ownership: holds copies only; told of a day and of the selected item by its owner.
#pragma once
#include "util/color.h"

#include <QImage>
#include <QRect>
#include <array>

class QPainter;

struct CTimelineSlot {
    quint32 ItemId = 0; // 0: empty
    COLORREF Color = kColorNotSet;
    bool operator==(const CTimelineSlot&) const = default;
};

struct CTimelineDay {
    std::array<CTimelineSlot, 25> Slots; // 0..23 the hours, 24 all-day
    int AppointmentCount = 0, TaskCount = 0;
    bool operator==(const CTimelineDay&) const = default;
};

struct CTimelineColors {
    COLORREF StripBack = kColorWhite; // inside the border
    COLORREF StripBorder = kColorBlack;
    COLORREF BarBack = kColorWhite;
    COLORREF BarSecond = kColorWhite; // blended over the upper half
    int BarAlpha = 50;
    COLORREF BarBorder = kColorBlack;
};

class CTimelineBar
{
public:
    explicit CTimelineBar(const CTimelineColors& colors, bool vertical = false)
        : m_colors(colors), m_vertical(vertical)
    {
    }

    static int StripHeight();
    static int StripWidth();
    static int Height();                  // of the bar
    static int VerticalHeight();          // with the counts below the strip
    static int VerticalWidth();           // the least that such a bar needs
    static int Width();                   // the least that counts behind the strip need
    static QRect StripRect(int x, int y); // from the bar's top left
    static QRect InnerRect(const QRect& strip);
    int OwnHeight() const { return m_vertical ? VerticalHeight() : Height(); }
    static QRect CellRect(const QRect& strip, int hour); // 0..23; they tile the inner area
    // First and last hour of the item, first -1 when it occurs in none.
    static void FindRun(const CTimelineDay& day, quint32 itemId, int& first, int& last);

    void SetSelected(quint32 itemId) { m_selectedItem = itemId; } // 0 for none
    quint32 Selected() const { return m_selectedItem; }
    void Paint(QPainter& dc, int x, int y, int width, const CTimelineDay& day);

private:
    struct Shown {
        int Width = 0, Multiple = 0;
        quint32 Selected = 0;
        CTimelineDay Day;
        bool operator==(const Shown&) const = default;
    };
    void PaintPicture(QPainter& dc, int width, const CTimelineDay& day) const;
    void PaintBackground(QPainter& dc, const QRect& bar) const;
    void PaintStrip(QPainter& dc, const QRect& strip, const CTimelineDay& day) const;
    void PaintBracket(QPainter& dc, const QRect& strip, int first, int last) const;
    void PaintCounts(QPainter& dc, const QRect& bar, const QRect& strip, const CTimelineDay& day) const;
    static int PaintCount(QPainter& dc, const QRect& bar, int x, int imageId, int count);

    CTimelineColors m_colors;
    bool m_vertical;
    quint32 m_selectedItem = 0;
    Shown m_shown;
    QImage m_picture; // of what m_shown says
};
