#include "shell/question.h"
#include "shell_fixture.h"

#include <QMessageBox>
#include <QScreen>
#include <QTimer>

namespace
{
using Question = ShellFixture;
}

TEST_F(Question, ButtonsStayInReachWhateverTheTextSays)
{
    Start().show();
    const QString end = " ?";
    const struct {
        const char* What;
        QString Subject;
        bool Whole; // shows as it is
    } cases[] = {{"short", "call", true},
                 {"two lines", "call\nhome", true},
                 {"words", QString("word ").repeated(2000), false},
                 {"one word", QString(10000, u'x'), false},
                 {"lines", QString("a\n").repeated(500), false},
                 {"pairs", QString::fromUcs4(U"\U0001F389").repeated(3000), false},
                 {"pairs, shifted", "a" + QString::fromUcs4(U"\U0001F389").repeated(3000) + "a", false}};
    for (const auto& c : cases) {
        QString shown;
        QSize size;
        QTimer::singleShot(0, [&] {
            auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
            ASSERT_TRUE(box) << c.What;
            shown = box->text();
            size = box->size();
            box->reject();
        });
        EXPECT_FALSE(AskYesNo(m_frame.get(), c.Subject + end, "Delete?")) << c.What;
        const QSize screen = m_frame->screen()->availableSize();
        EXPECT_TRUE(size.width() <= screen.width() && size.height() <= screen.height() / 2)
            << c.What << ' ' << size.width() << 'x' << size.height();
        EXPECT_TRUE(shown.endsWith(end)) << c.What;
        EXPECT_EQ(shown == c.Subject + end, c.Whole) << c.What;
        EXPECT_TRUE(shown.isValidUtf16()) << c.What;
    }
}
