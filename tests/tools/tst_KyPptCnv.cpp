#include "KyTestEnvironment.h"
#include "KyTestMain.h"

#include <KyPptConversion.h>

#include <QDir>
#include <QFile>
#include <QImage>
#include <QProcess>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QStandardPaths>
#include <QTemporaryDir>

#ifdef Q_OS_UNIX
#include <csignal>
#endif

using namespace Kyte;

// Real presentations through the real programs. Each slide of tests/data/slides.* has a coloured quarter at
// its upper left and stays 2, 3 and 4 seconds.

static const int PATIENCE = 120000; // milliseconds: an office suite starts for each conversion

static QString data(const char *name)
{
    return QStringLiteral(KYTE_TEST_DATA) + QLatin1Char('/') + QLatin1String(name);
}

/** One run of the converter. */
struct Run
{
    int exitCode = -1;
    QList<int> codes;
    QStringList texts;

    QList<int> numbersOf(int code) const
    {
        QList<int> numbers;
        for (int i = 0; i < codes.size(); ++i) {
            if (codes.at(i) == code)
                numbers.append(texts.at(i).toInt());
        }
        return numbers;
    }
};

static QString converter()
{
    return QCoreApplication::applicationDirPath() + QStringLiteral("/KyPptCnv.exe");
}

static void readMessages(const QString &output, Run *run)
{
    static const QRegularExpression MESSAGE(QStringLiteral("\\[(\\d+)\\]\\(([^)]*)\\)\n"));
    QRegularExpressionMatchIterator messages = MESSAGE.globalMatch(output);
    while (messages.hasNext()) {
        const QRegularExpressionMatch message = messages.next();
        run->codes.append(message.captured(1).toInt());
        run->texts.append(message.captured(2));
    }
}

static QStringList arguments(const QString &input, const QString &format, const QString &folder)
{
    return {QStringLiteral("-i"),  input,
            QStringLiteral("-t"),  format,
            QStringLiteral("-d"),  folder,
            QStringLiteral("-o"),  QStringLiteral("slide"),
            QStringLiteral("-w"),  QStringLiteral("320"),
            QStringLiteral("-h"),  QStringLiteral("180"),
            QStringLiteral("-vr"), QStringLiteral("120")};
}

static Run convert(const QStringList &arguments, const QProcessEnvironment &environment = {})
{
    QProcess process;
    process.setProcessEnvironment(environment.isEmpty() ? QProcessEnvironment::systemEnvironment()
                                                        : environment);
    process.start(converter(), arguments);
    Run run;
    if (!process.waitForFinished(PATIENCE))
        return run;
    readMessages(QString::fromUtf8(process.readAllStandardOutput()), &run);
    run.exitCode = process.exitCode();
    return run;
}

/** What a process's exit code becomes: Unix keeps eight bits of it. */
static int exitCodeOf(int code)
{
#ifdef Q_OS_UNIX
    return code & 0xff;
#else
    return code;
#endif
}

class tst_KyPptCnv : public QObject
{
    Q_OBJECT

private slots:
    void presentations_becomePictures_data();
    void presentations_becomePictures();
    void formatsAndNames_data();
    void formatsAndNames();
    void video_hasThePresentationsTimings();
    void video_withoutTimings_hasTheDefault();
    void hiddenSlides_areLeftOut();
    void failures_data();
    void failures();
    void missingOffice_isTold();
    void missingRenderer_isTold();
    void occupiedName_leavesNoPicture();
    void fullDisk_leavesNothing_data();
    void fullDisk_leavesNothing();
    void temporaryFolder_mayHaveAnyName();
    void twoAtATime_doNotDisturbEachOther();
    void requestToEnd_leavesNothing();
    void requestToEndWhileWriting_leavesNothing_data();
    void requestToEndWhileWriting_leavesNothing();
    void driver_convertsInThisThread();
    void driver_convertsInAThread();
    void driver_abortsInTheMiddle();
};

static void comparePicture(const QString &path, const QColor &corner)
{
    const QImage image(path);
    QCOMPARE(image.size(), QSize(320, 180));
    const QColor found = image.pixelColor(40, 40);
    QVERIFY2(qAbs(found.red() - corner.red()) < 8 && qAbs(found.green() - corner.green()) < 8
                 && qAbs(found.blue() - corner.blue()) < 8,
             qPrintable(found.name()));
    QCOMPARE(image.pixelColor(300, 170), QColor(Qt::white));
}

