// Images from files, members of archives and resources. All of it may come from anybody.
#include <QBuffer>
#include <QFile>
#include <QFileInfo>
#include <QImageReader>
#include <QtEndian>
#include <algorithm>
#include <cstring>
#include <optional>

#include "drawing/alpha_image.h"

namespace
{
constexpr int kShortestPath = 5;
constexpr int kSuffixLength = 4;
constexpr char kPngSignature[] = "\x89PNG\r\n\x1a\n";
constexpr qsizetype kPngSignatureSize = 8, kPngChunkSize = 12; // its length, type and checksum
constexpr qsizetype kPngHeadSize = kPngSignatureSize + kPngChunkSize + 13;
constexpr int kMostJpegScans = 64; // each costs a pass over the whole picture; usual are 1 to 12

bool HasSuffix(const QString& path, const char* suffix)
{
    return path.size() >= kShortestPath &&
           path.right(kSuffixLength).compare(QLatin1String(suffix), Qt::CaseInsensitive) == 0;
}

std::span<const quint8> BytesOf(const QByteArray& data)
{
    return {reinterpret_cast<const quint8*>(data.constData()), size_t(data.size())};
}

// Empty when there is no plain file, or a larger one than any image.
QByteArray ReadFile(const QString& path, qint64 most)
{
    QFile file(path);
    if (!QFileInfo(path).isFile() || !file.open(QIODevice::ReadOnly))
        return QByteArray();
    return file.size() > most ? QByteArray() : file.readAll();
}

// ---- PNG

QSize PngSize(const QByteArray& data)
{
    if (data.size() < kPngHeadSize || !data.startsWith(kPngSignature) || data.mid(12, 4) != "IHDR")
        return QSize();
    const quint32 width = qFromBigEndian<quint32>(data.constData() + 16);
    const quint32 height = qFromBigEndian<quint32>(data.constData() + 20);
    constexpr quint32 kMost = 0x7FFFFFFF;
    return width > kMost || height > kMost ? QSize() : QSize(int(width), int(height));
}

// Only the chunks that make the pixels: a kilobyte of packed text or profile may unpack to a thousand.
QByteArray PngPixelsOnly(const QByteArray& data)
{
    static constexpr const char* kKept[] = {"IHDR", "PLTE", "tRNS", "IDAT", "IEND"};
    QByteArray result = data.left(kPngSignatureSize);
    result.reserve(data.size());
    for (qsizetype at = kPngSignatureSize; data.size() - at >= kPngChunkSize;) {
        const char* const type = data.constData() + at + 4;
        const qint64 size = qint64(qFromBigEndian<quint32>(data.constData() + at)) + kPngChunkSize;
        const qsizetype there = qsizetype(std::min<qint64>(size, data.size() - at));
        if (std::any_of(std::begin(kKept), std::end(kKept),
                        [type](const char* kept) { return std::memcmp(type, kept, 4) == 0; }))
            result.append(data.constData() + at, there);
        at += there;
    }
    return result;
}

// ---- TARGA

struct TargaHeader {
    int Width = 0;
    int Height = 0;
    bool InRuns = false;
    bool HasAlpha = false;
    bool FromTop = false;
    size_t Begin = 0; // of the pixels
};

constexpr size_t kTargaHeaderSize = 18;

std::optional<TargaHeader> ReadTargaHeader(std::span<const quint8> data)
{
    constexpr quint8 kTrueColor = 2, kTrueColorInRuns = 10, kRowsFromTop = 0x10;
    if (data.size() < kTargaHeaderSize || data[1] != 0)
        return std::nullopt;
    if (data[2] != kTrueColor && data[2] != kTrueColorInRuns)
        return std::nullopt;
    TargaHeader header;
    header.Width = qFromLittleEndian<quint16>(data.data() + 12);
    header.Height = qFromLittleEndian<quint16>(data.data() + 14);
    header.InRuns = data[2] == kTrueColorInRuns;
    header.HasAlpha = data[16] == 32;
    header.FromTop = data[17] & kRowsFromTop;
    header.Begin = kTargaHeaderSize + data[0];
    return header;
}

class CTargaPixels
{
public:
    CTargaPixels(std::span<const quint8> data, const TargaHeader& header, CAlphaImage& image)
        : m_data(data), m_header(header), m_at(std::min(header.Begin, data.size())),
          m_count(size_t(header.Width) * size_t(header.Height)), m_red(image.EditRed()),
          m_green(image.EditGreen()), m_blue(image.EditBlue()), m_alpha(image.EditAlpha())
    {
    }
    void Read()
    {
        for (int y = 0; y < m_header.Height; ++y)
            ReadRow(size_t(m_header.FromTop ? y : m_header.Height - 1 - y) * size_t(m_header.Width));
    }

private:
    struct Pixel {
        quint8 Blue, Green, Red, Alpha;
    };
    void ReadRow(size_t to)
    {
        for (int x = 0; x < m_header.Width;) {
            constexpr int kRun = 0x80;
            const int packet = m_header.InRuns ? Byte() : 0;
            const int length = (packet & ~kRun) + 1;
            Pixel pixel = {};
            for (int n = 0; n < length; ++n, ++x) {
                if (n == 0 || !(packet & kRun))
                    pixel = Next();
                Put(to++, pixel);
            }
        }
    }
    quint8 Byte() { return m_at < m_data.size() ? m_data[m_at++] : 0; }
    Pixel Next()
    {
        Pixel pixel;
        pixel.Blue = Byte();
        pixel.Green = Byte();
        pixel.Red = Byte();
        pixel.Alpha = m_header.HasAlpha ? Byte() : 255;
        return pixel;
    }
    void Put(size_t to, const Pixel& pixel)
    {
        if (to >= m_count)
            return; // a packet beyond the last row
        m_red[to] = pixel.Red;
        m_green[to] = pixel.Green;
        m_blue[to] = pixel.Blue;
        m_alpha[to] = pixel.Alpha;
    }

