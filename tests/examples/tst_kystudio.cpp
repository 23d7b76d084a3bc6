#include <ConversionPanel.h>
#include <DestinationModel.h>
#include <DestinationsPanel.h>
#include <FirstStart.h>
#include <KyTestEnvironment.h>
#include <KyTestMain.h>
#include <MainWindow.h>
#include <MediaPanel.h>
#include <MessageBar.h>
#include <TemplatesPanel.h>

#include <KyColorWidget.h>
#include <KyCommandLinkButton.h>
#include <KyCommandLinkDialog.h>
#include <KyCommonInputNameDialog.h>
#include <KyEditorConfig.h>
#include <KyEditorUserConfig.h>
#include <KyMenuAction.h>
#include <KyMessageBoxWithCheckBox.h>

#include <QCheckBox>
#include <QColorDialog>
#include <QComboBox>
#include <QDockWidget>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QListWidget>
#include <QMenuBar>
#include <QMimeData>
#include <QProcess>
#include <QPushButton>
#include <QSettings>
#include <QStandardPaths>
#include <QTableWidget>
#include <QToolBar>
#include <QToolButton>
#include <QTreeWidget>

#include <functional>

namespace Kyte {
namespace Test {

static const int LONG = 30000; // milliseconds that a loaded machine is given
static const int CONVERSION_TIME = 180000; // an office program is started for it

#define TRY_VERIFY(condition) QTRY_VERIFY_WITH_TIMEOUT(condition, LONG)
#define TRY_COMPARE(actual, expected) QTRY_COMPARE_WITH_TIMEOUT(actual, expected, LONG)

/** Does something with the next modal dialog as soon as it is there. */
class Answer : public QObject
{
    Q_OBJECT

public:
    explicit Answer(const std::function<void(QWidget *)> &act)
        : m_act(act)
    {
        connect(&m_looking, SIGNAL(timeout()), this, SLOT(look()));
        m_looking.start(20);
    }

    bool isGiven() const
    {
        return m_isGiven;
    }

private slots:
    void look()
    {
        QWidget *dialog = QApplication::activeModalWidget();
        // One that goes before the window manager has seen it leaves no window active.
        if (!dialog || !dialog->isActiveWindow())
            return;
        m_looking.stop();
        m_isGiven = true;
        m_act(dialog);
    }

private:
    std::function<void(QWidget *)> m_act;
    QTimer m_looking;
    bool m_isGiven = false;
};

/** Holds the mouse in a drag: moves it to the target until that has seen it, and lets go there. */
class Drag : public QObject
{
    Q_OBJECT

public:
    Drag(QWidget *target, const QPoint &to)
        : m_target(target)
        , m_to(to)
    {
        target->installEventFilter(this);
        connect(&m_moving, SIGNAL(timeout()), this, SLOT(move()));
    }

    /** From \a from in \a source; dragging has an event loop of its own. */
    void run(QWidget *source, const QPoint &from)
    {
        m_moving.start(50);
        send(source, QEvent::MouseButtonPress, from, Qt::LeftButton);
        const QPoint away(QApplication::startDragDistance() * 2, 0);
        send(source, QEvent::MouseMove, from + away, Qt::LeftButton);
        send(source, QEvent::MouseMove, from + away * 2, Qt::LeftButton);
        m_moving.stop();
    }

protected:
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() == QEvent::DragMove)
            ++m_seen;
        return QObject::eventFilter(watched, event);
    }

private slots:
    void move()
    {
        if (m_seen < 2)
            send(m_target, QEvent::MouseMove, m_to + QPoint(m_seen, 0), Qt::LeftButton);
        else
            send(m_target, QEvent::MouseButtonRelease, m_to, Qt::NoButton);
    }

private:
    static void send(QWidget *widget, QEvent::Type type, const QPoint &position, Qt::MouseButtons buttons)
    {
        const Qt::MouseButton button = type == QEvent::MouseMove ? Qt::NoButton : Qt::LeftButton;
        QMouseEvent event(type, position, widget->mapToGlobal(position), button, buttons, Qt::NoModifier);
        QCoreApplication::sendEvent(widget, &event);
    }

    QWidget *m_target = nullptr;
    QPoint m_to;
    QTimer m_moving;
    int m_seen = 0;
};

/** kystudio in the hands of a user, on the sample environment. */
class StudioTest : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void firstStart_makesTheSample();
    void firstStart_makesTheDefaultEnvironment();
    void firstStart_cancelledMakesNothing();

    void templates_appearAndCanBeStopped();
    void template_becomesTheStage();
    void screen_isRenamedByDialog();
    void screen_isColoredByDialog();
    void screens_getUniqueNames();
    void events_areAddedAndTakenBack();

    void media_thumbnailsAreMade();
    void media_filterAndRename();
    void media_fileIsDraggedToAFolder();
    void media_failedDropIsToldInThePanel();
    void media_otherProgramsAreFollowed();

    void destinations_areShownByChannel();
    void destinations_groupIsAddedRenamedRemoved();
    void destinations_nameInUseIsRefused();
    void destinations_areDraggedAndSaved();
    void destinations_changeOfAnotherProgramIsTold();
    void destinations_failureIsToldInThePanel();
    void destinations_unsavedAreAskedAboutAtTheEnd();

    void conversion_slidesAppearInTheLibrary();
    void conversion_errorIsToldInThePanel();
    void conversion_isAborted();

    void windowMenu_showsAndHidesDocks();
    void layout_survivesARestart_data();
    void layout_survivesARestart();
    void screenshots_areWritten();

