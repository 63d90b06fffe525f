#include "platform/clock.h"
#include "platform/time_zone.h"
#include "shell/options.h"

#include <gtest/gtest.h>

using Action = COptions::Action;

TEST(Options, WhatEachSays)
{
    EXPECT_EQ(ParseOptions({}).What, Action::Run);
    EXPECT_TRUE(ParseOptions({}).Request.isNull());
    EXPECT_EQ(ParseOptions({"--help"}).What, Action::Help);
    EXPECT_EQ(ParseOptions({"--version", "--bogus"}).What, Action::Version);
    const COptions run = ParseOptions({"--volume", "a b", "--density=288", "OPEN|DAILY"});
    EXPECT_EQ(run.What, Action::Run);
    EXPECT_EQ(run.Volume, "a b");
    EXPECT_EQ(run.Density, 288);
    EXPECT_EQ(run.Request, "OPEN|DAILY");
    const COptions snapshot =
        ParseOptions({"--size", "240x320", "--snapshot=x.png", "--now", "2026-03-10T09:30"});
    EXPECT_EQ(snapshot.What, Action::Snapshot);
    EXPECT_EQ(snapshot.Size, QSize(240, 320));
    EXPECT_EQ(ParseOptions({"--", "-OPEN"}).Request, "-OPEN");
    EXPECT_FALSE(ParseOptions({""}).Request.isNull()) << "an empty request is one";
}

TEST(Options, FaultsAreTold)
{
    for (const QStringList& arguments : {QStringList{"--bogus"},
                                         {"-x"},
                                         {"--help=1"},
                                         {"--volume"},
                                         {"--volume="},
                                         {"--density", "97"},
                                         {"--density", "96x"},
                                         {"--snapshot", ""},
                                         {"--snapshot", "x", "--size", "0x5"},
                                         {"--snapshot", "x", "--size", "99999x5"},
                                         {"--snapshot", "x", "--size", "5"},
                                         {"--snapshot", "x", "--size", "5x5 "},
                                         {"--size", "5x5"},
                                         {"--now", "2026-03-10"},
                                         {"--snapshot", "x", "--now", "2026-02-30"},
                                         {"--snapshot", "x", "--now", "soon"},
                                         {"OPEN|DAILY", "OPEN|LIST"}}) {
        const COptions options = ParseOptions(arguments);
        EXPECT_EQ(options.What, Action::Fault) << arguments.join(' ').toStdString();
        EXPECT_FALSE(options.Fault.isEmpty());
    }
}

TEST(Options, MomentsAreLocalUnlessTheySayUtc)
{
    TimeZoneInformation zone;
    zone.Bias = -60;
    zone.DaylightBias = -60;
    zone.StandardDate = {0, 10, 0, 5, 3, 0, 0, 0};
    zone.DaylightDate = {0, 3, 0, 5, 2, 0, 0, 0};
    const CFixedTimeZone fixed(zone);
    SetTimeZone(&fixed);
    const struct {
        const char* Text;
        SystemTime Utc;
    } cases[] = {{"2026-03-10T09:30", {2026, 3, 2, 10, 8, 30, 0, 0}},
                 {"2026-07-01 00:15:20", {2026, 6, 2, 30, 22, 15, 20, 0}},
                 {"2026-07-01T00:15Z", {2026, 7, 3, 1, 0, 15, 0, 0}},
                 {"2026-01-01", {2025, 12, 3, 31, 23, 0, 0, 0}}};
    for (const auto& c : cases) {
        qint64 moment = 0;
        ASSERT_TRUE(ParseMoment(c.Text, &moment)) << c.Text;
        SystemTime utc;
        ASSERT_TRUE(FileTimeToSystemTime(moment, &utc));
        EXPECT_EQ(utc, c.Utc) << c.Text << " gives hour " << utc.wHour;
    }
    SetTimeZone(nullptr);
}
