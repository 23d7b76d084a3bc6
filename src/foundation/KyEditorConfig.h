#pragma once

#include "KyEditorCommonExport.h"

#include <QString>

class QProcess;

namespace Kyte {

class KyConfig;
class KyProductInformation;

/**
 * The one place where an application of the product reaches its configuration.
 *
 * The class wraps the core library's KyConfig, answers the data and log folders (reading the standard
 * configuration file on demand while they are unknown), translates paths to and from the data folder, and
 * holds three process-wide pointers that an application hands in. Everything is static; the one instance
 * comes into being on first use, lives until the process ends and is meant for the application's main thread
 * (only its creation is thread-safe).
 *
 * No operation reports errors itself: KyConfig keeps those of reading, hasError() answers them.
 */
class KYEDITORCOMMON_EXPORT KyEditorConfig
{
    Q_DISABLE_COPY(KyEditorConfig)

public:
    /** Deletes the configuration and the upload-manager process, and nothing else. */
    ~KyEditorConfig();

    /** The one instance; never null, never to be deleted. */
    static KyEditorConfig *getInstance();
    /** The wrapped core configuration; it belongs to this class. */
    static KyConfig *getConfig();

    /** Finds and reads the standard configuration file; false when that fails. */
    static bool readStandardConfigFile();
    /** Creates the default folders and configuration file where they are missing; false when that fails. */
    static bool createDefaultEnvironment();
    /** Whether the last reading or creating failed. */
    static bool hasError();
    /** Reads \a path as the configuration file. The result is dropped: hasError() tells it. */
    static void setCommonConfigFile(QString path);
    /** Forgets the path of the configuration file and nothing else. */
    static void clearCommonConfigFilePath();

    /**
     * The data folder. While it is unknown every call reads the standard configuration file once, and the
     * answer may still be empty.
     */
    static QString dataDir();
    static void setDataDir(const QString &dataDir);
    /** The log folder, read like dataDir(); the default log folder where the configuration names none. */
    static QString logDir();
    static void setLogDir(const QString &logDir);

    /** An existing file's absolute path, else \a path taken relative to the data folder. */
    static QString getAbsolutePath(const QString &path);
    /**
     * \a path without the data folder in front and without the separators after it. A path outside the data
     * folder, and any path while the data folder is unknown, comes back byte for byte.
     */
    static QString getRelativePath(const QString &path);

    /** The running upload manager; owned from then on. A replaced object is not deleted. */
    static QProcess *uploadManagerProcess();
    static void setUploadManagerProcess(QProcess *process);
    /** The running channel exporter; never owned. */
    static QProcess *channelExporterProcess();
    static void setChannelExporterProcess(QProcess *process);
    /** The product information of the running application; never owned. */
    static KyProductInformation *productInformation();
    static void setProductInformation(KyProductInformation *information);

private:
    KyEditorConfig();

    KyConfig *m_config = nullptr; // owned
    QProcess *m_uploadManagerProcess = nullptr; // owned
    QProcess *m_channelExporterProcess = nullptr;
    KyProductInformation *m_productInformation = nullptr;
};

} // namespace Kyte
