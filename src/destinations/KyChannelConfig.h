#pragma once

#include "KyEditorCommonExport.h"

#include <QList>
#include <QMap>
#include <QObject>
#include <QString>

namespace Kyte {

/**
 * Reads and writes the XML files of the channel folder, which is the sub-folder "channel" of the data folder.
 *
 * A file "channel*.xml" describes one channel; the main file "chconfig.xml" says which destination belongs to
 * which channel. Root elements are found whatever their letter case. An operation that fails answers false
 * (or an empty text) and leaves the reason in lastErrorMessage(); there are no signals. The class may be used
 * in any thread, by one thread at a time, apart from channelDir() and empty path arguments: these read the
 * application's configuration, which belongs to the main thread.
 *
 * A main file of more than 64 MiB (some two million assignments) or a channel file of more than 1 MiB is
 * refused like one that cannot be opened. Any encoding that the file declares and Qt knows is read. What
 * could keep the XML reader busy without end counts as malformed from there on: a document type with
 * declarations of its own, a tag of more than 64 attributes, and elements nested more than 256 deep.
 */
class KYEDITORCOMMON_EXPORT KyChannelConfig : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY(KyChannelConfig)

public:
    static const QString CHANNEL_CONFIG_FILE_NAME; ///< "chconfig.xml"

    /** A channel: id, name and position, -1 where the channel file gives no position. */
    struct ChannelInfo
    {
        ChannelInfo() = default;
        ChannelInfo(int channelId, const QString &channelName, int position)
            : id(channelId)
            , name(channelName)
            , index(position)
        {
        }

        int id = -1;
        QString name;
        int index = -1;
    };

    /** A group, described like a channel. Nothing in this library fills one. */
    struct GroupInfo
    {
        GroupInfo() = default;
        GroupInfo(int groupId, const QString &groupName, int position)
            : id(groupId)
            , name(groupName)
            , index(position)
        {
        }

        int id = -1;
        QString name;
        int index = -1;
    };

    explicit KyChannelConfig(QObject *parent = nullptr);
    ~KyChannelConfig() override;

    /** The channel folder by the standard configuration file, which is read anew; empty when that fails. */
    QString channelDir();

    /**
     * Rebuilds channelList() from the channel files of \a folder (empty: of channelDir()) in the order in
     * which the folder lists them. Files that cannot be read, or give no id of 0 or more, are left out;
     * "channel.xml" is never a channel. False when nothing was found.
     */
    bool getAllChannelInfoFromFiles(const QString &folder);

    /**
     * Rebuilds destChannelMap() from the main file \a path (empty: of channelDir()). A missing file reads as
     * one without assignments, a malformed one as far as it is well-formed. A destination belongs to the
     * innermost channel around it. False when the file cannot be opened.
     */
    bool readFile(const QString &path);

    /**
     * Writes the main file \a path (empty: of channelDir()) from channelList() and destChannelMap().
     * Assignments to channels that are not listed are not written. The former file stays as it was unless all
     * could be written.
     */
    bool saveFile(const QString &path);

    /** Assigns a destination to a channel, in place of an earlier assignment. */
    void insertDestination(int destinationId, int channelId);

    QList<ChannelInfo> channelList() const;
    QList<ChannelInfo> *channelListPtr();
    void setChannelList(const QList<ChannelInfo> &channelList);

    QList<GroupInfo> groupList() const;
    void setGroupList(const QList<GroupInfo> &groupList);

    /** Destination id to channel id. */
    QMap<int, int> destChannelMap() const;
    QMap<int, int> *destChannelMapPtr();
    void setDestChannelMap(const QMap<int, int> &destChannelMap);

    QString lastErrorMessage() const;
    void clearLastErrorMessage();

private:
    bool fail(const QString &message);
    QString mainFilePath(const QString &path);

    QList<ChannelInfo> m_channelList;
    QList<GroupInfo> m_groupList;
    QMap<int, int> m_destChannelMap;
    QString m_lastErrorMessage;
};

} // namespace Kyte
