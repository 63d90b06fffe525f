#include "forms/message_dialog.h"
#include "forms/two_choice_dialog.h"
#include "platform/registry.h"
#include "forms/question.h"
#include "shell_fixture.h"

#include <QTest>
#include <QTimer>

namespace
{
class Question : public ShellFixture
{
protected:
    using Step = std::function<void(CFormDialog&)>;

    // Sends the command, and plays each step in the dialog that comes up next.
    void Send(int command, QList<Step> steps)
    {
        QTimer watch;
        CFormDialog* seen = nullptr;
        QObject::connect(&watch, &QTimer::timeout, [&] {
            CFormDialog* const now = CFormDialog::Current();
            if (!now || now == seen || !now->isVisible())
                return;
            seen = now;
            if (steps.isEmpty()) {
                ADD_FAILURE() << "one dialog too many";
                return now->End(CFormDialog::kCancelled);
            }
            steps.takeFirst()(*now);
            if (CFormDialog::Current() == now)
                seen = nullptr; // the next dialog may stand at the same address
        });
        watch.start(0);
        m_frame->SendCommand(command);
        EXPECT_EQ(steps.size(), 0) << "a dialog is missing";
        EXPECT_EQ(CFormDialog::Current(), nullptr);
    }
    static Step Press(int key)
    {
        return [key](CFormDialog& dialog) { QTest::keyClick(&dialog, Qt::Key(key)); };
    }
    static void TapCell(CFormDialog& dialog, int n)
    {
        auto* question = dynamic_cast<CTwoChoiceDialog*>(&dialog);
        ASSERT_TRUE(question);
        QTest::mouseClick(question, Qt::LeftButton, {}, question->Cells().CellRect(n).center());
    }
    CMainFrame& StartFollowing()
    {
        CMainFrame& frame = Start();
        frame.show();
        frame.StartNotices();
        return frame;
    }
    quint32 AddSeries()
    {
        const auto series = m_app->CreateAppointment();
        series->put_Subject("daily");
        series->put_Start(kToday - 1 + 9 / 24.0);
        series->put_End(kToday - 1 + 10 / 24.0);
        series->GetRecurrencePattern()->put_RecurrenceType(OlRecurs::Daily);
        series->GetRecurrencePattern()->put_Occurrences(5);
        EXPECT_TRUE(series->Save());
        return series->get_Oid();
    }
    // The days around today on which something stands, as "-1 0 1".
    QString DaysWithItems()
    {
        QStringList days;
        for (int day = -2; day <= 5; ++day) {
            if (!SubjectsOf(kToday + day).isEmpty())
                days << QString::number(day);
        }
        return days.join(' ');
    }
};
} // namespace

TEST_F(Question, StaysInSightWhateverTheTextSays)
{
    CMainFrame& frame = Start();
    frame.show();
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
        QTimer::singleShot(0, [&] {
            auto* dialog = dynamic_cast<CMessageDialog*>(CFormDialog::Current());
            ASSERT_TRUE(dialog) << c.What;
            const QString shown = dialog->GetText();
            EXPECT_LE(dialog->Navigator().ContentHeight(), dialog->Layout().Client.height()) << c.What;
            EXPECT_TRUE(shown.endsWith(end)) << c.What;
            EXPECT_EQ(shown == c.Subject + end, c.Whole) << c.What;
            EXPECT_TRUE(shown.isValidUtf16()) << c.What;
            dialog->End(CFormDialog::kCancelled);
        });
        EXPECT_FALSE(AskYesNo(&frame, c.Subject + end, "Delete?")) << c.What;
    }
}

TEST_F(Question, OfASeriesThePartGoesThatIsChosen)
{
    const struct {
        const char* What;
        Step First, Second; // the second question only comes after a yes
        QString Left;
    } cases[] = {
        {"no", Press(Qt::Key_F2), {}, "-1 0 1 2 3"},
        {"left", Press(Qt::Key_Escape), {}, "-1 0 1 2 3"},
        {"cancelled", Press(Qt::Key_F1), Press(Qt::Key_Escape), "-1 0 1 2 3"},
        {"cancel key", Press(Qt::Key_Return), Press(Qt::Key_F2), "-1 0 1 2 3"},
        {"occurrence, tapped", Press(Qt::Key_F1), [](CFormDialog& d) { TapCell(d, 0); }, "-1 1 2 3"},
        {"occurrence, Enter", Press(Qt::Key_Return), Press(Qt::Key_Return), "-1 1 2 3"},
        {"series, tapped", Press(Qt::Key_F1), [](CFormDialog& d) { TapCell(d, 1); }, ""},
        {"series, key", Press(Qt::Key_F1), Press(Qt::Key_2), ""},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.What);
        const quint32 id = AddSeries();
        StartFollowing();
        QList<Step> steps{c.First};
        if (c.Second)
            steps << c.Second;
        Send(CmdDelete, steps);
        EXPECT_TRUE(WaitFor([&] { return DaysWithItems() == c.Left; })) << DaysWithItems().toStdString();
        m_frame.reset();
        std::unique_ptr<IAppointment> item;
        EXPECT_EQ(m_app->GetAppointmentFromOid(id, item).IsOk(), !c.Left.isEmpty());
        if (item) {
            EXPECT_TRUE(item->Delete());
        }
    }
}

