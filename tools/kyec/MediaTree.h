#pragma once

#include <QDateTime>
#include <QString>
#include <QVector>

namespace Kyte {

class KyFileSystemModel;

/** A file or folder of a media library, and how its line in the printed tree reads. */
struct MediaEntry
{
    QString path; ///< relative to the root, with "/"; that of a folder ends with one
    QString lead; ///< the lines that lead to it from its folder
    QString text; ///< name and size, for a link where it leads; without control characters
    qint64 size = 0; ///< with modified, what tells a changed file; nothing for folders
    QDateTime modified;
    bool isEmptyFolder = false;

    bool isFolder() const;
    bool isChangedFrom(const MediaEntry &former) const;
};

/**
 * Every entry of \a model in the order of the tree. Folders are read as far as they are not yet; links to
 * folders are not followed, for they may lead back.
 */
QVector<MediaEntry> readMediaTree(KyFileSystemModel *model);

} // namespace Kyte
