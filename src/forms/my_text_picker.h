// The canned phrases of a field, to choose one and to keep the list.
// A changed list goes into the settings, and these to their file, when the picker closes in any way.
#pragma once
#include "forms/extended_text_entry_dialog.h"
#include "forms/row_list_dialog.h"

#include <QStringList>

class CMyTextPicker : public CRowListDialog
{
public:
    explicit CMyTextPicker(CExtendedTextEntryDialog::Mode mode);
    ~CMyTextPicker() override;
    QString GetText() const { return m_phrases.value(GetSelected()); }
    const QStringList& Phrases() const { return m_phrases; }

protected:
    int GetMenuBarId() const override;
    int RowCount() const override { return int(m_phrases.size()); }
    void PaintRow(QPainter& dc, int index, const QRect& rect, bool selected) override;
    void OnRowTapped(int index, int x, bool wasSelected) override;
    CPaintedPart RowPart(int index) const override;
    void OnCommand(int command) override;
    void OnDone() override;
    void OnKeyUp(int key) override;

private:
    void RunMenu();
    void RunAddMenu();
    void Move(int step);
    void Add(int at);
    void Edit();
    void Remove();
    int PositionOf(int index) const; // on the page, from 1; 0 beyond the ninth

    QStringList& m_kept; // of the settings
    QStringList m_phrases;
};
