#include "platform/packed_properties.h"
#include "platform/volume_fixture.h"

#include <algorithm>
#include <random>

using CVolumeReadTest = CVolumeTest;

TEST_F(CVolumeReadTest, EachSeekFindsItsPlace)
{
    const auto volume = Open();
    for (const qint64 start : {50, 10, 30, 30, 20})
        Put(*volume, kThings, {{kStart, start}});
    Put(*volume, kThings, {{kNumber, 1}}); // 6, in no order by start
    const struct {
        SeekType type;
        qint64 value;
        CEOID found;
        std::vector<CEOID> rest; // what is read on from there
    } cases[] = {
        {SeekType::Beginning, 0, 2, {2, 5, 3, 4, 1}},
        {SeekType::ValueFirstEqual, 30, 3, {3, 4, 1}},
        {SeekType::ValueFirstEqual, 31, 0, {}},
        {SeekType::ValueFirstEqual, 60, 0, {}},
        {SeekType::ValueGreaterOrEqual, 30, 3, {3, 4, 1}},
        {SeekType::ValueGreaterOrEqual, 31, 1, {1}},
        {SeekType::ValueGreaterOrEqual, -5, 2, {2, 5, 3, 4, 1}},
        {SeekType::ValueGreaterOrEqual, 51, 0, {}},
        {SeekType::CeOid, 4, 4, {4, 1}},
        {SeekType::CeOid, 6, 6, {6}},
        {SeekType::CeOid, 99, 0, {}},
    };
    const auto db = volume->OpenDatabase(kThings, {{kStart}}, true);
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::Message() << int(c.type) << ' ' << c.value);
        EXPECT_EQ(db->Seek(c.type, {kStart, c.value}), c.found);
        EXPECT_EQ(ReadAll(*db), c.rest);
        EXPECT_EQ(ReadAll(*db), std::vector<CEOID>()); // and stays at the end
    }
    const auto plain = volume->OpenDatabase(kThings, {}, true);
    EXPECT_EQ(ReadAll(*plain), (std::vector<CEOID>{1, 2, 3, 4, 5, 6}));
    EXPECT_EQ(plain->Seek(SeekType::CeOid, {0, qint64(5)}), 5u);
    EXPECT_EQ(ReadAll(*plain), (std::vector<CEOID>{5, 6}));
}

TEST_F(CVolumeReadTest, TextAndSignedOrders)
{
    const auto volume = Open();
    Put(*volume, kThings, {{kText, QStringLiteral("pear")}, {kSigned, 3}});
    Put(*volume, kThings, {{kText, QStringLiteral("apple")}, {kSigned, -7}});
    Put(*volume, kThings, {{kText, QString()}, {kSigned, qint64(0xFFFFFFFF)}}); // -1 as its bits
    const auto texts = volume->OpenDatabase(kThings, {{kText}}, true);
    EXPECT_EQ(ReadAll(*texts), (std::vector<CEOID>{3, 2, 1}));
    EXPECT_EQ(texts->Seek(SeekType::ValueFirstEqual, {kText, QStringLiteral("pear")}), 1u);
    EXPECT_EQ(texts->Seek(SeekType::ValueFirstEqual, {kText, QStringLiteral("pea")}), 0u);
    EXPECT_EQ(texts->Seek(SeekType::ValueFirstEqual, {kText, QString()}), 3u);
    const auto numbers = volume->OpenDatabase(kThings, {{kSigned}}, true);
    EXPECT_EQ(ReadAll(*numbers), (std::vector<CEOID>{2, 3, 1}));
    EXPECT_EQ(numbers->Seek(SeekType::ValueFirstEqual, {kSigned, -1}), 3u);
}

