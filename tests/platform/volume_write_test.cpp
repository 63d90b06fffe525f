#include "platform/failing_vfs.h"
#include "platform/volume_fixture.h"

#include <QFile>
#include <functional>

namespace
{
using CVolumeWriteTest = CVolumeTest;

constexpr CEPROPID kUnknownText = 0x7777001F;
constexpr CEPROPID kUnknownNumber = 0x77780013;

struct CNotices {
    explicit CNotices(CPropertyVolume& volume) : m_volume(volume), m_last(volume.LastChange())
    {
        volume.SetCommitHook([this] { ++hooks; });
    }
    ~CNotices() { m_volume.SetCommitHook({}); }
    // "c1 u2 d3" since the last call.
    std::string Take()
    {
        std::vector<CVolumeChange> changes;
        EXPECT_TRUE(m_volume.ReadChanges(m_last, 1000, changes).IsOk());
        std::string text;
        for (const CVolumeChange& change : changes) {
            EXPECT_GT(change.Sequence, m_last);
            m_last = change.Sequence;
            const char kind = change.Type == kNoticeCreated ? 'c' : change.Type == kNoticeDeleted ? 'd' : 'u';
            text += (text.empty() ? "" : " ") + std::string(1, kind) + std::to_string(change.Oid) +
                    (change.Database == 1 ? "p" : "");
        }
        return text;
    }
    int hooks = 0;

private:
    CPropertyVolume& m_volume;
    qint64 m_last;
};

// A transaction that makes, changes and deletes records of both databases.
CStatus WriteMuch(CPropertyVolume& volume)
{
    CStatus status = volume.Begin();
    if (!status)
        return status;
    const auto write = [&](const QString& database, CEOID oid, std::vector<CEPROPVAL> rows) {
        if (status)
            status = volume.WriteRecord(database, oid, rows, {}, nullptr);
    };
    for (int i = 0; i < 3; ++i) {
        write(kThings, 0, {{kStart, i}, {kText, QString(3000, u'x')}, {kUnknownNumber, 5}});
        write(kPairs, 0, {{kFirst, 100 + i}, {kSecond, 1}});
    }
    write(kThings, 1, {{kStart, 99}, {kUnknownText, QStringLiteral("new")}});
    if (status)
        status = volume.DeleteRecord(kThings, 2);
    if (status)
        status = volume.TouchRecord(kThings, 1);
    if (status)
        return volume.Commit();
    volume.Rollback();
    return status;
}
} // namespace

TEST_F(CVolumeWriteTest, UnknownPropertiesAreKeptBesideTheKnown)
{
    const auto volume = Open();
    const CEOID oid = Put(*volume, kThings,
                          {{kText, QStringLiteral("t")}, {kUnknownText, QStringLiteral("ü")}, {kUnknownNumber, 7}});
    Put(*volume, kThings, {{kText, QStringLiteral("t2")}}, oid);
    Put(*volume, kThings, {{kUnknownNumber, 8}}, oid);
    EXPECT_EQ(Dump(*volume, kThings), "1 20001f=0/t2/ 10000066=1// 7777001f=0/ü/ 77780013=8//\n");
    const auto db = volume->OpenDatabase(kThings, {}, true);
    std::vector<CEPROPVAL> rows;
    const CEPROPID ids[] = {kUnknownNumber, kText, kUnknownText, 0x77790013};
    ASSERT_EQ(db->ReadRecordProps(ids, rows), oid);
    EXPECT_EQ(rows[0].Number, 8);
    EXPECT_EQ(rows[2].Text, QStringLiteral("ü"));
    EXPECT_FALSE(rows[3].Found());
    const CEPROPID gone[] = {kUnknownText, kText, kUnknownNumber, 0x77790013};
    ASSERT_TRUE(volume->WriteRecord(kThings, oid, {}, gone, nullptr));
    EXPECT_EQ(Dump(*volume, kThings), "1 10000066=1//\n");
    ExpectSound(*volume);
}

TEST_F(CVolumeWriteTest, IdentifiersAndNumbersAreNeverUsedAgain)
{
    auto volume = Open();
    quint32 number = 0;
    CEOID oid = 0;
    const auto make = [&](const QString& database, std::vector<CEPROPVAL> rows) {
        ASSERT_TRUE(volume->WriteRecord(database, 0, rows, {}, &oid, &number));
    };
    make(kThings, {{kNumber, 1}});
    EXPECT_EQ(std::pair(oid, number), std::pair(1u, 1u));
    make(kPairs, {{kFirst, 1}, {kSecond, 1}});
    EXPECT_EQ(oid, 2u); // across the volume
    make(kThings, {{kRecId, 50}});
    EXPECT_EQ(std::pair(oid, number), std::pair(3u, 50u));
    make(kThings, {});
    EXPECT_EQ(std::pair(oid, number), std::pair(4u, 51u));
    for (const CEOID gone : {1u, 3u, 4u})
        ASSERT_TRUE(volume->DeleteRecord(kThings, gone));
    volume.reset();
    volume = Open();
    make(kThings, {});
    EXPECT_EQ(std::pair(oid, number), std::pair(5u, 52u));
    std::vector<CEPROPVAL> twice = {{kRecId, 52}};
    EXPECT_EQ(volume->WriteRecord(kThings, 0, twice, {}, nullptr).Kind(), StatusKind::Invalid);
    const auto byNumber = volume->OpenDatabase(kThings, {{kRecId}}, true);
    EXPECT_EQ(byNumber->Seek(SeekType::ValueFirstEqual, {kRecId, 52}), 5u);
    ExpectSound(*volume);
}

