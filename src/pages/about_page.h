// What program this is: its name, the line of builds it follows, its version and when it was built.
#pragma once
#include "forms/form_dialog.h"

#include <QStringList>

class CAboutPage : public CFormDialog
{
public:
    CAboutPage();
    const QStringList& Lines() const { return m_lines; }

protected:
    int GetMenuBarId() const override;
    int ContentHeight(int width) override;
    void PaintContent(QPainter& dc, const QRect& client) override;
    void OnCommand(int) override { End(kDone); } // there is one key
    void OnKey(int key) override;

private:
    int LineHeight(int line, int width) const;
    QStringList m_lines;
};
