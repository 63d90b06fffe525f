#include "shell/notice_pump.h"

#include <algorithm>

namespace
{
constexpr qint64 kShortDrainMs = 10; // needs no rest
constexpr int kRestFactor = 3;
constexpr int kLongestRestMs = 1500;
} // namespace

CNoticePump::CNoticePump(std::shared_ptr<CPropertyVolume> volume, Told told, std::function<void()> displaced)
    : m_told(std::move(told))
{
    m_timer.setSingleShot(true);
    connect(&m_timer, &QTimer::timeout, this, [this] { Drain(); });
    m_watcher = std::make_unique<CVolumeWatcher>(std::move(volume));
    connect(m_watcher.get(), &CVolumeWatcher::Changed, this, [this] { Schedule(); });
    if (displaced)
        connect(m_watcher.get(), &CVolumeWatcher::Displaced, this, std::move(displaced));
    Schedule(); // what was written between the first reading and the watch
}

CNoticePump::~CNoticePump() = default;

void CNoticePump::SetPolling(bool on)
{
    m_watcher->SetPolling(on);
}

int CNoticePump::RestAfter(qint64 drainMs)
{
    return drainMs < kShortDrainMs ? 0 : int(std::min<qint64>(drainMs * kRestFactor, kLongestRestMs));
}

void CNoticePump::Schedule()
{
    if (m_timer.isActive())
        return;
    const qint64 since = m_sinceDrain.isValid() ? m_sinceDrain.elapsed() : kLongestRestMs;
    m_timer.start(int(std::max<qint64>(m_rest - since, 0)));
}

void CNoticePump::Drain()
{
    if (m_draining) // a view that pumps events while it is told
        return Schedule();
    m_timer.stop();
    m_draining = true;
    QElapsedTimer taken;
    taken.start();
    const CPimStore::CDrain drain = PimStore().DrainNotices();
    if (drain.Notices > 0 || drain.Overflowed)
        m_told(drain);
    m_rest = RestAfter(taken.elapsed());
    m_sinceDrain.start();
    m_draining = false;
}
