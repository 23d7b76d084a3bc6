#include "KyConversionProtocol_p.h"

#include <KyTestMain.h>

using namespace Kyte;
using namespace Kyte::ConversionProtocol;

Q_DECLARE_METATYPE(Kyte::ConversionProtocol::Kind)
Q_DECLARE_METATYPE(Kyte::ConversionProtocol::Argument)

class tst_KyConversionProtocol : public QObject
{
    Q_OBJECT

private slots:
    void report_data();
    void report();
    void otherCodes_reportNothing();
    void processError_data();
    void processError();
    void message_data();
    void message();
    void number_data();
    void number();
};

void tst_KyConversionProtocol::report_data()
{
    QTest::addColumn<int>("code");
    QTest::addColumn<QString>("text");
    QTest::addColumn<Kind>("kind");
    QTest::addColumn<Argument>("argument");
    QTest::addColumn<bool>("hasProgress");
    QTest::addColumn<bool>("isCompletion");

    const auto add = [](int code, const char *text, Kind kind, Argument argument = Argument::None,
                        bool hasProgress = false, bool isCompletion = false) {
        QTest::newRow(QByteArray::number(code))
            << code << text << kind << argument << hasProgress << isCompletion;
    };
    add(101, "Loading PowerPoint Application...", Kind::Information);
    add(102, "PowerPoint Application has been loaded.", Kind::Information);
    add(103, "The number of slides: %1", Kind::Information, Argument::Number);
    add(110, "Start to create video file.", Kind::Error);
    add(111, "Creating video file...", Kind::Information, Argument::None, true);
    add(112, "Total Time: <HH:mm:ss>", Kind::Information);
    add(120, "Start to create image file.", Kind::Information);
    add(121, "Creating image file...", Kind::Information, Argument::None, true);
    add(192, "Creation Finished.", Kind::Information, Argument::None, false, true);
    add(200, "Checking Command Line Arguments is failure. (%1)", Kind::Error, Argument::Number);
    add(201, "PowerPoint Application has NOT been loaded.", Kind::Error);
    add(202, "Can NOT get a presentaion object.", Kind::Error);
    add(203, "Can NOT open file.", Kind::Error);
    add(204, "Can NOT open slides.", Kind::Error);
    add(205, "Can NOT get the number of slides.", Kind::Error);
    add(206, "The PPT file has no slide.", Kind::Error);
    add(210, "Can NOT start to create video file.", Kind::Error);
    add(211, "Video file creation was failed.", Kind::Error);
    add(220, "The slide of %1 creation is failure.", Kind::Error, Argument::Message);
}

void tst_KyConversionProtocol::report()
{
    QFETCH(int, code);
    const Report *report = findReport(code);
    QVERIFY(report);
    QCOMPARE(report->code, code);
    QTEST(QString::fromUtf8(report->text), "text");
    QTEST(report->kind, "kind");
    QTEST(report->argument, "argument");
    QTEST(report->hasProgress, "hasProgress");
    QTEST(report->isCompletion, "isCompletion");
}

void tst_KyConversionProtocol::otherCodes_reportNothing()
{
    QList<int> codes;
    for (int code = -300; code <= 300; ++code) {
        if (findReport(code))
            codes.append(code);
    }
    QCOMPARE(codes,
             QList<int>({101, 102, 103, 110, 111, 112, 120, 121, 192, 200, 201, 202, 203, 204, 205, 206, 210,
                         211, 220}));
}

