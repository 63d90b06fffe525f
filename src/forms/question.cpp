#include "forms/question.h"
#include "forms/menu_bars.h"
#include "forms/message_dialog.h"
#include "forms/two_choice_dialog.h"
#include "util/string_ids.h"
#include "util/string_store.h"

namespace
{
// A text names its item in full, and a subject may be as long as a book: the question must stay in sight.
constexpr int kMostCharacters = 300;
constexpr int kEndCharacters = 60; // of those, kept from the text's end
constexpr int kMostLines = 6;
constexpr QChar kEllipsis(0x2026);

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

Answerer g_answerer;

int RunMessage(QWidget* owner, const QString& text, const QString& caption, CMessageDialog::Kind kind)
{
    return CMessageDialog(Shortened(text), caption, kind).Run(owner);
}
} // namespace

void SetAnswerer(Answerer answerer)
{
    g_answerer = std::move(answerer);
}

bool AskYesNo(QWidget* owner, const QString& text, const QString& caption)
{
    if (g_answerer)
        return g_answerer(text, caption) == 1;
    return RunMessage(owner, text, caption, CMessageDialog::Kind::Question) == kAnswerYes;
}

void ShowMessage(QWidget* owner, const QString& text, const QString& caption)
{
    if (g_answerer)
        g_answerer(text, caption);
    else
        RunMessage(owner, text, caption, CMessageDialog::Kind::Warning);
}

IWriterQuestions::Choice CDialogQuestions::AskTwoWays(const QString& question, const QString& first,
                                                      const QString& firstText, const QString& second,
                                                      const QString& secondText)
{
    const QString title = GetString(StrProgramTitle);
    const int answer =
        g_answerer ? g_answerer(question, title)
                   : CTwoChoiceDialog(title, question, first, firstText, second, secondText).Run(m_owner);
    m_wentBack = answer != 1 && answer != 2;
    return m_wentBack ? Choice::None : answer == 1 ? Choice::First : Choice::Second;
}

void CDialogQuestions::ShowMessage(const QString& text, const QString& title)
{
    ::ShowMessage(m_owner, text, title);
}
