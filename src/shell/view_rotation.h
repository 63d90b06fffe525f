// The order in which the view button runs through the views.
#pragma once
#include <QString>

// The next view among those whose bits are set, upwards and then from the first; 0 when no other
// one is set, even if that is not set either. Only the five views 0 to 4 take part.
int NextViewInRotation(int view, int activeViews);
// "Daily" to "Search"; empty for a number of no view.
QString ViewName(int kind);
