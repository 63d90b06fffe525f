// Runs through days, weeks or months under a finger that went sideways: a strip over the upper
// third of its owner tells the date and its neighbours; the nearer the finger is to an edge, the
// faster they run. The finger's lifting chooses.
// Shape: the owner starts it with a picture of itself, hands it the finger until it lifts, and
//   paints it instead of itself meanwhile.
// Units: surface pixels; days are day numbers.
#pragma once
#include "touch/numbered_timers.h"

#include <QFont>
#include <QImage>
#include <QString>
#include <array>
#include <functional>

class QPainter;

enum OverlayUnit { kOverlayNone = -1, kOverlayDays = 0, kOverlayWeeks = 1, kOverlayMonths = 2 };

// One date on the strip; offset 0 is in the middle.
struct CDateOverlayBox {
    QRect Rect; // empty when an arrow leaves no room
    int Font = 1;
};

class CDateOverlay
{
public:
    static constexpr int kFirstDate = -1, kLastDate = -2; // results of the keys up and down
    static constexpr int kFirstMs = 200;

    // `changed`: that part wants to be painted.
    explicit CDateOverlay(std::function<void(const QRect&)> changed);

    // `key`: the stroke's direction, 37 left, 39 right, 38 up, 40 down. The date has its first step
    // then, before anything shows.
    void StartGesture(int unit, int key, int day, QPoint at, const QImage& background);
    bool IsRunning() const { return !m_background.isNull(); }
    void OnMouseMove(QPoint at);
    // Ends it. `direction` is that of the transition to the date, 0 when the dates ran.
    int OnLButtonUp(int* direction);
    void Cancel();
    void OnTimer(int id);

    void Paint(QPainter& dc) const; // all of the owner
    CNumberedTimers& Timers() { return m_timers; }
    QRect StripRect() const { return m_stripRect; }
    int GetDate() const { return m_date; }
    int GetSpeed() const { return m_speed; }
    int GetPhase() const { return m_phase; }
    bool IsMoved() const { return m_moved; }
    CDateOverlayBox BoxOf(int offset) const;
    QString TextOf(int offset) const;

    // Where a finger at `x` sends the dates: units forward; the farther from 0 the faster.
    static int SpeedOf(int x, int width, bool invert);
    static int PeriodOf(int speed, bool animated); // of the timer, in milliseconds
    // `steps` units on; a date that none can tell is the last one that can.
    static int StepDate(int unit, int day, int steps);

private:
    int FontOf(int offset) const;
    void SetSpeed(int speed);
    void PaintStrip();
    bool IsJump() const { return m_toFirst || m_toLast; }

    std::function<void(const QRect&)> m_changed;
    CNumberedTimers m_timers;
    bool m_animated = false;
    bool m_moved = false; // the strip shows
    bool m_invert = false;
    QImage m_background;
    QImage m_stripGround;
    QImage m_strip; // as it shows
    QRect m_stripRect;
    QPoint m_lastPoint;
    int m_date = 0;
    int m_startDate = 0;
    int m_unit = kOverlayDays;
    int m_phase = 3; // of four a step has when it is animated
    int m_speed = 0;
    bool m_toFirst = false, m_toLast = false;
    std::array<QString, 12> m_monthNames;
    std::array<QString, 7> m_dayNames;
    QString m_dateFormat;
    std::array<QFont, 6> m_fonts;
};
