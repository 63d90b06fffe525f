// Any bytes as a settings file: they load, and what was made of them survives a save.
#include "settings/settings_file.h"

#include <cstdint>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    CSettingsFile first, second;
    first.LoadBytes(QByteArray(reinterpret_cast<const char*>(data), qsizetype(size)));
    second.LoadBytes(first.ToBytes());
    if (second.ToBytes() != first.ToBytes())
        std::abort();
    for (const QString& section : first.SectionOrder()) {
        for (const QString& key : first.FindSection(section)->m_keyOrder) {
            qint32 number = 0;
            COLORREF color = 0;
            CSettingsRect rect;
            QPoint point;
            if (!first.GetInt(section, key, &number) || !first.GetColor(section, key, &color) ||
                !first.GetRect(section, key, &rect) || !first.GetPoint(section, key, &point))
                std::abort();
        }
    }
    return 0;
}