TEST_F(CVolumeWriteTest, WhatIsNotThereIsRefusedAndNobodyTold)
{
    const auto volume = Open();
    CNotices notices(*volume);
    std::vector<CEPROPVAL> rows = {{kNumber, 1}};
    EXPECT_EQ(volume->WriteRecord(kThings, 9, rows, {}, nullptr).Kind(), StatusKind::NotFound);
    EXPECT_EQ(volume->DeleteRecord(kThings, 9).Kind(), StatusKind::NotFound);
    EXPECT_EQ(volume->TouchRecord(kThings, 9).Kind(), StatusKind::NotFound);
    EXPECT_EQ(volume->WriteRecord(QStringLiteral("No"), 0, rows, {}, nullptr).Kind(), StatusKind::NotFound);
    EXPECT_EQ(volume->ReadWholeRecord(kThings, 9, rows).Kind(), StatusKind::NotFound);
    EXPECT_EQ(volume->Commit().Kind(), StatusKind::Invalid);
    volume->Rollback();
    EXPECT_EQ(notices.hooks, 0);
    EXPECT_EQ(notices.Take(), "");
}

TEST_F(CVolumeWriteTest, NoticesFollowTheOutermostCommit)
{
    const auto volume = Open();
    CNotices notices(*volume);
    ASSERT_TRUE(volume->Begin());
    ASSERT_TRUE(volume->Begin());
    Put(*volume, kThings, {{kNumber, 1}});
    ASSERT_TRUE(volume->Commit());
    Put(*volume, kPairs, {{kFirst, 1}, {kSecond, 1}});
    EXPECT_EQ(notices.hooks, 0);
    ASSERT_TRUE(volume->Commit());
    EXPECT_EQ(notices.hooks, 1);
    EXPECT_EQ(notices.Take(), "c1 c2p");
    Put(*volume, kThings, {{kNumber, 2}}, 1);
    ASSERT_TRUE(volume->TouchRecord(kThings, 1));
    ASSERT_TRUE(volume->DeleteRecord(kThings, 1));
    EXPECT_EQ(notices.hooks, 4);
    EXPECT_EQ(notices.Take(), "u1 u1 d1");
    ASSERT_TRUE(volume->Begin());
    ASSERT_TRUE(volume->Commit()); // empty
    ASSERT_TRUE(volume->Begin());
    Put(*volume, kThings, {{kNumber, 1}});
    volume->Rollback();
    EXPECT_EQ(notices.hooks, 4);
    EXPECT_EQ(notices.Take(), "");
    EXPECT_FALSE(volume->ChangedByOthers());
}

TEST_F(CVolumeWriteTest, AnInnerRollbackTakesBackOnlyItself)
{
    const auto volume = Open();
    CNotices notices(*volume);
    Put(*volume, kThings, {{kNumber, 1}, {kUnknownNumber, 3}});  // 1
    Put(*volume, kPairs, {{kFirst, 1}, {kSecond, 1}});            // 2
    notices.Take();
    ASSERT_TRUE(volume->Begin());
    Put(*volume, kThings, {{kNumber, 30}}); // 3
    const std::string before = Dump(*volume, kThings) + Dump(*volume, kPairs);
    for (int round = 0; round < 2; ++round) {
        ASSERT_TRUE(volume->Begin());
        Put(*volume, kThings, {{kNumber, 5}, {kUnknownNumber, 4}}, 1);
        Put(*volume, kThings, {{kNumber, 6}}, 1);
        ASSERT_TRUE(volume->Begin());
        ASSERT_TRUE(volume->DeleteRecord(kThings, 1));
        ASSERT_TRUE(volume->DeleteRecord(kPairs, 2));
        const CEOID made = Put(*volume, kPairs, {{kFirst, 1}, {kSecond, 1}}); // in the place of 2
        ASSERT_TRUE(volume->Commit());
        ASSERT_TRUE(volume->DeleteRecord(kPairs, made));
        volume->Rollback();
        EXPECT_EQ(Dump(*volume, kThings) + Dump(*volume, kPairs), before);
    }
    ASSERT_TRUE(volume->DeleteRecord(kThings, 3));
    ASSERT_TRUE(volume->Commit());
    EXPECT_EQ(notices.Take(), "c3 d3");
    ExpectSound(*volume);
}

