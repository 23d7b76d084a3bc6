#pragma once

#include "KyEditorCommonExport.h"

#include <QFileIconProvider>
#include <QImage>

namespace Kyte {

/**
 * The icons of files for views: the system's, with the stored thumbnail of the file where there is one. Has
 * no state; belongs to the GUI thread, except for getThumbnailFilePath() and getIconImage(), which may be
 * called on any.
 */
class KYEDITORCOMMON_EXPORT KyLibFileIconProvider : public QFileIconProvider
{
    Q_DISABLE_COPY(KyLibFileIconProvider)

public:
    KyLibFileIconProvider() = default;

    using QFileIconProvider::icon;
    /** The system's icon for \a info with the thumbnail, if there is one, added at 32 by 32. Any file may
     * have one, also one that is no media file. */
    QIcon icon(const QFileInfo &info) const override;

    /** The system's icon for \a info with \a image added in its own size. */
    QIcon getIcon(const QImage &image, const QFileInfo &info) const;
    /** The thumbnail of \a info stretched to exactly \a size; null when there is none, or \a size is empty or
     * too large for an image. */
    QImage getIconImage(const QFileInfo &info, const QSize &size) const;
    /** The absolute path at which the thumbnail of \a info belongs, whether it is there or not; empty if that
     * is no media file. */
    QString getThumbnailFilePath(const QFileInfo &info) const;
};

} // namespace Kyte
