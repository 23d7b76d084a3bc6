#include "KyEditorUserConfig.h"

#include <ExecFunction.h>
#include <Path.h>

#include <QSettings>

namespace Kyte {

KyEditorUserConfig::KyEditorUserConfig()
    : m_settings(new QSettings(
        QStringLiteral("%1/usersettings.ini").arg(Path::getApplicationDataFolderPath(ExecFunction::Editor)),
        QSettings::IniFormat))
{
    m_settings->setIniCodec("UTF-8");
}

KyEditorUserConfig *KyEditorUserConfig::getInscance()
{
    static KyEditorUserConfig *const instance = new KyEditorUserConfig;
    return instance;
}

QSettings *KyEditorUserConfig::settings()
{
    return getInscance()->m_settings;
}

void KyEditorUserConfig::beginGroup(const QString &prefix)
{
    settings()->beginGroup(prefix);
}

void KyEditorUserConfig::endGroup()
{
    settings()->endGroup();
}

QString KyEditorUserConfig::group()
{
    return settings()->group();
}

void KyEditorUserConfig::setValue(const QString &key, const QVariant &value)
{
    settings()->setValue(key, value);
}

QVariant KyEditorUserConfig::value(const QString &key, const QVariant &defaultValue)
{
    return settings()->value(key, defaultValue);
}

void KyEditorUserConfig::sync()
{
    settings()->sync();
}

} // namespace Kyte
