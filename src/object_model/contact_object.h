// A contact in memory. All that is text stands in one row of texts, in the order of its properties.
#pragma once
#include "object_model/item_base.h"

std::span<const CEPROPID> ContactRows();

class CContactObject : public IContact, private CItemBase
{
public:
    explicit CContactObject(COutlookApp& app) : CItemBase(app), m_changedTexts(~0u) {}
    CContactObject(COutlookApp& app, CEOID oid, quint32 itemId, const std::vector<CEPROPVAL>& rows);

    QString get_FileAs() const override { return m_texts[kFileAs]; }
    void put_FileAs(const QString& name) override { PutText(kFileAs, name); }
    CNameParts get_NameParts() const override;
    void put_NameParts(const CNameParts& parts) override;
    QString get_CompanyName() const override { return m_texts[kCompany]; }
    void put_CompanyName(const QString& name) override { PutText(kCompany, name); }
    QString get_EmailAddress(int number) const override;
    void put_EmailAddress(int number, const QString& address) override;
    QString get_Telephone(OlPhone phone) const override { return m_texts[kFirstPhone + size_t(phone)]; }
    void put_Telephone(OlPhone phone, const QString& number) override
    {
        PutText(kFirstPhone + size_t(phone), number);
    }
    DATE get_Birthday() const override { return m_birthday; }
    void put_Birthday(DATE date) override { Set(m_birthday, WholeDay(date), Changed::Times); }
    DATE get_Anniversary() const override { return m_anniversary; }
    void put_Anniversary(DATE date) override { Set(m_anniversary, WholeDay(date), Changed::Times); }
    QString get_Body() const override { return m_texts[kBody]; }
    void put_Body(const QString& text) override { PutText(kBody, text); }
    QString get_Categories() const override { return CategoryNames(); }
    void put_Categories(const QString& names) override { PutCategoryNames(names); }
    quint32 get_Oid() const override { return m_itemId; }
    CEOID RecordOid() const override { return m_oid; }
    CStatus Save() override;
    CStatus Delete() override { return DeleteRecord(kContactsDatabase); }
    std::unique_ptr<IContact> Copy() override;
    const CForeignData& Foreign() const override { return m_foreign; }
    void put_Foreign(const CForeignData& data) override;

    // Places in the row of texts.
    enum Text : size_t {
        kFileAs,
        kFirstMail,
        kCompany = kFirstMail + kContactMails,
        kLast,
        kFirst,
        kMiddle,
        kTitle,
        kSuffix,
        kFirstPhone,
        kBody = kFirstPhone + kContactPhones,
        kTextCount
    };

private:
    static DATE WholeDay(DATE date) { return date == NO_DATE ? NO_DATE : DATE(DayNumber(date)); }
    void PutText(size_t place, const QString& text);
    CStatus WriteAll(CEOID* oid, quint32* itemId);

    std::array<QString, kTextCount> m_texts;
    quint32 m_changedTexts = 0; // a bit each
    DATE m_birthday = NO_DATE, m_anniversary = NO_DATE;
    CForeignData m_foreign;
};
