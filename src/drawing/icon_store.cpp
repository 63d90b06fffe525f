#include "drawing/icon_store.h"

#include <QDir>
#include <QDirIterator>
#include <QFileInfo>
#include <algorithm>

#include "drawing/icon_archive.h"
#include "drawing/image_store.h"
#include "drawing/screen_metrics.h"
#include "platform/locale.h"
#include "platform/registry.h"

namespace
{
const QLatin1String kScheme("zip:"), kSmall("small"), kLarge("large"), kPictureSuffix(".png");
const QLatin1String kFolderName("/IconStore"), kArchiveSuffix(".zip");
const QLatin1String kOwnPack("Tessera"); // lies in the share folder; its subkey would show it twice
constexpr int kLowDensity = 96, kHighDensity = 192;

QString ExtensionKey()
{
    return QStringLiteral("Software\\ZELV Extension Icons\\%1")
        .arg(g_ScreenMetrics.m_highRes ? kHighDensity : kLowDensity);
}

QString OwnDensityLevel(QLatin1String size)
{
    return QStringLiteral("%1-%2").arg(g_ScreenMetrics.Density()).arg(size);
}

bool IsPlain(const QString& text, QLatin1String forbidden)
{
    return std::none_of(text.begin(), text.end(),
                        [&](QChar c) { return c.unicode() < 0x20 || forbidden.contains(c); });
}

// Into a square of that many design pixels. A smaller picture stays as it is, unless it was plainly
// made for a lower density than the screen's.
void FitIcon(CAlphaImage& image, int designSide)
{
    const int side = D(designSide), longer = std::max(image.Width(), image.Height());
    const bool tooSmall = g_ScreenMetrics.m_highRes && longer * 4 <= side * 3;
    if (image.IsValid() && (longer > side || tooSmall))
        image = CAlphaImage::FromImage(
            image.ToImage().scaled(side, side, Qt::KeepAspectRatio, Qt::SmoothTransformation));
}

CAlphaImage ReadAt(const CIconArchive& archive, const QString& level, const CIconReference& place)
{
    return archive.ReadImage(archive.Find(level, place.Group, place.File));
}

CAlphaImage ReadLarge(const CIconArchive& archive, const CIconReference& place)
{
    CAlphaImage image = ReadAt(archive, OwnDensityLevel(kLarge), place);
    if (!image.IsValid())
        image = ReadAt(archive, kLarge, place);
    return image;
}

// Of the two that were made for 96, the one that needs the least scaling: at 192 the large one.
CAlphaImage ReadSmall(const CIconArchive& archive, const CIconReference& place)
{
    CAlphaImage image = ReadAt(archive, OwnDensityLevel(kSmall), place);
    if (image.IsValid())
        return image;
    image = ReadAt(archive, kSmall, place);
    const int side = D(CIconStore::kSmallSide);
    if (image.Width() >= side)
        return image;
    CAlphaImage large = ReadAt(archive, kLarge, place);
    return large.IsValid() && (large.Width() <= side || !image.IsValid()) ? large : image;
}
} // namespace

// ---- references

std::optional<CIconReference> CIconReference::Parse(const QString& text)
{
    // From the right: neither group nor name holds ":", but a path may.
    const qsizetype file = text.lastIndexOf(u':');
    const qsizetype group = file > 0 ? text.lastIndexOf(u':', file - 1) : -1;
    if (!text.startsWith(kScheme) || group < kScheme.size())
        return std::nullopt;
    CIconReference reference{text.mid(kScheme.size(), group - kScheme.size()),
                             text.mid(group + 1, file - group - 1), text.mid(file + 1)};
    if (reference.Archive.isEmpty() || reference.Group.isEmpty() || reference.File.isEmpty())
        return std::nullopt;
    return reference;
}

QString CIconReference::ToText() const
{
    return kScheme + Archive + u':' + Group + u':' + File;
}

bool CIconReference::CanBeTold() const
{
    // In the settings file a line ends the value, and so does ";"; white space around it goes.
    const QLatin1String inPath(";"), inMember(";:");
    const QString text = ToText();
    return IsPlain(Archive, inPath) && IsPlain(Group, inMember) && IsPlain(File, inMember) &&
           text.trimmed() == text && Parse(text).has_value();
}

