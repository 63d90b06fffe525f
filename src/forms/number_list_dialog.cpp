#include "forms/number_list_dialog.h"
#include "drawing/image_store.h"
#include "drawing/paint.h"
#include "drawing/screen_metrics.h"
#include "drawing/text.h"
#include "forms/form_parts.h"
#include "forms/menu_bars.h"
#include "pim/pim_store.h"
#include "util/string_ids.h"
#include "util/string_store.h"

#include <QPainter>

namespace
{
constexpr int kMargin = 10, kHeadHeight = 24; // design pixels
constexpr int kFontHead = 1;
constexpr COLORREF kHeadGround = Rgb(0xEE, 0xF1, 0xF4);

// In the order of their labels.
constexpr OlPhone kPhones[kContactPhones] = {OlPhone::Work,    OlPhone::Work2,  OlPhone::Home,
                                             OlPhone::Home2,   OlPhone::Mobile, OlPhone::WorkFax,
                                             OlPhone::HomeFax, OlPhone::Car,    OlPhone::Pager};
} // namespace

CNumberListDialog::CNumberListDialog(const QString& title, std::vector<CLine> lines)
    : CRowListDialog(title), m_lines(std::move(lines))
{
}

int CNumberListDialog::GetMenuBarId() const
{
    return kMenuBarSelect;
}

QString CNumberListDialog::GetNumber() const
{
    return m_lines.empty() ? QString() : m_lines[size_t(GetSelected())].Number;
}

void CNumberListDialog::OnDone()
{
    if (!m_lines.empty())
        End(kDone);
}

// ---- paint

int CNumberListDialog::HeadHeight(int)
{
    return D(kHeadHeight);
}

void CNumberListDialog::PaintColumns(QPainter& dc, const CLine& line, const QRect& rect, bool selected) const
{
    const QRect inner = rect.adjusted(D(kMargin), 0, -D(kMargin), 0);
    const int type = inner.width() * 2 / 5; // the number is the longer one
    PaintRowText(dc, line.Type,
                 {inner.x(), inner.y(), line.Number.isEmpty() ? inner.width() : type - D(4), inner.height()},
                 selected);
    PaintRowText(dc, line.Number, {inner.x() + type, inner.y(), inner.width() - type, inner.height()},
                 selected);
}

void CNumberListDialog::PaintHead(QPainter& dc, const QRect& rect)
{
    FillSolid(dc, rect, kHeadGround);
    PaintColumns(dc, {GetString(StrPhoneType), GetString(StrPhoneNumber)}, rect, false);
}

void CNumberListDialog::PaintRow(QPainter& dc, int index, const QRect& rect, bool selected)
{
    PaintColumns(dc, m_lines[size_t(index)], rect, selected);
}

CPaintedPart CNumberListDialog::RowPart(int index) const
{
    CPaintedPart part;
    part.Name = m_lines[size_t(index)].Type;
    part.Value = m_lines[size_t(index)].Number;
    return part;
}

// ---- numbers

std::vector<CNumberListDialog::CLine> NumbersOfContact(quint32 itemId)
{
    std::vector<CNumberListDialog::CLine> lines;
    const CPoomSession session(PimStore().Volume());
    std::unique_ptr<IContact> contact;
    if (!session.App() || !session.App()->GetContactFromOid(itemId, contact).IsOk() || !contact)
        return lines;
    for (int n = 0; n < kContactPhones; ++n) {
        const QString number = contact->get_Telephone(kPhones[n]).trimmed();
        if (!number.isEmpty())
            lines.push_back({GetString(StrPhoneOffice + n), number});
    }
    return lines;
}

QString ChooseNumber(QWidget* owner, quint32 contactItemId)
{
    CNumberListDialog dialog(GetString(StrDialContact), NumbersOfContact(contactItemId));
    return dialog.Run(owner) == CFormDialog::kDone ? dialog.GetNumber() : QString();
}
