// The zones that a file names, each made once.
// A name means, in this order: the system's zone of that name in whatever case, also behind the
//   path of a library; the system's zone of a desktop's name; the file's own block. The block
//   that stands last before an event counts.
#pragma once
#include "interchange/component_reader.h"
#include "interchange/file_zone.h"
#include "interchange/import_limits.h"

#include <QHash>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>

class CZoneTable
{
public:
    explicit CZoneTable(int currentYear) : m_currentYear(currentYear) {}

    // A block without a name or without sense is passed over.
    void AddBlock(const CComponent& block);
    // Null when nothing is known of the name.
    std::shared_ptr<const CFileZone> Find(std::string_view name);
    // The system's zone that a name means; empty when there is none.
    QByteArray SystemName(const std::string& name);

private:
    std::shared_ptr<const CFileZone> Make(const std::string& name);

    int m_currentYear;
    std::unordered_map<std::string, std::shared_ptr<const CFileZone>> m_blocks; // by the name as it stands
    std::unordered_map<std::string, std::shared_ptr<const CFileZone>> m_found;  // null: not known
    QHash<QByteArray, std::shared_ptr<const CFileZone>> m_system;               // by the system's name
    qint64 m_budget = ImportLimit::RuleDays / 4;                                // for the rules of all blocks
    QHash<QByteArray, QByteArray> m_systemNames; // lower case to the system's own, made at first need
    std::string m_lastName;
    std::shared_ptr<const CFileZone> m_last;
};
