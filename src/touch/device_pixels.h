// The program's own pixels. A surface is the window's logical size times k, k being the window's
// device pixel ratio rounded up, 1 to 4; only what stands here knows k.
// Units: "surface" is the program's pixels, "logical" is what Qt's events and geometry use.
#pragma once
#include <QPoint>
#include <QPointF>
#include <QRect>
#include <QSize>

class QImage;
class QPainter;
class QWidget;

// A density put from outside (96, 192, 288 or 384) makes k 1: the window's logical size then is
// the surface's. -1 returns to what the window says.
void ForceDensity(int density);
int ForcedDensity();

int SurfaceFactorOf(double devicePixelRatio); // rounded up, 1 to 4
int SurfaceFactor(const QWidget* window);     // 1 for no window
int SurfaceDensity(const QWidget* window);    // what the screen metrics are to be told

inline QSize ToSurface(QSize logical, int k)
{
    return logical * k;
}
inline QRect ToSurface(const QRect& logical, int k)
{
    return {logical.x() * k, logical.y() * k, logical.width() * k, logical.height() * k};
}
QPoint ToSurface(QPointF logical, int k);     // the pixel under the pointer
QRect ToLogical(const QRect& surface, int k); // the smallest that covers it

// Puts a surface on the window's painter, its top left at a surface point; one to one when the
// ratio is k.
void BlitSurface(QPainter& window, const QImage& surface, QPoint at, int k);