static void comparePictures(const QDir &folder, const QString &suffix)
{
    QCOMPARE(folder.entryList(QDir::Files, QDir::Name),
             QStringList({QStringLiteral("slide1.") + suffix, QStringLiteral("slide2.") + suffix,
                          QStringLiteral("slide3.") + suffix}));
    const QColor colours[] = {Qt::red, Qt::green, Qt::blue};
    for (int i = 0; i < 3; ++i)
        comparePicture(folder.filePath(QStringLiteral("slide%1.").arg(i + 1) + suffix), colours[i]);
}

void tst_KyPptCnv::presentations_becomePictures_data()
{
    QTest::addColumn<QString>("input");
    QTest::newRow("pptx") << data("slides.pptx");
    QTest::newRow("ppt") << data("slides.ppt");
    QTest::newRow("odp") << data("slides.odp");
}

void tst_KyPptCnv::presentations_becomePictures()
{
    QFETCH(QString, input);
    const QTemporaryDir dir;
    const Run run = convert(arguments(input, QStringLiteral("png"), dir.path()));
    QCOMPARE(run.exitCode, 0);
    QCOMPARE(run.codes.mid(0, 4), QList<int>({101, 102, 103, 120}));
    QCOMPARE(run.codes.constLast(), 192);
    QCOMPARE(run.numbersOf(103), QList<int>({3}));
    const QList<int> progress = run.numbersOf(121);
    QVERIFY(std::is_sorted(progress.cbegin(), progress.cend()));
    QCOMPARE(progress.constLast(), 100);
    comparePictures(QDir(dir.path()), QStringLiteral("png"));
}

void tst_KyPptCnv::formatsAndNames_data()
{
    QTest::addColumn<QString>("format");
    QTest::addColumn<QString>("name");
    QTest::newRow("jpg, blanks and quotes") << "jpg" << QStringLiteral("my \"talk\" %1.pptx");
    QTest::newRow("bmp, not ASCII") << "bmp" << QStringLiteral("\u00dcbersicht \u6f22.pptx");
}

void tst_KyPptCnv::formatsAndNames()
{
    QFETCH(QString, format);
    QFETCH(QString, name);
    const QTemporaryDir dir;
    const QDir folder(dir.filePath(name + QStringLiteral(" pictures")));
    QVERIFY(QFile::copy(data("slides.pptx"), dir.filePath(name)));
    QCOMPARE(convert(arguments(dir.filePath(name), format, folder.path())).exitCode, 0);
    comparePictures(folder, format);
}

/** Seconds, and the height in pixels. */
static QPair<double, int> probe(const QString &video)
{
    QProcess process;
    process.start(QStringLiteral("ffprobe"),
                  {QStringLiteral("-v"), QStringLiteral("error"), QStringLiteral("-show_entries"),
                   QStringLiteral("stream=height:format=duration"), QStringLiteral("-of"),
                   QStringLiteral("csv=p=0"), video});
    process.waitForFinished();
    const QStringList lines = QString::fromUtf8(process.readAllStandardOutput()).split(QLatin1Char('\n'));
    return {lines.value(1).toDouble(), lines.value(0).toInt()};
}

void tst_KyPptCnv::video_hasThePresentationsTimings()
{
    const QTemporaryDir dir;
    const Run run = convert(arguments(data("slides.pptx"), QStringLiteral("mp4"), dir.path()));
    QCOMPARE(run.exitCode, 0);
    QVERIFY(run.codes.contains(110));
    QCOMPARE(run.numbersOf(111).constLast(), 100);
    QCOMPARE(run.texts.value(run.codes.indexOf(112)), QStringLiteral("00:00:09"));
    QCOMPARE(run.codes.constLast(), 192);
    QCOMPARE(QDir(dir.path()).entryList(QDir::Files), QStringList(QStringLiteral("slide.mp4")));
    const QPair<double, int> video = probe(dir.filePath(QStringLiteral("slide.mp4")));
    QVERIFY2(qAbs(video.first - 9) < 0.2, qPrintable(QString::number(video.first)));
    QCOMPARE(video.second, 120);
}

