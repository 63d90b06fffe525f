#include "touch/touch_menu.h"
#include "drawing/picture_ids.h"
#include "drawing/screen_metrics.h"
#include "touch/command_ids.h"
#include "touch/device_pixels.h"
#include "touch/virtual_keys.h"
#include "util/string_store.h"

#include <QEventLoop>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPointer>
#include <QWheelEvent>
#include <algorithm>

namespace
{
constexpr int kCmdClose = 2; // the menu's own key, never told to anyone
constexpr int kWheelRows = 2;
constexpr int kWheelNotch = 120;
CTouchMenu* s_current = nullptr;
} // namespace

CTouchMenu::CTouchMenu() : CTouchMenu(QString()) {}

CTouchMenu::CTouchMenu(const QString& title) : m_title(title.simplified())
{
    setFocusPolicy(Qt::StrongFocus);
    setAccessibleName(m_title);
    OfferPaintedParts();
}

CTouchMenu::~CTouchMenu() = default;

CTouchMenu* CTouchMenu::Current()
{
    return s_current;
}

// ---- rows

void CTouchMenu::AddRow(int stringId, int command, int imageId, bool checked)
{
    AddRow(GetString(stringId), command, imageId, checked);
}

void CTouchMenu::AddRow(const QString& text, int command, int imageId, bool checked)
{
    m_rows.push_back({text, command, imageId, checked});
}

// ---- lifecycle

int CTouchMenu::Run(QWidget* owner)
{
    const QPointer<QWidget> window = owner ? owner->window() : nullptr;
    if (!window || m_loop)
        return CmdNone;
    const QPointer<QWidget> focus = window->focusWidget();
    m_keys.AddButton(kCmdClose, PictureCancel); // a finger needs a way out where rows fill the window, too
    QEventLoop loop;
    m_loop = &loop;
    m_result = CmdNone;
    m_outer = s_current;
    s_current = this;
    OpenOver(window);
    loop.exec();
    s_current = m_outer;
    m_loop = nullptr;
    hide();
    if (window)
        window->removeEventFilter(this);
    setParent(nullptr);
    if (focus)
        focus->setFocus();
    return m_result;
}

void CTouchMenu::OpenOver(QWidget* window)
{
    setParent(window);
    setGeometry(window->rect());
    window->installEventFilter(this);
    m_factor = SurfaceFactor(window);
    ApplyLayout();
    ShowCheckedRow();
    raise();
    show();
    setFocus();
}

void CTouchMenu::Choose(int command)
{
    m_result = command == kCmdClose ? CmdNone : command;
    if (m_loop)
        m_loop->quit();
}

bool CTouchMenu::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == parent() && event->type() == QEvent::Resize)
        setGeometry(parentWidget()->rect());
    return QWidget::eventFilter(watched, event);
}

void CTouchMenu::resizeEvent(QResizeEvent*)
{
    ApplyLayout();
}

void CTouchMenu::ApplyLayout()
{
    const CTouchMenuLayout layout = Layout();
    setAttribute(Qt::WA_OpaquePaintEvent, layout.Page == QRect(QPoint(0, 0), ToSurface(size(), m_factor)));
    if (m_touch.Width() == 0)
        m_touch.Attach(0, this, this, layout.List.x(), layout.List.y(), layout.List.width(),
                       layout.List.height());
    else
        m_touch.SetArea(layout.List);
    update();
}

void CTouchMenu::ShowCheckedRow()
{
    const auto checked =
        std::find_if(m_rows.begin(), m_rows.end(), [](const auto& row) { return row.Checked; });
    if (checked != m_rows.end())
        m_touch.EnsureVisible(RowRect(int(checked - m_rows.begin())));
}

// ---- input

bool CTouchMenu::OnPress(quint32, int, int y)
{
    SelectRow(RowAt(y));
    return true;
}

void CTouchMenu::OnDragStart(quint32)
{
    SelectRow(-1);
}

void CTouchMenu::OnTap(quint32, int, int y)
{
    const int index = RowAt(y);
    Choose(index < 0 ? CmdNone : m_rows[size_t(index)].Command);
}

void CTouchMenu::SelectRow(int index)
{
    m_selected = index;
    TellPartSelected(this, index);
}

