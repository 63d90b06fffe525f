// Ends the program in order when the system asks it to: SIGTERM, SIGINT and SIGHUP.
// Ownership: one object at a time; the handlers before it come back with its end.
#pragma once
#include <QSocketNotifier>
#include <functional>
#include <memory>

class CQuitSignals
{
public:
    explicit CQuitSignals(std::function<void()> quit); // called from the event loop
    CQuitSignals(const CQuitSignals&) = delete;
    CQuitSignals& operator=(const CQuitSignals&) = delete;
    ~CQuitSignals();

private:
    int m_reader = -1;
    std::unique_ptr<QSocketNotifier> m_notifier;
};
