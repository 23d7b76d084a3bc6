#pragma once

namespace Kyte {
/** What happened to a screen's content. */
namespace KyEventType {

/** The underlying type is fixed: values come from files, and one that is not listed must stay a value. */
enum EventType : int {
    Ignore = 1, ///< events set on the screen are ignored
    Started,
    Paused,
    Finished,
    HeadTransitionFinished,
    TailTransitionStarted,
    TimeElapsed, ///< after KyEvent::elapsedTime() from the start of the content
    Clicked ///< or touched
};

} // namespace KyEventType
} // namespace Kyte
