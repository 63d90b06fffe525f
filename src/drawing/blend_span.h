// The blend of util/color.h over runs of 32-bit pixels. Its rounding is stated there and kept
// here to the bit. Alpha of the result is 255.
#pragma once
#include <QtGlobal>

// dst[i] becomes the blend of the colour of src[i] over dst[i] by the alpha of src[i];
// src is 0xAARRGGBB, colours not multiplied by alpha.
void BlendSpan(quint32* dst, const quint32* src, int count);
// The same with one colour, 0x..RRGGBB, for all.
void BlendColorSpan(quint32* dst, int count, quint32 rgb, quint32 alpha);
