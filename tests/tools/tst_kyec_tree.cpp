#include <KyTestEnvironment.h>
#include <KyTestMain.h>

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

using namespace Kyte;

/** What a run of the program left behind. */
struct Run
{
    int code = -1; ///< -1 when it did not end by itself
    QString out;
    QString err;
};

class tst_kyec_tree : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void help();
    void wrongUsage_data();
    void wrongUsage();

    void tree_showsFoldersFilesAndSizes();
    void tree_options_data();
    void tree_options();
    void tree_ofAnEmptyFolder();
    void tree_ofALinkedFolder_isNotFollowed();
    void tree_controlCharacters_doNotReachTheTerminal();
    void tree_needsNoDisplayAndMakesNoFiles();
    void tree_ofWhatIsNoFolder_fails_data();
    void tree_ofWhatIsNoFolder_fails();
    void tree_outputThatCannotBeWritten_isFailure_data();
    void tree_outputThatCannotBeWritten_isFailure();

    void follow_printsChangesAsTheyCome();
    void follow_honoursTheOptions();
    void follow_seesFoldersThatWereEmpty();
    void follow_seesARecreatedFolder();
    void follow_ofAFolderThatVanishes_fails();

private:
    QString path(const QString &name) const;

    QScopedPointer<QTemporaryDir> m_folder;
};

static const QString PROGRAM = QStringLiteral(KYTE_TEST_PROGRAM_DIR "/kyec");

static Run start(const QStringList &arguments)
{
    QProcess process;
    process.start(PROGRAM, arguments);
    Run run;
    if (process.waitForFinished() && process.exitStatus() == QProcess::NormalExit)
        run.code = process.exitCode();
    run.out = QString::fromUtf8(process.readAllStandardOutput().replace("\r\n", "\n"));
    run.err = QString::fromUtf8(process.readAllStandardError().replace("\r\n", "\n"));
    return run;
}

/** A program that follows a folder, and the lines that it has printed. */
class Follower
{
    Q_DISABLE_COPY(Follower)

public:
    explicit Follower(const QStringList &arguments)
    {
        m_process.start(PROGRAM, QStringList{"tree", "--follow"} + arguments);
    }

    ~Follower()
    {
        m_process.kill();
        m_process.waitForFinished();
    }

    /** Waits until the program has printed \a count lines, takes them away and sorts them. */
    QStringList take(int count)
    {
        const int patience = 20000; // milliseconds
        while (m_lines.size() < count) {
            if (!m_process.canReadLine() && !m_process.waitForReadyRead(patience))
                break;
            while (m_process.canReadLine())
                m_lines.append(QString::fromUtf8(m_process.readLine()).trimmed());
        }
        QStringList lines = m_lines;
        m_lines.clear();
        lines.sort();
        return lines;
    }

    QProcess *process()
    {
        return &m_process;
    }

private:
    QProcess m_process;
    QStringList m_lines;
};

/** "Menus" with two pictures and an empty folder, a film beside it. */
void tst_kyec_tree::init()
{
    m_folder.reset(new QTemporaryDir);
    QVERIFY(QDir().mkpath(path(QStringLiteral("Menus/Drafts"))));
    Test::writeFile(path(QStringLiteral("Menus/dinner.png")), QByteArray(1536, 'x'));
    Test::writeFile(path(QStringLiteral("Menus/Lunch.png")), QByteArray(1023, 'x'));
    Test::writeFile(path(QStringLiteral("film.mp4")), QByteArray(1048576, 'x'));
}

QString tst_kyec_tree::path(const QString &name) const
{
    return m_folder->filePath(name);
}

void tst_kyec_tree::help()
{
    const Run result = start({"tree", "--help"});
    QCOMPARE(result.code, 0);
    QVERIFY2(result.out.startsWith(QLatin1String("Usage: kyec tree [OPTIONS] FOLDER\n")),
             qPrintable(result.out));
    for (const char *option : {"--filter <PATTERN>", "--exclude <PATTERN>", "--follow"})
        QVERIFY2(result.out.contains(QLatin1String(option)), option);
    QVERIFY(start({"--help"}).out.contains(QLatin1String("\n  tree ")));
}

