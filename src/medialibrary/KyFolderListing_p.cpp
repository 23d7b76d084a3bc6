#include "KyFolderListing_p.h"

#include <QDirIterator>

#include <algorithm>
#include <vector>

namespace Kyte {

struct ListedEntry
{
    QString key; // what names are ordered by
    int row;
    bool isFolder;
};

static bool isBefore(const ListedEntry &entry, const ListedEntry &other)
{
    return entry.isFolder != other.isFolder ? entry.isFolder : entry.key < other.key;
}

QFileInfoList
listFolder(const QString &path, const QStringList &nameFilters, QDir::Filters filter, QDir::SortFlags sort)
{
    if (sort != (QDir::Name | QDir::DirsFirst | QDir::IgnoreCase) || filter == QDir::NoFilter)
        return QDir(path).entryInfoList(nameFilters, filter, sort);

    // QDir asks every entry anew at each comparison whether it is a folder.
    QFileInfoList entries;
    std::vector<ListedEntry> order;
    QDirIterator iterator(path, nameFilters, filter);
    while (iterator.hasNext()) {
        iterator.next();
        entries.append(iterator.fileInfo());
        order.push_back({iterator.fileName().toLower(), entries.size() - 1, entries.last().isDir()});
    }
    std::sort(order.begin(), order.end(), isBefore);

    // Names that differ in letter case alone come in an order that only QDir's own sorting knows.
    const auto same = [](const ListedEntry &entry, const ListedEntry &next) {
        return !isBefore(entry, next);
    };
    if (std::adjacent_find(order.begin(), order.end(), same) != order.end())
        return QDir(path).entryInfoList(nameFilters, filter, sort);

    QFileInfoList sorted;
    sorted.reserve(entries.size());
    for (const ListedEntry &entry : order)
        sorted.append(entries.at(entry.row));
    return sorted;
}

} // namespace Kyte
