#include "forms/field_row.h"
#include "drawing/image_store.h"
#include "drawing/paint.h"
#include "drawing/picture_ids.h"
#include "drawing/screen_metrics.h"
#include "drawing/text.h"
#include "forms/form_parts.h"
#include "platform/locale.h"
#include "settings/settings.h"
#include "settings/system_colors.h"
#include "util/date_time.h"
#include "util/string_ids.h"
#include "util/string_store.h"

#include <QPainter>
#include <QPen>
#include <algorithm>
#include <cmath>

namespace
{
constexpr int kRowPad = 5, kLeftPad = 2, kColumnGap = 10; // design pixels
constexpr int kBoxOffset = 3, kBoxGap = 4;
constexpr int kLinkButtonRoom = 24;
constexpr int kSwatchWidth = 20, kSwatchGap = 8;
constexpr int kMostDrawn = 1000; // characters; no row is wider, and long notes take long to shape
constexpr int kColorSelection = 3007, kColorLine = 3011, kColorSelectedText = 503;
constexpr unsigned kTextFlags = kTextVCentre | kTextSingleLine | kTextNoPrefix | kTextEndEllipsis;
constexpr unsigned kPieceFlags = kTextVCentre | kTextSingleLine | kTextNoPrefix;
constexpr COLORREF kFrame = Rgb(0x80, 0x80, 0x80), kCheck = Rgb(0x2A, 0x78, 0x12);

QRect Spanning(int left, int top, int right, int bottom)
{
    return {left, top, std::max(right - left, 0), std::max(bottom - top, 0)};
}

const QFont& RowFont(const CFieldRow& row)
{
    return g_ImageStore.Font(row.Type == kRowHeader ? 1 : 0);
}

QRect SwatchOf(const QRect& rect)
{
    return {rect.x() + D(kLeftPad), rect.y() + 1, D(kSwatchWidth), std::max(rect.height() - 2, 0)};
}

QRect CheckBoxAtLeft(const QRect& row)
{
    const int offset = D(kBoxOffset), side = std::max(row.height() - 2 * offset, 1);
    const int multiple = g_ScreenMetrics.Multiple(), even = side / multiple * multiple;
    return {row.x() + offset, row.y() + offset, even, even};
}

void PaintSwatch(QPainter& dc, const QRect& rect, COLORREF color)
{
    const bool unset = color == kColorNotSet;
    FillSolid(dc, rect, unset ? kColorWhite : color);
    FrameRect(dc, rect, kColorBlack);
    if (!unset)
        return;
    QFont font = g_ImageStore.Font(500);
    font.setBold(false);
    dc.setFont(font);
    dc.setPen(Qt::black);
    DrawText(dc, GetString(StrColorDefaultShort), rect,
             kTextCentre | kTextVCentre | kTextSingleLine | kTextNoPrefix | kTextNoClip);
}

void PaintDigits(QPainter& dc, const CFieldRow& row, const QRect& rect, bool selected)
{
    const FieldDigits parts = FieldDigitsOf(row, rect);
    DrawText(dc, parts.Left, parts.LeftRect, kPieceFlags);
    DrawText(dc, parts.Right, parts.RightRect, kTextFlags);
    if (selected && row.Included)
        return; // the live edit box lies there
    FillSolid(dc, parts.Box, SystemColor::Window);
    FrameRect(dc, parts.Box, kFrame);
    dc.setPen(ToQColor(row.Included ? SystemColor::WindowText : SystemColor::GrayText));
    DrawText(dc, row.Value, parts.Box, kPieceFlags | kTextCentre);
}

COLORREF InkOf(const CFieldRow& row, bool selected, bool labelled)
{
    if (selected)
        return g_Settings.ResolveColor(kColorSelectedText);
    if (row.Type == kRowCheck)
        return kColorBlack;
    const bool off = row.HasFlag(kRowInclude) && !row.Included;
    if (off || (labelled && row.Type != kRowColor))
        return SystemColor::GrayText;
    return SystemColor::StaticText;
}
} // namespace

