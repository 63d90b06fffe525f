#include "forms/field_form.h"
#include "forms_fixture.h"
#include "platform/locale.h"
#include "touch/command_ids.h"
#include "util/date_time.h"
#include "util/string_ids.h"
#include "util/string_store.h"

#include <QCheckBox>
#include <QClipboard>
#include <QComboBox>
#include <QDateEdit>
#include <QGuiApplication>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTimeEdit>

namespace
{
enum Id : quint32 {
    kSubject = StrSubject,
    kStart = StrStartDate,
    kAllDay = StrAllDay,
    kLink = StrCategories,
    kNote = StrNote,
    kDue = StrEndDate,
    kDays = 40445, // "## Day(s)"
    kCheck = StrPrivate,
    kTime = StrReminder,
    kColorRow = StrStatus,
};

constexpr FieldRowDesc kRows[] = {
    {kSubject, 248, kRowText, kRowEntry},
    {kStart, 251, kRowDateTime, 0},
    {kAllDay, 189, kRowChoice, kRowHasHeader},
    {kLink, 249, kRowLink, 0},
    {kNote, 137, kRowText, kRowMultiLine | kRowEntry},
    {kDue, 250, kRowDate, kRowInclude},
    {kDays, kIconNone, kRowText, kRowDigits},
    {kCheck, kIconLeft, kRowCheck, 0},
    {kTime, 111, kRowTime, 0},
    {kColorRow, 3007, kRowColor, 0},
};

class CTestForm : public CFieldForm
{
public:
    CTestForm() : CFieldForm(QStringLiteral("Form"), kRows) {}
    using CFieldForm::GetEditedText;
    using CFieldForm::RemoveRow;
    using CFieldForm::SetEditedText;
    using CFieldForm::SetRowType;
    using CFieldForm::SetRowVisible;

    std::map<quint32, QString> Texts{{kSubject, QStringLiteral("Lunch")}, {kNote, QStringLiteral("a\r\nb")},
                                     {kDays, QStringLiteral("3")}};
    std::map<quint32, DATE> Dates{{kStart, 45000.5}, {kDue, 45001}, {kTime, 0.25}};
    std::map<quint32, bool> Boxes{{kDue, true}, {kCheck, false}};
    QString LinkText = QStringLiteral("Work");
    COLORREF Color = kColorNotSet;
    int Choice = 1;
    std::vector<quint32> Tapped;
    int Picks = 0;
    DATE Picked = -1;
    QRect Keyboard;
    bool MaySave = true;
    std::function<void()> Init, Chosen;

protected:
    void InitRows() override
    {
        if (Init)
            Init();
    }
    bool FillChoices(quint32, QStringList& list) override
    {
        list << QStringLiteral("zero") << QStringLiteral("one") << QStringLiteral("two");
        return true;
    }
    void ExchangeText(quint32 id, QString& text, bool set) override { (set ? Texts[id] : text) = set ? text : Texts[id]; }
    void ExchangeDate(quint32 id, DATE& date, bool set) override { (set ? Dates[id] : date) = set ? date : Dates[id]; }
    void ExchangeInclude(quint32 id, bool& on, bool set) override { (set ? Boxes[id] : on) = set ? on : Boxes[id]; }
    void ExchangeColor(quint32, int number, COLORREF& color, bool) override
    {
        EXPECT_EQ(number, 3007);
        color = Color;
    }
    void ExchangeChoice(quint32, int& index, bool set) override
    {
        (set ? Choice : index) = set ? index : Choice;
        if (set && Chosen)
            Chosen();
    }
    void GetLinkText(quint32, QString& text) override { text = LinkText; }
    void OnLinkTapped(quint32 id) override { Tapped.push_back(id); }
    bool Pick(DATE& value)
    {
        ++Picks;
        if (Picked < 0)
            return false;
        value = Picked;
        return true;
    }
    bool PickDate(DATE& date) override { return Pick(date); }
    bool PickTime(DATE& time) override { return Pick(time); }
    QRect KeyboardArea() const override
    {
        return Keyboard.isEmpty() ? Keyboard : Keyboard.translated(mapToGlobal(QPoint(0, 0)));
    }
    bool Save() override { return MaySave; }
};

class FieldForm : public CFormsTest
{
protected:
    void SetUp() override
    {
        CFormsTest::SetUp();
        g_Settings.General.SlidingScreens = 0;
        Places = MakeLocale(QStringLiteral("en_GB"));
        SetLocale(Places.get());
    }
    void TearDown() override
    {
        SetLocale(nullptr);
        CFormsTest::TearDown();
    }
    static int IndexOf(const CFieldForm& form, quint32 id)
    {
        for (size_t n = 0; n < form.Rows().size(); ++n) {
            if (form.Rows()[n].Id == id)
                return int(n);
        }
        return -1;
    }
    static const CFieldRow& Row(const CFieldForm& form, quint32 id) { return form.Rows()[size_t(IndexOf(form, id))]; }
    static quint32 Selected(const CFieldForm& form) { return form.Rows()[size_t(form.GetSelectedRow())].Id; }
    static void Select(CFieldForm& form, quint32 id) { form.SelectRow(IndexOf(form, id)); }
    static void Press(CFieldForm& form, Qt::Key key)
    {
        QTest::keyClick(form.focusWidget() ? form.focusWidget() : &form, key);
    }
    static void Type(CFieldForm& form, const char* text) { QTest::keyClicks(form.focusWidget(), QLatin1String(text)); }
    template <class T> static T* Shown(CFieldForm& form)
    {
        for (T* const control : form.findChildren<T*>(QString(), Qt::FindDirectChildrenOnly)) {
            if (control->isVisible())
                return control;
        }
        return nullptr;
    }
    std::unique_ptr<ILocale> Places;
    CTestForm Form;
};
} // namespace

