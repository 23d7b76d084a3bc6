#include <KyTestEnvironment.h>
#include <KyTestMain.h>

#include <KyThumbnail.h>

using namespace Kyte;

/** What a run of the program left behind. */
struct Run
{
    int code = -1; ///< -1 when it did not end by itself
    QString out;
    QString err;
};

class tst_kyec_media : public QObject
{
    Q_OBJECT

private slots:
    void help_data();
    void help();
    void wrongUsage_data();
    void wrongUsage();
    void needsNoDisplay();

    void thumbnails_areMadeAndRead();
    void thumbnails_thatAreUpToDate_areKept();
    void thumbnails_ofChangedFiles_areMadeAnew();
    void thumbnails_size_isKeptToAndSmallImagesStay();
    void thumbnails_ofNoImage_fail();
    void thumbnails_ofAnEmptyFolder();
    void thumbnails_ofNoFolder_fail();

    void svg_isRendered_data();
    void svg_isRendered();
    void svg_fails_data();
    void svg_fails();
};

static Run start(const QStringList &arguments, const QProcessEnvironment &variables)
{
    QProcess process;
    process.setProcessEnvironment(variables);
    process.start(QStringLiteral(KYTE_TEST_PROGRAM_DIR "/kyec"), arguments);
    Run run;
    if (process.waitForFinished() && process.exitStatus() == QProcess::NormalExit)
        run.code = process.exitCode();
    run.out = QString::fromUtf8(process.readAllStandardOutput().replace("\r\n", "\n"));
    run.err = QString::fromUtf8(process.readAllStandardError().replace("\r\n", "\n"));
    return run;
}

static QProcessEnvironment environment()
{
    static const QTemporaryDir runtimeFolder; // Qt warns on systems that have none
    QProcessEnvironment result = QProcessEnvironment::systemEnvironment();
    result.insert(QStringLiteral("XDG_RUNTIME_DIR"), runtimeFolder.path());
    return result;
}

static Run start(const QStringList &arguments)
{
    return start(arguments, environment());
}

static void writeImage(const QString &path, const QSize &size)
{
    QImage image(size, QImage::Format_RGB32);
    image.fill(Qt::red);
    QVERIFY(image.save(path, "PNG"));
}

static QSize thumbnailSize(const QString &path)
{
    return KyThumbnail(path, nullptr, true).pixmap().size();
}

void tst_kyec_media::help_data()
{
    QTest::addColumn<QString>("command");
    QTest::addColumn<QString>("begin");
    QTest::newRow("thumbnails") << "thumbnails"
                                << "Usage: kyec thumbnails [OPTIONS] FOLDER\n";
    QTest::newRow("svg") << "svg"
                         << "Usage: kyec svg [OPTIONS] FILE --size WxH --out PNG\n";
}

void tst_kyec_media::help()
{
    QFETCH(QString, command);
    QFETCH(QString, begin);
    const Run result = start({command, "--help"});
    QCOMPARE(result.code, 0);
    QVERIFY2(result.out.startsWith(begin), qPrintable(result.out));
    QVERIFY(start({"--help"}).out.contains(QStringLiteral("\n  %1 ").arg(command)));
}

void tst_kyec_media::wrongUsage_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("message");
    QTest::newRow("no folder") << QStringList{"thumbnails"} << "Which folder?";
    QTest::newRow("two folders") << QStringList{"thumbnails", "a", "b"} << "Unexpected argument 'b'.";
    QTest::newRow("no pixels") << QStringList{"thumbnails", "a", "--size", "0"}
                               << "--size needs an integer of 1 or more, not '0'.";
    QTest::newRow("no file") << QStringList{"svg", "--size", "1x1", "--out", "b"} << "Which file?";
    QTest::newRow("no output") << QStringList{"svg", "a", "--size", "1x1"} << "--out PNG is needed.";
    QTest::newRow("no mode") << QStringList{"svg", "a", "--size", "1x1", "--out", "b", "--mode", "c"}
                             << "There is no mode 'c'.";
    for (const char *size :
         {"", "64", "64x", "x64", "64x64x64", "0x64", "64x0", "-1x64", "64x64 ", "9999999999x1"})
        QTest::addRow("size '%s'", size)
            << QStringList{"svg", "a", "--out", "b", "--size", QLatin1String(size)}
            << QStringLiteral("--size needs a width and a height, as in 64x32, not '%1'.").arg(size);
}

void tst_kyec_media::wrongUsage()
{
    QFETCH(QStringList, arguments);
    QFETCH(QString, message);
    const Run result = start(arguments);
    QCOMPARE(result.code, 2);
    QCOMPARE(result.out, QString());
    QVERIFY2(result.err.startsWith(QStringLiteral("kyec: ") + message), qPrintable(result.err));
}

