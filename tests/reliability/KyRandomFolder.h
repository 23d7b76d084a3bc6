#pragma once

#include <QRandomGenerator>
#include <QStringList>
#include <QTemporaryDir>

namespace Kyte {
namespace Test {

/**
 * A folder tree on disk in which something changes at random, the same for the same seed: files and folders
 * are made, renamed, moved, rewritten, linked and removed. It stays at some hundred entries.
 *
 * No name comes twice: systems tell of changes in a renamed folder under the name it had when it was watched
 * first. No folder is ever empty, for an empty one would not be watched: each has a file "keep" from the
 * moment it can be seen.
 */
class RandomFolder
{
    Q_DISABLE_COPY(RandomFolder)

public:
    explicit RandomFolder(quint32 seed);

    QString path() const;
    /** Does something; a few operations have nothing to work on and do nothing. */
    void change();
    /** A number below \a limit out of the same sequence. */
    int random(int limit);

private:
    using Operation = void (RandomFolder::*)();

    QString freshName(const QString &kind);
    QString anyFolder();
    int anyFile();
    int anyFolderBelow();
    void move(const QString &from, const QString &to);

    void createFile();
    void createExcludedFile();
    void removeFile();
    void renameFile();
    void moveFile();
    void rewriteFile();
    void linkFile();
    void createFolder();
    void renameFolder();
    void moveFolder();
    void removeFolder();

    QTemporaryDir m_root;
    QRandomGenerator m_generator;
    QStringList m_folders; // absolute paths, the root first
    QStringList m_files;
    int m_names = 0;
};

} // namespace Test
} // namespace Kyte
