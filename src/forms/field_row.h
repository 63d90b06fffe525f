// One row of a form: what its static table says of it, what it shows now, and how that is painted.
// Units: surface pixels; rectangles with exclusive right and bottom edges.
#pragma once
#include "platform/system_time.h"
#include "util/color.h"

#include <QRect>
#include <QString>
#include <QStringList>
#include <vector>

class QPainter;

enum FieldRowType : quint32 {
    kRowText = 1,
    kRowDate = 2,
    kRowDateTime = 4,
    kRowChoice = 8,
    kRowLink = 16,
    kRowHeader = 64,
    kRowCheck = 128, // a box and its label; always included or not
    kRowTime = 256,
    kRowColor = 512,
};

enum FieldRowFlag : quint32 {
    kRowInclude = 0x001,   // a check box at the left; clear: the value is grey and cannot be changed
    kRowMarked = 0x002,    // carried, read by nobody; so is kRowEntry
    kRowEntry = 0x010,
    kRowHasHeader = 0x020, // a header is made above it
    kRowDuration = 0x040,  // of a Time row
    kRowMultiLine = 0x080, // of a Text row
    kRowDigits = 0x100,    // of a Text row: digits only, the label holds "##" where the box stands
};

constexpr quint32 kHeaderBit = 0x80000000; // on the id of a header that was made for a row
constexpr int kIconNone = -1;              // the text stands in the value column
constexpr int kIconLeft = -2;              // the text begins at the left edge

struct FieldRowDesc {
    quint32 Id;   // string of the label, and the row's name in every exchange
    qint32 Icon;  // picture, kIconNone or kIconLeft; of a Color row the colour's number
    quint32 Type; // FieldRowType
    quint32 Flags = 0;
};

struct CFieldRow {
    quint32 Id = 0;
    qint32 Icon = kIconNone;
    quint32 Type = 0, Flags = 0;
    QStringList Choices;
    QString Value; // what is drawn
    QString Label;
    int Index = 0;
    DATE Date = 0;
    COLORREF Color = kColorNotSet; // kColorNotSet: the default one
    QRect Rect; // of the content; without the line below
    bool Included = true, Hidden = false;
    QRect DigitBox; // the "##", of the content

    bool HasFlag(quint32 flag) const { return (Flags & flag) != 0; }
    bool HasDate() const { return (Type & (kRowDate | kRowDateTime | kRowTime)) != 0; }
    bool CanSelect() const { return Type != kRowHeader && !Hidden; }
};

std::vector<CFieldRow> MakeFieldRows(const FieldRowDesc* table, size_t count);

// ---- texts
QString FieldDateText(DATE date);
QString FieldTimeText(DATE date, bool duration);
QString FieldDateValue(const CFieldRow& row); // of a Date, Time or DateTime row

// ---- measures
int FieldRowStep();   // from one row's top to the next one's, the line included
int FieldValueLeft(); // the value column
QRect FieldIncludeBox(const CFieldRow& row, const QRect& rect);
int FieldTextLeft(const CFieldRow& row, const QRect& rect);
QRect FieldValueRect(const CFieldRow& row, const QRect& rect); // the live control's
// The three pieces of a digits-only row.
struct FieldDigits {
    QString Left, Right;
    QRect LeftRect, Box, RightRect;
};
FieldDigits FieldDigitsOf(const CFieldRow& row, const QRect& rect);

// ---- paint
void PaintFieldRow(QPainter& dc, const CFieldRow& row, const QRect& rect, bool selected);
void PaintFieldLine(QPainter& dc, const QRect& row); // below it
void PaintCheckBox(QPainter& dc, const QRect& box, bool checked, bool enabled);
