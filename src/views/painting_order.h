// One entry of an ordered list of what to paint, and the list.
// Ownership: the list owns its entries; an entry borrows its item from the day cache, so the
//   pointer dies with the next notice or load, while the identity beside it stays.
// Units: top and bottom are content coordinates, written while painting; equal after a rebuild.
#pragma once
#include "pim/items.h"

#include <QRect>
#include <memory>
#include <vector>

// What finds an item again after any change.
struct CItemIdentity {
    int Kind = 0;
    quint32 ItemId = 0; // tagged
    quint32 RecordOid = 0;
    DATE Start = NO_DATE;
    bool IsNull() const { return Kind == 0; }
    bool IsSameItem(const CItemIdentity& other) const; // whatever its start
    static CItemIdentity Of(const CPimItem& item);
    bool operator==(const CItemIdentity&) const = default;
};

class CPaintingOrderItem
{
public:
    // One of the two pointers at most; with both the first kind wins, after a message.
    CPaintingOrderItem(CPimRecord* event, CPimItem* item, int date, int order);
    CPimRecord* GetItem() const { return m_event ? m_event : m_item; }

    CPimRecord* m_event;
    CPimItem* m_item;
    int m_date;               // whole day number
    int m_order;              // the sort key
    quint32 m_id;             // record identifier of m_item
    CItemIdentity m_identity; // of m_item
    int m_top = 0, m_bottom = 0;
    QRect m_checkBox; // of a task's row, relative to the row's top left
};

class CPaintingOrderList
{
public:
    // Ascending by order, before an entry of equal order. Result: the entry in the list.
    CPaintingOrderItem* InsertInOrder(std::unique_ptr<CPaintingOrderItem> entry);
    void Erase(const CPaintingOrderItem* entry);
    void Clear() { m_entries.clear(); }
    int GetCount() const { return int(m_entries.size()); }
    bool IsEmpty() const { return m_entries.empty(); }
    CPaintingOrderItem* GetAt(int index) const;         // null outside
    int IndexOf(const CPaintingOrderItem* entry) const; // -1 when not in the list
    // The row with this identity; a changed start still finds the same item.
    CPaintingOrderItem* Find(const CItemIdentity& identity) const;
    // With tops and bottoms written: the row whose top and bottom enclose y, both included; null
    // between rows, which a separator parts.
    CPaintingOrderItem* RowAt(int y) const;
    int FirstReaching(int y) const; // index of the first row that ends below y; the count without
    auto begin() const { return m_entries.begin(); }
    auto end() const { return m_entries.end(); }

private:
    std::vector<std::unique_ptr<CPaintingOrderItem>> m_entries;
};
