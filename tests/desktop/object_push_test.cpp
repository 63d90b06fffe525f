#include "desktop/mail_message.h"
#include "desktop/shell_actions.h"

#include <QCoreApplication>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryFile>
#include <gtest/gtest.h>

namespace
{
// A bus of the test's own that is the system's and the session's at once.
class ObjectPush : public testing::Test
{
protected:
    void SetUp() override
    {
        if (QStandardPaths::findExecutable("dbus-daemon").isEmpty())
            GTEST_SKIP() << "dbus-daemon is not installed";
        m_daemon.start("dbus-daemon", {"--session", "--nofork", "--print-address"});
        ASSERT_TRUE(m_daemon.waitForReadyRead());
        m_bus = QString::fromUtf8(m_daemon.readLine()).trimmed();
    }
    void TearDown() override
    {
        for (QProcess* process : {&m_services, &m_daemon}) {
            process->kill();
            process->waitForFinished();
        }
    }
    void Start(QProcess& process, const QStringList& arguments)
    {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert("DBUS_SESSION_BUS_ADDRESS", m_bus);
        environment.insert("DBUS_SYSTEM_BUS_ADDRESS", m_bus);
        process.setProcessEnvironment(environment);
        process.start(QCoreApplication::applicationFilePath(), arguments);
    }
    void StartServices(const QString& kind)
    {
        Start(m_services, {"--bluetooth-services", kind});
        ASSERT_TRUE(m_services.waitForReadyRead());
        ASSERT_EQ(m_services.readLine(), "up\n");
    }
    QString Run(const QStringList& arguments)
    {
        QProcess client;
        Start(client, arguments);
        EXPECT_TRUE(client.waitForFinished());
        EXPECT_EQ(client.exitCode(), 0);
        return QString::fromUtf8(client.readAllStandardOutput());
    }
    QString Told(const QString& last)
    {
        QString told;
        while (!told.contains(last) && (m_services.bytesAvailable() || m_services.waitForReadyRead(2000)))
            told += QString::fromUtf8(m_services.readAllStandardOutput());
        return told;
    }

    QProcess m_daemon, m_services;
    QString m_bus;
};
} // namespace

TEST_F(ObjectPush, ListsWhatIsPairedAndTakesFiles)
{
    EXPECT_EQ(Run({"--push-devices"}), "") << "a bus without the services";
    StartServices("all");
    EXPECT_EQ(Run({"--push-devices"}), "00:00:00:00:00:01 Tablet\n00:00:00:00:00:04 00:00:00:00:00:04\n");
}

TEST_F(ObjectPush, ListsNothingWithoutPower)
{
    StartServices("off");
    EXPECT_EQ(Run({"--push-devices"}), "");
}

TEST_F(ObjectPush, ListsNothingWithoutThePushService)
{
    StartServices("no-obex");
    EXPECT_EQ(Run({"--push-devices"}), "");
}

TEST_F(ObjectPush, TellsHowTheSendingEnded)
{
    QTemporaryFile file;
    ASSERT_TRUE(file.open());
    file.write("content");
    file.close();
    StartServices("all");
    const struct {
        const char *Device, *Client, *Services;
    } kCases[] = {
        {"in time", "sent \n", "file content\nremoved /org/bluez/obex/client/session0\n"},
        {"at once", "sent \n", "file content\nremoved /org/bluez/obex/client/session0\n"},
        {"break", "failed \n", "file content\nremoved /org/bluez/obex/client/session0\n"},
        {"refuse", "failed The person said no\n", ""},
        {"vanish", "failed \n", "file content\n"},
    };
    for (const auto& c : kCases) {
        EXPECT_EQ(Run({"--push-file", c.Device, file.fileName()}), c.Client) << c.Device;
        const QString session = QString("session %1 opp\n").arg(c.Device);
        const QString expected = session + c.Services;
        EXPECT_EQ(Told(expected.split('\n').at(expected.count('\n') - 1)), expected) << c.Device;
    }
}

TEST(MailMessage, HandsOverWhatIsAnAddressAndNothingElse)
{
    const CMailMessage message{{"a@example.org", "--attach=/etc/passwd@x", "no address", " b@example.org"},
                               "--subject; rm -rf",
                               {},
                               "/tmp/Meeting.ics"};
    QStringList started;
    SetProgramStarter([&](const QString& program, const QStringList& arguments) {
        started = QStringList(program) + arguments;
        return true;
    });
    EXPECT_TRUE(OpenMailMessage(message));
    SetProgramStarter({});
    EXPECT_EQ(started, QStringList({"xdg-email", "--utf8", "--subject", "--subject; rm -rf", "--attach",
                                    "/tmp/Meeting.ics", "a@example.org", "b@example.org"}));
}
