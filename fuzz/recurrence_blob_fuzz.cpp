// Input: one byte that tells how many bytes of the zone blob follow; the rest is the recurrence.
#include "records/occurrences.h"
#include "records/recurrence_blob.h"

#include <algorithm>
#include <cstdlib>

namespace
{
void Require(bool holds)
{
    if (!holds)
        abort();
}
} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uchar* data, size_t size)
{
    if (size == 0)
        return 0;
    const std::span<const uchar> bytes(data + 1, size - 1);
    const size_t zone = std::min<size_t>(data[0], bytes.size());
    CRecurrencePattern pattern;
    ParseRecurrenceZone(pattern, bytes.first(zone));
    const int used = ParseRecurrence(pattern, bytes.subspan(zone));
    Require(used >= -1 && used <= int(bytes.size() - zone));

    constexpr int kFirst = 45000, kLast = 45030;
    std::vector<COccurrence> found;
    ExpandPattern(pattern, kFirst, kLast, found);
    for (const COccurrence& occurrence : found) {
        Require(DayNumber(occurrence.Start) <= kLast);
        Require(std::max(DayNumber(occurrence.End), DayNumber(occurrence.Start)) >= kFirst);
        ZoneShift(pattern, TimeZoneInformation(), occurrence.Start);
    }
    CountOccurrencesUpTo(pattern, kLast);

    if (pattern.Type < 0)
        return 0;
    const QByteArray written = WriteRecurrence(pattern), writtenZone = WriteRecurrenceZone(pattern);
    CRecurrencePattern again;
    ParseRecurrenceZone(again, BytesOf(writtenZone));
    Require(ParseRecurrence(again, BytesOf(written)) == int(written.size() - pattern.SkippedTail.size()));
    Require(again == pattern);
    return 0;
}