bool CGroupNameLess::operator()(const QString& a, const QString& b) const
{
    return CompareText(a, b) < 0;
}

// ---- folders

QString CIconStore::StoreFolder() const
{
    return m_installFolder + kFolderName;
}

QStringList CIconStore::SearchFolders() const
{
    QStringList folders;
    if (!m_installFolder.isEmpty())
        folders << StoreFolder();
    for (const QString& share : ShareFolders())
        folders << share + kFolderName;
    return folders;
}

QString CIconStore::FindArchive(const QString& archive) const
{
    if (archive.contains(u'/'))
        return QDir::isAbsolutePath(archive) && QFileInfo(archive).isFile() ? archive : QString();
    for (const QString& folder : SearchFolders()) {
        const QString path = folder + u'/' + archive;
        if (QFileInfo(path).isFile())
            return path;
    }
    return QString();
}

// As references name them.
QStringList CIconStore::ArchivesToScan(QDeadlineTimer until) const
{
    QStringList archives;
    for (const QString& folder : SearchFolders()) {
        QStringList names;
        QDirIterator files(folder, QDir::Files);
        while (files.hasNext() && names.size() < kArchives && !until.hasExpired()) {
            files.next();
            const QString name = files.fileName();
            if (name.endsWith(kArchiveSuffix, Qt::CaseInsensitive) && !archives.contains(name))
                names << name;
        }
        names.sort(); // a folder has no order of its own
        archives << names;
    }
    const QString key = ExtensionKey();
    for (const QString& pack : CRegistry::SubKeys(key)) {
        if (pack.compare(kOwnPack, Qt::CaseInsensitive) == 0)
            continue;
        const QString path =
            CRegistry::ReadString(key + u'\\' + pack, QStringLiteral("Path")).value_or(QString());
        if (!path.isEmpty() && !archives.contains(path))
            archives << path;
        if (archives.size() >= kArchives || until.hasExpired())
            break;
    }
    return archives.mid(0, kArchives);
}

// ---- scanning

struct CIconStore::CScan {
    CIconGroups& Groups;
    QDeadlineTimer Until;
    int Icons = 0;
    qint64 Pixels = 0;

    bool IsOver() const { return Icons >= kIcons || Pixels >= kScanPixels || Until.hasExpired(); }
    void Add(const CIconArchive& archive, const QString& name)
    {
        for (const CIconArchive::CMember& member : archive.Members()) {
            if (member.Level.compare(kLarge, Qt::CaseInsensitive) != 0 ||
                !member.File.endsWith(kPictureSuffix, Qt::CaseInsensitive))
                continue;
            if (IsOver())
                return;
            const CIconReference reference{name, member.Group, member.File};
            if (!reference.CanBeTold())
                continue; // it could be chosen but never be loaded
            CIconEntry entry{reference.ToText(), ReadLarge(archive, reference)};
            if (!entry.Large.IsValid())
                continue;
            FitIcon(entry.Large, kLargeSide);
            Pixels += qint64(entry.Large.Width()) * entry.Large.Height();
            ++Icons;
            Groups[member.Group].push_back(std::move(entry));
        }
    }
};

void CIconStore::ScanStore(CIconGroups& groups, QDeadlineTimer until) const
{
    CScan scan{groups, until};
    for (const QString& name : ArchivesToScan(until)) {
        CIconArchive archive;
        if (!scan.IsOver() && archive.Open(FindArchive(name), until))
            scan.Add(archive, name);
    }
}

// ---- one icon

bool CIconStore::LoadIcon(const QString& reference, CCategoryIcon& icon,
                          const CIconArchive* openArchive) const
{
    icon = {reference, {}, {}};
    const std::optional<CIconReference> place = CIconReference::Parse(reference);
    if (!place)
        return false;
    CIconArchive own;
    if (!openArchive) {
        if (!own.Open(FindArchive(place->Archive), QDeadlineTimer(kMilliseconds)))
            return false;
        openArchive = &own;
    }
    icon.Small = ReadSmall(*openArchive, *place);
    icon.Large = ReadLarge(*openArchive, *place);
    FitIcon(icon.Small, kSmallSide);
    FitIcon(icon.Large, kLargeSide);
    return icon.Small.IsValid() || icon.Large.IsValid();
}
