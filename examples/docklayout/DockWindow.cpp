#include "DockWindow.h"

#include <KyEditorCommon.h>
#include <KyEditorUserConfig.h>

#include <QCloseEvent>
#include <QDockWidget>
#include <QListWidget>
#include <QSettings>
#include <QTextEdit>
#include <QTimer>

using Kyte::KyEditorCommon;
using Kyte::KyEditorUserConfig;

static const QString WINDOW_KEY = QStringLiteral("docklayout");
static const QString GEOMETRY_KEY = QStringLiteral("docklayout_window/geometry");

DockWindow::DockWindow(QWidget *parent)
    : QMainWindow(parent)
{
    setWindowTitle(tr("Dock layout"));
    resize(960, 640);
    setCentralWidget(
        new QTextEdit(tr("Drag the docks about, stack them, let them float, and close the window.\n"
                         "When it opens again they are where you left them."),
                      this));
    addDock(QStringLiteral("library"), tr("Media library"), Qt::LeftDockWidgetArea);
    addDock(QStringLiteral("templates"), tr("Stage templates"), Qt::LeftDockWidgetArea);
    addDock(QStringLiteral("preview"), tr("Preview"), Qt::RightDockWidgetArea);
    addDock(QStringLiteral("events"), tr("Events"), Qt::RightDockWidgetArea);
    addDock(QStringLiteral("destinations"), tr("Destinations"), Qt::BottomDockWidgetArea);
    addDock(QStringLiteral("messages"), tr("Messages"), Qt::BottomDockWidgetArea);
    restoreGeometry(KyEditorUserConfig::value(GEOMETRY_KEY).toByteArray());
}

QDockWidget *DockWindow::addDock(const QString &name, const QString &title, Qt::DockWidgetArea area)
{
    auto *dock = new QDockWidget(title, this);
    dock->setObjectName(name); // docks without a name are not remembered
    auto *list = new QListWidget(dock);
    list->addItems({tr("%1, first entry").arg(title), tr("%1, second entry").arg(title)});
    dock->setWidget(list);
    addDockWidget(area, dock);
    m_docks.append(dock);
    return dock;
}

void DockWindow::rearrange()
{
    QDockWidget *preview = m_docks.at(2);
    QDockWidget *events = m_docks.at(3);
    QDockWidget *destinations = m_docks.at(4);
    addDockWidget(Qt::LeftDockWidgetArea, preview);
    tabifyDockWidget(events, destinations);
    tabifyDockWidget(events, m_docks.at(5));
    destinations->raise();
    resizeDocks({m_docks.at(0), m_docks.at(1), preview}, {120, 180, 260}, Qt::Vertical);
    resizeDocks({m_docks.at(0), events}, {300, 250}, Qt::Horizontal);
}

void DockWindow::closeEvent(QCloseEvent *event)
{
    storeLayout();
    QMainWindow::closeEvent(event);
}

void DockWindow::showEvent(QShowEvent *event)
{
    QMainWindow::showEvent(event);
    if (!m_isRestored)
        QTimer::singleShot(0, this,
                           SLOT(restoreLayout())); // docks have their places once the window is shown
    m_isRestored = true;
}

void DockWindow::restoreLayout()
{
    for (QDockWidget *dock : qAsConst(m_docks))
        KyEditorCommon::restoreDockWidgetGeometry(dock, this);
    KyEditorCommon::restoreTabifiedSettings(WINDOW_KEY, this);
    // Stacked docks stay with their stack; only the others are put in order by where they were.
    QList<QDockWidget *> single;
    for (QDockWidget *dock : qAsConst(m_docks)) {
        if (!dock->isFloating() && tabifiedDockWidgets(dock).isEmpty())
            single.append(dock);
    }
    KyEditorCommon::reorderDockWidgets(single, this);
    const QList<QList<QDockWidget *>> stacks = KyEditorCommon::getTabifiedDockGroups(this);
    for (const QList<QDockWidget *> &stack : stacks)
        resizeStack(stack);
}

/** Gives a stack the size of the dock in front of it; what the docks behind it remember is no size at all. */
void DockWindow::resizeStack(const QList<QDockWidget *> &stack)
{
    for (QDockWidget *dock : stack) {
        if (dock->visibleRegion().isEmpty())
            continue;
        const QSize size = dock->property("init_rect").toRect().size();
        resizeDocks({dock}, {size.width()}, Qt::Horizontal);
        resizeDocks({dock}, {size.height()}, Qt::Vertical);
    }
}

void DockWindow::storeLayout()
{
    for (QDockWidget *dock : qAsConst(m_docks))
        KyEditorCommon::storeDockWidgetGeometry(dock, this);
    KyEditorUserConfig::setValue(GEOMETRY_KEY, saveGeometry());
    KyEditorCommon::storeTabifiedSettings(WINDOW_KEY, this); // writes the file as well
}
