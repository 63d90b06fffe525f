// The real program, several times at once, off-screen.
#include "desktop/instance.h"
#include "platform/registry.h"
#include "shell/instance_handover.h"

#include <QDeadlineTimer>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QThread>
#include <csignal>
#include <gtest/gtest.h>
#include <memory>
#include <vector>

namespace
{
class TwoProcesses : public testing::Test
{
protected:
    TwoProcesses()
    {
        const QString folder = qEnvironmentVariable("TESSERA_BIN", QCoreApplication::applicationDirPath());
        m_program = folder + "/tessera";
        for (const char* variable : {"XDG_RUNTIME_DIR", "XDG_CONFIG_HOME", "XDG_DATA_HOME"}) {
            m_saved.emplace_back(variable, qgetenv(variable));
            qputenv(variable, m_home.path().toUtf8());
        }
    }
    ~TwoProcesses() override
    {
        for (const auto& process : m_running) {
            process->kill();
            process->waitForFinished();
        }
        for (const auto& [variable, value] : m_saved)
            qputenv(variable, value);
    }
    QProcess& Launch(const QStringList& arguments = {})
    {
        auto process = std::make_unique<QProcess>();
        process->setProcessChannelMode(QProcess::SeparateChannels);
        process->start(m_program, arguments);
        EXPECT_TRUE(process->waitForStarted());
        m_running.push_back(std::move(process));
        return *m_running.back();
    }
    int Run(const QStringList& arguments, QByteArray* output = nullptr, QByteArray* errors = nullptr)
    {
        QProcess process;
        process.start(m_program, arguments);
        EXPECT_TRUE(process.waitForFinished(20000)) << arguments.join(' ').toStdString();
        if (output)
            *output = process.readAllStandardOutput();
        if (errors)
            *errors = process.readAllStandardError();
        return process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1000;
    }
    static bool Poll(const std::function<bool()>& done)
    {
        const QDeadlineTimer end(15000);
        while (!done() && !end.hasExpired())
            QThread::msleep(10);
        return done();
    }
    static bool IsListening() { return CInstanceWindow::Find(InstanceName(kWindowClass)) != nullptr; }
    static bool RequestTaken() { return !CRegistry::ReadString(kRegistryKey, "CallCmdLine"); }
    QString SettingsFile() const { return m_home.filePath("tessera/ZELVCalendar.ini"); }

    QTemporaryDir m_home;
    QString m_program;
    std::vector<std::pair<const char*, QByteArray>> m_saved;
    std::vector<std::unique_ptr<QProcess>> m_running;
};
} // namespace

TEST_F(TwoProcesses, ASecondStartHandsOverAndEndsWithMinusOne)
{
    QProcess& window = Launch();
    ASSERT_TRUE(Poll(IsListening));
    for (const QStringList& request :
         {QStringList{"OPEN|DAILY|66371040"}, {"VIEW|5|0|APPT"}, {"SHOWSOFTKEYDIALOG"}, {}}) {
        EXPECT_EQ(Run(request), 255) << request.join(' ').toStdString();
        EXPECT_TRUE(Poll(RequestTaken));
    }
    EXPECT_FALSE(window.waitForFinished(100)) << "the first one stays";
    window.terminate();
    ASSERT_TRUE(window.waitForFinished());
    EXPECT_EQ(window.exitStatus(), QProcess::NormalExit);
    EXPECT_EQ(window.exitCode(), 0);
    EXPECT_TRUE(QFile::exists(SettingsFile())) << "an end by the system saves the settings";
    EXPECT_FALSE(IsListening());
}

TEST_F(TwoProcesses, RacingStartsGiveOneWindow)
{
    for (int i = 0; i < 5; ++i)
        Launch({"OPEN|DAILY|66371040"});
    ASSERT_TRUE(Poll([&] {
        int ended = 0;
        for (const auto& process : m_running)
            ended += process->state() == QProcess::NotRunning || process->waitForFinished(1);
        return ended == 4;
    }));
    for (const auto& process : m_running) {
        if (process->state() == QProcess::NotRunning) {
            EXPECT_EQ(process->exitCode(), 255);
        }
    }
    EXPECT_TRUE(IsListening());
}

TEST_F(TwoProcesses, AKilledWindowBlocksNobody)
{
    QProcess& first = Launch();
    ASSERT_TRUE(Poll(IsListening));
    first.kill();
    first.waitForFinished();
    QProcess& second = Launch();
    ASSERT_TRUE(Poll(IsListening));
    EXPECT_EQ(second.state(), QProcess::Running);
}

TEST_F(TwoProcesses, AProcessInOneItemsFormMakesRoom)
{
    QProcess& form = Launch();
    ASSERT_TRUE(Poll(IsListening));
    CNamedLock mutex(kSingleItemMutex); // as if that window served a single item
    ASSERT_TRUE(mutex.Take());
    const QStringList named{"--volume", m_home.filePath("other.vol")};
    QProcess& other = Launch(named);
    ASSERT_TRUE(Poll([&] { return QFile::exists(named.last()); }));
    EXPECT_EQ(Run(named), 255) << "the form belongs to another calendar";
    EXPECT_EQ(other.state(), QProcess::Running);
    QProcess& window = Launch();
    EXPECT_TRUE(form.waitForFinished(15000)) << "it was told to end";
    EXPECT_EQ(form.exitCode(), 0);
    mutex.Release();
    EXPECT_TRUE(Poll(IsListening));
    EXPECT_EQ(window.state(), QProcess::Running);
    EXPECT_EQ(Run({}), 255);
}

