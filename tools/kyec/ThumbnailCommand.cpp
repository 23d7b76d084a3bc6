#include "KyecArguments.h"
#include "KyecCommand.h"
#include "KyecOutput.h"

#include <KyExtension.h>
#include <KyIconReaderAsync.h>
#include <KyThumbnail.h>
#include <Path.h>

#include <QDateTime>
#include <QDir>
#include <QEventLoop>
#include <QFileInfo>
#include <QIcon>
#include <QImageReader>

#include <cstdio>
#include <memory>

namespace Kyte {

static const QString SIZE = QStringLiteral("size");
static const QString OVERWRITE = QStringLiteral("overwrite");
static const int DEFAULT_SIZE = 256;

/** Lines like "[2/7] made: a.png", and how often there was each word. */
class Progress
{
public:
    explicit Progress(int total)
        : m_total(total)
    {
    }

    void step(const QString &word, const QString &text)
    {
        ++m_counts[word];
        print(QStringLiteral("[%1/%2] %3: %4\n")
                  .arg(QString::number(++m_done), QString::number(m_total), word, text));
        std::fflush(stdout); // it is watched
    }
    int count(const QString &word) const
    {
        return m_counts.value(word);
    }

private:
    int m_total = 0;
    int m_done = 0;
    QMap<QString, int> m_counts;
};

static MediaType::MediaTypes mediaType(const QFileInfo &file)
{
    return KyExtension().getMediaType(Path::getExtension(file.fileName()));
}

static QFileInfoList mediaFiles(const QString &folder)
{
    QFileInfoList files;
    const QFileInfoList all = QDir(folder).entryInfoList(QDir::Files, QDir::Name);
    for (const QFileInfo &file : all) {
        if (mediaType(file) != MediaType::None)
            files.append(file);
    }
    return files;
}

/** The image of \a path with no side longer than \a size. */
static QImage smallImage(const QString &path, int size)
{
    QImageReader reader(path);
    reader.setAutoTransform(true);
    reader.setDecideFormatFromContent(true);
    const QSize whole = reader.size();
    if (whole.width() > size || whole.height() > size)
        reader.setScaledSize(whole.scaled(size, size, Qt::KeepAspectRatio).expandedTo(QSize(1, 1)));
    return reader.read();
}

/** Makes the thumbnail of the image file \a file and answers what became of it. */
static QString make(const QFileInfo &file, int size, bool overwrite)
{
    QString path = file.absoluteFilePath();
    const QFileInfo old(KyThumbnail::getFilePropertyFromHashFile(path).thumbnailPath);
    if (!overwrite && old.isFile() && old.lastModified() >= file.lastModified())
        return QStringLiteral("kept");
    KyThumbnail thumbnail(path, nullptr, false);
    thumbnail.setPixmap(QPixmap::fromImage(smallImage(path, size)));
    return thumbnail.write(true) ? QStringLiteral("made") : QStringLiteral("failed");
}

/** Reads the thumbnails of \a files on a worker thread, as a view does. */
static void read(const QFileInfoList &files, Progress *progress)
{
    QStringList paths;
    for (const QFileInfo &file : files)
        paths.append(file.absoluteFilePath());
    auto *reader = new KyIconReaderAsync(paths); // deletes itself
    QEventLoop loop;
    QObject::connect(
        reader, &KyIconReaderAsync::iconReadCompleted, &loop, [progress](const QString &path, QIcon *icon) {
            const std::unique_ptr<QIcon> owned(icon);
            const QSize size = icon->availableSizes().value(0, QSize(0, 0));
            progress->step(size.isEmpty() ? QStringLiteral("unreadable") : QStringLiteral("read"),
                           QStringLiteral("%1, %2x%3")
                               .arg(QFileInfo(path).fileName(), QString::number(size.width()),
                                    QString::number(size.height())));
        });
    QObject::connect(reader, &KyIconReaderAsync::iconReadFailed, &loop, [progress](const QString &path) {
        progress->step(QStringLiteral("none"), QFileInfo(path).fileName());
    });
    QObject::connect(reader, SIGNAL(destroyed()), &loop, SLOT(quit()));
    reader->start();
    loop.exec();
}

int runThumbnails(KyecArguments &arguments)
{
    arguments.addOption(SIZE,
                        QStringLiteral("Longest side of a new thumbnail, %1 by default.").arg(DEFAULT_SIZE),
                        QStringLiteral("PIXELS"));
    arguments.addOption(OVERWRITE, QStringLiteral("Make also those that are there and up to date."));
    int size = DEFAULT_SIZE;
    if (!arguments.parse(1) || !arguments.readInteger(SIZE, 1, &size))
        return arguments.exitCode();
    const QString folder = arguments.positional().value(0);
    if (folder.isEmpty())
        return arguments.wrongUsage(QStringLiteral("Which folder?"));
    if (!QFileInfo(folder).isDir())
        return fail(QStringLiteral("There is no such folder: %1").arg(QDir::toNativeSeparators(folder)));

    const QFileInfoList files = mediaFiles(folder);
    QFileInfoList images;
    for (const QFileInfo &file : files) {
        if (mediaType(file) == MediaType::Image)
            images.append(file);
    }
    Progress making(images.size());
    for (const QFileInfo &file : qAsConst(images))
        making.step(make(file, size, arguments.isSet(OVERWRITE)), file.fileName());
    Progress reading(files.size());
    read(files, &reading);

    const int failures = making.count(QStringLiteral("failed"));
    const int unreadable = reading.count(QStringLiteral("unreadable"));
    print(QStringLiteral("%1: %2 made, %3 kept, %4 failed; %5 read, %6 unreadable, %7 without a thumbnail\n")
              .arg(counted(files.size(), QStringLiteral("media file")))
              .arg(making.count(QStringLiteral("made")))
              .arg(making.count(QStringLiteral("kept")))
              .arg(failures)
              .arg(reading.count(QStringLiteral("read")))
              .arg(unreadable)
              .arg(reading.count(QStringLiteral("none"))));
    return failures + unreadable == 0 ? Exit_Success : Exit_Failure;
}

} // namespace Kyte
