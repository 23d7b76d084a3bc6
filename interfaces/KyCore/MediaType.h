#pragma once

namespace Kyte {
/** The kind of a media file, as KyExtension tells it by the file's extension. */
namespace MediaType {

enum MediaTypes : int {
    None = 0, ///< not a media file
    Image,
    Video,
    Audio,
    Text,
    Presentation
};

} // namespace MediaType
} // namespace Kyte
