#include "interchange/contact_reader.h"

#include "interchange/content_hash.h"
#include "interchange/file_moment.h"
#include "interchange/import_limits.h"
#include "records/property_numbers.h"

#include <QStringDecoder>
#include <algorithm>

namespace
{
constexpr FileTime kUnixEpoch = 116444736000000000; // 1970 in file time

std::string_view WithoutGroup(std::string_view name)
{
    return name.substr(name.rfind('.') + 1); // npos + 1 is 0
}

std::string GroupOf(std::string_view name)
{
    const size_t dot = name.rfind('.');
    return dot == std::string_view::npos ? std::string() : AsciiUpper(name.substr(0, dot));
}

// All words of a line's type: TYPE=A,B and the bare ones of version 2.1, upper case. Sets `more`
// when there are other parameters.
std::vector<std::string> TypeWords(std::string_view parameters, bool* more)
{
    std::vector<std::string> words;
    for (size_t from = 0; from < parameters.size();) {
        const size_t end = std::min(parameters.find(';', from), parameters.size());
        std::string_view one = TrimBlanks(parameters.substr(from, end - from));
        from = end + 1;
        const size_t equals = one.find('=');
        if (equals != std::string_view::npos) {
            if (!EqualsUpper(TrimBlanks(one.substr(0, equals)), "TYPE")) {
                *more = true;
                continue;
            }
            one.remove_prefix(equals + 1);
        }
        for (size_t start = 0; start <= one.size();) {
            const size_t comma = std::min(one.find(',', start), one.size());
            std::string word = AsciiUpper(TrimBlanks(one.substr(start, comma - start)));
            std::erase(word, '"');
            if (!word.empty())
                words.push_back(std::move(word));
            start = comma + 1;
        }
    }
    return words;
}

bool IsQuotedPrintable(const CPropertyLine& line)
{
    return EqualsUpper(line.Parameter("ENCODING"), "QUOTED-PRINTABLE") ||
           AsciiUpper(line.Parameters).find("QUOTED-PRINTABLE") != std::string::npos;
}

int HexDigit(char c)
{
    return c >= '0' && c <= '9'   ? c - '0'
           : c >= 'A' && c <= 'F' ? c - 'A' + 10
           : c >= 'a' && c <= 'f' ? c - 'a' + 10
                                  : -1;
}

QByteArray DecodeQuotedPrintable(std::string_view text)
{
    QByteArray bytes;
    for (size_t i = 0; i < text.size(); ++i) {
        const int high = text[i] == '=' && i + 2 < text.size() ? HexDigit(text[i + 1]) : -1;
        const int low = high >= 0 ? HexDigit(text[i + 2]) : -1;
        if (low < 0) {
            bytes.append(text[i]); // a lone sign stands for itself
            continue;
        }
        bytes.append(char(high * 16 + low));
        i += 2;
    }
    return bytes;
}

// By the name of the character set, else as UTF-8, and what is none as Latin-1.
QString DecodeText(const QByteArray& bytes, std::string_view charset)
{
    if (!charset.empty()) {
        QStringDecoder named(std::string(charset).c_str());
        if (named.isValid()) {
            const QString text = named(bytes);
            if (!named.hasError())
                return text;
        }
    }
    QStringDecoder utf8(QStringConverter::Utf8, QStringConverter::Flag::Stateless);
    const QString text = utf8(bytes);
    return utf8.hasError() ? QString::fromLatin1(bytes) : text;
}

// Version 2.1 escapes no line ends: its backslash is one, save before what parts values.
QString OldTextOf(const QString& text)
{
    QString plain;
    for (qsizetype i = 0; i < text.size(); ++i) {
        const bool escapes =
            text[i] == u'\\' && i + 1 < text.size() && QStringView(u"\\;,:").contains(text[i + 1]);
        plain += text[escapes ? ++i : i];
    }
    return plain;
}

FileTime UtcFileTime(std::string_view value)
{
    std::string plain(value);
    std::erase_if(plain, [](char c) { return c == '-' || c == ':'; });
    CFileMoment moment;
    return ParseMoment(plain, &moment) ? moment.Wall * 10000000 + kUnixEpoch : 0;
}

bool IsDigit(char c)
{
    return c >= '0' && c <= '9';
}

// That many digits from the front; below 0 when there are fewer.
int TakeNumber(std::string_view& text, size_t digits)
{
    int number = 0;
    for (size_t i = 0; i < digits; ++i) {
        if (i >= text.size() || !IsDigit(text[i]))
            return -1;
        number = number * 10 + (text[i] - '0');
    }
    text.remove_prefix(digits);
    return number;
}

void SkipDash(std::string_view& text)
{
    if (!text.empty() && text.front() == '-')
        text.remove_prefix(1);
}

struct CPhonePlace {
    OlPhone Phone;
    const char *Word, *Second; // the second word is null when there is none
};
// In order of choice: a number goes to the first free place all of whose words it has.
constexpr CPhonePlace kPhonePlaces[] = {
    {OlPhone::Pager, "PAGER", nullptr}, {OlPhone::Car, "CAR", nullptr},
    {OlPhone::HomeFax, "HOME", "FAX"},  {OlPhone::WorkFax, "FAX", "WORK"},
    {OlPhone::WorkFax, "FAX", nullptr}, {OlPhone::Mobile, "CELL", nullptr},
    {OlPhone::Work, "WORK", nullptr},   {OlPhone::Work2, "WORK", nullptr},
    {OlPhone::Home, "HOME", nullptr},   {OlPhone::Home2, "HOME", nullptr},
    {OlPhone::Home, nullptr, nullptr},  {OlPhone::Home2, nullptr, nullptr},
};
} // namespace

