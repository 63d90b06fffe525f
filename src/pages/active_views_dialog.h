// Which views the view button runs through.
#pragma once
#include "forms/check_list_dialog.h"

class CActiveViewsDialog : public CCheckListDialog
{
public:
    explicit CActiveViewsDialog(int activeViews); // bit 0 the daily view .. bit 4 the tasks
    int GetActiveViews() const;

protected:
    void OnDone() override; // fewer than two: tells so and stays
};