private:
    void openWindow();
    void useTemplate(const QString &name);
    void choose(QComboBox *box, const QString &text);
    void undo();
    void redo();
    void click(QAbstractItemView *view, const QModelIndex &index);
    void clickAction(const char *name);
    void raise(const char *dock);
    QString mediaPath(const QString &name) const;
    QStringList files() const;
    QModelIndex file(const QString &name) const;
    QModelIndex folder(const QString &name) const;
    QModelIndex destination(const QString &name) const;
    QStringList events() const;
    QString message(const QWidget *panel) const;
    QMap<QString, QRect> layout() const;
    QMap<QString, QRect> settledLayout() const;
    QString database() const;

    template<typename Widget>
    Widget *find(const char *name) const
    {
        return m_window->findChild<Widget *>(QLatin1String(name));
    }

    QScopedPointer<QTemporaryDir> m_folder;
    QScopedPointer<MainWindow> m_window;
    DestinationsPanel *m_destinations = nullptr;
    DestinationModel *m_model = nullptr;
    MediaPanel *m_media = nullptr;
    ConversionPanel *m_conversion = nullptr;
};

void StudioTest::init()
{
    KyEditorUserConfig::settings()->clear();
    m_folder.reset(new QTemporaryDir);
    FirstStart environment;
    QVERIFY2(environment.createSample(m_folder->path()), qPrintable(environment.lastErrorMessage()));
    openWindow();
}

void StudioTest::cleanup()
{
    m_window.reset();
    qputenv("KYTE_CONFIG_FILE", "");
}

void StudioTest::openWindow()
{
    m_window.reset(new MainWindow);
    m_window->show();
    m_window->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(m_window.data(), LONG));
    m_window->open();
    m_destinations = m_window->findChild<DestinationsPanel *>();
    m_model = m_window->findChild<DestinationModel *>();
    m_media = m_window->findChild<MediaPanel *>();
    m_conversion = m_window->findChild<ConversionPanel *>();
    TRY_VERIFY(!m_destinations->isReading());
    TRY_VERIFY(find<QPushButton>("listTemplates")->isEnabled());
}

void StudioTest::useTemplate(const QString &name)
{
    raise("studio_templates");
    auto *list = find<QListWidget>("templates");
    const QList<QListWidgetItem *> items = list->findItems(name, Qt::MatchExactly);
    QVERIFY(!items.isEmpty());
    list->scrollToItem(items.first());
    click(list, list->model()->index(list->row(items.first()), 0));
    QTest::mouseClick(find<QPushButton>("useTemplate"), Qt::LeftButton);
}

void StudioTest::choose(QComboBox *box, const QString &text)
{
    box->setFocus();
    QTest::keyClick(box, Qt::Key_Home);
    for (int i = 0; i < box->count() && box->currentText() != text; ++i)
        QTest::keyClick(box, Qt::Key_Down);
    QCOMPARE(box->currentText(), text);
}

/** The keys of undoing and redoing, which reach the window once it is active again after a dialog. */
void StudioTest::undo()
{
    TRY_VERIFY(m_window->isActiveWindow());
    QTest::keyClick(m_window.data(), Qt::Key_Z, Qt::ControlModifier);
}

void StudioTest::redo()
{
    TRY_VERIFY(m_window->isActiveWindow());
    QTest::keyClick(m_window.data(), Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier);
}

void StudioTest::click(QAbstractItemView *view, const QModelIndex &index)
{
    view->scrollTo(index);
    TRY_VERIFY(view->visualRect(index).isValid());
    QTest::mouseClick(view->viewport(), Qt::LeftButton, Qt::NoModifier, view->visualRect(index).center());
}

/** Clicks the button of a panel's tool bar. */
void StudioTest::clickAction(const char *name)
{
    auto *action = find<QAction>(name);
    TRY_VERIFY(action->isEnabled());
    const QList<QToolBar *> bars = m_window->findChildren<QToolBar *>();
    for (QToolBar *bar : bars) {
        if (QWidget *button = bar->widgetForAction(action))
            QTest::mouseClick(button, Qt::LeftButton);
    }
}

void StudioTest::raise(const char *dock)
{
    auto *raised = find<QDockWidget>(dock);
    raised->raise();
    TRY_VERIFY(!raised->visibleRegion().isEmpty());
}

QString StudioTest::mediaPath(const QString &name) const
{
    return m_folder->filePath(QStringLiteral("data/media/") + name);
}

QStringList StudioTest::files() const
{
    const QAbstractItemModel *model = find<QListView>("mediaFiles")->model();
    QStringList names;
    for (int row = 0; row < model->rowCount(); ++row)
        names.append(model->index(row, 0).data().toString());
    return names;
}

QModelIndex StudioTest::file(const QString &name) const
{
    return find<QListView>("mediaFiles")->model()->index(files().indexOf(name), 0);
}

/** A folder below the one at the top of the tree. */
QModelIndex StudioTest::folder(const QString &name) const
{
    const QAbstractItemModel *model = find<QTreeView>("mediaFolders")->model();
    const QModelIndex top = model->index(0, 0);
    for (int row = 0; row < model->rowCount(top); ++row) {
        if (model->index(row, 0, top).data().toString() == name)
            return model->index(row, 0, top);
    }
    return QModelIndex();
}

QModelIndex StudioTest::destination(const QString &name) const
{
    return m_model
        ->match(m_model->index(0, 0), Qt::DisplayRole, name, 1, Qt::MatchExactly | Qt::MatchRecursive)
        .value(0);
}

