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

// Where a text or a character comes next, while one walks on: each is looked for only once.
class CNextPlaces
{
public:
    explicit CNextPlaces(QStringView text) : m_text(text) {}
    // The first candidate from there on; -1 without one.
    qsizetype Candidate(qsizetype from, LinkKind& kind);

private:
    template <typename Search> qsizetype Next(qsizetype& place, qsizetype from, Search search)
    {
        if (place != -1 && place < from)
            place = search(from);
        return place;
    }
    QStringView m_text;
    qsizetype m_web[3] = {-2, -2, -2}, m_phone = -2, m_mail = -2; // -1: no more
};

// `position` comes strictly before `other`; -1 is nowhere.
bool IsEarlier(qsizetype position, qsizetype other)
{
    return position >= 0 && (other < 0 || position < other);
}

qsizetype CNextPlaces::Candidate(qsizetype from, LinkKind& kind)
{
    static constexpr QStringView kWebStarts[] = {u"www.", u"http:/", u"https:/"};
    qsizetype at = -1;
    kind = LinkKind::Web;
    for (size_t i = 0; i < std::size(kWebStarts); ++i) {
        const qsizetype web =
            Next(m_web[i], from, [&](qsizetype start) { return m_text.indexOf(kWebStarts[i], start); });
        at = IsEarlier(web, at) ? web : at;
    }
    const qsizetype phone = Next(m_phone, from, [&](qsizetype start) {
        const auto first = std::find_if(m_text.begin() + start, m_text.end(),
                                        [](QChar c) { return kPhoneStart.contains(c); });
        return first == m_text.end() ? -1 : first - m_text.begin();
    });
    if (IsEarlier(phone, at)) {
        at = phone;
        kind = LinkKind::Phone;
    }
    const qsizetype mail = Next(m_mail, from, [&](qsizetype start) { return m_text.indexOf(u'@', start); });
    if (IsEarlier(mail, at)) {
        at = mail;
        kind = LinkKind::Mail;
    }
    return at;
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
    const qsizetype opening = text.indexOf(u'(', link.Start);
    const auto closes = [&](qsizetype at) { return text[at] == u')' && opening >= 0 && opening < at; };
    while (link.Start < link.End && kBehind.contains(text[link.End - 1]) && !closes(link.End - 1))
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
    return CNextPlaces(text).Candidate(0, kind);
}

void FindLinks(const QString& text, CTextLinkList& list, int group)
{
    const QStringView whole(text);
    CNextPlaces places(whole);
    qsizetype position = 0;
    while (position < whole.size()) {
        CTextLink link;
        const qsizetype at = places.Candidate(position, link.Kind);
        if (at < 0)
            return;
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
    // From the end: links of a group come in the order of their ends.
    for (auto other = list.end(); other != list.begin();) {
        --other;
        if (other->Group != link.Group)
            continue;
        if (other->End <= link.Start)
            break;
        if (other->Start < link.End)
            other = list.erase(other);
    }
    list.push_back(link);
}
