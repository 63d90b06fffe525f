// Which stored patterns say the same as a rule of a file.
#pragma once
#include "interchange/recur_rule.h"
#include "records/recurrence_pattern.h"

struct CRulePatterns {
    // One for each part, with type, interval, mask, day, instance and PatternStart, the day of its
    // first occurrence; zone, times and end are still to be put. Empty: no patterns hold the rule.
    std::vector<CRecurrencePattern> Parts;
    bool ShowsOnShorterMonths = false; // the pattern has days that the rule leaves out
    bool IsExact() const { return Parts.size() == 1 && !ShowsOnShorterMonths; }
};

CRulePatterns PatternsOf(const CRecurRule& rule, qint64 start);
