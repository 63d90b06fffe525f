#include "views/week_tiles.h"

namespace
{
constexpr int kBarAbove = 1, kBarBelow = 2;

QRect Edges(int left, int top, int right, int bottom) // the latter two exclusive
{
    return {left, top, right - left, bottom - top};
}
} // namespace

QRect CWeekTiles::Area() const
{
    return {0, m_setup.BarPlace == kBarAbove ? m_setup.BarHeight : 0, m_setup.Client.width(),
            m_setup.Client.height() - (m_setup.BarPlace ? m_setup.BarHeight : 0)};
}

QRect CWeekTiles::Bar() const
{
    if (!m_setup.BarPlace)
        return {};
    const int top = m_setup.BarPlace == kBarBelow ? m_setup.Client.height() - m_setup.BarHeight : 0;
    return {0, top, m_setup.Client.width(), m_setup.BarHeight};
}

QRect CWeekTiles::Tile(int tile) const
{
    const QRect area = Area();
    const int w = area.width(), m = w / 2, t = area.y(), b = t + area.height();
    const int r = area.height() / (m_setup.WideFirst ? 4 : 3);
    if (m_setup.WideFirst) {
        if (tile == 0)
            return Edges(0, t, w, t + r);
        const int row = (tile + 1) / 2; // 1 to 3
        const int top = t + row * r + 1, bottom = row == 3 ? b : t + (row + 1) * r;
        return tile % 2 ? Edges(0, top, m, bottom) : Edges(m + 1, top, w, bottom);
    }
    if (tile == 5)
        return Edges(m + 1, t + 2 * r + 1, w, t + 2 * r + 1 + r / 2);
    if (tile == 6)
        return Edges(m + 1, t + 2 * r + r / 2 + 2, w, b);
    const int row = tile / 2; // 0 to 2
    const int top = row ? t + row * r + 1 : t, bottom = row == 2 ? b : t + (row + 1) * r;
    return tile % 2 ? Edges(m + 1, top, w, bottom) : Edges(0, top, m, bottom);
}

int CWeekTiles::TileOfDay(int day) const
{
    constexpr int kDown[kDays] = {0, 2, 4, 1, 3, 5, 6};
    constexpr int kDownWideFirst[kDays] = {0, 1, 3, 5, 2, 4, 6};
    if (!m_setup.DownTheColumns || day < 0 || day >= kDays)
        return day;
    return m_setup.WideFirst ? kDownWideFirst[day] : kDown[day];
}

int CWeekTiles::DayAt(QPoint at) const
{
    for (int day = 0; day < kDays; ++day) {
        if (TileForDay(day).contains(at))
            return day;
    }
    return -1;
}

QRect CWeekTiles::PopOut(int day, int growth) const
{
    const QRect area = Area();
    QRect rect = TileForDay(day).adjusted(-growth, -growth, growth, growth);
    if (rect.left() < area.left())
        rect.moveLeft(area.left());
    if (rect.right() > area.right())
        rect.moveRight(area.right());
    if (rect.bottom() > area.bottom())
        rect.moveBottom(area.bottom());
    if (rect.top() < area.top())
        rect.moveTop(area.top());
    return rect & area; // a tile as wide as the view
}
