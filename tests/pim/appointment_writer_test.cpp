// Saving, deleting and duplicating through the object model, with a user who answers.
#include "pim_fixture.h"

namespace
{
using Choice = IWriterQuestions::Choice;

class FakeUser : public IWriterQuestions
{
public:
    Choice AskTwoWays(const QString& question, const QString& first, const QString& firstText,
                      const QString& second, const QString& secondText) override
    {
        Asked += QStringList{question, first, firstText, second, secondText}.join('|');
        return Answer;
    }
    void ShowMessage(const QString& text, const QString& title) override
    {
        Told += QStringLiteral("%1: %2").arg(title, text);
    }

    Choice Answer = Choice::None;
    QStringList Asked, Told;
};

class AppointmentWriter : public PimTest
{
protected:
    AppointmentWriter()
    {
        OpenStore();
        m_app = MakePOutlookApp(m_volume);
        EXPECT_TRUE(m_app->Logon());
        LoadDay("2026-03-10");
    }
    QStringList Shown(const char* iso)
    {
        m_store.DrainNotices();
        return LinesOf(iso);
    }
    CAppointment New(const char* subject, const char* start, const char* end)
    {
        CAppointment item;
        item.Subject = subject;
        item.Start = At(start);
        item.End = At(end);
        return item;
    }
    CAppointment* OnDay(const char* iso)
    {
        m_store.DrainNotices();
        const CDayItems* day = m_store.FindDay(Day(iso));
        return day && !day->Appointments.empty() ? day->Appointments[0].get() : nullptr;
    }
    bool Save(const CAppointment& item, const QString& note = {}, bool only = false, int day = 0)
    {
        return m_store.SaveAppointment(m_app.get(), item, note, kPresetKept, only, nullptr, nullptr, day,
                                       &m_user);
    }

    std::unique_ptr<IPOutlookApp> m_app;
    FakeUser m_user;
};
} // namespace

TEST_F(AppointmentWriter, ANewItemTakesTheDefaultsAndComesBackByItsNotice)
{
    g_Settings.DefaultValues.NewAppointmentStartTime = 9 * 60 + 10;
    g_Settings.DefaultValues.NewAppointmentDuration = 45;
    g_Settings.DefaultValues.ReminderValue = 4;
    CAppointment item;
    EXPECT_EQ(Iso(item.Start), "2026-03-15 09:30");
    EXPECT_EQ(Iso(item.End), "2026-03-15 10:15");
    EXPECT_TRUE(item.ReminderSet);
    EXPECT_EQ(item.ReminderMinutes, 15);
    item.Subject = "Fresh";
    item.Categories.Insert(m_store.Categories().AddLocal("Garden")->Id);
    ASSERT_TRUE(Save(item, "A note"));
    EXPECT_EQ(Shown("2026-03-15"), QStringList{"09:30-10:15 Fresh"});
    const CAppointment& shown = *OnDay("2026-03-15");
    EXPECT_TRUE(shown.HasNote && shown.ReminderSet);
    EXPECT_EQ(m_store.Categories().GetNamesText(shown.Categories), "Garden");

    const auto target = m_store.GetEditTarget(*m_app, shown.ItemId, 0, nullptr);
    CAppointment read(kKindAppointment, CAppointment::Blank{});
    m_store.ReadAppointmentFromModel(*target, read);
    EXPECT_EQ(read.ReminderMinutes, 15);
    EXPECT_EQ(Iso(read.End), "2026-03-15 10:15");
    EXPECT_EQ(m_store.Categories().GetNamesText(read.Categories), "Garden");
    EXPECT_TRUE(m_user.Told.isEmpty());
}

TEST_F(AppointmentWriter, AnEmptyNoteClearsTheOldOne)
{
    ASSERT_TRUE(Save(New("Item", "2026-03-10 10:00", "2026-03-10 11:00"), "Old"));
    CAppointment item = *OnDay("2026-03-10");
    QString note, attendees;
    m_store.GetItemTexts(item.ItemId, item.Start, 0, item.Kind, note, attendees);
    EXPECT_EQ(note, "Old");
    ASSERT_TRUE(Save(item));
    m_store.GetItemTexts(item.ItemId, item.Start, 0, item.Kind, note, attendees);
    EXPECT_EQ(note, "");
    EXPECT_FALSE(OnDay("2026-03-10")->HasNote);
}

