#include "KyDestinationTest.h"
#include "KyFullDevice.h"
#include "KySaveWorld.h"
#include "KyTestMain.h"
#include "KyTracedProgram.h"

#include <KyDestination.h>

#include <QTemporaryDir>

#include <sys/stat.h>

namespace Kyte {
namespace Test {

/** Disks that are really full, and devices and pipes where files are expected. */
class FullDiskTest : public QObject
{
    Q_OBJECT

private slots:
    void fullDisk_keepsTheOldData_data();
    void fullDisk_keepsTheOldData();
    void endlessFile_isPassedOverOrRefused_data();
    void endlessFile_isPassedOverOrRefused();
};

static const QString MAIN_FILE_ANSWER =
    QStringLiteral("failed The channel config file can not be open to write.");
static const QString DATABASE_ANSWER =
    QStringLiteral("failed Error occured while the data is saving.(2)\nNo space left on device");

/**
 * Runs \a script in the folder of an empty disk of one megabyte and 100 files, with \a arguments as "$@". The
 * disk lies in a name space of its own and vanishes with it.
 */
static ProgramRun
runOnDisk(const QString &option, const QString &script, const QStringList &arguments = QStringList())
{
    const QTemporaryDir disk;
    const QString mount =
        QStringLiteral("mount -t tmpfs -o size=1m,nr_inodes=100 none '%1' && cd '%1' && ").arg(disk.path());
    return runProgram(QStringLiteral("unshare"),
                      QStringList({option, QStringLiteral("sh"), QStringLiteral("-c"), mount + script,
                                   QStringLiteral("sh")})
                          + arguments);
}

/** The option by which unshare lets us mount a disk, empty when it does not. */
static QString mountOption()
{
    for (const QString &option : {QStringLiteral("-m"), QStringLiteral("-rm")}) {
        if (runOnDisk(option, QStringLiteral("echo mounted")).output.contains(QLatin1String("mounted")))
            return option;
    }
    return QString();
}

void FullDiskTest::fullDisk_keepsTheOldData_data()
{
    QTest::addColumn<QString>("filling"); // leaves $FREE blocks, or room for as many new files
    QTest::addColumn<int>("enough");
    QTest::addColumn<bool>("isDatabaseRefused"); // for some number in between
    QTest::newRow("blocks") << QStringLiteral(
        "{ cat /dev/zero >filler 2>/dev/null; truncate -s -$((FREE * 4))K filler; }")
                            << 30 << true;
    QTest::newRow("files") << QStringLiteral("{ i=0; while touch filler$i 2>/dev/null; do i=$((i + 1)); done;"
                                             " for j in $(seq $FREE); do rm filler$((i - j)); done; }")
                           << 3 << false;
}

void FullDiskTest::fullDisk_keepsTheOldData()
{
    const QString option = mountOption();
    if (option.isEmpty())
        QSKIP("No disk can be mounted here");
    QFETCH(QString, filling);
    QFETCH(int, enough);
    QFETCH(bool, isDatabaseRefused);
    const SaveWorld world(SaveWorld::Journal::None);
    QStringList answers;
    for (int free = 0; free <= enough; ++free) {
        Environment environment;
        world.furnish(environment);
        const QString script =
            QStringLiteral(
                "cp -R '%1/.' . && export FREE=%2 KYTE_CONFIG_FILE=\"$PWD/kyteconfig.xml\" && '%3' \"$@\";"
                " rm '%1/data/channel/'*; cp data/channel/* '%1/data/channel/'")
                .arg(environment.root())
                .arg(free)
                .arg(testProgram(QStringLiteral("ky_save")));
        const ProgramRun run = runOnDisk(option, script, world.arguments(environment, filling));
        QCOMPARE(run.output.value(0), QStringLiteral("ready"));
        answers.append(run.output.mid(1).join(QLatin1Char('\n')));
        QCOMPARE(world.problemOfAnswer(environment, answers.constLast()), QString());
        QCOMPARE(world.leftovers(environment), QString());
    }
    QCOMPARE(answers.constFirst(), MAIN_FILE_ANSWER);
    QCOMPARE(answers.contains(DATABASE_ANSWER), isDatabaseRefused);
    QCOMPARE(answers.constLast(), QStringLiteral("saved"));
}

void FullDiskTest::endlessFile_isPassedOverOrRefused_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("isPipe");
    QTest::addColumn<bool>("isInitialized");
    QTest::addColumn<bool>("isSaved");
    for (bool isPipe : {false, true}) {
        const QByteArray kind = isPipe ? "pipe" : "device";
        QTest::newRow(kind + ": configuration")
            << QStringLiteral("kyteconfig.xml") << isPipe << false << false;
        QTest::newRow(kind + ": channel")
            << QStringLiteral("data/channel/channel7.xml") << isPipe << true << true;
        QTest::newRow(kind + ": main file")
            << QStringLiteral("data/channel/chconfig.xml") << isPipe << true << false;
        QTest::newRow(kind + ": working copy")
            << QStringLiteral("data/channel/destination.kyb.work") << isPipe << true << true;
    }
    // A device in this place would have SQLite write a journal beside the device.
    QTest::newRow("pipe: database") << QStringLiteral("data/channel/destination.kyb") << true << false
                                    << false;
}

void FullDiskTest::endlessFile_isPassedOverOrRefused()
{
    QFETCH(QString, name);
    QFETCH(bool, isPipe);
    QFETCH(bool, isInitialized);
    QFETCH(bool, isSaved);
    Environment environment;
    environment.writeConfig(makeDestinations(0, 20));
    environment.writeChannel(0, QStringLiteral("Channel"), 0);
    const QString path = environment.root() + QLatin1Char('/') + name;
    QFile::remove(path);
    if (isPipe)
        QCOMPARE(mkfifo(QFile::encodeName(path).constData(), 0600), 0);
    else
        QVERIFY(makeFullDevice(path));

    for (bool settingMode : {false, true}) {
        KyDestination destination;
        destination.setSettingMode(settingMode);
        QCOMPARE(destination.init(), isInitialized);
        QCOMPARE(destination.lastErrorMessage().isEmpty(), isInitialized);
        QCOMPARE(destination.saveData(), isSaved);
    }
    QCOMPARE(QFileInfo(path).isFile(), false);
    QCOMPARE(QFileInfo::exists(path), name != QLatin1String("data/channel/destination.kyb.work"));
}

} // namespace Test
} // namespace Kyte

KYTE_TEST_MAIN(Kyte::Test::FullDiskTest)

#include "tst_fullDisk.moc"
