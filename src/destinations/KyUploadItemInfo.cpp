#include "KyUploadItemInfo.h"

namespace Kyte {

// Signals of this library name the types without the namespace, and queued connections look that text up.
static const int RECORD_TYPE_ID = qRegisterMetaType<KyUploadItemInfo>("KyUploadItemInfo");
static const int RECORD_LIST_TYPE_ID = qRegisterMetaType<QList<KyUploadItemInfo>>("QList<KyUploadItemInfo>");

KyUploadItemInfo::KyUploadItemInfo(QObject *parent)
    : QObject(parent)
{
}

KyUploadItemInfo::KyUploadItemInfo(ItemType itemType,
                                   int id,
                                   const QString &name,
                                   int posIndex,
                                   const QString &address,
                                   const QString &sharedFolder,
                                   int channelId,
                                   int groupId,
                                   const QString &userName,
                                   const QString &password,
                                   QObject *parent)
    : QObject(parent)
    , m_itemType(itemType)
    , m_id(id)
    , m_posIndex(posIndex)
    , m_channelId(channelId)
    , m_groupId(groupId)
    , m_name(name)
    , m_address(address)
    , m_sharedFolder(sharedFolder)
    , m_userName(userName)
    , m_password(password)
{
}

KyUploadItemInfo::KyUploadItemInfo(const KyUploadItemInfo &other)
    : QObject(nullptr)
    , m_itemType(other.m_itemType)
    , m_id(other.m_id)
    , m_posIndex(other.m_posIndex)
    , m_channelId(other.m_channelId)
    , m_groupId(other.m_groupId)
    , m_name(other.m_name)
    , m_address(other.m_address)
    , m_sharedFolder(other.m_sharedFolder)
    , m_userName(other.m_userName)
    , m_password(other.m_password)
{
}

KyUploadItemInfo &KyUploadItemInfo::operator=(const KyUploadItemInfo &other)
{
    m_itemType = other.m_itemType;
    m_id = other.m_id;
    m_posIndex = other.m_posIndex;
    m_channelId = other.m_channelId;
    m_groupId = other.m_groupId;
    m_name = other.m_name;
    m_address = other.m_address;
    m_sharedFolder = other.m_sharedFolder;
    m_userName = other.m_userName;
    m_password = other.m_password;
    return *this;
}

KyUploadItemInfo::~KyUploadItemInfo() = default;

KyUploadItemInfo::ItemType KyUploadItemInfo::itemType() const
{
    return m_itemType;
}

void KyUploadItemInfo::setItemType(const ItemType &itemType)
{
    m_itemType = itemType;
}

int KyUploadItemInfo::id() const
{
    return m_id;
}

void KyUploadItemInfo::setId(int id)
{
    m_id = id;
}

QString KyUploadItemInfo::name() const
{
    return m_name;
}

void KyUploadItemInfo::setName(const QString &name)
{
    m_name = name;
}

int KyUploadItemInfo::posIndex() const
{
    return m_posIndex;
}

void KyUploadItemInfo::setPosIndex(int posIndex)
{
    m_posIndex = posIndex;
}

QString KyUploadItemInfo::address() const
{
    return m_address;
}

void KyUploadItemInfo::setAddress(const QString &address)
{
    m_address = address;
}

QString KyUploadItemInfo::sharedFolder() const
{
    return m_sharedFolder;
}

void KyUploadItemInfo::setSharedFolder(const QString &sharedFolder)
{
    m_sharedFolder = sharedFolder;
}

int KyUploadItemInfo::channelId() const
{
    return m_channelId;
}

void KyUploadItemInfo::setChannelId(int channelId)
{
    m_channelId = channelId;
}

int KyUploadItemInfo::groupId() const
{
    return m_groupId;
}

void KyUploadItemInfo::setGroupId(int groupId)
{
    m_groupId = groupId;
}

QString KyUploadItemInfo::userName() const
{
    return m_userName;
}

void KyUploadItemInfo::setUserName(const QString &userName)
{
    m_userName = userName;
}

QString KyUploadItemInfo::password() const
{
    return m_password;
}

void KyUploadItemInfo::setPassword(const QString &password)
{
    m_password = password;
}

} // namespace Kyte
