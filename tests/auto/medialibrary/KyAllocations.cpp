/* Counts what every library of the process takes from the heap: the program's own malloc() goes before
 * glibc's. */

#include "KyAllocations.h"

#include <atomic>
#include <cstdlib>

#include <malloc.h>

extern "C" {
void *__libc_malloc(size_t size);
void *__libc_calloc(size_t count, size_t size);
void *__libc_realloc(void *memory, size_t size);
void __libc_free(void *memory);
}

static std::atomic<qint64> inUse{0};
static std::atomic<qint64> peak{0};
static std::atomic<qint64> atReset{0};

static void *taken(void *memory)
{
    const qint64 now = inUse += qint64(malloc_usable_size(memory));
    qint64 before = peak;
    while (now > before && !peak.compare_exchange_weak(before, now)) { }
    return memory;
}

static void *given(void *memory)
{
    inUse -= qint64(malloc_usable_size(memory));
    return memory;
}

extern "C" {

void *malloc(size_t size)
{
    return taken(__libc_malloc(size));
}

void *calloc(size_t count, size_t size)
{
    return taken(__libc_calloc(count, size));
}

void *realloc(void *memory, size_t size)
{
    given(memory);
    void *result = __libc_realloc(memory, size);
    if (!result && size > 0)
        taken(memory); // which is untouched then
    return result ? taken(result) : nullptr;
}

void free(void *memory)
{
    __libc_free(given(memory));
}
}

namespace Kyte {
namespace Test {

qint64 peakBytes()
{
    return peak - atReset;
}

void resetPeak()
{
    atReset = inUse.load();
    peak = inUse.load();
}

} // namespace Test
} // namespace Kyte