TEST_F(CVolumeReadTest, OrdersOfTwoPropertiesWithGaps)
{
    const auto volume = Open();
    const std::vector<std::vector<CEPROPVAL>> pairs = {
        {{kFirst, 2}, {kSecond, 1}}, {{kFirst, 1}, {kSecond, 9}},
        {{kFirst, 2}},               {{kFirst, 1}, {kSecond, -3}},
        {{kSecond, 5}},              {{kFirst, 2}},
        {{kFirst, 4000000000}, {kSecond, 0}}};
    for (const auto& pair : pairs)
        Put(*volume, kPairs, pair);
    const auto db = volume->OpenDatabase(kPairs, {{kFirst, kSecond}, true}, true);
    const std::vector<CEOID> order = {4, 2, 3, 6, 1, 7};
    EXPECT_EQ(ReadAll(*db), order);
    EXPECT_EQ(db->Seek(SeekType::ValueFirstEqual, {kFirst, 2}), 3u);
    EXPECT_EQ(db->Seek(SeekType::ValueGreaterOrEqual, {kFirst, 3}), 7u);
    // From each record on, also when the block ends there.
    for (size_t i = 0; i < order.size(); ++i) {
        EXPECT_EQ(db->Seek(SeekType::CeOid, {0, qint64(order[i])}), order[i]);
        EXPECT_EQ(ReadAll(*db), std::vector<CEOID>(order.begin() + long(i), order.end())) << order[i];
    }
    CEOID oid = 0;
    const std::vector<CEPROPVAL> twice = {{kFirst, 2}, {kSecond, 1}};
    EXPECT_EQ(volume->WriteRecord(kPairs, 0, twice, {}, &oid).Kind(), StatusKind::Invalid);
    EXPECT_EQ(volume->RecordCount(kPairs), 7);
}

TEST_F(CVolumeReadTest, RowsStandAsAsked)
{
    const auto volume = Open();
    const QString text = QStringLiteral("Ünï\U0001F600") + QChar(0) + QStringLiteral("end");
    Put(*volume, kThings,
        {{kFlag, 77}, {kText, text}, {kBlob, QByteArray("\0\1\2", 3)}, {kStart, qint64(1) << 60}, {kSigned, -2}});
    Put(*volume, kThings, {{kText, QString()}, {kBlob, QByteArray()}});
    const auto db = volume->OpenDatabase(kThings, {}, true);
    const CEPROPID ids[] = {kBlob, 0x7777001F, kText, kNumber, kFlag, kStart, kSigned, kRecId, kText};
    std::vector<CEPROPVAL> rows;
    ASSERT_EQ(db->ReadRecordProps(ids, rows), 1u);
    ASSERT_EQ(rows.size(), std::size(ids));
    for (size_t i = 0; i < std::size(ids); ++i)
        EXPECT_EQ(rows[i].propid, ids[i]);
    EXPECT_EQ(rows[0].Bytes, QByteArray("\0\1\2", 3));
    EXPECT_FALSE(rows[1].Found());
    EXPECT_EQ(rows[2].Text, text);
    EXPECT_FALSE(rows[3].Found());
    EXPECT_EQ(rows[4].Number, 1);
    EXPECT_EQ(rows[5].Number, qint64(1) << 60);
    EXPECT_EQ(rows[6].Number, -2);
    EXPECT_EQ(rows[7].Number, 1);
    EXPECT_EQ(rows[8].Text, text);
    ASSERT_EQ(db->ReadRecordProps(ids, rows), 2u);
    EXPECT_TRUE(rows[0].Found());
    EXPECT_TRUE(rows[2].Found());
    EXPECT_EQ(rows[2].Text, QString());
    EXPECT_FALSE(rows[5].Found());
    EXPECT_EQ(db->ReadRecordProps(ids, rows), 0u);
}