void tst_kyec_tree::wrongUsage_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("message");
    QTest::newRow("no folder") << QStringList{"--follow"} << "Which folder?";
    QTest::newRow("empty folder") << QStringList{""} << "Which folder?";
    QTest::newRow("two folders") << QStringList{"a", "b"} << "Unexpected argument 'b'.";
    QTest::newRow("no option") << QStringList{"a", "--bogus"} << "Unknown option 'bogus'.";
    QTest::newRow("filter without a pattern")
        << QStringList{"a", "--filter"} << "Missing value after '--filter'.";
    QTest::newRow("no regular expression")
        << QStringList{"a", "--exclude", "b", "--exclude", "(c"} << "'(c' is no regular expression.";
}

void tst_kyec_tree::wrongUsage()
{
    QFETCH(QStringList, arguments);
    QFETCH(QString, message);
    const Run result = start(QStringList("tree") + arguments);
    QCOMPARE(result.code, 2);
    QCOMPARE(result.out, QString());
    QVERIFY2(result.err.startsWith(QStringLiteral("kyec: ") + message), qPrintable(result.err));
}

void tst_kyec_tree::tree_showsFoldersFilesAndSizes()
{
    const Run result = start({"tree", m_folder->path()});
    QCOMPARE(result.err, QString());
    QCOMPARE(result.out,
             QDir::toNativeSeparators(m_folder->path())
                 + QStringLiteral("\n"
                                  "├── Menus/\n"
                                  "│   ├── Drafts/\n"
                                  "│   ├── dinner.png  1 KB\n"
                                  "│   └── Lunch.png  1,023 bytes\n"
                                  "└── film.mp4  1.0 MB\n"));
    QCOMPARE(result.code, 0);
}

void tst_kyec_tree::tree_options_data()
{
    QTest::addColumn<QStringList>("options");
    QTest::addColumn<QString>("expected"); // below the root
    QTest::newRow("a filter keeps the folders")
        << QStringList{"--filter", "*.mp4"} << "├── Menus/\n│   └── Drafts/\n└── film.mp4  1.0 MB\n";
    QTest::newRow("two filters") << QStringList{"--filter", "l*", "--filter", "d*.png"}
                                 << "└── Menus/\n"
                                    "    ├── Drafts/\n"
                                    "    ├── dinner.png  1 KB\n"
                                    "    └── Lunch.png  1,023 bytes\n";
    QTest::newRow("an excluded folder goes with all below it")
        << QStringList{"--exclude", "menu."} << "└── film.mp4  1.0 MB\n";
    QTest::newRow("two exclusions") << QStringList{"--exclude", ".*\\.png", "--exclude", "drafts"}
                                    << "├── Menus/\n└── film.mp4  1.0 MB\n";
    QTest::newRow("an exclusion is of the whole name")
        << QStringList{"--filter", "*.mp4", "--exclude", "film"}
        << "├── Menus/\n"
           "│   └── Drafts/\n"
           "└── film.mp4  1.0 MB\n";
}

void tst_kyec_tree::tree_options()
{
    QFETCH(QStringList, options);
    QFETCH(QString, expected);
    const Run result = start(QStringList{"tree", m_folder->path()} + options);
    QCOMPARE(result.err, QString());
    QCOMPARE(result.out.section(QLatin1Char('\n'), 1), expected);
    QCOMPARE(result.code, 0);
}

void tst_kyec_tree::tree_ofAnEmptyFolder()
{
    const QTemporaryDir folder;
    const Run result = start({"tree", folder.path()});
    QCOMPARE(result.out, QDir::toNativeSeparators(folder.path()) + QLatin1Char('\n'));
    QCOMPARE(result.code, 0);
}

