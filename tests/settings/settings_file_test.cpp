#include "settings/settings_file.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace
{
QByteArray Utf16(const QString& text)
{
    const QString marked = QChar(0xFEFF) + text;
    QByteArray bytes;
    for (const QChar c : marked)
        bytes.append(char(c.unicode() & 0xFF)).append(char(c.unicode() >> 8));
    return bytes;
}

// The model as one line: section{key=value|...}, with \n for line ends inside.
std::string Dump(const CSettingsFile& file)
{
    QString text;
    for (const QString& name : file.SectionOrder()) {
        text += name + '{';
        const CSettingsSection* section = file.FindSection(name);
        for (qsizetype i = 0; i < section->m_keyOrder.size(); ++i)
            text +=
                (i ? "|" : "") + section->m_keyOrder[i] + '=' + section->m_values.at(section->m_keyOrder[i]);
        text += '}';
    }
    return text.replace("\r", "\\r").replace("\n", "\\n").toStdString();
}

struct ParseCase {
    const char* What;
    const char* Text;
    const char* Model;
};
const ParseCase kParseCases[] = {
    {"empty", "", ""},
    {"text before the first section", "a=1\r\n;[x]\r\n", "x{}"},
    {"section that never ends", "[x\r\na=1\r\n", ""},
    {"ignored lines before a section", "a=1\r\n[S]\r\nb=2\r\n", "S{b=2}"},
    {"blanks around the equals sign", "[S]\nKey = value\n", "S{Key=value}"},
    {"comment after a value keeps its blank", "[S]\nKey=value ; note\nb=1\n", "S{Key=value |b=1}"},
    {"comment line", "[S]\n;a=1\nb=2\n", "S{b=2}"},
    {"key in a comment after a value", "[S]\na=1;b=2\nc=3\n", "S{a=1|c=3}"},
    {"semicolon first in a value", "[S]\na=;b;c\nd=1\n", "S{a=;b|d=1}"},
    {"equals sign at the end is dropped", "[S]\na=1\nb=", "S{a=1}"},
    {"blanks only at the end are dropped", "[S]\na=1\nb= \t", "S{a=1}"},
    {"empty value", "[S]\nb=\r\n", "S{b=}"},
    {"empty value behind blanks", "[S]\nb= \t\nc=1\n", "S{b=|c=1}"},
    {"value at the end is stored", "[S]\nb=1", "S{b=1}"},
    {"key at the end is dropped", "[S]\na=1\nb", "S{a=1}"},
    {"section name at the end is dropped", "[S]\na=1\n[T", "S{a=1}"},
    {"second header on the line", "[S] a=1 [T] b=2\nc=3\n", "S{a=1 [T] b=2|c=3}"},
    {"key beside the header", "[S]a=1\n", "S{a=1}"},
    {"header runs over lines", "[S\nT]a=1\n", "S\\nT{a=1}"},
    {"key runs over lines", "[S]\nabc\nd=1\n", "S{abc\\nd=1}"},
    {"key keeps what stands inside", "[S]\n a b;c\t=1\n", "S{a b;c=1}"},
    {"key loses what no name begins with", "[S]\n_-a=1\n\xE4z=2\n", "S{a=1|z=2}"},
    {"key in brackets is a section", "[S]\n a\n[T]\nb=1\n", "S{a\\n[T]\\nb=1}"},
    {"twice the same key", "[S]\na=1\nb=2\na=3\n", "S{a=3|b=2}"},
    {"case counts", "[S]\na=1\nA=2\n[s]\na=3\n", "S{a=1|A=2}s{a=3}"},
    {"empty section name", "[]a=1\n", "{a=1}"},
    {"section twice", "[S]\na=1\n[T]\n[S]\nb=2\n", "S{a=1|b=2}T{}S{a=1|b=2}"},
    {"equals signs in a value", "[S]\na==b=\n", "S{a==b=}"},
    {"spare brackets", "[S]]\n]a=1\n", "S{a=1}"},
};
} // namespace

TEST(SettingsFile, Parses)
{
    for (const ParseCase& c : kParseCases) {
        CSettingsFile wide, narrow;
        wide.LoadBytes(Utf16(QString::fromLatin1(c.Text)));
        narrow.LoadBytes(c.Text);
        EXPECT_EQ(Dump(wide), c.Model) << c.What;
        EXPECT_EQ(Dump(narrow), c.Model) << c.What << ", 8 bits";
        EXPECT_FALSE(wide.IsDirty()) << c.What;
    }
}

