#include "touch/wait_cursor.h"

#include <QCursor>
#include <QGuiApplication>

CWaitCursor::CWaitCursor()
{
    QGuiApplication::setOverrideCursor(QCursor(Qt::WaitCursor));
}

CWaitCursor::~CWaitCursor()
{
    QGuiApplication::restoreOverrideCursor();
}
