// Contacts from cards of all three versions: what of a card goes where, what is kept, identity.
#include "interchange/contact_reader.h"
#include "interchange/import_fixture.h"
#include "records/property_numbers.h"

namespace
{
class ImportContacts : public ImportTest
{
protected:
    // Lines between the marks of a card.
    static std::string Card(const std::string& lines, const char* version = "3.0")
    {
        return std::string("BEGIN:VCARD\r\nVERSION:") + version + "\r\n" + lines + "\r\nEND:VCARD\r\n";
    }
    std::vector<std::unique_ptr<IContact>> All()
    {
        std::vector<std::unique_ptr<IContact>> contacts;
        for (quint32 number = 1; number < 20; ++number) {
            std::unique_ptr<IContact> contact;
            if (m_app->GetContactFromOid(kContactTag + number, contact))
                contacts.push_back(std::move(contact));
        }
        return contacts;
    }
    std::unique_ptr<IContact> One(const std::string& lines, const char* version = "3.0")
    {
        FreshVolume();
        m_told = ImportBytes(Card(lines, version));
        EXPECT_EQ(m_told.Created, 1) << lines;
        std::vector<std::unique_ptr<IContact>> all = All();
        return all.empty() ? m_app->CreateContact() : std::move(all.front());
    }
    CImported m_told;
};

std::string DateOf(CardDate result, DATE date)
{
    if (result != CardDate::Good)
        return result == CardDate::Impossible ? "impossible" : "no day";
    int year = 0, month = 0, day = 0;
    CivilOfDayNumber(DayNumber(date), &year, &month, &day);
    return QString::asprintf("%04d-%02d-%02d", year, month, day).toStdString();
}
} // namespace

TEST(CardDate, AllForms)
{
    const struct {
        const char *Text, *Omitted, *Date;
    } kCases[] = {
        {"19800322", "", "1980-03-22"},
        {"1980-03-22", "", "1980-03-22"},
        {" 1980-03-22 ", "", "1980-03-22"},
        {"1980-03-22T23:30:00Z", "", "1980-03-22"},
        {"19800322T000000", "", "1980-03-22"},
        {"--0322", "", "1604-03-22"},
        {"--03-22", "", "1604-03-22"},
        {"--0229", "", "1604-02-29"},
        {"1604-05-06", "1604", "1604-05-06"},
        {"1900-05-06", "1900", "1604-05-06"},
        {"0000-05-06", "", "1604-05-06"},
        {"2000-02-29", "", "2000-02-29"},
        {"1999-02-29", "", "impossible"},
        {"19723101", "", "impossible"},
        {"1980-00-10", "", "impossible"},
        {"1980-01-00", "", "impossible"},
        {"--0230", "", "impossible"},
        {"1500-01-01", "", "impossible"},
        {"9999-01-01", "", "impossible"},
        {"1980", "", "no day"},
        {"1980-03", "", "no day"},
        {"--03", "", "no day"},
        {"---22", "", "no day"},
        {"1980-03-221", "", "no day"},
        {"circa 1800", "", "no day"},
        {"-", "", "no day"},
        {"", "", "no day"},
    };
    for (const auto& c : kCases) {
        DATE date = 0;
        const CardDate result = ParseCardDate(c.Text, c.Omitted, &date);
        EXPECT_EQ(DateOf(result, date), c.Date) << c.Text;
    }
}

TEST_F(ImportContacts, FillsEveryField)
{
    const auto contact =
        One("N:Doe;Ann;Mary\\, Sue;Dr.;Jr.\r\nFN:Ann\\, the Doe\r\nORG:Works\r\nUID:ann\r\n"
            "BDAY:1980-03-22\r\nANNIVERSARY:20050102\r\nNOTE:one\\ntwo\r\n"
            "CATEGORIES:Friends,Work\\, too\r\nEMAIL:a@x.org\r\nEMAIL;TYPE=INTERNET:b@x.org\r\n"
            "REV:2020-01-01T00:00:00Z\r\nADR:;;Road 1;;;;\r\nX-ODD;A=B:1");
    EXPECT_EQ(contact->get_FileAs(), "Ann, the Doe");
    EXPECT_EQ(contact->get_NameParts(), (CNameParts{"Doe", "Ann", "Mary, Sue", "Dr.", "Jr."}));
    EXPECT_EQ(contact->get_CompanyName(), "Works");
    EXPECT_EQ(contact->get_Birthday(), DayNumberOf(1980, 3, 22));
    EXPECT_EQ(contact->get_Anniversary(), DayNumberOf(2005, 1, 2));
    EXPECT_EQ(contact->get_Body(), "one\ntwo");
    EXPECT_EQ(contact->get_Categories(), "Friends, Work; too");
    EXPECT_EQ(contact->get_EmailAddress(1), "a@x.org");
    EXPECT_EQ(contact->get_EmailAddress(2), "b@x.org");
    EXPECT_EQ(contact->Foreign().Uid, "ann");
    EXPECT_EQ(contact->Foreign().Text, "ADR:;;Road 1;;;;\nX-ODD;A=B:1\n");
    EXPECT_TRUE(m_told.Told.empty());
}

