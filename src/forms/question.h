// Short questions and messages in the program's own colours, over the window they concern.
#pragma once
#include "pim/pim_store.h"

#include <QString>
#include <functional>

class QWidget;

bool AskYesNo(QWidget* owner, const QString& text, const QString& caption);
void ShowMessage(QWidget* owner, const QString& text, const QString& caption);

// What writing asks, over a window.
class CDialogQuestions : public IWriterQuestions
{
public:
    explicit CDialogQuestions(QWidget* owner) : m_owner(owner) {}
    Choice AskTwoWays(const QString& question, const QString& first, const QString& firstText,
                      const QString& second, const QString& secondText) override;
    void ShowMessage(const QString& text, const QString& title) override;
    bool WentBack() const { return m_wentBack; } // the user chose neither

private:
    QWidget* m_owner;
    bool m_wentBack = false;
};

// Answers in the place of a person: the number of the choice from 1 on, 0 for none. "Yes" is 1.
// An empty one returns to the dialogs.
using Answerer = std::function<int(const QString& text, const QString& caption)>;
void SetAnswerer(Answerer answerer);
