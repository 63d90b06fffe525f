#include "desktop/shell_actions.h"
#include "forms/form_dialog.h"
#include "object_model/object_model.h"
#include "records/property_numbers.h"
#include "touch/command_ids.h"
#include "touch/virtual_keys.h"
#include "views/item_details_form.h"
#include "views_fixture.h"

#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

namespace
{
class ItemDetails : public CViewTest
{
protected:
    void SetUp() override
    {
        CViewTest::SetUp();
        PimStore().Shutdown();
        ASSERT_TRUE(CPropertyVolume::Open(m_folder.filePath("pim.vol"), PimSchema(),
                                          CPropertyVolume::Mode::Create, m_volume));
        m_app = MakePOutlookApp(m_volume);
        ASSERT_TRUE(m_app->Logon());
        PimStore().Initialize(m_volume);
        g_Settings.General.SlidingScreens = 0; // a page that still slides takes no finger
        m_owner = std::make_unique<QWidget>();
        m_owner->resize(240, 320);
        m_owner->show();
        SetProgramStarter([this](const QString& program, const QStringList& arguments) {
            m_started << program + ' ' + arguments.join(' ');
            return true;
        });
    }
    void TearDown() override
    {
        SetProgramStarter({});
        m_owner.reset();
        CViewTest::TearDown();
    }
    // An appointment of the volume as the cache would hold it.
    CAppointment Stored(const QString& note)
    {
        const auto item = m_app->CreateAppointment();
        item->put_Subject("Call 555-1234 first");
        item->put_Location("www.example.org/room");
        item->put_Start(kToday + 10.0 / 24);
        item->put_End(kToday + 11.0 / 24);
        item->put_Body(note);
        EXPECT_TRUE(item->Save());
        CAppointment read(kKindAppointment, CAppointment::Blank{});
        EXPECT_TRUE(PimStore().ReadOccurrence(item->get_Oid(), kToday, read));
        return read;
    }
    void Run(CItemDetailsForm& form, const std::function<void()>& act)
    {
        QTimer::singleShot(0, &form, [&] {
            act();
            form.End(CFormDialog::kCancelled);
        });
        form.Run(m_owner.get());
    }
    static QStringList TextsOf(const CItemDetailsForm& form)
    {
        QStringList texts;
        for (const auto& place : form.Links())
            texts << place.Link->Text;
        return texts;
    }

    // What the page says, as a reader of the screen is told it: texts, and links in brackets.
    static QString Said(CItemDetailsForm& form)
    {
        QStringList said;
        for (int i = 0; i < form.GetPartCount(); ++i) {
            const CPaintedPart part = form.GetPart(i);
            if (part.Role == QAccessible::StaticText)
                said << part.Name;
            else if (part.Role == QAccessible::Link)
                said << '[' + part.Name + ']';
        }
        return said.join('|');
    }
    QString Said(const CAppointment& item)
    {
        CItemDetailsForm form(item, {});
        QString said;
        Run(form, [&] { said = Said(form); });
        return said;
    }
    QString Said(const CTask& item)
    {
        CItemDetailsForm form(item, {});
        QString said;
        Run(form, [&] { said = Said(form); });
        return said;
    }

    QTemporaryDir m_folder;
    std::shared_ptr<CPropertyVolume> m_volume;
    std::unique_ptr<IPOutlookApp> m_app;
    std::unique_ptr<QWidget> m_owner;
    QStringList m_started;
};
} // namespace

