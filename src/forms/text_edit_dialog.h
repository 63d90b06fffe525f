// A text alone on the page: with line ends, as a note, or one line, as a phrase.
// The result is GetText after Run answered kDone.
#pragma once
#include "forms/form_dialog.h"

class QLineEdit;
class QPlainTextEdit;

class CTextEditDialog : public CFormDialog
{
public:
    // A selection of -1 puts the caret at the text's end. The text is shown with single line ends,
    // which is what the selection counts by.
    CTextEditDialog(const QString& title, const QString& text, int selectionStart = -1,
                    int selectionEnd = -1);
    QString GetText() const; // unchanged to the last sign when nothing was typed
    QPlainTextEdit* Edit() const { return m_edit; }

protected:
    void OnLayout(const QRect& client) override;
    void PaintContent(QPainter&, const QRect&) override {}
    void TakeFocus() override;
    bool WantsKeyboard() const override { return true; }
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    QPlainTextEdit* m_edit;
    QString m_text;
};

class CTextPromptDialog : public CFormDialog
{
public:
    CTextPromptDialog(const QString& title, const QString& text);
    QString GetText() const;
    QLineEdit* Edit() const { return m_edit; }

protected:
    int ContentHeight(int width) override;
    void OnLayout(const QRect& client) override;
    void PaintContent(QPainter&, const QRect&) override {}
    void TakeFocus() override;
    bool WantsKeyboard() const override { return true; }
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    QLineEdit* m_edit;
};