CardDate ParseCardDate(std::string_view text, std::string_view omittedYear, DATE* date)
{
    text = TrimBlanks(text);
    int year = kContactYearUnknown;
    if (text.starts_with("--")) {
        text.remove_prefix(2);
    } else {
        const std::string_view yearText = text.substr(0, 4);
        year = TakeNumber(text, 4);
        if (year < 0)
            return CardDate::NoDay;
        if (year == 0 || yearText == omittedYear)
            year = kContactYearUnknown;
        SkipDash(text);
    }
    const int month = TakeNumber(text, 2);
    SkipDash(text);
    const int day = TakeNumber(text, 2);
    if (month < 0 || day < 0 || (!text.empty() && text.front() != 'T' && text.front() != ' '))
        return CardDate::NoDay;
    if (year < ImportLimit::FirstYear + 1 || year > ImportLimit::LastYear || month < 1 || month > 12 ||
        day < 1)
        return CardDate::Impossible;
    const int number = DayNumberOf(year, month, day);
    int realYear = 0, realMonth = 0, realDay = 0;
    CivilOfDayNumber(number, &realYear, &realMonth, &realDay);
    if (realMonth != month || realDay != day)
        return CardDate::Impossible;
    *date = number;
    return CardDate::Good;
}

void CContactReader::Read(const CComponent& component, CImportedContact* contact)
{
    m_component = &component;
    m_contact = contact;
    *contact = CImportedContact();
    contact->Line = component.FirstLine;
    m_hasName = m_hasParts = m_hasCompany = m_hasNote = false;
    m_nickname.clear();
    m_kept.clear();
    FindVersionAndLabels();
    CContentHash hash, second(1);
    bool junk = false;
    int nested = 0;
    for (const CComponent::Line& at : component.Lines) {
        const std::string_view text = component.LineText(at);
        const CPropertyLine line(text);
        const std::string_view name = WithoutGroup(line.Name);
        if (!line.IsValid) {
            if (!junk)
                m_report.LeftOut(at.Number, QStringLiteral("a line that is no property"));
            junk = true;
            continue;
        }
        if (EqualsUpper(name, "REV")) { // the time of the export as often as not
            contact->LastChange = UtcFileTime(TrimBlanks(line.Value));
            continue;
        }
        if (EqualsUpper(name, "PRODID"))
            continue;
        hash.Add(text);
        second.Add(text);
        nested += EqualsUpper(name, "BEGIN") ? 1 : 0;
        if (nested > 0) // a card within the card
            Keep(text);
        else
            ReadLine(line, name, at);
        nested -= nested > 0 && EqualsUpper(name, "END") ? 1 : 0;
    }
    FinishName();
    contact->Hash = hash.Value();
    if (contact->Uid.isEmpty())
        contact->Uid =
            QString::asprintf("%016llx%016llx@content", static_cast<unsigned long long>(contact->Hash),
                              static_cast<unsigned long long>(second.Value()));
    contact->Kept = QString::fromUtf8(m_kept.data(), qsizetype(m_kept.size()));
}