/** "Event from action", one text a row, headings left out. */
QStringList StudioTest::events() const
{
    QStringList texts;
    const auto *tree = find<QTreeWidget>("events");
    for (int heading = 0; heading < tree->topLevelItemCount(); ++heading) {
        const QTreeWidgetItem *top = tree->topLevelItem(heading);
        for (int row = 0; row < top->childCount(); ++row) {
            const QTreeWidgetItem *item = top->child(row);
            if (item->flags() & Qt::ItemIsSelectable)
                texts.append(QStringList{item->text(0), item->text(1), item->text(2)}
                                 .join(QLatin1Char(' '))
                                 .trimmed());
        }
    }
    return texts;
}

QString StudioTest::message(const QWidget *panel) const
{
    const auto *bar = panel->findChild<MessageBar *>();
    return bar->isVisible() ? bar->text() : QString();
}

/** Where the docks are that can be seen. */
QMap<QString, QRect> StudioTest::layout() const
{
    QMap<QString, QRect> places;
    const QList<QDockWidget *> docks = m_window->findChildren<QDockWidget *>();
    for (const QDockWidget *dock : docks) {
        if (!dock->visibleRegion().isEmpty())
            places.insert(dock->objectName(), dock->geometry());
    }
    return places;
}

/** The same once nothing moves any more. */
QMap<QString, QRect> StudioTest::settledLayout() const
{
    QMap<QString, QRect> before;
    const bool hasSettled = QTest::qWaitFor(
        [&] {
            before = layout();
            QTest::qWait(200);
            return layout() == before;
        },
        LONG);
    return hasSettled ? before : QMap<QString, QRect>();
}

static QString text(const QMap<QString, QRect> &layout)
{
    QString text;
    QDebug(&text) << layout;
    return text;
}

QString StudioTest::database() const
{
    return m_folder->filePath(QStringLiteral("data/channel/destination.kyb"));
}

/** Clicks a command of the first question. */
static void clickCommand(QWidget *dialog, int number)
{
    const QList<KyCommandLinkButton *> buttons = dialog->findChildren<KyCommandLinkButton *>();
    for (KyCommandLinkButton *button : buttons) {
        if (button->buttonId() == number)
            QTest::mouseClick(button, Qt::LeftButton);
    }
}

void StudioTest::firstStart_makesTheSample()
{
    m_window.reset();
    qputenv("KYTE_CONFIG_FILE", "");
    FirstStart start;
    QVERIFY(!start.find());
    QCOMPARE(start.lastErrorMessage(), QString());
    QVERIFY(!QFile::exists(FirstStart::defaultSampleFolder()));
    const Answer answer([](QWidget *dialog) {
        clickCommand(dialog, FirstStart::MakeSample);
    });
    QVERIFY(start.offer(nullptr));
    QVERIFY(QFile::exists(FirstStart::defaultSampleFolder() + QStringLiteral("/data/media/Food/Bakery.png")));

    // The next start finds it again.
    qputenv("KYTE_CONFIG_FILE", "");
    QVERIFY(FirstStart().find());
    QCOMPARE(KyEditorConfig::dataDir(), FirstStart::defaultSampleFolder() + QStringLiteral("/data"));
    QVERIFY(QDir(FirstStart::defaultSampleFolder()).removeRecursively());
}

void StudioTest::firstStart_makesTheDefaultEnvironment()
{
    m_window.reset();
    const QString file = m_folder->filePath(QStringLiteral("new/kyteconfig.xml"));
    qputenv("KYTE_CONFIG_FILE", QFile::encodeName(file));
    FirstStart start;
    QVERIFY(!start.find());
    const Answer answer([](QWidget *dialog) {
        QTest::keyClick(dialog, Qt::Key_D, Qt::AltModifier);
    });
    QVERIFY(start.offer(nullptr));
    QVERIFY(QFile::exists(file));
    QVERIFY(QDir(m_folder->filePath(QStringLiteral("new/data/channel"))).exists());

    openWindow(); // without channels, destinations and media
    QCOMPARE(m_model->destinationCount(), 0);
    QCOMPARE(message(m_destinations), QString());
    QVERIFY(QDir(m_folder->filePath(QStringLiteral("new/data/media"))).exists());
}

void StudioTest::firstStart_cancelledMakesNothing()
{
    m_window.reset();
    const QString file = m_folder->filePath(QStringLiteral("new/kyteconfig.xml"));
    qputenv("KYTE_CONFIG_FILE", QFile::encodeName(file));
    const Answer answer([](QWidget *dialog) {
        QTest::keyClick(dialog, Qt::Key_Escape);
    });
    QVERIFY(!FirstStart().offer(nullptr));
    QVERIFY(answer.isGiven());
    QVERIFY(!QFile::exists(file));
}

void StudioTest::templates_appearAndCanBeStopped()
{
    raise("studio_templates");
    auto *list = find<QListWidget>("templates");
    QCOMPARE(list->count(), 11);
    auto *panel = m_window->findChild<TemplatesPanel *>();
    QTest::mouseClick(find<QPushButton>("listTemplates"), Qt::LeftButton);
    panel->stop(); // long before another thread has drawn eleven icons
    TRY_VERIFY(find<QPushButton>("listTemplates")->isEnabled());
    QVERIFY(list->count() < 11);
    QCOMPARE(message(panel), QStringLiteral("The listing was stopped before its end."));

    QTest::mouseClick(find<QPushButton>("listTemplates"), Qt::LeftButton);
    TRY_COMPARE(list->count(), 11);
    QCOMPARE(message(panel), QString());
}

