// Seven days as one list that scrolls: a title row for each day, under it the day's items or, without
// any, a placeholder. A day can be collapsed to its title.
// Rows: of kind 0 a title, of kind 1 a placeholder, else of the item's kind.
#pragma once
#include "views/item_row_view.h"

class CDayItems;

class CListView : public CItemRowView
{
public:
    CListView(IViewHost& host, QWidget* parent);

    void OnCreate() override;
    int GetViewKind() const override { return kViewList; }
    OverlayUnit GetOverlayUnit() const override { return kOverlayWeeks; }
    void OnClockChanged(int notice) override;
    void OnDataChanged(int dwParam, quint32 uType, quint32 oid) override;
    void Refresh() override;
    bool FillMenu(QMenu& menu) override;
    bool FillTouchMenu(CTouchMenu& menu) override;
    void OnCommand(int command) override;
    void SetCursorDate(DATE date) override;
    void MoveDate(int delta) override;
    void GoToToday() override;
    bool OnKey(int key) override;

    int FirstDay() const { return m_firstDay; }
    // Whether a tap at that x, on the row of a title, opens or closes its day.
    bool IsOnExpandBox(int x) const;

protected:
    void BuildRows() override;
    void PrepareLook() override;
    void PaintEmptyList(QPainter& dc, const QRect& rect) override;
    void OnRowTap(QPoint at) override;
    void RunItemMenu() override;
    QSize CheckBoxMargin() const override;
    QString NameOfOwnRow(const CPaintingOrderItem& row) const override;
    bool OnPress(quint32 value, int x, int y) override;
    int PaintOwnRow(QPainter* dc, CPaintingOrderItem& row, const QRect& rect, bool selected) override;

private:
    class CPlaceholder : public CPimRecord
    {
    public:
        int GetKind() const override { return 1; }
    };
    struct CPlace { // of a row, while rows are built anew
        CItemIdentity Item;
        int Day = 0;
    };

    bool SetRange(int day); // true when other days show now, or items were loaded
    void AddDay(CDayItems& day);
    bool ShowsDay(const CDayItems& day) const;
    CPlace SelectedPlace() const;
    CPaintingOrderItem* FindRow(const CPlace& place) const;
    void RebuildRows(const CPlace& select, bool keepScroll);
    void FollowSelection(); // the cursor date goes to the selected row's day
    void GoToDay(int day);
    void MoveSelection(int direction);
    void ActivateRow();
    void ToggleDay(const CPaintingOrderItem& title);
    void CollapseAll(bool collapse);
    void ShowSelectedDay();
    void UpdateListTitle();

    int TitleHeight() const;
    int PaintDayTitle(QPainter* dc, const CDayItems& day, const QRect& rect, bool selected) const;
    int PaintEmptyRow(QPainter* dc, const QRect& rect, bool selected) const;

    int m_firstDay = 0;
    CPlaceholder m_placeholder;
    struct {
        COLORREF General = 0, Subject = 0, SelectedText = 0, Selection = 0;
        COLORREF TitleBack = 0, TitleText = 0, TimelineBack = 0, TimelineBorder = 0;
    } m_colors;
};
