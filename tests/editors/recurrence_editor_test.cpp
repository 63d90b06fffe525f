#include "editors/recurrence_editor.h"
#include "forms/check_list_dialog.h"
#include "forms/forms_fixture.h"
#include "platform/locale.h"
#include "util/string_ids.h"

#include <QDateEdit>
#include <QLineEdit>

namespace
{
using Data = CRecurrencePatternData;

class RecurrenceEditor : public CFormsTest
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
    static void Type(CFieldForm& form, quint32 id, const QString& text)
    {
        Select(form, id);
        auto* edit = qobject_cast<QLineEdit*>(form.focusWidget());
        ASSERT_TRUE(edit) << id;
        edit->selectAll();
        QTest::keyClick(edit, Qt::Key_Delete);
        QTest::keyClicks(edit, text);
    }
    std::unique_ptr<ILocale> Places;
};

std::vector<quint32> Shown(const CFieldForm& form)
{
    std::vector<quint32> ids;
    for (const CFieldRow& row : form.Rows()) {
        if (!row.Hidden && row.Type != kRowHeader)
            ids.push_back(row.Id);
    }
    return ids;
}
} // namespace

TEST_F(RecurrenceEditor, ThePatternDecidesWhichRowsShow)
{
    using Ids = std::vector<quint32>;
    const struct {
        Data data;
        Ids shown;
    } cases[] = {
        {{.Interval = 0}, {StrPattern, StrPatternEvery, StrPatternStart, StrPatternEnd}},
        {{.Interval = 2, .EndType = 1},
         {StrPattern, StrPatternEvery, StrPatternDays, StrPatternStart, StrPatternEnd, StrPatternEndDate}},
        {{.PatternType = 1, .EndType = 2},
         {StrPattern, StrPatternWeeks, StrPatternWeekDays, StrPatternStart, StrPatternEnd,
          StrPatternOccurrences}},
        {{.PatternType = 2},
         {StrPattern, StrPatternMonthlyType, StrPatternMonthDay, StrPatternMonths, StrPatternStart,
          StrPatternEnd}},
        {{.PatternType = 2, .MonthlyKind = 1},
         {StrPattern, StrPatternMonthlyType, StrPatternMonthlyOrdinal, StrPatternMonthlyDayWord,
          StrPatternMonths, StrPatternStart, StrPatternEnd}},
        {{.PatternType = 3},
         {StrPattern, StrPatternYearlyType, StrPatternYearlyMonth, StrPatternYearDay, StrPatternStart,
          StrPatternEnd}},
        {{.PatternType = 3, .YearlyKind = 1},
         {StrPattern, StrPatternYearlyType, StrPatternYearlyOrdinal, StrPatternYearlyDayWord,
          StrPatternYearlyMonth, StrPatternStart, StrPatternEnd}},
    };
    for (const auto& c : cases) {
        Data data = c.data;
        data.Start = data.EndDate = 46000;
        CRecurrenceEditor form(data);
        Run(form, [&] { EXPECT_EQ(Shown(form), c.shown) << data.PatternType; });
    }
}

TEST_F(RecurrenceEditor, EveryRowStoresWhatIsEntered)
{
    Data start = MakeDefaultPattern(46000);
    const struct {
        quint32 row;
        quint32 type, monthlyKind, yearlyKind, endType;
        int choice; // -1: the text
        const char* text;
        quint32 Data::*field;
        quint32 stored;
    } cases[] = {
        {StrPattern, 0, 0, 0, 0, 3, "Yearly", &Data::PatternType, 3},
        {StrPatternEvery, 0, 0, 0, 0, 0, "Every weekday", &Data::Interval, 0},
        {StrPatternDays, 0, 0, 0, 0, -1, "4", &Data::Interval, 4},
        {StrPatternWeeks, 1, 0, 0, 0, -1, "5", &Data::Interval, 5},
        {StrPatternMonths, 2, 0, 0, 0, -1, "7", &Data::Interval, 7},
        {StrPatternMonthlyType, 2, 0, 0, 0, 1, "On the", &Data::MonthlyKind, 1},
        {StrPatternMonthDay, 2, 0, 0, 0, 30, "31", &Data::MonthDay, 31},
        {StrPatternMonthlyOrdinal, 2, 1, 0, 0, 4, "last", &Data::Ordinal, 4},
        {StrPatternMonthlyDayWord, 2, 1, 0, 0, 9, "Saturday", &Data::MonthlyDayKind, 9},
        {StrPatternYearlyType, 3, 0, 0, 0, 1, "Every", &Data::YearlyKind, 1},
        {StrPatternYearlyMonth, 3, 0, 0, 0, 0, "January", &Data::YearMonthDate, 1},
        {StrPatternYearlyMonth, 3, 0, 1, 0, 1, "February", &Data::YearMonthOrdinal, 2},
        {StrPatternYearDay, 3, 0, 0, 0, 0, "1", &Data::YearDay, 1},
        {StrPatternYearlyOrdinal, 3, 0, 1, 0, 2, "third", &Data::Ordinal, 2},
        {StrPatternYearlyDayWord, 3, 0, 1, 0, 2, "weekend day", &Data::YearlyDayKind, 2},
        {StrPatternEnd, 0, 0, 0, 0, 2, "Ends after", &Data::EndType, 2},
        {StrPatternOccurrences, 0, 0, 0, 2, -1, "12", &Data::Occurrences, 12},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.row);
        Data data = start;
        data.PatternType = c.type;
        data.MonthlyKind = c.monthlyKind;
        data.YearlyKind = c.yearlyKind;
        data.EndType = c.endType;
        CRecurrenceEditor form(data);
        const int result = Run(form, [&] {
            if (c.choice < 0)
                Type(form, c.row, c.text);
            else
                Choose(form, c.row, c.choice);
            Click(form, KeyCentre(form, 0));
        });
        EXPECT_EQ(result, CFormDialog::kDone);
        Data expected = data;
        expected.*c.field = c.stored;
        EXPECT_TRUE(form.GetData() == expected);
        CRecurrenceEditor again(form.GetData());
        Run(again, [&] { EXPECT_EQ(Row(again, c.row)->Value, c.text); });
    }
}

