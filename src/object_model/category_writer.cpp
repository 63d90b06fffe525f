#include "object_model/category_writer.h"

#include "platform/locale.h"
#include "records/property_numbers.h"

#include <QStringList>
#include <algorithm>

void CCategoryWriter::Revalidate()
{
    m_valid = m_valid && m_volume.LastChange() == m_lastChange;
}
void CCategoryWriter::RememberState()
{
    m_lastChange = m_volume.LastChange();
}

void CCategoryWriter::Load()
{
    if (m_valid)
        return;
    m_names.clear();
    m_numbers.clear();
    const std::unique_ptr<CPropertyDatabase> reader = m_volume.OpenDatabase(kCategoryDatabase, {}, true);
    constexpr CEPROPID kIds[] = {Prop::CategoryNumber, Prop::CategoryName};
    if (reader && reader->Seek(SeekType::Beginning) != 0) {
        while (reader->ReadRecordProps(kIds, m_rows) != 0)
            if (m_rows[0].Found() && m_rows[1].Found() && !m_rows[1].Text.isEmpty())
                m_names.emplace_back(m_rows[1].Text, qint32(m_rows[0].Number));
    }
    m_valid = true;
    RememberState();
}

std::vector<CCategoryWriter::CAssociation> CCategoryWriter::Associations(quint32 itemId)
{
    std::vector<CAssociation> found;
    if (!m_associations)
        m_associations = m_volume.OpenDatabase(kCategoryAssocDatabase,
                                               {{Prop::AssocItem, Prop::AssocCategory}, true}, true);
    constexpr CEPROPID kIds[] = {Prop::AssocItem, Prop::AssocCategory};
    if (!m_associations ||
        m_associations->Seek(SeekType::ValueFirstEqual, {Prop::AssocItem, qint64(itemId)}) == 0)
        return found;
    while (const CEOID oid = m_associations->ReadRecordProps(kIds, m_rows)) {
        if (quint32(m_rows[0].Number) != itemId)
            break;
        found.push_back({oid, qint32(m_rows[1].Number)});
    }
    return found;
}

QString CCategoryWriter::NamesOf(quint32 itemId)
{
    const std::vector<CAssociation> associations = Associations(itemId);
    if (associations.empty())
        return {};
    Revalidate();
    Load();
    QStringList names;
    for (const CAssociation& association : associations)
        for (const auto& [name, number] : m_names)
            if (number == association.category)
                names += name;
    return names.join(QStringLiteral(", "));
}

CStatus CCategoryWriter::NumberOf(const QString& name, qint32* number)
{
    Load();
    const CStatus fault = m_volume.TakeReadFault(); // else every name would be made once more
    if (!fault) {
        Forget();
        return fault;
    }
    const auto known = m_numbers.constFind(name);
    if (known != m_numbers.constEnd()) {
        *number = *known;
        return {};
    }
    for (const auto& [other, otherNumber] : m_names)
        if (CompareText(other, name) == 0) {
            *number = otherNumber;
            m_numbers.insert(name, otherNumber);
            return {};
        }
    const CEPROPVAL row(Prop::CategoryName, name);
    CEOID oid = 0;
    quint32 recordNumber = 0;
    const CStatus status = m_volume.WriteRecord(kCategoryDatabase, 0, {&row, 1}, {}, &oid, &recordNumber);
    if (!status)
        return status;
    *number = qint32(recordNumber);
    m_names.emplace_back(name, *number);
    m_numbers.insert(name, *number);
    return status;
}

CStatus CCategoryWriter::Put(quint32 itemId, const QString& names, bool newItem)
{
    std::vector<qint32> wanted;
    for (QStringView part : QStringView(names).split(',')) {
        const QString name = part.trimmed().toString();
        if (name.isEmpty())
            continue;
        qint32 number = 0;
        const CStatus status = NumberOf(name, &number);
        if (!status)
            return status;
        if (std::find(wanted.begin(), wanted.end(), number) == wanted.end())
            wanted.push_back(number);
    }
    const std::vector<CAssociation> present = newItem ? std::vector<CAssociation>() : Associations(itemId);
    for (const CAssociation& old : present) {
        const auto same = std::find(wanted.begin(), wanted.end(), old.category);
        if (same != wanted.end()) {
            wanted.erase(same);
            continue;
        }
        const CStatus status = m_volume.DeleteRecord(kCategoryAssocDatabase, old.oid);
        if (!status)
            return status;
    }
    for (qint32 number : wanted) {
        const CEPROPVAL rows[] = {{Prop::AssocItem, qint64(itemId)}, {Prop::AssocCategory, qint64(number)}};
        CEOID oid = 0;
        const CStatus status = m_volume.WriteRecord(kCategoryAssocDatabase, 0, rows, {}, &oid);
        if (!status)
            return status;
    }
    return {};
}

CStatus CCategoryWriter::Remove(quint32 itemId)
{
    for (const CAssociation& association : Associations(itemId)) {
        const CStatus status = m_volume.DeleteRecord(kCategoryAssocDatabase, association.oid);
        if (!status)
            return status;
    }
    return {};
}
