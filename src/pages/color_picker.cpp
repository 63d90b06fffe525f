#include "pages/color_picker.h"
#include "drawing/image_store.h"
#include "drawing/paint.h"
#include "drawing/picture_ids.h"
#include "drawing/screen_metrics.h"
#include "drawing/text.h"
#include "forms/form_parts.h"
#include "forms/menu_bars.h"
#include "forms/question.h"
#include "settings/settings.h"
#include "settings/system_colors.h"
#include "touch/command_ids.h"
#include "touch/device_pixels.h"
#include "touch/touch_menu.h"
#include "touch/virtual_keys.h"
#include "util/string_ids.h"
#include "util/string_store.h"

#include <QKeyEvent>
#include <QLineEdit>
#include <QPainter>
#include <QSlider>
#include <algorithm>

namespace
{
constexpr int kCommandDefault = 1021, kCommandTab = 1022; // the tabs' follow one another
// Design pixels.
constexpr int kTabHeight = 32, kPreviewHeight = 24, kPreviewWidth = 50, kPreviewSwatch = 12;
constexpr int kMargin = 8, kRowHeight = 34, kEditHeight = 28, kEditWidth = 56, kHtmlWidth = 100;
constexpr int kTallestSwatch = 40;
constexpr int kGroove = 4, kHandleWidth = 14, kHandleHeight = 24;
constexpr int kFontText = 0, kFontBold = 4;
constexpr int kMostPercent = 100, kMostValue = 255;
constexpr int kHexDigits = 6;

// As the values stand, with blue in the highest byte.
constexpr COLORREF kPaletteColors[] = {
    0xFFFFFF, 0xFFCCCC, 0xFFCC99, 0xFFFF99, 0xFFFFCC, 0x99FF99, 0x99FFFF, 0xCCFFFF, 0xCCCCFF, 0xFFCCFF,
    0xCCCCCC, 0xFF6666, 0xFF9966, 0xFFFF66, 0xFFFF33, 0x66FF99, 0x33FFFF, 0x66FFFF, 0x9999FF, 0xFF99FF,
    0x999999, 0xCC0000, 0xFF6600, 0xFFCC33, 0xFFCC00, 0x33CC00, 0x00CCCC, 0x3366FF, 0x6633FF, 0xCC33CC,
    0x555555, 0x660000, 0x993300, 0x996633, 0x666600, 0x006600, 0x336666, 0x000099, 0x333399, 0x663366,
    0x000000, 0x330000, 0x663300, 0x663333, 0x333300, 0x003300, 0x003333, 0x000066, 0x330099, 0x330033};
constexpr int kSwatchCount = int(std::size(kPaletteColors));
constexpr int kRows = kSwatchCount / CColorPicker::kColumns;

// The desktop's own sliders do not grow with the density.
QString SliderLook(int k)
{
    const auto length = [k](int units) { return QString::number(std::max(D(units) / k, 1)); };
    return QStringLiteral("QSlider::groove { height: %1px; background: %2; }"
                          "QSlider::handle { width: %3px; margin: -%4px 0; background: %5; }")
        .arg(length(kGroove), ToQColor(kFormHairLine).name(), length(kHandleWidth),
             length((kHandleHeight - kGroove) / 2), ToQColor(GetHighlightColor()).name());
}

constexpr int kTabTexts[] = {StrColorPicker, StrColorHtml, StrColorRgb};
constexpr int kPartTexts[] = {StrColorRed, StrColorGreen, StrColorBlue};
} // namespace

