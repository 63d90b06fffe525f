#include "interchange/card_lines.h"

#include "interchange/imported_event.h"
#include "records/property_numbers.h"

#include <algorithm>

namespace
{
constexpr const char* kPhoneTypes[kContactPhones] = {"CELL",     "WORK",     "WORK", "HOME", "HOME",
                                                     "WORK,FAX", "HOME,FAX", "CAR",  "PAGER"};

// Of a property in a group, the name alone.
std::string CardName(const std::string& line)
{
    const std::string name = NameOfLine(line);
    return name.substr(name.rfind('.') + 1);
}

bool IsAnniversaryName(const std::string& name)
{
    return name.find("ANNIVERSARY") != std::string::npos || name == "X-ABDATE";
}

std::string DateTextOf(DATE date)
{
    int year = 0, month = 0, day = 0;
    CivilOfDayNumber(DayNumber(date), &year, &month, &day);
    return year == kContactYearUnknown ? QString::asprintf("--%02d-%02d", month, day).toStdString()
                                       : QString::asprintf("%04d-%02d-%02d", year, month, day).toStdString();
}

std::string QuotedPrintable(const QByteArray& text)
{
    std::string coded;
    for (const char c : text) {
        if (uchar(c) >= 0x20 && uchar(c) < 0x7F && c != '=')
            coded.push_back(c);
        else
            coded += QString::asprintf("=%02X", uint(uchar(c))).toStdString();
    }
    return coded;
}

std::string NameText(const CNameParts& parts)
{
    return EscapedText(parts.Last) + ';' + EscapedText(parts.First) + ';' + EscapedText(parts.Middle) + ';' +
           EscapedText(parts.Title) + ';' + EscapedText(parts.Suffix);
}
} // namespace

CImportedContact CCardExporter::Read(const CTextLines& lines)
{
    CImportedContact contact;
    CTextLines all{"VERSION:" + m_version, "UID:x"};
    all.insert(all.end(), lines.begin(), lines.end());
    m_reader.Read(ComponentOf("VCARD", all), &contact);
    return contact;
}

// Version 2.1 has no escapes for line ends, and letters of its own character set.
std::string CCardExporter::TextLine(const std::string& name, const std::string& escaped,
                                    const QString& plain) const
{
    const bool isPlain = std::all_of(escaped.begin(), escaped.end(), [](char c) { return uchar(c) < 0x7F; });
    if (!m_isOld || (isPlain && !plain.contains(QLatin1Char('\n')) &&
                     escaped.find('=') == std::string::npos && escaped.find('\\') == std::string::npos))
        return name + ':' + escaped;
    // The escapes of what parts values are those of the version; a line end is coded.
    std::string old;
    for (size_t i = 0; i < escaped.size(); ++i) {
        if (escaped[i] == '\\' && i + 1 < escaped.size() && escaped[i + 1] == 'n') {
            old += "\r\n";
            ++i;
        } else if (escaped[i] == '\\' && i + 1 < escaped.size()) {
            old.push_back(escaped[i]);
            old.push_back(escaped[++i]);
        } else {
            old.push_back(escaped[i]);
        }
    }
    return name +
           ";CHARSET=UTF-8;ENCODING=QUOTED-PRINTABLE:" + QuotedPrintable(QByteArray::fromStdString(old));
}

// The kept lines that stand for a value by their parameters, with the value.
std::string CCardExporter::FilledCard(const std::string& line, IContact& contact, const QString& uid)
{
    const std::string name = CardName(line);
    const std::string head = line.substr(0, line.size() - 1);
    if (name == "FN")
        return TextLine(head, EscapedText(contact.get_FileAs()), contact.get_FileAs());
    if (name == "N")
        return TextLine(head, NameText(contact.get_NameParts()), {});
    if (name == "ORG")
        return TextLine(head, EscapedText(contact.get_CompanyName()), contact.get_CompanyName());
    if (name == "NOTE")
        return TextLine(head, EscapedText(contact.get_Body()), contact.get_Body());
    if (name == "UID")
        return line + uid.toStdString();
    if (name == "BDAY" && contact.get_Birthday() != NO_DATE)
        return line + DateTextOf(contact.get_Birthday());
    if (IsAnniversaryName(name) && contact.get_Anniversary() != NO_DATE)
        return line + DateTextOf(contact.get_Anniversary());
    return name == "BDAY" || IsAnniversaryName(name) ? std::string() : line;
}

