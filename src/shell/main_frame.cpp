#include "shell/main_frame.h"
#include "drawing/image_store.h"
#include "drawing/screen_metrics.h"
#include "forms/form_dialog.h"
#include "pages/settings_sheet.h"
#include "settings/settings.h"
#include "shell/command_request.h"
#include "shell/locale_name.h"
#include "touch/command_ids.h"
#include "touch/device_pixels.h"
#include "touch/timer_ids.h"
#include "touch/wait_cursor.h"
#include "util/string_ids.h"
#include "util/string_store.h"

#include <QApplication>
#include <QCloseEvent>
#include <QTimer>
#include <algorithm>
#include <limits>

namespace
{
constexpr qint64 kShortestNextEventMs = 20; // the moment is rounded; do not ask in a circle
constexpr int kUnwindMs = 10;               // for a menu or question to end
} // namespace

// ---- lifecycle

CMainFrame::CMainFrame(CFrameSetup setup)
    : m_setup(std::move(setup)), m_saveSettingsOnExit(m_setup.SaveSettings),
      m_timers([this](int id) { OnTimer(id); })
{
    setAttribute(Qt::WA_OpaquePaintEvent);
    setAttribute(Qt::WA_NoSystemBackground);
    setFocusPolicy(Qt::TabFocus); // a tap on the soft keys leaves it to whom it is
    OfferPaintedParts();
}

CMainFrame::~CMainFrame()
{
    Shutdown(false);
}

bool CMainFrame::OnCreate()
{
    FetchMetrics();
    g_Settings.Load(false);
    m_titleLocation = g_Settings.General.CustomTitlebarLocation;
    LoadLook();
    OpenStore();
    if (ServeStartupRequest(g_CommandRequest)) {
        m_saveSettingsOnExit = false;
        PimStore().Shutdown();
        return false;
    }
    CWaitCursor wait;
    m_up = true;
    const DATE first = ApplyStartRequest(g_CommandRequest);
    g_Settings.SetActiveFilter(g_Settings.m_currentFilterIndex);
    PimStore().LoadRange(first, DayNumber(first), DayNumber(first));
    ShowView(g_Settings.General.LastView, -1);
    BuildSoftKeys();
    m_timeWatcher.Bind([this](int notice) { OnClockNotice(notice); });
    return true;
}

void CMainFrame::Shutdown(bool quit)
{
    const bool wasUp = m_up;
    m_up = false;
    m_softKeys.Clear();
    m_timeWatcher.Stop();
    m_timers.KillAll();
    m_notices.reset();
    if (m_saveSettingsOnExit && (wasUp || quit))
        g_Settings.Save();
    m_views.clear();
    g_ImageStore.Clear();
    g_Settings.SetCategoryNames(nullptr);
    PimStore().Categories().SetLookHook({});
    PimStore().SetTransport(nullptr);
    if (wasUp)
        PimStore().Shutdown(); // which lets go of our timers
    if (quit)
        QApplication::quit();
}

void CMainFrame::CmdOpenSettings(int)
{
    if (m_saveSettingsOnExit)
        g_Settings.Save();
    if (CSettingsSheet().Run(this) == CFormDialog::kDone)
        QTimer::singleShot(0, this, [this] { Rebuild(); });
}

// Everything anew from the settings, once nothing of the old is on the stack any more.
void CMainFrame::Rebuild()
{
    if (!m_up)
        return;
    if (IsBusy()) {
        QTimer::singleShot(kUnwindMs, this, [this] { Rebuild(); });
        return;
    }
    const CWaitCursor wait;
    const bool followed = m_notices != nullptr;
    Shutdown(false);
    g_CommandRequest = CCommandRequest(); // the one of the start has been served
    m_previousView = -1;
    if (!OnCreate())
        return;
    if (followed)
        StartNotices();
    UpdateWatchers();
    UpdateTitle();
    update();
}

void CMainFrame::closeEvent(QCloseEvent* event)
{
    if (!IsBusy()) {
        Shutdown(true);
        return event->accept();
    }
    // A view, or a command of one, is still on the stack below a menu or question: that ends first.
    LeaveMenu();
    if (CFormDialog* dialog = CFormDialog::Current())
        dialog->End(CFormDialog::kCancelled);
    QTimer::singleShot(kUnwindMs, this, [this] { close(); });
    event->ignore();
}

