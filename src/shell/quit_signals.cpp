#include "shell/quit_signals.h"

#include <csignal>
#include <fcntl.h>
#include <unistd.h>

namespace
{
constexpr int kSignals[] = {SIGTERM, SIGINT, SIGHUP};
int g_writer = -1;

// Nothing but a write is safe in here.
void OnSignal(int)
{
    const char one = 1;
    if (write(g_writer, &one, 1) != 1)
        return;
}
} // namespace

CQuitSignals::CQuitSignals(std::function<void()> quit)
{
    int ends[2];
    if (pipe2(ends, O_CLOEXEC | O_NONBLOCK) != 0)
        return;
    m_reader = ends[0];
    g_writer = ends[1];
    m_notifier = std::make_unique<QSocketNotifier>(m_reader, QSocketNotifier::Read);
    QObject::connect(m_notifier.get(), &QSocketNotifier::activated, m_notifier.get(),
                     [reader = m_reader, quit = std::move(quit)] {
                         char taken[16];
                         while (read(reader, taken, sizeof taken) > 0) {
                         }
                         quit();
                     });
    for (const int number : kSignals) {
        struct sigaction action = {};
        action.sa_handler = OnSignal;
        action.sa_flags = SA_RESTART;
        sigaction(number, &action, nullptr);
    }
}

CQuitSignals::~CQuitSignals()
{
    if (m_reader < 0)
        return;
    for (const int number : kSignals)
        std::signal(number, SIG_DFL);
    m_notifier.reset();
    close(m_reader);
    close(std::exchange(g_writer, -1));
}
