#include "forms/field_form.h"
#include "drawing/paint.h"
#include "drawing/screen_metrics.h"
#include "forms/field_controls.h"
#include "settings/system_colors.h"
#include "touch/device_pixels.h"
#include "util/string_store.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDateEdit>
#include <QGuiApplication>
#include <QInputMethod>
#include <QLineEdit>
#include <QPainter>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTimeEdit>
#include <algorithm>

namespace
{
constexpr int kScrollMargin = 8; // design pixels
} // namespace

CFieldForm::CFieldForm(const QString& title, std::span<const FieldRowDesc> table)
    : CFormDialog(title), m_table(table)
{
}

CFieldForm::~CFieldForm() = default;

// ---- rows

void CFieldForm::BuildRows()
{
    m_built = true;
    m_controls = std::make_unique<CFieldControls>(this);
    for (QWidget* const control : m_controls->InTabOrder())
        control->installEventFilter(this);
    connect(m_controls->List, &QComboBox::activated, this, [this](int) { ChoiceMade(); });
    connect(m_controls->Button, &QPushButton::clicked, this, [this] {
        if (HasRow() && m_rows[size_t(m_selected)].Type == kRowLink)
            Activate(m_selected);
        else
            OpenPicker(false);
    });
    connect(m_controls->Box, &QCheckBox::clicked, this, [this](bool) {
        CommitRow();
        RelayoutRows();
    });
    connect(QGuiApplication::inputMethod(), &QInputMethod::keyboardRectangleChanged, this,
            [this] { OnLayout(Layout().Client); });
    m_rows = MakeFieldRows(m_table.data(), m_table.size());
    m_placing = true; // nothing is shown before all rows have their values
    ReloadAllRows();
    InitRows();
    m_placing = false;
    m_selected = NextRow(-1, 1);
}

void CFieldForm::LoadRow(CFieldRow& row, bool fillChoices)
{
    row.Label = GetString(int(row.Id & ~kHeaderBit));
    if (row.Type == kRowHeader || row.Type == kRowCheck)
        row.Value = row.Label;
    if (row.Type == kRowChoice) {
        if (fillChoices) {
            row.Choices.clear();
            FillChoices(row.Id, row.Choices);
        }
        ExchangeChoice(row.Id, row.Index, false);
        row.Value = row.Choices.value(row.Index);
    } else if (row.Type == kRowText) {
        ExchangeText(row.Id, row.Value, false);
    } else if (row.Type == kRowColor) {
        ExchangeColor(row.Id, row.Icon, row.Color, false);
        row.Value.clear();
    } else if (row.HasDate()) {
        ExchangeDate(row.Id, row.Date, false);
        row.Value = FieldDateValue(row);
    } else if (row.Type == kRowLink) {
        row.Value.clear();
        GetLinkText(row.Id, row.Value);
    }
    if (row.HasFlag(kRowInclude))
        ExchangeInclude(row.Id, row.Included, false);
}

int CFieldForm::IndexOf(quint32 id) const
{
    const auto row = std::find_if(m_rows.begin(), m_rows.end(), [id](const CFieldRow& r) { return r.Id == id; });
    return row == m_rows.end() ? -1 : int(row - m_rows.begin());
}

void CFieldForm::ReloadAllRows()
{
    // By index: an exchange may reload or retype other rows.
    for (size_t n = 0; n < m_rows.size(); ++n)
        LoadRow(m_rows[n], true);
    m_touch.Redraw(true);
    PlaceControls(true);
}

void CFieldForm::ReloadRow(quint32 id, bool fillChoices)
{
    const int index = IndexOf(id);
    if (index < 0)
        return;
    LoadRow(m_rows[size_t(index)], fillChoices);
    m_touch.Redraw(true);
    if (index == m_selected && !m_committing)
        PlaceControls(true);
}

void CFieldForm::SetRowType(quint32 id, FieldRowType type)
{
    const int index = IndexOf(id);
    if (index < 0 || m_rows[size_t(index)].Type == type)
        return;
    m_rows[size_t(index)].Type = type;
    ReloadRow(id);
}

void CFieldForm::SetRowVisible(quint32 id, bool visible, bool relayoutNow)
{
    bool changed = false;
    for (CFieldRow& row : m_rows) {
        if (row.Id == id || row.Id == (id | kHeaderBit)) {
            changed |= row.Hidden == visible;
            row.Hidden = !visible;
        }
    }
    if (changed && relayoutNow)
        CFieldForm::RelayoutRows();
}

