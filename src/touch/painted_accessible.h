// Painted rows, keys and cells for those who read the screen by Qt's accessibility interface.
// A widget that paints its parts also inherits IPaintedParts and calls OfferPaintedParts once
// (in its constructor); its parts then are children of its accessible object, before its child
// widgets, each with name, value, role, state and the action "press".
// A view does the same: count its visible rows, name each by its texts, and press as a tap does.
// Units: rectangles in logical pixels of the widget.
#pragma once
#include <QAccessible>
#include <QRect>
#include <QString>
#include <functional>
#include <vector>

class QWidget;

struct CPaintedPart {
    QString Name, Value;
    QAccessible::Role Role = QAccessible::ListItem;
    QRect Rect;
    bool Selected = false;
    bool Checkable = false, Checked = false;
    bool Pressable = true; // a header is not
};

class IPaintedParts
{
public:
    virtual ~IPaintedParts() = default;
    virtual int GetPartCount() const = 0;
    virtual CPaintedPart GetPart(int index) const = 0;
    virtual void PressPart(int index) = 0; // as a tap on it would
};

// Tells whoever reads the screen that this part has the keyboard's selection now.
void TellPartSelected(QWidget* widget, int part);
void TellPartRenamed(QWidget* widget, int part);

// Whether somebody reads the screen, so that telling is worth its cost.
bool IsScreenRead();
// Hears what is told from now on, as a reader of the screen would; none: the system's alone.
using PartListener = std::function<void(QWidget*, int part, QAccessible::Event)>;
void SetPartListener(PartListener listener);

// For surfaces of few parts: what is selected or checked now and was not when last asked is told.
// Costs nothing while nobody reads the screen.
class CToldParts
{
public:
    void Tell(QWidget* widget, const IPaintedParts& parts);

private:
    struct State {
        bool Selected, Checked;
    };
    std::vector<State> m_told;
};
void OfferPaintedParts(); // for all widgets with parts; harmless when repeated
