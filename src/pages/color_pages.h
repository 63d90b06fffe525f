// The colours of the scheme, to be changed one by one: a list of eight pages, and the pages.
// Each edits a copy, taken back by "Done"; the scheme is the caller's and outlives the dialogs.
#pragma once
#include "forms/field_form.h"
#include "forms/row_list_dialog.h"
#include "settings/color_scheme.h"

enum class ColorPageId { General, Status, TaskStatus, Daily, List, Weekly, Monthly, Tasks };
constexpr int kColorPageCount = 8;

class CColorPage : public CFieldForm
{
public:
    CColorPage(ColorPageId page, CColorScheme& scheme);
    static QString TitleOf(ColorPageId page);

protected:
    int GetMenuBarId() const override;
    void OnCommand(int command) override;
    void ExchangeColor(quint32 id, int colorNumber, COLORREF& color, bool set) override;
    void OnLinkTapped(quint32 id) override;
    bool Save() override;

private:
    CColorScheme& m_target;
    CColorScheme m_scheme;
};

class CColorPagesDialog : public CRowListDialog
{
public:
    explicit CColorPagesDialog(CColorScheme& scheme);

protected:
    int GetMenuBarId() const override;
    void OnCommand(int command) override;
    int RowCount() const override { return kColorPageCount; }
    void PaintRow(QPainter& dc, int index, const QRect& rect, bool selected) override;
    void OnRowTapped(int index, int x, bool wasSelected) override;
    CPaintedPart RowPart(int index) const override;
    void OnDone() override;

private:
    CColorScheme& m_target;
    CColorScheme m_scheme;
};