TEST_F(Question, TellsWhatItAsks)
{
    AddSeries();
    StartFollowing();
    Send(CmdDelete, {[](CFormDialog& d) {
                         auto* message = dynamic_cast<CMessageDialog*>(&d);
                         ASSERT_TRUE(message);
                         EXPECT_EQ(message->GetTitle(), "Delete?");
                         EXPECT_EQ(message->GetText(),
                                   "Are you sure you would like to delete the appointment daily ?");
                         EXPECT_EQ(message->SoftKeys().GetKey(0).Text, "Yes");
                         EXPECT_EQ(message->SoftKeys().GetKey(1).Text, "No");
                         QTest::keyClick(message, Qt::Key_F1);
                     },
                     [](CFormDialog& d) {
                         auto* question = dynamic_cast<CTwoChoiceDialog*>(&d);
                         ASSERT_TRUE(question);
                         EXPECT_EQ(question->GetQuestion(),
                                   "Do you want to delete this occurrence only, or the entire series?");
                         const CCellGrid& cells = question->Cells();
                         EXPECT_EQ(cells.GetCell(0).Text, "Occurrence");
                         EXPECT_EQ(cells.GetCell(0).Hint, "Delete this single occurrence");
                         EXPECT_EQ(cells.GetCell(1).Text, "Series");
                         EXPECT_EQ(cells.GetCell(1).Hint, "Delete series");
                         d.End(CFormDialog::kCancelled);
                     }});
}

TEST_F(Question, TheItemMayGoWhileItIsAsked)
{
    const quint32 id = AddSeries();
    StartFollowing();
    const Step remove = [&](CFormDialog& dialog) {
        std::unique_ptr<IAppointment> item;
        ASSERT_TRUE(m_app->GetAppointmentFromOid(id, item));
        ASSERT_TRUE(item->Delete());
        ASSERT_TRUE(WaitFor([&] { return DaysWithItems().isEmpty(); }));
        QTest::keyClick(&dialog, Qt::Key_F1);
    };
    Send(CmdDelete, {remove, [](CFormDialog& dialog) {
                         EXPECT_EQ(dialog.GetTitle(), "Saving problem");
                         QTest::keyClick(&dialog, Qt::Key_Return);
                     }});
}

TEST_F(Question, ARequestUnderItLeavesItInFrontAndItsItemTheSame)
{
    AddSeries();
    Add("other", kToday + 2, 8);
    CMainFrame& frame = StartFollowing();
    const Step request = [&](CFormDialog& dialog) {
        CRegistry::WriteString(kRegistryKey, "CallCmdLine",
                               "OPEN|DAILY|" + QString::number(qint64(kToday + 2) * 1440));
        frame.OnInstanceMessage({kMessageRequest, 0, 0, {}});
        EXPECT_EQ(PimStore().CursorDate(), kToday + 2);
        EXPECT_EQ(frame.childAt(frame.rect().center()), &dialog);
        EXPECT_EQ(frame.focusWidget(), &dialog);
        QTest::keyClick(&dialog, Qt::Key_F1);
    };
    Send(CmdDelete, {request, Press(Qt::Key_1)});
    EXPECT_TRUE(WaitFor([&] { return SubjectsOf(kToday).isEmpty(); }));
    EXPECT_EQ(SubjectsOf(kToday + 2), (QStringList{"other", "daily"}));
}

TEST_F(Question, ClosingTheWindowAnswersNothing)
{
    AddSeries();
    CMainFrame& frame = StartFollowing();
    Send(CmdDelete, {Press(Qt::Key_F1), [&](CFormDialog&) { frame.close(); }});
    EXPECT_TRUE(WaitFor([&] { return !frame.IsUp(); }));
    EXPECT_EQ(m_volume->RecordCount(kAppointmentsDatabase), 1);
}
