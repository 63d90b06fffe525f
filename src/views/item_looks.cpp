#include "views/item_looks.h"
#include "drawing/image_store.h"
#include "drawing/picture_ids.h"
#include "pim/pim_store.h"
#include "settings/settings.h"

namespace
{
// By busy status: free, tentative, busy, out of office.
constexpr int kStatusColorIds[] = {1001, 1003, 1002, 1004};
constexpr int kRegularColor = 2001, kOverdueColor = 2002, kUndatedColor = 2003;
constexpr int kFree = 0;
enum TextColors { kDefaultColor, kCategoryColor, kStatusColor };

const CAppointment* AsAppointment(const CPimItem& item)
{
    return item.GetKind() == kKindAppointment ? static_cast<const CAppointment*>(&item) : nullptr;
}
} // namespace

const std::array<StatusPicture, 6> kStatusPictures = {{
    {PictureReminder, PictureSmallReminder, [](const CPimItem& item) { return item.ReminderSet; }},
    {PicturePrivate, PictureSmallPrivate, [](const CPimItem& item) { return item.IsPrivate(); }},
    {PictureRecurring, PictureSmallRecurring, [](const CPimItem& item) { return item.IsRecurring(); }},
    {PictureNote, PictureSmallNote, [](const CPimItem& item) { return item.HasNote; }},
    {PictureAttendees, PictureSmallAttendees,
     [](const CPimItem& item) { return AsAppointment(item) && AsAppointment(item)->HasAttendees; }},
    {PictureConflict, PictureSmallConflict,
     [](const CPimItem& item) { return AsAppointment(item) && AsAppointment(item)->Conflict; }},
}};

std::vector<const CAlphaImage*> CategoryPictures(const CPimItem& item)
{
    std::vector<const CAlphaImage*> pictures;
    for (const qint32 number : item.Categories) {
        const CCategory* const category = PimStore().Categories().FindById(number);
        const CAlphaImage& picture = g_ImageStore.Icon(category ? category->ImageName : QString());
        if (picture.IsValid())
            pictures.push_back(&picture);
    }
    return pictures;
}

void CItemColors::Fetch()
{
    for (int n = 0; n < 4; ++n)
        m_status[n] = g_Settings.ResolveColor(kStatusColorIds[n]);
    m_regular = g_Settings.ResolveColor(kRegularColor);
    m_overdue = g_Settings.ResolveColor(kOverdueColor);
    m_undated = g_Settings.ResolveColor(kUndatedColor);
}

COLORREF CItemColors::OfStatus(int busyStatus) const
{
    return busyStatus >= 0 && busyStatus < 4 ? m_status[busyStatus] : kColorNotSet;
}

COLORREF CItemColors::OfStatus(const CAppointment& item) const
{
    return OfStatus(item.GetKind() == kKindAppointment ? item.BusyStatus : kFree);
}

COLORREF CItemColors::OfText(const CAppointment& item, COLORREF standard) const
{
    COLORREF color = kColorNotSet;
    if (g_Settings.General.TextColorsToUse == kCategoryColor)
        color = PimStore().GetItemColor(item);
    else if (g_Settings.General.TextColorsToUse == kStatusColor)
        color = OfStatus(item);
    return color == kColorNotSet ? standard : color;
}

COLORREF CItemColors::OfDue(const CTask& item) const
{
    if (item.End == NO_DATE)
        return m_undated;
    return DayNumber(item.End) < GetToday() && !item.Complete ? m_overdue : m_regular;
}
