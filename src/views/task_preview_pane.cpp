#include "views/task_preview_pane.h"
#include "drawing/image_store.h"
#include "drawing/paint.h"
#include "drawing/picture_ids.h"
#include "drawing/screen_metrics.h"
#include "drawing/text.h"
#include "pim/pim_store.h"
#include "platform/locale.h"
#include "settings/item_text.h"
#include "settings/settings.h"
#include "util/string_ids.h"
#include "util/string_store.h"

#include <QFontMetrics>
#include <QPainter>
#include <QTextLayout>
#include <algorithm>

namespace
{
constexpr int kFontLabel = 502, kFontText = 802;
constexpr int kMargin = 4;      // design pixels beside the texts
constexpr int kMostNote = 4000; // characters; a pane shows some hundreds
constexpr unsigned kLine = kTextSingleLine | kTextNoPrefix | kTextEndEllipsis;

QString ShortDateOf(DATE date)
{
    return GetDateFormat(DateFlag::Short, SystemTimeOf(date));
}

// A due date that was never set is written as it stands, behind a start.
QString DatesOf(const CTask& task)
{
    if (task.Start == NO_DATE && task.End == NO_DATE)
        return GetString(StrUndatedTask);
    const QString start = task.Start == NO_DATE ? GetString(StrNoStartDate) : ShortDateOf(task.Start);
    return start + QStringLiteral(" - ") + ShortDateOf(task.End);
}
} // namespace

void CTaskPreviewPane::PrepareLook()
{
    const auto color = [](int id) { return g_Settings.ResolveColor(id); };
    m_colors = {color(7006), color(7007), color(7008), color(7009)};
    m_picture = QImage();
}

void CTaskPreviewPane::SetTask(const CTask* task)
{
    m_picture = QImage();
    m_dates.clear();
    m_reminder.clear();
    m_note.clear();
    m_hasTask = task != nullptr;
    if (!task)
        return;
    m_dates = DatesOf(*task);
    if (task->ReminderSet && task->ReminderTime != NO_DATE)
        m_reminder =
            ShortDateOf(task->ReminderTime) + QStringLiteral(", ") + FormatTime(task->ReminderTime, false);
    QString attendees;
    PimStore().GetItemTexts(task->ItemId, task->Start, 0, kKindTask, m_note, attendees);
    m_note.truncate(kMostNote);
}

// ---- paint

const QImage& CTaskPreviewPane::Picture(QSize size)
{
    if (m_picture.size() == size || size.isEmpty())
        return m_picture;
    m_picture = QImage(size, QImage::Format_RGB32);
    QPainter dc(&m_picture);
    Paint(dc, m_picture.rect());
    return m_picture;
}

void CTaskPreviewPane::Paint(QPainter& dc, QRect rect) const
{
    FillSolid(dc, rect, m_colors.Back);
    FillSolid(dc, {rect.x(), rect.y(), rect.width(), D(1)}, m_colors.TopBorder);
    dc.setPen(ToQColor(m_colors.Text));
    dc.setFont(g_ImageStore.Font(kFontLabel));
    rect.adjust(0, D(2), 0, 0);
    if (!m_hasTask) {
        DrawText(dc, GetString(StrNoTaskSelected), rect, kLine | kTextCentre | kTextVCentre);
        return;
    }
    rect.adjust(D(kMargin), 0, -D(kMargin), 0);
    QFont dates = g_ImageStore.Font(kFontText), note = dates;
    dates.setBold(true);
    note.setPixelSize(std::max(note.pixelSize() - S(1), 1));
    int height = LineHeight(dates);
    int right = rect.right() + 1;
    if (!m_reminder.isEmpty()) {
        height = std::max(height, S(3) + g_ImageStore.Image(PictureReminder).Height());
        right = PaintReminder(dc, rect, height);
    }
    dc.setFont(dates);
    DrawText(dc, m_dates, QRect(rect.x(), rect.y(), right - rect.x(), height), kLine | kTextVCentre);
    const int line = rect.y() + height + S(1);
    FillSolid(dc, {0, line, m_picture.width(), D(1)}, m_colors.Separator);
    dc.setFont(note);
    rect.setTop(line + D(1) + S(1));
    DrawNoteText(dc, m_note, rect);
}

// Result: the left end of what it took.
int CTaskPreviewPane::PaintReminder(QPainter& dc, const QRect& rect, int height) const
{
    const CAlphaImage& bell = g_ImageStore.Image(PictureReminder);
    int right = rect.right() + 1 - bell.Width();
    DrawImage(bell, dc, right, rect.y() + (height - bell.Height()) / 2);
    right -= S(2);
    const QFont& font = g_ImageStore.Font(kFontText);
    dc.setFont(font);
    const int width = std::min(TextWidth(font, m_reminder), rect.width() / 2);
    DrawText(dc, m_reminder, QRect(right - width, rect.y(), width, height),
             kLine | kTextVCentre | kTextRight);
    return right - width - D(4);
}

void DrawNoteText(QPainter& dc, const QString& text, const QRect& rect)
{
    QString source = text;
    source.replace(QStringLiteral("\r\n"), QStringLiteral("\n")).replace(u'\n', QChar::LineSeparator);
    const QFontMetrics metrics(dc.font());
    QTextLayout layout(source, dc.font());
    layout.setCacheEnabled(true);
    int y = rect.y();
    layout.beginLayout();
    for (;;) {
        QTextLine line = layout.createLine();
        if (!line.isValid())
            break;
        line.setLineWidth(rect.width());
        const int height = metrics.height();
        if (y + height > rect.bottom() + 1)
            break;
        const bool isLast = y + 2 * height > rect.bottom() + 1;
        const int end = line.textStart() + line.textLength();
        if (isLast && end < source.size()) {
            // One line more than fits would show; all that is left goes into this one, cut.
            QString rest = source.mid(line.textStart());
            rest.replace(QChar::LineSeparator, u' ');
            const QRect place(rect.x(), y, rect.width(), height);
            DrawText(dc, rest, place, kTextSingleLine | kTextNoPrefix | kTextEndEllipsis);
            break;
        }
        line.draw(&dc, QPointF(rect.x(), y));
        y += height;
    }
    layout.endLayout();
}
