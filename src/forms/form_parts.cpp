#include "forms/form_parts.h"
#include "drawing/image_store.h"
#include "drawing/paint.h"
#include "drawing/text.h"
#include "settings/settings.h"
#include "settings/system_colors.h"

#include <QFont>
#include <QPainter>
#include <QPalette>
#include <QPlainTextEdit>
#include <QTextLayout>
#include <QWidget>
#include <algorithm>

namespace
{
constexpr int kDiscFont = 4;
constexpr int kWantedLines = 2;
constexpr unsigned kLineFlags = kTextCentre | kTextVCentre | kTextSingleLine | kTextNoPrefix | kTextNoClip;

QStringList BreakLines(const QString& text, const QFont& font, int width)
{
    QTextLayout layout(text, font);
    QTextOption option;
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    layout.setTextOption(option);
    QStringList lines;
    layout.beginLayout();
    for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine()) {
        line.setLineWidth(width);
        lines << text.mid(line.textStart(), line.textLength()).trimmed();
    }
    layout.endLayout();
    return lines;
}

bool HasWordsWithin(const QString& text, const QFont& font, int width)
{
    const QStringList words = text.split(u' ', Qt::SkipEmptyParts);
    return std::all_of(words.begin(), words.end(),
                       [&](const QString& word) { return TextWidth(font, word) <= width; });
}
} // namespace

CFittedText FitText(const QString& text, std::initializer_list<int> fonts, int width)
{
    CFittedText fitted;
    const QString plain = text.simplified();
    if (plain.isEmpty() || width <= 0)
        return fitted;
    for (const int id : fonts) {
        const QFont& font = g_ImageStore.Font(id);
        fitted = {id, BreakLines(plain, font, width), LineHeight(font)};
        if (fitted.Lines.size() <= kWantedLines && HasWordsWithin(plain, font, width))
            break;
    }
    return fitted;
}

void PaintFittedText(QPainter& dc, const CFittedText& text, const QRect& rect, COLORREF color)
{
    if (text.Lines.isEmpty())
        return;
    dc.setFont(g_ImageStore.Font(text.Font));
    dc.setPen(ToQColor(color));
    QRect line(rect.x(), rect.y(), rect.width(), text.LineHeight);
    for (const QString& words : text.Lines) {
        DrawText(dc, words, std::as_const(line), kLineFlags);
        line.translate(0, text.LineHeight);
    }
}

void PaintDisc(QPainter& dc, const QRect& square, const QString& sign, COLORREF ground, COLORREF ink)
{
    dc.save();
    dc.setRenderHint(QPainter::Antialiasing);
    dc.setPen(Qt::NoPen);
    dc.setBrush(ToQColor(ground));
    dc.drawEllipse(square);
    dc.restore();
    QFont font = g_ImageStore.Font(kDiscFont);
    font.setPixelSize(std::max(square.height() * 5 / 8, 1));
    dc.setFont(font);
    dc.setPen(ToQColor(ink));
    DrawText(dc, sign, square, kLineFlags);
}

QFont LogicalFont(QFont font, int k)
{
    font.setPixelSize(std::max(font.pixelSize() / k, 1));
    return font;
}

void LightenControl(QWidget& control)
{
    QPalette palette = control.palette();
    palette.setColor(QPalette::Base, ToQColor(SystemColor::Window));
    palette.setColor(QPalette::Text, ToQColor(SystemColor::WindowText));
    palette.setColor(QPalette::Button, QColor(0xEE, 0xF1, 0xF4));
    palette.setColor(QPalette::ButtonText, ToQColor(kFormInk));
    palette.setColor(QPalette::Window, ToQColor(SystemColor::Window));
    palette.setColor(QPalette::WindowText, ToQColor(SystemColor::WindowText));
    control.setPalette(palette);
}

// The modes 0 and 1 keep what was last in use, 2 and 3 complete words, 4 and 5 spell; odd ones
// begin with a capital.
Qt::InputMethodHints TextInputHints()
{
    const int mode = g_Settings.General.TextInputMode;
    Qt::InputMethodHints hints = Qt::ImhNone;
    if (mode == 4 || mode == 5)
        hints |= Qt::ImhNoPredictiveText;
    if (mode % 2 == 0)
        hints |= Qt::ImhNoAutoUppercase;
    return hints;
}

QString EditedPlainText(const QPlainTextEdit& edit, const QString& original)
{
    QString text = edit.document()->toRawText(); // the other one turns hard blanks into plain ones
    const QString end = original.contains(QStringLiteral("\r\n")) ? QStringLiteral("\r\n") : QStringLiteral("\n");
    return text.replace(QChar(QChar::ParagraphSeparator), end);
}
