// The daily view over a real volume: what others write shows, what they delete goes.
#include <QTemporaryDir>

#include "object_model/object_model.h"
#include "records/property_numbers.h"
#include "touch/virtual_keys.h"
#include "views/daily_view.h"
#include "views/monthly_view.h"
#include "views_fixture.h"

namespace
{
class Notices : public CViewTest
{
protected:
    void SetUp() override
    {
        CViewTest::SetUp();
        PimStore().Shutdown();
        ASSERT_TRUE(CPropertyVolume::Open(m_folder.filePath(QStringLiteral("pim.vol")), PimSchema(),
                                          CPropertyVolume::Mode::Create, m_volume)
                        .IsOk());
        Model = MakePOutlookApp(m_volume);
        ASSERT_TRUE(Model->Logon().IsOk());
        Save(QStringLiteral("Breakfast"), 8);
        Save(QStringLiteral("Lunch"), 12);
        Save(QStringLiteral("Dinner"), 19);
        PimStore().Initialize(m_volume);
        PimStore().LoadRange(kToday, kToday, kToday);
        View = std::make_unique<CDailyView>(Host, nullptr);
        View->resize(240, 300);
        View->OnCreate();
        View->Refresh();
    }
    void TearDown() override
    {
        View.reset();
        CViewTest::TearDown();
        Model.reset();
        m_volume.reset();
    }
    quint32 Save(const QString& subject, double hour, double hours = 1, bool allDay = false,
                 bool weekly = false)
    {
        auto item = Model->CreateAppointment();
        item->put_Subject(subject);
        item->put_AllDayEvent(allDay);
        item->put_Start(kToday + hour / 24.0);
        item->put_End(kToday + (hour + hours) / 24.0);
        if (weekly)
            item->GetRecurrencePattern();
        EXPECT_TRUE(item->Save().IsOk());
        return item->get_Oid();
    }
    // As the frame does when the volume stirs.
    void Drain()
    {
        const CPimStore::CDrain drain = PimStore().DrainNotices();
        EXPECT_TRUE(drain.Mask & kMaskDaily);
        View->OnDataChanged(drain.LastParam, drain.LastType, drain.LastOid);
    }
    QStringList Subjects() const
    {
        QStringList subjects;
        for (const auto& row : View->Rows())
            subjects << row->m_item->Subject;
        return subjects;
    }
    CRecordingHost Host;
    std::unique_ptr<IPOutlookApp> Model;
    std::unique_ptr<CDailyView> View;

private:
    QTemporaryDir m_folder;
    std::shared_ptr<CPropertyVolume> m_volume;
};
} // namespace

TEST_F(Notices, WhatOthersWriteShowsBesideTheSelection)
{
    ASSERT_EQ(Subjects(), QStringList({"Breakfast", "Lunch", "Dinner"}));
    View->OnKey(kKeyDown);
    Save(QStringLiteral("Run"), 7);
    Drain();
    EXPECT_EQ(Subjects(), QStringList({"Run", "Breakfast", "Lunch", "Dinner"}));
    EXPECT_EQ(View->SelectedRow()->m_item->Subject, "Lunch");
}

TEST_F(Notices, ADeletedItemGoesAndTheFirstRowIsSelected)
{
    View->OnKey(kKeyDown);
    std::unique_ptr<IAppointment> item;
    ASSERT_TRUE(Model->GetAppointmentFromOid(View->SelectedIdentity().ItemId, item).IsOk());
    ASSERT_TRUE(item->Delete().IsOk());
    Drain();
    EXPECT_EQ(Subjects(), QStringList({"Breakfast", "Dinner"}));
    EXPECT_EQ(View->SelectedRow()->m_item->Subject, "Breakfast");
    EXPECT_EQ(View->Scroller().ContentHeight(), View->Rows().GetAt(1)->m_bottom + 3);
}

TEST_F(Notices, ADateMoveInAHiddenViewAndBackFindsTheItemsAgain)
{
    // Another view moves far away, and the cache lets this day go while our rows still stand.
    View->OnDeactivate();
    PimStore().LoadRange(kToday + 4000, kToday + 4000, kToday + 4000);
    View->resize(300, 240);
    View->OnResize();
    EXPECT_EQ(View->Rows().GetCount(), 0);
    PimStore().LoadRange(kToday, kToday, kToday);
    View->Refresh();
    EXPECT_EQ(Subjects(), QStringList({"Breakfast", "Lunch", "Dinner"}));
}

TEST_F(Notices, TheMonthShowsEachItemOnTheDailyViewsDays)
{
    Save(QStringLiteral("Journey"), 30, 80);
    Save(QStringLiteral("Night shift"), 22, 8);
    Save(QStringLiteral("Until midnight"), 20, 4);
    Save(QStringLiteral("Fair"), -48, 72, true);
    Save(QStringLiteral("Club"), 18, 1, false, true);
    CMonthlyView month(Host, nullptr);
    month.resize(240, 300);
    month.Create();
    month.Refresh();
    month.OnDataChanged(0, 0, 0);
    PimStore().DrainNotices();
    View->Refresh();
    const int first = month.Grid().FirstDay();
    int shown = 0, rows = 0;
    for (int day = first; day <= first + 34; ++day) {
        month.SetCursorDate(day);
        month.Refresh();
        View->Refresh();
        ASSERT_EQ(int(month.Rows().size()), View->Rows().GetCount()) << day - kToday;
        for (int n = 0; n < View->Rows().GetCount(); ++n)
            EXPECT_EQ(month.Rows()[size_t(n)].Item, View->Rows().GetAt(n)->m_identity);
        rows += View->Rows().GetCount();
        shown += View->Rows().GetCount() > 0;
    }
    EXPECT_EQ(rows, 3 + 4 + 2 + 1 + 3 + 3) << "three meals, four days of travel, two of the night, ..";
    EXPECT_EQ(shown, 9);
}