TEST_F(ItemDetails, LinksStandInOrderAndKeysReachThem)
{
    const CAppointment item = Stored("mail ann@example.org\n+49 30 1234567 $(reboot)\nhttp://a.b/'x'y");
    CItemDetailsForm form(item, {});
    Run(form, [&] {
        EXPECT_EQ(TextsOf(form), QStringList({"555-1234", "www.example.org/room", "ann@example.org",
                                              "+49 30 1234567", "http://a.b/'x'y"}));
        EXPECT_EQ(form.CurrentLink(), 0);
        QTest::keyClick(&form, Qt::Key_Return);
        for (int i = 1; i < 5; ++i) {
            QTest::keyClick(&form, Qt::Key_Down);
            EXPECT_EQ(form.CurrentLink(), i);
            QTest::keyClick(&form, i % 2 ? Qt::Key_F3 : Qt::Key_Return);
        }
        EXPECT_EQ(m_started, QStringList({"xdg-open tel:5551234", "xdg-open http://www.example.org/room",
                                          "xdg-open mailto:ann@example.org", "xdg-open tel:+49301234567",
                                          "xdg-open http://a.b/%27x%27y"}));
        QTest::keyClick(&form, Qt::Key_Down);
        EXPECT_EQ(form.CurrentLink(), 4) << "the last stays";
        for (int i = 0; i < 9; ++i)
            QTest::keyClick(&form, Qt::Key_Up);
        EXPECT_EQ(form.CurrentLink(), 0);
    });
}

TEST_F(ItemDetails, ATapReachesALink)
{
    const CAppointment item = Stored("first line\nmail ann@example.org");
    CItemDetailsForm form(item, {});
    Run(form, [&] {
        const QRect link = form.Links().back().Rects.front();
        const QPoint at = form.Layout().Client.topLeft() + link.center();
        QTest::mouseClick(&form, Qt::LeftButton, {}, at);
        EXPECT_EQ(m_started, QStringList("xdg-open mailto:ann@example.org"));
        EXPECT_EQ(form.CurrentLink(), int(form.Links().size()) - 1);
        QTest::mouseClick(&form, Qt::LeftButton, {}, at - QPoint(0, 4 * link.height()));
    });
    EXPECT_EQ(m_started.size(), 1) << "a tap beside a link starts nothing";
}

// A link that is out of sight takes a few key presses: the page scrolls first.
TEST_F(ItemDetails, KeysScrollToALinkFarBelow)
{
    const CAppointment item = Stored(QString("line\n").repeated(100) + "end@example.org");
    CItemDetailsForm form(item, {});
    Run(form, [&] {
        QTest::keyClick(&form, Qt::Key_Down);
        QTest::keyClick(&form, Qt::Key_Down);
        EXPECT_EQ(form.CurrentLink(), 1);
        EXPECT_LT(form.Scroller().Scroll(), 0);
        for (int i = 0; i < 200 && form.CurrentLink() != 2; ++i)
            QTest::keyClick(&form, Qt::Key_Down);
        ASSERT_EQ(form.CurrentLink(), 2);
        const QRect last = form.Links().back().Rects.front().translated(0, form.Scroller().Scroll());
        EXPECT_GE(last.top(), 0);
        EXPECT_LT(last.bottom(), form.Scroller().Height());
    });
}

TEST_F(ItemDetails, DatesAreNoLinksAndEditingCloses)
{
    const CAppointment item = Stored("");
    int edited = 0;
    bool served = false;
    CItemDetailsForm form(item, [&](const CPimItem& copy, const QString& note, QWidget*) {
        EXPECT_EQ(copy.ItemId, item.ItemId);
        EXPECT_TRUE(note.isEmpty());
        ++edited;
        return served;
    });
    bool closed = false;
    QTimer::singleShot(0, &form, [&] {
        EXPECT_EQ(TextsOf(form), QStringList({"555-1234", "www.example.org/room"}));
        QTest::keyClick(&form, Qt::Key_F1);
        EXPECT_EQ(edited, 1);
        served = true;
        QTest::keyClick(&form, Qt::Key_F1);
        closed = true;
    });
    EXPECT_EQ(form.Run(m_owner.get()), CFormDialog::kDone);
    EXPECT_TRUE(closed);
    EXPECT_EQ(edited, 2);
}

