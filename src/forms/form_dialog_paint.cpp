// The dialogs' layout and their picture.
#include "drawing/paint.h"
#include "drawing/screen_metrics.h"
#include "forms/form_dialog.h"
#include "settings/system_colors.h"
#include "touch/device_pixels.h"
#include "touch/page_title.h"

#include <QPaintEvent>
#include <QPainter>
#include <algorithm>

namespace
{
constexpr int kPageWidth = 480; // design pixels
constexpr int kCardMargin = 20; // least way from a card to the window's edges
} // namespace

// ---- layout

int CFormDialogLayout::PageWidth(QSize window)
{
    return std::min(window.width(), D(kPageWidth));
}

CFormDialogLayout CFormDialogLayout::Of(QSize window, bool hasTitle, int contentHeight)
{
    CFormDialogLayout layout;
    const int title = hasTitle ? PageTitleHeight() : 0, keys = CSoftKeyBar::Height();
    const int width = PageWidth(window);
    int height = window.height();
    if (width < window.width()) {
        const int room = std::max(height - 2 * D(kCardMargin), std::min(height, title + keys));
        height = std::min(title + contentHeight + keys, room);
    }
    const int multiple = g_ScreenMetrics.Multiple(); // live controls must lie on whole logical pixels
    const int x = (window.width() - width) / 2 / multiple * multiple;
    const int y = (window.height() - height) / 2 / multiple * multiple;
    const int client = std::max(height - title - keys, 0);
    layout.Page = QRect(x, y, width, height);
    if (hasTitle)
        layout.Title = QRect(x, y, width, title);
    layout.Client = QRect(x, y + title, width, client);
    layout.Keys = QRect(x, y + title + client, width, keys);
    return layout;
}

void CFormDialog::ApplyLayout()
{
    const QSize window = ToSurface(size(), m_factor);
    m_density = g_ScreenMetrics.Density();
    m_layout = CFormDialogLayout::Of(window, !m_title.isEmpty(),
                                     ContentHeight(CFormDialogLayout::PageWidth(window)));
    setAttribute(Qt::WA_OpaquePaintEvent, m_layout.Page == QRect(QPoint(0, 0), window));
    OnLayout(m_layout.Client);
    update();
}

void CFormDialog::SetTitle(const QString& title)
{
    const bool hadTitle = !m_title.isEmpty();
    m_title = title.simplified();
    setAccessibleName(m_title);
    if (hadTitle != !m_title.isEmpty())
        ApplyLayout();
    update(ToLogical(m_layout.Title, m_factor));
}

// ---- paint

QImage CFormDialog::PaintPage()
{
    QImage page(m_layout.Page.size(), QImage::Format_RGB32);
    if (page.isNull())
        return page;
    QPainter dc(&page);
    dc.translate(-m_layout.Page.topLeft());
    FillSolid(dc, m_layout.Client, SystemColor::Window);
    if (!m_layout.Client.isEmpty()) {
        dc.setClipRect(m_layout.Client);
        PaintContent(dc, m_layout.Client);
        dc.setClipping(false);
    }
    if (!m_layout.Title.isEmpty())
        PaintPageTitle(dc, m_layout.Title, m_title);
    m_keys.Paint(dc, m_layout.Keys);
    return page;
}

QImage CFormDialog::Snapshot()
{
    if (!isVisible())
        LoadKeys();
    ApplyLayout();
    return PaintPage();
}

void CFormDialog::paintEvent(QPaintEvent*)
{
    const int factor = SurfaceFactor(this);
    const bool newRatio = factor != m_factor;
    m_factor = factor;
    if (newRatio || g_ScreenMetrics.Density() != m_density)
        ApplyLayout();
    if (newRatio && m_window && SurfaceDensity(this) != g_ScreenMetrics.Density()) {
        // The window takes the new density when it paints; under an opaque page it never would.
        setAttribute(Qt::WA_OpaquePaintEvent, false);
        m_window->update();
    }
    QPainter window(this);
    if (m_layout.Page.size() != ToSurface(size(), m_factor))
        window.fillRect(rect(), DimColor());
    BlitSurface(window, PaintPage(), m_layout.Page.topLeft(), m_factor);
    m_told.Tell(this, *this);
}
