#include "pages/settings_sheet.h"
#include "drawing/picture_ids.h"
#include "drawing/screen_metrics.h"
#include "forms/question.h"
#include "pages/about_page.h"
#include "pages/category_manager.h"
#include "pages/settings_page.h"
#include "touch/virtual_keys.h"
#include "util/string_ids.h"
#include "util/string_store.h"

#include <QMetaObject>
#include <utility>

namespace
{
constexpr int kMargin = 10; // design pixels
constexpr int kUprightColumns = 2, kWideColumns = 5;
// In the order of the cells.
constexpr int kPictures[CSettingsSheet::kCellCount] = {
    PictureSettingsGeneral, PictureSettingsDaily, PictureSettingsList,          PictureSettingsWeekly,
    PictureSettingsMonthly, PictureSettingsTasks, PictureSettingsCalendarTasks, PictureSettingsColors,
    PictureSettingsCategories, PictureSettingsAbout};
} // namespace

CSettingsSheet::CSettingsSheet(int startPage)
    : CFormDialog(GetString(StrCalendarSettings)), m_settings(g_Settings),
      m_cells(kUprightColumns, kCellCount / kUprightColumns), m_startPage(startPage)
{
    for (int cell = 0; cell < kCellCount; ++cell)
        m_cells.AddCell({GetString(StrCellGeneral + cell), {}, kPictures[cell]});
}

// ---- layout and paint

int CSettingsSheet::ContentHeight(int width)
{
    m_cells.SetShape(kUprightColumns, kCellCount / kUprightColumns);
    return m_cells.HeightFor(width - 2 * D(kMargin)) + 2 * D(kMargin);
}

void CSettingsSheet::OnLayout(const QRect& client)
{
    const int columns = client.width() > client.height() ? kWideColumns : kUprightColumns;
    m_cells.SetShape(columns, kCellCount / columns);
    m_cells.SetArea(client.adjusted(D(kMargin), D(kMargin), -D(kMargin), -D(kMargin)));
}

void CSettingsSheet::PaintContent(QPainter& dc, const QRect&)
{
    m_cells.Paint(dc);
}

CPaintedPart CSettingsSheet::ContentPart(int index) const
{
    return CellPart(m_cells, index, CurrentFactor());
}

// ---- input

void CSettingsSheet::TakeFocus()
{
    CFormDialog::TakeFocus();
    if (m_startPage < 0 || m_startPage >= kNoPage)
        return;
    m_cells.Select(m_startPage);
    // Once this page stands.
    QMetaObject::invokeMethod(this, [this] { Open(std::exchange(m_startPage, kNoPage)); }, Qt::QueuedConnection);
}

void CSettingsSheet::PressContentPart(int index)
{
    m_cells.Select(index);
    update();
    Open(index);
}

void CSettingsSheet::OnKey(int key)
{
    if (key == kKeyReturn)
        Open(m_cells.GetSelected());
    else if (m_cells.OnKey(key))
        update();
}

void CSettingsSheet::OnLButtonDown(QPoint at)
{
    m_pressed = m_cells.HitTest(at);
    if (m_pressed >= 0) {
        m_cells.Select(m_pressed);
        update();
    }
}

void CSettingsSheet::OnLButtonUp(QPoint at)
{
    const int pressed = std::exchange(m_pressed, -1);
    if (pressed >= 0 && m_cells.HitTest(at) == pressed)
        Open(pressed);
}

void CSettingsSheet::Open(int cell)
{
    if (cell < 0 || cell >= kCellCount)
        return;
    if (cell < kSettingsPageCount)
        CSettingsPage(SettingsPageId(cell), m_settings).Run(this);
    else if (cell == kCategories)
        CCategoryManager().Run(this);
    else if (cell == kAbout)
        CAboutPage().Run(this);
    setFocus();
}

void CSettingsSheet::OnDone()
{
    const CSettingsValues values = g_Settings;
    const CColorScheme colors = g_Settings;
    static_cast<CSettingsValues&>(g_Settings) = m_settings;
    static_cast<CColorScheme&>(g_Settings) = m_settings;
    if (g_Settings.Save())
        return End(kDone);
    static_cast<CSettingsValues&>(g_Settings) = values;
    static_cast<CColorScheme&>(g_Settings) = colors;
    ShowMessage(this, GetString(StrSettingsNotSaved), GetTitle());
}
