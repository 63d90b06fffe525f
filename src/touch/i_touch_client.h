// The scrollable content of a CTouchNavigator.
// Units: device pixels of the navigator's surface; content coordinates include the scroll offset.
#pragma once
#include <QtGlobal>

class QPainter;

class ITouchClient
{
public:
    virtual ~ITouchClient() = default;
    // Paints with vertical offset `scroll` (0 at the top, negative when scrolled down) into a
    // surface of width x height; result: the content's total height.
    virtual int RenderContent(quint32 value, QPainter& dc, quint32 paintArgument, int scroll, int width,
                              int height) = 0;
    virtual bool OnPress(quint32 value, int x, int y) = 0; // true: paint again
    virtual void OnDragStart(quint32 value) = 0;
    virtual void OnTap(quint32 value, int x, int y) = 0;
};
