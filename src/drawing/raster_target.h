// The part of a painter's surface that may be written to pixel by pixel.
// A painter on a 32-bit picture, without rotation, scaling or opacity, is open to that; the
// painter's translation and clip are taken into account.
// REQUIRES: the painter outlives the target and is not changed while it is used.
#pragma once
#include <QPoint>
#include <QRect>
#include <QRegion>

class QImage;
class QPainter;

class CRasterTarget
{
public:
    explicit CRasterTarget(QPainter& dc);

    bool IsOpen() const { return m_bits != nullptr; }
    // Where the painter's (0, 0) lies in the picture.
    QPoint Origin() const { return m_origin; }
    QRect Bounds() const { return m_bounds; } // in the picture's coordinates
    quint32* Line(int y) const { return reinterpret_cast<quint32*>(m_bits + y * m_bytesPerLine); }

    // Calls paint(part) for each visible part of a rectangle of the painter's coordinates;
    // the parts are in the picture's coordinates and do not overlap.
    template <class Paint> void ForEachPart(const QRect& rect, Paint paint) const
    {
        const QRect inside = rect.translated(m_origin) & m_bounds;
        if (inside.isEmpty())
            return;
        if (!m_clipped) {
            paint(inside);
            return;
        }
        for (const QRect& clip : m_clip) {
            const QRect part = inside & clip;
            if (!part.isEmpty())
                paint(part);
        }
    }

private:
    uchar* m_bits = nullptr;
    qsizetype m_bytesPerLine = 0;
    QPoint m_origin;
    QRect m_bounds;
    QRegion m_clip;
    bool m_clipped = false;
};
