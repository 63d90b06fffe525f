#include "pages/filter_manager.h"
#include "drawing/picture_ids.h"
#include "pages/category_manager.h"
#include "pim/pim_store.h"
#include "util/string_ids.h"
#include "util/string_store.h"

namespace
{
constexpr FieldRowDesc kRows[] = {
    {StrFilterNumber, kIconNone, kRowHeader, 0},
    {CFilterManager::kNumber, kIconNone, kRowChoice, 0},
    {StrFilterName, kIconNone, kRowHeader, 0},
    {CFilterManager::kName, kIconNone, kRowText, 0},
    {StrIncludeCategories, kIconNone, kRowHeader, 0},
    {CFilterManager::kIncludeMode, kIconNone, kRowChoice, 0},
    {StrIncludedNames, PictureFormCategories, kRowLink, 0},
    {StrExcludeCategories, kIconNone, kRowHeader, 0},
    {CFilterManager::kExcludeMode, kIconNone, kRowChoice, 0},
    {StrExcludedNames, PictureFormCategories, kRowLink, 0},
};

CCategorySet SetOf(const std::set<qint32>& ids)
{
    CCategorySet set;
    for (const qint32 id : ids)
        set.Insert(id);
    return set;
}
} // namespace

CFilterManager::CFilterManager(std::vector<CFilter>& filters, int index)
    : CFieldForm(GetString(StrCustomFilter), kRows), m_filters(filters)
{
    SetTitleFollowsRow(false);
    Q_ASSERT(!filters.empty());
    ShowFilter(index >= 0 && size_t(index) < filters.size() ? index : 0);
}

void CFilterManager::ShowFilter(int index)
{
    m_index = index;
    // A file that others wrote may hold what would leave no row to change it by.
    const int include = Filter().IncludeMode;
    if ((include == CFilter::kOnly || include == CFilter::kNoCategories) &&
        Filter().ExcludeMode == CFilter::kOnly)
        Filter().ExcludeMode = CFilter::kAnyOf;
}

std::set<qint32>& CFilterManager::IdsOf(quint32 id) const
{
    return id == StrIncludedNames ? Filter().IncludeIds : Filter().ExcludeIds;
}

// ---- rows

void CFilterManager::InitRows()
{
    RelayoutRows();
}

void CFilterManager::RelayoutRows()
{
    const int include = Filter().IncludeMode, exclude = Filter().ExcludeMode;
    const bool includes = exclude != CFilter::kOnly;
    const bool excludes = include != CFilter::kOnly && include != CFilter::kNoCategories;
    SetRowVisible(StrIncludeCategories, includes, false);
    SetRowVisible(kIncludeMode, includes, false);
    SetRowVisible(StrIncludedNames, includes && include != CFilter::kNoCategories, false);
    SetRowVisible(StrExcludeCategories, excludes, false);
    SetRowVisible(kExcludeMode, excludes, false);
    SetRowVisible(StrExcludedNames, excludes, false);
    CFieldForm::RelayoutRows();
}

CPaintedPart CFilterManager::ContentPart(int index) const
{
    CPaintedPart part = CFieldForm::ContentPart(index);
    if (part.Name.isEmpty() && index > 0) // the header above says what it is
        part.Name = CFieldForm::ContentPart(index - 1).Name;
    return part;
}

// ---- values

bool CFilterManager::FillChoices(quint32 id, QStringList& list)
{
    if (id == kNumber) {
        for (size_t n = 1; n <= m_filters.size(); ++n)
            list << QString::number(n);
        return true;
    }
    const int last = id == kIncludeMode ? StrFilterNoCategories : StrFilterOnly;
    for (int text = StrFilterAnyOf; text <= last; ++text)
        list << GetString(text);
    return true;
}

void CFilterManager::ExchangeText(quint32, QString& text, bool set)
{
    (set ? Filter().Name : text) = set ? text : Filter().Name;
}

void CFilterManager::ExchangeChoice(quint32 id, int& index, bool set)
{
    if (id == kNumber) {
        if (!set) {
            index = m_index;
        } else if (index != m_index) {
            ShowFilter(index);
            ReloadAllRows();
            RelayoutRows();
        }
    } else if (id == kIncludeMode) {
        set ? SetIncludeMode(index) : void(index = Filter().IncludeMode);
    } else {
        set ? SetExcludeMode(index) : void(index = Filter().ExcludeMode);
    }
}

void CFilterManager::SetIncludeMode(int mode)
{
    Filter().IncludeMode = mode;
    if (mode == CFilter::kOnly) {
        Filter().ExcludeMode = CFilter::kAnyOf;
        ReloadRow(kExcludeMode);
    }
    RelayoutRows();
}

void CFilterManager::SetExcludeMode(int mode)
{
    Filter().ExcludeMode = mode;
    if (mode == CFilter::kOnly) {
        Filter().IncludeMode = CFilter::kAnyOf;
        ReloadRow(kIncludeMode);
    }
    RelayoutRows();
}

void CFilterManager::GetLinkText(quint32 id, QString& text)
{
    text = PimStore().Categories().GetNamesText(SetOf(IdsOf(id)));
}

void CFilterManager::OnLinkTapped(quint32 id)
{
    if (id != StrIncludedNames && id != StrExcludedNames)
        return;
    CCategoryManager manager(CCategoryManager::Mode::Filter, SetOf(IdsOf(id)));
    if (manager.Run(this) != kDone)
        return;
    const CCategorySet& chosen = manager.GetCategories();
    IdsOf(id) = std::set<qint32>(chosen.begin(), chosen.end());
}
