#include "shell/start_trace.h"

#include <QByteArray>
#include <QFile>
#include <QList>
#include <cstdio>
#include <ctime>
#include <unistd.h>

namespace
{
double Milliseconds(clockid_t clock)
{
    timespec now = {};
    clock_gettime(clock, &now);
    return double(now.tv_sec) * 1e3 + double(now.tv_nsec) / 1e6;
}

double SinceProcessStart()
{
    QFile stat(QStringLiteral("/proc/self/stat"));
    if (!stat.open(QIODevice::ReadOnly))
        return -1;
    // The 22nd field; the second, in brackets, may hold blanks.
    const QByteArray text = stat.readAll();
    const QList<QByteArray> fields = text.mid(text.lastIndexOf(')') + 2).split(' ');
    const double started = fields.value(19).toDouble() * 1e3 / double(sysconf(_SC_CLK_TCK));
    return Milliseconds(CLOCK_BOOTTIME) - started;
}
} // namespace

void TraceFirstPaint()
{
    const QByteArray wish = qgetenv("TESSERA_TRACE_START");
    if (wish.isEmpty())
        return;
    const double exec = wish.toDouble() / 1e6;
    const double elapsed = exec > 1 ? Milliseconds(CLOCK_REALTIME) - exec : SinceProcessStart();
    std::fprintf(stderr, "first paint after %.1f ms\n", elapsed);
}
