// Birthdays and anniversaries of the contacts on the cached days.
#include "pim/filter_match.h"
#include "pim/item_cache.h"
#include "pim/view_mask.h"
#include "settings/settings.h"

#include <algorithm>

bool CItemCache::LoadContacts(bool force)
{
    if (!m_contacts.IsLoaded() && (force || g_Settings.General.IncludeSpecialEvents != 0))
        m_contacts.Load(m_volume, m_keepUids);
    return m_contacts.IsLoaded();
}

int CItemCache::PlaceSpecialEvent(const CContactInfo& contact, int kind, const CSpecialDay& at)
{
    auto event = std::make_unique<CAppointment>(kind, CAppointment::Blank{});
    event->ItemId = contact.ItemId;
    event->RecordOid = contact.RecordOid;
    event->AllDay = true;
    event->Start = event->End = at.Day;
    event->BusyStatus = 0;
    event->Subject = SpecialEventSubject(kind, contact.Name, at.Age);
    m_categories.ReadItemCategories(*event);
    event->Visible = MatchesFilter(g_Settings.GetActiveFilter(), event->Categories);
    m_days[size_t(at.Day - FirstDay())]->Defer(std::move(event));
    if (m_keepUids)
        m_uids[contact.RecordOid] = contact.Uid;
    return kMaskListWeek | kMaskMonth | (at.Day == m_currentDay ? kMaskDaily : 0);
}

// Of all contacts, or of some. Only those that have a day in the range are put in order, as a
// whole list costs a comparison of names per contact and more.
int CItemCache::PlaceContacts(int first, int last, const std::vector<CEOID>* only)
{
    struct CHit {
        const CContactInfo* Contact;
        CSpecialDay Birthday, Anniversary;
        bool HasBirthday, HasAnniversary;
    };
    std::vector<CHit> hits;
    for (const CContactInfo& contact : m_contacts.Unsorted()) {
        if (contact.Name.isEmpty() ||
            (only && std::find(only->begin(), only->end(), contact.RecordOid) == only->end()))
            continue;
        CHit hit{&contact, {}, {}, false, false};
        hit.HasBirthday = FindSpecialDay(contact.Birthday, first, last, &hit.Birthday);
        hit.HasAnniversary = FindSpecialDay(contact.Anniversary, first, last, &hit.Anniversary);
        if (hit.HasBirthday || hit.HasAnniversary)
            hits.push_back(hit);
    }
    std::stable_sort(hits.begin(), hits.end(), [](const CHit& a, const CHit& b) {
        return CContactList::Precedes(*a.Contact, *b.Contact);
    });
    m_categories.BeginPass();
    int bits = 0;
    for (const CHit& hit : hits) {
        if (hit.HasBirthday)
            bits |= PlaceSpecialEvent(*hit.Contact, kKindBirthday, hit.Birthday);
        if (hit.HasAnniversary)
            bits |= PlaceSpecialEvent(*hit.Contact, kKindAnniversary, hit.Anniversary);
    }
    return bits;
}

int CItemCache::ReplaceContacts(std::vector<CEOID> removed, const std::vector<CEOID>& read)
{
    std::sort(removed.begin(), removed.end());
    int bits = RemoveFromDays(removed);
    const bool shown = g_Settings.General.IncludeSpecialEvents != 0;
    if (m_contacts.IsLoaded()) {
        m_contacts.Remove(removed);
        m_contacts.Read(m_volume, read, m_keepUids);
    } else if (shown && !m_days.empty()) {
        LoadContacts(false);
    }
    if (shown && !m_days.empty() && m_contacts.IsLoaded())
        bits |= PlaceContacts(FirstDay(), EndDay() - 1, &read);
    SettleDays();
    return bits;
}
