#include "interchange/contact_importer.h"

#include "interchange/content_hash.h"
#include "interchange/item_writer.h"

#include <algorithm>

CStatus CContactImporter::Take(const CComponent& component)
{
    m_reader.Read(component, &m_contact);
    const QByteArray uid = m_contact.Uid.toUtf8();
    const quint32 index = m_seen[HashOf({uid.constData(), size_t(uid.size())})]++;
    const std::vector<CForeignKey> keys = m_app.FindContactsByUid(m_contact.Uid);
    const auto known = std::find_if(keys.begin(), keys.end(),
                                    [index](const CForeignKey& key) { return key.EqualsIndex == index; });
    if (known != keys.end() && known->ContentHash == CItemWriter::HashBytes(m_contact.Hash)) {
        ++m_report.Unchanged;
        return {};
    }
    const CStatus status = Write(m_contact, index, known != keys.end() ? known->ItemId : 0);
    if (status)
        ++(known != keys.end() ? m_report.Updated : m_report.Created);
    return status;
}

// An item identifier of 0 makes a new one.
CStatus CContactImporter::Write(const CImportedContact& contact, quint32 index, quint32 itemId)
{
    std::unique_ptr<IContact> item;
    if (itemId == 0) {
        item = m_app.CreateContact();
    } else if (const CStatus status = m_app.GetContactFromOid(itemId, item); !status) {
        return status;
    }
    item->put_FileAs(contact.Name);
    item->put_NameParts(contact.Parts);
    item->put_CompanyName(contact.Company);
    for (int i = 0; i < kContactMails; ++i)
        item->put_EmailAddress(i + 1, contact.Mails[size_t(i)]);
    for (int i = 0; i < kContactPhones; ++i)
        item->put_Telephone(OlPhone(i), contact.Phones[size_t(i)]);
    item->put_Birthday(contact.Birthday);
    item->put_Anniversary(contact.Anniversary);
    item->put_Body(contact.Note);
    item->put_Categories(contact.Categories.join(QStringLiteral(", ")));
    CForeignData foreign;
    foreign.Uid = contact.Uid;
    foreign.EqualsIndex = index;
    foreign.ContentHash = CItemWriter::HashBytes(contact.Hash);
    foreign.LastChange = contact.LastChange;
    foreign.Text = contact.Kept;
    item->put_Foreign(foreign);
    return item->Save();
}
