#include "forms/check_list_dialog.h"
#include "forms/date_picker_dialog.h"
#include "forms/time_picker_dialog.h"
#include "forms_fixture.h"
#include "platform/clock.h"
#include "platform/locale.h"
#include "touch/touch_menu.h"

#include <QCalendarWidget>

namespace
{
class Pickers : public CFormsTest
{
protected:
    void TearDown() override
    {
        SetLocale(nullptr);
        SetClock(nullptr);
        CFormsTest::TearDown();
    }
    void UseLocale(const char* name)
    {
        m_locale = MakeLocale(name);
        SetLocale(m_locale.get());
    }
    static DATE Day(int year, int month, int day) { return DayNumberOf(year, month, day); }
    static std::string Iso(DATE date)
    {
        const SystemTime t = SystemTimeOf(date);
        return QString::asprintf("%04d-%02d-%02d %02d:%02d", t.wYear, t.wMonth, t.wDay, t.wHour, t.wMinute)
            .toStdString();
    }
    std::unique_ptr<ILocale> m_locale;
};
} // namespace

TEST_F(Pickers, TimesFindTheirCellsAndComeBack)
{
    const struct {
        const char* Locale;
        int Hour, Minute, HourCell, MinuteCell, HalfCell;
        const char* Result;
    } kCases[] = {
        {"de_DE", 0, 5, 23, 1, -1, "00:05"},    {"de_DE", 1, 0, 0, 0, -1, "01:00"},
        {"de_DE", 23, 59, 22, 11, -1, "23:55"}, {"de_DE", 10, 17, 9, 3, -1, "10:15"},
        {"en_US", 12, 0, 11, 0, 1, "12:00"},    {"en_US", 0, 30, 11, 6, 0, "00:30"},
        {"en_US", 11, 55, 10, 11, 0, "11:55"},  {"en_US", 13, 0, 0, 0, 1, "13:00"},
        {"en_US", 23, 1, 10, 0, 1, "23:00"},
    };
    for (const auto& c : kCases) {
        UseLocale(c.Locale);
        CTimePickerDialog picker(Day(2026, 3, 17) + (c.Hour * 60 + c.Minute) / 1440.0);
        using P = CTimePickerDialog;
        EXPECT_EQ(picker.Cells(P::kHours).GetSelected(), c.HourCell) << c.Result;
        EXPECT_EQ(picker.Cells(P::kMinutes).GetSelected(), c.MinuteCell) << c.Result;
        EXPECT_EQ(picker.Cells(P::kHalves).GetSelected(), c.HalfCell) << c.Result;
        EXPECT_EQ(Iso(Day(2026, 1, 1) + picker.GetTime()), std::string("2026-01-01 ") + c.Result);
    }
}

TEST_F(Pickers, EnterMovesBetweenTheGridsOfATime)
{
    using P = CTimePickerDialog;
    const std::pair<const char*, std::vector<P::Grid>> kOrders[] = {
        {"de_DE", {P::kMinutes, P::kHours, P::kMinutes}},
        {"en_US", {P::kHalves, P::kMinutes, P::kHours}},
    };
    for (const auto& [locale, order] : kOrders) {
        UseLocale(locale);
        P picker(0.5);
        Run(picker, [&, &order = order] {
            for (const P::Grid grid : order) {
                QTest::keyClick(&picker, Qt::Key_Return);
                EXPECT_EQ(picker.ActiveGrid(), grid);
            }
            QTest::keyClick(&picker, Qt::Key_Escape);
        });
    }
}

