#include "forms/field_controls.h"
#include "drawing/image_store.h"
#include "drawing/paint.h"
#include "drawing/screen_metrics.h"
#include "drawing/text.h"
#include "forms/form_parts.h"
#include "platform/locale.h"
#include "touch/device_pixels.h"
#include "util/date_time.h"
#include "util/string_ids.h"
#include "util/string_store.h"

#include <QAbstractItemView>
#include <QCheckBox>
#include <QComboBox>
#include <QDateEdit>
#include <QIntValidator>
#include <QLineEdit>
#include <QPainter>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTextBlock>
#include <QTimeEdit>
#include <algorithm>
#include <cmath>

namespace
{
constexpr int kDateExtra = 4, kLinkButton = 20, kTimeButton = 20, kListHeight = 150; // design pixels
constexpr int kDigits = 7;
constexpr int kLongestLine = 32767;

class CRowBox : public QCheckBox
{
public:
    using QCheckBox::QCheckBox;

protected:
    void paintEvent(QPaintEvent*) override
    {
        const int k = SurfaceFactor(window());
        QPainter dc(this);
        dc.scale(1.0 / k, 1.0 / k);
        const QRect box(0, 0, width() * k, height() * k);
        PaintCheckBox(dc, box, isChecked(), isEnabled());
        if (hasFocus())
            FrameRect(dc, box.adjusted(1, 1, -1, -1), kFormInk);
    }
    bool hitButton(const QPoint& at) const override { return rect().contains(at); }
};

// A picture of the locale in Qt's words: they differ in the mark of the half of the day only.
QString QtPicture(QString picture)
{
    if (picture.contains(QStringLiteral("tt")))
        return picture.replace(QStringLiteral("tt"), QStringLiteral("AP"));
    return picture;
}

QString TimePicture(const CFieldRow& row)
{
    if (row.HasFlag(kRowDuration))
        return GetString(StrDurationFormat);
    const bool twentyFour = GetLocaleInfo(LocaleValue::TimeMode).startsWith(u'1');
    return twentyFour ? QStringLiteral("HH:mm") : QStringLiteral("hh:mm AP");
}

// A line edit takes pasted line ends as they come.
QString OnOneLine(QString text)
{
    text.replace(QStringLiteral("\r\n"), QStringLiteral(" "));
    for (const QChar end : {QChar(u'\n'), QChar(u'\r'), QChar(QChar::LineSeparator), QChar(QChar::ParagraphSeparator)})
        text.replace(end, u' ');
    return text;
}

bool IsMultiLine(const CFieldRow& row)
{
    return row.HasFlag(kRowMultiLine) && !row.HasFlag(kRowDigits);
}

Qt::InputMethodHints HintsOf(const CFieldRow& row)
{
    if (row.HasFlag(kRowDigits))
        return Qt::ImhDigitsOnly;
    return IsMultiLine(row) ? TextInputHints() | Qt::ImhMultiLine : TextInputHints();
}
} // namespace

CFieldControls::CFieldControls(QWidget* form)
    : Line(new QLineEdit(form)), Lines(new QPlainTextEdit(form)), List(new QComboBox(form)),
      Day(new QDateEdit(form)), Time(new QTimeEdit(form)), Button(new QPushButton(QStringLiteral("..."), form)),
      Box(new CRowBox(form))
{
    Line->setFrame(false);
    Line->setTextMargins(-2, 0, 0, 0); // the style's own: the text must not jump when its row is selected
    Lines->setFrameShape(QFrame::NoFrame);
    Lines->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    Lines->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    Lines->document()->setDocumentMargin(1);
    Lines->setTabChangesFocus(true);
    for (QDateTimeEdit* const edit : {static_cast<QDateTimeEdit*>(Day), static_cast<QDateTimeEdit*>(Time)}) {
        edit->setFrame(false);
        edit->setButtonSymbols(QAbstractSpinBox::NoButtons);
        edit->setContextMenuPolicy(Qt::NoContextMenu);
        // A tap on its text is one on the control, which opens the picker.
        edit->findChild<QLineEdit*>()->setAttribute(Qt::WA_TransparentForMouseEvents);
    }
    Day->setDateRange(QDate(1601, 1, 1), QDate(9999, 12, 31));
    Button->setAutoDefault(false);
    for (QWidget* const control : InTabOrder())
        LightenControl(*control);
    HideAll();
}

std::array<QWidget*, 7> CFieldControls::InTabOrder() const
{
    return {Box, Line, Lines, List, Day, Time, Button};
}

