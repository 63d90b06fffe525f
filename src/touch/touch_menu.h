// A modal page of rows for the finger, over the whole window of its owner, with soft keys of its
// own. On a wide window the page stays as wide as a hand over the dimmed view.
// Shape: a child of the owner's window with a loop of its own; lives as long as Run.
// The menu sends nothing by itself: Run tells the command, and the owner sends it. Notices may
// arrive meanwhile, so the owner finds its items again afterwards.
#pragma once
#include "touch/i_touch_client.h"
#include "touch/painted_accessible.h"
#include "touch/soft_key_bar.h"
#include "touch/touch_navigator.h"

#include <QString>
#include <QWidget>
#include <vector>

class QEventLoop;

struct CTouchMenuRow {
    QString Text;
    int Command = -1;
    int ImageId = 0; // 0 or -1: no image
    bool Checked = false;
};

// The page's parts in surface pixels, from the window's size; pure.
struct CTouchMenuLayout {
    QRect Page;  // all of it
    QRect Title; // empty without a title
    QRect List;
    QRect Keys;
    // A window wider than a hand gets a card no higher than its rows (`contentHeight`) need.
    static CTouchMenuLayout Of(QSize window, bool hasTitle, int contentHeight);
};

class CTouchMenu : public QWidget, public IPaintedParts, private ITouchClient
{
public:
    CTouchMenu();
    explicit CTouchMenu(const QString& title); // the subject of an item
    ~CTouchMenu() override;

    void AddRow(int stringId, int command, int imageId, bool checked = false);
    void AddRow(const QString& text, int command, int imageId, bool checked = false);
    void AddKey(int command, int imageId, bool flag = false) { m_keys.AddButton(command, imageId, flag); }
    int GetRowCount() const { return int(m_rows.size()); }
    const CTouchMenuRow& GetRow(int index) const { return m_rows[size_t(index)]; }
    const QString& GetTitle() const { return m_title; }

    // Shows the menu until a row or key is chosen; CmdNone when it was left without a choice.
    int Run(QWidget* owner);
    void Choose(int command);     // ends Run
    static CTouchMenu* Current(); // the innermost one that runs, or null

    static int RowHeight(); // with the hair line under it
    CTouchNavigator& Navigator() { return m_touch; }
    CTouchMenuLayout Layout() const;
    QImage Snapshot(); // in surface pixels, without what lies under it

    // The rows, for readers of the screen.
    int GetPartCount() const override { return GetRowCount() + m_keys.GetCount(); }
    CPaintedPart GetPart(int index) const override;
    void PressPart(int index) override;

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void keyReleaseEvent(QKeyEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;
    bool focusNextPrevChild(bool) override { return false; }

private:
    int RenderContent(quint32 value, QPainter& dc, quint32 paintArgument, int scroll, int width,
                      int height) override;
    bool OnPress(quint32 value, int x, int y) override;
    void OnDragStart(quint32 value) override;
    void OnTap(quint32 value, int x, int y) override;

    void OpenOver(QWidget* window);
    void ApplyLayout();
    void ShowCheckedRow();
    int RowAt(int y) const; // content coordinates; -1 past the last row
    QRect RowRect(int index) const;
    void PaintRow(QPainter& dc, const CTouchMenuRow& row, const QRect& rect, bool selected) const;
    QImage PaintPage(const CTouchMenuLayout& layout);
    void SelectRow(int index);
    void SelectByKey(int direction);
    void PressKey(int command);
    void ReleaseOnKeys(QPoint at);

    std::vector<CTouchMenuRow> m_rows;
    QString m_title;
    CSoftKeyBar m_keys;
    CTouchNavigator m_touch;
    QEventLoop* m_loop = nullptr;
    int m_result = -1;
    int m_selected = -1; // the row under the finger or the keyboard's
    enum Touched { kNothing, kRows, kKeys, kBeside };
    Touched m_touched = kNothing; // where the finger went down
    int m_factor = 1;
    CTouchMenu* m_outer = nullptr;
};