void tst_KyPptCnv::video_withoutTimings_hasTheDefault()
{
    const QTemporaryDir dir;
    const QStringList options({QStringLiteral("-ut"), QStringLiteral("false"), QStringLiteral("-sd"),
                               QStringLiteral("2"), QStringLiteral("-fs"), QStringLiteral("10")});
    QCOMPARE(convert(arguments(data("slides.odp"), QStringLiteral("mp4"), dir.path()) + options).exitCode, 0);
    const QPair<double, int> video = probe(dir.filePath(QStringLiteral("slide.mp4")));
    QVERIFY2(qAbs(video.first - 6) < 0.2, qPrintable(QString::number(video.first)));
}

void tst_KyPptCnv::hiddenSlides_areLeftOut()
{
    const QTemporaryDir dir;
    const Run run = convert(arguments(data("hidden.pptx"), QStringLiteral("mp4"), dir.path()));
    QCOMPARE(run.exitCode, 0);
    QCOMPARE(run.numbersOf(103), QList<int>({2}));
    QCOMPARE(run.texts.value(run.codes.indexOf(112)),
             QStringLiteral("00:00:06")); // of the first and the third
}

void tst_KyPptCnv::failures_data()
{
    QTest::addColumn<QString>("input");
    QTest::addColumn<int>("code");
    QTest::newRow("missing") << data("nothing.pptx") << 203;
    QTest::newRow("empty") << QStringLiteral("empty") << 203;
    QTest::newRow("cut off") << QStringLiteral("cut") << 203;
    QTest::newRow("noise") << QStringLiteral("noise") << 203;
    QTest::newRow("text") << QStringLiteral("text") << 203;
    QTest::newRow("protected by a password") << data("locked.odp") << 203;
    QTest::newRow("without slides") << data("noslides.pptx") << 206;
}

static QByteArray contentFor(const QString &kind)
{
    if (kind == QLatin1String("noise"))
        return QByteArray("\xd0\xcf\x11\xe0\xa1\xb1\x1a\xe1") + QByteArray(4000, '\x5a');
    if (kind == QLatin1String("text"))
        return QByteArray("Departures\nArrivals\n");
    QFile file(data("slides.pptx"));
    return kind == QLatin1String("cut") && file.open(QIODevice::ReadOnly) ? file.read(file.size() / 2)
                                                                          : QByteArray();
}

void tst_KyPptCnv::failures()
{
    QFETCH(QString, input);
    QFETCH(int, code);
    const QTemporaryDir dir;
    if (!input.contains(QLatin1Char('/'))) {
        QFile file(dir.filePath(
            input + (input == QLatin1String("text") ? QStringLiteral(".txt") : QStringLiteral(".ppt"))));
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(contentFor(input));
        input = file.fileName();
    }
    const Run run = convert(arguments(input, QStringLiteral("png"), dir.filePath(QStringLiteral("out"))));
    QCOMPARE(run.exitCode, exitCodeOf(-code));
    QCOMPARE(run.codes.constLast(), code);
    QVERIFY(QDir(dir.filePath(QStringLiteral("out"))).entryList(QDir::Files).isEmpty());
}

void tst_KyPptCnv::missingOffice_isTold()
{
    const QTemporaryDir dir;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("PATH"), dir.path());
    const Run run = convert(arguments(data("slides.pptx"), QStringLiteral("png"), dir.path()), environment);
    QCOMPARE(run.codes, QList<int>({101, 201}));
    QCOMPARE(run.exitCode, exitCodeOf(-201));
}

void tst_KyPptCnv::missingRenderer_isTold()
{
    const QTemporaryDir dir;
    const QString office = QStandardPaths::findExecutable(QStringLiteral("soffice"));
    QVERIFY(QFile::link(office, dir.filePath(QStringLiteral("soffice"))));
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("PATH"), dir.path());
    const Run run = convert(arguments(data("slides.pptx"), QStringLiteral("png"), dir.path()), environment);
    QCOMPARE(run.codes, QList<int>({101, 202}));
    QCOMPARE(run.exitCode, exitCodeOf(-202));
}

void tst_KyPptCnv::occupiedName_leavesNoPicture()
{
    const QTemporaryDir dir;
    QVERIFY(QDir(dir.path()).mkdir(QStringLiteral("slide2.png")));
    const Run run = convert(arguments(data("slides.odp"), QStringLiteral("png"), dir.path()));
    QCOMPARE(run.exitCode, exitCodeOf(-220));
    QCOMPARE(run.codes.constLast(), 220);
    QCOMPARE(run.texts.constLast(), QStringLiteral("2"));
    QCOMPARE(QDir(dir.path()).entryList(QDir::Files), QStringList());
}