CColorPicker::CColorPicker(const QString& title, COLORREF color, const QString& defaultText)
    : CFormDialog(title), m_color(color), m_defaultText(defaultText), m_html(new QLineEdit(this))
{
    const auto at = std::find(std::begin(kPaletteColors), std::end(kPaletteColors), color);
    m_focused = at == std::end(kPaletteColors) ? 0 : int(at - std::begin(kPaletteColors));
    if (color != kColorNotSet)
        m_parts = {int(RedOf(color)), int(GreenOf(color)), int(BlueOf(color))};
    for (int part = 0; part < 3; ++part) {
        auto*& edit = m_edits[size_t(part)];
        edit = new QLineEdit(this);
        edit->setMaxLength(9);
        edit->setInputMethodHints(Qt::ImhDigitsOnly);
        edit->setAccessibleName(GetString(kPartTexts[part]));
        connect(edit, &QLineEdit::editingFinished, this, [this, part] { CommitEdit(part); });
        auto*& slider = m_sliders[size_t(part)];
        slider = new QSlider(Qt::Horizontal, this);
        slider->setRange(0, kMostPercent);
        slider->setAccessibleName(GetString(kPartTexts[part]));
        connect(slider, &QSlider::valueChanged, this,
                [this, part](int position) { SetPart(part, position * kMostValue / kMostPercent); });
    }
    m_html->setMaxLength(kHexDigits + 1); // the sign before it may be pasted along
    m_html->setInputMethodHints(Qt::ImhNoPredictiveText | Qt::ImhPreferUppercase);
    m_html->setAccessibleName(GetString(StrColorHtml));
    connect(m_html, &QLineEdit::textEdited, this, [this] { CommitHtml(); });
    for (QWidget* control :
         {static_cast<QWidget*>(m_html), static_cast<QWidget*>(m_edits[0]), static_cast<QWidget*>(m_edits[1]),
          static_cast<QWidget*>(m_edits[2]), static_cast<QWidget*>(m_sliders[0]),
          static_cast<QWidget*>(m_sliders[1]), static_cast<QWidget*>(m_sliders[2])}) {
        LightenControl(*control);
        control->hide();
        control->installEventFilter(this);
    }
    ShowColor();
}

CColorPicker::~CColorPicker() = default;

std::span<const COLORREF> CColorPicker::Palette()
{
    return kPaletteColors;
}

int CColorPicker::GetMenuBarId() const
{
    return kMenuBarMyText; // "Select" and "Menu"
}

// ---- layout

int CColorPicker::ContentHeight(int)
{
    return D(kTabHeight) + kRows * D(kTallestSwatch) + 2 * D(kMargin) + D(kPreviewHeight);
}

QRect CColorPicker::TabRect(int tab) const
{
    const int left = m_client.width() * tab / kTabCount, right = m_client.width() * (tab + 1) / kTabCount;
    return {m_client.x() + left, m_client.y(), right - left, D(kTabHeight)};
}

QRect CColorPicker::PageRect() const
{
    return m_client.adjusted(0, D(kTabHeight), 0, -D(kPreviewHeight));
}

QRect CColorPicker::PreviewRect() const
{
    return {m_client.x(), m_client.y() + m_client.height() - D(kPreviewHeight), m_client.width(),
            D(kPreviewHeight)};
}

QRect CColorPicker::SwatchRect(int swatch) const
{
    const QRect page = PageRect().adjusted(D(kMargin), D(kMargin), -D(kMargin), -D(kMargin));
    const int height = std::clamp(page.height(), 0, kRows * D(kTallestSwatch));
    const int column = swatch % kColumns, row = swatch / kColumns;
    const int left = page.width() * column / kColumns, top = height * row / kRows;
    return {page.x() + left, page.y() + top, page.width() * (column + 1) / kColumns - left,
            height * (row + 1) / kRows - top};
}

QRect CColorPicker::ValueRow(int part) const
{
    const QRect page = AboveKeyboard(PageRect(), D(3 * kRowHeight));
    const int step = std::clamp(page.height() / 3, 1, D(kRowHeight + kMargin));
    return {page.x() + D(kMargin), page.y() + part * step, page.width() - 2 * D(kMargin), step};
}

void CColorPicker::OnLayout(const QRect& client)
{
    m_client = client;
    PlaceControls();
}

QString CColorPicker::LabelOf(int part) const
{
    return GetString(m_tab == kHtml ? int(StrColorHtml) : kPartTexts[part]);
}