TEST_F(FieldForm, ShowsWhatTheItemHolds)
{
    Run(Form, [&] {
        const struct {
            quint32 Id;
            const char* Value;
        } rows[] = {
            {kSubject, "Lunch"}, {kStart, "15/03/2023    12:00"}, {kAllDay, "one"}, {kLink, "Work"},
            {kNote, "a\r\nb"},   {kDue, "16/03/2023"},            {kDays, "3"},     {kCheck, "Private"},
            {kTime, "06:00"},    {kColorRow, ""},
        };
        for (const auto& row : rows)
            EXPECT_EQ(Row(Form, row.Id).Value, QLatin1String(row.Value)) << row.Value;
        EXPECT_EQ(Row(Form, kAllDay | kHeaderBit).Icon, 189);
        EXPECT_EQ(Row(Form, kAllDay).Icon, kIconNone);
        EXPECT_TRUE(Row(Form, kDue).Included);
        EXPECT_FALSE(Row(Form, kCheck).Included);
        EXPECT_EQ(Selected(Form), quint32(kSubject));
        EXPECT_EQ(Form.GetTitle(), GetString(StrSubject));
    });
}

TEST_F(FieldForm, StoresWhatIsEntered)
{
    Run(Form, [&] {
        Press(Form, Qt::Key_End);
        Type(Form, "time");
        Press(Form, Qt::Key_Down);
        EXPECT_EQ(Form.Texts[kSubject], QStringLiteral("Lunchtime"));

        Shown<QTimeEdit>(Form)->setTime(QTime(14, 30));
        Shown<QDateEdit>(Form)->setDate(QDate(2023, 3, 20));
        Select(Form, kAllDay);
        EXPECT_NEAR(Form.Dates[kStart], 45005 + 14.5 / 24, 1e-9);

        Press(Form, Qt::Key_Right);
        EXPECT_EQ(Form.Choice, 2);
        Press(Form, Qt::Key_Right);
        EXPECT_EQ(Form.Choice, 0);
        Press(Form, Qt::Key_Left);
        EXPECT_EQ(Form.Choice, 2);

        Select(Form, kNote);
        Type(Form, "c");
        Select(Form, kDue);
        EXPECT_EQ(Form.Texts[kNote], QStringLiteral("a\r\nbc"));

        Shown<QDateEdit>(Form)->setDate(QDate(2023, 3, 31));
        Select(Form, kDays);
        EXPECT_EQ(Form.Dates[kDue], 45016);

        Type(Form, "x7");
        Select(Form, kTime);
        EXPECT_EQ(Form.Texts[kDays], QStringLiteral("37"));

        Shown<QTimeEdit>(Form)->setTime(QTime(18, 0));
        QTest::keyClick(&Form, Qt::Key_F1);
    });
    EXPECT_EQ(Form.Dates[kTime], 0.75);
}

