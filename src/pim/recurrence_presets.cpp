#include "pim/recurrence_presets.h"

#include "platform/locale.h"

#include <algorithm>

namespace
{
constexpr int kAllDays = 127, kMondayToFriday = 62, kSundayToThursday = 31;
constexpr int kSundaySaturday = 65, kFridaySaturday = 96;
constexpr int kFirstWeekdayKind = 3;

enum class Day { None, OfWeek, OfMonth, Ordinal }; // what a preset takes from the start

struct CPreset {
    OlRecurs Type;
    int Interval;
    Day From;
};
constexpr CPreset kPresets[] = {
    {OlRecurs::Daily, 1, Day::None},         {OlRecurs::Weekly, 1, Day::OfWeek},
    {OlRecurs::Weekly, 2, Day::OfWeek},      {OlRecurs::Weekly, 3, Day::OfWeek},
    {OlRecurs::MonthlyNth, 1, Day::Ordinal}, {OlRecurs::Monthly, 1, Day::OfMonth},
    {OlRecurs::Monthly, 2, Day::OfMonth},    {OlRecurs::Monthly, 3, Day::OfMonth},
    {OlRecurs::Monthly, 6, Day::OfMonth},    {OlRecurs::Yearly, 12, Day::OfMonth},
};
static_assert(std::size(kPresets) == kPresetCustom - 1);

struct CStart {
    explicit CStart(DATE date)
        : Time(SystemTimeOf(date)), DayOfWeek(DayOfWeekOf(DayNumber(date))), DayOfMonth(Time.wDay),
          Instance((DayOfMonth - 1) / 7 + 1)
    {
    }
    SystemTime Time;
    int DayOfWeek, DayOfMonth, Instance;
};

bool IsFirstMonday()
{
    return GetLocaleInfo(LocaleValue::FirstDayOfWeek).startsWith(u'0');
}

bool IsOrdinalDay(OlRecurs type)
{
    return type == OlRecurs::MonthlyNth || type == OlRecurs::YearlyNth;
}

int MaskOfDays(const std::array<bool, 7>& days)
{
    int mask = 0;
    for (int i = 0; i < 7; ++i)
        mask |= days[size_t(i)] ? 1 << i : 0;
    return mask;
}
} // namespace

CRecurrencePatternData MakeDefaultPattern(DATE date)
{
    constexpr int kNineWeeks = 63;
    const CStart start(date);
    CRecurrencePatternData data;
    data.Start = date;
    data.EndDate = date + kNineWeeks;
    data.Days[size_t(start.DayOfWeek)] = true;
    data.MonthDay = data.YearDay = quint32(start.DayOfMonth);
    data.Ordinal = quint32(start.DayOfMonth / 7);
    data.MonthlyDayKind = data.YearlyDayKind = quint32(start.DayOfWeek + kFirstWeekdayKind);
    data.YearMonthDate = data.YearMonthOrdinal = start.Time.wMonth;
    return data;
}

// ---- presets

int FindPreset(const IRecurrencePattern& pattern, DATE date)
{
    const CStart start(date);
    const auto isDay = [&](Day from) {
        switch (from) {
        case Day::None:
            return true;
        case Day::OfWeek:
            return pattern.get_DayOfWeekMask() == 1 << start.DayOfWeek;
        case Day::OfMonth:
            return pattern.get_DayOfMonth() == start.DayOfMonth;
        case Day::Ordinal:
            return pattern.get_DayOfWeekMask() == 1 << start.DayOfWeek &&
                   pattern.get_Instance() == start.Instance;
        }
        return false;
    };
    if (!pattern.get_NoEndDate())
        return kPresetCustom;
    const auto* found = std::find_if(std::begin(kPresets), std::end(kPresets), [&](const CPreset& preset) {
        return preset.Type == pattern.get_RecurrenceType() && preset.Interval == pattern.get_Interval() &&
               isDay(preset.From);
    });
    return found == std::end(kPresets) ? kPresetCustom : int(found - kPresets) + 1;
}

