#include "editors/edit_item.h"
#include "editors/appointment_editor.h"
#include "editors/task_editor.h"
#include "forms/question.h"
#include "pim/pim_store.h"

int CreateAppointment(DATE date, bool hasTime, DATE end, const QString& category, QWidget* owner)
{
    return CAppointmentEditor(date, hasTime, end, category).Run(owner);
}

int EditAppointment(quint32 itemId, int day, QWidget* owner)
{
    CDialogQuestions questions(owner);
    std::unique_ptr<CAppointmentEditor> editor;
    {
        const CPoomSession session(PimStore().Volume());
        bool onlyOccurrence = false;
        std::unique_ptr<IAppointment> target;
        if (session.App())
            target = PimStore().GetEditTarget(*session.App(), itemId, day, &questions, &onlyOccurrence);
        if (!target)
            return CFormDialog::kCancelled;
        editor = std::make_unique<CAppointmentEditor>(*session.App(), *target, day, onlyOccurrence);
    }
    return editor->Run(owner);
}

int CreateTask(DATE start, DATE due, const QString& category, QWidget* owner)
{
    CTaskListEntry task;
    task.Start = start;
    task.End = due;
    return CTaskEditor(nullptr, task, QString(), category).Run(owner);
}

int EditTask(quint32 itemId, QWidget* owner)
{
    std::unique_ptr<CTaskEditor> editor;
    {
        const CPoomSession session(PimStore().Volume());
        std::unique_ptr<ITask> item;
        if (!session.App() || !session.App()->GetTaskFromOid(itemId, item) || !item)
            return CFormDialog::kCancelled;
        CTaskListEntry task;
        PimStore().ReadTaskFromModel(*item, task);
        editor = std::make_unique<CTaskEditor>(session.App(), task, item->get_Body(), QString());
    }
    return editor->Run(owner);
}

bool EditItem(const CPimItem& item, const QString&, QWidget* owner)
{
    if (item.GetKind() == kKindTask)
        return EditTask(item.ItemId, owner) == CFormDialog::kDone;
    if (item.GetKind() != kKindAppointment)
        return false;
    const int originalDay = static_cast<const CAppointment&>(item).OriginalDay;
    EditAppointment(item.ItemId, originalDay ? originalDay : DayNumber(item.Start), owner);
    return true;
}
