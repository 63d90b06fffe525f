// Paints one day's items as a plain list, a line each: the quick view list of the month and the tiles of
// the week. What the weekly view's settings say of leading rectangles, start times and empty days counts
// wherever this painter runs.
// Units: surface pixels. All rows of a kind are equally high, so that a long day costs what shows of it.
// Ownership: borrows nothing between two calls; rows name their items by identity.
#pragma once
#include "pim/day_items.h"
#include "views/item_looks.h"
#include "views/painting_order.h"

#include <QRect>
#include <vector>

class QPainter;

struct CDayItemsLook {
    int Font = 0; // number
    bool IncludeTasks = true;
    bool UseHighlightColors = false; // a popped-out ground: every text in HighlightText
    bool TwoLines = false;           // an appointment's time, or a task's date, stands above its subject
    COLORREF Background = kColorWhite;
    COLORREF HighlightText = kColorWhite;
    COLORREF GeneralText = 0;
    COLORREF AppointmentText = 0;
    COLORREF Selection = 0; // of the bar under the selected row
};

// One painted line, in content coordinates.
struct CDayItemRow {
    CItemIdentity Item;
    QRect Rect;
    QRect CheckBox; // of a task
};

class CDayItemsPainter
{
public:
    // Fonts, colours and pictures must be loaded; again after a change of any of them.
    void Init(const CDayItemsLook& look);
    const CDayItemsLook& Look() const { return m_look; }
    int LineHeight() const { return m_lineHeight; }

    // The rows of the day below the rectangle's top.
    std::vector<CDayItemRow> LayOut(const CDayItems& day, const QRect& rect) const;
    // Fills `rect` and paints what of the list shows in it, moved down by `scroll`. Result: the content's
    // y below the last line. `selected` may be of no item; `rows`, when given, gets all rows.
    int PaintDayItems(QPainter& dc, const CDayItems& day, const QRect& rect, int scroll,
                      const CItemIdentity& selected = {}, std::vector<CDayItemRow>* rows = nullptr) const;

private:
    struct Line;
    void PaintRow(QPainter& dc, const CPimItem& item, int day, const QRect& rect, bool selected) const;
    void PaintAppointment(Line& line, const CAppointment& item) const;
    void PaintTask(Line& line, const CTask& item) const;
    void PaintIcons(Line& line, const CPimItem& item) const;
    QRect CheckBoxOf(const CPimItem& item, const QRect& row) const;
    int HeightOf(const CPimItem& item, int day) const;
    int Gap() const; // between two rows, the line there included

    CDayItemsLook m_look;
    CItemColors m_colors;
    int m_fontHeight = 0, m_lineHeight = 0;
};
