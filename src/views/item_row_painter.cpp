#include "views/item_row_painter.h"
#include "drawing/image_store.h"
#include "drawing/paint.h"
#include "drawing/picture_ids.h"
#include "drawing/screen_metrics.h"
#include "drawing/text.h"
#include "forms/field_row.h"
#include "pim/item_cache.h"
#include "pim/pim_store.h"
#include "settings/item_text.h"
#include "settings/settings.h"
#include "touch/white_picture.h"
#include "views/item_row_parts.h"

#include <QPainter>
#include <algorithm>

namespace
{
constexpr int kIconsOfALine = 2;
constexpr int kColorSelectedText = 503;

QString DatesOf(const CAppointment& item)
{
    return FieldDateText(item.Start) + QStringLiteral(" - ") + FieldDateText(SpreadSpan(item, 0).Last);
}
} // namespace

CItemRowPainter::CItemRowPainter() : m_measures(std::make_unique<Measures>()) {}

CItemRowPainter::~CItemRowPainter() = default;

void CItemRowPainter::InitRowPainter(const CRowPainterSetup& setup)
{
    m_setup = setup;
    m_measures = std::make_unique<Measures>();
    m_textHeight = LineHeight(g_ImageStore.Font(setup.FontText));
    m_subjectHeight = LineHeight(g_ImageStore.Font(setup.FontSubject));
    m_colors.Fetch();
    m_colorSelectedText = g_Settings.ResolveColor(kColorSelectedText);
    m_timeColumnWidth = 0;
    if (setup.SingleLine) {
        const QString widest(setup.OnlyStartTime ? 9 : 13, u'0');
        m_timeColumnWidth = MeasureLineWidth(widest, setup.FontText) + S(4) + (setup.LeadingRects ? S(6) : 0);
    }
}

// ---- parts of a row

CItemRowPainter::Row CItemRowPainter::BeginRow(QPainter* dc, const QRect& rect, bool selected)
{
    Row row{dc,    rect,    rect.adjusted(S(4), 0, -S(4), 0), rect.x() + rect.width() - S(3), m_subjectHeight,
            S(13), selected};
    const CAlphaImage& reference = g_ImageStore.Image(PicturePriorityHigh);
    if (m_setup.SingleLine && reference.IsValid()) {
        row.LineHeight = std::max(reference.Height(), m_subjectHeight + D(3));
        row.IconColumn = reference.Width();
    }
    return row;
}

QRect CItemRowPainter::TakeLeadingRect(Row& row) const
{
    if (!m_setup.LeadingRects)
        return {};
    const QRect leading(row.Rest.x(), row.Rest.y() + D(2), S(7), 0);
    // Text of the several lines keeps off the rectangle, which is painted over it.
    row.Rest.setLeft(row.Rest.x() + (m_setup.SingleLine ? S(6) : S(9)));
    return leading;
}

void CItemRowPainter::FillLeadingRect(const Row& row, QRect rect, int height, COLORREF color) const
{
    if (!row.Dc || rect.width() <= 0 || color == kColorNotSet)
        return;
    rect.setHeight(row.Bottom(height) - D(2) - rect.y());
    FillSolid(*row.Dc, rect, color);
}

CRowIcons CItemRowPainter::LayOutStatusIcons(const CPimItem& item, int x, int y, int lineHeight) const
{
    CRowIcons result;
    result.Bottom = y;
    int at = x;
    const auto place = [&](const CRowIcon& icon, const CAlphaImage& image, int way, int down) {
        if (!image.IsValid() || int(result.Icons.size()) == kMostItemIcons)
            return;
        if (!m_setup.SingleLine && result.Icons.size() == kIconsOfALine) {
            at = x;
            y += lineHeight + down;
        }
        const int top = y + (lineHeight - image.Height()) / 2;
        result.Icons.push_back(icon);
        result.Icons.back().Rect = QRect(at - image.Width(), top, image.Width(), image.Height());
        at -= image.Width() + way;
        result.Width = std::max(result.Width, x - at);
        result.Bottom = y + lineHeight + D(2);
    };
    for (const StatusPicture& icon : kStatusPictures) {
        if (icon.Shows(item))
            place({icon.ImageId, {}, nullptr}, g_ImageStore.Image(icon.ImageId), S(2), D(2));
    }
    for (const CAlphaImage* const picture : CategoryPictures(item))
        place({0, {}, picture}, *picture, S(3), 2);
    return result;
}

// The pictures' dark ink would vanish in the selection.
void CItemRowPainter::DrawPicture(const Row& row, int imageId, int x, int y) const
{
    if (row.Dc && row.Selected)
        DrawWhitePicture(*row.Dc, QPoint(x, y), imageId, m_setup.Selection);
    else if (row.Dc)
        DrawImage(g_ImageStore.Image(imageId), *row.Dc, x, y);
}

void CItemRowPainter::DrawStatusIcons(const Row& row, const CRowIcons& icons) const
{
    for (const CRowIcon& icon : icons.Icons) {
        if (!icon.Picture)
            DrawPicture(row, icon.ImageId, icon.Rect.x(), icon.Rect.y());
        else if (row.Dc)
            DrawImage(*icon.Picture, *row.Dc, icon.Rect.x(), icon.Rect.y());
    }
}

