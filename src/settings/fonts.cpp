#include "settings/fonts.h"

#include "settings/settings.h"

#include <algorithm>

namespace
{
// Height is D(Base) + D(1) * *TextSize - Less.
struct FontRow {
    int Id;
    int Weight;
    int Base;
    const qint32* TextSize = nullptr;
    int Less = 0;
    bool StrikeOut = false;
};

const FontRow kFonts[] = {
    {0, 0, 14},
    {1, 700, 14},
    {2, 0, 13},
    {3, 0, 12},
    {4, 600, 14},
    {5, 600, 14},
    {6, 600, 13},
    {100, 0, 14, &g_Settings.ListView.TextSize, 1},
    {101, 700, 14, &g_Settings.ListView.TextSize},
    {102, 700, 14, &g_Settings.ListView.TextTitleSize},
    {200, 0, 14},
    {201, 0, 12},
    {300, 700, 15},
    {400, 0, 13},
    {500, 700, 10},
    {501, 0, 14, &g_Settings.MonthView.QuickViewTextSize},
    {502, 700, 11},
    {600, 0, 14, &g_Settings.DailyView.TextSize, 1},
    {601, 700, 14, &g_Settings.DailyView.TextSize},
    {602, 700, 14, &g_Settings.DailyView.TextSize, 0, true},
    {700, 0, 14, &g_Settings.WeekView.TextSize},
    {701, 0, 14, &g_Settings.WeekView.TextTitleSize},
    {800, 0, 14, &g_Settings.TasksView.TextSize},
    {801, 700, 14, &g_Settings.TasksView.TextTitleSize},
    {802, 0, 14, &g_Settings.TasksView.PreviewTextSize},
    {900, 700, 11},
    {1000, 700, 12, &g_Settings.General.CustomTitlebarSize},
};

constexpr int kTitleStripFont = 1000;
constexpr int kLeastHeight = 4; // design pixels: a size that the file got wrong must not hide
constexpr int kMostHeight = 96; // all text or fill the memory
} // namespace

FontSpec GetFontSpec(int id, int densityMultiple)
{
    FontSpec spec;
    spec.ClearType = g_Settings.General.ForceClearType == 1;
    const auto row =
        std::find_if(std::begin(kFonts), std::end(kFonts), [id](const FontRow& f) { return f.Id == id; });
    if (row == std::end(kFonts))
        return spec;
    const qint64 multiple = std::clamp(densityMultiple, 1, 4);
    qint64 size = row->TextSize ? *row->TextSize : 0;
    if (id == kTitleStripFont) // as high as the strip, whose sizes are these
        size = std::clamp<qint64>(size, 0, kTitlebarSizeCount - 1);
    const qint64 height = multiple * (row->Base + size) - row->Less;
    spec.Weight = row->Weight;
    spec.PixelHeight = int(std::clamp(height, kLeastHeight * multiple, kMostHeight * multiple));
    spec.StrikeOut = row->StrikeOut;
    if (id == kTitleStripFont)
        spec.Escapement = g_Settings.General.CustomTitlebarLocation == 1   ? 900
                          : g_Settings.General.CustomTitlebarLocation == 3 ? 2700
                                                                           : 0;
    return spec;
}
