#pragma once

namespace Kyte {

class KyDestination;

namespace Test {

struct VisitResult
{
    bool isInitialized = false;
    bool isSaved = false;
};

/** Calls every operation of \a destination, init() first and saveData() last, whatever they answer. */
VisitResult visit(KyDestination *destination);

} // namespace Test
} // namespace Kyte
