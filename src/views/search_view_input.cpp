// The search view's layout and paint, and how fingers, keys and focus move in it.
#include "desktop/keyboard_service.h"
#include "drawing/image_store.h"
#include "drawing/paint.h"
#include "drawing/screen_metrics.h"
#include "drawing/text.h"
#include "forms/form_parts.h"
#include "settings/settings.h"
#include "settings/system_colors.h"
#include "touch/command_ids.h"
#include "touch/device_pixels.h"
#include "touch/virtual_keys.h"
#include "util/string_ids.h"
#include "util/string_store.h"
#include "views/search_view.h"

#include <QFocusEvent>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPainter>
#include <algorithm>

namespace
{
constexpr int kFontText = 100, kFontSubject = 101, kFontSubjectPast = 602, kFontStatus = 102;
constexpr int kFontEdit = 0;
constexpr int kColorGeneral = 4001, kColorSubject = 4002, kColorTime = 4003, kColorSpecial = 4004;
constexpr int kColorBack = 4005, kColorSeparator = 4010, kColorHighlight = 4011;
// Design pixels.
constexpr int kLabelHeight = 16, kFieldHeight = 24, kGap = 2, kMargin = 4;
constexpr int kSelectMargin = 8;
constexpr COLORREF kFieldFrame = Rgb(0x80, 0x80, 0x80);

int RoundedUp(int value, int multiple)
{
    return (value + multiple - 1) / multiple * multiple;
}

// A window that comes to the front or goes, or a menu, is no step of the user's.
bool IsUsersStep(const QEvent& event)
{
    const Qt::FocusReason reason = static_cast<const QFocusEvent&>(event).reason();
    return reason != Qt::ActiveWindowFocusReason && reason != Qt::PopupFocusReason;
}
} // namespace

// ---- layout: pure arithmetic, no surface

int CSearchView::LabelHeight() const
{
    return RoundedUp(std::max(D(kLabelHeight), LineHeight(g_ImageStore.Font(kFontEdit))), m_factor);
}

QRect CSearchView::FieldRect() const
{
    const int height =
        RoundedUp(std::max(D(kFieldHeight), LineHeight(g_ImageStore.Font(kFontEdit)) + D(2 * kGap)), m_factor);
    return {D(kMargin), LabelHeight() + D(kGap), std::max(SurfaceSize().width() - D(2 * kMargin), 0), height};
}

QRect CSearchView::EditRect() const
{
    return FieldRect().adjusted(D(kMargin), D(1), -D(kMargin), -D(1));
}

QRect CSearchView::ListArea() const
{
    const QRect field = FieldRect();
    const int top = field.y() + field.height() + D(2 * kGap) + D(1);
    return {0, top, SurfaceSize().width(), std::max(SurfaceSize().height() - top, 0)};
}

void CSearchView::PlaceEdit()
{
    m_edit->setFont(LogicalFont(g_ImageStore.Font(kFontEdit), m_factor));
    m_edit->setGeometry(ToLogical(EditRect(), m_factor));
}

// ---- paint

void CSearchView::PrepareLook()
{
    const auto color = [](int id) { return g_Settings.ResolveColor(id); };
    m_rowPainter.InitRowPainter({false, false, g_Settings.DailyView.IncludeLeadingRects, kFontText,
                                 kFontSubject, kFontSubjectPast, color(kColorSubject), color(kColorTime),
                                 color(kColorGeneral), color(kColorSpecial), color(kColorHighlight), true});
    CItemRowListLook look;
    look.Back = color(kColorBack);
    look.Selection = color(kColorHighlight);
    look.Separator = color(kColorSeparator);
    look.IncludeLocation = g_Settings.DailyView.IncludeLocation == 1;
    look.TopMargin = D(1);
    m_list.SetLook(look);
}

void CSearchView::PaintEmptyList(QPainter& dc, const QRect& rect)
{
    dc.setFont(g_ImageStore.Font(kFontStatus));
    dc.setPen(ToQColor(g_Settings.ResolveColor(kColorGeneral)));
    DrawText(dc, m_statusText, rect.adjusted(D(kMargin), D(1) + D(4), -D(kMargin), 0),
             kTextWordBreak | kTextNoPrefix);
}

void CSearchView::PaintView(QPainter& dc, QSize size)
{
    const QRect list = ListArea(), field = FieldRect();
    QImage header(size.width(), std::min(list.y(), size.height()), QImage::Format_RGB32);
    if (!header.isNull()) {
        QPainter part(&header);
        FillSolid(part, header.rect(), g_Settings.ResolveColor(kColorBack));
        FillSolid(part, {0, list.y() - D(1), size.width(), D(1)}, g_Settings.ResolveColor(kColorSeparator));
        part.setFont(g_ImageStore.Font(kFontEdit));
        part.setPen(ToQColor(g_Settings.ResolveColor(kColorGeneral)));
        DrawText(part, GetString(StrSearchForLabel), QRect(D(kMargin), D(1), field.width(), LabelHeight()),
                 kTextSingleLine | kTextVCentre | kTextNoPrefix | kTextEndEllipsis);
        FillSolid(part, field, SystemColor::Window);
        for (int inset = 0; inset < D(1); ++inset)
            FrameRect(part, field.adjusted(inset, inset, -inset, -inset), IsEditing() ? kFormInk : kFieldFrame);
        part.setPen(ToQColor(SystemColor::WindowText));
        // In the middle as the control has it, which rounds down.
        DrawText(part, m_edit->text(), EditRect().adjusted(0, 0, 0, 1),
                 kTextSingleLine | kTextVCentre | kTextNoPrefix | kTextEndEllipsis);
        part.end();
        dc.drawImage(0, 0, header);
    }
    CItemRowView::PaintView(dc, size);
}

