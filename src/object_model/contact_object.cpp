#include "object_model/contact_object.h"

#include "object_model/outlook_app.h"
#include "object_model/series_rows.h"

namespace
{
constexpr size_t kTexts = CContactObject::kTextCount;
enum Row { kBirthday = kTexts, kAnniversary, kForeign }; // behind the texts; then kForeignRows
constexpr CEPROPID kOwnIds[kForeign] = {
    Prop::ContactName,     Prop::ContactDetail,      Prop::ContactMail2,     Prop::ContactMail3,
    Prop::ContactCompany,  Prop::ContactLastName,    Prop::ContactFirstName, Prop::ContactMiddleName,
    Prop::ContactTitle,    Prop::ContactSuffix,      Prop::PhoneMobile,      Prop::PhoneWork,
    Prop::PhoneWork2,      Prop::PhoneHome,          Prop::PhoneHome2,       Prop::PhoneWorkFax,
    Prop::PhoneHomeFax,    Prop::PhoneCar,           Prop::PhonePager,       Prop::Note,
    Prop::ContactBirthday, Prop::ContactAnniversary,
};
static_assert(kOwnIds[CContactObject::kFirstPhone] == Prop::PhoneMobile &&
              kOwnIds[CContactObject::kBody] == Prop::Note);
constexpr auto kIds = WithForeignRows(kOwnIds);

DATE DateOfRow(const CEPROPVAL& row)
{
    return row.Found() ? DATE(DayNumber(DateOfFileTime(row.Number))) : NO_DATE;
}
} // namespace

std::span<const CEPROPID> ContactRows()
{
    return kIds;
}

CContactObject::CContactObject(COutlookApp& app, CEOID oid, quint32 itemId,
                               const std::vector<CEPROPVAL>& rows)
    : CItemBase(app, oid, itemId)
{
    for (size_t i = 0; i < kTexts; ++i)
        m_texts[i] = rows[i].Text;
    m_birthday = DateOfRow(rows[kBirthday]);
    m_anniversary = DateOfRow(rows[kAnniversary]);
    m_foreign = ReadForeign(std::span(rows).subspan(kForeign));
}

void CContactObject::PutText(size_t place, const QString& text)
{
    if (m_texts[place] == text)
        return;
    m_texts[place] = text;
    m_changedTexts |= 1u << place;
}

CNameParts CContactObject::get_NameParts() const
{
    return {m_texts[kLast], m_texts[kFirst], m_texts[kMiddle], m_texts[kTitle], m_texts[kSuffix]};
}

void CContactObject::put_NameParts(const CNameParts& parts)
{
    PutText(kLast, parts.Last);
    PutText(kFirst, parts.First);
    PutText(kMiddle, parts.Middle);
    PutText(kTitle, parts.Title);
    PutText(kSuffix, parts.Suffix);
}

QString CContactObject::get_EmailAddress(int number) const
{
    return number >= 1 && number <= kContactMails ? m_texts[kFirstMail + size_t(number) - 1] : QString();
}

void CContactObject::put_EmailAddress(int number, const QString& address)
{
    if (number >= 1 && number <= kContactMails)
        PutText(kFirstMail + size_t(number) - 1, address);
}

void CContactObject::put_Foreign(const CForeignData& data)
{
    m_foreign = data;
    m_changed |= Changed::Foreign;
}

// ---- saving

CStatus CContactObject::WriteAll(CEOID* oid, quint32* itemId)
{
    CRecordRows& rows = m_app.EmptyRows();
    for (size_t i = 0; i < kTexts; ++i)
        if (m_changedTexts & (1u << i))
            rows.Text(kOwnIds[i], m_texts[i]);
    if (m_changedTexts & (1u << kBody))
        rows.Remove(Prop::NoteDocument); // it would tell the old text
    const std::pair<CEPROPID, DATE> dates[] = {{Prop::ContactBirthday, m_birthday},
                                               {Prop::ContactAnniversary, m_anniversary}};
    for (const auto& [id, date] : dates) {
        if (!IsChanged(Changed::Times))
            continue;
        if (date == NO_DATE)
            rows.Remove(id);
        else if (IsDate(date))
            rows.Number(id, FileTimeOfDate(date));
        else
            return {StatusKind::Invalid, QStringLiteral("The contact has a date that cannot be stored.")};
    }
    if (IsChanged(Changed::Foreign))
        PutForeign(rows, m_foreign);
    else
        rows.Number(Prop::LastChange, Clock().GetUtcTime());
    return WriteRecord(rows, kContactsDatabase, kContactTag, m_foreign, oid, itemId);
}

CStatus CContactObject::Save()
{
    CEOID oid = m_oid;
    quint32 itemId = m_itemId;
    const CStatus status = m_app.InTransaction([&] { return WriteAll(&oid, &itemId); });
    if (!status)
        return status;
    Saved(oid, itemId);
    m_changedTexts = 0;
    return status;
}

std::unique_ptr<IContact> CContactObject::Copy()
{
    auto copy = std::make_unique<CContactObject>(m_app);
    copy->m_texts = m_texts;
    copy->m_texts[kBody].clear();
    copy->m_birthday = m_birthday;
    copy->m_anniversary = m_anniversary;
    copy->put_Foreign(ForeignOfCopy(m_foreign));
    copy->m_categories = get_Categories();
    return copy;
}
