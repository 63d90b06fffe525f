// The frame's own picture: title strip and soft keys around the view.
#include "drawing/paint.h"
#include "drawing/screen_metrics.h"
#include "settings/system_colors.h"
#include "shell/main_frame.h"
#include "shell/title_strip.h"
#include "touch/command_ids.h"
#include "touch/device_pixels.h"

#include <QPaintEvent>
#include <QPainter>
#include <QTimer>
#include <utility>

void CMainFrame::PaintParts(QPainter& dc, const QRect& clip)
{
    const CFrameLayout layout = Layout();
    if (clip.intersects(layout.Title))
        PaintTitleStrip(dc, layout.Title, m_titleLocation, TitleText());
    if (clip.intersects(layout.Keys))
        m_softKeys.Paint(dc, layout.Keys);
}

void CMainFrame::paintEvent(QPaintEvent* event)
{
    if (m_up && SurfaceDensity(this) != g_ScreenMetrics.Density())
        Relayout(); // no event tells of a new ratio
    QPainter window(this);
    const QRect dirty = event->rect();
    if (!m_up)
        return window.fillRect(dirty, ToQColor(SystemColor::Window));
    // Parts are painted whole, each into a picture of its own size.
    const CFrameLayout layout = Layout();
    for (const QRect& part : {layout.Title, layout.Keys}) {
        if (part.isEmpty() || !dirty.intersects(ToLogical(part, m_factor)))
            continue;
        QImage picture(part.size(), QImage::Format_RGB32);
        QPainter dc(&picture);
        dc.translate(-part.topLeft());
        PaintParts(dc, part);
        dc.end();
        BlitSurface(window, picture, part.topLeft(), m_factor);
    }
    if (m_firstPaint)
        QTimer::singleShot(0, this, std::exchange(m_firstPaint, {}));
}

QImage CMainFrame::Snapshot()
{
    const CFrameLayout layout = Layout();
    QImage picture(ToSurface(size(), m_factor), QImage::Format_RGB32);
    if (picture.isNull())
        return picture;
    picture.fill(ToQColor(SystemColor::Window));
    QPainter dc(&picture);
    PaintParts(dc, picture.rect());
    if (CCalendarView* view = CurrentView(); view && !layout.View.isEmpty())
        dc.drawImage(layout.View.topLeft(), view->Snapshot());
    return picture;
}

void CMainFrame::Invalidate(const QRect& surface)
{
    if (!surface.isEmpty())
        update(ToLogical(surface, m_factor));
}

void CMainFrame::OnSystemColors()
{
    if (!m_up)
        return;
    for (const auto& view : m_views)
        view->OnResize(); // what it made in the old colours is made anew
    BuildSoftKeys();
    update();
}

// ---- for readers of the screen

int CMainFrame::GetPartCount() const
{
    return 1 + m_softKeys.GetCount();
}

CPaintedPart CMainFrame::GetPart(int index) const
{
    const CFrameLayout layout = Layout();
    if (index > 0)
        return m_softKeys.PartOf(index - 1, layout.Keys, m_factor);
    const CCalendarView* const view = CurrentView();
    CPaintedPart part;
    part.Name = TitleText();
    part.Role = QAccessible::StaticText;
    part.Rect = ToLogical(layout.Title, m_factor);
    part.Pressable = view && view->IsTitleTappable();
    return part;
}

void CMainFrame::PressPart(int index)
{
    SendCommand(index > 0 ? m_softKeys.CommandAt(index - 1) : int(CmdGoTo));
}