TEST_F(RecurrenceEditor, TheKeptIntervalComesBack)
{
    CRecurrenceEditor form(MakeDefaultPattern(46000));
    Run(form, [&] {
        Type(form, StrPatternDays, "3");
        Choose(form, StrPatternEvery, 0);
        EXPECT_TRUE(Row(form, StrPatternDays)->Hidden);
        Choose(form, StrPatternEvery, 1);
        EXPECT_EQ(Row(form, StrPatternDays)->Value, "3");
        Choose(form, StrPatternEvery, 0);
        Choose(form, StrPattern, 1);
        EXPECT_EQ(Row(form, StrPatternWeeks)->Value, "3");
        Click(form, KeyCentre(form, 0));
    });
    EXPECT_EQ(form.GetData().Interval, 3u) << "a week has no weekdays of its own: what shows is stored";
    Data weekdays = MakeDefaultPattern(46000);
    weekdays.Interval = 0;
    weekdays.PatternType = Data::kWeekly;
    CRecurrenceEditor zero(weekdays);
    Run(zero, [&] { EXPECT_EQ(Row(zero, StrPatternWeeks)->Value, "1"); });
}

TEST_F(RecurrenceEditor, DaysAreCheckedOnAPageOfTheirOwn)
{
    Data data = MakeDefaultPattern(46000);
    data.PatternType = Data::kWeekly;
    data.Days = {};
    CRecurrenceEditor form(data);
    int played = 0;
    const auto open = [&](bool done) {
        QTimer::singleShot(0, &form, [&played, done] {
            auto* days = dynamic_cast<CCheckListDialog*>(CFormDialog::Current());
            ASSERT_TRUE(days);
            EXPECT_EQ(days->GetTitle(), "Select Days");
            EXPECT_EQ(days->Rows()[0].Text, "Sunday");
            Click(*days, days->RowRect(1).center());
            Click(*days, days->RowRect(4).center());
            QTest::keyClick(days, done ? Qt::Key_F1 : Qt::Key_F2);
            ++played;
        });
        Select(form, StrPatternWeekDays);
        QTest::keyClick(form.focusWidget(), Qt::Key_Return);
    };
    Run(form, [&] {
        EXPECT_EQ(Row(form, StrPatternWeekDays)->Value, "");
        open(false);
        EXPECT_EQ(Row(form, StrPatternWeekDays)->Value, "");
        open(true);
        EXPECT_EQ(Row(form, StrPatternWeekDays)->Value, "Monday, Thursday");
        Click(form, KeyCentre(form, 0));
    });
    EXPECT_EQ(played, 2);
    EXPECT_TRUE(form.GetData().Days[1] && form.GetData().Days[4]);
}

TEST_F(RecurrenceEditor, CancelLeavesAllAsItWas)
{
    const Data data = MakeDefaultPattern(46000);
    CRecurrenceEditor form(data);
    const int result = Run(form, [&] {
        Choose(form, StrPattern, 2);
        Click(form, KeyCentre(form, 1));
    });
    EXPECT_EQ(result, CFormDialog::kCancelled);
    EXPECT_TRUE(form.GetData() == data);
}
