// All tasks as one list that scrolls, in groups with titles that can be collapsed when the first sort
// says so, over a pane that shows the selected one.
// Rows: of kind 0 a group's title, else of a task; a task of several categories has a row in each.
// Ownership: rows borrow from the store's groups, so a hidden view keeps none.
#pragma once
#include "drawing/alpha_image.h"
#include "pim/task_list.h"
#include "views/item_row_view.h"
#include "views/task_preview_pane.h"
#include "views/task_row_layout.h"

#include <memory>
#include <set>

class CTasksView : public CItemRowView
{
public:
    CTasksView(IViewHost& host, QWidget* parent);

    int GetViewKind() const override { return kViewTasks; }
    void OnCreate() override;
    void OnClockChanged(int notice) override;
    void OnDataChanged(int dwParam, quint32 uType, quint32 oid) override;
    void Refresh() override;
    void OnDeactivate() override;
    bool FillMenu(QMenu& menu) override;
    bool FillTouchMenu(CTouchMenu& menu) override;
    void FillSoftKeys(CSoftKeyBar& keys) override;
    void RebuildSoftKeys(CSoftKeyBar& keys) override;
    bool IsTitleTappable() const override { return false; }
    bool UsesDateKeys() const override { return false; }
    void OnCommand(int command) override;
    bool OnKey(int key) override;
    QRect ListArea() const override;

    // Whether the first sort makes groups, whose titles then stand in the list.
    static bool IsGrouped();
    // The menus of commands 1249, and 1250, 1252 and 1253 (levels 0 to 2).
    static void FillShowMenu(CTouchMenu& menu);
    static void FillSortMenu(CTouchMenu& menu, int level);
    // Null without one.
    const CTaskPreviewPane* PreviewPane() const { return m_pane.get(); }

protected:
    void BuildRows() override;
    void PrepareLook() override;
    void PaintEmptyList(QPainter& dc, const QRect& rect) override;
    void PaintView(QPainter& dc, QSize size) override;
    void OnSelectionChanged() override;
    void RunItemMenu() override;
    QSize CheckBoxMargin() const override;
    QString NameOfOwnRow(const CPaintingOrderItem& row) const override;
    void OnLButtonDown(QPoint at) override;
    void OnLButtonUp(QPoint at) override;
    bool OnPress(quint32 value, int x, int y) override;
    void OnTap(quint32 value, int x, int y) override;
    bool PaintsItemRows() const override { return true; }
    int PaintOwnRow(QPainter* dc, CPaintingOrderItem& row, const QRect& rect, bool selected) override;

private:
    struct CPlace { // of a row, over any change of the groups
        CItemIdentity Item;
        QString Group;
        bool IsTitle = false;
        bool IsNone() const { return Item.IsNull() && !IsTitle; }
        bool operator==(const CPlace&) const = default;
    };
    struct CTaskIcon {
        int ImageId = 0;                   // of a status, or
        const CAlphaImage* Icon = nullptr; // of a category
    };

    CPlace PlaceOf(const CPaintingOrderItem* row) const;
    CPaintingOrderItem* FindRow(const CPlace& place) const;
    void RebuildRows(CPlace select); // a copy: selecting writes m_place
    bool ShowsRow(const CPaintingOrderItem& row) const;
    bool IsCollapsed(const CTaskGroup& group) const;
    void ToggleGroup(const CPaintingOrderItem& title);
    void CollapseAll(bool collapse);
    void SetItemsToView(int command);
    void RunChoice(CTouchMenu& menu);
    void UpdateTasksTitle();
    int ToggleImage() const; // of the third soft key
    QRect PaneArea() const;

    int PaintGroupTitle(QPainter* dc, const CTaskGroup& group, const QRect& rect, bool selected) const;
    int PaintTask(QPainter* dc, CPaintingOrderItem& row, const QRect& rect, bool selected) const;
    void PaintTaskTexts(QPainter& dc, const CTask& task, const CTaskRowLayout& layout, bool selected) const;
    std::vector<CTaskIcon> IconsOf(const CTask& task) const;

    std::set<QString> m_collapsed; // keys of groups
    CPlace m_place;                // of the selected row; outlives it
    CPlace m_tapped;               // what the last tap selected
    bool m_paneTouched = false;    // the finger went down on the pane
    int m_matchDay = 0;            // for which the store's matches were made
    int m_keyImage = 0;
    std::unique_ptr<CTaskPreviewPane> m_pane;
    int m_taskRowHeight = 0, m_titleRowHeight = 0; // without the line between rows
    int m_dateColumnWidth = 0, m_countWidth = -1;
    struct {
        COLORREF Back = 0, TitleBack = 0, TitleText = 0, TaskBack = 0, Highlight = 0;
        COLORREF Regular = 0, Overdue = 0, Undated = 0, SelectedText = 0;
    } m_colors;
};
