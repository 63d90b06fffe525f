// The plain record of a recurrence, as the custom form edits it and the sentence describes it.
// Which fields count depends on PatternType, MonthlyKind, YearlyKind and EndType; the others keep
//   what the form last had. Nothing is checked: what is out of its range is mended when it is written.
#pragma once
#include "util/date_time.h"

#include <array>

struct CRecurrencePatternData {
    enum Pattern : quint32 { kDaily, kWeekly, kMonthly, kYearly };
    enum End : quint32 { kNoEnd, kEndDate, kEndCount };

    quint32 Interval = 1; // days, weeks or months; 0 is the daily choice "every weekday"
    quint32 PatternType = kDaily;
    DATE Start = NO_DATE;
    quint32 EndType = kNoEnd;
    DATE EndDate = NO_DATE;
    quint32 Occurrences = 10;
    std::array<bool, 7> Days = {}; // from Sunday
    quint32 MonthlyKind = 0;       // 0 on a day number, 1 on an ordinal day
    quint32 MonthDay = 1;          // 1..31
    quint32 Ordinal = 0;           // 0 first .. 4 last; monthly and yearly alike
    quint32 MonthlyDayKind = 0;    // 0 day, 1 weekday, 2 weekend day, 3 Sunday .. 9 Saturday
    quint32 YearlyKind = 0;        // 0 on a date, 1 on an ordinal day of a month
    quint32 YearMonthDate = 1;     // 1..12, of kind 0
    quint32 YearDay = 1;           // 1..31
    quint32 YearlyDayKind = 0;     // as MonthlyDayKind
    quint32 YearMonthOrdinal = 1;  // 1..12, of kind 1

    bool operator==(const CRecurrencePatternData&) const = default;
};

// What a form starts with: daily, without end, the rest as the date suggests. A form whose own date
// is moved later moves `Start` along, as long as that was on the same day; what is already stored
// the writer moves by itself.
CRecurrencePatternData MakeDefaultPattern(DATE date);
