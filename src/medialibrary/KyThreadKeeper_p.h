#pragma once

class QThread;

namespace Kyte {

/**
 * Lets threads outlive the objects that started them, though not the application. For threads that live in
 * the GUI thread, which also makes the calls.
 */
namespace ThreadKeeper {

/**
 * When the application object goes, interruption of \a thread is requested and its end awaited: what it still
 * did would meet destroyed globals.
 */
void endWithApplication(QThread *thread);

/** Takes \a thread from its parent; it is deleted once it has finished. */
void deleteWhenFinished(QThread *thread);

} // namespace ThreadKeeper
} // namespace Kyte
