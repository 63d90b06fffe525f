// Keys by the numbers that views, menus and the frame know them by.
#pragma once

class QKeyEvent;

enum VirtualKey : int {
    kKeyNone = 0,
    kKeyReturn = 13,
    kKeyEscape = 27, // also the device's back key
    kKeySpace = 32,
    kKeyPageUp = 33,
    kKeyPageDown = 34,
    kKeyEnd = 35,
    kKeyHome = 36,
    kKeyLeft = 37,
    kKeyUp = 38,
    kKeyRight = 39,
    kKeyDown = 40,
    kKeyDigit0 = 48, // .. 57, the keypad's too
    kKeyA = 65,      // .. 90, either case
    kKeyF1 = 112,    // presses the first soft key
    kKeyF2 = 113,    // presses the last
    kKeyF3 = 114,    // the action key of some handhelds
};

// kKeyNone for a key without a number here, and with Ctrl, Alt or the system's key.
int VirtualKeyOf(const QKeyEvent& event);