void tst_kyec_media::needsNoDisplay()
{
#ifdef Q_OS_WIN
    QSKIP("There is always a display");
#endif
    QProcessEnvironment withoutDisplay = environment();
    for (const char *variable : {"QT_QPA_PLATFORM", "DISPLAY", "WAYLAND_DISPLAY"})
        withoutDisplay.remove(QLatin1String(variable));
    const QTemporaryDir folder;
    writeImage(folder.filePath("a.png"), QSize(40, 30));
    const Run result = start({"thumbnails", folder.path()}, withoutDisplay);
    QCOMPARE(result.code, 0);
    QCOMPARE(thumbnailSize(folder.filePath("a.png")), QSize(40, 30));
}

void tst_kyec_media::thumbnails_areMadeAndRead()
{
    const QTemporaryDir folder;
    writeImage(folder.filePath("a b.png"), QSize(1000, 500));
    writeImage(folder.filePath("c.jpg"), QSize(30, 900)); // a PNG file by its content
    Test::writeFile(folder.filePath("film.mp4"), "film");
    Test::writeFile(folder.filePath("notes.doc"), "notes");

    const Run result = start({"thumbnails", folder.path()});

    QCOMPARE(result.err, QString());
    QCOMPARE(result.out,
             QStringLiteral("[1/2] made: a b.png\n"
                            "[2/2] made: c.jpg\n"
                            "[1/3] read: a b.png, 256x128\n"
                            "[2/3] read: c.jpg, 8x256\n"
                            "[3/3] none: film.mp4\n"
                            "3 media files: 2 made, 0 kept, 0 failed; 2 read, 0 unreadable, "
                            "1 without a thumbnail\n"));
    QCOMPARE(result.code, 0);
    QCOMPARE(thumbnailSize(folder.filePath("a b.png")), QSize(256, 128));
    QCOMPARE(Test::namesIn(folder.filePath("._kythumb")), QStringList({"a b.png.thumb", "c.jpg.thumb"}));
}

void tst_kyec_media::thumbnails_thatAreUpToDate_areKept()
{
    const QTemporaryDir folder;
    writeImage(folder.filePath("a.png"), QSize(100, 50));
    QCOMPARE(start({"thumbnails", folder.path(), "--size", "10"}).code, 0);

    const Run kept = start({"thumbnails", folder.path(), "--size", "20"});
    QVERIFY2(kept.out.startsWith(QStringLiteral("[1/1] kept: a.png\n")), qPrintable(kept.out));
    QCOMPARE(thumbnailSize(folder.filePath("a.png")), QSize(10, 5));

    const Run made = start({"thumbnails", folder.path(), "--size", "20", "--overwrite"});
    QVERIFY2(made.out.startsWith(QStringLiteral("[1/1] made: a.png\n")), qPrintable(made.out));
    QCOMPARE(thumbnailSize(folder.filePath("a.png")), QSize(20, 10));
}

void tst_kyec_media::thumbnails_ofChangedFiles_areMadeAnew()
{
    const QTemporaryDir folder;
    writeImage(folder.filePath("a.png"), QSize(100, 50));
    QCOMPARE(start({"thumbnails", folder.path()}).code, 0);
    writeImage(folder.filePath("a.png"), QSize(50, 100));
    QFile file(folder.filePath("a.png"));
    QVERIFY(file.open(QIODevice::ReadWrite));
    QVERIFY(file.setFileTime(QDateTime::currentDateTime().addSecs(60), QFileDevice::FileModificationTime));
    file.close();

    QVERIFY(start({"thumbnails", folder.path()}).out.startsWith(QStringLiteral("[1/1] made: a.png\n")));
    QCOMPARE(thumbnailSize(folder.filePath("a.png")), QSize(50, 100));
}

void tst_kyec_media::thumbnails_size_isKeptToAndSmallImagesStay()
{
    const QTemporaryDir folder;
    writeImage(folder.filePath("large.png"), QSize(400, 200));
    writeImage(folder.filePath("line.png"), QSize(1000, 1));
    writeImage(folder.filePath("small.png"), QSize(10, 5));
    QCOMPARE(start({"thumbnails", folder.path(), "--size", "100"}).code, 0);
    QCOMPARE(thumbnailSize(folder.filePath("large.png")), QSize(100, 50));
    QCOMPARE(thumbnailSize(folder.filePath("line.png")), QSize(100, 1));
    QCOMPARE(thumbnailSize(folder.filePath("small.png")), QSize(10, 5));
}