void WritePreset(IRecurrencePattern& pattern, int preset, DATE start, const CRecurrencePatternData& data)
{
    if (preset == kPresetCustom)
        return WritePatternData(data, pattern);
    if (preset <= kPresetNone || preset > kPresetCustom)
        return;
    const CPreset& row = kPresets[preset - 1];
    const CStart at(start);
    pattern.put_PatternStartDate(start);
    pattern.put_RecurrenceType(row.Type);
    pattern.put_Interval(row.Interval);
    pattern.put_NoEndDate(true);
    if (row.From == Day::OfWeek || row.From == Day::Ordinal)
        pattern.put_DayOfWeekMask(1 << at.DayOfWeek);
    if (row.From == Day::Ordinal)
        pattern.put_Instance(at.Instance);
    if (row.From == Day::OfMonth)
        pattern.put_DayOfMonth(at.DayOfMonth);
}

// ---- the plain record

int DayKindOfMask(int mask)
{
    mask &= kAllDays;
    if (mask == kAllDays)
        return 0;
    if (mask == kMondayToFriday || mask == kSundayToThursday)
        return 1;
    if (mask == kSundaySaturday || mask == kFridaySaturday)
        return 2;
    int kind = 0;
    for (int day = 0; day < 7; ++day)
        kind = mask & 1 << day ? day + kFirstWeekdayKind : kind;
    return kind;
}

int MaskOfDayKind(int dayKind)
{
    if (dayKind == 1)
        return IsFirstMonday() ? kMondayToFriday : kSundayToThursday;
    if (dayKind == 2)
        return IsFirstMonday() ? kSundaySaturday : kFridaySaturday;
    return dayKind >= kFirstWeekdayKind && dayKind < kFirstWeekdayKind + 7
               ? 1 << (dayKind - kFirstWeekdayKind)
               : kAllDays;
}

void ReadPatternData(CRecurrencePatternData& data, const IRecurrencePattern& pattern)
{
    using Data = CRecurrencePatternData;
    data.Start = pattern.get_PatternStartDate();
    data.EndType = pattern.get_NoEndDate() ? Data::kNoEnd : Data::kEndDate;
    if (data.EndType == Data::kEndDate) {
        data.EndDate = pattern.get_PatternEndDate();
        data.Occurrences = quint32(pattern.get_Occurrences());
    }
    const OlRecurs type = pattern.get_RecurrenceType();
    const int mask = pattern.get_DayOfWeekMask();
    if (type != OlRecurs::Yearly && type != OlRecurs::YearlyNth)
        data.Interval = quint32(pattern.get_Interval());
    if (IsOrdinalDay(type))
        data.Ordinal = quint32(std::max(pattern.get_Instance() - 1, 0));
    switch (type) {
    case OlRecurs::Daily:
        data.PatternType = Data::kDaily;
        break;
    case OlRecurs::Weekly:
        data.PatternType = Data::kWeekly;
        for (int day = 0; day < 7; ++day)
            data.Days[size_t(day)] = mask & 1 << day;
        if (data.Interval == 1 && mask == kMondayToFriday) {
            data.PatternType = Data::kDaily;
            data.Interval = 0;
        }
        break;
    case OlRecurs::Monthly:
    case OlRecurs::MonthlyNth:
        data.PatternType = Data::kMonthly;
        data.MonthlyKind = IsOrdinalDay(type);
        if (IsOrdinalDay(type))
            data.MonthlyDayKind = quint32(DayKindOfMask(mask));
        else
            data.MonthDay = quint32(pattern.get_DayOfMonth());
        break;
    case OlRecurs::Yearly:
        data.PatternType = Data::kYearly;
        data.YearlyKind = 0;
        data.YearDay = quint32(pattern.get_DayOfMonth());
        data.YearMonthDate = quint32(pattern.get_MonthOfYear());
        break;
    case OlRecurs::YearlyNth:
        data.PatternType = Data::kYearly;
        data.YearlyKind = 1;
        data.YearMonthOrdinal = quint32(pattern.get_MonthOfYear());
        data.YearlyDayKind = quint32(DayKindOfMask(mask));
        break;
    }
}

