// Rows of tasks and of special events.
#include "drawing/image_store.h"
#include "drawing/paint.h"
#include "drawing/picture_ids.h"
#include "drawing/screen_metrics.h"
#include "drawing/text.h"
#include "pim/pim_store.h"
#include "settings/settings.h"
#include "settings/title_formats.h"
#include "util/string_ids.h"
#include "util/string_store.h"
#include "views/item_row_parts.h"

#include <QPainter>
#include <algorithm>

namespace
{
constexpr int kPriorityLow = 0, kPriorityHigh = 2;
constexpr int kShortDateFormat = 4; // of the day titles' table
} // namespace

// ---- tasks

QRect CItemRowPainter::DrawCheckBox(Row& row, const CTask& item) const
{
    const int boxImage = item.Complete ? PictureTaskCompleted : PictureTaskActive;
    const CAlphaImage& image = g_ImageStore.Image(boxImage);
    const auto topOf = [&row](const CAlphaImage& picture) {
        return row.Full.y() + std::max(0, (row.LineHeight + D(3) - picture.Height()) / 2);
    };
    const QRect box(row.Rest.x(), topOf(image), image.Width(), image.Height());
    int right = box.x() + box.width();
    DrawPicture(row, boxImage, box.x(), box.y());
    if (item.Priority == kPriorityHigh || item.Priority == kPriorityLow) {
        const int markImage = item.Priority == kPriorityHigh ? PicturePriorityHigh : PicturePriorityLow;
        const CAlphaImage& mark = g_ImageStore.Image(markImage);
        DrawPicture(row, markImage, right + D(4), topOf(mark));
        right += D(4) + mark.Width();
    }
    row.Rest.setLeft(right + S(3));
    return box;
}

QString CItemRowPainter::DueText(const CTask& item, COLORREF& color) const
{
    color = m_colors.OfDue(item);
    if (item.End == NO_DATE)
        return GetString(StrUndated);
    QString date;
    if (m_setup.SingleLine) {
        FormatViewTitle(kTaskDateFormats, g_Settings.TasksView.DateFormat, item.Start, item.End, &date);
        return date;
    }
    FormatViewTitle(kDayTitleFormats, kShortDateFormat, item.End, NO_DATE, &date);
    return GetString(StrDue) + u' ' + date;
}

int CItemRowPainter::PaintTaskRow(QPainter* dc, const QRect& rect, const CTask& item, bool selected,
                                  QRect* checkBox)
{
    Row row = BeginRow(dc, rect, selected);
    const CAlphaImage& reference = g_ImageStore.Image(PicturePriorityHigh);
    row.IconColumn = reference.IsValid() ? reference.Width() : S(13);
    row.LineHeight = std::max(reference.Height(), m_subjectHeight);
    const QRect box = DrawCheckBox(row, item);
    if (checkBox)
        *checkBox = box;
    COLORREF dueColor;
    const QString due = DueText(item, dueColor);
    return m_setup.SingleLine ? PaintTaskLine(row, item, due, dueColor)
                              : PaintTaskLines(row, item, due, dueColor);
}

int CItemRowPainter::PaintTaskLines(Row& row, const CTask& item, const QString& due, COLORREF dueColor)
{
    const CRowIcons icons = LayOutStatusIcons(item, row.IconX, row.Full.y() + D(2), row.LineHeight);
    row.Rest.setWidth(row.Rest.width() - std::max(2 * row.IconColumn + S(2), icons.Width - S(1)));
    const auto moveDown = [&row](int height) { row.Rest.moveTop(row.Rest.y() + height); };
    moveDown(DrawRowText(row, item.Subject, row.Rest, m_setup.Subject, m_setup.FontSubject));
    moveDown(DrawRowText(row, due, row.Rest, dueColor, m_setup.FontText));
    DrawStatusIcons(row, icons);
    return std::max(
               {row.Rest.y(), icons.Icons.empty() ? 0 : icons.Bottom, row.Bottom(row.LineHeight + D(3))}) -
           row.Full.y();
}

