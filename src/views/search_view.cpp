#include "views/search_view.h"
#include "desktop/keyboard_service.h"
#include "drawing/picture_ids.h"
#include "forms/form_parts.h"
#include "forms/message_dialog.h"
#include "pim/pim_store.h"
#include "touch/command_ids.h"
#include "touch/wait_cursor.h"
#include "util/string_ids.h"
#include "util/string_store.h"
#include "views/search_options_form.h"
#include "views/view_menus.h"

#include <QAction>
#include <QElapsedTimer>
#include <QLineEdit>
#include <QMenu>
#include <QPointer>
#include <algorithm>
#include <cmath>

namespace
{
constexpr int kLeastText = 2;
constexpr int kMinutesOfDay = 24 * 60;
constexpr int kFarDay = 1 << 20; // beyond all dates, and its minutes still are a number

// By day, then by time; what has no time stands before what has one.
int OrderOf(const CPimItem& item)
{
    const DATE day = ResultDay(item);
    const int whole = std::clamp(DayNumber(day), -kFarDay, kFarDay);
    const bool timed = item.GetKind() == kKindAppointment && item.Start != NO_DATE;
    const double part = timed ? std::fabs(item.Start - std::trunc(item.Start)) : 0;
    return whole * kMinutesOfDay + int(std::lround(part * kMinutesOfDay));
}

std::unique_ptr<CPimItem> CopyOf(const CPimItem& item)
{
    if (item.GetKind() == kKindTask) {
        auto task = std::make_unique<CCalendarTask>();
        static_cast<const CTask&>(item).CopyTo(*task);
        return task;
    }
    if (item.GetKind() != kKindAppointment)
        return nullptr;
    auto appointment = std::make_unique<CAppointment>(kKindAppointment, CAppointment::Blank());
    static_cast<const CAppointment&>(item).CopyTo(*appointment);
    return appointment;
}
} // namespace

CSearchView::CSearchView(IViewHost& host, QWidget* parent)
    : CItemRowView(host, parent), m_edit(new QLineEdit(this)),
      m_timers([this](int id) { id == kTimerSearch ? SearchSlice() : FollowSlice(); })
{
    m_edit->setFrame(false);
    m_edit->setTextMargins(-2, 0, 0, 0); // the style's own: the text stands where it is painted
    m_edit->setAccessibleName(GetString(StrSearchForLabel));
    LightenControl(*m_edit);
    m_edit->installEventFilter(this);
    connect(m_edit, &QLineEdit::textChanged, this, [this] { update(); });
    SetStatus(StrSearchPrompt);
}

CSearchView::~CSearchView()
{
    m_edit->removeEventFilter(this); // it loses the focus when it dies
}

// ---- data: found items -> rows

void CSearchView::SetStatus(int stringId)
{
    m_statusText = GetString(stringId);
}

CPaintingOrderItem* CSearchView::InsertRow(std::unique_ptr<CPimItem> item)
{
    CPaintingOrderItem* const row =
        m_list.InsertItem(*item, DayNumber(ResultDay(*item)), OrderOf(*item));
    m_found[row] = std::move(item);
    return row;
}

void CSearchView::RemoveRow(CPaintingOrderItem* row)
{
    if (row == m_selected)
        Select(nullptr);
    m_found.erase(row);
    m_list.Remove(row);
}

// The item's day, height and looks may be others now. Of equals it keeps its place, where the finger is.
CPaintingOrderItem* CSearchView::ReplaceRow(CPaintingOrderItem* row)
{
    if (const CPimItem& item = *m_found[row]; row->m_order == OrderOf(item)) {
        m_list.Renew(*row, DayNumber(ResultDay(item)));
        return row;
    }
    const bool selected = row == m_selected;
    std::unique_ptr<CPimItem> item = std::move(m_found[row]);
    RemoveRow(row);
    CPaintingOrderItem* const replaced = InsertRow(std::move(item));
    if (selected)
        Select(replaced);
    return replaced;
}

