#include "MainWindow.h"

#include "ConversionPanel.h"
#include "DestinationsPanel.h"
#include "EventsPanel.h"
#include "MediaPanel.h"
#include "PreviewPanel.h"
#include "ScreensPanel.h"
#include "StageDocument.h"
#include "TemplatesPanel.h"

#include <KyCommandLinkDialog.h>
#include <KyEditorCommon.h>
#include <KyEditorConfig.h>
#include <KyEditorUserConfig.h>
#include <KyMenuAction.h>
#include <KyMessageBoxWithCheckBox.h>
#include <KyProductInformation.h>

#include <QCloseEvent>
#include <QDir>
#include <QDockWidget>
#include <QMenuBar>
#include <QSettings>
#include <QTabBar>
#include <QTimer>

using namespace Kyte;

// Docks are remembered by their names, which are those of all applications of the product.
static const QString LIBRARY_DOCK = QStringLiteral("studio_library");
static const QString TEMPLATES_DOCK = QStringLiteral("studio_templates");
static const QString PREVIEW_DOCK = QStringLiteral("studio_preview");
static const QString EVENTS_DOCK = QStringLiteral("studio_events");
static const QString DESTINATIONS_DOCK = QStringLiteral("studio_destinations");
static const QString CONVERSION_DOCK = QStringLiteral("studio_conversion");
static const int STACKS_DELAY = 20; // milliseconds
static const QString DEFAULT_LAYOUT = QStringLiteral("studio_default_layout");

static const QString WINDOW_KEY = QStringLiteral("studio");
static const QString GEOMETRY_KEY = QStringLiteral("studio_window/geometry");
static const QString MEDIA_FOLDER = QStringLiteral("media"); // in the data folder
static const QSize WINDOW_SIZE(1400, 900);

static int tabBarHeight()
{
    QTabBar bar;
    bar.addTab(QString(QLatin1Char('x')));
    return bar.sizeHint().height();
}

MainWindow::MainWindow(QWidget *parent)
    : QMainWindow(parent)
    , m_document(new StageDocument(this))
    , m_screens(new ScreensPanel(m_document, this))
    , m_media(new MediaPanel(this))
    , m_templates(new TemplatesPanel(this))
    , m_preview(new PreviewPanel(this))
    , m_events(new EventsPanel(m_document, this))
    , m_destinations(new DestinationsPanel(this))
    , m_conversion(new ConversionPanel(this))
{
    setWindowTitle(tr("kystudio[*]"));
    resize(WINDOW_SIZE);
    setDockNestingEnabled(true);
    setCorner(Qt::BottomRightCorner, Qt::RightDockWidgetArea);
    setTabPosition(Qt::AllDockWidgetAreas, QTabWidget::North);
    setCentralWidget(m_screens);
    makeDocks();
    makeMenus();
    connectPanels();
}

void MainWindow::setLayoutRemembered(bool remembered)
{
    m_isLayoutRemembered = remembered;
}

void MainWindow::open()
{
    const QString dataDir = KyEditorConfig::dataDir();
    const QString mediaDir = QDir(dataDir).filePath(MEDIA_FOLDER);
    setWindowTitle(tr("%1[*] – kystudio").arg(QDir::toNativeSeparators(dataDir)));
    m_media->setRoot(mediaDir);
    m_conversion->setOutputRoot(mediaDir);
    m_templates->build();
    m_destinations->open(); // from here on the configuration is read on another thread
}

/** Where the docks are at first. */
void MainWindow::arrangeDocks()
{
    for (QDockWidget *dock : qAsConst(m_docks)) {
        dock->setFloating(false);
        removeDockWidget(dock);
    }
    QDockWidget *const library = m_docks.at(0);
    QDockWidget *const templates = m_docks.at(1);
    QDockWidget *const preview = m_docks.at(2);
    QDockWidget *const events = m_docks.at(3);
    QDockWidget *const destinations = m_docks.at(4);
    QDockWidget *const conversion = m_docks.at(5);
    addDockWidget(Qt::LeftDockWidgetArea, library);
    tabifyDockWidget(library, templates);
    addDockWidget(Qt::RightDockWidgetArea, preview);
    addDockWidget(Qt::RightDockWidgetArea, events);
    addDockWidget(Qt::BottomDockWidgetArea, destinations);
    tabifyDockWidget(destinations, conversion);
    for (QDockWidget *dock : qAsConst(m_docks))
        dock->show();
    templates->raise();
    destinations->raise();
    resizeDocks({library, preview}, {384, 380}, Qt::Horizontal);
    resizeDocks({preview, events}, {260, 540}, Qt::Vertical);
    resizeDocks({destinations}, {330}, Qt::Vertical);
}

