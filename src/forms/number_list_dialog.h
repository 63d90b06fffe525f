// The telephone numbers of a contact, to choose one.
#pragma once
#include "forms/row_list_dialog.h"

#include <vector>

class CNumberListDialog : public CRowListDialog
{
public:
    struct CLine {
        QString Type, Number; // without a number: the name alone is meant
    };
    CNumberListDialog(const QString& title, std::vector<CLine> lines);
    QString GetNumber() const;

protected:
    int GetMenuBarId() const override;
    int RowCount() const override { return int(m_lines.size()); }
    void PaintRow(QPainter& dc, int index, const QRect& rect, bool selected) override;
    void OnRowTapped(int, int, bool) override { OnDone(); }
    int HeadHeight(int width) override;
    void PaintHead(QPainter& dc, const QRect& rect) override;
    CPaintedPart RowPart(int index) const override;
    void OnDone() override;

private:
    void PaintColumns(QPainter& dc, const CLine& line, const QRect& rect, bool selected) const;
    std::vector<CLine> m_lines;
};

// The non-empty numbers of a contact, in the order they are offered.
std::vector<CNumberListDialog::CLine> NumbersOfContact(quint32 itemId);
// For the dial action: the number; empty when none was chosen. By the contact's tagged identifier.
QString ChooseNumber(QWidget* owner, quint32 contactItemId);
