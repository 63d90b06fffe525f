#include "pages/category_manager.h"
#include "drawing/image_store.h"
#include "drawing/paint.h"
#include "drawing/picture_ids.h"
#include "drawing/screen_metrics.h"
#include "forms/field_row.h"
#include "forms/form_parts.h"
#include "forms/menu_bars.h"
#include "forms/message_dialog.h"
#include "forms/question.h"
#include "pages/color_picker.h"
#include "pages/icon_picker.h"
#include "pim/pim_store.h"
#include "platform/locale.h"
#include "settings/settings.h"
#include "settings/system_colors.h"
#include "touch/command_ids.h"
#include "touch/touch_menu.h"
#include "touch/virtual_keys.h"
#include "util/string_ids.h"
#include "util/string_store.h"

#include <QKeyEvent>
#include <QLineEdit>
#include <QPainter>
#include <QRegularExpressionValidator>
#include <algorithm>

namespace
{
// Design pixels.
constexpr int kBoxLeft = 2, kNameLeft = 22, kEmptyLeft = 20, kIconColumn = 40, kRightRoom = 2, kColumnGap = 4;
constexpr int kFingerWidth = 40; // the box's column is small for a finger
constexpr int kPictureLeft = 13; // in the icon's column
constexpr int kHeadMargin = 6, kEditHeight = 28, kBoxSize = 16;
constexpr int kFontText = 0, kFontSmall = 3;
constexpr COLORREF kColorFrame = 8671512;
constexpr int kLongestName = 255;
} // namespace

CCategoryManager::CCategoryManager(Mode mode, const CCategorySet& checked)
    : CRowListDialog(GetString(mode == Mode::Manage ? StrCategoryManager : StrSetCategories)), m_mode(mode),
      m_checked(checked), m_edit(new QLineEdit(this))
{
    const CCategoryStore& store = PimStore().Categories();
    for (int n = 0; const CCategory* const category = store.GetAt(n); ++n)
        m_lines.push_back({category->Id, category->Name, checked.Contains(category->Id)});
    LightenControl(*m_edit);
    m_edit->setMaxLength(kLongestName);
    // Items carry their categories as one text, in which commas part the names.
    m_edit->setValidator(new QRegularExpressionValidator(QRegularExpression("[^,]*"), m_edit));
    m_edit->setAccessibleName(GetString(StrCategoryColumn));
    m_edit->setPlaceholderText(GetString(StrAddNewCategory));
    m_edit->setInputMethodHints(TextInputHints());
    m_edit->installEventFilter(this);
}

int CCategoryManager::GetMenuBarId() const
{
    return kMenuBarCategories;
}

bool CCategoryManager::IsAdding() const
{
    return focusWidget() == m_edit; // a menu over the dialog changes nothing
}

QString CCategoryManager::GetNames() const
{
    return PimStore().Categories().GetNamesText(m_checked);
}

qint32 CCategoryManager::IdOf(const CLine& line) const
{
    const CCategoryStore& store = PimStore().Categories();
    const CCategory* const category = store.FindByName(line.Name);
    return category ? category->Id : line.Id;
}

// ---- layout

int CCategoryManager::RowCount() const
{
    return std::max(int(m_lines.size()), 1);
}

int CCategoryManager::HeadHeight(int)
{
    return D(kEditHeight) + 2 * D(kHeadMargin);
}

void CCategoryManager::OnLayout(const QRect& client)
{
    CRowListDialog::OnLayout(client);
    if (client.isEmpty())
        return;
    const int k = CurrentFactor();
    const QRect head = HeadRect().adjusted(D(kHeadMargin), D(kHeadMargin), -D(kHeadMargin), -D(kHeadMargin));
    m_edit->setFont(LogicalFont(g_ImageStore.Font(kFontText), k));
    m_edit->setGeometry(head.x() / k, head.y() / k, head.width() / k, head.height() / k);
    m_edit->show();
}

QRect CCategoryManager::BoxColumn(int index) const
{
    const QRect row = RowRect(index);
    return {row.x(), row.y(), D(kNameLeft), row.height()};
}

QRect CCategoryManager::IconColumn(int index) const
{
    const QRect row = RowRect(index);
    const int width = D(kIconColumn);
    return {row.x() + row.width() - D(kRightRoom) - width, row.y(), width, row.height()};
}

QRect CCategoryManager::ColorColumn(int index) const
{
    const QRect icon = IconColumn(index);
    const int width = g_ImageStore.Image(PictureNoColor).Width();
    return {icon.x() - D(kColumnGap) - width, icon.y(), width, icon.height()};
}

// ---- paint

void CCategoryManager::PaintHead(QPainter& dc, const QRect& rect)
{
    FillSolid(dc, rect, SystemColor::Window);
    FillSolid(dc, {rect.x(), rect.y() + rect.height() - D(1), rect.width(), D(1)}, kFormHairLine);
}

QString CCategoryManager::LineText(int index) const
{
    return m_lines.empty() ? GetString(StrNoCategories) : m_lines[size_t(index)].Name;
}

