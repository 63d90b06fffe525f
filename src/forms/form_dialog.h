// The base of all modal dialogs: a page with a title and soft keys, and between them what the
// dialog paints. As wide as the window where that is narrow, else a card over the dimmed view.
// Shape: a child over its owner's window with a loop of its own; a window itself where the owner
//   has none on the screen. Lives as long as Run; keys and fingers go nowhere else meanwhile.
// Units: whatever a dialog sees is in surface pixels (touch/device_pixels.h).
// Notices arrive while it runs: what it shows is its own copy, never an item of the cache.
#pragma once
#include "touch/numbered_timers.h"
#include "touch/painted_accessible.h"
#include "touch/soft_key_bar.h"

#include <QImage>
#include <QPointer>
#include <QString>
#include <QWidget>

class QEventLoop;

// The page's parts, from the window's size; pure.
struct CFormDialogLayout {
    QRect Page;  // all of it
    QRect Title; // empty without a title
    QRect Client;
    QRect Keys;
    static int PageWidth(QSize window);
    static CFormDialogLayout Of(QSize window, bool hasTitle, int contentHeight);
};

class CFormDialog : public QWidget, public IPaintedParts
{
public:
    enum Result { kNotStarted = -1, kCancelled = 0, kDone = 1 };
    static constexpr int kTimerSlide = 55346, kSlideMs = 50;

    explicit CFormDialog(const QString& title = QString());
    ~CFormDialog() override;

    // Shows the dialog until End; the result is what End was told first.
    int Run(QWidget* owner);
    void End(int result);
    static CFormDialog* Current(); // the innermost one that runs, or null
    // Whoever raises or focuses what lies under the dialogs calls this afterwards.
    static void KeepInFront();

    void SetTitle(const QString& title);
    const QString& GetTitle() const { return m_title; }
    const CFormDialogLayout& Layout() const { return m_layout; }
    const CSoftKeyBar& SoftKeys() const { return m_keys; }
    CNumberedTimers& Timers() { return m_timers; }
    QImage Snapshot(); // the page alone, painted now

    // What the dialog paints, for readers of the screen: its content's parts, then its soft keys.
    int GetPartCount() const override;
    CPaintedPart GetPart(int index) const override;
    void PressPart(int index) override;

protected:
    static constexpr int kAllThereIs = 1 << 20; // as a content's height

    // ---- what a dialog brings
    virtual int GetMenuBarId() const;
    virtual bool SlidesIn() const { return false; }        // where the setting allows it
    virtual int ContentHeight(int) { return kAllThereIs; } // on a page of that width
    virtual void OnLayout(const QRect&) {}                 // the client area is new
    virtual void TakeFocus() { setFocus(); }               // it has opened
    virtual void PaintContent(QPainter& dc, const QRect& client) = 0;
    virtual int ContentPartCount() const { return 0; }
    virtual CPaintedPart ContentPart(int) const { return {}; }
    virtual void PressContentPart(int) {}
    virtual void OnCommand(int command); // of a soft key; the base knows Done and Cancel
    virtual void OnDone() { End(kDone); }
    virtual void OnKey(int) {}            // pressed, or repeated (never Enter); by number of virtual_keys.h
    virtual void OnKeyUp(int) {}          // released, having been pressed here
    virtual void OnLButtonDown(QPoint) {} // in the client area; the other two follow it anywhere
    virtual void OnMouseMove(QPoint) {}
    virtual void OnLButtonUp(QPoint) {}
    virtual void OnWheel(int) {} // in eighths of a degree

    // For dialogs with live controls. Where the on-screen keyboard lies, in global logical pixels;
    // empty when it is down.
    virtual QRect KeyboardArea() const;
    QRect AboveKeyboard(const QRect& client, int leastHeight) const;
    virtual bool WantsKeyboard() const { return false; } // as soon as it opens
    // From the filter of a live control's events: takes the keys that the dialog itself answers.
    bool TakeDialogKey(QEvent* event);

    void ApplyLayout();              // after whatever changes the content's height
    void LoadKeys(int current = -1); // see LoadMenuBar
    int CurrentFactor() const { return m_factor; }

    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void closeEvent(QCloseEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void keyReleaseEvent(QKeyEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;
    bool focusNextPrevChild(bool) override { return false; }

private:
    void OpenOver(QWidget* window);
    void OpenAsWindow(const QWidget* model);
    void CloseWindow();
    void LowerInputPanel();
    void StartSliding();
    void SlideStep();
    void PlaceOver();
    QImage PaintPage();
    void RaiseAll();

    QString m_title;
    CSoftKeyBar m_keys;
    CFormDialogLayout m_layout;
    CToldParts m_told;
    CNumberedTimers m_timers;
    QPointer<QWidget> m_window; // that it lies over; null when it is one itself
    QPointer<QWidget> m_focus;  // had the keyboard before
    QEventLoop* m_loop = nullptr;
    int m_result = kCancelled;
    bool m_ended = false;
    int m_slide = 0; // logical pixels that are left to slide
    int m_downKey = 0;
    enum Touched { kNothing, kContent, kKeys };
    Touched m_touched = kNothing; // where the finger went down
    int m_factor = 1;
    int m_density = 0; // that the layout was made for
    CFormDialog* m_outer = nullptr;
};
