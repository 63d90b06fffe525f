#include "fixture.h"

#include "records/property_numbers.h"

// ---- plain items

TEST_F(ObjectModel, WhatWasPutComesBackInANewProgram)
{
    auto item = Plain("2026-07-01 09:30", "2026-07-01 10:45");
    item->put_Subject("Lunch");
    item->put_Location("Room");
    item->put_Body("line one\nline two");
    item->put_BusyStatus(3);
    item->put_Sensitivity(2);
    item->put_ReminderSet(true);
    item->put_ReminderMinutesBeforeStart(30);
    item->put_Categories(" Work ,Home,, work");
    item->get_Recipients()->Add("Ada")->put_Address("ada@example.org");
    EXPECT_EQ(item->get_Oid(), 0u);
    ASSERT_TRUE(item->Save());
    const quint32 id = item->get_Oid();
    EXPECT_EQ(id, kAppointmentTag + 1);
    Reopen();
    const auto read = Get(id);
    EXPECT_EQ(read->get_Subject(), "Lunch");
    EXPECT_EQ(read->get_Location(), "Room");
    EXPECT_EQ(read->get_Body(), "line one\nline two");
    EXPECT_EQ(IsoOf(read->get_Start()), "2026-07-01 09:30");
    EXPECT_EQ(IsoOf(read->get_End()), "2026-07-01 10:45");
    EXPECT_EQ(read->get_BusyStatus(), 3);
    EXPECT_EQ(read->get_Sensitivity(), 2);
    EXPECT_TRUE(read->get_ReminderSet());
    EXPECT_EQ(read->get_ReminderMinutesBeforeStart(), 30);
    EXPECT_EQ(read->get_Categories(), "Work, Home");
    ASSERT_EQ(read->get_Recipients()->get_Count(), 1);
    EXPECT_EQ(read->get_Recipients()->Item(1)->get_Address(), "ada@example.org");
    EXPECT_EQ(read->get_Recipients()->Item(2), nullptr);
    EXPECT_FALSE(read->get_IsRecurring());
    EXPECT_FALSE(Read(*read).Has(Prop::Recurring)); // so that the order of series holds no others
}

TEST_F(ObjectModel, DatesAreStoredByTheRules)
{
    const struct {
        const char *start, *end;
        bool allDay;
        const char *storedStart, *storedEnd; // as read back
        int minutes, longSpan;
    } cases[] = {
        {"2026-07-01 10:00", "2026-07-01 11:00", false, "2026-07-01 10:00", "2026-07-01 11:00", 60, 0},
        {"2026-07-01 23:30", "2026-07-02 00:30", false, "2026-07-01 23:30", "2026-07-02 00:30", 60, 0},
        {"2026-07-01 10:00", "2026-07-01 09:00", false, "2026-07-01 10:00", "2026-07-01 10:00", 0,
         0}, // swapped
        {"2026-07-01", "2026-07-02", true, "2026-07-01", "2026-07-02", 1440, 0},
        {"2026-07-01", "2026-07-01", true, "2026-07-01", "2026-07-02", 1440, 0},
        {"2026-07-01 15:00", "2026-07-03 01:00", true, "2026-07-01", "2026-07-04", 4320, 0},
        {"2026-07-02", "2026-07-01", true, "2026-07-02", "2026-07-03", 1440, 0},
        {"2026-07-01 10:00", "2026-08-01 10:00", false, "2026-07-01 10:00", "2026-08-01 10:00", 44640, 0},
        {"2026-07-01 10:00", "2026-08-01 10:01", false, "2026-07-01 10:00", "2026-08-01 10:01", 44641, 44641},
        {"2026-03-28 10:00", "2026-03-29 10:00", false, "2026-03-28 10:00", "2026-03-29 10:00", 1440,
         0}, // a day of 23 hours
    };
    for (const auto& c : cases) {
        auto item = Plain(c.start, c.end);
        item->put_AllDayEvent(c.allDay);
        ASSERT_TRUE(item->Save());
        const auto read = Get(item->get_Oid());
        EXPECT_EQ(IsoOf(read->get_Start()), c.storedStart);
        EXPECT_EQ(IsoOf(read->get_End()), c.storedEnd);
        EXPECT_EQ(IsoOf(ReadStart(*item)), c.storedStart);
        EXPECT_EQ(Read(*item).Number(Prop::Duration), c.minutes);
        EXPECT_EQ(Read(*item).Number(Prop::LongSpan), c.longSpan);
        EXPECT_EQ(item->get_End(), read->get_End()); // the object knows what it stored
    }
}

