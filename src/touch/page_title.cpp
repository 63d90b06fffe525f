#include "touch/page_title.h"
#include "drawing/image_store.h"
#include "drawing/paint.h"
#include "drawing/screen_metrics.h"
#include "drawing/text.h"
#include "settings/settings.h"

#include <QPainter>

namespace
{
constexpr int kTitleHeight = 28; // design pixels
constexpr int kTextMargin = 10;
constexpr int kColorTitleBack = 504, kColorTitleText = 505;
constexpr quint32 kTitleAlpha = 50;
constexpr int kFontTitle = 4;
} // namespace

int PageTitleHeight()
{
    return D(kTitleHeight);
}

void PaintPageTitle(QPainter& dc, const QRect& rect, const QString& text)
{
    FillTwoTone(dc, rect, g_Settings.ResolveColor(kColorTitleBack), kColorWhite, kTitleAlpha, false);
    dc.setFont(g_ImageStore.Font(kFontTitle));
    dc.setPen(ToQColor(g_Settings.ResolveColor(kColorTitleText)));
    DrawText(dc, text, rect.adjusted(D(kTextMargin), 0, -D(kTextMargin), 0),
             kTextVCentre | kTextSingleLine | kTextNoPrefix | kTextEndEllipsis);
}
