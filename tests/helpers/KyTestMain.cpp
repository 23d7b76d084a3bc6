#include "KyTestMain.h"

#include <QLocale>
#include <QStandardPaths>
#include <QTemporaryDir>

namespace Kyte {
namespace Test {

static void setPath(const char *variable, const QString &path)
{
    QDir().mkpath(path);
    qputenv(variable, QFile::encodeName(path));
}

void isolate()
{
    static QTemporaryDir home;
    if (!home.isValid())
        qFatal("No temporary folder for the test");

    setPath("HOME", home.filePath(QStringLiteral("home")));
    setPath("XDG_CONFIG_HOME", home.filePath(QStringLiteral("config")));
    setPath("XDG_DATA_HOME", home.filePath(QStringLiteral("data")));
    setPath("XDG_CACHE_HOME", home.filePath(QStringLiteral("cache")));
#ifdef Q_OS_WIN
    QStandardPaths::setTestModeEnabled(true); // the known folders do not follow the environment
#endif
    qunsetenv("KYTE_CONFIG_FILE");
    qputenv("TZ", "UTC");
    qputenv("LC_ALL", "C.UTF-8");
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QLocale::setDefault(QLocale::c());
}

} // namespace Test
} // namespace Kyte