void MainWindow::closeEvent(QCloseEvent *event)
{
    if (!mayClose()) {
        event->ignore();
        return;
    }
    if (m_isLayoutRemembered)
        storeLayout();
    QMainWindow::closeEvent(event);
}

void MainWindow::showEvent(QShowEvent *event)
{
    QMainWindow::showEvent(event);
    if (m_isLayoutRemembered && !m_isLayoutRestored && KyEditorUserConfig::settings()->contains(GEOMETRY_KEY))
        QTimer::singleShot(0, this,
                           SLOT(restoreLayout())); // docks have their places once the window is shown
    m_isLayoutRestored = true;
}

void MainWindow::onTemplateSelected(const KyStage &stage)
{
    m_preview->showStage(stage, tr("Template: %1").arg(stage.name()));
}

void MainWindow::onTemplateChosen(const KyStage &stage)
{
    if (!m_document->undoStack()->isClean()) {
        KyMessageBoxWithCheckBox box(QMessageBox::Question, tr("New stage"),
                                     tr("Begin another stage? The edits of this one are lost."),
                                     QMessageBox::Ok | QMessageBox::Cancel, this);
        box.setSettings(KyEditorUserConfig::settings());
        if (box.exec() != QMessageBox::Ok)
            return;
    }
    m_document->setStage(stage);
}

void MainWindow::onDocumentChanged()
{
    m_preview->showStage(m_document->stage(), m_document->stage().name());
}

void MainWindow::onPresentationChosen(const QString &path)
{
    m_conversion->setPresentation(path);
    raiseDockOf(m_conversion);
}

void MainWindow::onDestinationsSaved()
{
    if (m_isClosing)
        close();
}

void MainWindow::onWindowAction(const QString &objectName, bool checked)
{
    if (objectName == DEFAULT_LAYOUT) {
        arrangeDocks();
        return;
    }
    for (QDockWidget *dock : qAsConst(m_docks)) {
        if (dock->objectName() != objectName)
            continue;
        dock->setVisible(checked);
        dock->raise();
    }
}

void MainWindow::restoreLayout()
{
    restoreGeometry(KyEditorUserConfig::value(GEOMETRY_KEY).toByteArray());
    for (QDockWidget *dock : qAsConst(m_docks))
        KyEditorCommon::restoreDockWidgetGeometry(dock, this);
    KyEditorCommon::restoreTabifiedSettings(WINDOW_KEY, this);
    // Stacked docks stay with their stack; only the others are put in order by where they were.
    QList<QDockWidget *> single;
    for (QDockWidget *dock : qAsConst(m_docks)) {
        if (!dock->isFloating() && !dock->isHidden() && tabifiedDockWidgets(dock).isEmpty())
            single.append(dock);
    }
    KyEditorCommon::reorderDockWidgets(single, this);
    // The library holds the docks that it restores for 10 ms; what is resized meanwhile does not stay.
    QTimer::singleShot(STACKS_DELAY, this, SLOT(resizeStacks()));
}

/** Gives stacks the sizes of the docks in front of them; what the docks behind remember is no size at all. */
void MainWindow::resizeStacks()
{
    const int barHeight = tabBarHeight(); // which a stack's height includes
    const QList<QList<QDockWidget *>> stacks = KyEditorCommon::getTabifiedDockGroups(this);
    for (const QList<QDockWidget *> &stack : stacks) {
        for (QDockWidget *dock : stack) {
            if (dock->visibleRegion().isEmpty())
                continue;
            const QSize size = dock->property("init_rect").toRect().size();
            resizeDocks({dock}, {size.width()}, Qt::Horizontal);
            resizeDocks({dock}, {size.height() + barHeight}, Qt::Vertical);
        }
    }
}

void MainWindow::about()
{
    const KyProductInformation *product = KyEditorConfig::productInformation();
    QMessageBox::about(
        this, tr("About kystudio"),
        tr("<b>%1 %2</b><p>Stages, media and destinations in one window: what the common "
           "library of the authoring applications does, to be looked at.")
            .arg(product ? product->name() : tr("kystudio"), product ? product->version() : QString()));
}

void MainWindow::makeDocks()
{
    addDock(LIBRARY_DOCK, tr("Media library"), m_media);
    addDock(TEMPLATES_DOCK, tr("Stage templates"), m_templates);
    addDock(PREVIEW_DOCK, tr("Preview"), m_preview);
    addDock(EVENTS_DOCK, tr("Events"), m_events);
    addDock(DESTINATIONS_DOCK, tr("Destinations"), m_destinations);
    addDock(CONVERSION_DOCK, tr("Conversion"), m_conversion);
    arrangeDocks();
}

