#include "KyTestMain.h"

#include <KyProcessInfo.h>

#include <memory>

#ifdef Q_OS_UNIX
#include <csignal>
#endif

using namespace Kyte;

#ifdef Q_OS_WIN
static const QString EXE = QStringLiteral(".exe");
#else
static const QString EXE;
#endif

class tst_KyProcessInfo : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void runningProgram_isFoundByItsName_data();
    void runningProgram_isFoundByItsName();
    void extension_countsOnlyWhenAsked_data();
    void extension_countsOnlyWhenAsked();
    void nameIsComparedWhole_data();
    void nameIsComparedWhole();
    void everyInstance_isFound();
    void endedProgram_isNotFound();
    void emptyName_findsNothing();
    void nullOk_isAccepted();
    void kill_endsTheProcess();
    void killOfAnEndedProcess_isRefused();
    void killOfNoProcess_isRefused();
    void copy_isTheSameProcess();
    void processIdOfAProcess_isTheSystemsId();
#ifdef Q_OS_UNIX
    void nameGivenByTheProcessItself_doesNotCount();
    void programWhoseFileIsGone_isFound();
    void programThatWaitsToBeReaped_isGone();
#endif

private:
    /** Starts a copy of the sleeping program called \a name and waits until it runs. */
    QProcess *start(const QString &name, const QStringList &arguments = QStringList());
    QList<qint64> idsOf(const QString &name, bool withExtension = false);

    std::unique_ptr<QTemporaryDir> m_folder;
    std::vector<std::unique_ptr<QProcess>> m_processes;
};

/** A name that no other program of the machine has. */
static QString uniqueName(const QString &text = QStringLiteral("kysleep"))
{
    return QStringLiteral("%1%2").arg(text).arg(QCoreApplication::applicationPid());
}

void tst_KyProcessInfo::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    QVERIFY(m_folder->isValid());
}

void tst_KyProcessInfo::cleanup()
{
    for (const std::unique_ptr<QProcess> &process : m_processes) {
        process->closeWriteChannel();
        if (!process->waitForFinished())
            process->kill();
    }
    m_processes.clear();
}

QProcess *tst_KyProcessInfo::start(const QString &name, const QStringList &arguments)
{
    const QString program = m_folder->filePath(name);
    if (!QFile::exists(program)
        && !QFile::copy(QStringLiteral(KYTE_TEST_PROGRAM_DIR "/ky_sleeper") + EXE, program))
        qFatal("Cannot copy the sleeping program to %s", qPrintable(program));

    m_processes.push_back(std::make_unique<QProcess>());
    QProcess *process = m_processes.back().get();
    process->start(program, arguments);
    if (!process->waitForReadyRead() || !process->readAll().startsWith("ready"))
        qFatal("%s does not run: %s", qPrintable(program), qPrintable(process->errorString()));
    return process;
}

QList<qint64> tst_KyProcessInfo::idsOf(const QString &name, bool withExtension)
{
    QList<qint64> ids;
    bool ok = false;
    for (const KyProcessInfo &process : KyProcessInfo::getProcessesByName(name, &ok, withExtension))
        ids.append(process.processId());
    if (!ok)
        qFatal("The process table cannot be read");
    std::sort(ids.begin(), ids.end());
    return ids;
}

void tst_KyProcessInfo::runningProgram_isFoundByItsName_data()
{
    QTest::addColumn<QString>("name");

    QTest::newRow("plain") << uniqueName();
    QTest::newRow("longer than fifteen characters") << uniqueName(QStringLiteral("averylongnameofaprogram"));
    QTest::newRow("blanks and parentheses") << uniqueName(QStringLiteral(") R 1 (a b) "));
    QTest::newRow("other letters") << uniqueName(QString::fromUtf8("schläfer"));
}

void tst_KyProcessInfo::runningProgram_isFoundByItsName()
{
    QFETCH(QString, name);
    const QProcess *process = start(name + EXE);

    bool ok = false;
    const QList<KyProcessInfo> found = KyProcessInfo::getProcessesByName(name, &ok, false);

    QVERIFY(ok);
    QCOMPARE(found.size(), 1);
    QCOMPARE(found.first().processId(), process->processId());
    QCOMPARE(found.first().name(), name + EXE);
}

void tst_KyProcessInfo::extension_countsOnlyWhenAsked_data()
{
    QTest::addColumn<QString>("program");
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("withExtension");
    QTest::addColumn<bool>("isFound");

    const QString plain = uniqueName();
    const QString exe = plain + QStringLiteral(".EXE");
    QTest::newRow("program with, name without") << exe << plain << false << true;
    QTest::newRow("program with, name with") << exe << exe << false << true;
    QTest::newRow("asked, program with, name without") << exe << plain << true << false;
    QTest::newRow("asked, program with, name with") << exe << exe << true << true;
    QTest::newRow("other extension") << exe << plain + QStringLiteral(".com") << false << false;
#ifdef Q_OS_UNIX
    QTest::newRow("program without, name with") << plain << exe << false << true;
    QTest::newRow("asked, program without, name with") << plain << exe << true << false;
    QTest::newRow("asked, program without, name without") << plain << plain << true << true;
#endif
}

void tst_KyProcessInfo::extension_countsOnlyWhenAsked()
{
    QFETCH(QString, program);
    QFETCH(QString, name);
    QFETCH(bool, withExtension);
    start(program);

    QTEST(!idsOf(name, withExtension).isEmpty(), "isFound");
}

