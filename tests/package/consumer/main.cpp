// Everything by bare name, as an application of the product includes it.
#include <JoCrypto.h>
#include <KyChannelConfig.h>
#include <KyDestination.h>
#include <KyEditorConfig.h>
#include <KyEditorUserConfig.h>
#include <KyStage.h>
#include <KyThumbnail.h>
#include <KyUploadItemInfo.h>
#include <KyWindowControl.h>

#include <QCoreApplication>
#include <QDir>
#include <QTemporaryDir>
#include <QTranslator>

#include <cstdio>

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    const QTemporaryDir folder;
    const QString config = folder.filePath(QStringLiteral("kyteconfig.xml"));
    qputenv("KYTE_CONFIG_FILE", QFile::encodeName(config));

    if (!Kyte::KyEditorConfig::createDefaultEnvironment()) {
        std::fprintf(stderr, "no default environment\n");
        return 1;
    }
    Kyte::KyDestination destination(nullptr);
    if (!destination.init()) {
        std::fprintf(stderr, "init: %s\n", qPrintable(destination.lastErrorMessage()));
        return 1;
    }
    const QString secret = Kyte::KyDestination::encryptString(QStringLiteral("secret"));
    if (Kyte::KyDestination::decryptString(secret) != QLatin1String("secret"))
        return 1;
#ifdef TRANSLATIONS_DIR // which the CMake package knows
    QTranslator german;
    if (!german.load(QStringLiteral("kyeditorcommon_de"), QStringLiteral(TRANSLATIONS_DIR))) {
        std::fprintf(stderr, "no translation in %s\n", TRANSLATIONS_DIR);
        return 1;
    }
#endif
    std::printf("destination database: %s\n", qPrintable(destination.reservedDatabaseFileHashSha1()));
    return 0;
}
