#include "KyFileModelProbe.h"

#include <KyTestEnvironment.h>

#include <QDir>
#include <QProcess>

namespace Kyte {
namespace Test {

QFileSystemWatcher *FileModel::watcher() const
{
    return findChild<QFileSystemWatcher *>();
}

QStringList FileModel::watched() const
{
    QStringList folders = watcher()->directories();
    QStringList files = watcher()->files();
    folders.sort();
    files.sort();
    return folders + files;
}

QModelIndex FileModel::at(const QString &path) const
{
    return index(path, 0);
}

void FileModel::update(const QModelIndex &index)
{
    if (onUpdate)
        onUpdate(index);
    KyFileSystemModel::update(index);
}

SignalRecorder::SignalRecorder(FileModel *model, const QString &base)
    : QObject(model)
    , m_model(model)
    , m_base(base)
{
    connect(model, SIGNAL(layoutAboutToBeChanged()), this, SLOT(onLayoutAboutToBeChanged()));
    connect(model, SIGNAL(layoutChanged()), this, SLOT(onLayoutChanged()));
    connect(model, SIGNAL(rowsAboutToBeRemoved(QModelIndex, int, int)), this,
            SLOT(onRowsAboutToBeRemoved(QModelIndex, int, int)));
    connect(model, SIGNAL(rowsRemoved(QModelIndex, int, int)), this,
            SLOT(onRowsRemoved(QModelIndex, int, int)));
    connect(model, SIGNAL(modelReset()), this, SLOT(onModelReset()));
    connect(model, SIGNAL(rowsInserted(QModelIndex, int, int)), this, SLOT(onRowsInserted()));
    connect(model, SIGNAL(dataChanged(QModelIndex, QModelIndex)), this, SLOT(onDataChanged()));
    connect(model, SIGNAL(directoryLoaded(QString)), this, SLOT(onDirectoryLoaded(QString)));
    connect(model, SIGNAL(fileRenamed(QString, QString, QString)), this,
            SLOT(onFileRenamed(QString, QString, QString)));
    connect(model, SIGNAL(itemDeleted(QList<void *>)), this, SLOT(onItemDeleted(QList<void *>)));
    learn();
}

void SignalRecorder::learn()
{
    m_names.clear();
    learn(m_model->getItem(QModelIndex()));
}

void SignalRecorder::learn(KyFileSystemItem *item)
{
    if (!item)
        return;
    m_names.insert(item, relative(item->absolutePath()));
    for (int row = 0; row < item->childCount(); ++row)
        learn(item->childAt(row));
}

QString SignalRecorder::nameOf(void *address) const
{
    return m_names.value(address, QStringLiteral("?"));
}

QStringList SignalRecorder::take()
{
    const QStringList texts = m_texts;
    m_texts.clear();
    return texts;
}

void SignalRecorder::onLayoutAboutToBeChanged()
{
    record(QStringLiteral("layoutAboutToBeChanged"));
}

void SignalRecorder::onLayoutChanged()
{
    record(QStringLiteral("layoutChanged"));
}

void SignalRecorder::onRowsAboutToBeRemoved(const QModelIndex &parent, int first, int last)
{
    record(QStringLiteral("rowsAboutToBeRemoved(%1 %2 %3)")
               .arg(parent.isValid() ? relative(m_model->filePath(parent)) : QStringLiteral("-"))
               .arg(first)
               .arg(last));
}

void SignalRecorder::onRowsRemoved(const QModelIndex &parent, int first, int last)
{
    record(QStringLiteral("rowsRemoved(%1 %2 %3)")
               .arg(parent.isValid() ? relative(m_model->filePath(parent)) : QStringLiteral("-"))
               .arg(first)
               .arg(last));
}

void SignalRecorder::onModelReset()
{
    record(QStringLiteral("modelReset"));
}

void SignalRecorder::onRowsInserted()
{
    record(QStringLiteral("rowsInserted"));
}

void SignalRecorder::onDataChanged()
{
    record(QStringLiteral("dataChanged"));
}

void SignalRecorder::onDirectoryLoaded(const QString &path)
{
    record(QStringLiteral("directoryLoaded(%1)").arg(relative(path)));
}

void SignalRecorder::onFileRenamed(const QString &path, const QString &oldName, const QString &newName)
{
    record(QStringLiteral("fileRenamed(%1 %2 %3)").arg(relative(path), oldName, newName));
}

void SignalRecorder::onItemDeleted(const QList<void *> &items)
{
    QStringList names;
    for (void *item : items)
        names.append(nameOf(item));
    record(QStringLiteral("itemDeleted(%1)").arg(names.join(QLatin1Char(' '))));
}

void SignalRecorder::record(const QString &text)
{
    m_texts.append(text);
    if (onSignal)
        onSignal(text);
}

QString SignalRecorder::relative(const QString &path) const
{
    if (path == m_base)
        return QStringLiteral(".");
    return path.startsWith(m_base + QLatin1Char('/')) ? path.mid(m_base.size() + 1) : path;
}

QStringList treeOf(const QAbstractItemModel &model, const QModelIndex &parent, int level)
{
    QStringList lines;
    for (int row = 0; row < model.rowCount(parent); ++row) {
        const QModelIndex index = model.index(row, 0, parent);
        QString line = QString(2 * level, QLatin1Char(' ')) + index.data().toString();
        if (model.hasChildren(index))
            line += QLatin1Char('/');
        if (model.canFetchMore(index))
            line += QStringLiteral("...");
        lines.append(line);
        lines += treeOf(model, index, level + 1);
    }
    return lines;
}

QStringList namesBelow(const QAbstractItemModel &model, const QModelIndex &parent)
{
    QStringList names;
    for (int row = 0; row < model.rowCount(parent); ++row)
        names.append(model.index(row, 0, parent).data().toString());
    return names;
}

QStringList namesOf(const KyFileSystemItem &folder)
{
    QStringList names;
    for (int row = 0; row < folder.childCount(); ++row)
        names.append(folder.childAt(row)->fileName());
    return names;
}

void makeEntries(const QString &base, const QStringList &paths)
{
    for (const QString &path : paths) {
        const QString full = base + QLatin1Char('/') + path;
        if (!QDir().mkpath(path.endsWith(QLatin1Char('/')) ? full : QFileInfo(full).absolutePath()))
            qFatal("Cannot make %s", qPrintable(full));
        if (!path.endsWith(QLatin1Char('/')))
            writeFile(full, QByteArray());
    }
}

bool changeElsewhere(const QStringList &words)
{
    QProcess process;
    process.start(QStringLiteral(KYTE_TEST_PROGRAM_DIR "/ky_change_files"), QStringList());
    process.write(words.join(QLatin1Char('\t')).toUtf8() + '\n');
    process.closeWriteChannel();
    return process.waitForFinished() && process.readAll().trimmed() == "done";
}

} // namespace Test
} // namespace Kyte
