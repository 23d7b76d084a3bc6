#include "KyTestEnvironment.h"

#include <QDir>
#include <QFile>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QSqlRecord>
#include <QVariant>
#include <QXmlStreamWriter>

#ifdef Q_OS_LINUX
#include <sched.h>
#include <sys/mount.h>
#endif

namespace Kyte {
namespace Test {

static const QString INSPECTION_CONNECTION = QStringLiteral("kyte_test_inspection");

Destination makeDestination(int id)
{
    return {id,
            QStringLiteral("Destination %1").arg(id),
            QStringLiteral("10.0.%1.%2").arg(id / 256).arg(id % 256),
            QStringLiteral("share%1").arg(id),
            QStringLiteral("user%1").arg(id),
            QStringLiteral("secret%1").arg(id)};
}

QList<Destination> makeDestinations(int firstId, int count)
{
    QList<Destination> destinations;
    destinations.reserve(count);
    for (int id = firstId; id < firstId + count; ++id)
        destinations.append(makeDestination(id));
    return destinations;
}

Environment::Environment()
    : m_formerConfigFile(qgetenv("KYTE_CONFIG_FILE"))
    , m_hadConfigFile(qEnvironmentVariableIsSet("KYTE_CONFIG_FILE"))
{
    if (!m_folder.isValid() || !QDir().mkpath(channelDir())
        || !QDir().mkpath(root() + QStringLiteral("/log")))
        qFatal("No temporary folder for the test");
    writeConfig({});
    qputenv("KYTE_CONFIG_FILE", QFile::encodeName(configFile()));
}

Environment::~Environment()
{
    if (m_hadConfigFile)
        qputenv("KYTE_CONFIG_FILE", m_formerConfigFile);
    else
        qunsetenv("KYTE_CONFIG_FILE");
}

QString Environment::root() const
{
    return m_folder.path();
}

QString Environment::configFile() const
{
    return m_folder.filePath(QStringLiteral("kyteconfig.xml"));
}

QString Environment::dataDir() const
{
    return m_folder.filePath(QStringLiteral("data"));
}

QString Environment::channelDir() const
{
    return m_folder.filePath(QStringLiteral("data/channel"));
}

QString Environment::databaseFile() const
{
    return channelDir() + QStringLiteral("/destination.kyb");
}

QString Environment::workingFile() const
{
    return databaseFile() + QStringLiteral(".work");
}

QString Environment::mainFile() const
{
    return channelDir() + QStringLiteral("/chconfig.xml");
}

void Environment::writeConfig(const QList<Destination> &destinations) const
{
    QByteArray content;
    QXmlStreamWriter writer(&content);
    writer.writeStartDocument();
    writer.writeStartElement(QStringLiteral("Pelmora"));
    writer.writeTextElement(QStringLiteral("dataDir"), QStringLiteral("data"));
    writer.writeTextElement(QStringLiteral("logDir"), QStringLiteral("log"));
    writer.writeStartElement(QStringLiteral("destinations"));
    for (const Destination &destination : destinations) {
        writer.writeEmptyElement(QStringLiteral("destination"));
        writer.writeAttribute(QStringLiteral("id"), QString::number(destination.id));
        writer.writeAttribute(QStringLiteral("name"), destination.name);
        writer.writeAttribute(QStringLiteral("address"), destination.address);
        writer.writeAttribute(QStringLiteral("shared"), destination.shared);
        writer.writeAttribute(QStringLiteral("user"), destination.user);
        writer.writeAttribute(QStringLiteral("password"), destination.password);
    }
    writer.writeEndDocument();
    writeFile(configFile(), content);
}

void Environment::writeChannel(int id, const QString &name, int index) const
{
    QByteArray content;
    QXmlStreamWriter writer(&content);
    writer.writeStartDocument();
    writer.writeStartElement(QStringLiteral("Pelmora"));
    writer.writeEmptyElement(QStringLiteral("channel"));
    writer.writeAttribute(QStringLiteral("id"), QString::number(id));
    writer.writeAttribute(QStringLiteral("name"), name);
    writer.writeAttribute(QStringLiteral("index"), QString::number(index));
    writer.writeEndDocument();
    writeFile(QStringLiteral("%1/channel%2.xml").arg(channelDir()).arg(id), content);
}

void Environment::writeMainFile(const QList<QPair<int, QList<int>>> &assignment) const
{
    QByteArray content;
    QXmlStreamWriter writer(&content);
    writer.writeStartDocument();
    writer.writeStartElement(QStringLiteral("Pelmora"));
    for (const QPair<int, QList<int>> &channel : assignment) {
        writer.writeStartElement(QStringLiteral("channel"));
        writer.writeAttribute(QStringLiteral("id"), QString::number(channel.first));
        for (int id : channel.second) {
            writer.writeEmptyElement(QStringLiteral("destination"));
            writer.writeAttribute(QStringLiteral("id"), QString::number(id));
        }
        writer.writeEndElement();
    }
    writer.writeEndDocument();
    writeFile(mainFile(), content);
}

#ifdef Q_OS_LINUX
SmallDisk::SmallDisk(int kibibytes)
{
    // A mount name space of its own: nobody else sees the disk, and it is gone when the process is, however
    // it ends.
    if (::unshare(CLONE_NEWNS) != 0 || ::mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0)
        return;
    const QByteArray options = "size=" + QByteArray::number(kibibytes) + 'k';
    m_isMounted =
        ::mount("tmpfs", QFile::encodeName(m_folder.path()).constData(), "tmpfs", 0, options.constData())
        == 0;
}

SmallDisk::~SmallDisk()
{
    if (m_isMounted)
        ::umount2(QFile::encodeName(m_folder.path()).constData(), MNT_DETACH);
}
#else
SmallDisk::SmallDisk(int kibibytes)
{
    Q_UNUSED(kibibytes)
}

SmallDisk::~SmallDisk() = default;
#endif

bool SmallDisk::isValid() const
{
    return m_isMounted;
}

QString SmallDisk::path() const
{
    return m_folder.path();
}

void SmallDisk::fill() const
{
    QFile ballast(m_folder.filePath(QStringLiteral("ballast")));
    if (!ballast.open(QIODevice::WriteOnly | QIODevice::Unbuffered))
        qFatal("Cannot fill the small disk: %s", qPrintable(ballast.errorString()));
    while (ballast.write("x") == 1) { }
}

QString rooted(const char *path)
{
    return QDir::temp().absoluteFilePath(QString::fromUtf8(path));
}

QStringList namesIn(const QString &path)
{
    return QDir(path).entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot,
                                QDir::Name);
}

void writeFile(const QString &path, const QByteArray &content)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size() || !file.flush())
        qFatal("Cannot write %s: %s", qPrintable(path), qPrintable(file.errorString()));
}

