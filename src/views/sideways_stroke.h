// A finger's stroke to a side, which begins to move the date. A thumb's arc while it scrolls is none: it goes up
// or down as far as sideways.
#pragma once
#include "drawing/screen_metrics.h"

#include <QPoint>
#include <cstdlib>

class CSidewaysStroke
{
public:
    static constexpr int kLeast = 50; // design pixels

    void Press(QPoint at) { m_start = at; }
    void End() { m_start = {-1, -1}; }
    // -1 for a stroke to the left, 1 to the right, 0 as long as there is none. One touch has one stroke.
    int Move(QPoint at)
    {
        const QPoint way = at - m_start;
        if (m_start.x() < 0 || std::abs(way.x()) < D(kLeast) || std::abs(way.x()) <= 2 * std::abs(way.y()))
            return 0;
        End();
        return way.x() < 0 ? -1 : 1;
    }

private:
    QPoint m_start{-1, -1};
};