TEST(SettingsFile, ReadsAnyEncoding)
{
    struct {
        const char* What;
        QByteArray Bytes;
        QString Value;
    } const cases[] = {
        {"UTF-8", "[S]\nk=\xC3\xA4\xE2\x82\xAC\n", u"\u00E4\u20AC"_qs},
        {"UTF-8 with its own mark", "\xEF\xBB\xBF[S]\nk=\xC3\xA4\n", u"\u00E4"_qs},
        {"Latin-1", "[S]\nk=\xE4\xF6\n", u"\u00E4\u00F6"_qs},
        {"UTF-16 beyond the first plane", Utf16(u"[S]\nk=\U0001F382\n"_qs), u"\U0001F382"_qs},
        {"half a unit at the end counts as its low byte", Utf16(u"[S]\nk=a"_qs) + 'b', u"ab"_qs},
        {"zero ends 16 bits", Utf16(u"[S]\nk=a"_qs + QChar(u'\0') + u"b\nk=c\n"_qs), u"a"_qs},
        {"zero ends 8 bits", QByteArray("[S]\nk=a\0b\nk=c\n", 14), u"a"_qs},
    };
    for (const auto& c : cases) {
        CSettingsFile file;
        file.LoadBytes(c.Bytes);
        QString value;
        EXPECT_TRUE(file.GetString("S", "k", &value)) << c.What;
        EXPECT_EQ(value, c.Value) << c.What;
    }
}

TEST(SettingsFile, WritesItsForm)
{
    CSettingsFile file;
    file.AddSection("Empty");
    file.SetInt("General", "LastView", -2);
    file.SetBool("General", "Flag", true);
    file.SetColor("General", "Color", 0x030201);
    file.SetColor("General", "NoColor", kColorNotSet);
    file.SetRect("General", "Rect", {1, -2, 3, 4});
    file.SetPoint("General", "Point", {-5, 6});
    file.SetString("General", "LastView", u"\u20AC"_qs); // keeps its place
    EXPECT_EQ(file.ToBytes(),
              Utf16(u"\r\n[Empty]\r\n\r\n[General]\r\nLastView=\u20AC\r\nFlag=1\r\nColor=1,2,3\r\n"
                    "NoColor=[-1]\r\nRect=1,-2,3,4\r\nPoint=-5,6\r\n"_qs));
    CSettingsFile read;
    read.LoadBytes(file.ToBytes());
    EXPECT_EQ(Dump(read), Dump(file));
    EXPECT_EQ(read.ToBytes(), file.ToBytes());
}

TEST(SettingsFile, RoundTripHasItsLimits)
{
    struct {
        const char* Put;
        const char* Got;
    } const cases[] = {
        {"a;b", "a"}, {";b", ";b"},      {";b;c", ";b"}, {"  a ", "a"},
        {"", ""},     {"a\r\nb=c", "a"}, {"[T]", "[T]"},
    };
    for (const auto& c : cases) {
        CSettingsFile file, read;
        file.SetString("S", "k", c.Put);
        read.LoadBytes(file.ToBytes());
        QString value;
        EXPECT_TRUE(read.GetString("S", "k", &value));
        EXPECT_EQ(value, c.Got) << c.Put;
    }
}

TEST(SettingsFile, ConvertsValues)
{
    struct {
        const char* Text;
        qint32 Int;
        bool Bool;
        COLORREF Color;
        CSettingsRect Rect;
    } const cases[] = {
        {"1", 1, true, 1, {1, 0, 0, 0}},
        {" 1 ", 1, true, 1, {1, 0, 0, 0}},
        {"01", 1, false, 1, {1, 0, 0, 0}},
        {"-5,6", -5, false, 0x0605, {5, 6, 0, 0}},
        {"255,0,0", 255, false, 0x0000FF, {255, 0, 0, 0}},
        {"1,2", 1, false, 0x000201, {1, 2, 0, 0}},
        {"12a3,4,5", 12, false, 0x05047B, {123, 4, 5, 0}},
        {"257,2,0", 257, false, 0x000301, {257, 2, 0, 0}},
        {"[-1]", 0, false, kColorNotSet, {1, 0, 0, 0}},
        {"[-1],", 0, false, 1, {1, 0, 0, 0}},
        {"1,2,3,4,5", 1, false, 0x030201, {1, 2, 3, 4}},
        {"", 0, false, 0, {0, 0, 0, 0}},
        {"4294967298", 2147483647, false, 2, {2, 0, 0, 0}},
        {"-4294967298", -2147483647 - 1, false, 2, {2, 0, 0, 0}},
        {"+7x", 7, false, 7, {7, 0, 0, 0}},
    };
    for (const auto& c : cases) {
        CSettingsFile file;
        file.SetString("S", "k", c.Text);
        qint32 number = 77;
        bool flag = !c.Bool;
        COLORREF color = 77;
        CSettingsRect rect;
        EXPECT_TRUE(file.GetInt("S", "k", &number) && file.GetBool("S", "k", &flag));
        EXPECT_TRUE(file.GetColor("S", "k", &color) && file.GetRect("S", "k", &rect));
        EXPECT_EQ(number, c.Int) << c.Text;
        EXPECT_EQ(flag, c.Bool) << c.Text;
        EXPECT_EQ(color, c.Color) << c.Text;
        EXPECT_EQ(rect, c.Rect) << c.Text;
    }
}

