#include "platform/registry.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

namespace
{
class CRegistryTest : public testing::Test
{
protected:
    void SetUp() override { CRegistry::SetFolder(m_folder.filePath(QStringLiteral("config"))); }
    void TearDown() override { CRegistry::SetFolder(QString()); }

    QString File() const { return CRegistry::Folder() + QStringLiteral("/registry.ini"); }
    QByteArray Bytes() const
    {
        QFile file(File());
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }
    void Put(const QByteArray& bytes)
    {
        QDir().mkpath(CRegistry::Folder());
        QFile file(File());
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(bytes);
    }

    QTemporaryDir m_folder;
};

std::string Read(const QString& key, const QString& name)
{
    return CRegistry::ReadString(key, name).value_or(QStringLiteral("<none>")).toStdString();
}
} // namespace

TEST_F(CRegistryTest, AwkwardTextsComeBackAsTheyWere)
{
    const QString texts[] = {
        QStringLiteral(""),         QStringLiteral("plain"),     QStringLiteral("two\nlines\r\n"),
        QStringLiteral(" edges "),  QStringLiteral("a=b=c"),     QStringLiteral("[no key]"),
        QStringLiteral("; no note"), QStringLiteral("100%25 %zz %"), QStringLiteral("C:\\new\\table"),
        QStringLiteral("Ünïcödé \U0001F600"), QStringLiteral("tab\tand\x01"),
    };
    for (const QString& key : {kRegistryKey, QStringLiteral("odd ]key[\n=%5d")}) {
        for (const QString& name : texts) {
            if (!name.isEmpty()) {
                ASSERT_TRUE(CRegistry::WriteString(key, name, name + QStringLiteral("!")));
            }
        }
        for (const QString& value : texts) {
            ASSERT_TRUE(CRegistry::WriteString(key, QStringLiteral("Value"), value));
            EXPECT_EQ(Read(key, QStringLiteral("Value")), value.toStdString());
        }
    }
    for (const QString& name : texts) {
        if (!name.isEmpty()) {
            EXPECT_EQ(Read(kRegistryKey, name), (name + QStringLiteral("!")).toStdString());
        }
    }
}

TEST_F(CRegistryTest, ReadsWhatAPersonWrote)
{
    Put("; a note\r\n[Software\\ZELV Calendar]\r\nInstallPath = /opt/cal dir \r\nAppName=Mine\r\n[Other]\nAppName=x");
    EXPECT_EQ(Read(kRegistryKey, QStringLiteral("InstallPath")), "/opt/cal dir");
    EXPECT_EQ(Read(QStringLiteral("software\\zelv calendar"), QStringLiteral("appname")), "Mine");
    EXPECT_EQ(Read(QStringLiteral("Other"), QStringLiteral("AppName")), "x");
    EXPECT_EQ(Read(QStringLiteral("Other"), QStringLiteral("InstallPath")), "<none>");
    EXPECT_EQ(Read(QStringLiteral("Nothing"), QStringLiteral("AppName")), "<none>");
}

TEST_F(CRegistryTest, AChangeKeepsAllOtherLines)
{
    Put("; a note\n[A]\nOne=1\nodd line\n\n[B]\nTwo=2\n");
    ASSERT_TRUE(CRegistry::WriteString(QStringLiteral("A"), QStringLiteral("New"), QStringLiteral("n")));
    ASSERT_TRUE(CRegistry::WriteString(QStringLiteral("B"), QStringLiteral("Two"), QStringLiteral("22")));
    ASSERT_TRUE(CRegistry::DeleteValue(QStringLiteral("A"), QStringLiteral("One")));
    ASSERT_TRUE(CRegistry::DeleteValue(QStringLiteral("A"), QStringLiteral("Absent")));
    EXPECT_EQ(Bytes(), "; a note\n[A]\nNew=n\nodd line\n\n[B]\nTwo=22\n");
}

TEST_F(CRegistryTest, NamesWhatLiesBelowAKey)
{
    const QString key = QStringLiteral("Software\\Some Packs\\96");
    EXPECT_TRUE(CRegistry::SubKeys(key).isEmpty());
    for (const char* const name : {"Nature", "Ships\\Old", "Odd ]=\n", "ships"})
        CRegistry::WriteString(key + QStringLiteral("\\") + QLatin1String(name), QStringLiteral("Path"), QStringLiteral("x"));
    CRegistry::WriteString(key, QStringLiteral("Own"), QStringLiteral("value"));
    CRegistry::WriteString(key + QStringLiteral("2\\Other"), QStringLiteral("Path"), QStringLiteral("x"));
    const QStringList names = {QStringLiteral("Nature"), QStringLiteral("Ships"), QStringLiteral("Odd ]=\n")};
    EXPECT_EQ(CRegistry::SubKeys(key), names);
    EXPECT_EQ(CRegistry::SubKeys(key.toUpper()), names);
    EXPECT_EQ(CRegistry::SubKeys(key + QStringLiteral("\\Ships")), QStringList(QStringLiteral("Old")));
}

TEST_F(CRegistryTest, AFailedWriteLeavesTheFile)
{
    Put("[A]\nOne=1\n");
    // A folder stands where the lock must be made.
    ASSERT_TRUE(QDir().mkpath(File() + QStringLiteral(".lock/x")));
    EXPECT_FALSE(CRegistry::WriteString(QStringLiteral("A"), QStringLiteral("One"), QStringLiteral("2")));
    EXPECT_FALSE(CRegistry::DeleteValue(QStringLiteral("A"), QStringLiteral("One")));
    EXPECT_EQ(Bytes(), "[A]\nOne=1\n");
}

TEST_F(CRegistryTest, TwoProcessesLoseNothing)
{
    constexpr int kEach = 100;
    const pid_t child = fork();
    const QString mine = child == 0 ? QStringLiteral("child%1") : QStringLiteral("parent%1");
    bool good = true;
    for (int i = 0; i < kEach; ++i)
        good = CRegistry::WriteString(kRegistryKey, mine.arg(i), QString::number(i)) && good;
    if (child == 0)
        _exit(good ? 0 : 1);
    int status = 0;
    waitpid(child, &status, 0);
    EXPECT_TRUE(good);
    EXPECT_EQ(status, 0);
    for (int i = 0; i < kEach; ++i) {
        EXPECT_EQ(Read(kRegistryKey, QStringLiteral("child%1").arg(i)), std::to_string(i));
        EXPECT_EQ(Read(kRegistryKey, QStringLiteral("parent%1").arg(i)), std::to_string(i));
    }
}
