#include "KyConversionTest.h"

#include <KyTestMain.h>

using namespace Kyte;
using Kyte::Test::ConversionRecorder;
using Kyte::Test::ScriptedProgram;

static QStringList debugLines;
static QtMessageHandler formerHandler = nullptr;

static void recordDebug(QtMsgType type, const QMessageLogContext &context, const QString &text)
{
    if (type == QtDebugMsg)
        debugLines.append(text);
    else
        formerHandler(type, context, text);
}

/**
 * The converter's exit codes below zero, which only Windows hands on as they are. This Qt takes them for no
 * crash, so that the driver reports what the converter said before.
 */
class tst_windowsConverter : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanupTestCase();
    void exitCode_arrivesWhole_data();
    void exitCode_arrivesWhole();
    void exitCodeOfACrash_isTold();
};

void tst_windowsConverter::initTestCase()
{
    QVERIFY(Test::installConverter());
    formerHandler = qInstallMessageHandler(recordDebug);
}

void tst_windowsConverter::cleanupTestCase()
{
    qInstallMessageHandler(formerHandler);
    Test::removeConverter();
}

void tst_windowsConverter::exitCode_arrivesWhole_data()
{
    QTest::addColumn<int>("code");
    QTest::addColumn<QString>("reason");
    const auto add = [](int code, const char *reason) {
        QTest::newRow(QByteArray::number(code).constData()) << code << reason;
    };
    add(201, "PowerPoint Application has NOT been loaded.");
    add(202, "Can NOT get a presentaion object.");
    add(203, "Can NOT open file.");
    add(204, "Can NOT open slides.");
    add(205, "Can NOT get the number of slides.");
    add(206, "The PPT file has no slide.");
    add(210, "Can NOT start to create video file.");
    add(211, "Video file creation was failed.");
}

void tst_windowsConverter::exitCode_arrivesWhole()
{
    QFETCH(int, code);
    QFETCH(QString, reason);
    const ScriptedProgram presentation(
        {QStringLiteral("print [%1]()").arg(code), QStringLiteral("exit -%1").arg(code)},
        QStringLiteral("talk.pptx"));
    KyPptConversion conversion(presentation.script(), presentation.path(QStringLiteral("out")), false);
    const ConversionRecorder recorder(&conversion);
    debugLines.clear();
    conversion.start();

    const QString line = QStringLiteral("exitCode: -%1  status: QProcess::NormalExit").arg(code);
    QTRY_VERIFY2_WITH_TIMEOUT(debugLines.contains(line), qPrintable(debugLines.join(QLatin1Char('|'))),
                              30000);
    QCOMPARE(recorder.texts, QStringList(QStringLiteral("error abort ") + reason));
}

void tst_windowsConverter::exitCodeOfACrash_isTold()
{
    const ScriptedProgram presentation({QStringLiteral("crash")}, QStringLiteral("talk.pptx"));
    KyPptConversion conversion(presentation.script(), presentation.path(QStringLiteral("out")), false);
    const ConversionRecorder recorder(&conversion);
    conversion.start();
    QTRY_COMPARE_WITH_TIMEOUT(
        recorder.texts,
        QStringList(QStringLiteral("error abort The process crashed some time after starting successfully.")),
        30000);
}

KYTE_TEST_MAIN(tst_windowsConverter)
#include "tst_windowsConverter.moc"
