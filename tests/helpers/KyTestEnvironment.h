#pragma once

#include <QByteArray>
#include <QList>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>

namespace Kyte {
namespace Test {

/** One destination of a written configuration file; texts are escaped when they are written. */
struct Destination
{
    int id = 0;
    QString name;
    QString address;
    QString shared;
    QString user;
    QString password;
};

/** A destination whose texts all derive from \a id: "Destination 7", "10.0.0.7", "share7", "user7",
 * "secret7". */
Destination makeDestination(int id);
QList<Destination> makeDestinations(int firstId, int count);

/**
 * A product environment in a temporary folder of its own: the configuration file, which KYTE_CONFIG_FILE
 * names while the object lives, the data folder and its channel folder. Everything is on disk and is removed
 * with the object.
 */
class Environment
{
    Q_DISABLE_COPY(Environment)

public:
    /** Makes the folders "data", "data/channel" and "log" and a configuration without destinations. */
    Environment();
    ~Environment();

    QString root() const;
    QString configFile() const;
    QString dataDir() const;
    QString channelDir() const;
    QString databaseFile() const; ///< "destination.kyb" in the channel folder
    QString workingFile() const; ///< "destination.kyb.work" in the channel folder
    QString mainFile() const; ///< "chconfig.xml" in the channel folder

    /** Replaces the configuration file. Nothing reads it until the code under test does. */
    void writeConfig(const QList<Destination> &destinations) const;
    /** Writes "channel<id>.xml" in the channel folder. */
    void writeChannel(int id, const QString &name, int index) const;
    /** Writes "chconfig.xml": \a assignment lists pairs of channel id and destination ids. */
    void writeMainFile(const QList<QPair<int, QList<int>>> &assignment) const;

private:
    QTemporaryDir m_folder;
    QByteArray m_formerConfigFile;
    bool m_hadConfigFile = false;
};

/**
 * A file system that holds only some pages, so that a disk can run full. It is mounted for this process alone
 * and goes with the object. Invalid where the system does not offer that, or not to this user: skip the test
 * then.
 */
class SmallDisk
{
    Q_DISABLE_COPY(SmallDisk)

public:
    explicit SmallDisk(int kibibytes);
    ~SmallDisk();

    bool isValid() const;
    QString path() const;
    /** Writes a file "ballast" that takes what is left, to the last byte. */
    void fill() const;

private:
    QTemporaryDir m_folder;
    bool m_isMounted = false;
};

/** The absolute path that "/folder" stands for: on Windows it lies on the drive of the temporary folders. */
QString rooted(const char *path);

/** Everything in the folder \a path by name, hidden files included. */
QStringList namesIn(const QString &path);
/** Writes \a content to \a path, or ends the test program. */
void writeFile(const QString &path, const QByteArray &content);
/** The whole file, empty when it cannot be read. */
QByteArray readFile(const QString &path);

/** The rows that \a sql gives on the database file \a path, columns joined by "|", NULL written so. */
QStringList queryRows(const QString &path, const QString &sql);
/** Executes \a statements on the database file \a path in a connection of its own, or ends the test program.
 */
void execute(const QString &path, const QStringList &statements);

} // namespace Test
} // namespace Kyte