void CFieldControls::HideAll()
{
    for (QWidget* const control : InTabOrder())
        control->hide();
}

void CFieldControls::SetFonts(int k)
{
    const QFont font = LogicalFont(g_ImageStore.Font(0), k);
    for (QWidget* const control :
         std::initializer_list<QWidget*>{Line, Lines, Day, Time, Button})
        control->setFont(font);
    List->setFont(LogicalFont(g_ImageStore.Font(1), k));
}

// ---- values

void CFieldControls::SetValues(const CFieldRow& row)
{
    Box->setChecked(row.Included);
    Box->setAccessibleName(row.Label);
    if (row.Type == kRowText) {
        SetText(row, row.Value, -1);
        m_text = row.Value;
        TextControl(row)->setAccessibleName(row.Label);
    } else if (row.Type == kRowChoice) {
        List->setUpdatesEnabled(false);
        List->clear();
        List->addItems(row.Choices);
        List->setCurrentIndex(row.Index >= 0 && row.Index < row.Choices.size() ? row.Index : -1);
        List->setUpdatesEnabled(true);
        List->setAccessibleName(row.Label);
    } else if (row.HasDate()) {
        PutDate(row.Date, true);
        m_date = row.Date;
        Day->setDisplayFormat(QtPicture(GetLocaleInfo(LocaleValue::ShortDate)));
        Time->setDisplayFormat(TimePicture(row));
        PutDate(row.Date, false);
        m_day = Day->date();
        m_time = Time->time();
        Day->setAccessibleName(row.Label);
        Time->setAccessibleName(row.Label);
    }
    Button->setAccessibleName(row.Label);
}

void CFieldControls::SelectFirstSection(QWidget* control)
{
    auto* const edit = qobject_cast<QDateTimeEdit*>(control);
    if (!edit)
        return;
    // The toolkit notes a section when its caret moves there, not where it stands already.
    edit->findChild<QLineEdit*>()->end(false);
    edit->setSelectedSection(edit->sectionAt(0));
}

void CFieldControls::PutDate(DATE date, bool datePart)
{
    SystemTime time;
    if (!VariantTimeToSystemTime(date, &time))
        return;
    if (datePart)
        Day->setDate(QDate(time.wYear, time.wMonth, time.wDay));
    else
        Time->setTime(QTime(time.wHour, time.wMinute, time.wSecond));
}

DATE CFieldControls::Date(const CFieldRow& row) const
{
    if (Day->date() == m_day && Time->time() == m_time)
        return row.Type == kRowTime ? std::fabs(m_date - std::trunc(m_date)) : m_date;
    const QDate day = Day->date();
    const QTime clock = Time->time();
    double part = 0;
    SystemTime time{quint16(day.year()), quint16(day.month()), 0, quint16(day.day())};
    time.wHour = quint16(clock.hour());
    time.wMinute = quint16(clock.minute());
    time.wSecond = quint16(clock.second());
    const DATE whole = DateOf(time);
    part = std::fabs(whole - std::trunc(whole));
    return row.Type == kRowTime ? part : whole;
}

int CFieldControls::Index() const
{
    return List->currentIndex();
}

bool CFieldControls::Included() const
{
    return Box->isChecked();
}

// ---- text

QWidget* CFieldControls::TextControl(const CFieldRow& row) const
{
    return IsMultiLine(row) ? static_cast<QWidget*>(Lines) : Line;
}

void CFieldControls::SetText(const CFieldRow& row, const QString& text, int caret)
{
    if (IsMultiLine(row)) {
        Lines->setPlainText(text);
        QTextCursor cursor = Lines->textCursor();
        if (caret < 0)
            cursor.movePosition(QTextCursor::End);
        else
            cursor.setPosition(std::min(caret, Lines->document()->characterCount() - 1));
        Lines->setTextCursor(cursor);
        Lines->document()->setModified(text != m_text);
        return;
    }
    delete Line->validator();
    Line->setAlignment((row.HasFlag(kRowDigits) ? Qt::AlignHCenter : Qt::AlignLeft) | Qt::AlignVCenter);
    if (row.HasFlag(kRowDigits)) {
        Line->setValidator(new QIntValidator(0, 9999999, Line));
        Line->setMaxLength(kDigits);
    } else {
        Line->setMaxLength(std::max(kLongestLine, int(text.size())));
    }
    Line->setText(OnOneLine(text));
    Line->setCursorPosition(caret < 0 ? int(Line->text().size()) : caret);
    Line->setModified(text != m_text);
}

