#include "touch/virtual_keys.h"

#include <QKeyEvent>

int VirtualKeyOf(const QKeyEvent& event)
{
    if (event.modifiers() & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier))
        return kKeyNone; // "copy" completes no task
    const int key = event.key();
    if ((key >= Qt::Key_0 && key <= Qt::Key_9) || (key >= Qt::Key_A && key <= Qt::Key_Z))
        return key; // Qt's numbers of these are the same
    switch (key) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
    case Qt::Key_Select:
        return kKeyReturn;
    case Qt::Key_Escape:
    case Qt::Key_Back:
        return kKeyEscape;
    case Qt::Key_Space:
        return kKeySpace;
    case Qt::Key_PageUp:
        return kKeyPageUp;
    case Qt::Key_PageDown:
        return kKeyPageDown;
    case Qt::Key_End:
        return kKeyEnd;
    case Qt::Key_Home:
        return kKeyHome;
    case Qt::Key_Left:
        return kKeyLeft;
    case Qt::Key_Up:
        return kKeyUp;
    case Qt::Key_Right:
        return kKeyRight;
    case Qt::Key_Down:
        return kKeyDown;
    case Qt::Key_F1:
        return kKeyF1;
    case Qt::Key_F2:
        return kKeyF2;
    case Qt::Key_F3:
        return kKeyF3;
    default:
        return kKeyNone;
    }
}
