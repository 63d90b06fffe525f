// Each row of the editors, both ways: a change is made through its control and stored, and the form that is
// opened anew shows it there and nowhere else.
#include "editors/editors_fixture.h"
#include "forms/contact_picker.h"
#include "forms/custom_reminder_dialog.h"
#include "pages/category_manager.h"
#include "pim/category_store.h"

#include <QDateEdit>
#include <QPlainTextEdit>
#include <QTimeEdit>
#include <map>

namespace
{
using Form = CFieldForm;
using Texts = std::map<quint32, std::string>; // of the rows that show

class EditorRows : public CEditorsTest
{
protected:
    static Texts TextsOf(const Form& form)
    {
        Texts texts;
        for (const CFieldRow& row : form.Rows()) {
            if (row.Type == kRowHeader || row.Hidden)
                continue;
            const QString value = row.HasDate() ? FieldDateValue(row) : row.Value;
            texts[row.Id] = (row.Included ? value : "(" + value + ")").toStdString();
        }
        return texts;
    }
    static void TypeNote(Form& form, const char* text)
    {
        Select(form, StrNote);
        auto* lines = Live<QPlainTextEdit>(form);
        ASSERT_NE(lines, nullptr);
        lines->selectAll();
        QTest::keyClicks(lines, QLatin1String(text));
    }
    static void TypeIn(Form& form, quint32 id, const char* text)
    {
        Select(form, id);
        Type(form, text);
    }
    static void SetDay(Form& form, quint32 id, int day)
    {
        Select(form, id);
        const SystemTime time = SystemTimeOf(day);
        Live<QDateEdit>(form)->setDate(QDate(time.wYear, time.wMonth, time.wDay));
    }
    static void SetTime(Form& form, quint32 id, QTime time)
    {
        Select(form, id);
        Live<QTimeEdit>(form)->setTime(time);
    }
    static void Include(Form& form, quint32 id)
    {
        Select(form, id);
        Click(form, FieldIncludeBox(*Row(form, id), form.RowRect(id)).center());
    }
    // Follows the row's link, and acts in what opens.
    static void Follow(Form& form, quint32 id, std::function<void(CFormDialog&)> act)
    {
        Select(form, id);
        QTimer::singleShot(0, &form, [act = std::move(act)] { act(*CFormDialog::Current()); });
        QTest::keyClick(form.focusWidget(), Qt::Key_Return);
    }
    static void CheckFirstCategory(Form& form)
    {
        Follow(form, StrCategories, [](CFormDialog& dialog) {
            ASSERT_NE(dynamic_cast<CCategoryManager*>(&dialog), nullptr);
            QTest::keyClick(&dialog, Qt::Key_Space);
            QTest::keyClick(&dialog, Qt::Key_F1);
        });
    }
    // A category and a contact to choose.
    void AddOthers()
    {
        const auto item = m_app->CreateTask();
        item->put_Subject("Other");
        item->put_Categories("Work");
        ASSERT_TRUE(item->Save());
        PimStore().Categories().Load();
        const auto guest = m_app->CreateContact();
        guest->put_FileAs("Ann");
        guest->put_EmailAddress(1, "ann@example.org");
        ASSERT_TRUE(guest->Save());
    }

    struct CCase {
        const char* Name;
        std::function<void(Form&)> Change;
        Texts Expected; // of the rows that differ afterwards; an empty text: no longer there
    };
    // `create` makes an item anew and tells its number; `edit` opens its form.
    void Check(const std::vector<CCase>& cases, const std::function<quint32()>& create,
               const std::function<int(quint32)>& edit)
    {
        for (const CCase& c : cases) {
            SCOPED_TRACE(c.Name);
            const quint32 id = create();
            Texts before, after;
            WithForm([&](Form& form) {
                before = TextsOf(form);
                c.Change(form);
                Done(form);
            });
            EXPECT_EQ(edit(id), CFormDialog::kDone);
            WithForm([&](Form& form) { after = TextsOf(form); });
            edit(id);
            Texts expected = before;
            for (const auto& [row, text] : c.Expected) {
                if (text.empty())
                    expected.erase(row);
                else
                    expected[row] = text;
            }
            EXPECT_EQ(after, expected);
        }
    }
};
} // namespace

