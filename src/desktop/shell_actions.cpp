#include "desktop/shell_actions.h"

#include <QDesktopServices>
#include <QFileInfo>
#include <QGuiApplication>
#include <QProcess>
#include <QStandardPaths>
#include <QUrl>

namespace
{
ProgramStarter g_starter;

bool Open(const QByteArray& address)
{
    if (address.isEmpty())
        return false;
    const QString opener =
        g_starter ? QStringLiteral("xdg-open") : QStandardPaths::findExecutable(QStringLiteral("xdg-open"));
    if (!opener.isEmpty())
        return StartProgram(opener, {QString::fromLatin1(address)});
    return qobject_cast<QGuiApplication*>(QCoreApplication::instance()) &&
           QDesktopServices::openUrl(QUrl::fromEncoded(address));
}
} // namespace

void SetProgramStarter(ProgramStarter starter)
{
    g_starter = std::move(starter);
}

bool StartProgram(const QString& program, const QStringList& arguments)
{
    return g_starter ? g_starter(program, arguments) : QProcess::startDetached(program, arguments);
}

QByteArray CallAddress(const QString& number)
{
    QByteArray digits;
    for (const QChar c : number) {
        if (c.isDigit())
            digits += char('0' + c.digitValue());
        else if (c == u'*' || (c == u'+' && digits.isEmpty()))
            digits += char(c.unicode());
        else if (c == u'#')
            digits += "%23";
    }
    return digits.isEmpty() || digits == "+" ? QByteArray() : "tel:" + digits;
}

QByteArray MailAddress(const QString& address)
{
    const QString plain = address.trimmed();
    if (plain.isEmpty())
        return {};
    // A question mark or ampersand would begin header fields of the message.
    return "mailto:" + QUrl::toPercentEncoding(plain, "@,+");
}

QByteArray WebAddress(const QString& url)
{
    QString text = url.trimmed();
    if (text.startsWith(u'w', Qt::CaseInsensitive))
        text.prepend(QStringLiteral("http://"));
    const QUrl parsed(text, QUrl::TolerantMode);
    const QString scheme = parsed.scheme();
    if (!parsed.isValid() || parsed.host().isEmpty() ||
        (scheme != QLatin1String("http") && scheme != QLatin1String("https")))
        return {};
    // What a browser never needs bare is encoded, whatever the handler's script does with it.
    QByteArray encoded = parsed.toEncoded(QUrl::FullyEncoded);
    for (const char c : {'\'', '(', ')', '$', ';', '`', '"', '\\', '|', '<', '>', '*', '!'})
        encoded.replace(QByteArray(1, c), '%' + QByteArray::number(uchar(c), 16).toUpper());
    return encoded;
}

bool MakeCall(const QString& number)
{
    return Open(CallAddress(number));
}

bool SendMail(const QString& address)
{
    return Open(MailAddress(address));
}

bool OpenUrl(const QString& url)
{
    return Open(WebAddress(url));
}

bool OpenFile(const QString& path)
{
    if (const QFileInfo file(path); file.exists())
        return Open(QUrl::fromLocalFile(file.absoluteFilePath()).toEncoded(QUrl::FullyEncoded));
    return OpenUrl(path);
}