void tst_KyPptCnv::fullDisk_leavesNothing_data()
{
    QTest::addColumn<QString>("format");
    QTest::addColumn<int>("kibibytes"); // room for one picture, but not for three
    QTest::addColumn<int>("code");
    QTest::newRow("bmp") << "bmp" << 200 << 220;
    QTest::newRow("png, written in one piece") << "png" << 4 << 220;
    QTest::newRow("mp4") << "mp4" << 4 << 211;
}

void tst_KyPptCnv::fullDisk_leavesNothing()
{
    QFETCH(QString, format);
    QFETCH(int, kibibytes);
    QFETCH(int, code);
    const Test::SmallDisk disk(kibibytes);
    if (!disk.isValid())
        QSKIP("this user may not mount a file system");
    const Run run = convert(arguments(data("slides.odp"), format, disk.path()));
    QCOMPARE(run.exitCode, exitCodeOf(-code));
    QCOMPARE(run.codes.constLast(), code);
    QCOMPARE(Test::namesIn(disk.path()), QStringList());
}

void tst_KyPptCnv::temporaryFolder_mayHaveAnyName()
{
    const QTemporaryDir dir;
    const QString name = QStringLiteral("it's %1 \u6f22");
    QVERIFY(QDir(dir.path()).mkdir(name));
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("TMPDIR"), dir.filePath(name));
    const Run run = convert(arguments(data("slides.odp"), QStringLiteral("mp4"), dir.path()), environment);
    QCOMPARE(run.exitCode, 0);
    QVERIFY(QDir(dir.filePath(name)).isEmpty());
}

void tst_KyPptCnv::twoAtATime_doNotDisturbEachOther()
{
    const QTemporaryDir dirs[2];
    QProcess processes[2];
    for (int i = 0; i < 2; ++i)
        processes[i].start(converter(), arguments(data("slides.odp"), QStringLiteral("png"), dirs[i].path()));
    for (int i = 0; i < 2; ++i) {
        QVERIFY(processes[i].waitForFinished(PATIENCE));
        QCOMPARE(processes[i].exitCode(), 0);
        comparePictures(QDir(dirs[i].path()), QStringLiteral("png"));
    }
}

#ifdef Q_OS_UNIX
/** Whether a process lives whose command line names \a text. */
static bool isMentioned(const QString &text)
{
    QProcess process;
    process.start(QStringLiteral("pgrep"), {QStringLiteral("-f"), text});
    process.waitForFinished();
    return process.exitCode() == 0;
}
#endif

void tst_KyPptCnv::requestToEnd_leavesNothing()
{
#ifdef Q_OS_UNIX
    const QTemporaryDir dir;
    QVERIFY(QDir(dir.path()).mkdir(QStringLiteral("tmp")));
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("TMPDIR"), dir.filePath(QStringLiteral("tmp")));
    QProcess process;
    process.setProcessEnvironment(environment);
    process.start(converter(), arguments(data("slides.pptx"), QStringLiteral("png"), dir.path()));
    const QString office = dir.filePath(QStringLiteral("tmp")); // its profile and its result lie there
    // One moment later it may be another program, which the office starts in its place.
    bool wasMentioned = false;
    QTRY_VERIFY_WITH_TIMEOUT(wasMentioned |= isMentioned(QStringLiteral("soffice.*") + office), PATIENCE);
    process.terminate();
    QVERIFY(process.waitForFinished(PATIENCE));
    QCOMPARE(process.exitStatus(), QProcess::NormalExit);
    QCOMPARE(process.exitCode(), 143);
    QTRY_VERIFY(!isMentioned(QStringLiteral("soffice.*") + office));
    QVERIFY(QDir(office).isEmpty());
    QVERIFY(QDir(dir.path()).entryList(QDir::Files).isEmpty());
#else
    QSKIP("Windows has no request to end that a console program can be sent alone");
#endif
}

