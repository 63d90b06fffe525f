#include <QList>
#include <gtest/gtest.h>

#include "views/painting_order.h"

namespace
{
std::unique_ptr<CPaintingOrderItem> Entry(CPimItem& item, int order)
{
    return std::make_unique<CPaintingOrderItem>(nullptr, &item, 0, order);
}

CAppointment Item(quint32 id, DATE start = 0)
{
    CAppointment item(kKindAppointment, CAppointment::Blank());
    item.ItemId = id;
    item.Start = start;
    return item;
}
} // namespace

TEST(PaintingOrder, EntriesGoBeforeThoseOfEqualOrder)
{
    CAppointment items[] = {Item(1), Item(2), Item(3), Item(4), Item(5), Item(6)};
    const int orders[] = {5, 5, 2, 9, 5, 2};
    CPaintingOrderList list;
    for (int n = 0; n < 6; ++n)
        list.InsertInOrder(Entry(items[n], orders[n]));
    QList<quint32> ids;
    for (const auto& entry : list)
        ids << entry->m_item->ItemId;
    EXPECT_EQ(ids, QList<quint32>({6, 3, 5, 2, 1, 4}));
}

TEST(PaintingOrder, AnItemIsFoundByItsIdentity)
{
    CAppointment morning = Item(7, 100.25), evening = Item(7, 100.75), other = Item(8, 100.5);
    CAppointment birthday(kKindBirthday, CAppointment::Blank());
    birthday.ItemId = 8;
    CPaintingOrderList list;
    int order = 0;
    for (CAppointment* item : {&morning, &evening, &other, &birthday})
        list.InsertInOrder(Entry(*item, order++));
    EXPECT_EQ(list.Find(CItemIdentity::Of(evening)), list.GetAt(1));
    EXPECT_EQ(list.Find(CItemIdentity::Of(birthday)), list.GetAt(3)) << "the kind counts";
    CItemIdentity moved = CItemIdentity::Of(other);
    moved.Start = 101;
    EXPECT_EQ(list.Find(moved), list.GetAt(2)) << "a moved item still is the same";
    moved.ItemId = 99;
    EXPECT_EQ(list.Find(moved), nullptr);
    EXPECT_EQ(list.Find(CItemIdentity()), nullptr);
}

TEST(PaintingOrder, RowsAreFoundByTheirPlace)
{
    CAppointment items[] = {Item(1), Item(2), Item(3)};
    CPaintingOrderList list;
    int top = 0;
    for (int n = 0; n < 3; ++n, top += 31) {
        CPaintingOrderItem* row = list.InsertInOrder(Entry(items[n], n));
        row->m_top = top;
        row->m_bottom = top + 30;
    }
    const std::pair<int, int> cases[] = {{-1, -1}, {0, 0},  {30, 0}, {31, 1},
                                         {61, 1},  {62, 2}, {92, 2}, {93, -1}};
    for (const auto& [y, index] : cases)
        EXPECT_EQ(list.IndexOf(list.RowAt(y)), index) << y;
    EXPECT_EQ(list.FirstReaching(-50), 0);
    EXPECT_EQ(list.FirstReaching(30), 1);
    EXPECT_EQ(list.FirstReaching(200), 3);
}
