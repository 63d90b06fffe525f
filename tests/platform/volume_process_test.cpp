// Two processes on one volume. A child is forked before its parent opens the file, since locks
// and connections must not be carried over a fork.
#include "platform/volume_fixture.h"
#include "platform/volume_watcher.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QTimer>
#include <functional>
#include <sys/wait.h>
#include <unistd.h>

namespace
{
// A process that does its work when told to, step by step.
class CChild
{
public:
    using Work = std::function<bool(const std::function<void()>& wait)>;

    explicit CChild(const Work& work)
    {
        int fromParent[2];
        int toParent[2];
        EXPECT_EQ(pipe(fromParent), 0);
        EXPECT_EQ(pipe(toParent), 0);
        m_pid = fork();
        if (m_pid == 0) {
            const auto wait = [&] {
                char c = 0;
                if (write(toParent[1], "r", 1) != 1 || read(fromParent[0], &c, 1) != 1)
                    _exit(9);
            };
            _exit(work(wait) ? 0 : 1);
        }
        m_read = toParent[0];
        m_write = fromParent[1];
    }
    void WaitReady()
    {
        char c = 0;
        EXPECT_EQ(read(m_read, &c, 1), 1);
    }
    void Go() { EXPECT_EQ(write(m_write, "g", 1), 1); }
    void Kill() { kill(m_pid, SIGKILL); }
    int Wait()
    {
        int status = 0;
        waitpid(m_pid, &status, 0);
        return status;
    }

private:
    pid_t m_pid = -1;
    int m_read = -1;
    int m_write = -1;
};

std::shared_ptr<CPropertyVolume> OpenAt(const QString& path)
{
    std::shared_ptr<CPropertyVolume> volume;
    if (!CPropertyVolume::Open(path, TestSchema(), CPropertyVolume::Mode::Create, volume))
        return nullptr;
    return volume;
}

bool Write(CPropertyVolume& volume, std::vector<CEPROPVAL> rows, CEOID oid = 0)
{
    return volume.WriteRecord(kThings, oid, rows, {}, nullptr).IsOk();
}

class CVolumeProcessTest : public CVolumeTest
{
protected:
    // Runs events until a notice comes; how long it took, -1 when none did.
    static qint64 MillisecondsToNotice(CVolumeWatcher& watcher, int limit)
    {
        QEventLoop loop;
        QElapsedTimer timer;
        timer.start();
        bool told = false;
        const auto connection = QObject::connect(&watcher, &CVolumeWatcher::Changed, &loop, [&] {
            told = true;
            loop.quit();
        });
        QTimer::singleShot(limit, &loop, &QEventLoop::quit);
        loop.exec();
        QObject::disconnect(connection);
        return told ? timer.elapsed() : -1;
    }
    int m_argc = 1;
    char m_name[5] = "test";
    char* m_argv[2] = {m_name, nullptr};
};
} // namespace

TEST_F(CVolumeProcessTest, WritesOfOthersAreToldSoon)
{
    const QString path = Path();
    ASSERT_NE(OpenAt(path), nullptr);
    CChild child([path](const std::function<void()>& wait) {
        const auto volume = OpenAt(path);
        bool good = volume != nullptr;
        for (int i = 0; i < 5 && good; ++i) {
            wait();
            good = Write(*volume, {{kNumber, i}});
        }
        wait();
        return good;
    });
    QCoreApplication application(m_argc, m_argv);
    child.WaitReady();
    const auto volume = Open(Mode::MustExist);
    CVolumeWatcher watcher(volume);
    qint64 last = volume->LastChange();
    for (int i = 0; i < 5; ++i) {
        child.Go();
        EXPECT_GE(MillisecondsToNotice(watcher, 5000), 0);
        std::vector<CVolumeChange> changes;
        ASSERT_TRUE(volume->ReadChanges(last, 10, changes));
        ASSERT_EQ(changes.size(), 1u);
        EXPECT_EQ(changes[0].Oid, CEOID(i + 1));
        last = changes[0].Sequence;
        child.WaitReady();
    }
    child.Go();
    EXPECT_EQ(child.Wait(), 0);
    EXPECT_EQ(volume->RecordCount(kThings), 5);
}