void CCardExporter::AddPlain(IContact& contact, const QString& uid, CTextLines& lines)
{
    const auto stands = [&](const char* name) {
        return std::any_of(m_kept.begin(), m_kept.end(),
                           [&](const std::string& line) { return CardName(line) == name; });
    };
    const auto hasHole = [&](auto fits) {
        return std::any_of(m_kept.begin(), m_kept.end(),
                           [&](const std::string& line) { return IsHole(line) && fits(CardName(line)); });
    };
    const auto named = [](const char* name) {
        return [name](const std::string& own) { return own == name; };
    };
    const CImportedContact told = Read(m_kept);
    const auto drop = [&](auto fits) {
        std::erase_if(m_kept, [&](const std::string& line) { return !IsHole(line) && fits(CardName(line)); });
    };
    if (!hasHole(named("FN")))
        lines.push_back(TextLine("FN", EscapedText(contact.get_FileAs()), contact.get_FileAs()));
    const CNameParts parts = contact.get_NameParts();
    if (!hasHole(named("N")))
        lines.push_back(TextLine("N", NameText(parts), {}));
    const QString company = contact.get_CompanyName();
    if (!hasHole(named("ORG")) && told.Company != company)
        drop(named("ORG"));
    if (!hasHole(named("ORG")) && !company.isEmpty() && told.Company != company)
        lines.push_back(TextLine("ORG", EscapedText(company), company));
    if (!hasHole(named("NOTE")) && (!contact.get_Body().isEmpty() || stands("NOTE")))
        lines.push_back(TextLine("NOTE", EscapedText(contact.get_Body()), contact.get_Body()));
    const std::pair<DATE, DATE> birthday{contact.get_Birthday(), told.Birthday},
        anniversary{contact.get_Anniversary(), told.Anniversary};
    if (birthday.first != birthday.second && birthday.second != NO_DATE)
        drop(named("BDAY"));
    if (birthday.first != birthday.second && birthday.first != NO_DATE && !hasHole(named("BDAY")))
        lines.push_back("BDAY:" + DateTextOf(birthday.first));
    if (anniversary.first != anniversary.second && anniversary.second != NO_DATE)
        drop(IsAnniversaryName);
    if (anniversary.first != anniversary.second && anniversary.first != NO_DATE &&
        !hasHole(IsAnniversaryName))
        lines.push_back("ANNIVERSARY:" + DateTextOf(anniversary.first));
    QStringList categories = contact.get_Categories().split(QStringLiteral(", "), Qt::SkipEmptyParts);
    categories.sort();
    if (!categories.isEmpty())
        lines.push_back("CATEGORIES:" + EscapedList(categories));
    if (!hasHole(named("UID")))
        lines.push_back("UID:" + uid.toStdString());
    if (contact.Foreign().LastChange != 0)
        lines.push_back("REV:" + UtcText(contact.Foreign().LastChange));
}

