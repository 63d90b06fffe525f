// A stored pattern as a rule of a file, which reads back as the same pattern.
#pragma once
#include "interchange/zone_writer.h"
#include "records/recurrence_pattern.h"

// Without the "RRULE:". `count` 0: the pattern's own; UNTIL is written as the form of the start wants.
std::string RuleTextOf(const CRecurrencePattern& pattern, const CTimeForm& form, int count = 0);
