// Categories by number and name, in name order, with the colour and icon of the settings.
// Shape: the names are loaded as a whole; an item's numbers are read when the item is, by one
//   seek, or by a walk where items are read in the order of their identifiers.
// Errors: without the databases there are no categories.
#pragma once
#include "pim/items.h"
#include "pim/pim_database.h"
#include "settings/category_names.h"

#include <functional>
#include <map>
#include <memory>
#include <unordered_map>
#include <unordered_set>
#include <vector>

inline const QString kEmptyCategory =
    QStringLiteral("_tes_empty_cat"); // no category, where a text must not be empty

struct CCategory {
    QString Name;
    COLORREF Color = kColorNotSet;
    qint32 Id = -1; // negative: not yet stored
    QString ImageName;
};

class CFilter;
class CSettings;

class CCategoryStore : public ICategoryNames
{
public:
    void Open(std::shared_ptr<CPropertyVolume> volume);
    void Close();
    void Load();
    const CCategory* FindById(qint32 id) const;
    const CCategory* FindByName(const QString& name) const; // ignores case
    int GetCount() const { return int(m_categories.size()); }
    const CCategory* GetAt(int index) const;        // in name order; null past the end
    const CCategory* AddLocal(const QString& name); // one of that name that is there already wins
    const CCategory* Add(const QString& name, qint32 id);
    // Gives those made here a record each, though no item has them yet; what fails stays as it is.
    CStatus StoreLocal();
    // The look of a category; in memory alone until it is saved. A number that none has is ignored.
    void SetColor(qint32 id, COLORREF color);
    void SetImageName(qint32 id, const QString& reference);
    // Called whenever a look has changed, within whatever changed it.
    void SetLookHook(std::function<void()> hook) { m_lookHook = std::move(hook); }
    void SaveColorsAndImages(CSettings& settings) const; // into its map, and that to its file
    void BeginPass();                                    // what was read ahead may be old: look anew
    void ReadItemCategories(CCategorizedRecord& item);
    QString GetNamesText(const CCategorySet& set) const; // joined by ", "
    // A category that was made here has a number of its own until an item with it is saved; this
    // turns such numbers into the stored ones, once there are.
    void PutStoredNumbers(std::vector<CFilter>& filters) const;
    CCategorySet GetSetOfNames(const QString& names) const; // of such a text; unknown names are dropped

    std::optional<qint32> NumberOf(const QString& name) const override;
    std::optional<QString> NameOf(qint32 number) const override;

private:
    using CList = std::vector<std::unique_ptr<CCategory>>;
    CList::const_iterator Place(const QString& name) const;
    void ReadAssociation();
    void SeekAssociation(quint32 itemId);
    void RequireKnown(qint32 number);
    void PutStoredNumbers(CFilter& filter) const;
    void TellLook() const;

    std::function<void()> m_lookHook;
    qint32 m_nextLocalId = -1;
    std::map<qint32, QString> m_localNames; // of those made here, for as long as the volume is open
    CList m_categories;
    std::unordered_map<qint32, CCategory*> m_byId;
    std::unordered_set<qint32> m_missing; // looked for in vain since the last load
    std::shared_ptr<CPropertyVolume> m_volume;
    CPimDatabase m_assoc;

    // The walk: all associations of items after m_askedLast and before m_nextItem are known: none.
    static constexpr quint64 kNoItem = ~quint64(0);
    bool m_walking = false;
    quint32 m_askedLast = 0;
    quint64 m_nextItem = kNoItem;
    qint32 m_nextNumber = -1;
    std::vector<CEPROPVAL> m_rows;
};
