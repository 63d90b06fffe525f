#include "pim/filter_match.h"

#include <algorithm>

bool MatchesFilter(const CFilter& filter, const CCategorySet& categories)
{
    const auto has = [&categories](qint32 number) { return categories.Contains(number); };
    const auto hasAny = [&has](const std::set<qint32>& ids) {
        return std::any_of(ids.begin(), ids.end(), has);
    };
    const auto hasAll = [&has](const std::set<qint32>& ids) {
        return std::all_of(ids.begin(), ids.end(), has);
    };
    const size_t count = size_t(std::distance(categories.begin(), categories.end()));

    switch (filter.IncludeMode) {
    case CFilter::kNoCategories:
        return count == 0;
    case CFilter::kAllOf:
    case CFilter::kOnly:
        if (!hasAll(filter.IncludeIds) ||
            (filter.IncludeMode == CFilter::kOnly && filter.IncludeIds.size() != count))
            return false;
        break;
    default:
        if (!filter.IncludeIds.empty() && !hasAny(filter.IncludeIds))
            return false;
    }
    // An empty set of exclusions counts as had in full by every item.
    if (filter.ExcludeMode == CFilter::kAnyOf)
        return !hasAny(filter.ExcludeIds);
    if (!hasAll(filter.ExcludeIds))
        return true;
    return filter.ExcludeMode == CFilter::kOnly && filter.ExcludeIds.size() != count;
}

void AddIncludesTo(const CFilter& filter, CCategorizedRecord& item)
{
    for (const qint32 number : filter.IncludeIds)
        item.Categories.Insert(number);
}
