#include "forms/reminder_values_dialog.h"
#include "drawing/image_store.h"
#include "drawing/paint.h"
#include "drawing/screen_metrics.h"
#include "drawing/text.h"
#include "forms/custom_reminder_dialog.h"
#include "forms/form_parts.h"
#include "settings/item_text.h"
#include "settings/system_colors.h"
#include "util/string_ids.h"
#include "util/string_store.h"

#include <QPainter>

namespace
{
// Design pixels.
constexpr int kMargin = 10, kNumberWidth = 30, kButtonPad = 12, kButtonInset = 4, kHeadHeight = 28;
constexpr int kFontText = 0, kFontHead = 1;
constexpr COLORREF kButtonGround = Rgb(0xEE, 0xF1, 0xF4), kButtonFrame = Rgb(0x9A, 0xA8, 0xB6);
} // namespace

CReminderValuesDialog::CReminderValuesDialog(const CValues& values)
    : CRowListDialog(GetString(StrCustomReminders)), m_values(values)
{
}

CReminderValuesDialog::CValues CReminderValuesDialog::OfSettings(const CSettings& settings)
{
    CValues values;
    for (int n = 0; n < CSettings::kReminderCount; ++n)
        values[size_t(n)] = settings.GetReminderVal(n);
    return values;
}

void CReminderValuesDialog::Store(const CValues& values, CSettings& settings)
{
    for (int n = 0; n < CSettings::kReminderCount; ++n)
        settings.SetReminderVal(n, values[size_t(n)]);
}

QString CReminderValuesDialog::TextOf(int index) const
{
    const int minutes = m_values[size_t(index)];
    return minutes < 0 ? QString() : FormatReminder(minutes);
}

int CReminderValuesDialog::HeadHeight(int)
{
    return D(kHeadHeight);
}

void CReminderValuesDialog::PaintHead(QPainter& dc, const QRect& rect)
{
    FillSolid(dc, rect, SystemColor::Window);
    dc.setFont(g_ImageStore.Font(kFontHead));
    dc.setPen(ToQColor(kFormInk));
    DrawText(dc, GetString(StrSetReminders), rect.adjusted(D(kMargin), 0, -D(kMargin), 0),
             kTextVCentre | kTextSingleLine | kTextNoPrefix | kTextEndEllipsis);
}

void CReminderValuesDialog::PaintRow(QPainter& dc, int index, const QRect& rect, bool selected)
{
    const QString set = GetString(StrSet);
    const int width = TextWidth(g_ImageStore.Font(kFontText), set) + 2 * D(kButtonPad);
    const QRect button(rect.x() + rect.width() - D(kMargin) - width, rect.y() + D(kButtonInset), width,
                       rect.height() - 2 * D(kButtonInset));
    const QRect number(rect.x() + D(kMargin), rect.y(), D(kNumberWidth), rect.height());
    const int left = number.x() + number.width();
    PaintRowText(dc, FillText(GetString(StrLineNumber), {QString::number(index + 1)}), number, selected);
    PaintRowText(dc, TextOf(index), {left, rect.y(), button.x() - D(kMargin) - left, rect.height()},
                 selected);
    FillSolid(dc, button, kButtonGround);
    FrameRect(dc, button, kButtonFrame);
    dc.setPen(ToQColor(kFormInk));
    DrawText(dc, set, button, kTextCentre | kTextVCentre | kTextSingleLine | kTextNoPrefix);
}

void CReminderValuesDialog::OnRowTapped(int index, int, bool)
{
    CCustomReminderDialog dialog(m_values[size_t(index)]);
    const int minutes = dialog.Choose(this);
    if (minutes < 0)
        return;
    m_values[size_t(index)] = minutes;
    RowsChanged();
}

CPaintedPart CReminderValuesDialog::RowPart(int index) const
{
    CPaintedPart part;
    part.Name = FillText(GetString(StrLineNumber), {QString::number(index + 1)});
    part.Value = TextOf(index);
    part.Role = QAccessible::Button;
    return part;
}
