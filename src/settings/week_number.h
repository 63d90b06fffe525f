// Numbers of weeks and the weekend's columns, as the settings want them.
#pragma once
#include "platform/system_time.h"

enum WeekNumberMode { kWeekOfFirstJanuary = 0, kFirstFullWeek = 1, kFirstFourDayWeek = 2 };

int GetWeekNumberMode(); // the rule in force
int GetWeekNumber(int rule, DATE date);
void GetWeekendColumns(int* first, int* second); // columns of a week row, 0 to 6
