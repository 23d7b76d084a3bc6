#pragma once

#include "KyEditorCommonExport.h"

#include <QFileInfo>
#include <QIcon>
#include <QList>
#include <QMap>

#include <memory>

class QDir;
class QFileIconProvider;
class QPixmap;

namespace Kyte {

class KyChildNames;
struct KyFileSystemItemCache;

/**
 * One file or folder in the tree that KyFileSystemModel shows.
 *
 * A node owns the children in its list and destroys them with itself. The operations that take pointers out
 * of the list never destroy them: who takes a child out is responsible for it. A copy of a node holds the
 * same child pointers as the original, so one of the two lists has to be emptied before both are gone. Null
 * pointers are never entered in a list and are found in none.
 *
 * The class also keeps the icons of file types, one for each type text in the whole process, and their images
 * on disk, so that the system is asked once for a type. Everything here is for the GUI thread only.
 */
class KYEDITORCOMMON_EXPORT KyFileSystemItem
{
public:
    /** A negative \a row appends to \a parent, any other inserts there; without a parent the node is a root.
     */
    KyFileSystemItem(const QFileInfo &info, KyFileSystemItem *parent, int row);
    /** Goes where insertChildByName() puts it. */
    KyFileSystemItem(KyFileSystemItem *parent, const QFileInfo &info, Qt::CaseSensitivity cs);
    KyFileSystemItem(const KyFileSystemItem &other);
    ~KyFileSystemItem();

    /** Takes over all that \a other holds, its parent included; the former children are not destroyed. */
    KyFileSystemItem &operator=(const KyFileSystemItem &other);

    KyFileSystemItem *parent() const;
    int childCount() const;
    /** The file as it was when the node was made. */
    QFileInfo fileInfo() const;
    QString fileName() const;
    /** The full path of the file itself, not of its folder. */
    QString absolutePath() const;
    /** True while the folder has not been read; begins as whether the file is a folder. */
    bool canFetchMore() const;
    void setCanFetchMore(bool canFetchMore);
    /** The node's icon, asked for with getIcon() when it has none yet. */
    QIcon icon();
    void setIcon(const QIcon &icon);

    /** Appends \a child unless it is in the list already. Constant time for a node that never was in one. */
    void addChild(KyFileSystemItem *child);
    /** A row below 0 is the first, one beyond the count the last; the same child may be inserted twice. */
    void insertChild(KyFileSystemItem *child, int row);
    /**
     * Inserts \a child directly after the first existing child whose name is less than the new one, and at
     * the end when there is none. This keeps no order: "d" into b, c gives b, d, c, and "a" into b, c gives
     * b, c, a.
     */
    void insertChildByName(KyFileSystemItem *child, Qt::CaseSensitivity cs);
    /** The child in \a row, null outside the list. */
    KyFileSystemItem *childAt(int row) const;
    /** The first row of \a child, -1 when it is not in the list. */
    int childPosition(KyFileSystemItem *child) const;
    /** The first row in the parent's list; -1 without a parent and when that does not hold the node. */
    int positionInParent() const;
    /** Takes every occurrence of \a child out. */
    void clearChild(KyFileSystemItem *child);
    /**
     * Takes the closed range of rows out. \a from is brought into the list first and \a to not below it, so
     * that one row goes even when both lie behind the end.
     */
    void clearChildren(int from, int to);
    void clearAllChildren();

    /** The provider that types and icons are asked of; one for the process. */
    static QFileIconProvider *getIconProvidoer();
    /** The icons by type text, the folder icon as "Folder"; one map for the process, callers may add to it.
     */
    static QMap<QString, QIcon> *getIconList();
    static QIcon getFolderIcon();
    /**
     * The icon of the file's type: from the list, else from the images on disk, else from the system, whose
     * images are written to disk then. A type text that is no plain folder name is not kept on disk.
     */
    static QIcon getIcon(const QFileInfo &info);
    /** Where the images of the type \a name lie; for an empty name the folder of all types. Makes nothing. */
    static QString iconCacheFolder(const QString &name);
    /** Appends the PNG images in \a dir to \a pixmaps. False when that is empty then or null, or \a dir is
     * missing. */
    static bool getIconPixmapFromFile(const QDir &dir, QList<QPixmap> *pixmaps);
    /** Writes each image into \a dir, made if it is missing, as "width.png". False when none was written. */
    static bool putIconPixmapToFile(const QDir &dir, QList<QPixmap> &pixmaps);

private:
    friend class KyFileSystemModel;

    void enter(KyFileSystemItem *child, int row);
    QPair<int, int> rowsWithin(int from, int to) const;
    void forgetNames();
    void renumberChildren();
    KyFileSystemItemCache &cache() const;
    KyChildNames &names() const;

    KyFileSystemItem *m_parent = nullptr;
    QList<KyFileSystemItem *> m_children; // owned
    QFileInfo m_fileInfo;
    QIcon m_icon;
    bool m_canFetchMore = false;

    // What follows only saves time and belongs to the object, not to its value: it is not copied.
    quint8 m_timesListed = 0; // how often any list took the node in, 2 for more
    mutable bool m_greyedOut = false;
    mutable int m_row = -1; // where the node was last seen in its parent's list
    mutable quint32 m_greyOutEpoch = 0; // of the patterns that m_greyedOut was found with
    int m_unlinkedRow = -1; // in the model's list of the nodes that left the tree alive
    mutable std::unique_ptr<KyFileSystemItemCache> m_cache;
};

} // namespace Kyte
