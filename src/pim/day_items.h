// One cached day: its items in display order, the 25 slots and the counts.
// Ownership: the day owns its copies; a pointer to one dies with the next notice or load.
#pragma once
#include "pim/items.h"

#include <QRect>
#include <memory>
#include <vector>

struct CHourSlot {
    quint32 ItemId = 0;
    COLORREF Color = kColorNotSet;
};

class CDayItems : public CPimRecord
{
public:
    int GetKind() const override { return 0; }
    CAppointment* FindAppointment(quint32 itemId, DATE start) const;
    CPimItem* FindByOid(quint32 oid) const;
    void AddAppointment(std::unique_ptr<CAppointment> item, bool recount);
    void RemoveByOid(quint32 oid, bool recount);
    void RecountSlots();
    void MarkConflicts();

    bool Collapsed = false;
    std::vector<std::unique_ptr<CAppointment>> Appointments; // ordered
    std::vector<std::unique_ptr<CTask>> Tasks;
    CHourSlot HourSlots[25]; // 0..23 the hours, 24 all-day
    bool Marked = false;
    int AppointmentCount = 0, TaskCount = 0; // visible ones
    int Day = 0;
    QRect CellRect;
    QString Title;
};
