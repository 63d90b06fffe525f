// Any text as an icon's reference: what is read of it gives the text again, and one that can be told
// survives the settings file.
#include "drawing/icon_store.h"
#include "settings/settings_file.h"

#include <cstdint>
#include <cstdlib>

namespace
{
void Require(bool holds)
{
    if (!holds)
        std::abort();
}
} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const QString text = QString::fromUtf8(reinterpret_cast<const char*>(data), qsizetype(size));
    const std::optional<CIconReference> reference = CIconReference::Parse(text);
    if (!reference)
        return 0;
    Require(reference->ToText() == text);
    Require(!reference->Group.contains(u':') && !reference->File.contains(u':'));
    if (!reference->CanBeTold())
        return 0;
    const QString section = QStringLiteral("Categories"), key = QStringLiteral("Image0");
    CSettingsFile file, loaded;
    file.SetString(section, key, text);
    loaded.LoadBytes(file.ToBytes());
    file.SetDirty(false);
    QString kept;
    Require(loaded.GetString(section, key, &kept) && kept == text);
    CCategoryIcon icon;
    CIconStore(QStringLiteral("/nonexistent")).LoadIcon(text, icon);
    Require(icon.Reference == text);
    return 0;
}