void tst_KyPptCnv::requestToEndWhileWriting_leavesNothing_data()
{
    QTest::addColumn<QStringList>("options"); // so large that what follows the message takes its time
    QTest::addColumn<QByteArray>("message");
    QTest::newRow("pictures") << QStringList({QStringLiteral("-t"), QStringLiteral("png"),
                                              QStringLiteral("-w"), QStringLiteral("8000"),
                                              QStringLiteral("-h"), QStringLiteral("4500")})
                              << QByteArray("[121](33)");
    QTest::newRow("video") << QStringList({QStringLiteral("-t"), QStringLiteral("mp4"), QStringLiteral("-vr"),
                                           QStringLiteral("2160"), QStringLiteral("-fs"),
                                           QStringLiteral("60")})
                           << QByteArray("[111](20)");
}

void tst_KyPptCnv::requestToEndWhileWriting_leavesNothing()
{
#ifdef Q_OS_UNIX
    QFETCH(QStringList, options);
    QFETCH(QByteArray, message);
    const QTemporaryDir dir;
    const QTemporaryDir temporary;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("TMPDIR"), temporary.path());
    QProcess process;
    process.setProcessEnvironment(environment);
    process.start(converter(), arguments(data("slides.pptx"), QStringLiteral("png"), dir.path()) + options);
    QByteArray output;
    while (!output.contains(message) && process.waitForReadyRead(PATIENCE))
        output += process.readAll();
    process.terminate();
    QVERIFY(process.waitForFinished(PATIENCE));
    QVERIFY2(!(output + process.readAll()).contains("[192]"), "it was ready before it was asked to end");
    QCOMPARE(process.exitCode(), 143);
    QVERIFY(QDir(dir.path()).isEmpty());
    QVERIFY(QDir(temporary.path()).isEmpty());
#else
    QSKIP("Windows has no request to end that a console program can be sent alone");
#endif
}

static void prepare(KyPptConversion *conversion)
{
    conversion->setWidth(320);
    conversion->setHeight(180);
}

void tst_KyPptCnv::driver_convertsInThisThread()
{
    const QTemporaryDir dir;
    KyPptConversion conversion(data("slides.pptx"), dir.path(), false);
    prepare(&conversion);
    QSignalSpy completed(&conversion, SIGNAL(creationCompleted(QString)));
    QSignalSpy finished(&conversion, SIGNAL(finished()));
    QSignalSpy failed(&conversion, SIGNAL(errorOccured(QString, bool)));
    conversion.start();
    QTRY_COMPARE_WITH_TIMEOUT(completed.count(), 2, PATIENCE);
    QTRY_COMPARE(finished.count(), 1);
    QCOMPARE(failed.count(), 0);
    comparePictures(QDir(dir.path()), QStringLiteral("png"));
}

void tst_KyPptCnv::driver_convertsInAThread()
{
    const QTemporaryDir dir;
    KyPptConversion conversion(data("slides.pptx"), dir.path(), true);
    prepare(&conversion);
    QSignalSpy completed(&conversion, SIGNAL(creationCompleted(QString)));
    QSignalSpy progress(&conversion, SIGNAL(progressUpdated(int)));
    QSignalSpy finished(&conversion, SIGNAL(finished()));
    conversion.startAsync();
    QTRY_COMPARE_WITH_TIMEOUT(completed.count(), 2, PATIENCE);
    QTRY_COMPARE(finished.count(), 1);
    QCOMPARE(progress.constLast().constFirst().toInt(), 100);
    QVERIFY(QFile::remove(dir.filePath(QStringLiteral("slides.pptx")))); // the copy that was asked for
    comparePictures(QDir(dir.path()), QStringLiteral("png"));
}

void tst_KyPptCnv::driver_abortsInTheMiddle()
{
    const QTemporaryDir dir;
    KyPptConversion conversion(data("slides.pptx"), dir.path(), false);
    prepare(&conversion);
    QSignalSpy information(&conversion, SIGNAL(informationUpdated(QString)));
    QSignalSpy aborted(&conversion, SIGNAL(aborted()));
    QSignalSpy completed(&conversion, SIGNAL(creationCompleted(QString)));
    conversion.startAsync();
    QTRY_VERIFY_WITH_TIMEOUT(information.count() >= 2, PATIENCE);
    conversion.abort();
    QTRY_COMPARE_WITH_TIMEOUT(aborted.count(), 1, PATIENCE);
    QCOMPARE(completed.count(), 0);
    QTRY_VERIFY(QDir(dir.path()).entryList(QDir::Files).isEmpty());
}

KYTE_TEST_MAIN(tst_KyPptCnv)
#include "tst_KyPptCnv.moc"