TEST_F(EditorRows, OfAnAppointment)
{
    AddOthers();
    const Texts kMoved = {{StrStartDate, "3/12/26    12:00 PM"}, {StrEndDate, "3/12/26    06:00 PM"}};
    const std::vector<CCase> cases = {
        {"subject", [](Form& form) { TypeIn(form, StrSubject, "Dentist"); }, {{StrSubject, "Dentist"}}},
        {"location", [](Form& form) { TypeIn(form, StrLocation, "Room 3"); }, {{StrLocation, "Room 3"}}},
        {"start, with the end behind it", [](Form& form) { SetDay(form, StrStartDate, kDay + 2); }, kMoved},
        {"hour of the start",
         [](Form& form) {
             SetTime(form, StrStartDate, {8, 15});
         },
         {{StrStartDate, "3/10/26    08:15 AM"}, {StrEndDate, "3/10/26    02:15 PM"}}},
        {"end",
         [](Form& form) { SetDay(form, StrEndDate, kDay + 1); },
         {{StrEndDate, "3/11/26    06:00 PM"}}},
        {"hour of the end",
         [](Form& form) {
             SetTime(form, StrEndDate, {21, 0});
         },
         {{StrEndDate, "3/10/26    09:00 PM"}}},
        {"all day",
         [](Form& form) { Choose(form, StrAllDay, 1); },
         {{StrAllDay, "All Day Event"}, {StrStartDate, "3/10/26"}, {StrEndDate, "3/10/26"}}},
        {"reminder", [](Form& form) { Choose(form, StrReminder, 3); }, {{StrReminder, "10 minutes"}}},
        {"reminder of 35 days",
         [](Form& form) {
             Choose(form, StrReminder, int(Row(form, StrReminder)->Choices.size()) - 1);
             Follow(form, StrCustomReminder, [](CFormDialog& dialog) {
                 ASSERT_NE(dynamic_cast<CCustomReminderDialog*>(&dialog), nullptr);
                 auto* count = dialog.findChild<QLineEdit*>();
                 ASSERT_NE(count, nullptr);
                 count->selectAll();
                 QTest::keyClicks(count, "35");
                 QTest::keyClick(&dialog, Qt::Key_F1);
             });
         },
         {{StrReminder, "Custom Reminder"}, {StrCustomReminder, "5 weeks"}}},
        {"private", [](Form& form) { Choose(form, StrPrivate, 1); }, {{StrPrivate, "Private"}}},
        {"status", [](Form& form) { Choose(form, StrStatus, 0); }, {{StrStatus, "Free"}}},
        {"recurrence", [](Form& form) { Choose(form, StrRecurring, 2); }, {{StrRecurring, "Every Tuesday"}}},
        {"categories", CheckFirstCategory, {{StrCategories, "Work"}}},
        {"attendees",
         [](Form& form) {
             Follow(form, StrAttendees, [](CFormDialog& dialog) {
                 ASSERT_NE(dynamic_cast<CContactPicker*>(&dialog), nullptr);
                 QTest::keyClick(&dialog, Qt::Key_Return);
                 QTest::keyClick(&dialog, Qt::Key_F1);
             });
         },
         {{StrAttendees, "1 Attendee(s)"}}},
        {"note", [](Form& form) { TypeNote(form, "Bring plans"); }, {{StrNote, "Bring plans"}}},
    };
    SetAnswerer([](const QString&, const QString&) { return 2; }); // of a series: all of it
    Check(
        cases, [this] { return AddAppointment(kDay + 0.5, kDay + 0.75); },
        [this](quint32 id) { return EditAppointment(id, kDay, &Window); });
}

TEST_F(EditorRows, OfATask)
{
    AddOthers();
    const std::vector<CCase> cases = {
        {"subject", [](Form& form) { TypeIn(form, StrSubject, "Paint"); }, {{StrSubject, "Paint"}}},
        {"start", [](Form& form) { SetDay(form, StrStartDate, kDay - 1); }, {{StrStartDate, "3/9/26"}}},
        {"start behind the due date",
         [](Form& form) { SetDay(form, StrStartDate, kDay + 9); },
         {{StrStartDate, "3/19/26"}, {StrEndDate, "3/19/26"}, {StrReminder, "(3/19/26    12:00 AM)"}}},
        {"no start", [](Form& form) { Include(form, StrStartDate); }, {{StrStartDate, "(3/10/26)"}}},
        {"due date",
         [](Form& form) { SetDay(form, StrEndDate, kDay + 5); },
         {{StrEndDate, "3/15/26"}, {StrReminder, "(3/15/26    12:00 AM)"}}},
        {"no due date",
         [](Form& form) { Include(form, StrEndDate); },
         {{StrEndDate, "(3/10/26)"}, {StrStartDate, ""}}},
        {"reminder", [](Form& form) { Include(form, StrReminder); }, {{StrReminder, "3/10/26    12:00 AM"}}},
        {"reminder at its time",
         [](Form& form) {
             Include(form, StrReminder);
             SetTime(form, StrReminder, {7, 30});
         },
         {{StrReminder, "3/10/26    07:30 AM"}}},
        {"private", [](Form& form) { Choose(form, StrPrivate, 1); }, {{StrPrivate, "Private"}}},
        {"recurrence", [](Form& form) { Choose(form, StrRecurring, 1); }, {{StrRecurring, "Every day"}}},
        {"priority", [](Form& form) { Choose(form, StrPriority, 2); }, {{StrPriority, "High"}}},
        {"categories", CheckFirstCategory, {{StrCategories, "Work"}}},
        {"note", [](Form& form) { TypeNote(form, "Red"); }, {{StrNote, "Red"}}},
    };
    const auto create = [this] {
        const auto task = m_app->CreateTask();
        task->put_Subject("Task");
        task->put_StartDate(kDay);
        task->put_DueDate(kDay);
        EXPECT_TRUE(task->Save());
        return task->get_Oid();
    };
    Check(cases, create, [this](quint32 id) { return EditTask(id, &Window); });
}
