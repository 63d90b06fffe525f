// Lines and components out of files as they come.
#include "interchange/component_reader.h"
#include "interchange/property_line.h"

#include <gtest/gtest.h>

namespace
{
// Reads a text in blocks of that many bytes.
CLineReader::ReadBytes BytesOfText(const std::string& text, size_t block = 1 << 16)
{
    return [text, block, at = size_t(0)](char* buffer, qint64 size) mutable {
        const size_t got = std::min({block, size_t(size), text.size() - at});
        std::copy_n(text.data() + at, got, buffer);
        at += got;
        return qint64(got);
    };
}

std::string Lines(const std::string& text, size_t block)
{
    CLineReader reader(BytesOfText(text, block));
    CTextLine line;
    std::string all;
    while (reader.Next(line))
        all += std::to_string(line.Number) + "=" + line.Text + "|";
    return all;
}

struct CRead {
    std::string Components, Told;
    qint64 LeftOut = 0;
    bool SawCalendar = false;
};

CRead Components(const std::string& text)
{
    CRead read;
    CImportReport report([&](int line, const QString& what) {
        read.Told += std::to_string(line) + ":" + what.toStdString() + "|";
    });
    CComponentReader reader(BytesOfText(text), report);
    CComponent component;
    while (reader.Next(component)) {
        read.Components += component.Name + "@" + std::to_string(component.FirstLine) + "(";
        for (const CComponent::Line& line : component.Lines)
            read.Components += std::string(component.LineText(line).substr(0, 40)) + ",";
        read.Components += ")";
    }
    read.LeftOut = report.LeftOutCount();
    read.SawCalendar = reader.SawCalendar();
    return read;
}

std::string Utf16(const std::u16string& text, bool bigEndian)
{
    std::string bytes = bigEndian ? "\xFE\xFF" : "\xFF\xFE";
    for (const char16_t c : text) {
        const char low = char(c & 0xFF), high = char(c >> 8);
        bytes += bigEndian ? std::string{high, low} : std::string{low, high};
    }
    return bytes;
}
} // namespace

TEST(LineReader, UnfoldsWhateverTheBlocks)
{
    const struct {
        const char* Name;
        std::string Text;
        const char* Lines;
    } kCases[] = {
        {"CR LF", "A:1\r\nB:2\r\n", "1=A:1|2=B:2|"},
        {"LF, no last one", "A:1\nB:2", "1=A:1|2=B:2|"},
        {"CR", "A:1\rB:2\r", "1=A:1|2=B:2|"},
        {"folds", "A:1\r\n 2\r\n\t3\r\nB:4\r\n", "1=A:123|4=B:4|"},
        {"right after the name", "A\r\n :1\r\nB:2\r\n", "1=A:1|3=B:2|"},
        {"blank lines", "\r\n\r\nA:1\r\n\r\n\r\nB:2\r\n\r\n", "3=A:1|6=B:2|"},
        {"blank lines within folds", "A:1\n\n 2\n\n\n 3\nB:4\n", "1=A:123|7=B:4|"},
        {"an empty fold", "A:1\n \n 2\n", "1=A:12|"},
        {"NUL",
         std::string("A:1\0"
                     "2\nB:3\n",
                     9),
         "1=A:12|2=B:3|"},
        {"UTF-8 mark",
         "\xEF\xBB\xBF"
         "A:1\n",
         "1=A:1|"},
        {"fold inside a character", "A:\xC3\n \xBC\n", "1=A:\xC3\xBC|"},
        {"Latin-1", "A:\xFC\nB:\xC3\xBC\n", "1=A:\xC3\xBC|2=B:\xC3\xBC|"},
        {"starts with a blank", " A:1\nB:2\n", "1= A:1|2=B:2|"},
        {"nothing", "", ""},
        {"only ends", "\r\n\n\r", ""},
        {"UTF-16", Utf16(u"A:\u00FC\r\nB:2\r\n", false), "1=A:\xC3\xBC|2=B:2|"},
        {"UTF-16 the other way", Utf16(u"A:\u00FC\r\n \U0001F600\r\n", true),
         "1=A:\xC3\xBC\xF0\x9F\x98\x80|"},
    };
    for (const auto& c : kCases)
        for (const size_t block : {1, 2, 3, 7, 4096})
            EXPECT_EQ(Lines(c.Text, block), c.Lines) << c.Name << " in blocks of " << block;
}