void CCategoryManager::PaintRow(QPainter& dc, int index, const QRect& rect, bool selected)
{
    if (m_lines.empty())
        return PaintRowText(dc, LineText(index), rect.adjusted(D(kEmptyLeft), 0, 0, 0), selected);
    const CLine& line = m_lines[size_t(index)];
    const QPoint shift(0, rect.y() - RowRect(index).y());
    const int left = RowRect(index).x();
    const QRect color = ColorColumn(index).translated(shift.x() - left, shift.y());
    const QRect icon = IconColumn(index).translated(shift.x() - left, shift.y());
    if (m_mode != Mode::Manage) {
        const int top = rect.y() + (rect.height() - D(kBoxSize)) / 2;
        PaintCheckBox(dc, {rect.x() + D(kBoxLeft), top, D(kBoxSize), D(kBoxSize)}, line.Checked, true);
    }
    const int name = rect.x() + D(kNameLeft);
    PaintRowText(dc, line.Name, {name, rect.y(), color.x() - D(kColumnGap) - name, rect.height()}, selected);
    const CCategory* const category = PimStore().Categories().FindByName(line.Name);
    const CAlphaImage& none = g_ImageStore.Image(PictureNoColor);
    const QRect swatch(color.x(), rect.y() + (rect.height() - none.Height()) / 2, none.Width(),
                       none.Height());
    if (category && category->Color != kColorNotSet) {
        FrameRect(dc, swatch, kColorFrame);
        FillSolid(dc, swatch.adjusted(D(1), D(1), -D(1), -D(1)), category->Color);
    } else {
        DrawImage(none, dc, swatch.x(), swatch.y());
    }
    const CAlphaImage& picture = g_ImageStore.Icon(category ? category->ImageName : QString());
    if (picture.IsValid()) {
        DrawImage(picture, dc, icon.x() + D(kPictureLeft), rect.y() + (rect.height() - picture.Height()) / 2);
        return;
    }
    const CFittedText noIcon = FitText(GetString(StrNoIcon), {kFontSmall}, icon.width());
    PaintFittedText(dc, noIcon, icon.adjusted(0, (icon.height() - noIcon.Height()) / 2, 0, 0),
                    selected ? GetHighlightTextColor() : SystemColor::GrayText);
}

CPaintedPart CCategoryManager::RowPart(int index) const
{
    CPaintedPart part;
    part.Name = LineText(index);
    part.Pressable = !m_lines.empty();
    if (m_mode != Mode::Manage && !m_lines.empty()) {
        part.Role = QAccessible::CheckBox;
        part.Checkable = true;
        part.Checked = m_lines[size_t(index)].Checked;
    }
    return part;
}

// ---- focus

// Without a category there is only one thing to do.
void CCategoryManager::TakeFocus()
{
    FocusOn(m_lines.empty() ? static_cast<QWidget*>(m_edit) : this);
}

void CCategoryManager::FocusOn(QWidget* widget)
{
    widget->setFocus();
    FollowFocus();
}

void CCategoryManager::FollowFocus()
{
    SetTitle(GetString(IsAdding()               ? StrAddCategory
                       : m_mode == Mode::Manage ? StrCategoryManager
                                                : StrSetCategories));
    RowsChanged();
}

void CCategoryManager::OnLButtonDown(QPoint at)
{
    FocusOn(this); // a finger on the list takes the keyboard from the field
    CRowListDialog::OnLButtonDown(at);
}

void CCategoryManager::OnKey(int key)
{
    if (key == kKeyUp && GetSelected() == 0)
        FocusOn(m_edit);
    else if (key == kKeySpace)
        Toggle(GetSelected());
    else
        CRowListDialog::OnKey(key);
}

bool CCategoryManager::eventFilter(QObject* watched, QEvent* event)
{
    if (watched != m_edit)
        return CRowListDialog::eventFilter(watched, event);
    if (event->type() == QEvent::FocusIn || event->type() == QEvent::FocusOut) {
        FollowFocus();
        return false;
    }
    if (TakeDialogKey(event))
        return true;
    if (event->type() != QEvent::KeyPress)
        return false;
    const auto* const press = static_cast<QKeyEvent*>(event);
    const int key = VirtualKeyOf(*press);
    if (key == kKeyReturn) {
        if (!press->isAutoRepeat())
            Add(true);
        return true;
    }
    if (key == kKeyDown) {
        FocusOn(this);
        return true;
    }
    return key == kKeyUp;
}

// ---- what can be done

void CCategoryManager::OnRowTapped(int index, int x, bool)
{
    if (m_lines.empty())
        return;
    const int left = RowRect(index).x();
    const auto within = [x, left](const QRect& column) {
        return x >= column.x() - left && x < column.x() - left + column.width();
    };
    if (within(ColorColumn(index)))
        SetColor();
    else if (within(IconColumn(index)))
        SetIcon();
    else if (x < D(kFingerWidth))
        Toggle(index);
}

