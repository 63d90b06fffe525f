// The painted bar of buttons along the bottom of the frame or of a finger menu.
// Shape: the owner gives the bar's rectangle; the width is divided evenly, in whole pixels.
// Units: surface pixels; rectangles with exclusive right and bottom edges.
// The bar sends nothing: the owner asks it what lies under the finger.
#pragma once
#include "touch/painted_accessible.h"
#include "util/color.h"

#include <QImage>
#include <QPoint>
#include <QRect>
#include <QString>
#include <vector>

class QPainter;

struct CSoftKey {
    int Command = -1;  // -1: a separator that cannot be pressed
    int ImageId = 0;   // 0 or -1: no image
    bool Flag = false; // stands for something that is on: painted lightened
    QString Text;      // of dialogs' keys: right of the picture, which gives way when both are too wide
};

class CSoftKeyBar
{
public:
    static int Height();                                          // 40 design pixels
    static QRect KeyRect(const QRect& bar, int index, int count); // pure

    void AddButton(int command, int imageId, bool flag = false, const QString& text = QString());
    void SetImage(int command, int imageId); // of the buttons with that command
    void Clear(); // drops the cached background too

    // Fills the whole of `bar`, cached background first.
    void Paint(QPainter& dc, const QRect& bar);
    // The pressable button under the point, else -1.
    int HitTest(const QRect& bar, QPoint at) const;
    // The key under the finger; -1 none. True when the bar must be painted again.
    bool SetPressed(int index);
    int Pressed() const { return m_pressed; }

    int GetCount() const { return int(m_keys.size()); }
    const CSoftKey& GetKey(int index) const { return m_keys[size_t(index)]; }
    int CommandAt(int index) const; // CmdNone out of range
    // For readers of the screen; `bar` with k surface pixels to a logical one.
    CPaintedPart PartOf(int index, const QRect& bar, int k) const;
    int FirstCommand() const;       // key F1; CmdNone without buttons or for a separator
    int LastCommand() const;        // key F2

private:
    void PaintKey(QPainter& dc, const CSoftKey& key, const QRect& rect, bool lightened) const;

    std::vector<CSoftKey> m_keys;
    int m_pressed = -1;
    QImage m_background; // of the bar's size
    COLORREF m_backgroundColor = kColorNotSet;
};
