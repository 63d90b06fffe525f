// The component that writes: the only way into the volume's records.
// Dates of the model are in the device's local time; NO_DATE is none. Texts are QString,
// booleans are bool. An object is a copy in memory until Save; a failed Save leaves the volume as
// it was and notifies nobody.
// Ownership: objects are handed out as unique_ptr and may outlive one another, but not the
//   application they came from.
#pragma once
#include "platform/property_volume.h"
#include "records/attendees_blob.h"
#include "records/recurrence_pattern.h"

enum class OlItem { Appointment = 1, Contact = 2, Task = 3 };
enum class OlRecurs { Daily = 0, Weekly = 1, Monthly = 2, MonthlyNth = 3, Yearly = 5, YearlyNth = 6 };

class IAppointment;

class IRecipient
{
public:
    virtual ~IRecipient() = default;
    virtual QString get_Name() const = 0;
    virtual QString get_Address() const = 0;
    virtual void put_Address(const QString& address) = 0;
};

class IRecipients // belongs to its appointment; indexes from 1
{
public:
    virtual ~IRecipients() = default;
    virtual int get_Count() const = 0;
    virtual IRecipient* Item(int index) = 0; // null when out of range
    virtual IRecipient* Add(const QString& name) = 0;
    virtual CStatus Remove(int index) = 0;
};

class IRecurrencePattern // belongs to its appointment or task
{
public:
    virtual ~IRecurrencePattern() = default;
    virtual OlRecurs get_RecurrenceType() const = 0;
    // Resets interval (1; 12 months for yearly), mask, day and instance; never start or end.
    virtual void put_RecurrenceType(OlRecurs type) = 0;
    virtual DATE get_PatternStartDate() const = 0;
    virtual void put_PatternStartDate(DATE date) = 0;
    virtual DATE get_StartTime() const = 0; // time of day, local
    virtual void put_StartTime(DATE time) = 0;
    virtual DATE get_EndTime() const = 0;
    virtual void put_EndTime(DATE time) = 0;
    virtual DATE get_PatternEndDate() const = 0;
    virtual void put_PatternEndDate(DATE date) = 0; // ends on a date
    virtual bool get_NoEndDate() const = 0;
    virtual void put_NoEndDate(bool none) = 0;
    virtual int get_Occurrences() const = 0;
    virtual void put_Occurrences(int count) = 0; // ends after a count; above 65535 becomes a date at Save
    virtual int get_Interval() const = 0;        // months for yearly types too
    virtual void put_Interval(int interval) = 0;
    virtual int get_DayOfWeekMask() const = 0;
    virtual void put_DayOfWeekMask(int mask) = 0;
    virtual int get_DayOfMonth() const = 0;
    virtual void put_DayOfMonth(int day) = 0;
    virtual int get_Instance() const = 0;
    virtual void put_Instance(int instance) = 0;
    virtual int get_MonthOfYear() const = 0; // 1..12, of the yearly types
    virtual void put_MonthOfYear(int month) = 0;
    // The occurrence that the pattern puts on that original day (or, when none, a moved one shown
    // there), as an appointment whose Save and Delete act on the occurrence alone. NotFound if
    // there is none or it is deleted.
    virtual CStatus GetOccurrence(DATE originalDay, std::unique_ptr<IAppointment>& occurrence) = 0;

    // For importers: the zone the series is kept in (else the device's at creation), a whole
    // pattern at once in that zone, and deletion of many occurrences.
    virtual void put_Zone(const TimeZoneInformation& zone) = 0;
    virtual const CRecurrencePattern& Pattern() const = 0;
    virtual void put_Pattern(const CRecurrencePattern& pattern) = 0;
};

// What our own properties of an item hold.
struct CForeignData {
    QString Uid;
    quint32 Sequence = 0;
    quint32 EqualsIndex = 0;
    QString OccurrenceId;
    QString Organizer;
    QByteArray ContentHash;
    FileTime LastChange = 0;
    QString Text;       // kept lines of the file
    QString SourceRule; // rule as imported
};

