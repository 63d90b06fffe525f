#include "forms/contact_picker.h"
#include "forms/custom_reminder_dialog.h"
#include "forms/extended_text_entry_dialog.h"
#include "forms/my_text_picker.h"
#include "forms/number_list_dialog.h"
#include "forms/reminder_values_dialog.h"
#include "forms/text_edit_dialog.h"
#include "forms_fixture.h"
#include "pim/pim_store.h"
#include "platform/sqlite_volume.h"
#include "touch/touch_menu.h"

#include <QLineEdit>
#include <QPlainTextEdit>
#include <QTemporaryDir>

namespace
{
using Aid = CExtendedTextEntryDialog;

class TextAids : public CFormsTest
{
protected:
    void SetUp() override
    {
        CFormsTest::SetUp();
        g_Settings.General.SlidingScreens = 0;
        g_Settings.m_installFolder = Folder.path();
        g_Settings.m_myTextSubjects = {"Lunch", "Call", "Sport"};
    }
    void TearDown() override
    {
        g_Settings.m_myTextSubjects.clear();
        g_Settings.m_installFolder.clear();
        CFormsTest::TearDown();
    }
    // What the user does in the dialog that opens next; nested calls play the innermost first.
    template <typename Dialog> void Then(QWidget& context, std::function<void(Dialog&)> act)
    {
        QTimer::singleShot(0, &context, [this, act] {
            auto* dialog = dynamic_cast<Dialog*>(CFormDialog::Current());
            ASSERT_TRUE(dialog);
            act(*dialog);
            ++Played;
        });
    }
    void ThenMenu(QWidget& context, const QString& row)
    {
        QTimer::singleShot(0, &context, [this, row] {
            CTouchMenu* menu = CTouchMenu::Current();
            ASSERT_TRUE(menu);
            for (int n = 0; n < menu->GetRowCount(); ++n) {
                if (menu->GetRow(n).Text != row)
                    continue;
                ++Played;
                return menu->PressPart(n);
            }
            menu->Choose(-1);
            ADD_FAILURE() << "no row " << row.toStdString();
        });
    }
    QTemporaryDir Folder;
    int Played = 0;
};

struct CInsertCase {
    const char* name;
    QString text;
    int start, end;
    QString result;
    int caret;
};
} // namespace

TEST_F(TextAids, APhraseGoesToTheCaretOrTheEnd)
{
    const CInsertCase cases[] = {
        {"empty", "", 0, 0, "Lunch ", 6},
        {"caret", "go home", 3, 3, "go Lunch home", 9},
        {"selected word stays", "go home", 3, 7, "go homeLunch ", 9},
        {"unknown caret", "go ", -1, -1, "go Lunch ", 6},
        {"line ends count as one", "a\r\nb", 2, 2, "a\nLunch b", 8},
    };
    for (const CInsertCase& c : cases) {
        SCOPED_TRACE(c.name);
        Aid dialog(c.text, c.start, c.end, Aid::kSubject);
        const int result = Run(dialog, [&] {
            Then<CMyTextPicker>(dialog,
                                [](CMyTextPicker& picker) { QTest::keyClick(&picker, Qt::Key_Return); });
            QTest::keyClick(&dialog, Qt::Key_2);
        });
        EXPECT_EQ(result, CFormDialog::kDone);
        EXPECT_EQ(dialog.GetText(), c.result);
        EXPECT_EQ(dialog.GetCaret(), c.caret);
    }
    EXPECT_EQ(Played, 5);
}

TEST_F(TextAids, ACancelledAidClosesTheMenuToo)
{
    Aid dialog("x", 1, 1, Aid::kSubject);
    const int result = Run(dialog, [&] {
        Then<CMyTextPicker>(dialog, [](CMyTextPicker& picker) { QTest::keyClick(&picker, Qt::Key_Escape); });
        Click(dialog, dialog.Cells().CellRect(1).center());
    });
    EXPECT_EQ(result, CFormDialog::kCancelled);
    EXPECT_EQ(dialog.GetText(), "x");
    EXPECT_EQ(Played, 1);
}

TEST_F(TextAids, FullScreenTextComesBackAsTheFieldTakesIt)
{
    const struct {
        Aid::Mode mode;
        const char* result;
    } cases[] = {{Aid::kSubject, "one two"}, {Aid::kLocation, "one two"}, {Aid::kNote, "one\ntwo"}};
    for (const auto& c : cases) {
        Aid dialog("one", -1, -1, c.mode);
        const int result = Run(dialog, [&] {
            Then<CTextEditDialog>(dialog, [](CTextEditDialog& page) {
                QTest::keyClick(page.Edit(), Qt::Key_Return);
                QTest::keyClicks(page.Edit(), "two");
                QTest::keyClick(page.Edit(), Qt::Key_F1);
            });
            QTest::keyClick(&dialog, Qt::Key_1);
        });
        EXPECT_EQ(result, CFormDialog::kDone);
        EXPECT_EQ(dialog.GetText(), c.result);
        EXPECT_EQ(dialog.GetCaret(), 7);
    }
}

