#include "forms/text_edit_dialog.h"
#include "drawing/image_store.h"
#include "drawing/screen_metrics.h"
#include "forms/form_parts.h"
#include "touch/device_pixels.h"
#include "touch/virtual_keys.h"

#include <QGuiApplication>
#include <QInputMethod>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <algorithm>

namespace
{
constexpr int kMargin = 4, kPromptMargin = 12, kPromptHeight = 28, kLeastHeight = 60; // design pixels
constexpr int kFontText = 0;
constexpr int kLongestLine = 32767;

// Of the logical rectangle that a surface rectangle covers.
QRect Logical(const QRect& rect, int k)
{
    return {rect.x() / k, rect.y() / k, rect.width() / k, rect.height() / k};
}
} // namespace

CTextEditDialog::CTextEditDialog(const QString& title, const QString& text, int selectionStart,
                                 int selectionEnd)
    : CFormDialog(title), m_edit(new QPlainTextEdit(this)), m_text(text)
{
    LightenControl(*m_edit);
    m_edit->setFrameShape(QFrame::NoFrame);
    m_edit->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
    m_edit->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_edit->setWordWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    m_edit->setTabChangesFocus(true);
    m_edit->setAccessibleName(GetTitle());
    m_edit->setInputMethodHints(TextInputHints() | Qt::ImhMultiLine);
    m_edit->setPlainText(text);
    const int end = m_edit->document()->characterCount() - 1;
    QTextCursor cursor = m_edit->textCursor();
    cursor.setPosition(selectionStart < 0 ? end : std::min(selectionStart, end));
    if (selectionStart >= 0 && selectionEnd > selectionStart)
        cursor.setPosition(std::min(selectionEnd, end), QTextCursor::KeepAnchor);
    m_edit->setTextCursor(cursor);
    m_edit->document()->setModified(false);
    m_edit->installEventFilter(this);
    connect(QGuiApplication::inputMethod(), &QInputMethod::keyboardRectangleChanged, this,
            [this] { OnLayout(Layout().Client); });
}

QString CTextEditDialog::GetText() const
{
    return m_edit->document()->isModified() ? EditedPlainText(*m_edit, m_text) : m_text;
}

void CTextEditDialog::OnLayout(const QRect& client)
{
    if (client.isEmpty())
        return;
    const int k = CurrentFactor();
    m_edit->setFont(LogicalFont(g_ImageStore.Font(kFontText), k));
    const QRect area = AboveKeyboard(client, D(kLeastHeight));
    m_edit->setGeometry(Logical(area.adjusted(D(kMargin), 0, 0, 0), k));
    m_edit->show();
    m_edit->ensureCursorVisible();
}

void CTextEditDialog::TakeFocus()
{
    m_edit->setFocus();
    m_edit->ensureCursorVisible();
}

bool CTextEditDialog::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == m_edit && TakeDialogKey(event))
        return true;
    // The Enter that opened the page goes on repeating.
    if (watched == m_edit && event->type() == QEvent::KeyPress) {
        const auto* const press = static_cast<QKeyEvent*>(event);
        if (press->isAutoRepeat() && VirtualKeyOf(*press) == kKeyReturn && !m_edit->document()->isModified())
            return true;
    }
    return CFormDialog::eventFilter(watched, event);
}

// ---- one line

CTextPromptDialog::CTextPromptDialog(const QString& title, const QString& text)
    : CFormDialog(title), m_edit(new QLineEdit(this))
{
    LightenControl(*m_edit);
    m_edit->setAccessibleName(GetTitle());
    m_edit->setMaxLength(kLongestLine);
    m_edit->setInputMethodHints(TextInputHints());
    m_edit->setText(text);
    m_edit->installEventFilter(this);
}

QString CTextPromptDialog::GetText() const
{
    return m_edit->text();
}

int CTextPromptDialog::ContentHeight(int)
{
    return 2 * D(kPromptMargin) + D(kPromptHeight);
}

void CTextPromptDialog::OnLayout(const QRect& client)
{
    if (client.isEmpty())
        return;
    const int k = CurrentFactor();
    m_edit->setFont(LogicalFont(g_ImageStore.Font(kFontText), k));
    m_edit->setGeometry(Logical({client.x() + D(kPromptMargin), client.y() + D(kPromptMargin),
                                 client.width() - 2 * D(kPromptMargin), D(kPromptHeight)},
                                k));
    m_edit->show();
}

void CTextPromptDialog::TakeFocus()
{
    m_edit->setFocus();
    m_edit->end(false);
}

bool CTextPromptDialog::eventFilter(QObject* watched, QEvent* event)
{
    if (watched != m_edit)
        return CFormDialog::eventFilter(watched, event);
    if (TakeDialogKey(event))
        return true;
    if (event->type() != QEvent::KeyPress)
        return false;
    const auto* const press = static_cast<QKeyEvent*>(event);
    if (VirtualKeyOf(*press) != kKeyReturn)
        return false;
    if (!press->isAutoRepeat())
        OnDone();
    return true;
}
