/*
 * Writes a folder with the files that the library keeps, or reads one and tells where it is not as written:
 *
 *     ky_exchange write FOLDER
 *     ky_exchange read FOLDER
 *
 * One system's folder must read the same on another.
 */

#include <KyTestEnvironment.h>
#include <KyTestMain.h>

#include <KyChannelConfig.h>
#include <KyDestination.h>
#include <KyEditorUserConfig.h>
#include <KyThumbnail.h>

#include <QSettings>

#include <cstdio>

using namespace Kyte;

static const QString NAME = QStringLiteral("\u6620\u753b & <K\u00e4se>");
static const QString PATH = QStringLiteral("C:\\media\\old films");

static QString joined(const QMap<int, QString> &names)
{
    QStringList texts;
    for (auto name = names.cbegin(); name != names.cend(); ++name)
        texts.append(QString::number(name.key()) + QLatin1Char(' ') + name.value());
    return texts.join(QLatin1Char('|'));
}

namespace {

/** The files of one folder: a product environment, the user's settings and a thumbnail. */
class Exchange : public QObject
{
    Q_OBJECT

public:
    explicit Exchange(const QString &folder)
        : m_folder(folder)
    {
        qputenv("KYTE_CONFIG_FILE", QFile::encodeName(m_folder.filePath(QStringLiteral("kyteconfig.xml"))));
    }

    void write() const;
    QStringList contents();
    static QStringList expected();

private slots:
    void onItemsHasRead(QList<KyUploadItemInfo> records)
    {
        for (const KyUploadItemInfo &record : qAsConst(records))
            m_destinations.append(
                QStringList({QString::number(record.id()), record.name(), record.address(),
                             record.sharedFolder(), record.userName(),
                             KyDestination::decryptString(record.password()),
                             QString::number(record.channelId()), QString::number(record.groupId())})
                    .join(QLatin1Char('|')));
    }

private:
    QString settingsFile() const
    {
        return m_folder.filePath(QStringLiteral("usersettings.ini"));
    }

    QDir m_folder;
    QStringList m_destinations;
};

} // namespace

static void require(bool done, const char *what)
{
    if (!done)
        qFatal("%s failed", what);
}

void Exchange::write() const
{
    const QString name = NAME.toHtmlEscaped();
    require(QDir().mkpath(m_folder.filePath(QStringLiteral("data/channel"))), "the folder");
    Test::writeFile(m_folder.filePath(QStringLiteral("kyteconfig.xml")),
                    QStringLiteral("<Pelmora><dataDir>data</dataDir><logDir>log</logDir><destinations>"
                                   "<destination id=\"1\" name=\"%1\" address=\"10.0.0.1\" shared=\"media\" "
                                   "user=\"kyte\" password=\"%1\"/>"
                                   "<destination id=\"2\" name=\"Lobby\" address=\"10.0.0.2\" shared=\"\" "
                                   "user=\"\" password=\"\"/>"
                                   "</destinations></Pelmora>")
                        .arg(name)
                        .toUtf8());
    Test::writeFile(
        m_folder.filePath(QStringLiteral("data/channel/channel3.xml")),
        QStringLiteral("<Pelmora><channel id=\"3\" name=\"%1\" index=\"0\"/></Pelmora>").arg(name).toUtf8());

    KyDestination destination;
    destination.setSettingMode(true);
    int group = -1;
    require(destination.init() && destination.addNewGroup(NAME, &group), "the database");
    require(destination.changeDestinationCategory({1, 2}, 3, KyDestination::Data_Channel).size() == 2
                && destination.changeDestinationCategory({2}, group, KyDestination::Data_Group).size() == 1,
            "moving");
    require(destination.saveData(), "saving");

    KyEditorUserConfig::setValue(QStringLiteral("dock/name"), NAME);
    KyEditorUserConfig::setValue(QStringLiteral("dock/folder"), PATH);
    KyEditorUserConfig::setValue(QStringLiteral("dock/size"), QSize(300, 200));
    KyEditorUserConfig::setValue(QStringLiteral("dock/state"), QByteArray("\x00\xff\r\n;\"", 6));
    KyEditorUserConfig::sync();
    require(QFile::copy(KyEditorUserConfig::settings()->fileName(), settingsFile()), "the settings");

    QPixmap pixmap(40, 30);
    pixmap.fill(Qt::red);
    KyThumbnail thumbnail(m_folder.filePath(QStringLiteral("film.mp4")), nullptr, false);
    thumbnail.setPixmap(pixmap);
    require(thumbnail.write(true), "the thumbnail");
}