bool CMainFrame::IsBusy() const
{
    return m_commandDepth > 0 || CTouchMenu::Current() || CFormDialog::Current();
}

bool CMainFrame::LeaveMenu()
{
    CTouchMenu* menu = CTouchMenu::Current();
    if (menu)
        menu->Choose(CmdNone);
    QWidget* popup = QApplication::activePopupWidget();
    if (popup)
        popup->close();
    return menu || popup;
}

void CMainFrame::FetchMetrics()
{
    m_factor = SurfaceFactor(this);
    g_ScreenMetrics.Init(SurfaceDensity(this), size());
}

void CMainFrame::LoadLook()
{
    LoadResourceLibraries(g_Settings.m_installFolder);
    LoadLanguageLibrary(g_Settings.m_installFolder, ShareFolders().value(0), MessagesLocaleName());
    g_Settings.RefreshTexts();
}

void CMainFrame::OpenStore()
{
    PimStore().Initialize(m_setup.Volume, [this](qint64 milliseconds) {
        if (milliseconds < 0)
            m_timers.Kill(kTimerNextEvent);
        else
            m_timers.Set(kTimerNextEvent, int(std::clamp(milliseconds, kShortestNextEventMs,
                                                         qint64(std::numeric_limits<int>::max()))));
    });
    PimStore().SetTransport(&m_itemSender);
    g_Settings.SetCategoryNames(&PimStore().Categories());
    g_Settings.LoadFilters();
    // Later: the dialog that changes a look lies over the views, or one of them runs it.
    PimStore().Categories().SetLookHook([this] { QTimer::singleShot(0, this, [this] { ShowNewLooks(); }); });
}

void CMainFrame::ShowNewLooks()
{
    if (!m_up)
        return;
    for (const auto& view : m_views)
        view->OnDataChanged(0, 0, 0);
}

// Puts the first view into the settings; the result is the first date.
DATE CMainFrame::ApplyStartRequest(const CCommandRequest& request)
{
    DATE first = GetToday();
    auto& general = g_Settings.General;
    if (general.DefaultView > 0)
        general.LastView = general.DefaultView - 1;
    if (request.Kind != RequestKind::OpenView)
        return first;
    if (request.View != -1)
        general.LastView = request.View;
    if (request.Date1 != -1.0 && request.HasDate())
        first = DayNumber(request.Date1);
    return first;
}

// ---- notices

void CMainFrame::StartNotices()
{
    if (!m_up || !m_setup.Volume || m_notices)
        return;
    m_notices = std::make_unique<CNoticePump>(
        m_setup.Volume, [this](const CPimStore::CDrain& drain) { OnDatabaseChange(drain); },
        [this] { QTimer::singleShot(0, this, [this] { OnVolumeDisplaced(); }); });
    m_notices->SetPolling(isVisible());
}

void CMainFrame::OnDatabaseChange(const CPimStore::CDrain& drain)
{
    if (!m_up || drain.Mask == 0)
        return;
    if (drain.LastParam == 1 || drain.Overflowed)
        PimStore().OnNextEventTimer(GetNow());
    constexpr struct {
        int Bit, View;
    } kTold[] = {{kMaskDaily, kViewDaily},   {kMaskListWeek, kViewList}, {kMaskListWeek, kViewWeekly},
                 {kMaskMonth, kViewMonthly}, {kMaskTasks, kViewTasks},   {kMaskSearch, kViewSearch}};
    for (const auto& row : kTold) {
        if (CCalendarView* view = drain.Mask & row.Bit ? FindView(row.View) : nullptr)
            view->OnDataChanged(drain.LastParam, drain.LastType, drain.LastOid);
    }
}

void CMainFrame::OnClockNotice(int notice)
{
    CCalendarView* view = m_up ? CurrentView() : nullptr;
    if (!view)
        return;
    CWaitCursor wait;
    view->OnClockChanged(notice);
}

void CMainFrame::OnTimer(int id)
{
    m_timers.Kill(id); // each is set anew by whoever wants it again
    if (id == kTimerExit)
        close();
    else if (id == kTimerNextEvent)
        NextEventTimer();
}

void CMainFrame::NextEventTimer()
{
    const bool changed = PimStore().OnNextEventTimer(GetNow());
    CCalendarView* view = CurrentView();
    if (changed && view && g_Settings.General.LastView == kViewDaily)
        view->Refresh();
}
