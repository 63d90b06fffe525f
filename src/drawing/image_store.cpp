#include "drawing/image_store.h"

#include <QCoreApplication>
#include <QFile>
#include <QResource>

#include "drawing/icon_archive.h"
#include "drawing/screen_metrics.h"
#include "settings/fonts.h"
#include "settings/settings.h"

CImageStore g_ImageStore;

namespace
{
constexpr char kRoot[] = "/pictures";

// The library that is open now; the file stays mapped until another one takes its place.
QString s_openLibrary;

void CloseLibrary()
{
    if (!s_openLibrary.isEmpty())
        QResource::unregisterResource(s_openLibrary, QLatin1String(kRoot));
    s_openLibrary.clear();
}

bool OpenLibrary(const QString& path)
{
    if (path == s_openLibrary)
        return true;
    if (!QFile::exists(path) || !QResource::registerResource(path, QLatin1String(kRoot)))
        return false;
    CloseLibrary();
    s_openLibrary = path;
    return true;
}

// The densities of the libraries, the screen's own first, then those below it, then above.
CAlphaImage LoadNearest(int id)
{
    CAlphaImage image;
    const int own = g_ScreenMetrics.Multiple();
    for (const int multiple : {own, own - 1, own - 2, own - 3, own + 1, own + 2, own + 3}) {
        if (multiple < 1 || multiple > 4)
            continue;
        const QString module = QStringLiteral(":%1/%2").arg(QLatin1String(kRoot)).arg(96 * multiple);
        if (image.LoadFromResource(module, QString::number(id)))
            break;
    }
    return image;
}

// In the order of wish; a face of a fixed list, never what the system would choose.
const QStringList& Faces()
{
    static const QStringList faces = {QStringLiteral("Tahoma"), QStringLiteral("DejaVu Sans Condensed"),
                                      QStringLiteral("Liberation Sans"), QStringLiteral("Noto Sans")};
    return faces;
}

QFont MakeFont(const FontSpec& spec)
{
    QFont font;
    font.setFamilies(Faces());
    font.setPixelSize(qMax(spec.PixelHeight, 1));
    font.setWeight(spec.Weight >= 700 ? QFont::Bold : spec.Weight >= 600 ? QFont::DemiBold : QFont::Normal);
    font.setStrikeOut(spec.StrikeOut);
    if (spec.ClearType)
        font.setStyleStrategy(QFont::PreferAntialias);
    return font;
}
} // namespace

const CAlphaImage& CImageStore::Image(int id)
{
    const auto known = m_images.find(id);
    if (known != m_images.end())
        return known->second;
    return m_images.emplace(id, LoadNearest(id)).first->second;
}

const QFont& CImageStore::Font(int id)
{
    const auto known = m_fonts.find(id);
    if (known != m_fonts.end())
        return known->second;
    return m_fonts.emplace(id, MakeFont(GetFontSpec(id, g_ScreenMetrics.Multiple()))).first->second;
}

int CImageStore::FontHeight(int id)
{
    return GetFontSpec(id, g_ScreenMetrics.Multiple()).PixelHeight;
}

// ---- icons

const CAlphaImage& CImageStore::Icon(const QString& reference, IconSize size)
{
    static const CAlphaImage none;
    if (reference.isEmpty())
        return none;
    DropIconsOfOtherDensity();
    if (!m_icons.contains(reference))
        LoadIcons(reference);
    const CCategoryIcon& icon = m_icons[reference];
    return size == IconSize::Small ? icon.Small : icon.Large;
}

void CImageStore::LoadIcons(const QString& reference)
{
    m_icons[reference] = {}; // also when nothing is found: painting asks again and again
    const std::optional<CIconReference> wanted = CIconReference::Parse(reference);
    const CIconStore store(g_Settings.m_installFolder);
    const QDeadlineTimer until(CIconStore::kMilliseconds);
    CIconArchive archive;
    if (!wanted || !archive.Open(store.FindArchive(wanted->Archive), until))
        return;
    store.LoadIcon(reference, m_icons[reference], &archive);
    for (const auto& [name, category] : g_Settings.m_categories) {
        const std::optional<CIconReference> other = CIconReference::Parse(category.ImageName);
        if (until.hasExpired())
            return;
        if (other && other->Archive == wanted->Archive && !m_icons.contains(category.ImageName))
            store.LoadIcon(category.ImageName, m_icons[category.ImageName], &archive);
    }
}

void CImageStore::DropIconsOfOtherDensity()
{
    if (m_iconDensity != g_ScreenMetrics.Density())
        m_icons.clear();
    m_iconDensity = g_ScreenMetrics.Density();
}

void CImageStore::PutIcon(const QString& reference, CAlphaImage image)
{
    DropIconsOfOtherDensity();
    m_icons[reference] = {reference, std::move(image), {}};
}

void CImageStore::ForgetIcon(const QString& reference)
{
    m_icons.erase(reference);
}

void CImageStore::Clear()
{
    m_icons.clear();
    m_images.clear();
    m_fonts.clear();
}

QStringList ShareFolders()
{
    const QString given = qEnvironmentVariable("TESSERA_SHARE");
    if (!given.isEmpty())
        return {given};
    return {QCoreApplication::applicationDirPath() + QStringLiteral("/../share/tessera")};
}

bool LoadResourceLibraries(const QString& installFolder)
{
    g_ImageStore.Clear();
    QStringList names = {QStringLiteral("ZELVCalendarVGARes.rcc"), QStringLiteral("ZELVCalendarQVGARes.rcc")};
    if (g_ScreenMetrics.m_lowRes)
        names.swapItemsAt(0, 1);
    QStringList folders = ShareFolders();
    if (!installFolder.isEmpty())
        folders.prepend(installFolder);
    for (const QString& name : names) {
        for (const QString& folder : folders) {
            if (OpenLibrary(folder + QLatin1Char('/') + name))
                return true;
        }
    }
    CloseLibrary();
    return false;
}
