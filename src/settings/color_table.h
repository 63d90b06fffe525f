// Every colour of the scheme: number, key in the settings file, default. Sorted by number; the
// thousands tell the owner: 500 general, 1000 status, 2000 tasks' text, 3000 daily, 4000 list,
// 5000 weekly, 6000 monthly, 7000 tasks view. Numbers are stored nowhere, keys are: never
// rename or reuse one.
#pragma once
#include "util/color.h"

#include <cstddef>

struct CColorKey {
    int Id;
    const char* Key;
    COLORREF Default;
};

inline constexpr CColorKey kColorKeys[] = {
    {501, "ColorGeneralDfltCategory", Rgb(15, 32, 200)},
    {502, "ColorGeneralDfltCategoryAllDay", Rgb(15, 32, 200)},
    {503, "ColorHighlightedTxt", kColorNotSet},
    {504, "ColorCustomTitlebarBG", kColorNotSet},
    {505, "ColorCustomTitlebarText", kColorNotSet},
    {1001, "ColorStatusFree", Rgb(42, 120, 18)},
    {1002, "ColorStatusBusy", Rgb(147, 16, 16)},
    {1003, "ColorStatusTentative", Rgb(14, 28, 58)},
    {1004, "ColorStatusOutOfOffice", Rgb(14, 28, 58)},
    {2001, "ColorTasksRegularTxt", Rgb(8, 81, 123)},
    {2002, "ColorTasksOverdueTxt", Rgb(170, 10, 10)},
    {2003, "ColorTasksUndatedTxt", Rgb(10, 120, 10)},
    {3001, "ColorDailyViewGeneralTxt", Rgb(14, 37, 64)},
    {3002, "ColorDailyViewApptSubjectTxt", Rgb(0, 0, 20)},
    {3003, "ColorDailyViewApptLocationTxt", Rgb(14, 37, 64)},
    {3004, "ColorDailyViewApptTimeTxt", Rgb(14, 37, 64)},
    {3005, "ColorDailyViewSpecialEventTxt", Rgb(42, 120, 18)},
    {3006, "ColorDailyViewBk", Rgb(255, 255, 255)},
    {3007, "ColorDailyViewHighlight", kColorNotSet},
    {3008, "ColorDailyViewHighlightBorder", kColorNotSet},
    {3009, "ColorDailyViewTimelineBk", Rgb(255, 255, 255)},
    {3010, "ColorDailyViewTimelineBorder", Rgb(0, 0, 0)},
    {3011, "ColorDailyViewSeparatorLine", Rgb(222, 225, 221)},
    {3012, "ColorDailyViewTimelineBarBk", kColorNotSet},
    {3013, "ColorDailyViewTimelineBarBorder", Rgb(20, 90, 130)},
    {4001, "ColorListViewGeneralTxt", Rgb(14, 37, 64)},
    {4002, "ColorListViewApptSubjectTxt", Rgb(14, 37, 64)},
    {4003, "ColorListViewApptTimeTxt", Rgb(0, 0, 0)},
    {4004, "ColorListViewSpecialEventTxt", Rgb(42, 120, 18)},
    {4005, "ColorListViewBk", Rgb(255, 255, 255)},
    {4006, "ColorListViewDayTitleBk", kColorNotSet},
    {4007, "ColorListViewDayTitleTxt", Rgb(255, 255, 255)},
    {4008, "ColorListViewDayTitleTimelineBk", Rgb(255, 255, 255)},
    {4009, "ColorListViewDayTitleTimelineBorder", Rgb(8, 81, 123)},
    {4010, "ColorListViewItemBk", Rgb(222, 225, 221)},
    {4011, "ColorListViewHighlight", kColorNotSet},
    {5001, "ColorGridViewGeneralTxt", Rgb(25, 44, 87)},
    {5002, "ColorGridViewApptSubjectTxt", Rgb(0, 0, 20)},
    {5003, "ColorGridViewBk", kColorNotSet},
    {5004, "ColorGridViewHighlight", kColorNotSet},
    {5005, "ColorGridViewWeekend", kColorNotSet},
    {5006, "ColorGridViewDayTitlesTxt", Rgb(255, 255, 255)},
    {5007, "ColorGridViewDayTitlesBk", Rgb(65, 140, 183)},
    {5008, "ColorGridViewTimelineBk", Rgb(255, 255, 255)},
    {5009, "ColorGridViewTimelineBorder", Rgb(0, 0, 0)},
    {5010, "ColorGridViewTodayBk", kColorNotSet},
    {5011, "ColorGridViewTimelineBarBk", kColorNotSet},
    {5012, "ColorGridViewTimelineBarBorder", Rgb(20, 90, 130)},
    {6001, "ColorMonthlyViewDaysRects", kColorNotSet},
    {6002, "ColorMonthlyViewCurrDayBk", kColorNotSet},
    {6003, "ColorMonthlyViewPrevNextMonthDaysBk", Rgb(216, 216, 216)},
    {6004, "ColorMonthlyViewWeekendDaysBk", kColorNotSet},
    {6005, "ColorMonthlyViewHighlight", kColorNotSet},
    {6006, "ColorMonthlyViewHighlightNumTxt", kColorNotSet},
    {6007, "ColorMonthlyViewDayNumsTxt", Rgb(70, 50, 56)},
    {6008, "ColorMonthlyViewPrevNextMonthDayNumsTxt", Rgb(156, 130, 136)},
    {6009, "ColorMonthlyViewCurrDayNumTxt", Rgb(70, 50, 56)},
    {6010, "ColorMonthlyViewMiniTimelinesBk", Rgb(255, 255, 255)},
    {6011, "ColorMonthlyViewMiniTimelinesBorder", Rgb(128, 128, 128)},
    {6012, "ColorMonthlyViewTimelineBk", Rgb(255, 255, 255)},
    {6013, "ColorMonthlyViewTimelineBorder", Rgb(0, 0, 0)},
    {6014, "ColorMonthlyViewDayTitlesTxt", Rgb(30, 30, 30)},
    {6015, "ColorMonthlyViewDayTitlesBk", Rgb(255, 255, 255)},
    {6016, "ColorMonthlyViewWeekNumsBk", Rgb(170, 170, 170)},
    {6017, "ColorMonthlyViewWeekNumsTxt", Rgb(255, 255, 255)},
    {6019, "ColorMonthlyViewQuickListBk", Rgb(255, 255, 255)},
    {6020, "ColorMonthlyViewQuickListGeneralTxt", Rgb(25, 44, 87)},
    {6021, "ColorMonthlyViewQuickListApptTxt", Rgb(0, 0, 20)},
    {6022, "ColorMonthlyViewTimelineBarBk", kColorNotSet},
    {6023, "ColorMonthlyViewTimelineBarBorder", Rgb(20, 90, 130)},
    {7001, "ColorTasksViewBk", Rgb(255, 255, 255)},
    {7002, "ColorTasksViewGroupTitleBk", Rgb(65, 140, 183)},
    {7003, "ColorTasksViewGroupTitleTxt", Rgb(255, 255, 255)},
    {7004, "ColorTasksViewTaskBk", Rgb(222, 225, 221)},
    {7005, "ColorTasksViewHighlight", kColorNotSet},
    {7006, "ColorTasksViewPreviewPaneBk", Rgb(255, 255, 255)},
    {7007, "ColorTasksViewPreviewPaneTxt", Rgb(8, 81, 123)},
    {7008, "ColorTasksViewPreviewPaneSeparatorLine", Rgb(210, 212, 159)},
    {7009, "ColorTasksViewPreviewPaneTopBorder", Rgb(8, 81, 123)},
};

constexpr bool ColorKeysRise()
{
    for (size_t i = 1; i < sizeof kColorKeys / sizeof kColorKeys[0]; ++i) {
        if (kColorKeys[i - 1].Id >= kColorKeys[i].Id)
            return false;
    }
    return sizeof kColorKeys / sizeof kColorKeys[0] == 79;
}
static_assert(ColorKeysRise(), "numbers are sorted, each stands once");
