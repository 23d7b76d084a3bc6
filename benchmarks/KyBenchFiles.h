#pragma once

#include <QAbstractItemModel>
#include <QString>
#include <QTemporaryDir>
#include <QVector>

namespace Kyte {
namespace Bench {

/** A folder of \a count small files with the names of a media library, gone with the object. */
class FileFolder
{
public:
    explicit FileFolder(int count, int subFolders = 0);

    QString path() const;
    int count() const;
    QString filePath(int number) const;
    /** One more file, or its removal. */
    void addFile(const QString &name);
    void removeFile(const QString &name);

private:
    QTemporaryDir m_dir;
    int m_count = 0;
};

/** Reads \a role of the cells in \a columns below \a parent; how many cells gave a valid value. */
int readCells(const QAbstractItemModel &model,
              const QModelIndex &parent,
              int role = Qt::DisplayRole,
              const QVector<int> &columns = {0, 1, 2, 3});

} // namespace Bench
} // namespace Kyte
