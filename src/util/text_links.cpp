#include "util/text_links.h"

#include <algorithm>

namespace
{
const QStringView kPhoneStart = u"0123456789)(*+#";
const QStringView kPhoneEnd = u")(*+#";
constexpr qsizetype kFewestPhone = 6, kFewestDigits = 4;
constexpr qsizetype kFewestMail = 5;

bool IsDigit(QChar c)
{
    return c >= u'0' && c <= u'9';
}

bool IsPhone(QChar c)
{
    return kPhoneStart.contains(c) || c == u' ' || c == u'-';
}

// A position behind which `other` comes strictly earlier; -1 is nowhere.
bool IsEarlier(qsizetype position, qsizetype other)
{
    return position >= 0 && (other < 0 || position < other);
}

qsizetype Earliest(qsizetype a, qsizetype b)
{
    return IsEarlier(b, a) ? b : a;
}

// The end of a word that a blank or a line break closes.
qsizetype WordEnd(QStringView text, qsizetype from)
{
    return std::find_if(text.begin() + from, text.end(), [](QChar c) { return c.isSpace(); }) - text.begin();
}

qsizetype WordStart(QStringView text, qsizetype from)
{
    while (from > 0 && !text[from - 1].isSpace())
        --from;
    return from;
}

// Each takes the candidate at `at`, sets the link's range (empty when it is none) and gives the place to go
// on.
qsizetype ScanPhone(QStringView text, qsizetype at, CTextLink& link)
{
    qsizetype end = at, digits = 0;
    for (; end < text.size() && IsPhone(text[end]); ++end)
        digits += IsDigit(text[end]);
    const QChar last = text[end - 1];
    const qsizetype length = end - at - (IsDigit(last) || kPhoneEnd.contains(last) ? 0 : 1);
    link.Start = at;
    link.End = length >= kFewestPhone && digits >= kFewestDigits ? at + length : at;
    return end;
}

// What stands around an address in a sentence is not part of it.
void DropPunctuation(QStringView text, CTextLink& link)
{
    constexpr QStringView kBefore = u"<([{\"'", kBehind = u">)]}\"',.;:!?";
    while (link.Start < link.End && kBefore.contains(text[link.Start]))
        ++link.Start;
    const auto opens = [&] { return text.mid(link.Start, link.End - link.Start).contains(u'('); };
    while (link.Start < link.End && kBehind.contains(text[link.End - 1]) &&
           !(text[link.End - 1] == u')' && opens()))
        --link.End;
}

qsizetype ScanMail(QStringView text, qsizetype at, CTextLink& link)
{
    const qsizetype end = WordEnd(text, at);
    link.Start = WordStart(text, at);
    link.End = end;
    DropPunctuation(text, link);
    if (link.End - link.Start < kFewestMail)
        link.End = link.Start;
    return end;
}

qsizetype ScanWeb(QStringView text, qsizetype at, CTextLink& link)
{
    link.Start = at;
    link.End = WordEnd(text, at);
    const qsizetype end = link.End;
    DropPunctuation(text, link);
    return end;
}
} // namespace

qsizetype FindNextLink(QStringView text, LinkKind& kind)
{
    const qsizetype web =
        Earliest(Earliest(text.indexOf(u"www."), text.indexOf(u"http:/")), text.indexOf(u"https:/"));
    const auto first =
        std::find_if(text.begin(), text.end(), [](QChar c) { return kPhoneStart.contains(c); });
    const qsizetype phone = first == text.end() ? -1 : first - text.begin();
    const qsizetype mail = text.indexOf(u'@');
    qsizetype at = web;
    kind = LinkKind::Web;
    if (IsEarlier(phone, at)) {
        at = phone;
        kind = LinkKind::Phone;
    }
    if (IsEarlier(mail, at)) {
        at = mail;
        kind = LinkKind::Mail;
    }
    return at;
}

void FindLinks(const QString& text, CTextLinkList& list, int group)
{
    const QStringView whole(text);
    qsizetype position = 0;
    while (position < whole.size()) {
        CTextLink link;
        const qsizetype found = FindNextLink(whole.mid(position), link.Kind);
        if (found < 0)
            return;
        const qsizetype at = position + found;
        position = link.Kind == LinkKind::Phone  ? ScanPhone(whole, at, link)
                   : link.Kind == LinkKind::Mail ? ScanMail(whole, at, link)
                                                 : ScanWeb(whole, at, link);
        if (link.End > link.Start) {
            link.Text = text.mid(link.Start, link.End - link.Start);
            link.Group = group;
            AddLink(list, link);
        }
    }
}

void AddLink(CTextLinkList& list, const CTextLink& link)
{
    std::erase_if(list, [&](const CTextLink& other) {
        return other.Group == link.Group && other.Start < link.End && link.Start < other.End;
    });
    list.push_back(link);
}
