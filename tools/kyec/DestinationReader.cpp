#include "DestinationReader.h"

#include "KyecOutput.h"

#include <KyChannelConfig.h>
#include <KyConfig.h>
#include <KyDestination.h>
#include <KyEditorConfig.h>

#include <QDir>

#include <algorithm>

namespace Kyte {

DestinationReader::DestinationReader(KyDestination *destination)
    : m_destination(destination)
{
    connect(destination, SIGNAL(itemsHasRead(QList<KyUploadItemInfo>)), this,
            SLOT(onItemsHasRead(QList<KyUploadItemInfo>)));
}

bool DestinationReader::read(DestinationPicture *picture, int channelId, int groupId)
{
    m_picture = DestinationPicture();
    m_destination->readChannels();
    if (m_destination->lastErrorMessage().isEmpty())
        m_destination->readGroups();
    if (m_destination->lastErrorMessage().isEmpty())
        m_destination->readDestinations(channelId, groupId);
    if (!m_destination->lastErrorMessage().isEmpty())
        return false;

    // Channels and groups come in their order, destinations in none.
    std::sort(m_picture.destinations.begin(), m_picture.destinations.end(),
              [](const KyUploadItemInfo &left, const KyUploadItemInfo &right) {
                  return left.posIndex() != right.posIndex() ? left.posIndex() < right.posIndex()
                                                             : left.name() < right.name();
              });
    m_picture.channelNames = *m_destination->channelNames();
    m_picture.groupNames = *m_destination->groupNames();
    *picture = m_picture;
    return true;
}

void DestinationReader::onItemsHasRead(QList<KyUploadItemInfo> itemInfoList)
{
    for (const KyUploadItemInfo &item : qAsConst(itemInfoList)) {
        switch (item.itemType()) {
        case KyUploadItemInfo::Item_Channel:
            m_picture.channels.append(item);
            break;
        case KyUploadItemInfo::Item_Group:
            m_picture.groups.append(item);
            break;
        case KyUploadItemInfo::Item_Destination:
            m_picture.destinations.append(item);
            break;
        }
    }
}

QString findChannelDir()
{
    KyChannelConfig channelConfig;
    QString channelDir = channelConfig.channelDir();
    const QString configFile = QDir::toNativeSeparators(KyEditorConfig::getConfig()->filePath());
    if (channelDir.isEmpty()) {
        printError(QStringLiteral("%1 (%2)").arg(channelConfig.lastErrorMessage(), configFile));
        return QString();
    }
    if (KyEditorConfig::dataDir().isEmpty()) { // the library would make the channel folder in the current one
        printError(QStringLiteral("The configuration file names no data folder. (%1)").arg(configFile));
        return QString();
    }
    return channelDir;
}

bool openDestinations(KyDestination *destination)
{
    if (findChannelDir().isEmpty())
        return false;
    if (!destination->init()) {
        printError(destination->lastErrorMessage());
        return false;
    }
    return true;
}

} // namespace Kyte
