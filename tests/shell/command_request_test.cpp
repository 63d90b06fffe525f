#include "shell/command_request.h"

#include <gtest/gtest.h>

namespace
{
struct Case {
    const char* Text;
    int Kind;
    quint32 ItemId;
    DATE Date1, Date2;
    int View;
    const char* Category;
};
constexpr quint32 kNone = 0xFFFFFFFF;

const Case kCases[] = {
    // too short, unknown, in the wrong case
    {"", 0, kNone, NO_DATE, NO_DATE, -1, ""},
    {"VIEW|5", 0, kNone, NO_DATE, NO_DATE, -1, ""},
    {"OPEN|X", 0, kNone, NO_DATE, NO_DATE, -1, ""},
    {"nothing known", 0, kNone, NO_DATE, NO_DATE, -1, ""},
    {"|||||||||", 0, kNone, NO_DATE, NO_DATE, -1, ""},
    {"open|LIST", 0, kNone, NO_DATE, NO_DATE, -1, ""},
    {" OPEN|LIST", 0, kNone, NO_DATE, NO_DATE, -1, ""},
    {"OPENED|LIST", 0, kNone, NO_DATE, NO_DATE, -1, ""},
    {"view|5|0|APPT", 0, kNone, NO_DATE, NO_DATE, -1, ""},
    // views
    {"OPEN|DAILY", 1, kNone, NO_DATE, NO_DATE, 0, ""},
    {"OPEN|LIST", 1, kNone, NO_DATE, NO_DATE, 1, ""},
    {"OPEN|GRID", 1, kNone, NO_DATE, NO_DATE, 2, ""},
    {"OPEN|MONTHLY", 1, kNone, NO_DATE, NO_DATE, 3, ""},
    {"OPEN|TASKS", 1, kNone, NO_DATE, NO_DATE, 4, ""},
    {"OPEN|WEEK", 1, kNone, NO_DATE, NO_DATE, -1, ""},
    {"OPEN|list", 1, kNone, NO_DATE, NO_DATE, -1, ""},
    {"OPEN|||", 1, kNone, NO_DATE, NO_DATE, -1, ""},
    {"OPEN|LIST|1367997120", 1, kNone, NO_DATE, NO_DATE, 1, ""},
    {"OPEN||60000", 1, kNone, NO_DATE, NO_DATE, -1, ""},
    {"||OPEN||DAILY||60000", 1, kNone, 60000 / 1440.0, NO_DATE, 0, ""},
    {"OPEN|DAILY|x5", 1, kNone, NO_DATE, NO_DATE, 0, ""},
    {"OPEN|DAILY| +1440x", 1, kNone, 1, NO_DATE, 0, ""},
    {"OPEN|DAILY|-1440", 1, kNone, -1, NO_DATE, 0, ""},
    {"OPEN|DAILY|1440|a|b|c|d", 1, kNone, 1, NO_DATE, 0, ""},
    // one item
    {"VIEW|5|0", 0, 5, NO_DATE, NO_DATE, -1, ""},
    {"VIEW|4711|0|APPT", 2, 4711, NO_DATE, NO_DATE, -1, ""},
    {"VIEW|4711|0|TASK", 3, 4711, NO_DATE, NO_DATE, -1, ""},
    {"VIEW|-1|1440|APPT", 0, kNone, 1, NO_DATE, -1, ""},
    {"VIEW|4294967295|1440|APPT", 0, kNone, 1, NO_DATE, -1, ""},
    {"VIEW|||||", 0, kNone, NO_DATE, NO_DATE, -1, ""},
    {"VIEW|3221225473|1440|TASK", 3, 0xC0000001, 1, NO_DATE, -1, ""},
    {"VIEW|-1073741823|1440|TASK", 3, 0xC0000001, 1, NO_DATE, -1, ""},
    {"VIEW|x|1440|APPT", 2, 0, 1, NO_DATE, -1, ""},
    {"EDIT|4711|56160000|TASK", 7, 4711, 39000, NO_DATE, -1, ""},
    {"EDIT|4711|56160000|APPT", 6, 4711, 39000, NO_DATE, -1, ""},
    {"EDIT|4711|56160000|APPTS", 0, 4711, 39000, NO_DATE, -1, ""},
    // creating
    {"CREATE|56160000|56160060|APPT|Work", 8, kNone, 39000, 39000 + 1 / 24.0, -1, "Work"},
    {"CREATE|56160000|56160060|TASK", 9, kNone, 39000, 39000 + 1 / 24.0, -1, ""},
    {"CREATE|56160000|56160060|BOOK", 0, kNone, 39000, 39000 + 1 / 24.0, -1, ""},
    {"CREATE|56160000|56160060|BOOK|Work", 0, kNone, 39000, 39000 + 1 / 24.0, -1, "Work"},
    {"CREATE|", 0, kNone, NO_DATE, NO_DATE, -1, ""},
    // the two words
    {"REPORTLOGPIXELS", 4, kNone, NO_DATE, NO_DATE, -1, ""},
    {"SHOWSOFTKEYDIALOG|x", 5, kNone, NO_DATE, NO_DATE, -1, ""},
};
} // namespace

TEST(CommandRequest, Grammar)
{
    for (const Case& c : kCases) {
        CCommandRequest request;
        ParseCommandLine(request, QString::fromLatin1(c.Text));
        EXPECT_EQ(int(request.Kind), c.Kind) << c.Text;
        EXPECT_EQ(request.ItemId, c.ItemId) << c.Text;
        EXPECT_DOUBLE_EQ(request.Date1, c.Date1) << c.Text;
        EXPECT_DOUBLE_EQ(request.Date2, c.Date2) << c.Text;
        EXPECT_EQ(request.View, c.View) << c.Text;
        EXPECT_EQ(request.Category, c.Category) << c.Text;
        EXPECT_EQ(request.RawText, c.Text);
    }
}

TEST(CommandRequest, WhatIsNotUnderstoodLeavesTheFields)
{
    CCommandRequest request;
    ParseCommandLine(request, "OPEN|LIST|1440");
    ParseCommandLine(request, QString());
    EXPECT_EQ(request.RawText, "OPEN|LIST|1440");
    ParseCommandLine(request, "short");
    EXPECT_EQ(request.RawText, "short");
    EXPECT_EQ(request.View, 1);
    ParseCommandLine(request, "VIEW|7|2880|NEITHER");
    EXPECT_EQ(request.Kind, RequestKind::OpenView);
    EXPECT_EQ(request.ItemId, 7u);
    EXPECT_EQ(request.Date1, 2);
    request.Clear();
    EXPECT_EQ(request.RawText, "VIEW|7|2880|NEITHER");
    EXPECT_EQ(request.Kind, RequestKind::None);
    EXPECT_EQ(request.ItemId, kNoItem);
    EXPECT_EQ(request.Date1, NO_DATE);
    EXPECT_EQ(request.View, -1);
}
