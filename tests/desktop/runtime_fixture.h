// A session folder of the test's own, and children that run a function and are reaped.
#pragma once
#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QTemporaryDir>
#include <functional>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

class RuntimeFixture : public testing::Test
{
protected:
    RuntimeFixture() : m_saved(qgetenv("XDG_RUNTIME_DIR"))
    {
        qputenv("XDG_RUNTIME_DIR", m_folder.path().toUtf8());
    }
    ~RuntimeFixture() override
    {
        for (const pid_t child : m_children)
            Kill(child);
        qputenv("XDG_RUNTIME_DIR", m_saved);
    }

    // A child that tells over a pipe what `run` answers, then stays until it is killed.
    struct Child {
        pid_t Pid;
        char Answer;
    };
    pid_t Fork(int pipeEnd, const std::function<char()>& run)
    {
        const pid_t child = fork();
        if (child == 0) {
            const char answer = run();
            if (write(pipeEnd, &answer, 1) == 1)
                pause();
            _exit(0);
        }
        m_children.push_back(child);
        return child;
    }
    Child StartChild(const std::function<char()>& run)
    {
        int ends[2];
        EXPECT_EQ(pipe(ends), 0);
        Child child{Fork(ends[1], run), 0};
        EXPECT_EQ(read(ends[0], &child.Answer, 1), 1);
        close(ends[0]);
        close(ends[1]);
        return child;
    }
    void Kill(pid_t child)
    {
        kill(child, SIGKILL);
        waitpid(child, nullptr, 0);
        std::erase(m_children, child);
    }
    static bool WaitFor(const std::function<bool()>& done, int milliseconds = 5000)
    {
        const QDeadlineTimer end(milliseconds);
        while (!done() && !end.hasExpired())
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents | QEventLoop::AllEvents, 20);
        return done();
    }

    QTemporaryDir m_folder;
    QByteArray m_saved;
    std::vector<pid_t> m_children;
};
