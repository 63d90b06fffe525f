// Where the frame's parts lie: title strip, view, soft keys. Pure arithmetic.
// Units: surface pixels; rectangles with exclusive right and bottom edges.
#pragma once
#include <QPoint>
#include <QRect>
#include <QSize>

enum TitleLocation { kTitleNone = 0, kTitleLeft = 1, kTitleTop = 2, kTitleRight = 3, kTitleBottom = 4 };

struct CFrameLayout {
    QRect Title; // empty without a strip
    QRect View;
    QRect Keys;

    // Any other location means none. Parts that do not fit into a tiny window are cut or empty.
    static CFrameLayout Of(QSize client, int location, int titleWidth, int keyHeight);
};

// The strip's width in design pixels for the setting's index; an index out of range counts as the nearest.
int TitleStripWidth(int sizeIndex);
constexpr bool IsUprightTitle(int location)
{
    return location == kTitleLeft || location == kTitleRight;
}