void CTouchMenu::mousePressEvent(QMouseEvent* event)
{
    if (event->button() != Qt::LeftButton)
        return;
    const QPoint at = ToSurface(event->position(), m_factor);
    const CTouchMenuLayout layout = Layout();
    if (m_touch.OnLButtonDown(at.x(), at.y())) {
        m_touched = kRows;
    } else if (layout.Keys.contains(at)) {
        m_touched = kKeys;
        if (m_keys.SetPressed(m_keys.HitTest(layout.Keys, at)))
            update();
    } else {
        m_touched = layout.Page.contains(at) ? kNothing : kBeside;
    }
}

void CTouchMenu::mouseMoveEvent(QMouseEvent* event)
{
    if (!(event->buttons() & Qt::LeftButton))
        return;
    const QPoint at = ToSurface(event->position(), m_factor);
    if (m_touched == kRows)
        m_touch.OnMouseMove(at.x(), at.y());
    else if (m_touched == kKeys && m_keys.SetPressed(m_keys.HitTest(Layout().Keys, at)))
        update();
}

void CTouchMenu::mouseReleaseEvent(QMouseEvent* event)
{
    if (event->button() != Qt::LeftButton)
        return;
    const QPoint at = ToSurface(event->position(), m_factor);
    const Touched touched = m_touched;
    m_touched = kNothing;
    if (touched == kRows)
        m_touch.OnLButtonUp(at.x(), at.y());
    else if (touched == kKeys)
        ReleaseOnKeys(at);
    else if (touched == kBeside && !Layout().Page.contains(at))
        Choose(CmdNone);
}

void CTouchMenu::ReleaseOnKeys(QPoint at)
{
    const int key = m_keys.HitTest(Layout().Keys, at);
    if (m_keys.SetPressed(-1))
        update();
    if (key >= 0)
        Choose(m_keys.CommandAt(key));
}

void CTouchMenu::wheelEvent(QWheelEvent* event)
{
    m_touch.ScrollBy(event->angleDelta().y() * kWheelRows * RowHeight() / kWheelNotch);
    event->accept();
}

void CTouchMenu::SelectByKey(int direction)
{
    if (m_rows.empty())
        return;
    const int last = GetRowCount() - 1;
    const int first = direction > 0 ? 0 : last;
    SelectRow(m_selected < 0 ? first : std::clamp(m_selected + direction, 0, last));
    m_touch.EnsureVisible(RowRect(m_selected));
    m_touch.Redraw(true);
}

CPaintedPart CTouchMenu::GetPart(int index) const
{
    if (index >= GetRowCount())
        return m_keys.PartOf(index - GetRowCount(), Layout().Keys, m_factor);
    const CTouchMenuRow& row = m_rows[size_t(index)];
    const QRect rect = RowRect(index).translated(m_touch.Area().x(), m_touch.Area().y() + m_touch.Scroll());
    return {.Name = row.Text,
            .Role = QAccessible::MenuItem,
            .Rect = ToLogical(rect, m_factor),
            .Selected = index == m_selected,
            .Checkable = row.Checked,
            .Checked = row.Checked};
}

void CTouchMenu::PressPart(int index)
{
    if (index < GetRowCount())
        Choose(m_rows[size_t(index)].Command);
    else
        PressKey(m_keys.CommandAt(index - GetRowCount()));
}

void CTouchMenu::PressKey(int command)
{
    if (command != CmdNone)
        Choose(command);
}

// Every key ends here: the frame below must not act on keys while its menu is open.
void CTouchMenu::keyPressEvent(QKeyEvent* event)
{
    switch (VirtualKeyOf(*event)) {
    case kKeyEscape:
        Choose(CmdNone);
        break;
    case kKeyUp:
        SelectByKey(-1);
        break;
    case kKeyDown:
        SelectByKey(1);
        break;
    case kKeyReturn:
        if (m_selected >= 0 && !event->isAutoRepeat())
            Choose(m_rows[size_t(m_selected)].Command);
        break;
    default:
        break;
    }
    event->accept();
}

void CTouchMenu::keyReleaseEvent(QKeyEvent* event)
{
    switch (VirtualKeyOf(*event)) {
    case kKeyF1:
        PressKey(m_keys.FirstCommand());
        break;
    case kKeyF2:
        PressKey(m_keys.LastCommand());
        break;
    default:
        break;
    }
    event->accept();
}
