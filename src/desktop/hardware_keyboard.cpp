#include "desktop/hardware_keyboard.h"
#include "settings/settings.h"

#include <QFile>
#include <QInputDevice>
#include <algorithm>

namespace
{
std::optional<bool> s_replaced;

// The lowest 32 bits of a bitmap, whose words stand highest first.
quint32 LowBits(const QByteArray& words)
{
    return quint32(words.mid(words.lastIndexOf(' ') + 1).toULongLong(nullptr, 16));
}

bool HasTouchScreen()
{
    const auto devices = QInputDevice::devices();
    return std::any_of(devices.begin(), devices.end(), [](const QInputDevice* device) {
        return device->type() == QInputDevice::DeviceType::TouchScreen;
    });
}

QByteArray DevicesOfKernel()
{
    QFile file(QStringLiteral("/proc/bus/input/devices"));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}
} // namespace

bool HasKeyboardAmong(bool touchScreen, const QByteArray& devices)
{
    constexpr quint32 kTopRow = 0x03ff0000; // keys 16 to 25, Q to P
    constexpr quint32 kMoves = 3;           // along X and Y
    if (!touchScreen)
        return true;
    for (const QByteArray& line : devices.split('\n')) {
        const QByteArray text = line.trimmed();
        if ((text.startsWith("B: KEY=") && (LowBits(text.mid(7)) & kTopRow) == kTopRow) ||
            (text.startsWith("B: REL=") && (LowBits(text.mid(7)) & kMoves) == kMoves))
            return true;
    }
    return false;
}

bool HasHardwareKeyboard()
{
    if (g_Settings.General.ForceQWERTYKeyboard)
        return true;
    return s_replaced ? *s_replaced : HasKeyboardAmong(HasTouchScreen(), DevicesOfKernel());
}

void ReplaceHardwareKeyboard(std::optional<bool> present)
{
    s_replaced = present;
}
