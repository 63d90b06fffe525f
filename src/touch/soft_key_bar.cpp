#include "touch/soft_key_bar.h"
#include "drawing/image_store.h"
#include "drawing/paint.h"
#include "drawing/screen_metrics.h"
#include "settings/color_scheme.h"
#include "touch/command_ids.h"

#include <QPainter>

namespace
{
constexpr int kBarHeight = 40;
constexpr quint32 kBarAlpha = 50;
constexpr quint32 kPressedAlpha = 128;
constexpr quint32 kHairLineAlpha = 90; // of black over the bar's colour
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

void CSoftKeyBar::AddButton(int command, int imageId, bool flag)
{
    m_keys.push_back({command, imageId, flag});
}

void CSoftKeyBar::Clear()
{
    m_keys.clear();
    m_pressed = -1;
    m_background = QImage();
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
        if (n == m_pressed || key.Flag)
            BlendRect(dc, rect.adjusted(0, D(1), 0, 0), kColorWhite, kPressedAlpha);
        if (key.ImageId > 0) {
            const CAlphaImage& image = g_ImageStore.Image(key.ImageId);
            DrawImage(image, dc, rect.x() + (rect.width() - image.Width()) / 2,
                      rect.y() + (rect.height() - image.Height()) / 2);
        }
    }
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
