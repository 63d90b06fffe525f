#include "drawing/paint.h"

#include <QImage>
#include <QPainter>
#include <algorithm>
#include <vector>

#include "drawing/blend_span.h"
#include "drawing/raster_target.h"

namespace
{
constexpr quint32 kOpaque = 0xFF000000;

quint32 ToPixel(COLORREF color)
{
    return kOpaque | RedOf(color) << 16 | GreenOf(color) << 8 | BlueOf(color);
}

// Colour `i` of `count` on the way from first to last, both ends exact.
quint32 ShadeAt(COLORREF first, COLORREF last, int i, int count)
{
    if (count < 2)
        return ToPixel(first);
    const auto channel = [&](quint32 a, quint32 b) {
        const qint64 steps = count - 1;
        return quint32((a * (steps - i) + b * i + steps / 2) / steps);
    };
    return ToPixel(Rgb(channel(RedOf(first), RedOf(last)), channel(GreenOf(first), GreenOf(last)),
                       channel(BlueOf(first), BlueOf(last))));
}

void FillGradientDirect(const CRasterTarget& target, const QRect& rect, COLORREF first, COLORREF second,
                        GradientMode mode)
{
    const QPoint origin = target.Origin();
    std::vector<quint32> columns;
    if (mode == kGradientLeftToRight) {
        columns.resize(size_t(rect.width()));
        for (int i = 0; i < rect.width(); ++i)
            columns[size_t(i)] = ShadeAt(first, second, i, rect.width());
    }
    target.ForEachPart(rect, [&](const QRect& part) {
        for (int y = part.top(); y <= part.bottom(); ++y) {
            quint32* line = target.Line(y) + part.left();
            if (mode == kGradientLeftToRight)
                std::copy_n(columns.data() + (part.left() - origin.x() - rect.left()), part.width(), line);
            else
                std::fill_n(line, part.width(),
                            ShadeAt(first, second, y - origin.y() - rect.top(), rect.height()));
        }
    });
}

// Row and column of the source for each part of a stretched image.
void DrawStretched(const CRasterTarget& target, const CAlphaImage& image, const QRect& rect)
{
    const quint32* pixels = image.Pixels();
    std::vector<quint32> row(size_t(rect.width()));
    target.ForEachPart(rect, [&](const QRect& part) {
        const int column = part.left() - target.Origin().x() - rect.left();
        qint64 drawn = -1;
        for (int y = part.top(); y <= part.bottom(); ++y) {
            const int targetRow = y - target.Origin().y() - rect.top();
            const qint64 source = qint64(targetRow) * image.Height() / rect.height();
            if (source != drawn) {
                drawn = source;
                const quint32* line = pixels + source * image.Width();
                for (int i = 0; i < part.width(); ++i)
                    row[size_t(i)] = line[qint64(column + i) * image.Width() / rect.width()];
            }
            BlendSpan(target.Line(y) + part.left(), row.data(), part.width());
        }
    });
}

void DrawSameSize(const CRasterTarget& target, const CAlphaImage& image, const QRect& rect)
{
    const quint32* pixels = image.Pixels();
    target.ForEachPart(rect, [&](const QRect& part) {
        const QPoint from = part.topLeft() - target.Origin() - rect.topLeft();
        for (int y = 0; y < part.height(); ++y)
            BlendSpan(target.Line(part.top() + y) + part.left(),
                      pixels + qsizetype(from.y() + y) * image.Width() + from.x(), part.width());
    });
}

struct SelectionMemo {
    QSize size;
    COLORREF color = kColorNotSet;
    QImage picture;
};
SelectionMemo s_selection;
} // namespace

void FillSolid(QPainter& dc, const QRect& rect, COLORREF color)
{
    if (!rect.isEmpty())
        dc.fillRect(rect, ToQColor(color));
}

void FrameRect(QPainter& dc, const QRect& rect, COLORREF color)
{
    if (rect.isEmpty())
        return;
    FillSolid(dc, QRect(rect.left(), rect.top(), rect.width(), 1), color);
    FillSolid(dc, QRect(rect.left(), rect.bottom(), rect.width(), 1), color);
    FillSolid(dc, QRect(rect.left(), rect.top(), 1, rect.height()), color);
    FillSolid(dc, QRect(rect.right(), rect.top(), 1, rect.height()), color);
}

