#include "views/link_text.h"
#include "drawing/paint.h"
#include "drawing/screen_metrics.h"
#include "settings/color_scheme.h"

#include <QPainter>
#include <QTextCharFormat>
#include <algorithm>
#include <cmath>

namespace
{
constexpr COLORREF kLinkColor = 0x1E1E1E;
}

void CLinkText::Set(const QString& text, const QFont& font, int width, int group)
{
    QString lines = text;
    lines.replace(QStringLiteral("\r\n"), QStringLiteral("\n")).replace(u'\r', u'\n');
    m_links.clear();
    if (group >= 0)
        FindLinks(lines, m_links, group);
    lines.replace(u'\n', QChar::LineSeparator); // the layout's own; no position moves
    QTextOption option;
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    m_layout.setFont(font);
    m_layout.setText(lines);
    m_layout.setTextOption(option);
    m_layout.setCacheEnabled(true);
    qreal bottom = 0, widest = 0;
    m_layout.beginLayout();
    if (!lines.isEmpty()) {
        for (QTextLine line = m_layout.createLine(); line.isValid(); line = m_layout.createLine()) {
            line.setLineWidth(std::max(width, 1));
            line.setPosition(QPointF(0, bottom));
            bottom += std::ceil(line.height());
            widest = std::max(widest, line.naturalTextWidth());
        }
    }
    m_layout.endLayout();
    m_height = int(bottom);
    m_width = int(std::ceil(widest));
}

QString CLinkText::Text() const
{
    return m_layout.text().replace(QChar::LineSeparator, u'\n');
}

// The first line that ends behind what is asked for.
template <typename EndOf> int CLinkText::FirstLine(EndOf endOf, qreal behind) const
{
    int first = 0, last = m_layout.lineCount();
    while (first < last) {
        const int middle = (first + last) / 2;
        if (endOf(m_layout.lineAt(middle)) > behind)
            last = middle;
        else
            first = middle + 1;
    }
    return first;
}

std::vector<QRect> CLinkText::RectsOf(const CTextLink& link) const
{
    std::vector<QRect> rects;
    const auto endOf = [](const QTextLine& line) { return line.textStart() + line.textLength(); };
    for (int i = FirstLine(endOf, qreal(link.Start)); i < m_layout.lineCount(); ++i) {
        const QTextLine line = m_layout.lineAt(i);
        const int first = std::max(line.textStart(), int(link.Start));
        const int last = std::min(endOf(line), int(link.End));
        if (first >= last)
            break;
        const qreal a = line.cursorToX(first), b = line.cursorToX(last);
        const int left = int(std::floor(std::min(a, b))), right = int(std::ceil(std::max(a, b)));
        rects.push_back(QRect(left, int(line.y()), right - left, int(std::ceil(line.height()))));
    }
    return rects;
}

void CLinkText::Paint(QPainter& dc, QPoint at, const QRect& visible, COLORREF color,
                      const CTextLink* focused) const
{
    const QRect band = visible.translated(-at);
    const auto bottomOf = [](const QTextLine& line) { return line.y() + line.height(); };
    const auto startOf = [&](int line) {
        return line < m_layout.lineCount() ? m_layout.lineAt(line).textStart() : int(m_layout.text().size());
    };
    const int from = startOf(FirstLine(bottomOf, band.top()));
    const int to = startOf(FirstLine(bottomOf, band.bottom() + 1) + 1);
    QList<QTextLayout::FormatRange> formats;
    for (const CTextLink& link : m_links) {
        if (link.End <= from || link.Start >= to)
            continue;
        QTextLayout::FormatRange range;
        range.start = int(link.Start);
        range.length = int(link.End - link.Start);
        range.format.setFontUnderline(true);
        const bool current = &link == focused;
        range.format.setForeground(ToQColor(current ? GetHighlightTextColor() : kLinkColor));
        if (current) {
            for (const QRect& rect : RectsOf(link))
                FillSolid(dc, rect.translated(at).adjusted(-D(1), 0, D(1), 0), GetHighlightColor());
        }
        formats.append(range);
    }
    dc.setPen(ToQColor(color));
    m_layout.draw(&dc, at, formats, visible);
}
