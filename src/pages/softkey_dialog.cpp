#include "pages/softkey_dialog.h"
#include "drawing/image_store.h"
#include "drawing/paint.h"
#include "drawing/screen_metrics.h"
#include "forms/form_parts.h"
#include "forms/menu_bars.h"
#include "forms/question.h"
#include "platform/registry.h"
#include "settings/color_scheme.h"
#include "settings/system_colors.h"
#include "touch/device_pixels.h"
#include "touch/virtual_keys.h"
#include "util/string_ids.h"
#include "util/string_store.h"

#include <QPainter>
#include <algorithm>
#include <utility>

namespace
{
constexpr int kMargin = 10, kTargetHeight = 44, kEdge = 24, kLineWidth = 2; // design pixels
constexpr int kTexts[] = {StrSoftkeyLeft, StrSoftkeyRight, StrSoftkeyNone};
constexpr std::initializer_list<int> kQuestionFonts = {1, 4, 0}, kTargetFonts = {4, 0};

void PaintInMiddle(QPainter& dc, const QString& text, std::initializer_list<int> fonts, const QRect& rect,
                   COLORREF color)
{
    const CFittedText fitted = FitText(text, fonts, rect.width());
    PaintFittedText(dc, fitted, rect.translated(0, (rect.height() - fitted.Height()) / 2), color);
}
} // namespace

CSoftkeyDialog::CSoftkeyDialog()
{
    setAccessibleName(GetString(StrSoftkeyQuestion));
}

int CSoftkeyDialog::GetMenuBarId() const
{
    return kMenuBarNone; // the keys in question are not its own
}

QRect CSoftkeyDialog::TargetRect(int target) const
{
    return m_targets[size_t(target)];
}

void CSoftkeyDialog::OnLayout(const QRect& client)
{
    const int margin = D(kMargin), height = std::min(D(kTargetHeight), client.height() / 5);
    m_question = {client.x() + margin, client.y() + margin, client.width() - 2 * margin, client.height() / 3};
    const int half = (client.width() - 3 * margin) / 2;
    const int top = client.y() + client.height() / 2 - height / 4;
    m_targets[kLeft] = {client.x() + margin, top, half, height};
    m_targets[kRight] = {client.x() + client.width() - margin - half, top, half, height};
    m_targets[kNone] = {client.x() + D(kEdge) + margin, client.y() + client.height() - height - 2 * margin,
                        client.width() - 2 * (D(kEdge) + margin), height};
}

void CSoftkeyDialog::PaintContent(QPainter& dc, const QRect& client)
{
    FillSolid(dc, client, SystemColor::Window);
    PaintLines(dc, client);
    PaintInMiddle(dc, GetString(StrSoftkeyQuestion), kQuestionFonts, m_question, kFormInk);
    for (int target = 0; target < kTargetCount; ++target) {
        const QRect rect = TargetRect(target);
        const bool selected = target == m_selected;
        if (selected) {
            DrawSelectionBackground(dc, rect, GetHighlightColor());
        } else {
            FillSolid(dc, rect, SystemColor::Window);
            FrameRect(dc, rect, kFormInk);
        }
        PaintInMiddle(dc, GetString(kTexts[target]), kTargetFonts, rect.adjusted(D(2), 0, -D(2), 0),
                      selected ? GetHighlightTextColor() : kFormInk);
    }
}

// From the question over its two answers to the corners where those keys are.
void CSoftkeyDialog::PaintLines(QPainter& dc, const QRect& client) const
{
    const QPoint from(client.x() + client.width() / 2, m_question.y() + m_question.height());
    const int bottom = client.y() + client.height();
    dc.save();
    dc.setRenderHint(QPainter::Antialiasing);
    dc.setPen(QPen(ToQColor(GetHighlightColor()), D(kLineWidth)));
    for (const bool right : {false, true}) {
        const QRect& rect = m_targets[right ? kRight : kLeft];
        const int edge = right ? client.x() + client.width() - D(kEdge) / 2 : client.x() + D(kEdge) / 2;
        dc.drawLine(from, {rect.x() + rect.width() / 2, rect.y()});
        dc.drawLine(QPoint(edge, rect.y() + rect.height()), QPoint(edge, bottom));
    }
    dc.restore();
}

CPaintedPart CSoftkeyDialog::ContentPart(int index) const
{
    return {.Name = GetString(kTexts[index]),
            .Role = QAccessible::Button,
            .Rect = ToLogical(TargetRect(index), CurrentFactor()),
            .Selected = index == m_selected};
}

// ---- input

void CSoftkeyDialog::Choose(int target)
{
    if (target == kNone)
        return End(kCancelled);
    if (CRegistry::WriteString(kRegistryKey, QStringLiteral("AppName"), QStringLiteral("ZELV Calendar")))
        return End(target == kLeft ? kAnswerLeft : kAnswerRight);
    ShowMessage(this, GetString(StrSettingsNotSaved), GetString(StrErrorCaption));
}

void CSoftkeyDialog::OnKey(int key)
{
    if (key == kKeyReturn)
        return Choose(m_selected);
    if (key == kKeyLeft || key == kKeyRight)
        m_selected = key == kKeyLeft ? kLeft : kRight;
    else if (key == kKeyDown)
        m_selected = kNone;
    else if (key == kKeyUp && m_selected == kNone)
        m_selected = kLeft;
    update();
}

void CSoftkeyDialog::OnKeyUp(int key)
{
    if (key == kKeyF1 || key == kKeyF2)
        Choose(key == kKeyF1 ? kLeft : kRight);
}

int CSoftkeyDialog::HitTarget(QPoint at) const
{
    const auto hit = std::find_if(m_targets.begin(), m_targets.end(),
                                  [at](const QRect& rect) { return rect.contains(at); });
    return hit == m_targets.end() ? -1 : int(hit - m_targets.begin());
}

void CSoftkeyDialog::OnLButtonDown(QPoint at)
{
    m_pressed = HitTarget(at);
    if (m_pressed >= 0)
        m_selected = m_pressed;
    update();
}

void CSoftkeyDialog::OnLButtonUp(QPoint at)
{
    const int pressed = std::exchange(m_pressed, -1);
    if (pressed >= 0 && HitTarget(at) == pressed)
        Choose(pressed);
}
