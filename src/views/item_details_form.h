// The read-only page of one appointment or task: what it says, and links that can be tapped.
// The item is copied, so the page stands whatever notices arrive while it runs.
#pragma once
#include "forms/form_dialog.h"
#include "pim/items.h"
#include "touch/i_touch_client.h"
#include "touch/touch_navigator.h"
#include "views/link_text.h"

#include <functional>
#include <memory>
#include <vector>

class CItemDetailsForm : public CFormDialog, private ITouchClient
{
public:
    // Opens the editor on the item; true when the page has served its purpose and closes.
    using Editor = std::function<bool(const CPimItem& item, const QString& note, QWidget* owner)>;

    CItemDetailsForm(const CAppointment& item, Editor editor);
    CItemDetailsForm(const CTask& item, Editor editor);
    ~CItemDetailsForm() override;

    // For tests, and for what drives the page from outside.
    CTouchNavigator& Scroller() { return m_scroller; }
    struct CLinkPlace {
        const CTextLink* Link;
        std::vector<QRect> Rects; // content coordinates
    };
    const std::vector<CLinkPlace>& Links() const { return m_links; } // from top to bottom
    int CurrentLink() const { return m_currentLink; }                // index; -1 without links

protected:
    int GetMenuBarId() const override;
    bool SlidesIn() const override { return true; }
    int ContentHeight(int width) override;
    void OnLayout(const QRect& client) override;
    void PaintContent(QPainter& dc, const QRect& client) override;
    void OnCommand(int command) override;
    void OnKey(int key) override;
    void OnLButtonDown(QPoint at) override;
    void OnMouseMove(QPoint at) override;
    void OnLButtonUp(QPoint at) override;
    void OnWheel(int angle) override;
    int ContentPartCount() const override { return int(m_parts.size()); }
    CPaintedPart ContentPart(int index) const override;
    void PressContentPart(int index) override;

private:
    // A part of the page at its place in the content.
    struct CLine {
        enum Shape { kText, kPicture, kSeparator } Kind = kText;
        QRect Rect;
        CLinkText Text;
        int Image = 0;
        COLORREF Color = 0;
    };

    int RenderContent(quint32 value, QPainter& dc, quint32 paintArgument, int scroll, int width,
                      int height) override;
    bool OnPress(quint32, int, int) override { return false; }
    void OnDragStart(quint32) override {}
    void OnTap(quint32 value, int x, int y) override;

    void ReadTexts();
    void LayOut(int width);
    CLine& AddText(const QString& text, int font, COLORREF color, int left, int right, int group);
    void AddSeparator();
    void AddLabelled(int labelId, COLORREF labelColor, const QString& text);
    bool AddPicture(int image, int left, int lineHeight);
    void AddSubject();
    void AddDates();
    void AddAppointment(const CAppointment& item);
    void AddTask(const CTask& item);
    void AddReminder();
    void AddMarks();
    void CollectLinks();
    void MoveLink(int direction);
    int LinkTop(int link) const; // and bottom, both from the page's visible top edge
    int LinkBottom(int link) const;
    void FollowLink(int link); // as a tap on it does
    void Activate(const CTextLink& link);
    void Edit();

    std::unique_ptr<CPimItem> m_item; // our own
    Editor m_editor;
    QString m_note, m_attendees, m_recurrence;
    CTouchNavigator m_scroller;
    int m_currentLink = -1;
    int m_labelWidth = 0;
    std::vector<std::unique_ptr<CLine>> m_lines;
    std::vector<CLinkPlace> m_links;
    struct CPart {
        const CLine* Line;
        int Link; // of the line, -1: the line itself
    };
    std::vector<CPart> m_parts; // for readers of the screen: each text, behind it its links
    int m_laidOutWidth = -1, m_laidOutMultiple = 0;
    int m_y = 0; // while laying out; then the content's height
};

// The page of an appointment or task; nothing for other kinds. The item may go while it runs.
void ShowItemDetails(const CPimItem& item, QWidget* owner);
