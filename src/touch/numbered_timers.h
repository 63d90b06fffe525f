// Timers by number, as one owner has them; a number that is set again starts anew.
// A test fires them by hand; no event loop is needed then.
#pragma once
#include <QObject>
#include <functional>
#include <map>

class CNumberedTimers : public QObject
{
public:
    explicit CNumberedTimers(std::function<void(int id)> expired) : m_expired(std::move(expired)) {}
    void Set(int id, int milliseconds);
    void Kill(int id);
    void KillAll();
    bool IsRunning(int id) const { return m_timers.count(id) != 0; }
    int PeriodOf(int id) const; // -1 when it does not run
    void Fire(int id);          // as if it had expired; nothing when it does not run

protected:
    void timerEvent(QTimerEvent* event) override;

private:
    struct Timer {
        int QtId = 0;
        int Period = 0;
    };
    std::function<void(int)> m_expired;
    std::map<int, Timer> m_timers;
};

// A short pause that lets the user see a picture before an action starts. Replaceable, so that
// no test waits.
void PauseFor(int milliseconds);
void SetPause(std::function<void(int)> pause); // empty returns to the real one