TEST(ComponentReader, CutsStreamsWithFaults)
{
    const std::string event = "BEGIN:VEVENT\nUID:a\nEND:VEVENT\n";
    const struct {
        const char* Name;
        std::string Text;
        const char* Components;
        qint64 LeftOut;
    } kCases[] = {
        {"plain", "BEGIN:VCALENDAR\n" + event + "END:VCALENDAR\n", "VEVENT@2(UID:a,)", 0},
        {"mixed case", "begin:vCalendar\nBegin:vEvent\nuid:a\nEND:VEVENT \nend:VCALENDAR\n",
         "VEVENT@2(uid:a,)", 0},
        {"several calendars",
         "BEGIN:VCALENDAR\n" + event + "END:VCALENDAR\nBEGIN:VCALENDAR\n" + event + "END:VCALENDAR\n",
         "VEVENT@2(UID:a,)VEVENT@7(UID:a,)", 0},
        {"no calendar around", event, "VEVENT@1(UID:a,)", 0},
        {"within", "BEGIN:VEVENT\nUID:a\nBEGIN:VALARM\nX:1\nEND:VALARM\nEND:VEVENT\n",
         "VEVENT@1(UID:a,BEGIN:VALARM,X:1,END:VALARM,)", 0},
        {"never closed", "BEGIN:VCALENDAR\nBEGIN:VEVENT\nUID:b\n" + event + "END:VCALENDAR\n",
         "VEVENT@4(UID:a,)", 1},
        {"cut", "BEGIN:VCALENDAR\n" + event + "BEGIN:VEVENT\nUID:cu", "VEVENT@2(UID:a,)", 1},
        {"alarm never closed", "BEGIN:VEVENT\nBEGIN:VALARM\nX:1\nEND:VEVENT\n" + event,
         "VEVENT@1(BEGIN:VALARM,X:1,END:VALARM,)VEVENT@5(UID:a,)", 0},
        {"END alone", "BEGIN:VCALENDAR\nEND:VEVENT\n" + event + "END:VTODO\nEND:VCALENDAR\n",
         "VEVENT@3(UID:a,)", 0},
        {"a task", "BEGIN:VTODO\nUID:t\nEND:VTODO\n" + event, "VTODO@1(UID:t,)VEVENT@4(UID:a,)", 0},
        {"not wanted", "BEGIN:VJOURNAL\nUID:t\nEND:VJOURNAL\nBEGIN:VJOURNAL\nUID:t\nEND:VJOURNAL\n" + event,
         "VEVENT@7(UID:a,)", 2},
        {"unknown around", "BEGIN:X-BOX\nBEGIN:X-BOX\n" + event + "END:X-BOX\nEND:X-BOX\n" + event,
         "VEVENT@3(UID:a,)VEVENT@8(UID:a,)", 1},
    };
    for (const auto& c : kCases) {
        const CRead read = Components(c.Text);
        EXPECT_EQ(read.Components, c.Components) << c.Name;
        EXPECT_EQ(read.LeftOut, c.LeftOut) << c.Name << ": " << read.Told;
        EXPECT_TRUE(read.SawCalendar) << c.Name;
    }
    for (const char* text : {"", "<html>\n<body>BEGIN\n", "BEGIN:\n", "just words"})
        EXPECT_FALSE(Components(text).SawCalendar) << text;
}

