// The colours that the user can change, by key (their names in the settings file) and by number
// (what painters ask with). A colour that is not set is derived from others or from the system.
#pragma once
#include "util/color.h"

#include <QString>
#include <map>

class CSettingsFile;

class CColorScheme
{
public:
    CColorScheme() { ResetColors(); }
    void ResetColors();
    COLORREF GetStoredColor(int id) const; // kColorNotSet for a number without an entry
    void SetStoredColor(int id, COLORREF color) { m_colorValues[id] = color; }
    COLORREF ResolveColor(int id) const; // what painters use
    // The same, but while it is its default the colour of another number: for what has a look of its
    // own until the user chooses one.
    COLORREF ResolveChosenColor(int id, int otherwise) const;
    // The colour of a number that is not set; black without a rule, and `hasRule` says so.
    COLORREF DefaultColor(int id, bool* hasRule = nullptr) const;
    // Steps through the numbers: 0 gives the first, the end -1; group bases (500, 1000 ..) are
    // steps of their own.
    static int NextColorId(int id);

    void LoadColors(const CSettingsFile& file);
    void SaveColors(CSettingsFile& file) const;

    std::map<QString, int> m_colorIds;
    std::map<int, COLORREF> m_colorValues;
};

// The desktop's highlight, handed in by the shell once it is known; a fixed pair before that.
void SetSystemColors(COLORREF highlight, COLORREF highlightText);
COLORREF GetHighlightColor();
COLORREF GetHighlightTextColor();
