#include "views/row_bitmap_cache.h"
#include "views/painting_order.h"

const QImage* CRowBitmapCache::Find(const CPaintingOrderItem* row) const
{
    const auto found = m_rows.find(row);
    return found == m_rows.end() ? nullptr : &found->second;
}

void CRowBitmapCache::Clear()
{
    m_rows.clear();
    m_selected = QImage();
}

void CRowBitmapCache::Purge(int top, int bottom)
{
    std::erase_if(m_rows, [=](const auto& entry) {
        return entry.first->m_bottom <= top || entry.first->m_top >= bottom;
    });
}