TEST_F(CVolumeReadTest, APlaceSurvivesWritesBetweenTwoReads)
{
    const auto volume = Open();
    for (qint64 i = 1; i <= 20; ++i)
        Put(*volume, kThings, {{kStart, i * 10}});
    const auto db = volume->OpenDatabase(kThings, {{kStart}}, true);
    std::vector<CEPROPVAL> rows;
    const CEPROPID ids[] = {kStart, kNumber};
    ASSERT_EQ(db->ReadRecordProps(ids, rows), 1u);
    ASSERT_EQ(db->ReadRecordProps(ids, rows), 2u);
    ASSERT_TRUE(volume->DeleteRecord(kThings, 3));      // the very next
    Put(*volume, kThings, {{kStart, 45}});              // 21, ahead
    Put(*volume, kThings, {{kStart, 5}});               // 22, behind
    Put(*volume, kThings, {{kNumber, 9}}, 5);           // changed ahead
    Put(*volume, kThings, {{kStart, 55}}, 1);           // moved ahead, comes again
    ASSERT_EQ(db->ReadRecordProps(ids, rows), 4u);
    ASSERT_EQ(db->ReadRecordProps(ids, rows), 21u);
    ASSERT_EQ(db->ReadRecordProps(ids, rows), 5u);
    EXPECT_EQ(rows[1].Number, 9);
    ASSERT_EQ(db->ReadRecordProps(ids, rows), 1u);
    ASSERT_EQ(db->ReadRecordProps(ids, rows), 6u);
    // A seek whose record goes before it is read gives the one after it.
    ASSERT_EQ(db->Seek(SeekType::ValueFirstEqual, {kStart, 100}), 10u);
    ASSERT_TRUE(volume->DeleteRecord(kThings, 10));
    EXPECT_EQ(db->ReadRecordProps(ids, rows), 11u);
    // Without auto-increment a place is one record, read as it is now.
    const auto one = volume->OpenDatabase(kThings, {{kStart}}, false);
    ASSERT_EQ(one->Seek(SeekType::CeOid, {0, qint64(7)}), 7u);
    EXPECT_EQ(one->ReadRecordProps(ids, rows), 7u);
    EXPECT_FALSE(rows[1].Found());
    Put(*volume, kThings, {{kNumber, 4}}, 7);
    EXPECT_EQ(one->ReadRecordProps(ids, rows), 7u);
    EXPECT_EQ(rows[1].Number, 4);
    ASSERT_TRUE(volume->DeleteRecord(kThings, 7));
    EXPECT_EQ(one->ReadRecordProps(ids, rows), 0u);
}

TEST_F(CVolumeReadTest, ABlockAnswersAsOneReadAfterAnother)
{
    // Many ties, an id list that changes in mid pass, and sizes around those of the blocks.
    std::mt19937 random(7);
    for (const int count : {0, 1, 3, 4, 5, 20, 84, 85, 300}) {
        QTemporaryDir folder;
        std::shared_ptr<CPropertyVolume> volume;
        ASSERT_TRUE(CPropertyVolume::Open(folder.filePath(QStringLiteral("v")), TestSchema(), Mode::Create, volume));
        std::vector<std::pair<qint64, CEOID>> wanted;
        ASSERT_TRUE(volume->Begin(false));
        for (int i = 0; i < count; ++i) {
            const qint64 start = qint64(random() % 7);
            wanted.emplace_back(start, Put(*volume, kThings, {{kStart, start}, {kNumber, i}}));
        }
        ASSERT_TRUE(volume->Commit());
        std::sort(wanted.begin(), wanted.end());
        const auto db = volume->OpenDatabase(kThings, {{kStart}}, true);
        const std::vector<CEPROPID> lists[] = {{kStart}, {kStart, kNumber}};
        std::vector<CEPROPVAL> rows;
        for (size_t i = 0; i < wanted.size(); ++i) {
            ASSERT_EQ(db->ReadRecordProps(lists[i / 50 % 2], rows), wanted[i].second) << count << ' ' << i;
            ASSERT_EQ(rows[0].Number, wanted[i].first);
        }
        EXPECT_EQ(db->ReadRecordProps(lists[0], rows), 0u);
    }
}

