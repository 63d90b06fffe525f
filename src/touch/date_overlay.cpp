#include "touch/date_overlay.h"
#include "drawing/image_store.h"
#include "drawing/paint.h"
#include "drawing/picture_ids.h"
#include "drawing/screen_metrics.h"
#include "drawing/text.h"
#include "platform/locale.h"
#include "settings/settings.h"
#include "touch/timer_ids.h"
#include "touch/virtual_keys.h"
#include "util/date_time.h"

#include <QPainter>
#include <algorithm>
#include <cstdlib>

namespace
{
// Design pixels.
constexpr int kInset = 6;
constexpr int kArrowGap = 1;
constexpr int kLargestFont = 13; // of six, each one less

constexpr int kFontModel = 0;
constexpr int kLastPhase = 3;
constexpr quint32 kStripAlpha = 232; // of black over the view, so that white reads on any colour
constexpr COLORREF kColorMiddle = 0xFFFFFF, kColorBeside = 0xA4A4A4, kColorFar = 0x606060;

bool CanTell(int day)
{
    return SystemTimeOf(day).wYear != 0;
}

int StepMonth(int day, int steps)
{
    const SystemTime from = SystemTimeOf(day);
    if (from.wYear == 0)
        return day;
    const int month = from.wYear * 12 + from.wMonth - 1 + steps;
    return DayNumberOf(month / 12, month % 12 + 1, 1);
}
} // namespace

CDateOverlay::CDateOverlay(std::function<void(const QRect&)> changed)
    : m_changed(std::move(changed)), m_timers([this](int id) { OnTimer(id); })
{
}

// ---- pure arithmetic

int CDateOverlay::StepDate(int unit, int day, int steps)
{
    const int to = unit == kOverlayMonths ? StepMonth(day, steps)
                                          : day + steps * (unit == kOverlayWeeks ? 7 : 1);
    return CanTell(to) ? to : day;
}

int CDateOverlay::SpeedOf(int x, int width, bool invert)
{
    const int zone = 2 * (width / 5), part = zone / 3;
    if (part == 0)
        return 0;
    x = std::clamp(x, 0, width - 1);
    int speed = 0;
    if (x >= width - zone)
        speed = x / part - 3;
    else if (x < zone)
        speed = (x - (width - zone)) / part + 1;
    return invert ? speed : -speed;
}

int CDateOverlay::PeriodOf(int speed, bool animated)
{
    // The fastest at the edge of the screen is still slow enough to be followed by eye.
    constexpr int kPeriods[] = {0, 800, 400, 100, 50};
    const int fast = std::min(std::abs(speed), int(std::size(kPeriods)) - 1);
    return kPeriods[fast] / (animated ? 4 : 1);
}

// ---- the gesture

void CDateOverlay::StartGesture(int unit, int key, int day, QPoint at, const QImage& background)
{
    Cancel();
    m_animated = g_Settings.General.TouchNavAnimation == 1;
    m_invert = g_Settings.General.TouchNavInvert == 1;
    m_unit = unit;
    m_lastPoint = at;
    m_date = m_startDate = day;
    m_toFirst = key == kKeyUp;
    m_toLast = key == kKeyDown;
    if (key == kKeyLeft || key == kKeyRight)
        m_date = StepDate(unit, day, (key == kKeyLeft) != m_invert ? 1 : -1);
    m_background = background;
    m_stripRect = QRect(0, 0, background.width(), background.height() / 3);
    if (!IsJump())
        m_timers.Set(kTimerOverlay, kFirstMs);
    for (int n = 0; n < 12; ++n)
        m_monthNames[size_t(n)] = Locale().MonthName(n + 1, true, false);
    for (int n = 0; n < 7; ++n)
        m_dayNames[size_t(n)] = Locale().DayName(n, true);
    m_dateFormat = GetLocaleInfo(LocaleValue::ShortDate);
    for (int n = 0; n < int(m_fonts.size()); ++n) {
        m_fonts[size_t(n)] = g_ImageStore.Font(kFontModel);
        m_fonts[size_t(n)].setPixelSize(D(kLargestFont - n));
    }
}

void CDateOverlay::Cancel()
{
    m_timers.KillAll();
    m_background = m_stripGround = m_strip = QImage();
    m_moved = m_toFirst = m_toLast = false;
    m_phase = kLastPhase;
    m_speed = 0;
}

void CDateOverlay::SetSpeed(int speed)
{
    m_speed = speed;
    m_timers.Kill(kTimerOverlay);
    if (m_speed != 0)
        m_timers.Set(kTimerOverlay, PeriodOf(m_speed, m_animated));
}

void CDateOverlay::OnTimer(int id)
{
    if (id != kTimerOverlay || !IsRunning())
        return;
    if (!m_moved) {
        m_moved = true;
        m_stripGround = m_background.copy(m_stripRect);
        QPainter dc(&m_stripGround);
        BlendRect(dc, m_stripGround.rect(), kColorBlack, kStripAlpha);
        SetSpeed(SpeedOf(m_lastPoint.x(), m_stripRect.width(), m_invert));
    } else {
        m_phase = m_animated ? (m_phase + 1) % 4 : kLastPhase;
        if (m_speed != 0 && m_phase == kLastPhase)
            m_date = StepDate(m_unit, m_date, m_speed > 0 ? 1 : -1);
    }
    PaintStrip();
}

