// Pictures and fonts by number, one global object.
// Pictures come from the open resource library, at the screen's density or else at the nearest
// one that the library holds. Everything is loaded at the first call that asks for it.
// Errors: a missing library or picture gives an empty image, which draws nothing; no message.
#pragma once
#include <QFont>
#include <QString>
#include <QStringList>
#include <map>

#include "drawing/icon_store.h"

class CImageStore
{
public:
    // The image of that number at the metrics' density. The reference holds until `Clear`.
    const CAlphaImage& Image(int id);
    // The font of the table, sized by the settings at the first call after `Clear`.
    const QFont& Font(int id);
    // The height the table gives the font, in device pixels: not the line height.
    int FontHeight(int id);

    // The picture of a category by its reference; empty for a reference that leads to none. Whoever
    // asks first loads all icons of that archive that the settings name. They are kept until `Clear`,
    // a change of density, or `ForgetIcon`.
    enum class IconSize { Small, Large };
    const CAlphaImage& Icon(const QString& reference, IconSize size = IconSize::Small);
    void PutIcon(const QString& reference, CAlphaImage image); // the small one
    void ForgetIcon(const QString& reference);                 // its archive may have another picture now

    // Forgets all that was loaded; after a change of density or settings, and at shutdown.
    void Clear();

private:
    std::map<int, CAlphaImage> m_images;
    std::map<int, QFont> m_fonts;
    void DropIconsOfOtherDensity();
    void LoadIcons(const QString& reference);

    std::map<QString, CCategoryIcon> m_icons;
    int m_iconDensity = 0;
};

extern CImageStore g_ImageStore;

// Opens the resource library for the metrics' density, the install folder's before the program's
// own; the one for the other density when there is none. Empties the store. The frame calls this
// at start and after settings changes. False when there is no library: nothing has a picture then.
bool LoadResourceLibraries(const QString& installFolder);
// Where the program's own read-only files lie: TESSERA_SHARE if set, else ../share/tessera beside
// the program, which is also where the build puts them.
QStringList ShareFolders();
