// The ten reminder times that the editors offer, each set by the dialog of a custom reminder.
#pragma once
#include "forms/row_list_dialog.h"
#include "settings/settings.h"

#include <array>

class CReminderValuesDialog : public CRowListDialog
{
public:
    using CValues = std::array<int, CSettings::kReminderCount>; // minutes; -1 is an empty place

    explicit CReminderValuesDialog(const CValues& values);
    const CValues& GetValues() const { return m_values; } // take them when Run answered kDone
    static CValues OfSettings(const CSettings& settings);
    static void Store(const CValues& values, CSettings& settings);

protected:
    int RowCount() const override { return int(m_values.size()); }
    void PaintRow(QPainter& dc, int index, const QRect& rect, bool selected) override;
    void OnRowTapped(int index, int x, bool wasSelected) override;
    int HeadHeight(int width) override;
    void PaintHead(QPainter& dc, const QRect& rect) override;
    CPaintedPart RowPart(int index) const override;

private:
    QString TextOf(int index) const;
    CValues m_values;
};
