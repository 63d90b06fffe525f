// Whether an item passes a category filter: the one place that decides `Visible`.
#pragma once
#include "pim/items.h"
#include "settings/filter.h"

bool MatchesFilter(const CFilter& filter, const CCategorySet& categories);
// What a new item gets, so that it shows under the filter it was made under.
void AddIncludesTo(const CFilter& filter, CCategorizedRecord& item);
