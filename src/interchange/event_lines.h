// The lines of one event or task: its values as they are now, and what it kept of its file.
// A kept line that still tells a value stands for it; one that tells another is left out.
#pragma once
#include "interchange/imported_event.h"
#include "interchange/text_lines.h"
#include "object_model/object_model.h"
#include "records/attendees_blob.h"

struct CItemValues {
    QString Uid;
    quint32 Sequence = 0;
    bool IsTask = false;    // whose place is among what it kept
    bool IsMessage = false; // to others: tells a sequence of 0 too, and asks for an answer
    FileTime LastChange = 0;
    QString Subject, Location, Note, Organizer;
    QString OrganizerName; // of one without an address
    QStringList Categories;
    std::vector<CAttendee> Attendees;
    int BusyStatus = 2, Sensitivity = 0;
    bool IsCancelled = false;
    std::optional<int> ReminderMinutes;
};

// What comes before the rest (dates and rule), and the lists of dates that go behind.
struct CDateLines {
    CTextLines Head, Lists;
    bool KeepsRules = true; // the kept RRULE, RDATE and EXDATE lines of the item too
};

// Without BEGIN and END.
CTextLines EventLines(const CItemValues& values, const CKeptLines& kept, const CDateLines& dates);
CItemValues ValuesOf(IAppointment& item);
QStringList SortedNames(const QString& joined);
void AddKept(const CTextLines& block, CTextLines& lines);

// What EventLines and the lines of a task have alike, in the order in which they stand.
void AddIdentity(const CItemValues& values, CTextLines& lines);
void AddTexts(const CItemValues& values, const CKeptLines& kept, CTextLines& lines);
void AddClass(int sensitivity, const CKeptLines& kept, CTextLines& lines, bool* keepsClass);
// The kept line in its place, its value put back where it stands for its parameters alone.
std::string Filled(const std::string& line, const CItemValues& values);
