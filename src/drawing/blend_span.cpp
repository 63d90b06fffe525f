#include "drawing/blend_span.h"

#include <cstring>

// Eight pixels at a time, each plane in a 16-bit lane: the largest sum, 255 * 255 + 128 and its
// own high byte, is 65407 and just fits. Red and blue share one vector, alpha and green another.
// The processor's wider registers are used where the loader can choose by itself.
#if defined(__x86_64__) && defined(__GLIBC__) && defined(__GNUC__) && !defined(__clang__)
#define TESSERA_WIDEST __attribute__((target_clones("avx2", "default")))
#else
#define TESSERA_WIDEST
#endif

namespace
{
constexpr int kLanes = 8;
typedef quint32 Pixels __attribute__((vector_size(4 * kLanes)));
typedef quint16 Planes __attribute__((vector_size(4 * kLanes)));

constexpr quint32 kEven = 0x00FF00FF;
constexpr quint32 kOdd = 0xFF00FF00;
constexpr quint32 kOpaque = 0xFF000000;

inline quint32 Blend2(quint32 a, quint32 b, quint32 alpha)
{
    const quint32 t = a * alpha + b * (255 - alpha) + 0x00800080;
    return (t + (t >> 8 & kEven)) >> 8 & kEven;
}

inline quint32 BlendPixel(quint32 a, quint32 b, quint32 alpha)
{
    return Blend2(a & kEven, b & kEven, alpha) | Blend2(a >> 8 & kEven, b >> 8 & kEven, alpha) << 8 | kOpaque;
}
} // namespace

TESSERA_WIDEST void BlendSpan(quint32* dst, const quint32* src, int count)
{
    int i = 0;
    for (; i + kLanes <= count; i += kLanes) {
        Pixels s;
        Pixels d;
        std::memcpy(&s, src + i, sizeof s);
        std::memcpy(&d, dst + i, sizeof d);
        const Pixels one = s >> 24;
        const Pixels two = one | one << 16;
        const Planes alpha = reinterpret_cast<Planes>(two);
        const Planes rest = reinterpret_cast<Planes>(two ^ kEven);
        Planes even =
            reinterpret_cast<Planes>(s & kEven) * alpha + reinterpret_cast<Planes>(d & kEven) * rest + 128;
        Planes odd = reinterpret_cast<Planes>(s >> 8 & kEven) * alpha +
                     reinterpret_cast<Planes>(d >> 8 & kEven) * rest + 128;
        even = (even + (even >> 8)) >> 8;
        odd = odd + (odd >> 8);
        d = reinterpret_cast<Pixels>(even) | (reinterpret_cast<Pixels>(odd) & kOdd) | kOpaque;
        std::memcpy(dst + i, &d, sizeof d);
    }
    for (; i < count; ++i)
        dst[i] = BlendPixel(src[i], dst[i], src[i] >> 24);
}

TESSERA_WIDEST void BlendColorSpan(quint32* dst, int count, quint32 rgb, quint32 alpha)
{
    // What does not depend on the ground is worked out once.
    const quint32 fixedEven = (rgb & kEven) * alpha + 0x00800080;
    const quint32 fixedOdd = (rgb >> 8 & kEven) * alpha + 0x00800080;
    const Pixels evenPixels = Pixels{} + fixedEven;
    const Pixels oddPixels = Pixels{} + fixedOdd;
    const quint16 rest = quint16(255 - alpha);
    int i = 0;
    for (; i + kLanes <= count; i += kLanes) {
        Pixels d;
        std::memcpy(&d, dst + i, sizeof d);
        Planes even = reinterpret_cast<Planes>(d & kEven) * rest + reinterpret_cast<Planes>(evenPixels);
        Planes odd = reinterpret_cast<Planes>(d >> 8 & kEven) * rest + reinterpret_cast<Planes>(oddPixels);
        even = (even + (even >> 8)) >> 8;
        odd = odd + (odd >> 8);
        d = reinterpret_cast<Pixels>(even) | (reinterpret_cast<Pixels>(odd) & kOdd) | kOpaque;
        std::memcpy(dst + i, &d, sizeof d);
    }
    for (; i < count; ++i)
        dst[i] = BlendPixel(rgb, dst[i], alpha);
}
