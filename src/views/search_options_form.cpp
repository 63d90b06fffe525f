#include "views/search_options_form.h"
#include "forms/message_dialog.h"
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

constexpr qint32 kLimits[] = {5, 10, 20, 50, 100};

const CChoices* ChoicesOf(quint32 id)
{
    const auto found = std::find_if(std::begin(kChoices), std::end(kChoices),
                                    [id](const CChoices& choices) { return choices.Id == id; });
    return found == std::end(kChoices) ? nullptr : found;
}
} // namespace

CSearchOptionsForm::CSearchOptionsForm()
    : CFieldForm(GetString(StrSearchOptions), kRows), m_values(g_Settings.SearchView)
{
    SetTitleFollowsRow(false);
}

bool CSearchOptionsForm::FillChoices(quint32 id, QStringList& list)
{
    if (const CChoices* choices = ChoicesOf(id)) {
        for (int text = choices->First; text <= choices->Last; ++text)
            list << GetString(text);
        return true;
    }
    for (const qint32 limit : kLimits)
        list << FillText(GetString(StrSearchItemCount), {QString::number(limit)});
    return true;
}

void CSearchOptionsForm::ExchangeChoice(quint32 id, int& index, bool set)
{
    if (const CChoices* choices = ChoicesOf(id)) {
        (set ? m_values.*choices->Field : index) = set ? index : m_values.*choices->Field;
    } else if (set) {
        m_values.SearchLimit = kLimits[index];
    } else {
        // A count that is not offered shows the first one, and stays until another is chosen.
        const auto* const place = std::find(std::begin(kLimits), std::end(kLimits), m_values.SearchLimit);
        index = place == std::end(kLimits) ? 0 : int(place - kLimits);
    }
}

bool CSearchOptionsForm::Save()
{
    // The entries but the first, which bounds nothing, come in the order of time.
    if (m_values.SearchStart != 0 && m_values.SearchEnd != 0 && m_values.SearchStart >= m_values.SearchEnd) {
        CMessageDialog(GetString(StrSearchOrderWrong), GetString(StrSearchOptions),
                       CMessageDialog::Kind::Warning)
            .Run(this);
        return false;
    }
    g_Settings.SearchView = m_values;
    g_Settings.Save();
    return true;
}
