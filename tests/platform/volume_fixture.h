// A small volume in a temporary folder, and short ways to write and read it.
#pragma once
#include "platform/property_volume.h"

#include <QTemporaryDir>
#include <gtest/gtest.h>
#include <map>

constexpr CEPROPID kStart = 0x10420040;
constexpr CEPROPID kNumber = 0x00210013;
constexpr CEPROPID kFlag = 0x0022000B;
constexpr CEPROPID kSigned = 0x00300003;
constexpr CEPROPID kText = 0x0020001F;
constexpr CEPROPID kBlob = 0x00480041;
constexpr CEPROPID kRecId = 0x10000066;
constexpr CEPROPID kFirst = 0x00010013;
constexpr CEPROPID kSecond = 0x00020003;

inline const QString kThings = QStringLiteral("Things Database");
inline const QString kPairs = QStringLiteral("PairDB");

inline CVolumeSchema TestSchema()
{
    return {{kThings,
             {{kRecId, "RecId"},
              {kStart, "Start"},
              {kNumber, "Number"},
              {kFlag, "Flag"},
              {kSigned, "Signed"},
              {kText, "Text"},
              {kBlob, "Blob"}},
             {{{kStart}}, {{kText}}, {{kFlag}}, {{kSigned}}}},
            {kPairs, {{kFirst, "First"}, {kSecond, "Second"}}, {{{kFirst, kSecond}, true}}}};
}

class CVolumeTest : public testing::Test
{
protected:
    using Mode = CPropertyVolume::Mode;

    QString Path() const { return m_folder.filePath(QStringLiteral("pim.vol")); }

    std::shared_ptr<CPropertyVolume> Open(Mode mode = Mode::Create) const
    {
        std::shared_ptr<CPropertyVolume> volume;
        const CStatus status = CPropertyVolume::Open(Path(), TestSchema(), mode, volume);
        EXPECT_TRUE(status.IsOk()) << status.Text().toStdString();
        return volume;
    }

    static CEOID Put(CPropertyVolume& volume, const QString& database, std::vector<CEPROPVAL> rows, CEOID oid = 0)
    {
        CEOID written = 0;
        const CStatus status = volume.WriteRecord(database, oid, rows, {}, &written);
        EXPECT_TRUE(status.IsOk()) << status.Text().toStdString();
        return written;
    }

    // What a database holds, as text: one line per record in order of CEOID.
    static std::string Dump(CPropertyVolume& volume, const QString& database)
    {
        std::string dump;
        const auto db = volume.OpenDatabase(database, {}, true);
        std::vector<CEPROPVAL> none;
        while (const CEOID oid = db->ReadRecordProps({}, none)) {
            std::vector<CEPROPVAL> rows;
            EXPECT_TRUE(volume.ReadWholeRecord(database, oid, rows).IsOk());
            std::map<CEPROPID, std::string> sorted;
            for (const CEPROPVAL& row : rows)
                sorted[row.propid] = std::to_string(row.Number) + '/' + row.Text.toStdString() + '/' +
                                     row.Bytes.toHex().toStdString();
            dump += std::to_string(oid);
            for (const auto& [id, value] : sorted)
                dump += ' ' + QByteArray::number(id, 16).toStdString() + '=' + value;
            dump += '\n';
        }
        return dump;
    }

    static std::vector<CEOID> ReadAll(CPropertyDatabase& db)
    {
        std::vector<CEOID> oids;
        std::vector<CEPROPVAL> rows;
        while (const CEOID oid = db.ReadRecordProps({}, rows))
            oids.push_back(oid);
        return oids;
    }

    static void ExpectSound(CPropertyVolume& volume)
    {
        QStringList faults;
        const CStatus status = volume.Check(faults);
        EXPECT_TRUE(status.IsOk()) << status.Text().toStdString();
        EXPECT_EQ(faults.join(u'\n').toStdString(), "");
    }

    QTemporaryDir m_folder;
};
