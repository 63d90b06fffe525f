// Measuring for the row painter, and drawing one text of a row.
#include "drawing/image_store.h"
#include "drawing/paint.h"
#include "drawing/text.h"
#include "views/item_row_parts.h"

#include <QFontMetricsF>
#include <QPainter>
#include <algorithm>

namespace
{
constexpr int kPlainChars = 0x180; // Latin letters, which the chosen face has itself
constexpr int kKeptHeights = 4096;
constexpr double kKerningSlack = 4;
constexpr int kEndless = 1 << 20;

bool IsPlain(char16_t c)
{
    return (c >= 0x20 && c < 0x7F) || (c >= 0xA0 && c < kPlainChars && c != 0xAD);
}
} // namespace

CItemRowPainter::Measures::FontFacts& CItemRowPainter::Measures::Facts(int font)
{
    FontFacts& facts = Fonts[font];
    if (facts.Advances.empty()) {
        facts.Advances.assign(kPlainChars, -1);
        QPainter& dc = Surface.Dc();
        dc.setFont(g_ImageStore.Font(font));
        CurrentFont = font;
        QRect box(0, 0, kEndless, 0);
        facts.LineHeight =
            DrawText(dc, QStringLiteral("Ag"), box, kTextWordBreak | kTextNoPrefix | kTextCalcRect);
    }
    return facts;
}

double CItemRowPainter::Measures::WidthBound(const QString& text, int font)
{
    FontFacts& facts = Facts(font);
    double width = kKerningSlack;
    for (const QChar c : text) {
        if (!IsPlain(c.unicode()))
            return -1;
        float& advance = facts.Advances[c.unicode()];
        if (advance < 0)
            advance = float(QFontMetricsF(g_ImageStore.Font(font)).horizontalAdvance(c));
        width += advance;
    }
    return width;
}

QPainter& CItemRowPainter::MeasuringDc(int font)
{
    QPainter& dc = m_measures->Surface.Dc();
    if (m_measures->CurrentFont != font) {
        dc.setFont(g_ImageStore.Font(font));
        m_measures->CurrentFont = font;
    }
    return dc;
}

int CItemRowPainter::MeasureHeight(const QString& text, int width, int font)
{
    const double bound = m_measures->WidthBound(text, font);
    if (bound >= 0 && bound < width)
        return m_measures->Facts(font).LineHeight;
    if (m_measures->HeightCount >= kKeptHeights) {
        m_measures->Heights.clear();
        m_measures->HeightCount = 0;
    }
    auto& heights = m_measures->Heights[{font, width}];
    const auto known = heights.constFind(text);
    if (known != heights.constEnd())
        return *known;
    QRect box(0, 0, width, 0);
    const int height = DrawText(MeasuringDc(font), text, box, kTextWordBreak | kTextNoPrefix | kTextCalcRect);
    heights.insert(text, height);
    ++m_measures->HeightCount;
    return height;
}

int CItemRowPainter::MeasureLineWidth(const QString& text, int font)
{
    return TextWidth(g_ImageStore.Font(font), text);
}

int CItemRowPainter::DrawRowText(const Row& row, const QString& text, QRect rect, COLORREF color, int font)
{
    if (text.isEmpty() || rect.width() <= 0)
        return 0;
    const bool singleLine = m_setup.SingleLine;
    if (!row.Dc)
        return singleLine ? LineHeight(g_ImageStore.Font(font)) : MeasureHeight(text, rect.width(), font);
    row.Dc->setFont(g_ImageStore.Font(font));
    row.Dc->setPen(ToQColor(row.Selected ? m_colorSelectedText : color));
    if (singleLine)
        return DrawText(*row.Dc, text, rect,
                        kTextWordEllipsis | kTextSingleLine | kTextVCentre | kTextNoPrefix);
    rect.setHeight(kEndless);
    return DrawText(*row.Dc, text, rect, kTextWordBreak | kTextNoPrefix | kTextNoClip);
}
