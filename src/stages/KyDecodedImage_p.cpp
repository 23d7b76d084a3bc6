#include "KyDecodedImage_p.h"

#include <QFileInfo>

namespace Kyte {

static const qint64 SETTLING_TIME = 2000; // milliseconds: some file systems count in steps of two seconds

QImage KyDecodedImage::image(const QString &path)
{
    const QFileInfo file(path);
    if (!file.isFile()) { // a pipe would keep its reader waiting
        clear();
        return QImage();
    }
    const QDateTime lastModified = file.lastModified();
    const QDateTime metadataChanged = file.metadataChangeTime();
    if (m_isSettled && path == m_path && file.size() == m_size && lastModified == m_lastModified
        && metadataChanged == m_metadataChanged)
        return m_image;

    const QDateTime settled = QDateTime::currentDateTime().addMSecs(-SETTLING_TIME);
    m_path = path;
    m_size = file.size();
    m_lastModified = lastModified;
    m_metadataChanged = metadataChanged;
    m_isSettled = lastModified < settled && metadataChanged < settled;
    m_image = QImage(path);
    return m_image;
}

void KyDecodedImage::clear()
{
    *this = KyDecodedImage();
}

} // namespace Kyte
