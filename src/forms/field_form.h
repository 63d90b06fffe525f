// The form of field rows, base of every editor and settings page: lays out, paints and edits any
// row table. It holds no value of the item: a derived form is a static table and a few exchange
// operations, called with a row's id.
// Shape: one set of live child controls lies over the selected row; all other rows are painted.
// Units: row rectangles in surface pixels from the content's top, all edges on multiples of k.
// Ownership: the table is borrowed for the form's life. Rows are built at the first layout, so a
//   derived constructor only seeds its data; SetRowVisible and the like work from InitRows on.
// Errors: an id that no row has is ignored everywhere.
//
//   constexpr FieldRowDesc kRows[] = {
//       {StrSubject, PictureFormSubject, kRowText, 0},
//       {StrAllDay, PictureAllDay, kRowChoice, 0},
//   };
//   class CMyForm : public CFieldForm { public: CMyForm() : CFieldForm(GetString(StrTitle), kRows) {} };
#pragma once
#include "forms/field_row.h"
#include "forms/form_dialog.h"
#include "touch/i_touch_client.h"
#include "touch/touch_navigator.h"

#include <memory>
#include <span>

class CFieldControls;

class CFieldForm : public CFormDialog, private ITouchClient
{
public:
    CFieldForm(const QString& title, std::span<const FieldRowDesc> table);
    ~CFieldForm() override;

    // For tests and whoever shows the form from outside.
    const std::vector<CFieldRow>& Rows() const { return m_rows; }
    int GetSelectedRow() const { return m_selected; } // -1: none
    const CTouchNavigator& Navigator() const { return m_touch; }
    QRect RowRect(quint32 id) const;                  // in the dialog's surface, scrolled; empty: hidden or unknown
    void SelectRow(int index);                        // commits the old one; a header or hidden row is refused

protected:
    // ---- what a derived form brings; the defaults do nothing
    virtual void InitRows() {}
    virtual bool FillChoices(quint32 /*id*/, QStringList& /*list*/) { return false; }
    // `set` false: copy the value into the argument; true: store it.
    virtual void ExchangeText(quint32 /*id*/, QString& /*text*/, bool /*set*/) {}
    virtual void ExchangeDate(quint32 /*id*/, DATE& /*date*/, bool /*set*/) {}
    virtual void ExchangeChoice(quint32 /*id*/, int& /*index*/, bool /*set*/) {}
    virtual void GetLinkText(quint32 /*id*/, QString& /*text*/) {}
    // A Link or Color row was tapped, or Enter pressed on a Link, Color or Text row. The row is
    // committed before and read again after. Other dialogs may run here.
    virtual void OnLinkTapped(quint32 /*id*/) {}
    virtual void ExchangeInclude(quint32 /*id*/, bool& /*included*/, bool /*set*/) {}
    virtual void ExchangeColor(quint32 /*id*/, int /*colorNumber*/, COLORREF& /*color*/, bool /*set*/) {}
    virtual void RelayoutRows(); // call the base: lays out, paints and places the controls anew
    virtual bool Save() { return false; } // true closes the form with kDone
    // The pickers, behind Enter and a tap on a date or time; true when `date` has a new value.
    virtual bool PickDate(DATE& date);
    virtual bool PickTime(DATE& time);

    // ---- what a derived form uses
    void SetRowVisible(quint32 id, bool visible, bool relayoutNow = true); // its header too
    void ReloadRow(quint32 id, bool fillChoices = true); // through the exchange operations
    void ReloadAllRows();
    void SetRowType(quint32 id, FieldRowType type);
    void RemoveRow(quint32 id); // for good, its header too
    void SetTitleFollowsRow(bool follows) { m_titleFollowsRow = follows; } // on at first
    bool CommitRow();                                                      // the selected one
    // The live text of the selected Text row, as text aids take it and give it back; the caret -1
    // goes to the end. Nothing when no Text row is selected.
    struct EditedText {
        QString Text;
        int SelectionStart = 0, SelectionEnd = 0;
    };
    EditedText GetEditedText() const;
    void SetEditedText(const QString& text, int caret = -1);
    // The text aids for the selected Text row; `mode` is a CExtendedTextEntryDialog::Mode.
    void OpenExtendedText(int mode);

    bool SlidesIn() const override { return true; }
    int ContentHeight(int width) override;
    void OnLayout(const QRect& client) override;
    void PaintContent(QPainter& dc, const QRect& client) override;
    void TakeFocus() override;
    int ContentPartCount() const override; // the rows that are not hidden
    CPaintedPart ContentPart(int index) const override;
    void PressContentPart(int index) override;
    void OnDone() override; // commits, then Save
    void OnKey(int key) override;
    void OnLButtonDown(QPoint at) override;
    void OnMouseMove(QPoint at) override;
    void OnLButtonUp(QPoint at) override;
    void OnWheel(int angle) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    int RenderContent(quint32, QPainter& dc, quint32, int scroll, int width, int height) override;
    bool OnPress(quint32, int x, int y) override;
    void OnDragStart(quint32) override {}
    void OnTap(quint32, int x, int y) override;

    void BuildRows();
    void LayoutRows(int width);
    void LoadRow(CFieldRow& row, bool fillChoices);
    int IndexOf(quint32 id) const;
    int RowAt(int y) const;
    int VisibleRow(int index) const; // -1 past the last
    void TapRow(int index);
    int NextRow(int from, int step) const;
    void MoveSelection(int step);
    void TabFrom(QWidget* control, int step);
    void EnterRow(int index);
    void FocusControl(QWidget* control, Qt::FocusReason reason); // another of the row's
    void ShowEntered();
    void ShowSelected();
    void PlaceControls(bool valuesToo);
    void Activate(int index);
    void ToggleInclude(int index);
    void StepChoice(int step);
    void OpenPicker(bool date);
    void ChoiceMade();
    bool OnControlKey(QWidget* control, int key);
    bool OnDateKey(QWidget* control, int key);
    bool HasRow() const { return m_selected >= 0 && m_selected < int(m_rows.size()); }

    std::span<const FieldRowDesc> m_table;
    std::vector<CFieldRow> m_rows;
    std::unique_ptr<CFieldControls> m_controls;
    CTouchNavigator m_touch;
    int m_selected = -1;
    int m_contentHeight = 0;
    bool m_wasSelected = false; // the row that the finger went down on
    bool m_built = false, m_placing = false, m_committing = false;
    bool m_titleFollowsRow = true;
    quint32 m_valuesOf = 0; // the row whose values the controls hold
};