void tst_kyec_tree::tree_ofALinkedFolder_isNotFollowed()
{
#ifdef Q_OS_WIN
    QSKIP("Folders are linked with other means on this system");
#endif
    QVERIFY(QFile::link(m_folder->path(), path(QStringLiteral("Menus/Drafts/again"))));
    const Run result = start({"tree", path(QStringLiteral("Menus/Drafts"))});
    QCOMPARE(result.out.section(QLatin1Char('\n'), 1),
             QStringLiteral("└── again -> %1\n").arg(QDir::toNativeSeparators(m_folder->path())));
    QCOMPARE(result.code, 0);
}

void tst_kyec_tree::tree_controlCharacters_doNotReachTheTerminal()
{
#ifdef Q_OS_WIN
    QSKIP("This system allows no such names");
#endif
    const QTemporaryDir folder;
    Test::writeFile(folder.filePath(QStringLiteral("a\033[2Jb")), "x");
    Test::writeFile(folder.filePath(QStringLiteral("new\nline")), "x");
    const Run result = start({"tree", folder.path()});
    QCOMPARE(result.out.section(QLatin1Char('\n'), 1),
             QStringLiteral("├── a\uFFFD[2Jb  1 bytes\n└── new\uFFFDline  1 bytes\n"));
}

void tst_kyec_tree::tree_needsNoDisplayAndMakesNoFiles()
{
    const QTemporaryDir cache;
    QProcessEnvironment variables = QProcessEnvironment::systemEnvironment();
    variables.remove(QStringLiteral("DISPLAY"));
    variables.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("xcb"));
    variables.insert(QStringLiteral("XDG_CACHE_HOME"), cache.path());
    QProcess process;
    process.setProcessEnvironment(variables);
    process.start(PROGRAM, {"tree", m_folder->path()});
    QVERIFY(process.waitForFinished());
    QCOMPARE(process.exitCode(), 0);
    QCOMPARE(process.readAllStandardError(), QByteArray());
    QCOMPARE(Test::namesIn(cache.path()), QStringList());
}

void tst_kyec_tree::tree_ofWhatIsNoFolder_fails_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("missing") << QStringLiteral("none");
    QTest::newRow("file") << QStringLiteral("film.mp4");
}

void tst_kyec_tree::tree_ofWhatIsNoFolder_fails()
{
    QFETCH(QString, name);
    for (const QStringList &options : {QStringList(), QStringList("--follow")}) {
        const Run result = start(QStringList{"tree", path(name)} + options);
        QCOMPARE(result.code, 1);
        QCOMPARE(result.out, QString());
        QCOMPARE(result.err,
                 QStringLiteral("kyec: The folder cannot be read: %1\n")
                     .arg(QDir::toNativeSeparators(path(name))));
    }
}

void tst_kyec_tree::tree_outputThatCannotBeWritten_isFailure_data()
{
    QTest::addColumn<QStringList>("options");
    QTest::newRow("tree") << QStringList();
    QTest::newRow("follow") << QStringList{"--follow"};
}

void tst_kyec_tree::tree_outputThatCannotBeWritten_isFailure()
{
    QFETCH(QStringList, options);
    const QFileInfo fullDevice(QStringLiteral("/dev/full"));
    if (!fullDevice.exists() || fullDevice.isFile())
        return; // this system has no device that is always full
    QProcess process;
    process.setStandardOutputFile(fullDevice.filePath());
    process.start(PROGRAM, QStringList{"tree", m_folder->path()} + options);
    QVERIFY(process.waitForFinished());
    QCOMPARE(process.exitCode(), 1);
    QCOMPARE(process.readAllStandardError(), QByteArray("kyec: The output could not be written.\n"));
}

/** The file appears with its content, so that no listing finds it empty. */
static void createFile(const QString &path)
{
    const QTemporaryDir elsewhere;
    const QString prepared = elsewhere.filePath(QStringLiteral("file"));
    Test::writeFile(prepared, "x");
    QVERIFY(QFile::rename(prepared, path));
}

