// Names and numbers of the categories, and which item has which. Names are kept in memory and
// read again when the volume has changed since; numbers without a name are left alone.
// Ownership: the volume is borrowed.
#pragma once
#include "platform/property_volume.h"

#include <QHash>

class CCategoryWriter
{
public:
    explicit CCategoryWriter(CPropertyVolume& volume) : m_volume(volume) {}

    // Within a transaction that has just begun: whether the kept names still hold.
    void Revalidate();
    // The last thing within it.
    void RememberState();
    void Forget() { m_valid = false; } // after a rollback

    QString NamesOf(quint32 itemId);                                 // joined by ", ", in order of number
    CStatus Put(quint32 itemId, const QString& names, bool newItem); // makes unknown names
    CStatus Remove(quint32 itemId);

private:
    struct CAssociation {
        CEOID oid;
        qint32 category;
    };
    void Load();
    std::vector<CAssociation> Associations(quint32 itemId);
    CStatus NumberOf(const QString& name, qint32* number);

    CPropertyVolume& m_volume;
    std::unique_ptr<CPropertyDatabase> m_associations;
    std::vector<CEPROPVAL> m_rows;
    bool m_valid = false;
    qint64 m_lastChange = -1;
    std::vector<std::pair<QString, qint32>> m_names;
    QHash<QString, qint32> m_numbers; // by the name as it was asked for
};
