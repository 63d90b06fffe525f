#include "desktop/instance.h"
#include "desktop/instance_wire.h"
#include "desktop/runtime_folder.h"
#include "runtime_fixture.h"

#include <QFile>
#include <sys/socket.h>
#include <sys/stat.h>
#include <thread>

namespace
{
const QByteArray kName = "Tessera-test";

class Instance : public RuntimeFixture
{
protected:
    // Posts from a second thread while this one runs the loop, as another process would.
    static bool PostBeside(const CInstanceMessage& message)
    {
        bool taken = false, over = false;
        std::thread sender([&] {
            const auto window = CInstanceWindow::Find(kName);
            taken = window && window->Post(message);
            over = true;
        });
        WaitFor([&] { return over; });
        sender.join();
        return taken;
    }
};
} // namespace

TEST_F(Instance, OnlyOneProcessClaimsAName)
{
    CInstance own(kName);
    ASSERT_TRUE(own.Claim());
    EXPECT_EQ(StartChild([] { return CInstance(kName).Claim() ? 'y' : 'n'; }).Answer, 'n');
    EXPECT_EQ(StartChild([] { return CInstance("Other").Claim() ? 'y' : 'n'; }).Answer, 'y');
}

TEST_F(Instance, RacingStartsGiveOneInstance)
{
    for (int round = 0; round < 10; ++round) {
        constexpr int kProcesses = 8;
        int start[2], answers[2];
        ASSERT_EQ(pipe(start), 0);
        ASSERT_EQ(pipe(answers), 0);
        std::vector<pid_t> children;
        for (int i = 0; i < kProcesses; ++i) {
            children.push_back(Fork(answers[1], [&] {
                close(start[1]);
                char none;
                (void)!read(start[0], &none, 1); // all begin when the pipe is closed
                static CInstance instance(kName);
                return instance.Claim() ? 'y' : CInstanceWindow::Find(kName) ? 'f' : 'n';
            }));
        }
        close(start[1]);
        int claimed = 0;
        for (int i = 0; i < kProcesses; ++i) {
            char answer = 0;
            ASSERT_EQ(read(answers[0], &answer, 1), 1);
            claimed += answer == 'y';
        }
        EXPECT_EQ(claimed, 1);
        for (const pid_t child : children)
            Kill(child);
        for (const int end : {start[0], answers[0], answers[1]})
            close(end);
    }
}

TEST_F(Instance, WhatAKilledProcessLeftBlocksNobody)
{
    const Child child = StartChild([] {
        static CInstance instance(kName);
        return instance.Claim() ? 'y' : 'n';
    });
    ASSERT_EQ(child.Answer, 'y');
    EXPECT_TRUE(CInstanceWindow::Find(kName)) << "it listens though it runs no loop yet";
    Kill(child.Pid);
    EXPECT_TRUE(QFile::exists(m_folder.path() + "/Tessera-test.socket"));
    EXPECT_FALSE(CInstanceWindow::Find(kName));
    CInstance own(kName);
    EXPECT_TRUE(own.Claim());
    EXPECT_TRUE(CInstanceWindow::Find(kName));
}

TEST_F(Instance, MessagesArriveWholeInOrderWithTheirToken)
{
    CInstance own(kName);
    std::vector<CInstanceMessage> got;
    ASSERT_TRUE(own.Claim());
    own.Listen([&](const CInstanceMessage& message) { got.push_back(message); });
    EXPECT_TRUE(PostBeside({kMessageShow, 5, 0, "token-1"}));
    EXPECT_TRUE(PostBeside({kMessageRequest, ~0ull, -7, QByteArray(4096, 'x')}));
    ASSERT_TRUE(WaitFor([&] { return got.size() == 2; }));
    EXPECT_EQ(got[0].Number, kMessageShow);
    EXPECT_EQ(got[0].wParam, 5u);
    EXPECT_EQ(got[0].Token, "token-1");
    EXPECT_EQ(got[1].wParam, ~0ull);
    EXPECT_EQ(got[1].lParam, -7);
    EXPECT_EQ(got[1].Token.size(), 4096);
}

TEST_F(Instance, ABusyInstanceTakesTheMessageLater)
{
    CInstance own(kName);
    ASSERT_TRUE(own.Claim());
    ASSERT_TRUE(CInstanceWindow::Find(kName)->Post({kMessageRequest, 0, 0, {}}, 1)); // no loop runs
    int got = 0;
    own.Listen([&](const CInstanceMessage&) { ++got; });
    EXPECT_TRUE(WaitFor([&] { return got == 1; }));
}