void FillTwoTone(QPainter& dc, const QRect& rect, COLORREF color, COLORREF second, quint32 alpha,
                 bool vertical)
{
    QRect firstHalf = rect;
    QRect lastHalf = rect;
    if (vertical) {
        firstHalf.setWidth(rect.width() / 2);
        lastHalf.setLeft(firstHalf.right() + 1);
    } else {
        firstHalf.setHeight(rect.height() / 2);
        lastHalf.setTop(firstHalf.bottom() + 1);
    }
    FillSolid(dc, firstHalf, Blend(second, color, alpha));
    FillSolid(dc, lastHalf, color);
}

void FillGradient(QPainter& dc, const QRect& rect, COLORREF first, COLORREF second, GradientMode mode)
{
    if (rect.isEmpty())
        return;
    const CRasterTarget target(dc);
    if (target.IsOpen()) {
        FillGradientDirect(target, rect, first, second, mode);
        return;
    }
    const int steps = mode == kGradientLeftToRight ? rect.width() : rect.height();
    for (int i = 0; i < steps; ++i) {
        const QRect strip = mode == kGradientLeftToRight
                                ? QRect(rect.left() + i, rect.top(), 1, rect.height())
                                : QRect(rect.left(), rect.top() + i, rect.width(), 1);
        dc.fillRect(strip, QColor::fromRgb(ShadeAt(first, second, i, steps)));
    }
}

void FillShade(QPainter& dc, const QRect& rect, COLORREF color, GradientMode mode, bool swap)
{
    constexpr quint32 kShadeWeight = 100;
    const COLORREF shaded = Blend(color, kColorBlack, kShadeWeight);
    FillGradient(dc, rect, swap ? shaded : color, swap ? color : shaded, mode);
}

void BlendRect(QPainter& dc, const QRect& rect, COLORREF color, quint32 alpha)
{
    if (rect.isEmpty())
        return;
    alpha = std::min(alpha, 255u);
    const CRasterTarget target(dc);
    if (!target.IsOpen()) {
        QColor veil = ToQColor(color);
        veil.setAlpha(int(alpha));
        dc.fillRect(rect, veil);
        return;
    }
    target.ForEachPart(rect, [&](const QRect& part) {
        for (int y = part.top(); y <= part.bottom(); ++y)
            BlendColorSpan(target.Line(y) + part.left(), part.width(), ToPixel(color), alpha);
    });
}

void DrawSelectionBackground(QPainter& dc, const QRect& rect, COLORREF color)
{
    if (rect.isEmpty())
        return;
    if (s_selection.size != rect.size() || s_selection.color != color) {
        QImage picture(rect.size(), QImage::Format_RGB32);
        if (picture.isNull())
            return;
        QPainter painter(&picture);
        FillShade(painter, picture.rect(), color, kGradientTopToBottom, false);
        painter.end();
        s_selection = {rect.size(), color, picture};
    }
    dc.drawImage(rect.topLeft(), s_selection.picture);
}

CAlphaImage MakeSolidImage(int width, int height, COLORREF color, quint8 alpha)
{
    CAlphaImage image;
    image.CreateSolid(width, height, color, alpha);
    return image;
}

bool DrawImage(const CAlphaImage& image, QPainter& dc, int x, int y, int width, int height)
{
    if (!image.IsValid())
        return false;
    const QRect rect(x, y, width == -1 ? image.Width() : width, height == -1 ? image.Height() : height);
    if (rect.isEmpty())
        return true;
    const CRasterTarget target(dc);
    if (!target.IsOpen()) {
        const bool smooth = dc.testRenderHint(QPainter::SmoothPixmapTransform);
        dc.setRenderHint(QPainter::SmoothPixmapTransform, false);
        dc.drawImage(rect, image.ToImage());
        dc.setRenderHint(QPainter::SmoothPixmapTransform, smooth);
    } else if (rect.size() == QSize(image.Width(), image.Height())) {
        DrawSameSize(target, image, rect);
    } else {
        DrawStretched(target, image, rect);
    }
    return true;
}