std::vector<CFieldRow> MakeFieldRows(const FieldRowDesc* table, size_t count)
{
    std::vector<CFieldRow> rows;
    for (size_t n = 0; n < count; ++n) {
        const FieldRowDesc& desc = table[n];
        CFieldRow row{.Id = desc.Id, .Icon = desc.Icon, .Type = desc.Type, .Flags = desc.Flags};
        if (row.Type == kRowCheck)
            row.Flags |= kRowInclude;
        if (row.HasFlag(kRowHasHeader)) {
            CFieldRow header{.Id = row.Id | kHeaderBit, .Icon = kIconLeft, .Type = kRowHeader};
            // A colour's number is no picture.
            if (row.Icon >= 1 && row.Type != kRowColor) {
                header.Icon = row.Icon;
                row.Icon = kIconNone;
            }
            rows.push_back(header);
        }
        rows.push_back(row);
    }
    return rows;
}

// ---- texts

QString FieldDateText(DATE date)
{
    SystemTime time;
    if (!VariantTimeToSystemTime(date, &time))
        return GetString(StrInvalidDateTime);
    return GetDateFormat(DateFlag::Short, time);
}

QString FieldTimeText(DATE date, bool duration)
{
    SystemTime time;
    if (!VariantTimeToSystemTime(date, &time))
        return GetString(StrInvalidDateTime);
    if (duration)
        return FillText(GetString(StrDurationText), {QString::number(time.wHour), QString::number(time.wMinute)});
    const bool twentyFour = GetLocaleInfo(LocaleValue::TimeMode).startsWith(u'1');
    return GetTimeFormat(0, time, twentyFour ? QStringLiteral("HH:mm") : QStringLiteral("hh:mm tt"));
}

QString FieldDateValue(const CFieldRow& row)
{
    if (row.Type == kRowDate)
        return FieldDateText(row.Date);
    const QString time = FieldTimeText(row.Date, row.HasFlag(kRowDuration));
    return row.Type == kRowTime ? time : FieldDateText(row.Date) + QStringLiteral("    ") + time;
}

// ---- measures

int FieldRowStep()
{
    const CAlphaImage& reference = g_ImageStore.Image(PictureFormSubject);
    const int height = std::max(g_ImageStore.FontHeight(0), reference.Height()) + SY(kRowPad) + 1;
    const int multiple = g_ScreenMetrics.Multiple();
    return (height + multiple - 1) / multiple * multiple;
}

int FieldValueLeft()
{
    return S(kLeftPad) + g_ImageStore.Image(PictureFormSubject).Width() + S(kColumnGap);
}

int FieldTextLeft(const CFieldRow& row, const QRect& rect)
{
    int left = rect.x() + (row.Icon == kIconLeft ? S(kLeftPad) : FieldValueLeft());
    if (row.Type == kRowColor)
        left = SwatchOf(rect).x() + D(kSwatchWidth) + D(kSwatchGap);
    if (row.HasFlag(kRowInclude)) {
        const QRect box = FieldIncludeBox(row, rect);
        left = box.x() + box.width() + D(kBoxGap);
    }
    return left;
}

QRect FieldIncludeBox(const CFieldRow& row, const QRect& rect)
{
    QRect box = CheckBoxAtLeft(rect);
    if (row.Icon != kIconLeft && row.Type != kRowCheck)
        box.moveLeft(rect.x() + FieldValueLeft());
    return box;
}

QRect FieldValueRect(const CFieldRow& row, const QRect& rect)
{
    return Spanning(FieldTextLeft(row, rect), rect.y(), rect.x() + rect.width() - S(kLeftPad),
                    rect.y() + rect.height());
}

