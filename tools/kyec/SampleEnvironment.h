#pragma once

#include <QList>
#include <QString>
#include <QStringList>

namespace Kyte {

/**
 * A small product environment on disk: a railway station with 60 destinations in 4 channels. In its folder
 * lie the configuration file, the data folder with the channel files and "chconfig.xml", and the log folder.
 *
 * The folder carries a mark by which a later run knows it again; only such a folder is ever overwritten.
 */
class SampleEnvironment
{
    Q_DISABLE_COPY(SampleEnvironment)

public:
    explicit SampleEnvironment(const QString &folder);

    /** Makes everything anew; on failure lastErrorMessage() tells why, and a folder without the mark is
     * untouched. */
    bool create();
    QString lastErrorMessage() const;

    QString folder() const; ///< absolute
    QString configFile() const;
    QString stagesFolder() const; ///< for pictures of stages; it is made by whoever writes them
    /** Files, and folders with a "/" at the end, by name and relative to folder(), as of now. */
    QStringList entries() const;

    /** The ids of the destinations with \a names, which are separated by ";". */
    static QList<int> destinationIds(const QString &names);

private:
    bool fail(const QString &message);
    bool clear();
    bool write(const QString &name, const QByteArray &content);
    QString path(const QString &name) const;

    QString m_folder;
    QString m_lastErrorMessage;
};

} // namespace Kyte
