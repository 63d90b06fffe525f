// Contacts by name, narrowed by what is typed: to insert one with a number of theirs, or to check
// those who attend.
#pragma once
#include "desktop/hardware_keyboard.h"
#include "forms/row_list_dialog.h"
#include "records/attendees_blob.h"

#include <vector>

class CContactPicker : public CRowListDialog
{
public:
    CContactPicker();                                          // one contact and a number
    explicit CContactPicker(std::vector<CAttendee> attendees); // several
    const QString& GetText() const { return m_text; }          // "Name @ number"
    const std::vector<CAttendee>& GetAttendees() const { return m_attendees; }
    const QString& SearchText() const { return m_search; }
    QString LineText(int index) const; // what stands there, the line of no matches too

protected:
    int GetMenuBarId() const override;
    int RowCount() const override;
    void PaintRow(QPainter& dc, int index, const QRect& rect, bool selected) override;
    void OnRowTapped(int index, int x, bool wasSelected) override;
    int HeadHeight(int width) override;
    void PaintHead(QPainter& dc, const QRect& rect) override;
    CPaintedPart RowPart(int index) const override;
    int ContentHeight(int) override { return kAllThereIs; } // it stays while the list narrows
    void OnDone() override;
    bool WantsKeyboard() const override { return true; }
    void keyPressEvent(QKeyEvent* event) override;
    void inputMethodEvent(QInputMethodEvent* event) override;
    QVariant inputMethodQuery(Qt::InputMethodQuery query) const override;

private:
    struct CLine {
        quint32 ItemId = 0; // 0: an attendee who is no contact
        QString Name, Address;
        QString Key, KeypadKey; // lower-cased, and as the digits of a telephone's keys
        bool Checked = false;
    };
    struct CMatch {
        int Line, Start, Length;
    };
    void ReadContacts();
    void AddStrangers();
    void Type(const QString& text);
    void FillList();
    CMatch MatchOf(int line) const;
    void Act(int index);

    bool m_several;
    bool m_keypad = !HasHardwareKeyboard(); // digits find the letters of a telephone's keys, too
    QString m_text, m_search;
    std::vector<CAttendee> m_attendees;
    std::vector<CLine> m_lines;
    std::vector<CMatch> m_shown;
};
