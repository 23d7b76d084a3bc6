#include "KyConversionTest.h"

#include <KyTestMain.h>

using namespace Kyte;
using Kyte::Test::ConversionRecorder;
using Kyte::Test::ScriptedProgram;

/** The converter's exit codes below zero, which only Windows hands on as they are and takes for crashes. */
class tst_windowsConverter : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanupTestCase();
    void exitCode_tellsTheReason_data();
    void exitCode_tellsTheReason();
};

void tst_windowsConverter::initTestCase()
{
    QVERIFY(Test::installConverter());
}

void tst_windowsConverter::cleanupTestCase()
{
    Test::removeConverter();
}

void tst_windowsConverter::exitCode_tellsTheReason_data()
{
    QTest::addColumn<int>("code");
    QTest::addColumn<QString>("reason");
    const auto add = [](int code, const char *reason) {
        QTest::newRow(QByteArray::number(code).constData()) << code << reason;
    };
    add(-201, "PowerPoint application was not loaded. It might not have been installed.");
    add(-202, "The presentation object can not be got.");
    add(-203, "The file can not be opened.");
    add(-204, "Slides can not be opened.");
    add(-205, "The number of slides can not be got.");
    add(-206, "The PPT file has no slide.");
    add(-207, "The process crashed some time after starting successfully.");
    add(-210, "The video file creation can not be started.");
    add(-211, "The creation of file failed.");
}

void tst_windowsConverter::exitCode_tellsTheReason()
{
    QFETCH(int, code);
    QFETCH(QString, reason);
    for (const bool isAsynchronous : {false, true}) {
        const ScriptedProgram presentation({QStringLiteral("exit %1").arg(code)}, QStringLiteral("talk.pptx"));
        KyPptConversion conversion(presentation.script(), presentation.path(QStringLiteral("out")), false);
        const ConversionRecorder recorder(&conversion);
        if (isAsynchronous)
            conversion.startAsync();
        else
            conversion.start();
        QTRY_COMPARE_WITH_TIMEOUT(recorder.texts.filter(QStringLiteral("error")),
                                  QStringList(QStringLiteral("error abort ") + reason), 30000);
    }
}

KYTE_TEST_MAIN(tst_windowsConverter)
#include "tst_windowsConverter.moc"
