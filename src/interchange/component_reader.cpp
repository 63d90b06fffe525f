#include "interchange/component_reader.h"

#include "interchange/import_limits.h"

#include <algorithm>

namespace
{
constexpr size_t kNameLength = 40; // component names are words; a longer one is none of ours

char Upper(char c)
{
    return c >= 'a' && c <= 'z' ? char(c - 32) : c;
}

std::string_view Trimmed(std::string_view text)
{
    const size_t first = text.find_first_not_of(" \t");
    if (first == std::string_view::npos)
        return {};
    return text.substr(first, text.find_last_not_of(" \t") - first + 1);
}

// The component's name of a BEGIN or END line, else empty.
std::string MarkedName(std::string_view text, std::string_view mark)
{
    if (text.size() <= mark.size() || !EqualsUpper(text.substr(0, mark.size()), mark))
        return {};
    text.remove_prefix(mark.size());
    if (text.front() == ';')
        text.remove_prefix(std::min(text.find(':'), text.size()));
    if (text.empty() || text.front() != ':')
        return {};
    const std::string_view name = Trimmed(text.substr(1));
    return name.size() > kNameLength ? std::string("?") : AsciiUpper(name);
}

bool MayBeLong(std::string_view name)
{
    name = name.substr(name.rfind('.') + 1); // a card's properties may stand in groups
    return name.starts_with("X-") || name.starts_with("x-") || EqualsUpper(name, "ATTACH") ||
           EqualsUpper(name, "PHOTO") || EqualsUpper(name, "IMAGE") || EqualsUpper(name, "LOGO") ||
           EqualsUpper(name, "SOUND") || EqualsUpper(name, "KEY");
}
bool IsDateList(std::string_view name)
{
    return EqualsUpper(name, "EXDATE") || EqualsUpper(name, "RDATE");
}

// A cut must not split a character.
size_t CutAt(std::string_view text, size_t size)
{
    if (text.size() <= size)
        return text.size();
    while (size > 0 && (text[size] & 0xC0) == 0x80)
        --size;
    return size;
}
} // namespace

std::string AsciiUpper(std::string_view text)
{
    std::string upper(text);
    std::transform(upper.begin(), upper.end(), upper.begin(), Upper);
    return upper;
}

bool EqualsUpper(std::string_view text, std::string_view upper)
{
    return text.size() == upper.size() &&
           std::equal(text.begin(), text.end(), upper.begin(), [](char a, char b) { return Upper(a) == b; });
}

void CComponent::Clear()
{
    Name.clear();
    Text.clear();
    Lines.clear();
    FirstLine = 0;
    if (Text.capacity() > ImportLimit::ComponentBytes)
        Text.shrink_to_fit();
}

void CComponent::AddLine(std::string_view text, int number)
{
    Lines.push_back({quint32(Text.size()), quint32(text.size()), number});
    Text.append(text);
    Text.push_back('\n');
}

CComponentReader::CComponentReader(CLineReader::ReadBytes read, CImportReport& report)
    : m_lines(std::move(read)), m_report(report), m_skipped{{"VJOURNAL", "journal entries"},
                                                            {"VFREEBUSY", "free and busy times"},
                                                            {"VALARM", "alarms outside an item"},
                                                            {"", "unknown components"}}
{
}

bool CComponentReader::Next(CComponent& component)
{
    component.Clear();
    while (m_lines.Next(m_line)) {
        const char first = Upper(m_line.Text.front());
        if (first == 'B' || first == 'E') {
            const std::string begun = MarkedName(m_line.Text, "BEGIN");
            if (!begun.empty()) {
                Begin(begun);
                continue;
            }
            const std::string ended = MarkedName(m_line.Text, "END");
            if (!ended.empty()) {
                if (End(ended, component))
                    return true;
                continue;
            }
        }
        if (m_stack.empty())
            ReadCalendarProperty(m_line.Text);
        else if (m_wanted && m_tooDeep == 0)
            Store(m_line.Text);
    }
    DropOpen();
    if (m_inCalendar)
        m_report.Note(m_line.Number, QStringLiteral("the file ends before its calendar does"));
    m_inCalendar = false;
    TellSkipped();
    return false;
}

