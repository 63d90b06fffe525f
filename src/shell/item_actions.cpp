#include "shell/item_actions.h"
#include "pim/pim_store.h"
#include "settings/settings.h"
#include "forms/question.h"
#include "touch/wait_cursor.h"
#include "util/string_ids.h"
#include "util/string_store.h"

namespace
{
void TellFailure(QWidget* owner)
{
    ShowMessage(owner, GetString(StrSaveFailed), GetString(StrSaveFailedCaption));
}
} // namespace

QString ItemQuestion(int beginningId, const QString& subject)
{
    QString text = GetString(beginningId);
    if (!text.endsWith(u' '))
        text += u' ';
    return text + subject + GetString(StrQuestionEnd);
}

void CItemActions::Delete(const CItemTarget& target, QWidget* owner)
{
    const bool isTask = target.Kind == kKindTask;
    if (!isTask && target.Kind != kKindAppointment)
        return;
    if (!AskYesNo(owner,
                  ItemQuestion(isTask ? StrDeleteTaskQuestion : StrDeleteAppointmentQuestion, target.Subject),
                  GetString(StrDeleteCaption)))
        return;
    const CPoomSession session(PimStore().Volume());
    CDialogQuestions questions(owner);
    bool deleted = false;
    if (IPOutlookApp* app = session.App())
        deleted = isTask ? PimStore().DeleteTask(*app, target.ItemId, &questions)
                         : PimStore().DeleteAppointment(*app, target.ItemId, target.Day, &questions);
    if (!deleted && !questions.WentBack())
        TellFailure(owner);
}

void CItemActions::ToggleComplete(const CItemTarget& target, QWidget* owner)
{
    if (target.Kind != kKindTask)
        return;
    const bool active = !target.Complete;
    if (g_Settings.Tasks.ConfirmCompletion == 1 &&
        !AskYesNo(owner,
                  ItemQuestion(active ? StrCompleteTaskQuestion : StrActivateTaskQuestion, target.Subject),
                  GetString(active ? StrCompleteTaskCaption : StrActivateTaskCaption)))
        return;
    const CPoomSession session(PimStore().Volume());
    if (!session.App() || !PimStore().ToggleTaskComplete(*session.App(), target.ItemId))
        TellFailure(owner);
}

void CItemActions::Duplicate(const CItemTarget& target, QWidget* owner)
{
    if (target.Kind != kKindAppointment && target.Kind != kKindTask)
        return;
    bool duplicated;
    {
        CWaitCursor wait;
        const CPoomSession session(PimStore().Volume());
        duplicated = session.App() && PimStore().DuplicateItem(*session.App(), target.ItemId);
    }
    if (!duplicated)
        TellFailure(owner);
}

void CItemActions::Beam(const CItemTarget& target, QWidget* owner)
{
    if (target.Kind != kKindAppointment && target.Kind != kKindTask)
        return;
    const CPoomSession session(PimStore().Volume());
    if (!session.App() || !PimStore().BeamItem(*session.App(), target.Kind, target.ItemId))
        ShowMessage(owner, GetString(StrSendFailed), GetString(StrBeam));
}
