// The fonts of the system by number: weights and pixel heights follow the text sizes.
#pragma once

struct FontSpec {
    int Weight = 100;    // 0 is the face's own regular, 700 bold
    int PixelHeight = 0; // 0: no such font
    bool StrikeOut = false;
    int Escapement = 0; // tenths of a degree, counter-clockwise
    bool ClearType = false;
};

// `densityMultiple` is 1 to 4, how often a design pixel is repeated.
FontSpec GetFontSpec(int id, int densityMultiple);

constexpr int kMinTextSize = 7; // what text size index 0 stands for
constexpr int kTextSizeCount = 18;
constexpr int kMinTitlebarSize = 14;
constexpr int kTitlebarSizeCount = 15;
