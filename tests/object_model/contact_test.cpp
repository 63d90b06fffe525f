// Contacts: what is put is read back and stands in the rows that readers know; what was not put
// stays as it was.
#include "fixture.h"
#include "records/property_numbers.h"

namespace
{
class Contacts : public ObjectModel
{
protected:
    std::unique_ptr<IContact> GetContact(quint32 itemId)
    {
        std::unique_ptr<IContact> item;
        EXPECT_TRUE(m_app->GetContactFromOid(itemId, item));
        return item;
    }
    CReadRecord ReadRecord(const IContact& item)
    {
        CReadRecord record;
        EXPECT_TRUE(m_volume->ReadWholeRecord(kContactsDatabase, item.RecordOid(), record.Rows));
        return record;
    }
    std::unique_ptr<IContact> Anna()
    {
        std::unique_ptr<IContact> item = m_app->CreateContact();
        item->put_FileAs("Anna B.");
        item->put_NameParts({"B", "Anna", "C", "Dr.", "Jr."});
        item->put_CompanyName("Works");
        item->put_EmailAddress(1, "a@example.org");
        item->put_EmailAddress(3, "c@example.org");
        item->put_EmailAddress(4, "nowhere@example.org");
        for (int i = 0; i < kContactPhones; ++i)
            item->put_Telephone(OlPhone(i), QString::number(100 + i));
        item->put_Birthday(At("1980-02-29 13:00"));
        item->put_Anniversary(At("1850-06-01"));
        item->put_Body("note");
        item->put_Categories("Friends, Work");
        CForeignData foreign;
        foreign.Uid = "anna";
        foreign.Text = "X-A:1\n";
        foreign.ContentHash = "hash";
        item->put_Foreign(foreign);
        return item;
    }
};
} // namespace

TEST_F(Contacts, ComeBackAsTheyWerePut)
{
    std::unique_ptr<IContact> item = Anna();
    EXPECT_EQ(item->get_Oid(), 0u);
    ASSERT_TRUE(item->Save());
    EXPECT_EQ(item->get_Oid(), kContactTag + 1);
    const std::unique_ptr<IContact> read = GetContact(item->get_Oid());
    EXPECT_EQ(read->get_FileAs(), "Anna B.");
    EXPECT_EQ(read->get_NameParts(), (CNameParts{"B", "Anna", "C", "Dr.", "Jr."}));
    EXPECT_EQ(read->get_CompanyName(), "Works");
    EXPECT_EQ(read->get_EmailAddress(1), "a@example.org");
    EXPECT_EQ(read->get_EmailAddress(2), "");
    EXPECT_EQ(read->get_EmailAddress(3), "c@example.org");
    EXPECT_EQ(read->get_EmailAddress(0), "");
    EXPECT_EQ(read->get_EmailAddress(4), "");
    for (int i = 0; i < kContactPhones; ++i)
        EXPECT_EQ(read->get_Telephone(OlPhone(i)), QString::number(100 + i)) << i;
    EXPECT_EQ(read->get_Birthday(), At("1980-02-29"));
    EXPECT_EQ(read->get_Anniversary(), At("1850-06-01"));
    EXPECT_EQ(read->get_Body(), "note");
    EXPECT_EQ(read->get_Categories(), "Friends, Work");
    EXPECT_EQ(read->Foreign().Uid, "anna");
    EXPECT_EQ(read->Foreign().Text, "X-A:1\n");
}

TEST_F(Contacts, StandInTheRowsThatReadersKnow)
{
    std::unique_ptr<IContact> item = Anna();
    ASSERT_TRUE(item->Save());
    const CReadRecord record = ReadRecord(*item);
    EXPECT_EQ(record.Text(Prop::ContactName), "Anna B.");
    EXPECT_EQ(record.Text(Prop::ContactDetail), "a@example.org");
    EXPECT_EQ(record.Number(Prop::ContactBirthday), FileTimeOfDate(At("1980-02-29")));
    EXPECT_EQ(record.Text(Prop::PhoneMobile), "100");
    EXPECT_EQ(record.Text(Prop::PhonePager), "108");
    EXPECT_FALSE(record.Has(Prop::ContactMail2));
}

TEST_F(Contacts, SaveLeavesAloneWhatWasNotPut)
{
    std::unique_ptr<IContact> item = Anna();
    ASSERT_TRUE(item->Save());
    const CEPROPVAL foreign[] = {{Prop::ContactSuffix, QStringLiteral("by others")}};
    ASSERT_TRUE(m_volume->WriteRecord(kContactsDatabase, item->RecordOid(), foreign, {}, nullptr));
    item->put_Birthday(NO_DATE);
    item->put_Body("");
    ASSERT_TRUE(item->Save());
    const CReadRecord record = ReadRecord(*item);
    EXPECT_EQ(record.Text(Prop::ContactSuffix), "by others");
    EXPECT_FALSE(record.Has(Prop::ContactBirthday));
    EXPECT_FALSE(record.Has(Prop::Note));
    EXPECT_TRUE(record.Has(Prop::ContactAnniversary));
    EXPECT_EQ(record.Text(Prop::Uid), "anna");
}

TEST_F(Contacts, ImpossibleDateIsRefusedAndNothingWritten)
{
    std::unique_ptr<IContact> item = Anna();
    item->put_Birthday(-200000);
    EXPECT_EQ(item->Save().Kind(), StatusKind::Invalid);
    EXPECT_EQ(m_volume->RecordCount(kContactsDatabase), 0);
    EXPECT_EQ(m_volume->RecordCount(kCategoryDatabase), 0);
}

TEST_F(Contacts, CopyIsWithoutBodyAndIdentity)
{
    std::unique_ptr<IContact> item = Anna();
    ASSERT_TRUE(item->Save());
    const std::unique_ptr<IContact> copy = item->Copy();
    ASSERT_TRUE(copy->Save());
    EXPECT_NE(copy->get_Oid(), item->get_Oid());
    const std::unique_ptr<IContact> read = GetContact(copy->get_Oid());
    EXPECT_EQ(read->get_FileAs(), "Anna B.");
    EXPECT_EQ(read->get_Birthday(), At("1980-02-29"));
    EXPECT_EQ(read->get_Body(), "");
    EXPECT_EQ(read->get_Categories(), "Friends, Work");
    EXPECT_NE(read->Foreign().Uid, item->Foreign().Uid);
    EXPECT_EQ(read->Foreign().Uid, copy->Foreign().Uid);
    EXPECT_EQ(m_app->FindContactsByUid(copy->Foreign().Uid).size(), 1U);
}

TEST_F(Contacts, AreFoundByUidAndGoneAfterDelete)
{
    std::unique_ptr<IContact> item = Anna();
    ASSERT_TRUE(item->Save());
    const std::vector<CForeignKey> keys = m_app->FindContactsByUid("anna");
    ASSERT_EQ(keys.size(), 1u);
    EXPECT_EQ(keys[0].ItemId, item->get_Oid());
    EXPECT_EQ(keys[0].ContentHash, "hash");
    EXPECT_TRUE(m_app->FindByUid("anna").empty());
    Notices();
    ASSERT_TRUE(item->Delete());
    EXPECT_TRUE(m_app->FindContactsByUid("anna").empty());
    EXPECT_EQ(m_volume->RecordCount(kCategoryAssocDatabase), 0);
    std::unique_ptr<IContact> none;
    EXPECT_EQ(m_app->GetContactFromOid(keys[0].ItemId, none).Kind(), StatusKind::NotFound);
    EXPECT_EQ(m_app->CreateContact()->Delete().Kind(), StatusKind::Invalid);
}
