// The seven days that the list view and the weekly view show.
#pragma once

// The first of the seven days around `day`: with `startOnToday` the one on today's day of the week,
// else the one on which weeks begin by the settings.
int FirstDayOfWeekAround(int day, bool startOnToday);

int CursorDay(); // of the store; today before there is one
