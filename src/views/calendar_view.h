// The base of all views: a child of the frame between the title strip and the soft keys.
// Shape: the frame speaks to a view through the numbered operations below; the view speaks to
//   the frame through IViewHost. The cursor date lives in the store, so that views share it.
// Units: everything a leaf sees is in surface pixels (device_pixels.h); the events below arrive
//   converted.
// Ownership: the host is borrowed and outlives the view; m_selected points into the leaf's rows.
#pragma once
#include "touch/date_overlay.h"
#include "touch/painted_accessible.h"
#include "touch/screen_transition.h"
#include "touch/soft_key_bar.h"
#include "touch/touch_menu.h"
#include "util/date_time.h"
#include "views/i_view_host.h"
#include "views/item_row_painter.h"
#include "views/painting_order.h"

#include <QImage>
#include <QString>
#include <QWidget>

class QMenu;
class CTouchNavigator;

enum ViewKind { kViewDaily, kViewList, kViewWeekly, kViewMonthly, kViewTasks, kViewSearch };

class CCalendarView : public QWidget, public IPaintedParts
{
public:
    CCalendarView(IViewHost& host, QWidget* parent);
    ~CCalendarView() override;

    // Makes what the view paints with; the frame calls Create once the view has its geometry, and
    // Refresh after it, which brings the rows.
    void Create();
    virtual void OnCreate() = 0;
    // OnResize, but only when size or density differ from what the view was last laid out for.
    void Reshape();

    // The operations in slot order; the four of the window itself are Qt's events.
    virtual int GetViewKind() const = 0;
    virtual void OnClockChanged(int notice) = 0; // bit 1 new day, bit 2 new zone
    virtual void OnDataChanged(int dwParam, quint32 uType, quint32 oid) = 0;
    virtual void Refresh() = 0;                   // rebuilds from the cursor date and repaints
    virtual void OnResize() = 0;                  // new size, density or fonts
    virtual bool FillMenu(QMenu& menu);           // true for the common tail
    virtual bool FillTouchMenu(CTouchMenu& menu); // true for the full soft keys
    virtual void FillSoftKeys(CSoftKeyBar& keys);
    virtual void RebuildSoftKeys(CSoftKeyBar& keys);
    virtual void OnCommandOpenItem(); // shows the selected item's details
    virtual void OnDeactivate() {}
    virtual void SetCursorDate(DATE date);
    virtual bool WantsBackKey() const { return false; }
    virtual void GetViewButtonText(QString& first, QString& second) const;
    virtual bool OnViewButton() { return false; }
    virtual CPimRecord* GetSelectedItem() const; // null without a selection
    virtual QString GetTitleText() const { return m_title; }
    virtual bool IsTitleTappable() const { return true; }
    virtual void MoveDate(int delta); // -1, +1, or 0 for today
    virtual bool UsesDateKeys() const { return true; }
    virtual QString GetCursorDateText() const;
    virtual void GoToToday() {}

    // A command of the frame that is this view's business; what it does not know it ignores.
    virtual void OnCommand(int) {}
    // A key by its number (touch/virtual_keys.h); true when the view did something with it.
    virtual bool OnKey(int key);
    // For readers of the screen: what the view paints, none by itself.
    int GetPartCount() const override { return 0; }
    CPaintedPart GetPart(int) const override { return {}; }
    void PressPart(int) override {}

    // The view as it would show, painted now, in surface pixels; needs no display.
    QImage Snapshot();
    // Identity and day of the selection, for whoever runs a dialog on it.
    CItemIdentity SelectedIdentity() const;
    int SelectedDay() const; // day number of the selected row, 0 without
    // A finger that runs through dates, and the slide to the one it chose; the finger may be anywhere
    // when another view comes to the front.
    CDateOverlay& DateOverlay() { return m_overlay; }
    CScreenTransition& Transition() { return m_transition; }
    void CancelDateRun();
    // Another view has come to the front: what the finger does on from here is none of this one's.
    void Leave();

protected:
    // In surface pixels. `dc` may be the window's own painter, so whatever is drawn with more than
    // whole rectangles and finished pictures is drawn into a picture first.
    virtual void PaintView(QPainter& dc, QSize size) = 0;
    virtual void OnLButtonDown(QPoint) {}
    virtual void OnMouseMove(QPoint) {} // with the button down
    virtual void OnLButtonUp(QPoint) {}
    virtual void OnContextMenu(QPoint) {} // right click; (-1, -1) for the keyboard's menu key
    virtual CTouchNavigator* Navigator() { return nullptr; } // gets the wheel

    // What a sideways stroke runs through.
    virtual OverlayUnit GetOverlayUnit() const { return kOverlayNone; }
    // After a stroke (-1 left, 1 right): the finger is the overlay's until it lifts.
    void StartDateRun(int stroke, QPoint at);

    // Runs a menu of the selected item, or of the day, and sends the chosen command, unless the item
    // has gone meanwhile: it was not meant for another. The view may have gone, too, afterwards.
    void RunMenu(CTouchMenu& menu);
    void SetTitle(const QString& title);
    QSize SurfaceSize() const; // of the client area

    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    bool focusNextPrevChild(bool) override { return true; } // it stays: other views lie below
    void keyReleaseEvent(QKeyEvent* event) override;

    IViewHost& m_host;
    CPaintingOrderItem* m_selected = nullptr;
    QString m_title;
    CItemRowPainter m_rowPainter;
    bool m_created = false; // OnCreate has run
    QSize m_shapeSize;      // of the surface, as last laid out for
    int m_shapeDensity = 0;
    int m_factor = 1; // surface pixels of a logical one, as last painted with

private:
    void OnDateChosen(int day, int direction);
    bool PaintDateRun(QPainter& window);

    CDateOverlay m_overlay;
    CScreenTransition m_transition;
    bool m_fingerDown = false; // since it was put down here
};