void CSearchView::ForgetResults()
{
    ForgetRows();
    m_found.clear();
    m_followed = 0;
    m_timers.Kill(kTimerFollow);
    m_touch.StopMotion();
    m_touch.SetScroll(0, 0);
    m_touch.Redraw(true);
}

void CSearchView::ClearResults()
{
    SetStatus(IsSearching() ? StrSearching : StrSearchPrompt);
    ForgetResults();
    m_edit->setFocus();
}

CSearchView::CAnchor CSearchView::AnchorRow() const
{
    const CPaintingOrderList& rows = m_list.Rows();
    const CPaintingOrderItem* const row =
        m_touch.Scroll() < 0 ? rows.GetAt(rows.FirstReaching(-m_touch.Scroll())) : nullptr;
    return row ? CAnchor{row, row->m_top} : CAnchor();
}

void CSearchView::ShowRows(const CAnchor& anchor)
{
    m_list.LayOut(m_touch.Width());
    m_touch.Redraw(true);
    if (m_found.count(anchor.Row) && anchor.Row->m_top != anchor.Top)
        m_touch.SetScroll(0, m_touch.Scroll() + anchor.Top - anchor.Row->m_top);
    if (!m_touch.IsTouched() && m_touch.Scroll() < 0)
        m_touch.ScrollBy(0); // the list may have become shorter
    update();
}

// ---- the search

void CSearchView::StartSearch()
{
    EndSearch();
    const QString text = m_edit->text();
    const bool tooShort = text.size() < kLeastText;
    SetStatus(tooShort ? StrSearchPrompt : StrSearching);
    ForgetResults();
    m_edit->setFocus();
    if (tooShort) {
        const QPointer<QWidget> alive(this);
        CMessageDialog(GetString(StrSearchTooShort), GetString(StrCalendarSearch),
                       CMessageDialog::Kind::Information)
            .Run(this);
        if (alive)
            m_edit->setFocus();
        return;
    }
    m_request.Text = text;
    m_request.TakeSettings();
    m_cancel = false;
    m_searchedIn = PimStore().Volume();
    m_search = std::make_unique<CItemSearch>(PimStore().Volume(), PimStore().Categories(), m_request);
    m_wait = std::make_unique<CWaitCursor>();
    m_timers.Set(kTimerSearch, 0);
    ShowOnScreenKeyboard(false); // the results need its room
}

void CSearchView::EndSearch()
{
    m_timers.Kill(kTimerSearch);
    m_search.reset();
    m_wait.reset();
}

void CSearchView::SearchSlice()
{
    const CAnchor anchor = AnchorRow();
    const int before = Rows().GetCount();
    const bool goesOn = m_search->RunSlice(*this);
    if (Rows().GetCount() != before)
        ShowRows(anchor);
    if (goesOn)
        return;
    EndSearch();
    if (Rows().IsEmpty()) {
        SetStatus(StrSearchNoMatch);
        m_touch.Redraw(true);
    }
}

void CSearchView::OnMatch(const CPimItem& item)
{
    if (auto copy = CopyOf(item))
        InsertRow(std::move(copy));
}

void CSearchView::GetViewButtonText(QString& first, QString&) const
{
    first = GetString(IsSearching() ? StrStop : StrSearch);
}

bool CSearchView::OnViewButton()
{
    if (IsSearching())
        m_cancel = true;
    else
        StartSearch();
    return true;
}

// ---- changes

void CSearchView::OnDataChanged(int, quint32, quint32)
{
    m_list.ForgetPictures(); // a category's colour may be another
    m_followed = 0;
    m_timers.Set(kTimerFollow, 0);
    FollowSlice();
}

