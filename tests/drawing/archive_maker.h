// Small zip archives for tests, made with minizip.
#pragma once
#include <QBuffer>
#include <QFile>
#include <QImage>
#include <gtest/gtest.h>
#include <minizip/zip.h>
#include <vector>

struct CTestMember {
    QByteArray Path;
    QByteArray Data;
    int Level = 6; // of packing; 0 stores
};

inline QByteArray PngOf(int width, int height, QRgb color)
{
    QImage picture(width, height, QImage::Format_ARGB32);
    picture.fill(color);
    QByteArray data;
    QBuffer buffer(&data);
    buffer.open(QIODevice::WriteOnly);
    picture.save(&buffer, "PNG");
    return data;
}

inline void WriteArchive(const QString& path, const std::vector<CTestMember>& members)
{
    const zipFile zip = zipOpen64(QFile::encodeName(path).constData(), APPEND_STATUS_CREATE);
    ASSERT_TRUE(zip);
    for (const CTestMember& member : members) {
        const zip_fileinfo info = {};
        ASSERT_EQ(zipOpenNewFileInZip64(zip, member.Path.constData(), &info, nullptr, 0, nullptr, 0, nullptr,
                                        member.Level ? Z_DEFLATED : 0, member.Level, 0),
                  ZIP_OK);
        zipWriteInFileInZip(zip, member.Data.constData(), unsigned(member.Data.size()));
        zipCloseFileInZip(zip);
    }
    ASSERT_EQ(zipClose(zip, nullptr), ZIP_OK);
}

// Both sizes of one icon, each of one colour.
inline std::vector<CTestMember> IconMembers(const QByteArray& groupAndFile, QRgb color)
{
    return {{"small/" + groupAndFile, PngOf(16, 16, color)}, {"large/" + groupAndFile, PngOf(32, 32, color)}};
}
