// Layout of the recurrence blob, all integers little-endian and unaligned, dates in minutes since
// 1 January 1601. Offsets are those of version 5; below it the eight bytes before the occurrence
// count are missing, so that all from there on lies eight earlier. "-" is never read.
//
//    0  8 bits   version                   1  -
//    6  16 bits  type                      8  -
//   14  32 bits  period: minutes of a daily pattern, weeks or months of the others
//                          daily   weekly   by day (2, 5)   ordinal (3, 6)
//   16 bits  day mask          -       22               -               22
//   16 bits  day of month      -        -              22                -
//   16 bits  instance          -        -               -               26
//   16 bits  end kind         22       26              26               30
//   16 bits  occurrences      34       38              38               42
//   32 bits  N                42       46              46               50
//   N x 32   days affected    46       50              50               54
//
// and then: 32 bits M, M x 32 new days (derived, never read), 32 bits pattern start, 32 bits
// pattern end, 8 bytes -, 32 bits start minute, 32 bits end minute, 16 bits M again, M records.
// A record: 32 bits start, end, original start; 16 bits flags; then, if flagged, 0x0001 subject,
// 0x0002 0x0004 0x0008 four bytes each -, 0x0010 location, 0x0020 32 bits busy status, 0x0040
// four bytes -, 0x0080 32 bits all-day, 0x0100 32 bits n and n bytes of a note. A text: 16 bits
// -, 16 bits count of characters, UTF-16. The note bytes of our own are "TNo1" and UTF-16.
#include "records/recurrence_blob.h"

#include "records/blob_bytes.h"

#include <algorithm>

