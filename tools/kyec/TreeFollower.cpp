#include "TreeFollower.h"

#include "KyecCommand.h"
#include "KyecOutput.h"
#include "TextTable.h"

#include <KyFileSystemModel.h>

#include <QCoreApplication>
#include <QHash>

namespace Kyte {

static const int REFRESH_DELAY = 50; // milliseconds

static QHash<QString, MediaEntry> byPath(const QVector<MediaEntry> &entries)
{
    QHash<QString, MediaEntry> result;
    for (const MediaEntry &entry : entries)
        result.insert(entry.path, entry);
    return result;
}

static QString changeLine(char sign, const MediaEntry &entry)
{
    // The text has the name once more: only what follows it is wanted behind the whole path.
    const QString shown = TextTable::printable(entry.path);
    const QString name = shown.section(QLatin1Char('/'), -1, -1, QString::SectionSkipEmpty);
    const QString rest = entry.text.mid(name.size() + (entry.isFolder() ? 1 : 0));
    return QStringLiteral("%1 %2\n").arg(QLatin1Char(sign)).arg(shown + rest);
}

TreeFollower::TreeFollower(KyFileSystemModel *model, const QVector<MediaEntry> &entries)
    : m_model(model)
    , m_entries(entries)
{
    m_model->setRefreshDelay(REFRESH_DELAY);
    m_timer.setSingleShot(true);
    connect(&m_timer, SIGNAL(timeout()), this, SLOT(printChanges()));
    connect(&m_watcher, SIGNAL(directoryChanged(QString)), this, SLOT(onFolderChanged(QString)));
    connect(m_model, SIGNAL(layoutChanged()), this, SLOT(onTreeChanged()));
    connect(m_model, SIGNAL(rowsRemoved(QModelIndex, int, int)), this, SLOT(onTreeChanged()));
    m_watcher.addPath(m_model->rootPath());
    watchEmptyFolders();
}

/** The model may not be read further while it tells of a change. */
void TreeFollower::onTreeChanged()
{
    m_timer.start(0);
}

void TreeFollower::onFolderChanged(const QString &path)
{
    if (!QFileInfo::exists(m_model->rootPath())) {
        m_watcher.disconnect(this); // its other folders go as well, and each would be told
        QCoreApplication::exit(fail(
            QStringLiteral("The folder is gone: %1").arg(QDir::toNativeSeparators(m_model->rootPath()))));
        return;
    }
    // Once it is read with something in it, the model watches it by itself.
    const QModelIndex folder = m_model->index(path);
    if (folder.isValid() && m_model->rowCount(folder) == 0)
        m_model->fetchMore(folder);
}

void TreeFollower::printChanges()
{
    const QVector<MediaEntry> entries = readMediaTree(m_model);
    const QHash<QString, MediaEntry> now = byPath(entries);
    const QHash<QString, MediaEntry> before = byPath(m_entries);
    for (const MediaEntry &entry : qAsConst(m_entries)) {
        if (!now.contains(entry.path))
            print(changeLine('-', entry));
    }
    for (const MediaEntry &entry : entries) {
        const auto former = before.constFind(entry.path);
        if (former == before.constEnd())
            print(changeLine('+', entry));
        else if (entry.isChangedFrom(*former))
            print(changeLine('*', entry));
    }
    m_entries = entries;
    watchEmptyFolders();
    if (!finishOutput())
        QCoreApplication::exit(Exit_Failure);
}

void TreeFollower::watchEmptyFolders()
{
    const QString root = m_model->rootPath();
    QStringList paths;
    for (const MediaEntry &entry : qAsConst(m_entries)) {
        if (entry.isEmptyFolder)
            paths.append(QDir::cleanPath(QDir(root).filePath(entry.path)));
    }
    const QStringList watched = m_watcher.directories();
    for (const QString &path : watched) {
        if (path != root && !paths.contains(path))
            m_watcher.removePath(path);
    }
    for (const QString &path : qAsConst(paths)) {
        if (!watched.contains(path))
            m_watcher.addPath(path);
    }
}

} // namespace Kyte
