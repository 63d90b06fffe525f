#include "forms/contact_picker.h"
#include "drawing/image_store.h"
#include "drawing/paint.h"
#include "drawing/screen_metrics.h"
#include "drawing/text.h"
#include "forms/field_row.h"
#include "forms/form_parts.h"
#include "forms/menu_bars.h"
#include "forms/number_list_dialog.h"
#include "pim/pim_store.h"
#include "settings/color_scheme.h"
#include "touch/virtual_keys.h"
#include "util/string_ids.h"
#include "util/string_store.h"

#include <QInputMethodEvent>
#include <QKeyEvent>
#include <QPainter>
#include <algorithm>

namespace
{
constexpr int kMargin = 10, kGap = 8, kBoxSize = 16, kHeadHeight = 24; // design pixels
constexpr int kFontText = 0;
constexpr COLORREF kHeadGround = Rgb(0xEE, 0xF1, 0xF4);
constexpr COLORREF kMark = Rgb(0xFF, 0xE0, 0x8A);

bool IsSame(const CAttendee& attendee, const QString& name, const QString& address)
{
    if (!attendee.Address.isEmpty() && !address.isEmpty())
        return attendee.Address.compare(address, Qt::CaseInsensitive) == 0;
    return attendee.Name.compare(name, Qt::CaseInsensitive) == 0;
}

bool IsAllDigits(const QString& text)
{
    return std::all_of(text.begin(), text.end(), [](QChar c) { return c >= u'0' && c <= u'9'; });
}

QString KeypadKeyOf(CContactInfo contact)
{
    contact.BuildSearchKeys(true);
    return contact.SearchKey;
}
} // namespace

CContactPicker::CContactPicker() : CRowListDialog(GetString(StrInsertContact)), m_several(false)
{
    setAttribute(Qt::WA_InputMethodEnabled);
    ReadContacts();
    FillList();
}

CContactPicker::CContactPicker(std::vector<CAttendee> attendees)
    : CRowListDialog(GetString(StrInsertContact)), m_several(true), m_attendees(std::move(attendees))
{
    setAttribute(Qt::WA_InputMethodEnabled);
    ReadContacts();
    AddStrangers();
    FillList();
}

// ---- lines

void CContactPicker::ReadContacts()
{
    for (const CContactInfo& contact : PimStore().Contacts()) {
        CLine line{contact.ItemId,         contact.Name,         contact.Detail,
                   contact.Name.toLower(), KeypadKeyOf(contact), false};
        line.Checked = std::any_of(m_attendees.begin(), m_attendees.end(), [&](const CAttendee& attendee) {
            return IsSame(attendee, line.Name, line.Address);
        });
        m_lines.push_back(std::move(line));
    }
}

// Who attends without being a contact stands first, so that no one is lost.
void CContactPicker::AddStrangers()
{
    std::vector<CLine> strangers;
    for (const CAttendee& attendee : m_attendees) {
        const bool known = std::any_of(m_lines.begin(), m_lines.end(), [&](const CLine& line) {
            return IsSame(attendee, line.Name, line.Address);
        });
        if (known)
            continue;
        const QString name = attendee.Name.isEmpty() ? attendee.Address : attendee.Name;
        CContactInfo named;
        named.Name = name;
        strangers.push_back({0, name, attendee.Address, name.toLower(), KeypadKeyOf(named), true});
    }
    m_lines.insert(m_lines.begin(), strangers.begin(), strangers.end());
}

CContactPicker::CMatch CContactPicker::MatchOf(int line) const
{
    const CLine& contact = m_lines[size_t(line)];
    int start = int(contact.Key.indexOf(m_search));
    if (start < 0 && m_keypad && IsAllDigits(m_search))
        start = int(contact.KeypadKey.indexOf(m_search));
    return {line, start, int(m_search.size())};
}

void CContactPicker::FillList()
{
    m_shown.clear();
    for (int n = 0; n < int(m_lines.size()); ++n) {
        const CMatch match = MatchOf(n);
        if (match.Start >= 0)
            m_shown.push_back(match);
    }
    RowsChanged();
}

int CContactPicker::RowCount() const
{
    return std::max(int(m_shown.size()), 1);
}

QString CContactPicker::LineText(int index) const
{
    return m_shown.empty() ? GetString(StrNoMatches) + m_search
                           : m_lines[size_t(m_shown[size_t(index)].Line)].Name;
}

int CContactPicker::GetMenuBarId() const
{
    return m_several ? kMenuBarForm : kMenuBarSelect;
}

// ---- search text

void CContactPicker::Type(const QString& text)
{
    QString typed;
    for (const QChar c : text.toLower()) {
        if (c.isLetterOrNumber() || c.isMark() || c.isSurrogate())
            typed += c;
    }
    if (typed.isEmpty())
        return;
    m_search += typed;
    FillList();
    Select(0);
}

