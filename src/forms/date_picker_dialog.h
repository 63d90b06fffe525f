// A date by three drums, of month, day and year, that arrows above and below step; a month's
// calendar opens on a tap between them.
// Units: dates are whole days.
#pragma once
#include "forms/form_dialog.h"
#include "util/date_time.h"

#include <QCalendarWidget>
#include <QPointer>
#include <memory>

class CDatePickerDialog : public CFormDialog
{
public:
    static constexpr int kTimerRepeat = 1150; // while a finger rests on an arrow
    static constexpr int kFirstRepeatMs = 500, kRepeatMs = 100;
    static constexpr int kFirstYear = 1902, kLastYear = 4000;

    explicit CDatePickerDialog(DATE date);
    ~CDatePickerDialog() override;
    DATE GetDate() const { return m_date; }

    enum Part { kMonth, kDay, kYear };
    Part PartOf(int column) const; // by the locale's order
    int ActiveColumn() const { return m_column; }
    // The strips of a column, from top to bottom, in surface pixels.
    struct CColumn {
        QRect Up, Value, Down;
    };
    CColumn ColumnAt(int column) const;
    QCalendarWidget* Calendar() const { return m_calendar; } // null while it is closed
    void Step(Part part, int direction);
    CNumberedTimers& RepeatTimer() { return *m_repeat; }

protected:
    int GetMenuBarId() const override;
    int ContentHeight(int width) override;
    void OnLayout(const QRect& client) override;
    void PaintContent(QPainter& dc, const QRect& client) override;
    void OnCommand(int command) override;
    void OnKey(int key) override;
    void OnLButtonDown(QPoint at) override;
    void OnMouseMove(QPoint at) override;
    void OnLButtonUp(QPoint at) override;
    void OnWheel(int angle) override;

private:
    QString TextOf(Part part) const;
    void SetDate(DATE date, bool rememberDay);
    void StepMonths(int year, int month);
    bool StepAt(QPoint at);
    void Repeat();
    void OpenCalendar();
    void CloseCalendar();
    void PlaceCalendar();
    void RunMenu();

    DATE m_date;
    int m_rememberedDay; // of the month: what stepping months comes back to
    bool m_monthFirst;
    int m_column = 0;
    QRect m_page;
    QPoint m_finger{-1, -1};
    QPointer<QCalendarWidget> m_calendar;
    std::unique_ptr<CNumberedTimers> m_repeat;
};