QStringList Exchange::contents()
{
    QStringList lines;
    KyChannelConfig config;
    config.readFile(m_folder.filePath(QStringLiteral("data/channel/chconfig.xml")));
    const QMap<int, int> channels = config.destChannelMap();
    for (auto channel = channels.cbegin(); channel != channels.cend(); ++channel)
        lines.append(QStringLiteral("%1 in channel %2").arg(channel.key()).arg(channel.value()));

    KyDestination destination;
    connect(&destination, SIGNAL(itemsHasRead(QList<KyUploadItemInfo>)), this,
            SLOT(onItemsHasRead(QList<KyUploadItemInfo>)));
    if (!destination.init())
        lines.append(destination.lastErrorMessage());
    destination.readDestinations(-2, -2);
    m_destinations.sort();
    lines += m_destinations;
    destination.readChannels();
    destination.readGroups();
    lines.append(joined(*destination.channelNames()));
    lines.append(joined(*destination.groupNames()));

    const QString own = KyEditorUserConfig::settings()->fileName();
    QDir().mkpath(QFileInfo(own).path());
    QFile::remove(own);
    require(QFile::copy(settingsFile(), own), "taking the settings over");
    KyEditorUserConfig::sync();
    lines.append(KyEditorUserConfig::value(QStringLiteral("dock/name")).toString());
    lines.append(KyEditorUserConfig::value(QStringLiteral("dock/folder")).toString());
    const QSize size = KyEditorUserConfig::value(QStringLiteral("dock/size")).toSize();
    lines.append(QStringLiteral("%1x%2").arg(size.width()).arg(size.height()));
    lines.append(
        QString::fromLatin1(KyEditorUserConfig::value(QStringLiteral("dock/state")).toByteArray().toHex()));

    const KyThumbnail thumbnail(m_folder.filePath(QStringLiteral("film.mp4")), nullptr, true);
    const QImage image = thumbnail.pixmap().toImage();
    lines.append(QStringLiteral("%1x%2 %3")
                     .arg(image.width())
                     .arg(image.height())
                     .arg(image.isNull() ? QString() : image.pixelColor(5, 5).name()));
    return lines;
}

QStringList Exchange::expected()
{
    return {QStringLiteral("1 in channel 3"),
            QStringLiteral("2 in channel 3"),
            QStringLiteral("1|%1|10.0.0.1|media|kyte|%1|3|-1").arg(NAME),
            QStringLiteral("2|Lobby|10.0.0.2||||3|0"),
            QStringLiteral("3 %1").arg(NAME),
            QStringLiteral("0 %1").arg(NAME),
            NAME,
            PATH,
            QStringLiteral("300x200"),
            QStringLiteral("00ff0d0a3b22"),
            QStringLiteral("40x30 #ff0000")};
}

int main(int argc, char **argv)
{
    Test::isolate();
    QApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() != 3)
        return 2;
    Exchange exchange(arguments.at(2));
    if (arguments.at(1) == QLatin1String("write"))
        exchange.write();
    const QStringList contents = exchange.contents();
    if (contents == Exchange::expected())
        return 0;
    std::fprintf(stderr, "%s: expected\n%s\nbut it is\n%s\n", qPrintable(arguments.at(2)),
                 qUtf8Printable(Exchange::expected().join(QLatin1Char('\n'))),
                 qUtf8Printable(contents.join(QLatin1Char('\n'))));
    return 1;
}

#include "ky_exchange.moc"