TEST_F(TextAids, TheEditorLosesNothing)
{
    const QString texts[] = {
        QStringLiteral("emoji \U0001F469\u200D\U0001F4BB end"),
        QStringLiteral("\u05E9\u05DC\u05D5\u05DD \u0645\u0631\u062D\u0628\u0627 abc"),
        QStringLiteral("e\u0301 o\u0308"),
        QStringLiteral("hard\u00A0blank"),
        QStringLiteral("one\r\ntwo\r\n"),
        QStringLiteral("one\ntwo\n\n"),
        QString(10000, u'\u00E4'),
    };
    for (const QString& text : texts) {
        CTextEditDialog page("Note", text);
        EXPECT_EQ(page.GetText(), text);
        Run(page, [&] {
            QTest::keyClick(page.Edit(), Qt::Key_X);
            const QImage shown = page.Snapshot();
            EXPECT_EQ(shown.size(), QSize(240, 320));
        });
        EXPECT_EQ(page.GetText(), text + "x");
    }
}

TEST_F(TextAids, ThePastedLineEndsAreThoseOfTheNote)
{
    CTextEditDialog page("Note", "a\r\nb", 1, 3);
    Run(page, [&] {
        EXPECT_EQ(page.Edit()->textCursor().selectedText().size(), 2);
        page.Edit()->insertPlainText("1\r\n2\n3\r4");
    });
    EXPECT_EQ(page.GetText(), "a1\r\n2\r\n3\r\n4");
}

TEST_F(TextAids, PhrasesAreKeptInOrder)
{
    QStringList kept;
    {
        CMyTextPicker picker(Aid::kSubject);
        Run(picker, [&] {
            const auto menu = [&](const QString& row) {
                ThenMenu(picker, row);
                Click(picker, KeyCentre(picker, 1));
            };
            menu("Move Down");
            EXPECT_EQ(picker.GetSelected(), 1);
            EXPECT_EQ(picker.GetText(), "Lunch");
            menu("Move Down");
            menu("Move Up");
            menu("Remove Item");
            EXPECT_EQ(picker.Phrases(), QStringList({"Call", "Sport"}));
            ThenMenu(picker, "Edit Item");
            Then<CMyTextPicker>(picker, [&](CMyTextPicker&) {
                Then<CTextPromptDialog>(picker, [](CTextPromptDialog& prompt) {
                    QTest::keyClicks(prompt.Edit(), "!");
                    QTest::keyClick(prompt.Edit(), Qt::Key_Return);
                });
            });
            Click(picker, KeyCentre(picker, 1));
            QTest::keyClick(&picker, Qt::Key_Escape);
        });
        kept = picker.Phrases();
    }
    EXPECT_EQ(kept, QStringList({"Call", "Sport!"}));
    EXPECT_EQ(g_Settings.m_myTextSubjects, kept) << "a cancelled picker keeps its changes as well";
}

TEST_F(TextAids, ANumberKeyTakesThePhraseAtItsPosition)
{
    CMyTextPicker picker(Aid::kSubject);
    EXPECT_EQ(Run(picker, [&] { QTest::keyClick(&picker, Qt::Key_3); }), CFormDialog::kDone);
    EXPECT_EQ(picker.GetText(), "Sport");
    CMyTextPicker other(Aid::kSubject);
    EXPECT_EQ(Run(other, [&] { QTest::keyClick(&other, Qt::Key_4); }), kLeftOpen);
}

// ---- reminders

