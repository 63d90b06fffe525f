#include "pages/active_views_dialog.h"
#include "forms/message_dialog.h"
#include "util/string_ids.h"
#include "util/string_store.h"

namespace
{
constexpr int kViews = 5; // the search takes no part
constexpr int kFewestViews = 2;

std::vector<CCheckListDialog::CRow> RowsOf(int activeViews)
{
    std::vector<CCheckListDialog::CRow> rows;
    for (int view = 0; view < kViews; ++view)
        rows.push_back({GetString(StrViewDaily + view), (activeViews >> view & 1) != 0});
    return rows;
}
} // namespace

CActiveViewsDialog::CActiveViewsDialog(int activeViews)
    : CCheckListDialog(GetString(StrSelectActiveViews), RowsOf(activeViews))
{
}

int CActiveViewsDialog::GetActiveViews() const
{
    int views = 0;
    for (int view = 0; view < kViews; ++view)
        views |= IsChecked(view) ? 1 << view : 0;
    return views;
}

void CActiveViewsDialog::OnDone()
{
    if (CountChecked() >= kFewestViews)
        End(kDone);
    else
        CMessageDialog(GetString(StrTwoViewsNeeded), GetString(StrSelectionError),
                       CMessageDialog::Kind::Warning)
            .Run(this);
}