class IAppointment
{
public:
    virtual ~IAppointment() = default;
    virtual QString get_Subject() const = 0;
    virtual void put_Subject(const QString& text) = 0;
    virtual QString get_Location() const = 0;
    virtual void put_Location(const QString& text) = 0;
    virtual DATE get_Start() const = 0;
    virtual void put_Start(DATE date) = 0; // keeps the duration
    virtual DATE get_End() const = 0;      // of an all-day item the midnight after its last day
    virtual void put_End(DATE date) = 0;   // before the start: no duration
    virtual bool get_AllDayEvent() const = 0;
    virtual void put_AllDayEvent(bool allDay) = 0;
    virtual int get_BusyStatus() const = 0;
    virtual void put_BusyStatus(int status) = 0;
    virtual int get_Sensitivity() const = 0;
    virtual void put_Sensitivity(int sensitivity) = 0;
    virtual QString get_Body() const = 0;
    virtual void put_Body(const QString& text) = 0;
    virtual bool get_ReminderSet() const = 0;
    virtual void put_ReminderSet(bool set) = 0;
    virtual int get_ReminderMinutesBeforeStart() const = 0;
    virtual void put_ReminderMinutesBeforeStart(int minutes) = 0;
    virtual QString get_Categories() const = 0;            // names joined by ", "
    virtual void put_Categories(const QString& names) = 0; // unknown names are created at Save
    virtual quint32 get_Oid() const = 0;                   // the tagged item identifier; 0 until saved
    virtual CEOID RecordOid() const = 0;
    virtual IRecipients* get_Recipients() = 0;
    virtual bool get_IsRecurring() const = 0;
    virtual IRecurrencePattern*
    GetRecurrencePattern() = 0; // makes one (weekly on the start's day) if there is none
    virtual void ClearRecurrencePattern() = 0;
    virtual CStatus Save() = 0;
    virtual CStatus Delete() = 0;
    virtual std::unique_ptr<IAppointment>
    Copy() = 0;                 // unsaved, without the body and without our own properties' identity
    // Of an occurrence: the day on which its pattern puts it, in the pattern's zone. 0 of any other.
    virtual int OccurrenceDay() const { return 0; }
    virtual CStatus Send() = 0; // through the transport, when there is one; else nothing
    virtual CStatus Cancel() = 0;

    virtual const CForeignData& Foreign() const = 0;
    virtual void put_Foreign(const CForeignData& data) = 0; // the rest of it as a file tells, too
    // By which other calendars know it again; the owner's change it stays. Of an occurrence: nothing.
    virtual void put_Identity(const QString& uid, quint32 sequence) = 0;
};

// A task. Its dates are whole days. A recurring one has a single date at a time: completing it, or
// skipping, moves it to the next day of its pattern.
class ITask
{
public:
    virtual ~ITask() = default;
    virtual QString get_Subject() const = 0;
    virtual void put_Subject(const QString& text) = 0;
    virtual DATE get_StartDate() const = 0;
    virtual void put_StartDate(DATE date) = 0;
    virtual DATE get_DueDate() const = 0;
    virtual void put_DueDate(DATE date) = 0;
    virtual int get_Importance() const = 0; // 0 low, 1 normal, 2 high
    virtual void put_Importance(int importance) = 0;
    virtual bool get_Complete() const = 0;
    virtual void put_Complete(bool complete) = 0;  // false again after Save when a series moved on
    virtual DATE get_DateCompleted() const = 0;    // NO_DATE while it is active
    virtual void put_DateCompleted(DATE date) = 0; // for importers; else the moment of Save
    virtual int get_Sensitivity() const = 0;
    virtual void put_Sensitivity(int sensitivity) = 0;
    virtual QString get_Body() const = 0;
    virtual void put_Body(const QString& text) = 0;
    virtual bool get_ReminderSet() const = 0;
    virtual void put_ReminderSet(bool set) = 0;
    virtual DATE get_ReminderTime() const = 0;
    virtual void put_ReminderTime(DATE time) = 0;
    virtual QString get_Categories() const = 0;
    virtual void put_Categories(const QString& names) = 0;
    virtual quint32 get_Oid() const = 0;
    virtual CEOID RecordOid() const = 0;
    virtual bool get_IsRecurring() const = 0;
    virtual IRecurrencePattern* GetRecurrencePattern() = 0; // makes one (weekly) if there is none
    virtual void ClearRecurrencePattern() = 0;
    // Saves a recurring task at its next date. NotFound when there is none, or no pattern.
    virtual CStatus SkipRecurrence() = 0;
    virtual CStatus Save() = 0;
    virtual CStatus Delete() = 0;
    virtual std::unique_ptr<ITask> Copy() = 0; // as of an appointment

    virtual const CForeignData& Foreign() const = 0;
    virtual void put_Foreign(const CForeignData& data) = 0;
};

// Parts of a person's name.
struct CNameParts {
    QString Last, First, Middle, Title, Suffix;
    bool operator==(const CNameParts&) const = default;
};
enum class OlPhone { Mobile, Work, Work2, Home, Home2, WorkFax, HomeFax, Car, Pager };
constexpr int kContactPhones = 9;
constexpr int kContactMails = 3;

