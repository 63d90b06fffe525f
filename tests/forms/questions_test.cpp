#include "forms/menu_bars.h"
#include "forms/message_dialog.h"
#include "forms/two_choice_dialog.h"
#include "forms_fixture.h"
#include "touch/device_pixels.h"
#include "util/string_ids.h"
#include "util/string_store.h"

namespace
{
using Questions = CFormsTest;

CTwoChoiceDialog MakeQuestion()
{
    return {GetString(StrDeleteCaption), GetString(StrDeleteSeriesQuestion),
            GetString(StrOccurrence),    GetString(StrDeleteOccurrence),
            GetString(StrSeries),        GetString(StrDeleteSeries)};
}

void Drag(QWidget& widget, QPoint from, QPoint to)
{
    QTest::mousePress(&widget, Qt::LeftButton, {}, from);
    QTest::mouseMove(&widget, to);
    QTest::mouseRelease(&widget, Qt::LeftButton, {}, to);
}
} // namespace

TEST_F(Questions, ChoicesByFingerAndKey)
{
    using Act = std::function<void(CTwoChoiceDialog&)>;
    const auto keys = [](QList<Qt::Key> list) {
        return [list](CTwoChoiceDialog& d) {
            for (const Qt::Key key : list)
                QTest::keyClick(&d, key);
        };
    };
    const auto centre = [](CTwoChoiceDialog& d, int n) { return d.Cells().CellRect(n).center(); };
    const struct {
        const char* Name;
        Act Do;
        int Result;
    } ways[] = {
        {"tap 1", [&](CTwoChoiceDialog& d) { Click(d, centre(d, 0)); }, 1},
        {"tap 2", [&](CTwoChoiceDialog& d) { Click(d, centre(d, 1)); }, 2},
        {"key 1", keys({Qt::Key_1}), 1},
        {"key 2", keys({Qt::Key_2}), 2},
        {"Enter", keys({Qt::Key_Return}), 1},
        {"right, Enter", keys({Qt::Key_Right, Qt::Key_Return}), 2},
        {"left, Enter", keys({Qt::Key_Left, Qt::Key_Enter}), 2},
        {"around", keys({Qt::Key_Right, Qt::Key_Down, Qt::Key_Right, Qt::Key_Select}), 1},
        {"Escape", keys({Qt::Key_Escape}), 0},
        {"F1", keys({Qt::Key_F1}), 0}, // the one key is "Cancel"
        {"F2", keys({Qt::Key_F2}), 0},
        {"soft key", [&](CTwoChoiceDialog& d) { Click(d, KeyCentre(d, 0)); }, 0},
        {"key 3", keys({Qt::Key_3, Qt::Key_0}), kLeftOpen},
        {"question",
         [](CTwoChoiceDialog& d) {
             Click(d, {60, 40});
         },
         kLeftOpen},
        {"drag off",
         [&](CTwoChoiceDialog& d) {
             Drag(d, centre(d, 0), {120, 40});
         },
         kLeftOpen},
        {"drag over", [&](CTwoChoiceDialog& d) { Drag(d, centre(d, 0), centre(d, 1)); }, kLeftOpen},
    };
    for (const auto& way : ways) {
        CTwoChoiceDialog question = MakeQuestion();
        EXPECT_EQ(Run(question, [&] { way.Do(question); }), way.Result) << way.Name;
    }
    EXPECT_EQ(Window.Events, 0);
}

TEST_F(Questions, CellsStandInsideEveryPage)
{
    for (const int density : {96, 192, 384}) {
        for (const QSize size : {QSize(240, 320), QSize(320, 240), QSize(700, 400), QSize(180, 160)}) {
            ForceDensity(density);
            g_ScreenMetrics.Init(density, size);
            const int k = density / 96;
            Window.resize(size * k);
            CTwoChoiceDialog question = MakeQuestion();
            Run(question, [&] {
                const QRect client = question.Layout().Client;
                for (const int n : {0, 1}) {
                    const QRect cell = question.Cells().CellRect(n);
                    EXPECT_TRUE(client.contains(cell)) << density << ' ' << size.width();
                    EXPECT_GE(cell.width(), 40 * k);
                }
                if (size.height() >= 240) {
                    EXPECT_GE(question.Cells().CellRect(0).height(),
                              question.Cells().HeightFor(client.width() - 20 * k));
                }
            });
        }
    }
    ForceDensity(-1);
}