TEST_F(ObjectModel, ShorteningALongItemTakesItOutOfItsOrder)
{
    auto item = Plain("2026-07-01 10:00", "2026-09-01 10:00");
    ASSERT_TRUE(item->Save());
    ASSERT_TRUE(Read(*item).Has(Prop::LongSpan));
    item->put_End(At("2026-07-02 10:00"));
    ASSERT_TRUE(item->Save());
    EXPECT_FALSE(Read(*item).Has(Prop::LongSpan));
}

TEST_F(ObjectModel, WallTimesComeBackInBothSeasonsAndHemispheres)
{
    const char* const walls[] = {"2026-01-15 10:00", "2026-07-15 10:00", "2025-07-15 00:00",
                                 "2030-01-15 23:45", "2026-03-29 01:30", "2026-03-29 03:30",
                                 "2026-10-25 01:30", "2026-10-25 02:30", "2026-10-25 03:30",
                                 "2026-04-05 02:30", "2026-04-05 03:30", "2026-10-04 01:30"};
    for (const TimeZoneInformation& zone : {BerlinZone(), SydneyZone(), NewYorkZone(), PlainZone(-330)}) {
        SetZone(zone);
        for (const char* now : {"2026-01-10 12:00", "2026-07-10 12:00"}) {
            SetNow(now);
            for (const char* wall : walls) {
                const auto item = Plain(wall, wall);
                ASSERT_TRUE(item->Save());
                EXPECT_EQ(IsoOf(ReadStart(*item)), IsoOf(At(wall))) << now;
                EXPECT_EQ(IsoOf(Get(item->get_Oid())->get_Start()), IsoOf(At(wall))) << now;
            }
        }
    }
    SetZone(BerlinZone());
    const auto skipped = Plain("2026-03-29 02:30", "2026-03-29 02:45"); // there is no such time
    ASSERT_TRUE(skipped->Save());
    EXPECT_EQ(IsoOf(ReadStart(*skipped)), "2026-03-29 03:30");
}

TEST_F(ObjectModel, AnAllDayItemShowsOnItsDayInEveryZone)
{
    const auto item = Plain("2026-07-01", "2026-07-03");
    item->put_AllDayEvent(true);
    ASSERT_TRUE(item->Save());
    for (int bias : {720, 600, 300, 60, 0, -60, -330, -600, -720, -780, -840}) {
        SetZone(PlainZone(bias));
        EXPECT_EQ(IsoOf(ReadStart(*item)), "2026-07-01") << bias;
        const auto read = Get(item->get_Oid());
        EXPECT_EQ(IsoOf(read->get_Start()), "2026-07-01") << bias;
        EXPECT_EQ(IsoOf(read->get_End()), "2026-07-03") << bias;
    }
}

TEST_F(ObjectModel, PutStartKeepsTheDuration)
{
    const auto item = Plain("2026-07-01 10:00", "2026-07-01 11:20");
    item->put_Start(At("2026-08-01 23:00"));
    EXPECT_EQ(IsoOf(item->get_End()), "2026-08-02 00:20");
}

TEST_F(ObjectModel, DatesThatCannotBeStoredAreRefused)
{
    for (DATE date : {-200000.0, 3000000.0, double(NAN)}) {
        const auto item = m_app->CreateAppointment();
        item->put_Start(date);
        const CStatus status = item->Save();
        EXPECT_EQ(status.Kind(), StatusKind::Invalid) << date;
        EXPECT_FALSE(status.Text().isEmpty());
    }
    EXPECT_EQ(m_volume->RecordCount(kAppointmentsDatabase), 0);
    const auto undated = m_app->CreateAppointment();
    undated->put_Subject("some day");
    ASSERT_TRUE(undated->Save());
    EXPECT_FALSE(Read(*undated).Has(Prop::Start));
    EXPECT_EQ(Get(undated->get_Oid())->get_Start(), NO_DATE);
}

