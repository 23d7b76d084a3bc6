#include "KyRandomFolder.h"

#include "KyTestEnvironment.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <algorithm>

namespace Kyte {
namespace Test {

static const int MAXIMUM_FILES = 600;
static const int MAXIMUM_FOLDERS = 40;

RandomFolder::RandomFolder(quint32 seed)
    : m_generator(seed)
    , m_folders({m_root.path()})
{
    if (!m_root.isValid())
        qFatal("No temporary folder for the test");
    for (int i = 0; i < MAXIMUM_FOLDERS / 2; ++i)
        createFolder();
    for (int i = 0; i < MAXIMUM_FILES / 2; ++i)
        createFile();
}

QString RandomFolder::path() const
{
    return m_root.path();
}

void RandomFolder::change()
{
    static const struct
    {
        int share; // of a hundred
        Operation operation;
    } OPERATIONS[] = {
        {31, &RandomFolder::createFile},  {2, &RandomFolder::createExcludedFile},
        {22, &RandomFolder::removeFile},  {15, &RandomFolder::renameFile},
        {11, &RandomFolder::moveFile},    {6, &RandomFolder::rewriteFile},
        {2, &RandomFolder::linkFile},     {5, &RandomFolder::createFolder},
        {2, &RandomFolder::renameFolder}, {2, &RandomFolder::moveFolder},
        {2, &RandomFolder::removeFolder},
    };
    int number = random(100);
    for (const auto &entry : OPERATIONS) {
        number -= entry.share;
        if (number < 0) {
            (this->*entry.operation)();
            return;
        }
    }
}

int RandomFolder::random(int limit)
{
    return int(m_generator.bounded(quint32(limit)));
}

QString RandomFolder::freshName(const QString &kind)
{
    // Not in the order of their making, so that new entries come up between the others.
    return QStringLiteral("%1-%2-%3").arg(kind).arg(random(1000), 3, 10, QLatin1Char('0')).arg(++m_names);
}

QString RandomFolder::anyFolder()
{
    return m_folders.at(random(m_folders.size()));
}

/** -1 when there is none. */
int RandomFolder::anyFile()
{
    return m_files.isEmpty() ? -1 : random(m_files.size());
}

int RandomFolder::anyFolderBelow()
{
    return m_folders.size() < 2 ? -1 : 1 + random(m_folders.size() - 1);
}

/** Renames an entry, on disk and, with all below it, in the lists. */
void RandomFolder::move(const QString &from, const QString &to)
{
    if (!QDir().rename(from, to))
        qFatal("Cannot move %s to %s", qPrintable(from), qPrintable(to));
    for (QStringList *paths : {&m_folders, &m_files}) {
        for (QString &path : *paths) {
            if (path == from || path.startsWith(from + QLatin1Char('/')))
                path.replace(0, from.size(), to);
        }
    }
}

void RandomFolder::createFile()
{
    if (m_files.size() >= MAXIMUM_FILES)
        return;
    const QString path = anyFolder() + QLatin1Char('/') + freshName(QStringLiteral("file"));
    writeFile(path, QByteArray(random(3000), 'x'));
    m_files.append(path);
}

void RandomFolder::createExcludedFile()
{
    writeFile(anyFolder() + QStringLiteral("/Excluded-%1").arg(++m_names), "x");
}

void RandomFolder::removeFile()
{
    const int file = anyFile();
    if (file >= 0)
        QFile::remove(m_files.takeAt(file));
}

void RandomFolder::renameFile()
{
    const int file = anyFile();
    if (file < 0)
        return;
    const QString path = m_files.at(file);
    move(path, QFileInfo(path).path() + QLatin1Char('/') + freshName(QStringLiteral("file")));
}

void RandomFolder::moveFile()
{
    const int file = anyFile();
    if (file < 0)
        return;
    const QString path = m_files.at(file);
    const QString target = anyFolder() + QLatin1Char('/') + QFileInfo(path).fileName();
    if (target != path)
        move(path, target);
}

void RandomFolder::rewriteFile()
{
    const int file = anyFile();
    if (file >= 0 && !QFileInfo(m_files.at(file)).isSymLink())
        writeFile(m_files.at(file), QByteArray(random(3000), 'y'));
}

/** To a file that stays: a link that loses its target is no longer listed, and no system tells its folder. */
void RandomFolder::linkFile()
{
    const QString path = anyFolder() + QLatin1Char('/') + freshName(QStringLiteral("link"));
    if (QFile::link(QCoreApplication::applicationFilePath(), path))
        m_files.append(path);
}

void RandomFolder::createFolder()
{
    if (m_folders.size() >= MAXIMUM_FOLDERS)
        return;
    const QString path = anyFolder() + QLatin1Char('/') + freshName(QStringLiteral("Folder"));
    if (!QDir().mkdir(path))
        qFatal("Cannot make %s", qPrintable(path));
    writeFile(path + QStringLiteral("/keep"), "x");
    m_folders.append(path);
}

void RandomFolder::renameFolder()
{
    const int folder = anyFolderBelow();
    if (folder < 0)
        return;
    const QString path = m_folders.at(folder);
    move(path, QFileInfo(path).path() + QLatin1Char('/') + freshName(QStringLiteral("Folder")));
}

void RandomFolder::moveFolder()
{
    const int folder = anyFolderBelow();
    const QString target = anyFolder();
    if (folder < 0)
        return;
    const QString path = m_folders.at(folder);
    if ((target + QLatin1Char('/')).startsWith(path + QLatin1Char('/')))
        return; // not into itself
    move(path, target + QLatin1Char('/') + freshName(QStringLiteral("Folder")));
}

void RandomFolder::removeFolder()
{
    const int folder = anyFolderBelow();
    if (folder < 0)
        return;
    const QString path = m_folders.at(folder);
    QDir(path).removeRecursively();
    const auto isBelow = [&path](const QString &other) {
        return (other + QLatin1Char('/')).startsWith(path + QLatin1Char('/'));
    };
    m_folders.erase(std::remove_if(m_folders.begin(), m_folders.end(), isBelow), m_folders.end());
    m_files.erase(std::remove_if(m_files.begin(), m_files.end(), isBelow), m_files.end());
}

} // namespace Test
} // namespace Kyte
