#pragma once

#include "KyUploadItemInfo.h"

#include <QList>

class QSqlQuery;

namespace Kyte {

/**
 * Makes records of the rows of a query. Columns are looked up by name once, when the query has been executed:
 * tables made by other releases may have their columns in another order. A missing column reads as empty, ids
 * as -1.
 */
class KyDestinationRows
{
public:
    explicit KyDestinationRows(QSqlQuery *query);

    /** Steps to the next row; false at the end, and when the connection was closed under the query. */
    bool next();
    int id() const;
    QString name() const;
    void readDestination(KyUploadItemInfo *record) const;
    void readCategory(KyUploadItemInfo::ItemType type, KyUploadItemInfo *record) const;

private:
    int integer(int column, int fallback) const;
    QString text(int column) const;

    QSqlQuery *m_query = nullptr;
    int m_id = -1;
    int m_name = -1;
    int m_posIndex = -1;
    int m_address = -1;
    int m_sharedFolder = -1;
    int m_userName = -1;
    int m_password = -1;
    int m_channelId = -1;
    int m_groupId = -1;
};

/**
 * Records on their way into a signal, ten at a time. Making a QObject costs more than reading its row, so the
 * records of a batch that no receiver kept are filled again.
 */
class KyRecordBatch
{
public:
    static const int SIZE = 10;

    KyUploadItemInfo *append()
    {
        if (m_count == m_items.size())
            m_items.append(KyUploadItemInfo());
        return &m_items[m_count++];
    }

    bool isFull() const
    {
        return m_count == SIZE;
    }

    int count() const
    {
        return m_count;
    }

    /** Exactly the records appended since restart(). */
    QList<KyUploadItemInfo> &items();
    void restart();

private:
    QList<KyUploadItemInfo> m_items;
    int m_count = 0;
};

} // namespace Kyte