TEST_F(FieldForm, TypingADateBeginsAtItsFirstPart)
{
    Run(Form, [&] {
        Select(Form, kStart);
        auto* const day = Shown<QDateEdit>(Form);
        ASSERT_TRUE(day);
        auto* const time = Shown<QTimeEdit>(Form);
        QCoreApplication::processEvents();
        EXPECT_EQ(day->findChild<QLineEdit*>()->selectedText(), day->sectionText(day->sectionAt(0)));
        EXPECT_EQ(time->findChild<QLineEdit*>()->selectedText(), "") << "it has no focus";
        Press(Form, Qt::Key_Right);
        EXPECT_EQ(day->findChild<QLineEdit*>()->selectedText(), "");
        EXPECT_EQ(time->findChild<QLineEdit*>()->selectedText(), time->sectionText(time->sectionAt(0)));
        Select(Form, kSubject);
        Select(Form, kStart);
        day->setSelectedSection(day->sectionAt(2));
        Select(Form, kDue); // by the same control
        ASSERT_EQ(Shown<QDateEdit>(Form), day);
        EXPECT_EQ(day->findChild<QLineEdit*>()->selectedText(), day->sectionText(day->sectionAt(0)));
        const QString rest = day->text().mid(2);
        Type(Form, "05"); // the day of the month stands first here
        EXPECT_EQ(day->text(), "05" + rest);
    });
}

TEST_F(FieldForm, LeavesWhatWasNotTouched)
{
    Form.Dates = {{kStart, 45000.123456}, {kDue, NO_DATE}, {kTime, 0.3333333}};
    const auto dates = Form.Dates;
    const auto texts = Form.Texts;
    Run(Form, [&] {
        for (size_t n = 0; n < Form.Rows().size(); ++n)
            Press(Form, Qt::Key_Down);
    });
    EXPECT_EQ(Form.Dates, dates);
    EXPECT_EQ(Form.Texts, texts);
}

TEST_F(FieldForm, TextOfAnyKindIsKeptPaintedAndEdited)
{
    const QString text[] = {
        QStringLiteral("\U0001F469\u200D\U0001F4BB\U0001F1E9\U0001F1EA"),
        QStringLiteral("\u05E9\u05DC\u05D5\u05DD abc \u0645\u0631"),
        QStringLiteral("e\u0301 o\u0308\u0323"),
        QStringLiteral("\u65E5\u672C &amp; <b> &x\ty"),
        QString(10000, u'\u00E4'),
        QStringLiteral("\U0001F389").repeated(5000),
        QString(QChar(0xD83C)) + 'x', // half a pair
    };
    for (const quint32 id : {quint32(kSubject), quint32(kNote)}) {
        for (const QString& held : text) {
            SCOPED_TRACE(held.left(20).toStdString());
            CTestForm form;
            form.Texts[id] = held;
            Run(form, [&] {
                EXPECT_FALSE(form.Snapshot().isNull());
                Select(form, id);
                EXPECT_EQ(form.GetEditedText().Text, held);
                QTest::keyClick(form.focusWidget(), Qt::Key_End, Qt::ControlModifier);
                QTest::keyClicks(form.focusWidget(), "x");
                EXPECT_FALSE(form.grab().isNull());
                QTest::keyClick(&form, Qt::Key_F1);
            });
            EXPECT_EQ(form.Texts[id], held + 'x');
        }
    }
}

TEST_F(FieldForm, PastedLineEndsFitTheRow)
{
    const struct {
        quint32 id;
        const char *pasted, *kept;
    } cases[] = {
        {kSubject, "1\r\n2\n3\r4", "1 2 3 4"}, {kNote, "1\r\n2\n3", "1\r\n2\r\n3"}, {kDays, "12", "12"}};
    for (const auto& c : cases) {
        CTestForm form;
        Run(form, [&] {
            QGuiApplication::clipboard()->setText(c.pasted);
            Select(form, c.id);
            QTest::keySequence(form.focusWidget(), QKeySequence::SelectAll);
            QTest::keySequence(form.focusWidget(), QKeySequence::Paste);
            QTest::keyClick(&form, Qt::Key_F1);
        });
        EXPECT_EQ(form.Texts[c.id].toStdString(), c.kept);
    }
}

