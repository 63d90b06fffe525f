// Makes an icon archive from SVG drawings, at build time:
//   icon_tool OUT.zip FOLDER
// FOLDER/Group/name.svg, drawn on 16 x 16, becomes the members "small/Group/name.png" (16 x 16) and
// "large/Group/name.png" (32 x 32) for a density of 96, and for the higher densities the same two,
// that much larger, under "192-small", "192-large", "288-small" and so on. The same drawings give the
// same bytes. Ends with 1 and one line per fault when a file cannot be used; OUT.zip is gone then.
#include <minizip/zip.h>

#include <QBuffer>
#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QTextStream>
#include <vector>

#include "../picture_tool/render.h"

namespace
{
constexpr int kSmallSide = 16, kDensity = 96, kHighestMultiple = 4;
// 1 January 2020: members tell when they were made, but not when they were built.
constexpr tm_zip kMemberTime{0, 0, 0, 1, 0, 2020};

struct CDrawing {
    QString Group, Name, Path;
};

QTextStream& Complaints()
{
    static QTextStream stream(stderr);
    return stream;
}

std::vector<CDrawing> FindDrawings(const QString& folder)
{
    std::vector<CDrawing> drawings;
    const QDir top(folder);
    for (const QString& group : top.entryList(QDir::Dirs | QDir::NoDotAndDotDot, QDir::Name)) {
        const QDir inner(top.filePath(group));
        for (const QString& file : inner.entryList({QStringLiteral("*.svg")}, QDir::Files, QDir::Name))
            drawings.push_back({group, file.chopped(4), inner.filePath(file)});
    }
    return drawings;
}

// Stored as it is: a PNG is packed already.
bool AddMember(zipFile zip, const QString& path, const QByteArray& bytes)
{
    zip_fileinfo information{};
    information.tmz_date = kMemberTime;
    if (zipOpenNewFileInZip(zip, path.toUtf8().constData(), &information, nullptr, 0, nullptr, 0, nullptr, 0,
                            0) != ZIP_OK)
        return false;
    const bool good = zipWriteInFileInZip(zip, bytes.constData(), unsigned(bytes.size())) == ZIP_OK;
    return zipCloseFileInZip(zip) == ZIP_OK && good;
}

bool AddPicture(zipFile zip, const CDrawing& drawing, const QString& level, int multiple)
{
    const QImage image = RenderSvg(drawing.Path, multiple);
    if (image.size() != QSize(kSmallSide, kSmallSide) * multiple) {
        Complaints() << drawing.Path << ": not an SVG picture of " << kSmallSide << " x " << kSmallSide
                     << "\n";
        return false;
    }
    QBuffer png;
    const QString member = QStringLiteral("%1/%2/%3.png").arg(level, drawing.Group, drawing.Name);
    if (!png.open(QIODevice::WriteOnly) || !image.save(&png, "PNG") || !AddMember(zip, member, png.data())) {
        Complaints() << member << ": cannot be written\n";
        return false;
    }
    return true;
}

bool AddAll(zipFile zip, const std::vector<CDrawing>& drawings)
{
    bool good = true;
    for (int multiple = 1; multiple <= kHighestMultiple; ++multiple) {
        const QString density = multiple == 1 ? QString() : QStringLiteral("%1-").arg(kDensity * multiple);
        for (const CDrawing& drawing : drawings) {
            good &= AddPicture(zip, drawing, density + QStringLiteral("small"), multiple) &&
                    AddPicture(zip, drawing, density + QStringLiteral("large"), 2 * multiple);
        }
    }
    return good;
}
} // namespace

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv); // shapes alone: no fonts, no display
    const QStringList arguments = app.arguments();
    if (arguments.size() != 3) {
        Complaints() << "usage: icon_tool OUT.zip FOLDER\n";
        return 2;
    }
    const std::vector<CDrawing> drawings = FindDrawings(arguments[2]);
    if (drawings.empty()) {
        Complaints() << arguments[2] << ": no drawings\n";
        return 1;
    }
    zipFile zip = zipOpen(QFile::encodeName(arguments[1]).constData(), APPEND_STATUS_CREATE);
    const bool good = zip && AddAll(zip, drawings);
    if ((zip && zipClose(zip, nullptr) != ZIP_OK) || !good) {
        Complaints() << arguments[1] << ": not made\n";
        QFile::remove(arguments[1]);
        return 1;
    }
    return 0;
}
