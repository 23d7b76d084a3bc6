#include "KyPageExamples.h"
#include "KyScriptedProgram.h"
#include "KyTestEnvironment.h"
#include "KyTestMain.h"
#include "KyWidgetExamples.h"

#include <KyCommandLinkButton.h>
#include <KyEditorUserConfig.h>
#include <KyEvent.h>
#include <KyScreen.h>
#include <KyStage.h>

#include <QCheckBox>
#include <QDir>
#include <QDockWidget>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QRegularExpression>
#include <QSettings>
#include <QTreeView>

#include <functional>

using namespace Kyte;

static const int PATIENCE = 30000; // milliseconds

/** Every example of a page is compiled, word by word, and does what the page says. */
class tst_Documentation : public QObject
{
    Q_OBJECT

private slots:
    void everyExample_isCompiled_data();
    void everyExample_isCompiled();
    void consumer();
    void foundation();
    void database();
    void editing();
    void docks();
    void mediaLibrary();
    void stages();
    void widgets();
    void processes();
};

static QString withoutBlanks(QString text)
{
    static const QRegularExpression BLANKS(QStringLiteral("\\s+"));
    return text.remove(BLANKS);
}

static QString source(const QString &name)
{
    return withoutBlanks(
        QString::fromUtf8(Test::readFile(QStringLiteral(KYTE_SOURCE_DIR "/tests/docs/") + name)));
}

void tst_Documentation::everyExample_isCompiled_data()
{
    QTest::addColumn<QString>("example");
    QStringList pages({QStringLiteral("README.md")});
    const QDir docs(QStringLiteral(KYTE_SOURCE_DIR "/docs"));
    for (const QString &name : docs.entryList({QStringLiteral("*.md")}, QDir::Files))
        pages.append(QStringLiteral("docs/") + name);
    static const QRegularExpression EXAMPLE(QStringLiteral("```cpp\n(.*?)```"),
                                            QRegularExpression::DotMatchesEverythingOption);
    for (const QString &page : qAsConst(pages)) {
        QRegularExpressionMatchIterator matches = EXAMPLE.globalMatch(
            QString::fromUtf8(Test::readFile(QStringLiteral(KYTE_SOURCE_DIR "/") + page)));
        for (int i = 1; matches.hasNext(); ++i)
            QTest::newRow(qPrintable(QStringLiteral("%1 %2").arg(page).arg(i))) << matches.next().captured(1);
    }
}

void tst_Documentation::everyExample_isCompiled()
{
    QFETCH(QString, example);
    static const QString SOURCES[] = {source(QStringLiteral("KyPageExamples.cpp")),
                                      source(QStringLiteral("KyWidgetExamples.cpp")),
                                      source(QStringLiteral("uploader.cpp"))};
    // What a reader does at different times is in different functions: a blank line ends a part.
    const QStringList parts = example.contains(QLatin1String("int main"))
        ? QStringList(example)
        : example.split(QStringLiteral("\n\n"), Qt::SkipEmptyParts);
    for (const QString &part : parts) {
        const bool isFound =
            std::any_of(std::begin(SOURCES), std::end(SOURCES), [&part](const QString &source) {
                return source.contains(withoutBlanks(part));
            });
        QVERIFY2(isFound, qPrintable(part));
    }
}

void tst_Documentation::consumer()
{
    const Test::Environment environment;
    environment.writeChannel(0, QStringLiteral("Main hall"), 0);
    environment.writeChannel(1, QStringLiteral("Station"), 1);
    QProcess process;
    process.start(QStringLiteral(KYTE_TEST_PROGRAM_DIR "/ky_uploader"), QStringList());
    QVERIFY(process.waitForFinished(PATIENCE));
    QCOMPARE(process.readAllStandardOutput(), QByteArray("Main hall\nStation\n"));
    QCOMPARE(process.exitCode(), 0);
}

void tst_Documentation::foundation()
{
    const Test::Environment environment;
    KyPageExamples examples;
    QString stored;
    QVERIFY(examples.configuration(&stored));
    QCOMPARE(stored, QStringLiteral("images/background.png"));
    examples.settings(QStringLiteral("/media"));
    const QSettings file(KyEditorUserConfig::settings()->fileName(), QSettings::IniFormat);
    QCOMPARE(file.value(QStringLiteral("uploader/lastFolder")).toString(), QStringLiteral("/media"));
}

void tst_Documentation::database()
{
    const Test::Environment environment;
    environment.writeConfig(Test::makeDestinations(1, 12));
    environment.writeChannel(0, QStringLiteral("Main hall"), 0);
    environment.writeMainFile({{0, {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12}}});
    KyPageExamples examples;
    QString stored;
    QVERIFY(examples.configuration(&stored));
    QVERIFY2(examples.destinations(), qPrintable(examples.errors.value(0)));
    QCOMPARE(examples.itemCount, 1 + 12);
    QCOMPARE(
        Test::queryRows(environment.databaseFile(),
                        QStringLiteral("SELECT name FROM destination_tbl WHERE group_id = 0 ORDER BY id")),
        QStringList({QStringLiteral("Destination 1"), QStringLiteral("Destination 2")}));
}

void tst_Documentation::editing()
{
    KyPageExamples examples;
    QCOMPARE(
        examples.names(),
        QStringList({QStringLiteral("Screen"), QStringLiteral("Screen (1)"), QStringLiteral("Screen (2)")}));
    KyScreen screen;
    screen.setId(1);
    examples.events(KyEvent(KyEvent::Raise, KyEventType::Started), &screen);
    QCOMPARE(screen.raiseEventList()->size(), 1);
}

