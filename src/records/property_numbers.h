// Property numbers of all records, the volume's schema made of them, and the item identifiers.
#pragma once
#include "platform/property_volume.h"

inline const QString kAppointmentsDatabase = QStringLiteral("Appointments Database");
inline const QString kTasksDatabase = QStringLiteral("Tasks Database");
inline const QString kContactsDatabase = QStringLiteral("Contacts Database");
inline const QString kCategoryDatabase = QStringLiteral("CategoryMainDB");
inline const QString kCategoryAssocDatabase = QStringLiteral("CategoryAssocDB");

namespace Prop
{
constexpr CEPROPID RecId = 0x10000066;
// Appointments
constexpr CEPROPID Start = 0x10420040;       // file time, UTC
constexpr CEPROPID Duration = 0x10400013;    // minutes
constexpr CEPROPID Recurring = 0x0022000B;
constexpr CEPROPID Sensitivity = 0x00210013; // 0 normal, 2 private
constexpr CEPROPID BusyStatus = 0x00450013;  // 0 free, 1 tentative, 2 busy, 3 out of office
constexpr CEPROPID AllDay = 0x0044000B;
constexpr CEPROPID Zone = 0x00480041;        // zone blob of a series
constexpr CEPROPID Recurrence = 0x203F0064;  // recurrence blob
constexpr CEPROPID Note = 0x101F001F;        // plain text
constexpr CEPROPID NoteDocument = 0x001E0064;
constexpr CEPROPID Subject = 0x0020001F;
constexpr CEPROPID Location = 0x0041001F;
constexpr CEPROPID ReminderSet = 0x0028000B;
constexpr CEPROPID Attendees = 0x205F0064;   // names and addresses, see attendees_blob.h
// Our own, for what the old records have no number for
constexpr CEPROPID ReminderMinutes = 0x7E000013;
constexpr CEPROPID Organizer = 0x7E01001F;
constexpr CEPROPID Uid = 0x7E02001F;
constexpr CEPROPID Sequence = 0x7E030013;
constexpr CEPROPID LastChange = 0x7E040040;
constexpr CEPROPID ContentHash = 0x7E050041;
constexpr CEPROPID EqualsIndex = 0x7E060013;  // position among items of one UID in their file
constexpr CEPROPID ForeignText = 0x7E07001F;  // what an imported file said beyond the record
constexpr CEPROPID OccurrenceId = 0x7E08001F; // RECURRENCE-ID of an item that stands alone, or the part of a split series
constexpr CEPROPID LongSpan = 0x7E090013;     // duration in minutes, only when above 31 days
constexpr CEPROPID SourceRule = 0x7E0A001F;   // the rule as it was imported, dropped when the rows are touched
// Tasks (subject, sensitivity, reminder flag, recurring and notes as of appointments)
constexpr CEPROPID TaskStart = 0x00620040;      // file time of a date, no zone
constexpr CEPROPID TaskDue = 0x00630040;        // likewise
constexpr CEPROPID TaskPriority = 0x00600013;   // 0 low, 1 normal, 2 high
constexpr CEPROPID TaskComplete = 0x1065000B;
constexpr CEPROPID TaskCompletedDate = 0x00640040;
constexpr CEPROPID TaskReminderTime = 0x10660040; // UTC
constexpr CEPROPID TaskOwner = 0x101D001F;      // read by nobody
// Our own; the two forms are those of an appointment's series
constexpr CEPROPID TaskRecurrence = 0x7E0B0064;
constexpr CEPROPID TaskZone = 0x7E0C0041;
// Contacts
constexpr CEPROPID ContactKind = 0x00F80013;    // read by nobody
constexpr CEPROPID ContactName = 0x0080001F;
constexpr CEPROPID ContactBirthday = 0x00F00040;    // file time of a date, no zone
constexpr CEPROPID ContactAnniversary = 0x00F10040; // likewise
constexpr CEPROPID ContactDetail = 0x0090001F;      // the first mail address
// Our own
constexpr CEPROPID PhoneMobile = 0x7E10001F;
constexpr CEPROPID PhoneWork = 0x7E11001F;
constexpr CEPROPID PhoneWork2 = 0x7E12001F;
constexpr CEPROPID PhoneHome = 0x7E13001F;
constexpr CEPROPID PhoneHome2 = 0x7E14001F;
constexpr CEPROPID PhoneWorkFax = 0x7E15001F;
constexpr CEPROPID PhoneHomeFax = 0x7E16001F;
constexpr CEPROPID PhoneCar = 0x7E17001F;
constexpr CEPROPID PhonePager = 0x7E18001F;
constexpr CEPROPID ContactMail2 = 0x7E19001F;
constexpr CEPROPID ContactMail3 = 0x7E1A001F;
constexpr CEPROPID ContactCompany = 0x7E1B001F;
constexpr CEPROPID ContactLastName = 0x7E1C001F;
constexpr CEPROPID ContactFirstName = 0x7E1D001F;
constexpr CEPROPID ContactMiddleName = 0x7E1E001F;
constexpr CEPROPID ContactTitle = 0x7E1F001F;
constexpr CEPROPID ContactSuffix = 0x7E20001F;
// Categories
constexpr CEPROPID CategoryNumber = 0x00010066;
constexpr CEPROPID CategoryName = 0x0002001F;
constexpr CEPROPID CategoryFlag = 0x00030003;
constexpr CEPROPID AssocItem = 0x00010013;
constexpr CEPROPID AssocCategory = 0x00020003;
} // namespace Prop

// A contact's date whose year nobody knows stands in this one, which has a 29 February.
constexpr int kContactYearUnknown = 1604;

// Item identifiers: RECID with a tag added to its top bits, modulo 2^32.
constexpr quint32 kAppointmentTag = 0x40000000u;
constexpr quint32 kTaskTag = 0xC0000000u;
constexpr quint32 kContactTag = 0x80000000u;

// Numbers of the databases in the schema, as notices carry them (+1 is the notice's dwParam for
// the first three: 1 appointments, 2 tasks, 3 contacts).
enum PimDatabase { kDbAppointments = 0, kDbTasks = 1, kDbContacts = 2, kDbCategories = 3, kDbCategoryAssoc = 4 };
const CVolumeSchema& PimSchema();