// What the meaning of other lines hangs on, wherever in the card it stands.
void CContactReader::FindVersionAndLabels()
{
    m_isOld = false;
    m_anniversaryGroups.clear();
    for (const CComponent::Line& at : m_component->Lines) {
        const std::string_view text = m_component->LineText(at);
        if (text.size() > ImportLimit::LongLine)
            continue;
        const CPropertyLine line(text);
        const std::string_view name = WithoutGroup(line.Name);
        if (EqualsUpper(name, "VERSION"))
            m_isOld = TrimBlanks(line.Value).starts_with("2.");
        else if (EqualsUpper(name, "X-ABLABEL") &&
                 AsciiUpper(line.Value).find("ANNIVERSARY") != std::string::npos)
            m_anniversaryGroups.push_back(GroupOf(line.Name));
    }
}

void CContactReader::ReadLine(const CPropertyLine& line, std::string_view name, const CComponent::Line& at)
{
    if (EqualsUpper(name, "VERSION")) {
        if (TrimBlanks(line.Value) != "3.0") // kept lines are written in the way of their version
            Keep(m_component->LineText(at));
        return;
    }
    if (!ReadNames(line, name, at) && !ReadReachable(line, name, at) && !ReadDates(line, name, at) &&
        !ReadRest(line, name, at))
        Keep(m_component->LineText(at));
}

void CContactReader::Keep(std::string_view text)
{
    m_kept.append(text);
    m_kept.push_back('\n');
}

// A value that the record holds is not kept a second time, nor how it was encoded.
void CContactReader::KeepParameters(const CPropertyLine& line, bool always)
{
    std::string further;
    for (size_t from = 0; from < line.Parameters.size();) {
        const size_t end = std::min(line.Parameters.find(';', from), line.Parameters.size());
        const std::string_view one = line.Parameters.substr(from, end - from);
        from = end + 1;
        const std::string name = AsciiUpper(TrimBlanks(one.substr(0, one.find('='))));
        if (name != "ENCODING" && name != "CHARSET" && name != "QUOTED-PRINTABLE")
            further.append(";").append(one);
    }
    if (!always && further.empty() && WithoutGroup(line.Name).size() == line.Name.size())
        return;
    m_kept.append(line.Name).append(further).append(":\n");
}

QString CContactReader::Value(const CPropertyLine& line, std::string_view value, int limit,
                              bool oneLine) const
{
    const bool quoted = IsQuotedPrintable(line);
    QString text = quoted ? DecodeText(DecodeQuotedPrintable(value), line.Parameter("CHARSET"))
                          : QString::fromUtf8(value.data(), qsizetype(value.size()));
    if (m_isOld || quoted)
        text = OldTextOf(text);
    else
        text = TextOf(value);
    return Tidy(std::move(text), limit, oneLine).trimmed();
}