void CCategoryManager::OnRowEntered(int index)
{
    Toggle(index);
}

void CCategoryManager::Toggle(int index)
{
    if (m_mode == Mode::Manage || m_lines.empty())
        return;
    CLine& line = m_lines[size_t(index)];
    line.Checked = !line.Checked;
    RowsChanged();
}

void CCategoryManager::Say(int textId, int captionId)
{
    CMessageDialog(GetString(textId), GetString(captionId), CMessageDialog::Kind::Warning).Run(this);
}

void CCategoryManager::Add(bool ask)
{
    const QString name = m_edit->text().trimmed();
    if (name.isEmpty())
        return;
    const bool known = std::any_of(m_lines.begin(), m_lines.end(),
                                   [&](const CLine& line) { return CompareText(line.Name, name) == 0; });
    if (known)
        return Say(StrCategoryExists, StrCategoryExistsCaption);
    if (ask) {
        CMessageDialog question(FillText(GetString(StrAddCategoryQuestion), {name}),
                                GetString(StrAddCategory), CMessageDialog::Kind::Question);
        if (question.Run(this) != kAnswerYes)
            return;
    }
    const CCategory* const category = PimStore().Categories().AddLocal(name);
    if (!category)
        return;
    m_lines.push_back({category->Id, category->Name, true});
    m_edit->clear();
    RowsChanged();
    Select(int(m_lines.size()) - 1);
}

void CCategoryManager::SetLook(std::function<void(qint32 id)> put)
{
    if (m_lines.empty())
        return;
    put(IdOf(m_lines[size_t(GetSelected())]));
    RowsChanged();
}

void CCategoryManager::SetIcon()
{
    if (m_lines.empty())
        return;
    const CCategory* const category = PimStore().Categories().FindByName(LineText(GetSelected()));
    QString reference = category ? category->ImageName : QString();
    if (!PickIcon(reference))
        return;
    g_ImageStore.ForgetIcon(reference);
    SetLook([&](qint32 id) { PimStore().Categories().SetImageName(id, reference); });
}

bool CCategoryManager::PickIcon(QString& reference)
{
    CIconPicker picker(reference);
    if (picker.Run(this) != kDone)
        return false;
    reference = picker.GetReference();
    return true;
}

bool CCategoryManager::PickColor(COLORREF& color)
{
    CColorPicker picker(GetString(StrSelectColor), color, GetString(StrColorNone));
    if (picker.Run(this) != kDone)
        return false;
    color = picker.GetColor();
    return true;
}

void CCategoryManager::SetColor()
{
    const CCategory* const category = PimStore().Categories().FindByName(LineText(GetSelected()));
    COLORREF color = category ? category->Color : kColorNotSet;
    if (PickColor(color))
        SetLook([&](qint32 id) { PimStore().Categories().SetColor(id, color); });
}

void CCategoryManager::OnCommand(int command)
{
    switch (command) {
    case CmdMenu:
        return RunMenu();
    case CmdCategoriesCancel:
        return End(kCancelled);
    case CmdAddCategory:
        return Add(false);
    case CmdSetIcon:
        return SetIcon();
    case CmdSetColor:
        return SetColor();
    case CmdRemoveIcon:
        return SetLook([](qint32 id) { PimStore().Categories().SetImageName(id, QString()); });
    case CmdRemoveColor:
        return SetLook([](qint32 id) { PimStore().Categories().SetColor(id, kColorNotSet); });
    default:
        return CRowListDialog::OnCommand(command);
    }
}

void CCategoryManager::RunMenu()
{
    const bool adding = IsAdding();
    CTouchMenu menu(GetTitle());
    if (!adding && !m_lines.empty()) {
        menu.AddRow(StrSetIcon, CmdSetIcon, PictureEdit);
        menu.AddRow(StrRemoveIcon, CmdRemoveIcon, PictureDelete);
        menu.AddRow(StrSetColor, CmdSetColor, PictureEdit);
        menu.AddRow(StrRemoveColor, CmdRemoveColor, PictureDelete);
    }
    if (adding && !m_edit->text().trimmed().isEmpty())
        menu.AddRow(StrAddNewCategory, CmdAddCategory, PictureAdd);
    menu.AddRow(StrCancel, CmdCategoriesCancel, PictureCancel);
    const int command = menu.Run(this);
    if (adding)
        m_edit->setFocus();
    if (command != CmdNone)
        OnCommand(command);
}

void CCategoryManager::OnDone()
{
    // Those of an item are stored with it. Others would be lost, and a filter's with its meaning.
    if (m_mode != Mode::Item && !PimStore().Categories().StoreLocal())
        ShowMessage(this, GetString(StrSaveFailed), GetString(StrSaveFailedCaption));
    m_checked.Clear();
    for (const CLine& line : m_lines) {
        if (line.Checked)
            m_checked.Insert(IdOf(line));
    }
    PimStore().Categories().SaveColorsAndImages(g_Settings);
    End(kDone);
}
