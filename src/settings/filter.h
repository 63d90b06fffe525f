// A named category filter: which categories an item must and must not have.
// Shape: two sets of category numbers with a mode each; the settings file holds names instead.
//   While no category names are known a filter keeps the text it was read from, word for word,
//   so that a program that never opens the volume loses nothing when it saves.
#pragma once
#include "settings/category_names.h"

#include <QString>
#include <set>

class CFilter
{
public:
    enum Mode { kAnyOf = 0, kAllOf = 1, kOnly = 2, kNoCategories = 3 };

    bool IsActive() const;
    void Clear(); // the name stays
    void SetNoCategories();
    bool IsNoCategories() const { return IncludeMode == kNoCategories; }

    // `names` null: only name and modes are understood, the rest is kept as text.
    void FromText(const QString& text, const ICategoryNames* names);
    QString ToText(const ICategoryNames* names) const;

    std::set<qint32> IncludeIds;
    std::set<qint32> ExcludeIds;
    qint32 IncludeMode = kAnyOf;
    qint32 ExcludeMode = kAnyOf;
    QString Name;

private:
    QString m_includeText, m_excludeText; // names not looked up yet
};
