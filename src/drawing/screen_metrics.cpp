#include "drawing/screen_metrics.h"

constinit CScreenMetrics g_ScreenMetrics;

void CScreenMetrics::Init(int density, QSize screen, int forcedDensity)
{
    m_multiple = MultipleOf(forcedDensity != -1 ? forcedDensity : density);
    m_scaleX = m_scaleY = m_multiple;
    m_highRes = m_multiple > 1;
    m_lowRes = !m_highRes;
    if (!screen.isEmpty())
        m_landscape = screen.width() > screen.height();
}