QDockWidget *MainWindow::addDock(const QString &name, const QString &title, QWidget *panel)
{
    auto *dock = new QDockWidget(title, this);
    dock->setObjectName(name); // docks without a name are not remembered
    dock->setWidget(panel);
    addDockWidget(Qt::LeftDockWidgetArea, dock);
    m_docks.append(dock);
    return dock;
}

void MainWindow::makeMenus()
{
    QMenu *file = menuBar()->addMenu(tr("&File"));
    QAction *save =
        file->addAction(tr("&Save destinations"), m_destinations, SLOT(save()), QKeySequence::Save);
    save->setEnabled(false);
    connect(m_destinations, SIGNAL(editedChanged(bool)), save, SLOT(setEnabled(bool)));
    file->addSeparator();
    file->addAction(tr("&Quit"), this, SLOT(close()), QKeySequence::Quit);

    QMenu *edit = menuBar()->addMenu(tr("&Edit"));
    QAction *undo = m_document->undoStack()->createUndoAction(this, tr("&Undo"));
    QAction *redo = m_document->undoStack()->createRedoAction(this, tr("&Redo"));
    undo->setShortcut(QKeySequence::Undo);
    redo->setShortcut(QKeySequence::Redo);
    edit->addActions({undo, redo});

    QMenu *window = menuBar()->addMenu(tr("&Window"));
    for (QDockWidget *dock : qAsConst(m_docks)) {
        KyMenuAction *action = addWindowAction(window, dock->objectName(), dock->windowTitle());
        action->setCheckable(true);
        action->setChecked(true);
        connect(dock->toggleViewAction(), SIGNAL(toggled(bool)), action, SLOT(setChecked(bool)));
    }
    window->addSeparator();
    addWindowAction(window, DEFAULT_LAYOUT, tr("&Default layout"));

    menuBar()->addMenu(tr("&Help"))->addAction(tr("&About kystudio"), this, SLOT(about()));
}

KyMenuAction *MainWindow::addWindowAction(QMenu *menu, const QString &name, const QString &text)
{
    auto *action = new KyMenuAction(text, this);
    action->setObjectName(name);
    menu->addAction(action);
    connect(action, SIGNAL(triggered(QString, bool)), this, SLOT(onWindowAction(QString, bool)));
    return action;
}

void MainWindow::connectPanels()
{
    connect(m_templates, SIGNAL(templateSelected(Kyte::KyStage)), this,
            SLOT(onTemplateSelected(Kyte::KyStage)));
    connect(m_templates, SIGNAL(templateChosen(Kyte::KyStage)), this, SLOT(onTemplateChosen(Kyte::KyStage)));
    connect(m_document, SIGNAL(stageReplaced()), this, SLOT(onDocumentChanged()));
    connect(m_document, SIGNAL(screensChanged()), this, SLOT(onDocumentChanged()));
    connect(m_screens, SIGNAL(currentScreenChanged(int)), m_events, SLOT(setScreen(int)));
    connect(m_media, SIGNAL(presentationChosen(QString)), this, SLOT(onPresentationChosen(QString)));
    connect(m_conversion, SIGNAL(slidesMade(QString)), m_media, SLOT(openFolder(QString)));
    connect(m_destinations, SIGNAL(saved()), this, SLOT(onDestinationsSaved()));
    connect(m_destinations, SIGNAL(editedChanged(bool)), this, SLOT(setWindowModified(bool)));
}

void MainWindow::raiseDockOf(QWidget *panel)
{
    for (QDockWidget *dock : qAsConst(m_docks)) {
        if (dock->widget() != panel)
            continue;
        dock->show();
        dock->raise();
    }
}

void MainWindow::storeLayout()
{
    for (QDockWidget *dock : qAsConst(m_docks))
        KyEditorCommon::storeDockWidgetGeometry(dock, this);
    KyEditorUserConfig::setValue(GEOMETRY_KEY, saveGeometry());
    KyEditorCommon::storeTabifiedSettings(WINDOW_KEY, this); // writes the file as well
}

/** Asks where there is something to lose. */
bool MainWindow::mayClose()
{
    m_isClosing = false;
    if (!m_destinations->isEdited())
        return true;
    switch (KyCommandLinkDialog::show(this, tr("Close"), tr("The destinations are not saved."),
                                      tr("What do you want to do with your changes?"), tr("&Save"),
                                      tr("They take the place of what was there before."), tr("&Discard"),
                                      tr("The changes are lost."))) {
    case 1:
        m_isClosing = true;
        m_destinations->save();
        return false; // not yet
    case 2:
        return true;
    default:
        return false;
    }
}