FieldDigits FieldDigitsOf(const CFieldRow& row, const QRect& rect)
{
    FieldDigits parts;
    const qsizetype mark = row.Label.indexOf(u"##");
    parts.Left = mark < 0 ? row.Label : row.Label.left(mark);
    parts.Right = mark < 0 ? QString() : row.Label.mid(mark + 2);
    if (parts.Left.isEmpty())
        parts.Left = QStringLiteral(" ");
    const QFont& font = RowFont(row);
    const int multiple = g_ScreenMetrics.Multiple();
    const auto even = [multiple](int x) { return (x + multiple - 1) / multiple * multiple; };
    const int bottom = rect.y() + rect.height(), right = rect.x() + rect.width() - S(kLeftPad);
    const int left = FieldTextLeft(row, rect);
    const int box = std::min(even(left + TextWidth(font, parts.Left)), right);
    const int end = std::min(box + even(TextWidth(font, QStringLiteral("9999999"))), right);
    parts.LeftRect = Spanning(left, rect.y(), box, bottom);
    parts.Box = Spanning(box, rect.y() + 1, end, bottom - 1);
    parts.RightRect = Spanning(end, rect.y(), right, bottom);
    return parts;
}

// ---- paint

void PaintCheckBox(QPainter& dc, const QRect& box, bool checked, bool enabled)
{
    FillSolid(dc, box, SystemColor::Window);
    FrameRect(dc, box, enabled ? kFormInk : kFrame);
    if (!checked)
        return;
    dc.save();
    dc.setRenderHint(QPainter::Antialiasing);
    const double w = box.width(), h = box.height();
    QPen pen(ToQColor(enabled ? kCheck : kFrame), std::max(2.0, w / 7), Qt::SolidLine, Qt::RoundCap,
             Qt::RoundJoin);
    dc.setPen(pen);
    const QPointF corner = box.topLeft();
    const QPointF points[] = {corner + QPointF(w * 0.24, h * 0.53), corner + QPointF(w * 0.43, h * 0.73),
                              corner + QPointF(w * 0.78, h * 0.28)};
    dc.drawPolyline(points, 3);
    dc.restore();
}

void PaintFieldRow(QPainter& dc, const CFieldRow& row, const QRect& rect, bool selected)
{
    if (selected)
        FillSolid(dc, rect, g_Settings.ResolveColor(kColorSelection));
    if (row.Icon >= 1 && row.Type != kRowColor) {
        const CAlphaImage& image = g_ImageStore.Image(row.Icon);
        DrawImage(image, dc, rect.x() + S(kLeftPad), rect.y() + (rect.height() - image.Height()) / 2);
    }
    if (row.HasFlag(kRowInclude))
        PaintCheckBox(dc, FieldIncludeBox(row, rect), row.Included, true);
    if (row.Type == kRowColor)
        PaintSwatch(dc, SwatchOf(rect), row.Color);
    const bool labelled = row.Value.isEmpty() && (row.Type & (kRowText | kRowLink | kRowColor)) != 0;
    dc.setFont(RowFont(row));
    dc.setPen(ToQColor(InkOf(row, selected, labelled && !row.HasFlag(kRowDigits))));
    if (row.Type == kRowText && row.HasFlag(kRowDigits))
        return PaintDigits(dc, row, rect, selected);
    if (selected && row.HasDate() && row.Included)
        return; // the live controls cover it
    QRect box = FieldValueRect(row, rect);
    if (row.Type == kRowLink)
        box.setWidth(std::max(box.width() - S(kLinkButtonRoom), 0));
    QString text = (labelled ? row.Label : row.Value).left(kMostDrawn);
    text.replace(u'\n', u' ').replace(u'\r', u' ');
    DrawText(dc, text, std::as_const(box), kTextFlags);
}

void PaintFieldLine(QPainter& dc, const QRect& row)
{
    FillSolid(dc, {row.x(), row.y() + row.height(), row.width(), 1}, g_Settings.ResolveColor(kColorLine));
}
