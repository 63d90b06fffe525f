// Finds items by their subject: a text box above the list of results, which grows while the search
// goes on in slices between the window's events.
// Rows: in the order of their days and times; they own copies of the found items, follow what becomes
//   of the records, and go when another view comes to the front.
// Focus: the text box, a live control over its painted place, or the view itself, which then is the
//   list; these two are the view's stops of the Tab key.
#pragma once
#include "pim/item_search.h"
#include "views/item_row_view.h"

#include <memory>
#include <unordered_map>

class CWaitCursor;
class QLineEdit;

class CSearchView : public CItemRowView, private ISearchSink
{
public:
    static constexpr int kTimerSearch = 1, kTimerFollow = 2;

    CSearchView(IViewHost& host, QWidget* parent);
    ~CSearchView() override;

    int GetViewKind() const override { return kViewSearch; }
    void OnCreate() override;
    void OnClockChanged(int notice) override;
    void OnDataChanged(int dwParam, quint32 uType, quint32 oid) override;
    void Refresh() override;
    void OnResize() override;
    bool FillMenu(QMenu& menu) override;
    bool FillTouchMenu(CTouchMenu& menu) override;
    void FillSoftKeys(CSoftKeyBar& keys) override;
    void OnCommandOpenItem() override;
    void OnDeactivate() override;
    bool WantsBackKey() const override { return IsEditing(); }
    void GetViewButtonText(QString& first, QString& second) const override;
    bool OnViewButton() override; // starts a search, or stops the one that runs
    bool IsTitleTappable() const override { return false; }
    bool UsesDateKeys() const override { return false; }
    void OnCommand(int command) override;
    bool OnKey(int key) override;
    QRect ListArea() const override;

    // For tests and for what drives the view from outside.
    QLineEdit& TextBox() const { return *m_edit; }
    bool IsSearching() const { return m_search != nullptr; }
    const QString& StatusText() const { return m_statusText; }
    CNumberedTimers& Timers() { return m_timers; }

protected:
    void BuildRows() override {} // they are not the cache's
    void PrepareLook() override;
    void PaintEmptyList(QPainter& dc, const QRect& rect) override;
    void PaintView(QPainter& dc, QSize size) override;
    void OnLButtonDown(QPoint at) override;
    bool OnPress(quint32 value, int x, int y) override;
    void OnTap(quint32 value, int x, int y) override;
    void keyPressEvent(QKeyEvent* event) override;
    void keyReleaseEvent(QKeyEvent* event) override;
    bool focusNextPrevChild(bool next) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    // A row that stays where it is on the screen while others come above it.
    struct CAnchor {
        const CPaintingOrderItem* Row = nullptr;
        int Top = 0;
    };

    // ---- the search's sink
    bool ShouldStop() override { return m_cancel; }
    void OnMatch(const CPimItem& item) override;
    void OnProgress() override {} // the slices come from a timer

    void StartSearch();
    void SearchSlice();
    void EndSearch();
    void FollowSlice();
    void ClearResults();
    void ForgetResults();
    CPaintingOrderItem* InsertRow(std::unique_ptr<CPimItem> item);
    void RemoveRow(CPaintingOrderItem* row);
    CPaintingOrderItem* ReplaceRow(CPaintingOrderItem* row);
    CAnchor AnchorRow() const;
    void ShowRows(const CAnchor& anchor);
    void SetStatus(int stringId);
    void RunOptions();

    bool IsEditing() const;
    int LabelHeight() const;
    QRect FieldRect() const; // the text box with its frame
    QRect EditRect() const;
    void PlaceEdit();
    bool OnEditKey(int key);
    bool OnListKey(int key);
    void SelectAndShow(CPaintingOrderItem& row);
    void EnterList(int direction);
    void LeaveEdit();

    CSearchRequest m_request;
    std::unique_ptr<CItemSearch> m_search; // while it runs
    std::unique_ptr<CWaitCursor> m_wait;
    std::weak_ptr<CPropertyVolume> m_searchedIn; // the results are its
    bool m_cancel = false; // the user asked for it to stop
    std::unordered_map<const CPaintingOrderItem*, std::unique_ptr<CPimItem>> m_found;
    int m_followed = 0; // rows that were read anew since the last notice
    QString m_statusText; // where no rows stand
    QLineEdit* const m_edit;
    CNumberedTimers m_timers;
    bool m_pressedBox = false;  // the finger went down on a check box
    bool m_backPressed = false; // in the text box
};
