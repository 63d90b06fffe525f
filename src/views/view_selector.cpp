#include "views/view_selector.h"
#include "drawing/picture_ids.h"
#include "drawing/screen_metrics.h"
#include "forms/menu_bars.h"
#include "touch/virtual_keys.h"
#include "util/string_ids.h"
#include "util/string_store.h"

#include <QPainter>

namespace
{
constexpr int kMargin = 10; // design pixels
// By kind of view.
constexpr int kPictures[] = {PictureViewDaily,   PictureViewList,  PictureViewWeekly,
                             PictureViewMonthly, PictureViewTasks, PictureViewSearch};
constexpr int kNone = 48, kFirstNumber = 49; // keys
} // namespace

CViewSelector::CViewSelector(int currentKind) : CFormDialog(GetString(StrSelectView))
{
    for (int kind = 0; kind < int(std::size(kPictures)); ++kind) {
        const QString text =
            FillText(GetString(StrNumberedCell), {QString::number(kind + 1), GetString(StrViewDaily + kind)});
        m_grid.AddCell({text, {}, kPictures[kind]});
    }
    m_grid.Select(currentKind);
}

int CViewSelector::Choose(QWidget* owner)
{
    return Run(owner) - 1;
}

void CViewSelector::EndWith(int index)
{
    End(index >= 0 ? index + 1 : int(kCancelled));
}

int CViewSelector::GetMenuBarId() const
{
    return kMenuBarSelect;
}

// ---- layout

int CViewSelector::ContentHeight(int width)
{
    m_grid.SetShape(2, 3);
    return m_grid.HeightFor(width - 2 * D(kMargin)) + 2 * D(kMargin);
}

void CViewSelector::OnLayout(const QRect& client)
{
    const bool wide = client.width() > client.height();
    m_grid.SetShape(wide ? 3 : 2, wide ? 2 : 3);
    m_grid.SetArea(client.adjusted(D(kMargin), D(kMargin), -D(kMargin), -D(kMargin)));
}

void CViewSelector::PaintContent(QPainter& dc, const QRect&)
{
    m_grid.Paint(dc);
}

// ---- input

void CViewSelector::OnKey(int key)
{
    if (key == kKeyReturn)
        EndWith(m_grid.GetSelected());
    else if (key == kNone)
        EndWith(-1);
    else if (key >= kFirstNumber && key < kFirstNumber + m_grid.GetCount())
        EndWith(key - kFirstNumber);
    else if (m_grid.OnKey(key))
        update();
}

void CViewSelector::OnLButtonDown(QPoint at)
{
    if (const int cell = m_grid.HitTest(at); cell >= 0) {
        m_grid.Select(cell);
        update();
    }
}

void CViewSelector::OnLButtonUp(QPoint at)
{
    if (const int cell = m_grid.HitTest(at); cell >= 0)
        EndWith(cell);
}

CPaintedPart CViewSelector::ContentPart(int index) const
{
    return CellPart(m_grid, index, CurrentFactor());
}
