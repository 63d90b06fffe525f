#include "drawing/text.h"

#include <QCoreApplication>
#include <QFontMetrics>
#include <QHash>
#include <QPainter>
#include <QTextLayout>
#include <cmath>
#include <list>

namespace
{
constexpr int kEndless = 1 << 22; // wider than any line; small enough for the layout's fixed point
constexpr int kRounding = 1;      // by which a layout's line can exceed its font
constexpr size_t kKeptLayouts = 8;
constexpr unsigned kEllipses = kTextEndEllipsis | kTextWordEllipsis;
// The flags that change the layout; the others only place it.
constexpr unsigned kLayoutFlags = kTextSingleLine | kTextWordBreak | kTextNoPrefix | kEllipses;

// A text shaped and broken into lines, all lines starting at x 0 of a box `width` wide.
struct CLaidOutText {
    QString source;
    QFont font;
    int boxWidth = 0; // the width it was made for; kEndless when the width did not matter
    unsigned flags = 0;

    QTextLayout layout;
    int width = 0; // of the widest line
    int height = 0;
};

// ---- preparing the characters

QString WithoutPrefixes(const QString& text)
{
    QString result;
    result.reserve(text.size());
    for (qsizetype i = 0; i < text.size(); ++i) {
        if (text[i] == u'&' && ++i == text.size())
            break;
        result += text[i];
    }
    return result;
}

QString Prepared(const QString& text, unsigned flags)
{
    QString result = flags & kTextNoPrefix || !text.contains(u'&') ? text : WithoutPrefixes(text);
    const bool singleLine = flags & kTextSingleLine;
    if (result.contains(u'\r')) {
        result.replace(QLatin1String("\r\n"), QLatin1String("\n"));
        result.replace(u'\r', u'\n');
    }
    if (result.contains(u'\n'))
        result.replace(u'\n', singleLine ? QChar(u' ') : QChar(QChar::LineSeparator));
    return result;
}

// ---- layout

QTextOption OptionFor(unsigned flags)
{
    QTextOption option;
    option.setWrapMode(flags & kTextSingleLine || !(flags & kTextWordBreak)
                           ? QTextOption::ManualWrap
                           : QTextOption::WrapAtWordBoundaryOrAnywhere);
    option.setUseDesignMetrics(false);
    return option;
}

// Lines from the top. A line of the font's own characters has the font's own height and baseline,
// whatever the layout rounds them to; one with characters from a taller font has that font's, unless
// it is a single line, whose baseline must not move.
void BreakLines(CLaidOutText& text, int boxWidth)
{
    const QFontMetrics metrics(text.font);
    const bool singleLine = text.flags & kTextSingleLine;
    int y = 0;
    qreal widest = 0;
    text.layout.beginLayout();
    for (QTextLine line = text.layout.createLine(); line.isValid(); line = text.layout.createLine()) {
        line.setLineWidth(boxWidth);
        const bool isTall = !singleLine && line.height() > metrics.height() + kRounding;
        line.setPosition(QPointF(0, isTall ? y : y + metrics.ascent() - line.ascent()));
        y += isTall ? int(std::ceil(line.height())) : metrics.height();
        widest = qMax(widest, line.naturalTextWidth());
    }
    text.layout.endLayout();
    text.width = int(std::ceil(widest));
    text.height = y;
}

void LayOut(CLaidOutText& text, const QString& characters, int boxWidth)
{
    text.layout.setFont(text.font);
    text.layout.setText(characters);
    text.layout.setTextOption(OptionFor(text.flags));
    text.layout.setCacheEnabled(true);
    BreakLines(text, boxWidth);
}

std::list<CLaidOutText> s_kept; // the latest first

void ForgetTexts()
{
    s_kept.clear();
}

// Layouts hold fonts, which must not outlive the application object.
void ForgetAtExit()
{
    static const bool once = (qAddPostRoutine(ForgetTexts), true);
    Q_UNUSED(once);
}

CLaidOutText& MakeRoom()
{
    ForgetAtExit();
    if (s_kept.size() < kKeptLayouts)
        s_kept.emplace_front();
    else
        s_kept.splice(s_kept.begin(), s_kept, std::prev(s_kept.end()));
    return s_kept.front();
}

CLaidOutText& LaidOut(const QString& source, const QFont& font, int boxWidth, unsigned flags)
{
    flags &= kLayoutFlags;
    // A single line without an ellipsis is the same for every box.
    const bool widthMatters = flags & kTextSingleLine ? flags & kEllipses : flags & kTextWordBreak;
    const int keyWidth = widthMatters ? qBound(1, boxWidth, kEndless) : kEndless;
    for (auto it = s_kept.begin(); it != s_kept.end(); ++it) {
        if (it->flags != flags || it->source != source || it->font != font)
            continue;
        // A single line that already fits the narrower of two boxes fits this one too.
        const bool fits = flags & kTextSingleLine && it->boxWidth == kEndless && it->width <= keyWidth;
        if (it->boxWidth == keyWidth || fits) {
            s_kept.splice(s_kept.begin(), s_kept, it);
            return s_kept.front();
        }
    }
    CLaidOutText& text = MakeRoom();
    text.source = source;
    text.font = font;
    text.flags = flags;
    text.boxWidth = keyWidth;
    const QString characters = Prepared(source, flags);
    LayOut(text, characters, flags & kTextSingleLine ? kEndless : keyWidth);
    if (flags & kTextSingleLine && widthMatters) {
        if (text.width > keyWidth)
            LayOut(text, QFontMetrics(font).elidedText(characters, Qt::ElideRight, keyWidth), kEndless);
        else
            text.boxWidth = kEndless;
    }
    return text;
}

// ---- drawing

void DrawLines(QPainter& dc, CLaidOutText& text, const QRect& rect, int top, unsigned flags)
{
    for (int i = 0; i < text.layout.lineCount(); ++i) {
        const QTextLine line = text.layout.lineAt(i);
        const int width = int(std::ceil(line.naturalTextWidth()));
        int x = rect.left();
        if (flags & kTextCentre)
            x += (rect.width() - width) / 2;
        else if (flags & kTextRight)
            x += rect.width() - width;
        // The line itself puts right-to-left text at its right end; take that back.
        const qreal shift = line.naturalTextRect().left();
        line.draw(&dc, QPointF(x - shift, top));
    }
}

int Draw(QPainter& dc, const QString& source, QRect& rect, unsigned flags)
{
    const bool measureOnly = flags & kTextCalcRect;
    CLaidOutText& text = LaidOut(source, dc.font(), rect.width(), measureOnly ? flags & ~kEllipses : flags);
    if (measureOnly) {
        rect.setSize(QSize(text.width, text.height));
        return text.height;
    }
    int top = rect.top();
    if (flags & kTextSingleLine) {
        if (flags & kTextVCentre)
            top += (rect.height() - text.height) / 2;
        else if (flags & kTextBottom)
            top += rect.height() - text.height;
    }
    // Descenders can reach a touch below the font's own height.
    const bool overflows = text.width > rect.width() || text.height >= rect.height();
    if (!overflows || flags & kTextNoClip) {
        DrawLines(dc, text, rect, top, flags);
        return text.height;
    }
    if (rect.isEmpty())
        return text.height;
    dc.save();
    dc.setClipRect(rect, Qt::IntersectClip);
    DrawLines(dc, text, rect, top, flags);
    dc.restore();
    return text.height;
}
} // namespace

int DrawText(QPainter& dc, const QString& text, QRect& rect, unsigned flags)
{
    if (text.isEmpty()) {
        if (flags & kTextCalcRect)
            rect.setSize(QSize(0, 0));
        return 0;
    }
    return Draw(dc, text, rect, flags);
}

int DrawText(QPainter& dc, const QString& text, const QRect& rect, unsigned flags)
{
    QRect box = rect;
    return DrawText(dc, text, box, flags & ~kTextCalcRect);
}

QSize MeasureText(const QFont& font, const QString& text)
{
    if (text.isEmpty())
        return QSize(0, 0);
    const CLaidOutText& laidOut = LaidOut(text, font, kEndless, kTextSingleLine | kTextNoPrefix);
    return QSize(laidOut.width, laidOut.height);
}

int LineHeight(const QFont& font)
{
    static QHash<QFont, int> heights;
    auto it = heights.constFind(font);
    if (it == heights.constEnd())
        it = heights.insert(font, QFontMetrics(font).height());
    return *it;
}
