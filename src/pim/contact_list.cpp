#include "pim/contact_list.h"

#include "platform/locale.h"
#include "records/property_numbers.h"
#include "util/date_time.h"
#include "util/string_ids.h"
#include "util/string_store.h"

#include <algorithm>

namespace
{
enum Row { kKind, kName, kBirthday, kAnniversary, kRecId, kDetail, kUid, kRowCount };
constexpr CEPROPID kRows[kRowCount] = {
    Prop::ContactKind,   Prop::ContactName, Prop::ContactBirthday, Prop::ContactAnniversary, Prop::RecId,
    Prop::ContactDetail, Prop::Uid};

// A date is stored as midnight of no zone.
int DayOfRow(const CEPROPVAL& row)
{
    return row.Found() ? DayNumber(DateOfFileTime(row.Number)) : int(NO_DATE);
}

bool ReadContact(CPimDatabase& database, bool withUids, std::vector<CEPROPVAL>& rows, CContactInfo& contact)
{
    contact.RecordOid = database.ReadRecordProps(std::span(kRows, withUids ? kRowCount : kUid), rows);
    if (contact.RecordOid == 0)
        return false;
    if (rows[kRecId].Found())
        contact.ItemId = quint32(rows[kRecId].Number) + kContactTag;
    contact.Name = std::move(rows[kName].Text);
    contact.Detail = std::move(rows[kDetail].Text);
    contact.Birthday = DayOfRow(rows[kBirthday]);
    contact.Anniversary = DayOfRow(rows[kAnniversary]);
    if (withUids)
        contact.Uid = std::move(rows[kUid].Text);
    return true;
}

// The plain letter of an accented one, 0 for what has no mapping.
char16_t PlainLetter(char16_t c)
{
    struct CRange {
        char16_t First, Last;
        char Letter;
    };
    static constexpr CRange kAccented[] = {
        {192, 198, 'a'}, {199, 199, 'c'}, {200, 203, 'e'}, {204, 207, 'i'}, {209, 209, 'n'},
        {210, 214, 'o'}, {216, 216, 'o'}, {217, 220, 'u'}, {221, 221, 'y'}, {223, 223, 's'},
        {224, 230, 'a'}, {231, 231, 'c'}, {232, 235, 'e'}, {236, 239, 'i'}, {241, 241, 'n'},
        {242, 246, 'o'}, {248, 248, 'o'}, {249, 252, 'u'}, {253, 253, 'y'}, {255, 255, 'y'}};
    if ((c >= '0' && c <= '9') || (c >= 'a' && c <= 'z'))
        return c;
    for (const CRange& range : kAccented)
        if (c >= range.First && c <= range.Last)
            return char16_t(range.Letter);
    return 0;
}

char16_t KeyOfLetter(char16_t letter)
{
    static constexpr char16_t kKeys[] = u"22233344455566677778889999";
    return letter >= 'a' && letter <= 'z' ? kKeys[letter - 'a'] : letter;
}
} // namespace

void CContactInfo::BuildSearchKeys(bool keypad)
{
    SearchKey.clear();
    SearchKeyCompact.clear();
    for (const QChar c : Name.toLower()) {
        const char16_t letter = PlainLetter(c.unicode());
        if (letter == 0) {
            SearchKey += keypad ? u'1' : u' ';
            continue;
        }
        const QChar key(keypad ? KeyOfLetter(letter) : letter);
        SearchKey += key;
        SearchKeyCompact += key;
    }
}

bool FindSpecialDay(int date, int firstDay, int lastDay, CSpecialDay* found)
{
    if (date == int(NO_DATE))
        return false;
    int year = 0, month = 0, day = 0, firstYear = 0, lastYear = 0, ignored = 0;
    CivilOfDayNumber(date, &year, &month, &day);
    CivilOfDayNumber(firstDay, &firstYear, &ignored, &ignored);
    CivilOfDayNumber(lastDay, &lastYear, &ignored, &ignored);
    for (const int in : {firstYear, lastYear}) {
        found->Day = ReturnInYear(in, month, day);
        if (found->Day < firstDay || found->Day > lastDay)
            continue;
        found->Age = year == kContactYearUnknown ? -1 : in - year;
        return year == kContactYearUnknown || found->Age >= 0;
    }
    return false;
}

QString SpecialEventSubject(int kind, const QString& name, int age)
{
    const bool isBirthday = kind == kKindBirthday;
    QString text =
        age < 0 ? GetString(isBirthday ? StringId::StrBirthdayWithoutAge : StringId::StrAnniversaryWithoutAge)
                : GetString(isBirthday ? StringId::StrBirthdaySubject : StringId::StrAnniversarySubject);
    text.replace(QLatin1String("%d"), QString::number(age));
    // The name last: it may hold such a mark itself.
    const qsizetype at = text.indexOf(QLatin1String("%s"));
    return at < 0 ? text : text.replace(at, 2, name);
}

// ---- the list

void CContactList::Load(const std::shared_ptr<CPropertyVolume>& volume, bool withUids)
{
    if (IsLoaded())
        return;
    CPimDatabase database;
    if (!database.Open(volume, kContactsDatabase, true) || database.Seek(SeekType::Beginning) == 0)
        return;
    std::vector<CEPROPVAL> rows;
    for (CContactInfo contact; ReadContact(database, withUids, rows, contact); contact = CContactInfo())
        m_contacts.push_back(std::move(contact));
    m_sorted = false;
}

void CContactList::Clear()
{
    m_contacts.clear();
}

bool CContactList::Precedes(const CContactInfo& a, const CContactInfo& b)
{
    return a.Preferred != b.Preferred ? a.Preferred : CompareText(a.Name, b.Name) < 0;
}

const std::vector<CContactInfo>& CContactList::Sorted()
{
    if (!m_sorted)
        std::stable_sort(m_contacts.begin(), m_contacts.end(), Precedes);
    m_sorted = true;
    return m_contacts;
}

void CContactList::Remove(const std::vector<CEOID>& sortedOids)
{
    std::erase_if(m_contacts, [&sortedOids](const CContactInfo& contact) {
        return std::binary_search(sortedOids.begin(), sortedOids.end(), contact.RecordOid);
    });
}

void CContactList::Read(const std::shared_ptr<CPropertyVolume>& volume, const std::vector<CEOID>& oids,
                        bool withUids)
{
    CPimDatabase database;
    if (oids.empty() || !database.Open(volume, kContactsDatabase, false))
        return;
    std::vector<CEPROPVAL> rows;
    for (const CEOID oid : oids) {
        CContactInfo contact;
        if (database.Seek(SeekType::CeOid, {0, qint64(oid)}) == oid &&
            ReadContact(database, withUids, rows, contact) && contact.RecordOid == oid)
            m_contacts.push_back(std::move(contact));
    }
    m_sorted = false;
}
