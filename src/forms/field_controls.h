// The one set of live controls that lies over a form's selected row.
// Units: rectangles in logical pixels of the dialog; fonts in pixels.
// The controls know no form: whoever owns them filters their events.
#pragma once
#include "forms/field_row.h"

#include <QDateTime>
#include <array>
#include <vector>

class QCheckBox;
class QComboBox;
class QDateEdit;
class QLineEdit;
class QPlainTextEdit;
class QPushButton;
class QTimeEdit;
class QWidget;

class CFieldControls
{
public:
    explicit CFieldControls(QWidget* form);

    std::array<QWidget*, 7> InTabOrder() const;
    void HideAll();
    void SetFonts(int k);
    // Values first, then the place; what is shown stays hidden until Place.
    void SetValues(const CFieldRow& row);
    // `rect` is the row in surface pixels of the dialog, k what divides it. Shows what the row has;
    // the result is the control that is to have the keyboard, null for none.
    QWidget* Place(const CFieldRow& row, const QRect& rect, int k);

    // What was entered; what was not touched comes back exactly as it was put in.
    QString Text(const CFieldRow& row) const;
    DATE Date(const CFieldRow& row) const;
    int Index() const;
    bool Included() const;

    QWidget* TextControl(const CFieldRow& row) const; // line or multi-line edit
    void SetText(const CFieldRow& row, const QString& text, int caret);
    bool AtTextStart(const CFieldRow& row) const;
    bool AtTextEnd(const CFieldRow& row) const;
    void Selection(const CFieldRow& row, int* start, int* end) const;
    void PutDate(DATE date, bool datePart); // a picker's answer
    void SelectFirstSection(QWidget* control); // where typing begins in a date or time; else nothing

    QLineEdit* const Line;
    QPlainTextEdit* const Lines;
    QComboBox* const List;
    QDateEdit* const Day;
    QTimeEdit* const Time;
    QPushButton* const Button;
    QCheckBox* const Box;

private:
    QWidget* PutControls(const CFieldRow& row, const QRect& rect, int k);
    void Put(QWidget* control, const QRect& surface, int k);
    void PlaceText(const CFieldRow& row, const QRect& rect, const QRect& value, int k);
    void PlaceDates(const CFieldRow& row, const QRect& value, int k);

    std::vector<QWidget*> m_put; // by the present placing
    QString m_text;              // as it was put in
    DATE m_date = 0;
    QDate m_day;
    QTime m_time;
};
