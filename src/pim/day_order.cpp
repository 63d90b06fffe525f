#include "pim/day_order.h"

#include <algorithm>

namespace
{
constexpr size_t kBlock = 64;
} // namespace

int CompareInDay(const CAppointment& x, const CAppointment& n)
{
    if (n.AllDay && !x.AllDay)
        return -1;
    return n.Start > x.Start ? 1 : n.Start < x.Start ? -1 : 0;
}

void CDayOrder::CBlock::Put(size_t at, const CEntry& entry)
{
    Latest = Entries.empty() ? entry.Start : std::max(Latest, entry.Start);
    HasTimed = HasTimed || !entry.AllDay;
    Entries.insert(Entries.begin() + qsizetype(at), entry);
}

void CDayOrder::PutInto(size_t block, size_t at, const CEntry& entry)
{
    if (m_blocks.empty())
        m_blocks.emplace_back();
    m_blocks[block].Put(at, entry);
    if (m_blocks[block].Entries.size() < 2 * kBlock)
        return;
    CBlock halves[2];
    const std::vector<CEntry>& all = m_blocks[block].Entries;
    for (size_t i = 0; i < all.size(); ++i)
        halves[i / kBlock].Put(i % kBlock, all[i]);
    m_blocks[block] = std::move(halves[0]);
    m_blocks.insert(m_blocks.begin() + qsizetype(block) + 1, std::move(halves[1]));
}

void CDayOrder::Append(const CAppointment& item)
{
    const CEntry entry = Next(item);
    if (entry.Number == 0)
        m_head = entry;
    else if (m_blocks.empty())
        PutInto(0, 0, entry);
    else
        PutInto(m_blocks.size() - 1, m_blocks.back().Entries.size(), entry);
}

void CDayOrder::Insert(const CAppointment& item)
{
    const CEntry entry = Next(item);
    if (entry.Number == 0) {
        m_head = entry;
    } else if ((entry.AllDay && !m_head.AllDay) || entry.Start < m_head.Start) {
        PutInto(0, 0, m_head);
        m_head = entry;
    } else {
        InsertBehindHead(entry);
    }
}

void CDayOrder::InsertBehindHead(const CEntry& entry)
{
    const auto stops = [&entry](const CEntry& x) {
        return (entry.AllDay && !x.AllDay) || x.Start >= entry.Start;
    };
    for (size_t i = 0; i < m_blocks.size(); ++i) {
        const CBlock& block = m_blocks[i];
        if (block.Latest < entry.Start && !(entry.AllDay && block.HasTimed))
            continue;
        const auto at = std::find_if(block.Entries.begin(), block.Entries.end(), stops);
        PutInto(i, size_t(at - block.Entries.begin()), entry);
        return;
    }
    if (m_blocks.empty())
        PutInto(0, 0, entry);
    else
        PutInto(m_blocks.size() - 1, m_blocks.back().Entries.size(), entry);
}

std::vector<quint32> CDayOrder::Take() const
{
    std::vector<quint32> numbers;
    numbers.reserve(m_given);
    if (m_given > 0)
        numbers.push_back(m_head.Number);
    for (const CBlock& block : m_blocks) {
        for (const CEntry& entry : block.Entries)
            numbers.push_back(entry.Number);
    }
    return numbers;
}