void tst_kyec_tree::follow_printsChangesAsTheyCome()
{
    Follower follower({m_folder->path()});
    QCOMPARE(follower.take(6).size(), 6); // the tree

    createFile(path(QStringLiteral("new.mp3")));
    QCOMPARE(follower.take(1), QStringList("+ new.mp3  1 bytes"));

    QVERIFY(
        QFile::rename(path(QStringLiteral("Menus/dinner.png")), path(QStringLiteral("Menus/supper.png"))));
    QCOMPARE(follower.take(2), (QStringList{"+ Menus/supper.png  1 KB", "- Menus/dinner.png  1 KB"}));

    QVERIFY(QFile::remove(path(QStringLiteral("film.mp4"))));
    QCOMPARE(follower.take(1), QStringList("- film.mp4  1.0 MB"));

    // Other content alone is no change of the folder; it is seen with the next one.
    Test::writeFile(path(QStringLiteral("Menus/supper.png")), QByteArray(2048, 'x'));
    QVERIFY(QFile::remove(path(QStringLiteral("Menus/Lunch.png"))));
    QCOMPARE(follower.take(2), (QStringList{"* Menus/supper.png  2 KB", "- Menus/Lunch.png  1,023 bytes"}));

    const QTemporaryDir elsewhere;
    QVERIFY(QFile::rename(path(QStringLiteral("Menus")), elsewhere.filePath(QStringLiteral("Menus"))));
    QCOMPARE(follower.take(3), (QStringList{"- Menus/", "- Menus/Drafts/", "- Menus/supper.png  2 KB"}));
    QCOMPARE(follower.process()->readAllStandardError(), QByteArray());
}

void tst_kyec_tree::follow_honoursTheOptions()
{
    Follower follower({m_folder->path(), "--filter", "*.png", "--exclude", "secret.*"});
    QCOMPARE(follower.take(5).size(), 5);
    createFile(path(QStringLiteral("a.mp4")));
    createFile(path(QStringLiteral("Secret.png")));
    createFile(path(QStringLiteral("z.png")));
    QCOMPARE(follower.take(1), QStringList("+ z.png  1 bytes"));
}

void tst_kyec_tree::follow_seesFoldersThatWereEmpty()
{
    Follower follower({m_folder->path()});
    QCOMPARE(follower.take(6).size(), 6);
    for (const char *name : {"one.png", "two.png"}) {
        createFile(path(QStringLiteral("Menus/Drafts/") + QLatin1String(name)));
        QCOMPARE(follower.take(1), QStringList(QStringLiteral("+ Menus/Drafts/%1  1 bytes").arg(name)));
    }
}

void tst_kyec_tree::follow_seesARecreatedFolder()
{
    Follower follower({m_folder->path()});
    QCOMPARE(follower.take(6).size(), 6);
    QVERIFY(QFile::rename(path(QStringLiteral("Menus")), path(QStringLiteral("Old menus"))));
    QCOMPARE(follower.take(8).size(), 8);
    QVERIFY(QDir().mkpath(path(QStringLiteral("Menus/Drafts"))));
    QCOMPARE(follower.take(2), (QStringList{"+ Menus/", "+ Menus/Drafts/"}));
    createFile(path(QStringLiteral("Menus/brunch.png")));
    QCOMPARE(follower.take(1), QStringList("+ Menus/brunch.png  1 bytes"));
}

void tst_kyec_tree::follow_ofAFolderThatVanishes_fails()
{
    Follower follower({m_folder->path()});
    QCOMPARE(follower.take(6).size(), 6);
    QVERIFY(QDir(m_folder->path()).removeRecursively());
    QVERIFY(follower.process()->waitForFinished());
    QCOMPARE(follower.process()->exitCode(), 1);
    QCOMPARE(
        QString::fromUtf8(follower.process()->readAllStandardError()),
        QStringLiteral("kyec: The folder is gone: %1\n").arg(QDir::toNativeSeparators(m_folder->path())));
}

KYTE_TEST_MAIN(tst_kyec_tree)
#include "tst_kyec_tree.moc"