void CColorPicker::PlaceControls()
{
    const bool shown = !m_client.isEmpty();
    const int k = CurrentFactor();
    const QFont font = LogicalFont(g_ImageStore.Font(kFontText), k);
    const auto place = [&](QWidget* control, bool visible, const QRect& rect) {
        control->setFont(font);
        control->setGeometry(ToLogical(rect, k));
        control->setVisible(shown && visible);
    };
    const QString sliders = SliderLook(k);
    int label = 0;
    for (int part = 0; part < 3; ++part)
        label = std::max(label, TextWidth(g_ImageStore.Font(kFontText), GetString(kPartTexts[part])));
    for (int part = 0; part < 3; ++part) {
        const QRect row = ValueRow(part);
        const int top = row.y() + (row.height() - D(kEditHeight)) / 2;
        const QRect edit(row.x() + label + D(kMargin), top, D(kEditWidth), D(kEditHeight));
        const int right = edit.x() + edit.width() + D(kMargin);
        if (m_sliders[size_t(part)]->styleSheet() != sliders)
            m_sliders[size_t(part)]->setStyleSheet(sliders);
        place(m_edits[size_t(part)], m_tab == kValues, edit);
        place(m_sliders[size_t(part)], m_tab == kValues,
              {right, top, row.x() + row.width() - right, D(kEditHeight)});
    }
    const QRect row = ValueRow(0);
    const int left = row.x() + TextWidth(g_ImageStore.Font(kFontText), GetString(StrColorHtml)) + D(kMargin);
    place(m_html, m_tab == kHtml,
          {left, row.y() + (row.height() - D(kEditHeight)) / 2, D(kHtmlWidth), D(kEditHeight)});
}

// ---- paint

void CColorPicker::PaintContent(QPainter& dc, const QRect& client)
{
    FillSolid(dc, client, SystemColor::Window);
    PaintTabs(dc);
    if (m_tab == kPalette) {
        PaintPalette(dc);
    } else {
        dc.setFont(g_ImageStore.Font(kFontText));
        dc.setPen(ToQColor(kFormInk));
        for (int part = 0; part < (m_tab == kHtml ? 1 : 3); ++part)
            DrawText(dc, LabelOf(part), ValueRow(part), kTextVCentre | kTextSingleLine | kTextNoPrefix);
    }
    PaintPreview(dc);
}

void CColorPicker::PaintTabs(QPainter& dc) const
{
    for (int tab = 0; tab < kTabCount; ++tab) {
        const QRect rect = TabRect(tab);
        const bool current = tab == m_tab;
        if (current)
            DrawSelectionBackground(dc, rect, GetHighlightColor());
        else
            FillSolid(dc, rect, kFormHairLine);
        dc.setFont(g_ImageStore.Font(kFontBold));
        dc.setPen(ToQColor(current ? GetHighlightTextColor() : kFormInk));
        const QRect text = rect.adjusted(D(2), 0, -D(2), 0);
        DrawText(dc, GetString(kTabTexts[tab]), text,
                 kTextCentre | kTextVCentre | kTextSingleLine | kTextNoPrefix | kTextEndEllipsis);
    }
}

// The keyboard's swatch has a black border, the others a white one; within it a black frame, and in
// that of the current colour a white one.
void CColorPicker::PaintPalette(QPainter& dc) const
{
    for (int n = 0; n < kSwatchCount; ++n) {
        const QRect rect = SwatchRect(n);
        const auto inset = [&rect](int by) { return rect.adjusted(D(by), D(by), -D(by), -D(by)); };
        FillSolid(dc, rect, n == m_focused ? kColorBlack : kColorWhite);
        FillSolid(dc, inset(1), kColorBlack);
        const bool current = kPaletteColors[n] == m_color;
        if (current)
            FillSolid(dc, inset(2), kColorWhite);
        FillSolid(dc, inset(current ? 4 : 2), kPaletteColors[n]);
    }
}

void CColorPicker::PaintPreview(QPainter& dc) const
{
    const QRect strip = PreviewRect();
    FillSolid(dc, {strip.x(), strip.y(), strip.width(), D(1)}, kFormHairLine);
    const QRect text = strip.adjusted(D(kMargin), 0, -D(kMargin), 0);
    dc.setFont(g_ImageStore.Font(kFontText));
    dc.setPen(ToQColor(kFormInk));
    constexpr unsigned kFlags = kTextVCentre | kTextSingleLine | kTextNoPrefix;
    DrawText(dc, GetString(StrSelectedColor), text, kFlags);
    if (m_color == kColorNotSet) {
        DrawText(dc, m_defaultText.isEmpty() ? GetString(StrColorDefault) : m_defaultText, text,
                 kFlags | kTextRight);
        return;
    }
    const QRect swatch(text.x() + text.width() - D(kPreviewWidth),
                       strip.y() + (strip.height() - D(kPreviewSwatch)) / 2, D(kPreviewWidth),
                       D(kPreviewSwatch));
    FillSolid(dc, swatch, m_color);
    FrameRect(dc, swatch, kColorBlack);
}

