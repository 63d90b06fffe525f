#include "desktop/keyboard_service.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusReply>
#include <QDBusVariant>
#include <QGuiApplication>
#include <QInputMethod>

namespace
{
const QString kService = QStringLiteral("sm.puri.OSK0");
const QString kObject = QStringLiteral("/sm/puri/OSK0");
constexpr int kAnswerMs = 300; // a keyboard that hangs must not take the calendar with it

QInputMethod* InputMethod()
{
    return qobject_cast<QGuiApplication*>(QCoreApplication::instance()) ? QGuiApplication::inputMethod()
                                                                        : nullptr;
}

bool HasService(const QDBusConnection& bus)
{
    if (!bus.isConnected())
        return false;
    QDBusMessage ask = QDBusMessage::createMethodCall(
        QStringLiteral("org.freedesktop.DBus"), QStringLiteral("/"), QStringLiteral("org.freedesktop.DBus"),
        QStringLiteral("NameHasOwner"));
    ask << kService;
    const QDBusReply<bool> answer = bus.call(ask, QDBus::Block, kAnswerMs);
    return answer.isValid() && answer.value();
}
} // namespace

void ShowOnScreenKeyboard(bool show)
{
    if (QInputMethod* input = InputMethod())
        input->setVisible(show);
    const QDBusConnection bus = QDBusConnection::sessionBus();
    if (!HasService(bus))
        return;
    QDBusMessage call =
        QDBusMessage::createMethodCall(kService, kObject, kService, QStringLiteral("SetVisible"));
    call << show;
    call.setAutoStartService(false);
    bus.asyncCall(call, kAnswerMs);
}

bool IsOnScreenKeyboardShown()
{
    if (QInputMethod* input = InputMethod(); input && input->isVisible())
        return true;
    const QDBusConnection bus = QDBusConnection::sessionBus();
    if (!HasService(bus))
        return false;
    QDBusMessage ask = QDBusMessage::createMethodCall(
        kService, kObject, QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("Get"));
    ask << kService << QStringLiteral("Visible");
    const QDBusReply<QDBusVariant> answer = bus.call(ask, QDBus::Block, kAnswerMs);
    return answer.isValid() && answer.value().variant().toBool();
}
