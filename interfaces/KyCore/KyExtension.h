#pragma once

#include <KyCoreExport.h>
#include <MediaType.h>

#include <QString>

namespace Kyte {

/** Tells the kind of a media file by its extension. Has no state; may be used from any thread. */
class KYCORE_EXPORT KyExtension
{
public:
    /**
     * The media type of \a extension as Path::getExtension() gives it, MediaType::None for an unknown or
     * empty one. Upper case and one leading dot are accepted as well.
     */
    static MediaType::MediaTypes getMediaType(QString extension);
};

} // namespace Kyte
