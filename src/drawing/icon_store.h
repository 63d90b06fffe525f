// The icons that categories may carry, in zip archives: those of the store folders, and those that
// other software names in the registry.
// Shape of an archive: members "small/GROUP/NAME.png" and "large/GROUP/NAME.png" for a density of 96,
//   made for 16 and 32 pixels. "192-small/..." and "192-large/...", 288- and 384- beside them serve
//   that density; without them a picture is scaled.
// A reference is what a category keeps: "zip:", the archive, ":", the group, ":", the name. The
//   archive is a full path, or a file name when it lies in a store folder; it may hold ":" itself. A
//   path that is neither reaches nothing, for it would depend on where the program was started.
// Errors: all silent: an archive that cannot be read has no icons, an icon that is gone no pictures.
// Limits: see CIconArchive. A scan looks at kArchives archives and keeps kIcons pictures of together
//   kScanPixels: 64 MiB once they have all been painted. It and LoadIcon stop where their time ends,
//   three quarters of a second unless told, and show what they have.
#pragma once
#include <QDeadlineTimer>
#include <QString>
#include <QStringList>
#include <map>
#include <optional>
#include <vector>

#include "drawing/alpha_image.h"

class CIconArchive;

struct CIconReference {
    QString Archive, Group, File;
    static std::optional<CIconReference> Parse(const QString& text);
    QString ToText() const;
    // False for parts that could not be read again from the text, or from the settings that keep it.
    bool CanBeTold() const;
};

// What a category shows: at the screen's density, no larger than 16 and 32 design pixels.
struct CCategoryIcon {
    QString Reference;
    CAlphaImage Small, Large;
};

struct CIconEntry {
    QString Reference;
    CAlphaImage Large;
};

struct CGroupNameLess {
    bool operator()(const QString& a, const QString& b) const; // ignores case
};
using CIconGroups = std::map<QString, std::vector<CIconEntry>, CGroupNameLess>;

class CIconStore
{
public:
    static constexpr int kMilliseconds = 750;
    static constexpr int kArchives = 64;
    static constexpr int kIcons = 4096;
    static constexpr qint64 kScanPixels = 8 << 20;
    static constexpr int kSmallSide = 16, kLargeSide = 32; // design pixels

    explicit CIconStore(const QString& installFolder) : m_installFolder(installFolder) {}

    QString StoreFolder() const;       // of the install folder
    QStringList SearchFolders() const; // that one, then those of the program's share folders

    // Adds all icons that can be loaded. An archive in a later folder hides behind one of the same name.
    void ScanStore(CIconGroups& groups, QDeadlineTimer until = QDeadlineTimer(kMilliseconds)) const;
    // Both sizes; false when there is neither. The archive is the one the reference names, open
    // already; without it, it is opened here. An empty reference means no icon.
    bool LoadIcon(const QString& reference, CCategoryIcon& icon,
                  const CIconArchive* openArchive = nullptr) const;
    // The file that a reference's archive means; empty when there is none.
    QString FindArchive(const QString& archive) const;

private:
    struct CScan;
    QStringList ArchivesToScan(QDeadlineTimer until) const;

    QString m_installFolder;
};
