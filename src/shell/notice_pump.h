// Brings the volume's changes to the store and tells, once per drain, which views they concern.
// A long import beside the window gives notices without end: the pump rests between two drains as
// much longer as they take, so that most of the time is the finger's.
// Ownership: keeps the volume; the store is the global one.
#pragma once
#include "pim/pim_store.h"
#include "platform/property_volume.h"
#include "platform/volume_watcher.h"

#include <QElapsedTimer>
#include <QObject>
#include <QTimer>
#include <functional>
#include <memory>

class CNoticePump : public QObject
{
public:
    using Told = std::function<void(const CPimStore::CDrain&)>;

    // `displaced` is called at each poll while the file is not the one that was opened.
    CNoticePump(std::shared_ptr<CPropertyVolume> volume, Told told, std::function<void()> displaced = {});
    ~CNoticePump() override;

    void SetPolling(bool on); // while the window is visible
    void Drain();
    // How long to rest after a drain that took so long. Pure.
    static int RestAfter(qint64 drainMs);

private:
    void Schedule();

    std::unique_ptr<CVolumeWatcher> m_watcher;
    Told m_told;
    QTimer m_timer;
    QElapsedTimer m_sinceDrain;
    int m_rest = 0;
    bool m_draining = false;
};