void CDateOverlay::OnMouseMove(QPoint at)
{
    m_lastPoint = at;
    if (!m_moved || IsJump())
        return;
    const int before = m_speed, speed = SpeedOf(at.x(), m_stripRect.width(), m_invert);
    if (speed == before)
        return;
    if (before != 0 && (speed == 0 || (speed > 0) != (before > 0))) {
        if (m_phase == 1 || m_phase == 2)
            m_date = StepDate(m_unit, m_date, before > 0 ? 1 : -1);
        m_phase = kLastPhase;
    }
    SetSpeed(speed);
    PaintStrip();
}

int CDateOverlay::OnLButtonUp(int* direction)
{
    *direction = 0;
    if (!m_moved && m_startDate != m_date)
        *direction = m_startDate > m_date ? 1 : -1;
    const int result = m_toFirst ? kFirstDate : m_toLast ? kLastDate : m_date;
    Cancel();
    return result;
}

// ---- layout

int CDateOverlay::FontOf(int offset) const
{
    // By phase, from 0.
    constexpr int kMiddle[] = {2, 3, 4, 1}, kComing[] = {3, 2, 1, 4}, kGoing[] = {5, 6, 6, 4},
                  kFar[] = {6, 5, 4, 6};
    if (offset == 0)
        return kMiddle[m_phase];
    if (std::abs(offset) > 1)
        return kFar[m_phase];
    const bool coming = offset < 0 ? m_speed < 0 : m_speed >= 0;
    return (coming ? kComing : kGoing)[m_phase];
}

CDateOverlayBox CDateOverlay::BoxOf(int offset) const
{
    CDateOverlayBox box;
    box.Font = FontOf(offset);
    const QRect strip = m_stripRect.adjusted(D(kInset), 0, -D(kInset), 0);
    const int part = strip.width() / 3;
    const int shift = (m_phase + 1) % 4 * part / 4 * (m_speed < 0 ? 1 : m_speed > 0 ? -1 : 0);
    const QRect whole(strip.x() + part * (offset + 1) + shift, strip.y(), part, strip.height());
    const int left = strip.x() + g_ImageStore.Image(PictureOverlayLeft).Width() + D(kArrowGap);
    const int right = strip.x() + strip.width() - g_ImageStore.Image(PictureOverlayRight).Width() - D(kArrowGap);
    box.Rect = whole.intersected(QRect(left, strip.y(), std::max(right - left, 0), strip.height()));
    return box;
}

QString CDateOverlay::TextOf(int offset) const
{
    const int day = StepDate(m_unit, m_date, offset);
    if (offset != 0 && day == m_date)
        return {}; // there is none on that side
    const SystemTime time = SystemTimeOf(day);
    switch (m_unit) {
    case kOverlayDays:
        return QStringLiteral("%1 %2").arg(m_dayNames[size_t(time.wDayOfWeek) % 7]).arg(time.wDay);
    case kOverlayWeeks:
        return GetDateFormat(DateFlag::Picture, time, m_dateFormat);
    default:
        return QStringLiteral("%1 %2").arg(m_monthNames[size_t(time.wMonth + 11) % 12]).arg(time.wYear);
    }
}

// ---- paint

void CDateOverlay::PaintStrip()
{
    m_strip = m_stripGround;
    QPainter dc(&m_strip);
    constexpr COLORREF kColors[] = {kColorMiddle, kColorBeside, kColorFar};
    for (int offset : {0, -1, 1, -2, 2}) {
        if (std::abs(offset) == 2 && (m_speed == 0 || (offset > 0) != (m_speed > 0)))
            continue;
        const CDateOverlayBox box = BoxOf(offset);
        if (box.Rect.isEmpty())
            continue;
        dc.setFont(m_fonts[size_t(box.Font - 1)]);
        dc.setPen(ToQColor(kColors[std::abs(offset)]));
        DrawText(dc, TextOf(offset), box.Rect,
                 kTextCentre | kTextVCentre | kTextSingleLine | kTextNoPrefix | kTextEndEllipsis);
    }
    const CAlphaImage& left = g_ImageStore.Image(PictureOverlayLeft);
    const CAlphaImage& right = g_ImageStore.Image(PictureOverlayRight);
    const int height = m_stripRect.height();
    DrawImage(left, dc, D(kInset), (height - left.Height()) / 2);
    DrawImage(right, dc, m_stripRect.width() - D(kInset) - right.Width(), (height - right.Height()) / 2);
    dc.end();
    m_changed(m_stripRect);
}

void CDateOverlay::Paint(QPainter& dc) const
{
    dc.drawImage(QPoint(0, 0), m_background);
    if (m_moved)
        dc.drawImage(m_stripRect.topLeft(), m_strip);
}
