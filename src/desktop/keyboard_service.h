// The on-screen keyboard of the desktop: the session's service beside Qt's own way, because some
// compositors speak a newer protocol than Qt does. Asked for only when a key or field wants it;
// nothing here connects to the bus at start.
#pragma once

// Shows or hides it; nothing happens where there is no service. Does not wait for the answer.
void ShowOnScreenKeyboard(bool show);
bool IsOnScreenKeyboardShown();
