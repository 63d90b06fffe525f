// One item of the volume, or one that is being sent, as a whole file for other programs.
#pragma once
#include "object_model/object_model.h"

enum class MeetingMethod { Request, Cancel };

// A whole VCALENDAR (an event, a series with its changed occurrences, a task) or a vCard 3.0.
// NotFound when there is no such item. The subject (of a contact its name) may be null.
CStatus ExportItem(IPOutlookApp& app, const CItemName& item, QByteArray& content, QString* subject);

// An appointment, saved or not, or an occurrence of one, as what attendees are sent. UID and
// SEQUENCE are those of Foreign(): the caller has set and raised them. Invalid without a UID.
CStatus ExportMeeting(IAppointment& appointment, MeetingMethod method, QByteArray& content);