void CContactPicker::keyPressEvent(QKeyEvent* event)
{
    const QString text = event->text();
    const bool plain = (event->modifiers() & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier)) == 0;
    if (plain && !text.isEmpty() && text.front().isLetterOrNumber()) {
        event->accept();
        Type(text);
        return;
    }
    CRowListDialog::keyPressEvent(event);
}

void CContactPicker::inputMethodEvent(QInputMethodEvent* event)
{
    Type(event->commitString());
    event->accept();
}

QVariant CContactPicker::inputMethodQuery(Qt::InputMethodQuery query) const
{
    if (query == Qt::ImEnabled)
        return true;
    if (query == Qt::ImHints)
        return int(Qt::ImhNoPredictiveText | Qt::ImhNoAutoUppercase);
    return CRowListDialog::inputMethodQuery(query);
}

// ---- paint

int CContactPicker::HeadHeight(int)
{
    return D(kHeadHeight);
}

void CContactPicker::PaintHead(QPainter& dc, const QRect& rect)
{
    FillSolid(dc, rect, kHeadGround);
    PaintRowText(dc, GetString(StrContacts), rect.adjusted(D(kMargin), 0, -D(kMargin), 0), false);
    if (!m_search.isEmpty() && !m_shown.empty())
        PaintRowText(
            dc, m_search,
            QRect(rect.x() + rect.width() / 2, rect.y(), rect.width() / 2 - D(kMargin), rect.height()), false,
            true);
}

void CContactPicker::PaintRow(QPainter& dc, int index, const QRect& rect, bool selected)
{
    QRect text = rect.adjusted(D(kMargin), 0, -D(kMargin), 0);
    if (m_shown.empty())
        return PaintRowText(dc, LineText(index), text, selected);
    const CMatch& match = m_shown[size_t(index)];
    const CLine& line = m_lines[size_t(match.Line)];
    if (m_several) {
        const int top = rect.y() + (rect.height() - D(kBoxSize)) / 2;
        PaintCheckBox(dc, {text.x(), top, D(kBoxSize), D(kBoxSize)}, line.Checked, true);
        text.setLeft(text.x() + D(kBoxSize) + D(kGap));
    }
    // Lower case may be longer than the name; then there is no place to mark.
    const bool marks = match.Length > 0 && line.Key.size() == line.Name.size();
    const QFont& font = g_ImageStore.Font(kFontText);
    const int left = marks ? TextWidth(font, line.Name.left(match.Start)) : 0;
    const int width = marks ? TextWidth(font, line.Name.left(match.Start + match.Length)) - left : 0;
    const int room = text.width() - left;
    if (marks && room > 0) {
        const int height = LineHeight(font);
        FillSolid(dc,
                  {text.x() + left, text.y() + (text.height() - height) / 2, std::min(width, room), height},
                  kMark);
    }
    PaintRowText(dc, line.Name, text, selected);
    if (marks && room > 0 && selected) { // dark on the mark
        dc.save();
        dc.setClipRect(QRect(text.x() + left, text.y(), std::min(width, room), text.height()));
        PaintRowText(dc, line.Name, text, false);
        dc.restore();
    }
}

CPaintedPart CContactPicker::RowPart(int index) const
{
    CPaintedPart part;
    part.Name = LineText(index);
    part.Pressable = !m_shown.empty();
    if (m_several && !m_shown.empty()) {
        part.Role = QAccessible::CheckBox;
        part.Checkable = true;
        part.Checked = m_lines[size_t(m_shown[size_t(index)].Line)].Checked;
    }
    return part;
}

// ---- choice

void CContactPicker::OnRowTapped(int index, int, bool)
{
    Act(index);
}

void CContactPicker::Act(int index)
{
    if (m_shown.empty())
        return;
    CLine& line = m_lines[size_t(m_shown[size_t(index)].Line)];
    if (m_several) {
        line.Checked = !line.Checked;
        return RowsChanged();
    }
    const QString name = line.Name;
    std::vector<CNumberListDialog::CLine> numbers = NumbersOfContact(line.ItemId);
    numbers.insert(numbers.begin(), {GetString(StrWithoutNumber), QString()});
    CNumberListDialog dialog(GetTitle(), std::move(numbers));
    if (dialog.Run(this) != kDone)
        return;
    m_text = name;
    if (!dialog.GetNumber().isEmpty())
        m_text += GetString(StrContactNumberSeparator) + dialog.GetNumber();
    End(kDone);
}

void CContactPicker::OnDone()
{
    if (!m_several)
        return Act(GetSelected());
    std::vector<CAttendee> attendees;
    for (const CLine& line : m_lines) {
        if (!line.Checked)
            continue;
        // Who was there stays as written there.
        const auto known =
            std::find_if(m_attendees.begin(), m_attendees.end(), [&](const CAttendee& attendee) {
                return IsSame(attendee, line.Name, line.Address);
            });
        attendees.push_back(known != m_attendees.end() ? *known : CAttendee{line.Name, line.Address});
    }
    m_attendees = std::move(attendees);
    End(kDone);
}