namespace
{
constexpr quint16 kEndsOnDate = 0x2021;
constexpr qsizetype kExtraBytes = 8; // that version 5 has before the occurrence count
constexpr uchar kVersion = 5;
// No calendar has more changed days in one series; a count beyond is a damaged one.
constexpr quint32 kMaxExceptions = 65535;
constexpr quint16 kSubject = 0x0001, kLocation = 0x0010, kBusy = 0x0020, kAllDay = 0x0080, kNote = 0x0100;
constexpr quint16 kFourByteFlags[] = {0x0002, 0x0004, 0x0008, 0x0040};
const char kNoteMark[] = "TNo1";
constexpr qsizetype kNoteMarkLength = 4;

struct CLayout {
    int Mask, Day, Instance, EndKind, Occurrences, Count, Next; // offsets; 0 if the type has it not
};

const CLayout* LayoutOf(int type)
{
    static constexpr CLayout kDaily = {0, 0, 0, 22, 34, 42, 46};
    static constexpr CLayout kWeekly = {22, 0, 0, 26, 38, 46, 50};
    static constexpr CLayout kByDay = {0, 22, 0, 26, 38, 46, 50};
    static constexpr CLayout kOrdinal = {22, 0, 26, 30, 42, 50, 54};
    switch (type) {
    case PatternType::Daily:
        return &kDaily;
    case PatternType::Weekly:
        return &kWeekly;
    case PatternType::Monthly:
    case PatternType::Yearly:
        return &kByDay;
    case PatternType::MonthlyNth:
    case PatternType::YearlyNth:
        return &kOrdinal;
    default:
        return nullptr;
    }
}

quint32 MinutesOf(DATE date)
{
    return quint32(std::clamp(DateToMinutesSince1601(date), 0.0, 4294967295.0));
}
DATE DateOfMinutes(quint32 minutes)
{
    return MinutesSince1601ToDate(minutes);
}

bool AllZero(const QByteArray& bytes)
{
    return std::all_of(bytes.begin(), bytes.end(), [](char c) { return c == 0; });
}

// ---- reading

// The header brought to version 5, so that every field is found at one place. Short when the
// blob is.
QByteArray NormalisedHeader(std::span<const uchar> blob, int type, size_t* used)
{
    const CLayout& layout = *LayoutOf(type);
    const bool extra = blob[0] >= 5;
    const size_t gap = size_t(layout.Occurrences) - size_t(kExtraBytes);
    const size_t length = std::min(blob.size(), size_t(layout.Next - (extra ? 0 : int(kExtraBytes))));
    const char* bytes = reinterpret_cast<const char*>(blob.data());
    *used = length;
    if (extra || length < gap)
        return QByteArray(bytes, qsizetype(length));
    return QByteArray(bytes, qsizetype(gap)) + QByteArray(kExtraBytes, 0) +
           QByteArray(bytes + gap, qsizetype(length - gap));
}

// Result: the deleted count, and whether the whole header was there.
bool ReadHeader(CRecurrencePattern& pattern, const QByteArray& header, quint32* count)
{
    const CLayout& layout = *LayoutOf(pattern.Type);
    const std::span<const uchar> bytes = BytesOf(header);
    quint16 word = 0;
    quint32 period = 0;
    if (!Read32(bytes, 14, &period))
        return false;
    pattern.Interval = int(pattern.Type == PatternType::Daily ? period / 1440 : period);
    if (layout.Mask && Read16(bytes, size_t(layout.Mask), &word))
        pattern.DayMask = word;
    if (layout.Day && Read16(bytes, size_t(layout.Day), &word))
        pattern.DayOfMonth = word;
    if (layout.Instance && Read16(bytes, size_t(layout.Instance), &word))
        pattern.Instance = word;
    if (Read16(bytes, size_t(layout.EndKind), &word) && word >= kEndsOnDate && word <= kEndsOnDate + 2)
        pattern.EndKind = word - kEndsOnDate;
    if (Read16(bytes, size_t(layout.Occurrences), &word))
        pattern.Occurrences = word;
    return Read32(bytes, size_t(layout.Count), count);
}

void KeepHeader(CRecurrencePattern& pattern, QByteArray header, const uchar* eight)
{
    const CLayout& layout = *LayoutOf(pattern.Type);
    const auto blank = [&header](int at, int length) {
        if (at || length == 1)
            std::fill_n(header.data() + at, length, char(0));
    };
    blank(0, 1);
    blank(6, 2);
    blank(14, 4);
    for (int at : {layout.Mask, layout.Day, layout.Instance, layout.EndKind, layout.Occurrences})
        blank(at, 2);
    blank(layout.Count, 4);
    header.append(reinterpret_cast<const char*>(eight), kExtraBytes);
    if (!AllZero(header))
        pattern.SkippedHeader = header;
}

CRecurrenceException* FindException(CRecurrencePattern& pattern, int day)
{
    const auto at = std::lower_bound(pattern.Exceptions.begin(), pattern.Exceptions.end(), day,
                                     [](const CRecurrenceException& e, int d) { return e.OriginalDay < d; });
    return at != pattern.Exceptions.end() && at->OriginalDay == day ? &*at : nullptr;
}

void ReadDeletions(CRecurrencePattern& pattern, CBlobReader& reader, quint32 count)
{
    quint32 minutes = 0;
    for (quint32 i = 0; i < count && reader.Get32(&minutes); ++i) {
        if (i >= kMaxExceptions)
            continue;
        CRecurrenceException exception;
        exception.OriginalDay = DayNumber(DateOfMinutes(minutes));
        pattern.Exceptions.push_back(exception);
    }
    std::vector<CRecurrenceException>& all = pattern.Exceptions;
    std::stable_sort(all.begin(), all.end(),
                     [](const CRecurrenceException& a, const CRecurrenceException& b) {
                         return a.OriginalDay < b.OriginalDay;
                     });
    const auto sameDay = [](const CRecurrenceException& a, const CRecurrenceException& b) {
        return a.OriginalDay == b.OriginalDay;
    };
    all.erase(std::unique(all.begin(), all.end(), sameDay), all.end());
    pattern.ExceptionCount = int(all.size());
}

bool ReadText(CBlobReader& reader, QString* text)
{
    quint16 ignored = 0, length = 0;
    std::span<const uchar> bytes;
    if (!reader.Get16(&ignored) || !reader.Get16(&length) || !reader.GetBytes(size_t(length) * 2, &bytes))
        return false;
    *text = Utf16Of(bytes);
    return true;
}

bool ReadNote(CBlobReader& reader, CRecurrenceException& exception, quint16* kept, QByteArray* keptBytes)
{
    quint32 length = 0;
    std::span<const uchar> bytes;
    if (!reader.Get32(&length) || !reader.GetBytes(length, &bytes))
        return false;
    const QByteArray note(reinterpret_cast<const char*>(bytes.data()), qsizetype(bytes.size()));
    if (note.startsWith(kNoteMark) && note.size() % 2 == 0) {
        exception.HasNoteFlag = true;
        exception.Note = Utf16Of(bytes.subspan(size_t(kNoteMarkLength)));
        exception.HasNote = !exception.Note.isEmpty();
        return true;
    }
    exception.HasNoteFlag = exception.HasNote = length >= 1;
    *kept |= kNote;
    keptBytes->append(note);
    return true;
}

// Fills what the flags announce, as far as the bytes reach.
bool ReadFlaggedFields(CBlobReader& reader, quint16 flags, CRecurrenceException& exception)
{
    quint16 kept = 0;
    QByteArray keptBytes;
    quint32 number = 0;
    const auto keepFour = [&](quint16 flag) {
        std::span<const uchar> bytes;
        if (!(flags & flag))
            return true;
        if (!reader.GetBytes(4, &bytes))
            return false;
        kept |= flag;
        keptBytes.append(reinterpret_cast<const char*>(bytes.data()), 4);
        return true;
    };
    const auto readAll = [&]() {
        if (flags & kSubject && !(exception.HasSubject = ReadText(reader, &exception.Subject)))
            return false;
        if (!keepFour(0x0002) || !keepFour(0x0004) || !keepFour(0x0008))
            return false;
        if (flags & kLocation && !(exception.HasLocation = ReadText(reader, &exception.Location)))
            return false;
        if (flags & kBusy && !(exception.HasBusyStatus = reader.Get32(&number)))
            return false;
        exception.BusyStatus = int(number);
        if (!keepFour(0x0040))
            return false;
        if (flags & kAllDay && !(exception.HasAllDay = reader.Get32(&number)))
            return false;
        exception.AllDay = exception.HasAllDay && number != 0;
        return !(flags & kNote) || ReadNote(reader, exception, &kept, &keptBytes);
    };
    const bool whole = readAll();
    if (kept) {
        exception.SkippedBytes.resize(2);
        qToLittleEndian(kept, exception.SkippedBytes.data());
        exception.SkippedBytes += keptBytes;
    }
    return whole;
}

bool ReadRecord(CRecurrencePattern& pattern, CBlobReader& reader)
{
    quint32 start = 0, end = 0, original = 0;
    quint16 flags = 0;
    if (!reader.Get32(&start) || !reader.Get32(&end) || !reader.Get32(&original) || !reader.Get16(&flags))
        return false;
    CRecurrenceException exception;
    exception.OriginalDay = DayNumber(DateOfMinutes(original));
    exception.Start = DateOfMinutes(start);
    exception.End = DateOfMinutes(end);
    exception.Deleted = false;
    const bool whole = ReadFlaggedFields(reader, flags, exception);
    if (CRecurrenceException* entry = FindException(pattern, exception.OriginalDay))
        *entry = std::move(exception);
    return whole;
}

// ---- writing

void AppendText(QByteArray& blob, const QString& text)
{
    const QString cut = text.left(65534);
    Append16(blob, quint16(cut.size() + 1));
    Append16(blob, quint16(cut.size()));
    AppendUtf16(blob, cut);
}

void AppendNote(QByteArray& blob, const CRecurrenceException& exception, const QByteArray* foreign)
{
    QByteArray bytes;
    if (foreign) {
        bytes = *foreign;
    } else {
        bytes = kNoteMark;
        AppendUtf16(bytes, exception.Note);
    }
    Append32(blob, quint32(bytes.size()));
    blob += bytes;
}

void AppendRecord(QByteArray& blob, const CRecurrencePattern& pattern, const CRecurrenceException& exception)
{
    quint16 kept =
        exception.SkippedBytes.size() >= 2 ? qFromLittleEndian<quint16>(exception.SkippedBytes.data()) : 0;
    qsizetype keptAt = 2;
    for (quint16 flag : kFourByteFlags)
        keptAt += kept & flag ? 4 : 0;
    if (keptAt > exception.SkippedBytes.size())
        kept = 0;
    const QByteArray foreignNote = kept & kNote ? exception.SkippedBytes.mid(keptAt) : QByteArray();
    keptAt = 2;

    const bool minuteFits = pattern.StartMinute >= 0 && pattern.StartMinute < 1440;
    Append32(blob, MinutesOf(exception.Start));
    Append32(blob, MinutesOf(exception.End));
    Append32(blob, MinutesOf(exception.OriginalDay) + quint32(minuteFits ? pattern.StartMinute : 0));
    quint16 flags = kept;
    flags |= exception.HasSubject ? kSubject : 0;
    flags |= exception.HasLocation ? kLocation : 0;
    flags |= exception.HasBusyStatus ? kBusy : 0;
    flags |= exception.HasAllDay ? kAllDay : 0;
    flags |= exception.HasNoteFlag ? kNote : 0;
    Append16(blob, flags);
    const auto keptFour = [&](quint16 flag) {
        if (!(kept & flag))
            return;
        blob += exception.SkippedBytes.mid(keptAt, 4);
        keptAt += 4;
    };
    if (exception.HasSubject)
        AppendText(blob, exception.Subject);
    keptFour(0x0002);
    keptFour(0x0004);
    keptFour(0x0008);
    if (exception.HasLocation)
        AppendText(blob, exception.Location);
    if (exception.HasBusyStatus)
        Append32(blob, quint32(exception.BusyStatus));
    keptFour(0x0040);
    if (exception.HasAllDay)
        Append32(blob, exception.AllDay ? 1 : 0);
    if (flags & kNote)
        AppendNote(blob, exception, kept & kNote ? &foreignNote : nullptr);
}

QByteArray HeaderOf(const CRecurrencePattern& pattern, const CLayout& layout)
{
    QByteArray header(layout.Next, 0);
    if (pattern.SkippedHeader.size() == layout.Next + kExtraBytes)
        header = pattern.SkippedHeader.left(layout.Next);
    const auto put16 = [&header](int at, int value) {
        if (at)
            qToLittleEndian(quint16(value), header.data() + at);
    };
    header[0] = char(kVersion);
    put16(6, pattern.Type);
    const quint32 unit = pattern.Type == PatternType::Daily ? 1440 : 1;
    qToLittleEndian(quint32(pattern.Interval) * unit, header.data() + 14);
    put16(layout.Mask, pattern.DayMask);
    put16(layout.Day, pattern.DayOfMonth);
    put16(layout.Instance, pattern.Instance);
    put16(layout.EndKind, kEndsOnDate + std::clamp(pattern.EndKind, 0, 2));
    put16(layout.Occurrences, pattern.Occurrences);
    return header;
}
} // namespace

