#include "Thumbnails.h"

#include <KyExtension.h>
#include <KyIconReaderAsync.h>
#include <KyThumbnail.h>
#include <Path.h>

#include <QImageReader>
#include <QRunnable>

#include <memory>

using namespace Kyte;

static const int KEPT_ICONS = 2000;
static const int LOOK_UP_DELAY = 15; // milliseconds: a view asks for all that it shows, one after the other
static const QSize THUMBNAIL_SIZE(256, 192);

/** Loads a picture in the size of a thumbnail and sends it to \a receiver, which outlives it. */
class PictureLoader : public QRunnable
{
public:
    PictureLoader(const QString &path, Thumbnails *receiver)
        : m_path(path)
        , m_receiver(receiver)
    {
    }

    void run() override
    {
        QImageReader reader(m_path);
        reader.setAutoTransform(true);
        const QSize size = reader.size();
        if (size.width() > THUMBNAIL_SIZE.width() || size.height() > THUMBNAIL_SIZE.height())
            reader.setScaledSize(size.scaled(THUMBNAIL_SIZE, Qt::KeepAspectRatio).expandedTo(QSize(1, 1)));
        const QImage picture = reader.read();
        QMetaObject::invokeMethod(m_receiver, "onPictureLoaded", Qt::QueuedConnection, Q_ARG(QString, m_path),
                                  Q_ARG(QImage, picture));
    }

private:
    QString m_path;
    Thumbnails *m_receiver = nullptr;
};

Thumbnails::Thumbnails(QObject *parent)
    : QObject(parent)
    , m_entries(KEPT_ICONS)
{
    m_loaders.setMaxThreadCount(1);
    m_lookUp.setSingleShot(true);
    m_lookUp.setInterval(LOOK_UP_DELAY);
    m_carrying.setInterval(0);
    connect(&m_lookUp, SIGNAL(timeout()), this, SLOT(lookUp()));
    connect(&m_carrying, SIGNAL(timeout()), this, SLOT(carryNext()));
}

Thumbnails::~Thumbnails()
{
    m_loaders.clear();
    m_loaders.waitForDone();
}

QIcon Thumbnails::icon(const QFileInfo &file)
{
    const QString path = file.absoluteFilePath();
    const Entry *entry = m_entries.object(path);
    if (entry && entry->fileTime == file.lastModified())
        return entry->icon;
    if (!m_asked.contains(path)) {
        m_asked.insert(path);
        m_wanted.append(file);
        if (!m_lookUp.isActive())
            m_lookUp.start();
    }
    return entry ? entry->icon : QIcon();
}

void Thumbnails::forgetWaiting()
{
    for (const QFileInfo &file : qAsConst(m_wanted))
        m_asked.remove(file.absoluteFilePath());
    for (const QString &path : qAsConst(m_unmade))
        m_asked.remove(path);
    m_wanted.clear();
    m_unmade.clear();
}

void Thumbnails::carry(const QString &from, const QString &to)
{
    m_uncarried.append({from, to});
    m_carrying.start();
}

void Thumbnails::lookUp()
{
    QStringList stored;
    for (const QFileInfo &file : qAsConst(m_wanted)) {
        const QString path = file.absoluteFilePath();
        const QString thumbnailPath = m_provider.getThumbnailFilePath(file);
        const QFileInfo thumbnail(thumbnailPath);
        const bool isStored = !thumbnailPath.isEmpty() && thumbnail.isFile();
        const bool isPicture = KyExtension::getMediaType(Path::getExtension(path)) == MediaType::Image;
        if (isStored && (!isPicture || thumbnail.lastModified() >= file.lastModified()))
            stored.append(path);
        else if (isPicture)
            m_unmade.append(path);
        else
            enter(path, QIcon());
    }
    m_wanted.clear();
    read(stored);
    makeNext();
}

void Thumbnails::read(const QStringList &paths)
{
    if (paths.isEmpty())
        return;
    auto *reader = new KyIconReaderAsync(paths, this); // deletes itself
    connect(reader, SIGNAL(iconReadCompleted(QString, QIcon *)), this, SLOT(onIconRead(QString, QIcon *)));
    connect(reader, SIGNAL(iconReadFailed(QString)), this, SLOT(onIconFailed(QString)));
    reader->start();
}

void Thumbnails::onIconRead(const QString &path, QIcon *icon)
{
    const std::unique_ptr<QIcon> read(icon);
    enter(path, *read);
}

void Thumbnails::onIconFailed(const QString &path)
{
    enter(path, QIcon());
}

void Thumbnails::makeNext()
{
    if (m_isMaking || m_unmade.isEmpty())
        return;
    m_isMaking = true;
    m_loaders.start(new PictureLoader(m_unmade.takeLast(), this));
}

/** Storing handles pixmaps and belongs here; one picture at a time, so that the window goes on answering. */
void Thumbnails::onPictureLoaded(const QString &path, const QImage &picture)
{
    m_isMaking = false;
    KyThumbnail thumbnail(path, nullptr, false);
    if (!picture.isNull()) {
        thumbnail.setPixmap(QPixmap::fromImage(picture));
        thumbnail.write(true);
    }
    if (picture.isNull())
        enter(path, QIcon());
    else
        read({path}); // fails where it could not be stored
    QTimer::singleShot(0, this, SLOT(makeNext()));
}

void Thumbnails::carryNext()
{
    if (m_uncarried.isEmpty()) {
        m_carrying.stop();
        return;
    }
    const QPair<QString, QString> file = m_uncarried.takeFirst();
    KyThumbnail thumbnail(file.second, nullptr, false);
    thumbnail.setPixmap(KyThumbnail(file.first, nullptr, true).pixmap());
    if (thumbnail.write(false)) {
        m_entries.remove(file.second); // it may have been looked up in vain before
        emit changed();
    }
}

void Thumbnails::enter(const QString &path, const QIcon &icon)
{
    m_asked.remove(path);
    m_entries.insert(path, new Entry{QFileInfo(path).lastModified(), icon});
    emit changed();
}
