// One zip archive of icons, open for reading. Members that lie three levels deep, "level/group/file",
// are known by their paths without regard to case, the first of equal ones; all others are passed over.
// Encrypted members open with the program's own password.
// Anybody may have made the archive. Nothing is written anywhere, and a member's path is only a name.
// Limits: Open looks at kMembers members, whose paths have at most kNameBytes; it takes at most 16 MiB.
//   A member takes kPackedBytes packed and kMemberBytes unpacked, its picture kPixels; reading one
//   takes at most 8 MiB. Open stops where its time ends, and knows the members up to there.
// Errors: a file that is no archive is not opened; a member that cannot be read gives an empty image.
#pragma once
#include <QDeadlineTimer>
#include <QHash>
#include <QString>
#include <memory>
#include <vector>

#include "drawing/alpha_image.h"

class QIODevice;

class CIconArchive
{
public:
    static constexpr int kMembers = 16384;
    static constexpr int kNameBytes = 250;
    static constexpr qint64 kMemberBytes = 256 << 10;
    static constexpr qint64 kPackedBytes = kMemberBytes + 4096; // what cannot be packed grows a little
    static constexpr qint64 kPixels = 512 * 512;

    struct CMember {
        QString Level, Group, File;
        quint64 Place = 0; // in the archive's directory
        quint64 Number = 0;
    };

    CIconArchive();
    ~CIconArchive();
    CIconArchive(const CIconArchive&) = delete;
    CIconArchive& operator=(const CIconArchive&) = delete;

    bool Open(const QString& path, QDeadlineTimer until); // a plain file: nothing that could keep us waiting
    bool Open(std::unique_ptr<QIODevice> device, QDeadlineTimer until); // open for reading already
    void Close();
    bool IsOpen() const { return m_zip != nullptr; }

    const std::vector<CMember>& Members() const { return m_members; }                // in the archive's order
    int Find(const QString& level, const QString& group, const QString& file) const; // -1: none
    CAlphaImage ReadImage(int member) const;

private:
    void ReadDirectory(QDeadlineTimer until);
    void AddCurrent();
    struct CPacking {
        bool Encrypted = false, Deflated = false;
        qsizetype Size = 0; // unpacked
    };
    QByteArray ReadPacked(const CMember& member, CPacking& packing) const;

    std::unique_ptr<QIODevice> m_device;
    void* m_zip = nullptr;
    std::vector<CMember> m_members;
    QHash<QString, int> m_byPath;
};