// However much somebody wrote, the page opens, scrolls and finds what is tapped.
TEST_F(ItemDetails, AVeryLongNoteIsReadToItsEnd)
{
    constexpr int kMany = 20000;
    const CAppointment item = Stored(QString("ann@b.cd ").repeated(kMany) + "last@example.org");
    CItemDetailsForm form(item, {});
    Run(form, [&] {
        ASSERT_EQ(form.Links().size(), kMany + 3u);
        for (int i = 0; i < 50; ++i)
            QTest::keyClick(&form, Qt::Key_PageDown);
        const QImage before = form.Snapshot();
        QTest::keyClick(&form, Qt::Key_End);
        EXPECT_NE(form.Snapshot(), before);
        const QRect link = form.Links().back().Rects.front().translated(0, form.Scroller().Scroll());
        QTest::mouseClick(&form, Qt::LeftButton, {}, form.Layout().Client.topLeft() + link.center());
        EXPECT_EQ(m_started, QStringList("xdg-open mailto:last@example.org"));
    });
}

// The item may go while the page shows it, and everything may be as long as it likes.
TEST_F(ItemDetails, StandsWithoutItsItemAtAnySize)
{
    CAppointment item = Stored("Bring the plans.\nCall +49 30 1234567 or write to ann@example.org, see "
                               "www.example.org/plans?x=1 for all of it.\n" +
                               QString("word ").repeated(2000));
    item.AllDay = true;
    item.End = kToday + 3;
    item.EndsPreviousDay = true;
    item.ReminderSet = true;
    item.Sensitivity = 2;
    CItemDetailsForm form(item, {});
    PimStore().Clear();
    ASSERT_TRUE(PimStore().DeleteAppointment(*m_app, item.ItemId, 0, nullptr));
    Run(form, [&] {
        for (const QSize size : {QSize(240, 320), QSize(320, 240), QSize(60, 40), QSize(1080, 2160)}) {
            m_owner->resize(size);
            QCoreApplication::processEvents();
            EXPECT_FALSE(form.Snapshot().isNull());
            for (const auto& place : form.Links()) {
                for (const QRect& rect : place.Rects)
                    EXPECT_LE(rect.right(), form.Layout().Client.width()) << size.width();
            }
        }
    });
}

TEST_F(ItemDetails, SaysAllOfAnAppointment)
{
    const auto stored = m_app->CreateAppointment();
    stored->put_Subject("Meeting");
    stored->put_Location("Room 12");
    stored->put_Start(kToday + 10.0 / 24);
    stored->put_End(kToday + 11.5 / 24);
    stored->put_Body("Bring plans");
    stored->put_BusyStatus(3);
    stored->put_Categories("Work, Home");
    stored->put_ReminderSet(true);
    stored->put_ReminderMinutesBeforeStart(90);
    stored->get_Recipients()->Add("Ann");
    stored->get_Recipients()->Add("Bob");
    ASSERT_TRUE(stored->Save());
    CAppointment item(kKindAppointment, CAppointment::Blank{});
    ASSERT_TRUE(PimStore().ReadOccurrence(stored->get_Oid(), kToday, item));
    EXPECT_EQ(Said(item).toStdString(),
              "Meeting|Room 12|10:00 AM - 11:30 AM|Tue, 3/17/2026|Status: |Out of Office|Attendees: |Ann; "
              "Bob|Categories: |Work, Home|Tue, 3/17/2026 8:30 AM|Bring plans");
}

// The series keeps when it reminds; each occurrence counts from its own start.
TEST_F(ItemDetails, AnOccurrenceRemindsBeforeItself)
{
    const auto stored = m_app->CreateAppointment();
    stored->put_Subject("Weekly");
    stored->put_Start(kToday + 10.0 / 24);
    stored->put_End(kToday + 11.0 / 24);
    stored->put_ReminderSet(true);
    stored->put_ReminderMinutesBeforeStart(60 * 24);
    IRecurrencePattern* const pattern = stored->GetRecurrencePattern();
    pattern->put_RecurrenceType(OlRecurs::Weekly);
    pattern->put_DayOfWeekMask(4);
    pattern->put_PatternStartDate(kToday);
    pattern->put_StartTime(10.0 / 24);
    pattern->put_EndTime(11.0 / 24);
    ASSERT_TRUE(stored->Save());
    CAppointment item(kKindAppointment, CAppointment::Blank{});
    ASSERT_TRUE(PimStore().ReadOccurrence(stored->get_Oid(), kToday + 7, item));
    const QString said = Said(item);
    EXPECT_TRUE(said.contains("|Tue, 3/24/2026|")) << said.toStdString();
    EXPECT_TRUE(said.endsWith("|Mon, 3/23/2026 10:00 AM")) << said.toStdString();
}

