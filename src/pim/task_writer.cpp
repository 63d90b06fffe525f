// What the store writes of tasks, all of it through the object model.
#include "pim/filter_match.h"
#include "pim/item_recurrence.h"
#include "pim/pim_store_private.h"
#include "settings/settings.h"

void CPimStore::ReadTaskFromModel(ITask& item, CTask& task)
{
    task.ItemId = item.get_Oid();
    task.RecordOid = item.RecordOid();
    task.Subject = item.get_Subject();
    if (task.Subject.isEmpty())
        task.Subject = GetString(StringId::StrNoSubject);
    task.Start = item.get_StartDate();
    task.End = item.get_DueDate();
    task.Priority = item.get_Importance();
    task.Complete = item.get_Complete();
    task.CompletedDate = item.get_DateCompleted();
    task.Sensitivity = item.get_Sensitivity();
    task.ReminderSet = item.get_ReminderSet();
    task.ReminderTime = item.get_ReminderTime();
    task.Recurrence = item.get_IsRecurring() ? 1 : 0;
    task.HasNote = !item.get_Body().isEmpty();
    task.Categories.Clear();
    d->Categories.BeginPass();
    d->Categories.ReadItemCategories(task);
    task.Visible = MatchesFilter(g_Settings.GetActiveFilter(), task.Categories);
}

bool CPimStore::SaveTask(IPOutlookApp* app, const CTask& task, const QString& note, int presetIndex,
                         const CRecurrencePatternData* customPattern)
{
    if (!app)
        return false;
    std::unique_ptr<ITask> target;
    if (task.ItemId == 0)
        target = app->CreateTask();
    else if (!app->GetTaskFromOid(task.ItemId, target))
        return false;
    const auto dateOf = [](DATE start, DATE due) { return start != NO_DATE ? start : due; };
    const auto stored = ReadStoredRecurrence(*target, dateOf(target->get_StartDate(), target->get_DueDate()));
    PutSubject(*target, task.Subject, task.ItemId == 0);
    target->put_StartDate(task.Start);
    target->put_DueDate(task.End);
    target->put_ReminderSet(task.ReminderSet);
    if (task.ReminderSet)
        target->put_ReminderTime(task.ReminderTime);
    target->put_Sensitivity(task.IsPrivate() ? 2 : 0);
    target->put_Importance(task.Priority);
    PutRecurrence(*target, stored,
                  {task.IsRecurring(), presetIndex, customPattern, dateOf(task.Start, task.End)});
    target->put_Complete(task.Complete);
    target->put_Categories(d->Categories.GetNamesText(task.Categories));
    if (!note.isEmpty() || !target->get_Body().isEmpty())
        target->put_Body(note);
    return target->Save().IsOk();
}

bool CPimStore::DeleteTask(IPOutlookApp& app, quint32 itemId, IWriterQuestions* questions)
{
    using Choice = IWriterQuestions::Choice;
    std::unique_ptr<ITask> task;
    if (!app.GetTaskFromOid(itemId, task))
        return false;
    if (!task->get_IsRecurring())
        return task->Delete().IsOk();
    const Choice choice = questions ? AskDeleteSeries(*questions) : Choice::First;
    if (choice == Choice::None)
        return false;
    if (choice == Choice::First) {
        const CStatus skipped = task->SkipRecurrence();
        if (skipped || skipped.Kind() != StatusKind::NotFound)
            return skipped.IsOk(); // after its last date the task goes
    }
    return task->Delete().IsOk();
}

bool CPimStore::ToggleTaskComplete(IPOutlookApp& app, quint32 itemId)
{
    std::unique_ptr<ITask> task;
    if (!app.GetTaskFromOid(itemId, task))
        return false;
    task->put_Complete(!task->get_Complete());
    task->put_ReminderSet(false);
    return task->Save().IsOk();
}