TEST_F(ObjectModel, ASaveWritesOnlyWhatWasPut)
{
    auto item = Plain("2026-07-01 10:00", "2026-07-01 11:00");
    item->put_Body("text");
    ASSERT_TRUE(item->Save());
    // Another program keeps rows of its own, among them a note as a document.
    const CEPROPVAL foreign[] = {{Prop::NoteDocument, QByteArray("doc")}, {0x5555001F, QString("kept")}};
    CEOID oid = item->RecordOid();
    ASSERT_TRUE(m_volume->WriteRecord(kAppointmentsDatabase, oid, foreign, {}, &oid));
    const auto other = Get(item->get_Oid());
    item->put_Subject("one");
    ASSERT_TRUE(item->Save());
    other->put_Location("two");
    ASSERT_TRUE(other->Save());
    EXPECT_EQ(Read(*item).Text(Prop::Subject) + Read(*item).Text(Prop::Location), "onetwo");
    EXPECT_TRUE(Read(*item).Has(Prop::NoteDocument));
    EXPECT_EQ(Read(*item).Text(0x5555001F), "kept");
    other->put_Body("");
    ASSERT_TRUE(other->Save());
    EXPECT_FALSE(Read(*item).Has(Prop::Note));
    EXPECT_FALSE(Read(*item).Has(Prop::NoteDocument)); // it told the old text
}

// ---- categories

TEST_F(ObjectModel, CategoriesAreMadeOnceAndKeptByNumber)
{
    auto a = Plain("2026-07-01", "2026-07-02"), b = Plain("2026-07-01", "2026-07-02");
    a->put_Categories("Work, Private");
    b->put_Categories("WORK, Sport");
    ASSERT_TRUE(a->Save());
    ASSERT_TRUE(b->Save());
    EXPECT_EQ(m_volume->RecordCount(kCategoryDatabase), 3);
    EXPECT_EQ(b->get_Categories(), "Work, Sport");
    a->put_Categories("Sport, Private");
    ASSERT_TRUE(a->Save());
    EXPECT_EQ(m_volume->RecordCount(kCategoryAssocDatabase), 4);
    EXPECT_EQ(Get(a->get_Oid())->get_Categories(), "Private, Sport");
    ASSERT_TRUE(b->Delete());
    EXPECT_EQ(m_volume->RecordCount(kCategoryAssocDatabase), 2);
    EXPECT_EQ(m_volume->RecordCount(kCategoryDatabase), 3);
    EXPECT_EQ(b->Delete().Kind(), StatusKind::NotFound);
}

TEST_F(ObjectModel, CategoriesMadeElsewhereAreSeen)
{
    auto item = Plain("2026-07-01", "2026-07-02");
    item->put_Categories("One");
    ASSERT_TRUE(item->Save());
    std::shared_ptr<CPropertyVolume> other;
    ASSERT_TRUE(
        CPropertyVolume::Open(m_volume->Path(), PimSchema(), CPropertyVolume::Mode::MustExist, other));
    const auto app = MakePOutlookApp(other);
    auto theirs = app->CreateAppointment();
    theirs->put_Start(At("2026-07-05"));
    theirs->put_Categories("Two");
    ASSERT_TRUE(theirs->Save());
    item->put_Categories("two, One");
    ASSERT_TRUE(item->Save());
    EXPECT_EQ(m_volume->RecordCount(kCategoryDatabase), 2);
    EXPECT_EQ(item->get_Categories(), "One, Two");
}

TEST_F(ObjectModel, EverySaveIsToldForTheItemsOwnRecord)
{
    auto item = Plain("2026-07-01", "2026-07-02");
    ASSERT_TRUE(item->Save());
    EXPECT_EQ(Notices(), "0 1025");
    item->put_Categories("Work");
    ASSERT_TRUE(item->Save());
    EXPECT_EQ(Notices(), "0 1030, 3 1025, 4 1025");
    ASSERT_TRUE(item->Save()); // nothing was put
    EXPECT_EQ(Notices(), "0 1030");
    ASSERT_TRUE(item->Delete());
    EXPECT_EQ(Notices(), "4 1027, 0 1027");
}

// ---- batches and failures

TEST_F(ObjectModel, AFailedSaveInABatchFailsThatItemAlone)
{
    ASSERT_TRUE(m_app->BeginBatch());
    EXPECT_FALSE(m_app->BeginBatch());
    auto good = Plain("2026-07-01", "2026-07-02"), bad = m_app->CreateAppointment(),
         last = Plain("2026-07-03", "2026-07-04");
    good->put_Categories("Kept");
    ASSERT_TRUE(good->Save());
    bad->put_Start(-1e9);
    EXPECT_FALSE(bad->Save());
    bad->put_Start(At("2026-07-09"));
    bad->put_Categories("Lost");
    FailVolumeWrite(4);
    EXPECT_EQ(bad->Save().Kind(), StatusKind::Full);
    EXPECT_TRUE(FailVolumeWrite(0));
    last->put_Categories("Kept, Lost");
    ASSERT_TRUE(last->Save());
    ASSERT_TRUE(m_app->CommitBatch());
    Reopen();
    EXPECT_EQ(m_volume->RecordCount(kAppointmentsDatabase), 2);
    EXPECT_EQ(Get(last->get_Oid())->get_Categories(), "Kept, Lost");
    EXPECT_EQ(m_volume->RecordCount(kCategoryDatabase), 2);
}