    std::span<const quint8> m_data;
    const TargaHeader& m_header;
    size_t m_at;
    size_t m_count;
    quint8 *m_red, *m_green, *m_blue, *m_alpha;
};

QByteArray ResourceBytes(const QString& module, const QString& name, const char* suffix)
{
    return ReadFile(module + QLatin1Char('/') + name + QLatin1String(suffix), CAlphaImage::kMaxFile);
}
} // namespace

bool CAlphaImage::LoadFromMemory(const QByteArray& data, qint64 maxPixels)
{
    Clear();
    const bool png = data.startsWith(kPngSignature), jpeg = data.startsWith("\xff\xd8\xff");
    if (!png && !jpeg && !data.startsWith("BM"))
        return false;
    if (jpeg && data.count("\xff\xda") > kMostJpegScans)
        return false;
    QBuffer buffer;
    buffer.setData(png ? PngPixelsOnly(data) : data);
    QImageReader reader(&buffer, png ? "png" : jpeg ? "jpg" : "bmp");
    reader.setAutoDetectImageFormat(false);
    const QSize size = png ? PngSize(data) : reader.size();
    if (size.isEmpty() || qint64(size.width()) * size.height() > std::min(maxPixels, kMaxPixels))
        return false;
    *this = FromImage(reader.read());
    return IsValid();
}

bool CAlphaImage::LoadTarga(std::span<const quint8> data)
{
    Clear();
    const std::optional<TargaHeader> header = ReadTargaHeader(data);
    if (!header || !Create(header->Width, header->Height))
        return false;
    CTargaPixels(data, *header, *this).Read();
    return true;
}

bool CAlphaImage::LoadFromFile(const QString& path)
{
    Clear();
    const bool targa = HasSuffix(path, ".tga");
    if (!targa && !HasSuffix(path, ".png") && !HasSuffix(path, ".jpg"))
        return false;
    const QByteArray data = ReadFile(path, kMaxFile);
    return targa ? LoadTarga(BytesOf(data)) : LoadFromMemory(data);
}

bool CAlphaImage::LoadFromResource(const QString& module, const QString& name)
{
    for (const char* const suffix : {".png", ".bmp"}) {
        if (LoadFromMemory(ResourceBytes(module, name, suffix)))
            return true;
    }
    return LoadTarga(BytesOf(ResourceBytes(module, name, ".tga")));
}

bool CAlphaImage::LoadAlphaFromResource(const QString& module, const QString& name)
{
    CAlphaImage mask;
    if (!mask.LoadTarga(BytesOf(ResourceBytes(module, name, ".tga"))) || mask.Count() != Count())
        return false;
    std::transform(mask.Alpha(), mask.Alpha() + Count(), EditAlpha(),
                   [](quint8 stored) { return quint8(255 - stored); });
    return true;
}

QSize CAlphaImage::ReadImageSize(const QString& path)
{
    const bool png = HasSuffix(path, ".png");
    QFile file(path);
    if ((!png && !HasSuffix(path, ".tga")) || !QFileInfo(path).isFile() || !file.open(QIODevice::ReadOnly))
        return QSize(0, 0);
    const QByteArray head = file.read(kPngHeadSize);
    if (png) {
        const QSize size = PngSize(head);
        return size.isValid() ? size : QSize(0, 0);
    }
    const std::optional<TargaHeader> header = ReadTargaHeader(BytesOf(head));
    return header ? QSize(header->Width, header->Height) : QSize(0, 0);
}
