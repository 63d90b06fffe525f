#include "pim/category_store.h"

#include "platform/locale.h"
#include "records/property_numbers.h"
#include "settings/settings.h"

#include <algorithm>
#include <utility>

namespace
{
// So many records read in sequence cost as much as one seek.
constexpr int kWalkAtMost = 12;
} // namespace

void CCategoryStore::Open(std::shared_ptr<CPropertyVolume> volume)
{
    m_volume = std::move(volume);
    m_assoc.Open(m_volume, kCategoryAssocDatabase, true, {{Prop::AssocItem, Prop::AssocCategory}, true});
    m_walking = false;
    Load();
}

void CCategoryStore::Close()
{
    m_assoc.Close();
    m_volume.reset();
    m_categories.clear();
    m_byId.clear();
    m_missing.clear();
    m_localNames.clear();
    m_walking = false;
}

void CCategoryStore::Load()
{
    const CList before = std::exchange(m_categories, {});
    m_byId.clear();
    m_missing.clear();
    CPimDatabase database;
    if (database.Open(m_volume, kCategoryDatabase, true) && database.Seek(SeekType::Beginning) != 0) {
        static constexpr CEPROPID kRows[] = {Prop::CategoryNumber, Prop::CategoryName};
        std::vector<CEPROPVAL> rows;
        while (database.ReadRecordProps(kRows, rows) != 0) {
            if (rows[0].Found() && rows[1].Found() && qint32(rows[0].Number) != -1 && !rows[1].Text.isEmpty())
                Add(rows[1].Text, qint32(rows[0].Number));
        }
    }
    // An editor or a filter may hold the number of one that is not stored yet, or was not.
    for (const auto& [id, name] : m_localNames)
        Add(name, id);
    // A look that was chosen but not saved yet is in memory alone.
    for (const auto& old : before) {
        if (const auto at = Place(old->Name);
            at != m_categories.end() && CompareText((*at)->Name, old->Name) == 0) {
            (*at)->Color = old->Color;
            (*at)->ImageName = old->ImageName;
        }
    }
    PutStoredNumbers(g_Settings.m_filters);
    PutStoredNumbers(g_Settings.m_activeFilter);
}

// ---- names and numbers

CCategoryStore::CList::const_iterator CCategoryStore::Place(const QString& name) const
{
    return std::partition_point(m_categories.begin(), m_categories.end(), [&name](const auto& category) {
        return CompareText(category->Name, name) < 0;
    });
}

const CCategory* CCategoryStore::FindById(qint32 id) const
{
    const auto at = m_byId.find(id);
    return at != m_byId.end() ? at->second : nullptr;
}

const CCategory* CCategoryStore::FindByName(const QString& name) const
{
    const auto at = Place(name);
    return at != m_categories.end() && CompareText((*at)->Name, name) == 0 ? at->get() : nullptr;
}

const CCategory* CCategoryStore::GetAt(int index) const
{
    return index >= 0 && index < GetCount() ? m_categories[size_t(index)].get() : nullptr;
}

const CCategory* CCategoryStore::AddLocal(const QString& name)
{
    if (const CCategory* known = FindByName(name))
        return known;
    m_localNames[m_nextLocalId] = name;
    return Add(name, m_nextLocalId--);
}

CStatus CCategoryStore::StoreLocal()
{
    CStatus status;
    bool stored = false;
    for (const auto& [id, name] : m_localNames) {
        const CCategory* const category = FindById(id);
        if (!m_volume || !status || !category || category->Id >= 0)
            continue;
        const CEPROPVAL row(Prop::CategoryName, name);
        CEOID oid = 0;
        status = m_volume->WriteRecord(kCategoryDatabase, 0, {&row, 1}, {}, &oid);
        stored = stored || status;
    }
    if (stored)
        Load();
    return status;
}

const CCategory* CCategoryStore::Add(const QString& name, qint32 id)
{
    const auto at = Place(name);
    if (at != m_categories.end() && CompareText((*at)->Name, name) == 0) {
        // A second record of the same name: its number stands for the same category.
        m_byId.emplace(id, at->get());
        return at->get();
    }
    auto category = std::make_unique<CCategory>();
    category->Name = name;
    category->Id = id;
    const auto settings = g_Settings.m_categories.find(name);
    if (settings != g_Settings.m_categories.end()) {
        category->Color = settings->second.Color;
        category->ImageName = settings->second.ImageName;
    }
    m_byId[id] = category.get();
    return m_categories.insert(at, std::move(category))->get();
}

