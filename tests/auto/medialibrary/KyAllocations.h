#pragma once

#include <QtGlobal>

namespace Kyte {
namespace Test {

/** The most bytes of the heap that were in use at once since resetPeak(), beyond what was in use then. */
qint64 peakBytes();
void resetPeak();

} // namespace Test
} // namespace Kyte
