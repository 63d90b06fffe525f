#include "forms/my_text_picker.h"
#include "drawing/image_store.h"
#include "drawing/picture_ids.h"
#include "drawing/screen_metrics.h"
#include "drawing/text.h"
#include "forms/menu_bars.h"
#include "forms/text_edit_dialog.h"
#include "settings/settings.h"
#include "touch/command_ids.h"
#include "touch/touch_menu.h"
#include "touch/virtual_keys.h"
#include "util/string_ids.h"
#include "util/string_store.h"

#include <algorithm>

namespace
{
constexpr int kMargin = 10, kNumberWidth = 16; // design pixels
constexpr int kLastNumber = 9;

enum MenuEntry { kMoveUp = 101, kMoveDown, kAddNew, kBefore, kAfter, kAtEnd, kEdit, kRemove };

QStringList& PhrasesOf(CExtendedTextEntryDialog::Mode mode)
{
    if (mode == CExtendedTextEntryDialog::kSubject)
        return g_Settings.m_myTextSubjects;
    return mode == CExtendedTextEntryDialog::kLocation ? g_Settings.m_myTextLocations
                                                       : g_Settings.m_myTextNotes;
}
} // namespace

CMyTextPicker::CMyTextPicker(CExtendedTextEntryDialog::Mode mode)
    : CRowListDialog(GetString(StrSelectMyText)), m_kept(PhrasesOf(mode)), m_phrases(m_kept)
{
}

CMyTextPicker::~CMyTextPicker()
{
    if (m_kept == m_phrases)
        return;
    m_kept = m_phrases;
    g_Settings.Save();
}

int CMyTextPicker::GetMenuBarId() const
{
    return kMenuBarMyText;
}

// ---- rows

int CMyTextPicker::PositionOf(int index) const
{
    const int position = index - FirstVisibleRow() + 1;
    return position >= 1 && position <= kLastNumber ? position : 0;
}

void CMyTextPicker::PaintRow(QPainter& dc, int index, const QRect& rect, bool selected)
{
    const QRect number(rect.x() + rect.width() - D(kMargin) - D(kNumberWidth), rect.y(), D(kNumberWidth),
                       rect.height());
    const int left = rect.x() + D(kMargin);
    PaintRowText(dc, m_phrases[index], {left, rect.y(), number.x() - D(kMargin) - left, rect.height()},
                 selected);
    PaintRowText(dc, QString::number(PositionOf(index)), number, selected, true);
}

CPaintedPart CMyTextPicker::RowPart(int index) const
{
    CPaintedPart part;
    part.Name = m_phrases[index];
    return part;
}

void CMyTextPicker::OnRowTapped(int, int, bool wasSelected)
{
    if (wasSelected)
        OnDone();
}

void CMyTextPicker::OnDone()
{
    if (!m_phrases.isEmpty())
        End(kDone);
}

void CMyTextPicker::OnKeyUp(int key)
{
    const int position = key - kKeyDigit0;
    const int row = FirstVisibleRow() + position - 1;
    if (position < 1 || position > kLastNumber || row >= RowCount())
        return;
    Select(row);
    OnDone();
}

// ---- menu

void CMyTextPicker::OnCommand(int command)
{
    if (command == CmdMenu)
        RunMenu();
    else
        CRowListDialog::OnCommand(command);
}

void CMyTextPicker::RunMenu()
{
    CTouchMenu menu(GetTitle());
    const int selected = GetSelected(), count = RowCount();
    if (selected > 0 && count > 0)
        menu.AddRow(StrMoveUp, kMoveUp, PictureMoveUp);
    if (selected + 1 < count)
        menu.AddRow(StrMoveDown, kMoveDown, PictureMoveDown);
    menu.AddRow(StrAddNew, kAddNew, PictureAdd);
    if (count > 0) {
        menu.AddRow(StrEditItem, kEdit, PictureEdit);
        menu.AddRow(StrRemoveItem, kRemove, PictureDelete);
    }
    menu.AddRow(StrCancel, CmdCancel, PictureCancel);
    switch (menu.Run(this)) {
    case kMoveUp:
        return Move(-1);
    case kMoveDown:
        return Move(1);
    case kAddNew:
        return RunAddMenu();
    case kEdit:
        return Edit();
    case kRemove:
        return Remove();
    case CmdCancel:
        return End(kCancelled);
    default:
        return;
    }
}

void CMyTextPicker::RunAddMenu()
{
    CTouchMenu menu(GetString(StrAddNew));
    menu.AddRow(StrBeforeCurrent, kBefore, PictureMoveUp);
    menu.AddRow(StrAfterCurrent, kAfter, PictureMoveDown);
    menu.AddRow(StrAtEnd, kAtEnd, PictureAdd);
    switch (menu.Run(this)) {
    case kBefore:
        return Add(GetSelected());
    case kAfter:
        return Add(std::min(GetSelected() + 1, RowCount()));
    case kAtEnd:
        return Add(RowCount());
    default:
        return;
    }
}

void CMyTextPicker::Move(int step)
{
    m_phrases.swapItemsAt(GetSelected(), GetSelected() + step);
    Select(GetSelected() + step);
}

void CMyTextPicker::Add(int at)
{
    CTextPromptDialog prompt(GetString(StrMyTextPrompt), QString());
    if (prompt.Run(this) != kDone || prompt.GetText().isEmpty())
        return;
    m_phrases.insert(at, prompt.GetText());
    RowsChanged();
    Select(at);
}

void CMyTextPicker::Edit()
{
    CTextPromptDialog prompt(GetString(StrMyTextPrompt), GetText());
    if (prompt.Run(this) != kDone || prompt.GetText().isEmpty())
        return;
    m_phrases[GetSelected()] = prompt.GetText();
    RowsChanged();
}

void CMyTextPicker::Remove()
{
    m_phrases.removeAt(GetSelected());
    RowsChanged();
    Select(GetSelected());
}
