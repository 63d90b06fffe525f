// Small parts that several dialogs paint.
// Units: surface pixels; the fonts are those of the image store, by number.
#pragma once
#include "util/color.h"

#include <QFont>
#include <QRect>
#include <QString>
#include <QStringList>
#include <initializer_list>

class QPainter;
class QPlainTextEdit;
class QWidget;

constexpr COLORREF kFormInk = Rgb(0x2B, 0x3E, 0x55);
constexpr COLORREF kFormHairLine = 0xDDE1DE;

// A text that is never cut: on two lines at most in the first font that allows it, else in the last
// font on as many as it takes.
struct CFittedText {
    int Font = 0;
    QStringList Lines;
    int LineHeight = 0;
    int Height() const { return int(Lines.size()) * LineHeight; }
};
CFittedText FitText(const QString& text, std::initializer_list<int> fonts, int width);
// Its lines below one another, each in the middle.
void PaintFittedText(QPainter& dc, const CFittedText& text, const QRect& rect, COLORREF color);

// A filled disc with a sign in the middle: the number of a cell, the mark of a message.
void PaintDisc(QPainter& dc, const QRect& square, const QString& sign, COLORREF ground, COLORREF ink);

// A font of the image store for a live control, whose pixels are k times as large.
QFont LogicalFont(QFont font, int k);
// A light ground whatever the desktop's theme says.
void LightenControl(QWidget& control);
// What an on-screen keyboard is told by the setting of text input.
Qt::InputMethodHints TextInputHints();
// What a multi-line edit holds, exactly: hard blanks too, and line ends as `original` had them.
QString EditedPlainText(const QPlainTextEdit& edit, const QString& original);
