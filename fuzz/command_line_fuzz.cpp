// Any text as a request of another program: it is understood the same way whatever was asked
// before, or changes nothing.
#include "shell/command_request.h"

#include <bit>
#include <cstdint>
#include <cstdlib>

namespace
{
bool IsSame(const CCommandRequest& a, const CCommandRequest& b)
{
    return a.Kind == b.Kind && a.ItemId == b.ItemId &&
           std::bit_cast<quint64>(a.Date1) == std::bit_cast<quint64>(b.Date1) &&
           std::bit_cast<quint64>(a.Date2) == std::bit_cast<quint64>(b.Date2) && a.View == b.View &&
           a.Category == b.Category && a.RawText == b.RawText;
}
} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const QString text = QString::fromUtf8(reinterpret_cast<const char*>(data), qsizetype(size));
    CCommandRequest fresh, used;
    ParseCommandLine(used, QStringLiteral("CREATE|134000000|134000060|APPT|Work"));
    ParseCommandLine(fresh, text);
    used.Clear();
    ParseCommandLine(used, text);
    if (!IsSame(fresh, used) || fresh.IsSingleItem() != used.IsSingleItem())
        std::abort();
    return 0;
}