TEST(ComponentReader, HoldsNoMoreThanItsLimits)
{
    const std::string good = "BEGIN:VEVENT\nUID:a\nEND:VEVENT\n";
    std::string nested = "BEGIN:VEVENT\nUID:deep\n";
    for (int n = 0; n < 10000; ++n)
        nested += "BEGIN:X-LEVEL\n";
    for (int n = 0; n < 10000; ++n)
        nested += "END:X-LEVEL\n";
    const struct {
        std::string Text;
        size_t MostBytes;
        int LeftOut;
    } kCases[] = {
        {"BEGIN:VEVENT\nSUMMARY:" + std::string(10'000'000, 'x') + "\nUID:b\nEND:VEVENT\n", 300 << 10, 1},
        {"BEGIN:VEVENT\nATTACH:" + std::string(5'000'000, 'x') + "\nEND:VEVENT\n", 6 << 20, 0},
        {"BEGIN:VEVENT\nATTACH:" + std::string(9'000'000, 'x') + "\nUID:b\nEND:VEVENT\n", 1 << 10, 1},
        {nested + "END:VEVENT\n", 4 << 10, 1},
    };
    for (const auto& c : kCases) {
        int leftOut = 0;
        CImportReport report([&](int, const QString&) { ++leftOut; });
        CComponentReader reader(BytesOfText(c.Text + good), report);
        CComponent component;
        ASSERT_TRUE(reader.Next(component));
        EXPECT_LE(component.Text.size(), c.MostBytes) << c.Text.substr(0, 30);
        EXPECT_EQ(leftOut, c.LeftOut) << c.Text.substr(0, 30);
        ASSERT_TRUE(reader.Next(component));
        EXPECT_EQ(component.Text, "UID:a\n") << c.Text.substr(0, 30);
    }
}

TEST(ComponentReader, MergesNeighbouringListsOfDates)
{
    const CRead read = Components(
        "BEGIN:VEVENT\nEXDATE:1\nEXDATE:2\nEXDATE;TZID=X:3\nEXDATE;TZID=X:4\nRDATE:5\nEND:VEVENT\n");
    EXPECT_EQ(read.Components, "VEVENT@1(EXDATE:1,2,EXDATE;TZID=X:3,4,RDATE:5,)");
}

TEST(PropertyLine, TakesPartsApart)
{
    const struct {
        const char* Line;
        bool Valid;
        const char *Name, *Value, *Cn;
    } kCases[] = {
        {"SUMMARY:a:b;c", true, "SUMMARY", "a:b;c", ""},
        {"ATTENDEE;CN=\"Doe; John: x, y\";ROLE=CHAIR:mailto:j@d", true, "ATTENDEE", "mailto:j@d",
         "Doe; John: x, y"},
        {"ATTENDEE;ROLE=CHAIR;cn=Joe:mailto:j@d", true, "ATTENDEE", "mailto:j@d", "Joe"},
        {"ATTENDEE;CN=\"never closed:mailto:j@d", true, "ATTENDEE", "mailto:j@d", "\"never closed"},
        {"A;X:", true, "A", "", ""},
        {"no colon at all", false, "", "", ""},
        {"two words:x", false, "two words", "x", ""},
        {":x", false, "", "x", ""},
    };
    for (const auto& c : kCases) {
        const CPropertyLine line(c.Line);
        EXPECT_EQ(line.IsValid, c.Valid) << c.Line;
        if (!c.Valid)
            continue;
        EXPECT_EQ(line.Name, c.Name) << c.Line;
        EXPECT_EQ(line.Value, c.Value) << c.Line;
        EXPECT_EQ(line.Parameter("CN"), c.Cn) << c.Line;
    }
    EXPECT_EQ(TextOf("a\\, b\\; c\\\\ d\\ne\\Nf\\"), QStringLiteral("a, b; c\\ d\ne\nf\\"));
    EXPECT_EQ(TextListOf("one, two\\, three,,four", 10),
              QStringList({QStringLiteral("one"), QStringLiteral("two, three"), QStringLiteral("four")}));
    EXPECT_EQ(Tidy(QStringLiteral("a\r\nb\tc\x01"), 100, true), QStringLiteral("a b\tc "));
    EXPECT_EQ(Tidy(QStringLiteral("\U0001F600\U0001F600"), 3, true), QStringLiteral("\U0001F600"));
}
