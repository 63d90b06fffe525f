#include "util/text_links.h"

#include <gtest/gtest.h>

namespace
{
std::string Told(const QString& text)
{
    CTextLinkList list;
    FindLinks(text, list, 3);
    QString told;
    for (const CTextLink& link : list) {
        EXPECT_EQ(link.Text, text.mid(link.Start, link.End - link.Start));
        EXPECT_EQ(link.Group, 3);
        told += QString("%1%2:%3 ").arg("PMW"[int(link.Kind)]).arg(link.Start).arg(link.Text);
    }
    return told.toStdString();
}
} // namespace

TEST(TextLinks, FindsWhatALinkIs)
{
    const struct {
        const char *Text, *Links;
    } kCases[] = {
        {"", ""},
        {"nothing to see", ""},
        {"Call 555-12", "P5:555-12 "},
        {"12-34", ""},
        {"1-2-3--", ""}, // too few digits
        {"555-1234 now", "P0:555-1234 "},
        {"(0)30/12345678", "P6:12345678 "}, // "(0)30" is too short, a slash ends it
        {"+49 30 123 456, then *100#", "P0:+49 30 123 456 "},
        {"555123\n556124", "P0:555123 P7:556124 "},
        {"a@b", ""},
        {"a@b ann@example.org", "M4:ann@example.org "},
        {"mail ann@example.org\nor call", "M5:ann@example.org "},
        {"ann123456@example.org", "M0:ann123456@example.org "}, // the number gives way
        {"see www.example.org/x or http://a.b", "W4:www.example.org/x W25:http://a.b "},
        {"WWW.EXAMPLE.ORG", ""},
        {"https://www.example.org", "W0:https://www.example.org "},
        {"7 www.example.org", "W2:www.example.org "},
        {"ann123456-b654321@a.b", "M0:ann123456-b654321@a.b "}, // both of them
        {"www.a.org/123456", "W0:www.a.org/123456 "},
        {"(see www.a.org), <ann@a.org>; www.b.org/x_(y)", "W5:www.a.org M18:ann@a.org W30:www.b.org/x_(y) "},
        {"<(@)>.,;", ""},
        {"@@@@@", "M0:@@@@@ "},
    };
    for (const auto& c : kCases)
        EXPECT_EQ(Told(c.Text), c.Links) << c.Text;
}

TEST(TextLinks, TiesBetweenCandidates)
{
    LinkKind kind;
    EXPECT_EQ(FindNextLink(u"ab", kind), -1);
    EXPECT_EQ(FindNextLink(u"x@1", kind), 1);
    EXPECT_EQ(kind, LinkKind::Mail);
    EXPECT_EQ(FindNextLink(u"1@", kind), 0);
    EXPECT_EQ(kind, LinkKind::Phone);
    EXPECT_EQ(FindNextLink(u"http:/1", kind), 0);
    EXPECT_EQ(kind, LinkKind::Web);
}

TEST(TextLinks, OnlyThoseOfTheSameGroupGiveWay)
{
    CTextLinkList list;
    AddLink(list, {0, 4, LinkKind::Phone, "a", 1});
    AddLink(list, {0, 4, LinkKind::Phone, "b", 2});
    AddLink(list, {4, 8, LinkKind::Phone, "c", 1});
    AddLink(list, {2, 6, LinkKind::Web, "d", 1});
    QString told;
    for (const CTextLink& link : list)
        told += link.Text;
    EXPECT_EQ(told, "bd");
}

// What somebody sends may be long and of any kind. A search that took the square of it would not end.
TEST(TextLinks, LongTextsAreWalkedOnce)
{
    constexpr int kTimes = 400'000;
    const struct {
        const char *Piece, *Before;
        qsizetype Links;
    } kCases[] = {
        {"1a", "", 0}, {"a@b.cd ", "", kTimes}, {")", "www.a", 1}, {"www.", "", 1}, {"1234567x", "", kTimes},
        {"@ ", "", 0}, {"(", "a@b.cd", 1},      {"word ", "", 0},
    };
    for (const auto& c : kCases) {
        CTextLinkList list;
        FindLinks(c.Before + QString(c.Piece).repeated(kTimes), list, 3);
        EXPECT_EQ(qsizetype(list.size()), c.Links) << c.Piece;
    }
}