TEST_F(Instance, AMessageToOneThatEndsIsNotTaken)
{
    CInstance own(kName);
    ASSERT_TRUE(own.Claim());
    const auto window = CInstanceWindow::Find(kName);
    ASSERT_TRUE(window);
    own.Resign();
    EXPECT_FALSE(window->Post({kMessageRequest, 0, 0, {}}));
    EXPECT_EQ(StartChild([] { return CInstance(kName).Claim() ? 'y' : 'n'; }).Answer, 'y');
}

TEST_F(Instance, AHandlerThatEndsTheInstanceIsSafe)
{
    CInstance own(kName);
    own.Claim();
    own.Listen([&](const CInstanceMessage& message) {
        if (message.Number == kMessageClose)
            own.Resign();
    });
    EXPECT_TRUE(PostBeside({kMessageClose, 0, 0, {}}));
    EXPECT_TRUE(WaitFor([&] { return !own.IsClaimed(); }));
    EXPECT_FALSE(CInstanceWindow::Find(kName));
}

TEST_F(Instance, TheNameIsTakenOverOnceTheOtherHasGone)
{
    const Child child = StartChild([] {
        static CInstance instance(kName);
        return instance.Claim() ? 'y' : 'n';
    });
    CInstance own(kName);
    EXPECT_FALSE(own.ClaimWithin(20));
    own.Listen([](const CInstanceMessage&) {});
    EXPECT_FALSE(own.IsClaimed());
    Kill(child.Pid);
    EXPECT_TRUE(WaitFor([&] { return own.IsClaimed(); }));
}

TEST_F(Instance, GarbageOnTheSocketIsDropped)
{
    CInstance own(kName);
    ASSERT_TRUE(own.Claim());
    int got = 0;
    own.Listen([&](const CInstanceMessage&) { ++got; });
    QByteArray longToken = EncodeMessage({kMessageShow, 0, 0, {}});
    longToken[24] = longToken[25] = longToken[26] = '\x7f';
    for (const QByteArray& bytes : {QByteArray("GET / HTTP/1.1\r\n\r\n"), QByteArray(100000, 'T'), longToken,
                                    EncodeMessage({kMessageShow, 0, 0, {}}).left(20)}) {
        const int socket = OpenInstanceSocket(kName, SocketUse::Connect);
        ASSERT_GE(socket, 0);
        send(socket, bytes.constData(), size_t(bytes.size()), MSG_NOSIGNAL | MSG_DONTWAIT);
        QCoreApplication::processEvents();
        close(socket);
        QCoreApplication::processEvents();
    }
    EXPECT_TRUE(PostBeside({kMessageShow, 0, 0, {}})) << "and others are still served";
    EXPECT_TRUE(WaitFor([&] { return got >= 1; }));
    EXPECT_EQ(got, 1);
}

TEST_F(Instance, TheLockIsAFlagThatCanBeAskedWithoutTakingIt)
{
    const QByteArray name = "Tessera_View_Appt_Mutex";
    EXPECT_FALSE(CNamedLock::Exists(name));
    const Child child = StartChild([&] {
        static CNamedLock lock(name);
        return lock.Take() ? 'y' : 'n';
    });
    EXPECT_EQ(child.Answer, 'y');
    EXPECT_TRUE(CNamedLock::Exists(name));
    EXPECT_TRUE(CNamedLock::Exists(name)) << "asking leaves it alone";
    EXPECT_FALSE(CNamedLock(name).Take());
    Kill(child.Pid);
    EXPECT_FALSE(CNamedLock::Exists(name));
    CNamedLock own(name);
    EXPECT_TRUE(own.Take());
    EXPECT_FALSE(CNamedLock(name).Take());
    own.Release();
    EXPECT_FALSE(CNamedLock::Exists(name));
}

TEST_F(Instance, AFolderThatOthersMayWriteIsNotUsed)
{
    ASSERT_EQ(chmod(m_folder.path().toUtf8().constData(), 0777), 0);
    EXPECT_NE(RuntimeFolder(), m_folder.path().toUtf8());
    qputenv("XDG_RUNTIME_DIR", "/nonexistent/run");
    struct stat info = {};
    const QByteArray own = RuntimeFolder();
    ASSERT_EQ(stat(own.constData(), &info), 0) << own.constData();
    EXPECT_EQ(info.st_mode & 0777, 0700u);
}

TEST_F(Instance, AFolderWithALongPathWorks)
{
    const QString deep = m_folder.path() + "/" + QString(120, 'd');
    ASSERT_EQ(mkdir(deep.toUtf8().constData(), 0700), 0);
    qputenv("XDG_RUNTIME_DIR", deep.toUtf8());
    CInstance own(kName);
    ASSERT_TRUE(own.Claim());
    EXPECT_TRUE(CInstanceWindow::Find(kName));
}