TEST_F(Pickers, CellsOfATimeFitEveryPage)
{
    for (const char* locale : {"de_DE", "en_US"}) {
        UseLocale(locale);
        for (const QSize size : {QSize(240, 320), QSize(320, 240), QSize(480, 640), QSize(640, 480)}) {
            Window.resize(size);
            CTimePickerDialog picker(0.5);
            Run(picker, [&] {
                std::vector<QRect> cells;
                for (int grid = 0; grid < CTimePickerDialog::kGridCount; ++grid) {
                    const CCellGrid& g = picker.Cells(CTimePickerDialog::Grid(grid));
                    for (int n = 0; n < g.GetCount(); ++n)
                        cells.push_back(g.CellRect(n));
                }
                for (size_t a = 0; a < cells.size(); ++a) {
                    EXPECT_GE(cells[a].height(), 14) << size.width() << locale;
                    EXPECT_TRUE(picker.Layout().Client.contains(cells[a])) << size.width() << locale;
                    for (size_t b = 0; b < a; ++b)
                        EXPECT_FALSE(cells[a].intersects(cells[b])) << size.width() << locale;
                }
                Click(picker, picker.Cells(CTimePickerDialog::kMinutes).CellRect(7).center());
                EXPECT_EQ(picker.ActiveGrid(), CTimePickerDialog::kMinutes);
                Click(picker, KeyCentre(picker, 0));
            });
            EXPECT_EQ(Iso(Day(2026, 1, 1) + picker.GetTime()), "2026-01-01 12:35");
        }
    }
}

TEST_F(Pickers, DatesStepByTheirParts)
{
    using P = CDatePickerDialog;
    struct Step {
        P::Part Part;
        int Direction;
        const char* Result;
    };
    const std::pair<DATE, std::vector<Step>> kCases[] = {
        {Day(2026, 1, 31),
         {{P::kMonth, 1, "2026-02-28"}, {P::kMonth, 1, "2026-03-31"}, {P::kMonth, -1, "2026-02-28"}}},
        {Day(2026, 1, 31), {{P::kDay, 1, "2026-02-01"}, {P::kMonth, -1, "2026-01-01"}}},
        {Day(2026, 12, 31),
         {{P::kMonth, 1, "2027-01-31"}, {P::kMonth, -1, "2026-12-31"}, {P::kDay, 1, "2027-01-01"}}},
        {Day(2024, 2, 29), {{P::kYear, 1, "2025-02-28"}, {P::kYear, -1, "2024-02-29"}}},
        {Day(4000, 12, 31),
         {{P::kYear, 1, "4000-12-31"}, {P::kDay, 1, "4000-12-31"}, {P::kMonth, 1, "4000-12-31"}}},
        {Day(1902, 1, 1),
         {{P::kYear, -1, "1902-01-01"}, {P::kDay, -1, "1902-01-01"}, {P::kMonth, -1, "1902-01-01"}}},
        {Day(1700, 5, 5), {{P::kDay, 1, "1902-01-02"}}},
        {NO_DATE, {{P::kDay, -1, "4000-12-30"}}},
    };
    for (const auto& [start, steps] : kCases) {
        P picker(start);
        for (const Step& step : steps) {
            picker.Step(step.Part, step.Direction);
            EXPECT_EQ(Iso(picker.GetDate()), step.Result + std::string(" 00:00"));
        }
    }
}

TEST_F(Pickers, ColumnsFollowTheLocale)
{
    using P = CDatePickerDialog;
    const std::pair<const char*, P::Part> kFirst[] = {
        {"en_US", P::kMonth}, {"de_DE", P::kDay}, {"sv_SE", P::kMonth}};
    for (const auto& [locale, part] : kFirst) {
        UseLocale(locale);
        P picker(Day(2026, 3, 17));
        EXPECT_EQ(picker.PartOf(0), part) << locale;
        EXPECT_NE(picker.PartOf(1), part) << locale;
        EXPECT_EQ(picker.PartOf(2), P::kYear) << locale;
    }
}

