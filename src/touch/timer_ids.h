// Numbers and periods of the timers that more than one file names.
#pragma once

enum TimerId : int {
    kTimerOverlay = 1,
    kTimerNextEvent = 2,    // computed period
    kTimerExit = 101,       // deferred destruction
    kTimerTransition = 102, // step of a screen transition
    kTimerFling = 1030,
    kTimerPress = 1031,
    kTimerRebound = 1032,
};
constexpr int kExitMs = 150;
constexpr int kTransitionMs = 50;
constexpr int kFlingMs = 70;
constexpr int kPressMs = 100;
constexpr int kReboundMs = 50;
constexpr int kClockWatchMs = 60000;
