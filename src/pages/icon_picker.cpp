#include "pages/icon_picker.h"
#include "drawing/image_store.h"
#include "drawing/paint.h"
#include "drawing/screen_metrics.h"
#include "drawing/text.h"
#include "forms/form_parts.h"
#include "platform/locale.h"
#include "settings/color_scheme.h"
#include "settings/settings.h"
#include "settings/system_colors.h"
#include "touch/device_pixels.h"
#include "touch/virtual_keys.h"
#include "touch/wait_cursor.h"
#include "util/string_ids.h"
#include "util/string_store.h"

#include <QDir>
#include <QPainter>
#include <algorithm>

namespace
{
// Design pixels.
constexpr int kSpacing = 4, kCellPadding = 4, kSeenMargin = 20;
constexpr int kHeadingLeft = 6, kHeadingRoom = 10, kEmptyMargin = 12;
constexpr int kFontHeading = 4, kFontEmpty = 0;
constexpr quint32 kSelectedAlpha = 60; // of the highlight's colour over the ground
constexpr int kWheelNotch = 120;
const QLatin1String kPictureSuffix(".png");

// The groups of our own archive in the user's language; others as their makers named them.
QString GroupTitle(const QString& group)
{
    static constexpr const char* kOwnGroups[] = {"Health", "Home",  "Leisure", "Money",
                                                 "People", "Study", "Travel",  "Work"};
    for (int n = 0; n < int(std::size(kOwnGroups)); ++n) {
        if (CompareText(group, QLatin1String(kOwnGroups[n])) == 0)
            return GetString(StrIconGroupHealth + n);
    }
    return group;
}
} // namespace

CIconPicker::CIconPicker(const QString& reference)
    : CFormDialog(GetString(StrIconPicker)), m_reference(reference)
{
}

QString CIconPicker::GetReference() const
{
    return m_selected < 0 ? QString() : m_reference;
}

// ---- data

void CIconPicker::Scan()
{
    const CWaitCursor wait;
    m_groups.clear();
    m_icons.clear();
    CIconStore(g_Settings.m_installFolder).ScanStore(m_groups);
    for (const auto& [name, entries] : m_groups) {
        for (const CIconEntry& entry : entries)
            m_icons.push_back(&entry);
    }
    m_scannedFor = g_ScreenMetrics.Density();
    const auto known = std::find_if(m_icons.begin(), m_icons.end(), [this](const CIconEntry* entry) {
        return entry->Reference == m_reference;
    });
    m_selected = known == m_icons.end() ? -1 : int(known - m_icons.begin());
}

QString CIconPicker::EmptyText() const
{
    const QString folder = CIconStore(g_Settings.m_installFolder).StoreFolder();
    return FillText(GetString(StrNoIcons), {QDir::toNativeSeparators(folder)});
}

// ---- layout

void CIconPicker::LayOut(int width)
{
    std::vector<int> counts;
    for (const auto& [name, entries] : m_groups)
        counts.push_back(int(entries.size()));
    const int heading = LineHeight(g_ImageStore.Font(kFontHeading)) + D(kHeadingRoom);
    m_grid =
        CIconGridLayout(width, {heading, D(CIconStore::kLargeSide + 2 * kCellPadding), D(kSpacing)}, counts);
}

void CIconPicker::OnLayout(const QRect& client)
{
    if (client.isEmpty())
        return;
    if (m_scannedFor != g_ScreenMetrics.Density())
        Scan();
    LayOut(client.width());
    if (m_touch.Width() == 0)
        m_touch.Attach(0, this, this, client.x(), client.y(), client.width(), client.height());
    else
        m_touch.SetArea(client);
    m_touch.Redraw(true);
    Select(m_selected);
}

QRect CIconPicker::IconRect(int icon) const
{
    const QRect area = m_touch.Area();
    return m_grid.CellRect(icon).translated(area.x(), area.y() + m_touch.Scroll());
}

// ---- selection

void CIconPicker::Select(int icon)
{
    if (icon < 0 || icon >= IconCount())
        return;
    m_selected = icon;
    m_reference = m_icons[size_t(icon)]->Reference;
    if (m_touch.Width() == 0)
        return;
    const int margin = D(kSeenMargin);
    QRect seen = m_grid.CellRect(icon).adjusted(0, -margin, 0, margin);
    const QRect heading = m_grid.HeadingRect(m_grid.GroupOf(icon));
    if (seen.y() < heading.y() + heading.height())
        seen.setTop(heading.y());
    m_touch.EnsureVisible(seen);
    m_touch.Redraw(true);
    update();
}

void CIconPicker::OnDone()
{
    End(m_selected < 0 ? kCancelled : kDone);
}

// ---- paint