void CCategoryStore::SetColor(qint32 id, COLORREF color)
{
    if (const auto category = m_byId.find(id); category != m_byId.end())
        category->second->Color = color;
    TellLook();
}

void CCategoryStore::SetImageName(qint32 id, const QString& reference)
{
    if (const auto category = m_byId.find(id); category != m_byId.end())
        category->second->ImageName = reference;
    TellLook();
}

void CCategoryStore::TellLook() const
{
    if (m_lookHook)
        m_lookHook();
}

void CCategoryStore::SaveColorsAndImages(CSettings& settings) const
{
    auto looks = settings.m_categories;
    for (const auto& category : m_categories) {
        const CCategorySettings look{category->ImageName, category->Color};
        if (look == CCategorySettings())
            looks.erase(category->Name);
        else
            looks[category->Name] = look;
    }
    if (looks == settings.m_categories)
        return;
    settings.m_categories = std::move(looks);
    settings.Save();
}

QString CCategoryStore::GetNamesText(const CCategorySet& set) const
{
    QString text;
    for (const qint32 number : set) {
        const CCategory* category = FindById(number);
        if (category)
            text += (text.isEmpty() ? QString() : QStringLiteral(", ")) + category->Name;
    }
    return text;
}

void CCategoryStore::PutStoredNumbers(CFilter& filter) const
{
    for (std::set<qint32>* ids : {&filter.IncludeIds, &filter.ExcludeIds}) {
        for (const auto& [id, name] : m_localNames) {
            if (const CCategory* category = FindById(id); category && ids->erase(id))
                ids->insert(category->Id);
        }
    }
}

void CCategoryStore::PutStoredNumbers(std::vector<CFilter>& filters) const
{
    for (CFilter& filter : filters)
        PutStoredNumbers(filter);
}

CCategorySet CCategoryStore::GetSetOfNames(const QString& names) const
{
    CCategorySet set;
    for (const QString& name : names.split(u',')) {
        if (const CCategory* category = FindByName(name.trimmed()))
            set.Insert(category->Id);
    }
    return set;
}

std::optional<qint32> CCategoryStore::NumberOf(const QString& name) const
{
    const CCategory* category = FindByName(name);
    return category ? std::optional(category->Id) : std::nullopt;
}

std::optional<QString> CCategoryStore::NameOf(qint32 number) const
{
    const CCategory* category = FindById(number);
    return category ? std::optional(category->Name) : std::nullopt;
}

// ---- the categories of an item

void CCategoryStore::BeginPass()
{
    m_walking = false;
}

void CCategoryStore::ReadAssociation()
{
    static constexpr CEPROPID kRows[] = {Prop::AssocItem, Prop::AssocCategory};
    if (m_assoc.ReadRecordProps(kRows, m_rows) == 0) {
        m_nextItem = kNoItem;
        return;
    }
    m_nextItem = quint32(m_rows[0].Number);
    m_nextNumber = m_rows[1].Found() ? qint32(m_rows[1].Number) : -1;
}

void CCategoryStore::SeekAssociation(quint32 itemId)
{
    m_nextItem = kNoItem;
    if (m_assoc.Seek(SeekType::ValueGreaterOrEqual, {Prop::AssocItem, qint64(itemId)}) != 0)
        ReadAssociation();
}

void CCategoryStore::RequireKnown(qint32 number)
{
    if (m_byId.contains(number) || m_missing.contains(number))
        return;
    // Added elsewhere since the names were loaded, or its record is gone.
    std::unordered_set<qint32> missing = std::move(m_missing);
    Load();
    m_missing = std::move(missing);
    if (!m_byId.contains(number))
        m_missing.insert(number);
}

void CCategoryStore::ReadItemCategories(CCategorizedRecord& item)
{
    const quint32 id = item.ItemId;
    if (!m_walking || id <= m_askedLast) {
        SeekAssociation(id);
    } else {
        for (int i = 0; i < kWalkAtMost && m_nextItem < id; ++i)
            ReadAssociation();
        if (m_nextItem < id)
            SeekAssociation(id);
    }
    m_walking = true;
    m_askedLast = id;
    for (; m_nextItem == id; ReadAssociation()) {
        if (m_nextNumber == -1)
            continue;
        RequireKnown(m_nextNumber);
        item.Categories.Insert(m_nextNumber);
    }
}
