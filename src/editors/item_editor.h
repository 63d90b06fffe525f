// What the editors of appointments and tasks share: the rows of recurrence, privacy and categories,
// which read and write the same values in both.
#pragma once
#include "forms/field_form.h"
#include "pim/items.h"
#include "pim/recurrence_data.h"

class CItemEditor : public CFieldForm
{
public:
    int GetPresetIndex() const { return m_preset; }
    const QString& GetNote() const { return m_note; }

protected:
    CItemEditor(const QString& title, std::span<const FieldRowDesc> table) : CFieldForm(title, table) {}

    virtual CPimItem& Item() = 0;
    virtual DATE PatternDate() = 0; // that the list of recurrences is built from
    // Of a new item: the named category, or without a name what the filter in force includes.
    void SeedCategories(const QString& category);
    void SeedPattern();                   // of a new or plain item, as the date suggests
    void MovePattern(DATE from, DATE to); // the item's own date was moved

    void InitRows() override;
    bool FillChoices(quint32 id, QStringList& list) override;
    void ExchangeText(quint32 id, QString& text, bool set) override;
    void ExchangeChoice(quint32 id, int& index, bool set) override;
    void GetLinkText(quint32 id, QString& text) override;
    void OnLinkTapped(quint32 id) override;
    static void AddStrings(QStringList& list, int first, int count);

    QString m_note;
    int m_preset = 0;
    CRecurrencePatternData m_pattern;
    bool m_patternStored = false; // the writer moves it by itself
};