TEST_F(FieldForm, KeysMoveAlongTheRows)
{
    Run(Form, [&] {
        const struct {
            quint32 From;
            Qt::Key Key;
            quint32 To;
        } moves[] = {
            {kSubject, Qt::Key_Down, kStart}, {kSubject, Qt::Key_Up, kColorRow}, {kStart, Qt::Key_Down, kAllDay},
            {kLink, Qt::Key_Up, kAllDay},     {kColorRow, Qt::Key_Down, kSubject}, {kDue, Qt::Key_Left, kNote},
            {kDue, Qt::Key_Right, kDays},     {kCheck, Qt::Key_Down, kTime},     {kNote, Qt::Key_Up, kLink},
            {kSubject, Qt::Key_Right, kSubject}, {kStart, Qt::Key_Left, kSubject}, {kStart, Qt::Key_Right, kStart},
        };
        for (const auto& move : moves) {
            Select(Form, move.From);
            Press(Form, move.Key);
            EXPECT_EQ(Selected(Form), move.To) << move.From << " " << move.Key;
        }
        Select(Form, kSubject);
        Select(Form, kStart);
        Press(Form, Qt::Key_Right);
        EXPECT_TRUE(qobject_cast<QTimeEdit*>(Form.focusWidget()));
        Press(Form, Qt::Key_Left);
        EXPECT_TRUE(qobject_cast<QDateEdit*>(Form.focusWidget()));
        Press(Form, Qt::Key_Right);
        Press(Form, Qt::Key_Right);
        EXPECT_EQ(Selected(Form), quint32(kAllDay));
    });
}

TEST_F(FieldForm, EnterActs)
{
    Form.Picked = 45100.75;
    Run(Form, [&] {
        for (const quint32 id : {quint32(kSubject), quint32(kNote), quint32(kLink), quint32(kColorRow)}) {
            Select(Form, id);
            Press(Form, Qt::Key_Return);
        }
        Select(Form, kStart);
        Press(Form, Qt::Key_Return);
        Select(Form, kCheck);
        Press(Form, Qt::Key_Return);
    });
    EXPECT_EQ(Form.Tapped, (std::vector<quint32>{kSubject, kNote, kLink, kColorRow}));
    EXPECT_EQ(Form.Picks, 1);
    EXPECT_EQ(Form.Dates[kStart], 45100.5); // the day alone is picked
    EXPECT_TRUE(Form.Boxes[kCheck]);
}

TEST_F(FieldForm, FingerSelectsThenActs)
{
    Run(Form, [&] {
        const auto centre = [&](quint32 id) { return Form.RowRect(id).center(); };
        Click(Form, centre(kAllDay));
        EXPECT_EQ(Selected(Form), quint32(kAllDay));
        Click(Form, centre(kAllDay | kHeaderBit));
        EXPECT_EQ(Selected(Form), quint32(kAllDay));
        Click(Form, centre(kLink));
        EXPECT_EQ(Form.Tapped, std::vector<quint32>{kLink});
        Click(*Shown<QPushButton>(Form), {3, 3});
        EXPECT_EQ(Form.Tapped.size(), 2u);
        Click(Form, centre(kCheck));
        EXPECT_TRUE(Form.Boxes[kCheck]);
        Click(*Shown<QCheckBox>(Form), {3, 3});
        EXPECT_FALSE(Form.Boxes[kCheck]);
        Click(Form, centre(kTime));
        const QPoint inTime = Shown<QTimeEdit>(Form)->geometry().center();
        QWidget& touched = *Form.childAt(inTime); // as the window would find it
        Click(touched, touched.mapFrom(&Form, inTime));
        EXPECT_EQ(Form.Picks, 1);
    });
}

