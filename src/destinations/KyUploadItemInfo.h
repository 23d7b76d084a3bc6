#pragma once

#include "KyEditorCommonExport.h"

#include <QList>
#include <QMetaType>
#include <QObject>
#include <QString>

namespace Kyte {

/**
 * The record by which KyDestination hands a channel, a group or a destination to the applications.
 *
 * It is a QObject for the sake of its meta-object, and copied by value all the same: a copy has no parent,
 * and an assigned record keeps its own. Lists of it travel in KyDestination::itemsHasRead(), through queued
 * connections and into signal spies too: "KyUploadItemInfo" and "QList<KyUploadItemInfo>" are registered as
 * meta-types.
 */
class KYEDITORCOMMON_EXPORT KyUploadItemInfo : public QObject
{
    Q_OBJECT

public:
    /** What a record describes. KyDestination computes a category's type as its DataType plus one. */
    enum ItemType : int { Item_Destination = 0, Item_Channel = 1, Item_Group = 2 };

    explicit KyUploadItemInfo(QObject *parent = nullptr);
    KyUploadItemInfo(ItemType itemType,
                     int id,
                     const QString &name,
                     int posIndex,
                     const QString &address,
                     const QString &sharedFolder,
                     int channelId,
                     int groupId,
                     const QString &userName,
                     const QString &password,
                     QObject *parent);
    KyUploadItemInfo(const KyUploadItemInfo &other);
    KyUploadItemInfo &operator=(const KyUploadItemInfo &other);
    ~KyUploadItemInfo() override;

    ItemType itemType() const;
    void setItemType(const ItemType &itemType);
    /** Row id in the record's own table. */
    int id() const;
    void setId(int id);
    QString name() const;
    void setName(const QString &name);
    int posIndex() const;
    void setPosIndex(int posIndex);
    /** Network address of a destination; empty for channels and groups, like folder, user and password. */
    QString address() const;
    void setAddress(const QString &address);
    QString sharedFolder() const;
    void setSharedFolder(const QString &sharedFolder);
    /** Channel and group of a destination; -1 for none, and for channels and groups themselves. */
    int channelId() const;
    void setChannelId(int channelId);
    int groupId() const;
    void setGroupId(int groupId);
    QString userName() const;
    void setUserName(const QString &userName);
    /** The password as stored, that is enciphered: KyDestination::decryptString() gives the plain text. */
    QString password() const;
    void setPassword(const QString &password);

private:
    ItemType m_itemType = Item_Destination;
    int m_id = -1;
    int m_posIndex = 0;
    int m_channelId = -1;
    int m_groupId = -1;
    QString m_name;
    QString m_address;
    QString m_sharedFolder;
    QString m_userName;
    QString m_password;
};

} // namespace Kyte

Q_DECLARE_METATYPE(Kyte::KyUploadItemInfo)