TEST_F(AppointmentWriter, ExactValuesOfAnAllDayItemWithoutSubject)
{
    CAppointment item = New("", "2026-03-10", "2026-03-12");
    item.AllDay = true;
    ASSERT_TRUE(Save(item));
    EXPECT_TRUE(OnDay("2026-03-11"));
    const auto target = m_store.GetEditTarget(*m_app, OnDay("2026-03-10")->ItemId, 0, nullptr);
    CAppointment read(kKindAppointment, CAppointment::Blank{});
    m_store.ReadAppointmentFromModel(*target, read);
    EXPECT_EQ(read.Subject, "No subject");
    EXPECT_EQ(Iso(read.End), "2026-03-11 00:00"); // the last day itself
}

TEST_F(AppointmentWriter, OneOccurrenceLeavesTheSeriesAlone)
{
    WriteSeries("Weekly", Pattern("weekly", "2026-03-03", 600, 60));
    const CAppointment before = *OnDay("2026-03-10");
    m_user.Answer = Choice::First;
    bool only = false;
    const auto target = m_store.GetEditTarget(*m_app, before.ItemId, before.OriginalDay, &m_user, &only);
    ASSERT_TRUE(target);
    EXPECT_TRUE(only);
    EXPECT_EQ(
        m_user.Asked,
        QStringList{"Do you want to edit this occurrence only or the entire recurring series?|Occurrence|"
                    "Edit this single occurrence|Series|Edit series"});
    CAppointment item(kKindAppointment, CAppointment::Blank{});
    m_store.ReadAppointmentFromModel(*target, item);
    EXPECT_EQ(Iso(item.Start), "2026-03-10 10:00");
    item.ItemId = before.ItemId;
    item.Subject = "Once";
    item.Start = At("2026-03-11 12:00");
    item.End = At("2026-03-11 13:00");
    item.SetPrivate(true);
    item.ReminderSet = true;
    ASSERT_TRUE(Save(item, "Its own", true, before.OriginalDay));
    EXPECT_EQ(Shown("2026-03-10"), QStringList());
    EXPECT_EQ(Shown("2026-03-11"), QStringList{"12:00-13:00 Once"});
    EXPECT_EQ(Shown("2026-03-17"), QStringList{"10:00-11:00 Weekly"});
    EXPECT_FALSE(OnDay("2026-03-17")->IsPrivate() || OnDay("2026-03-17")->ReminderSet);
    QString note, attendees;
    m_store.GetItemTexts(before.ItemId, 0, before.OriginalDay, kKindAppointment, note, attendees);
    EXPECT_EQ(note, "Its own");
    m_store.GetItemTexts(before.ItemId, 0, Day("2026-03-17"), kKindAppointment, note, attendees);
    EXPECT_EQ(note, "");
}

TEST_F(AppointmentWriter, TheSeriesWithNewTimesOrWithoutItsRecurrence)
{
    WriteSeries("Weekly", Pattern("weekly", "2026-03-03", 600, 60));
    m_user.Answer = Choice::Second;
    const auto target =
        m_store.GetEditTarget(*m_app, OnDay("2026-03-10")->ItemId, Day("2026-03-10"), &m_user);
    CAppointment item(kKindAppointment, CAppointment::Blank{});
    m_store.ReadAppointmentFromModel(*target, item);
    EXPECT_EQ(item.Recurrence, 1);
    EXPECT_EQ(Iso(item.Start), "2026-03-03 10:00");
    item.Start = At("2026-03-03 14:00");
    item.End = At("2026-03-03 14:30");
    ASSERT_TRUE(Save(item));
    EXPECT_EQ(Shown("2026-03-24"), QStringList{"14:00-14:30 Weekly"});
    item.Recurrence = 0;
    ASSERT_TRUE(Save(item));
    EXPECT_EQ(Shown("2026-03-03"), QStringList{"14:00-14:30 Weekly"});
    EXPECT_EQ(Shown("2026-03-24"), QStringList());
}

TEST_F(AppointmentWriter, WhatIsNotThereIsTold)
{
    CAppointment item = New("Ghost", "2026-03-10 10:00", "2026-03-10 11:00");
    item.ItemId = kAppointmentTag + 4711;
    EXPECT_FALSE(Save(item));
    EXPECT_EQ(m_user.Told,
              QStringList{"Saving problem: Problem saving appointment information to databases; Please "
                          "contact ZELV support to report this problem."});
    EXPECT_FALSE(m_store.SaveAppointment(nullptr, item, {}, 0, false, nullptr, nullptr, 0, &m_user));
    EXPECT_FALSE(m_store.DeleteAppointment(*m_app, item.ItemId, 0, &m_user));
    EXPECT_FALSE(m_store.DuplicateItem(*m_app, item.ItemId));
    m_user.Told.clear();
    m_user.Answer = Choice::First;
    WriteSeries("Weekly", Pattern("weekly", "2026-03-03", 600, 60));
    EXPECT_FALSE(m_store.GetEditTarget(*m_app, OnDay("2026-03-10")->ItemId, Day("2026-03-12"), &m_user));
    EXPECT_EQ(m_user.Told, QStringList{"Error: Problem finding occurrence"});
    m_user.Told.clear();
    m_user.Answer = Choice::None;
    EXPECT_FALSE(m_store.GetEditTarget(*m_app, OnDay("2026-03-10")->ItemId, Day("2026-03-10"), &m_user));
    EXPECT_TRUE(m_user.Told.isEmpty());
}