TEST_F(ObjectModel, AnAbandonedBatchLeavesNothing)
{
    ASSERT_TRUE(m_app->BeginBatch());
    auto item = Plain("2026-07-01", "2026-07-02");
    item->put_Categories("Work");
    ASSERT_TRUE(item->Save());
    m_app->AbandonBatch();
    EXPECT_EQ(m_volume->RecordCount(kAppointmentsDatabase), 0);
    EXPECT_EQ(m_volume->RecordCount(kCategoryDatabase), 0);
    EXPECT_EQ(Notices(), "");
    auto next = Plain("2026-07-01", "2026-07-02");
    next->put_Categories("Work"); // was rolled back, must be made again
    ASSERT_TRUE(next->Save());
    EXPECT_EQ(Get(next->get_Oid())->get_Categories(), "Work");
}

// The n-th write fails, for every n: nothing is changed and nobody is told; then it works.
TEST_F(ObjectModel, AFailedWriteChangesNothing)
{
    auto series = Series();
    auto item = Plain("2026-07-01", "2026-07-02");
    item->put_Categories("Old");
    ASSERT_TRUE(item->Save());
    const std::function<CStatus(int)> works[] = {
        [&](int) {
            auto one = Get(item->get_Oid());
            one->put_Subject("changed");
            one->put_Categories("New, Newer");
            return one->Save();
        },
        [&](int) {
            auto one = Get(series->get_Oid());
            one->GetRecurrencePattern()->put_Interval(3);
            return one->Save();
        },
        [&](int) {
            auto one = Occurrence(series->get_Oid(), "2026-01-05");
            one->put_Subject("other");
            return one->Save();
        },
        [&](int) { return Occurrence(series->get_Oid(), "2026-01-05")->Delete(); },
        [&](int) { return Get(item->get_Oid())->Delete(); },
    };
    const auto state = [&] {
        QString text;
        for (const CDatabaseSchema& database : PimSchema())
            for (CEOID oid = 1; oid < 40; ++oid) {
                CReadRecord record;
                if (m_volume->ReadWholeRecord(database.Name, oid, record.Rows))
                    for (const CEPROPVAL& row : record.Rows)
                        text += QString("%1:%2=%3%4%5 ")
                                    .arg(oid)
                                    .arg(row.propid, 0, 16)
                                    .arg(row.Number)
                                    .arg(row.Text, QString::fromLatin1(row.Bytes.toHex()));
            }
        return text;
    };
    int failures = 0;
    for (const auto& work : works) {
        const QString before = state();
        Notices();
        for (int n = 1;; ++n) {
            ASSERT_LT(n, 50);
            FailVolumeWrite(n);
            const CStatus status = work(n);
            const bool failed = FailVolumeWrite(0);
            if (!failed) {
                EXPECT_TRUE(status) << status.Text().toStdString();
                break;
            }
            ++failures;
            EXPECT_FALSE(status);
            EXPECT_EQ(state(), before);
            EXPECT_EQ(Notices(), "");
        }
        EXPECT_NE(state(), before);
        EXPECT_NE(Notices(), "");
    }
    EXPECT_GT(failures, 15);
}

// ---- identity

TEST_F(ObjectModel, ItemsAreFoundByTheirUid)
{
    EXPECT_FALSE(m_app->HasAnyUid());
    const struct {
        const char *uid, *occurrence;
        quint32 index;
    } cases[] = {{"b@x", "", 0}, {"a@x", "20260105", 0}, {"a@x", "", 1},
                 {"a@x", "", 0}, {"A@x", "", 0},         {"a@", "", 0}};
    for (const auto& c : cases) {
        const auto item = Plain("2026-07-01", "2026-07-02");
        CForeignData data;
        data.Uid = c.uid;
        data.OccurrenceId = c.occurrence;
        data.EqualsIndex = c.index;
        data.Sequence = 7;
        data.ContentHash = "hash";
        data.Text = "X-A:1";
        item->put_Foreign(data);
        ASSERT_TRUE(item->Save());
    }
    EXPECT_TRUE(m_app->HasAnyUid());
    const auto keys = m_app->FindByUid("a@x");
    ASSERT_EQ(keys.size(), 3u);
    EXPECT_EQ(keys[0].ItemId, kAppointmentTag + 4);
    EXPECT_EQ(keys[1].ItemId, kAppointmentTag + 3);
    EXPECT_EQ(keys[2].OccurrenceId, "20260105");
    EXPECT_EQ(keys[2].Sequence, 7u);
    EXPECT_EQ(keys[2].ContentHash, QByteArray("hash"));
    EXPECT_TRUE(m_app->FindByUid("c").empty());
    EXPECT_TRUE(m_app->FindByUid("").empty());

    const auto original = Get(keys[2].ItemId);
    const auto copy = original->Copy();
    ASSERT_TRUE(copy->Save());
    EXPECT_EQ(m_app->FindByUid("a@x").size(), 3u); // a copy is another item
    EXPECT_EQ(copy->Foreign().Text, "X-A:1");
    original->put_Subject("edited");
    ASSERT_TRUE(original->Save());
    EXPECT_EQ(Get(keys[2].ItemId)->Foreign().ContentHash, QByteArray("hash"));
}

