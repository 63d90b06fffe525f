// One contact of a vCard, versions 2.1, 3.0 and 4.0, as its file tells it; no store.
// The cards come from our own component reader and are taken apart here line by line. The vCard
//   parser beside the calendar library is not used: it keeps its state in globals, holds a whole
//   file with its pictures in memory, and drops what it does not know.
// Kept are all lines that the record has no place for. Of a telephone number or an address that
//   the record holds, the whole line is kept when it says more than its place does; one with the
//   same value stands for it. Other properties that the record holds stand there without a value,
//   for their name and parameters.
#pragma once
#include "interchange/component_reader.h"
#include "interchange/property_line.h"
#include "object_model/object_model.h"

#include <QStringList>
#include <array>

struct CImportedContact {
    QString Uid;      // made from the content when the card has none
    quint64 Hash = 0; // of all lines but those that each export makes anew
    int Line = 0;

    QString Name, Company, Note;
    CNameParts Parts;
    std::array<QString, kContactPhones> Phones;
    std::array<QString, kContactMails> Mails;
    DATE Birthday = NO_DATE, Anniversary = NO_DATE;
    QStringList Categories;
    FileTime LastChange = 0;
    QString Kept;
};

enum class CardDate { Good, Impossible, NoDay };
// Reads 19800322, 1980-03-22, --0322, --03-22 and these with a time behind. A date without a year
// gets kContactYearUnknown. NoDay: it is no date with a month and a day, a year alone perhaps.
CardDate ParseCardDate(std::string_view text, std::string_view omittedYear, DATE* date);

class CContactReader
{
public:
    explicit CContactReader(CImportReport& report) : m_report(report) {}
    void Read(const CComponent& component, CImportedContact* contact);

private:
    void FindVersionAndLabels();
    void ReadLine(const CPropertyLine& line, std::string_view name, const CComponent::Line& at);
    bool ReadNames(const CPropertyLine& line, std::string_view name, const CComponent::Line& at);
    bool ReadReachable(const CPropertyLine& line, std::string_view name, const CComponent::Line& at);
    bool ReadDates(const CPropertyLine& line, std::string_view name, const CComponent::Line& at);
    bool ReadRest(const CPropertyLine& line, std::string_view name, const CComponent::Line& at);
    bool IsAnniversary(const CPropertyLine& line, std::string_view name) const;
    QString Value(const CPropertyLine& line, std::string_view value, int limit, bool oneLine) const;
    QStringList Values(const CPropertyLine& line, int limit) const; // parted by semicolons
    void Keep(std::string_view text);
    void KeepParameters(const CPropertyLine& line, bool always);
    void FinishName();

    CImportReport& m_report;
    const CComponent* m_component = nullptr;
    CImportedContact* m_contact = nullptr;
    bool m_isOld = false; // version 2.1, which escapes little
    bool m_hasName = false, m_hasParts = false, m_hasCompany = false, m_hasNote = false;
    QString m_nickname;
    std::vector<std::string> m_anniversaryGroups; // whose label says so, upper case
    std::string m_kept;
};
