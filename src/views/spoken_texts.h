// What readers of the screen are told of items and days: their texts in one line.
#pragma once
#include "touch/painted_accessible.h"

#include <QString>

class CDayItems;
class CPimItem;

// Place, role and selection are the caller's to fill in.
CPaintedPart SpokenItem(const CPimItem& item, int day);
QString SpokenDate(int day);
// The date, and how many items the day has, or their texts.
QString SpokenDay(const CDayItems& day, bool withItems);
