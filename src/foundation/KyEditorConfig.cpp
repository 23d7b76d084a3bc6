#include "KyEditorConfig.h"

#include <KyConfig.h>
#include <Path.h>

#include <QDir>
#include <QFileInfo>
#include <QProcess>

namespace Kyte {

KyEditorConfig::KyEditorConfig()
    : m_config(new KyConfig)
{
    m_config->setConfigType(KyConfig::Editor);
}

KyEditorConfig::~KyEditorConfig()
{
    delete m_config;
    delete m_uploadManagerProcess;
}

KyEditorConfig *KyEditorConfig::getInstance()
{
    static KyEditorConfig *const instance = new KyEditorConfig;
    return instance;
}

KyConfig *KyEditorConfig::getConfig()
{
    return getInstance()->m_config;
}

bool KyEditorConfig::readStandardConfigFile()
{
    return getConfig()->readStandardConfigFile(KyConfig::Editor);
}

bool KyEditorConfig::createDefaultEnvironment()
{
    return getConfig()->createDefaultEnvironment(KyConfig::Editor);
}

bool KyEditorConfig::hasError()
{
    return getConfig()->hasError();
}

// NOLINTNEXTLINE(performance-unnecessary-value-param): the signature is fixed
void KyEditorConfig::setCommonConfigFile(QString path)
{
    getConfig()->readFile(path);
}

void KyEditorConfig::clearCommonConfigFilePath()
{
    getConfig()->clearFilePath();
}

QString KyEditorConfig::dataDir()
{
    QString known = getConfig()->dataDir();
    if (!known.isEmpty())
        return known;
    readStandardConfigFile();
    return getConfig()->dataDir();
}

void KyEditorConfig::setDataDir(const QString &dataDir)
{
    getConfig()->setDataDir(dataDir);
}

QString KyEditorConfig::logDir()
{
    KyConfig *config = getConfig();
    if (config->logDir().isEmpty())
        readStandardConfigFile();
    if (config->logDir().isEmpty())
        config->setDefaultToLogDir();
    return config->logDir();
}

void KyEditorConfig::setLogDir(const QString &logDir)
{
    getConfig()->setLogDir(logDir);
}

QString KyEditorConfig::getAbsolutePath(const QString &path)
{
    const QFileInfo file(path);
    return file.exists() ? file.absoluteFilePath() : QDir(dataDir()).absoluteFilePath(path);
}

QString KyEditorConfig::getRelativePath(const QString &path)
{
    const QString normalizedPath = Path::replaceSepalator(path);
    const QString folder = Path::replaceSepalator(getConfig()->dataDir());
    // The prefix is looked for in the path as given, so a path with the other separators counts as outside
    // the data folder and stays as it is, and it is a prefix of the text: "/data2/a" lies under "/data" and
    // becomes "2/a". Stored projects hold such paths.
    if (folder.isEmpty() || !path.startsWith(folder, Qt::CaseInsensitive))
        return path;

    int begin = folder.length();
    while (begin < normalizedPath.length() && normalizedPath.at(begin) == QLatin1Char('/'))
        ++begin;
    return normalizedPath.mid(begin);
}

QProcess *KyEditorConfig::uploadManagerProcess()
{
    return getInstance()->m_uploadManagerProcess;
}

void KyEditorConfig::setUploadManagerProcess(QProcess *process)
{
    getInstance()->m_uploadManagerProcess = process;
}

QProcess *KyEditorConfig::channelExporterProcess()
{
    return getInstance()->m_channelExporterProcess;
}

void KyEditorConfig::setChannelExporterProcess(QProcess *process)
{
    getInstance()->m_channelExporterProcess = process;
}

KyProductInformation *KyEditorConfig::productInformation()
{
    return getInstance()->m_productInformation;
}

void KyEditorConfig::setProductInformation(KyProductInformation *information)
{
    getInstance()->m_productInformation = information;
}

} // namespace Kyte
