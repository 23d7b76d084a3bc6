#include "KyBenchDestinations.h"

#include "KySqlite.h"

#include <QDir>
#include <QFile>
#include <QLocale>
#include <QStringList>

namespace Kyte {
namespace Bench {

const QList<int> DESTINATION_COUNTS = {10000, 100000};

static const int DESTINATIONS_PER_CHANNEL = 100;

static void writeFile(const QString &path, const QString &content)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(content.toUtf8()) < 0 || !file.flush())
        qFatal("%s cannot be written.", qPrintable(path));
}

QString sizedName(const QString &name, int count)
{
    return QStringLiteral("%1, %2 destinations").arg(name, QLocale(QLocale::English).toString(count));
}

QString toText(const KyUploadItemInfo &record)
{
    const QStringList texts = {QString::number(record.itemType()),
                               QString::number(record.id()),
                               QString::number(record.posIndex()),
                               QString::number(record.channelId()),
                               QString::number(record.groupId()),
                               record.name(),
                               record.address(),
                               record.sharedFolder(),
                               record.userName(),
                               record.password()};
    return texts.join(QLatin1Char('|'));
}

Configuration::Configuration(int destinationCount)
{
    const int channelCount = destinationCount / DESTINATIONS_PER_CHANNEL;
    for (int id = 0; id < channelCount; ++id)
        channels.append({id, QStringLiteral("Channel %1").arg(id), id});
    for (int id = 0; id < destinationCount; ++id) {
        destinations.append({id, QStringLiteral("Destination %1").arg(id),
                             QStringLiteral("10.%1.%2.%3").arg(id >> 16).arg(id >> 8 & 255).arg(id & 255),
                             QStringLiteral("share%1").arg(id), QStringLiteral("user%1").arg(id),
                             QStringLiteral("secret%1").arg(id)});
        assignment.insert(id, id % channelCount);
    }
}

Environment::Environment(int channelCount)
    : m_channelCount(channelCount)
{
    const QString configFile = m_folder.filePath(QStringLiteral("kyteconfig.xml"));
    writeFile(configFile, QStringLiteral("<Pelmora><dataDir>data</dataDir></Pelmora>"));
    qputenv("KYTE_CONFIG_FILE", QFile::encodeName(configFile));
    QDir().mkpath(channelDir());
    for (int id = 0; id < channelCount; ++id) {
        writeFile(QStringLiteral("%1/channel%2.xml").arg(channelDir()).arg(id),
                  QStringLiteral("<Pelmora><channel id=\"%1\" name=\"Channel %1\" index=\"%1\"/></Pelmora>")
                      .arg(id));
    }
}

QString Environment::channelDir() const
{
    return m_folder.filePath(QStringLiteral("data/channel"));
}

QString Environment::databaseFile() const
{
    return channelDir() + QStringLiteral("/destination.kyb");
}

QString Environment::mainFile() const
{
    return channelDir() + QStringLiteral("/chconfig.xml");
}

void Environment::fillDatabase(int destinationCount) const
{
    const QString statement =
        QStringLiteral(
            "WITH RECURSIVE numbers(id) AS"
            " (SELECT 0 UNION ALL SELECT id + 1 FROM numbers WHERE id + 1 < %1)"
            " INSERT INTO destination_tbl SELECT id, 'Destination ' || id, 0, '10.0.0.' || id, 'share' || id,"
            " 'user' || id, printf('%080d', id), id % %2, id % 7, '2020-01-01 00:00:00'"
            " FROM numbers")
            .arg(destinationCount)
            .arg(m_channelCount);
    Sqlite(databaseFile()).execute(statement.toUtf8().constData());
}

} // namespace Bench
} // namespace Kyte
