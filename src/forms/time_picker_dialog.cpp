#include "forms/time_picker_dialog.h"
#include "drawing/paint.h"
#include "drawing/screen_metrics.h"
#include "platform/locale.h"
#include "settings/color_scheme.h"
#include "touch/virtual_keys.h"
#include "util/string_ids.h"
#include "util/string_store.h"

#include <QPainter>
#include <algorithm>

namespace
{
// Design pixels.
constexpr int kMargin = 6;
constexpr int kCellHeight = 36; // that a finger likes; less where there is less room

constexpr int kMinuteStep = 5;
constexpr int kHourColumns = 6, kMinuteColumns = 3, kMinuteRows = 4;

bool IsTwelveHours()
{
    return GetLocaleInfo(LocaleValue::TimeMode).startsWith(u'0');
}

// Cells of one height in all of them, as high as there is room.
void Stack(const std::vector<CCellGrid*>& grids, QRect area)
{
    int rows = 0, taken = -D(kMargin);
    for (const CCellGrid* const grid : grids) {
        rows += grid->GetRows();
        taken += grid->HeightOfRows(0) + D(kMargin);
    }
    const int height = std::clamp((area.height() - taken) / rows, 0, D(kCellHeight));
    for (CCellGrid* const grid : grids) {
        grid->SetArea({area.topLeft(), QSize(area.width(), grid->HeightOfRows(height))});
        area.setTop(area.top() + grid->HeightOfRows(height) + D(kMargin));
    }
}
} // namespace

CTimePickerDialog::CTimePickerDialog(DATE time)
    : CFormDialog(GetString(StrSelectTime)),
      m_twelveHours(IsTwelveHours()), m_grids{CCellGrid{kHourColumns, m_twelveHours ? 2 : 4},
                                              CCellGrid{kMinuteColumns, kMinuteRows}, CCellGrid{2, 1}}
{
    AddCells();
    SelectTime(time);
}

void CTimePickerDialog::AddCells()
{
    for (int hour = 1; hour <= (m_twelveHours ? 12 : 23); ++hour)
        m_grids[kHours].AddCell({QString::number(hour)});
    if (!m_twelveHours)
        m_grids[kHours].AddCell({QStringLiteral("00")});
    for (int minute = 0; minute < 60; minute += kMinuteStep)
        m_grids[kMinutes].AddCell({QStringLiteral("%1").arg(minute, 2, 10, QChar(u'0'))});
    m_grids[kHours].SetCaption(GetString(StrHour));
    m_grids[kMinutes].SetCaption(GetString(StrMinutes));
    if (!m_twelveHours)
        return;
    m_grids[kHalves].AddCell({GetString(StrAm)});
    m_grids[kHalves].AddCell({GetString(StrPm)});
    m_grids[kHalves].SetCaption(GetString(StrAm) + u'-' + GetString(StrPm));
}

void CTimePickerDialog::SelectTime(DATE time)
{
    const SystemTime parts = SystemTimeOf(time);
    const int hour = m_twelveHours ? parts.wHour % 12 : parts.wHour;
    m_grids[kHours].Select(hour == 0 ? m_grids[kHours].GetCount() - 1 : hour - 1);
    m_grids[kMinutes].Select(parts.wMinute / kMinuteStep);
    m_grids[kHalves].Select(m_twelveHours ? (parts.wHour >= 12 ? 1 : 0) : -1);
}

DATE CTimePickerDialog::GetTime() const
{
    int hour = m_grids[kHours].GetSelected() + 1;
    if (!m_twelveHours)
        hour %= 24;
    else if (m_grids[kHalves].GetSelected() == 1)
        hour = hour < 12 ? hour + 12 : hour;
    else
        hour %= 12;
    return (hour * 60 + m_grids[kMinutes].GetSelected() * kMinuteStep) / 1440.0;
}

// ---- layout

int CTimePickerDialog::ContentHeight(int)
{
    int height = D(kMargin);
    for (int n = kHours; n <= (m_twelveHours ? kHalves : kMinutes); ++n)
        height += m_grids[size_t(n)].HeightOfRows(D(kCellHeight)) + D(kMargin);
    return height;
}

// Below one another, or where the page is lower than wide the minutes beside the others.
void CTimePickerDialog::OnLayout(const QRect& client)
{
    QRect first = client.adjusted(D(kMargin), D(kMargin), -D(kMargin), -D(kMargin)), second = first;
    std::vector<CCellGrid*> grids{&m_grids[kHours], &m_grids[kMinutes]};
    if (m_twelveHours)
        grids.push_back(&m_grids[kHalves]);
    if (client.width() <= client.height()) {
        Stack(grids, first);
        return;
    }
    first.setWidth(first.width() * 3 / 5 - D(kMargin) / 2);
    second.setLeft(first.right() + 1 + D(kMargin));
    grids.erase(grids.begin() + 1);
    Stack(grids, first);
    Stack({&m_grids[kMinutes]}, second);
}

void CTimePickerDialog::PaintContent(QPainter& dc, const QRect&)
{
    for (int grid = kHours; grid < kGridCount; ++grid) {
        if (m_grids[grid].GetCount() == 0)
            continue;
        m_grids[grid].Paint(dc);
        if (grid == m_active) { // where the arrow keys work
            const int line = D(2);
            const QRect cell = m_grids[grid].CellRect(m_grids[grid].GetSelected());
            FillSolid(dc, {cell.x(), cell.bottom() + 1 + D(1), cell.width(), line}, GetHighlightColor());
        }
    }
}

// ---- input

CTimePickerDialog::Grid CTimePickerDialog::NextGrid() const
{
    if (m_active == kHours)
        return m_twelveHours ? kHalves : kMinutes;
    return m_active == kHalves ? kMinutes : kHours;
}

void CTimePickerDialog::OnKey(int key)
{
    if (key == kKeyReturn)
        m_active = NextGrid();
    else if (!m_grids[m_active].OnKey(key))
        return;
    update();
}

void CTimePickerDialog::OnLButtonDown(QPoint at)
{
    for (int grid = kHours; grid < kGridCount; ++grid) {
        const int cell = m_grids[grid].HitTest(at);
        if (cell < 0)
            continue;
        m_active = Grid(grid);
        m_grids[grid].Select(cell);
        update();
    }
}
