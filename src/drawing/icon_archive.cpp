#include "drawing/icon_archive.h"

#include <QFile>
#include <QFileInfo>
#include <QStringDecoder>
#include <algorithm>
#include <unzip.h>
#include <zlib.h>

namespace
{
constexpr char kPassword[] = "Kq2mXw9TzR4b";
constexpr uLong kEncrypted = 1, kNameIsUtf8 = 0x800; // of a member's flags
constexpr uLong kStored = 0;                         // else Z_DEFLATED

// ---- minizip on a QIODevice, which is its "file" and opaque value both

QIODevice& DeviceOf(voidpf stream)
{
    return *static_cast<QIODevice*>(stream);
}

voidpf OpenDevice(voidpf opaque, const void*, int)
{
    return opaque;
}
int CloseDevice(voidpf, voidpf)
{
    return 0;
}
int ErrorOfDevice(voidpf, voidpf)
{
    return 0;
}
uLong WriteNothing(voidpf, voidpf, const void*, uLong)
{
    return 0;
}
ZPOS64_T TellDevice(voidpf, voidpf stream)
{
    return ZPOS64_T(DeviceOf(stream).pos());
}

uLong ReadDevice(voidpf, voidpf stream, void* buffer, uLong size)
{
    const qint64 got = DeviceOf(stream).read(static_cast<char*>(buffer), qint64(size));
    return got > 0 ? uLong(got) : 0;
}

long SeekDevice(voidpf, voidpf stream, ZPOS64_T offset, int origin)
{
    QIODevice& device = DeviceOf(stream);
    const ZPOS64_T size = ZPOS64_T(device.size());
    const ZPOS64_T base = origin == ZLIB_FILEFUNC_SEEK_END   ? size
                          : origin == ZLIB_FILEFUNC_SEEK_CUR ? ZPOS64_T(device.pos())
                                                             : 0;
    if (offset > size || base > size - offset)
        return -1;
    return device.seek(qint64(base + offset)) ? 0 : -1;
}

unzFile OpenZip(QIODevice& device)
{
    zlib_filefunc64_def functions = {};
    functions.zopen64_file = OpenDevice;
    functions.zread_file = ReadDevice;
    functions.zwrite_file = WriteNothing;
    functions.ztell64_file = TellDevice;
    functions.zseek64_file = SeekDevice;
    functions.zclose_file = CloseDevice;
    functions.zerror_file = ErrorOfDevice;
    functions.opaque = &device;
    return unzOpen2_64(nullptr, &functions);
}

// ---- members

// The classic cipher of zip archives: three keys that run along with the plain text.
class CZipCipher
{
public:
    explicit CZipCipher(const char* password)
    {
        for (; *password; ++password)
            Follow(quint8(*password));
    }
    quint8 Decrypt(quint8 byte)
    {
        const quint32 mix = (m_keys[2] & 0xFFFF) | 2;
        const quint8 plain = quint8(byte ^ quint8((mix * (mix ^ 1)) >> 8));
        Follow(plain);
        return plain;
    }

private:
    static quint32 Crc(quint32 sum, quint8 byte) { return get_crc_table()[(sum ^ byte) & 0xFF] ^ (sum >> 8); }
    void Follow(quint8 plain)
    {
        m_keys[0] = Crc(m_keys[0], plain);
        m_keys[1] = (m_keys[1] + (m_keys[0] & 0xFF)) * 134775813u + 1;
        m_keys[2] = Crc(m_keys[2], quint8(m_keys[1] >> 24));
    }
    quint32 m_keys[3] = {0x12345678, 0x23456789, 0x34567890};
};

QByteArray Decrypt(QByteArray data, const char* password)
{
    constexpr qsizetype kHead = 12; // of random bytes, so that equal members differ
    CZipCipher cipher(password);
    for (char& byte : data)
        byte = char(cipher.Decrypt(quint8(byte)));
    return data.mid(kHead);
}

// So many bytes, zeros where there are fewer; empty when there are none.
QByteArray Inflate(QByteArray packed, qsizetype size)
{
    QByteArray data(size, '\0');
    z_stream stream = {};
    stream.next_in = reinterpret_cast<Bytef*>(packed.data());
    stream.avail_in = uInt(packed.size());
    stream.next_out = reinterpret_cast<Bytef*>(data.data());
    stream.avail_out = uInt(size);
    if (inflateInit2(&stream, -MAX_WBITS) != Z_OK)
        return QByteArray();
    inflate(&stream, Z_FINISH);
    inflateEnd(&stream);
    return stream.total_out > 0 ? data : QByteArray();
}

// ---- paths

QString DecodeName(const QByteArray& bytes, uLong flags)
{
    QStringDecoder utf8(QStringDecoder::Utf8);
    const QString text = utf8(bytes);
    return utf8.hasError() && !(flags & kNameIsUtf8) ? QString::fromLatin1(bytes) : text;
}

QString KeyOf(const QString& level, const QString& group, const QString& file)
{
    return (level + u'/' + group + u'/' + file).toCaseFolded();
}
} // namespace

