// How fingers and keys move through a form and its live controls.
#include "desktop/keyboard_service.h"
#include "drawing/screen_metrics.h"
#include "forms/date_picker_dialog.h"
#include "forms/extended_text_entry_dialog.h"
#include "forms/field_controls.h"
#include "forms/field_form.h"
#include "forms/time_picker_dialog.h"
#include "touch/virtual_keys.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDateEdit>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMouseEvent>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTimeEdit>
#include <algorithm>

namespace
{
constexpr int kWheelNotch = 120, kWheelRows = 2;
} // namespace

// ---- selection

int CFieldForm::NextRow(int from, int step) const
{
    const int count = int(m_rows.size());
    for (int n = 1; n <= count; ++n) {
        const int index = ((from + n * step) % count + count) % count;
        if (m_rows[size_t(index)].CanSelect())
            return index;
    }
    return -1;
}

void CFieldForm::SelectRow(int index)
{
    if (index < 0 || index >= int(m_rows.size()) || !m_rows[size_t(index)].CanSelect())
        return;
    const quint32 id = m_rows[size_t(index)].Id;
    if (index != m_selected) {
        CommitRow();
        index = IndexOf(id);
        // The commit may have hidden the row.
        if (index < 0 || !m_rows[size_t(index)].CanSelect())
            return PlaceControls(true);
        return EnterRow(index);
    }
    ShowEntered();
}

// The row before is committed.
void CFieldForm::EnterRow(int index)
{
    m_selected = index;
    PlaceControls(true);
    ShowEntered();
}

void CFieldForm::ShowEntered()
{
    ShowSelected();
    m_touch.Redraw(true);
    ShowOnScreenKeyboard(m_rows[size_t(m_selected)].Type == kRowText);
}

void CFieldForm::MoveSelection(int step)
{
    if (m_rows.empty())
        return;
    const quint32 id = HasRow() ? m_rows[size_t(m_selected)].Id : 0;
    CommitRow();
    const int from = HasRow() ? IndexOf(id) : step > 0 ? -1 : int(m_rows.size());
    if (const int next = NextRow(from, step); next >= 0)
        EnterRow(next);
}

void CFieldForm::FocusControl(QWidget* control, Qt::FocusReason reason)
{
    control->setFocus(reason);
    m_controls->SelectFirstSection(control);
}

// Tab visits the row's controls one by one, then the next row.
void CFieldForm::TabFrom(QWidget* control, int step)
{
    std::vector<QWidget*> shown;
    for (QWidget* const candidate : m_controls->InTabOrder()) {
        if (candidate->isVisible())
            shown.push_back(candidate);
    }
    const auto at = std::find(shown.begin(), shown.end(), control);
    const auto index = at == shown.end() ? -1 : at - shown.begin() + step;
    if (index >= 0 && index < std::ssize(shown))
        FocusControl(shown[size_t(index)], Qt::TabFocusReason);
    else
        MoveSelection(step);
}

void CFieldForm::Activate(int index)
{
    const quint32 id = m_rows[size_t(index)].Id;
    CommitRow();
    OnLinkTapped(id);
    ReloadRow(id);
}

void CFieldForm::ToggleInclude(int index)
{
    if (index != m_selected)
        return;
    m_controls->Box->setChecked(!m_controls->Box->isChecked());
    CommitRow();
    RelayoutRows();
}

void CFieldForm::ChoiceMade()
{
    CommitRow();
    PlaceControls(true); // the index as the form took it
}

void CFieldForm::StepChoice(int step)
{
    const int count = m_controls->List->count();
    if (count == 0)
        return;
    const int index = std::max(m_controls->List->currentIndex(), step > 0 ? -1 : 0);
    m_controls->List->setCurrentIndex((index + step + count) % count);
    ChoiceMade();
}

// ---- pickers

bool CFieldForm::PickDate(DATE& date)
{
    CDatePickerDialog picker(date == NO_DATE ? GetToday() : date);
    if (picker.Run(this) != kDone)
        return false;
    date = picker.GetDate();
    return true;
}

bool CFieldForm::PickTime(DATE& time)
{
    CTimePickerDialog picker(time);
    if (picker.Run(this) != kDone)
        return false;
    time = picker.GetTime();
    return true;
}

void CFieldForm::OpenPicker(bool date)
{
    if (!HasRow() || !m_rows[size_t(m_selected)].HasDate())
        return;
    const quint32 id = m_rows[size_t(m_selected)].Id;
    DATE value = m_controls->Date(m_rows[size_t(m_selected)]);
    const bool picked = date ? PickDate(value) : PickTime(value);
    // A notice may have come while the picker ran.
    if (!picked || !HasRow() || m_rows[size_t(m_selected)].Id != id)
        return;
    m_controls->PutDate(value, date);
    CommitRow();
    PlaceControls(true);
}

// ---- text aids

void CFieldForm::OpenExtendedText(int mode)
{
    if (!HasRow() || m_rows[size_t(m_selected)].Type != kRowText)
        return;
    const quint32 id = m_rows[size_t(m_selected)].Id;
    const EditedText edited = GetEditedText();
    CExtendedTextEntryDialog dialog(edited.Text, edited.SelectionStart, edited.SelectionEnd,
                                    CExtendedTextEntryDialog::Mode(mode));
    if (dialog.Run(this) == kDone && HasRow() && m_rows[size_t(m_selected)].Id == id)
        SetEditedText(dialog.GetText(), dialog.GetCaret());
}

// ---- finger

