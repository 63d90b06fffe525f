#include "forms/form_dialog.h"
#include "desktop/keyboard_service.h"
#include "drawing/screen_metrics.h"
#include "forms/menu_bars.h"
#include "settings/settings.h"
#include "touch/command_ids.h"
#include "touch/device_pixels.h"
#include "touch/virtual_keys.h"

#include <QCloseEvent>
#include <QContextMenuEvent>
#include <QEventLoop>
#include <QGuiApplication>
#include <QInputMethod>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QTimer>
#include <QWheelEvent>
#include <algorithm>

namespace
{
constexpr int kSlideStep = 50;         // design pixels
constexpr int kSlideCard = 250;        // a card on a wide window need not come from far away
constexpr QSize kWindowSize{240, 320}; // where there is no window to take it from
CFormDialog* s_current = nullptr;
} // namespace

CFormDialog::CFormDialog(const QString& title)
    : m_title(title.simplified()), m_timers([this](int) { SlideStep(); })
{
    setFocusPolicy(Qt::StrongFocus);
    setAccessibleName(m_title);
    OfferPaintedParts();
}

CFormDialog::~CFormDialog() = default;

CFormDialog* CFormDialog::Current()
{
    return s_current;
}

// ---- lifecycle

int CFormDialog::Run(QWidget* owner)
{
    if (m_loop)
        return kNotStarted;
    QEventLoop loop;
    m_loop = &loop;
    m_result = kCancelled;
    m_ended = false;
    m_outer = s_current;
    s_current = this;
    LoadKeys();
    QWidget* const window = owner ? owner->window() : nullptr;
    if (window && window->isVisible())
        OpenOver(window);
    else
        OpenAsWindow(window);
    QTimer::singleShot(0, this, [this] { LowerInputPanel(); });
    loop.exec();
    s_current = m_outer;
    m_loop = nullptr;
    CloseWindow();
    return m_result;
}

void CFormDialog::OpenOver(QWidget* window)
{
    m_window = window;
    m_focus = window->focusWidget();
    setParent(window);
    m_factor = SurfaceFactor(window);
    m_slide = 0;
    PlaceOver();
    ApplyLayout();
    if (SlidesIn() && g_Settings.General.SlidingScreens)
        StartSliding();
    window->installEventFilter(this);
    raise();
    show();
    TakeFocus();
}

void CFormDialog::OpenAsWindow(const QWidget* model)
{
    m_window = nullptr;
    setWindowModality(Qt::ApplicationModal);
    setWindowTitle(m_title);
    m_factor = SurfaceFactor(this);
    resize(model ? model->size() : kWindowSize * g_ScreenMetrics.Multiple() / m_factor);
    ApplyLayout();
    show();
    activateWindow();
    TakeFocus();
}

void CFormDialog::CloseWindow()
{
    m_timers.KillAll();
    m_touched = kNothing;
    hide();
    if (m_window)
        m_window->removeEventFilter(this);
    else
        destroy(); // the next Run may be over a window, which a window of its own cannot join
    setParent(nullptr);
    if (m_focus)
        m_focus->setFocus();
}

void CFormDialog::End(int result)
{
    if (!m_loop || m_ended)
        return;
    m_ended = true;
    m_result = result;
    m_loop->quit();
}

void CFormDialog::KeepInFront()
{
    if (!s_current)
        return;
    s_current->RaiseAll();
    QWidget* const field = s_current->focusWidget();
    (field ? field : s_current)->setFocus();
}

void CFormDialog::RaiseAll()
{
    if (m_outer)
        m_outer->RaiseAll();
    raise();
}

void CFormDialog::LowerInputPanel()
{
    if (m_loop)
        ShowOnScreenKeyboard(WantsKeyboard());
}

QRect CFormDialog::KeyboardArea() const
{
    const QInputMethod* const panel = QGuiApplication::inputMethod();
    if (!panel->isVisible() || !isVisible())
        return {};
    return panel->keyboardRectangle().toAlignedRect().translated(window()->mapToGlobal(QPoint(0, 0)));
}

QRect CFormDialog::AboveKeyboard(const QRect& client, int leastHeight) const
{
    QRect area = client;
    const QRect keyboard = KeyboardArea();
    if (!keyboard.isEmpty()) {
        const int top = mapFromGlobal(keyboard.topLeft()).y() * m_factor;
        area.setHeight(std::clamp(top - client.y(), std::min(leastHeight, client.height()), client.height()));
    }
    return area;
}

bool CFormDialog::TakeDialogKey(QEvent* event)
{
    if (event->type() != QEvent::KeyPress && event->type() != QEvent::KeyRelease)
        return false;
    QKeyEvent* const stroke = static_cast<QKeyEvent*>(event);
    const int key = VirtualKeyOf(*stroke);
    if (key != kKeyEscape && key != kKeyF1 && key != kKeyF2)
        return false;
    if (event->type() == QEvent::KeyPress)
        keyPressEvent(stroke);
    else
        keyReleaseEvent(stroke);
    return true;
}