QByteArray readFile(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/** Runs \a statement on \a path and, where \a rows is given, collects what it answers. */
static void run(const QString &path, const QStringList &statements, QStringList *rows)
{
    {
        QSqlDatabase database = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), INSPECTION_CONNECTION);
        database.setDatabaseName(path);
        if (!database.open())
            qFatal("Cannot open %s: %s", qPrintable(path), qPrintable(database.lastError().text()));
        // Tests end before the machine does: waiting for the disk would only keep them.
        QSqlQuery(database).exec(QStringLiteral("PRAGMA synchronous = OFF"));
        for (const QString &statement : statements) {
            QSqlQuery query(database);
            if (!query.exec(statement))
                qFatal("%s: %s", qPrintable(statement), qPrintable(query.lastError().text()));
            while (rows && query.next()) {
                QStringList columns;
                for (int column = 0; column < query.record().count(); ++column)
                    columns.append(query.isNull(column) ? QStringLiteral("NULL")
                                                        : query.value(column).toString());
                rows->append(columns.join(QLatin1Char('|')));
            }
        }
    }
    QSqlDatabase::removeDatabase(INSPECTION_CONNECTION);
}

QStringList queryRows(const QString &path, const QString &sql)
{
    QStringList rows;
    run(path, {sql}, &rows);
    return rows;
}

void execute(const QString &path, const QStringList &statements)
{
    run(path, statements, nullptr);
}

} // namespace Test
} // namespace Kyte
