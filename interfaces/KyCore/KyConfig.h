#pragma once

#include <KyCoreExport.h>

#include <QList>
#include <QString>

namespace Kyte {

/**
 * The product configuration: the data folder, the log folder and the upload destinations. It is an XML file
 * in UTF-8,
 *
 * @code{.xml}
 * <Pelmora>
 *   <dataDir>data</dataDir>
 *   <logDir>log</logDir>
 *   <destinations>
 *     <destination id="1" name="Lobby" address="10.0.0.1" shared="media" user="kyte" password="secret"/>
 *   </destinations>
 * </Pelmora>
 * @endcode
 *
 * at its standard place: the file that the environment variable KYTE_CONFIG_FILE names, else
 * "kyte/kyteconfig.xml" in the user's configuration folder. All configuration types share that file. Elements
 * and attributes of other names are passed over.
 *
 * A configuration belongs to the thread that uses it and owns nothing that it hands out.
 */
class KYCORE_EXPORT KyConfig
{
public:
    enum ConfigType : int { Editor = 1 };

    /** An upload destination. Texts read from a file may be empty but are never null; the password is plain
     * text. */
    struct Destination
    {
        int id = -1;
        QString name;
        QString address;
        QString sharedFolder;
        QString user;
        QString password;
    };

    ConfigType configType() const;
    void setConfigType(const ConfigType &type);

    /** Makes \a type the configuration type and reads the file at the standard place as readFile() does. */
    bool readStandardConfigFile(ConfigType type);

    /**
     * Makes what is missing of the default environment and reads it: the data folder with its channel folder,
     * the log folder, and the configuration file at the standard place. The folders lie in the user's data
     * folder ("kyte/data", "kyte/log"), or beside the file where KYTE_CONFIG_FILE names it ("data", "log").
     *
     * An existing file is never written to; it is read, and a folder that is unknown then gets the default.
     *
     * @return false, with hasError() and with the former values, when something cannot be made or the file
     * not be read.
     */
    bool createDefaultEnvironment(ConfigType type);

    /**
     * Makes \a path the current file and replaces dataDir(), logDir() and destinationList() by what it gives;
     * an element that the file lacks leaves its value alone. A relative folder is relative to the file's
     * folder, an empty one is none. A destination whose id is no integer is left out, a missing attribute is
     * an empty text.
     *
     * @return false, with hasError() and all former values, when the file is missing, unreadable or
     * malformed, has another root element, or is not a plain configuration: larger than 64 MiB, in another
     * encoding, with a document type definition, with more than 64 attributes in one element or with elements
     * nested 256 deep.
     */
    bool readFile(const QString &path);

    /** The current file: the one last read or tried, empty when there is none. */
    QString filePath() const;
    /** Forgets the file's path and nothing else. */
    void clearFilePath();

    /** Whether the last reading or creating failed. */
    bool hasError() const;

    /** The absolute path of the data folder; empty until a file has been read or a folder set. */
    QString dataDir() const;
    void setDataDir(const QString &path);

    /** The absolute path of the log folder; empty until a file has been read or a folder set. */
    QString logDir() const;
    void setLogDir(const QString &path);
    /** Sets the log folder of the default environment, see createDefaultEnvironment(), without making it. */
    void setDefaultToLogDir();

    /** The upload destinations in the order of the file. */
    QList<Destination> destinationList() const;

private:
    bool fail();

    ConfigType m_configType = Editor;
    QString m_filePath;
    bool m_hasError = false;
    QString m_dataDir;
    QString m_logDir;
    QList<Destination> m_destinationList;
};

} // namespace Kyte
