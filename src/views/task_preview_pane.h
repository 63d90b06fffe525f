// The selected task in a few lines at the tasks view's foot: its dates, its reminder and its note.
// Shape: SetTask takes what shows, with the note's text from the store; Picture paints it, once.
// Units: surface pixels.
#pragma once
#include "pim/items.h"

#include <QImage>
#include <QString>

class QPainter;

class CTaskPreviewPane
{
public:
    void PrepareLook();              // colours and fonts: after a change of size or density
    void SetTask(const CTask* task); // null for none
    const QImage& Picture(QSize size);

    const QString& DateText() const { return m_dates; }
    const QString& ReminderText() const { return m_reminder; }
    const QString& NoteText() const { return m_note; }

private:
    void Paint(QPainter& dc, QRect rect) const;
    int PaintReminder(QPainter& dc, const QRect& rect, int height) const;

    bool m_hasTask = false;
    QString m_dates, m_reminder, m_note;
    QImage m_picture; // null: to be painted
    struct {
        COLORREF Back = 0, Text = 0, Separator = 0, TopBorder = 0;
    } m_colors;
};

// Word-wrapped into the rectangle; what does not fit is cut with an ellipsis at the end.
void DrawNoteText(QPainter& dc, const QString& text, const QRect& rect);