int CItemRowPainter::PaintTaskLine(Row& row, const CTask& item, const QString& due, COLORREF dueColor)
{
    row.LineHeight = std::max(row.LineHeight, m_subjectHeight + D(3));
    row.Rest.setHeight(row.LineHeight);
    if (row.Dc) { // its height is known without
        const QFont& font = g_ImageStore.Font(m_setup.FontText);
        QRect column = row.Rest;
        // A word in place of the date may be wider than its column, beside check box and priority.
        column.setWidth(std::max(row.Full.x() + m_timeColumnWidth - column.x(), TextWidth(font, due)));
        row.Dc->setFont(font);
        row.Dc->setPen(ToQColor(row.Selected ? m_colorSelectedText : dueColor));
        DrawText(*row.Dc, due, column,
                 kTextNoPrefix | kTextSingleLine | kTextWordEllipsis | kTextRight | kTextVCentre);
        row.Rest.setLeft(column.x() + column.width() + S(4));
    }
    const CRowIcons icons = LayOutStatusIcons(item, row.IconX, row.Full.y(), row.LineHeight);
    DrawStatusIcons(row, icons);
    row.Rest.setWidth(row.Rest.width() - icons.Width);
    DrawRowText(row, item.Subject, row.Rest, m_setup.Subject, m_setup.FontSubject);
    return row.LineHeight;
}

// ---- special events

CRowIcons CItemRowPainter::LayOutCategoryIcons(const CPimItem& item, int x, int y, int lineHeight)
{
    CRowIcons result;
    int at = x;
    for (const CAlphaImage* const picture : CategoryPictures(item)) {
        if (int(result.Icons.size()) == kMostItemIcons)
            break;
        at -= picture->Width();
        const int top = y + std::max(0, (lineHeight - picture->Height()) / 2);
        result.Icons.push_back({0, {at, top, picture->Width(), picture->Height()}, picture});
        at -= S(3);
        result.Width = x - at;
    }
    return result;
}

int CItemRowPainter::PaintSpecialRow(QPainter* dc, const QRect& rect, const CAppointment& item, bool selected)
{
    Row row = BeginRow(dc, rect, selected);
    const int imageId = item.GetKind() == kKindBirthday ? PictureBirthday : PictureAnniversary;
    const CAlphaImage& image = g_ImageStore.Image(imageId);
    row.Rest = rect.adjusted(S(4), 0, -S(12), 0);
    const QRect leading = TakeLeadingRect(row);
    const int base = std::max(image.Height(), m_subjectHeight) + D(2);
    int imageX = row.Rest.x();
    if (m_setup.SingleLine) {
        imageX = row.Full.x() + m_timeColumnWidth - image.Width();
        row.Rest.setLeft(row.Full.x() + m_timeColumnWidth + S(4));
    } else {
        row.Rest.setLeft(imageX + image.Width() + S(4));
    }
    const CRowIcons icons = LayOutCategoryIcons(item, row.IconX, row.Full.y(), base);
    row.Rest.setWidth(std::min(row.Rest.width(), row.IconX - icons.Width - row.Rest.x()));
    const Row measuring{nullptr, row.Full, row.Rest, row.IconX, row.LineHeight, row.IconColumn, selected};
    const int textHeight =
        DrawRowText(measuring, item.Subject, row.Rest, m_setup.Special, m_setup.FontSubject);
    const int height = std::max(base, textHeight);
    DrawPicture(row, imageId, imageX, row.Full.y() + (base - image.Height()) / 2);
    DrawStatusIcons(row, icons);
    // The first line stands on the image's middle, however many follow.
    const QRect text(row.Rest.x(),
                     row.Full.y() + (m_setup.SingleLine || textHeight > base ? 0 : (base - textHeight) / 2),
                     row.Rest.width(), height);
    if (row.Dc)
        DrawRowText(row, item.Subject, text, m_setup.Special, m_setup.FontSubject);
    FillLeadingRect(row, leading, height,
                    m_setup.LeadingRects == 1 ? PimStore().GetItemColor(item) : m_colors.OfStatus(item));
    return height;
}