TEST_F(ObjectModel, OnlyAppointmentsAreFoundByTheirIdentifier)
{
    const auto item = Plain("2026-07-01", "2026-07-02");
    ASSERT_TRUE(item->Save());
    std::unique_ptr<IAppointment> other;
    for (quint32 id : {0u, 1u, kTaskTag + 1, kContactTag + 1, kAppointmentTag + 2, 0xFFFFFFFFu})
        EXPECT_EQ(m_app->GetAppointmentFromOid(id, other).Kind(), StatusKind::NotFound) << id;
}

TEST_F(ObjectModel, ACopyIsWholeButForTheBody)
{
    auto item = Plain("2026-07-01 10:00", "2026-07-01 11:00");
    item->put_Subject("s");
    item->put_Body("body");
    item->put_Categories("Work");
    item->get_Recipients()->Add("Ada");
    ASSERT_TRUE(item->Save());
    auto copy = item->Copy();
    EXPECT_EQ(copy->get_Oid(), 0u);
    ASSERT_TRUE(copy->Save());
    EXPECT_NE(copy->get_Oid(), item->get_Oid());
    const auto read = Get(copy->get_Oid());
    EXPECT_EQ(read->get_Subject() + read->get_Categories() + read->get_Body(), "sWork");
    EXPECT_EQ(IsoOf(read->get_End()), "2026-07-01 11:00");
    EXPECT_EQ(read->get_Recipients()->get_Count(), 1);
}

TEST_F(ObjectModel, SendingNeedsATransport)
{
    struct CTransport : IItemTransport {
        QString Log;
        CStatus SendRequest(IAppointment& item) override
        {
            return Log += "request " + item.get_Subject(), CStatus();
        }
        CStatus SendCancel(IAppointment& item) override
        {
            return Log += " cancel " + item.get_Subject(), CStatus();
        }
        CStatus SendItems(const std::vector<CItemName>& items) override
        {
            for (const CItemName& item : items)
                Log += QString(" item %1 %2").arg(int(item.Kind)).arg(item.ItemId);
            return {};
        }
    } transport;
    auto item = Series();
    EXPECT_TRUE(item->Send());
    EXPECT_EQ(m_app->GetDefaultFolder(9), nullptr);
    const auto noWay = m_app->GetDefaultFolder(olFolderInfrared);
    EXPECT_TRUE(noWay->AddItemToInfraredFolder(OlItem::Appointment, item->get_Oid()));
    EXPECT_EQ(noWay->SendToInfrared().Kind(), StatusKind::Invalid);
    m_app->SetTransport(&transport);
    EXPECT_TRUE(item->Send());
    EXPECT_TRUE(Occurrence(item->get_Oid(), "2026-01-07")->Cancel());
    EXPECT_EQ(transport.Log, "request series cancel series");

    transport.Log.clear();
    const auto folder = m_app->GetDefaultFolder(olFolderInfrared);
    EXPECT_EQ(folder->SendToInfrared().Kind(), StatusKind::Invalid) << "empty";
    EXPECT_EQ(folder->AddItemToInfraredFolder(OlItem::Task, item->get_Oid()).Kind(), StatusKind::NotFound);
    EXPECT_TRUE(folder->AddItemToInfraredFolder(OlItem::Appointment, item->get_Oid()));
    EXPECT_TRUE(folder->SendToInfrared());
    EXPECT_EQ(transport.Log, QString(" item 1 %1").arg(item->get_Oid()));
    EXPECT_EQ(folder->SendToInfrared().Kind(), StatusKind::Invalid) << "sent already";
}
