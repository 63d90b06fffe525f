// Puts imported events into the volume's items, through the object model.
#pragma once
#include "interchange/imported_event.h"
#include "object_model/object_model.h"

class CItemWriter
{
public:
    CItemWriter(IPOutlookApp& app, const TimeZoneInformation& device) : m_app(app), m_device(device) {}

    // Writes a planned record of an event; `reused` is an item to overwrite, or null. What is kept
    // of the event goes with the leading record.
    CStatus Write(const CImportedEvent& event, const CPlannedRecord& record, quint32 equalsIndex,
                  const QString& kept, const QString& sourceRule, IAppointment* reused);
    // The same of a task; `pattern` null: it does not recur.
    CStatus WriteTask(const CImportedEvent& event, const CRecurrencePattern* pattern, quint32 equalsIndex,
                      const QString& kept, const QString& sourceRule, ITask* reused);
    // Overwrites the shown values alone, not what identifies the item.
    void PutValues(const CImportedEvent& event, IAppointment& item, bool isNew) const;
    void PutDates(const CImportedEvent& event, qint64 start, qint64 end, IAppointment& item) const;

    // A wall time of that zone (null: floating) as the device shows it.
    qint64 DeviceWall(qint64 wall, const std::shared_ptr<const CFileZone>& zone) const
    {
        return zone ? WallByRecord(zone->ToUtc(wall), m_device) : wall;
    }
    const TimeZoneInformation& ZoneRecord(const std::shared_ptr<const CFileZone>& zone) const
    {
        return zone ? zone->Record() : m_device;
    }
    static QByteArray HashBytes(quint64 hash);
    static QString CancelledSubject(const QString& subject); // the word before it, once

private:
    IPOutlookApp& m_app;
    TimeZoneInformation m_device;
};