TEST_F(FieldForm, ClearBoxLeavesTheValueAlone)
{
    Run(Form, [&] {
        Select(Form, kDue);
        EXPECT_TRUE(Shown<QDateEdit>(Form));
        Shown<QCheckBox>(Form)->click();
        EXPECT_FALSE(Form.Boxes[kDue]);
        EXPECT_FALSE(Shown<QDateEdit>(Form));
        EXPECT_EQ(Form.focusWidget(), Shown<QCheckBox>(Form));
        Press(Form, Qt::Key_Return);
        EXPECT_TRUE(Form.Boxes[kDue]);
        EXPECT_TRUE(Shown<QDateEdit>(Form));
    });
    EXPECT_EQ(Form.Dates[kDue], 45001);
}

TEST_F(FieldForm, HidesRowsWithTheirHeaders)
{
    Form.Init = [&] { Form.SetRowVisible(kAllDay, false); };
    Run(Form, [&] {
        EXPECT_TRUE(Row(Form, kAllDay | kHeaderBit).Hidden);
        EXPECT_EQ(Form.RowRect(kLink).y(), Form.RowRect(kStart).y() + FieldRowStep());
        Form.SetRowVisible(kAllDay, true);
        EXPECT_FALSE(Row(Form, kAllDay | kHeaderBit).Hidden);
        EXPECT_EQ(Form.RowRect(kLink).y(), Form.RowRect(kStart).y() + 3 * FieldRowStep());
        Form.SetRowVisible(12345, false);
        for (const FieldRowDesc& row : kRows) {
            if (row.Id != kNote)
                Form.SetRowVisible(row.Id, false);
        }
        EXPECT_EQ(Selected(Form), quint32(kNote));
        Press(Form, Qt::Key_Down);
        Press(Form, Qt::Key_Up);
        EXPECT_EQ(Selected(Form), quint32(kNote));
    });
}

TEST_F(FieldForm, ChoiceMayHideRetypeAndRemoveRows)
{
    Form.Chosen = [&] {
        Form.SetRowVisible(kNote, Form.Choice != 2);
        Form.SetRowType(kStart, Form.Choice == 2 ? kRowDate : kRowDateTime);
        Form.RemoveRow(kSubject);
    };
    Run(Form, [&] {
        Select(Form, kAllDay);
        Press(Form, Qt::Key_Right);
        EXPECT_TRUE(Row(Form, kNote).Hidden);
        EXPECT_EQ(Row(Form, kStart).Value, QStringLiteral("15/03/2023"));
        EXPECT_EQ(IndexOf(Form, kSubject), -1);
        EXPECT_EQ(Selected(Form), quint32(kAllDay));
        EXPECT_EQ(Form.focusWidget(), Shown<QComboBox>(Form));
    });
}

TEST_F(FieldForm, DoneSavesAndCancelCommitsNothing)
{
    for (const bool saves : {true, false}) {
        CTestForm form;
        form.MaySave = saves;
        EXPECT_EQ(Run(form, [&] {
            Type(form, "!");
            Click(form, KeyCentre(form, 0));
        }), saves ? int(CFormDialog::kDone) : kLeftOpen);
        EXPECT_EQ(form.Texts[kSubject], QStringLiteral("Lunch!"));
    }
    EXPECT_EQ(Run(Form, [&] {
        Type(Form, "!");
        Press(Form, Qt::Key_Escape);
    }), int(CFormDialog::kCancelled));
    EXPECT_EQ(Form.Texts[kSubject], QStringLiteral("Lunch"));
}

TEST_F(FieldForm, ControlsLieOverTheirRowInEveryScroll)
{
    Window.resize(240, 200);
    Run(Form, [&] {
        for (const FieldRowDesc& desc : kRows) {
            Select(Form, desc.Id);
            const QRect row = Form.RowRect(desc.Id);
            EXPECT_TRUE(Form.Navigator().Area().contains(row)) << desc.Id;
            for (QWidget* const control : Form.findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly)) {
                EXPECT_TRUE(!control->isVisible() || row.contains(control->geometry()))
                    << desc.Id << control->metaObject()->className();
            }
        }
        Select(Form, kDays);
        EXPECT_EQ(Shown<QLineEdit>(Form)->geometry().x(), Row(Form, kDays).DigitBox.x());
    });
}

