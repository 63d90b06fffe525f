// From the folders and the registry to the pictures that a category shows.
#include "drawing/icon_store.h"

#include <QDir>
#include <QTemporaryDir>

#include "drawing/archive_maker.h"
#include "drawing/icon_archive.h"
#include "drawing/image_store.h"
#include "drawing/screen_metrics.h"
#include "platform/registry.h"
#include "settings/settings.h"

namespace
{
constexpr QRgb kRed = qRgb(200, 0, 0), kGreen = qRgb(0, 200, 0), kBlue = qRgb(0, 0, 200);

class IconStore : public testing::Test
{
protected:
    void SetUp() override
    {
        for (const char* const folder : {"install/IconStore", "share/IconStore", "elsewhere"})
            QDir(Folder.path()).mkpath(QString::fromLatin1(folder));
        qputenv("TESSERA_SHARE", At("share").toUtf8());
        CRegistry::SetFolder(At("config"));
        g_Settings.m_installFolder = At("install");
        g_ImageStore.Clear();
    }
    void TearDown() override
    {
        qunsetenv("TESSERA_SHARE");
        CRegistry::SetFolder(QString());
        g_Settings.m_installFolder.clear();
        g_Settings.m_categories.clear();
        g_ScreenMetrics.Init(96, QSize());
        g_ImageStore.Clear();
    }
    QString At(const char* name) const { return Folder.filePath(QString::fromUtf8(name)); }
    void Write(const char* name, const std::vector<CTestMember>& members) { WriteArchive(At(name), members); }
    // Every entry's reference, groups in order: "Group: reference reference".
    QStringList Scan(QDeadlineTimer until = QDeadlineTimer::Forever) const
    {
        CIconGroups groups;
        CIconStore(g_Settings.m_installFolder).ScanStore(groups, until);
        QStringList lines;
        for (const auto& [group, entries] : groups) {
            QStringList references;
            for (const CIconEntry& entry : entries) {
                EXPECT_TRUE(entry.Large.IsValid());
                references << entry.Reference;
            }
            lines << group + QStringLiteral(": ") + references.join(u' ');
        }
        return lines;
    }
    bool Load(const QString& reference, CCategoryIcon& icon) const
    {
        return CIconStore(g_Settings.m_installFolder).LoadIcon(reference, icon);
    }
    static void AddPack(int density, const char* name, const QString& path)
    {
        CRegistry::WriteString(QStringLiteral("Software\\ZELV Extension Icons\\%1\\%2")
                                   .arg(density)
                                   .arg(QString::fromLatin1(name)),
                               QStringLiteral("Path"), path);
    }
    QTemporaryDir Folder;
};

// ---- references

struct ReferenceCase {
    const char* Text;
    const char* Parts; // archive|group|file; empty: leads nowhere
};
const ReferenceCase kReferences[] = {
    {"zip:a.zip:Work:b.png", "a.zip|Work|b.png"},
    {"zip:/full/path/a.zip:Work:b.png", "/full/path/a.zip|Work|b.png"},
    {"zip:/odd:path/a:b.zip:Work:b.png", "/odd:path/a:b.zip|Work|b.png"},
    {"zip:a.zip:Work:deep/b.png", "a.zip|Work|deep/b.png"},
    {"zip:zip:zip:zip", "zip|zip|zip"},
    {"", ""},
    {":", ""},
    {"::::", ""},
    {"zip", ""},
    {"zip:", ""},
    {"zip:a.zip", ""},
    {"zip:a.zip:b.png", ""},
    {"zip::Work:b.png", ""},
    {"zip:a.zip::b.png", ""},
    {"zip:a.zip:Work:", ""},
    {"tar:a.zip:Work:b.png", ""},
    {"ZIP:a.zip:Work:b.png", ""},
    {"a.zip:Work:b.png", ""},
};

TEST(IconReference, IsReadFromItsTextAndWrittenAsItWas)
{
    for (const ReferenceCase& c : kReferences) {
        const auto parsed = CIconReference::Parse(QString::fromLatin1(c.Text));
        EXPECT_EQ(parsed.has_value(), *c.Parts != 0) << c.Text;
        if (parsed) {
            EXPECT_EQ((parsed->Archive + u'|' + parsed->Group + u'|' + parsed->File).toStdString(), c.Parts);
            EXPECT_EQ(parsed->ToText().toStdString(), c.Text);
            EXPECT_TRUE(parsed->CanBeTold());
        }
    }
}

TEST(IconReference, CannotBeToldWhenASettingsFileOrItsReaderWouldCutIt)
{
    const QString good = QStringLiteral("x");
    EXPECT_FALSE((CIconReference{good, good, QStringLiteral("x ")}.CanBeTold()));
    for (const char* const bad : {"", "a:b", "a;b", "a\nb", "a\r", "\x01"}) {
        const QString text = QString::fromLatin1(bad);
        EXPECT_FALSE((CIconReference{good, text, good}.CanBeTold())) << bad;
        EXPECT_FALSE((CIconReference{good, good, text}.CanBeTold())) << bad;
        EXPECT_EQ((CIconReference{text, good, good}.CanBeTold()), text.contains(u':')) << bad;
    }
}

// ---- scanning

TEST_F(IconStore, GroupsAreSortedAndEntriesKeepTheArchivesOrder)
{
    Write("install/IconStore/b.ZIP", {{"large/Work/z.png", PngOf(32, 32, kRed)},
                                      {"LARGE/WORK/A.PNG", PngOf(32, 32, kRed)},
                                      {"large/Home/deep/x.png", PngOf(32, 32, kRed)},
                                      {"small/Travel/only.png", PngOf(16, 16, kRed)},
                                      {"large/Home/text.txt", PngOf(32, 32, kRed)},
                                      {"larger/Home/y.png", PngOf(32, 32, kRed)},
                                      {"large/Home/broken.png", "no picture"},
                                      {"large/Ho:me/y.png", PngOf(32, 32, kRed)}});
    Write("install/IconStore/a.zip", {{"large/Work/b.png", PngOf(32, 32, kRed)}});
    Write("install/IconStore/no.zipped", {{"large/Work/n.png", PngOf(32, 32, kRed)}});
    QDir(At("install/IconStore")).mkdir(QStringLiteral("folder.zip"));
    EXPECT_EQ(Scan(), QStringList({QStringLiteral("Home: zip:b.ZIP:Home:deep/x.png"),
                                   QStringLiteral("Work: zip:a.zip:Work:b.png zip:b.ZIP:Work:z.png "
                                                  "zip:b.ZIP:WORK:A.PNG")}));
}

TEST_F(IconStore, TheInstallFoldersArchiveHidesTheProgramsOwn)
{
    Write("share/IconStore/Tessera.zip", {{"large/Work/own.png", PngOf(32, 32, kRed)}});
    Write("share/IconStore/other.zip", {{"large/Home/own.png", PngOf(32, 32, kRed)}});
    Write("install/IconStore/Tessera.zip", {{"large/Work/users.png", PngOf(32, 32, kRed)}});
    EXPECT_EQ(Scan(), QStringList({QStringLiteral("Home: zip:other.zip:Home:own.png"),
                                   QStringLiteral("Work: zip:Tessera.zip:Work:users.png")}));
    QFile::remove(At("install/IconStore/Tessera.zip"));
    EXPECT_EQ(Scan().last(), QStringLiteral("Work: zip:Tessera.zip:Work:own.png"));
    g_Settings.m_installFolder.clear();
    EXPECT_EQ(Scan().size(), 2);
}

TEST_F(IconStore, PacksOfTheRegistryFollowTheDensity)
{
    Write("elsewhere/one.zip", {{"large/Nature/tree.png", PngOf(32, 32, kRed)}});
    Write("elsewhere/two.zip", {{"large/Nature/sea.png", PngOf(64, 64, kRed)}});
    AddPack(96, "One", At("elsewhere/one.zip"));
    AddPack(96, "TESSERA", At("elsewhere/two.zip")); // the program's own pack: told already
    AddPack(96, "Gone", At("elsewhere/gone.zip"));
    AddPack(96, "Relative", QStringLiteral("elsewhere/two.zip"));
    AddPack(96, "Empty", QString());
    CRegistry::WriteString(QStringLiteral("Software\\ZELV Extension Icons\\96\\NoPath"),
                           QStringLiteral("Other"), At("elsewhere/two.zip"));
    AddPack(192, "Two", At("elsewhere/two.zip"));
    EXPECT_EQ(Scan(),
              QStringList(QStringLiteral("Nature: zip:%1:Nature:tree.png").arg(At("elsewhere/one.zip"))));
    for (const int density : {192, 288, 384}) {
        g_ScreenMetrics.Init(density, QSize());
        EXPECT_EQ(Scan(),
                  QStringList(QStringLiteral("Nature: zip:%1:Nature:sea.png").arg(At("elsewhere/two.zip"))));
    }
}

TEST_F(IconStore, AScanEndsAtItsLimits)
{
    std::vector<CTestMember> members;
    const QByteArray picture = PngOf(2, 2, kRed);
    for (int n = 0; n < 10000; ++n)
        members.push_back(
            {"large/g" + QByteArray::number(n % 7) + '/' + QByteArray::number(n) + ".png", picture});
    Write("install/IconStore/many.zip", members);
    CIconGroups groups;
    const CIconStore store(g_Settings.m_installFolder);
    store.ScanStore(groups, QDeadlineTimer::Forever);
    qsizetype icons = 0;
    for (const auto& [group, entries] : groups)
        icons += qsizetype(entries.size());
    EXPECT_EQ(icons, CIconStore::kIcons);
    EXPECT_TRUE(Scan(QDeadlineTimer(0)).isEmpty());
}

TEST_F(IconStore, AScanKeepsNoMorePixelsThanItsLimit)
{
    g_ScreenMetrics.Init(384, QSize());
    std::vector<CTestMember> members;
    const QByteArray picture = PngOf(128, 128, kRed), bomb = PngOf(512, 512, kRed);
    const int enough = int(CIconStore::kScanPixels / (128 * 128));
    for (int n = 0; n < enough + 20; ++n) // the last one stands for any that unpacks to more than is kept
        members.push_back({"large/g/" + QByteArray::number(n) + ".png", n + 1 == enough ? bomb : picture});
    Write("install/IconStore/bombs.zip", members);
    CIconGroups groups;
    CIconStore(g_Settings.m_installFolder).ScanStore(groups, QDeadlineTimer::Forever);
    ASSERT_EQ(groups.size(), 1u);
    EXPECT_EQ(int(groups.begin()->second.size()), enough);
    EXPECT_EQ(groups.begin()->second.back().Large.Width(), 128);
}

// ---- loading

TEST_F(IconStore, LoadsBothSizesFromWhereTheReferenceSays)
{
    Write("install/IconStore/mine.zip", IconMembers("Work/a.png", kRed));
    Write("share/IconStore/mine.zip", IconMembers("Work/a.png", kGreen));
    Write("share/IconStore/shipped.zip", IconMembers("Work/a.png", kGreen));
    Write("elsewhere/a:b.zip", IconMembers("Work/a.png", kBlue));
    Write("elsewhere/small.zip", {{"small/Work/a.png", PngOf(16, 16, kBlue)}});
    QDir::setCurrent(Folder.path());
    const struct {
        QString Reference;
        QRgb Color; // 0: no icon
    } cases[] = {
        {QStringLiteral("zip:mine.zip:Work:a.png"), kRed},
        {QStringLiteral("zip:mine.zip:WORK:A.PNG"), kRed},
        {QStringLiteral("zip:shipped.zip:Work:a.png"), kGreen},
        {QStringLiteral("zip:%1:Work:a.png").arg(At("elsewhere/a:b.zip")), kBlue},
        {QStringLiteral("zip:%1:Work:a.png").arg(At("elsewhere/small.zip")), kBlue},
        {QStringLiteral("zip:elsewhere/small.zip:Work:a.png"), 0}, // would depend on the current folder
        {QStringLiteral("zip:../IconStore/mine.zip:Work:a.png"), 0},
        {QStringLiteral("zip:..:Work:a.png"), 0},
        {QStringLiteral("zip:gone.zip:Work:a.png"), 0},
        {QStringLiteral("zip:mine.zip:Home:a.png"), 0},
        {QStringLiteral("zip:mine.zip:Work:b.png"), 0},
        {QStringLiteral("mine.zip:Work:a.png"), 0},
        {QString(), 0},
    };
    for (const auto& c : cases) {
        CCategoryIcon icon{
            QStringLiteral("before"), CAlphaImage::FromImage(QImage(1, 1, QImage::Format_ARGB32)), {}};
        EXPECT_EQ(Load(c.Reference, icon), c.Color != 0) << c.Reference.toStdString();
        EXPECT_EQ(icon.Reference, c.Reference);
        EXPECT_EQ(icon.Small.IsValid(), c.Color != 0) << c.Reference.toStdString();
        EXPECT_EQ(icon.Small.IsValid() ? icon.Small.Pixels()[0] : 0, c.Color) << c.Reference.toStdString();
    }
    QDir::setCurrent(QStringLiteral("/"));
}

TEST_F(IconStore, AnOpenArchiveServesSeveralIcons)
{
    std::vector<CTestMember> members = IconMembers("Work/a.png", kRed);
    for (const CTestMember& member : IconMembers("Home/b.png", kBlue))
        members.push_back(member);
    Write("elsewhere/a.zip", members);
    CIconArchive archive;
    ASSERT_TRUE(archive.Open(At("elsewhere/a.zip"), QDeadlineTimer::Forever));
    QFile::remove(At("elsewhere/a.zip"));
    CCategoryIcon icon;
    const CIconStore store(g_Settings.m_installFolder);
    EXPECT_TRUE(store.LoadIcon(QStringLiteral("zip:a.zip:Work:a.png"), icon, &archive));
    EXPECT_TRUE(store.LoadIcon(QStringLiteral("zip:a.zip:Home:b.png"), icon, &archive));
    EXPECT_EQ(icon.Large.Pixels()[0], kBlue);
    EXPECT_FALSE(store.LoadIcon(QStringLiteral("zip:a.zip:Home:b.png"), icon));
}

struct SizeCase {
    const char* Name;
    int Density;
    std::vector<std::pair<const char*, QSize>> Members; // level and size
    QSize Small, Large;
};
const SizeCase kSizes[] = {
    {"AsTheyAre", 96, {{"small", {16, 16}}, {"large", {32, 32}}}, {16, 16}, {32, 32}},
    {"SmallerStays", 96, {{"small", {11, 12}}, {"large", {24, 24}}}, {11, 12}, {24, 24}},
    {"LargerShrinks", 96, {{"small", {64, 32}}, {"large", {10, 500}}}, {16, 8}, {1, 32}},
    {"LargeServesAsSmallAt192", 192, {{"small", {16, 16}}, {"large", {32, 32}}}, {32, 32}, {64, 64}},
    {"APackFor192", 192, {{"small", {32, 32}}, {"large", {64, 64}}}, {32, 32}, {64, 64}},
    {"AlmostFullStays", 192, {{"small", {26, 26}}, {"large", {50, 50}}}, {26, 26}, {50, 50}},
    {"OwnDensityFirst",
     288,
     {{"small", {16, 16}}, {"large", {32, 32}}, {"288-small", {47, 47}}, {"288-large", {95, 95}}},
     {47, 47},
     {95, 95}},
    {"OtherDensityIsNotAsked", 384, {{"small", {16, 16}}, {"288-small", {48, 48}}}, {64, 64}, {0, 0}},
    {"WithoutSmall", 96, {{"large", {32, 32}}}, {16, 16}, {32, 32}},
};

TEST_F(IconStore, PicturesFitTheDensity)
{
    for (const SizeCase& c : kSizes) {
        std::vector<CTestMember> members;
        for (const auto& [level, size] : c.Members)
            members.push_back({QByteArray(level) + "/g/a.png", PngOf(size.width(), size.height(), kRed)});
        Write("install/IconStore/a.zip", members);
        g_ScreenMetrics.Init(c.Density, QSize());
        CCategoryIcon icon;
        EXPECT_TRUE(Load(QStringLiteral("zip:a.zip:g:a.png"), icon)) << c.Name;
        EXPECT_EQ(QSize(icon.Small.Width(), icon.Small.Height()), c.Small) << c.Name;
        EXPECT_EQ(QSize(icon.Large.Width(), icon.Large.Height()), c.Large) << c.Name;
    }
}

// ---- the image store

TEST_F(IconStore, TheFirstToAskLoadsAllIconsOfThatArchive)
{
    std::vector<CTestMember> members = IconMembers("Work/a.png", kRed);
    for (const CTestMember& member : IconMembers("Home/b.png", kBlue))
        members.push_back(member);
    Write("install/IconStore/a.zip", members);
    Write("install/IconStore/c.zip", IconMembers("Home/b.png", kGreen));
    const QString a = QStringLiteral("zip:a.zip:Work:a.png"), b = QStringLiteral("zip:a.zip:Home:b.png"),
                  c = QStringLiteral("zip:c.zip:Home:b.png");
    g_Settings.m_categories[QStringLiteral("Family")].ImageName = b;
    g_Settings.m_categories[QStringLiteral("Garden")].ImageName = c;
    EXPECT_EQ(g_ImageStore.Icon(a).Pixels()[0], kRed);
    EXPECT_EQ(g_ImageStore.Icon(a, CImageStore::IconSize::Large).Width(), 32);
    QDir(At("install/IconStore")).removeRecursively();
    EXPECT_EQ(g_ImageStore.Icon(b).Pixels()[0], kBlue);
    EXPECT_FALSE(g_ImageStore.Icon(c).IsValid());
    EXPECT_FALSE(g_ImageStore.Icon(QString()).IsValid());
    EXPECT_FALSE(g_ImageStore.Icon(QStringLiteral("nonsense")).IsValid());
}

TEST_F(IconStore, IconsAreKeptUntilTheDensityOrTheArchiveIsAnother)
{
    const QString a = QStringLiteral("zip:a.zip:Work:a.png");
    EXPECT_FALSE(g_ImageStore.Icon(a).IsValid());
    Write("install/IconStore/a.zip", IconMembers("Work/a.png", kRed));
    EXPECT_FALSE(g_ImageStore.Icon(a).IsValid()); // looked for once, not at each paint
    g_ImageStore.ForgetIcon(a);
    EXPECT_EQ(g_ImageStore.Icon(a).Width(), 16);
    g_ScreenMetrics.Init(192, QSize());
    EXPECT_EQ(g_ImageStore.Icon(a).Width(), 32);
    Write("install/IconStore/a.zip", IconMembers("Work/a.png", kBlue));
    EXPECT_EQ(g_ImageStore.Icon(a).Pixels()[0], kRed);
    g_ImageStore.Clear();
    EXPECT_EQ(g_ImageStore.Icon(a).Pixels()[0], kBlue);
}
} // namespace
