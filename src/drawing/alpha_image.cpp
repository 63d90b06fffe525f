#include "drawing/alpha_image.h"

#include <algorithm>

CAlphaImage CAlphaImage::FromImage(const QImage& image)
{
    CAlphaImage result;
    if (!result.Create(image.width(), image.height()))
        return result;
    const QImage source = image.convertToFormat(QImage::Format_ARGB32);
    if (source.isNull()) {
        result.Clear();
        return result;
    }
    const size_t count = result.Count();
    quint8* planes = result.m_planes.data();
    size_t at = 0;
    for (int y = 0; y < result.m_height; ++y) {
        const auto* line = reinterpret_cast<const QRgb*>(source.constScanLine(y));
        for (int x = 0; x < result.m_width; ++x, ++at) {
            planes[at] = quint8(qRed(line[x]));
            planes[count + at] = quint8(qGreen(line[x]));
            planes[2 * count + at] = quint8(qBlue(line[x]));
            planes[3 * count + at] = quint8(qAlpha(line[x]));
        }
    }
    return result;
}

bool CAlphaImage::Create(int width, int height)
{
    Clear();
    if (width <= 0 || height <= 0 || width > kMaxSide || height > kMaxSide)
        return false;
    if (qint64(width) * height > kMaxPixels)
        return false;
    m_width = width;
    m_height = height;
    m_planes.assign(4 * Count(), 0);
    return true;
}

bool CAlphaImage::CreateSolid(int width, int height, COLORREF color, quint8 alpha)
{
    if (!Create(width, height))
        return false;
    const auto count = std::ptrdiff_t(Count());
    std::fill_n(m_planes.begin(), count, quint8(RedOf(color)));
    std::fill_n(m_planes.begin() + count, count, quint8(GreenOf(color)));
    std::fill_n(m_planes.begin() + 2 * count, count, quint8(BlueOf(color)));
    std::fill_n(m_planes.begin() + 3 * count, count, alpha);
    return true;
}

void CAlphaImage::Clear()
{
    m_planes.clear();
    m_planes.shrink_to_fit();
    m_pixels.clear();
    m_pixels.shrink_to_fit();
    m_width = m_height = 0;
}

quint8* CAlphaImage::EditPlane(int n)
{
    m_pixels.clear();
    return m_planes.empty() ? nullptr : m_planes.data() + size_t(n) * Count();
}

const quint32* CAlphaImage::Pixels() const
{
    if (m_pixels.empty() && IsValid()) {
        const size_t count = Count();
        const quint8* red = Red();
        const quint8* green = Green();
        const quint8* blue = Blue();
        const quint8* alpha = Alpha();
        m_pixels.resize(count);
        for (size_t i = 0; i < count; ++i)
            m_pixels[i] = quint32(alpha[i]) << 24 | quint32(red[i]) << 16 | quint32(green[i]) << 8 | blue[i];
    }
    return m_pixels.data();
}

QImage CAlphaImage::ToImage() const
{
    if (!IsValid())
        return QImage();
    return QImage(reinterpret_cast<const uchar*>(Pixels()), m_width, m_height, m_width * 4,
                  QImage::Format_ARGB32)
        .copy();
}