TEST_F(CVolumeProcessTest, OwnCommitsAreToldOnceEach)
{
    QCoreApplication application(m_argc, m_argv);
    const auto volume = Open();
    CVolumeWatcher watcher(volume);
    int told = 0;
    QObject::connect(&watcher, &CVolumeWatcher::Changed, &watcher, [&told] { ++told; });
    Put(*volume, kThings, {{kNumber, 1}});
    Put(*volume, kThings, {{kNumber, 2}});
    EXPECT_EQ(told, 0); // not from within the write
    EXPECT_GE(MillisecondsToNotice(watcher, 5000), 0);
    EXPECT_EQ(told, 1);
    EXPECT_EQ(MillisecondsToNotice(watcher, 60), -1); // and the log's own stirring is nothing new
}

TEST_F(CVolumeProcessTest, TwoWritersWaitForEachOther)
{
    const QString path = Path();
    constexpr int kEach = 150;
    const auto work = [path](const std::function<void()>& wait) {
        wait();
        const auto volume = OpenAt(path); // both make the file
        bool good = volume != nullptr;
        for (int i = 0; i < kEach && good; ++i) {
            good = volume->Begin(i % 3 != 0) && Write(*volume, {{kStart, i}}) && Write(*volume, {{kText, QString()}}) &&
                   volume->Commit();
        }
        return good;
    };
    CChild first(work);
    CChild second(work);
    first.WaitReady();
    second.WaitReady();
    first.Go();
    second.Go();
    EXPECT_EQ(first.Wait(), 0);
    EXPECT_EQ(second.Wait(), 0);
    const auto volume = Open(Mode::MustExist);
    EXPECT_EQ(volume->RecordCount(kThings), 4 * kEach);
    EXPECT_EQ(volume->LastChange(), 4 * kEach);
    ExpectSound(*volume);
}

TEST_F(CVolumeProcessTest, AKillLeavesWholeTransactionsOnly)
{
    const QString path = Path();
    for (const int delay : {0, 1, 5, 20, 60}) {
        QFile::remove(path);
        CChild child([path](const std::function<void()>& wait) {
            const auto volume = OpenAt(path);
            if (!volume)
                return false;
            wait();
            for (int batch = 0;; ++batch) {
                if (!volume->Begin(batch % 2 == 0))
                    return false;
                for (int i = 0; i < 100; ++i)
                    Write(*volume, {{kStart, batch}, {kNumber, i}, {kText, QString(200, u'k')}});
                if (!volume->Commit())
                    return false;
            }
        });
        child.WaitReady();
        child.Go();
        usleep(useconds_t(delay) * 1000);
        child.Kill();
        EXPECT_TRUE(WIFSIGNALED(child.Wait()));
        const auto volume = Open(Mode::MustExist);
        ASSERT_NE(volume, nullptr);
        EXPECT_EQ(volume->RecordCount(kThings) % 100, 0);
        EXPECT_EQ(volume->LastChange(), volume->RecordCount(kThings));
        ExpectSound(*volume);
        EXPECT_TRUE(Write(*volume, {{kNumber, 1}}));
    }
}

TEST_F(CVolumeProcessTest, AReaderSeesAnUnfinishedTransactionNowhere)
{
    const QString path = Path();
    ASSERT_NE(OpenAt(path), nullptr);
    CChild child([path](const std::function<void()>& wait) {
        const auto volume = OpenAt(path);
        bool good = volume && volume->Begin() && Write(*volume, {{kStart, 1}});
        wait();
        good = good && volume->Commit();
        wait();
        return good;
    });
    child.WaitReady();
    const auto volume = Open(Mode::MustExist);
    const auto db = volume->OpenDatabase(kThings, {{kStart}}, true);
    EXPECT_EQ(db->Seek(SeekType::Beginning), 0u);
    EXPECT_FALSE(volume->ChangedByOthers());
    EXPECT_EQ(volume->LastChange(), 0);
    child.Go();
    child.WaitReady();
    EXPECT_TRUE(volume->ChangedByOthers());
    EXPECT_FALSE(volume->ChangedByOthers());
    EXPECT_EQ(db->Seek(SeekType::Beginning), 1u);
    EXPECT_EQ(volume->LastChange(), 1);
    child.Go();
    EXPECT_EQ(child.Wait(), 0);
}
