// Archives of icons, most of them made by somebody who means no good.
#include "drawing/icon_archive.h"

#include <QBuffer>
#include <QTemporaryDir>
#include <QtEndian>
#include <sys/stat.h>

#include "drawing/archive_maker.h"

namespace
{
class IconArchive : public testing::Test
{
protected:
    QString Path() const { return Folder.filePath(QStringLiteral("icons.zip")); }
    QByteArray Made(const std::vector<CTestMember>& members)
    {
        WriteArchive(Path(), members);
        QFile file(Path());
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }
    static bool OpenBytes(CIconArchive& archive, const QByteArray& bytes)
    {
        auto device = std::make_unique<QBuffer>();
        device->setData(bytes);
        device->open(QIODevice::ReadOnly);
        return archive.Open(std::move(device), QDeadlineTimer::Forever);
    }
    bool Open(CIconArchive& archive, const std::vector<CTestMember>& members)
    {
        return OpenBytes(archive, Made(members));
    }
    QTemporaryDir Folder;
};

const QByteArray kRed = PngOf(3, 2, qRgb(255, 0, 0));

struct PathCase {
    const char* Path;
    const char* Known; // level|group|file; empty: passed over
};
const PathCase kPaths[] = {
    {"large/Work/case.png", "large|Work|case.png"},
    {"LARGE/Work/CASE.PNG", "LARGE|Work|CASE.PNG"},
    {"large/Work/deep/er.png", "large|Work|deep/er.png"},
    {"large/../../../etc/passwd.png", "large|..|../../etc/passwd.png"}, // a name and nothing else
    {"/large/Work/case.png", "|large|Work/case.png"},
    {"large//case.png", "large||case.png"},
    {"large/Gr\xC3\xBC\xC3\x9F"
     "e/a.png",
     "large|Gr\xC3\xBC\xC3\x9F"
     "e|a.png"},
    {"large/Gr\xFC/a.png", "large|Gr\xC3\xBC|a.png"},
    {"large/case.png", ""},
    {"large/Work/", ""},
    {"case.png", ""},
    {"", ""},
};

TEST_F(IconArchive, PathsAreNamesOfThreeLevels)
{
    for (const PathCase& c : kPaths) {
        CIconArchive archive;
        ASSERT_TRUE(Open(archive, {{c.Path, kRed}})) << c.Path;
        QStringList known;
        for (const CIconArchive::CMember& member : archive.Members())
            known << member.Level + u'|' + member.Group + u'|' + member.File;
        EXPECT_EQ(known.join(u' ').toStdString(), c.Known);
    }
}

TEST_F(IconArchive, FindsWithoutRegardToCaseTheFirstOfEqualOnes)
{
    CIconArchive archive;
    ASSERT_TRUE(
        Open(archive,
             {{"small/Work/a.png", kRed}, {"large/Work/a.png", kRed}, {"LARGE/WORK/A.PNG", PngOf(9, 9, 0)}}));
    EXPECT_EQ(archive.Members().size(), 2u);
    EXPECT_EQ(archive.Find(QStringLiteral("Large"), QStringLiteral("WORK"), QStringLiteral("A.png")), 1);
    EXPECT_EQ(archive.Find(QStringLiteral("large"), QStringLiteral("Work"), QStringLiteral("b.png")), -1);
    EXPECT_EQ(archive.ReadImage(1).Width(), 3);
    EXPECT_FALSE(archive.ReadImage(-1).IsValid());
    EXPECT_FALSE(archive.ReadImage(2).IsValid());
}

TEST_F(IconArchive, AnOverlongPathIsPassedOver)
{
    CIconArchive archive;
    const QByteArray fits = "large/g/" + QByteArray(CIconArchive::kNameBytes - 8, 'x');
    ASSERT_TRUE(Open(archive, {{fits + "x", kRed}, {fits, kRed}}));
    ASSERT_EQ(archive.Members().size(), 1u);
    EXPECT_EQ(archive.Members()[0].File.size(), CIconArchive::kNameBytes - 8);
}

// ---- members

struct MemberCase {
    const char* Name;
    CTestMember Member;
    bool Reads;
};

class IconMember : public IconArchive, public testing::WithParamInterface<MemberCase>
{
};

TEST_P(IconMember, IsReadOrGivesAnEmptyImage)
{
    CIconArchive archive;
    ASSERT_TRUE(Open(archive, {GetParam().Member, {"large/g/after.png", kRed}}));
    ASSERT_EQ(archive.Members().size(), 2u);
    EXPECT_EQ(archive.ReadImage(0).IsValid(), GetParam().Reads);
    EXPECT_TRUE(archive.ReadImage(1).IsValid()); // the others do not suffer
}

const QByteArray kZeros(64 << 20, '\0'); // packs to a thousandth
const MemberCase kMembers[] = {
    {"Packed", {"large/g/a.png", kRed}, true},
    {"Stored", {"large/g/a.png", kRed, 0}, true},
    {"Empty", {"large/g/a.png", ""}, false},
    {"NoPicture", {"large/g/a.png", "only a text"}, false},
    {"Bomb", {"large/g/a.png", kZeros}, false},
    {"OneByteTooLong",
     {"large/g/a.png", kRed + QByteArray(CIconArchive::kMemberBytes + 1 - kRed.size(), ' ')},
     false},
    {"JustFits", {"large/g/a.png", kRed + QByteArray(CIconArchive::kMemberBytes - kRed.size(), ' ')}, true},
    {"LargestPicture", {"large/g/a.png", PngOf(512, 512, 0)}, true},
    {"TooLargePicture", {"large/g/a.png", PngOf(512, 513, 0)}, false},
};
INSTANTIATE_TEST_SUITE_P(Members, IconMember, testing::ValuesIn(kMembers),
                         [](const auto& info) { return std::string(info.param.Name); });

// Where the directory tells of the archive's member; there is only one.
qsizetype DirectoryEntry(const QByteArray& bytes)
{
    return bytes.indexOf("PK\x01\x02");
}

TEST_F(IconArchive, ABombThatLiesAboutItsSizeFillsOnlyWhatItTold)
{
    QByteArray bytes = Made({{"large/g/a.png", kRed + QByteArray(8 << 20, '\0')}});
    const qsizetype entry = DirectoryEntry(bytes);
    qToLittleEndian(quint32(kRed.size()), bytes.data() + entry + 24);
    qToLittleEndian(quint32(kRed.size()), bytes.data() + 22);
    CIconArchive archive;
    ASSERT_TRUE(OpenBytes(archive, bytes));
    archive.ReadImage(0);
    qToLittleEndian(quint32(0xFFFFFFF0), bytes.data() + entry + 24); // and in the other direction
    ASSERT_TRUE(OpenBytes(archive, bytes));
    EXPECT_FALSE(archive.ReadImage(0).IsValid());
}

TEST_F(IconArchive, EndlessInputThatUnpacksToNothingIsNotRead)
{
    QByteArray bytes = Made({{"large/g/a.png", kRed}});
    qToLittleEndian(quint32(CIconArchive::kPackedBytes + 1), bytes.data() + DirectoryEntry(bytes) + 20);
    qToLittleEndian(quint32(CIconArchive::kPackedBytes + 1), bytes.data() + 18);
    CIconArchive archive;
    ASSERT_TRUE(OpenBytes(archive, bytes));
    EXPECT_FALSE(archive.ReadImage(0).IsValid());
}

TEST_F(IconArchive, OtherPackingsAreNotRead)
{
    for (const int method : {1, 9, 12, 14, 99}) {
        QByteArray bytes = Made({{"large/g/a.png", kRed}});
        qToLittleEndian(quint16(method), bytes.data() + DirectoryEntry(bytes) + 10);
        qToLittleEndian(quint16(method), bytes.data() + 8);
        CIconArchive archive;
        ASSERT_TRUE(OpenBytes(archive, bytes));
        EXPECT_FALSE(archive.ReadImage(0).IsValid()) << method;
    }
}

// Made by Info-ZIP with the password: large/g/a.png stored, large/g/b.png packed, both the same picture
// of two pixels.
const QByteArray kEncrypted = QByteArray::fromBase64(
    "UEsDBAoACQAAAIssd11B97wDVgAAAEoAAAANAAAAbGFyZ2UvZy9hLnBuZ59kWjMPPAcjDZnp4+BkoXd0yPz6P0cPYgRhgYfg"
    "a+v/2R7TLQBwMHg6xvlwI6dkA1U9xjLxfYnaxkSa4QV0PUfbEXuPRlYPM41/VUkDRwJn7sxeviGPUEsHCEH3vANWAAAASgAA"
    "AFBLAwQUAAsACACLLHddQfe8A1IAAABKAAAADQAAAGxhcmdlL2cvYi5wbmeoSgSqlW6stLYAApqVkSMBlQPqoX9Mh7cdYxO+"
    "f5QGa8wua3e7Qd32LLFr5vOYT0zmDP7p13RQ7lVEi40Sa22rbjDF2fthWn/o/jkTzC7IAinCUEsHCEH3vANSAAAASgAAAFBL"
    "AQIeAwoACQAAAIssd11B97wDVgAAAEoAAAANAAAAAAAAAAAAAACkgQAAAABsYXJnZS9nL2EucG5nUEsBAh4DFAALAAgAiyx3"
    "XUH3vANSAAAASgAAAA0AAAAAAAAAAAAAAKSBkQAAAGxhcmdlL2cvYi5wbmdQSwUGAAAAAAIAAgB2AAAAHgEAAAAA");

TEST_F(IconArchive, EncryptedMembersOpenWithThePassword)
{
    CIconArchive archive;
    ASSERT_TRUE(OpenBytes(archive, kEncrypted));
    ASSERT_EQ(archive.Members().size(), 2u);
    for (const int member : {0, 1}) {
        const CAlphaImage image = archive.ReadImage(member);
        ASSERT_TRUE(image.IsValid()) << member;
        EXPECT_EQ(image.Pixels()[0], 0xFF112233u);
        EXPECT_EQ(image.Pixels()[1], 0x4DC86432u);
    }
}

TEST_F(IconArchive, AnotherPasswordGivesNothing)
{
    // A change in the random head of a member has the effect of another password.
    QByteArray bytes = kEncrypted;
    bytes[bytes.indexOf("a.png") + 5] ^= 1;
    bytes[bytes.indexOf("b.png") + 5] ^= 1;
    CIconArchive archive;
    ASSERT_TRUE(OpenBytes(archive, bytes));
    EXPECT_FALSE(archive.ReadImage(0).IsValid());
    EXPECT_FALSE(archive.ReadImage(1).IsValid());
    // And a plain member that only says it is encrypted; one shorter than that head.
    for (const QByteArray& data : {kRed, QByteArray("PK")}) {
        bytes = Made({{"large/g/a.png", data, 0}});
        bytes[6] |= 1;
        bytes[DirectoryEntry(bytes) + 8] |= 1;
        ASSERT_TRUE(OpenBytes(archive, bytes));
        EXPECT_FALSE(archive.ReadImage(0).IsValid());
    }
}

// ---- whole archives

TEST_F(IconArchive, AnyCutAndAnyByteIsSurvived)
{
    const QByteArray& bytes = kEncrypted;
    int whole = 0;
    for (qsizetype n = 0; n < bytes.size(); ++n) {
        for (const int change : {0, 0xFF, 0x01, 0x80}) {
            QByteArray broken = change ? bytes : bytes.left(n);
            if (change)
                broken[n] = char(broken[n] ^ change);
            CIconArchive archive;
            if (!OpenBytes(archive, broken))
                continue;
            for (int member = 0; member < int(archive.Members().size()); ++member) {
                const CAlphaImage image = archive.ReadImage(member);
                EXPECT_LE(image.Width() * image.Height(), CIconArchive::kPixels);
                whole += image.IsValid();
            }
        }
    }
    EXPECT_GT(whole, 0);
}

TEST_F(IconArchive, ADirectoryThatNeverEndsIsLeft)
{
    // The end record says 60,000 members; the directory has one and then nothing.
    QByteArray bytes = Made({{"large/g/a.png", kRed}});
    const qsizetype end = bytes.lastIndexOf("PK\x05\x06");
    qToLittleEndian(quint16(60000), bytes.data() + end + 8);
    qToLittleEndian(quint16(60000), bytes.data() + end + 10);
    CIconArchive archive;
    ASSERT_TRUE(OpenBytes(archive, bytes));
    EXPECT_EQ(archive.Members().size(), 1u);
}

TEST_F(IconArchive, NoMoreMembersThanTheLimitAndNoMoreTimeThanGiven)
{
    std::vector<CTestMember> members;
    for (int n = 0; n < CIconArchive::kMembers + 10; ++n)
        members.push_back({"large/g/" + QByteArray::number(n) + ".png", "", 0});
    CIconArchive archive;
    ASSERT_TRUE(Open(archive, members));
    EXPECT_EQ(archive.Members().size(), size_t(CIconArchive::kMembers));
    ASSERT_TRUE(archive.Open(Path(), QDeadlineTimer(0)));
    EXPECT_TRUE(archive.Members().empty());
}

TEST_F(IconArchive, OnlyPlainFilesAreOpened)
{
    CIconArchive archive;
    EXPECT_FALSE(archive.Open(Path(), QDeadlineTimer::Forever));
    EXPECT_FALSE(archive.Open(Folder.path(), QDeadlineTimer::Forever));
    EXPECT_FALSE(archive.Open(QString(), QDeadlineTimer::Forever));
    EXPECT_FALSE(archive.Open(QStringLiteral("/dev/zero"), QDeadlineTimer::Forever));
    ASSERT_EQ(mkfifo(QFile::encodeName(Path()).constData(), 0600), 0);
    EXPECT_FALSE(archive.Open(Path(), QDeadlineTimer::Forever)); // would wait for a writer for ever
    for (const QByteArray& bytes : {QByteArray(), QByteArray("PK"), QByteArray(1 << 20, 'P')})
        EXPECT_FALSE(OpenBytes(archive, bytes));
    EXPECT_FALSE(archive.IsOpen());
    EXPECT_TRUE(archive.Members().empty());
}
} // namespace