TEST_F(ItemDetails, PressingAPartFollowsTheLink)
{
    const CAppointment item = Stored("mail ann@example.org");
    CItemDetailsForm form(item, {});
    Run(form, [&] {
        EXPECT_TRUE(Said(form).startsWith("Call 555-1234 first|[555-1234]|www.example.org/room|["))
            << Said(form).toStdString();
        for (int i = 0; i < form.GetPartCount(); ++i) {
            const CPaintedPart part = form.GetPart(i);
            EXPECT_EQ(part.Pressable, part.Role != QAccessible::StaticText) << part.Name.toStdString();
            if (part.Role == QAccessible::Link)
                form.PressPart(i);
        }
        EXPECT_EQ(form.CurrentLink(), 2);
    });
    EXPECT_EQ(m_started, QStringList({"xdg-open tel:5551234", "xdg-open http://www.example.org/room",
                                      "xdg-open mailto:ann@example.org"}));
}

// A finger has scrolled on: the key takes the first link in sight, not one that nobody sees.
TEST_F(ItemDetails, KeysPassLinksThatWereScrolledAway)
{
    QString note = "one@example.org\n";
    for (int i = 0; i < 60; ++i)
        note += QString("line\nlink%1@example.org\n").arg(i);
    const CAppointment item = Stored(note);
    CItemDetailsForm form(item, {});
    const auto isSeen = [&] {
        const QRect place =
            form.Links()[size_t(form.CurrentLink())].Rects.front().translated(0, form.Scroller().Scroll());
        return place.bottom() >= 0 && place.top() < form.Scroller().Height();
    };
    Run(form, [&] {
        form.Scroller().ScrollBy(-600);
        QTest::keyClick(&form, Qt::Key_Down);
        EXPECT_GT(form.CurrentLink(), 10);
        EXPECT_TRUE(isSeen());
        form.Scroller().ScrollBy(400);
        QTest::keyClick(&form, Qt::Key_Up);
        EXPECT_TRUE(isSeen());
        EXPECT_GT(form.CurrentLink(), 3);
    });
}

// Its end is the midnight after that.
TEST_F(ItemDetails, AnAllDayEventEndsOnItsLastDay)
{
    const auto picture = [this](DATE end) {
        CAppointment item = *Appointment(1, "Fair", kToday, end);
        item.AllDay = true;
        QImage shown;
        CItemDetailsForm form(item, {});
        Run(form, [&] { shown = form.Snapshot(); });
        return shown;
    };
    EXPECT_EQ(picture(kToday + 1), picture(kToday + 0.75));
    EXPECT_NE(picture(kToday + 2), picture(kToday + 1));
}

TEST_F(ItemDetails, TasksOfAllDates)
{
    const struct {
        DATE Start, Due;
        bool Complete;
        int Priority;
        const char* Said;
    } kCases[] = {{NO_DATE, NO_DATE, false, 2, "Active task|Undated task"},
                  {double(kToday), NO_DATE, false, 2, "Active task|Undated task"},
                  {NO_DATE, double(kToday), true, 0, "Completed task|Due 3/17/2026, Tue"},
                  {double(kToday - 3), double(kToday), false, 1, "Active task|3/14/2026 - 3/17/2026"}};
    for (const auto& c : kCases) {
        CCalendarTask task;
        task.Subject = "task 123456";
        task.Start = c.Start;
        task.End = c.Due;
        task.Complete = c.Complete;
        task.Priority = c.Priority;
        EXPECT_EQ(Said(task).toStdString(), std::string("task 123456|[123456]|") + c.Said);
        task.ReminderSet = true;
        task.ReminderTime = kToday - 0.5;
        EXPECT_EQ(Said(task).toStdString(),
                  std::string("task 123456|[123456]|") + c.Said + "|Mon, 3/16/2026 12:00 PM");
    }
}