static QList<QDockWidget *> addDocks(QMainWindow *window)
{
    QList<QDockWidget *> docks;
    for (const char *name : {"library", "events", "preview"}) {
        auto *dock = new QDockWidget(QString::fromLatin1(name), window);
        dock->setObjectName(QString::fromLatin1(name));
        window->addDockWidget(Qt::LeftDockWidgetArea, dock);
        docks.append(dock);
    }
    return docks;
}

void tst_Documentation::docks()
{
    {
        KyWidgetExamples window;
        const QList<QDockWidget *> docks = addDocks(&window);
        window.tabifyDockWidget(docks.at(0), docks.at(1));
        window.addDockWidget(Qt::RightDockWidgetArea, docks.at(2));
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window));
        window.storeDocks(docks);
    }
    KyWidgetExamples window;
    const QList<QDockWidget *> docks = addDocks(&window);
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    window.restoreDocks(docks, {docks.at(2)});
    QTRY_COMPARE(window.tabifiedDockWidgets(docks.at(0)), QList<QDockWidget *>({docks.at(1)}));
    QCOMPARE(window.dockWidgetArea(docks.at(2)), Qt::RightDockWidgetArea);
}

void tst_Documentation::mediaLibrary()
{
    const QTemporaryDir library;
    const QStringList names({QStringLiteral("Thumbs.db"), QStringLiteral("a.png"), QStringLiteral("b.png")});
    for (const QString &name : names)
        Test::writeFile(library.filePath(name), "x");
    KyPageExamples examples;
    QTreeView tree;
    examples.mediaLibrary(library.path(), &tree);
    QTRY_COMPARE_WITH_TIMEOUT(tree.model()->rowCount(), 2, PATIENCE);

    QVERIFY(QDir(library.path()).mkdir(QStringLiteral("._kythumb")));
    QImage image(8, 8, QImage::Format_RGB32);
    image.fill(Qt::red);
    QVERIFY(image.save(library.filePath(QStringLiteral("._kythumb/a.png.thumb")), "PNG"));
    examples.thumbnails({library.filePath(names.at(1)), library.filePath(names.at(2))});
    QTRY_COMPARE_WITH_TIMEOUT(examples.read, QStringList(library.filePath(names.at(1))), PATIENCE);
    QTRY_COMPARE_WITH_TIMEOUT(examples.unread, QStringList(library.filePath(names.at(2))), PATIENCE);

    QCOMPARE(examples.svg().availableSizes(), QList<QSize>({QSize(64, 64)}));
}

void tst_Documentation::stages()
{
    KyPageExamples examples;
    examples.templates();
    QTRY_COMPARE_WITH_TIMEOUT(examples.stageCount, 11, PATIENCE);
}

/** Runs \a example and does \a answer to the dialog that it shows, once that is there. */
static void runDialog(const std::function<void()> &example, const std::function<void(QWidget *)> &answer)
{
    QTimer timer;
    bool isAnswered = false;
    QObject::connect(&timer, &QTimer::timeout, [&] {
        QWidget *dialog = QApplication::activeModalWidget();
        if (isAnswered || !dialog || !dialog->isVisible())
            return;
        isAnswered = true;
        answer(dialog);
    });
    timer.start(10);
    example();
}

void tst_Documentation::widgets()
{
    KyWidgetExamples window;
    bool mayClose = false;
    runDialog(
        [&] {
            mayClose = window.mayClose();
        },
        [](QWidget *dialog) {
            dialog->findChild<KyCommandLinkButton *>()->click();
        });
    QVERIFY(mayClose);
    QVERIFY(window.saved);

    runDialog(
        [&] {
            window.tellSaved();
        },
        [](QWidget *dialog) {
            dialog->findChild<QCheckBox *>()->click();
            qobject_cast<QMessageBox *>(dialog)->button(QMessageBox::Ok)->click();
        });
    window.tellSaved(); // comes back at once

    KyStage stage;
    stage.setName(QStringLiteral("Foyer"));
    runDialog(
        [&] {
            window.askName(&stage);
        },
        [](QWidget *dialog) {
            auto *line = dialog->findChild<QLineEdit *>();
            line->selectAll();
            QTest::keyClicks(line, QStringLiteral("Lobby"));
            qobject_cast<QDialog *>(dialog)->accept();
        });
    QCOMPARE(window.name, QStringLiteral("Lobby"));
}

void tst_Documentation::processes()
{
    const Test::ScriptedProgram viewer({QStringLiteral("exit 0")});
    const Test::ScriptedProgram updater({QStringLiteral("touch started")}, QStringLiteral("other"));
    KyPageExamples examples;
    examples.viewer(Test::ScriptedProgram::program(), {viewer.script()});
    QTRY_VERIFY_WITH_TIMEOUT(examples.viewerEnded, PATIENCE);
    examples.updater(Test::ScriptedProgram::program(), {updater.script()});
    QTRY_VERIFY_WITH_TIMEOUT(updater.has(QStringLiteral("started")), PATIENCE);
    const QTemporaryDir folder;
    examples.conversion(folder.filePath(QStringLiteral("missing.pptx")), folder.path());
    QTRY_COMPARE_WITH_TIMEOUT(examples.errors.size(), 1, PATIENCE);
}

int main(int argc, char **argv)
{
    Test::isolate();
    KyPageExamples::prepareApplication(); // which works only before there is an application
    QApplication application(argc, argv);
    tst_Documentation test;
    QTEST_SET_MAIN_SOURCE_PATH
    return QTest::qExec(&test, argc, argv);
}

#include "tst_Documentation.moc"
