// How long the start took: with TESSERA_TRACE_START=1 in the environment the milliseconds since
// this process began are printed when the first picture stands. In the place of 1 a caller may put
// the moment of its exec, in nanoseconds since 1970, which is exact where the kernel counts in
// hundredths of a second.
#pragma once

void TraceFirstPaint();