TEST_F(ImportContacts, NumbersGoToThePlaceOfTheirWords)
{
    const auto contact = One("FN:A\r\nTEL;TYPE=CELL:1\r\nTEL;TYPE=WORK,VOICE:2\r\nTEL;TYPE=work:3\r\n"
                             "TEL;TYPE=HOME:4\r\nTEL;TYPE=\"home\":5\r\nTEL;TYPE=WORK;TYPE=FAX:6\r\n"
                             "TEL;TYPE=HOME,FAX:7\r\nTEL;TYPE=CAR:8\r\nTEL;TYPE=PAGER:9\r\n"
                             "TEL;TYPE=WORK:10\r\nTEL;VALUE=uri;TYPE=\"voice,cell\":tel:+11");
    const char* const kWanted[] = {"1", "2", "3", "4", "5", "6", "7", "8", "9"};
    for (int i = 0; i < kContactPhones; ++i)
        EXPECT_EQ(contact->get_Telephone(OlPhone(i)), kWanted[i]) << i;
    EXPECT_EQ(contact->Foreign().Text, "TEL;TYPE=WORK:10\nTEL;VALUE=uri;TYPE=\"voice,cell\":tel:+11\n");

    const auto other = One("FN:A\r\nTEL;VALUE=uri:tel:+1-2\r\nTEL;PREF;CELL:3\r\nTEL;FAX:4", "2.1");
    EXPECT_EQ(other->get_Telephone(OlPhone::Home), "+1-2");
    EXPECT_EQ(other->get_Telephone(OlPhone::Mobile), "3");
    EXPECT_EQ(other->get_Telephone(OlPhone::WorkFax), "4");
    EXPECT_EQ(other->Foreign().Text, "VERSION:2.1\nTEL;VALUE=uri:tel:+1-2\nTEL;PREF;CELL:3\n");
}

TEST_F(ImportContacts, AnniversariesUnderManyNames)
{
    for (const char* lines :
         {"ANNIVERSARY:2005-01-02", "X-ANNIVERSARY:20050102", "X-EVOLUTION-ANNIVERSARY:2005-01-02",
          "X-MS-ANNIVERSARY:20050102", "X-KADDRESSBOOK-X-Anniversary:2005-01-02T00:00:00Z",
          "item1.X-ABDATE:2005-01-02\r\nitem1.X-ABLabel:_$!<Anniversary>!$_",
          "i.X-ABLabel:Anniversary\r\nI.X-ABDATE;TYPE=pref:2005-01-02"})
        EXPECT_EQ(One(std::string("FN:A\r\n") + lines)->get_Anniversary(), DayNumberOf(2005, 1, 2)) << lines;
    const auto other = One("FN:A\r\nitem2.X-ABDATE:2005-01-02\r\nitem2.X-ABLabel:_$!<Other>!$_");
    EXPECT_EQ(other->get_Anniversary(), NO_DATE);
    EXPECT_EQ(other->Foreign().Text, "item2.X-ABDATE:2005-01-02\nitem2.X-ABLabel:_$!<Other>!$_\n");
}

TEST_F(ImportContacts, QuotedPrintableWithSoftBreaksAndCharsets)
{
    const auto contact = One("N;CHARSET=UTF-8;ENCODING=QUOTED-PRINTABLE:M=C3=BCller;J=C3=B6rg=3B;;;\r\n"
                             "FN;CHARSET=ISO-8859-1;QUOTED-PRINTABLE:J=F6rg M=FCller\r\n"
                             "NOTE;ENCODING=QUOTED-PRINTABLE:one=0D=0A=\r\n  two:=\r\nTHREE=3D=\r\n\r\n"
                             "X-A:C:\\new\r\nORG:Dir\\;ect\\ory",
                             "2.1");
    EXPECT_EQ(contact->get_NameParts(), (CNameParts{"Müller", "Jörg;", "", "", ""}));
    EXPECT_EQ(contact->get_FileAs(), "Jörg Müller");
    EXPECT_EQ(contact->get_Body(), "one\n  two:THREE=");
    EXPECT_EQ(contact->get_CompanyName(), "Dir;ect\\ory");
    EXPECT_EQ(contact->Foreign().Text, "VERSION:2.1\nX-A:C:\\new\n");
    EXPECT_EQ(One("FN;ENCODING=QUOTED-PRINTABLE:M=FCller =ZZ=4", "2.1")->get_FileAs(), "Müller =ZZ=4");
}

TEST_F(ImportContacts, NameComesFromWhatThereIs)
{
    const struct {
        const char *Lines, *Name;
    } kCases[] = {
        {"N:Doe;Ann;;Dr.;", "Dr. Ann Doe"},
        {"ORG:Works;Hall", "Works"},
        {"NICKNAME:Annie", "Annie"},
        {"EMAIL:a@x.org", "a@x.org"},
        {"TEL:123", "123"},
        {"FN:\r\nN:;;;;\r\nORG:Works", "Works"},
    };
    for (const auto& c : kCases)
        EXPECT_EQ(One(c.Lines)->get_FileAs(), c.Name) << c.Lines;
}

