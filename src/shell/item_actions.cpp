#include "shell/item_actions.h"
#include "pim/pim_store.h"
#include "shell/question.h"
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

QString DeleteQuestion(int beginningId, const QString& subject)
{
    QString text = GetString(beginningId);
    if (!text.endsWith(u' '))
        text += u' ';
    return text + subject + GetString(StrQuestionEnd);
}

void CItemActions::Delete(const CItemTarget& target, QWidget* owner)
{
    if (target.Kind != kKindAppointment)
        return;
    if (!AskYesNo(owner, DeleteQuestion(StrDeleteAppointmentQuestion, target.Subject),
                  GetString(StrDeleteCaption)))
        return;
    const CPoomSession session(PimStore().Volume());
    CDialogQuestions questions(owner);
    const bool deleted =
        session.App() && PimStore().DeleteAppointment(*session.App(), target.ItemId, target.Day, &questions);
    if (!deleted && !questions.WentBack())
        TellFailure(owner);
}

void CItemActions::Duplicate(const CItemTarget& target, QWidget* owner)
{
    if (target.Kind != kKindAppointment)
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
