#include "views/month_grid.h"
#include "drawing/image_store.h"
#include "drawing/screen_metrics.h"
#include "drawing/text.h"
#include "pim/pim_store.h"
#include "settings/month_grid.h"
#include "settings/settings.h"
#include "settings/week_number.h"

namespace
{
constexpr int kWeeksOfWindow = 5;
constexpr int kDaysIntoMonth = 10; // from a grid's first day this far, its month has begun
constexpr int kFontNumber = 500, kFontTitle = 502;

int MonthOf(int day)
{
    const SystemTime time = SystemTimeOf(day);
    return time.wYear * 12 + time.wMonth;
}

// How far a window of five weeks has to move so that it shows the day, in days.
int WindowShift(int firstDay, int day)
{
    constexpr int week = CMonthGridLayout::kColumns;
    const int lastDay = firstDay + kWeeksOfWindow * week - 1;
    if (day > lastDay)
        return (day - lastDay + week - 1) / week * week;
    if (day < firstDay)
        return -((firstDay - day + week - 1) / week * week);
    return 0;
}
} // namespace

void CMonthGrid::Init()
{
    const auto color = [](int id) { return g_Settings.ResolveColor(id); };
    const COLORREF titleText = g_Settings.ResolveChosenColor(6014, 503);
    const COLORREF titleBack = g_Settings.ResolveChosenColor(6015, 6022);
    m_colors = {color(6001), color(6002), color(6003), color(6004), color(6005),
                color(6006), color(6007), color(6008), color(6009), {color(6010), color(6011)},
                titleText,   titleBack,   color(6016), color(6017)};
    int first, second;
    GetWeekendColumns(&first, &second);
    m_weekend = {};
    m_weekend[size_t(first)] = m_weekend[size_t(second)] = true;
    m_numberSize = MeasureText(g_ImageStore.Font(kFontNumber), QStringLiteral("22"));
    Lay();
    Invalidate();
}

// ---- layout

void CMonthGrid::SetShape(QSize client, QuickListMode quickList, int sideWidth)
{
    m_client = client;
    m_quickList = quickList;
    m_sideWidth = sideWidth;
    Lay();
    Invalidate();
}

void CMonthGrid::Lay()
{
    CMonthGridSetup setup;
    setup.Client = m_client;
    setup.QuickList = m_quickList;
    setup.SideWidth = m_sideWidth;
    setup.TitleRowHeight = LineHeight(g_ImageStore.Font(kFontTitle)) + D(1) + D(2);
    setup.RowCount = RowCount();
    setup.Landscape = g_ScreenMetrics.m_landscape;
    setup.WeekNumbers = g_Settings.MonthView.ShowWeekNums == 1;
    m_layout = CMonthGridLayout(setup);
}

int CMonthGrid::RowCount() const
{
    if (g_Settings.MonthView.ScrollByWeeks == 1 || m_firstDay == 0)
        return kWeeksOfWindow;
    return (GetMonthGridEnd(m_firstDay + kDaysIntoMonth) - m_firstDay + 1) / CMonthGridLayout::kColumns;
}

int CMonthGrid::MonthDay() const
{
    return g_Settings.MonthView.ScrollByWeeks == 1 ? m_selected : m_firstDay + kDaysIntoMonth;
}

CMonthGrid::Month CMonthGrid::ShownMonth() const
{
    SystemTime first, last;
    GetMonthBounds(SystemTimeOf(MonthDay()), &first, &last);
    return {DayNumber(DateOf(first)), DayNumber(DateOf(last))};
}

int CMonthGrid::DayAt(QPoint at) const
{
    int row, column;
    return m_layout.CellAt(at, &row, &column) ? m_firstDay + row * CMonthGridLayout::kColumns + column : 0;
}

QRect CMonthGrid::CellOf(int day) const
{
    const int index = day - m_firstDay;
    if (index < 0 || day > LastDay())
        return {};
    return m_layout.Cell(index / CMonthGridLayout::kColumns, index % CMonthGridLayout::kColumns);
}

// ---- range and selection

bool CMonthGrid::SelectDate(int day)
{
    const int before = m_firstDay, monthBefore = MonthOf(m_selected);
    const bool byWeeks = g_Settings.MonthView.ScrollByWeeks == 1;
    if (m_firstDay == 0)
        m_firstDay = GetMonthGridStart(day);
    else if (byWeeks)
        m_firstDay += WindowShift(m_firstDay, day);
    else if (day < m_firstDay || day > LastDay())
        m_firstDay = GetMonthGridStart(day);
    // The month's own days stand out, so its turn is one of all cells.
    const bool moved = m_firstDay != before || (byWeeks && MonthOf(day) != monthBefore);
    const bool loaded = Load(day);
    if (moved || loaded)
        Invalidate();
    return moved || loaded;
}

void CMonthGrid::GoToDate(int day)
{
    if (m_firstDay != 0 && g_Settings.MonthView.ScrollByWeeks != 1 && MonthOf(day) != MonthOf(MonthDay())) {
        m_firstDay = GetMonthGridStart(day);
        Invalidate();
    }
    SelectDate(day);
}

void CMonthGrid::ShiftWeeks(int weeks)
{
    m_firstDay += weeks * CMonthGridLayout::kColumns;
    Invalidate();
}

bool CMonthGrid::Load(int day)
{
    m_selected = day;
    if (RowCount() != m_layout.RowCount())
        Lay();
    return PimStore().LoadRange(day, m_firstDay, LastDay());
}

void CMonthGrid::Invalidate()
{
    m_baseValid = false;
}
