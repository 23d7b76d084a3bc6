#include "KyConfig.h"

#include "KyCommon.h"
#include "KyConfigFile_p.h"

#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>

namespace Kyte {

static const QString DATA_FOLDER = QStringLiteral("data");
static const QString LOG_FOLDER = QStringLiteral("log");

/** The file that the environment names, empty when it names none. */
static QString environmentFilePath()
{
    return qEnvironmentVariable("KYTE_CONFIG_FILE");
}

static QString standardFilePath()
{
    QString path = environmentFilePath();
    if (!path.isEmpty())
        return path;
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation)
        + QStringLiteral("/kyte/kyteconfig.xml");
}

/** A folder of the default environment as the file gives it: relative where it lies beside the file. */
static QString defaultFolder(const QString &name)
{
    if (!environmentFilePath().isEmpty())
        return name;
    return QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) + QStringLiteral("/kyte/")
        + name;
}

static QString defaultFolderPath(const QString &name)
{
    return QFileInfo(standardFilePath()).absoluteDir().absoluteFilePath(defaultFolder(name));
}

KyConfig::ConfigType KyConfig::configType() const
{
    return m_configType;
}

void KyConfig::setConfigType(const ConfigType &type)
{
    m_configType = type;
}

bool KyConfig::readStandardConfigFile(ConfigType type)
{
    m_configType = type;
    return readFile(standardFilePath());
}

bool KyConfig::createDefaultEnvironment(ConfigType type)
{
    m_configType = type;
    m_filePath = standardFilePath();
    const QFileInfo file(m_filePath);
    const QString dataDir = defaultFolderPath(DATA_FOLDER);
    const QString logDir = defaultFolderPath(LOG_FOLDER);
    if (!QDir(dataDir).mkpath(CHANNEL_FOLDER) || !QDir().mkpath(logDir)
        || !QDir().mkpath(file.absolutePath()))
        return fail();

    if (!file.exists()
        && !writeDefaultConfigFile(m_filePath, defaultFolder(DATA_FOLDER), defaultFolder(LOG_FOLDER)))
        return fail();
    if (!readFile(m_filePath))
        return false;
    if (m_dataDir.isEmpty())
        m_dataDir = dataDir;
    if (m_logDir.isEmpty())
        m_logDir = logDir;
    return true;
}

bool KyConfig::readFile(const QString &path)
{
    m_filePath = path;
    KyConfigContent content{m_dataDir, m_logDir, m_destinationList};
    if (!readConfigFile(path, &content))
        return fail();

    m_dataDir = content.dataDir;
    m_logDir = content.logDir;
    m_destinationList = content.destinations;
    m_hasError = false;
    return true;
}

QString KyConfig::filePath() const
{
    return m_filePath;
}

void KyConfig::clearFilePath()
{
    m_filePath.clear();
}

bool KyConfig::hasError() const
{
    return m_hasError;
}

QString KyConfig::dataDir() const
{
    return m_dataDir;
}

void KyConfig::setDataDir(const QString &path)
{
    m_dataDir = path;
}

QString KyConfig::logDir() const
{
    return m_logDir;
}

void KyConfig::setLogDir(const QString &path)
{
    m_logDir = path;
}

void KyConfig::setDefaultToLogDir()
{
    m_logDir = defaultFolderPath(LOG_FOLDER);
}

QList<KyConfig::Destination> KyConfig::destinationList() const
{
    return m_destinationList;
}

bool KyConfig::fail()
{
    m_hasError = true;
    return false;
}

} // namespace Kyte
