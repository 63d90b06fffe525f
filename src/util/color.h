// Colours as the settings hold them: red in bits 0 to 7, green 8 to 15, blue 16 to 23;
// 0xFFFFFFFF means not set. All blending of single colours is here, exact to the bit.
#pragma once
#include <QtGlobal>

using COLORREF = quint32;
constexpr COLORREF kColorNotSet = 0xFFFFFFFFu;
constexpr COLORREF kColorBlack = 0;
constexpr COLORREF kColorWhite = 0xFFFFFF;

constexpr COLORREF Rgb(quint32 r, quint32 g, quint32 b) { return r | g << 8 | b << 16; }
constexpr quint32 RedOf(COLORREF c) { return c & 0xFF; }
constexpr quint32 GreenOf(COLORREF c) { return c >> 8 & 0xFF; }
constexpr quint32 BlueOf(COLORREF c) { return c >> 16 & 0xFF; }

// a * alpha + b * (255 - alpha), divided by 255 with rounding.
constexpr quint32 BlendChannel(quint32 a, quint32 b, quint32 alpha)
{
    const quint32 t = a * alpha + b * (255 - alpha) + 128;
    return (t + (t >> 8)) >> 8;
}
constexpr COLORREF Blend(COLORREF a, COLORREF b, quint32 alpha)
{
    return Rgb(BlendChannel(RedOf(a), RedOf(b), alpha), BlendChannel(GreenOf(a), GreenOf(b), alpha),
               BlendChannel(BlueOf(a), BlueOf(b), alpha));
}
// Towards white: weight 255 is the colour itself, 0 white.
constexpr COLORREF Lighten(COLORREF color, quint32 weight) { return Blend(color, kColorWhite, weight); }