int ParseRecurrence(CRecurrencePattern& pattern, std::span<const uchar> blob)
{
    const TimeZoneInformation zone = pattern.Zone();
    pattern = CRecurrencePattern();
    pattern.SetZone(zone);
    quint16 type = 0;
    if (!Read16(blob, 6, &type) || !LayoutOf(type))
        return 0;
    pattern.Type = type;
    size_t used = 0;
    quint32 count = 0, changed = 0, start = 0, end = 0, number = 0;
    const QByteArray header = NormalisedHeader(blob, type, &used);
    CBlobReader reader(blob, used);
    if (!ReadHeader(pattern, header, &count))
        return reader.At();
    ReadDeletions(pattern, reader, count);
    std::span<const uchar> skipped;
    if (!reader.Get32(&changed))
        return reader.At();
    const quint32 records = changed & 0xFFFF;
    if (!reader.GetBytes(size_t(records) * 4, &skipped) || !reader.Get32(&start))
        return reader.At();
    pattern.PatternStart = DateOfMinutes(start);
    if (!reader.Get32(&end))
        return reader.At();
    pattern.PatternEnd = DateOfMinutes(end);
    if (!reader.GetBytes(size_t(kExtraBytes), &skipped))
        return reader.At();
    KeepHeader(pattern, header, skipped.data());
    if (!reader.Get32(&number))
        return reader.At();
    pattern.StartMinute = int(number);
    if (!reader.Get32(&number))
        return reader.At();
    pattern.EndMinute = int(number);
    quint16 again = 0;
    if (!reader.Get16(&again))
        return reader.At();
    if (again != records)
        return -1;
    for (quint32 i = 0; i < records; ++i)
        if (!ReadRecord(pattern, reader))
            return reader.At();
    const int at = reader.At();
    pattern.SkippedTail = reader.Rest();
    return at;
}

