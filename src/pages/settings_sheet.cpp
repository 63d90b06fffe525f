#include "pages/settings_sheet.h"
#include "drawing/image_store.h"
#include "drawing/paint.h"
#include "drawing/picture_ids.h"
#include "drawing/screen_metrics.h"
#include "forms/question.h"
#include "pages/about_page.h"
#include "pages/category_manager.h"
#include "pages/color_pages.h"
#include "pages/settings_page.h"
#include "util/string_ids.h"
#include "util/string_store.h"

#include <QMetaObject>
#include <utility>

namespace
{
constexpr int kMargin = 8, kInset = 4; // design pixels
// In the order of the cells.
constexpr int kPictures[CSettingsSheet::kCellCount] = {
    PictureSettingsGeneral,    PictureSettingsDaily, PictureSettingsList,          PictureSettingsWeekly,
    PictureSettingsMonthly,    PictureSettingsTasks, PictureSettingsCalendarTasks, PictureSettingsColors,
    PictureSettingsCategories, PictureSettingsAbout};
} // namespace

CSettingsSheet::CSettingsSheet(int startPage)
    : CRowListDialog(GetString(StrCalendarSettings)), m_settings(g_Settings), m_startPage(startPage)
{
}

int CSettingsSheet::RowHeight() const
{
    return g_ImageStore.Image(PictureSettingsGeneral).Height() + 2 * D(kInset);
}

void CSettingsSheet::PaintRow(QPainter& dc, int index, const QRect& rect, bool selected)
{
    const CAlphaImage& picture = g_ImageStore.Image(kPictures[index]);
    const QRect place(rect.x() + D(kMargin), rect.y() + (rect.height() - picture.Height()) / 2, picture.Width(),
                      picture.Height());
    DrawImage(picture, dc, place.x(), place.y());
    const int left = place.x() + place.width() + D(kMargin);
    PaintRowText(dc, GetString(StrCellGeneral + index),
                 {left, rect.y(), rect.x() + rect.width() - D(kMargin) - left, rect.height()}, selected);
}

CPaintedPart CSettingsSheet::RowPart(int index) const
{
    return {.Name = GetString(StrCellGeneral + index), .Role = QAccessible::Button};
}

void CSettingsSheet::TakeFocus()
{
    CRowListDialog::TakeFocus();
    const int page = std::exchange(m_startPage, int(kNoPage));
    if (page < 0 || page >= kNoPage)
        return;
    Select(page);
    // Once this page stands.
    QMetaObject::invokeMethod(this, [this, page] { OnRowEntered(page); }, Qt::QueuedConnection);
}

void CSettingsSheet::OnRowTapped(int index, int, bool)
{
    if (index < kSettingsPageCount)
        CSettingsPage(SettingsPageId(index), m_settings).Run(this);
    else if (index == kColors)
        CColorPagesDialog(m_settings).Run(this);
    else if (index == kCategories)
        CCategoryManager().Run(this);
    else if (index == kAbout)
        CAboutPage().Run(this);
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
