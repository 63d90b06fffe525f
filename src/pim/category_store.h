// Categories by number and name, in name order, with the colour and icon of the settings.
#pragma once
#include "pim/items.h"
#include "platform/property_volume.h"

#include <memory>
#include <vector>

inline const QString kEmptyCategory = QStringLiteral("_tes_empty_cat"); // no category, where a text must not be empty

struct CCategory {
    QString Name;
    COLORREF Color = kColorNotSet;
    qint32 Id = -1; // negative: not yet stored
    QString ImageName;
};

class CCategoryStore
{
public:
    void Open(std::shared_ptr<CPropertyVolume> volume);
    void Close();
    void Load();
    const CCategory* FindById(qint32 id) const;
    const CCategory* FindByName(const QString& name) const; // ignores case
    int GetCount() const { return int(m_categories.size()); }
    const CCategory* GetAt(int index) const; // in name order; null past the end
    const CCategory* AddLocal(const QString& name);
    const CCategory* Add(const QString& name, qint32 id);
    void ReadItemCategories(CCategorizedRecord& item);
    QString GetNamesText(const CCategorySet& set) const; // joined by ", "

private:
    qint32 m_nextLocalId = -1;
    std::vector<std::unique_ptr<CCategory>> m_categories;
    std::shared_ptr<CPropertyVolume> m_volume;
    std::unique_ptr<CPropertyDatabase> m_assoc;
};
