#include "KyIconReader.h"

#include "KyThumbnailFile_p.h"

#include <QFileIconProvider>
#include <QFileInfo>
#include <QIcon>
#include <QMutexLocker>
#include <QPointer>
#include <QThread>

#include <utility>

namespace Kyte {

// Icons land in spies and queued connections by this text.
static const int ICON_TYPE_ID = qRegisterMetaType<QIcon *>("QIcon*");

/** Why \a file cannot be given an icon, null when it can. The reason is for whoever debugs; nobody is told.
 */
static const char *failureReason(const QFileInfo &file)
{
    const QFileInfo thumbnail(ThumbnailFile::pathOf(file));
    if (file.filePath().isEmpty() || !file.exists())
        return "The path is not exists";
    if (!QFileInfo(thumbnail.path()).isDir())
        return "The thumbnail directory is not found.";
    if (!thumbnail.isFile())
        return "The thumbnial file is not found.";
    return nullptr;
}

KyIconReader::KyIconReader(QObject *parent)
    : QObject(parent)
{
}

KyIconReader::KyIconReader(QString path, QObject *parent)
    : QObject(parent)
    , m_path(std::move(path))
{
}

KyIconReader::KyIconReader(QStringList &paths, QObject *parent)
    : QObject(parent)
    , m_pathList(paths)
{
}

KyIconReader::~KyIconReader()
{
    dropIcon();
}

QString KyIconReader::path() const
{
    return m_path;
}

void KyIconReader::setPath(QString path)
{
    m_path = std::move(path);
}

QStringList KyIconReader::pathList() const
{
    return m_pathList;
}

void KyIconReader::setPathList(QStringList &paths)
{
    m_pathList = paths;
}

QIcon *KyIconReader::icon() const
{
    return m_icon;
}

void KyIconReader::abort()
{
    setAborting(true);
}

void KyIconReader::setAborting(bool aborting)
{
    const QMutexLocker locker(&m_mutex);
    m_aborting = aborting;
}

bool KyIconReader::isAborting() const
{
    const QMutexLocker locker(&m_mutex);
    return m_aborting;
}

bool KyIconReader::read(bool deleting)
{
    if (deleting)
        dropIcon();

    const QPointer<KyIconReader> self(this);
    const QFileInfo file(m_path);
    const bool isReadable = !failureReason(file);
    if (isReadable) {
        QIcon icon = QFileIconProvider().icon(file);
        ThumbnailFile::addTo(&icon, ThumbnailFile::pathOf(file));
        dropIcon();
        m_icon = new QIcon(icon);
        m_deleting = deleting;
        emit readingCompleted(file.absoluteFilePath(), m_icon);
    } else {
        emit readingFailed(file.absoluteFilePath());
    }
    if (self)
        emit readingDone();
    return isReadable;
}

bool KyIconReader::readIconImage()
{
    if (!m_path.isEmpty() && !m_pathList.contains(m_path))
        m_pathList.prepend(m_path);

    const QPointer<KyIconReader> self(this);
    const QStringList paths = m_pathList;
    bool isComplete = true;
    for (const QString &path : paths) {
        if (isAborting() || QThread::currentThread()->isInterruptionRequested())
            break;

        const QFileInfo file(path);
        const bool isMedia = ThumbnailFile::isMedia(file) && file.exists();
        const QString thumbnail = isMedia ? ThumbnailFile::find(file) : QString();
        if (thumbnail.isEmpty()) {
            isComplete = false;
            emit readingFailed(file.absoluteFilePath());
        } else {
            emit readingImageCompleted(file.absoluteFilePath(), QImage(thumbnail));
            if (self)
                emit readingDone(); // after every image and not only at the end: chained readers count on it
        }
        if (!self)
            return isComplete;
    }
    emit readingDone();
    return isComplete;
}

void KyIconReader::onReadingDone()
{
    emit readingDone();
}

void KyIconReader::onReadingFailed(QString path)
{
    emit readingFailed(std::move(path));
}

void KyIconReader::onReadingImageCompleted(QString path, QImage image)
{
    emit readingImageCompleted(std::move(path), std::move(image));
}

/** An icon that its receiver owns is only forgotten. */
void KyIconReader::dropIcon()
{
    if (m_deleting)
        delete m_icon;
    m_icon = nullptr;
}

} // namespace Kyte
