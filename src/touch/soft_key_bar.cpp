#include "touch/soft_key_bar.h"
#include "drawing/image_store.h"
#include "drawing/paint.h"
#include "drawing/picture_ids.h"
#include "drawing/screen_metrics.h"
#include "drawing/text.h"
#include "settings/color_scheme.h"
#include "touch/command_ids.h"
#include "touch/device_pixels.h"
#include "touch/white_picture.h"
#include "util/string_ids.h"
#include "util/string_store.h"

#include <QPainter>
#include <algorithm>

namespace
{
constexpr int kBarHeight = 40;
constexpr quint32 kBarAlpha = 50;
constexpr quint32 kPressedAlpha = 128;
constexpr quint32 kHairLineAlpha = 90; // of black over the bar's colour
constexpr int kKeyFont = 4;
constexpr int kKeyMargin = 4; // design pixels, as the next one
constexpr int kPictureGap = 6;
constexpr COLORREF kDarkInk = Rgb(0x2B, 0x3E, 0x55);
constexpr double kEnoughContrast = 3; // of bold text

// What the keys are called that show a picture alone.
constexpr struct {
    int Command, Text;
} kNames[] = {
    {CmdViewButton, StrSelectView},
    {CmdDateBack, StrPreviousDates},
    {CmdDateForward, StrNextDates},
    {CmdGoTo, StrGoTo},
    {CmdToday, StrToday},
    {CmdMenu, StrMenu},
    {CmdSearchStart, StrSearch},
    {CmdSearchOptions, StrOptions},
    {CmdToggleKeyboard, StrKeyboard},
    {CmdTasksShowMenu, StrView},
    {CmdTasksSort1Menu, StrSorts},
    {CmdToggleTask, StrCompleteTask},
    {CmdSettings, StrSettings},
    {CmdFilterMenu, StrFilters},
    {CmdManageFilters, StrManageFilters},
};
} // namespace

int CSoftKeyBar::Height()
{
    return D(kBarHeight);
}

QRect CSoftKeyBar::KeyRect(const QRect& bar, int index, int count)
{
    if (index < 0 || index >= count)
        return {};
    const int left = int(qint64(bar.width()) * index / count);
    const int right = int(qint64(bar.width()) * (index + 1) / count);
    return {bar.x() + left, bar.y(), right - left, bar.height()};
}

void CSoftKeyBar::AddButton(int command, int imageId, bool flag, const QString& text)
{
    m_keys.push_back({command, imageId, flag, text});
}

void CSoftKeyBar::SetImage(int command, int imageId)
{
    for (CSoftKey& key : m_keys) {
        if (key.Command == command)
            key.ImageId = imageId;
    }
}

void CSoftKeyBar::Clear()
{
    m_keys.clear();
    m_pressed = -1;
    m_background = QImage();
}

CPaintedPart CSoftKeyBar::PartOf(int index, const QRect& bar, int k) const
{
    const CSoftKey& key = GetKey(index);
    CPaintedPart part;
    part.Name = key.Text;
    for (const auto& known : kNames) {
        if (part.Name.isEmpty() && known.Command == key.Command)
            part.Name = GetString(known.Text);
    }
    if (part.Name.isEmpty() && key.ImageId == PictureCancel)
        part.Name = GetString(StrClose);
    part.Role = QAccessible::PushButton;
    part.Rect = ToLogical(KeyRect(bar, index, GetCount()), k);
    part.Pressable = key.Command != CmdNone;
    return part;
}

void CSoftKeyBar::Paint(QPainter& dc, const QRect& bar)
{
    if (bar.isEmpty())
        return;
    const COLORREF color = GetHighlightColor();
    if (m_background.size() != bar.size() || m_backgroundColor != color) {
        m_background = QImage(bar.size(), QImage::Format_RGB32);
        m_backgroundColor = color;
        QPainter painter(&m_background);
        FillTwoTone(painter, m_background.rect(), color, kColorWhite, kBarAlpha, false);
        FillSolid(painter, {0, 0, bar.width(), D(1)}, Blend(kColorBlack, color, kHairLineAlpha));
    }
    dc.drawImage(bar.topLeft(), m_background);
    for (int n = 0; n < GetCount(); ++n) {
        const QRect rect = KeyRect(bar, n, GetCount());
        const CSoftKey& key = m_keys[size_t(n)];
        const bool lightened = n == m_pressed || key.Flag;
        if (lightened)
            BlendRect(dc, rect.adjusted(0, D(1), 0, 0), kColorWhite, kPressedAlpha);
        PaintKey(dc, key, rect, lightened);
    }
}

void CSoftKeyBar::PaintKey(QPainter& dc, const CSoftKey& key, const QRect& rect, bool lightened) const
{
    static const CAlphaImage none;
    const CAlphaImage* image = key.ImageId > 0 ? &g_ImageStore.Image(key.ImageId) : &none;
    const QFont font = key.Text.isEmpty() ? QFont() : g_ImageStore.Font(kKeyFont);
    const int room = rect.width() - 2 * D(kKeyMargin);
    const int textWidth = key.Text.isEmpty() ? 0 : std::min(TextWidth(font, key.Text), room);
    const int gap = textWidth > 0 && image->IsValid() ? D(kPictureGap) : 0;
    if (textWidth > 0 && image->Width() + gap + textWidth > room)
        image = &none;
    const int imageWidth = image->IsValid() ? image->Width() + gap : 0;
    const int x = rect.x() + (rect.width() - imageWidth - textWidth) / 2;
    DrawImage(*image, dc, x, rect.y() + (rect.height() - image->Height()) / 2);
    if (textWidth == 0)
        return;
    const COLORREF bar = GetHighlightColor();
    const COLORREF ground = lightened ? Blend(kColorWhite, bar, kPressedAlpha) : bar;
    const COLORREF wanted = GetHighlightTextColor();
    dc.setFont(font);
    dc.setPen(ToQColor(Contrast(wanted, ground) >= kEnoughContrast ? wanted : kDarkInk));
    DrawText(dc, key.Text, QRect(x + imageWidth, rect.y(), textWidth, rect.height()),
             kTextVCentre | kTextSingleLine | kTextNoPrefix | kTextEndEllipsis);
}

int CSoftKeyBar::HitTest(const QRect& bar, QPoint at) const
{
    if (!bar.contains(at))
        return -1;
    for (int n = 0; n < GetCount(); ++n) {
        if (KeyRect(bar, n, GetCount()).contains(at))
            return m_keys[size_t(n)].Command == CmdNone ? -1 : n;
    }
    return -1;
}

bool CSoftKeyBar::SetPressed(int index)
{
    const int wanted = index >= 0 && index < GetCount() ? index : -1;
    if (wanted == m_pressed)
        return false;
    m_pressed = wanted;
    return true;
}

int CSoftKeyBar::CommandAt(int index) const
{
    return index >= 0 && index < GetCount() ? m_keys[size_t(index)].Command : CmdNone;
}

int CSoftKeyBar::FirstCommand() const
{
    return CommandAt(0);
}

int CSoftKeyBar::LastCommand() const
{
    return CommandAt(GetCount() - 1);
}
