// The scale of everything that is painted.
// Units: design pixels go in, device pixels come out. The density is 96 times a whole multiple
// k from 1 to 4, so both scalings are k times the design measure; painters still say which one
// they mean, `S` for what must never vanish and `D` for plain measures.
#pragma once
#include <QSize>

class CScreenMetrics
{
public:
    // Takes the density in dots per inch (`forcedDensity` unless that is -1) and the screen's
    // size in any unit; a size that is not known yet leaves the orientation alone.
    void Init(int density, QSize screen, int forcedDensity = -1);

    // The multiple for a density: 191 is still 1, 192 is 2, 288 is 3, 384 and above 4.
    static constexpr int MultipleOf(int density)
    {
        return density < 192 ? 1 : density < 288 ? 2 : density < 384 ? 3 : 4;
    }
    int Multiple() const { return m_multiple; }
    int Density() const { return 96 * m_multiple; }

    // Cut to an integer; a non-zero x never gives 0.
    int ScaleX(double x) const { return Scale(x, m_scaleX); }
    int ScaleY(double x) const { return Scale(x, m_scaleY); }
    int Double(int x) const { return m_highRes ? m_multiple * x : x; }

    bool m_landscape = false; // wider than high
    bool m_lowRes = true;     // density below 192
    bool m_highRes = false;   // density of 192 or more
    double m_scaleX = 1.0;
    double m_scaleY = 1.0;

private:
    static int Scale(double x, double factor)
    {
        const int scaled = static_cast<int>(x * factor);
        if (scaled != 0 || x == 0)
            return scaled;
        return x < 0 ? -1 : 1;
    }
    int m_multiple = 1;
};

extern CScreenMetrics g_ScreenMetrics;

inline int S(double x)
{
    return g_ScreenMetrics.ScaleX(x);
}
inline int SY(double x)
{
    return g_ScreenMetrics.ScaleY(x);
}
inline int D(int x)
{
    return g_ScreenMetrics.Double(x);
}
