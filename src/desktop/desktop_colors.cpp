#include "desktop/desktop_colors.h"

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusVariant>
#include <QFile>
#include <QSettings>
#include <QStandardPaths>
#include <algorithm>
#include <cmath>
#include <optional>

namespace
{
constexpr qint64 kMaxThemeFile = 1 << 20; // style sheets are some 200 KB

QByteArray Contents(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.read(kMaxThemeFile) : QByteArray();
}

std::optional<COLORREF> ParseTriple(const QByteArray& text) // "61,174,233"
{
    const QList<QByteArray> parts = text.split(',');
    if (parts.size() < 3)
        return std::nullopt;
    quint32 value[3];
    for (int i = 0; i < 3; ++i) {
        bool ok = false;
        value[i] = parts[i].trimmed().toUInt(&ok);
        if (!ok || value[i] > 255)
            return std::nullopt;
    }
    return Rgb(value[0], value[1], value[2]);
}

std::optional<COLORREF> ParseHex(QByteArray text) // "#3584e4" or "#38e"
{
    text = text.trimmed();
    if (!text.startsWith('#'))
        return std::nullopt;
    QByteArray digits = text.mid(1);
    if (digits.size() == 3)
        digits = QByteArray(2, digits[0]) + QByteArray(2, digits[1]) + QByteArray(2, digits[2]);
    bool ok = false;
    const quint32 rgb = digits.toUInt(&ok, 16);
    if (!ok || digits.size() != 6)
        return std::nullopt;
    return Rgb(rgb >> 16 & 0xFF, rgb >> 8 & 0xFF, rgb & 0xFF);
}

CHighlight Completed(std::optional<COLORREF> back, std::optional<COLORREF> text)
{
    if (!back)
        return {};
    return {*back, text.value_or(ReadableOn(*back))};
}

std::optional<COLORREF> GtkColor(const QByteArray& sheet, const QByteArray& name)
{
    const QByteArray key = "@define-color " + name + ' ';
    const qsizetype at = sheet.lastIndexOf(key); // the last definition holds
    if (at < 0)
        return std::nullopt;
    const qsizetype from = at + key.size(), to = sheet.indexOf(';', from);
    return to < 0 ? std::nullopt : ParseHex(sheet.mid(from, to - from));
}

CHighlight FromGtkFiles()
{
    const QString config = QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation);
    for (const char* version : {"gtk-4.0", "gtk-3.0"}) {
        const CHighlight own =
            ParseGtkColors(Contents(config + u'/' + QLatin1String(version) + QStringLiteral("/gtk.css")));
        if (own.IsKnown())
            return own;
    }
    const QSettings gtk(config + QStringLiteral("/gtk-3.0/settings.ini"), QSettings::IniFormat);
    const QString theme = gtk.value(QStringLiteral("Settings/gtk-theme-name")).toString();
    if (theme.isEmpty() || theme.contains(u'/'))
        return {};
    const QString file = QStandardPaths::locate(QStandardPaths::GenericDataLocation,
                                                QStringLiteral("themes/%1/gtk-3.0/gtk.css").arg(theme));
    return file.isEmpty() ? CHighlight() : ParseGtkColors(Contents(file));
}

CHighlight FromFiles()
{
    const QByteArray desktops = qgetenv("XDG_CURRENT_DESKTOP").toLower();
    if (desktops.contains("kde") || desktops.contains("plasma"))
        return ParseKdeColors(Contents(
            QStandardPaths::locate(QStandardPaths::GenericConfigLocation, QStringLiteral("kdeglobals"))));
    return FromGtkFiles();
}

CHighlight FromPortalAnswer(const QVariant& answer)
{
    QVariant value = answer; // wrapped once or twice, by the portal's age
    while (value.canConvert<QDBusVariant>())
        value = value.value<QDBusVariant>().variant();
    if (!value.canConvert<QDBusArgument>())
        return {};
    const auto argument = value.value<QDBusArgument>();
    if (argument.currentSignature() != QLatin1String("(ddd)"))
        return {};
    double red = -1, green = -1, blue = -1;
    argument.beginStructure();
    argument >> red >> green >> blue;
    argument.endStructure();
    return AccentHighlight(red, green, blue);
}

void AskPortal(std::function<void(const CHighlight&)> found)
{
    if (!qEnvironmentVariableIsSet("DBUS_SESSION_BUS_ADDRESS"))
        return;
    const QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected())
        return;
    const QString portal = QStringLiteral("org.freedesktop.portal.Desktop");
    QDBusMessage ask = QDBusMessage::createMethodCall(
        portal, QStringLiteral("/org/freedesktop/portal/desktop"),
        QStringLiteral("org.freedesktop.portal.Settings"), QStringLiteral("Read"));
    ask << QStringLiteral("org.freedesktop.appearance") << QStringLiteral("accent-color");
    ask.setAutoStartService(false); // a desktop that has one runs it
    auto* watcher = new QDBusPendingCallWatcher(bus.asyncCall(ask, 5000));
    QObject::connect(
        watcher, &QDBusPendingCallWatcher::finished, watcher, [watcher, found = std::move(found)] {
            watcher->deleteLater();
            const QDBusPendingReply<QDBusVariant> reply = *watcher;
            if (reply.isError())
                return;
            if (const CHighlight highlight = FromPortalAnswer(reply.value().variant()); highlight.IsKnown())
                found(highlight);
        });
}

double Luminance(COLORREF color)
{
    const auto linear = [](quint32 channel) {
        const double c = channel / 255.0;
        return c <= 0.03928 ? c / 12.92 : std::pow((c + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(RedOf(color)) + 0.7152 * linear(GreenOf(color)) + 0.0722 * linear(BlueOf(color));
}
} // namespace

COLORREF ReadableOn(COLORREF ground)
{
    // White as long as it can be: rows and bars shade the ground towards black.
    constexpr double kEnough = 3.0;
    return 1.05 / (Luminance(ground) + 0.05) >= kEnough ? kColorWhite : kColorBlack;
}

CHighlight ParseKdeColors(const QByteArray& file)
{
    std::optional<COLORREF> back, text;
    bool inSection = false;
    for (const QByteArray& raw : file.split('\n')) {
        const QByteArray line = raw.trimmed();
        if (line.startsWith('['))
            inSection = line == "[Colors:Selection]";
        else if (inSection && line.startsWith("BackgroundNormal="))
            back = ParseTriple(line.mid(17));
        else if (inSection && line.startsWith("ForegroundNormal="))
            text = ParseTriple(line.mid(17));
    }
    return Completed(back, text);
}

CHighlight ParseGtkColors(const QByteArray& sheet)
{
    for (const auto& [back, text] : {std::pair("theme_selected_bg_color", "theme_selected_fg_color"),
                                     std::pair("accent_bg_color", "accent_fg_color")}) {
        if (const auto color = GtkColor(sheet, back))
            return Completed(color, GtkColor(sheet, text));
    }
    return {};
}

CHighlight AccentHighlight(double red, double green, double blue)
{
    for (const double part : {red, green, blue}) {
        if (!(part >= 0 && part <= 1))
            return {};
    }
    const COLORREF back = Rgb(quint32(std::lround(red * 255)), quint32(std::lround(green * 255)),
                              quint32(std::lround(blue * 255)));
    return {back, ReadableOn(back)};
}

void FetchHighlight(std::function<void(const CHighlight&)> found)
{
    if (const CHighlight highlight = FromFiles(); highlight.IsKnown())
        found(highlight);
    else
        AskPortal(std::move(found));
}
