// Patterns written as text, for the tests of recurrences, and a plain day-by-day definition of
// what a rule means, to check the arithmetic against.
//   daily every 2 from 2024-01-31 until 2024-03-01
//   weekly every 1 days MO,WE from 2024-01-31 count 5
//   monthly every 1 day 31 from 2024-01-31        (yearly: every 12)
//   ordinal every 1 nth 5 days FR from 2024-01-31
//   further words: at HH:MM, lasting MINUTES, without DAY,DAY, raw-mask N, no-end is the default
#pragma once
#include "records/occurrences.h"

#include <QDate>
#include <QString>

int DayOf(const QString& iso);
QString IsoOf(int day);
CRecurrencePattern PatternOf(const QString& text);
// Whether the rule, without end and exceptions, has an occurrence on that day: by definition.
bool RuleHits(const CRecurrencePattern& pattern, int day);
// Days of all occurrences that touch the range, in order, by the definition above.
QStringList ExpandByDays(const CRecurrencePattern& pattern, int firstDay, int lastDay);
QStringList Expand(const CRecurrencePattern& pattern, int firstDay, int lastDay);