void StudioTest::template_becomesTheStage()
{
    useTemplate(QStringLiteral("2 Multimedia Screens and 1 Telop Screen"));
    auto *screens = find<QTableWidget>("screens");
    QCOMPARE(screens->rowCount(), 3);
    QCOMPARE(screens->item(0, 1)->text(), QStringLiteral("Multi 1"));
    QCOMPARE(screens->item(2, 2)->text(), QStringLiteral("Telop"));
    QCOMPARE(screens->currentRow(), 0);
}

void StudioTest::screen_isRenamedByDialog()
{
    useTemplate(QStringLiteral("2 Multimedia Screens and 1 Telop Screen"));
    auto *screens = find<QTableWidget>("screens");
    click(screens, screens->model()->index(1, 1));
    QString warning;
    const Answer answer([&warning](QWidget *dialog) {
        auto *line = dialog->findChild<QLineEdit *>();
        auto *ok = dialog->findChild<QPushButton *>(QStringLiteral("pushButton_ok"));
        line->selectAll();
        QTest::keyClicks(line, QStringLiteral("telop 1"));
        QTest::mouseClick(ok, Qt::LeftButton);
        warning = dialog->findChild<QLabel *>(QStringLiteral("label_warrning"))->text();
        line->selectAll();
        QTest::keyClicks(line, QStringLiteral("Side: bar")); // the colon cannot be typed
        QTest::mouseClick(ok, Qt::LeftButton);
    });
    QTest::keyClick(screens, Qt::Key_F2);
    QVERIFY(answer.isGiven());
    QCOMPARE(warning, QStringLiteral("The name \"telop 1\" is in use."));
    QCOMPARE(screens->item(1, 1)->text(), QStringLiteral("Side bar"));

    undo();
    QCOMPARE(screens->item(1, 1)->text(), QStringLiteral("Multi 2"));
    redo();
    QCOMPARE(screens->item(1, 1)->text(), QStringLiteral("Side bar"));
}

void StudioTest::screen_isColoredByDialog()
{
    useTemplate(QStringLiteral("1 Multimedia Screen"));
    auto *screens = find<QTableWidget>("screens");
    auto *swatch = qobject_cast<KyColorWidget *>(screens->cellWidget(0, 0));
    const QColor before = swatch->backColor();
    const Answer answer([](QWidget *dialog) {
        qobject_cast<QColorDialog *>(dialog)->setCurrentColor(Qt::green);
        QTest::keyClick(dialog, Qt::Key_Return);
    });
    QTest::mouseClick(swatch, Qt::LeftButton);
    QVERIFY(answer.isGiven());
    QCOMPARE(swatch->backColor(), QColor(Qt::green));
    const auto previewed = [this]() {
        QWidget *preview = find<QWidget>("preview");
        return preview->grab().toImage().pixelColor(preview->width() / 4, preview->height() / 4);
    };
    TRY_COMPARE(previewed(), QColor(Qt::green));
    undo();
    QCOMPARE(swatch->backColor(), before);
    TRY_COMPARE(previewed(), before);
}

void StudioTest::screens_getUniqueNames()
{
    useTemplate(QStringLiteral("1 Multimedia Screen"));
    auto *screens = find<QTableWidget>("screens");
    const auto names = [screens]() {
        QStringList texts;
        for (int row = 0; row < screens->rowCount(); ++row)
            texts.append(screens->item(row, 1)->text());
        return texts;
    };
    const QList<QAction *> actions = screens->actions();
    for (int i = 0; i < 2; ++i)
        actions.first()->trigger();
    QCOMPARE(names(), (QStringList{"Multi 1", "Multi 1 (1)", "Multi 1 (2)"}));
    click(screens, screens->model()->index(1, 1));
    QTest::keyClick(screens, Qt::Key_Delete);
    QCOMPARE(names(), (QStringList{"Multi 1", "Multi 1 (2)"}));
    actions.first()->trigger();
    QCOMPARE(names(), (QStringList{"Multi 1", "Multi 1 (2)", "Multi 1 (1)"}));
    for (int i = 0; i < 2; ++i)
        undo();
    QCOMPARE(names(), (QStringList{"Multi 1", "Multi 1 (1)", "Multi 1 (2)"}));
}

void StudioTest::events_areAddedAndTakenBack()
{
    useTemplate(QStringLiteral("2 Multimedia Screens and 1 Telop Screen"));
    auto *panel = find<QTreeWidget>("events")->parentWidget();
    auto *add = find<QPushButton>("addEvent");
    choose(find<QComboBox>("eventType"), QStringLiteral("Finished"));
    choose(find<QComboBox>("eventSender"), QStringLiteral("Multi 2"));
    choose(find<QComboBox>("eventAction"), QStringLiteral("Repeat"));
    QTest::mouseClick(add, Qt::LeftButton);
    QCOMPARE(events(), QStringList("Finished Multi 2 Repeat"));
    QTest::mouseClick(add, Qt::LeftButton);
    QCOMPARE(message(panel), QStringLiteral("The screen has the event \"Finished\" already."));

    choose(find<QComboBox>("eventDirection"), QStringLiteral("The screen raises"));
    choose(find<QComboBox>("eventType"), QStringLiteral("Time Elapsed"));
    QTest::mouseClick(add, Qt::LeftButton);
    const QStringList both{"Time Elapsed: 00:00:10.0", "Finished Multi 2 Repeat"};
    QCOMPARE(events(), both);
    QCOMPARE(message(panel), QString());

    QTest::mouseClick(find<QPushButton>("removeAllEvents"), Qt::LeftButton);
    QCOMPARE(events(), QStringList());
    QTest::keyClick(m_window.data(), Qt::Key_Z, Qt::ControlModifier);
    QCOMPARE(events(), both);
    auto *tree = find<QTreeWidget>("events");
    click(tree, tree->model()->index(0, 0, tree->model()->index(0, 0)));
    QTest::keyClick(tree, Qt::Key_Delete);
    QCOMPARE(events(), QStringList("Finished Multi 2 Repeat"));

    // Another screen has none of them; what is taken back is taken back there.
    auto *screens = find<QTableWidget>("screens");
    click(screens, screens->model()->index(1, 1));
    QCOMPARE(events(), QStringList());
    for (int i = 0; i < 3; ++i)
        undo();
    click(screens, screens->model()->index(0, 1));
    QCOMPARE(events(), QStringList());
    redo();
    QCOMPARE(events(), QStringList("Finished Multi 2 Repeat"));
}

