#include "KyEditorCommon.h"

#include "KyDockLayout_p.h"
#include "KyDockSizePin_p.h"
#include "KyEventTexts_p.h"
#include "KyFolderWatch_p.h"
#include "KyNameCounter_p.h"
#include "KyShell_p.h"

#include <KyCommon.h>
#include <KyEditorUserConfig.h>
#include <KyPluginExtScreenInterface.h>
#include <KyScreen.h>
#include <Path.h>

#include <QDir>
#include <QDockWidget>
#include <QFileInfo>
#include <QFont>
#include <QFontMetrics>
#include <QMainWindow>
#include <QPainter>
#include <QScreen>
#include <QSettings>

#include <algorithm>
#include <cmath>
#include <iterator>
#include <limits>

namespace Kyte {

const unsigned int STAGE_OPTION_ZOOM_TO_DESKTOP_SIZE = 1;
const unsigned int STAGE_OPTION_CORRECT_SCREEN_POS_SIZE = 2;

static const double BADGE_POINT_SIZE = 8.0;
static const int BADGE_MARGIN = 1; // pixels
static const int BADGE_ALPHA = 127;
static const int POINTER_BASE = 16;

static const QString AREA_KEY = QStringLiteral("dockArea");
static const QString FLOATING_KEY = QStringLiteral("floating");
static const QString GEOMETRY_KEY = QStringLiteral("geometry");
static const QString VISIBLE_KEY = QStringLiteral("visible");
static const QString FORMER_TABS_KEY = QStringLiteral("tabified");
static const QString TABS_GROUP = QStringLiteral("tabified_%1");
static const QString TAB_ARRAY = QStringLiteral("group%1");
static const QString TAB_NAME_KEY = QStringLiteral("name");
static const QString TAB_ACTIVATED_KEY = QStringLiteral("activated");
static const char INIT_RECT_PROPERTY[] = "init_rect";

KyEditorCommon::KyEditorCommon(QObject *parent)
    : QObject(parent)
{
}

QString KyEditorCommon::checkName(QString name, int value, QMap<QString, int> *usedNames)
{
    if (name.isEmpty() || !usedNames)
        return name;
    QString uniqueName = name;
    if (usedNames->contains(name)) {
        const QString base = NameCounter::baseName(name);
        const int number = NameCounter::firstFreeNumber(base, *usedNames);
        if (number == NameCounter::LIMIT)
            return NameCounter::numberedName(base, NameCounter::LIMIT - 1); // taken, and not entered again
        uniqueName = NameCounter::numberedName(base, number);
    }
    usedNames->insert(uniqueName, value);
    return uniqueName;
}

QString KyEditorCommon::getDurationString(double seconds, bool plus)
{
    if (std::isnan(seconds) || seconds < 0)
        return QStringLiteral("--:--:--");
    const int whole = static_cast<int>(qMin(seconds, double(std::numeric_limits<int>::max())));
    const int tenths =
        static_cast<int>(qMin((seconds - whole) * 10, 9.0)); // beyond an int the rest has no limit
    const QString text = QStringLiteral("%1:%2:%3.%4")
                             .arg(whole / 3600, 2, 10, QLatin1Char('0'))
                             .arg(whole % 3600 / 60, 2, 10, QLatin1Char('0'))
                             .arg(whole % 60, 2, 10, QLatin1Char('0'))
                             .arg(tenths);
    return plus ? text + QLatin1Char('+') : text;
}

QPixmap KyEditorCommon::getDurationImage(const QString &text)
{
    QFont font;
    font.setPointSizeF(BADGE_POINT_SIZE);
    const QSize textSize = QFontMetrics(font).size(Qt::TextSingleLine, text);
    QPixmap badge(textSize + QSize(2 * BADGE_MARGIN, 2 * BADGE_MARGIN));
    badge.fill(Qt::transparent);
    QPainter painter(&badge);
    painter.fillRect(badge.rect(), QColor(0, 0, 0, BADGE_ALPHA));
    painter.setFont(font);
    painter.setPen(Qt::white);
    painter.drawText(QRectF(QPointF(BADGE_MARGIN, BADGE_MARGIN), textSize), text);
    return badge;
}

QPixmap KyEditorCommon::changeImageOpacity(QPixmap &pixmap, double opacity)
{
    if (pixmap.isNull())
        return pixmap;
    QPixmap faded(pixmap.size());
    faded.setDevicePixelRatio(pixmap.devicePixelRatio()); // the source would be painted smaller otherwise
    faded.fill(Qt::transparent);
    QPainter painter(&faded);
    painter.setOpacity(opacity);
    painter.drawPixmap(0, 0, pixmap);
    return faded;
}

QByteArray KyEditorCommon::getByteArrayFromPointer(qint64 pointer)
{
    return QStringLiteral("%1").arg(pointer, 0, POINTER_BASE).toLatin1();
}

// NOLINTNEXTLINE(performance-unnecessary-value-param): the signature is fixed
qint64 KyEditorCommon::getPointerFromByteArray(QByteArray bytes)
{
    return bytes.toLongLong(nullptr, POINTER_BASE);
}

void KyEditorCommon::openFolderWithShell(const QString &path, QWidget *parent)
{
    if (path.isEmpty())
        return;
    const QFileInfo info(path);
    Shell::openFolder(info.isDir() ? QDir(path).absolutePath() : info.absolutePath(), parent);
}

// Both sorts exchange entries as soon as a comparison asks for it. Which of two screens of equal z-index
// comes first follows from that, and stored stages have been drawn in that order ever since: no other sort
// will do.

int KyEditorCommon::sortScreenByZIndexAscending(QList<KyScreen *> *screens)
{
    if (!screens || screens->isEmpty() || screens->contains(nullptr))
        return -1;
    int largestId = 0;
    for (int i = 0; i < screens->size() - 1; ++i) {
        // Only here, unlike the descending sort: new ids are chosen by this answer.
        largestId = qMax(largestId, screens->at(i)->id());
        for (int j = i + 1; j < screens->size(); ++j) {
            if (screens->at(i)->zIndex() > screens->at(j)->zIndex())
                screens->swapItemsAt(i, j);
        }
    }
    return largestId;
}

int KyEditorCommon::sortScreenByZIndexDescending(QList<KyScreen *> *screens)
{
    if (!screens || screens->isEmpty() || screens->contains(nullptr))
        return -1;
    int largestId = 0;
    for (int i = 0; i < screens->size() - 1; ++i) {
        largestId = qMax(largestId, screens->at(i)->id());
        for (int j = i + 1; j < screens->size(); ++j) {
            if (screens->at(i)->zIndex() < screens->at(j)->zIndex())
                screens->swapItemsAt(i, j);
            largestId = qMax(largestId, qMax(screens->at(i)->id(), screens->at(j)->id()));
        }
    }
    return largestId;
}

QSharedPointer<KyPluginExtScreenInterface> KyEditorCommon::getPluginExtScreenInterface(KyScreen *screen)
{
    if (!screen)
        return QSharedPointer<KyPluginExtScreenInterface>();
    return screen->plugin().dynamicCast<KyPluginExtScreenInterface>();
}

KyPluginGuiInterface *KyEditorCommon::getPluginGuiInterface(KyScreen *screen)
{
    const QSharedPointer<KyPluginExtScreenInterface> plugin = getPluginExtScreenInterface(screen);
    return plugin ? plugin->guiInterface() : nullptr;
}

QString KyEditorCommon::getThumbnailFilePath(QString &filePath)
{
    const QString folder = Path::combine(Path::getParentDirectory(filePath), THUMBNAIL_FOLDER);
    const QString name = Path::getName(filePath, true) + QLatin1Char('.') + EXTENSION_THUMBNAIL;
    return Path::combine(folder, name);
}

bool KyEditorCommon::tryInstallFileWatcher(const QString &folder)
{
    return !folder.isEmpty() && QDir(folder).exists() && FolderWatch::isPossible(folder);
}

QString KyEditorCommon::getLocalStringFromEventType(KyEventType::EventType type)
{
    return tr(EventTexts::typeName(type));
}

QString KyEditorCommon::getLocalDescriptionFromEventType(KyEventType::EventType type)
{
    return tr(EventTexts::typeDescription(type));
}

QString KyEditorCommon::getLocalStringFromEventAction(KyEventAction::EventAction action)
{
    return tr(EventTexts::actionName(action));
}

QString KyEditorCommon::getLocalDescriptionFromEventAction(KyEventAction::EventAction action)
{
    return tr(EventTexts::actionDescription(action));
}

/** The settings for \a dock in \a window; null when there is nothing to store or restore. */
static QSettings *dockSettings(const QDockWidget *dock, const QMainWindow *window)
{
    return dock && window && !dock->objectName().isEmpty() ? KyEditorUserConfig::settings() : nullptr;
}

/** The truth value of \a key; \a fallback where there is none. Any text would convert to true. */
static bool boolValue(const QSettings *settings, const QString &key, bool fallback)
{
    const QString text = settings->value(key).toString();
    if (text == QLatin1String("true") || text == QLatin1String("1"))
        return true;
    if (text == QLatin1String("false") || text == QLatin1String("0"))
        return false;
    return fallback;
}

void KyEditorCommon::storeDockWidgetGeometry(QDockWidget *dock, QMainWindow *window)
{
    QSettings *settings = dockSettings(dock, window);
    if (!settings)
        return;
    settings->beginGroup(dock->objectName());
    settings->setValue(AREA_KEY, static_cast<int>(window->dockWidgetArea(dock)));
    settings->setValue(FLOATING_KEY, dock->isFloating());
    settings->setValue(GEOMETRY_KEY, dock->saveGeometry());
    settings->setValue(VISIBLE_KEY, dock->isVisible());
    settings->endGroup();
}

void KyEditorCommon::restoreDockWidgetGeometry(QDockWidget *dock, QMainWindow *window)
{
    QSettings *settings = dockSettings(dock, window);
    if (!settings)
        return;
    const int currentArea = window->dockWidgetArea(dock);
    const bool isFloating = dock->isFloating();
    const QByteArray currentGeometry = dock->saveGeometry();
    const bool isVisible =
        dock->isVisible(); // asked first: a dock that is taken out is hidden, and not shown again

    settings->beginGroup(dock->objectName());
    const int area = settings->value(AREA_KEY, currentArea).toInt();
    // A dock that was in no area when it was stored stays where it is; adding it there would lose it.
    if (area != currentArea && DockLayout::isArea(area)) {
        window->removeDockWidget(dock);
        window->addDockWidget(static_cast<Qt::DockWidgetArea>(area), dock);
    }
    dock->setFloating(boolValue(settings, FLOATING_KEY, isFloating));
    QByteArray geometry = settings->value(GEOMETRY_KEY, currentGeometry).toByteArray();
    {
        // In its window the dock has the place that the layout gives it. A free one has the place that is
        // asked for, and tells whether the settings hold a geometry at all.
        QDockWidget freeDock;
        if (!freeDock.restoreGeometry(geometry)) {
            geometry = currentGeometry;
            freeDock.restoreGeometry(geometry);
        }
        dock->restoreGeometry(geometry);
        dock->setProperty(INIT_RECT_PROPERTY, freeDock.frameGeometry());
    }
    dock->setVisible(boolValue(settings, VISIBLE_KEY, isVisible));
    if (dock->isFloating())
        dock->restoreGeometry(geometry); // a window manager places a window when it is shown
    settings->endGroup();
}

static QList<QDockWidget *> docksOf(const QMainWindow *window)
{
    return window->findChildren<QDockWidget *>(QString(), Qt::FindDirectChildrenOnly);
}

QList<QList<QDockWidget *>> KyEditorCommon::getTabifiedDockGroups(QMainWindow *window)
{
    QList<DockLayout::TabView> views;
    if (!window)
        return {};
    const QList<QDockWidget *> docks = docksOf(window);
    for (QDockWidget *dock : docks)
        views.append({dock, window->tabifiedDockWidgets(dock)});
    return DockLayout::groupTabs(views);
}

static QList<QDockWidget *> namedDocks(const QList<QDockWidget *> &docks)
{
    QList<QDockWidget *> named;
    std::copy_if(docks.cbegin(), docks.cend(), std::back_inserter(named), [](const QDockWidget *dock) {
        return !dock->objectName().isEmpty();
    });
    return named;
}

void KyEditorCommon::storeTabifiedSettings(const QString &key, QMainWindow *window)
{
    QSettings *settings = KyEditorUserConfig::settings();
    if (!settings || !window)
        return;
    const QString groupName = TABS_GROUP.arg(key);
    settings->remove(FORMER_TABS_KEY); // of releases that kept the tabs of one window only
    settings->remove(groupName);
    settings->beginGroup(groupName);
    const QList<QList<QDockWidget *>> groups = getTabifiedDockGroups(window);
    for (int i = 0; i < groups.size(); ++i) {
        const QList<QDockWidget *> docks = namedDocks(groups.at(i));
        if (docks.size() < 2)
            continue; // the numbers may have gaps
        settings->beginWriteArray(TAB_ARRAY.arg(i), docks.size());
        for (int tab = 0; tab < docks.size(); ++tab) {
            settings->setArrayIndex(tab);
            settings->setValue(TAB_NAME_KEY, docks.at(tab)->objectName());
            settings->setValue(TAB_ACTIVATED_KEY, !docks.at(tab)->visibleRegion().isEmpty());
        }
        settings->endArray();
    }
    settings->endGroup();
    KyEditorUserConfig::sync();
}

/** The indexes that an array of \a size has entries at: a damaged file may claim any size. */
static QList<int> presentEntries(const QSettings *array, int size)
{
    QList<int> entries;
    const QStringList groups = array->childGroups();
    for (const QString &group : groups) {
        const int number = group.toInt(); // counted from 1 in the file
        if (number >= 1 && number <= size)
            entries.append(number - 1);
    }
    std::sort(entries.begin(), entries.end());
    return entries;
}

/** Stacks the docks that the array \a name of the current group lists; the one that was in front is raised.
 */
static void restoreTabs(QSettings *settings,
                        const QString &name,
                        const QMap<QString, QDockWidget *> &docks,
                        QMainWindow *window)
{
    const int size = settings->beginReadArray(name);
    settings->endArray();
    if (size < 2)
        return;
    settings->beginGroup(name);
    const QList<int> entries = presentEntries(settings, size);
    settings->endGroup();

    settings->beginReadArray(name);
    QDockWidget *first = nullptr;
    QDockWidget *front = nullptr;
    for (int entry : entries) {
        settings->setArrayIndex(entry);
        QDockWidget *dock = docks.value(settings->value(TAB_NAME_KEY).toString());
        if (entry == 0)
            first = dock;
        if (!first || !DockLayout::isArea(window->dockWidgetArea(first)))
            break; // nothing to stack the others onto, and no stack to raise one of
        if (!dock)
            continue;
        if (dock != first)
            window->tabifyDockWidget(first, dock);
        if (boolValue(settings, TAB_ACTIVATED_KEY, false))
            front = dock;
    }
    settings->endArray();
    if (front)
        front->raise();
}

void KyEditorCommon::restoreTabifiedSettings(const QString &key, QMainWindow *window)
{
    QSettings *settings = KyEditorUserConfig::settings();
    if (!settings || !window)
        return;
    QMap<QString, QDockWidget *> docks;
    const QList<QDockWidget *> named = namedDocks(docksOf(window));
    for (QDockWidget *dock : named)
        docks.insert(dock->objectName(), dock);
    settings->beginGroup(TABS_GROUP.arg(key));
    const QStringList arrays = settings->childGroups();
    for (const QString &array : arrays)
        restoreTabs(settings, array, docks, window);
    settings->endGroup();
}

/**
 * Holds each dock at its remembered size for a moment. The layout is told the sizes as well: a window whose
 * docks were never resized goes back to their size hints as soon as nothing holds them.
 */
static void holdSizes(const QList<QDockWidget *> &docks, QMainWindow *window)
{
    const QSize limit = window->screen()->virtualSize(); // a damaged settings file may hold any size
    QList<QDockWidget *> docked;
    QList<int> widths;
    QList<int> heights;
    for (QDockWidget *dock : docks) {
        const QRect place = dock->property(INIT_RECT_PROPERTY).toRect();
        if (!place.isValid())
            continue; // a dock that was never restored has no size to be held at
        const QSize size = place.size().boundedTo(limit);
        KyDockSizePin::pin(dock, size);
        if (dock->isFloating() || !DockLayout::isArea(window->dockWidgetArea(dock)))
            continue;
        docked.append(dock);
        widths.append(size.width());
        heights.append(size.height());
    }
    window->resizeDocks(docked, widths, Qt::Horizontal);
    window->resizeDocks(docked, heights, Qt::Vertical);
}

void KyEditorCommon::reorderDockWidgets(QList<QDockWidget *> docks, QMainWindow *window)
{
    if (!window)
        return;
    docks.removeAll(nullptr);
    QMap<Qt::DockWidgetArea, QList<DockLayout::PlacedDock>> docksByArea;
    for (QDockWidget *dock : qAsConst(docks)) {
        const Qt::DockWidgetArea area = window->dockWidgetArea(dock);
        if (DockLayout::isArea(area)) // adding a dock to no area would lose it
            docksByArea[area].append({dock, dock->property(INIT_RECT_PROPERTY).toRect()});
    }

    for (auto it = docksByArea.begin(); it != docksByArea.end(); ++it) {
        DockLayout::sortByPlace(it.key(), &it.value());
        QDockWidget *previous = nullptr;
        for (const DockLayout::PlacedDock &placed : qAsConst(it.value())) {
            QDockWidget *dock = placed.first;
            if (dock == previous)
                continue;
            if (previous)
                window->splitDockWidget(previous, dock, DockLayout::splitOrientation(it.key()));
            window->addDockWidget(it.key(), dock);
            dock->move(placed.second.topLeft());
            previous = dock;
        }
    }

    holdSizes(docks, window);
}

} // namespace Kyte
