#include "desktop/mail_message.h"
#include "desktop/shell_actions.h"

#include <QProcess>
#include <QStandardPaths>

namespace
{
const QString kComposer = QStringLiteral("xdg-email");
constexpr int kAskMs = 2000;

// An option of the tool would be taken for what it is not.
bool IsAddress(const QString& text)
{
    return text.contains(u'@') && !text.startsWith(u'-') && !text.contains(u' ');
}
} // namespace

bool HasMailProgram()
{
    if (QStandardPaths::findExecutable(kComposer).isEmpty())
        return false;
    QProcess ask;
    ask.start(QStringLiteral("xdg-mime"), {QStringLiteral("query"), QStringLiteral("default"),
                                           QStringLiteral("x-scheme-handler/mailto")});
    return ask.waitForFinished(kAskMs) && !ask.readAllStandardOutput().trimmed().isEmpty();
}

QStringList MailArguments(const CMailMessage& message)
{
    QStringList arguments{QStringLiteral("--utf8"), QStringLiteral("--subject"), message.Subject};
    if (!message.Body.isEmpty())
        arguments << QStringLiteral("--body") << message.Body;
    if (!message.Attachment.isEmpty())
        arguments << QStringLiteral("--attach") << message.Attachment;
    for (const QString& address : message.Addresses) {
        if (IsAddress(address.trimmed()))
            arguments << address.trimmed();
    }
    return arguments;
}

bool OpenMailMessage(const CMailMessage& message)
{
    return StartProgram(kComposer, MailArguments(message));
}
