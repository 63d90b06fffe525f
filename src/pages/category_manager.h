// The categories of an item, of a filter, or all of them: checks them, adds new ones, keeps their
// icons and colours.
// Shape: a field for a new name above the list; the soft key "Options" opens what can be done.
// A category that was added is known to the volume only once an item with it is saved; until then
//   its number is negative, and GetNames tells it by name.
#pragma once
#include "forms/row_list_dialog.h"
#include "pim/items.h"

#include <functional>
#include <vector>

class QLineEdit;

class CCategoryManager : public CRowListDialog
{
public:
    enum class Mode { Item, Filter, Manage };

    explicit CCategoryManager(Mode mode = Mode::Manage, const CCategorySet& checked = {});
    const CCategorySet& GetCategories() const { return m_checked; } // take them when Run answered kDone
    QString GetNames() const; // joined by ", ", as the object model takes them

    QLineEdit* Edit() const { return m_edit; }
    bool IsAdding() const; // the field has the keyboard
    bool IsChecked(int index) const { return m_lines[size_t(index)].Checked; }
    QString LineText(int index) const;
    QRect BoxColumn(int index) const; // in the dialog's surface
    QRect ColorColumn(int index) const;
    QRect IconColumn(int index) const;

protected:
    int GetMenuBarId() const override;
    int RowCount() const override;
    void PaintRow(QPainter& dc, int index, const QRect& rect, bool selected) override;
    void OnRowTapped(int index, int x, bool wasSelected) override;
    void OnRowEntered(int index) override;
    bool ShowsSelection() const override { return !IsAdding() && !m_lines.empty(); }
    int HeadHeight(int width) override;
    void PaintHead(QPainter& dc, const QRect& rect) override;
    CPaintedPart RowPart(int index) const override;
    void OnLayout(const QRect& client) override;
    void TakeFocus() override;
    void OnCommand(int command) override;
    void OnDone() override;
    void OnKey(int key) override;
    void OnLButtonDown(QPoint at) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

    // Icons and colours are chosen on pages of their own; false: nothing was chosen.
    virtual bool PickIcon(QString& reference);
    virtual bool PickColor(COLORREF& color);

private:
    struct CLine {
        qint32 Id = -1;
        QString Name;
        bool Checked = false;
    };
    void FocusOn(QWidget* widget);
    void FollowFocus();
    void Add(bool ask);
    void Toggle(int index);
    void RunMenu();
    void SetIcon();
    void SetColor();
    void SetLook(std::function<void(qint32 id)> put);
    qint32 IdOf(const CLine& line) const; // now: a stored one may have taken the place of ours
    void Say(int textId, int captionId);

    Mode m_mode;
    CCategorySet m_checked;
    std::vector<CLine> m_lines;
    QLineEdit* m_edit;
};
