#include "forms/two_choice_dialog.h"
#include "drawing/image_store.h"
#include "drawing/paint.h"
#include "drawing/screen_metrics.h"
#include "drawing/text.h"
#include "forms/form_parts.h"
#include "forms/menu_bars.h"
#include "touch/virtual_keys.h"

#include <QImage>
#include <QPainter>
#include <algorithm>

namespace
{
constexpr int kMargin = 10; // design pixels
constexpr int kTallestGrid = 140;
constexpr int kFontQuestion = 0;
constexpr unsigned kQuestionFlags = kTextWordBreak | kTextNoPrefix;
} // namespace

CTwoChoiceDialog::CTwoChoiceDialog(const QString& title, const QString& question, const QString& first,
                                   const QString& firstHint, const QString& second, const QString& secondHint)
    : CFormDialog(title), m_question(question)
{
    m_cells.AddCell({first, firstHint, 0, QStringLiteral("1")});
    m_cells.AddCell({second, secondHint, 0, QStringLiteral("2")});
    setAccessibleDescription(question);
}

int CTwoChoiceDialog::GetMenuBarId() const
{
    return kMenuBarCancel;
}

// ---- layout

int CTwoChoiceDialog::QuestionHeight(int width) const
{
    QImage scratch(1, 1, QImage::Format_RGB32);
    QPainter dc(&scratch);
    dc.setFont(g_ImageStore.Font(kFontQuestion));
    QRect rect(0, 0, width - 2 * D(kMargin), 0);
    return DrawText(dc, m_question, rect, kQuestionFlags | kTextCalcRect);
}

int CTwoChoiceDialog::ContentHeight(int width)
{
    return 3 * D(kMargin) + QuestionHeight(width) + m_cells.HeightFor(width - 2 * D(kMargin));
}

void CTwoChoiceDialog::OnLayout(const QRect& client)
{
    const QRect inner = client.adjusted(D(kMargin), D(kMargin), -D(kMargin), -D(kMargin));
    const int question = QuestionHeight(client.width()) + D(kMargin);
    const int room = std::max(inner.height() - question, 0);
    const int wanted = std::max(m_cells.HeightFor(inner.width()), D(kTallestGrid));
    m_cells.SetArea({inner.x(), inner.y() + question, inner.width(), std::min(room, wanted)});
}

// ---- paint

void CTwoChoiceDialog::PaintContent(QPainter& dc, const QRect& client)
{
    dc.setFont(g_ImageStore.Font(kFontQuestion));
    dc.setPen(ToQColor(kFormInk));
    DrawText(dc, m_question, client.adjusted(D(kMargin), D(kMargin), -D(kMargin), 0), kQuestionFlags);
    m_cells.Paint(dc);
}

// ---- input

void CTwoChoiceDialog::OnKey(int key)
{
    if (m_cells.OnKey(key))
        update();
    else if (key == kKeyReturn && m_cells.GetSelected() >= 0)
        End(m_cells.GetSelected() + 1);
}

void CTwoChoiceDialog::OnKeyUp(int key)
{
    const int number = key - kKeyDigit0;
    if (number >= 1 && number <= m_cells.GetCount())
        End(number);
}

void CTwoChoiceDialog::OnLButtonDown(QPoint at)
{
    m_pressed = m_cells.HitTest(at);
    if (m_pressed >= 0) {
        m_cells.Select(m_pressed);
        update();
    }
}

void CTwoChoiceDialog::OnMouseMove(QPoint at)
{
    if (m_cells.HitTest(at) != m_pressed)
        m_pressed = -1; // a finger that left its cell has changed its mind
}

void CTwoChoiceDialog::OnLButtonUp(QPoint at)
{
    const int pressed = std::exchange(m_pressed, -1);
    if (pressed >= 0 && m_cells.HitTest(at) == pressed)
        End(pressed + 1);
}

CPaintedPart CTwoChoiceDialog::ContentPart(int index) const
{
    return CellPart(m_cells, index, CurrentFactor());
}
