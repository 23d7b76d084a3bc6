#pragma once

#include <QDateTime>
#include <QImage>
#include <QString>

namespace Kyte {

/**
 * An image file that stays decoded until another one is asked for or the file changes. A file that changed a
 * moment ago is read each time: a second change might carry the same time stamps.
 */
class KyDecodedImage
{
public:
    /** The image in the file \a path; null when that is no file or holds no image. */
    QImage image(const QString &path);
    /** Lets the image go. */
    void clear();

private:
    QString m_path;
    qint64 m_size = 0;
    QDateTime m_lastModified;
    QDateTime m_metadataChanged;
    bool m_isSettled = false; ///< whether an unchanged file is told by its unchanged times
    QImage m_image;
};

} // namespace Kyte
