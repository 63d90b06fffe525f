// A message, or a question to be answered by yes or no. A text longer than the page scrolls.
#pragma once
#include "forms/form_dialog.h"
#include "touch/i_touch_client.h"
#include "touch/touch_navigator.h"

class CMessageDialog : public CFormDialog, private ITouchClient
{
public:
    enum class Kind { Question, Warning, Information };

    // Run answers a MessageAnswer: of a question yes or no, else OK.
    CMessageDialog(const QString& text, const QString& caption, Kind kind);
    const QString& GetText() const { return m_text; }
    CTouchNavigator& Navigator() { return m_touch; }

protected:
    int GetMenuBarId() const override;
    int ContentHeight(int width) override;
    void OnLayout(const QRect& client) override;
    void PaintContent(QPainter& dc, const QRect& client) override;
    void OnCommand(int command) override;
    void OnKey(int key) override;
    void OnLButtonDown(QPoint at) override;
    void OnMouseMove(QPoint at) override;
    void OnLButtonUp(QPoint at) override;
    void OnWheel(int angle) override;

private:
    int RenderContent(quint32 value, QPainter& dc, quint32 paintArgument, int scroll, int width,
                      int height) override;
    bool OnPress(quint32, int, int) override { return false; }
    void OnDragStart(quint32) override {}
    void OnTap(quint32, int, int) override {}
    int TextHeight(int width) const;
    void SelectKey(int index);
    void ScrollLines(int lines);

    QString m_text;
    Kind m_kind;
    CTouchNavigator m_touch;
    int m_currentKey = 0; // that Enter presses
};