QString CFieldControls::Text(const CFieldRow& row) const
{
    if (!IsMultiLine(row))
        return Line->isModified() ? OnOneLine(Line->text()) : m_text;
    if (!Lines->document()->isModified())
        return m_text;
    return EditedPlainText(*Lines, m_text);
}

void CFieldControls::Selection(const CFieldRow& row, int* start, int* end) const
{
    if (IsMultiLine(row)) {
        *start = Lines->textCursor().selectionStart();
        *end = Lines->textCursor().selectionEnd();
        return;
    }
    *start = Line->hasSelectedText() ? Line->selectionStart() : Line->cursorPosition();
    *end = Line->hasSelectedText() ? Line->selectionEnd() : Line->cursorPosition();
}

bool CFieldControls::AtTextStart(const CFieldRow& row) const
{
    int start = 0, end = 0;
    Selection(row, &start, &end);
    return start == 0 && end == 0;
}

bool CFieldControls::AtTextEnd(const CFieldRow& row) const
{
    int start = 0, end = 0;
    Selection(row, &start, &end);
    const int length =
        IsMultiLine(row) ? Lines->document()->characterCount() - 1 : int(Line->text().size());
    return start == length && end == length;
}

// ---- places

void CFieldControls::Put(QWidget* control, const QRect& surface, int k)
{
    control->setGeometry(surface.x() / k, surface.y() / k, surface.width() / k, surface.height() / k);
    control->show();
    m_put.push_back(control);
}

// What stays is not hidden meanwhile: the toolkit would lead the keyboard to the next part of a date.
QWidget* CFieldControls::Place(const CFieldRow& row, const QRect& rect, int k)
{
    m_put.clear();
    SetFonts(k);
    QWidget* const first = PutControls(row, rect, k);
    for (QWidget* const control : InTabOrder()) {
        if (std::find(m_put.begin(), m_put.end(), control) == m_put.end())
            control->hide();
    }
    return first;
}

QWidget* CFieldControls::PutControls(const CFieldRow& row, const QRect& rect, int k)
{
    const bool boxed = row.HasFlag(kRowInclude);
    if (boxed)
        Put(Box, FieldIncludeBox(row, rect), k);
    if (boxed && (!row.Included || row.Type == kRowCheck))
        return Box;
    QRect value = FieldValueRect(row, rect);
    value.setLeft((value.left() + k - 1) / k * k);
    switch (row.Type) {
    case kRowText:
        PlaceText(row, rect, value, k);
        return TextControl(row);
    case kRowChoice:
        List->setMaxVisibleItems(std::max(SY(kListHeight) / FieldRowStep(), 3));
        Put(List, value, k);
        return List;
    case kRowDate:
        Put(Day, value, k);
        return Day;
    case kRowTime:
    case kRowDateTime:
        PlaceDates(row, value, k);
        return row.Type == kRowTime ? static_cast<QWidget*>(Time) : Day;
    case kRowLink: {
        const int side = std::min(SY(kLinkButton), rect.height());
        Put(Button, {rect.x() + rect.width() - side - S(2), rect.y() + (rect.height() - side) / 2, side, side}, k);
        return Button;
    }
    default:
        return nullptr;
    }
}

void CFieldControls::PlaceText(const CFieldRow& row, const QRect& rect, const QRect& value, int k)
{
    QWidget* const control = TextControl(row);
    control->setInputMethodHints(HintsOf(row));
    if (!row.HasFlag(kRowDigits)) {
        Put(control, value, k);
        return;
    }
    const FieldDigits parts = FieldDigitsOf(row, rect);
    Put(control, parts.Box, k);
}

void CFieldControls::PlaceDates(const CFieldRow& row, const QRect& value, int k)
{
    const int end = value.x() + value.width(), side = std::min(SY(kTimeButton), value.height());
    int left = value.x();
    if (row.Type == kRowDateTime) {
        const int wanted = TextWidth(g_ImageStore.Font(0), FieldDateText(row.Date)) + S(kDateExtra) + D(8);
        const int width = std::min((wanted + k - 1) / k * k, std::max(end - side - left, 0));
        Put(Day, {left, value.y(), width, value.height()}, k);
        left += width;
    }
    Put(Time, {left, value.y(), std::max(end - side - left, 0), value.height()}, k);
    Put(Button, {end - side, value.y(), side, value.height()}, k);
}
