// Any bytes as a picture: as TARGA by our own reader, and by what their first bytes say. What loads
// is within its limits, loads the same into a used image, and has as many pixels as it says.
#include "drawing/alpha_image.h"

#include <QtGlobal>
#include <cstdint>
#include <cstdlib>

namespace
{
constexpr qint64 kMostPixels = 1 << 16; // more of them would only cost time

void CheckPlanes(const CAlphaImage& image)
{
    if (image.Width() <= 0 || image.Height() <= 0 || image.Width() > CAlphaImage::kMaxSide)
        std::abort();
    const size_t count = size_t(image.Width()) * size_t(image.Height());
    for (const quint8* const plane : {image.Red(), image.Green(), image.Blue(), image.Alpha()}) {
        volatile quint8 last = plane[count - 1];
        (void)last;
    }
}
} // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***)
{
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString&) {}); // decoders complain
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    CAlphaImage image, used;
    if (size >= 18 && qint64(data[12] | data[13] << 8) * (data[14] | data[15] << 8) <= kMostPixels) {
        used.CreateSolid(3, 5, 0x123456, 7);
        const bool loaded = image.LoadTarga({data, size});
        if (loaded != image.IsValid() || loaded != used.LoadTarga({data, size}))
            std::abort();
        if (loaded) {
            CheckPlanes(image);
            if (image.ToImage() != used.ToImage())
                std::abort();
        }
    }
    if (image.LoadFromMemory(QByteArray(reinterpret_cast<const char*>(data), qsizetype(size)), kMostPixels)) {
        CheckPlanes(image);
        if (qint64(image.Width()) * image.Height() > kMostPixels)
            std::abort();
    }
    return 0;
}
