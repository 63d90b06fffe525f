// Whether letters can be typed on keys of the machine: then digits that are typed mean digits, else
// they may stand for the letters of a telephone's keys, too.
#pragma once
#include <QByteArray>
#include <optional>

// True as well where the user says so, or where the machine tells nothing.
bool HasHardwareKeyboard();
// For tests: the answer from now on; none: the machine's.
void ReplaceHardwareKeyboard(std::optional<bool> present);

// From the kernel's list of input devices (/proc/bus/input/devices): false only when a touch screen
// is there and neither keys from Q to P nor a pointer that moves.
bool HasKeyboardAmong(bool touchScreen, const QByteArray& devices);
