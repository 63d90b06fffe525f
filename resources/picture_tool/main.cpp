// Renders the pictures of the program from their SVG sources, at build time:
//   picture_tool OUT-FOLDER LIBRARY MULTIPLE[,MULTIPLE...] NNN-name.svg...
// Each picture NNN becomes OUT-FOLDER/<96 * MULTIPLE>/NNN.png, and OUT-FOLDER/LIBRARY.qrc lists
// them all for the resource compiler. An SVG's width and height are its size in design pixels.
// Ends with 1 and one line per fault when a file cannot be used.
#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QImage>
#include <QSaveFile>
#include <QTextStream>
#include <algorithm>
#include <map>
#include <vector>

#include "render.h"

namespace
{
struct CJob {
    QString folder;
    QString library;
    std::vector<int> multiples;
    std::map<int, QString> sources; // by number
};

QTextStream& Complaints()
{
    static QTextStream stream(stderr);
    return stream;
}

bool ReadMultiples(const QString& text, std::vector<int>& multiples)
{
    for (const QString& part : text.split(QLatin1Char(','))) {
        bool isNumber = false;
        const int multiple = part.toInt(&isNumber);
        if (!isNumber || multiple < 1 || multiple > 4)
            return false;
        multiples.push_back(multiple);
    }
    return true;
}

bool AddSource(const QString& path, std::map<int, QString>& sources)
{
    const QString name = QFileInfo(path).fileName();
    bool isNumber = false;
    const int number = name.section(QLatin1Char('-'), 0, 0).toInt(&isNumber);
    if (!isNumber || number < 1) {
        Complaints() << path << ": the name does not begin with a number and a hyphen\n";
        return false;
    }
    if (!sources.emplace(number, path).second) {
        Complaints() << path << ": number " << number << " is also that of " << sources[number] << "\n";
        return false;
    }
    return true;
}

bool Render(const QString& source, int multiple, const QString& target)
{
    const QImage image = RenderSvg(source, multiple);
    if (image.isNull()) {
        Complaints() << source << ": not a usable SVG picture\n";
        return false;
    }
    if (!image.save(target, "PNG")) {
        Complaints() << target << ": cannot be written\n";
        return false;
    }
    return true;
}

bool WriteList(const CJob& job)
{
    QSaveFile file(job.folder + QLatin1Char('/') + job.library + QStringLiteral(".qrc"));
    if (!file.open(QIODevice::WriteOnly))
        return false;
    QTextStream out(&file);
    out << "<RCC><qresource>\n";
    for (const int multiple : job.multiples) {
        for (const auto& [number, source] : job.sources)
            out << "<file>" << 96 * multiple << "/" << number << ".png</file>\n";
    }
    out << "</qresource></RCC>\n";
    out.flush();
    return file.commit();
}

bool Run(const CJob& job)
{
    bool good = true;
    for (const int multiple : job.multiples) {
        const QString folder = job.folder + QLatin1Char('/') + QString::number(96 * multiple);
        if (!QDir().mkpath(folder)) {
            Complaints() << folder << ": cannot be made\n";
            return false;
        }
        for (const auto& [number, source] : job.sources)
            good &= Render(source, multiple, QStringLiteral("%1/%2.png").arg(folder).arg(number));
    }
    if (good && !WriteList(job)) {
        Complaints() << job.folder << ": the list cannot be written\n";
        return false;
    }
    return good;
}
} // namespace

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv); // shapes alone: no fonts, no display
    const QStringList arguments = app.arguments();
    CJob job;
    bool good = arguments.size() > 4 && ReadMultiples(arguments[3], job.multiples);
    if (!good) {
        Complaints() << "usage: picture_tool OUT-FOLDER LIBRARY MULTIPLE[,MULTIPLE...] NNN-name.svg...\n";
        return 2;
    }
    job.folder = arguments[1];
    job.library = arguments[2];
    for (qsizetype i = 4; i < arguments.size(); ++i)
        good &= AddSource(arguments[i], job.sources);
    return good && Run(job) ? 0 : 1;
}
