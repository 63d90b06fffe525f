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
    bool operator==(const CHourSlot&) const = default;
};

// Who knows the colour of an item: the store, by its categories and the colour scheme.
class IItemColors
{
public:
    virtual ~IItemColors() = default;
    virtual COLORREF GetItemColor(const CPimItem& item) const = 0;
};

class CDayItems : public CPimRecord
{
public:
    explicit CDayItems(int day = 0, const IItemColors* colors = nullptr);
    int GetKind() const override { return 0; }
    CAppointment* FindAppointment(quint32 itemId, DATE start) const;
    CPimItem* FindByOid(quint32 oid) const;
    void AddAppointment(std::unique_ptr<CAppointment> item, bool recount);
    void AddTask(std::unique_ptr<CCalendarTask> task, bool recount); // in order
    void RemoveTasks();                                              // all; Settle recounts
    void RemoveByOid(quint32 oid, bool recount);
    void RecountSlots();
    void MarkConflicts();
    QString GetTitle() const; // by the list view's date format; "Today" for today

    // Many at a time: what Defer takes joins the list with Settle, in the order and with the result
    // of adding one after the other, save those that the day already holds with the same start.
    // Settle also recounts what Defer or Remove has changed.
    void Defer(std::unique_ptr<CAppointment> item);
    bool RemoveOids(const std::vector<quint32>& sorted); // whether any was there
    void Settle();

    bool Collapsed = false;
    std::vector<std::unique_ptr<CAppointment>> Appointments; // ordered
    std::vector<std::unique_ptr<CCalendarTask>> Tasks;
    CHourSlot HourSlots[25]; // 0..23 the hours, 24 all-day
    bool Marked = false;
    int AppointmentCount = 0, TaskCount = 0; // visible ones
    int Day = 0;
    QRect CellRect;
    const IItemColors* Colors = nullptr; // borrowed; null gives no colours

private:
    void SetHourSlots(const CAppointment& item, COLORREF color);
    void DropRepeated();

    std::vector<std::unique_ptr<CAppointment>> m_deferred;
    bool m_mayRepeat = false;
    bool m_changed = false;
};
