#include "KyBenchFiles.h"

#include "KyBench.h"

#include <QDir>
#include <QFile>

namespace Kyte {
namespace Bench {

static QString fileName(int number)
{
    static const char *const suffixes[] = {"mp4", "png", "jpg", "wav", "txt"};
    return QStringLiteral("clip_%1.%2")
        .arg(number, 6, 10, QLatin1Char('0'))
        .arg(QLatin1String(suffixes[number % 5]));
}

static void makeFile(const QString &path, int size)
{
    QFile file(path);
    requireEqual(file.open(QIODevice::WriteOnly) && file.write(QByteArray(size, 'x')) == size, "file");
}

FileFolder::FileFolder(int count, int subFolders)
    : m_count(count)
{
    for (int number = 0; number < count; ++number)
        makeFile(filePath(number), number % 3000);
    for (int folder = 0; folder < subFolders; ++folder) {
        const QString name = QStringLiteral("folder_%1").arg(folder, 4, 10, QLatin1Char('0'));
        QDir(path()).mkdir(name);
        for (int number = 0; number < subFolders; ++number)
            makeFile(QDir(path()).filePath(name + QLatin1Char('/') + fileName(number)), 10);
    }
}

QString FileFolder::path() const
{
    return m_dir.path();
}

int FileFolder::count() const
{
    return m_count;
}

QString FileFolder::filePath(int number) const
{
    return m_dir.filePath(fileName(number));
}

void FileFolder::addFile(const QString &name)
{
    makeFile(m_dir.filePath(name), 100);
}

void FileFolder::removeFile(const QString &name)
{
    QFile::remove(m_dir.filePath(name));
}

int readCells(const QAbstractItemModel &model,
              const QModelIndex &parent,
              int role,
              const QVector<int> &columns)
{
    int valid = 0;
    const int rows = model.rowCount(parent);
    for (int row = 0; row < rows; ++row) {
        for (const int column : columns)
            valid += model.data(model.index(row, column, parent), role).isValid();
    }
    return valid;
}

} // namespace Bench
} // namespace Kyte
