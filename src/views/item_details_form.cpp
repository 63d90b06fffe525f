// The details page: its item, keys and links. Its parts are put together in item_details_layout.cpp.
#include "views/item_details_form.h"
#include "desktop/shell_actions.h"
#include "drawing/image_store.h"
#include "drawing/paint.h"
#include "drawing/screen_metrics.h"
#include "drawing/text.h"
#include "editors/edit_item.h"
#include "forms/menu_bars.h"
#include "pim/pim_store.h"
#include "settings/system_colors.h"
#include "touch/command_ids.h"
#include "touch/device_pixels.h"
#include "touch/virtual_keys.h"
#include "util/string_ids.h"
#include "util/string_store.h"

#include <QPainter>
#include <algorithm>

namespace
{
constexpr int kWheelNotch = 120, kWheelLines = 3;
} // namespace

CItemDetailsForm::CItemDetailsForm(const CAppointment& item, Editor editor)
    : CFormDialog(GetString(StrAppointment)), m_editor(std::move(editor))
{
    auto copy = std::make_unique<CAppointment>(item.Kind, CAppointment::Blank{});
    item.CopyTo(*copy);
    m_item = std::move(copy);
    ReadTexts();
}

CItemDetailsForm::CItemDetailsForm(const CTask& item, Editor editor)
    : CFormDialog(GetString(StrTask)), m_editor(std::move(editor))
{
    auto copy = std::make_unique<CCalendarTask>();
    item.CopyTo(*copy);
    m_item = std::move(copy);
    ReadTexts();
}

CItemDetailsForm::~CItemDetailsForm() = default;

void CItemDetailsForm::ReadTexts()
{
    auto* appointment = dynamic_cast<CAppointment*>(m_item.get());
    if (appointment && appointment->ReminderSet)
        PimStore().ReadReminderMinutes(*appointment);
    PimStore().GetItemTexts(m_item->ItemId, m_item->Start, appointment ? appointment->OriginalDay : 0,
                            m_item->GetKind(), m_note, m_attendees);
    if (m_item->IsRecurring())
        m_recurrence = PimStore().GetRecurrenceText(m_item->ItemId);
}

int CItemDetailsForm::GetMenuBarId() const
{
    return m_editor ? kMenuBarDetails : kMenuBarClose;
}

// ---- layout and paint

int CItemDetailsForm::ContentHeight(int width)
{
    LayOut(width);
    return m_y;
}

void CItemDetailsForm::OnLayout(const QRect& client)
{
    if (client.isEmpty())
        return;
    LayOut(client.width());
    if (m_scroller.Width() == 0)
        m_scroller.Attach(0, this, this, client.x(), client.y(), client.width(), client.height());
    else
        m_scroller.SetArea(client);
    m_scroller.Redraw(false);
}

int CItemDetailsForm::RenderContent(quint32, QPainter& dc, quint32, int scroll, int width, int height)
{
    FillSolid(dc, {0, 0, width, height}, SystemColor::Window);
    LayOut(width);
    const CTextLink* focused = m_currentLink >= 0 ? m_links[size_t(m_currentLink)].Link : nullptr;
    for (const auto& line : m_lines) {
        const QRect place = line->Rect.translated(0, scroll);
        if (place.bottom() < 0 || place.top() >= height)
            continue;
        switch (line->Kind) {
        case CLine::kSeparator:
            FillSolid(dc, place, line->Color);
            break;
        case CLine::kPicture:
            DrawImage(g_ImageStore.Image(line->Image), dc, place.x(), place.y());
            break;
        case CLine::kText:
            line->Text.Paint(dc, place.topLeft(), {0, 0, width, height}, line->Color, focused);
            break;
        }
    }
    return m_y;
}

void CItemDetailsForm::PaintContent(QPainter& dc, const QRect& client)
{
    m_scroller.PaintTo(dc, client.x(), client.y());
}

// ---- links

void CItemDetailsForm::CollectLinks()
{
    const bool hadLinks = m_currentLink >= 0;
    m_links.clear();
    m_parts.clear();
    for (const auto& line : m_lines) {
        if (line->Kind != CLine::kText)
            continue;
        m_parts.push_back({line.get(), -1});
        for (const CTextLink& link : line->Text.Links()) {
            CLinkPlace place{&link, line->Text.RectsOf(link)};
            for (QRect& rect : place.Rects)
                rect.translate(line->Rect.topLeft());
            m_parts.push_back({line.get(), int(m_links.size())});
            m_links.push_back(std::move(place));
        }
    }
    m_currentLink = m_links.empty() ? -1 : hadLinks ? std::min(m_currentLink, int(m_links.size()) - 1) : 0;
}

int CItemDetailsForm::LinkTop(int link) const
{
    const std::vector<QRect>& rects = m_links[size_t(link)].Rects;
    return m_scroller.Scroll() + (rects.empty() ? 0 : rects.front().top());
}

int CItemDetailsForm::LinkBottom(int link) const
{
    const std::vector<QRect>& rects = m_links[size_t(link)].Rects;
    return m_scroller.Scroll() + (rects.empty() ? 0 : rects.back().bottom());
}

