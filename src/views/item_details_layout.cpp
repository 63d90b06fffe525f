// The parts of the details page, from top to bottom. Each is placed when the width is known.
#include "drawing/image_store.h"
#include "drawing/picture_ids.h"
#include "drawing/screen_metrics.h"
#include "drawing/text.h"
#include "pim/item_cache.h"
#include "pim/pim_store.h"
#include "platform/locale.h"
#include "util/string_ids.h"
#include "util/string_store.h"
#include "views/item_details_form.h"

#include <algorithm>

namespace
{
// A date is no telephone number, so links are looked for in these alone.
enum Field { kFieldPlain = -1, kFieldSubject = 0, kFieldLocation = 1, kFieldNote = 3 };

constexpr int kFontText = 0, kFontSubject = 1;
constexpr COLORREF kColorText = 0x25150F;
constexpr COLORREF kColorLabel = 0x287800;
constexpr COLORREF kColorNote = 0x11542F;
constexpr COLORREF kColorSeparator = 0xDDE1DE;
constexpr int kRightMargin = 14;

int Left()
{
    return S(3);
}

QString Filled(int stringId, const QString& first, const QString& second)
{
    return FillText(GetString(stringId), {first, second});
}

QString ShortDate(DATE date)
{
    return GetDateFormat(DateFlag::Short, SystemTimeOf(date));
}
QString DayNameOf(DATE date)
{
    return GetDateFormat(DateFlag::Picture, SystemTimeOf(date), QStringLiteral("ddd"));
}
QString TimeOf(DATE date)
{
    return GetTimeFormat(kTimeNoSeconds, SystemTimeOf(date));
}
} // namespace

CItemDetailsForm::CLine& CItemDetailsForm::AddText(const QString& text, int font, COLORREF color, int left,
                                                   int right, int group)
{
    auto line = std::make_unique<CLine>();
    line->Text.Set(text, g_ImageStore.Font(font), right - left, group);
    line->Rect = QRect(left, m_y, right - left, line->Text.Height());
    line->Color = color;
    m_lines.push_back(std::move(line));
    return *m_lines.back();
}

void CItemDetailsForm::AddSeparator()
{
    auto line = std::make_unique<CLine>();
    line->Kind = CLine::kSeparator;
    line->Rect = QRect(Left(), m_y, m_laidOutWidth - 2 * Left(), D(1));
    line->Color = kColorSeparator;
    m_lines.push_back(std::move(line));
    m_y += D(1) + D(2);
}

// False without such a picture. On a line of text, in the middle of its height.
bool CItemDetailsForm::AddPicture(int image, int left, int lineHeight)
{
    const CAlphaImage& picture = g_ImageStore.Image(image);
    if (!picture.IsValid())
        return false;
    auto line = std::make_unique<CLine>();
    line->Kind = CLine::kPicture;
    line->Image = image;
    line->Rect = QRect(left, m_y + std::max((lineHeight - picture.Height()) / 2, 0), picture.Width(),
                       picture.Height());
    m_lines.push_back(std::move(line));
    return true;
}

void CItemDetailsForm::AddLabelled(int labelId, COLORREF labelColor, const QString& text)
{
    const int right = m_laidOutWidth - kRightMargin * D(1);
    const int label =
        AddText(GetString(labelId), kFontText, labelColor, Left(), m_labelWidth, kFieldPlain).Rect.height();
    const int value = AddText(text, kFontText, kColorText, m_labelWidth, right, kFieldPlain).Rect.height();
    m_y += std::max(label, value);
}

void CItemDetailsForm::AddSubject()
{
    int left = Left();
    const auto* task = dynamic_cast<const CTask*>(m_item.get());
    if (task && task->Priority != 1) {
        const int image = task->Priority == 2 ? PicturePriorityHigh : PicturePriorityLow;
        if (AddPicture(image, left, LineHeight(g_ImageStore.Font(kFontSubject))))
            left = m_lines.back()->Rect.right() + 1 + S(2);
    }
    m_y += AddText(m_item->Subject, kFontSubject, kColorText, left, m_laidOutWidth - kRightMargin * D(1),
                   kFieldSubject)
               .Rect.height();
    m_y += D(2);
    AddSeparator();
}

void CItemDetailsForm::AddAppointment(const CAppointment& item)
{
    static constexpr int kStatus[] = {StrFree, StrTentative, StrBusy, StrOutOfOffice};
    const int right = m_laidOutWidth - kRightMargin * D(1);
    if (!item.Location.isEmpty())
        m_y +=
            AddText(item.Location, kFontText, kColorText, Left(), right, kFieldLocation).Rect.height() + D(2);
    const QString first = item.AllDay ? GetString(StrDetailsAllDay)
                                      : Filled(StrDetailsRange, TimeOf(item.Start), TimeOf(item.End));
    m_y += AddText(first, kFontText, kColorText, Left(), right, kFieldPlain).Rect.height();
    const int lastDay = SpreadSpan(item, 0).Last - (item.EndsPreviousDay ? 1 : 0);
    const QString second = lastDay > DayNumber(item.Start)
                               ? Filled(StrDetailsRange, ShortDate(item.Start), ShortDate(lastDay))
                               : Filled(StrDetailsDate, DayNameOf(item.Start), ShortDate(item.Start));
    m_y += AddText(second, kFontText, kColorText, Left(), right, kFieldPlain).Rect.height();
    AddLabelled(StrDetailsStatus, kColorLabel, GetString(kStatus[std::clamp(item.BusyStatus, 0, 3)]));
    if (item.HasAttendees && !m_attendees.isEmpty())
        AddLabelled(StrAttendees, kColorText, m_attendees);
}