TEST_F(AppointmentWriter, AFailedSaveIsToldAndLeavesTheOldItem)
{
    ASSERT_TRUE(Save(New("Old", "2026-03-10 10:00", "2026-03-10 11:00")));
    CAppointment item = *OnDay("2026-03-10");
    item.Subject = "New";
    FailVolumeWrite(1);
    EXPECT_FALSE(Save(item));
    FailVolumeWrite(0);
    EXPECT_EQ(m_user.Told.size(), 1);
    EXPECT_EQ(Shown("2026-03-10"), QStringList{"10:00-11:00 Old"});
}

TEST_F(AppointmentWriter, DeletingAsks)
{
    WriteSeries("Weekly", Pattern("weekly", "2026-03-03", 600, 60));
    const quint32 id = OnDay("2026-03-10")->ItemId;
    EXPECT_FALSE(m_store.DeleteAppointment(*m_app, id, Day("2026-03-10"), &m_user));
    EXPECT_EQ(m_user.Asked,
              QStringList{"Do you want to delete this occurrence only, or the entire series?|Occurrence|"
                          "Delete this single occurrence|Series|Delete series"});
    EXPECT_EQ(Shown("2026-03-10").size(), 1);
    m_user.Answer = Choice::First;
    EXPECT_TRUE(m_store.DeleteAppointment(*m_app, id, Day("2026-03-10"), &m_user));
    EXPECT_EQ(Shown("2026-03-10"), QStringList());
    EXPECT_EQ(Shown("2026-03-17").size(), 1);
    m_user.Answer = Choice::Second;
    EXPECT_TRUE(m_store.DeleteAppointment(*m_app, id, Day("2026-03-17"), &m_user));
    EXPECT_EQ(Shown("2026-03-17"), QStringList());
    EXPECT_EQ(m_volume->RecordCount(kAppointmentsDatabase), 0);
}

TEST_F(AppointmentWriter, ADuplicateHasTheBody)
{
    ASSERT_TRUE(Save(New("Item", "2026-03-10 10:00", "2026-03-10 11:00"), "Body"));
    const quint32 id = OnDay("2026-03-10")->ItemId;
    ASSERT_TRUE(m_store.DuplicateItem(*m_app, id));
    m_store.DrainNotices();
    const auto& items = m_store.FindDay(Day("2026-03-10"))->Appointments;
    ASSERT_EQ(items.size(), 2u);
    const quint32 copy = items[0]->ItemId == id ? items[1]->ItemId : items[0]->ItemId;
    EXPECT_NE(copy, id);
    QString note, attendees;
    m_store.GetItemTexts(copy, 0, 0, kKindAppointment, note, attendees);
    EXPECT_EQ(note, "Body");
}

TEST_F(AppointmentWriter, AttendeesAreReplacedAndTheirNamesJoined)
{
    const std::vector<CAttendee> first = {{"Ann", "ann@example.org"}, {"Bob", "bob@example.org"}};
    const CAppointment item = New("Meeting", "2026-03-10 10:00", "2026-03-10 11:00");
    ASSERT_TRUE(m_store.SaveAppointment(m_app.get(), item, {}, 0, false, nullptr, &first, 0, &m_user));
    CAppointment saved = *OnDay("2026-03-10");
    EXPECT_TRUE(saved.HasAttendees);
    QString note, attendees;
    m_store.GetItemTexts(saved.ItemId, 0, 0, kKindAppointment, note, attendees);
    EXPECT_EQ(attendees, "Ann; Bob");
    const std::vector<CAttendee> second = {{"Cid", "cid@example.org"}};
    ASSERT_TRUE(m_store.SaveAppointment(m_app.get(), saved, {}, 0, false, nullptr, &second, 0, &m_user));
    std::vector<CAttendee> read;
    ASSERT_TRUE(m_store.ReadAttendees(saved.ItemId, read));
    EXPECT_EQ(read, second);
    ASSERT_TRUE(Save(saved)); // none given: left alone
    ASSERT_TRUE(m_store.ReadAttendees(saved.ItemId, read));
    EXPECT_EQ(read, second);
}
