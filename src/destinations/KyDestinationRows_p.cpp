#include "KyDestinationRows_p.h"

#include <QSqlQuery>
#include <QSqlRecord>
#include <QVariant>

namespace Kyte {

KyDestinationRows::KyDestinationRows(QSqlQuery *query)
    : m_query(query)
{
    const QSqlRecord columns = query->record();
    m_id = columns.indexOf(QStringLiteral("id"));
    m_name = columns.indexOf(QStringLiteral("name"));
    m_posIndex = columns.indexOf(QStringLiteral("posindex"));
    m_address = columns.indexOf(QStringLiteral("address"));
    m_sharedFolder = columns.indexOf(QStringLiteral("shared"));
    m_userName = columns.indexOf(QStringLiteral("user"));
    m_password = columns.indexOf(QStringLiteral("password"));
    m_channelId = columns.indexOf(QStringLiteral("channel_id"));
    m_groupId = columns.indexOf(QStringLiteral("group_id"));
}

bool KyDestinationRows::next()
{
    return m_query->next();
}

int KyDestinationRows::id() const
{
    return integer(m_id, -1);
}

QString KyDestinationRows::name() const
{
    return text(m_name);
}

void KyDestinationRows::readDestination(KyUploadItemInfo *record) const
{
    record->setItemType(KyUploadItemInfo::Item_Destination);
    record->setId(id());
    record->setName(name());
    record->setPosIndex(integer(m_posIndex, 0));
    record->setAddress(text(m_address));
    record->setSharedFolder(text(m_sharedFolder));
    record->setChannelId(integer(m_channelId, -1));
    record->setGroupId(integer(m_groupId, -1));
    record->setUserName(text(m_userName));
    record->setPassword(text(m_password));
}

void KyDestinationRows::readCategory(KyUploadItemInfo::ItemType type, KyUploadItemInfo *record) const
{
    record->setItemType(type);
    record->setId(id());
    record->setName(name());
    record->setPosIndex(integer(m_posIndex, 0));
    record->setChannelId(-1);
    record->setGroupId(-1);
}

int KyDestinationRows::integer(int column, int fallback) const
{
    return column < 0 ? fallback : m_query->value(column).toInt();
}

QString KyDestinationRows::text(int column) const
{
    return column < 0 ? QString() : m_query->value(column).toString();
}

QList<KyUploadItemInfo> &KyRecordBatch::items()
{
    m_items.erase(m_items.begin() + m_count, m_items.end());
    return m_items;
}

void KyRecordBatch::restart()
{
    if (!m_items.isDetached())
        m_items = QList<KyUploadItemInfo>(); // a receiver kept the list
    m_count = 0;
}

} // namespace Kyte
