#include "views/calendar_view.h"
#include "desktop/shell_actions.h"
#include "drawing/screen_metrics.h"
#include "forms/number_list_dialog.h"
#include "pim/pim_store.h"
#include "settings/settings.h"
#include "settings/title_formats.h"
#include "touch/command_ids.h"
#include "touch/device_pixels.h"
#include "touch/touch_navigator.h"
#include "touch/virtual_keys.h"
#include "touch/wait_cursor.h"
#include "views/date_keys.h"
#include "views/item_details_form.h"

#include <QContextMenuEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QPointer>
#include <QWheelEvent>

namespace
{
constexpr int kWheelNotch = 120;
constexpr int kWheelStep = 60;         // design pixels of one notch
constexpr int kDefaultTitleFormat = 1; // when the stored index is none of the table's
} // namespace

CCalendarView::CCalendarView(IViewHost& host, QWidget* parent)
    : QWidget(parent), m_host(host),
      m_overlay([this](const QRect& part) { update(ToLogical(part, m_factor)); }),
      m_transition([this] { update(); })
{
    setAttribute(Qt::WA_OpaquePaintEvent);
    setFocusPolicy(Qt::StrongFocus);
    OfferPaintedParts();
}

CCalendarView::~CCalendarView() = default;

// ---- size

void CCalendarView::Create()
{
    m_factor = SurfaceFactor(this);
    m_shapeSize = SurfaceSize();
    m_shapeDensity = g_ScreenMetrics.Density();
    OnCreate();
}

// Showing a window tells of sizes that are none too new, and a long day takes its time to lay out.
void CCalendarView::Reshape()
{
    m_factor = SurfaceFactor(this);
    const int density = g_ScreenMetrics.Density();
    if (!m_created || (SurfaceSize() == m_shapeSize && density == m_shapeDensity))
        return;
    m_shapeSize = SurfaceSize();
    m_shapeDensity = density;
    CancelDateRun();
    OnResize();
}

// ---- what most views leave as it is

bool CCalendarView::FillMenu(QMenu&)
{
    return false;
}

bool CCalendarView::FillTouchMenu(CTouchMenu&)
{
    return false;
}

void CCalendarView::FillSoftKeys(CSoftKeyBar&) {}

void CCalendarView::RebuildSoftKeys(CSoftKeyBar&) {}

void CCalendarView::GetViewButtonText(QString&, QString&) const {}

void CCalendarView::MoveDate(int) {}

bool CCalendarView::OnKey(int)
{
    return false;
}

void CCalendarView::SetCursorDate(DATE date)
{
    const int day = DayNumber(date);
    PimStore().LoadRange(day, day, day);
}

// ---- selection and title

CPimRecord* CCalendarView::GetSelectedItem() const
{
    return m_selected ? m_selected->GetItem() : nullptr;
}

CItemIdentity CCalendarView::SelectedIdentity() const
{
    return m_selected ? m_selected->m_identity : CItemIdentity();
}

int CCalendarView::SelectedDay() const
{
    return m_selected ? m_selected->m_date : 0;
}

void CCalendarView::RunMenu(CTouchMenu& menu)
{
    if (menu.GetRowCount() == 0)
        return; // special events have no menu
    const CItemIdentity chosenFor = SelectedIdentity();
    const QPointer<QWidget> alive(this);
    const int command = menu.Run(this);
    if (alive && command != CmdNone && SelectedIdentity().IsSameItem(chosenFor))
        m_host.SendCommand(command);
}

void CCalendarView::OnCommandOpenItem()
{
    const auto* item = dynamic_cast<const CPimItem*>(GetSelectedItem());
    if (!item)
        return;
    if (!IsSpecialEvent(*item))
        return ShowItemDetails(*item, this);
    if (const QString number = ChooseNumber(this, item->ItemId); !number.isEmpty())
        MakeCall(number); // to the person whose day it is
}

void CCalendarView::SetTitle(const QString& title)
{
    m_title = title;
    m_host.UpdateTitle();
}

QString CCalendarView::GetCursorDateText() const
{
    const DATE cursor = PimStore().CursorDate();
    QString text;
    if (cursor != NO_DATE &&
        !FormatViewTitle(kDailyTitleFormats, g_Settings.DailyView.ViewTitleFormat, cursor, NO_DATE, &text))
        FormatViewTitle(kDailyTitleFormats, kDefaultTitleFormat, cursor, NO_DATE, &text);
    return text;
}

// ---- paint

QSize CCalendarView::SurfaceSize() const
{
    return ToSurface(size(), m_factor);
}

QImage CCalendarView::Snapshot()
{
    QImage picture(SurfaceSize(), QImage::Format_RGB32);
    if (picture.isNull())
        return picture;
    picture.fill(Qt::black);
    QPainter dc(&picture);
    PaintView(dc, picture.size());
    return picture;
}