void tst_KyProcessInfo::nameIsComparedWhole_data()
{
    QTest::addColumn<QString>("name");

    const QString name = uniqueName(QStringLiteral("averylongnameofaprogram"));
    QTest::newRow("beginning") << name.left(15);
    QTest::newRow("all but the last") << name.chopped(1);
    QTest::newRow("all but the first") << name.mid(1);
    QTest::newRow("longer") << name + QLatin1Char('x');
    QTest::newRow("pattern") << name.chopped(1) + QLatin1Char('*');
    QTest::newRow("in a folder") << QLatin1Char('/') + name;
#ifdef Q_OS_UNIX
    QTest::newRow("other case") << name.toUpper();
#endif
}

void tst_KyProcessInfo::nameIsComparedWhole()
{
    QFETCH(QString, name);
    start(uniqueName(QStringLiteral("averylongnameofaprogram")) + EXE);

    QCOMPARE(idsOf(name), QList<qint64>());
}

void tst_KyProcessInfo::everyInstance_isFound()
{
    const QString name = uniqueName();
    QList<qint64> started;
    for (int i = 0; i < 3; ++i)
        started.append(start(name + EXE)->processId());
    std::sort(started.begin(), started.end());

    QCOMPARE(idsOf(name), started);
}

void tst_KyProcessInfo::endedProgram_isNotFound()
{
    const QString name = uniqueName();
    QProcess *process = start(name + EXE);
    process->closeWriteChannel();
    QVERIFY(process->waitForFinished());

    QCOMPARE(idsOf(name), QList<qint64>());
}

void tst_KyProcessInfo::emptyName_findsNothing()
{
    for (const QString &name : {QString(), QStringLiteral(".exe")}) {
        bool ok = true;
        QVERIFY(KyProcessInfo::getProcessesByName(name, &ok, false).isEmpty());
        QVERIFY(!ok);
    }
}

void tst_KyProcessInfo::nullOk_isAccepted()
{
    const QString name = uniqueName();
    start(name + EXE);

    QCOMPARE(KyProcessInfo::getProcessesByName(name, nullptr, false).size(), 1);
}

void tst_KyProcessInfo::kill_endsTheProcess()
{
    const QString name = uniqueName();
    QProcess *process = start(name + EXE);
    const QProcess *other = start(uniqueName(QStringLiteral("other")) + EXE);
    QList<KyProcessInfo> found = KyProcessInfo::getProcessesByName(name, nullptr, false);
    QCOMPARE(found.size(), 1);

    QVERIFY(found.first().kill());

    QVERIFY(process->waitForFinished());
    QCOMPARE(process->state(), QProcess::NotRunning);
#ifdef Q_OS_UNIX
    QCOMPARE(process->exitStatus(), QProcess::CrashExit);
#endif
    QCOMPARE(other->state(), QProcess::Running);
}

void tst_KyProcessInfo::killOfAnEndedProcess_isRefused()
{
    const QString name = uniqueName();
    QProcess *process = start(name + EXE);
    KyProcessInfo info = KyProcessInfo::getProcessesByName(name, nullptr, false).value(0);
    process->closeWriteChannel();
    QVERIFY(process->waitForFinished());

    QVERIFY(!info.kill());
}

void tst_KyProcessInfo::killOfNoProcess_isRefused()
{
    KyProcessInfo info;

    QCOMPARE(info.processId(), qint64(0));
    QCOMPARE(info.name(), QString());
    QVERIFY(!info.kill());
}

void tst_KyProcessInfo::copy_isTheSameProcess()
{
    const QString name = uniqueName();
    QProcess *process = start(name + EXE);
    KyProcessInfo copy = KyProcessInfo::getProcessesByName(name, nullptr, false).value(0);

    QCOMPARE(copy.processId(), process->processId());
    QVERIFY(copy.kill());
    QVERIFY(process->waitForFinished());
}

void tst_KyProcessInfo::processIdOfAProcess_isTheSystemsId()
{
    QProcess idle;
    QCOMPARE(KyProcessInfo::getProcessId(idle), qint64(0));

    QProcess *process = start(uniqueName() + EXE);
    QVERIFY(KyProcessInfo::getProcessId(*process) > 0);
    QCOMPARE(KyProcessInfo::getProcessId(*process), process->processId());

    process->closeWriteChannel();
    QVERIFY(process->waitForFinished());
    QCOMPARE(KyProcessInfo::getProcessId(*process), qint64(0));
}

#ifdef Q_OS_UNIX
void tst_KyProcessInfo::nameGivenByTheProcessItself_doesNotCount()
{
    const QString name = uniqueName();
    const QString alias = uniqueName(QStringLiteral("alias"));
    start(name);
    QVERIFY(QFile::link(m_folder->filePath(name), m_folder->filePath(alias)));
    start(alias); // runs as the alias, but the file that it runs has the name

    QCOMPARE(idsOf(name).size(), 2);
    QCOMPARE(idsOf(alias), QList<qint64>());
}

void tst_KyProcessInfo::programWhoseFileIsGone_isFound()
{
    const QString name = uniqueName();
    const QProcess *process = start(name);
    QVERIFY(QFile::remove(m_folder->filePath(name)));

    QCOMPARE(idsOf(name), QList<qint64>({process->processId()}));
}

void tst_KyProcessInfo::programThatWaitsToBeReaped_isGone()
{
    const QString name = uniqueName();
    start(name);
    KyProcessInfo info = KyProcessInfo::getProcessesByName(name, nullptr, false).value(0);

    // Without the event loop nobody reaps the process: it stays in the table, ended.
    QVERIFY(info.kill());
    QTRY_COMPARE_WITH_TIMEOUT(idsOf(name), QList<qint64>(), 5000);
    QVERIFY(!info.kill());
}
#endif

KYTE_TEST_MAIN(tst_KyProcessInfo)
#include "tst_KyProcessInfo.moc"