// ---- for readers of the screen: the tabs, then the swatches; fields speak for themselves

int CColorPicker::ContentPartCount() const
{
    return kTabCount + (m_tab == kPalette ? kSwatchCount : 0);
}

CPaintedPart CColorPicker::ContentPart(int index) const
{
    const int k = CurrentFactor();
    if (index < kTabCount)
        return {.Name = GetString(kTabTexts[index]),
                .Role = QAccessible::PageTab,
                .Rect = ToLogical(TabRect(index), k),
                .Selected = index == m_tab};
    const int swatch = index - kTabCount;
    return {.Name = ToQColor(kPaletteColors[swatch]).name().toUpper(),
            .Role = QAccessible::Button,
            .Rect = ToLogical(SwatchRect(swatch), k),
            .Selected = swatch == m_focused};
}

void CColorPicker::PressContentPart(int index)
{
    if (index < kTabCount)
        ShowTab(Tab(index));
    else
        TakeSwatch(index - kTabCount);
}

// ---- tabs and colours

void CColorPicker::ShowTab(Tab tab)
{
    if (m_tab == kValues) {
        for (int part = 0; part < 3; ++part) {
            if (!CommitEdit(part))
                return;
        }
    }
    m_tab = tab;
    ShowColor();
    ApplyLayout();
    TakeFocus();
    update();
}

void CColorPicker::TakeFocus()
{
    if (m_tab == kPalette)
        return setFocus();
    QLineEdit* const edit = m_tab == kHtml ? m_html : m_edits[0];
    edit->setFocus();
    edit->selectAll();
}

void CColorPicker::ShowColor()
{
    for (size_t part = 0; part < 3; ++part) {
        m_edits[part]->setText(QString::number(m_parts[part]));
        const QSignalBlocker quiet(m_sliders[part]);
        m_sliders[part]->setValue(int(m_parts[part] / 2.55));
    }
    if (!m_html->hasFocus() || m_tab != kHtml)
        m_html->setText(QString::asprintf("%02X%02X%02X", unsigned(m_parts[0]), unsigned(m_parts[1]),
                                          unsigned(m_parts[2])));
    update();
}

void CColorPicker::SetPart(int part, int value)
{
    m_parts[size_t(part)] = value;
    m_color = Rgb(quint32(m_parts[0]), quint32(m_parts[1]), quint32(m_parts[2]));
    ShowColor();
}

// False: what stood there is no value; it has been said, and the old one is back.
bool CColorPicker::CommitEdit(int part)
{
    QLineEdit& edit = *m_edits[size_t(part)];
    const int old = m_parts[size_t(part)];
    if (m_telling || edit.text() == QString::number(old))
        return true;
    bool isNumber = false;
    const int value = edit.text().trimmed().toInt(&isNumber);
    if (isNumber && value >= 0 && value <= kMostValue) {
        SetPart(part, value);
        return true;
    }
    m_telling = true;
    edit.setText(QString::number(old));
    ShowMessage(this, GetString(StrColorRange), GetString(StrColorInvalid));
    m_telling = false;
    edit.setFocus();
    edit.selectAll();
    return false;
}

// Two digits each, as far as they go.
void CColorPicker::CommitHtml()
{
    QString text = m_html->text().trimmed();
    if (text.startsWith(u'#'))
        text.remove(0, 1);
    bool changed = false;
    for (int part = 0; part < 3; ++part) {
        bool isNumber = false;
        const int value = text.mid(part * 2, 2).toInt(&isNumber, 16);
        if (!isNumber || value < 0)
            break;
        m_parts[size_t(part)] = value;
        changed = true;
    }
    if (changed)
        SetPart(0, m_parts[0]);
}

