// The rows of an appointment's record, read into plain fields and written from them.
#pragma once
#include "object_model/item_base.h"

struct CAppointmentFields {
    QString Subject, Location, Body;
    DATE Start = NO_DATE, End = NO_DATE; // of a plain item, local time
    bool AllDay = false;
    bool ReminderSet = false;
    int BusyStatus = 2;
    int Sensitivity = 0;
    int ReminderMinutes = 0;
    QByteArray Attendees; // as stored
    CForeignData Foreign;
};

std::span<const CEPROPID> AppointmentRows();
// Result: whether the record is of a series; `pattern` is then filled.
bool ReadFields(const std::vector<CEPROPVAL>& rows, const TimeZoneInformation& device,
                CAppointmentFields& fields, CRecurrencePattern& pattern);

// Brings a plain item's dates to whole minutes, or whole days; an end before the start goes.
CStatus NormalizeTimes(CAppointmentFields& fields);
void PutPlainTimes(CRecordRows& rows, const CAppointmentFields& fields, const TimeZoneInformation& device);
void PutSeries(CRecordRows& rows, const CRecurrencePattern& pattern);
void PutFields(CRecordRows& rows, const CAppointmentFields& fields, unsigned changed);