void CFormDialog::closeEvent(QCloseEvent* event)
{
    event->ignore(); // Run hides it
    OnCommand(CmdCancel);
}

bool CFormDialog::event(QEvent* event)
{
    if (event->type() == QEvent::WindowActivate)
        LowerInputPanel();
    return QWidget::event(event);
}

bool CFormDialog::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == m_window && event->type() == QEvent::Resize)
        PlaceOver();
    return QWidget::eventFilter(watched, event);
}

void CFormDialog::resizeEvent(QResizeEvent*)
{
    ApplyLayout();
}

// ---- sliding in

void CFormDialog::PlaceOver()
{
    if (m_window)
        setGeometry(m_window->rect().translated(m_slide, 0));
}

void CFormDialog::StartSliding()
{
    const bool card = m_layout.Page.width() < width() * m_factor;
    m_slide = card ? D(kSlideCard) / m_factor : width();
    PlaceOver();
    m_timers.Set(kTimerSlide, kSlideMs);
}

void CFormDialog::SlideStep()
{
    m_slide = std::max(m_slide - D(kSlideStep) / m_factor, 0);
    if (m_slide == 0)
        m_timers.Kill(kTimerSlide);
    PlaceOver();
}

// ---- soft keys

int CFormDialog::GetMenuBarId() const
{
    return kMenuBarForm;
}

void CFormDialog::LoadKeys(int current)
{
    LoadMenuBar(m_keys, GetMenuBarId(), current);
    update();
}

void CFormDialog::OnCommand(int command)
{
    if (command == CmdDone || command == CmdSaveForm)
        OnDone();
    else if (command == CmdCancel)
        End(kCancelled);
}

// ---- accessibility

int CFormDialog::GetPartCount() const
{
    return ContentPartCount() + m_keys.GetCount();
}

CPaintedPart CFormDialog::GetPart(int index) const
{
    const int key = index - ContentPartCount();
    if (key < 0)
        return ContentPart(index);
    return m_keys.PartOf(key, m_layout.Keys, m_factor);
}

void CFormDialog::PressPart(int index)
{
    const int key = index - ContentPartCount();
    if (key < 0)
        PressContentPart(index);
    else
        OnCommand(m_keys.CommandAt(key));
}

// ---- finger

void CFormDialog::mousePressEvent(QMouseEvent* event)
{
    // What the finger was meant for is not where it will be.
    if (event->button() != Qt::LeftButton || m_slide > 0)
        return;
    const QPoint at = ToSurface(event->position(), m_factor);
    if (m_layout.Client.contains(at)) {
        m_touched = kContent;
        OnLButtonDown(at);
    } else if (m_layout.Keys.contains(at)) {
        m_touched = kKeys;
        if (m_keys.SetPressed(m_keys.HitTest(m_layout.Keys, at)))
            update();
    }
}

void CFormDialog::mouseMoveEvent(QMouseEvent* event)
{
    if (!(event->buttons() & Qt::LeftButton))
        return;
    const QPoint at = ToSurface(event->position(), m_factor);
    if (m_touched == kContent)
        OnMouseMove(at);
    else if (m_touched == kKeys && m_keys.SetPressed(m_keys.HitTest(m_layout.Keys, at)))
        update();
}

void CFormDialog::mouseReleaseEvent(QMouseEvent* event)
{
    if (event->button() != Qt::LeftButton)
        return;
    const QPoint at = ToSurface(event->position(), m_factor);
    const Touched touched = m_touched;
    m_touched = kNothing;
    if (touched == kContent)
        OnLButtonUp(at);
    if (touched != kKeys)
        return;
    const int key = m_keys.HitTest(m_layout.Keys, at);
    if (m_keys.SetPressed(-1))
        update();
    if (key >= 0)
        OnCommand(m_keys.CommandAt(key));
}

void CFormDialog::wheelEvent(QWheelEvent* event)
{
    OnWheel(event->angleDelta().y());
    event->accept();
}

void CFormDialog::contextMenuEvent(QContextMenuEvent* event)
{
    event->accept();
}

// ---- keys: every one ends here, for nothing below may act while the dialog runs

void CFormDialog::keyPressEvent(QKeyEvent* event)
{
    event->accept();
    const int key = VirtualKeyOf(*event);
    // The press that opened the dialog goes on repeating; it answers nothing.
    if (event->isAutoRepeat() && (key == kKeyReturn || key == kKeyEscape))
        return;
    if (!event->isAutoRepeat())
        m_downKey = key;
    if (key == kKeyEscape)
        OnCommand(CmdCancel);
    else if (key != kKeyNone)
        OnKey(key);
}

void CFormDialog::keyReleaseEvent(QKeyEvent* event)
{
    event->accept();
    const int key = VirtualKeyOf(*event);
    if (event->isAutoRepeat() || key == kKeyNone || key != m_downKey)
        return;
    m_downKey = kKeyNone;
    const int command = key == kKeyF1   ? m_keys.FirstCommand()
                        : key == kKeyF2 ? m_keys.LastCommand()
                                        : CmdNone;
    if (command != CmdNone)
        OnCommand(command);
    else
        OnKeyUp(key);
}
