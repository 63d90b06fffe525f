#include "object_model/item_base.h"

#include "object_model/outlook_app.h"
#include "records/property_numbers.h"

#include <QUuid>

QString CItemBase::CategoryNames() const
{
    if (IsChanged(Changed::Categories) || m_itemId == 0)
        return m_categories;
    return m_app.Categories().NamesOf(m_itemId);
}

void CItemBase::PutCategoryNames(const QString& names)
{
    if (names == CategoryNames())
        return;
    m_categories = names;
    m_changed |= Changed::Categories;
}

CStatus CItemBase::SaveCategoriesOf(quint32 itemId, bool newItem)
{
    if (!IsChanged(Changed::Categories) || itemId == 0 || (newItem && m_categories.isEmpty()))
        return {};
    return m_app.Categories().Put(itemId, m_categories, newItem);
}

CStatus CItemBase::WriteRecord(CRecordRows& rows, const QString& database, quint32 tag, CForeignData& foreign,
                               CEOID* oid, quint32* itemId)
{
    if (m_oid == 0 && (foreign.Uid.isEmpty() || !IsChanged(Changed::Foreign | Changed::Identity))) {
        if (foreign.Uid.isEmpty())
            foreign.Uid = QUuid::createUuid().toString(QUuid::WithoutBraces);
        rows.Text(Prop::Uid, foreign.Uid);
    }
    quint32 number = 0;
    const CStatus status = rows.Write(m_app.Volume(), database, m_oid, oid, &number);
    if (!status)
        return status;
    *itemId = m_oid ? m_itemId : tag + number;
    return SaveCategoriesOf(*itemId, m_oid == 0);
}

CStatus CItemBase::DeleteRecord(const QString& database)
{
    if (m_oid == 0)
        return {StatusKind::Invalid, QStringLiteral("The item was not saved yet.")};
    return m_app.InTransaction([this, &database] {
        const CStatus status = m_app.Categories().Remove(m_itemId);
        return status ? m_app.Volume().DeleteRecord(database, m_oid) : status;
    });
}

void CItemBase::Saved(CEOID oid, quint32 itemId)
{
    m_oid = oid;
    m_itemId = itemId;
    m_changed = 0;
    m_categories.clear();
}
