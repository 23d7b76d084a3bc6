#pragma once

#include <QList>
#include <QPair>
#include <QString>
#include <QVector>

namespace Kyte {

class KyFileSystemItem;

/** Answers about the names of one list of nodes without walking it. To be cleared when the list changes. */
class KyChildNames
{
public:
    /** Forgets what it knows if nodes were assigned to since: that changes names behind a list's back. */
    void validate(quint32 assignments);
    void clear();

    /** Where KyFileSystemItem::insertChildByName() puts \a name. */
    int insertionRow(const QList<KyFileSystemItem *> &children, const QString &name, Qt::CaseSensitivity cs);
    /** After insertionRow(), instead of clear(): \a name went to \a row of what were \a count rows. */
    void noteInsertion(int row, int count, const QString &name);

    /** The rows, ascending, whose names may equal \a name in any case; the caller compares. */
    QVector<int> rowsLike(const QList<KyFileSystemItem *> &children, const QStringRef &name);

private:
    void findMinima(const QList<KyFileSystemItem *> &children, Qt::CaseSensitivity cs);
    void hashNames(const QList<KyFileSystemItem *> &children);

    // The rows whose name is less than every name before it. The walk of insertChildByName() ends at the
    // first name below the new one, which is always one of these.
    QVector<int> m_minima;
    QString m_lowestName;
    Qt::CaseSensitivity m_cs = Qt::CaseSensitive;
    bool m_minimaKnown = false;

    QVector<QPair<uint, int>> m_rows; // hash of the folded name, row; sorted
    bool m_rowsKnown = false;

    quint32 m_assignments = 0;
};

} // namespace Kyte
