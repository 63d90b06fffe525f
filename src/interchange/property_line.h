// One unfolded content line in its parts, and the escapes of its text.
// The parts are views into the line: they live as long as it does.
#pragma once
#include <QString>
#include <QStringList>
#include <string>
#include <string_view>

struct CPropertyLine {
    std::string_view Name, Parameters, Value; // parameters without the first semicolon
    bool IsValid = false;

    explicit CPropertyLine(std::string_view line);
    // The value of a parameter without its quotes; empty when there is none.
    std::string_view Parameter(std::string_view upperName) const;
};

// Text with its escapes resolved.
QString TextOf(std::string_view value);
// A list of texts, parted by commas that are not escaped.
QStringList TextListOf(std::string_view value, int limit);
// Text with carriage returns and other control characters taken out, and cut to a length.
QString Tidy(QString text, int limit, bool oneLine);
std::string_view TrimBlanks(std::string_view text);
