#include "interchange/file_duration.h"

#include "interchange/component_reader.h"
#include "interchange/property_line.h"

#include <algorithm>
#include <libical/ical.h>
#include <string>

namespace
{
constexpr size_t kMaxText = 40;
constexpr size_t kMaxDigits = 7; // 9,999,999 minutes are 19 years
} // namespace

bool ParseDuration(std::string_view text, CFileDuration* duration)
{
    const std::string clean = AsciiUpper(TrimBlanks(text));
    // The library counts on numbers that fit.
    size_t digits = 0;
    bool any = false;
    for (const char c : clean) {
        digits = c >= '0' && c <= '9' ? digits + 1 : 0;
        any = any || digits > 0;
        if (digits > kMaxDigits)
            return false;
    }
    if (!any || clean.size() > kMaxText)
        return false;
    const icaldurationtype parsed = icaldurationtype_from_string(clean.c_str());
    if (icaldurationtype_is_bad_duration(parsed))
        return false;
    const int sign = parsed.is_neg ? -1 : 1;
    const qint64 days = qint64(parsed.weeks) * 7 + parsed.days;
    const qint64 seconds = qint64(parsed.hours) * 3600 + qint64(parsed.minutes) * 60 + parsed.seconds;
    if (days + seconds / 86400 > 36600)
        return false;
    duration->Days = int(days) * sign;
    duration->Seconds = seconds * sign;
    return true;
}
