// A volume in a folder of its own, with a clock and a zone that stand still.
#pragma once
#include "object_model/object_model.h"
#include "records/occurrences.h"

#include <QTemporaryDir>
#include <gtest/gtest.h>

TimeZoneInformation BerlinZone();
TimeZoneInformation NewYorkZone();
TimeZoneInformation SydneyZone();
TimeZoneInformation PlainZone(int bias);

DATE At(const char* iso); // "2026-03-29 02:30" or "2026-03-29"
QString IsoOf(DATE date);

// A record as a reader finds it.
struct CReadRecord {
    std::vector<CEPROPVAL> Rows;
    const CEPROPVAL* Find(CEPROPID id) const;
    bool Has(CEPROPID id) const { return Find(id) != nullptr; }
    qint64 Number(CEPROPID id) const { return Has(id) ? Find(id)->Number : 0; }
    QString Text(CEPROPID id) const { return Has(id) ? Find(id)->Text : QString(); }
    CRecurrencePattern Pattern() const;
};

class ObjectModel : public testing::Test
{
protected:
    ObjectModel();
    ~ObjectModel() override;

    // Starts a program anew on the same volume.
    void Reopen();
    void SetNow(const char* iso); // local time of the zone in force
    void SetZone(const TimeZoneInformation& zone);

    std::unique_ptr<IAppointment> Get(quint32 itemId);
    CReadRecord Read(const IAppointment& item);
    // Plain items by the way of a reader: the bias of now, then the correction to the date's own.
    DATE ReadStart(const IAppointment& item);
    // Starts of a series' occurrences in the device's zone, deletions and changes applied.
    QStringList Occurrences(const IAppointment& item, const char* first, const char* last);
    std::unique_ptr<IAppointment> Plain(const char* start, const char* end);
    // A saved weekly series on Mondays and Wednesdays at 10:00 from 2026-01-05.
    std::unique_ptr<IAppointment> Series();
    std::unique_ptr<IAppointment> Occurrence(quint32 itemId, const char* day);
    // Notices since the last call: "database type", joined.
    QString Notices();

    QTemporaryDir m_folder;
    std::shared_ptr<CPropertyVolume> m_volume;
    std::unique_ptr<IPOutlookApp> m_app;
    CManualClock m_clock;
    std::unique_ptr<CFixedTimeZone> m_zone;
    std::unique_ptr<class ILocale> m_locale;
    qint64 m_seen = 0;
};
