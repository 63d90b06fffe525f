// The whole weeks that show a month; the start day of the month view counts in every view.
#pragma once

int GetMonthGridStart(int dayNumber); // first cell of the grid of that day's month
int GetMonthGridEnd(int dayNumber);   // last cell: the end of the week of the month's last day
