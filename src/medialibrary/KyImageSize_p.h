#pragma once

class QSize;

namespace Kyte {
namespace ImageSize {

/** The longest side that can be painted. */
const int MAX_SIDE = 32767;
/** 512 MiB in four bytes a pixel. */
const int MAX_PIXELS = 1 << 27;

/** Whether images of \a size are made: neither empty nor so large that they would take the machine's memory.
 */
bool isSensible(const QSize &size);

} // namespace ImageSize
} // namespace Kyte
