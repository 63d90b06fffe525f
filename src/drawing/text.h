// Text on a painter, in its font and pen colour.
// Units: device pixels; right and bottom edges are exclusive.
// The last few layouts are kept, so that measuring a text and then drawing it, or drawing the
// same text again, shapes it once.
#pragma once
#include <QFont>
#include <QRect>
#include <QString>

class QPainter;

// The numbers are those that the painters' flag values are made of.
enum TextFlag : unsigned {
    kTextLeft = 0,
    kTextCentre = 0x1,
    kTextRight = 0x2,
    kTextVCentre = 0x4,     // single line only
    kTextBottom = 0x8,      // single line only
    kTextWordBreak = 0x10,  // a word wider than the rectangle breaks anywhere
    kTextSingleLine = 0x20, // line breaks become blanks
    kTextNoClip = 0x100,
    kTextCalcRect = 0x400, // draws nothing; sets the rectangle's right and bottom
    kTextNoPrefix = 0x800, // without it "&" is dropped and "&&" is one
    kTextEndEllipsis = 0x8000,
    kTextWordEllipsis = 0x40000,
};

// The result is the text's height; 0 for an empty text. Without kTextSingleLine the text's own
// line breaks count. With kTextCalcRect the rectangle keeps its left and top.
int DrawText(QPainter& dc, const QString& text, QRect& rect, unsigned flags);
int DrawText(QPainter& dc, const QString& text, const QRect& rect, unsigned flags);

// The size of a text on one line, as DrawText would draw it.
QSize MeasureText(const QFont& font, const QString& text);
inline int TextWidth(const QFont& font, const QString& text)
{
    return MeasureText(font, text).width();
}
// The height of one line; remembered for the fonts in use.
int LineHeight(const QFont& font);