bool CFieldForm::OnPress(quint32, int, int y)
{
    const int index = RowAt(y);
    if (index < 0 || !m_rows[size_t(index)].CanSelect())
        return false;
    m_wasSelected = index == m_selected;
    SelectRow(index);
    return true;
}

void CFieldForm::OnTap(quint32, int x, int y)
{
    const int index = RowAt(y);
    if (index < 0 || index != m_selected)
        return;
    const CFieldRow& row = m_rows[size_t(index)];
    const QRect box = FieldIncludeBox(row, row.Rect.translated(m_touch.Area().x(), 0));
    if (row.HasFlag(kRowInclude) && x <= box.x() + box.width())
        ToggleInclude(index);
    else if (row.Type == kRowText && m_wasSelected && row.Icon >= 1 && x < FieldValueLeft())
        Activate(index); // the text itself lies under the edit box: its picture opens the aids
    else
        TapRow(index);
}

void CFieldForm::TapRow(int index)
{
    const quint32 type = m_rows[size_t(index)].Type;
    if (type == kRowCheck)
        ToggleInclude(index);
    else if (type == kRowLink || type == kRowColor)
        Activate(index);
}

void CFieldForm::OnLButtonDown(QPoint at)
{
    m_touch.OnLButtonDown(at.x(), at.y());
}

void CFieldForm::OnMouseMove(QPoint at)
{
    m_touch.OnMouseMove(at.x(), at.y());
}

void CFieldForm::OnLButtonUp(QPoint at)
{
    m_touch.OnLButtonUp(at.x(), at.y());
}

void CFieldForm::OnWheel(int angle)
{
    m_touch.ScrollBy(angle * kWheelRows * FieldRowStep() / kWheelNotch);
}

// ---- keys

void CFieldForm::OnKey(int key)
{
    if (!HasRow())
        return;
    const CFieldRow& row = m_rows[size_t(m_selected)];
    if (key == kKeyUp || key == kKeyDown)
        MoveSelection(key == kKeyUp ? -1 : 1);
    else if (key == kKeyReturn && (row.Type == kRowLink || row.Type == kRowColor))
        Activate(m_selected);
}

bool CFieldForm::OnDateKey(QWidget* control, int key)
{
    const bool isDay = control == m_controls->Day;
    const bool both = m_rows[size_t(m_selected)].Type == kRowDateTime;
    if (key == kKeyReturn) {
        OpenPicker(isDay);
        return true;
    }
    if (key != kKeyLeft && key != kKeyRight)
        return false;
    if (!isDay && !both)
        return false; // from hours to minutes and back
    if (both && isDay == (key == kKeyRight))
        FocusControl(isDay ? static_cast<QWidget*>(m_controls->Time) : m_controls->Day, Qt::OtherFocusReason);
    else
        MoveSelection(key == kKeyLeft ? -1 : 1);
    return true;
}

bool CFieldForm::OnControlKey(QWidget* control, int key)
{
    if (!HasRow())
        return false;
    const CFieldRow& row = m_rows[size_t(m_selected)];
    if (key == kKeyUp || key == kKeyDown) {
        MoveSelection(key == kKeyUp ? -1 : 1);
        return true;
    }
    if (control == m_controls->Line || control == m_controls->Lines) {
        if (key == kKeyReturn)
            Activate(m_selected);
        return key == kKeyReturn || (key == kKeyLeft && m_controls->AtTextStart(row)) ||
               (key == kKeyRight && m_controls->AtTextEnd(row));
    }
    if (control == m_controls->List && (key == kKeyLeft || key == kKeyRight)) {
        StepChoice(key == kKeyLeft ? -1 : 1);
        return true;
    }
    if (control == m_controls->Day || control == m_controls->Time)
        return OnDateKey(control, key);
    if (key != kKeyReturn)
        return false;
    if (control == m_controls->Box)
        ToggleInclude(m_selected);
    else if (control == m_controls->Button)
        m_controls->Button->click();
    return control == m_controls->Box || control == m_controls->Button;
}

bool CFieldForm::eventFilter(QObject* watched, QEvent* event)
{
    QWidget* const control =
        m_controls && watched->parent() == this ? qobject_cast<QWidget*>(watched) : nullptr;
    if (!control)
        return CFormDialog::eventFilter(watched, event);
    if (TakeDialogKey(event))
        return true;
    switch (event->type()) {
    case QEvent::KeyPress: {
        QKeyEvent* const press = static_cast<QKeyEvent*>(event);
        const int key = VirtualKeyOf(*press);
        // Enter that opened the form or left a picker goes on repeating.
        if (press->isAutoRepeat() && key == kKeyReturn)
            return true;
        if (press->key() == Qt::Key_Tab || press->key() == Qt::Key_Backtab) {
            TabFrom(control, press->key() == Qt::Key_Tab ? 1 : -1);
            return true;
        }
        const bool plain = (press->modifiers() & ~Qt::KeypadModifier) == Qt::NoModifier;
        return plain && OnControlKey(control, key);
    }
    case QEvent::Wheel:
        // It scrolls the form; a value never changes by it unasked.
        OnWheel(static_cast<QWheelEvent*>(event)->angleDelta().y());
        return true;
    case QEvent::MouseButtonRelease:
        if ((control == m_controls->Day || control == m_controls->Time) &&
            control->rect().contains(static_cast<QMouseEvent*>(event)->position().toPoint())) {
            OpenPicker(control == m_controls->Day);
            return true;
        }
        return false;
    default:
        return false;
    }
}
