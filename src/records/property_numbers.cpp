#include "records/property_numbers.h"

// The volume's tables are made of these lists. A column or an order that is added or taken away
// changes the stored schema and needs a migration there.
namespace
{
const std::vector<CPropertyColumn> kForeignColumns = {
    {Prop::Organizer, "organizer"},      {Prop::Uid, "uid"},
    {Prop::Sequence, "sequence"},        {Prop::LastChange, "last_change"},
    {Prop::ContentHash, "content_hash"}, {Prop::EqualsIndex, "equals_index"},
    {Prop::ForeignText, "foreign_text"}, {Prop::OccurrenceId, "occurrence_id"},
    {Prop::SourceRule, "source_rule"},
};

std::vector<CPropertyColumn> WithForeign(std::vector<CPropertyColumn> columns)
{
    columns.insert(columns.end(), kForeignColumns.begin(), kForeignColumns.end());
    return columns;
}

CDatabaseSchema Appointments()
{
    return {kAppointmentsDatabase,
            WithForeign({{Prop::RecId, "record_number"},
                         {Prop::Start, "start_utc"},
                         {Prop::Duration, "duration_minutes"},
                         {Prop::Recurring, "recurring"},
                         {Prop::Sensitivity, "sensitivity"},
                         {Prop::BusyStatus, "busy_status"},
                         {Prop::AllDay, "all_day"},
                         {Prop::ReminderSet, "reminder_set"},
                         {Prop::ReminderMinutes, "reminder_minutes"},
                         {Prop::LongSpan, "long_span"},
                         {Prop::Subject, "subject"},
                         {Prop::Location, "location"},
                         {Prop::Zone, "zone"},
                         {Prop::Recurrence, "recurrence"},
                         {Prop::Attendees, "attendees"},
                         {Prop::Note, "note"},
                         {Prop::NoteDocument, "note_document"}}),
            {{{Prop::Start}},
             {{Prop::Recurring}}, // absent from plain items, so that this order holds series alone
             {{Prop::LongSpan}},
             {{Prop::Uid}}},
            {{Prop::Start, Prop::Subject}}};
}

CDatabaseSchema Tasks()
{
    return {kTasksDatabase,
            WithForeign({{Prop::RecId, "record_number"},
                         {Prop::Subject, "subject"},
                         {Prop::Sensitivity, "sensitivity"},
                         {Prop::ReminderSet, "reminder_set"},
                         {Prop::TaskStart, "start_date"},
                         {Prop::TaskDue, "due_date"},
                         {Prop::TaskPriority, "priority"},
                         {Prop::TaskComplete, "complete"},
                         {Prop::TaskCompletedDate, "completed_date"},
                         {Prop::Recurring, "recurring"},
                         {Prop::TaskReminderTime, "reminder_time_utc"},
                         {Prop::TaskOwner, "owner"},
                         {Prop::TaskZone, "zone"},
                         {Prop::TaskRecurrence, "recurrence"},
                         {Prop::Note, "note"},
                         {Prop::NoteDocument, "note_document"}}),
            {{{Prop::Uid}}}};
}

CDatabaseSchema Contacts()
{
    return {kContactsDatabase,
            WithForeign({{Prop::RecId, "record_number"},
                         {Prop::ContactKind, "kind"},
                         {Prop::ContactName, "name"},
                         {Prop::ContactBirthday, "birthday"},
                         {Prop::ContactAnniversary, "anniversary"},
                         {Prop::ContactDetail, "detail"},
                         {Prop::PhoneMobile, "phone_mobile"},
                         {Prop::PhoneWork, "phone_work"},
                         {Prop::PhoneWork2, "phone_work_2"},
                         {Prop::PhoneHome, "phone_home"},
                         {Prop::PhoneHome2, "phone_home_2"},
                         {Prop::PhoneWorkFax, "phone_work_fax"},
                         {Prop::PhoneHomeFax, "phone_home_fax"},
                         {Prop::PhoneCar, "phone_car"},
                         {Prop::PhonePager, "phone_pager"},
                         {Prop::ContactMail2, "mail_2"},
                         {Prop::ContactMail3, "mail_3"},
                         {Prop::ContactCompany, "company"},
                         {Prop::ContactLastName, "last_name"},
                         {Prop::ContactFirstName, "first_name"},
                         {Prop::ContactMiddleName, "middle_name"},
                         {Prop::ContactTitle, "title"},
                         {Prop::ContactSuffix, "suffix"},
                         {Prop::Note, "note"},
                         {Prop::NoteDocument, "note_document"}}),
            {{{Prop::Uid}}}};
}

CVolumeSchema MakeSchema()
{
    return {Appointments(),
            Tasks(),
            Contacts(),
            {kCategoryDatabase,
             {{Prop::CategoryNumber, "category"}, {Prop::CategoryName, "name"}, {Prop::CategoryFlag, "flag"}},
             {}},
            {kCategoryAssocDatabase,
             {{Prop::AssocItem, "item"}, {Prop::AssocCategory, "category"}},
             {{{Prop::AssocItem, Prop::AssocCategory}, true}}}};
}
} // namespace

const CVolumeSchema& PimSchema()
{
    static const CVolumeSchema schema = MakeSchema();
    return schema;
}
