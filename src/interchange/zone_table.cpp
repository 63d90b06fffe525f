#include "interchange/zone_table.h"

#include "interchange/import_limits.h"
#include "interchange/property_line.h"

#include <QTimeZone>

void CZoneTable::AddBlock(const CComponent& block)
{
    for (const CComponent::Line& at : block.Lines) {
        const CPropertyLine line(block.LineText(at));
        if (!EqualsUpper(line.Name, "TZID"))
            continue;
        const std::string name(TrimBlanks(line.Value));
        if (name.empty() || m_blocks.size() >= size_t(ImportLimit::ZoneBlocks))
            return;
        if (auto zone = MakeBlockZone(block, m_currentYear, &m_budget)) {
            m_blocks[name] = std::move(zone);
            m_found.erase(name);
            m_lastName.clear();
        }
        return;
    }
}

std::shared_ptr<const CFileZone> CZoneTable::Find(std::string_view name)
{
    name = TrimBlanks(name);
    if (!m_lastName.empty() && name == m_lastName)
        return m_last;
    std::string key(name);
    auto found = m_found.find(key);
    if (found == m_found.end()) {
        if (m_found.size() > size_t(ImportLimit::ZoneBlocks))
            m_found.clear();
        found = m_found.emplace(key, Make(key)).first;
    }
    m_lastName = std::move(key);
    m_last = found->second;
    return m_last;
}

std::shared_ptr<const CFileZone> CZoneTable::Make(const std::string& name)
{
    const QByteArray systemName = SystemName(name);
    if (!systemName.isEmpty()) {
        std::shared_ptr<const CFileZone>& zone = m_system[systemName];
        if (!zone)
            zone = MakeSystemZone(systemName, m_currentYear);
        if (zone)
            return zone;
    }
    const auto block = m_blocks.find(name);
    return block == m_blocks.end() ? nullptr : block->second;
}

QByteArray CZoneTable::SystemName(const std::string& name)
{
    if (name.empty() || name.size() > 200)
        return {};
    if (m_systemNames.isEmpty())
        for (const QByteArray& id : QTimeZone::availableTimeZoneIds())
            m_systemNames.insert(id.toLower(), id);
    QByteArray tail = QByteArray(name.data(), qsizetype(name.size())).toLower();
    tail.replace(' ', '_');
    // "/library/version/Europe/Berlin": the last words that are a zone.
    for (;;) {
        const auto known = m_systemNames.constFind(tail);
        if (known != m_systemNames.constEnd())
            return known.value();
        const qsizetype slash = tail.indexOf('/');
        if (slash < 0)
            break;
        tail.remove(0, slash + 1);
    }
    return QTimeZone::windowsIdToDefaultIanaId(QByteArray(name.data(), qsizetype(name.size())));
}
