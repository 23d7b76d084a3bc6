#include "KyDestinationTest.h"
#include "KyTestMain.h"

#include <KyDestination.h>

#include <QElapsedTimer>
#include <QProcess>

namespace Kyte {
namespace Test {

/** Another process writes to the database. Each vain attempt takes the five seconds that the driver waits. */
class LockedDatabaseTest : public QObject
{
    Q_OBJECT

private slots:
    void lockedDatabase_isSavedOrRefusedInTime_data();
    void lockedDatabase_isSavedOrRefusedInTime();
    void databaseLockedAgainstReaders_isRefusedByInitInTime_data();
    void databaseLockedAgainstReaders_isRefusedByInitInTime();
};

static const int TIME_LIMIT = 20000; // milliseconds

/** Holds a lock on a database while it lives. */
class OtherProcess
{
    Q_DISABLE_COPY(OtherProcess)

public:
    OtherProcess(const QString &file, bool isExclusive)
    {
        QStringList arguments(file);
        if (isExclusive)
            arguments.append(QStringLiteral("exclusive"));
        m_process.start(QStringLiteral(KYTE_TEST_PROGRAM_DIR "/ky_database_writer"), arguments);
        while (!m_process.canReadLine()) {
            if (!m_process.waitForReadyRead())
                qFatal("The database could not be locked: %s", m_process.readAllStandardError().constData());
        }
    }

    ~OtherProcess()
    {
        m_process.closeWriteChannel();
        m_process.waitForFinished();
    }

private:
    QProcess m_process;
};

static void makeDatabase(const Environment &environment)
{
    environment.writeConfig(makeDestinations(0, 5));
    environment.writeChannel(0, QStringLiteral("Channel"), 0);
    KyDestination destination;
    if (!destination.init())
        qFatal("Cannot make the database: %s", qPrintable(destination.lastErrorMessage()));
}

void LockedDatabaseTest::lockedDatabase_isSavedOrRefusedInTime_data()
{
    QTest::addColumn<bool>("isWorkingCopy"); // the locked one
    QTest::addColumn<bool>("isExclusive");
    QTest::addColumn<bool>("isSaved");
    QTest::newRow("standard file, by a writer") << false << false << true;
    QTest::newRow("standard file, against readers")
        << false << true << true; // it is replaced, not written to
    QTest::newRow("working copy, by a writer") << true << false << true;
    QTest::newRow("working copy, against readers") << true << true << false;
}

void LockedDatabaseTest::lockedDatabase_isSavedOrRefusedInTime()
{
    QFETCH(bool, isWorkingCopy);
    QFETCH(bool, isExclusive);
    QFETCH(bool, isSaved);
    const Environment environment;
    makeDatabase(environment);
    KyDestination destination;
    destination.setSettingMode(true);
    QVERIFY(destination.init());
    QVERIFY(destination.addNewGroup(QStringLiteral("Group"), nullptr));
    const QByteArray before = readFile(environment.databaseFile());
    const QByteArray edited = readFile(environment.workingFile());

    const OtherProcess other(isWorkingCopy ? environment.workingFile() : environment.databaseFile(),
                             isExclusive);
    QElapsedTimer timer;
    timer.start();
    QCOMPARE(destination.saveData(), isSaved);
    QVERIFY(timer.elapsed() < TIME_LIMIT);
    QCOMPARE(destination.lastErrorMessage().contains(QLatin1String("database is locked")), !isSaved);
    QVERIFY(readFile(environment.databaseFile()) == (isSaved ? edited : before));
    QCOMPARE(QFile::exists(environment.mainFile()), isSaved);
}

void LockedDatabaseTest::databaseLockedAgainstReaders_isRefusedByInitInTime_data()
{
    QTest::addColumn<bool>("settingMode");
    QTest::addColumn<QString>("message");
    QTest::newRow("normal mode") << false << QStringLiteral("database is locked");
    // Its bytes may be those of a change that is not finished.
    QTest::newRow("setting mode") << true
                                  << QStringLiteral(
                                         "The working file can not be created.\ndatabase is locked");
}

void LockedDatabaseTest::databaseLockedAgainstReaders_isRefusedByInitInTime()
{
    QFETCH(bool, settingMode);
    QFETCH(QString, message);
    const Environment environment;
    makeDatabase(environment);
    const QByteArray before = readFile(environment.databaseFile());
    const OtherProcess other(environment.databaseFile(), true);
    KyDestination destination;
    destination.setSettingMode(settingMode);
    QElapsedTimer timer;
    timer.start();
    QVERIFY(!destination.init());
    QVERIFY(timer.elapsed() < TIME_LIMIT);
    QVERIFY2(destination.lastErrorMessage().startsWith(message), qPrintable(destination.lastErrorMessage()));
    QVERIFY(readFile(environment.databaseFile()) == before);
    QVERIFY(!QFile::exists(environment.workingFile()));
}

} // namespace Test
} // namespace Kyte

KYTE_TEST_MAIN(Kyte::Test::LockedDatabaseTest)

#include "tst_lockedDatabase.moc"
