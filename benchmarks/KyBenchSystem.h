#pragma once

#include <string>

namespace Kyte {
namespace Bench {

/** Processor time that this process has used so far, all its threads together, in milliseconds. */
double cpuMilliseconds();

/** Memory of this process that is in use now, in MiB; 0 where the system does not tell. */
double residentMemory();
/** The most that residentMemory() has been since resetPeakMemory(), in MiB. */
double peakMemory();
/**
 * Makes peakMemory() start anew. Free heap goes back to the system first: memory that lies about from an
 * earlier task would otherwise be used again without being seen as growth. False where the system cannot do
 * this.
 */
bool resetPeakMemory();

/** Bytes that are allocated on the heap, by all threads; 0 where the system does not tell. */
double heapBytes();

/** How busy the machine is, for the reader of a measurement. */
std::string loadAverage();

} // namespace Bench
} // namespace Kyte