void StudioTest::media_thumbnailsAreMade()
{
    raise("studio_library");
    m_media->openFolder(mediaPath(QStringLiteral("Food")));
    TRY_COMPARE(namesIn(mediaPath(QStringLiteral("Food/._kythumb"))),
                (QStringList{"Bakery.png.thumb", "Café in the garden.png.thumb", "Ice cream.png.thumb",
                             "Soup of the day.png.thumb"}));
    auto *view = find<QListView>("mediaFiles");
    const auto size = [this, view]() {
        return file(QStringLiteral("Bakery.png"))
            .data(Qt::DecorationRole)
            .value<QIcon>()
            .actualSize(view->iconSize());
    };
    TRY_COMPARE(size(), QSize(96, 54));
}

void StudioTest::media_filterAndRename()
{
    raise("studio_library");
    m_media->openFolder(mediaPath(QStringLiteral("Food")));
    TRY_COMPARE(files().size(), 4);
    auto *filter = find<QLineEdit>("mediaFilter");
    QTest::mouseClick(filter, Qt::LeftButton);
    QTest::keyClicks(filter, QStringLiteral("cream"));
    TRY_COMPARE(files(), QStringList("Ice cream.png"));

    auto *view = find<QListView>("mediaFiles");
    click(view, file(QStringLiteral("Ice cream.png")));
    QTest::keyClick(view, Qt::Key_F2);
    auto *editor = view->viewport()->findChild<QLineEdit *>();
    QVERIFY(editor);
    QTest::keyClicks(editor, QStringLiteral("Creamery"));
    QTest::keyClick(editor, Qt::Key_Return);
    TRY_COMPARE(files(), QStringList("Creamery.png"));
    QVERIFY(QFile::exists(mediaPath(QStringLiteral("Food/Creamery.png"))));
    filter->clear();
    TRY_COMPARE(files().size(), 4);
}

void StudioTest::media_fileIsDraggedToAFolder()
{
    raise("studio_library");
    m_media->openFolder(mediaPath(QStringLiteral("Food")));
    TRY_COMPARE(files().size(), 4);
    TRY_VERIFY(folder(QStringLiteral("Journeys")).isValid());
    auto *view = find<QListView>("mediaFiles");
    auto *tree = find<QTreeView>("mediaFolders");
    const QModelIndex target = folder(QStringLiteral("Journeys"));
    TRY_VERIFY(tree->visualRect(target).isValid());
    TRY_VERIFY(view->visualRect(file(QStringLiteral("Bakery.png"))).isValid());
    Drag drag(tree->viewport(), tree->visualRect(target).center());
    drag.run(view->viewport(), view->visualRect(file(QStringLiteral("Bakery.png"))).center());
    TRY_COMPARE(files().size(), 3);
    QVERIFY(QFile::exists(mediaPath(QStringLiteral("Journeys/Bakery.png"))));
    QVERIFY(!QFile::exists(mediaPath(QStringLiteral("Food/Bakery.png"))));
    QCOMPARE(message(m_media), QString());
}

void StudioTest::media_failedDropIsToldInThePanel()
{
    raise("studio_library");
    writeFile(mediaPath(QStringLiteral("Journeys/Bakery.png")), "another");
    m_media->openFolder(mediaPath(QStringLiteral("Food")));
    TRY_VERIFY(file(QStringLiteral("Bakery.png")).isValid());
    QAbstractItemModel *folders = find<QTreeView>("mediaFolders")->model();
    const QScopedPointer<QMimeData> data(
        find<QListView>("mediaFiles")->model()->mimeData({file(QStringLiteral("Bakery.png"))}));
    QVERIFY(folders->dropMimeData(data.data(), Qt::MoveAction, -1, -1, folder(QStringLiteral("Journeys"))));
    TRY_COMPARE(message(m_media),
                QStringLiteral("Not moved or copied, because the name is in use there or the folder is "
                               "protected: Bakery.png"));
    QCOMPARE(readFile(mediaPath(QStringLiteral("Journeys/Bakery.png"))), QByteArray("another"));
}

void StudioTest::media_otherProgramsAreFollowed()
{
    raise("studio_library");
    m_media->openFolder(mediaPath(QStringLiteral("Food")));
    TRY_COMPARE(files().size(), 4);
    writeFile(mediaPath(QStringLiteral("Food/Apples.txt")), "apples");
    TRY_COMPARE(files().size(), 5);
    // A folder that had none shows its first one, here and in the tree.
    auto *tree = find<QTreeView>("mediaFolders");
    tree->expand(folder(QStringLiteral("Food")));
    QVERIFY(QDir(mediaPath(QStringLiteral("Food"))).mkdir(QStringLiteral("Specials")));
    TRY_COMPARE(files().value(0), QStringLiteral("Specials"));
    TRY_COMPARE(tree->model()->rowCount(folder(QStringLiteral("Food"))), 1);
    // The folder that is shown goes away.
    QVERIFY(QDir(mediaPath(QStringLiteral("Food"))).removeRecursively());
    TRY_COMPARE(m_media->folder(), QDir::cleanPath(mediaPath(QString())));
    TRY_COMPARE(files(), (QStringList{"Boards", "Journeys", "Presentations"}));
}