void ParseRecurrenceZone(CRecurrencePattern& pattern, std::span<const uchar> blob)
{
    quint16 word = 0;
    if (Read16(blob, 0, &word))
        pattern.ZoneBias = qint16(word);
    if (Read16(blob, 4, &word))
        pattern.ZoneStandardBias = qint16(word);
    if (Read16(blob, 8, &word))
        pattern.ZoneDaylightBias = qint16(word);
    ReadSystemTime(blob, 14, &pattern.ZoneStandardDate);
    ReadSystemTime(blob, 32, &pattern.ZoneDaylightDate);
}

void ClearOccurrenceNote(CRecurrenceException& exception)
{
    exception.HasNoteFlag = exception.HasNote = false;
    exception.Note.clear();
    if (exception.SkippedBytes.size() < 2)
        return;
    quint16 kept = qFromLittleEndian<quint16>(exception.SkippedBytes.data());
    kept &= quint16(~kNote);
    qsizetype length = 2;
    for (quint16 flag : kFourByteFlags)
        length += kept & flag ? 4 : 0;
    exception.SkippedBytes.truncate(kept ? length : 0);
    if (kept)
        qToLittleEndian(kept, exception.SkippedBytes.data());
}

void SetOccurrenceNote(CRecurrenceException& exception, const QString& note)
{
    ClearOccurrenceNote(exception);
    exception.HasNoteFlag = true;
    exception.HasNote = !note.isEmpty();
    exception.Note = note;
}

