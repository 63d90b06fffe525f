// The program's arguments: options, and one request.
#pragma once
#include <QSize>
#include <QString>
#include <QStringList>

struct COptions {
    enum class Action { Run, Snapshot, Help, Version, Fault };
    Action What = Action::Run;
    QString Fault;    // a line for the user
    QString Volume;   // empty: the default one
    int Density = -1; // -1: what the window says
    QString SnapshotFile;
    QSize Size = kDefaultSize; // of a snapshot, in its own pixels
    QString Now;               // of a snapshot; empty: the clock
    QString Search;            // of a snapshot: the words that are searched
    QString Request;           // null without one

    static constexpr QSize kDefaultSize{480, 640};
};

COptions ParseOptions(const QStringList& arguments); // without the program's name
QString UsageText();
// Local time by the zone in force, or UTC with a "Z" at its end; false when it is no moment.
bool ParseMoment(const QString& text, qint64* utcFileTime);