void CItemDetailsForm::AddTask(const CTask& item)
{
    const int right = m_laidOutWidth - kRightMargin * D(1);
    const int height = LineHeight(g_ImageStore.Font(kFontText));
    int left = Left();
    if (AddPicture(item.Complete ? PictureTaskCompleted : PictureTaskActive, left, height))
        left = m_lines.back()->Rect.right() + 1 + S(2);
    const QString status = GetString(item.Complete ? StrDetailsCompletedTask : StrDetailsActiveTask);
    m_y += std::max(AddText(status, kFontText, kColorText, left, right, kFieldPlain).Rect.height(), height);
    const bool due = item.End != NO_DATE, start = item.Start != NO_DATE;
    const QString dates = !due    ? GetString(StrUndatedTask)
                          : start ? Filled(StrDetailsRange, ShortDate(item.Start), ShortDate(item.End))
                                  : Filled(StrDetailsDue, ShortDate(item.End), DayNameOf(item.End));
    m_y += AddText(dates, kFontText, kColorText, Left(), right, kFieldPlain).Rect.height();
}

void CItemDetailsForm::AddReminder()
{
    const auto* appointment = dynamic_cast<const CAppointment*>(m_item.get());
    const auto* task = dynamic_cast<const CTask*>(m_item.get());
    const DATE at = task ? task->ReminderTime : m_item->Start - appointment->ReminderMinutes / 1440.0;
    if (!m_item->ReminderSet || at == NO_DATE)
        return;
    int left = Left();
    if (AddPicture(PictureReminder, left, LineHeight(g_ImageStore.Font(kFontText))))
        left = m_lines.back()->Rect.right() + 1 + S(2);
    const QString text = Filled(StrDetailsDate, DayNameOf(at), ShortDate(at)) + u' ' + TimeOf(at);
    m_y += AddText(text, kFontText, kColorText, left, m_laidOutWidth - kRightMargin * D(1), kFieldPlain)
               .Rect.height();
}

void CItemDetailsForm::AddMarks()
{
    const std::pair<bool, int> kMarks[] = {{m_item->IsPrivate(), PicturePrivate},
                                           {m_item->IsRecurring(), PictureRecurring},
                                           {m_item->HasNote && !m_note.isEmpty(), PictureNote}};
    int left = Left(), tallest = 0;
    for (const auto& [shown, image] : kMarks) {
        if (!shown || !AddPicture(image, left, 0))
            continue;
        left = m_lines.back()->Rect.right() + 1 + S(3);
        tallest = std::max(tallest, m_lines.back()->Rect.height());
    }
    if (tallest == 0)
        return;
    m_y += tallest + D(2);
    AddSeparator();
}

void CItemDetailsForm::LayOut(int width)
{
    if (width == m_laidOutWidth && g_ScreenMetrics.Multiple() == m_laidOutMultiple)
        return;
    m_laidOutWidth = width;
    m_laidOutMultiple = g_ScreenMetrics.Multiple();
    m_links.clear();
    m_lines.clear();
    m_labelWidth = 0;
    for (const int label : {StrDetailsStatus, StrDetailsCategories, StrAttendees})
        m_labelWidth = std::max(m_labelWidth, TextWidth(g_ImageStore.Font(kFontText), GetString(label)));
    m_labelWidth += Left() + S(4);

    m_y = D(2);
    AddSubject();
    if (const auto* task = dynamic_cast<const CTask*>(m_item.get()))
        AddTask(*task);
    else
        AddAppointment(static_cast<const CAppointment&>(*m_item));
    const int right = width - kRightMargin * D(1);
    const QString categories = PimStore().Categories().GetNamesText(m_item->Categories);
    if (!categories.isEmpty()) {
        AddLabelled(StrDetailsCategories, kColorLabel, categories);
        m_y += D(2);
    }
    if (!m_recurrence.isEmpty())
        m_y += AddText(m_recurrence, kFontText, kColorText, Left(), right, kFieldPlain).Rect.height() + D(2);
    AddReminder();
    m_y += D(2);
    AddSeparator();
    AddMarks();
    if (!m_note.isEmpty())
        m_y += AddText(m_note, kFontText, kColorNote, Left(), right, kFieldNote).Rect.height() + D(2);
    m_y += D(2);
    CollectLinks();
}
