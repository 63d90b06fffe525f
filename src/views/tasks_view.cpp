#include "views/tasks_view.h"
#include "drawing/screen_metrics.h"
#include "pim/pim_store.h"
#include "settings/settings.h"
#include "touch/command_ids.h"
#include "touch/virtual_keys.h"
#include "touch/wait_cursor.h"

#include <algorithm>

namespace
{
constexpr int kFirstGroupSort = 105, kLastGroupSort = 107;
constexpr quint32 kNoCategoryGroup = 1000;
constexpr int kShowMargin = 40;                           // design pixels around a row brought into view
constexpr int kCheckBoxMarginX = 8, kCheckBoxMarginY = 4; // design pixels around it that still hit

const CTaskGroup* GroupOfTitle(const CPaintingOrderItem& row)
{
    return row.m_item ? nullptr : static_cast<const CTaskGroup*>(row.m_event);
}

// Numbers of categories move when one is added; their names stay.
QString KeyOf(const CTaskGroup& group)
{
    return QStringLiteral("%1 %2 %3")
        .arg(g_Settings.TasksView.Sort1)
        .arg(group.ItemId == kNoCategoryGroup)
        .arg(group.Name);
}
} // namespace

CTasksView::CTasksView(IViewHost& host, QWidget* parent) : CItemRowView(host, parent) {}

bool CTasksView::IsGrouped()
{
    const int sort = g_Settings.TasksView.Sort1;
    return sort >= kFirstGroupSort && sort <= kLastGroupSort;
}

// ---- data: groups -> rows

void CTasksView::BuildRows()
{
    ForgetRows();
    if (m_hidden)
        return;
    if (m_matchDay != GetToday()) {
        m_matchDay = GetToday();
        PimStore().RefreshTaskMatches();
    }
    const bool titles = IsGrouped();
    for (const auto& group : PimStore().GetTaskGroups()) {
        if (group->VisibleCount == 0)
            continue;
        if (titles) {
            m_list.AddOwn(*group, 0);
            if (IsCollapsed(*group))
                continue;
        }
        for (const auto& task : group->Tasks) {
            if (task->MatchesView)
                m_list.AddItem(*task, task->End == NO_DATE ? 0 : DayNumber(task->End));
        }
    }
}

CTasksView::CPlace CTasksView::PlaceOf(const CPaintingOrderItem* row) const
{
    CPlace place;
    if (!row)
        return place;
    place.Item = row->m_identity;
    place.Item.Start = NO_DATE; // a changed date leaves it the same item
    place.IsTitle = row->m_item == nullptr;
    for (int n = IsGrouped() ? Rows().IndexOf(row) : -1; n >= 0; --n) {
        const CTaskGroup* const group = GroupOfTitle(*Rows().GetAt(n));
        if (!group)
            continue;
        place.Group = KeyOf(*group);
        break;
    }
    return place;
}

// The same task in the same group, or else in the first one that has it.
CPaintingOrderItem* CTasksView::FindRow(const CPlace& place) const
{
    if (place.IsNone())
        return nullptr;
    CPaintingOrderItem* elsewhere = nullptr;
    QString group;
    for (const auto& row : Rows()) {
        if (const CTaskGroup* const title = GroupOfTitle(*row))
            group = KeyOf(*title);
        if (place.IsTitle ? row->m_item != nullptr || group != place.Group
                          : !row->m_item || !row->m_identity.IsSameItem(place.Item))
            continue;
        if (group == place.Group)
            return row.get();
        if (!elsewhere)
            elsewhere = row.get();
    }
    return elsewhere;
}

bool CTasksView::ShowsRow(const CPaintingOrderItem& row) const
{
    return row.m_bottom + m_touch.Scroll() > 0 && row.m_top + m_touch.Scroll() < m_touch.Height();
}

// A list that was scrolled away from its selection stays; a selection in sight stays in sight.
void CTasksView::RebuildRows(CPlace select)
{
    const bool follow = m_selected && ShowsRow(*m_selected);
    BuildRows();
    Select(FindRow(select));
    m_list.LayOut(m_touch.Width());
    m_touch.Redraw(true);
    if (!m_touch.IsTouched()) {
        if (follow && m_selected && !ShowsRow(*m_selected))
            m_touch.EnsureVisible(
                m_list.RowRect(*m_selected).adjusted(0, -D(kShowMargin), 0, D(kShowMargin)));
        if (m_touch.Scroll() < 0)
            m_touch.ScrollBy(0); // the list may have become shorter
    }
    update();
}

