// The soft keys of dialogs, by the number of their bar.
#pragma once

class CSoftKeyBar;

enum MenuBarId : int {
    kMenuBarNone = 0,
    kMenuBarDetails = 130, // "Edit", "Close"
    kMenuBarForm = 159, // "Done", "Cancel"
    kMenuBarCategories = 167, // "Done", "Options"
    kMenuBarMyText = 253,     // "Select", "Menu"
    kMenuBarColors = 411,     // "Done", "Menu"
    kMenuBarYesNo = 50001,
    kMenuBarOk = 50002,
    kMenuBarCancel = 50003,
    kMenuBarClose = 50004,
    kMenuBarDatePicker = 50005, // "Done", "Menu"
    kMenuBarSelect = 50006,     // "Select", "Cancel"
};

// What a message answers; also the commands of its keys.
enum MessageAnswer : int {
    kAnswerNone = 0, // it was left because the program ends
    kAnswerOk = 1,
    kAnswerYes = 6,
    kAnswerNo = 7,
};

// Empties the keys and fills them anew. `current` is the number of the key that shows as the
// keyboard's, -1 for none.
void LoadMenuBar(CSoftKeyBar& keys, int barId, int current = -1);