// ---- selection

void CSearchView::SelectAndShow(CPaintingOrderItem& row)
{
    Select(&row);
    m_touch.EnsureVisible(m_list.RowRect(row).adjusted(0, -D(kSelectMargin), 0, D(kSelectMargin)));
    m_touch.Redraw(true);
}

// ---- input: finger

void CSearchView::OnLButtonDown(QPoint at)
{
    if (at.y() < ListArea().y())
        m_edit->setFocus(); // the label and the frame are the text box's
    else
        CItemRowView::OnLButtonDown(at);
}

bool CSearchView::OnPress(quint32, int x, int y)
{
    CPaintingOrderItem* const row = RowAt(x, y);
    m_pressedBox = row && m_list.HitsCheckBox(*row, {x, y}, CheckBoxMargin());
    if (!row || row == m_selected)
        return false;
    SelectAndShow(*row);
    return true;
}

// The selected row's, wherever the list has gone under the finger meanwhile.
void CSearchView::OnTap(quint32, int, int)
{
    if (m_selected)
        m_host.SendCommand(m_pressedBox ? CmdToggleTask : CmdOpenItem);
}

// ---- input: focus

bool CSearchView::IsEditing() const
{
    return window()->focusWidget() == m_edit;
}

bool CSearchView::focusNextPrevChild(bool)
{
    if (IsEditing())
        setFocus(Qt::TabFocusReason);
    else
        m_edit->setFocus(Qt::TabFocusReason);
    return true;
}

bool CSearchView::eventFilter(QObject* watched, QEvent* event)
{
    switch (watched == m_edit ? event->type() : QEvent::None) {
    case QEvent::FocusIn:
    case QEvent::FocusOut:
        m_backPressed = false;
        update();
        if (IsUsersStep(*event))
            ShowOnScreenKeyboard(event->type() == QEvent::FocusIn);
        break;
    case QEvent::KeyRelease: // a line edit hands none on
        keyReleaseEvent(static_cast<QKeyEvent*>(event));
        return event->isAccepted();
    case QEvent::MouseButtonRelease:
        ShowOnScreenKeyboard(true); // it may have been put away since
        break;
    default:
        break;
    }
    return CItemRowView::eventFilter(watched, event);
}

// ---- input: keys

void CSearchView::EnterList(int direction)
{
    if (Rows().IsEmpty())
        return;
    SelectAndShow(*Rows().GetAt(direction > 0 ? 0 : Rows().GetCount() - 1));
    setFocus();
}

// With nothing in it there is nothing to leave but the view.
void CSearchView::LeaveEdit()
{
    if (m_edit->text().isEmpty())
        m_host.SendCommand(CmdPreviousView);
    else
        setFocus();
}

bool CSearchView::OnEditKey(int key)
{
    if (key == kKeyReturn)
        StartSearch();
    else if (key == kKeyUp || key == kKeyDown)
        EnterList(key == kKeyUp ? -1 : 1);
    return true;
}

bool CSearchView::OnListKey(int key)
{
    const CPaintingOrderList& rows = Rows();
    const bool atEnd = m_selected && m_selected == rows.GetAt(key == kKeyUp ? 0 : rows.GetCount() - 1);
    switch (key) {
    case kKeyReturn:
        m_host.SendCommand(CmdOpenItem);
        return true;
    case kKeyUp:
    case kKeyDown:
        if (atEnd || rows.IsEmpty())
            m_edit->setFocus();
        else
            SelectAndShow(*m_list.Neighbour(key == kKeyUp ? -1 : 1));
        return true;
    case kKeyPageUp:
    case kKeyPageDown:
        m_touch.ScrollBy(key == kKeyPageUp ? m_touch.Height() : -m_touch.Height());
        return true;
    default:
        return false;
    }
}

bool CSearchView::OnKey(int key)
{
    return IsEditing() ? OnEditKey(key) : OnListKey(key);
}

void CSearchView::keyPressEvent(QKeyEvent* event)
{
    const int key = VirtualKeyOf(*event);
    const bool editing = IsEditing();
    if (editing && key == kKeyEscape) {
        m_backPressed = m_backPressed || !event->isAutoRepeat();
        return event->accept();
    }
    const QString text = event->text();
    if (!editing && Rows().IsEmpty() && !text.isEmpty() && text[0].isPrint()) {
        m_edit->setFocus();
        QCoreApplication::sendEvent(m_edit, event);
        return event->accept();
    }
    CItemRowView::keyPressEvent(event);
    if (editing)
        event->accept(); // what the text box left is no key of the frame
}

void CSearchView::keyReleaseEvent(QKeyEvent* event)
{
    if (VirtualKeyOf(*event) != kKeyEscape || !IsEditing())
        return CItemRowView::keyReleaseEvent(event);
    event->accept();
    if (m_backPressed && !event->isAutoRepeat()) {
        m_backPressed = false;
        LeaveEdit();
    }
}
