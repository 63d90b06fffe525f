#include "shell/title_strip.h"
#include "drawing/image_store.h"
#include "drawing/paint.h"
#include "drawing/screen_metrics.h"
#include "drawing/text.h"
#include "settings/settings.h"
#include "shell/frame_layout.h"

#include <QImage>
#include <QPainter>

namespace
{
constexpr int kTitleFont = 1000;
constexpr int kColorGround = 504, kColorText = 505;
constexpr quint32 kLightAlpha = 50;
constexpr int kMargin = 4; // design pixels between the text and the strip's ends
constexpr unsigned kTextFlags =
    kTextCentre | kTextVCentre | kTextSingleLine | kTextNoPrefix | kTextEndEllipsis;

// The edge that lies towards the view.
QRect SeparatorOf(const QRect& strip, int location)
{
    const int line = D(1);
    switch (location) {
    case kTitleLeft:
        return {strip.x() + strip.width() - line, strip.y(), line, strip.height()};
    case kTitleTop:
        return {strip.x(), strip.y() + strip.height() - line, strip.width(), line};
    case kTitleRight:
        return {strip.x(), strip.y(), line, strip.height()};
    default:
        return {strip.x(), strip.y(), strip.width(), line};
    }
}

// Written level and then turned by a quarter, so that every letter is as sharp as a level one.
QImage UprightText(const QString& text, QSize level, bool clockwise)
{
    QImage picture(level, QImage::Format_ARGB32_Premultiplied);
    picture.fill(Qt::transparent);
    QPainter dc(&picture);
    dc.setFont(g_ImageStore.Font(kTitleFont));
    dc.setPen(ToQColor(g_Settings.ResolveColor(kColorText)));
    DrawText(dc, text, picture.rect(), kTextFlags);
    dc.end();
    return picture.transformed(QTransform().rotate(clockwise ? 90 : -90));
}
} // namespace

void PaintTitleStrip(QPainter& dc, const QRect& rect, int location, const QString& text)
{
    if (rect.isEmpty())
        return;
    FillTwoTone(dc, rect, g_Settings.ResolveColor(kColorGround), kColorWhite, kLightAlpha,
                IsUprightTitle(location));
    const COLORREF ink = g_Settings.ResolveColor(kColorText);
    const int line = D(1), margin = D(kMargin);
    QRect room = rect; // without the separator
    if (location == kTitleLeft)
        room.adjust(0, margin, -line, -margin);
    else if (location == kTitleRight)
        room.adjust(line, margin, 0, -margin);
    else if (location == kTitleTop)
        room.adjust(margin, 0, -margin, -line);
    else
        room.adjust(margin, line, -margin, 0);
    if (!room.isEmpty() && IsUprightTitle(location)) {
        dc.drawImage(room.topLeft(), UprightText(text, room.size().transposed(), location == kTitleRight));
    } else if (!room.isEmpty()) {
        dc.setFont(g_ImageStore.Font(kTitleFont));
        dc.setPen(ToQColor(ink));
        DrawText(dc, text, room, kTextFlags);
    }
    FillSolid(dc, SeparatorOf(rect, location), ink);
}
