// Any bytes as the lines of a vCard: no contact is lost when what an export writes is read again, and
// cards do not grow from one round to the next. Of equal numbers that stand twice, one may go.
#include "import_bench.h"
#include "interchange/calendar_exporter.h"

#include <cstdio>

namespace
{
QByteArray Export(CImportBench& bench)
{
    QByteArray text;
    CCalendarExporter exporter(*bench.App, *bench.Volume, [&text](const QByteArray& part) {
        text += part;
        return true;
    });
    CExportRange contactsAlone;
    contactsAlone.Calendar = false;
    if (!exporter.Export(contactsAlone))
        std::abort();
    return text;
}

// What an export makes of a file in an empty volume.
QByteArray Round(CImportBench& bench, const QByteArray& text)
{
    bench.Begin();
    Import(bench, reinterpret_cast<const uint8_t*>(text.constData()), size_t(text.size()));
    const QByteArray result = Export(bench);
    bench.End();
    return result;
}

// Whose cards they are, in order.
QList<QByteArray> Identity(const QByteArray& cards)
{
    QList<QByteArray> lines;
    for (const QByteArray& line : cards.split('\n')) {
        if (line.startsWith("BEGIN") || line.startsWith("UID"))
            lines << line;
    }
    return lines;
}
} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    static CImportBench bench;
    QByteArray card = "BEGIN:VCARD\r\n";
    card.append(reinterpret_cast<const char*>(data), qsizetype(size));
    card.append("\r\nEND:VCARD\r\n");
    const QByteArray first = Round(bench, card);
    const QByteArray second = Round(bench, first);
    const QByteArray third = Round(bench, second);
    if (Identity(second) != Identity(first) || third.count('\n') > second.count('\n')) {
        std::fprintf(stderr, "first:\n%s\nsecond:\n%s\nthird:\n%s\n", first.constData(), second.constData(),
                     third.constData());
        std::abort();
    }
    return 0;
}
