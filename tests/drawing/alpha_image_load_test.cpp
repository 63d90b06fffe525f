// Image files as anybody may hand them in.
#include "drawing/alpha_image.h"

#include <QBuffer>
#include <QFile>
#include <QTemporaryDir>
#include <QtEndian>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include "drawing/paint.h"

namespace
{
struct Targa {
    int Type = 2;
    int Width = 2;
    int Height = 2;
    int Bits = 24;
    int Descriptor = 0x10;
    QByteArray Id;
    int MapType = 0;

    QByteArray With(const QByteArray& pixels) const
    {
        QByteArray head(18, '\0');
        head[0] = char(Id.size());
        head[1] = char(MapType);
        head[2] = char(Type);
        qToLittleEndian(quint16(Width), head.data() + 12);
        qToLittleEndian(quint16(Height), head.data() + 14);
        head[16] = char(Bits);
        head[17] = char(Descriptor);
        return head + Id + pixels;
    }
};

std::span<const quint8> Bytes(const QByteArray& data)
{
    return {reinterpret_cast<const quint8*>(data.constData()), size_t(data.size())};
}

// One letter a pixel: what was stored as "bgr" of that letter; lower case when it is transparent.
QByteArray Letters(const CAlphaImage& image)
{
    QByteArray art;
    for (int n = 0; n < image.Width() * image.Height(); ++n) {
        if (n > 0 && n % image.Width() == 0)
            art += '/';
        const char letter = image.Red()[n] ? char(image.Red()[n]) : '.';
        art += image.Alpha()[n] ? letter : char(std::tolower(letter));
    }
    return art;
}

// Pixels of three bytes, or of four with the alpha; blue and green differ from red.
QByteArray Pixels(const char* letters, bool alpha = false)
{
    QByteArray data;
    for (; *letters; ++letters) {
        const int red = std::toupper(*letters);
        data += char(red + 2);
        data += char(red + 1);
        data += char(red);
        if (alpha)
            data += char(std::isupper(*letters) ? 255 : 0);
    }
    return data;
}
QByteArray Packet(int head, const char* letters)
{
    return char(head) + Pixels(letters);
}

struct TargaCase {
    const char* Name;
    QByteArray File;
    const char* Expected; // rows from the top; empty: it does not load
};

class TargaFile : public testing::TestWithParam<TargaCase>
{
};

TEST_P(TargaFile, GivesItsPixels)
{
    CAlphaImage image = MakeSolidImage(1, 1, 0, 9);
    const bool loaded = image.LoadTarga(Bytes(GetParam().File));
    EXPECT_EQ(loaded, *GetParam().Expected != 0);
    EXPECT_EQ(image.IsValid(), loaded);
    EXPECT_EQ(Letters(image), GetParam().Expected);
}

const Targa kRuns{.Type = 10};
const TargaCase kTargaCases[] = {
    {"RowsFromTheTop", Targa{}.With(Pixels("ABCD")), "AB/CD"},
    {"RowsFromTheBottom", Targa{.Descriptor = 0}.With(Pixels("ABCD")), "CD/AB"},
    {"TheUsualBitIsNotAsked", Targa{.Descriptor = 0x20}.With(Pixels("ABCD")), "CD/AB"},
    {"BothBits", Targa{.Descriptor = 0x38}.With(Pixels("ABCD")), "AB/CD"},
    {"AlphaByte", Targa{.Bits = 32}.With(Pixels("AbcD", true)), "Ab/cD"},
    {"OtherDepthsAreThreeBytes", Targa{.Bits = 16}.With(Pixels("ABCD")), "AB/CD"},
    {"IdIsSkipped", Targa{.Id = "twelve bytes"}.With(Pixels("ABCD")), "AB/CD"},
    {"Runs", kRuns.With(Packet(0x81, "A") + Packet(1, "BC")), "AA/BC"},
    {"RunsFromTheBottom", Targa{.Type = 10, .Descriptor = 0}.With(Packet(0x81, "A") + Packet(1, "BC")),
     "BC/AA"},
    // The second row begins at its own start and covers what ran into it.
    {"PacketAcrossARow", kRuns.With(Packet(0x82, "A") + Packet(0, "B") + Packet(0, "C")), "AA/BC"},
    {"LiteralsAcrossARow", kRuns.With(Packet(2, "ABX") + Packet(0, "C") + Packet(0, "D")), "AB/CD"},
    // From the bottom the storage after a row is the row that was read before.
    {"AcrossARowFromTheBottom", Targa{.Type = 10, .Descriptor = 0}.With(Packet(1, "AB") + Packet(0x82, "C")),
     "CC/CB"},
    {"PacketBeyondTheLastRow", kRuns.With(Packet(1, "AB") + Packet(0xFF, "C")), "AB/CC"},
    {"LiteralsBeyondTheLastRow", kRuns.With(Packet(1, "AB") + Packet(0x7F, "CDEF")), "AB/CD"},
    {"EndsEarly", Targa{}.With(Pixels("ABC")), "AB/C."},
    {"EndsEarlyWithAlpha", Targa{.Bits = 32}.With(Pixels("ABC", true)), "AB/C."},
    {"RunsEndEarly", kRuns.With(Packet(0x81, "A")), "AA/.."},
    {"EndsInItsId", Targa{.Id = QByteArray(255, 'x')}.With("").left(40), "../.."},
    {"HeaderAlone", Targa{.Width = 1, .Height = 1}.With(""), "."},
    {"Grey", Targa{.Type = 3}.With(Pixels("ABCD")), ""},
    {"ColourMapped", Targa{.Type = 1, .MapType = 1}.With(Pixels("ABCD")), ""},
    {"TrueColourWithAMap", Targa{.MapType = 1}.With(Pixels("ABCD")), ""},
    {"NoWidth", Targa{.Width = 0}.With(Pixels("ABCD")), ""},
    {"NoHeight", Targa{.Height = 0}.With(Pixels("ABCD")), ""},
    {"TooWide", Targa{.Width = 65535, .Height = 1}.With(""), ""},
    {"TooManyPixels", Targa{.Width = 16384, .Height = 16384}.With(""), ""},
    {"ShortHeader", Targa{}.With("").left(17), ""},
    {"Nothing", QByteArray(), ""},
};

TEST(Targa, TransparentPixelsKeepTheirLetters)
{
    CAlphaImage image;
    ASSERT_TRUE(image.LoadTarga(Bytes(Targa{.Width = 1, .Height = 1, .Bits = 32}.With("\x11\x22\x33\x44"))));
    EXPECT_EQ(image.Pixels()[0], 0x44332211u);
}

INSTANTIATE_TEST_SUITE_P(Files, TargaFile, testing::ValuesIn(kTargaCases),
                         [](const auto& info) { return std::string(info.param.Name); });

// ---- what goes through the decoders of the system

QByteArray Encoded(const QImage& picture, const char* format, int quality = -1)
{
    QByteArray data;
    QBuffer buffer(&data);
    buffer.open(QIODevice::WriteOnly);
    EXPECT_TRUE(picture.save(&buffer, format, quality));
    return data;
}

QImage Sample(int width = 3, int height = 2)
{
    QImage picture(width, height, QImage::Format_ARGB32);
    for (int n = 0; n < width * height; ++n)
        picture.setPixel(n % width, n / width, qRgba(n * 7, 40, 200 - n, n % 2 ? 255 : 80));
    return picture;
}

QByteArray Chunk(const char* type, const QByteArray& data)
{
    QByteArray size(4, '\0');
    qToBigEndian(quint32(data.size()), size.data());
    return size + type + data + QByteArray(4, '\0');
}

TEST(ImageFromMemory, PngKeepsEveryPixel)
{
    CAlphaImage image;
    for (const auto format : {QImage::Format_ARGB32, QImage::Format_RGBA64}) {
        const QImage picture = Sample().convertToFormat(format);
        ASSERT_TRUE(image.LoadFromMemory(Encoded(picture, "PNG")));
        EXPECT_EQ(image.ToImage(), Sample());
    }
}

TEST(ImageFromMemory, PngWithATransparentColour)
{
    QImage picture(2, 1, QImage::Format_Indexed8);
    picture.setColorTable({qRgba(9, 8, 7, 0), qRgb(200, 100, 50)});
    picture.setPixel(0, 0, 0);
    picture.setPixel(1, 0, 1);
    CAlphaImage image;
    ASSERT_TRUE(image.LoadFromMemory(Encoded(picture, "PNG")));
    EXPECT_EQ(image.Alpha()[0], 0);
    EXPECT_EQ(image.Pixels()[1], 0xFFC86432u);
}

TEST(ImageFromMemory, TextsAndProfilesOfAPngAreNotUnpacked)
{
    QImage picture = Sample();
    picture.setText(QStringLiteral("Comment"), QString(1 << 20, u'x')); // packed to a kilobyte
    const QByteArray data = Encoded(picture, "PNG");
    ASSERT_LT(data.size(), 1 << 16);
    CAlphaImage image;
    ASSERT_TRUE(image.LoadFromMemory(data));
    EXPECT_EQ(image.ToImage(), Sample());
    // A chunk that says it is longer than the file, where a reader would look for its end.
    EXPECT_FALSE(image.LoadFromMemory(data.left(33) + QByteArray("\xff\xff\xff\xffzTXt") + data.mid(33)));
    EXPECT_TRUE(image.LoadFromMemory(data.left(33) + Chunk("zTXt", QByteArray(99, 'x')) + data.mid(33)));
}

TEST(ImageFromMemory, JpegAndBitmapAreOpaque)
{
    QImage picture(8, 8, QImage::Format_RGB32);
    picture.fill(qRgb(200, 100, 50));
    CAlphaImage image;
    for (const char* const format : {"JPG", "BMP"}) {
        ASSERT_TRUE(image.LoadFromMemory(Encoded(picture, format, 100))) << format;
        EXPECT_EQ(image.Width(), 8);
        EXPECT_NEAR(image.Red()[20], 200, 3);
        EXPECT_NEAR(image.Blue()[20], 50, 3);
        EXPECT_EQ(image.Alpha()[20], 255);
    }
}

TEST(ImageFromMemory, RefusesWhatIsNoPicture)
{
    const QByteArray png = Encoded(Sample(), "PNG");
    const struct {
        const char* Name;
        QByteArray Data;
    } cases[] = {
        {"nothing", QByteArray()},
        {"text", "some words"},
        {"signature", png.left(8)},
        {"half a head", png.left(20)},
        {"no pixels", png.left(33)},
        {"head not first", png.left(8) + Chunk("tEXt", "x") + png.mid(8)},
        {"drawing", "<svg xmlns='http://www.w3.org/2000/svg' width='9' height='9'/>"},
        {"jpeg's start", "\xff\xd8\xff\xe0"},
        {"bitmap's start", "BM123456789012345678901234567890"},
        {"jpeg of many passes", Encoded(Sample(), "JPG") + QByteArray("\xff\xda").repeated(100)},
    };
    for (const auto& c : cases) {
        CAlphaImage image = MakeSolidImage(1, 1, 0, 0);
        EXPECT_FALSE(image.LoadFromMemory(c.Data)) << c.Name;
        EXPECT_FALSE(image.IsValid()) << c.Name;
    }
}

TEST(ImageFromMemory, ASizeAboveTheLimitIsRefusedBeforeDecoding)
{
    CAlphaImage image;
    for (const char* const format : {"PNG", "JPG", "BMP"}) {
        const QByteArray data = Encoded(Sample(20, 10), format);
        EXPECT_TRUE(image.LoadFromMemory(data, 200)) << format;
        EXPECT_FALSE(image.LoadFromMemory(data, 199)) << format;
    }
    QByteArray huge = Encoded(Sample(), "PNG");
    qToBigEndian(quint32(0x7FFFFFFF), huge.data() + 16);
    qToBigEndian(quint32(0x7FFFFFFF), huge.data() + 20);
    EXPECT_FALSE(image.LoadFromMemory(huge));
}

TEST(ImageFromMemory, AnyCutAndAnyByteIsSurvived)
{
    for (const char* const format : {"PNG", "JPG", "BMP"}) {
        const QByteArray data = Encoded(Sample(20, 10), format);
        CAlphaImage image;
        for (qsizetype n = 0; n < data.size(); n += 3) {
            image.LoadFromMemory(data.left(n));
            QByteArray broken = data;
            broken[n] = char(~broken[n]);
            image.LoadFromMemory(broken, 4096);
            EXPECT_LE(image.Width() * image.Height(), 4096);
        }
    }
}

// ---- files

class ImageFile : public testing::Test
{
protected:
    QString Write(const char* name, const QByteArray& data)
    {
        QFile file(Folder.filePath(QString::fromLatin1(name)));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(data);
        return file.fileName();
    }
    QTemporaryDir Folder;
};

TEST_F(ImageFile, TheLastFourCharactersDecide)
{
    const QByteArray png = Encoded(Sample(), "PNG"), tga = Targa{}.With(Pixels("ABCD"));
    const struct {
        const char* Name;
        QByteArray Data;
        bool Loads;
        QSize Size;
    } cases[] = {
        {"a.png", png, true, {3, 2}},           {"a.PNG", png, true, {3, 2}},
        {"a.TgA", tga, true, {2, 2}},           {"a.jpg", Encoded(Sample(), "JPG"), true, {0, 0}},
        {"a.png.txt", png, false, {0, 0}},      {"apng", png, false, {0, 0}},
        {"a.tga", png, false, {0, 0}},          {"b.png", tga, false, {0, 0}},
        {"c.png", png.left(24), false, {0, 0}}, {"c.tga", tga.left(17), false, {0, 0}},
    };
    for (const auto& c : cases) {
        const QString path = Write(c.Name, c.Data);
        CAlphaImage image = MakeSolidImage(1, 1, 0, 0);
        EXPECT_EQ(image.LoadFromFile(path), c.Loads) << c.Name;
        EXPECT_EQ(image.IsValid(), c.Loads) << c.Name;
        EXPECT_EQ(CAlphaImage::ReadImageSize(path), c.Size) << c.Name;
    }
}

TEST_F(ImageFile, AResourceIsAPngElseABitmapElseATarga)
{
    const QByteArray tga = Targa{}.With(Pixels("ABCD"));
    Write("7.tga", tga);
    Write("8.tga", tga);
    Write("8.bmp", Encoded(Sample(5, 1), "BMP"));
    Write("9.bmp", Encoded(Sample(5, 1), "BMP"));
    Write("9.png", Encoded(Sample(), "PNG"));
    const struct {
        const char* Name;
        QSize Size;
    } cases[] = {{"7", {2, 2}}, {"8", {5, 1}}, {"9", {3, 2}}, {"6", {0, 0}}};
    for (const auto& c : cases) {
        CAlphaImage image = MakeSolidImage(1, 1, 0, 0);
        EXPECT_EQ(image.LoadFromResource(Folder.path(), QString::fromLatin1(c.Name)), !c.Size.isEmpty());
        EXPECT_EQ(QSize(image.Width(), image.Height()), c.Size) << c.Name;
    }
}

TEST_F(ImageFile, AlphaOfATargaIsTakenTheOtherWayRoundWhenTheSizesMatch)
{
    Write("mask.tga", Targa{.Width = 4, .Height = 1, .Bits = 32}.With(Pixels("AbcD", true)));
    const QString mask = QStringLiteral("mask");
    CAlphaImage image = MakeSolidImage(2, 2, Rgb(1, 2, 3), 9); // as many pixels are enough
    EXPECT_TRUE(image.LoadAlphaFromResource(Folder.path(), mask));
    EXPECT_EQ(image.Pixels()[0], 0x00010203u);
    EXPECT_EQ(image.Pixels()[1], 0xFF010203u);
    image = MakeSolidImage(3, 1, Rgb(1, 2, 3), 9);
    EXPECT_FALSE(image.LoadAlphaFromResource(Folder.path(), mask));
    EXPECT_FALSE(image.LoadAlphaFromResource(Folder.path(), QStringLiteral("none")));
    EXPECT_EQ(image.Pixels()[0], 0x09010203u);
    CAlphaImage empty;
    EXPECT_FALSE(empty.LoadAlphaFromResource(Folder.path(), QStringLiteral("none")));
}

TEST_F(ImageFile, NoFileNoNameAndNoEnd)
{
    CAlphaImage image;
    EXPECT_FALSE(image.LoadFromFile(Folder.filePath(QStringLiteral("none.png"))));
    EXPECT_FALSE(image.LoadFromFile(QStringLiteral(".png")));
    EXPECT_FALSE(image.LoadFromFile(QString()));
    const QString pipe = Folder.filePath(QStringLiteral("pipe.tga"));
    ASSERT_EQ(mkfifo(QFile::encodeName(pipe).constData(), 0600), 0);
    EXPECT_FALSE(image.LoadFromFile(pipe)); // would wait for a writer for ever
    EXPECT_EQ(CAlphaImage::ReadImageSize(pipe), QSize(0, 0));
    QDir(Folder.path()).mkdir(QStringLiteral("folder.png"));
    EXPECT_FALSE(image.LoadFromFile(Folder.filePath(QStringLiteral("folder.png"))));
}

TEST_F(ImageFile, AFileLargerThanAnyImageIsNotRead)
{
    const QString path = Write("sparse.tga", Targa{}.With(Pixels("ABCD")));
    ASSERT_TRUE(QFile::resize(path, CAlphaImage::kMaxFile));
    CAlphaImage image;
    EXPECT_TRUE(image.LoadFromFile(path));
    ASSERT_TRUE(QFile::resize(path, CAlphaImage::kMaxFile + 1));
    EXPECT_FALSE(image.LoadFromFile(path));
}
} // namespace
