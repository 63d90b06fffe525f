#include "views/painting_order.h"
#include "forms/message_dialog.h"
#include "util/string_ids.h"
#include "util/string_store.h"

#include <QApplication>
#include <algorithm>

namespace
{
void TellOrderProblem()
{
    CMessageDialog(GetString(StrOrderItemProblem) + GetString(StrSupportContact) +
                       GetString(StrOrderItemProblemEnd),
                   GetString(StrErrorCaption), CMessageDialog::Kind::Warning)
        .Run(QApplication::activeWindow());
}
} // namespace

CItemIdentity CItemIdentity::Of(const CPimItem& item)
{
    return {item.GetKind(), item.ItemId, item.RecordOid, item.Start};
}

bool CItemIdentity::IsSameItem(const CItemIdentity& other) const
{
    return Kind == other.Kind && ItemId == other.ItemId;
}

CPaintingOrderItem::CPaintingOrderItem(CPimRecord* event, CPimItem* item, int date, int order)
    : m_event(event), m_item(item), m_date(date), m_order(order), m_id(item ? item->RecordOid : 0)
{
    if (event && item)
        TellOrderProblem();
    if (item)
        m_identity = CItemIdentity::Of(*item);
}

CPaintingOrderItem* CPaintingOrderList::InsertInOrder(std::unique_ptr<CPaintingOrderItem> entry)
{
    const auto before = [](const auto& listed, int order) { return listed->m_order < order; };
    // Rows mostly arrive in their order.
    const auto place = m_entries.empty() || m_entries.back()->m_order < entry->m_order
                           ? m_entries.end()
                           : std::lower_bound(m_entries.begin(), m_entries.end(), entry->m_order, before);
    return m_entries.insert(place, std::move(entry))->get();
}

void CPaintingOrderList::Erase(const CPaintingOrderItem* entry)
{
    std::erase_if(m_entries, [entry](const auto& listed) { return listed.get() == entry; });
}

CPaintingOrderItem* CPaintingOrderList::GetAt(int index) const
{
    return index >= 0 && index < GetCount() ? m_entries[size_t(index)].get() : nullptr;
}

int CPaintingOrderList::IndexOf(const CPaintingOrderItem* entry) const
{
    const auto found =
        std::find_if(begin(), end(), [entry](const auto& listed) { return listed.get() == entry; });
    return found == end() ? -1 : int(found - begin());
}

CPaintingOrderItem* CPaintingOrderList::Find(const CItemIdentity& identity) const
{
    if (identity.IsNull())
        return nullptr;
    CPaintingOrderItem* sameItem = nullptr;
    for (const auto& entry : m_entries) {
        if (!entry->m_identity.IsSameItem(identity))
            continue;
        if (entry->m_identity.Start == identity.Start)
            return entry.get();
        if (!sameItem)
            sameItem = entry.get();
    }
    return sameItem;
}

CPaintingOrderItem* CPaintingOrderList::RowAt(int y) const
{
    const auto row =
        std::lower_bound(begin(), end(), y, [](const auto& entry, int at) { return entry->m_bottom < at; });
    return row != end() && (*row)->m_top <= y ? row->get() : nullptr;
}

int CPaintingOrderList::FirstReaching(int y) const
{
    return int(std::partition_point(begin(), end(), [y](const auto& entry) { return entry->m_bottom <= y; }) -
               begin());
}