TEST_F(Pickers, AFingerStepsAndRepeats)
{
    UseLocale("en_US");
    CDatePickerDialog picker(Day(2026, 3, 17));
    EXPECT_EQ(
        Run(picker,
            [&] {
                const QPoint up = picker.ColumnAt(1).Up.center(), down = picker.ColumnAt(2).Down.center();
                Click(picker, up);
                EXPECT_EQ(Iso(picker.GetDate()), "2026-03-18 00:00");
                Click(picker, down);
                EXPECT_EQ(Iso(picker.GetDate()), "2025-03-18 00:00");
                QTest::mousePress(&picker, Qt::LeftButton, {}, up);
                ASSERT_EQ(picker.RepeatTimer().PeriodOf(CDatePickerDialog::kTimerRepeat), 500);
                picker.RepeatTimer().Fire(CDatePickerDialog::kTimerRepeat);
                EXPECT_EQ(picker.RepeatTimer().PeriodOf(CDatePickerDialog::kTimerRepeat), 100);
                picker.RepeatTimer().Fire(CDatePickerDialog::kTimerRepeat);
                QTest::mouseRelease(&picker, Qt::LeftButton, {}, up);
                EXPECT_FALSE(picker.RepeatTimer().IsRunning(CDatePickerDialog::kTimerRepeat));
                EXPECT_EQ(Iso(picker.GetDate()), "2025-03-21 00:00");
                for (const int key : {Qt::Key_Right, Qt::Key_Up, Qt::Key_Left, Qt::Key_Left, Qt::Key_Down})
                    QTest::keyClick(&picker, Qt::Key(key));
                EXPECT_EQ(Iso(picker.GetDate()), "2026-02-21 00:00");
                Click(picker, KeyCentre(picker, 0));
            }),
        CFormDialog::kDone);
}

TEST_F(Pickers, TheCalendarGivesItsDate)
{
    CDatePickerDialog picker(Day(2026, 3, 17));
    Run(picker, [&] {
        Click(picker, picker.ColumnAt(0).Value.center());
        ASSERT_TRUE(picker.Calendar());
        EXPECT_EQ(picker.Calendar()->selectedDate(), QDate(2026, 3, 17));
        Q_EMIT picker.Calendar()->clicked(QDate(2026, 5, 4));
        EXPECT_FALSE(picker.Calendar());
        EXPECT_EQ(Iso(picker.GetDate()), "2026-05-04 00:00");
    });
}

TEST_F(Pickers, TheMenuOfADateMovesByWeeks)
{
    CManualClock clock(FileTimeOfDate(Day(2026, 7, 1) + 0.5));
    SetClock(&clock);
    const std::pair<int, const char*> kRows[] = {
        {0, "2026-03-24"}, {1, "2026-03-10"}, {2, "2026-07-01"}, {3, "2026-03-17"}};
    for (const auto& [row, result] : kRows) {
        CDatePickerDialog picker(Day(2026, 3, 17));
        bool chosen = false;
        const int ended = Run(picker, [&, row = row] {
            QTimer::singleShot(0, &picker, [&] {
                ASSERT_TRUE(CTouchMenu::Current());
                chosen = true;
                CTouchMenu::Current()->Choose(CTouchMenu::Current()->GetRow(row).Command);
            });
            Click(picker, KeyCentre(picker, 1));
        });
        EXPECT_TRUE(chosen);
        EXPECT_EQ(ended, row == 3 ? int(CFormDialog::kCancelled) : kLeftOpen);
        EXPECT_EQ(Iso(picker.GetDate()), result + std::string(" 00:00"));
    }
}

TEST_F(Pickers, ChecksAreToggledByTapAndKey)
{
    CCheckListDialog list("Days", {{"a", true}, {"b", false}, {"c", false}});
    Run(list, [&] {
        Click(list, list.RowRect(1).center());
        EXPECT_TRUE(list.IsChecked(1));
        QTest::keyClick(&list, Qt::Key_Down);
        QTest::keyClick(&list, Qt::Key_Space);
        QTest::keyClick(&list, Qt::Key_Down); // the last stays
        QTest::keyClick(&list, Qt::Key_Up);
        QTest::keyClick(&list, Qt::Key_Up);
        QTest::keyClick(&list, Qt::Key_Return);
        Click(list, list.RowRect(2).translated(0, 60).center());
    });
    EXPECT_FALSE(list.IsChecked(0));
    EXPECT_TRUE(list.IsChecked(1) && list.IsChecked(2));
    EXPECT_EQ(list.CountChecked(), 2);
}
