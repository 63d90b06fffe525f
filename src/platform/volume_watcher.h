// Tells, on the event loop, that a volume has changed: at once for this process's own commits,
// within a quarter of a second for those of others (a watch on the -wal file, asked again 10 to
// 20 ms after each wake-up, and a poll every 2 s while polling is on).
// Ownership: borrows the volume, sets its commit hook.
#pragma once
#include "platform/property_volume.h"

#include <QObject>

class CVolumeWatcher : public QObject
{
    Q_OBJECT
public:
    CVolumeWatcher(std::shared_ptr<CPropertyVolume> volume, QObject* parent = nullptr);
    ~CVolumeWatcher() override;
    void SetPolling(bool on); // the safety net, while a window is visible

Q_SIGNALS:
    void Changed();
    void Displaced(); // at each poll while another file, or none, is in the volume's place

private:
    struct Private;
    std::unique_ptr<Private> d;
};
