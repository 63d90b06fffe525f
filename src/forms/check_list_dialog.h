// A list of texts with a check box each, under soft keys "Done" and "Cancel".
#pragma once
#include "forms/form_dialog.h"
#include "touch/i_touch_client.h"
#include "touch/touch_navigator.h"

#include <vector>

class CCheckListDialog : public CFormDialog, private ITouchClient
{
public:
    struct CRow {
        QString Text;
        bool Checked = false;
    };
    CCheckListDialog(const QString& title, std::vector<CRow> rows);
    const std::vector<CRow>& Rows() const { return m_rows; }
    bool IsChecked(int index) const { return m_rows[size_t(index)].Checked; }
    int CountChecked() const;
    QRect RowRect(int index) const; // in the dialog's surface, scrolled

protected:
    int ContentHeight(int width) override;
    void OnLayout(const QRect& client) override;
    void PaintContent(QPainter& dc, const QRect& client) override;
    void OnKey(int key) override;
    void OnLButtonDown(QPoint at) override;
    void OnMouseMove(QPoint at) override;
    void OnLButtonUp(QPoint at) override;
    void OnWheel(int angle) override;

private:
    int RenderContent(quint32 value, QPainter& dc, quint32 paintArgument, int scroll, int width,
                      int height) override;
    bool OnPress(quint32 value, int x, int y) override;
    void OnDragStart(quint32) override {}
    void OnTap(quint32 value, int x, int y) override;
    void Toggle(int index);
    void Select(int index);

    std::vector<CRow> m_rows;
    int m_selected = 0;
    CTouchNavigator m_touch;
};