namespace
{
void WriteRule(const CRecurrencePatternData& data, IRecurrencePattern& pattern)
{
    using Data = CRecurrencePatternData;
    const int interval = int(std::min<quint32>(data.Interval, 999999));
    const auto ordinal = [&](OlRecurs type, quint32 dayKind) {
        pattern.put_RecurrenceType(type);
        pattern.put_Instance(int(std::min<quint32>(data.Ordinal, 4)) + 1);
        pattern.put_DayOfWeekMask(MaskOfDayKind(int(dayKind)));
    };
    const auto dayOfMonth = [&](OlRecurs type, quint32 day) {
        pattern.put_RecurrenceType(type);
        pattern.put_DayOfMonth(int(std::clamp<quint32>(day, 1, 31)));
    };
    switch (data.PatternType) {
    case Data::kWeekly:
        pattern.put_RecurrenceType(OlRecurs::Weekly);
        pattern.put_Interval(interval);
        pattern.put_DayOfWeekMask(MaskOfDays(data.Days));
        break;
    case Data::kMonthly:
        if (data.MonthlyKind != 0)
            ordinal(OlRecurs::MonthlyNth, data.MonthlyDayKind);
        else
            dayOfMonth(OlRecurs::Monthly, data.MonthDay);
        pattern.put_Interval(interval);
        break;
    case Data::kYearly:
        if (data.YearlyKind != 0)
            ordinal(OlRecurs::YearlyNth, data.YearlyDayKind);
        else
            dayOfMonth(OlRecurs::Yearly, data.YearDay);
        pattern.put_MonthOfYear(int(data.YearlyKind != 0 ? data.YearMonthOrdinal : data.YearMonthDate));
        break;
    default:
        pattern.put_RecurrenceType(interval == 0 ? OlRecurs::Weekly : OlRecurs::Daily);
        pattern.put_Interval(std::max(interval, 1));
        if (interval == 0)
            pattern.put_DayOfWeekMask(kMondayToFriday);
        break;
    }
}
} // namespace

void WritePatternData(const CRecurrencePatternData& data, IRecurrencePattern& pattern)
{
    using Data = CRecurrencePatternData;
    pattern.put_PatternStartDate(data.Start);
    WriteRule(data, pattern);
    if (data.EndType == Data::kEndDate)
        pattern.put_PatternEndDate(data.EndDate);
    else if (data.EndType == Data::kEndCount)
        pattern.put_Occurrences(int(std::min<quint32>(data.Occurrences, 0x7FFFFFFF)));
    else
        pattern.put_NoEndDate(true);
}

bool SameRecurrence(const CRecurrencePatternData& a, const CRecurrencePatternData& b)
{
    using Data = CRecurrencePatternData;
    // The fields that count, over one and the same record.
    const auto bare = [](const CRecurrencePatternData& data) {
        CRecurrencePatternData bare;
        bare.PatternType = data.PatternType;
        bare.Start = DATE(DayNumber(data.Start));
        bare.EndType = data.EndType;
        if (data.EndType == Data::kEndDate)
            bare.EndDate = DATE(DayNumber(data.EndDate));
        else if (data.EndType == Data::kEndCount)
            bare.Occurrences = data.Occurrences;
        if (data.PatternType != Data::kYearly)
            bare.Interval = data.Interval;
        if (data.PatternType == Data::kWeekly)
            bare.Days = data.Days;
        const bool monthly = data.PatternType == Data::kMonthly;
        const quint32 kind = monthly ? data.MonthlyKind : data.YearlyKind;
        if (!monthly && data.PatternType != Data::kYearly)
            return bare;
        bare.MonthlyKind = kind;
        if (kind != 0) {
            bare.Ordinal = data.Ordinal;
            bare.MonthlyDayKind = monthly ? data.MonthlyDayKind : data.YearlyDayKind;
        } else {
            bare.MonthDay = monthly ? data.MonthDay : data.YearDay;
        }
        if (!monthly)
            bare.YearMonthDate = kind != 0 ? data.YearMonthOrdinal : data.YearMonthDate;
        return bare;
    };
    return bare(a) == bare(b);
}
