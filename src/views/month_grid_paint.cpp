// The pictures of the month's grid.
#include "drawing/image_store.h"
#include "drawing/paint.h"
#include "drawing/picture_ids.h"
#include "drawing/screen_metrics.h"
#include "drawing/text.h"
#include "pim/pim_store.h"
#include "platform/locale.h"
#include "settings/settings.h"
#include "settings/week_number.h"
#include "views/month_grid.h"

#include <QPainter>
#include <QStringList>
#include <algorithm>
#include <set>

namespace
{
constexpr int kFontNumber = 500, kFontTitle = 502;
constexpr COLORREF kPopOutEdge = 0x1F0F0A;
constexpr quint32 kShadowAlpha = 128;
constexpr int kTwoToneAlpha = 50;
constexpr int kMostPopOut = 3;
constexpr int kLeastCellHeight = 24; // design pixels that the number and what stands below it need
enum ItemsToShow { kTimelines, kIcons, kBoth };

// Makes the picture anew only for another size: fresh memory costs more than what is painted into it.
void Reshape(QImage& picture, QSize size)
{
    if (picture.size() != size)
        picture = QImage(size, QImage::Format_RGB32);
}

void CopyBlock(QImage& to, const QImage& from, const QRect& block)
{
    const QRect part = block & to.rect();
    for (int y = part.top(); y <= part.bottom(); ++y)
        std::copy_n(reinterpret_cast<const quint32*>(from.constScanLine(y)) + part.x(), part.width(),
                    reinterpret_cast<quint32*>(to.scanLine(y)) + part.x());
}

// The days' names from the first on: as the locale shortens them, or where a column has no room for
// that, without the dot, or the first letters alone.
QStringList DayNames(int firstDay, int width)
{
    const QFont& font = g_ImageStore.Font(kFontTitle);
    QStringList names;
    for (int column = 0; column < CMonthGridLayout::kColumns; ++column)
        names << GetDateFormat(DateFlag::Picture, SystemTimeOf(firstDay + column), QStringLiteral("ddd"));
    const auto fits = [&](const QString& name) { return TextWidth(font, name) + D(2) <= width; };
    if (std::all_of(names.cbegin(), names.cend(), fits))
        return names;
    for (QString& name : names)
        name.remove(u'.');
    if (!std::all_of(names.cbegin(), names.cend(), fits)) {
        for (QString& name : names)
            name.truncate(1);
    }
    return names;
}

// The categories that a visible item of the day has.
std::set<const CCategory*> CategoriesOf(const CDayItems& day)
{
    std::set<const CCategory*> categories;
    const auto take = [&categories](const auto& items) {
        for (const auto& item : items) {
            for (const qint32 number : item->Categories) {
                if (item->Visible)
                    categories.insert(PimStore().Categories().FindById(number));
            }
        }
    };
    take(day.Appointments);
    take(day.Tasks);
    return categories;
}
} // namespace

const QImage& CMonthGrid::Picture()
{
    Update();
    return m_picture;
}

bool CMonthGrid::IsPoppedOut(QPoint at)
{
    Update();
    return m_popOutRect.contains(at);
}

QRect CMonthGrid::TakeChanges()
{
    Update();
    return std::exchange(m_changes, QRect());
}

void CMonthGrid::Update()
{
    const QSize size(m_layout.Width(), m_layout.Height());
    if (size.isEmpty() || m_firstDay == 0) {
        m_basePicture = m_picture = QImage();
        m_popOutRect = QRect();
        return;
    }
    const bool rebuild = !m_baseValid || m_basePicture.size() != size;
    if (rebuild) {
        PaintAllCells();
        Reshape(m_picture, size);
        m_covered = m_picture.rect();
    } else if (m_shown == m_selected) {
        return;
    }
    CopyBlock(m_picture, m_basePicture, m_covered);
    m_changes |= m_covered;
    m_popOutRect = m_covered = QRect();
    m_shown = m_selected;
    const CDayItems* day = PimStore().FindDay(m_selected);
    const QRect cell = CellOf(m_selected);
    if (!day || cell.isEmpty())
        return;
    QPainter dc(&m_picture);
    PaintCell(dc, *day, cell, true);
    m_changes |= m_covered;
}

void CMonthGrid::PaintAllCells()
{
    Reshape(m_basePicture, {m_layout.Width(), m_layout.Height()});
    m_baseValid = true;
    m_today = GetToday();
    QPainter dc(&m_basePicture);
    FillSolid(dc, m_basePicture.rect(), kColorWhite);
    PaintWeekNumbers(dc);
    PaintTitleRow(dc);
    for (int day = m_firstDay; day <= LastDay(); ++day) {
        if (const CDayItems* items = PimStore().FindDay(day))
            PaintCell(dc, *items, CellOf(day), false);
    }
}

