// What the items of the model share: where the record lies, what was put, and the categories.
#pragma once
#include "object_model/record_rows.h"

class COutlookApp;

// What was put since the item was read; the rest of the record is left as it is.
namespace Changed
{
constexpr unsigned Subject = 1, Location = 2, Times = 4, BusyStatus = 8, Sensitivity = 16, Body = 32,
                   Reminder = 64, Categories = 128, Foreign = 256, Priority = 512, Complete = 1024,
                   Identity = 2048;
constexpr unsigned All = ~(Foreign | Identity); // of a new item; what an imported file says is put or not
} // namespace Changed

class CItemBase
{
protected:
    CItemBase(COutlookApp& app, CEOID oid, quint32 itemId) : m_app(app), m_oid(oid), m_itemId(itemId) {}
    explicit CItemBase(COutlookApp& app) : m_app(app), m_changed(Changed::All) {}

    template <typename T> void Set(T& field, const T& value, unsigned changed)
    {
        if (field == value)
            return;
        field = value;
        m_changed |= changed;
    }
    bool IsChanged(unsigned what) const { return (m_changed & what) != 0; }
    QString CategoryNames() const;
    void PutCategoryNames(const QString& names);
    // Within a transaction: the record and its categories.
    // A new one gets a UID by which other programs and later imports know it again.
    CStatus WriteRecord(CRecordRows& rows, const QString& database, quint32 tag, CForeignData& foreign,
                        CEOID* oid, quint32* itemId);
    CStatus SaveCategoriesOf(quint32 itemId, bool newItem);
    CStatus DeleteRecord(const QString& database);
    void Saved(CEOID oid, quint32 itemId);

    COutlookApp& m_app;
    CEOID m_oid = 0;
    quint32 m_itemId = 0;
    unsigned m_changed = 0;
    QString m_categories; // once put
};