TEST_F(TextAids, ACustomReminderIsNormalized)
{
    const struct {
        int minutes;
        const char* typed[3]; // days, hours, minutes; null: left alone
        int result;
    } cases[] = {
        {0, {"1", "25", "0"}, 2 * 1440 + 60},  {0, {"2", "30", "90"}, 3 * 1440 + 7 * 60 + 30},
        {95, {nullptr, nullptr, nullptr}, 95}, {0, {nullptr, nullptr, "90"}, 90},
        {2880, {"0", nullptr, nullptr}, 0},    {1505, {"", "", ""}, 0},
        {-1, {nullptr, "2", nullptr}, 120},    {0, {"9999999", nullptr, nullptr}, 2147483647},
    };
    for (size_t n = 0; n < 2 * std::size(cases); ++n) {
        const auto& c = cases[n / 2];
        const bool byTab = n % 2 != 0; // else by finger
        CCustomReminderDialog dialog(c.minutes);
        const int result = Run(dialog, [&] {
            EXPECT_EQ(dialog.GetSelectedRow(), 0);
            for (int row = 0; row < 3; ++row) {
                auto* edit = dynamic_cast<QLineEdit*>(dialog.focusWidget());
                ASSERT_TRUE(edit);
                if (c.typed[row]) {
                    edit->selectAll();
                    QTest::keyClick(edit, Qt::Key_Delete);
                    QTest::keyClicks(edit, c.typed[row]);
                }
                if (byTab)
                    QTest::keyClick(edit, Qt::Key_Tab);
                else
                    dialog.SelectRow((row + 1) % 3);
            }
            EXPECT_EQ(dialog.GetSelectedRow(), 0);
            EXPECT_EQ(dialog.Rows()[2].Value.toInt(), c.result % 60);
            EXPECT_EQ(dialog.Rows()[1].Value.toInt(), c.result / 60 % 24);
            EXPECT_EQ(dialog.Rows()[0].Value.toInt(), c.result / 1440);
            QTest::keyClick(dialog.focusWidget(), Qt::Key_F1);
        });
        EXPECT_EQ(result, CFormDialog::kDone);
        EXPECT_EQ(dialog.GetMinutes(), c.result) << "by Tab " << byTab;
    }
}

TEST_F(TextAids, ReminderValuesAreSetOneByOne)
{
    CReminderValuesDialog::CValues values = CReminderValuesDialog::OfSettings(g_Settings);
    values[1] = -1;
    CReminderValuesDialog dialog(values);
    const int result = Run(dialog, [&] {
        EXPECT_EQ(dialog.GetPart(1).Value, "");
        EXPECT_EQ(dialog.GetPart(0).Name, "1.");
        Then<CCustomReminderDialog>(dialog, [](CCustomReminderDialog& custom) {
            auto* edit = dynamic_cast<QLineEdit*>(custom.focusWidget());
            ASSERT_TRUE(edit);
            edit->setText(QString());
            QTest::keyClicks(edit, "10");
            QTest::keyClick(edit, Qt::Key_F1);
        });
        Click(dialog, dialog.RowRect(1).center());
        EXPECT_EQ(dialog.GetPart(1).Value, "10 days");
        Then<CCustomReminderDialog>(dialog, [](CCustomReminderDialog& custom) {
            QTest::keyClick(custom.focusWidget(), Qt::Key_Escape);
        });
        Click(dialog, dialog.RowRect(0).center());
        QTest::keyClick(&dialog, Qt::Key_F1);
    });
    EXPECT_EQ(result, CFormDialog::kDone);
    EXPECT_EQ(Played, 2);
    values[1] = 14400;
    EXPECT_EQ(dialog.GetValues(), values);
    CReminderValuesDialog::Store(dialog.GetValues(), g_Settings);
    EXPECT_EQ(g_Settings.GetReminderVal(1), 14400);
}

// ---- contacts

TEST_F(TextAids, AttendeesAreFoundByTypingAndNoneIsLost)
{
    CContactPicker picker({{"Ann Smith", "ann@x"}, {"Bert", ""}, {"", "carl@x"}});
    const int result = Run(picker, [&] {
        QTest::keyClicks(&picker, "Sm");
        EXPECT_EQ(picker.LineText(0), "Ann Smith");
        QTest::keyClick(&picker, Qt::Key_Minus);
        QTest::keyClick(&picker, Qt::Key_Backspace);
        EXPECT_EQ(picker.SearchText(), "sm") << "other keys change nothing";
        QTest::keyClick(&picker, Qt::Key_Return);
        QTest::keyClicks(&picker, "q");
        EXPECT_EQ(picker.LineText(0), "No matches: smq");
        QTest::keyClick(&picker, Qt::Key_Return); // no line to act on
        QTest::keyClick(&picker, Qt::Key_F1);
    });
    EXPECT_EQ(result, CFormDialog::kDone);
    EXPECT_EQ(picker.GetAttendees(), (std::vector<CAttendee>{{"Bert", ""}, {"", "carl@x"}}))
        << "the unchecked one went";
}

TEST_F(TextAids, DigitsFindLettersWhereThereAreNoKeysForThem)
{
    for (const bool keyboard : {false, true}) {
        ReplaceHardwareKeyboard(keyboard);
        CContactPicker picker({{"Ann Smith", "ann@x"}, {"Bert", ""}, {"266 Club", ""}});
        Run(picker, [&] {
            QTest::keyClicks(&picker, "26");
            EXPECT_EQ(picker.LineText(0), keyboard ? "266 Club" : "Ann Smith");
            QTest::keyClicks(&picker, "7");
            EXPECT_EQ(picker.LineText(0), "No matches: 267");
        });
    }
    ReplaceHardwareKeyboard({});
}