void CFieldForm::RemoveRow(quint32 id)
{
    const quint32 selected = HasRow() ? m_rows[size_t(m_selected)].Id : 0;
    std::erase_if(m_rows, [id](const CFieldRow& row) { return row.Id == id || row.Id == (id | kHeaderBit); });
    m_selected = IndexOf(selected);
    if (m_selected < 0 && !m_placing)
        m_selected = NextRow(-1, 1);
    if (!m_placing)
        CFieldForm::RelayoutRows();
}

void CFieldForm::RelayoutRows()
{
    if (m_placing)
        return;
    if (HasRow() && !m_rows[size_t(m_selected)].CanSelect())
        m_selected = NextRow(m_selected, -1);
    LayoutRows(Layout().Client.width());
    ApplyLayout();
    PlaceControls(!m_committing);
}

// ---- layout

void CFieldForm::LayoutRows(int width)
{
    int y = 0;
    for (CFieldRow& row : m_rows) {
        row.Rect = row.Hidden ? QRect() : QRect(0, y, width, FieldRowStep() - 1);
        row.DigitBox = row.HasFlag(kRowDigits) && !row.Hidden ? FieldDigitsOf(row, row.Rect).Box : QRect();
        y += row.Hidden ? 0 : FieldRowStep();
    }
    m_contentHeight = y;
}

int CFieldForm::ContentHeight(int width)
{
    if (!m_built)
        BuildRows();
    LayoutRows(width);
    return m_contentHeight;
}

void CFieldForm::OnLayout(const QRect& client)
{
    if (client.isEmpty() || !m_built)
        return;
    const QRect area = AboveKeyboard(client, FieldRowStep());
    LayoutRows(client.width());
    if (m_touch.Width() == 0)
        m_touch.Attach(0, this, this, area.x(), area.y(), area.width(), area.height());
    else
        m_touch.SetArea(area);
    m_touch.Redraw(true);
    ShowSelected();
    PlaceControls(false);
}

QRect CFieldForm::RowRect(quint32 id) const
{
    const int index = IndexOf(id);
    if (index < 0 || m_rows[size_t(index)].Hidden)
        return {};
    const QRect area = m_touch.Area();
    return m_rows[size_t(index)].Rect.translated(area.x(), area.y() + m_touch.Scroll());
}

int CFieldForm::RowAt(int y) const
{
    const auto row = std::find_if(m_rows.begin(), m_rows.end(), [y](const CFieldRow& r) {
        return !r.Hidden && y >= r.Rect.y() && y <= r.Rect.y() + r.Rect.height();
    });
    return row == m_rows.end() ? -1 : int(row - m_rows.begin());
}

// Also its header, when it has one and there is room.
void CFieldForm::ShowSelected()
{
    if (!HasRow())
        return;
    QRect wanted = m_rows[size_t(m_selected)].Rect;
    const int above = m_selected - 1;
    if (above >= 0 && m_rows[size_t(above)].Type == kRowHeader && !m_rows[size_t(above)].Hidden)
        wanted.setTop(m_rows[size_t(above)].Rect.y());
    const int margin = SY(kScrollMargin);
    const QRect spaced(wanted.x(), wanted.y() - margin, wanted.width(), wanted.height() + 2 * margin);
    const bool fits = spaced.height() <= m_touch.Height();
    const QRect shown = fits ? spaced : m_rows[size_t(m_selected)].Rect;
    // Never beyond the content's ends.
    m_touch.EnsureVisible(shown.intersected(QRect(0, 0, shown.width(), m_contentHeight)));
    m_touch.SetScroll(0, m_touch.Scroll() / CurrentFactor() * CurrentFactor());
}

// ---- paint

int CFieldForm::RenderContent(quint32, QPainter& dc, quint32, int scroll, int width, int height)
{
    FillSolid(dc, {0, 0, width, height}, SystemColor::Window);
    for (size_t n = 0; n < m_rows.size(); ++n) {
        const CFieldRow& row = m_rows[n];
        const QRect rect = row.Rect.translated(0, scroll);
        if (row.Hidden || rect.y() + rect.height() < 0 || rect.y() >= height)
            continue;
        PaintFieldRow(dc, row, rect, int(n) == m_selected);
        PaintFieldLine(dc, rect);
    }
    PlaceControls(false); // they go with the row while the content moves
    return m_contentHeight;
}

void CFieldForm::PaintContent(QPainter& dc, const QRect& client)
{
    m_touch.PaintTo(dc, m_touch.Area().x(), m_touch.Area().y());
    (void)client;
}

// ---- live controls