QStringList CContactReader::Values(const CPropertyLine& line, int limit) const
{
    QStringList values;
    size_t from = 0;
    for (size_t i = 0; i <= line.Value.size() && values.size() < limit; ++i) {
        if (i < line.Value.size() && line.Value[i] == '\\') {
            ++i;
            continue;
        }
        if (i < line.Value.size() && line.Value[i] != ';')
            continue;
        values.append(Value(line, line.Value.substr(from, i - from), ImportLimit::TextChars / 16, true));
        from = i + 1;
    }
    return values;
}

// ---- names

bool CContactReader::ReadNames(const CPropertyLine& line, std::string_view name, const CComponent::Line& at)
{
    Q_UNUSED(at);
    const auto isFirst = [](bool& had) { return !std::exchange(had, true); };
    if (EqualsUpper(name, "FN") && isFirst(m_hasName)) {
        m_contact->Name = Value(line, line.Value, ImportLimit::TextChars / 16, true);
        KeepParameters(line, false);
        return true;
    }
    if (EqualsUpper(name, "N") && isFirst(m_hasParts)) {
        const QStringList parts = Values(line, 5);
        m_contact->Parts = {parts.value(0), parts.value(1), parts.value(2), parts.value(3), parts.value(4)};
        KeepParameters(line, false);
        return true;
    }
    if (EqualsUpper(name, "ORG") && isFirst(m_hasCompany)) {
        const QStringList units = Values(line, 2);
        m_contact->Company = units.value(0);
        if (units.size() > 1)
            return false; // the departments are kept with the whole line
        KeepParameters(line, false);
        return true;
    }
    if (EqualsUpper(name, "NICKNAME") && m_nickname.isEmpty())
        m_nickname = Value(line, line.Value, ImportLimit::TextChars / 16, true);
    return false;
}

// A card need not say how its person is called.
void CContactReader::FinishName()
{
    CImportedContact& contact = *m_contact;
    if (!contact.Name.isEmpty())
        return;
    const CNameParts& parts = contact.Parts;
    QStringList words{parts.Title, parts.First, parts.Middle, parts.Last, parts.Suffix};
    words.removeAll(QString());
    contact.Name = words.join(QLatin1Char(' '));
    QStringList others{contact.Company, m_nickname};
    std::copy(contact.Mails.begin(), contact.Mails.end(), std::back_inserter(others));
    std::copy(contact.Phones.begin(), contact.Phones.end(), std::back_inserter(others));
    for (const QString& other : others)
        if (contact.Name.isEmpty())
            contact.Name = other;
}

// ---- numbers and addresses

bool CContactReader::ReadReachable(const CPropertyLine& line, std::string_view name,
                                   const CComponent::Line& at)
{
    const bool isPhone = EqualsUpper(name, "TEL");
    if (!isPhone && !EqualsUpper(name, "EMAIL"))
        return false;
    QString value = Value(line, line.Value, ImportLimit::TextChars / 32, true);
    for (const QLatin1String scheme : {QLatin1String("tel:"), QLatin1String("mailto:")})
        if (value.startsWith(scheme, Qt::CaseInsensitive))
            value.remove(0, scheme.size());
    if (value.isEmpty())
        return false;
    bool more = WithoutGroup(line.Name).size() != line.Name.size();
    std::vector<std::string> words = TypeWords(line.Parameters, &more);
    std::erase_if(words, [](const std::string& word) { return word == "VOICE" || word == "INTERNET"; });
    const auto has = [&words](const char* word) {
        return !word || std::find(words.begin(), words.end(), word) != words.end();
    };
    QString* place = nullptr;
    size_t known = 0; // words that the place says
    if (isPhone) {
        for (const CPhonePlace& choice : kPhonePlaces) {
            QString& phone = m_contact->Phones[size_t(choice.Phone)];
            if (!phone.isEmpty() || !has(choice.Word) || !has(choice.Second))
                continue;
            place = &phone;
            known = size_t(choice.Word != nullptr) + size_t(choice.Second != nullptr);
            break;
        }
    } else {
        for (QString& mail : m_contact->Mails)
            if (!place && mail.isEmpty())
                place = &mail;
    }
    if (place)
        *place = value;
    if (!place || more || words.size() > known)
        Keep(m_component->LineText(at));
    return true;
}

