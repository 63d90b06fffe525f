// Turns a table of texts (number, text, note) into what the build needs of it.
//   make_strings table  FILE.tsv OUT.inc        lines for an array in the program
//   make_strings source FILE.tsv LANGUAGE OUT.ts  source of a catalogue, numbers as identifiers
// Ends with 1 and a message when a line is malformed or the numbers do not rise.
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <string>
#include <vector>

namespace
{
struct Entry {
    int Number;
    std::string Text; // UTF-8
    std::string Note;
};

[[noreturn]] void Fail(const std::string& text)
{
    std::cerr << "make_strings: " << text << '\n';
    std::exit(1);
}

std::string Unescaped(const std::string& text, const std::string& where)
{
    std::string result;
    for (size_t i = 0; i < text.size(); ++i) {
        if (text[i] != '\\') {
            result += text[i];
            continue;
        }
        const char next = ++i < text.size() ? text[i] : '\0';
        if (next != 'n' && next != 't' && next != '\\')
            Fail(where + ": unknown escape");
        result += next == 'n' ? '\n' : next == 't' ? '\t' : '\\';
    }
    return result;
}

std::vector<Entry> ReadTable(const std::string& path)
{
    std::ifstream file(path, std::ios::binary);
    if (!file)
        Fail("cannot read " + path);
    std::vector<Entry> entries;
    std::string line;
    for (int number = 1; std::getline(file, line); ++number) {
        if (line.empty() || line[0] == '#')
            continue;
        const std::string where = path + ':' + std::to_string(number);
        const size_t first = line.find('\t');
        const size_t second = first == std::string::npos ? first : line.find('\t', first + 1);
        if (second == std::string::npos || line.find('\t', second + 1) != std::string::npos)
            Fail(where + ": want number, text and note, a tab between each");
        const std::string text = Unescaped(line.substr(first + 1, second - first - 1), where);
        const int id = std::atoi(line.c_str());
        if (id <= (entries.empty() ? 0 : entries.back().Number) || text.empty())
            Fail(where + ": numbers must rise and texts must not be empty");
        entries.push_back({id, text, line.substr(second + 1)});
    }
    return entries;
}

std::string Quoted(const std::string& text)
{
    std::string result;
    for (const char c : text) {
        if (c == '"' || c == '\\')
            result += '\\';
        result += c == '\n' ? std::string("\\n") : c == '\t' ? std::string("\\t") : std::string(1, c);
    }
    return result;
}

std::string Markup(const std::string& text)
{
    std::string result;
    for (const char c : text)
        result += c == '&'   ? "&amp;"
                  : c == '<' ? "&lt;"
                  : c == '>' ? "&gt;"
                  : c == '"' ? "&quot;"
                             : std::string(1, c);
    return result;
}

void WriteTable(const std::vector<Entry>& entries, std::ostream& out)
{
    for (const Entry& entry : entries)
        out << '{' << entry.Number << ", u\"" << Quoted(entry.Text) << "\"},\n";
}

void WriteSource(const std::vector<Entry>& entries, const std::string& language, std::ostream& out)
{
    out << "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n<!DOCTYPE TS>\n<TS version=\"2.1\" language=\""
        << language << "\" sourcelanguage=\"en\">\n<context>\n    <name></name>\n";
    for (const Entry& entry : entries) {
        out << "    <message id=\"" << entry.Number << "\">\n        <source>" << Markup(entry.Text)
            << "</source>\n";
        if (entry.Note != "-")
            out << "        <extracomment>" << Markup(entry.Note) << "</extracomment>\n";
        out << "        <translation>" << Markup(entry.Text) << "</translation>\n    </message>\n";
    }
    out << "</context>\n</TS>\n";
}
} // namespace

int main(int argc, char** argv)
{
    const std::string what = argc > 1 ? argv[1] : "";
    if (!(what == "table" && argc == 4) && !(what == "source" && argc == 5))
        Fail("want table FILE.tsv OUT.inc, or source FILE.tsv LANGUAGE OUT.ts");
    const std::vector<Entry> entries = ReadTable(argv[2]);
    std::ofstream out(argv[argc - 1], std::ios::binary);
    if (what == "table")
        WriteTable(entries, out);
    else
        WriteSource(entries, argv[3], out);
    if (!out.flush())
        Fail(std::string("cannot write ") + argv[argc - 1]);
    return 0;
}
