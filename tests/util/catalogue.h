// Catalogues of a test's own texts.
#pragma once
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLibraryInfo>
#include <QProcess>
#include <map>

// The standard tools make it from the same source as the program's own.
inline bool MakeCatalogue(const QString& sourceFile, const QString& path, const std::map<int, QString>& texts)
{
    QString source = "<?xml version=\"1.0\"?><!DOCTYPE TS><TS version=\"2.1\"><context><name></name>";
    for (const auto& [number, text] : texts)
        source += QString("<message id=\"%1\"><source/><translation>%2</translation></message>")
                      .arg(number)
                      .arg(text.toHtmlEscaped());
    QFile file(sourceFile);
    QDir().mkpath(QFileInfo(path).path());
    if (!file.open(QIODevice::WriteOnly) || file.write((source + "</context></TS>").toUtf8()) < 0)
        return false;
    file.close();
    return QProcess::execute(QLibraryInfo::path(QLibraryInfo::BinariesPath) + "/lrelease",
                             {"-silent", "-idbased", file.fileName(), "-qm", path}) == 0;
}