bool CComponentReader::Begin(const std::string& name)
{
    if (name == "VCALENDAR") {
        DropOpen();
        m_sawCalendar = m_inCalendar = true;
        m_method.clear();
        return true;
    }
    const bool topLevel = name == "VEVENT" || name == "VTODO" || name == "VTIMEZONE" || name == "VJOURNAL";
    // None of these stands inside another: the one before was never closed.
    if ((topLevel || (name == "VCARD" && !ExpectsCard())) && !m_stack.empty())
        DropOpen();
    if (m_stack.empty()) {
        StartComponent(name);
        return true;
    }
    if (int(m_stack.size()) >= ImportLimit::Depth) {
        if (!m_toldDepth && m_wanted)
            m_report.LeftOut(m_line.Number, QStringLiteral("components nested too deeply"));
        m_toldDepth = true;
        ++m_tooDeep;
        return true;
    }
    m_stack.push_back(name);
    if (m_wanted)
        StoreNested("BEGIN:" + name);
    return true;
}

void CComponentReader::StartComponent(const std::string& name)
{
    m_stack.push_back(name);
    m_sawCalendar = m_sawCalendar || name == "VEVENT" || name == "VTODO" || name == "VCARD";
    m_wanted = name == "VEVENT" || name == "VTODO" || name == "VCARD" || name == "VTIMEZONE";
    m_tooDeep = 0;
    m_toldDepth = m_toldLong = false;
    m_ordinaryBytes = m_longBytes = m_dateBytes = 0;
    m_open.Clear();
    m_open.Name = name;
    m_open.FirstLine = m_line.Number;
    if (m_wanted)
        return;
    auto entry =
        std::find_if(m_skipped.begin(), m_skipped.end(), [&](const Skipped& s) { return name == s.Name; });
    if (entry == m_skipped.end())
        entry = std::prev(m_skipped.end());
    if (entry->Count++ == 0)
        entry->FirstLine = m_line.Number;
}

// An agent's card stands within the card.
bool CComponentReader::ExpectsCard() const
{
    return m_open.Name == "VCARD" && !m_open.Lines.empty() &&
           EqualsUpper(m_open.LineText(m_open.Lines.back()).substr(0, 6), "AGENT:");
}

bool CComponentReader::End(const std::string& name, CComponent& component)
{
    if (name == "VCALENDAR") {
        DropOpen();
        m_inCalendar = false;
        return false;
    }
    if (m_tooDeep > 0 && !m_stack.empty() && name != m_stack.front()) {
        --m_tooDeep;
        return false;
    }
    const auto at = std::find(m_stack.rbegin(), m_stack.rend(), name);
    if (at == m_stack.rend()) {
        if (!m_toldEnd) // thousands may follow
            m_report.Note(m_line.Number,
                          QStringLiteral("END:%1 without its BEGIN").arg(QString::fromStdString(name)));
        m_toldEnd = true;
        return false;
    }
    // What was open inside ends with it.
    for (auto inner = m_stack.rbegin(); inner != at; ++inner)
        if (m_wanted)
            StoreNested("END:" + *inner);
    m_stack.erase(at.base() - 1, m_stack.end());
    m_tooDeep = 0;
    if (!m_stack.empty()) {
        if (m_wanted)
            StoreNested("END:" + name);
        return false;
    }
    if (!m_wanted)
        return false;
    m_wanted = false;
    std::swap(component, m_open);
    return true;
}

// Whatever is open was never closed.
void CComponentReader::DropOpen()
{
    if (!m_stack.empty() && m_wanted)
        m_report.LeftOut(m_open.FirstLine,
                         QStringLiteral("%1 is never closed").arg(QString::fromStdString(m_open.Name)));
    m_stack.clear();
    m_open.Clear();
    m_wanted = false;
    m_tooDeep = 0;
}

void CComponentReader::StoreNested(std::string_view text)
{
    m_ordinaryBytes += text.size();
    if (m_ordinaryBytes <= ImportLimit::ComponentBytes || text.starts_with("END:"))
        m_open.AddLine(text, m_line.Number);
}