// A contact. Its dates are whole days; one whose year is not known stands in kContactYearUnknown.
class IContact
{
public:
    virtual ~IContact() = default;
    virtual QString get_FileAs() const = 0; // the name that lists and special events show
    virtual void put_FileAs(const QString& name) = 0;
    virtual CNameParts get_NameParts() const = 0;
    virtual void put_NameParts(const CNameParts& parts) = 0;
    virtual QString get_CompanyName() const = 0;
    virtual void put_CompanyName(const QString& name) = 0;
    virtual QString get_EmailAddress(int number) const = 0; // from 1; empty beyond the last
    virtual void put_EmailAddress(int number, const QString& address) = 0;
    virtual QString get_Telephone(OlPhone phone) const = 0;
    virtual void put_Telephone(OlPhone phone, const QString& number) = 0;
    virtual DATE get_Birthday() const = 0; // NO_DATE: none
    virtual void put_Birthday(DATE date) = 0;
    virtual DATE get_Anniversary() const = 0;
    virtual void put_Anniversary(DATE date) = 0;
    virtual QString get_Body() const = 0;
    virtual void put_Body(const QString& text) = 0;
    virtual QString get_Categories() const = 0;
    virtual void put_Categories(const QString& names) = 0;
    virtual quint32 get_Oid() const = 0;
    virtual CEOID RecordOid() const = 0;
    virtual CStatus Save() = 0;
    virtual CStatus Delete() = 0;
    virtual std::unique_ptr<IContact> Copy() = 0; // as of an appointment

    virtual const CForeignData& Foreign() const = 0;
    virtual void put_Foreign(const CForeignData& data) = 0;
};

// One item of the volume, by name.
struct CItemName {
    OlItem Kind = OlItem::Appointment;
    quint32 ItemId = 0;
};

// What Send, Cancel and the infrared folder hand out; the shell gives one. Ok means that it was
// handed on, not that it has arrived; what happens later the transport tells the user itself.
class IItemTransport
{
public:
    virtual ~IItemTransport() = default;
    virtual CStatus SendRequest(IAppointment& appointment) = 0;
    virtual CStatus SendCancel(IAppointment& appointment) = 0;
    virtual CStatus SendItems(const std::vector<CItemName>& items) = 0;
};

constexpr int olFolderInfrared = 102;

// The folder that leaves the device: what was put into it goes out together.
class IFolder
{
public:
    virtual ~IFolder() = default;
    virtual CStatus AddItemToInfraredFolder(OlItem kind, quint32 itemId) = 0; // NotFound: no such item
    virtual CStatus SendToInfrared() = 0; // empties the folder; Invalid without items or transport
};

// Identity of an imported item as the volume holds it.
struct CForeignKey {
    CEOID Oid = 0;
    quint32 ItemId = 0;
    quint32 Sequence = 0;
    quint32 EqualsIndex = 0;
    QString OccurrenceId;
    QByteArray ContentHash;
};

class IPOutlookApp
{
public:
    virtual ~IPOutlookApp() = default;
    virtual CStatus Logon() = 0;
    virtual void Logoff() = 0;
    virtual std::unique_ptr<IAppointment> CreateAppointment() = 0; // CreateItem(1)
    virtual CStatus GetAppointmentFromOid(quint32 itemId, std::unique_ptr<IAppointment>& item) = 0;
    virtual std::unique_ptr<ITask> CreateTask() = 0; // CreateItem(3)
    virtual CStatus GetTaskFromOid(quint32 itemId, std::unique_ptr<ITask>& item) = 0;
    virtual std::unique_ptr<IContact> CreateContact() = 0; // CreateItem(2)
    virtual CStatus GetContactFromOid(quint32 itemId, std::unique_ptr<IContact>& item) = 0;
    // A batch: many whole items in one transaction. A failed save inside it fails that item alone.
    virtual CStatus BeginBatch() = 0;
    virtual CStatus CommitBatch() = 0;
    virtual void AbandonBatch() = 0;
    // All appointments that carry that UID, in order of identity.
    virtual std::vector<CForeignKey> FindByUid(const QString& uid) = 0;
    virtual std::vector<CForeignKey> FindTasksByUid(const QString& uid) = 0;
    virtual std::vector<CForeignKey> FindContactsByUid(const QString& uid) = 0;
    virtual bool HasAnyUid() = 0; // false: an importer need not look for earlier items
    virtual void SetTransport(IItemTransport* transport) = 0; // borrowed; null for none
    virtual std::unique_ptr<IFolder> GetDefaultFolder(int folder) = 0; // null but for the infrared folder
};

// Borrows nothing: keeps the volume alive. Null without a volume.
std::unique_ptr<IPOutlookApp> MakePOutlookApp(std::shared_ptr<CPropertyVolume> volume);
