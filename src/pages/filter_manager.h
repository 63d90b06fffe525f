// The form "Custom Filter": one of the numbered filters at a time, with its name, the categories that
// an item must have, and those it must not have.
// Shape: "Only" on one side puts the other side out of use, "No Categories" leaves nothing to exclude;
//   rows without a meaning are hidden.
// Ownership: works on the caller's list, which must not be empty and outlives the form; the caller
//   gives a copy and takes that over when Run answered kDone.
#pragma once
#include "forms/field_form.h"
#include "settings/filter.h"

class CFilterManager : public CFieldForm
{
public:
    // Rows without a label of their own.
    enum Row : quint32 { kIncludeMode = 1, kExcludeMode = 2, kNumber = 40645, kName = 40646 };

    CFilterManager(std::vector<CFilter>& filters, int index); // past the ends: the first filter
    int GetIndex() const { return m_index; }                  // the filter that is shown

protected:
    void InitRows() override;
    bool FillChoices(quint32 id, QStringList& list) override;
    void ExchangeText(quint32 id, QString& text, bool set) override;
    void ExchangeChoice(quint32 id, int& index, bool set) override;
    void GetLinkText(quint32 id, QString& text) override;
    void OnLinkTapped(quint32 id) override;
    void RelayoutRows() override;
    bool Save() override { return true; }
    CPaintedPart ContentPart(int index) const override;

private:
    CFilter& Filter() const { return m_filters[size_t(m_index)]; }
    std::set<qint32>& IdsOf(quint32 id) const;
    void ShowFilter(int index);
    void SetIncludeMode(int mode);
    void SetExcludeMode(int mode);

    std::vector<CFilter>& m_filters;
    int m_index = 0;
};
