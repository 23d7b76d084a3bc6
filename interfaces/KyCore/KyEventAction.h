#pragma once

namespace Kyte {
/** What a screen does when an event reaches it or when its content ends. */
namespace KyEventAction {

/** The underlying type is fixed: values come from files, and one that is not listed must stay a value. */
enum EventAction : int {
    None = 0,
    Start,
    Pause,
    Finish,
    TransitToNextContent,
    TransitToSpecifiedContent, ///< to KyEvent::contentNumber()
    HideScreen,
    ShowScreen,
    Repeat,
    Wait,
    TransitToSameNumberAsSender
};

} // namespace KyEventAction
} // namespace Kyte