void CTasksView::OnDataChanged(int, quint32, quint32)
{
    if (!m_hidden)
        RebuildRows(m_place);
}

void CTasksView::OnClockChanged(int)
{
    m_matchDay = 0;
    OnDataChanged(0, 0, 0);
}

void CTasksView::Refresh()
{
    m_stroke.End();
    m_hidden = false;
    RebuildRows(m_place);
    UpdateTasksTitle();
}

// ---- lifecycle

void CTasksView::OnCreate()
{
    if (g_Settings.TasksView.IncludePreviewPane == 1)
        m_pane = std::make_unique<CTaskPreviewPane>();
    CItemRowView::OnCreate();
}

void CTasksView::OnDeactivate()
{
    m_tapped = {};
    CItemRowView::OnDeactivate();
}

// Layout and paint stand in tasks_view_paint.cpp, menus in tasks_view_menus.cpp.

// ---- groups

bool CTasksView::IsCollapsed(const CTaskGroup& group) const
{
    return m_collapsed.count(KeyOf(group)) != 0;
}

void CTasksView::ToggleGroup(const CPaintingOrderItem& title)
{
    const QString key = KeyOf(*GroupOfTitle(title));
    if (m_collapsed.erase(key) == 0)
        m_collapsed.insert(key);
    RebuildRows(PlaceOf(&title));
}

void CTasksView::CollapseAll(bool collapse)
{
    if (!IsGrouped())
        return;
    const bool toTitle = collapse && !m_place.Group.isEmpty();
    for (const auto& group : PimStore().GetTaskGroups()) {
        if (collapse)
            m_collapsed.insert(KeyOf(*group));
        else
            m_collapsed.erase(KeyOf(*group));
    }
    RebuildRows(toTitle ? CPlace{{}, m_place.Group, true} : m_place);
}

// ---- selection

// What hangs on the selected task: its soft key and the pane. A notice frees what rows point to before
// we hear of it, so the place is written down while it stands.
void CTasksView::OnSelectionChanged()
{
    m_place = PlaceOf(m_selected);
    if (m_pane) {
        m_pane->SetTask(static_cast<const CTask*>(SelectedItem()));
        update();
    }
    if (ToggleImage() != m_keyImage)
        m_host.RebuildSoftKeys();
}

bool CTasksView::OnPress(quint32, int x, int y)
{
    CPaintingOrderItem* const row = RowAt(x, y);
    if (row == m_selected)
        return false;
    m_tapped = {};
    Select(row);
    return true;
}

// The first tap on a task only selects it.
void CTasksView::OnTap(quint32, int x, int y)
{
    CPaintingOrderItem* const row = RowAt(x, y);
    const CPlace place = PlaceOf(row);
    const bool again = !place.IsNone() && place == m_tapped;
    if (row != m_selected) {
        Select(row);
        m_touch.Redraw(true);
    }
    m_tapped = place;
    if (!row)
        return;
    if (!row->m_item)
        ToggleGroup(*row);
    else if (m_list.HitsCheckBox(*row, {x, y}, CheckBoxMargin()))
        m_host.SendCommand(CmdToggleTask);
    else if (again)
        RunItemMenu();
}

QSize CTasksView::CheckBoxMargin() const
{
    return {D(kCheckBoxMarginX), D(kCheckBoxMarginY)};
}

void CTasksView::OnLButtonDown(QPoint at)
{
    m_paneTouched = PaneArea().contains(at);
    if (!m_paneTouched)
        CItemRowView::OnLButtonDown(at);
}

void CTasksView::OnLButtonUp(QPoint at)
{
    if (!m_paneTouched)
        return CItemRowView::OnLButtonUp(at);
    m_paneTouched = false;
    if (PaneArea().contains(at) && SelectedItem())
        m_host.SendCommand(CmdEdit);
}

bool CTasksView::OnKey(int key)
{
    switch (key) {
    case kKeyUp:
    case kKeyDown:
        m_tapped = {};
        SelectNeighbour(key == kKeyUp ? -1 : 1);
        return true;
    case kKeyReturn:
        if (SelectedItem())
            m_host.SendCommand(CmdOpenItem);
        else if (m_selected)
            ToggleGroup(*m_selected);
        return true;
    case '9':
        m_host.SendCommand(CmdToggleTask);
        return true;
    default:
        return false;
    }
}
