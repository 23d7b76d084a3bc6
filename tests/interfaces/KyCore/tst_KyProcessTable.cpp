#include "KyTestMain.h"

#include "KyProcessTable_p.h"

using namespace Kyte;

class tst_KyProcessTable : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void everyProcessWithAName_isOffered();
    void entry_namesTheProcess();
    void kill_ofAProcessThatTookTheIdOver_isRefused();
    void kill_ofTheVeryProcess_endsIt();
    void kill_ofAnUnusedId_isRefused();

private:
    KyProcessEntry entry() const;

    QProcess m_process;
};

void tst_KyProcessTable::init()
{
    m_process.start(QStringLiteral(KYTE_TEST_PROGRAM_DIR "/ky_sleeper"), QStringList());
    QVERIFY(m_process.waitForReadyRead());
}

void tst_KyProcessTable::cleanup()
{
    m_process.closeWriteChannel();
    m_process.waitForFinished();
}

/** What the table says about the running program. */
KyProcessEntry tst_KyProcessTable::entry() const
{
    QVector<KyProcessEntry> found;
    findProcesses(
        [](const QString &name) {
            return name.startsWith(QLatin1String("ky_sleeper"));
        },
        &found);
    for (const KyProcessEntry &entry : qAsConst(found)) {
        if (entry.id == m_process.processId())
            return entry;
    }
    return KyProcessEntry();
}

void tst_KyProcessTable::everyProcessWithAName_isOffered()
{
    QStringList names;
    QVector<KyProcessEntry> found;
    const auto collect = [&](const QString &name) {
        names.append(name);
        return false;
    };

    QVERIFY(findProcesses(collect, &found));

    QVERIFY(found.isEmpty());
    QVERIFY(names.contains(QFileInfo(QCoreApplication::applicationFilePath()).fileName()));
    QVERIFY(!names.contains(QString()));
}

void tst_KyProcessTable::entry_namesTheProcess()
{
    QCOMPARE(entry().id, m_process.processId());
    QVERIFY(entry().startTime != 0);
}

void tst_KyProcessTable::kill_ofAProcessThatTookTheIdOver_isRefused()
{
    const KyProcessEntry process = entry();

    QVERIFY(!killProcess(process.id, process.startTime - 1));
    QVERIFY(!killProcess(process.id, process.startTime + 1));

    m_process.closeWriteChannel();
    QVERIFY(m_process.waitForFinished());
    QCOMPARE(m_process.exitStatus(), QProcess::NormalExit); // it lived until its input ended
    QCOMPARE(m_process.exitCode(), 0);
}

void tst_KyProcessTable::kill_ofTheVeryProcess_endsIt()
{
    const KyProcessEntry process = entry();

    QVERIFY(killProcess(process.id, process.startTime));

    QVERIFY(m_process.waitForFinished());
    QVERIFY(!killProcess(process.id, process.startTime));
}

void tst_KyProcessTable::kill_ofAnUnusedId_isRefused()
{
    const KyProcessEntry process = entry();
    m_process.closeWriteChannel();
    QVERIFY(m_process.waitForFinished());

    QVERIFY(!killProcess(process.id, process.startTime));
    QVERIFY(!killProcess(0, process.startTime));
    QVERIFY(!killProcess(-1, process.startTime));
}

KYTE_TEST_MAIN(tst_KyProcessTable)
#include "tst_KyProcessTable.moc"
