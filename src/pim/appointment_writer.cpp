// What the store writes of appointments, all of it through the object model. The change comes back
// to the cache by its notice.
#include "pim/item_recurrence.h"
#include "pim/pim_store_private.h"
#include "records/property_numbers.h"

namespace
{
using Choice = IWriterQuestions::Choice;

struct CSeriesQuestion {
    int Question, OccurrenceText, SeriesText; // string numbers
};
constexpr CSeriesQuestion kEditQuestion = {StringId::StrEditSeriesQuestion, StringId::StrEditOccurrence,
                                           StringId::StrEditSeries};
constexpr CSeriesQuestion kDeleteQuestion = {StringId::StrDeleteSeriesQuestion, StringId::StrDeleteOccurrence,
                                             StringId::StrDeleteSeries};

// First: the occurrence; Second: the series.
Choice AskSeries(IWriterQuestions& questions, const CSeriesQuestion& texts)
{
    return questions.AskTwoWays(GetString(texts.Question), GetString(StringId::StrOccurrence),
                                GetString(texts.OccurrenceText), GetString(StringId::StrSeries),
                                GetString(texts.SeriesText));
}

void Tell(IWriterQuestions* questions, int text, int title)
{
    if (questions)
        questions->ShowMessage(GetString(text), GetString(title));
}

std::unique_ptr<IAppointment> FindOccurrence(IAppointment& series, int day)
{
    std::unique_ptr<IAppointment> occurrence;
    if (day == 0 || !series.GetRecurrencePattern()->GetOccurrence(day, occurrence))
        return nullptr;
    return occurrence;
}

std::unique_ptr<IAppointment> SaveTarget(IPOutlookApp& app, quint32 itemId, bool onlyOccurrence,
                                         int occurrenceDay)
{
    if (itemId == 0)
        return app.CreateAppointment();
    std::unique_ptr<IAppointment> item;
    if (!app.GetAppointmentFromOid(itemId, item))
        return nullptr;
    return onlyOccurrence && item->get_IsRecurring() ? FindOccurrence(*item, occurrenceDay) : std::move(item);
}

void PutTimes(IAppointment& target, const CAppointment& item)
{
    target.put_Start(item.Start);
    target.put_End(item.End);
    target.put_AllDayEvent(item.AllDay);
}

void PutSeries(IAppointment& target, const std::optional<CStoredRecurrence>& stored,
               const CRecurrenceWish& wish, DATE end)
{
    if (wish.Recurring && wish.Preset != kPresetNone) {
        IRecurrencePattern* pattern = target.GetRecurrencePattern();
        pattern->put_StartTime(wish.Start);
        pattern->put_EndTime(end);
    }
    PutRecurrence(target, stored, wish);
}

void PutNote(IAppointment& target, const QString& note, bool isNew)
{
    if (!note.isEmpty() || (!isNew && !target.get_Body().isEmpty()))
        target.put_Body(note);
}

// Result: false when the request that goes with attendees could not be handed on.
bool PutAttendees(IAppointment& target, const std::vector<CAttendee>& attendees)
{
    IRecipients* recipients = target.get_Recipients();
    bool good = true;
    for (int i = recipients->get_Count(); i >= 1; --i)
        good = recipients->Remove(i).IsOk() && good;
    for (const CAttendee& attendee : attendees) {
        if (IRecipient* recipient = recipients->Add(attendee.Name))
            recipient->put_Address(attendee.Address);
    }
    return attendees.empty() ? good : target.Send().IsOk() && good;
}

bool DeleteWithCancel(IAppointment& target)
{
    // A cancellation that is not handed on must not keep the item alive.
    if (target.get_Recipients()->get_Count() > 0)
        (void)target.Cancel();
    return target.Delete().IsOk();
}

// The body does not come along with a copy.
template <typename Item> bool SaveCopy(Item& item)
{
    const auto copy = item.Copy();
    if (!copy)
        return false;
    if (const QString body = item.get_Body(); !body.isEmpty())
        copy->put_Body(body);
    return copy->Save().IsOk();
}
} // namespace

Choice AskDeleteSeries(IWriterQuestions& questions)
{
    return AskSeries(questions, kDeleteQuestion);
}