QByteArray WriteRecurrence(const CRecurrencePattern& pattern)
{
    const CLayout* layout = LayoutOf(pattern.Type);
    if (!layout)
        return {};
    QByteArray blob = HeaderOf(pattern, *layout);
    std::vector<const CRecurrenceException*> changed;
    quint32 count = 0;
    for (const CRecurrenceException& exception : pattern.Exceptions) {
        if (count == kMaxExceptions)
            break;
        ++count;
        Append32(blob, MinutesOf(exception.OriginalDay));
        if (!exception.Deleted)
            changed.push_back(&exception);
    }
    qToLittleEndian(count, blob.data() + layout->Count);
    Append32(blob, quint32(changed.size()));
    std::vector<int> newDays;
    for (const CRecurrenceException* exception : changed)
        newDays.push_back(DayNumber(exception->Start));
    std::sort(newDays.begin(), newDays.end());
    for (int day : newDays)
        Append32(blob, MinutesOf(day));
    Append32(blob, MinutesOf(pattern.PatternStart));
    Append32(blob, MinutesOf(pattern.PatternEnd));
    const bool foreign = pattern.SkippedHeader.size() == layout->Next + kExtraBytes;
    blob += foreign ? pattern.SkippedHeader.right(kExtraBytes) : QByteArray(kExtraBytes, 0);
    Append32(blob, quint32(pattern.StartMinute));
    Append32(blob, quint32(pattern.EndMinute));
    Append16(blob, quint16(changed.size()));
    for (const CRecurrenceException* exception : changed)
        AppendRecord(blob, pattern, *exception);
    return blob + pattern.SkippedTail;
}

QByteArray WriteRecurrenceZone(const CRecurrencePattern& pattern)
{
    QByteArray blob(48, 0);
    // The biases are stored as 32 bits, of which readers take the lower half.
    qToLittleEndian(qint32(pattern.ZoneBias), blob.data());
    qToLittleEndian(qint32(pattern.ZoneStandardBias), blob.data() + 4);
    qToLittleEndian(qint32(pattern.ZoneDaylightBias), blob.data() + 8);
    WriteSystemTime(pattern.ZoneStandardDate, blob.data() + 14);
    WriteSystemTime(pattern.ZoneDaylightDate, blob.data() + 32);
    return blob;
}