TEST(SettingsFile, MissesLeaveTheTarget)
{
    CSettingsFile file;
    file.AddSection("S");
    for (const char* section : {"S", "T"}) {
        QString text = "  kept ";
        qint32 number = 5;
        bool flag = true;
        COLORREF color = 6;
        CSettingsRect rect = {1, 2, 3, 4};
        QPoint point(1, 2);
        EXPECT_FALSE(file.GetString(section, "k", &text));
        EXPECT_FALSE(file.GetInt(section, "k", &number) || file.GetBool(section, "k", &flag));
        EXPECT_FALSE(file.GetColor(section, "k", &color) || file.GetRect(section, "k", &rect));
        EXPECT_FALSE(file.GetPoint(section, "k", &point));
        EXPECT_EQ(text, "kept"); // stripped all the same
        EXPECT_EQ(number, 5);
        EXPECT_TRUE(flag);
        EXPECT_EQ(color, 6u);
        EXPECT_EQ(rect, CSettingsRect());
        EXPECT_EQ(point, QPoint());
    }
}

TEST(SettingsFile, RemovesAndKeepsOrder)
{
    CSettingsFile file;
    file.LoadBytes("[S]\na=1\nb=2\n[T]\nc=3\n[S]\nd=4\n");
    EXPECT_FALSE(file.RemoveEntry("U"));
    EXPECT_FALSE(file.IsDirty());
    EXPECT_FALSE(file.RemoveEntry("S", "x"));
    EXPECT_TRUE(file.IsDirty());
    EXPECT_TRUE(file.RemoveEntry("S", "a"));
    EXPECT_EQ(Dump(file), "S{b=2|d=4}T{c=3}S{b=2|d=4}");
    EXPECT_TRUE(file.RemoveEntry("S"));
    EXPECT_EQ(Dump(file), "T{c=3}"); // no name is left behind that a save would stumble over
    EXPECT_FALSE(file.AddSection("T"));
    EXPECT_TRUE(file.AddSection("S"));
    EXPECT_EQ(Dump(file), "T{c=3}S{}");
}

TEST(SettingsFile, LoadsSavesAndCleansUp)
{
    QTemporaryDir folder;
    const QString path = folder.filePath("new/deep/ZELVCalendar.ini");
    EXPECT_FALSE(CSettingsFile().Save()); // no path
    {
        CSettingsFile file(path);
        EXPECT_FALSE(file.IsDirty());
        file.SetInt("S", "k", 1);
        EXPECT_TRUE(file.IsDirty());
        const CSettingsFile copy = file; // a copy never writes
        EXPECT_FALSE(copy.IsDirty());
        EXPECT_FALSE(QFileInfo::exists(path));
    }
    qint32 number = 0;
    CSettingsFile file(path); // the destructor wrote it
    EXPECT_TRUE(file.GetInt("S", "k", &number));
    EXPECT_EQ(number, 1);
    file.SetInt("S", "k", 2);
    EXPECT_TRUE(file.Save());
    EXPECT_FALSE(file.IsDirty());
    EXPECT_EQ(QDir(QFileInfo(path).path()).entryList(QDir::Files).size(), 1); // nothing is left beside it
    EXPECT_FALSE(file.Load(folder.path()));                                   // a folder is no file
    EXPECT_TRUE(file.SectionOrder().isEmpty());
}

TEST(SettingsFile, FailedSaveLeavesTheOldFile)
{
    QTemporaryDir folder;
    const QString path = folder.filePath("f.ini");
    CSettingsFile file(path);
    file.SetInt("S", "k", 1);
    ASSERT_TRUE(file.Save());
    const QString block = folder.filePath("block");
    ASSERT_TRUE(QFile(block).open(QIODevice::WriteOnly));
    file.SetInt("S", "k", 2);
    EXPECT_FALSE(file.Save(block + "/f.ini")); // a file stands where the folder should be
    EXPECT_FALSE(file.IsDirty());
    CSettingsFile old(path);
    qint32 number = 0;
    EXPECT_TRUE(old.GetInt("S", "k", &number));
    EXPECT_EQ(number, 1);
}

// Whatever the bytes are: what one load made of them a save keeps.
TEST(SettingsFile, AnyBytesSettle)
{
    quint32 seed = 1;
    const char alphabet[] = "[]=;\r\n \tab1,\xE4-";
    for (int round = 0; round < 2000; ++round) {
        QByteArray bytes = round % 2 ? QByteArray("\xFF\xFE", 2) : QByteArray("[S]\n");
        for (int i = 0; i < 40; ++i) {
            seed = seed * 1664525u + 1013904223u;
            bytes += alphabet[(seed >> 16) % (sizeof alphabet - 1)];
            if (round % 2)
                bytes += '\0';
        }
        CSettingsFile first, second;
        first.LoadBytes(bytes);
        second.LoadBytes(first.ToBytes());
        ASSERT_EQ(Dump(second), Dump(first)) << bytes.toHex().toStdString();
    }
}
