// Bits of the views that a change concerns.
#pragma once

enum ViewMask { kMaskDaily = 1, kMaskListWeek = 2, kMaskMonth = 4, kMaskTasks = 8, kMaskSearch = 16 };