TEST_F(CVolumeWriteTest, AFailedStatementChangesNothing)
{
    const auto volume = Open();
    Put(*volume, kThings, {{kStart, 1}, {kText, QStringLiteral("one")}});
    Put(*volume, kThings, {{kStart, 2}});
    const std::string before = Dump(*volume, kThings) + Dump(*volume, kPairs);
    CNotices notices(*volume);
    int n = 1;
    for (; n < 1000; ++n) {
        FailVolumeWrite(n, StatusKind::Full);
        const CStatus status = WriteMuch(*volume);
        if (!FailVolumeWrite(0)) {
            EXPECT_TRUE(status.IsOk());
            break;
        }
        ASSERT_EQ(status.Kind(), StatusKind::Full) << n;
        ASSERT_EQ(Dump(*volume, kThings) + Dump(*volume, kPairs), before) << n;
        ASSERT_EQ(notices.hooks, 0);
        ASSERT_EQ(notices.Take(), "");
    }
    EXPECT_GT(n, 15);
    EXPECT_EQ(notices.hooks, 1);
    EXPECT_EQ(volume->RecordCount(kThings), 4);
    ExpectSound(*volume);
}

TEST_F(CVolumeWriteTest, AFailedInnerLevelLeavesTheBatch)
{
    const auto volume = Open();
    ASSERT_TRUE(volume->Begin(false));
    Put(*volume, kThings, {{kNumber, 1}});
    for (int n = 1; n <= 4; ++n) {
        ASSERT_TRUE(volume->Begin());
        FailVolumeWrite(n, StatusKind::Io);
        std::vector<CEPROPVAL> rows = {{kNumber, 2}};
        CStatus status = volume->WriteRecord(kThings, 0, rows, {}, nullptr);
        if (status)
            status = volume->WriteRecord(kThings, 1, rows, {}, nullptr);
        EXPECT_TRUE(FailVolumeWrite(0));
        EXPECT_EQ(status.Kind(), StatusKind::Io) << n;
        // Going on as if nothing had happened is refused, too.
        EXPECT_FALSE(volume->Commit().IsOk());
        EXPECT_EQ(volume->RecordCount(kThings), 1);
    }
    ASSERT_TRUE(volume->Commit());
    EXPECT_EQ(Dump(*volume, kThings), "1 210013=1// 10000066=1//\n");
    ExpectSound(*volume);
}

TEST_F(CVolumeWriteTest, EveryFailureOfTheDiskLeavesTheVolumeAsItWas)
{
    const CFailingVfs disk;
    for (const bool full : {true, false}) {
        int n = 1;
        for (; n < 1000; ++n) {
            QTemporaryDir folder;
            const QString path = folder.filePath(QStringLiteral("v"));
            std::shared_ptr<CPropertyVolume> volume;
            ASSERT_TRUE(CPropertyVolume::Open(path, TestSchema(), Mode::Create, volume));
            Put(*volume, kThings, {{kStart, 1}, {kText, QStringLiteral("one")}});
            Put(*volume, kThings, {{kStart, 2}});
            const std::string before = Dump(*volume, kThings) + Dump(*volume, kPairs);
            int hooks = 0;
            volume->SetCommitHook([&hooks] { ++hooks; });
            CFailingVfs::FailAt(n, full);
            const CStatus status = WriteMuch(*volume);
            if (!CFailingVfs::Stop()) {
                EXPECT_TRUE(status.IsOk());
                break;
            }
            ASSERT_FALSE(status.IsOk()) << n;
            ASSERT_EQ(status.Kind(), full ? StatusKind::Full : StatusKind::Io) << n;
            ASSERT_EQ(Dump(*volume, kThings) + Dump(*volume, kPairs), before) << n;
            ASSERT_EQ(hooks, 0) << n;
            // And the next write of the same volume succeeds.
            ASSERT_TRUE(WriteMuch(*volume)) << n;
            volume.reset();
            ASSERT_TRUE(CPropertyVolume::Open(path, TestSchema(), Mode::MustExist, volume));
            EXPECT_EQ(volume->RecordCount(kThings), 4);
            ExpectSound(*volume);
        }
        EXPECT_GT(n, 4);
    }
}

TEST_F(CVolumeWriteTest, TheLogOfChangesStaysBounded)
{
    const auto volume = Open();
    ASSERT_TRUE(volume->Begin(false));
    const CEOID oid = Put(*volume, kThings, {{kNumber, 1}});
    for (int i = 0; i < 120000; ++i)
        ASSERT_TRUE(volume->TouchRecord(kThings, oid));
    ASSERT_TRUE(volume->Commit());
    std::vector<CVolumeChange> changes;
    ASSERT_TRUE(volume->ReadChanges(0, 200000, changes));
    EXPECT_GE(changes.size(), 99999u);
    EXPECT_LE(changes.size(), 102000u);
    EXPECT_EQ(changes.back().Sequence, volume->LastChange());
    EXPECT_EQ(volume->LastChange(), 120001);
}