// A link that is out of sight is not jumped to: the page scrolls until it is seen. Links that a finger
// has scrolled past the other edge are passed over.
void CItemDetailsForm::MoveLink(int direction)
{
    const int step = LineHeight(g_ImageStore.Font(0)), count = int(m_links.size());
    const auto isPassed = [&](int link) {
        return direction > 0 ? LinkBottom(link) < 0 : LinkTop(link) >= m_scroller.Height();
    };
    int next = m_currentLink + direction;
    while (m_currentLink >= 0 && next >= 0 && next < count && isPassed(next))
        next += direction;
    if (m_currentLink < 0 || next < 0 || next >= count ||
        (direction < 0 ? LinkTop(next) < 0 : LinkBottom(next) >= m_scroller.Height())) {
        m_scroller.ScrollBy(-direction * step);
        return;
    }
    m_currentLink = next;
    m_scroller.Redraw(true);
}

void CItemDetailsForm::FollowLink(int link)
{
    m_currentLink = link;
    m_scroller.Redraw(true);
    Activate(*m_links[size_t(link)].Link);
}

void CItemDetailsForm::Activate(const CTextLink& link)
{
    switch (link.Kind) {
    case LinkKind::Phone:
        MakeCall(link.Text);
        break;
    case LinkKind::Mail:
        SendMail(link.Text);
        break;
    case LinkKind::Web:
        OpenUrl(link.Text);
        break;
    }
}

// ---- input

void CItemDetailsForm::OnCommand(int command)
{
    if (command == CmdEdit)
        Edit();
    else if (command == CmdCloseDetails || command == CmdCancel)
        End(kCancelled);
}

void CItemDetailsForm::Edit()
{
    if (m_editor && m_editor(*m_item, m_note, this))
        End(kDone);
}

void CItemDetailsForm::OnKey(int key)
{
    if (key == kKeyUp || key == kKeyDown)
        MoveLink(key == kKeyUp ? -1 : 1);
    else if (key == kKeyPageUp || key == kKeyPageDown)
        m_scroller.ScrollBy((key == kKeyPageUp ? 1 : -1) * m_scroller.Height() * 9 / 10);
    else if (key == kKeyHome || key == kKeyEnd)
        m_scroller.ScrollBy((key == kKeyHome ? 1 : -1) * m_y);
    else if ((key == kKeyReturn || key == kKeyF3) && m_currentLink >= 0)
        Activate(*m_links[size_t(m_currentLink)].Link);
}

void CItemDetailsForm::OnTap(quint32, int x, int y)
{
    const int slack = D(4); // a finger is wider than a line
    for (size_t i = 0; i < m_links.size(); ++i) {
        const auto& rects = m_links[i].Rects;
        if (std::none_of(rects.begin(), rects.end(), [&](const QRect& rect) {
                return rect.adjusted(-slack, -slack, slack, slack).contains(x, y);
            }))
            continue;
        return FollowLink(int(i));
    }
}

void CItemDetailsForm::OnLButtonDown(QPoint at)
{
    m_scroller.OnLButtonDown(at.x(), at.y());
}

void CItemDetailsForm::OnMouseMove(QPoint at)
{
    m_scroller.OnMouseMove(at.x(), at.y());
}

void CItemDetailsForm::OnLButtonUp(QPoint at)
{
    m_scroller.OnLButtonUp(at.x(), at.y());
}

void CItemDetailsForm::OnWheel(int angle)
{
    m_scroller.ScrollBy(angle * kWheelLines * LineHeight(g_ImageStore.Font(0)) / kWheelNotch);
}

// ---- accessibility

CPaintedPart CItemDetailsForm::ContentPart(int index) const
{
    const CPart& source = m_parts[size_t(index)];
    const CLinkPlace* const link = source.Link >= 0 ? &m_links[size_t(source.Link)] : nullptr;
    CPaintedPart part;
    part.Name = link ? link->Link->Text : source.Line->Text.Text();
    part.Role = link ? QAccessible::Link : QAccessible::StaticText;
    part.Pressable = link != nullptr;
    part.Selected = link && source.Link == m_currentLink;
    const QRect rect = link && !link->Rects.empty() ? link->Rects.front() : source.Line->Rect;
    const QPoint origin = Layout().Client.topLeft() + QPoint(0, m_scroller.Scroll());
    part.Rect = ToLogical(rect.translated(origin), CurrentFactor());
    return part;
}

void CItemDetailsForm::PressContentPart(int index)
{
    if (const int link = m_parts[size_t(index)].Link; link >= 0)
        FollowLink(link);
}

void ShowItemDetails(const CPimItem& item, QWidget* owner)
{
    if (item.GetKind() == kKindAppointment)
        CItemDetailsForm(static_cast<const CAppointment&>(item), EditItem).Run(owner);
    else if (const auto* task = dynamic_cast<const CTask*>(&item))
        CItemDetailsForm(*task, EditItem).Run(owner);
}
