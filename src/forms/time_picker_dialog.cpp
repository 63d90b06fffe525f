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
constexpr int kRowHeight = 44; // that a finger likes; less where there is less room

constexpr int kMinuteStep = 5;
constexpr int kHourColumns = 6, kMinuteColumns = 3, kMinuteRows = 4;

bool IsTwelveHours()
{
    return GetLocaleInfo(LocaleValue::TimeMode).startsWith(u'0');
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
    // As rows: the captions take about half a one each.
    const int rows = (m_twelveHours ? 2 + kMinuteRows + 1 : 4 + kMinuteRows) + (m_twelveHours ? 2 : 1);
    return rows * D(kRowHeight) + 2 * D(kMargin);
}

// Below one another, or where the page is lower than wide the hours beside the others. The cells
// take what room there is.
void CTimePickerDialog::OnLayout(const QRect& client)
{
    const QRect inner = client.adjusted(D(kMargin), D(kMargin), -D(kMargin), -D(kMargin));
    const bool beside = client.width() > client.height();
    const int hourRows = m_twelveHours ? 2 : 4, halfRows = m_twelveHours ? 1 : 0;
    QRect hours = inner, rest = inner;
    if (beside) {
        hours.setWidth(inner.width() * 3 / 5 - D(kMargin) / 2);
        rest.setLeft(hours.right() + 1 + D(kMargin));
        hours.setHeight(std::min(hours.height(), (hourRows + 1) * D(kRowHeight)));
    } else {
        const int unit = inner.height() / (2 * (hourRows + kMinuteRows + halfRows) + 2 + halfRows);
        hours.setHeight(unit * (2 * hourRows + 1));
        rest.setTop(hours.bottom() + 1 + D(kMargin));
    }
    QRect minutes = rest;
    if (m_twelveHours) {
        minutes.setHeight(rest.height() * (2 * kMinuteRows + 1) / (2 * kMinuteRows + 4));
        m_grids[kHalves].SetArea(rest.adjusted(0, minutes.height() + D(kMargin), 0, 0));
    }
    m_grids[kHours].SetArea(hours);
    m_grids[kMinutes].SetArea(minutes);
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