void CComponentReader::Store(std::string_view text)
{
    if (text.empty())
        return; // nothing but what cannot be text stood there
    if (m_open.Name == "VCARD" && text.find(':') == std::string_view::npos && ContinueEncoded(text))
        return;
    const size_t nameEnd = std::min(text.find_first_of(":;"), text.size());
    const std::string_view name = text.substr(0, nameEnd);
    if (IsDateList(name)) {
        MergeDateList(text, text.find(':'));
        return;
    }
    const bool isLong = text.size() > ImportLimit::LongLine && MayBeLong(name);
    size_t& used = isLong ? m_longBytes : m_ordinaryBytes;
    const size_t limit = isLong ? ImportLimit::LongBytes : ImportLimit::ComponentBytes;
    const bool cut = !isLong && (text.size() > ImportLimit::OrdinaryLine || m_line.Cut);
    if (cut) {
        m_report.LeftOut(m_line.Number, QStringLiteral("the rest of an overlong line"));
        text = text.substr(0, CutAt(text, ImportLimit::OrdinaryLine));
    }
    if (used + text.size() > limit || (isLong && m_line.Cut)) {
        if (!m_toldLong)
            m_report.LeftOut(m_line.Number, QStringLiteral("a line, the item is too large"));
        m_toldLong = true;
        return;
    }
    used += text.size();
    m_open.AddLine(text, m_line.Number);
}

// Old cards do not always indent the lines of an encoded picture.
bool CComponentReader::ContinueEncoded(std::string_view text)
{
    if (m_open.Lines.empty() || m_longBytes + text.size() > ImportLimit::LongBytes)
        return false;
    CComponent::Line& last = m_open.Lines.back();
    const std::string_view before = m_open.LineText(last);
    if (AsciiUpper(before.substr(0, std::min<size_t>(before.find(':'), 200))).find("BASE64") ==
        std::string::npos)
        return false;
    m_longBytes += text.size();
    m_open.Text.back() = text.front();
    m_open.Text.append(text.substr(1));
    m_open.Text.push_back('\n');
    last.Length = quint32(m_open.Text.size() - 1 - last.Offset);
    return true;
}

// Neighbouring lists of the same form become one, so that a million lines cost no more than one.
void CComponentReader::MergeDateList(std::string_view text, size_t header)
{
    if (header == std::string_view::npos)
        return;
    const bool tooMany = m_dateBytes + text.size() > ImportLimit::DateListBytes;
    if ((tooMany || m_line.Cut) && !m_toldLong) {
        m_report.LeftOut(m_line.Number, QStringLiteral("dates, the list is too long"));
        m_toldLong = true;
    }
    if (tooMany)
        return;
    if (m_line.Cut)
        text = text.substr(0, text.rfind(','));
    m_dateBytes += text.size();
    if (!m_open.Lines.empty() && text.substr(0, header).find('"') == std::string_view::npos) {
        CComponent::Line& last = m_open.Lines.back();
        if (m_open.LineText(last).substr(0, header + 1) == text.substr(0, header + 1)) {
            m_open.Text.back() = ',';
            m_open.Text.append(text.substr(header + 1));
            m_open.Text.push_back('\n');
            last.Length = quint32(m_open.Text.size() - 1 - last.Offset);
            return;
        }
    }
    m_open.AddLine(text, m_line.Number);
}

void CComponentReader::ReadCalendarProperty(std::string_view text)
{
    if (text.size() > 7 && text.size() < 64 && EqualsUpper(text.substr(0, 7), "METHOD:"))
        m_method = AsciiUpper(Trimmed(text.substr(7)));
}

void CComponentReader::TellSkipped()
{
    for (Skipped& skipped : m_skipped) {
        if (skipped.Count > 0)
            m_report.LeftOut(skipped.FirstLine,
                             QStringLiteral("%1 are not taken in: %2, the first one here")
                                 .arg(QLatin1String(skipped.Told))
                                 .arg(skipped.Count),
                             skipped.Count);
        skipped.Count = 0;
    }
}