void CItemRowPainter::DrawAllDayImage(Row& row)
{
    const CAlphaImage& image = g_ImageStore.Image(PictureAllDay);
    if (m_setup.SingleLine)
        row.Rest.setLeft(row.Full.x() + m_timeColumnWidth - S(12));
    DrawPicture(row, PictureAllDay, row.Rest.x(), row.Rest.y() + (row.LineHeight - image.Height()) / 2);
    row.Rest.setLeft(row.Rest.x() + image.Width() + S(2));
}

// In the column of the single-line layout, or on a line of its own, whose height is the result.
int CItemRowPainter::DrawTimeText(Row& row, const CAppointment& item, int day)
{
    if (item.AllDay)
        return 0;
    const bool inColumn = m_setup.SingleLine;
    const QString text =
        FormatTimeRange(item.Start, item.End, day, inColumn, m_setup.OnlyStartTime, item.EndsPreviousDay);
    if (!row.Dc)
        return text.isEmpty() ? 0 : m_textHeight;
    row.Dc->setFont(g_ImageStore.Font(m_setup.FontText));
    row.Dc->setPen(ToQColor(row.Selected ? m_colorSelectedText : m_setup.Time));
    QRect box(row.Rest.x(), row.Rest.y(), row.Rest.width(), inColumn ? row.LineHeight : m_textHeight);
    if (inColumn)
        box.setWidth(row.Full.x() + m_timeColumnWidth - box.x());
    const unsigned place = inColumn ? kTextRight | kTextVCentre : 0u;
    return DrawText(*row.Dc, text, box, kTextNoPrefix | kTextSingleLine | kTextWordEllipsis | place);
}

// ---- appointments

int CItemRowPainter::PaintAppointmentRow(QPainter* dc, const QRect& rect, const CAppointment& item, int day,
                                         bool includeLocation, bool selected)
{
    Row row = BeginRow(dc, rect, selected);
    const QRect leading = TakeLeadingRect(row);
    if (item.AllDay)
        DrawAllDayImage(row);
    const int height = m_setup.SingleLine ? PaintAppointmentLine(row, item, day, includeLocation)
                                          : PaintAppointmentLines(row, item, day, includeLocation);
    if (m_setup.LeadingRects == 1)
        FillLeadingRect(row, leading, height, PimStore().GetItemColor(item));
    else if (m_setup.LeadingRects)
        FillLeadingRect(row, leading, height, m_colors.OfStatus(item));
    return height;
}

int CItemRowPainter::PaintAppointmentLines(Row& row, const CAppointment& item, int day, bool includeLocation)
{
    const CRowIcons icons = LayOutStatusIcons(item, row.IconX, row.Full.y() + D(2), row.LineHeight);
    // A third icon on the second line must not lie on the text.
    row.Rest.setWidth(row.Rest.width() - std::max(2 * row.IconColumn + S(2), icons.Width - S(1)));
    const int font = item.Past ? m_setup.FontSubjectPast : m_setup.FontSubject;
    const auto moveDown = [&row](int height) { row.Rest.moveTop(row.Rest.y() + height); };
    moveDown(DrawRowText(row, item.Subject, row.Rest, m_colors.OfText(item, m_setup.Subject), font));
    if (m_setup.DateLine)
        moveDown(DrawRowText(row, DatesOf(item), row.Rest, m_setup.Time, m_setup.FontText));
    if (includeLocation)
        moveDown(DrawRowText(row, item.Location, row.Rest, m_setup.Location, m_setup.FontText));
    moveDown(DrawTimeText(row, item, day));
    DrawStatusIcons(row, icons);
    // An item without any text still is a row that a finger can find.
    return std::max({row.Rest.y(), icons.Icons.empty() ? 0 : icons.Bottom, row.Bottom(row.LineHeight)}) -
           row.Full.y();
}

int CItemRowPainter::PaintAppointmentLine(Row& row, const CAppointment& item, int day, bool includeLocation)
{
    row.Rest.setHeight(row.LineHeight);
    if (!item.AllDay) {
        DrawTimeText(row, item, day);
        row.Rest.setLeft(row.Full.x() + m_timeColumnWidth + S(4));
    } else {
        row.Rest.setLeft(row.Rest.x() + S(2));
    }
    const CRowIcons icons = LayOutStatusIcons(item, row.IconX, row.Full.y(), row.LineHeight);
    DrawStatusIcons(row, icons);
    row.Rest.setWidth(row.Rest.width() - icons.Width);
    const int font = item.Past ? m_setup.FontSubjectPast : m_setup.FontSubject;
    DrawRowText(row, item.Subject, row.Rest, m_colors.OfText(item, m_setup.Subject), font);
    if (row.Dc && includeLocation && !item.Location.isEmpty()) {
        const int used = item.Subject.isEmpty() ? 0 : MeasureLineWidth(item.Subject, font) + S(3);
        const QRect behind = row.Rest.adjusted(used, S(1), 0, S(1));
        DrawRowText(row, u'(' + item.Location + u')', behind, m_setup.Location, m_setup.FontText);
    }
    return std::max(row.LineHeight, m_subjectHeight);
}
