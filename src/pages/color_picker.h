// Chooses a colour: from a palette, by its HTML notation, or by red, green and blue.
// Shape: three tabs over one page, the chosen colour in a strip below; the menu changes the tab.
// Values: red in the lowest byte; kColorNotSet is the default colour, where the caller offers it.
#pragma once
#include "forms/form_dialog.h"
#include "util/color.h"

#include <array>
#include <span>

class QLineEdit;
class QSlider;

class CColorPicker : public CFormDialog
{
public:
    enum Tab { kPalette, kHtml, kValues, kTabCount };
    static constexpr COLORREF kCancelledColor = 0xFFFFFFFE; // of a picker that was left by "Cancel"
    static constexpr int kColumns = 10;

    // `defaultText` names the entry for the default colour; empty: it is not offered.
    CColorPicker(const QString& title, COLORREF color, const QString& defaultText);
    ~CColorPicker() override;
    COLORREF GetColor() const { return m_chosen; } // kCancelledColor until it is done

    static std::span<const COLORREF> Palette();
    Tab GetTab() const { return m_tab; }
    void ShowTab(Tab tab);
    QRect TabRect(int tab) const;       // in the dialog's surface
    QRect SwatchRect(int swatch) const; // likewise
    QLineEdit* HtmlEdit() const { return m_html; }
    QLineEdit* ValueEdit(int part) const { return m_edits[size_t(part)]; } // red, green, blue
    QSlider* ValueSlider(int part) const { return m_sliders[size_t(part)]; }

protected:
    int GetMenuBarId() const override;
    int ContentHeight(int width) override;
    void OnLayout(const QRect& client) override;
    void PaintContent(QPainter& dc, const QRect& client) override;
    int ContentPartCount() const override;
    CPaintedPart ContentPart(int index) const override;
    void PressContentPart(int index) override;
    void TakeFocus() override;
    void OnCommand(int command) override;
    void OnDone() override;
    void OnKey(int key) override;
    void OnLButtonDown(QPoint at) override;
    void OnLButtonUp(QPoint at) override;
    bool WantsKeyboard() const override { return m_tab != kPalette; }
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    QRect PageRect() const; // between the tabs and the strip
    QRect PreviewRect() const;
    QRect ValueRow(int part) const;
    QString LabelOf(int part) const;
    void PaintTabs(QPainter& dc) const;
    void PaintPalette(QPainter& dc) const;
    void PaintPreview(QPainter& dc) const;
    void PlaceControls();
    int HitSwatch(QPoint at) const;
    void TakeSwatch(int swatch);
    void EndWith(COLORREF color);
    void RunMenu();
    void ShowColor(); // in fields and sliders
    bool CommitEdit(int part);
    void CommitHtml();
    void SetPart(int part, int value);
    void MoveFocus(int step);

    COLORREF m_color, m_chosen = kCancelledColor;
    QString m_defaultText;
    Tab m_tab = kPalette;
    int m_focused = 0; // swatch
    int m_pressed = -1, m_pressedTab = -1;
    std::array<int, 3> m_parts{}; // red, green, blue
    QRect m_client;
    QLineEdit* m_html;
    std::array<QLineEdit*, 3> m_edits{};
    std::array<QSlider*, 3> m_sliders{};
    bool m_telling = false; // of a value that is none
};
