// The frame's views: creating, showing and laying them out, and what shows beside them.
#include "drawing/image_store.h"
#include "drawing/picture_ids.h"
#include "drawing/screen_metrics.h"
#include "forms/form_dialog.h"
#include "settings/settings.h"
#include "shell/main_frame.h"
#include "shell/view_rotation.h"
#include "touch/command_ids.h"
#include "touch/device_pixels.h"
#include "touch/wait_cursor.h"
#include "util/string_ids.h"
#include "util/string_store.h"
#include "views/daily_view.h"
#include "views/list_view.h"
#include "views/monthly_view.h"
#include "views/search_view.h"
#include "views/tasks_view.h"
#include "views/weekly_view.h"

namespace
{
template <class View> std::unique_ptr<CCalendarView> MakeView(IViewHost& host, QWidget* parent)
{
    return std::make_unique<View>(host, parent);
}

constexpr struct {
    int Kind;
    std::unique_ptr<CCalendarView> (*Make)(IViewHost&, QWidget*);
} kViewMakers[] = {
    {kViewDaily, MakeView<CDailyView>},
    {kViewList, MakeView<CListView>},
    {kViewWeekly, MakeView<CWeeklyView>},
    {kViewMonthly, MakeView<CMonthlyView>},
    {kViewTasks, MakeView<CTasksView>},
    {kViewSearch, MakeView<CSearchView>},
};

constexpr struct {
    int Command;
    int Image;
} kDateKeys[] = {
    {CmdDateBack, PictureBack},
    {CmdGoTo, PictureGoTo},
    {CmdDateForward, PictureForward},
};
} // namespace

// ---- views

bool CMainFrame::HasView(int kind)
{
    for (const auto& maker : kViewMakers) {
        if (maker.Kind == kind)
            return true;
    }
    return false;
}

CCalendarView* CMainFrame::FindView(int kind) const
{
    for (const auto& view : m_views) {
        if (view->GetViewKind() == kind)
            return view.get();
    }
    return nullptr;
}

CCalendarView* CMainFrame::CurrentView() const
{
    return FindView(g_Settings.General.LastView);
}

std::unique_ptr<CCalendarView> CMainFrame::CreateView(int kind)
{
    for (const auto& maker : kViewMakers) {
        if (maker.Kind != kind)
            continue;
        auto view = maker.Make(*this, this);
        view->setGeometry(ViewGeometry());
        view->Create();
        return view;
    }
    return nullptr;
}

void CMainFrame::ShowView(int kind, int returnView)
{
    CCalendarView* const old = CurrentView();
    m_returnView = returnView;
    if (!HasView(kind))
        kind = kViewDaily;
    CCalendarView* view = FindView(kind);
    if (!view) {
        auto created = CreateView(kind);
        if (!created)
            return;
        view = created.get();
        m_views.push_back(std::move(created));
    }
    m_previousView = g_Settings.General.LastView;
    g_Settings.General.LastView = kind;
    view->show();
    view->raise();
    setFocusProxy(view);
    view->setFocus();
    CFormDialog::KeepInFront(); // another program's request may come under a question
    view->Refresh();
    if (old && old != view)
        old->Leave();
    UpdateViewButton();
}

void CMainFrame::ShowDaily(int returnView)
{
    ShowView(kViewDaily, returnView);
}

void CMainFrame::GoToDate(DATE date)
{
    CWaitCursor wait;
    if (CCalendarView* view = CurrentView()) {
        view->SetCursorDate(date);
        view->Refresh();
    } else {
        PimStore().LoadRange(DayNumber(date), DayNumber(date), DayNumber(date));
    }
}

// ---- soft keys and title

// The view that the view button leads to.
int CMainFrame::ViewOfButton() const
{
    const auto& general = g_Settings.General;
    if (general.ViewSelectorMode == 1 && m_returnView != -1)
        return m_returnView;
    int offered = 0;
    for (const auto& maker : kViewMakers)
        offered |= general.RotationActiveViews & (1 << maker.Kind);
    return NextViewInRotation(general.LastView, offered);
}

QString CMainFrame::ViewButtonText() const
{
    QString text, second;
    if (const CCalendarView* view = CurrentView())
        view->GetViewButtonText(text, second);
    if (!text.isEmpty())
        return text;
    const bool selects = g_Settings.General.ViewSelectorMode == 1 && m_returnView == -1;
    return selects ? GetString(StrView) : ViewName(ViewOfButton());
}

void CMainFrame::UpdateViewButton()
{
    BuildSoftKeys();
}

void CMainFrame::BuildSoftKeys()
{
    m_softKeys.Clear();
    if (std::size(kViewMakers) > 1)
        m_softKeys.AddButton(CmdViewButton, m_returnView != -1 ? PictureReturn : PictureViews);
    CCalendarView* view = CurrentView();
    if (view && view->UsesDateKeys()) {
        for (const auto& key : kDateKeys) {
            if (OffersCommand(key.Command))
                m_softKeys.AddButton(key.Command, key.Image);
        }
    } else if (view) {
        view->FillSoftKeys(m_softKeys);
    }
    m_softKeys.AddButton(CmdMenu, PictureMenu);
    Invalidate(Layout().Keys);
}

void CMainFrame::RebuildSoftKeys()
{
    if (CCalendarView* view = m_up ? CurrentView() : nullptr)
        view->RebuildSoftKeys(m_softKeys);
    Invalidate(Layout().Keys);
}

QString CMainFrame::TitleText() const
{
    const CCalendarView* view = CurrentView();
    QString text = view ? view->GetTitleText() : QString();
    if (text.isEmpty())
        text = GetString(StrProgramTitle);
    if (g_Settings.GetActiveFilter().IsActive())
        text += GetString(StrFilteredMark);
    return text;
}

void CMainFrame::UpdateTitle()
{
    if (Layout().Title.isEmpty()) {
        setWindowTitle(TitleText());
    } else {
        setWindowTitle(GetString(StrProgramTitle));
        Invalidate(Layout().Title);
    }
    TellPartRenamed(this, 0);
}

// ---- layout

CFrameLayout CMainFrame::Layout() const
{
    return CFrameLayout::Of(ToSurface(size(), m_factor), m_titleLocation,
                            D(TitleStripWidth(g_Settings.General.CustomTitlebarSize)), CSoftKeyBar::Height());
}

QRect CMainFrame::ViewGeometry() const
{
    return ToLogical(Layout().View, m_factor);
}

void CMainFrame::Relayout()
{
    const int density = g_ScreenMetrics.Density();
    FetchMetrics();
    if (!m_up)
        return;
    const bool newDensity = g_ScreenMetrics.Density() != density;
    if (newDensity) {
        LoadResourceLibraries(g_Settings.m_installFolder);
        BuildSoftKeys();
    }
    const QRect place = ViewGeometry();
    for (const auto& view : m_views) {
        if (view->geometry() != place)
            view->setGeometry(place);
        view->Reshape(); // a hidden one is told of its size only when it shows
    }
    update();
}
