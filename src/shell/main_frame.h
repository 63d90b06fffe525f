// The one top-level window: owns the views, the soft keys and the title strip, turns commands into
// actions, and brings settings, pictures, texts and the store up and down.
// Units: geometry of widgets is logical, everything painted is in surface pixels.
// Ownership: the frame owns its views; the volume is shared; views die in Shutdown.
#pragma once
#include "desktop/instance.h"
#include "pim/pim_store.h"
#include "shell/frame_layout.h"
#include "shell/instance_handover.h"
#include "shell/item_actions.h"
#include "shell/item_sender.h"
#include "shell/notice_pump.h"
#include "shell/time_watcher.h"
#include "touch/numbered_timers.h"
#include "touch/soft_key_bar.h"
#include "touch/touch_menu.h"
#include "views/calendar_view.h"
#include "views/i_view_host.h"

#include <QWidget>
#include <functional>
#include <memory>
#include <vector>

struct CCommandRequest;

struct CFrameSetup {
    std::shared_ptr<CPropertyVolume> Volume; // null: an empty calendar
    bool SaveSettings = true;
    QByteArray SingleItemMutex = kSingleItemMutex; // held while it serves a single item at its start
};

class CMainFrame : public QWidget, public IViewHost, public IPaintedParts
{
public:
    explicit CMainFrame(CFrameSetup setup);
    ~CMainFrame() override;

    // Brings everything up and shows the first view in the frame; false when the request was one
    // for a single item and has been served. The frame has its size before.
    bool OnCreate();
    // Saves the settings and takes everything down. Harmless when repeated; OnCreate may follow.
    void Shutdown(bool quit);
    void SetFirstPaintHook(std::function<void()> hook) { m_firstPaint = std::move(hook); }
    // Starts to follow the volume; once the first picture stands.
    void StartNotices();

    // ---- views
    void ShowView(int kind, int returnView);
    CCalendarView* CurrentView() const;
    CCalendarView* FindView(int kind) const; // null when it was not created yet
    int PreviousView() const { return m_previousView; }
    void GoToDate(DATE date);

    // ---- what others send
    void SendCommand(int command) override;
    bool Offers(int command) const override { return OffersCommand(command); }
    void UpdateTitle() override;
    void RebuildSoftKeys() override;
    void ShowDaily(int returnView) override;
    void PressSoftKey(int key) override;
    void OnInstanceMessage(const CInstanceMessage& message);
    void OnClockNotice(int notice);
    void OnVolumeDisplaced();
    void OnDatabaseChange(const CPimStore::CDrain& drain);
    void ServePostedRequest();
    // The details or the editor that a request for one item asks for; nothing when it is gone.
    void ShowItem(const CCommandRequest& request, QWidget* owner);
    // Pictures of what is not the view in front: the form of a request for one item, and a search.
    // Null where there is no such item.
    QImage SnapshotOfItem(const CCommandRequest& request);
    QImage SnapshotOfSearch(const QString& words);
    void OnSystemColors();

    // ---- for tests, and for pictures without a display
    static bool OffersCommand(int command); // there is a handler for it, and what it acts on
    static bool HasView(int kind);
    CFrameLayout Layout() const;
    // The title strip, then the soft keys.
    int GetPartCount() const override;
    CPaintedPart GetPart(int index) const override;
    void PressPart(int index) override;
    const CSoftKeyBar& SoftKeys() const { return m_softKeys; }
    QString TitleText() const;      // with the mark of a filter
    QString ViewButtonText() const; // what the view button leads to
    // The menu of commands over the frame's own parts and by right click; empty when the view has none.
    void FillShellMenu(QMenu& menu);
    CNumberedTimers& Timers() { return m_timers; }
    CTimeWatcher& TimeWatcher() { return m_timeWatcher; }
    bool IsUp() const { return m_up; }
    QImage Snapshot();

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void closeEvent(QCloseEvent* event) override;
    void changeEvent(QEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void keyReleaseEvent(QKeyEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    bool event(QEvent* event) override;

private:
    using Handler = void (CMainFrame::*)(int command);
    struct CommandRow {
        int Command;
        Handler Handle;
    };
    struct CommandRange {
        int First, Last;
        Handler Handle;
    };
    static Handler FindHandler(int command); // null: none

    void FetchMetrics();
    void LoadLook();
    void Rebuild();
    bool ServeStartupRequest(const CCommandRequest& request);
    void FallBack();
    DATE ApplyStartRequest(const CCommandRequest& request);
    void OpenStore();
    void ShowNewLooks(); // of categories
    void ShowVolume(std::shared_ptr<CPropertyVolume> volume);
    void TellOfVolume(const QString& text);
    std::unique_ptr<CCalendarView> CreateView(int kind);
    QRect ViewGeometry() const; // logical
    void Relayout();
    void UpdateViewButton();
    int ViewOfButton() const;
    void RunMenu(CTouchMenu& menu);
    void ApplyFilter(int index);
    void BuildSoftKeys();
    void UpdateKeysAt(QPoint logical, bool pressed);
    void Invalidate(const QRect& surface);
    void PaintParts(QPainter& dc, const QRect& clip);
    void OnTimer(int id);
    void NextEventTimer();
    void BackKey(bool deviceKey);
    void UpdateWatchers();
    bool IsBusy() const;
    static bool LeaveMenu();
    CItemTarget SelectedItem() const;

    // One handler per command; see the table in frame_commands.cpp.
    void CmdExitProgram(int);
    void CmdShowKind(int command);
    void CmdMoveDate(int command);
    void CmdOpenMenu(int);
    void CmdOpenFilterMenu(int);
    void CmdChooseFilter(int command);
    void CmdManageFilterList(int);
    void CmdOpenSelected(int);
    void CmdSortTasks(int command);
    void CmdTellTasksView(int command);
    void CmdTellCurrentView(int command);
    void CmdTellSearchView(int command);
    void CmdCreateAppointment(int);
    void CmdCreateTask(int);
    void CmdEditItem(int);
    void CmdDeleteItem(int);
    void CmdDuplicateItem(int);
    void CmdToggleSelected(int);
    void CmdPressViewButton(int);
    void CmdPickDate(int);
    void CmdOpenSettings(int);
    void CmdBeamItem(int);
    void CmdShowPrevious(int);
    void CmdRebuildKeys(int);
    void CmdToggleInputPanel(int);

    CFrameSetup m_setup;
    CSoftKeyBar m_softKeys;
    CItemActions m_itemActions;
    CItemSender m_itemSender{this};
    int m_titleLocation = kTitleNone;
    CTimeWatcher m_timeWatcher;
    std::vector<std::unique_ptr<CCalendarView>> m_views;
    int m_previousView = -1;
    bool m_saveSettingsOnExit = true;
    int m_returnView = -1;

    CNumberedTimers m_timers;
    std::unique_ptr<CNoticePump> m_notices;
    std::function<void()> m_firstPaint;
    QString m_toldOfVolume;   // the last fault of the file in the volume's place
    QString m_displacedStamp; // of that file, as last seen
    bool m_up = false;
    int m_commandDepth = 0;     // handlers under way; one may run a dialog
    bool m_cameForward = false; // for the request of another process, from behind other windows
    bool m_backPressed = false; // the back key went down on the frame, not on a menu that took it
    int m_factor = 1;
};
