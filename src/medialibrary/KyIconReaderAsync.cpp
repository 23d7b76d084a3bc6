#include "KyIconReaderAsync.h"

#include "KyIconReader.h"
#include "KyThreadKeeper_p.h"

#include <QDeadlineTimer>
#include <QIcon>
#include <QPixmap>
#include <QThread>

#include <utility>

namespace Kyte {

static const int DESTRUCTION_WAIT = 500; // milliseconds

KyIconReaderAsync::KyIconReaderAsync(const QString &path, QObject *parent)
    : QObject(parent)
    , m_path(path)
{
}

KyIconReaderAsync::KyIconReaderAsync(const QStringList &paths, QObject *parent)
    : QObject(parent)
    , m_pathList(paths)
{
}

KyIconReaderAsync::KyIconReaderAsync(QObject *parent)
    : QObject(parent)
{
}

KyIconReaderAsync::~KyIconReaderAsync()
{
    stop();

    // A thread would otherwise not end: its own request to quit waits for an event loop that is not running.
    const QList<QThread *> threads = findChildren<QThread *>(QString(), Qt::FindDirectChildrenOnly);
    for (QThread *thread : threads)
        thread->quit();
    const QDeadlineTimer deadline(DESTRUCTION_WAIT);
    for (QThread *thread : threads) {
        if (!thread->wait(deadline))
            ThreadKeeper::deleteWhenFinished(thread); // destroying a running one would end the process
    }
}

QString KyIconReaderAsync::path() const
{
    return m_path;
}

void KyIconReaderAsync::setPath(const QString &path)
{
    m_path = path;
}

QStringList KyIconReaderAsync::pathList() const
{
    return m_pathList;
}

void KyIconReaderAsync::setPathList(const QStringList &paths)
{
    m_pathList = paths;
}

bool KyIconReaderAsync::isDeleteOnFinished() const
{
    return m_deleteOnFinished;
}

void KyIconReaderAsync::setDeleteOnFinished(bool deleteOnFinished)
{
    m_deleteOnFinished = deleteOnFinished;
}

void KyIconReaderAsync::start()
{
    m_thread = new QThread(this);
    ThreadKeeper::endWithApplication(m_thread);
    if (!m_path.isEmpty() && !m_pathList.contains(m_path))
        m_pathList.prepend(m_path);

    // Not kept in m_reader, so that stop() does not interrupt it: views rely on every file being answered.
    auto *reader = new KyIconReader(m_pathList);
    reader->moveToThread(m_thread);

    connect(m_thread, SIGNAL(started()), reader, SLOT(readIconImage()));
    connect(m_thread, SIGNAL(finished()), reader, SLOT(deleteLater()));
    connect(reader, SIGNAL(readingDone()), m_thread, SLOT(quit()));
    connect(reader, SIGNAL(readingImageCompleted(QString, QImage)), this, SLOT(makeIcon(QString, QImage)),
            Qt::QueuedConnection);
    connect(reader, SIGNAL(readingFailed(QString)), this, SLOT(onIconReadFailed(QString)),
            Qt::QueuedConnection);
    if (m_deleteOnFinished)
        connect(m_thread, SIGNAL(finished()), this, SLOT(deleteLater()));

    m_thread->start(QThread::InheritPriority);
}

void KyIconReaderAsync::stop()
{
    if (m_reader)
        m_reader->abort();
}

void KyIconReaderAsync::makeIcon(const QString &path, QImage image)
{
    if (receivers(SIGNAL(iconReadCompleted(QString, QIcon *))) == 0)
        return; // nobody would take the icon over
    auto *icon = new QIcon;
    icon->addPixmap(QPixmap::fromImage(std::move(image)), QIcon::Normal, QIcon::Off);
    emit iconReadCompleted(path, icon);
}

void KyIconReaderAsync::onIconReadCompleted(const QString &path, QIcon *icon)
{
    emit iconReadCompleted(path, icon);
}

void KyIconReaderAsync::onIconReadFailed(const QString &path)
{
    emit iconReadFailed(path);
}

} // namespace Kyte
