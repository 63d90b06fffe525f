// Tiny surfaces as text: one letter a pixel, one line a row.
#pragma once
#include <QImage>
#include <map>
#include <string>

#include "util/color.h"

constexpr COLORREF kPaper = Rgb(255, 255, 255); // "."
constexpr COLORREF kInk = Rgb(10, 20, 30);      // "#"

inline COLORREF ColorAt(const QImage& image, int x, int y)
{
    const QRgb pixel = image.pixel(x, y);
    return Rgb(quint32(qRed(pixel)), quint32(qGreen(pixel)), quint32(qBlue(pixel)));
}

// Colours without a letter of their own are "?".
inline std::string Art(const QImage& image, const std::map<COLORREF, char>& more = {})
{
    std::string art;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            const COLORREF color = ColorAt(image, x, y);
            const auto named = more.find(color);
            art += named != more.end() ? named->second : color == kPaper ? '.' : color == kInk ? '#' : '?';
        }
        art += '\n';
    }
    return art;
}