void CFieldForm::PlaceControls(bool valuesToo)
{
    if (!m_built || m_placing || m_touch.Width() == 0)
        return;
    m_placing = true;
    if (!HasRow()) {
        m_controls->HideAll();
    } else {
        const CFieldRow& row = m_rows[size_t(m_selected)];
        if (valuesToo || m_valuesOf != row.Id)
            m_controls->SetValues(row);
        m_valuesOf = row.Id;
        const QRect rect = RowRect(row.Id);
        QWidget* const had = focusWidget();
        QWidget* const control =
            m_touch.Area().intersects(rect) ? m_controls->Place(row, rect, CurrentFactor()) : nullptr;
        if (!control)
            m_controls->HideAll();
        // A second control of the row keeps the keyboard while the row only moves.
        const bool keeps = !valuesToo && had && had != this && had->isVisible();
        (control ? keeps ? had : control : this)->setFocus();
        if (!keeps)
            m_controls->SelectFirstSection(control);
    }
    m_placing = false;
    if (!HasRow() || !m_titleFollowsRow)
        return;
    QString title = m_rows[size_t(m_selected)].Label;
    title = title.remove(QStringLiteral("##")).simplified();
    if (GetTitle() != title)
        SetTitle(title);
}

void CFieldForm::TakeFocus()
{
    CFormDialog::TakeFocus();
    PlaceControls(true);
}

bool CFieldForm::CommitRow()
{
    if (!HasRow() || m_committing || !m_controls)
        return false;
    const CFieldRow row = m_rows[size_t(m_selected)]; // an exchange may hide, retype or remove rows
    m_committing = true;
    const bool open = row.Included || !row.HasFlag(kRowInclude);
    if (open && row.Type == kRowText) {
        QString text = m_controls->Text(row);
        ExchangeText(row.Id, text, true);
    } else if (open && row.Type == kRowChoice) {
        int index = m_controls->Index();
        if (index >= 0)
            ExchangeChoice(row.Id, index, true);
    } else if (open && row.HasDate()) {
        DATE date = m_controls->Date(row);
        ExchangeDate(row.Id, date, true);
    }
    if (row.HasFlag(kRowInclude)) {
        bool included = m_controls->Included();
        ExchangeInclude(row.Id, included, true);
    }
    m_committing = false;
    const int index = IndexOf(row.Id);
    if (index >= 0)
        LoadRow(m_rows[size_t(index)], false);
    m_touch.Redraw(true);
    return true;
}

CFieldForm::EditedText CFieldForm::GetEditedText() const
{
    EditedText edited;
    if (HasRow() && m_rows[size_t(m_selected)].Type == kRowText) {
        const CFieldRow& row = m_rows[size_t(m_selected)];
        edited.Text = m_controls->Text(row);
        m_controls->Selection(row, &edited.SelectionStart, &edited.SelectionEnd);
    }
    return edited;
}

void CFieldForm::SetEditedText(const QString& text, int caret)
{
    if (!HasRow() || m_rows[size_t(m_selected)].Type != kRowText)
        return;
    m_controls->SetText(m_rows[size_t(m_selected)], text, caret);
    CommitRow();
}

void CFieldForm::OnDone()
{
    CommitRow();
    if (Save())
        End(kDone);
}

// ---- accessibility

int CFieldForm::ContentPartCount() const
{
    return int(std::count_if(m_rows.begin(), m_rows.end(), [](const CFieldRow& row) { return !row.Hidden; }));
}

int CFieldForm::VisibleRow(int index) const
{
    for (size_t n = 0; n < m_rows.size(); ++n) {
        if (!m_rows[n].Hidden && index-- == 0)
            return int(n);
    }
    return -1;
}

CPaintedPart CFieldForm::ContentPart(int index) const
{
    CPaintedPart part;
    const int at = VisibleRow(index);
    if (at < 0)
        return part;
    const CFieldRow& row = m_rows[size_t(at)];
    part.Name = row.Label.simplified();
    part.Value = row.Type == kRowHeader || row.Type == kRowCheck ? QString() : row.Value;
    part.Role = row.Type == kRowHeader ? QAccessible::Heading
                : row.Type == kRowText ? QAccessible::EditableText
                : row.Type == kRowChoice ? QAccessible::ComboBox
                : row.Type == kRowCheck ? QAccessible::CheckBox
                : row.HasDate() ? QAccessible::SpinBox
                                : QAccessible::Button;
    part.Rect = ToLogical(RowRect(row.Id), CurrentFactor());
    part.Selected = at == m_selected;
    part.Checkable = row.HasFlag(kRowInclude);
    part.Checked = part.Checkable && row.Included;
    part.Pressable = row.CanSelect();
    return part;
}

void CFieldForm::PressContentPart(int index)
{
    const int at = VisibleRow(index);
    if (at < 0)
        return;
    SelectRow(at);
    if (at == m_selected)
        TapRow(at);
}
