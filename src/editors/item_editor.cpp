#include "editors/item_editor.h"
#include "editors/recurrence_editor.h"
#include "forms/extended_text_entry_dialog.h"
#include "pages/category_manager.h"
#include "pim/filter_match.h"
#include "pim/pim_store.h"
#include "settings/settings.h"
#include "util/string_ids.h"
#include "util/string_store.h"

void CItemEditor::AddStrings(QStringList& list, int first, int count)
{
    for (int n = 0; n < count; ++n)
        list << GetString(first + n);
}

void CItemEditor::SeedCategories(const QString& category)
{
    if (category.isEmpty())
        AddIncludesTo(g_Settings.GetActiveFilter(), Item());
    else if (const CCategory* found = PimStore().Categories().FindByName(category))
        Item().Categories.Insert(found->Id);
}

void CItemEditor::SeedPattern()
{
    m_pattern = MakeDefaultPattern(PatternDate());
}

void CItemEditor::MovePattern(DATE from, DATE to)
{
    if (m_patternStored || from == NO_DATE)
        return;
    if (m_pattern == MakeDefaultPattern(from))
        m_pattern = MakeDefaultPattern(to);
    else if (DayNumber(m_pattern.Start) == DayNumber(from))
        m_pattern.Start = DayNumber(to);
}

void CItemEditor::InitRows()
{
    SetRowVisible(StrCustomPattern, m_preset == kPresetCustom, false);
}

bool CItemEditor::FillChoices(quint32 id, QStringList& list)
{
    if (id == StrPrivate)
        AddStrings(list, StrSensitivityNormal, 2);
    else if (id == StrRecurring)
        list = GetPresetTexts(PatternDate());
    else
        return false;
    return true;
}

void CItemEditor::ExchangeText(quint32 id, QString& text, bool set)
{
    QString& held = id == StrNote ? m_note : Item().Subject;
    (set ? held : text) = set ? text : held;
    if (set && id == StrNote)
        Item().HasNote = !m_note.isEmpty();
}

void CItemEditor::ExchangeChoice(quint32 id, int& index, bool set)
{
    if (id == StrPrivate) {
        if (set)
            Item().SetPrivate(index == 1);
        else
            index = Item().IsPrivate() ? 1 : 0;
    } else if (id == StrRecurring) {
        if (!set) {
            index = m_preset;
            return;
        }
        m_preset = index;
        if (m_preset != kPresetCustom)
            Item().Recurrence = m_preset != kPresetNone ? 1 : 0;
        ReloadRow(StrCustomPattern);
        SetRowVisible(StrCustomPattern, m_preset == kPresetCustom);
    }
}

void CItemEditor::GetLinkText(quint32 id, QString& text)
{
    if (id == StrCategories)
        text = PimStore().Categories().GetNamesText(Item().Categories);
    else if (id == StrCustomPattern)
        text = FormatRecurrence(m_pattern);
}

void CItemEditor::OnLinkTapped(quint32 id)
{
    if (id == StrSubject) {
        OpenExtendedText(CExtendedTextEntryDialog::kSubject);
    } else if (id == StrNote) {
        OpenExtendedText(CExtendedTextEntryDialog::kNote);
    } else if (id == StrCategories) {
        CCategoryManager manager(CCategoryManager::Mode::Item, Item().Categories);
        if (manager.Run(this) == kDone)
            Item().Categories = manager.GetCategories();
    } else if (id == StrCustomPattern) {
        CRecurrenceEditor editor(m_pattern);
        if (editor.Run(this) != kDone)
            return;
        m_pattern = editor.GetData();
        m_preset = kPresetCustom;
        Item().Recurrence = 1;
        ReloadRow(StrRecurring);
    }
}
