#pragma once

namespace Kyte {
/** What a screen plays. */
namespace ScreenType {

/** The underlying type is fixed: values come from files, and one that is not listed must stay a value. */
enum ScreenTypes : int {
    MultiMedia = 1, ///< images, videos, audio and other content
    Telop = 2 ///< captions
};

} // namespace ScreenType
} // namespace Kyte