std::unique_ptr<IAppointment> CPimStore::GetEditTarget(IPOutlookApp& app, quint32 itemId, int occurrenceDay,
                                                       IWriterQuestions* questions, bool* onlyOccurrence)
{
    if (onlyOccurrence)
        *onlyOccurrence = false;
    std::unique_ptr<IAppointment> item;
    if (!app.GetAppointmentFromOid(itemId, item) || !item->get_IsRecurring() || !questions)
        return item;
    const Choice choice = AskSeries(*questions, kEditQuestion);
    if (choice == Choice::Second)
        return item;
    if (choice == Choice::None)
        return nullptr;
    std::unique_ptr<IAppointment> occurrence = FindOccurrence(*item, occurrenceDay);
    if (!occurrence)
        Tell(questions, StringId::StrOccurrenceFailed, StringId::StrErrorCaption);
    else if (onlyOccurrence)
        *onlyOccurrence = true;
    return occurrence;
}

bool CPimStore::SaveAppointment(IPOutlookApp* app, const CAppointment& item, const QString& note,
                                int presetIndex, bool onlyOccurrence,
                                const CRecurrencePatternData* customPattern,
                                const std::vector<CAttendee>* attendees, int occurrenceDay,
                                IWriterQuestions* questions)
{
    if (!app)
        return false;
    const std::unique_ptr<IAppointment> target = SaveTarget(*app, item.ItemId, onlyOccurrence, occurrenceDay);
    if (!target) {
        Tell(questions, StringId::StrSaveFailed, StringId::StrSaveFailedCaption);
        return false;
    }
    std::optional<CStoredRecurrence> stored;
    if (!onlyOccurrence)
        stored = ReadStoredRecurrence(*target, target->get_Start());
    PutSubject(*target, item.Subject, item.ItemId == 0);
    target->put_Location(item.Location);
    PutTimes(*target, item);
    if (!onlyOccurrence) {
        target->put_Sensitivity(item.IsPrivate() ? 2 : 0);
        target->put_ReminderSet(item.ReminderSet);
        target->put_ReminderMinutesBeforeStart(item.ReminderMinutes);
    }
    target->put_BusyStatus(item.BusyStatus);
    PutNote(*target, note, item.ItemId == 0);
    if (!onlyOccurrence)
        PutSeries(*target, stored, {item.IsRecurring(), presetIndex, customPattern, item.Start}, item.End);
    target->put_Categories(d->Categories.GetNamesText(item.Categories));
    if (attendees)
        PutAttendees(*target, *attendees);
    if (target->Save())
        return true;
    Tell(questions, StringId::StrSaveFailed, StringId::StrSaveFailedCaption);
    return false;
}

bool CPimStore::DeleteAppointment(IPOutlookApp& app, quint32 itemId, int occurrenceDay,
                                  IWriterQuestions* questions)
{
    std::unique_ptr<IAppointment> item;
    if (!app.GetAppointmentFromOid(itemId, item))
        return false;
    if (!item->get_IsRecurring())
        return DeleteWithCancel(*item);
    Choice choice = occurrenceDay != 0 ? Choice::First : Choice::Second;
    if (questions)
        choice = AskDeleteSeries(*questions);
    if (choice == Choice::None)
        return false;
    if (choice == Choice::Second)
        return DeleteWithCancel(*item);
    const std::unique_ptr<IAppointment> occurrence = FindOccurrence(*item, occurrenceDay);
    return occurrence && DeleteWithCancel(*occurrence);
}

bool CPimStore::DuplicateItem(IPOutlookApp& app, quint32 itemId)
{
    if (itemId >= kTaskTag) {
        std::unique_ptr<ITask> task;
        return app.GetTaskFromOid(itemId, task) && SaveCopy(*task);
    }
    if (itemId >= kContactTag) {
        std::unique_ptr<IContact> contact;
        return app.GetContactFromOid(itemId, contact) && SaveCopy(*contact);
    }
    std::unique_ptr<IAppointment> item;
    return app.GetAppointmentFromOid(itemId, item) && SaveCopy(*item);
}