TEST_F(CVolumeReadTest, UnknownDatabasesAndOrdersAreNull)
{
    const auto volume = Open();
    EXPECT_EQ(volume->OpenDatabase(QStringLiteral("Nothing"), {}, true), nullptr);
    EXPECT_EQ(volume->OpenDatabase(kThings, {{kNumber}}, true), nullptr);
    EXPECT_EQ(volume->OpenDatabase(kThings, {{kStart, kText}}, true), nullptr);
    EXPECT_NE(volume->OpenDatabase(kThings, {{kRecId}}, true), nullptr); // always there
}

TEST(PackedProperties, ComeBackAndSurviveEveryCut)
{
    const std::vector<CEPROPVAL> rows = {{0x70010013, qint64(4000000000)},
                                         {0x7002001F, QStringLiteral("tëxt")},
                                         {0x70030041, QByteArray("\0x", 2)},
                                         {0x7004001F, QString()}};
    const QByteArray packed = PackProperties(rows);
    for (qsizetype size = 0; size <= packed.size(); ++size) {
        std::vector<CEPROPVAL> read;
        const bool whole = UnpackProperties(packed.left(size), read);
        ASSERT_LE(read.size(), rows.size());
        if (size == packed.size()) {
            EXPECT_TRUE(whole);
            EXPECT_EQ(read.size(), rows.size());
        }
        for (size_t i = 0; i < read.size(); ++i) {
            EXPECT_EQ(read[i].propid, rows[i].propid);
            EXPECT_EQ(read[i].Number, rows[i].Number);
            EXPECT_EQ(read[i].Text, rows[i].Text);
            EXPECT_EQ(read[i].Bytes, rows[i].Bytes);
        }
    }
}

TEST_F(CVolumeReadTest, AScanShowsEachTextOnce)
{
    const auto volume = Open();
    Put(*volume, kThings, {{kStart, 50}, {kText, QStringLiteral("one")}});
    Put(*volume, kThings, {{kStart, 40}}); // without a text
    Put(*volume, kThings, {{kText, QStringLiteral("zw\u00f6lf")}}); // without a start
    Put(*volume, kThings, {{kStart, 10}, {kText, QString()}});
    Put(*volume, kThings, {{kStart, -3}, {kText, QStringLiteral("last")}});
    Put(*volume, kThings, {{kStart, 10}, {kText, QStringLiteral("also")}});
    const QString none = QStringLiteral("No such");
    const struct {
        const QString& Database;
        CEPROPID Text, Number;
        CPropertyVolume::CScanPlace After;
        const char* Seen;
    } cases[] = {
        {kThings, kText, kStart, {}, "5 last -3;4  10;6 also 10;1 one 50;"},
        {kThings, kText, 0, {}, "1 one 0;3 zw\u00f6lf 0;4  0;5 last 0;6 also 0;"},
        {kThings, kText, kStart, {10, 0}, "4  10;6 also 10;1 one 50;"},
        {kThings, kText, kStart, {10, 4}, "6 also 10;1 one 50;"},
        {kThings, kText, kStart, {50, 1}, ""},
        {kThings, kText, kNumber, {}, ""}, // no record has that number
        {kThings, kText, 0, {0, 4}, "5 last 0;6 also 0;"},
        {kThings, 0x7001001F, 0, {}, ""}, // a text without a column
        {none, kText, 0, {}, ""},
    };
    for (const auto& c : cases) {
        for (int limit = 1; limit <= 7; ++limit) {
            std::string seen;
            CPropertyVolume::CScanPlace place = c.After;
            bool goesOn = true;
            for (int calls = 0; goesOn && calls < 10; ++calls) {
                goesOn = volume->ScanTexts(c.Database, c.Text, c.Number, place, limit,
                                          [&](CEOID oid, std::string_view text, qint64 number) {
                                              seen += std::to_string(oid) + ' ' + std::string(text) + ' ' +
                                                      std::to_string(number) + ';';
                                          });
            }
            EXPECT_EQ(seen, c.Seen) << "by " << limit;
        }
    }
}
