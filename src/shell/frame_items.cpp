// The editors in the frame: by command, and by requests of other processes.
#include "desktop/named_lock.h"
#include "editors/edit_item.h"
#include "forms/form_dialog.h"
#include "settings/settings.h"
#include "shell/command_request.h"
#include "shell/instance_handover.h"
#include "shell/main_frame.h"
#include "touch/command_ids.h"
#include "views/item_details_form.h"
#include "views/search_view.h"

#include <QCoreApplication>
#include <QLineEdit>
#include <QTimer>
#include <utility>

namespace
{
constexpr int kUnwindMs = 10; // for a menu or form to end

// Without a day, or on one where a series has nothing, its first occurrence.
void ShowAppointment(quint32 itemId, int day, QWidget* owner)
{
    CAppointment item(kKindAppointment, CAppointment::Blank{});
    bool found = PimStore().ReadOccurrence(itemId, day, item);
    if (!found) {
        const CPoomSession session(PimStore().Volume());
        std::unique_ptr<IAppointment> stored;
        found = session.App() && session.App()->GetAppointmentFromOid(itemId, stored) &&
                PimStore().ReadOccurrence(itemId, DayNumber(stored->get_Start()), item);
    }
    if (found)
        ShowItemDetails(item, owner);
}

void ShowTask(quint32 itemId, QWidget* owner)
{
    CCalendarTask task;
    {
        const CPoomSession session(PimStore().Volume());
        std::unique_ptr<ITask> stored;
        if (!session.App() || !session.App()->GetTaskFromOid(itemId, stored))
            return;
        PimStore().ReadTaskFromModel(*stored, task);
    }
    ShowItemDetails(task, owner);
}
} // namespace

// ---- commands

void CMainFrame::CmdCreateAppointment(int)
{
    CreateAppointment(PimStore().CursorDate(), false, NO_DATE, QString(), this);
}

void CMainFrame::CmdCreateTask(int)
{
    const CCalendarView* view = CurrentView();
    const bool fromToday = !view || view->GetViewKind() == kViewTasks || PimStore().CursorDate() == NO_DATE;
    CreateTask(NO_DATE,
               fromToday ? GetToday() + g_Settings.TasksView.NewTaskDayOffset : PimStore().CursorDate(),
               QString(), this);
}

void CMainFrame::CmdEditItem(int)
{
    const CItemTarget target = SelectedItem();
    if (target.Kind == kKindAppointment)
        EditAppointment(target.ItemId, target.Day, this);
    else if (target.Kind == kKindTask)
        EditTask(target.ItemId, this);
}

// ---- requests

void CMainFrame::ShowItem(const CCommandRequest& request, QWidget* owner)
{
    const DATE start = request.HasDate() ? request.Date1 : NO_DATE;
    const DATE end = request.HasEnd() ? request.Date2 : NO_DATE;
    // No category is not the filter's: the request comes from outside, where no filter is seen.
    const QString category = request.Category.isEmpty() ? kEmptyCategory : request.Category;
    switch (request.Kind) {
    case RequestKind::ViewAppointment:
        ShowAppointment(request.ItemId, request.HasDate() ? DayNumber(start) : 0, owner);
        break;
    case RequestKind::ViewTask:
        ShowTask(request.ItemId, owner);
        break;
    case RequestKind::EditAppointment:
        EditAppointment(request.ItemId, request.HasDate() ? DayNumber(start) : 0, owner);
        break;
    case RequestKind::EditTask:
        EditTask(request.ItemId, owner);
        break;
    case RequestKind::CreateAppointment:
        CreateAppointment(start, start != NO_DATE, end, category, owner);
        break;
    case RequestKind::CreateTask:
        CreateTask(start, end, category, owner);
        break;
    default:
        break;
    }
}

bool CMainFrame::ServeStartupRequest(const CCommandRequest& request)
{
    if (!request.IsSingleItem())
        return false;
    CNamedLock mutex(m_setup.SingleItemMutex);
    (void)mutex.Take(); // another one that has it serves an item too
    ShowItem(request, nullptr);
    return true;
}

// The form was opened for another program, and what was in front before comes back.
void CMainFrame::FallBack()
{
    if (std::exchange(m_cameForward, false) && m_up && !CFormDialog::Current())
        showMinimized();
}

void CMainFrame::ServePostedRequest()
{
    if (LeaveMenu()) // it would be left under the view that the request shows
        return QTimer::singleShot(kUnwindMs, this, [this] { ServePostedRequest(); });
    if (!m_up || !ReadPostedCommandLine(g_CommandRequest))
        return;
    const CCommandRequest request = g_CommandRequest; // a form runs while the next one comes
    if (request.IsSingleItem()) {
        ++m_commandDepth;
        ShowItem(request, CFormDialog::Current() ? static_cast<QWidget*>(CFormDialog::Current()) : this);
        --m_commandDepth;
        if (request.Kind != RequestKind::CreateAppointment && request.Kind != RequestKind::CreateTask)
            FallBack();
    }
    if (request.Kind != RequestKind::OpenView)
        return;
    if (request.View != -1)
        ShowView(request.View, -1);
    if (request.HasDate())
        GoToDate(request.Date1);
}

// ---- pictures

QImage CMainFrame::SnapshotOfItem(const CCommandRequest& request)
{
    QImage picture;
    QTimer once;
    once.setSingleShot(true);
    once.callOnTimeout(this, [&picture] {
        if (CFormDialog* const form = CFormDialog::Current()) {
            picture = form->Snapshot();
            form->End(CFormDialog::kCancelled);
        }
    });
    once.start(0);
    ShowItem(request, this);
    return picture;
}

QImage CMainFrame::SnapshotOfSearch(const QString& words)
{
    ShowView(kViewSearch, -1);
    auto* const search = static_cast<CSearchView*>(CurrentView());
    search->TextBox().setText(words);
    SendCommand(CmdSearchStart);
    while (search->IsSearching())
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    return Snapshot();
}
