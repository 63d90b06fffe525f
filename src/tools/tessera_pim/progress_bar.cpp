#include "tools/tessera_pim/progress_bar.h"

#include <algorithm>
#include <cstdio>
#include <unistd.h>

namespace
{
constexpr qint64 kPeriodMs = 100;
constexpr int kWidth = 30;
constexpr int kLabelWidth = 30;
} // namespace

CProgressBar::CProgressBar(const QString& label, qint64 total)
    : m_label(label.right(kLabelWidth)), m_total(total), m_isTerminal(isatty(STDERR_FILENO) == 1)
{
    m_clock.start();
}

void CProgressBar::Show(qint64 done)
{
    if (!m_isTerminal || m_clock.elapsed() - m_last < kPeriodMs)
        return;
    m_last = m_clock.elapsed();
    m_shown = true;
    const double megabytes = double(done) / 1e6;
    if (m_total <= 0) {
        std::fprintf(stderr, "\r\033[K%s %.1f MB", m_label.toLocal8Bit().constData(), megabytes);
    } else {
        const int filled = int(std::clamp<qint64>(done * kWidth / m_total, 0, kWidth));
        std::fprintf(stderr, "\r\033[K%s [%s%s] %lld%%", m_label.toLocal8Bit().constData(),
                     std::string(size_t(filled), '#').c_str(),
                     std::string(size_t(kWidth - filled), '.').c_str(),
                     static_cast<long long>(std::min<qint64>(done * 100 / m_total, 100)));
    }
    std::fflush(stderr);
}

void CProgressBar::Clear()
{
    if (!m_shown)
        return;
    m_shown = false;
    std::fputs("\r\033[K", stderr);
    std::fflush(stderr);
}
