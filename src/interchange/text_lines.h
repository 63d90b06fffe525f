// Content lines on their way out: escapes, folding, and what an item has kept of its file.
// Lines stand unfolded, without line ends, until FoldLines turns them into a file's bytes.
#pragma once
#include "interchange/component_reader.h"
#include "interchange/file_moment.h"
#include "platform/system_time.h"

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <string>
#include <string_view>
#include <vector>

using CTextLines = std::vector<std::string>;

// At most 75 octets to a line, no character split.
void FoldLines(const CTextLines& lines, QByteArray& content);

std::string EscapedText(const QString& text);
std::string EscapedList(const QStringList& texts);
// A parameter's value: quoted where it must be, without what cannot stand in one.
std::string ParameterText(const QString& text);

std::string DateText(qint64 wall);   // 20260310
std::string MomentText(qint64 wall); // 20260310T090000
std::string UtcText(FileTime time);  // of a moment, with its Z

// Kept lines, and the components among them.
struct CKeptLines {
    CTextLines Lines;
    std::vector<CTextLines> Blocks; // from BEGIN to END, each
    struct CChange {
        std::string Name; // the occurrence's
        CTextLines Lines; // of the occurrence as it came; none when they were too long to keep
    };
    std::vector<CChange> Changes;

    explicit CKeptLines(const QString& text);
};

// The name of a line's property, upper case, and whether it stands there for its parameters alone.
std::string NameOfLine(std::string_view line);
bool IsHole(std::string_view line);
CComponent ComponentOf(const std::string& name, const CTextLines& lines);
