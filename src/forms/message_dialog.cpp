#include "forms/message_dialog.h"
#include "drawing/image_store.h"
#include "drawing/paint.h"
#include "drawing/screen_metrics.h"
#include "drawing/text.h"
#include "forms/form_parts.h"
#include "forms/menu_bars.h"
#include "settings/color_scheme.h"
#include "settings/system_colors.h"
#include "touch/command_ids.h"
#include "touch/virtual_keys.h"

#include <QPainter>
#include <algorithm>

namespace
{
// Design pixels.
constexpr int kMargin = 12;
constexpr int kDiscSize = 32;
constexpr int kDiscGap = 12;

constexpr int kFontText = 0;
constexpr unsigned kTextFlags = kTextWordBreak | kTextNoPrefix;
constexpr COLORREF kWarningGround = Rgb(0xAA, 0x0A, 0x0A);
constexpr int kWheelNotch = 120, kWheelLines = 3;

int TextLeft()
{
    return D(kMargin) + D(kDiscSize) + D(kDiscGap);
}
} // namespace

CMessageDialog::CMessageDialog(const QString& text, const QString& caption, Kind kind)
    : CFormDialog(caption), m_text(text), m_kind(kind)
{
    setAccessibleDescription(text);
}

int CMessageDialog::GetMenuBarId() const
{
    return m_kind == Kind::Question ? kMenuBarYesNo : kMenuBarOk;
}

// ---- layout

int CMessageDialog::TextHeight(int width) const
{
    QImage scratch(1, 1, QImage::Format_RGB32);
    QPainter dc(&scratch);
    dc.setFont(g_ImageStore.Font(kFontText));
    QRect rect(0, 0, width - TextLeft() - D(kMargin), 0);
    return DrawText(dc, m_text, rect, kTextFlags | kTextCalcRect);
}

int CMessageDialog::ContentHeight(int width)
{
    return std::max(TextHeight(width), D(kDiscSize)) + 2 * D(kMargin);
}

void CMessageDialog::OnLayout(const QRect& client)
{
    if (client.isEmpty())
        return;
    if (m_touch.Width() == 0)
        m_touch.Attach(0, this, this, client.x(), client.y(), client.width(), client.height());
    else
        m_touch.SetArea(client);
    m_touch.Redraw(false);
}

// ---- paint

int CMessageDialog::RenderContent(quint32, QPainter& dc, quint32, int scroll, int width, int height)
{
    FillSolid(dc, {0, 0, width, height}, SystemColor::Window);
    const int text = TextHeight(width), content = ContentHeight(width);
    const int block = std::max(text, D(kDiscSize));
    const int top = scroll + std::max(height - block, 2 * D(kMargin)) / 2;
    constexpr const char16_t* kSigns[] = {u"?", u"!", u"i"};
    const bool warns = m_kind == Kind::Warning;
    PaintDisc(dc, {D(kMargin), top, D(kDiscSize), D(kDiscSize)}, QString::fromUtf16(kSigns[int(m_kind)]),
              warns ? kWarningGround : GetHighlightColor(), warns ? kColorWhite : GetHighlightTextColor());
    dc.setFont(g_ImageStore.Font(kFontText));
    dc.setPen(ToQColor(kFormInk));
    DrawText(dc, m_text, QRect(TextLeft(), top + (block - text) / 2, width - TextLeft() - D(kMargin), text),
             kTextFlags);
    return content;
}

void CMessageDialog::PaintContent(QPainter& dc, const QRect& client)
{
    m_touch.PaintTo(dc, client.x(), client.y());
}

// ---- input

void CMessageDialog::OnCommand(int command)
{
    if (command == CmdCancel)
        command = m_kind == Kind::Question ? kAnswerNo : kAnswerOk;
    End(command);
}

void CMessageDialog::SelectKey(int index)
{
    m_currentKey = std::clamp(index, 0, SoftKeys().GetCount() - 1);
    LoadKeys(m_currentKey);
}

void CMessageDialog::ScrollLines(int lines)
{
    m_touch.ScrollBy(-lines * LineHeight(g_ImageStore.Font(kFontText)));
}

void CMessageDialog::OnKey(int key)
{
    switch (key) {
    case kKeyLeft:
    case kKeyRight:
        return SelectKey(key == kKeyLeft ? 0 : SoftKeys().GetCount() - 1);
    case kKeyUp:
    case kKeyDown:
        return ScrollLines(key == kKeyUp ? -1 : 1);
    case kKeyReturn:
        return OnCommand(SoftKeys().CommandAt(m_currentKey));
    default:
        break;
    }
}

void CMessageDialog::OnLButtonDown(QPoint at)
{
    m_touch.OnLButtonDown(at.x(), at.y());
}

void CMessageDialog::OnMouseMove(QPoint at)
{
    m_touch.OnMouseMove(at.x(), at.y());
}

void CMessageDialog::OnLButtonUp(QPoint at)
{
    m_touch.OnLButtonUp(at.x(), at.y());
}

void CMessageDialog::OnWheel(int angle)
{
    ScrollLines(-angle * kWheelLines / kWheelNotch);
}
