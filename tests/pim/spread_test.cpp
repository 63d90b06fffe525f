// On which days an item shows.
#include "pim_fixture.h"

#include "pim/item_cache.h"

struct SpreadCase {
    const char* Start;
    const char* End;
    bool AllDay;
    int HumanTime;
    const char* First;
    const char* Last;
    bool EndsPreviousDay;
};
void PrintTo(const SpreadCase& c, std::ostream* out) { *out << c.Start << " to " << c.End; }

class Spread : public testing::TestWithParam<SpreadCase>
{
};

TEST_P(Spread, Span)
{
    const SpreadCase& c = GetParam();
    CAppointment item(kKindAppointment, CAppointment::Blank{});
    item.Start = At(c.Start);
    item.End = At(c.End);
    item.AllDay = c.AllDay;
    const CDaySpan span = SpreadSpan(item, c.HumanTime);
    EXPECT_EQ(Iso(span.First), Iso(Day(c.First)));
    EXPECT_EQ(Iso(span.Last), Iso(Day(c.Last)));
    EXPECT_EQ(span.EndsPreviousDay, c.EndsPreviousDay);
}

INSTANTIATE_TEST_SUITE_P(
    Table, Spread,
    testing::Values(
        SpreadCase{"2026-03-02 10:00", "2026-03-02 11:00", false, 4, "2026-03-02", "2026-03-02", false},
        SpreadCase{"2026-03-02 23:00", "2026-03-03 00:00", false, 0, "2026-03-02", "2026-03-02", false},
        SpreadCase{"2026-03-02 23:00", "2026-03-03 00:00", false, 4, "2026-03-02", "2026-03-02", false},
        SpreadCase{"2026-03-02 23:00", "2026-03-03 00:01", false, 0, "2026-03-02", "2026-03-03", false},
        SpreadCase{"2026-03-02 22:00", "2026-03-03 03:30", false, 4, "2026-03-02", "2026-03-02", true},
        SpreadCase{"2026-03-02 22:00", "2026-03-03 04:00", false, 4, "2026-03-02", "2026-03-02", true},
        SpreadCase{"2026-03-02 22:00", "2026-03-03 04:30", false, 4, "2026-03-02", "2026-03-03", false},
        SpreadCase{"2026-03-02 22:00", "2026-03-03 03:30", false, 0, "2026-03-02", "2026-03-03", false},
        SpreadCase{"2026-03-02 22:00", "2026-03-04 03:30", false, 4, "2026-03-02", "2026-03-04", false},
        SpreadCase{"2026-03-02 22:00", "2026-03-05 00:00", false, 4, "2026-03-02", "2026-03-04", false},
        SpreadCase{"2026-03-02 00:00", "2026-03-02 00:00", false, 4, "2026-03-02", "2026-03-02", false},
        SpreadCase{"2026-03-02 10:00", "2026-03-02 09:00", false, 0, "2026-03-02", "2026-03-02", false},
        SpreadCase{"2026-03-02", "2026-03-03", true, 4, "2026-03-02", "2026-03-02", false},
        SpreadCase{"2026-03-02", "2026-03-05", true, 4, "2026-03-02", "2026-03-04", false},
        SpreadCase{"2026-03-02", "2026-03-04 23:59", true, 4, "2026-03-02", "2026-03-04", false},
        SpreadCase{"2026-03-02", "2026-03-02", true, 4, "2026-03-02", "2026-03-02", false}));
