// Telephone numbers, mail and web addresses in plain text.
// Units: positions are UTF-16 units of the text, the end exclusive.
#pragma once
#include <QString>
#include <QStringView>
#include <list>

enum class LinkKind { Phone = 0, Mail = 1, Web = 2 };

struct CTextLink {
    qsizetype Start = 0, End = 0;
    LinkKind Kind = LinkKind::Phone;
    QString Text;
    int Group = 0; // number of the text block that it came from
    bool operator==(const CTextLink&) const = default;
};
using CTextLinkList = std::list<CTextLink>;

// Where the first candidate begins, -1 without one. A candidate need not be a link.
qsizetype FindNextLink(QStringView text, LinkKind& kind);
// Appends the links of a text block; those already there of the same group give way where they overlap.
void FindLinks(const QString& text, CTextLinkList& list, int group);
// Behind all others of its group; those that it overlaps go.
void AddLink(CTextLinkList& list, const CTextLink& link);
