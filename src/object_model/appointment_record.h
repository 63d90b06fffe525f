// The rows of an appointment's record, read into plain fields and written from them.
#pragma once
#include "object_model/object_model.h"

// What was put since the item was read; the rest of the record is left as it is.
namespace Changed
{
constexpr unsigned Subject = 1, Location = 2, Times = 4, BusyStatus = 8, Sensitivity = 16, Body = 32,
                   Reminder = 64, Categories = 128, Foreign = 256;
constexpr unsigned All = 255; // of a new item; what an imported file says is put or not
} // namespace Changed

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

// Rows to write and to remove, in a buffer that is used again.
class CRecordRows
{
public:
    void Clear();
    void Number(CEPROPID id, qint64 number) { m_put.emplace_back(id, number); }
    void Text(CEPROPID id, const QString& text);      // empty: removed
    void Bytes(CEPROPID id, const QByteArray& bytes); // empty: removed
    void Remove(CEPROPID id) { m_remove.push_back(id); }
    CStatus Write(CPropertyVolume& volume, CEOID oid, CEOID* written, quint32* recordNumber);

private:
    std::vector<CEPROPVAL> m_put;
    std::vector<CEPROPID> m_remove;
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
