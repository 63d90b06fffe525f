#include "shell/question.h"
#include "drawing/image_store.h"
#include "drawing/paint.h"
#include "drawing/screen_metrics.h"
#include "settings/system_colors.h"
#include "touch/device_pixels.h"
#include "util/string_ids.h"
#include "util/string_store.h"

#include <QMessageBox>
#include <QPushButton>
#include <algorithm>

namespace
{
constexpr int kDialogFont = 0;
constexpr QSize kButtonSize{80, 40}; // design pixels: a finger's
// A text names its item in full, and a subject may be as long as a book: its buttons must stay in reach.
constexpr int kMostCharacters = 300;
constexpr int kEndCharacters = 60; // of those, kept from the text's end
constexpr int kMostLines = 6;
constexpr int kLongestWord = 24; // before it may break
constexpr QChar kEllipsis(0x2026), kMayBreak(0x200B);

QString Shortened(const QString& whole)
{
    const QString text = whole.count(u'\n') >= kMostLines ? whole.simplified() : whole;
    if (text.size() <= kMostCharacters)
        return text;
    QString front = text.left(kMostCharacters - kEndCharacters), end = text.right(kEndCharacters);
    if (front.back().isHighSurrogate())
        front.chop(1);
    if (end.front().isLowSurrogate())
        end.remove(0, 1);
    return front + kEllipsis + end;
}

// No line of a dialog is wide enough for any word.
QString WithBreaks(const QString& text)
{
    QString result;
    int word = 0;
    for (const QChar c : text) {
        if (word >= kLongestWord && !c.isLowSurrogate() && !c.isMark()) {
            result += kMayBreak;
            word = 0;
        }
        result += c;
        word = c.isSpace() ? 0 : word + 1;
    }
    return result;
}

Answerer g_answerer;

struct Button {
    QString Text, Hint;
};

// The number of the button from 1 on; the last one is also the way out, which answers 0.
int RunBox(QWidget* owner, const QString& text, const QString& caption, QMessageBox::Icon icon,
           const QList<Button>& buttons)
{
    if (g_answerer)
        return g_answerer(text, caption);
    QMessageBox box(icon, caption, WithBreaks(Shortened(text)), QMessageBox::NoButton, owner);
    box.setTextFormat(Qt::PlainText);
    const int k = SurfaceFactor(owner); // a live control counts in logical pixels
    QFont font = g_ImageStore.Font(kDialogFont);
    font.setPixelSize(std::max(font.pixelSize() / k, 1));
    box.setFont(font);
    QPalette palette = box.palette();
    palette.setColor(QPalette::Window, ToQColor(SystemColor::Window));
    palette.setColor(QPalette::WindowText, ToQColor(SystemColor::WindowText));
    box.setPalette(palette);
    QList<QAbstractButton*> made;
    for (const Button& button : buttons) {
        const bool last = made.size() + 1 == buttons.size();
        made += box.addButton(button.Text, last ? QMessageBox::RejectRole : QMessageBox::AcceptRole);
        made.last()->setToolTip(button.Hint);
        made.last()->setFont(font);
        made.last()->setMinimumSize(D(kButtonSize.width()) / k, D(kButtonSize.height()) / k);
    }
    box.setEscapeButton(made.last());
    box.exec();
    const qsizetype chosen = made.indexOf(box.clickedButton());
    return chosen < 0 || chosen + 1 == made.size() ? 0 : int(chosen) + 1;
}
} // namespace

void SetAnswerer(Answerer answerer)
{
    g_answerer = std::move(answerer);
}

bool AskYesNo(QWidget* owner, const QString& text, const QString& caption)
{
    return RunBox(owner, text, caption, QMessageBox::Question,
                  {{GetString(StrYes), {}}, {GetString(StrNo), {}}}) == 1;
}

void ShowMessage(QWidget* owner, const QString& text, const QString& caption)
{
    RunBox(owner, text, caption, QMessageBox::Warning, {{GetString(StrOk), {}}});
}

IWriterQuestions::Choice CDialogQuestions::AskTwoWays(const QString& question, const QString& first,
                                                      const QString& firstText, const QString& second,
                                                      const QString& secondText)
{
    const int answer = RunBox(m_owner, question, GetString(StrProgramTitle), QMessageBox::Question,
                              {{first, firstText}, {second, secondText}, {GetString(StrCancel), {}}});
    m_wentBack = answer != 1 && answer != 2;
    return m_wentBack ? Choice::None : answer == 1 ? Choice::First : Choice::Second;
}

void CDialogQuestions::ShowMessage(const QString& text, const QString& title)
{
    ::ShowMessage(m_owner, text, title);
}
