#include "interchange/text_lines.h"

#include "interchange/property_line.h"

#include <algorithm>

namespace
{
constexpr size_t kOctets = 75;
constexpr size_t kEncodedOctet = 3; // "=C3"
constexpr FileTime kUnixEpoch = 116444736000000000; // 1970 in file time

void FoldLine(const std::string& line, QByteArray& content)
{
    size_t room = kOctets;
    for (size_t from = 0; from < line.size() || from == 0;) {
        size_t to = std::min(from + room, line.size());
        while (to < line.size() && to > from + 1 && (uchar(line[to]) & 0xC0) == 0x80)
            --to;
        // At a line's end "=" would be read as the softer break of encoded texts.
        for (size_t n = 0; n < kEncodedOctet && to < line.size() && to > from + 1 && line[to - 1] == '='; ++n)
            --to;
        if (from > 0)
            content.append(' ');
        content.append(line.data() + from, qsizetype(to - from)).append("\r\n");
        room = kOctets - 1; // the blank counts
        from = to;
        if (line.empty())
            break;
    }
}
} // namespace

void FoldLines(const CTextLines& lines, QByteArray& content)
{
    for (const std::string& line : lines)
        FoldLine(line, content);
}

std::string EscapedText(const QString& text)
{
    const QByteArray bytes = text.toUtf8();
    std::string escaped;
    escaped.reserve(size_t(bytes.size()));
    for (const char c : bytes) {
        if (c == '\n') {
            escaped += "\\n";
            continue;
        }
        if (c == '\\' || c == ';' || c == ',')
            escaped.push_back('\\');
        if (c != '\r' && c != '\0')
            escaped.push_back(c);
    }
    return escaped;
}

std::string EscapedList(const QStringList& texts)
{
    std::string list;
    for (const QString& text : texts)
        list += (list.empty() ? "" : ",") + EscapedText(text);
    return list;
}

std::string ParameterText(const QString& text)
{
    std::string value;
    bool quoted = false;
    for (const char c : text.toUtf8()) {
        quoted = quoted || c == ',' || c == ';' || c == ':';
        if (c == '\\')
            value += "\\\\";
        else
            value.push_back(c == '"' ? '\'' : uchar(c) < 0x20 ? ' ' : c);
    }
    return quoted ? '"' + value + '"' : value;
}

std::string DateText(qint64 wall)
{
    int year = 0, month = 0, day = 0;
    CivilOfDayNumber(DayOfWall(wall), &year, &month, &day);
    return QString::asprintf("%04d%02d%02d", year, month, day).toStdString();
}

std::string MomentText(qint64 wall)
{
    const int second = SecondOfWall(wall);
    return DateText(wall) +
           QString::asprintf("T%02d%02d%02d", second / 3600, second / 60 % 60, second % 60).toStdString();
}

std::string UtcText(FileTime time)
{
    return MomentText(FloorDiv(time - kUnixEpoch, 10000000)) + 'Z';
}

CKeptLines::CKeptLines(const QString& text)
{
    constexpr std::string_view kId = "RECURRENCE-ID:", kHash = "X-TESSERA-HASH:";
    CTextLines* open = nullptr;
    bool inChange = false;
    int depth = 0;
    for (const QByteArray& bytes : text.toUtf8().split('\n')) {
        if (bytes.isEmpty())
            continue;
        const std::string line = bytes.toStdString();
        if (!inChange && depth == 0 && line == "BEGIN:X-TESSERA-OVERRIDE") {
            inChange = true;
            Changes.emplace_back();
        } else if (inChange && line == "END:X-TESSERA-OVERRIDE") {
            inChange = false;
        } else if (inChange && Changes.back().Name.empty() && line.starts_with(kId)) {
            Changes.back().Name = line.substr(kId.size());
        } else if (inChange && Changes.back().Lines.empty() && line.starts_with(kHash)) {
            continue;
        } else if (inChange) {
            Changes.back().Lines.push_back(line);
        } else {
            if (depth == 0 && line.starts_with("BEGIN:"))
                open = &Blocks.emplace_back();
            depth += line.starts_with("BEGIN:") ? 1 : line.starts_with("END:") && depth > 0 ? -1 : 0;
            (open ? *open : Lines).push_back(line);
            if (depth == 0)
                open = nullptr;
        }
    }
}

std::string NameOfLine(std::string_view line)
{
    return AsciiUpper(CPropertyLine(line).Name);
}

bool IsHole(std::string_view line)
{
    return CPropertyLine(line).Value.empty();
}

CComponent ComponentOf(const std::string& name, const CTextLines& lines)
{
    CComponent component;
    component.Name = name;
    component.FirstLine = 1;
    for (const std::string& line : lines)
        component.AddLine(line, 1);
    return component;
}
