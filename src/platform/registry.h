// The user's registry: keys and string or number values under their own names, in
// registry.ini of the configuration folder ($XDG_CONFIG_HOME/tessera, or the one a test set).
// Read anew at each access and written atomically under a lock, so that two processes may use it.
// Errors: a failed write returns false and leaves the file as it was.
#pragma once
#include <QString>
#include <QStringList>
#include <optional>

class CRegistry
{
public:
    static void SetFolder(const QString& folder); // empty: the user's own again
    static QString Folder();

    static std::optional<QString> ReadString(const QString& key, const QString& name);
    static bool WriteString(const QString& key, const QString& name, const QString& value);
    static bool DeleteValue(const QString& key, const QString& name);
    // The names directly below a key, each once, in the file's order; case is ignored.
    static QStringList SubKeys(const QString& key);
};

inline const QString kRegistryKey = QStringLiteral("Software\\ZELV Calendar");
