// What the files of the row painter share; for them alone.
#pragma once
#include "drawing/surface.h"
#include "views/item_row_painter.h"

#include <QHash>
#include <QRect>
#include <map>
#include <utility>
#include <vector>

struct CItemRowPainter::Row {
    QPainter* Dc; // null measures
    QRect Full;   // as given
    QRect Rest;   // what is left for text; its bottom has no meaning
    int IconX;    // right end of the icons
    int LineHeight;
    int IconColumn;
    bool Selected;

    int Bottom(int height) const { return Full.y() + height; }
};

// Heights of texts that were measured. Measuring costs as much as drawing, and a long day has
// hundreds of rows, most of them of one line that needs no layout to know so.
struct CItemRowPainter::Measures {
    struct FontFacts {
        int LineHeight = 0;
        std::vector<float> Advances; // of the characters below kPlainChars; negative: not yet asked
    };
    FontFacts& Facts(int font);
    // A width that the text surely does not exceed; negative when only a layout can tell.
    double WidthBound(const QString& text, int font);

    COffscreenSurface Surface{1, 1};
    int CurrentFont = -1;
    std::map<int, FontFacts> Fonts;
    std::map<std::pair<int, int>, QHash<QString, int>> Heights; // by font and width
    int HeightCount = 0;
};