void StudioTest::destinations_areShownByChannel()
{
    QCOMPARE(m_model->destinationCount(), 60);
    QCOMPARE(m_model->rowCount(), 5);
    QCOMPARE(m_model->index(0, 0).data().toString(), QStringLiteral("Concourse (14)"));
    QCOMPARE(m_model->index(4, 0).data().toString(), QStringLiteral("In no channel (0)"));
    QCOMPARE(m_model->index(0, 0, m_model->index(1, 0)).data().toString(), QStringLiteral("Footbridge"));
    QVERIFY(find<QTreeView>("destinations")->isExpanded(m_model->index(0, 0)));
    QVERIFY(!find<QAction>("renameGroup")->isEnabled());
    clickAction("byGroup");
    QCOMPARE(m_model->rowCount(), 1);
    QCOMPARE(m_model->index(0, 0).data().toString(), QStringLiteral("In no group (60)"));
    QCOMPARE(m_model->index(0, 0, m_model->index(0, 0)).data().toString(), QStringLiteral("Bakery"));
}

/** Types \a name into the dialog that asks for it. */
static std::function<void(QWidget *)> typeName(const QString &name)
{
    return [name](QWidget *dialog) {
        auto *line = dialog->findChild<QLineEdit *>();
        line->selectAll();
        QTest::keyClicks(line, name);
        QTest::keyClick(line, Qt::Key_Return);
    };
}

void StudioTest::destinations_groupIsAddedRenamedRemoved()
{
    auto *tree = find<QTreeView>("destinations");
    {
        const Answer answer(typeName(QStringLiteral("Late")));
        clickAction("addGroup");
        QVERIFY(answer.isGiven());
    }
    TRY_COMPARE(m_model->rowCount(), 2);
    QCOMPARE(m_model->index(0, 0).data().toString(), QStringLiteral("Late (0)"));
    {
        const Answer answer(typeName(QStringLiteral("Open late")));
        clickAction("renameGroup");
        QVERIFY(answer.isGiven());
    }
    TRY_COMPARE(m_model->index(0, 0).data().toString(), QStringLiteral("Open late (0)"));
    QVERIFY(m_destinations->isEdited());

    QString text;
    {
        const Answer answer([&text](QWidget *dialog) {
            text = qobject_cast<KyMessageBoxWithCheckBox *>(dialog)->text();
            QTest::mouseClick(dialog->findChild<QCheckBox *>(QStringLiteral("ky_msgbox_checkbox")),
                              Qt::LeftButton);
            QTest::keyClick(dialog, Qt::Key_Return);
        });
        click(tree, m_model->index(0, 0));
        TRY_VERIFY(find<QAction>("removeGroup")->isEnabled());
        QTest::keyClick(tree, Qt::Key_Delete);
        QVERIFY(answer.isGiven());
    }
    QCOMPARE(text, QStringLiteral("Remove the group? Its destinations stay, in no group."));
    TRY_COMPARE(m_model->rowCount(), 1);

    // The second time there is no question.
    {
        const Answer answer(typeName(QStringLiteral("Late")));
        clickAction("addGroup");
    }
    TRY_COMPARE(m_model->rowCount(), 2);
    clickAction("removeGroup");
    TRY_COMPARE(m_model->rowCount(), 1);
}

void StudioTest::destinations_nameInUseIsRefused()
{
    {
        const Answer answer(typeName(QStringLiteral("Late")));
        clickAction("addGroup");
    }
    TRY_COMPARE(m_model->categoryNames(KyDestination::Data_Group), QStringList("Late"));
    QString warning;
    const Answer answer([&warning](QWidget *dialog) {
        typeName(QStringLiteral("LATE"))(dialog);
        warning = dialog->findChild<QLabel *>(QStringLiteral("label_warrning"))->text();
        QTest::keyClick(dialog, Qt::Key_Escape);
    });
    clickAction("addGroup");
    QVERIFY(answer.isGiven());
    QCOMPARE(warning, QStringLiteral("The name \"LATE\" is in use."));
    QCOMPARE(m_model->categoryNames(KyDestination::Data_Group), QStringList("Late"));
}

void StudioTest::destinations_areDraggedAndSaved()
{
    auto *tree = find<QTreeView>("destinations");
    tree->collapse(m_model->index(0, 0)); // the last one of it is far from the second
    const QModelIndex source = destination(QStringLiteral("Footbridge"));
    const QModelIndex target = m_model->index(0, 0);
    tree->scrollToTop();
    TRY_VERIFY(tree->visualRect(source).isValid());
    {
        Drag drag(tree->viewport(), tree->visualRect(target).center());
        drag.run(tree->viewport(), tree->visualRect(source).center());
    }
    TRY_COMPARE(m_model->index(0, 0).data().toString(), QStringLiteral("Concourse (15)"));
    QCOMPARE(m_model->index(1, 0).data().toString(), QStringLiteral("Platforms (19)"));
    QCOMPARE(m_model->categoryId(destination(QStringLiteral("Footbridge"))), 0);
    TRY_VERIFY(m_destinations->isEdited());
    const QString assignment =
        QStringLiteral("SELECT channel_id FROM destination_tbl WHERE name='Footbridge'");
    QVERIFY(!QFile::exists(database()));

    QTest::keyClick(tree, Qt::Key_S, Qt::ControlModifier);
    TRY_COMPARE(message(m_destinations), QStringLiteral("The destinations are saved."));
    TRY_VERIFY(!m_destinations->isEdited());
    QCOMPARE(queryRows(database(), assignment), QStringList("0"));
    m_window->close();
    openWindow();
    QCOMPARE(m_model->categoryId(destination(QStringLiteral("Footbridge"))), 0);
}