int CIconPicker::RenderContent(quint32, QPainter& dc, quint32, int scroll, int width, int height)
{
    FillSolid(dc, {0, 0, width, height}, SystemColor::Window);
    if (m_icons.empty()) {
        dc.setFont(g_ImageStore.Font(kFontEmpty));
        dc.setPen(ToQColor(SystemColor::GrayText));
        const QRect box(D(kEmptyMargin), D(kEmptyMargin), width - 2 * D(kEmptyMargin), height);
        dc.drawText(box, Qt::TextWrapAnywhere | Qt::AlignTop | Qt::AlignLeft, EmptyText());
        return height;
    }
    int group = 0;
    for (const auto& [name, entries] : m_groups) {
        const QRect heading = m_grid.HeadingRect(group++).translated(0, scroll);
        if (heading.y() < height && heading.bottom() >= 0)
            PaintHeading(dc, heading, GroupTitle(name));
    }
    for (int icon = 0; icon < IconCount(); ++icon) {
        const QRect cell = m_grid.CellRect(icon).translated(0, scroll);
        if (cell.y() < height && cell.bottom() >= 0)
            PaintCell(dc, cell, icon);
    }
    return m_grid.Height();
}

void CIconPicker::PaintHeading(QPainter& dc, const QRect& rect, const QString& group) const
{
    dc.setFont(g_ImageStore.Font(kFontHeading));
    dc.setPen(ToQColor(kFormInk));
    DrawText(dc, group, rect.adjusted(D(kHeadingLeft), D(2), -D(kHeadingLeft), 0),
             kTextVCentre | kTextSingleLine | kTextNoPrefix | kTextEndEllipsis);
    FillSolid(dc, {rect.x(), rect.y() + rect.height() - D(1), rect.width(), D(1)}, kFormHairLine);
}

void CIconPicker::PaintCell(QPainter& dc, const QRect& rect, int icon) const
{
    if (icon == m_selected) {
        // A light ground: the pictures' dark ink would vanish in the gradient of other selections.
        const COLORREF highlight = GetHighlightColor();
        FillSolid(dc, rect, highlight);
        FillSolid(dc, rect.adjusted(D(2), D(2), -D(2), -D(2)),
                  Blend(highlight, SystemColor::Window, kSelectedAlpha));
    }
    const CAlphaImage& image = m_icons[size_t(icon)]->Large;
    DrawImage(image, dc, rect.x() + (rect.width() - image.Width()) / 2,
              rect.y() + (rect.height() - image.Height()) / 2);
}

void CIconPicker::PaintContent(QPainter& dc, const QRect& client)
{
    m_touch.PaintTo(dc, client.x(), client.y());
}

// ---- input

bool CIconPicker::OnPress(quint32, int x, int y)
{
    const int icon = m_grid.HitTest({x, y});
    if (icon < 0)
        return false;
    m_selected = icon;
    m_reference = m_icons[size_t(icon)]->Reference;
    return true;
}

void CIconPicker::OnTap(quint32, int x, int y)
{
    Select(m_grid.HitTest({x, y}));
}

void CIconPicker::OnKey(int key)
{
    if (key == kKeyReturn)
        return OnDone();
    if (m_selected < 0) {
        if (key >= kKeyPageUp && key <= kKeyDown)
            Select(0);
        return;
    }
    const int page = std::max(m_touch.Height() / std::max(m_grid.CellRect(0).height(), 1) - 1, 1);
    int next = m_selected;
    if (key == kKeyPageUp || key == kKeyPageDown) {
        for (int n = 0; n < page; ++n)
            next = m_grid.Step(next, key == kKeyPageUp ? kKeyUp : kKeyDown);
    } else {
        next = m_grid.Step(next, key);
    }
    if (next != m_selected)
        Select(next);
}

void CIconPicker::OnWheel(int angle)
{
    m_touch.ScrollBy(angle * m_grid.CellRect(0).height() / kWheelNotch);
}

// ---- accessibility

CPaintedPart CIconPicker::ContentPart(int index) const
{
    CPaintedPart part;
    if (m_icons.empty()) {
        part.Name = EmptyText();
        part.Role = QAccessible::StaticText;
        part.Rect = ToLogical(m_touch.Area(), CurrentFactor());
        return part;
    }
    const auto reference = CIconReference::Parse(m_icons[size_t(index)]->Reference);
    part.Name = reference ? reference->File : QString();
    if (part.Name.endsWith(kPictureSuffix, Qt::CaseInsensitive))
        part.Name.chop(kPictureSuffix.size());
    part.Value = reference ? GroupTitle(reference->Group) : QString();
    part.Role = QAccessible::Button;
    part.Rect = ToLogical(IconRect(index), CurrentFactor());
    part.Selected = index == m_selected;
    return part;
}