TEST_F(Questions, MessagesAnswer)
{
    using Kind = CMessageDialog::Kind;
    const struct {
        const char* Name;
        Kind What;
        QList<Qt::Key> Keys;
        int Result;
    } ways[] = {
        {"Enter is the first key", Kind::Question, {Qt::Key_Return}, kAnswerYes},
        {"right, Enter", Kind::Question, {Qt::Key_Right, Qt::Key_Right, Qt::Key_Return}, kAnswerNo},
        {"and back", Kind::Question, {Qt::Key_Right, Qt::Key_Left, Qt::Key_Return}, kAnswerYes},
        {"F1", Kind::Question, {Qt::Key_F1}, kAnswerYes},
        {"F2", Kind::Question, {Qt::Key_F2}, kAnswerNo},
        {"Escape is no", Kind::Question, {Qt::Key_Escape}, kAnswerNo},
        {"others", Kind::Question, {Qt::Key_Up, Qt::Key_Down, Qt::Key_1, Qt::Key_Y}, kLeftOpen},
        {"OK", Kind::Warning, {Qt::Key_Right, Qt::Key_Return}, kAnswerOk},
        {"OK by Escape", Kind::Information, {Qt::Key_Escape}, kAnswerOk},
    };
    for (const auto& way : ways) {
        CMessageDialog message(QStringLiteral("Text"), QStringLiteral("Caption"), way.What);
        EXPECT_EQ(Run(message,
                      [&] {
                          for (const Qt::Key key : way.Keys)
                              QTest::keyClick(&message, key);
                      }),
                  way.Result)
            << way.Name;
    }
    for (const int n : {0, 1}) {
        CMessageDialog message(QStringLiteral("Text"), QStringLiteral("Caption"), Kind::Question);
        EXPECT_EQ(Run(message, [&] { Click(message, KeyCentre(message, n)); }),
                  n == 0 ? kAnswerYes : kAnswerNo);
    }
}

TEST_F(Questions, ALongMessageScrollsToItsEnd)
{
    for (const QSize size : {QSize(240, 320), QSize(700, 400)}) {
        Window.resize(size);
        CMessageDialog message(QStringLiteral("word ").repeated(600), QStringLiteral("Caption"),
                               CMessageDialog::Kind::Question);
        Run(message, [&] {
            const CTouchNavigator& touch = message.Navigator();
            const int end = touch.Height() - touch.ContentHeight();
            EXPECT_LT(end, -400);
            EXPECT_EQ(message.Layout().Client.height(), touch.Height());
            QTest::keyClick(&message, Qt::Key_Down);
            EXPECT_LT(touch.Scroll(), 0);
            for (int n = 0; n < 2000 && touch.Scroll() > end; ++n)
                QTest::keyClick(&message, Qt::Key_Down);
            EXPECT_EQ(touch.Scroll(), end);
            QWheelEvent up(QPointF(5, 90), QPointF(5, 90), {}, {0, 120}, Qt::NoButton, {}, Qt::NoScrollPhase,
                           false);
            QCoreApplication::sendEvent(&message, &up);
            EXPECT_GT(touch.Scroll(), end);
            const int before = touch.Scroll();
            Drag(message, message.Layout().Client.center(), message.Layout().Client.center() + QPoint(0, 60));
            EXPECT_GT(touch.Scroll(), before);
        });
    }
    CMessageDialog message(QStringLiteral("Short"), QStringLiteral("Caption"),
                           CMessageDialog::Kind::Question);
    Run(message, [&] {
        QTest::keyClick(&message, Qt::Key_Down);
        EXPECT_EQ(message.Navigator().Scroll(), 0);
    });
}

TEST_F(Questions, ScreenReadersPressCells)
{
    CTwoChoiceDialog question = MakeQuestion();
    EXPECT_EQ(Run(question, [&] {
        QAccessibleInterface* const page = QAccessible::queryAccessibleInterface(&question);
        QAccessibleInterface* const cell = page->child(1);
        EXPECT_EQ(cell->text(QAccessible::Name), question.Cells().GetCell(1).Text);
        EXPECT_EQ(cell->rect(), question.Cells().CellRect(1).translated(question.mapToGlobal(QPoint(0, 0))));
        EXPECT_FALSE(cell->state().selected);
        cell->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    }), 2);
}