void tst_KyConversionProtocol::processError_data()
{
    QTest::addColumn<int>("error");
    QTest::addColumn<int>("exitCode");
    QTest::addColumn<QString>("text");

    const char *const started =
        "The process failed to start. Either the invoked program is missing, or you may have insufficient "
        "permissions to invoke the program.";
    const char *const crashed = "The process crashed some time after starting successfully.";
    const char *const timedOut =
        "The last waitFor...() function timed out. The state of QProcess is unchanged, and you can try "
        "calling waitFor...() again.";
    const char *const read = "An error occurred when attempting to read from the process. For example, the "
                             "process may not be running.";
    const char *const written =
        "An error occurred when attempting to write to the process. For example, the process may not be "
        "running, or it may have closed its input channel.";
    const char *const unknown = "An unknown error occurred.";
    const auto add = [](const char *row, int error, int exitCode, const char *text) {
        QTest::newRow(row) << error << exitCode << text;
    };
    add("not started", QProcess::FailedToStart, 0, started);
    add("not started, with a code", QProcess::FailedToStart, -201, started);
    add("crashed -201", QProcess::Crashed, -201,
        "PowerPoint application was not loaded. It might not have been installed.");
    add("crashed -202", QProcess::Crashed, -202, "The presentation object can not be got.");
    add("crashed -203", QProcess::Crashed, -203, "The file can not be opened.");
    add("crashed -204", QProcess::Crashed, -204, "Slides can not be opened.");
    add("crashed -205", QProcess::Crashed, -205, "The number of slides can not be got.");
    add("crashed -206", QProcess::Crashed, -206, "The PPT file has no slide.");
    add("crashed -210", QProcess::Crashed, -210, "The video file creation can not be started.");
    add("crashed -211", QProcess::Crashed, -211, "The creation of file failed.");
    for (int code : {0, 9, 201, -200, -207, -212, -220})
        QTest::addRow("crashed %d", code) << int(QProcess::Crashed) << code << crashed;
    add("timed out", QProcess::Timedout, -201, timedOut);
    add("not read", QProcess::ReadError, -201, read);
    add("not written", QProcess::WriteError, -201, written);
    add("unknown", QProcess::UnknownError, -201, unknown);
    add("beyond all", 7, 0, unknown);
}

void tst_KyConversionProtocol::processError()
{
    QFETCH(int, error);
    QFETCH(int, exitCode);
    QTEST(QString::fromUtf8(processErrorText(QProcess::ProcessError(error), exitCode)), "text");
}

void tst_KyConversionProtocol::message_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("code");
    QTest::addColumn<QString>("message");

    QTest::newRow("plain") << "[111](45)" << 111 << "(45";
    QTest::newRow("text") << "[220](slide 3)" << 220 << "(slide 3";
    QTest::newRow("empty text") << "[101]()" << 101 << "(";
    QTest::newRow("behind other text") << "so: [103](12) and on" << 103 << "(12";
    QTest::newRow("the first of two counts") << "[101](a)[102](b)" << 101 << "(a";
    QTest::newRow("first parenthesis ends") << "[220](a(b)c)" << 220 << "(a(b";
    QTest::newRow("brackets in the text") << "[220]([5])" << 220 << "([5]";
    QTest::newRow("line end in the text") << "[220](a\nb)" << 220 << "(a\nb";
    QTest::newRow("minus") << "[-201](x)" << -201 << "(x";
    QTest::newRow("no number") << "[abc](x)" << 0 << "(x";
    QTest::newRow("no code") << "[](x)" << 0 << "(x";
    QTest::newRow("too large a number") << "[99999999999](x)" << 0 << "(x";
    QTest::newRow("hexadecimal is no number") << "[0x65](x)" << 0 << "(x";
    QTest::newRow("bracket in the code") << "[[111](45)" << 0 << "(45";
    QTest::newRow("nothing") << "" << 0 << "";
    QTest::newRow("no bracket") << "111(45)" << 0 << "";
    QTest::newRow("closing brackets before") << "])[111](45)" << 111 << "(45";
    QTest::newRow("no parenthesis") << "[111] (45)" << 111 << "";
    QTest::newRow("ends behind the code") << "[111]" << 111 << "";
    QTest::newRow("ends in the code") << "[11" << 11 << "";
    QTest::newRow("ends behind the bracket") << "[" << 0 << "";
    QTest::newRow("ends in the text") << "[111](4" << 111 << "(4";
    QTest::newRow("ends behind the parenthesis") << "[111](" << 111 << "(";
}

void tst_KyConversionProtocol::message()
{
    QFETCH(QString, text);
    QString message = "former";
    QTEST(parseMessage(text, &message), "code");
    QTEST(message, "message");
}

void tst_KyConversionProtocol::number_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("expected");
    QTest::newRow("as collected") << "(45" << 45;
    QTest::newRow("in a text") << "slide 7 of 12" << 7;
    QTest::newRow("zeros before") << "(007" << 7;
    QTest::newRow("minus does not count") << "(-5" << 5;
    QTest::newRow("fraction ends it") << "(4.9" << 4;
    QTest::newRow("largest") << "2147483647" << 2147483647;
    QTest::newRow("too large") << "2147483648" << -1;
    QTest::newRow("none") << "(x" << -1;
    QTest::newRow("nothing") << "" << -1;
}

void tst_KyConversionProtocol::number()
{
    QFETCH(QString, text);
    QTEST(firstNumber(text), "expected");
}

KYTE_TEST_MAIN(tst_KyConversionProtocol)
#include "tst_KyConversionProtocol.moc"