void tst_kyec_media::thumbnails_ofNoImage_fail()
{
    const QTemporaryDir folder;
    Test::writeFile(folder.filePath("a.png"), "no image");
    QVERIFY(QDir().mkdir(folder.filePath("._kythumb")));
    Test::writeFile(folder.filePath("film.mp4"), "film");
    Test::writeFile(folder.filePath("._kythumb/film.mp4.thumb"), "no image");
    const Run result = start({"thumbnails", folder.path()});
    QCOMPARE(result.out,
             QStringLiteral("[1/1] failed: a.png\n"
                            "[1/2] none: a.png\n"
                            "[2/2] unreadable: film.mp4, 0x0\n"
                            "2 media files: 0 made, 0 kept, 1 failed; 0 read, 1 unreadable, "
                            "1 without a thumbnail\n"));
    QCOMPARE(result.code, 1);
}

void tst_kyec_media::thumbnails_ofAnEmptyFolder()
{
    const QTemporaryDir folder;
    const Run result = start({"thumbnails", folder.path()});
    QCOMPARE(result.out,
             QStringLiteral("0 media files: 0 made, 0 kept, 0 failed; 0 read, 0 unreadable, "
                            "0 without a thumbnail\n"));
    QCOMPARE(result.code, 0);
    QCOMPARE(Test::namesIn(folder.path()), QStringList());
}

void tst_kyec_media::thumbnails_ofNoFolder_fail()
{
    const Run result = start({"thumbnails", "/none"});
    QCOMPARE(result.code, 1);
    QCOMPARE(result.out, QString());
    QCOMPARE(result.err,
             QStringLiteral("kyec: There is no such folder: %1\n").arg(QDir::toNativeSeparators("/none")));
}

/** Red on a drawing of 200 by 100. */
static const QByteArray DRAWING = "<svg xmlns='http://www.w3.org/2000/svg' viewBox='0 0 200 100'>"
                                  "<rect width='200' height='100' fill='#ff0000'/></svg>";

void tst_kyec_media::svg_isRendered_data()
{
    QTest::addColumn<QStringList>("options");
    QTest::addColumn<int>("lines"); // that are red
    QTest::newRow("default") << QStringList() << 32;
    QTest::newRow("keep") << QStringList{"--mode", "keep"} << 32;
    QTest::newRow("expand") << QStringList{"--mode", "expand"} << 60;
    QTest::newRow("ignore") << QStringList{"--mode", "ignore"} << 60;
}

void tst_kyec_media::svg_isRendered()
{
    QFETCH(QStringList, options);
    QFETCH(int, lines);
    const QTemporaryDir folder;
    Test::writeFile(folder.filePath("a.svg"), DRAWING);
    Test::writeFile(folder.filePath("a.png"), "to be replaced");

    const Run result = start(
        QStringList{"svg", folder.filePath("a.svg"), "--size", "64x60", "--out", folder.filePath("a.png")}
        + options);

    QCOMPARE(result.err, QString());
    QCOMPARE(result.out, QString());
    QCOMPARE(result.code, 0);
    const QImage image(folder.filePath("a.png"), "PNG");
    QCOMPARE(image.size(), QSize(64, 60));
    int red = 0;
    while (red < image.height() && image.pixelColor(63, red) == QColor(Qt::red))
        ++red;
    QCOMPARE(red, lines);
    if (lines < image.height())
        QCOMPARE(image.pixelColor(63, lines).alpha(), 0);
}

void tst_kyec_media::svg_fails_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<QString>("size");
    QTest::addColumn<QString>("out");
    QTest::addColumn<QString>("message");
    QTest::newRow("missing") << "none.svg"
                             << "1x1"
                             << "a.png"
                             << "The file is no readable SVG: %1/none.svg";
    QTest::newRow("folder") << "."
                            << "1x1"
                            << "a.png"
                            << "The file is no readable SVG: %1/.";
    QTest::newRow("broken") << "broken.svg"
                            << "1x1"
                            << "a.png"
                            << "The file is no readable SVG: %1/broken.svg";
    QTest::newRow("too large") << "a.svg"
                               << "99999x99999"
                               << "a.png"
                               << "An image cannot be as large as that.";
    QTest::newRow("no place") << "a.svg"
                              << "1x1"
                              << "none/a.png"
                              << "The file cannot be written: %1/none/a.png";
}

void tst_kyec_media::svg_fails()
{
    QFETCH(QString, file);
    QFETCH(QString, size);
    QFETCH(QString, out);
    QFETCH(QString, message);
    const QTemporaryDir folder;
    Test::writeFile(folder.filePath("a.svg"), DRAWING);
    Test::writeFile(folder.filePath("broken.svg"), DRAWING.left(100));
    const Run result =
        start({"svg", folder.path() + '/' + file, "--size", size, "--out", folder.filePath(out)});
    QCOMPARE(result.code, 1);
    QCOMPARE(result.out, QString());
    QCOMPARE(result.err, QStringLiteral("kyec: %1\n").arg(message.replace("%1", folder.path())));
    QCOMPARE(Test::namesIn(folder.path()), QStringList({"a.svg", "broken.svg"}));
}

KYTE_TEST_MAIN(tst_kyec_media)
#include "tst_kyec_media.moc"