// Numbers and addresses take their places in the order in which they stand: the first order that
// reads back as the contact is taken. A kept one that was changed or deleted since is left out.
void CCardExporter::AddReachable(IContact& contact, CTextLines& lines)
{
    const auto isReachable = [](const std::string& line) {
        return CardName(line) == "TEL" || CardName(line) == "EMAIL";
    };
    CTextLines kept;
    std::copy_if(m_kept.begin(), m_kept.end(), std::back_inserter(kept), isReachable);
    std::erase_if(m_kept, isReachable);
    std::vector<std::pair<std::string, QString>> wanted; // plain line and value
    for (int i = 0; i < kContactPhones; ++i)
        if (const QString number = contact.get_Telephone(OlPhone(i)); !number.isEmpty())
            wanted.emplace_back(std::string("TEL;") + (m_isOld
                                                           ? QString::fromLatin1(kPhoneTypes[i])
                                                                 .replace(QLatin1Char(','), QLatin1Char(';'))
                                                                 .toStdString()
                                                           : std::string("TYPE=") + kPhoneTypes[i]),
                                number);
    for (int i = 0; i < kContactMails; ++i)
        if (const QString mail = contact.get_EmailAddress(i + 1); !mail.isEmpty())
            wanted.emplace_back(m_isOld ? "EMAIL;INTERNET" : "EMAIL", mail);
    const auto valueOf = [&](const std::string& line) {
        const CImportedContact one = Read({line});
        for (const auto& list : {std::vector<QString>(one.Phones.begin(), one.Phones.end()),
                                 std::vector<QString>(one.Mails.begin(), one.Mails.end())})
            for (const QString& value : list)
                if (!value.isEmpty())
                    return value;
        return QString();
    };
    const auto fits = [&](const CTextLines& candidate) {
        const CImportedContact read = Read(candidate);
        for (int i = 0; i < kContactPhones; ++i)
            if (read.Phones[size_t(i)] != contact.get_Telephone(OlPhone(i)))
                return false;
        for (int i = 0; i < kContactMails; ++i)
            if (read.Mails[size_t(i)] != contact.get_EmailAddress(i + 1))
                return false;
        return true;
    };
    for (bool again = true; again;) {
        CTextLines plain, places;
        std::vector<bool> used(kept.size());
        for (const auto& [head, value] : wanted) {
            size_t at = 0;
            while (at < kept.size() && (used[at] || valueOf(kept[at]) != value ||
                                        CardName(kept[at]) != (head.starts_with("TEL") ? "TEL" : "EMAIL")))
                ++at;
            if (at < kept.size()) {
                used[at] = true;
                places.push_back(kept[at]);
            } else {
                plain.push_back(TextLine(head, EscapedText(value), value));
                places.push_back(plain.back());
            }
        }
        CTextLines plainFirst = plain, keptFirst = kept;
        plainFirst.insert(plainFirst.end(), kept.begin(), kept.end());
        keptFirst.insert(keptFirst.end(), plain.begin(), plain.end());
        for (size_t i = 0; i < kept.size(); ++i)
            if (!used[i])
                places.push_back(kept[i]);
        for (const CTextLines* order : {&plainFirst, &keptFirst, &places})
            if (fits(*order)) {
                lines.insert(lines.end(), order->begin(), order->end());
                return;
            }
        const auto stale = std::find(used.begin(), used.end(), false);
        again = stale != used.end();
        if (again)
            kept.erase(kept.begin() + (stale - used.begin()));
        else
            lines.insert(lines.end(), places.begin(), places.end());
    }
}

void CCardExporter::Export(IContact& contact, const QString& madeUid, CTextLines& lines)
{
    const CForeignData& foreign = contact.Foreign();
    const QString uid = foreign.Uid.isEmpty() ? madeUid : foreign.Uid;
    m_kept.clear();
    m_version = "3.0";
    for (const QByteArray& line : foreign.Text.toUtf8().split('\n')) {
        if (line.startsWith("VERSION:"))
            m_version = line.mid(8).trimmed().toStdString();
        else if (!line.isEmpty())
            m_kept.push_back(line.toStdString());
    }
    m_isOld = m_version.starts_with("2.");
    lines.push_back("BEGIN:VCARD");
    lines.push_back("VERSION:" + m_version);
    AddPlain(contact, uid, lines);
    AddReachable(contact, lines);
    int depth = 0;
    for (const std::string& line : m_kept) {
        depth += line.starts_with("BEGIN:") ? 1 : 0;
        const std::string filled = depth == 0 && IsHole(line) ? FilledCard(line, contact, uid) : line;
        if (!filled.empty())
            lines.push_back(filled);
        depth -= line.starts_with("END:") && depth > 0 ? 1 : 0;
    }
    lines.push_back("END:VCARD");
}
