// Any bytes as a calendar file: read in blocks, translated and written into a volume, twice. That
// the second import of a file changes nothing is tested on sound files; bytes in which several items
// and their changes share one identifier may need the second import to settle.
#include "import_bench.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    static CImportBench bench;
    bench.Begin();
    Import(bench, data, size);
    Import(bench, data, size);
    bench.End();
    return 0;
}
