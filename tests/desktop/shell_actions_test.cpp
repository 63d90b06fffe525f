#include "desktop/shell_actions.h"

#include <QDir>
#include <QTemporaryDir>
#include <QTemporaryFile>
#include <gtest/gtest.h>
#include <unistd.h>

namespace
{
struct Case {
    const char* Text;
    const char* Address;
};

class ShellActions : public testing::Test
{
protected:
    ShellActions()
    {
        SetProgramStarter([this](const QString& program, const QStringList& arguments) {
            m_started << program + " " + arguments.join('|');
            return true;
        });
    }
    ~ShellActions() override { SetProgramStarter({}); }
    QStringList m_started;
};
} // namespace

TEST_F(ShellActions, NumbersKeepWhatADialKnows)
{
    for (const Case& c : {Case{"+49 (30) 1234-56", "tel:+493012345 6"}, Case{"*100#", "tel:*100%23"},
                          Case{"12+34", "tel:1234"}, Case{"555`rm -rf`; $(x)", "tel:555"}, Case{"(-)", ""},
                          Case{"+", ""}, Case{"", ""}})
        EXPECT_EQ(CallAddress(c.Text), QByteArray(c.Address).replace(" ", "")) << c.Text;
}

TEST_F(ShellActions, MailTakesOneAddressAndNoHeaders)
{
    for (const Case& c :
         {Case{" ann@example.org ", "mailto:ann@example.org"},
          Case{"a+b@example.org", "mailto:a+b@example.org"},
          Case{"a@b.c?bcc=x@y.z&body=1", "mailto:a@b.c%3Fbcc%3Dx@y.z%26body%3D1"},
          Case{"$(id)@x", "mailto:%24%28id%29@x"}, Case{"a@b\n-x", "mailto:a@b%0A-x"}, Case{"  ", ""}})
        EXPECT_EQ(MailAddress(c.Text), c.Address) << c.Text;
}

TEST_F(ShellActions, OnlyWebAddressesGoToTheBrowser)
{
    for (const Case& c :
         {Case{"www.example.org/a?b=c", "http://www.example.org/a?b=c"},
          Case{"WWW.example.org", "http://www.example.org"},
          Case{"https://example.org/x#y", "https://example.org/x#y"}, Case{"javascript:alert(1)", ""},
          Case{"file:///etc/passwd", ""}, Case{"http:/", ""}, Case{"--help", ""}, Case{"", ""},
          Case{"http://h/';id;'$(x)`y`|z", "http://h/%27%3Bid%3B%27%24%28x%29%60y%60%7Cz"}})
        EXPECT_EQ(WebAddress(c.Text), c.Address) << c.Text;
}

TEST_F(ShellActions, EachHandsOneArgumentToTheOpener)
{
    EXPECT_TRUE(MakeCall("030 1"));
    EXPECT_TRUE(SendMail("a b@c"));
    EXPECT_FALSE(MakeCall("none"));
    EXPECT_FALSE(OpenFile("/nonexistent/file"));
    QTemporaryFile file(QDir::tempPath() + "/-a 'b' XXXXXX");
    ASSERT_TRUE(file.open());
    EXPECT_TRUE(OpenFile(file.fileName()));
    EXPECT_EQ(m_started.first(), "xdg-open tel:0301");
    EXPECT_EQ(m_started.at(1), "xdg-open mailto:a%20b@c");
    EXPECT_TRUE(m_started.last().startsWith("xdg-open file:///")) << m_started.last().toStdString();
    EXPECT_FALSE(m_started.last().mid(9).contains(' '));
}

// The whole way, with a program in the place of the desktop's: what it gets is what was asked for.
TEST(ShellActionsProcess, CharactersOfAShellMeanNothing)
{
    QTemporaryDir folder;
    const QString out = folder.path() + "/out";
    QFile script(folder.path() + "/xdg-open");
    ASSERT_TRUE(script.open(QIODevice::WriteOnly));
    script.write("#!/bin/sh\nprintf '%s\\n' \"$#\" \"$@\" >'" + out.toUtf8() + ".new'\nmv '" + out.toUtf8() +
                 ".new' '" + out.toUtf8() + "'\n");
    script.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    script.close();
    const QByteArray path = qgetenv("PATH");
    qputenv("PATH", folder.path().toUtf8() + ':' + path);
    EXPECT_TRUE(SendMail("x;touch " + folder.path() + "/hit @y"));
    qputenv("PATH", path);
    QFile answer(out);
    for (int i = 0; i < 500 && !answer.exists(); ++i)
        usleep(10000);
    ASSERT_TRUE(answer.open(QIODevice::ReadOnly));
    const QList<QByteArray> lines = answer.readAll().split('\n');
    EXPECT_EQ(lines.at(0), "1");
    EXPECT_TRUE(lines.at(1).startsWith("mailto:x%3Btouch%20%2F"));
    EXPECT_FALSE(QFile::exists(folder.path() + "/hit"));
}