void StudioTest::destinations_changeOfAnotherProgramIsTold()
{
    {
        const Answer answer(typeName(QStringLiteral("Late")));
        clickAction("addGroup");
    }
    TRY_VERIFY(m_destinations->isEdited());
    clickAction("saveDestinations");
    TRY_VERIFY(!m_destinations->isEdited());
    execute(database(), {QStringLiteral("UPDATE group_tbl SET name='Early'")});
    TRY_COMPARE(message(m_destinations), QStringLiteral("Another program has changed the destinations."));
    {
        const Answer answer(typeName(QStringLiteral("Noon")));
        clickAction("addGroup");
    }
    TRY_VERIFY(m_destinations->isEdited());

    // Saving asks; what the other program did is read anew, or lost.
    {
        const Answer answer([](QWidget *dialog) {
            QTest::keyClick(dialog, Qt::Key_Escape);
        });
        clickAction("saveDestinations");
        TRY_VERIFY(answer.isGiven());
    }
    QVERIFY(m_destinations->isEdited());
    {
        const Answer answer([](QWidget *dialog) {
            clickCommand(dialog, 2);
        });
        clickAction("saveDestinations");
        TRY_VERIFY(answer.isGiven());
    }
    TRY_VERIFY(!m_destinations->isReading());
    QCOMPARE(m_model->categoryNames(KyDestination::Data_Group), QStringList("Early"));
    TRY_VERIFY(!m_destinations->isEdited());
}

void StudioTest::destinations_failureIsToldInThePanel()
{
    const QString folder = m_folder->filePath(QStringLiteral("data/channel"));
    QVERIFY(QDir(folder).removeRecursively());
    writeFile(folder, "no folder");
    clickAction("reloadDestinations");
    TRY_VERIFY(!message(m_destinations).isEmpty());
    QVERIFY(!m_destinations->isReading());
    QCOMPARE(m_model->destinationCount(), 0);
}

void StudioTest::destinations_unsavedAreAskedAboutAtTheEnd()
{
    {
        const Answer answer(typeName(QStringLiteral("Late")));
        clickAction("addGroup");
    }
    TRY_VERIFY(m_destinations->isEdited());
    {
        const Answer answer([](QWidget *dialog) {
            QTest::keyClick(dialog, Qt::Key_Escape);
        });
        QVERIFY(!m_window->close());
        QVERIFY(answer.isGiven());
    }
    const Answer answer([](QWidget *dialog) {
        clickCommand(dialog, 1);
    });
    QVERIFY(!m_window->close()); // not before the destinations are saved
    TRY_VERIFY(!m_window->isVisible());
    QCOMPARE(queryRows(database(), QStringLiteral("SELECT name FROM group_tbl")), QStringList("Late"));
}

void StudioTest::conversion_slidesAppearInTheLibrary()
{
    if (QStandardPaths::findExecutable(QStringLiteral("soffice")).isEmpty()
        || !QFile::exists(QStringLiteral(KYTE_TEST_PROGRAM_DIR "/KyPptCnv.exe")))
        QSKIP("The converter needs LibreOffice");
    raise("studio_library");
    m_media->openFolder(mediaPath(QStringLiteral("Presentations")));
    TRY_COMPARE(files(), QStringList("Safety.odp"));
    auto *view = find<QListView>("mediaFiles");
    click(view, file(QStringLiteral("Safety.odp")));
    QTest::keyClick(view, Qt::Key_Return);
    TRY_VERIFY(find<QPushButton>("convert")->isVisible());
    QCOMPARE(find<QLineEdit>("presentation")->text(),
             QDir::toNativeSeparators(QStringLiteral("media/Presentations/Safety.odp")));
    QTest::mouseClick(find<QPushButton>("convert"), Qt::LeftButton);
    QVERIFY(m_conversion->isConverting());
    QTRY_VERIFY_WITH_TIMEOUT(!m_conversion->isConverting(), CONVERSION_TIME);
    QCOMPARE(message(m_conversion), QStringLiteral("The slides are in media/Safety slides."));
    TRY_COMPARE(files(), (QStringList{"slide1.png", "slide2.png", "slide3.png"}));
    TRY_VERIFY(folder(QStringLiteral("Safety slides")).isValid());
}

void StudioTest::conversion_errorIsToldInThePanel()
{
    raise("studio_conversion");
    auto *line = find<QLineEdit>("presentation");
    QTest::mouseClick(line, Qt::LeftButton);
    QTest::keyClicks(line, QStringLiteral("media/missing.odp"));
    QTest::mouseClick(find<QPushButton>("convert"), Qt::LeftButton);
    TRY_VERIFY(!m_conversion->isConverting());
    QCOMPARE(message(m_conversion), QStringLiteral("File \"missing.odp\" is Not found."));
    QVERIFY(find<QPushButton>("convert")->isEnabled());
}

void StudioTest::conversion_isAborted()
{
    if (!QFile::exists(QStringLiteral(KYTE_TEST_PROGRAM_DIR "/KyPptCnv.exe")))
        QSKIP("There is no converter");
    raise("studio_conversion");
    m_conversion->setPresentation(mediaPath(QStringLiteral("Presentations/Safety.odp")));
    QTest::mouseClick(find<QPushButton>("convert"), Qt::LeftButton);
    TRY_VERIFY(find<QListWidget>("conversionLog")->count() > 0);
    QTest::mouseClick(find<QPushButton>("abortConversion"), Qt::LeftButton);
    TRY_VERIFY(!m_conversion->isConverting());
    QCOMPARE(message(m_conversion), QStringLiteral("The conversion was aborted."));
}