TEST_F(FieldForm, KeyboardNeverCoversTheEditedRow)
{
    Run(Form, [&] {
        Select(Form, kNote);
        Form.Keyboard = QRect(0, 110, 240, 210);
        Form.resize(240, 319);
        EXPECT_TRUE(Form.Navigator().Area().contains(Form.RowRect(kNote)));
        EXPECT_LE(Form.RowRect(kNote).bottom(), 110);
        EXPECT_LE(Shown<QPlainTextEdit>(Form)->geometry().bottom(), 110);
        Form.Keyboard = QRect();
        Form.resize(240, 320);
        EXPECT_EQ(Form.Navigator().Area(), Form.Layout().Client);
    });
}

TEST_F(FieldForm, InputHintsFollowTheMode)
{
    const struct {
        int Mode;
        Qt::InputMethodHints Hints;
    } modes[] = {
        {0, Qt::ImhNoAutoUppercase}, {1, Qt::ImhNone},
        {4, Qt::ImhNoAutoUppercase | Qt::ImhNoPredictiveText}, {5, Qt::ImhNoPredictiveText},
    };
    for (const auto& mode : modes) {
        g_Settings.General.TextInputMode = mode.Mode;
        CTestForm form;
        Run(form, [&] {
            EXPECT_EQ(form.focusWidget()->inputMethodHints(), mode.Hints) << mode.Mode;
            Select(form, kDays);
            EXPECT_EQ(form.focusWidget()->inputMethodHints(), Qt::InputMethodHints(Qt::ImhDigitsOnly));
        });
    }
}

TEST_F(FieldForm, TextAidsReadAndWriteTheEditedText)
{
    Run(Form, [&] {
        QTest::keyClick(Form.focusWidget(), Qt::Key_Home);
        QTest::keyClick(Form.focusWidget(), Qt::Key_Right, Qt::ShiftModifier);
        EXPECT_EQ(Form.GetEditedText().SelectionStart, 0);
        EXPECT_EQ(Form.GetEditedText().SelectionEnd, 1);
        Form.SetEditedText(QStringLiteral("Dinner"), 2);
        EXPECT_EQ(Form.GetEditedText().SelectionStart, 2);
        EXPECT_EQ(Form.Texts[kSubject], QStringLiteral("Dinner"));
    });
}

TEST_F(FieldForm, ScreenReadersWalkRowsAndKeys)
{
    EXPECT_EQ(Run(Form, [&] {
        QAccessibleInterface* const form = QAccessible::queryAccessibleInterface(&Form);
        ASSERT_TRUE(form);
        const auto find = [&](const char* name, QAccessible::Role role) -> QAccessibleInterface* {
            for (int n = 0; n < form->childCount(); ++n) {
                QAccessibleInterface* const part = form->child(n);
                if (!part->object() && part->role() == role && part->text(QAccessible::Name) == QLatin1String(name)) {
                    EXPECT_EQ(form->indexOfChild(part), n);
                    EXPECT_EQ(part->parent(), form);
                    return part;
                }
            }
            return nullptr;
        };
        const auto press = [](QAccessibleInterface* part) {
            part->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
        };
        QAccessibleInterface* const subject = find("Subject", QAccessible::EditableText);
        ASSERT_TRUE(subject);
        EXPECT_EQ(subject->text(QAccessible::Value), QStringLiteral("Lunch"));
        EXPECT_TRUE(subject->state().selected);
        EXPECT_EQ(subject->rect().topLeft(), Form.mapToGlobal(Form.RowRect(kSubject).topLeft()));
        QAccessibleInterface* const header = find("All day", QAccessible::Heading);
        ASSERT_TRUE(header);
        EXPECT_TRUE(header->actionInterface()->actionNames().isEmpty());
        QAccessibleInterface* const check = find("Private", QAccessible::CheckBox);
        ASSERT_TRUE(check);
        EXPECT_FALSE(check->state().checked);
        press(check);
        EXPECT_TRUE(check->state().checked);
        EXPECT_TRUE(Form.Boxes[kCheck]);
        press(find("Categories", QAccessible::Button));
        EXPECT_EQ(Form.Tapped, std::vector<quint32>{kLink});
        press(find("Done", QAccessible::PushButton));
    }), int(CFormDialog::kDone));
}
