#include "KyDestinationTest.h"
#include "KyDestinationVisit.h"
#include "KyMutator.h"
#include "KyTestMain.h"

#include <KyDestination.h>

#include <QXmlStreamReader>

namespace Kyte {
namespace Test {

/** Damaged configuration, channel and main files cost no more than what they say, and no time. */
class MutatedFilesTest : public QObject
{
    Q_OBJECT

private slots:
    void mutatedFile_doesNoHarm_data();
    void mutatedFile_doesNoHarm();
};

static const int DESTINATIONS = 20;
static const int SEEDS = 1000; // of each kind of file
static const int SEEDS_PER_ROW = 100;

static const QString CHANNEL_FILE = QStringLiteral("data/channel/channel1.xml");
static const QString MAIN_FILE = QStringLiteral("data/channel/chconfig.xml");
static const QString CONFIGURATION = QStringLiteral("kyteconfig.xml");

void MutatedFilesTest::mutatedFile_doesNoHarm_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("firstSeed");
    for (const QString &name : {CHANNEL_FILE, MAIN_FILE, CONFIGURATION}) {
        for (int seed = 0; seed < SEEDS; seed += SEEDS_PER_ROW)
            QTest::addRow("%s from seed %d", qPrintable(name.section(QLatin1Char('/'), -1)), seed)
                << name << seed;
    }
}

static void makeEnvironment(const Environment &environment)
{
    environment.writeConfig(makeDestinations(0, DESTINATIONS));
    for (int channel = 0; channel < 3; ++channel)
        environment.writeChannel(channel, QStringLiteral("Channel %1").arg(channel), channel);
    environment.writeMainFile({{0, {0, 1, 2, 3}}, {1, {4, 5, 6}}, {2, {7, 8}}});
    KyDestination destination;
    if (!destination.init() || !destination.addNewGroup(QStringLiteral("Group"), nullptr))
        qFatal("Cannot make the database: %s", qPrintable(destination.lastErrorMessage()));
}

/**
 * How many bytes at the begin of the file \a name are left alone. The folders of the configuration are:
 * damaged, they might name one that is none of ours.
 */
static int safeSize(const QString &name, const QByteArray &content)
{
    return name == CONFIGURATION ? content.indexOf("<destinations>") : 0;
}

static bool isWellFormed(const QByteArray &xml)
{
    QXmlStreamReader reader(xml);
    while (!reader.atEnd())
        reader.readNext();
    return !reader.hasError();
}

void MutatedFilesTest::mutatedFile_doesNoHarm()
{
    QFETCH(QString, name);
    QFETCH(int, firstSeed);
    Environment environment;
    makeEnvironment(environment);
    const QString path = environment.root() + QLatin1Char('/') + name;
    const QByteArray content = readFile(path);
    const QByteArray database = readFile(environment.databaseFile());
    const QByteArray mainFile = readFile(environment.mainFile());
    const int safe = safeSize(name, content);
    QVERIFY(safe >= 0);
    const MessageWatch watch;

    int refusals = 0;
    for (int seed = firstSeed; seed < firstSeed + SEEDS_PER_ROW; ++seed) {
        const QByteArray label = "seed " + QByteArray::number(seed);
        writeFile(environment.databaseFile(), database);
        writeFile(environment.mainFile(), mainFile);
        writeFile(path, content.left(safe) + Mutator(seed).damagedXml(content.mid(safe)));
        KyDestination destination;
        destination.setSettingMode(seed % 2);
        const VisitResult result = visit(&destination);
        QVERIFY2(MessageWatch::take().isEmpty(), label);
        QVERIFY2(result.isSaved == result.isInitialized, label);
        if (result.isSaved) {
            QVERIFY2(isWellFormed(readFile(environment.mainFile())), label);
            QCOMPARE(queryRows(environment.databaseFile(), QStringLiteral("PRAGMA integrity_check")),
                     QStringList(QStringLiteral("ok")));
        } else {
            ++refusals;
            QCOMPARE(name, CONFIGURATION);
            QVERIFY2(readFile(environment.databaseFile()) == database, label);
            QVERIFY2(readFile(environment.mainFile()) == mainFile, label);
        }
        if (name != CONFIGURATION)
            QCOMPARE(
                queryRows(environment.databaseFile(), QStringLiteral("SELECT COUNT(*) FROM destination_tbl")),
                QStringList(QString::number(DESTINATIONS)));
    }
    QVERIFY(name != CONFIGURATION || (refusals > 0 && refusals < SEEDS_PER_ROW));
}

} // namespace Test
} // namespace Kyte

KYTE_TEST_MAIN(Kyte::Test::MutatedFilesTest)

#include "tst_mutatedFiles.moc"