// ---- dates

bool CContactReader::IsAnniversary(const CPropertyLine& line, std::string_view name) const
{
    for (const char* known : {"ANNIVERSARY", "X-ANNIVERSARY", "X-MS-ANNIVERSARY", "X-EVOLUTION-ANNIVERSARY",
                              "X-KADDRESSBOOK-X-ANNIVERSARY"})
        if (EqualsUpper(name, known))
            return true;
    return EqualsUpper(name, "X-ABDATE") && std::find(m_anniversaryGroups.begin(), m_anniversaryGroups.end(),
                                                      GroupOf(line.Name)) != m_anniversaryGroups.end();
}

bool CContactReader::ReadDates(const CPropertyLine& line, std::string_view name, const CComponent::Line& at)
{
    const bool isBirthday = EqualsUpper(name, "BDAY");
    if (!isBirthday && !IsAnniversary(line, name))
        return false;
    DATE& place = isBirthday ? m_contact->Birthday : m_contact->Anniversary;
    if (place != NO_DATE || TrimBlanks(line.Value).empty())
        return place == NO_DATE;
    switch (ParseCardDate(line.Value, line.Parameter("X-APPLE-OMIT-YEAR"), &place)) {
    case CardDate::Good:
        break;
    case CardDate::Impossible:
        m_report.LeftOut(at.Number, isBirthday
                                        ? QStringLiteral("a birthday that is no date of the calendar")
                                        : QStringLiteral("an anniversary that is no date of the calendar"));
        return false;
    case CardDate::NoDay:
        if (!EqualsUpper(line.Parameter("VALUE"), "TEXT"))
            m_report.Note(at.Number, isBirthday
                                         ? QStringLiteral("the birthday is no day, it is kept as text")
                                         : QStringLiteral("the anniversary is no day, it is kept as text"));
        return false;
    }
    const bool plainName = isBirthday || EqualsUpper(line.Name, "ANNIVERSARY");
    if (line.Value.find_first_of("T ") != std::string_view::npos)
        return false; // a time, which the record has no place for
    KeepParameters(line, !plainName);
    return true;
}

// ---- the rest

bool CContactReader::ReadRest(const CPropertyLine& line, std::string_view name, const CComponent::Line& at)
{
    if (EqualsUpper(name, "NOTE")) {
        if (std::exchange(m_hasNote, true))
            return false;
        const QString text = Value(line, line.Value, ImportLimit::NoteChars, false);
        if (text.size() >= ImportLimit::NoteChars)
            m_report.LeftOut(at.Number, QStringLiteral("the rest of an overlong note"));
        m_contact->Note = text;
        KeepParameters(line, false);
        return true;
    }
    if (EqualsUpper(name, "CATEGORIES")) {
        for (QString category : TextListOf(line.Value, ImportLimit::Categories)) {
            category =
                Tidy(category.replace(QLatin1Char(','), QLatin1Char(';')), ImportLimit::TextChars / 128, true)
                    .trimmed();
            if (!category.isEmpty() && m_contact->Categories.size() < ImportLimit::Categories &&
                !m_contact->Categories.contains(category, Qt::CaseInsensitive))
                m_contact->Categories.append(category);
        }
        return true;
    }
    if (EqualsUpper(name, "UID")) {
        if (!m_contact->Uid.isEmpty())
            return false;
        const std::string_view uid = TrimBlanks(line.Value).substr(0, ImportLimit::TextChars / 32);
        m_contact->Uid = QString::fromUtf8(uid.data(), qsizetype(uid.size()));
        KeepParameters(line, false);
        return true;
    }
    return false;
}