void StudioTest::windowMenu_showsAndHidesDocks()
{
    auto *dock = find<QDockWidget>("studio_preview");
    auto *action = find<KyMenuAction>("studio_preview");
    QMenuBar *bar = m_window->menuBar();
    QMenu *menu = nullptr;
    const QList<QMenu *> menus = bar->findChildren<QMenu *>();
    for (QMenu *candidate : menus) {
        if (candidate->actions().contains(action))
            menu = candidate;
    }
    QVERIFY(menu);
    const auto choose = [bar, menu, action]() {
        QTest::mouseClick(bar, Qt::LeftButton, Qt::NoModifier,
                          bar->actionGeometry(menu->menuAction()).center());
        TRY_VERIFY(menu->isVisible());
        QTest::mouseClick(menu, Qt::LeftButton, Qt::NoModifier, menu->actionGeometry(action).center());
        TRY_VERIFY(!menu->isVisible());
    };
    QVERIFY(action->isChecked());
    choose();
    QVERIFY(dock->isHidden());
    QVERIFY(!action->isChecked());
    choose();
    QVERIFY(dock->isVisible());
    dock->close(); // by its own button
    QVERIFY(!action->isChecked());
    find<KyMenuAction>("studio_default_layout")->trigger();
    QVERIFY(dock->isVisible());
    QVERIFY(action->isChecked());
}

void StudioTest::layout_survivesARestart_data()
{
    QTest::addColumn<bool>("isRearranged");
    QTest::newRow("default") << false;
    QTest::newRow("rearranged") << true;
}

void StudioTest::layout_survivesARestart()
{
    QFETCH(bool, isRearranged);
    if (isRearranged) {
        m_window->addDockWidget(Qt::LeftDockWidgetArea, find<QDockWidget>("studio_destinations"));
        m_window->tabifyDockWidget(find<QDockWidget>("studio_preview"), find<QDockWidget>("studio_events"));
        find<QDockWidget>("studio_events")->raise();
        find<QDockWidget>("studio_conversion")->hide();
        m_window->resizeDocks({find<QDockWidget>("studio_destinations")}, {420}, Qt::Horizontal);
        TRY_VERIFY(!find<QDockWidget>("studio_events")->visibleRegion().isEmpty());
        QCOMPARE(m_window->tabifiedDockWidgets(find<QDockWidget>("studio_preview")).size(), 1);
        // What nothing lies in any more at the bottom is given to the left.
        TRY_VERIFY(find<QDockWidget>("studio_destinations")->geometry().bottom() > m_window->height() - 10);
    } else {
        raise("studio_templates");
    }
    const QMap<QString, QRect> before = settledLayout();
    QCOMPARE(before.size(), isRearranged ? 3 : 4); // the others are behind these, or hidden
    m_window->close();

    openWindow();
    TRY_COMPARE(layout().keys(), before.keys());
    const auto deviation = [this, before]() {
        int most = 0;
        const QMap<QString, QRect> after = layout();
        for (auto dock = before.cbegin(); dock != before.cend(); ++dock) {
            const QRect now = after.value(dock.key());
            most = std::max({most, qAbs(now.left() - dock->left()), qAbs(now.top() - dock->top()),
                             qAbs(now.width() - dock->width()), qAbs(now.height() - dock->height())});
        }
        return most;
    };
    // Some steps of the restoring look like the end of it, which has come when nothing moves any more.
    const auto hasSettled = [deviation]() {
        if (deviation() > 4)
            return false;
        QTest::qWait(200);
        return deviation() <= 4;
    };
    QVERIFY2(QTest::qWaitFor(hasSettled, LONG), qPrintable(text(before) + " became " + text(layout())));
    QCOMPARE(find<QDockWidget>("studio_conversion")->isHidden(), isRearranged);
    QCOMPARE(find<KyMenuAction>("studio_conversion")->isChecked(), !isRearranged);
    QCOMPARE(m_window->tabifiedDockWidgets(find<QDockWidget>("studio_preview")).size(), isRearranged ? 1 : 0);
}

void StudioTest::screenshots_areWritten()
{
    const QString folder = m_folder->filePath(QStringLiteral("pictures"));
    QProcess program;
    program.setProcessChannelMode(QProcess::MergedChannels);
    program.start(QStringLiteral(KYTE_TEST_PROGRAM_DIR "/kystudio"), {"--screenshots", folder});
    QVERIFY(program.waitForFinished(CONVERSION_TIME));
    const QByteArray output = program.readAll();
    QVERIFY2(program.exitStatus() == QProcess::NormalExit && program.exitCode() == 0, output.constData());
    const QStringList names{"studio-conversion.png",
                            "studio-destinations.png",
                            "studio-first-start.png",
                            "studio-media.png",
                            "studio-name.png",
                            "studio-remove.png",
                            "studio.png"};
    QCOMPARE(namesIn(folder), names);
    for (const QString &name : names) {
        QVERIFY(QImage(folder + QLatin1Char('/') + name).width() > 200);
        QVERIFY2(output.contains(name.toUtf8()), output.constData());
    }
}

} // namespace Test
} // namespace Kyte

KYTE_TEST_MAIN(Kyte::Test::StudioTest)

#include "tst_kystudio.moc"
