#include "views/search_options_form.h"
#include "forms/message_dialog.h"
#include "pim/item_search.h"
#include "util/string_ids.h"
#include "util/string_store.h"

#include <algorithm>

namespace
{
using SearchValues = decltype(CSettingsValues::SearchView);

constexpr FieldRowDesc kRows[] = {
    {StrSearchFor, kIconLeft, kRowChoice, kRowHasHeader},
    {StrSearchMode, kIconLeft, kRowChoice, kRowHasHeader},
    {StrSearchStarting, kIconLeft, kRowChoice, kRowHasHeader},
    {StrSearchEnding, kIconLeft, kRowChoice, kRowHasHeader},
    {StrSearchLimit, kIconLeft, kRowChoice, kRowHasHeader},
};

// What a row's choices are called, one string after the other, and where the choice is kept.
constexpr struct CChoices {
    quint32 Id;
    int First, Last;
    qint32 SearchValues::*Field;
} kChoices[] = {
    {StrSearchFor, StrSearchBoth, StrSearchTasks, &SearchValues::SearchType},
    {StrSearchMode, StrSearchStartsWith, StrSearchContains, &SearchValues::SearchMode},
    {StrSearchStarting, StrSearchAny, StrSearchOneYearFromNow, &SearchValues::SearchStart},
    {StrSearchEnding, StrSearchAny, StrSearchOneYearFromNow, &SearchValues::SearchEnd},
};

constexpr qint32 kLimits[] = {10, 25, 50, 100, 250, 500, 1000};

const CChoices* ChoicesOf(quint32 id)
{
    const auto found = std::find_if(std::begin(kChoices), std::end(kChoices),
                                    [id](const CChoices& choices) { return choices.Id == id; });
    return found == std::end(kChoices) ? nullptr : found;
}
} // namespace

CSearchOptionsForm::CSearchOptionsForm()
    : CFieldForm(GetString(StrSearchOptions), kRows), m_values(g_Settings.SearchView),
      m_limits(std::begin(kLimits), std::end(kLimits))
{
    SetTitleFollowsRow(false);
    const auto place = std::lower_bound(m_limits.begin(), m_limits.end(), m_values.SearchLimit);
    if (place == m_limits.end() || *place != m_values.SearchLimit)
        m_limits.insert(place, m_values.SearchLimit);
}

bool CSearchOptionsForm::FillChoices(quint32 id, QStringList& list)
{
    if (const CChoices* choices = ChoicesOf(id)) {
        for (int text = choices->First; text <= choices->Last; ++text)
            list << GetString(text);
        return true;
    }
    for (const qint32 limit : m_limits)
        list << (limit > 0 ? FillText(GetString(StrSearchItemCount), {QString::number(limit)})
                           : GetString(StrSearchAny));
    return true;
}

void CSearchOptionsForm::ExchangeChoice(quint32 id, int& index, bool set)
{
    if (const CChoices* choices = ChoicesOf(id)) {
        (set ? m_values.*choices->Field : index) = set ? index : m_values.*choices->Field;
    } else if (set) {
        m_values.SearchLimit = m_limits[size_t(index)];
    } else {
        index = int(std::find(m_limits.begin(), m_limits.end(), m_values.SearchLimit) - m_limits.begin());
    }
}

bool CSearchOptionsForm::Save()
{
    const int today = GetToday();
    if (SearchDay(m_values.SearchStart, today, kSearchDayFirst) >
        SearchDay(m_values.SearchEnd, today, kSearchDayLast)) {
        CMessageDialog(GetString(StrSearchOrderWrong), GetString(StrSearchOptions),
                       CMessageDialog::Kind::Warning)
            .Run(this);
        return false;
    }
    g_Settings.SearchView = m_values;
    g_Settings.Save();
    return true;
}
