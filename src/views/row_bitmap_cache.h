// Pictures of painted rows, by row, and one further picture of the selected row.
// Rows are opaque, so that a picture goes to a surface as plain memory.
#pragma once
#include <QImage>
#include <QSize>
#include <unordered_map>

class CPaintingOrderItem;
class QPainter;

class CRowBitmapCache
{
public:
    const QImage* Find(const CPaintingOrderItem* row) const;
    void Put(const CPaintingOrderItem* row, QImage picture) { m_rows[row] = std::move(picture); }
    void Drop(const CPaintingOrderItem* row) { m_rows.erase(row); }
    const QImage* Selected() const { return m_selected.isNull() ? nullptr : &m_selected; }
    void PutSelected(QImage picture) { m_selected = std::move(picture); }
    void DropSelected() { m_selected = QImage(); }
    void Clear();
    // Drops each picture of a row that lies entirely outside top..bottom (content coordinates).
    void Purge(int top, int bottom);
    int GetCount() const { return int(m_rows.size()); }

private:
    std::unordered_map<const CPaintingOrderItem*, QImage> m_rows;
    QImage m_selected;
};