void CMonthGrid::PaintTitleRow(QPainter& dc) const
{
    const int height = m_layout.TitleRowHeight();
    FillTwoTone(dc, {0, 0, m_layout.Width(), height}, m_colors.TitleBack, kColorWhite, kTwoToneAlpha, false);
    dc.setFont(g_ImageStore.Font(kFontTitle));
    dc.setPen(ToQColor(m_colors.TitleText));
    const QStringList names = DayNames(m_firstDay, m_layout.TitleCell(1).width());
    for (int column = 0; column < CMonthGridLayout::kColumns; ++column)
        DrawText(dc, names[column], m_layout.TitleCell(column),
                 kTextCentre | kTextVCentre | kTextSingleLine | kTextNoPrefix);
    FillSolid(dc, {0, height, m_layout.Width(), 1}, kColorBlack);
}

void CMonthGrid::PaintWeekNumbers(QPainter& dc) const
{
    if (m_layout.WeekNumberCell(0).isEmpty())
        return;
    const int rule = GetWeekNumberMode();
    dc.setFont(g_ImageStore.Font(kFontNumber));
    for (int row = 0; row < m_layout.RowCount(); ++row) {
        const QRect cell = m_layout.WeekNumberCell(row);
        FillSolid(dc, cell, m_colors.WeekBack);
        dc.setPen(ToQColor(m_colors.WeekText));
        DrawText(dc, QString::number(GetWeekNumber(rule, m_firstDay + row * CMonthGridLayout::kColumns)),
                 cell, kTextCentre | kTextVCentre | kTextSingleLine | kTextNoPrefix);
    }
}

COLORREF CMonthGrid::CellColor(int day, bool inMonth) const
{
    if (day == m_today)
        return m_colors.Today;
    if (!inMonth)
        return m_colors.OtherMonth;
    return m_weekend[size_t(DayOfWeekOf(day))] ? m_colors.Weekend : m_colors.Days;
}

COLORREF CMonthGrid::NumberColor(int day, bool inMonth) const
{
    if (day == m_today)
        return m_colors.TodayNumber;
    return inMonth ? m_colors.Number : m_colors.OtherNumber;
}

void CMonthGrid::PaintCell(QPainter& dc, const CDayItems& day, QRect cell, bool selected)
{
    const bool inMonth = ShownMonth().Contains(day.Day);
    if (selected) {
        const int growth = D(2 * std::clamp(g_Settings.MonthView.PopOut, 0, kMostPopOut));
        cell = m_popOutRect = m_covered = m_layout.PopOut(cell, growth);
        if (growth) {
            const QRect shadow = cell.translated(D(2), D(2));
            BlendRect(dc, shadow, kColorBlack, kShadowAlpha);
            FillSolid(dc, cell, kPopOutEdge);
            m_covered |= shadow;
            cell.adjust(D(1), D(1), -D(1), -D(1));
        }
        FillTwoTone(dc, cell, m_colors.Selected, kColorWhite, kTwoToneAlpha, false);
    } else {
        FillSolid(dc, cell, CellColor(day.Day, inMonth));
    }
    const bool low = cell.height() < D(kLeastCellHeight); // of a window that is too small for the month
    if (low)
        dc.setClipRect(cell);
    const CAlphaImage& check = g_ImageStore.Image(PictureMonthCellTasks);
    const bool withTasks = day.TaskCount > 0;
    const CMonthCellParts parts =
        PartsOfCell(cell, {m_numberSize, withTasks ? check.Width() : 0, m_layout.IsBeside()});
    dc.setFont(g_ImageStore.Font(kFontNumber));
    dc.setPen(ToQColor(selected ? m_colors.SelectedNumber : NumberColor(day.Day, inMonth)));
    DrawText(dc, QString::number(SystemTimeOf(day.Day).wDay), parts.Number & cell,
             kTextRight | kTextSingleLine | kTextNoPrefix);
    if (withTasks)
        DrawImage(check, dc, parts.Check.x(), parts.Check.y());
    const bool timeline = g_Settings.MonthView.ItemsToShow != kIcons &&
                          (g_Settings.MonthView.HideEmptyTimelines != 1 || HasSlots(day));
    if (timeline)
        PaintMiniTimeline(dc, parts.Timeline, day,
                          {m_colors.Timeline.Back, inMonth ? m_colors.Timeline.Border : m_colors.OtherNumber},
                          true);
    if (g_Settings.MonthView.ItemsToShow != kTimelines)
        PaintIcons(dc, day, cell, parts.Timeline.y() + parts.Timeline.height());
    if (low)
        dc.setClipping(false);
}

void CMonthGrid::PaintIcons(QPainter& dc, const CDayItems& day, const QRect& cell, int timelineBottom) const
{
    const std::set<const CCategory*> used = CategoriesOf(day);
    if (used.empty())
        return;
    std::vector<const CAlphaImage*> icons;
    std::vector<QSize> sizes;
    for (int n = 0; const CCategory* category = PimStore().Categories().GetAt(n); ++n) {
        const CAlphaImage& icon = g_ImageStore.Icon(category->ImageName);
        if (!icon.IsValid() || !used.contains(category))
            continue;
        icons.push_back(&icon);
        sizes.push_back({icon.Width(), icon.Height()});
    }
    const std::vector<QPoint> places = CategoryIconPlaces(cell, timelineBottom, sizes);
    for (size_t n = 0; n < places.size(); ++n)
        DrawImage(*icons[n], dc, places[n].x(), places[n].y());
}
