// The frame's menus: the finger menu of the view, the filters, and the menu under the right button.
#include "drawing/picture_ids.h"
#include "pages/filter_manager.h"
#include "settings/settings.h"
#include "shell/main_frame.h"
#include "touch/command_ids.h"
#include "touch/device_pixels.h"
#include "touch/wait_cursor.h"
#include "util/string_ids.h"
#include "util/string_store.h"

#include <QContextMenuEvent>
#include <QHelpEvent>
#include <QMenu>
#include <QToolTip>

namespace
{
bool ActsOnSelection(int command)
{
    return command == CmdDelete || command == CmdEdit || command == CmdToggleTask ||
           command == CmdDuplicate || command == CmdBeam || command == CmdOpenItem;
}

void AddAction(QMenu& menu, const QString& text, int command)
{
    // A name may hold the sign that marks a letter to press.
    QAction* action = menu.addAction(QString(text).replace(u'&', QStringLiteral("&&")));
    action->setData(command);
    if (command >= CmdNoFilter && command <= CmdFilterLast) {
        action->setCheckable(true);
        action->setChecked(command - CmdFilterFirst == g_Settings.m_currentFilterIndex);
    }
}

void AddOffered(QMenu& menu, int stringId, int command)
{
    if (CMainFrame::OffersCommand(command))
        AddAction(menu, GetString(stringId), command);
}

void AddFilters(QMenu& menu)
{
    QMenu* filters = menu.addMenu(GetString(StrFilters));
    AddOffered(*filters, StrUnfiltered, CmdNoFilter);
    AddOffered(*filters, StrManageFilters, CmdManageFilters);
    filters->addSeparator();
    for (size_t i = 0; i < g_Settings.m_filters.size(); ++i)
        AddAction(*filters, g_Settings.m_filters[i].Name, CmdFilterFirst + int(i));
}
} // namespace

// Runs a menu of the frame and sends what was chosen in it.
void CMainFrame::RunMenu(CTouchMenu& menu)
{
    CCalendarView* view = CurrentView();
    if (!view || CTouchMenu::Current())
        return;
    const CItemIdentity selected = view->SelectedIdentity();
    const int command = menu.Run(this);
    // Meanwhile the item may have gone and the selection with it; the command was not meant for another.
    const bool same = m_up && CurrentView() == view && view->SelectedIdentity().IsSameItem(selected);
    if (same || !ActsOnSelection(command))
        SendCommand(command);
}

void CMainFrame::CmdOpenMenu(int)
{
    CCalendarView* view = CurrentView();
    if (!view)
        return;
    CTouchMenu menu;
    const bool allKeys = view->FillTouchMenu(menu);
    menu.AddRow(StrExitCalendar, CmdExit, PictureExit);
    constexpr struct {
        int Command, Image;
    } kKeys[] = {{CmdSettings, PictureSettings}, {CmdFilterMenu, PictureFilter}};
    for (const auto& key : kKeys)
        if (allKeys && OffersCommand(key.Command))
            menu.AddKey(key.Command, key.Image);
    RunMenu(menu);
}

void CMainFrame::CmdOpenFilterMenu(int)
{
    CTouchMenu menu;
    if (OffersCommand(CmdManageFilters))
        menu.AddKey(CmdManageFilters, PictureManageFilters);
    const int current = g_Settings.m_currentFilterIndex;
    menu.AddRow(StrUnfiltered, CmdNoFilter, 0, current == -1);
    for (size_t i = 0; i < g_Settings.m_filters.size(); ++i)
        menu.AddRow(g_Settings.m_filters[i].Name, CmdFilterFirst + int(i), 0, int(i) == current);
    RunMenu(menu);
}

void CMainFrame::CmdChooseFilter(int command)
{
    ApplyFilter(command - CmdFilterFirst);
}

// What the form shows last is what is wanted next.
void CMainFrame::CmdManageFilterList(int)
{
    std::vector<CFilter> filters = g_Settings.m_filters;
    if (filters.empty())
        return;
    CFilterManager manager(filters, g_Settings.m_currentFilterIndex);
    if (manager.Run(this) != CFormDialog::kDone || !m_up)
        return;
    PimStore().Categories().PutStoredNumbers(filters);
    g_Settings.m_filters = std::move(filters);
    ApplyFilter(manager.GetIndex());
    g_Settings.Save();
}

void CMainFrame::ApplyFilter(int index)
{
    CWaitCursor wait;
    g_Settings.SetActiveFilter(index);
    PimStore().ReapplyFilter();
    if (CCalendarView* view = CurrentView())
        view->Refresh();
    UpdateTitle();
}

// ---- the menu under the right button

void CMainFrame::FillShellMenu(QMenu& menu)
{
    CCalendarView* view = CurrentView();
    if (!view || !view->FillMenu(menu))
        return;
    menu.addSeparator();
    if (view->GetViewKind() != kViewTasks)
        AddOffered(menu, StrGoTo, CmdGoTo);
    AddFilters(menu);
    menu.addSeparator();
    AddOffered(menu, StrSearch, CmdShowSearch);
    AddOffered(menu, StrSettings, CmdSettings);
    AddOffered(menu, StrExitCalendar, CmdExit);
}

void CMainFrame::contextMenuEvent(QContextMenuEvent* event)
{
    CCalendarView* view = m_up ? CurrentView() : nullptr;
    if (!view || IsBusy())
        return;
    const CItemIdentity selected = view->SelectedIdentity();
    QMenu menu(this);
    FillShellMenu(menu);
    if (menu.isEmpty())
        return;
    ++m_commandDepth; // the window must not go under an open menu
    const QAction* chosen = menu.exec(event->globalPos());
    --m_commandDepth;
    const int command = chosen && chosen->data().isValid() ? chosen->data().toInt() : CmdNone;
    const bool same = m_up && CurrentView() == view && view->SelectedIdentity().IsSameItem(selected);
    if (same || !ActsOnSelection(command))
        SendCommand(command);
}

// A picture alone does not tell which view the button leads to.
bool CMainFrame::event(QEvent* event)
{
    if (event->type() != QEvent::ToolTip || !m_up)
        return QWidget::event(event);
    const auto* help = static_cast<QHelpEvent*>(event);
    const int key = m_softKeys.HitTest(Layout().Keys, ToSurface(QPointF(help->pos()), m_factor));
    if (key >= 0 && m_softKeys.CommandAt(key) == CmdViewButton)
        QToolTip::showText(help->globalPos(), ViewButtonText(), this);
    else
        QToolTip::hideText();
    return true;
}
