#pragma once

#include <KyUploadItemInfo.h>

#include <QList>
#include <QMap>
#include <QObject>
#include <QString>

namespace Kyte {

class KyDestination;

/** What a database holds; each list by position and name. */
struct DestinationPicture
{
    QList<KyUploadItemInfo> channels;
    QList<KyUploadItemInfo> groups;
    QList<KyUploadItemInfo> destinations;
    QMap<int, QString> channelNames; ///< by id
    QMap<int, QString> groupNames; ///< by id
};

/** Collects into one picture what a KyDestination delivers bit by bit. */
class DestinationReader : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY(DestinationReader)

public:
    static const int ANY_CATEGORY = -2;

    explicit DestinationReader(KyDestination *destination);

    /**
     * Reads all channels, all groups and the destinations of \a channelId and \a groupId, -1 being those in
     * none. When that fails the reason is the destination's lastErrorMessage().
     */
    bool read(DestinationPicture *picture, int channelId = ANY_CATEGORY, int groupId = ANY_CATEGORY);

private slots:
    void onItemsHasRead(QList<KyUploadItemInfo> itemInfoList);

private:
    KyDestination *m_destination = nullptr;
    DestinationPicture m_picture;
};

/** The channel folder by the standard configuration file; empty when there is none, which has been printed
 * then. */
QString findChannelDir();
/** Initialises \a destination, on the standard configuration file; a failure is printed. */
bool openDestinations(KyDestination *destination);

} // namespace Kyte