void CColorPicker::TakeSwatch(int swatch)
{
    m_focused = swatch;
    m_color = kPaletteColors[swatch];
    m_parts = {int(RedOf(m_color)), int(GreenOf(m_color)), int(BlueOf(m_color))};
    EndWith(m_color);
}

void CColorPicker::EndWith(COLORREF color)
{
    m_color = m_chosen = color;
    End(kDone);
}

void CColorPicker::OnDone()
{
    for (int part = 0; m_tab == kValues && part < 3; ++part) {
        if (!CommitEdit(part))
            return;
    }
    EndWith(m_color);
}

// ---- input

void CColorPicker::OnCommand(int command)
{
    if (command == CmdMenu)
        return RunMenu();
    if (command >= kCommandTab && command < kCommandTab + kTabCount)
        return ShowTab(Tab(command - kCommandTab));
    if (command == kCommandDefault)
        return EndWith(kColorNotSet);
    CFormDialog::OnCommand(command);
}

void CColorPicker::RunMenu()
{
    CTouchMenu menu(GetTitle());
    for (int tab = 0; tab < kTabCount; ++tab)
        menu.AddRow(kTabTexts[tab], kCommandTab + tab, 0, tab == m_tab);
    if (!m_defaultText.isEmpty())
        menu.AddRow(m_defaultText, kCommandDefault, 0);
    menu.AddRow(StrCancel, CmdCancel, PictureCancel);
    const int command = menu.Run(this);
    if (command != CmdNone)
        OnCommand(command);
}

void CColorPicker::OnKey(int key)
{
    if (m_tab != kPalette)
        return;
    const int column = m_focused % kColumns;
    if (key == kKeyReturn)
        return TakeSwatch(m_focused);
    if (key == kKeyLeft)
        m_focused += column == 0 ? kColumns - 1 : -1;
    else if (key == kKeyRight)
        m_focused += column == kColumns - 1 ? 1 - kColumns : 1;
    else if (key == kKeyUp)
        m_focused = (m_focused + kSwatchCount - kColumns) % kSwatchCount;
    else if (key == kKeyDown)
        m_focused = (m_focused + kColumns) % kSwatchCount;
    update();
}

void CColorPicker::MoveFocus(int step)
{
    QWidget* const order[] = {m_edits[0], m_sliders[0], m_edits[1], m_sliders[1], m_edits[2], m_sliders[2]};
    constexpr int kCount = int(std::size(order));
    const auto at = std::find(std::begin(order), std::end(order), focusWidget());
    const int from = at == std::end(order) ? 0 : int(at - std::begin(order));
    order[(from + step + kCount) % kCount]->setFocus();
}

int CColorPicker::HitSwatch(QPoint at) const
{
    for (int n = 0; m_tab == kPalette && n < kSwatchCount; ++n) {
        if (SwatchRect(n).contains(at))
            return n;
    }
    return -1;
}

void CColorPicker::OnLButtonDown(QPoint at)
{
    m_pressed = HitSwatch(at);
    m_pressedTab = -1;
    for (int tab = 0; tab < kTabCount; ++tab) {
        if (TabRect(tab).contains(at))
            m_pressedTab = tab;
    }
    if (m_pressed >= 0) {
        m_focused = m_pressed;
        update();
    }
}

void CColorPicker::OnLButtonUp(QPoint at)
{
    const int swatch = std::exchange(m_pressed, -1), tab = std::exchange(m_pressedTab, -1);
    if (swatch >= 0 && HitSwatch(at) == swatch)
        TakeSwatch(swatch);
    else if (tab >= 0 && TabRect(tab).contains(at))
        ShowTab(Tab(tab));
}

bool CColorPicker::eventFilter(QObject* watched, QEvent* event)
{
    auto* const control = qobject_cast<QWidget*>(watched);
    if (!control || control->parentWidget() != this)
        return CFormDialog::eventFilter(watched, event);
    if (TakeDialogKey(event))
        return true;
    if (event->type() != QEvent::KeyPress)
        return false;
    const int key = VirtualKeyOf(*static_cast<QKeyEvent*>(event));
    if (key == kKeyReturn) {
        OnDone();
        return true;
    }
    if (key != kKeyUp && key != kKeyDown)
        return false;
    if (m_tab == kValues)
        MoveFocus(key == kKeyDown ? 1 : -1);
    return true;
}
