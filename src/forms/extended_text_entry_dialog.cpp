#include "forms/extended_text_entry_dialog.h"
#include "drawing/picture_ids.h"
#include "drawing/screen_metrics.h"
#include "forms/contact_picker.h"
#include "forms/menu_bars.h"
#include "forms/my_text_picker.h"
#include "forms/text_edit_dialog.h"
#include "touch/virtual_keys.h"
#include "util/string_ids.h"
#include "util/string_store.h"

#include <utility>

namespace
{
constexpr int kMargin = 10; // design pixels
constexpr int kTallestCell = 96;
enum Cell { kFullScreen, kMyText, kContact };
} // namespace

QString TextForField(QString text, CExtendedTextEntryDialog::Mode mode)
{
    if (mode != CExtendedTextEntryDialog::kNote)
        text.replace(u'\n', u' ').remove(u'\r');
    return text;
}

CExtendedTextEntryDialog::CExtendedTextEntryDialog(const QString& text, int selectionStart, int selectionEnd,
                                                   Mode mode)
    : CFormDialog(GetString(StrExtendedText)), m_text(text), m_start(selectionStart), m_end(selectionEnd),
      m_mode(mode)
{
    constexpr struct {
        int Format, Text, Picture;
    } kCells[] = {{StrAidFullScreen, StrFullScreenEditor, PictureTextFullScreen},
                  {StrAidMyText, StrInsertMyText, PictureTextMyText},
                  {StrAidContact, StrInsertContact, PictureTextContact}};
    for (const auto& cell : kCells)
        m_cells.AddCell(
            {FillText(GetString(cell.Format), {GetString(cell.Text)}), QString(), cell.Picture, QString()});
}

int CExtendedTextEntryDialog::GetMenuBarId() const
{
    return kMenuBarCancel;
}

int CExtendedTextEntryDialog::ContentHeight(int width)
{
    return m_cells.HeightFor(width - 2 * D(kMargin)) + 2 * D(kMargin);
}

void CExtendedTextEntryDialog::OnLayout(const QRect& client)
{
    // A low page has room for them side by side only.
    const QRect inner = client.adjusted(D(kMargin), D(kMargin), -D(kMargin), -D(kMargin));
    m_cells.SetShape(1, 3);
    const bool low = m_cells.HeightFor(inner.width()) > inner.height();
    m_cells.SetShape(low ? 3 : 1, low ? 1 : 3);
    const int tallest = low ? inner.height() : 3 * D(kTallestCell);
    m_cells.SetArea({inner.x(), inner.y(), inner.width(), std::min(inner.height(), tallest)});
}

void CExtendedTextEntryDialog::PaintContent(QPainter& dc, const QRect&)
{
    m_cells.Paint(dc);
}

// ---- the aids

void CExtendedTextEntryDialog::RunAid(int cell)
{
    m_cells.Select(cell);
    update();
    bool taken = false;
    if (cell == kFullScreen) {
        taken = EditFullScreen();
    } else if (cell == kMyText) {
        CMyTextPicker picker(m_mode);
        taken = picker.Run(this) == kDone;
        if (taken)
            Insert(picker.GetText());
    } else {
        CContactPicker picker;
        taken = picker.Run(this) == kDone;
        if (taken)
            Insert(picker.GetText());
    }
    End(taken ? kDone : kCancelled);
}

bool CExtendedTextEntryDialog::EditFullScreen()
{
    CTextEditDialog editor(GetString(StrFullScreenEditor), m_text, m_start, m_end);
    if (editor.Run(this) != kDone)
        return false;
    m_text = TextForField(editor.GetText(), m_mode);
    m_caret = int(QString(m_text).replace(QStringLiteral("\r\n"), QStringLiteral("\n")).size());
    return true;
}

void CExtendedTextEntryDialog::Insert(const QString& text)
{
    const QString inserted = text + u' ';
    m_text.replace(QStringLiteral("\r\n"), QStringLiteral("\n")); // as the selection counts
    if (m_text.isEmpty()) {
        m_text = inserted;
        m_caret = int(inserted.size());
        return;
    }
    const bool caret = m_start >= 0 && m_start == m_end && m_start <= m_text.size();
    m_text.insert(caret ? m_start : int(m_text.size()), inserted);
    m_caret = std::min(std::max(m_start, 0) + int(inserted.size()), int(m_text.size()));
}

// ---- input

void CExtendedTextEntryDialog::OnKey(int key)
{
    if (m_cells.OnKey(key))
        update();
    else if (key == kKeyReturn && m_cells.GetSelected() >= 0)
        RunAid(m_cells.GetSelected());
}

void CExtendedTextEntryDialog::OnKeyUp(int key)
{
    const int number = key - kKeyDigit0;
    if (number >= 1 && number <= m_cells.GetCount())
        RunAid(number - 1);
}

void CExtendedTextEntryDialog::OnLButtonDown(QPoint at)
{
    m_pressed = m_cells.HitTest(at);
    if (m_pressed >= 0) {
        m_cells.Select(m_pressed);
        update();
    }
}

void CExtendedTextEntryDialog::OnMouseMove(QPoint at)
{
    if (m_cells.HitTest(at) != m_pressed)
        m_pressed = -1; // a finger that left its cell has changed its mind
}

void CExtendedTextEntryDialog::OnLButtonUp(QPoint at)
{
    const int pressed = std::exchange(m_pressed, -1);
    if (pressed >= 0 && m_cells.HitTest(at) == pressed)
        RunAid(pressed);
}
