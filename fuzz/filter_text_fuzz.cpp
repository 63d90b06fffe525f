// Any text as a filter: it is read with names and without; what was written of it stays the same
// for good, and no field of it reaches into another.
#include "settings/filter.h"

#include <QStringList>
#include <cstdint>
#include <cstdlib>

namespace
{
struct CNames : ICategoryNames {
    std::optional<qint32> NumberOf(const QString& name) const override
    {
        for (int i = 0; i < List.size(); ++i) {
            if (List[i].compare(name, Qt::CaseInsensitive) == 0)
                return i + 1;
        }
        return {};
    }
    std::optional<QString> NameOf(qint32 number) const override
    {
        return number >= 1 && number <= List.size() ? std::optional(List[number - 1]) : std::nullopt;
    }
    QStringList List{QStringLiteral("Work"), QStringLiteral("Home"), QStringLiteral("A b"), QStringLiteral("@")};
};

void CheckWith(const QString& text, const ICategoryNames* names)
{
    CFilter read, kept;
    read.FromText(text, names);
    const QString written = read.ToText(names);
    kept.FromText(written, names);
    const bool same = read.IncludeMode == kept.IncludeMode && read.ExcludeMode == kept.ExcludeMode &&
                      read.Name.left(kept.Name.size()) == kept.Name && read.IncludeIds == kept.IncludeIds &&
                      read.ExcludeIds == kept.ExcludeIds && kept.ToText(names) == written;
    if (!same)
        std::abort();
}
} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const CNames names;
    const QString text = QString::fromUtf8(reinterpret_cast<const char*>(data), qsizetype(size));
    CheckWith(text, &names);
    CheckWith(text, nullptr);
    return 0;
}