TEST_F(TwoProcesses, ANamedVolumeHasAWindowOfItsOwn)
{
    Launch();
    ASSERT_TRUE(Poll(IsListening));
    QProcess& other = Launch({"--volume", m_home.filePath("other.vol")});
    ASSERT_TRUE(Poll([&] { return QFile::exists(m_home.filePath("other.vol")); }));
    EXPECT_EQ(Run({"--volume", m_home.filePath("other.vol")}), 255);
    EXPECT_EQ(other.state(), QProcess::Running);
}

TEST_F(TwoProcesses, TheStatusTellsWhatBecameOfIt)
{
    QByteArray out, errors;
    EXPECT_EQ(Run({"REPORTLOGPIXELS"}, &out), 96);
    EXPECT_EQ(out, "96\n");
    EXPECT_EQ(Run({"--density", "384", "REPORTLOGPIXELS"}, &out), 192) << "a status holds no more";
    EXPECT_EQ(out, "384\n");
    EXPECT_EQ(Run({"--help"}, &out), 0);
    EXPECT_TRUE(out.startsWith("usage: tessera"));
    EXPECT_EQ(Run({"--version"}, &out), 0);
    EXPECT_TRUE(out.startsWith("tessera "));
    for (const QStringList& wrong : {QStringList{"--bogus"},
                                     {"--snapshot", "/nonexistent/x.png"},
                                     {"--snapshot", "x.png", "--search", "e"},
                                     {"--snapshot", "x.png", "SHOWSOFTKEYDIALOG"},
                                     {"--snapshot", "x.png", "VIEW|5|0|APPT"}}) {
        EXPECT_EQ(Run(wrong, &out, &errors), 2) << wrong.join(' ').toStdString();
        EXPECT_TRUE(errors.startsWith("tessera: ")) << errors.toStdString();
        EXPECT_EQ(errors.count('\n'), 1) << errors.toStdString();
    }
    EXPECT_FALSE(QFile::exists(SettingsFile()));
    EXPECT_FALSE(QFile::exists(m_home.filePath("tessera/pim.vol")));
}

TEST_F(TwoProcesses, AFormForOneItemMakesRoomForTheCalendar)
{
    const int nothingToEdit = Run({"EDIT|5|0|APPT"});
    EXPECT_EQ(nothingToEdit, 0);
    QProcess& form = Launch({"CREATE|66340800|66340860|APPT|Work"});
    ASSERT_TRUE(Poll([] { return CNamedLock::Exists(kSingleItemMutex) && IsListening(); }));
    Launch();
    ASSERT_TRUE(form.waitForFinished(15000));
    EXPECT_EQ(form.exitCode(), 0);
    EXPECT_FALSE(QFile::exists(SettingsFile())) << "a form writes no settings";
    EXPECT_TRUE(Poll([] { return IsListening() && !CNamedLock::Exists(kSingleItemMutex); }));
    EXPECT_EQ(Run({"CREATE|66340800|66340860|TASK"}), 255) << "handed over";
    EXPECT_TRUE(Poll(RequestTaken));
}

TEST_F(TwoProcesses, TheDialogOfTheShellsKeysNeedsNoMainWindow)
{
    QProcess& dialog = Launch({"SHOWSOFTKEYDIALOG"});
    ASSERT_TRUE(Poll(IsListening));
    EXPECT_EQ(Run({"OPEN|LIST"}), 255);
    EXPECT_FALSE(dialog.waitForFinished(200)) << "it asks until it is answered";
    dialog.terminate();
    ASSERT_TRUE(dialog.waitForFinished(15000));
    EXPECT_EQ(dialog.exitStatus(), QProcess::NormalExit);
    EXPECT_EQ(dialog.exitCode(), 0) << "left without an answer";
    EXPECT_FALSE(CRegistry::ReadString(kRegistryKey, "AppName"));
}

TEST_F(TwoProcesses, ASnapshotNeedsNoDisplayAndWritesNothingElse)
{
    const QString file = m_home.filePath("day.png");
    EXPECT_EQ(Run({"--snapshot", file, "--size", "320x240", "--now", "2026-03-10", "OPEN|DAILY"}), 0);
    const QImage picture(file);
    EXPECT_EQ(picture.size(), QSize(320, 240));
    EXPECT_EQ(Run({"--snapshot", file, "--size", "480x640", "--density", "192"}), 0);
    EXPECT_EQ(QImage(file).size(), QSize(480, 640));
    const QImage day(file);
    for (const QStringList& other : {QStringList{"CREATE|66371640|66371700|APPT|Work"}, {"--search", "no such thing"}}) {
        EXPECT_EQ(Run(QStringList{"--snapshot", file, "--size", "480x640", "--density", "192"} + other), 0);
        EXPECT_EQ(QImage(file).size(), day.size());
        EXPECT_NE(QImage(file), day);
    }
    EXPECT_FALSE(QFile::exists(SettingsFile()));
    EXPECT_FALSE(QFile::exists(m_home.filePath("tessera/pim.vol")));
}
