// A private volume with zone, clock and settings of the test's own, and records written as they
// stand there.
#pragma once
#include "object_model/object_model.h"
#include "pim/pim_store.h"
#include "platform/clock.h"
#include "platform/time_zone.h"
#include "records/property_numbers.h"
#include "settings/settings.h"
#include "util/date_time.h"

#include <QTemporaryDir>
#include <gtest/gtest.h>

// How the test's messages show texts.
inline void PrintTo(const QString& text, std::ostream* out)
{
    *out << '"' << text.toStdString() << '"';
}
inline void PrintTo(const QStringList& texts, std::ostream* out)
{
    *out << '[' << texts.join(" | ").toStdString() << ']';
}

int Day(const char* iso); // "2026-03-01"
DATE At(const char* iso); // "2026-03-01 10:30", or a day alone
QString Iso(DATE date);   // back; "none" for NO_DATE
TimeZoneInformation ZoneOf(const char* name);
// "10:00-11:00 Subject" and the like, one per item, of one day; all-day items read "all day".
QStringList Lines(const CDayItems* day);

class PimTest : public testing::Test
{
protected:
    PimTest();
    ~PimTest() override;
    void UseZone(const char* name);    // "UTC" at first
    void SetNow(const char* localIso); // 2026-03-15 09:00 at first, in the zone then in force
    void OpenStore();                  // makes m_volume and opens m_store on it

    // A plain appointment as the records hold it. `minutes` of an all-day one counts whole days.
    CEOID WritePlain(const QString& subject, const char* start, int minutes, bool allDay = false,
                     std::vector<CEPROPVAL> further = {});
    // A series; the pattern's zone is that of `zone`, the device's without.
    CEOID WriteSeries(const QString& subject, CRecurrencePattern pattern, bool allDay = false,
                      const char* zone = nullptr);
    void Delete(CEOID oid);
    quint32 ItemIdOf(CEOID oid);
    void LoadDay(const char* iso) { m_store.LoadRange(Day(iso), Day(iso), Day(iso)); }
    QStringList LinesOf(const char* iso) { return Lines(m_store.FindDay(Day(iso))); }

    QTemporaryDir m_folder;
    std::shared_ptr<CPropertyVolume> m_volume;
    CPimStore m_store;
    std::vector<qint64> m_timers; // what the store asked for

private:
    CManualClock m_clock;
    std::unique_ptr<CFixedTimeZone> m_zone;
};

// A pattern of minutes and days: "daily", "weekly", "monthly" or "yearly" from a day on.
CRecurrencePattern Pattern(const char* kind, const char* start, int startMinute, int minutes,
                           const char* end = "4500-12-31");
