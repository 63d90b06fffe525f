#include "pages/color_pages.h"
#include "drawing/picture_ids.h"
#include "drawing/screen_metrics.h"
#include "forms/menu_bars.h"
#include "forms/question.h"
#include "pages/color_picker.h"
#include "settings/color_table.h"
#include "touch/command_ids.h"
#include "touch/touch_menu.h"
#include "util/string_ids.h"
#include "util/string_store.h"

#include <array>

namespace
{
constexpr int kCommandRestore = 1025;
constexpr int kMargin = 8; // design pixels

// The first number of each page's colours; they end before the next page's.
constexpr int kFirstNumbers[kColorPageCount + 1] = {500, 1000, 2000, 3000, 4000, 5000, 6000, 7000, 8000};

// A colour's label is a string of its own number.
std::span<const FieldRowDesc> RowsOf(ColorPageId page)
{
    static const auto all = [] {
        std::array<std::vector<FieldRowDesc>, kColorPageCount> pages;
        for (const CColorKey& key : kColorKeys) {
            for (int n = 0; n < kColorPageCount; ++n) {
                if (key.Id >= kFirstNumbers[n] && key.Id < kFirstNumbers[n + 1])
                    pages[size_t(n)].push_back({quint32(StrColorNames + key.Id), key.Id, kRowColor});
            }
        }
        return pages;
    }();
    return all[size_t(page)];
}

// The answer of the menu of colours: what its caller has still to do.
int RunColorMenu(CFormDialog& owner, CColorScheme& scheme)
{
    CTouchMenu menu(owner.GetTitle());
    menu.AddRow(StrRestoreDefaults, kCommandRestore, PictureReturn);
    menu.AddRow(StrCancel, CmdCancel, PictureCancel);
    const int command = menu.Run(&owner);
    if (command != kCommandRestore)
        return command;
    if (!AskYesNo(&owner, GetString(StrRestoreColorsQuestion), GetString(StrResetDefault)))
        return CmdNone;
    scheme.ResetColors();
    return kCommandRestore;
}
} // namespace

// ---- one page

CColorPage::CColorPage(ColorPageId page, CColorScheme& scheme)
    : CFieldForm(TitleOf(page), RowsOf(page)), m_target(scheme), m_scheme(scheme)
{
    SetTitleFollowsRow(false);
}

QString CColorPage::TitleOf(ColorPageId page)
{
    return GetString(StrColorsGeneral + int(page));
}

int CColorPage::GetMenuBarId() const
{
    return kMenuBarColors;
}

void CColorPage::OnCommand(int command)
{
    if (command == CmdMenu)
        command = RunColorMenu(*this, m_scheme);
    if (command == kCommandRestore) {
        ReloadAllRows();
        update();
    } else if (command != CmdNone) {
        CFieldForm::OnCommand(command);
    }
}

void CColorPage::ExchangeColor(quint32, int colorNumber, COLORREF& color, bool set)
{
    if (set)
        m_scheme.SetStoredColor(colorNumber, color);
    else
        color = m_scheme.GetStoredColor(colorNumber);
}

void CColorPage::OnLinkTapped(quint32 id)
{
    const int number = int(id) - StrColorNames;
    CColorPicker picker(GetString(StrSelectColor), m_scheme.GetStoredColor(number),
                        GetString(StrColorDefault));
    if (picker.Run(this) != kDone)
        return;
    const COLORREF color = picker.GetColor();
    // Not every colour can be derived when it is not set: the default is what stood there at first.
    m_scheme.SetStoredColor(number, color == kColorNotSet ? CColorScheme().GetStoredColor(number) : color);
}

bool CColorPage::Save()
{
    m_target = m_scheme;
    return true;
}

// ---- the list

CColorPagesDialog::CColorPagesDialog(CColorScheme& scheme)
    : CRowListDialog(GetString(StrColorSettings)), m_target(scheme), m_scheme(scheme)
{
}

int CColorPagesDialog::GetMenuBarId() const
{
    return kMenuBarColors;
}

void CColorPagesDialog::OnCommand(int command)
{
    if (command == CmdMenu)
        command = RunColorMenu(*this, m_scheme);
    if (command != CmdNone && command != kCommandRestore)
        CRowListDialog::OnCommand(command);
}

void CColorPagesDialog::PaintRow(QPainter& dc, int index, const QRect& rect, bool selected)
{
    PaintRowText(dc, CColorPage::TitleOf(ColorPageId(index)), rect.adjusted(D(kMargin), 0, -D(kMargin), 0),
                 selected);
}

void CColorPagesDialog::OnRowTapped(int index, int, bool)
{
    CColorPage(ColorPageId(index), m_scheme).Run(this);
}

CPaintedPart CColorPagesDialog::RowPart(int index) const
{
    return {.Name = CColorPage::TitleOf(ColorPageId(index)), .Role = QAccessible::Button};
}

void CColorPagesDialog::OnDone()
{
    m_target = m_scheme;
    End(kDone);
}