CIconArchive::CIconArchive() = default;

CIconArchive::~CIconArchive()
{
    Close();
}

void CIconArchive::Close()
{
    if (m_zip)
        unzClose(m_zip);
    m_zip = nullptr;
    m_device.reset();
    m_members.clear();
    m_byPath.clear();
}

bool CIconArchive::Open(const QString& path, QDeadlineTimer until)
{
    Close();
    auto file = std::make_unique<QFile>(path);
    if (!QFileInfo(path).isFile() || !file->open(QIODevice::ReadOnly))
        return false;
    return Open(std::move(file), until);
}

bool CIconArchive::Open(std::unique_ptr<QIODevice> device, QDeadlineTimer until)
{
    Close();
    m_device = std::move(device);
    m_zip = OpenZip(*m_device);
    if (m_zip)
        ReadDirectory(until);
    else
        m_device.reset();
    return IsOpen();
}

void CIconArchive::ReadDirectory(QDeadlineTimer until)
{
    int state = unzGoToFirstFile(m_zip);
    for (int seen = 0; state == UNZ_OK && seen < kMembers && !until.hasExpired(); ++seen) {
        AddCurrent();
        state = unzGoToNextFile(m_zip);
    }
}

void CIconArchive::AddCurrent()
{
    unz_file_info64 info;
    QByteArray name(kNameBytes, '\0');
    unz64_file_pos place;
    if (unzGetCurrentFileInfo64(m_zip, &info, name.data(), kNameBytes, nullptr, 0, nullptr, 0) != UNZ_OK ||
        info.size_filename > uLong(kNameBytes) || unzGetFilePos64(m_zip, &place) != UNZ_OK)
        return;
    name.truncate(qsizetype(info.size_filename));
    const QString path = DecodeName(name, info.flag);
    const qsizetype first = path.indexOf(u'/'), second = path.indexOf(u'/', first + 1);
    if (first < 0 || second < 0 || second + 1 == path.size())
        return;
    CMember member{path.left(first), path.mid(first + 1, second - first - 1), path.mid(second + 1),
                   place.pos_in_zip_directory, place.num_of_file};
    const QString key = KeyOf(member.Level, member.Group, member.File);
    if (m_byPath.contains(key))
        return;
    m_byPath.insert(key, int(m_members.size()));
    m_members.push_back(std::move(member));
}

int CIconArchive::Find(const QString& level, const QString& group, const QString& file) const
{
    return m_byPath.value(KeyOf(level, group, file), -1);
}

// As it lies in the archive; minizip is often built without its reading of encrypted members.
QByteArray CIconArchive::ReadPacked(const CMember& member, CPacking& packing) const
{
    const unz64_file_pos place{member.Place, member.Number};
    unz_file_info64 info;
    if (unzGoToFilePos64(m_zip, &place) != UNZ_OK ||
        unzGetCurrentFileInfo64(m_zip, &info, nullptr, 0, nullptr, 0, nullptr, 0) != UNZ_OK)
        return QByteArray();
    if (info.uncompressed_size > quint64(kMemberBytes) || info.compressed_size > quint64(kPackedBytes) ||
        (info.compression_method != kStored && info.compression_method != Z_DEFLATED))
        return QByteArray();
    packing = {(info.flag & kEncrypted) != 0, info.compression_method == Z_DEFLATED,
               qsizetype(info.uncompressed_size)};
    constexpr int kRaw = 1;
    if (unzOpenCurrentFile2(m_zip, nullptr, nullptr, kRaw) != UNZ_OK)
        return QByteArray();
    QByteArray data(qsizetype(info.compressed_size), '\0');
    const int got = unzReadCurrentFile(m_zip, data.data(), unsigned(data.size()));
    unzCloseCurrentFile(m_zip);
    data.truncate(std::max(got, 0));
    return data;
}

CAlphaImage CIconArchive::ReadImage(int member) const
{
    CAlphaImage image;
    if (!m_zip || member < 0 || member >= int(m_members.size()))
        return image;
    CPacking packing;
    QByteArray data = ReadPacked(m_members[size_t(member)], packing);
    if (packing.Encrypted)
        data = Decrypt(data, kPassword);
    if (packing.Deflated)
        data = Inflate(data, packing.Size);
    image.LoadFromMemory(data, kPixels);
    return image;
}