void CSearchView::FollowSlice()
{
    QElapsedTimer time;
    time.start();
    const CAnchor anchor = AnchorRow();
    while (m_followed < Rows().GetCount() && time.elapsed() < CItemSearch::kSliceMs) {
        CPaintingOrderItem* const row = Rows().GetAt(m_followed);
        const FoundState state = PimStore().RefreshFound(*m_found[row]);
        if (state == FoundState::Gone)
            RemoveRow(row);
        // Moved further down it is met again.
        else if (state == FoundState::Same || Rows().IndexOf(ReplaceRow(row)) <= m_followed)
            ++m_followed;
    }
    if (m_followed >= Rows().GetCount())
        m_timers.Kill(kTimerFollow);
    if (Rows().IsEmpty() && !IsSearching() && anchor.Row)
        m_touch.SetScroll(0, 0);
    ShowRows(anchor);
}

void CSearchView::OnClockChanged(int)
{
    OnDataChanged(0, 0, 0); // a task may be overdue now, or all times be others
}

// ---- lifecycle

void CSearchView::OnCreate()
{
    PlaceEdit();
    CItemRowView::OnCreate();
}

void CSearchView::OnResize()
{
    PlaceEdit();
    CItemRowView::OnResize();
}

void CSearchView::Refresh()
{
    m_stroke.End();
    m_hidden = false;
    if (m_searchedIn.lock() != PimStore().Volume()) { // another file lies in its place
        EndSearch();
        SetStatus(StrSearchPrompt);
        ForgetResults();
    }
    m_edit->setInputMethodHints(TextInputHints());
    m_edit->show();
    m_edit->setFocus();
    m_touch.Redraw(true);
    SetTitle(GetString(StrCalendarSearch));
}

// What comes back to the view finds it as it was at first.
void CSearchView::OnDeactivate()
{
    CItemRowView::OnDeactivate();
    EndSearch();
    SetStatus(StrSearchPrompt);
    ForgetResults();
    m_edit->clear();
    m_edit->hide();
}

// ---- menus and commands

bool CSearchView::FillTouchMenu(CTouchMenu& menu)
{
    if (const CPimItem* item = SelectedItem())
        AddItemMenuRows(m_host, menu, *item);
    menu.AddRow(StrOptions, CmdSearchOptions, PictureSettings);
    if (!Rows().IsEmpty())
        menu.AddRow(StrClearResults, CmdSearchClear, PictureCancel);
    menu.AddRow(StrDone, CmdPreviousView, PictureReturn);
    return false;
}

bool CSearchView::FillMenu(QMenu& menu)
{
    const CPimItem* const item = SelectedItem();
    QMenu* const more =
        menu.addMenu(GetString(!item                            ? StrMore
                               : item->GetKind() == kKindTask ? StrTask
                                                              : StrAppointment));
    more->setEnabled(item != nullptr);
    if (item)
        AddItemMenuRows(m_host, *more, *item);
    menu.addAction(GetString(StrOptions))->setData(CmdSearchOptions);
    QAction* const clear = menu.addAction(GetString(StrClearResults));
    clear->setData(CmdSearchClear);
    clear->setEnabled(!Rows().IsEmpty());
    menu.addAction(GetString(StrDone))->setData(CmdPreviousView);
    return false;
}

void CSearchView::FillSoftKeys(CSoftKeyBar& keys)
{
    keys.AddButton(CmdSearchStart, PictureSearch);
    keys.AddButton(CmdToggleKeyboard, PictureKeyboard);
    keys.AddButton(CmdSearchOptions, PictureSettings);
}

void CSearchView::OnCommand(int command)
{
    switch (command) {
    case CmdSearchStart:
        return StartSearch();
    case CmdSearchOptions:
        return RunOptions();
    case CmdSearchClear:
        return ClearResults();
    default:
        return;
    }
}

void CSearchView::RunOptions()
{
    CSearchOptionsForm().Run(this);
}

void CSearchView::OnCommandOpenItem()
{
    const QPointer<QWidget> alive(this);
    CItemRowView::OnCommandOpenItem();
    if (alive && m_selected)
        setFocus();
}
