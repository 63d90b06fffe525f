#include <QCoreApplication>
#include <QElapsedTimer>
#include <QProcess>
#include <QStandardPaths>
#include <gtest/gtest.h>

namespace
{
QByteArray RunClient(const QString& bus)
{
    QProcess client;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("DBUS_SESSION_BUS_ADDRESS", bus);
    client.setProcessEnvironment(environment);
    client.start(QCoreApplication::applicationFilePath(), {"--keyboard-client"});
    client.waitForFinished();
    return client.readAllStandardOutput();
}
} // namespace

TEST(KeyboardService, WithoutABusOrServiceNothingHappens)
{
    EXPECT_EQ(RunClient("unix:path=/nonexistent"), "000");
}

TEST(KeyboardService, ShowsAndHidesThroughTheService)
{
    if (QStandardPaths::findExecutable("dbus-daemon").isEmpty())
        GTEST_SKIP() << "dbus-daemon is not installed";
    QProcess daemon;
    daemon.start("dbus-daemon", {"--session", "--nofork", "--print-address"});
    ASSERT_TRUE(daemon.waitForReadyRead());
    const QString bus = QString::fromUtf8(daemon.readLine()).trimmed();

    EXPECT_EQ(RunClient(bus), "000") << "a bus without the service";
    QProcess service;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("DBUS_SESSION_BUS_ADDRESS", bus);
    service.setProcessEnvironment(environment);
    service.start(QCoreApplication::applicationFilePath(), {"--keyboard-service"});
    ASSERT_TRUE(service.waitForReadyRead());
    ASSERT_EQ(service.readLine(), "up\n");
    EXPECT_EQ(RunClient(bus), "010");
    while (service.bytesAvailable() < 12 && service.waitForReadyRead(1000)) {
    }
    EXPECT_EQ(service.readAllStandardOutput(), "set 1\nset 0\n");
    service.kill();
    service.waitForFinished();
    daemon.kill();
    daemon.waitForFinished();
}
