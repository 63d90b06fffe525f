// The pattern of an appointment that is being edited: local rows over the stored pattern.
#pragma once
#include "object_model/object_model.h"
#include "object_model/series_rows.h"

#include <optional>

class COutlookApp;

class CPatternObject : public IRecurrencePattern
{
public:
    // A new series: weekly on the start's day, in the device's zone.
    CPatternObject(COutlookApp& app, DATE start, DATE end);
    // A stored one.
    CPatternObject(COutlookApp& app, const CRecurrencePattern& stored, bool allDay, CEOID oid,
                   quint32 itemId);

    OlRecurs get_RecurrenceType() const override { return OlRecurs(Rows().Type); }
    void put_RecurrenceType(OlRecurs type) override;
    DATE get_PatternStartDate() const override { return Rows().StartDay; }
    void put_PatternStartDate(DATE date) override;
    DATE get_StartTime() const override;
    void put_StartTime(DATE time) override;
    DATE get_EndTime() const override;
    void put_EndTime(DATE time) override;
    DATE get_PatternEndDate() const override;
    void put_PatternEndDate(DATE date) override;
    bool get_NoEndDate() const override { return Rows().EndKind == PatternEndKind::Never; }
    void put_NoEndDate(bool none) override;
    int get_Occurrences() const override;
    void put_Occurrences(int count) override;
    int get_Interval() const override { return Rows().Interval; }
    void put_Interval(int interval) override { Edit().Interval = interval; }
    int get_DayOfWeekMask() const override { return Rows().Mask; }
    void put_DayOfWeekMask(int mask) override { Edit().Mask = mask; }
    int get_DayOfMonth() const override { return Rows().DayOfMonth; }
    void put_DayOfMonth(int day) override { Edit().DayOfMonth = day; }
    int get_Instance() const override { return Rows().Instance; }
    void put_Instance(int instance) override { Edit().Instance = instance; }
    int get_MonthOfYear() const override;
    void put_MonthOfYear(int month) override;
    CStatus GetOccurrence(DATE originalDay, std::unique_ptr<IAppointment>& occurrence) override;
    void put_Zone(const TimeZoneInformation& zone) override;
    const CRecurrencePattern& Pattern() const override;
    void put_Pattern(const CRecurrencePattern& pattern) override;

    // For the appointment.
    const CSeriesRows& Rows() const;
    CSeriesRows& Edit();
    void SetAllDay(bool allDay);
    bool IsTouched() const;
    // The pattern to store: over the exceptions that `stored` (the record as it is now) has, unless
    // a whole pattern was put. Null for a new series.
    CStatus PatternToStore(const CRecurrencePattern* stored, CRecurrencePattern& pattern) const;
    void Saved(const CRecurrencePattern& pattern, CEOID oid, quint32 itemId);
    void CopyTo(CPatternObject& other) const;

private:
    void Resolve() const;

    COutlookApp& m_app;
    CEOID m_oid = 0;
    quint32 m_itemId = 0;
    bool m_allDay = false;
    bool m_touched = false;  // apart from the rows
    bool m_wholePut = false; // a pattern with its exceptions
    bool m_zonePut = false;
    DATE m_startTimePut = 0; // as it was put, perhaps with its day
    mutable CRecurrencePattern m_pattern;
    mutable std::optional<CSeriesRows> m_rows;
    mutable CSeriesRows m_baseRows;
    mutable bool m_resolved = false; // rows were put into m_pattern
};