void CCalendarView::paintEvent(QPaintEvent*)
{
    const int factor = SurfaceFactor(this);
    if (factor != m_factor)
        Reshape();
    QPainter window(this);
    if (!m_created)
        return window.fillRect(rect(), Qt::black);
    if (PaintDateRun(window))
        return;
    if (devicePixelRatioF() == m_factor) {
        // Straight into the window's own buffer, which nobody sees before the paint is over.
        window.scale(1.0 / m_factor, 1.0 / m_factor);
        PaintView(window, SurfaceSize());
    } else {
        BlitSurface(window, Snapshot(), {0, 0}, m_factor);
    }
}

// ---- running through dates

void CCalendarView::StartDateRun(int stroke, QPoint at)
{
    const DATE cursor = PimStore().CursorDate();
    if (GetOverlayUnit() == kOverlayNone || cursor == NO_DATE)
        return;
    CancelDateRun();
    m_overlay.StartGesture(GetOverlayUnit(), stroke < 0 ? kKeyLeft : kKeyRight, DayNumber(cursor), at,
                           Snapshot());
    update();
}

void CCalendarView::CancelDateRun()
{
    if (!m_overlay.IsRunning() && !m_transition.IsRunning())
        return;
    m_overlay.Cancel();
    m_transition.Stop();
    update();
}

void CCalendarView::Leave()
{
    m_fingerDown = false; // its lifting must not move the date under the other view
    if (CTouchNavigator* navigator = Navigator())
        navigator->CancelTouch();
    CancelDateRun();
    OnDeactivate();
}

void CCalendarView::OnDateChosen(int day, int direction)
{
    update();
    if (day < 1)
        return;
    // Weeks and months show days beyond their own.
    if (GetOverlayUnit() != kOverlayDays)
        day = NearestShowableDay(day);
    if (direction != 0)
        m_transition.StartTransition(direction, Snapshot());
    const CWaitCursor wait;
    SetCursorDate(day);
    Refresh();
}

bool CCalendarView::PaintDateRun(QPainter& window)
{
    if (m_transition.NeedsPicture())
        m_transition.SetPicture(Snapshot());
    if (!m_overlay.IsRunning() && !m_transition.IsRunning())
        return false;
    const auto paint = [this](QPainter& dc) {
        if (m_overlay.IsRunning())
            m_overlay.Paint(dc);
        else
            m_transition.PaintTransition(dc);
    };
    if (devicePixelRatioF() == m_factor) {
        window.scale(1.0 / m_factor, 1.0 / m_factor);
        paint(window);
        return true;
    }
    QImage picture(SurfaceSize(), QImage::Format_RGB32);
    QPainter dc(&picture);
    paint(dc);
    dc.end();
    BlitSurface(window, picture, {0, 0}, m_factor);
    return true;
}

void CCalendarView::resizeEvent(QResizeEvent*)
{
    Reshape();
}

// ---- input

void CCalendarView::mousePressEvent(QMouseEvent* event)
{
    if (event->button() != Qt::LeftButton)
        return;
    if (m_overlay.IsRunning())
        CancelDateRun(); // that finger's lifting was lost
    m_fingerDown = true;
    OnLButtonDown(ToSurface(event->position(), m_factor));
}

void CCalendarView::mouseMoveEvent(QMouseEvent* event)
{
    if (!(event->buttons() & Qt::LeftButton) || !m_fingerDown)
        return;
    const QPoint at = ToSurface(event->position(), m_factor);
    if (m_overlay.IsRunning())
        m_overlay.OnMouseMove(at);
    else
        OnMouseMove(at);
}

void CCalendarView::mouseReleaseEvent(QMouseEvent* event)
{
    if (event->button() != Qt::LeftButton || !m_fingerDown)
        return;
    m_fingerDown = false;
    const bool running = m_overlay.IsRunning();
    int direction = 0;
    const int day = running ? m_overlay.OnLButtonUp(&direction) : 0;
    OnLButtonUp(ToSurface(event->position(), m_factor));
    if (running)
        OnDateChosen(day, direction);
}

void CCalendarView::wheelEvent(QWheelEvent* event)
{
    CTouchNavigator* navigator = Navigator();
    if (!navigator)
        return;
    const int distance = event->hasPixelDelta() ? event->pixelDelta().y() * m_factor
                                                : event->angleDelta().y() * D(kWheelStep) / kWheelNotch;
    navigator->ScrollBy(distance);
    event->accept();
}

void CCalendarView::contextMenuEvent(QContextMenuEvent* event)
{
    CancelDateRun();
    const bool byKey = event->reason() == QContextMenuEvent::Keyboard;
    OnContextMenu(byKey ? QPoint(-1, -1) : ToSurface(QPointF(event->pos()), m_factor));
    event->accept();
}

void CCalendarView::keyPressEvent(QKeyEvent* event)
{
    const int key = VirtualKeyOf(*event);
    if (event->isAutoRepeat() && (key == kKeyReturn || key == kKeyDigit0 + 9))
        return event->accept(); // opens and completes once
    event->setAccepted(key == kKeyF1 || key == kKeyF2 || (key != kKeyNone && OnKey(key)));
}

void CCalendarView::keyReleaseEvent(QKeyEvent* event)
{
    const int key = VirtualKeyOf(*event);
    event->setAccepted((key == kKeyF1 || key == kKeyF2) && !event->isAutoRepeat());
    if (event->isAccepted())
        m_host.PressSoftKey(key);
}
