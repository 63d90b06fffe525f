#include "touch/device_pixels.h"

#include <QImage>
#include <QPainter>
#include <QWidget>
#include <algorithm>
#include <cmath>

namespace
{
int s_forcedDensity = -1;
}

void ForceDensity(int density)
{
    s_forcedDensity = density;
}

int ForcedDensity()
{
    return s_forcedDensity;
}

int SurfaceFactorOf(double devicePixelRatio)
{
    // A ratio that is whole but for rounding (1.0000001) must not double every surface.
    return std::clamp(int(std::ceil(devicePixelRatio - 0.001)), 1, 4);
}

int SurfaceFactor(const QWidget* window)
{
    return s_forcedDensity != -1 || !window ? 1 : SurfaceFactorOf(window->devicePixelRatioF());
}

int SurfaceDensity(const QWidget* window)
{
    return s_forcedDensity != -1 ? s_forcedDensity : 96 * SurfaceFactor(window);
}

QPoint ToSurface(QPointF logical, int k)
{
    return {int(std::floor(logical.x() * k)), int(std::floor(logical.y() * k))};
}

QRect ToLogical(const QRect& surface, int k)
{
    const auto floorDiv = [k](int v) { return v >= 0 ? v / k : -((-v + k - 1) / k); };
    const auto ceilDiv = [k](int v) { return v >= 0 ? (v + k - 1) / k : -(-v / k); };
    const int left = floorDiv(surface.x()), top = floorDiv(surface.y());
    const int right = ceilDiv(surface.x() + surface.width());
    const int bottom = ceilDiv(surface.y() + surface.height());
    return {left, top, right - left, bottom - top};
}

void BlitSurface(QPainter& window, const QImage& surface, QPoint at, int k)
{
    const QPainter::CompositionMode mode = window.compositionMode();
    window.setCompositionMode(QPainter::CompositionMode_Source);
    if (k == 1) {
        window.drawImage(at, surface);
    } else {
        // Scaling the painter, not the picture: a picture that is told a ratio is copied first.
        const QTransform transform = window.worldTransform();
        window.scale(1.0 / k, 1.0 / k);
        const bool exact = window.device()->devicePixelRatioF() == k;
        window.setRenderHint(QPainter::SmoothPixmapTransform, !exact);
        window.drawImage(at, surface);
        window.setWorldTransform(transform);
    }
    window.setCompositionMode(mode);
}
