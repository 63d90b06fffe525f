// The frame's window events: finger, keys, visibility, and messages of other processes.
#include "desktop/foreground.h"
#include "settings/settings.h"
#include "shell/main_frame.h"
#include "touch/command_ids.h"
#include "touch/device_pixels.h"
#include "touch/virtual_keys.h"

#include <QApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QWindow>

// ---- finger

void CMainFrame::UpdateKeysAt(QPoint logical, bool pressed)
{
    const CFrameLayout layout = Layout();
    const int key = pressed ? m_softKeys.HitTest(layout.Keys, ToSurface(QPointF(logical), m_factor)) : -1;
    if (m_softKeys.SetPressed(key))
        Invalidate(layout.Keys);
}

void CMainFrame::mousePressEvent(QMouseEvent* event)
{
    if (event->button() == Qt::LeftButton)
        UpdateKeysAt(event->position().toPoint(), true);
}

void CMainFrame::mouseMoveEvent(QMouseEvent* event)
{
    if (event->buttons() & Qt::LeftButton)
        UpdateKeysAt(event->position().toPoint(), true);
}

void CMainFrame::mouseReleaseEvent(QMouseEvent* event)
{
    if (event->button() != Qt::LeftButton)
        return;
    const CFrameLayout layout = Layout();
    const QPoint at = ToSurface(event->position(), m_factor);
    const int key = m_softKeys.HitTest(layout.Keys, at);
    UpdateKeysAt({}, false);
    if (key >= 0) {
        SendCommand(m_softKeys.CommandAt(key));
        return;
    }
    const CCalendarView* view = CurrentView();
    if (view && view->IsTitleTappable() && layout.Title.contains(at))
        SendCommand(CmdGoTo);
}

// ---- keys

void CMainFrame::PressSoftKey(int key)
{
    const int command = key == kKeyF1   ? m_softKeys.FirstCommand()
                        : key == kKeyF2 ? m_softKeys.LastCommand()
                                        : CmdNone;
    if (command != CmdNone)
        SendCommand(command);
}

void CMainFrame::keyPressEvent(QKeyEvent* event)
{
    const int key = VirtualKeyOf(*event);
    if (key == kKeyEscape)
        m_backPressed = m_backPressed || !event->isAutoRepeat();
    const bool completes = key == kKeyDigit0 + 9 || key == kKeyA + 2;
    if (event->isAutoRepeat() && (completes || key == kKeyReturn))
        return; // a series would go on and on
    if (completes)
        return SendCommand(CmdToggleTask);
    CCalendarView* view = CurrentView();
    // A view that has the focus has seen the key and left it.
    if (view && !view->hasFocus() && key != kKeyNone && key != kKeyEscape && key != kKeyF1 && key != kKeyF2)
        view->OnKey(key);
}

void CMainFrame::keyReleaseEvent(QKeyEvent* event)
{
    if (event->isAutoRepeat())
        return;
    const int key = VirtualKeyOf(*event);
    if (key == kKeyF1 || key == kKeyF2)
        PressSoftKey(key);
    else if (key == kKeyEscape && m_backPressed)
        BackKey(event->key() == Qt::Key_Back);
    if (key == kKeyEscape)
        m_backPressed = false;
}

void CMainFrame::BackKey(bool deviceKey)
{
    const CCalendarView* view = CurrentView();
    if (view && view->WantsBackKey())
        return;
    const int previous = m_previousView;
    const bool other = previous != -1 && previous != g_Settings.General.LastView;
    if (other)
        ShowView(previous, -1);
    m_previousView = -1;
    if (!other && deviceKey)
        showMinimized(); // back to what was there before; on a desktop Escape leaves the window alone
}

// ---- visibility

void CMainFrame::UpdateWatchers()
{
    const bool visible = m_up && isVisible() && !isMinimized();
    if (visible && !m_timeWatcher.IsRunning())
        m_timeWatcher.Start();
    else if (!visible)
        m_timeWatcher.Stop();
    if (m_notices)
        m_notices->SetPolling(visible);
}

void CMainFrame::showEvent(QShowEvent*)
{
    UpdateWatchers();
}

void CMainFrame::hideEvent(QHideEvent*)
{
    UpdateWatchers();
}

void CMainFrame::changeEvent(QEvent* event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::WindowStateChange)
        UpdateWatchers();
    if (event->type() != QEvent::ActivationChange || !m_up || !isActiveWindow())
        return;
    if (m_timeWatcher.IsRunning())
        m_timeWatcher.Check();
    if (CCalendarView* view = CurrentView())
        view->show();
    UpdateTitle();
}

void CMainFrame::resizeEvent(QResizeEvent*)
{
    Relayout();
}

// ---- other processes

void CMainFrame::OnInstanceMessage(const CInstanceMessage& message)
{
    switch (message.Number) {
    case kMessageClose:
        close();
        break;
    case kMessageShow:
        if (!m_up) // one item's form is shown in the frame's place
            break;
        m_cameForward = !QApplication::activeWindow();
        setWindowState(windowState() & ~Qt::WindowMinimized);
        show();
        if (windowHandle())
            BringToForeground(*windowHandle(), message.Token);
        break;
    case kMessageRequest:
        ServePostedRequest();
        break;
    default:
        break;
    }
}