TEST_F(ImportContacts, PicturesAreKeptWhole)
{
    const std::string data(300000, 'A');
    std::string folded, plain;
    for (size_t i = 0; i < data.size(); i += 72) {
        folded += " " + data.substr(i, 72) + "\r\n";
        plain += data.substr(i, 72) + "\r\n";
    }
    const auto size = [](const IContact& contact) { return contact.Foreign().Text.size(); };
    const qsizetype wanted = qsizetype(data.size() + std::strlen("g.PHOTO;ENCODING=b:\nTITLE:T\n"));
    EXPECT_EQ(size(*One("FN:A\r\ng.PHOTO;ENCODING=b:\r\n" + folded + "TITLE:T")), wanted);
    // A line of nothing but NULs right behind it ends nothing and continues nothing.
    EXPECT_EQ(size(*One("FN:A\r\nPHOTO;BASE64:\r\n" + plain + std::string("\r\n\0\0\r\nTITLE:T", 13), "2.1")),
              qsizetype(data.size() + std::strlen("VERSION:2.1\nPHOTO;BASE64:\nTITLE:T\n")));
    EXPECT_EQ(size(*One("FN:A\r\nPHOTO;BASE64:\r\n" + plain + "\r\nTITLE:T", "2.1")),
              qsizetype(data.size() + std::strlen("VERSION:2.1\nPHOTO;BASE64:\nTITLE:T\n")));
    EXPECT_TRUE(m_told.Told.empty());
}

TEST_F(ImportContacts, ImpossibleDatesAreToldAndKept)
{
    const auto contact = One("FN:A\r\nBDAY:1999-02-29\r\nANNIVERSARY:2001-13-01");
    EXPECT_EQ(contact->get_Birthday(), NO_DATE);
    EXPECT_EQ(contact->get_Anniversary(), NO_DATE);
    EXPECT_EQ(contact->Foreign().Text, "BDAY:1999-02-29\nANNIVERSARY:2001-13-01\n");
    EXPECT_EQ(m_told.Told, (std::vector<std::string>{"4: a birthday that is no date of the calendar",
                                                     "5: an anniversary that is no date of the calendar"}));
    EXPECT_EQ(m_told.LeftOut, 2);
}

TEST_F(ImportContacts, Identity)
{
    const std::string cards =
        Card("FN:A\r\nUID:a\r\nREV:20200101T000000Z") + Card("FN:B") + Card("FN:B") + Card("FN:C\r\nUID:a");
    EXPECT_EQ(ImportBytes(cards).Counts(), "4 created 0 updated 0 unchanged 0 left out");
    EXPECT_EQ(ImportBytes(cards).Counts(), "0 created 0 updated 4 unchanged 0 left out");
    // The time of an export alone changes nothing; anything else does.
    EXPECT_EQ(ImportBytes(Card("FN:A\r\nUID:a\r\nREV:20210101T000000Z")).Counts(),
              "0 created 0 updated 1 unchanged 0 left out");
    EXPECT_EQ(ImportBytes(Card("FN:A2\r\nUID:a\r\nTEL:1")).Counts(),
              "0 created 1 updated 0 unchanged 0 left out");
    EXPECT_EQ(All().size(), 4u);
    EXPECT_EQ(All().front()->get_FileAs(), "A2");
    EXPECT_EQ(ImportBytes(Card("FN:A2\r\nUID:a")).Counts(), "0 created 1 updated 0 unchanged 0 left out");
    EXPECT_EQ(All().front()->get_Telephone(OlPhone::Home), ""); // what is gone goes
}

TEST_F(ImportContacts, BesideEventsAndBrokenNeighbours)
{
    const std::string file = "BEGIN:VCARD\r\nFN:Never closed\r\n" +
                             Card("FN:A\r\nAGENT:\r\nBEGIN:VCARD\r\n"
                                  "FN:Inner\r\nEND:VCARD\r\nTITLE:T") +
                             Calendar("BEGIN:VEVENT\nUID:e\nDTSTART:20260310\nEND:VEVENT\n") + Card("FN:B");
    const CImported told = ImportBytes(file);
    EXPECT_EQ(told.Counts(), "3 created 0 updated 0 unchanged 1 left out");
    EXPECT_EQ(told.Told, std::vector<std::string>{"1: VCARD is never closed"});
    const auto all = All();
    ASSERT_EQ(all.size(), 2u);
    EXPECT_EQ(all[0]->get_FileAs(), "A");
    EXPECT_EQ(all[0]->Foreign().Text, "AGENT:\nBEGIN:VCARD\nFN:Inner\nEND:VCARD\nTITLE:T\n");
    EXPECT_EQ(all[1]->get_FileAs(), "B");
}
