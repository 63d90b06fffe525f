#include "forms/date_picker_dialog.h"
#include "drawing/image_store.h"
#include "drawing/paint.h"
#include "drawing/picture_ids.h"
#include "drawing/screen_metrics.h"
#include "drawing/text.h"
#include "forms/form_parts.h"
#include "forms/menu_bars.h"
#include "platform/locale.h"
#include "settings/color_scheme.h"
#include "settings/system_colors.h"
#include "touch/command_ids.h"
#include "touch/device_pixels.h"
#include "touch/touch_menu.h"
#include "touch/virtual_keys.h"
#include "util/string_ids.h"
#include "util/string_store.h"

#include <QCalendarWidget>
#include <QLocale>
#include <QPainter>
#include <QTextCharFormat>
#include <QToolButton>
#include <algorithm>

namespace
{
// Scaled units.
constexpr int kValueHeight = 40;
constexpr int kWeekdayHeight = 30;
constexpr int kPageWidth = 228;
constexpr struct {
    int Left, Right;
} kColumns[] = {{10, 63}, {65, 118}, {136, 218}};
constexpr int kColumnCount = 3;

constexpr int kFontValue = 4, kFontWeekday = 0;
constexpr unsigned kMiddle = kTextCentre | kTextVCentre | kTextSingleLine | kTextNoPrefix;
constexpr int kDaysOfWeek = 7;
constexpr int kWheelNotch = 120;
constexpr int kNamedDayWidth = 44; // logical pixels
constexpr int kCalendarMargin = 8; // design pixels
constexpr int kCalendarArrow = 16; // the same
constexpr int kCalendarLines = 8;  // weeks, the days' names and the month
constexpr int kLineExtra = 6;      // that the toolkit adds to the letters' height
constexpr int kLeastLetters = 8;   // logical pixels

enum MenuCommand { kNextWeek = 101, kPriorWeek = 102 }; // 2 closes a menu

int ArrowHeight()
{
    return std::max({g_ImageStore.Image(PictureDateUp).Height(), g_ImageStore.Image(PictureDateDown).Height(),
                     S(kWeekdayHeight)});
}

int DaysOf(int year, int month)
{
    static constexpr int kDays[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    const bool leap = year % 4 == 0 && (year % 100 != 0 || year % 400 == 0);
    return kDays[month - 1] + (month == 2 && leap ? 1 : 0);
}

DATE DateOfParts(int year, int month, int day)
{
    return DateOf({quint16(year), quint16(month), 0, quint16(day), 0, 0, 0, 0});
}

// Its arrows and colours as those of the rest of the page.
void DressCalendar(QCalendarWidget& calendar, int k)
{
    const std::pair<const char*, int> kArrows[] = {{"qt_calendar_prevmonth", PictureBack},
                                                   {"qt_calendar_nextmonth", PictureForward}};
    for (const auto& [name, picture] : kArrows) {
        auto* const button = calendar.findChild<QToolButton*>(QString::fromLatin1(name));
        if (!button)
            continue;
        button->setIcon(QIcon(QPixmap::fromImage(g_ImageStore.Image(picture).ToImage())));
        button->setIconSize(QSize(D(kCalendarArrow) / k, D(kCalendarArrow) / k));
    }
    // The months' list opens by the name itself; its little arrow has no room on a small page.
    if (auto* button = calendar.findChild<QToolButton*>(QStringLiteral("qt_calendar_monthbutton")))
        button->setStyleSheet(QStringLiteral("QToolButton::menu-indicator { image: none; }"));
    QTextCharFormat ink;
    ink.setForeground(ToQColor(kFormInk));
    for (const Qt::DayOfWeek day : {Qt::Saturday, Qt::Sunday})
        calendar.setWeekdayTextFormat(day, ink);
}

// A day that all three drums can show.
DATE WithinYears(DATE date)
{
    using Picker = CDatePickerDialog;
    return std::clamp(DATE(DayNumber(date)), DateOfParts(Picker::kFirstYear, 1, 1),
                      DateOfParts(Picker::kLastYear, 12, 31));
}

QDate QDateOf(DATE date)
{
    const SystemTime parts = SystemTimeOf(date);
    return {parts.wYear, parts.wMonth, parts.wDay};
}
} // namespace

CDatePickerDialog::CDatePickerDialog(DATE date)
    : CFormDialog(GetString(StrSelectDate)), m_date(WithinYears(date)),
      m_rememberedDay(SystemTimeOf(m_date).wDay),
      m_monthFirst(GetLocaleInfo(LocaleValue::DateOrder) != QLatin1String("1")),
      m_repeat(std::make_unique<CNumberedTimers>([this](int) { Repeat(); }))
{
}

CDatePickerDialog::~CDatePickerDialog() = default;

int CDatePickerDialog::GetMenuBarId() const
{
    return kMenuBarDatePicker;
}

CDatePickerDialog::Part CDatePickerDialog::PartOf(int column) const
{
    if (column == kColumnCount - 1)
        return kYear;
    return (column == 0) == m_monthFirst ? kMonth : kDay;
}

QString CDatePickerDialog::TextOf(Part part) const
{
    const SystemTime parts = SystemTimeOf(m_date);
    if (part == kMonth)
        return Locale().MonthName(parts.wMonth, true, false);
    return QString::number(part == kDay ? parts.wDay : parts.wYear);
}

// ---- layout

int CDatePickerDialog::ContentHeight(int)
{
    return S(kWeekdayHeight) + 2 * ArrowHeight() + S(kValueHeight) + 2 * D(kCalendarMargin);
}

void CDatePickerDialog::OnLayout(const QRect& client)
{
    const int height = 2 * ArrowHeight() + S(kValueHeight);
    const int width = S(kPageWidth);
    const int room = client.height() - height - S(kWeekdayHeight);
    m_page = QRect(client.x() + (client.width() - width) / 2,
                   client.y() + S(kWeekdayHeight) + std::max(room / 2, 0), width, height);
    PlaceCalendar();
}

CDatePickerDialog::CColumn CDatePickerDialog::ColumnAt(int column) const
{
    const int left = m_page.x() + S(kColumns[column].Left);
    const int width = S(kColumns[column].Right) - S(kColumns[column].Left);
    const int arrow = ArrowHeight();
    return {QRect(left, m_page.y(), width, arrow), QRect(left, m_page.y() + arrow, width, S(kValueHeight)),
            QRect(left, m_page.y() + arrow + S(kValueHeight), width, arrow)};
}

// ---- stepping

void CDatePickerDialog::SetDate(DATE date, bool rememberDay)
{
    m_date = WithinYears(date);
    if (rememberDay)
        m_rememberedDay = SystemTimeOf(m_date).wDay;
    update();
}

// The day that is remembered, or the last one that the month has.
void CDatePickerDialog::StepMonths(int year, int month)
{
    if (year >= kFirstYear && year <= kLastYear)
        SetDate(DateOfParts(year, month, std::min(m_rememberedDay, DaysOf(year, month))), false);
}

void CDatePickerDialog::Step(Part part, int direction)
{
    const SystemTime now = SystemTimeOf(m_date);
    if (part == kYear)
        return StepMonths(now.wYear + direction, now.wMonth);
    if (part == kMonth) {
        const int month = now.wYear * 12 + now.wMonth - 1 + direction;
        return StepMonths(month / 12, month % 12 + 1);
    }
    const DATE next = m_date + direction;
    const int year = SystemTimeOf(next).wYear;
    if (year >= kFirstYear && year <= kLastYear)
        SetDate(next, true);
}

bool CDatePickerDialog::StepAt(QPoint at)
{
    for (int column = 0; column < kColumnCount; ++column) {
        const CColumn strips = ColumnAt(column);
        const int direction = strips.Up.contains(at) ? 1 : strips.Down.contains(at) ? -1 : 0;
        if (direction == 0)
            continue;
        m_column = column;
        Step(PartOf(column), direction);
        return true;
    }
    return false;
}

void CDatePickerDialog::Repeat()
{
    if (StepAt(m_finger))
        m_repeat->Set(kTimerRepeat, kRepeatMs);
}

// ---- calendar

void CDatePickerDialog::OpenCalendar()
{
    m_calendar = new QCalendarWidget(this);
    m_calendar->setMinimumDate(QDate(kFirstYear, 1, 1));
    m_calendar->setMaximumDate(QDate(kLastYear, 12, 31));
    m_calendar->setVerticalHeaderFormat(QCalendarWidget::NoVerticalHeader);
    m_calendar->setGridVisible(false);
    DressCalendar(*m_calendar, CurrentFactor());
    const int first = GetLocaleInfo(LocaleValue::FirstDayOfWeek).toInt(); // 0 Monday
    m_calendar->setFirstDayOfWeek(Qt::DayOfWeek(std::clamp(first, 0, kDaysOfWeek - 1) + 1));
    m_calendar->setSelectedDate(QDateOf(m_date));
    const auto take = [this](QDate date) {
        if (!m_calendar)
            return;
        SetDate(DateOfParts(date.year(), date.month(), date.day()), true);
        CloseCalendar();
    };
    connect(m_calendar, &QCalendarWidget::clicked, this, take);
    connect(m_calendar, &QCalendarWidget::activated, this, take); // Enter
    PlaceCalendar();
    m_calendar->show();
    m_calendar->raise();
    m_calendar->setFocus();
}

void CDatePickerDialog::CloseCalendar()
{
    if (m_calendar) {
        m_calendar->hide();
        m_calendar->deleteLater(); // it may be the one that tells us
        m_calendar = nullptr;
        setFocus();
    }
}

void CDatePickerDialog::PlaceCalendar()
{
    if (!m_calendar)
        return;
    const int margin = D(kCalendarMargin);
    const QRect area = Layout().Client.adjusted(margin, margin, -margin, -margin);
    const QRect place = ToLogical(area, CurrentFactor());
    QFont font = LogicalFont(g_ImageStore.Font(kFontWeekday), CurrentFactor());
    // The toolkit would cut the last week rather than its letters' height.
    while (font.pixelSize() > kLeastLetters &&
           kCalendarLines * (QFontMetrics(font).height() + kLineExtra) > place.height())
        font.setPixelSize(font.pixelSize() - 1);
    m_calendar->setFont(font);
    m_calendar->setGeometry(place);
    m_calendar->setHorizontalHeaderFormat(place.width() < kDaysOfWeek * kNamedDayWidth
                                              ? QCalendarWidget::SingleLetterDayNames
                                              : QCalendarWidget::ShortDayNames);
}

// ---- paint

void CDatePickerDialog::PaintContent(QPainter& dc, const QRect&)
{
    dc.setFont(g_ImageStore.Font(kFontWeekday));
    dc.setPen(ToQColor(kFormInk));
    const QRect weekday(m_page.x(), m_page.y() - S(kWeekdayHeight), m_page.width(), S(kWeekdayHeight));
    DrawText(dc, Locale().DayName(DayOfWeekOf(DayNumber(m_date)), false), weekday, kMiddle);
    for (int column = 0; column < kColumnCount; ++column) {
        const CColumn strips = ColumnAt(column);
        const bool active = column == m_column;
        FillSolid(dc, strips.Value, active ? GetHighlightColor() : kFormHairLine);
        const QRect body = strips.Value.adjusted(D(1), D(1), -D(1), -D(1));
        if (active)
            DrawSelectionBackground(dc, body, GetHighlightColor());
        else
            FillSolid(dc, body, SystemColor::Window);
        dc.setFont(g_ImageStore.Font(kFontValue));
        dc.setPen(ToQColor(active ? GetHighlightTextColor() : kFormInk));
        DrawText(dc, TextOf(PartOf(column)), strips.Value, kMiddle);
        const std::pair<int, QRect> kArrows[] = {{PictureDateUp, strips.Up}, {PictureDateDown, strips.Down}};
        for (const auto& [picture, strip] : kArrows) {
            const CAlphaImage& arrow = g_ImageStore.Image(picture);
            DrawImage(arrow, dc, strip.x() + (strip.width() - arrow.Width()) / 2,
                      strip.y() + (strip.height() - arrow.Height()) / 2);
        }
    }
}

// ---- input

void CDatePickerDialog::RunMenu()
{
    m_repeat->KillAll();
    CTouchMenu menu(GetTitle());
    menu.AddRow(StrNextWeek, kNextWeek, PictureForward);
    menu.AddRow(StrPriorWeek, kPriorWeek, PictureBack);
    menu.AddRow(StrToday, CmdToday, PictureToday);
    menu.AddRow(StrCancel, CmdCancel, PictureCancel);
    switch (menu.Run(this)) {
    case kNextWeek:
        return SetDate(m_date + kDaysOfWeek, true);
    case kPriorWeek:
        return SetDate(m_date - kDaysOfWeek, true);
    case CmdToday:
        return SetDate(GetToday(), true);
    case CmdCancel:
        return End(kCancelled);
    default:
        break;
    }
}

void CDatePickerDialog::OnCommand(int command)
{
    if (command == CmdCancel && m_calendar)
        CloseCalendar();
    else if (command == CmdMenu)
        RunMenu();
    else
        CFormDialog::OnCommand(command);
}

void CDatePickerDialog::OnKey(int key)
{
    if (m_calendar)
        return;
    if (key == kKeyLeft || key == kKeyRight) {
        m_column = (m_column + (key == kKeyLeft ? kColumnCount - 1 : 1)) % kColumnCount;
        update();
    } else if (key == kKeyUp || key == kKeyDown) {
        Step(PartOf(m_column), key == kKeyUp ? 1 : -1);
    } else if (key == kKeySpace) {
        OpenCalendar();
    } else if (key == kKeyReturn) {
        End(kDone);
    }
}

void CDatePickerDialog::OnLButtonDown(QPoint at)
{
    m_finger = at;
    if (!m_calendar && StepAt(at))
        m_repeat->Set(kTimerRepeat, kFirstRepeatMs);
}

void CDatePickerDialog::OnMouseMove(QPoint at)
{
    m_finger = at;
}

void CDatePickerDialog::OnLButtonUp(QPoint at)
{
    m_repeat->KillAll();
    if (m_calendar)
        return CloseCalendar(); // a tap beside it
    for (int column = 0; column < kColumnCount; ++column) {
        if (ColumnAt(column).Value.contains(at)) {
            m_column = column;
            return OpenCalendar();
        }
    }
}

void CDatePickerDialog::OnWheel(int angle)
{
    if (!m_calendar && std::abs(angle) >= kWheelNotch)
        Step(PartOf(m_column), angle > 0 ? 1 : -1);
}
