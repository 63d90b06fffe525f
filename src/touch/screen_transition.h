// The old day's picture slides out and the new one's comes in behind it.
// Shape: the owner starts it with its old picture, gives the new one at its next paint, and
//   repaints whenever it is told to; the picture it paints then is this object's.
// Units: surface pixels; the step is in design pixels.
#pragma once
#include "touch/numbered_timers.h"

#include <QImage>
#include <functional>

class QPainter;

class CScreenTransition
{
public:
    static constexpr int kStep = 50; // design pixels a step

    // `changed`: another picture is due.
    explicit CScreenTransition(std::function<void()> changed);

    // -1: the new picture comes in from the right, 1: from the left, 0: none. Nothing happens
    // either where the settings want no sliding.
    void StartTransition(int direction, const QImage& old);
    void Stop();
    bool IsRunning() const { return m_direction != 0; }
    int GetPosition() const { return m_position; } // of the edge between the pictures

    bool NeedsPicture() const { return IsRunning() && m_new.isNull(); }
    void SetPicture(const QImage& picture);
    // False when nothing runs, so that the owner paints itself.
    bool PaintTransition(QPainter& dc) const;
    bool OnTransitionTimer(int id); // false for another's

    CNumberedTimers& Timers() { return m_timers; }

private:
    std::function<void()> m_changed;
    CNumberedTimers m_timers;
    QImage m_old, m_new;
    int m_position = 0;
    int m_direction = 0;
};
