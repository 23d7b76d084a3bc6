#include "MediaTree.h"

#include "TextTable.h"

#include <KyFileSystemModel.h>

namespace Kyte {

static const QLatin1Char SEPARATOR('/');
static const QString BRANCH = QStringLiteral("├── ");
static const QString LAST_BRANCH = QStringLiteral("└── ");
static const QString TRUNK = QStringLiteral("│   ");
static const QString NO_TRUNK = QStringLiteral("    ");

static bool isLink(const QFileInfo &info)
{
    return info.isSymLink() || info.isJunction();
}

static MediaEntry makeEntry(const KyFileSystemModel &model, const QModelIndex &index)
{
    const QFileInfo info = model.fileInfo(index);
    MediaEntry entry;
    entry.path = info.fileName();
    QString text = entry.path;
    if (isLink(info)) {
        text += QStringLiteral(" -> ") + QDir::toNativeSeparators(info.symLinkTarget());
    } else if (info.isDir()) {
        entry.path += SEPARATOR;
        text += SEPARATOR;
    } else {
        entry.size = info.size();
        entry.modified = info.lastModified();
        text += QStringLiteral("  ") + index.sibling(index.row(), 1).data().toString();
    }
    entry.text = TextTable::printable(text);
    return entry;
}

static void appendBelow(KyFileSystemModel *model,
                        const QModelIndex &folder,
                        const MediaEntry &parent,
                        const QString &lead,
                        QVector<MediaEntry> *entries)
{
    const int count = model->rowCount(folder);
    for (int row = 0; row < count; ++row) {
        const QModelIndex index = model->index(row, 0, folder);
        const bool isLast = row + 1 == count;
        MediaEntry entry = makeEntry(*model, index);
        entry.path.prepend(parent.path);
        entry.lead = lead + (isLast ? LAST_BRANCH : BRANCH);
        const bool isFolder = entry.isFolder();
        if (isFolder && model->canFetchMore(index))
            model->fetchMore(index);
        entry.isEmptyFolder = isFolder && model->rowCount(index) == 0;
        entries->append(entry);
        if (isFolder)
            appendBelow(model, index, entry, lead + (isLast ? NO_TRUNK : TRUNK), entries);
    }
}

bool MediaEntry::isFolder() const
{
    return path.endsWith(SEPARATOR);
}

bool MediaEntry::isChangedFrom(const MediaEntry &former) const
{
    return size != former.size || modified != former.modified || text != former.text;
}

QVector<MediaEntry> readMediaTree(KyFileSystemModel *model)
{
    QVector<MediaEntry> entries;
    appendBelow(model, QModelIndex(), MediaEntry(), QString(), &entries);
    return entries;
}

} // namespace Kyte
