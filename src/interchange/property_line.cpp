#include "interchange/property_line.h"

#include "interchange/component_reader.h"

namespace
{
// Position of the first such character outside quotes.
size_t FindUnquoted(std::string_view text, char wanted, size_t from)
{
    bool quoted = false;
    for (size_t i = from; i < text.size(); ++i) {
        if (text[i] == '"')
            quoted = !quoted;
        else if (text[i] == wanted && !quoted)
            return i;
    }
    return std::string_view::npos;
}

bool IsName(std::string_view name)
{
    if (name.empty())
        return false;
    for (const char c : name)
        if (!((c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') || c == '-' ||
              c == '_' || c == '.' || c == '/'))
            return false;
    return true;
}
} // namespace

std::string_view TrimBlanks(std::string_view text)
{
    const size_t first = text.find_first_not_of(" \t");
    if (first == std::string_view::npos)
        return {};
    return text.substr(first, text.find_last_not_of(" \t") - first + 1);
}

CPropertyLine::CPropertyLine(std::string_view line)
{
    const size_t nameEnd = line.find_first_of(":;");
    if (nameEnd == std::string_view::npos)
        return;
    Name = TrimBlanks(line.substr(0, nameEnd));
    size_t colon = nameEnd;
    if (line[nameEnd] == ';') {
        colon = FindUnquoted(line, ':', nameEnd + 1);
        if (colon == std::string_view::npos) // a quote that never closes
            colon = line.find(':', nameEnd + 1);
        if (colon == std::string_view::npos)
            return;
        Parameters = line.substr(nameEnd + 1, colon - nameEnd - 1);
    }
    Value = line.substr(colon + 1);
    IsValid = IsName(Name);
}

std::string_view CPropertyLine::Parameter(std::string_view upperName) const
{
    std::string_view rest = Parameters;
    while (!rest.empty()) {
        const size_t end = std::min(FindUnquoted(rest, ';', 0), rest.size());
        const std::string_view one = rest.substr(0, end);
        const size_t equals = one.find('=');
        if (equals != std::string_view::npos && EqualsUpper(TrimBlanks(one.substr(0, equals)), upperName)) {
            std::string_view value = TrimBlanks(one.substr(equals + 1));
            if (value.size() >= 2 && value.front() == '"' && value.back() == '"')
                value = value.substr(1, value.size() - 2);
            return value;
        }
        rest.remove_prefix(std::min(end + 1, rest.size()));
    }
    return {};
}

QString TextOf(std::string_view value)
{
    if (value.find('\\') == std::string_view::npos)
        return QString::fromUtf8(value.data(), qsizetype(value.size()));
    std::string plain;
    plain.reserve(value.size());
    for (size_t i = 0; i < value.size(); ++i) {
        if (value[i] != '\\' || i + 1 == value.size()) {
            plain.push_back(value[i]);
            continue;
        }
        const char next = value[++i];
        plain.push_back(next == 'n' || next == 'N' ? '\n' : next);
    }
    return QString::fromUtf8(plain.data(), qsizetype(plain.size()));
}

QStringList TextListOf(std::string_view value, int limit)
{
    QStringList texts;
    size_t from = 0;
    for (size_t i = 0; i <= value.size() && texts.size() < limit; ++i) {
        if (i < value.size() && value[i] == '\\') {
            ++i;
            continue;
        }
        if (i < value.size() && value[i] != ',')
            continue;
        const QString text = TextOf(value.substr(from, i - from)).trimmed();
        if (!text.isEmpty())
            texts.append(text);
        from = i + 1;
    }
    return texts;
}

QString Tidy(QString text, int limit, bool oneLine)
{
    bool plain = text.size() <= limit;
    for (qsizetype i = 0; plain && i < text.size(); ++i)
        plain = text.at(i).unicode() >= 0x20;
    if (plain)
        return text;
    text.remove(QLatin1Char('\r'));
    for (QChar& c : text)
        if (c.unicode() < 0x20 && c != QLatin1Char('\t') && (oneLine || c != QLatin1Char('\n')))
            c = QLatin1Char(' ');
    if (text.size() > limit)
        text.truncate(limit - (text.at(limit - 1).isHighSurrogate() ? 1 : 0));
    return text;
}
