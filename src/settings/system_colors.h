// The fixed colours that stand for a system's: a dark desktop theme must never give light text
// on our white. Only highlight and highlighted text follow the desktop (SetSystemColors).
#pragma once
#include "util/color.h"

namespace SystemColor
{
constexpr COLORREF Highlight = Rgb(36, 112, 168); // until the desktop's is known
constexpr COLORREF HighlightText = kColorWhite;
constexpr COLORREF Window = kColorWhite;
constexpr COLORREF WindowText = kColorBlack;
constexpr COLORREF StaticText = kColorBlack;
constexpr COLORREF GrayText = Rgb(109, 109, 109);
constexpr COLORREF TitleBand = Rgb(36, 112, 168); // the theme's shell colour 8: day titles, under white text
} // namespace SystemColor
