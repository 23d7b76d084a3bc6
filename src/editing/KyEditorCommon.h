#pragma once

#include "KyEditorCommonExport.h"

#include <KyEventAction.h>
#include <KyEventType.h>

#include <QByteArray>
#include <QList>
#include <QMap>
#include <QObject>
#include <QPixmap>
#include <QSharedPointer>
#include <QString>

class QDockWidget;
class QMainWindow;
class QWidget;

namespace Kyte {

class KyPluginExtScreenInterface;
class KyPluginGuiInterface;
class KyScreen;

/** Option bits of a stage: show it at the desktop's size; correct its screens' positions and sizes
 * automatically. */
extern KYEDITORCOMMON_EXPORT const unsigned int STAGE_OPTION_ZOOM_TO_DESKTOP_SIZE;
extern KYEDITORCOMMON_EXPORT const unsigned int STAGE_OPTION_CORRECT_SCREEN_POS_SIZE;

/**
 * What the editors share: static functions, no state. None reports errors; a null or useless argument gives
 * the neutral result that is told with each function. Those that take or make widgets and pixmaps belong to
 * the GUI thread, the others to any.
 */
class KYEDITORCOMMON_EXPORT KyEditorCommon : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY(KyEditorCommon)

public:
    explicit KyEditorCommon(QObject *parent = nullptr);

    /**
     * A name that is no key of \a usedNames, and enters it there with \a value: \a name itself if it is free,
     * else its base with the lowest free counter, "Screen (1)". A counter that \a name has already is
     * replaced. An empty name comes back as it is, and so does every name when the map is null.
     */
    static QString checkName(QString name, int value, QMap<QString, int> *usedNames);

    /**
     * "hh:mm:ss.t", cut off to tenths, with as many digits of hours as there are, and with "+" behind it if
     * \a plus is true. "--:--:--" for a negative number and for none. More seconds than an int holds read as
     * "596523:14:07.9".
     */
    static QString getDurationString(double seconds, bool plus);
    /** \a text in white on a half-transparent dark plate that exceeds it by one pixel on each side. */
    static QPixmap getDurationImage(const QString &text);
    /** \a pixmap painted with \a opacity (0.0 to 1.0); a null pixmap stays null. */
    static QPixmap changeImageOpacity(QPixmap &pixmap, double opacity);

    /**
     * An object's address as hexadecimal text and back, for payloads within one process. Text is read as
     * QByteArray::toLongLong() reads base 16; what is no number, or does not fit, gives 0.
     */
    static QByteArray getByteArrayFromPointer(qint64 pointer);
    static qint64 getPointerFromByteArray(QByteArray bytes);

    /**
     * Shows a folder, or the folder of a file, in the desktop's file manager. \a parent, which may be null,
     * is the window that asks. Nothing happens for an empty path, and no failure is told.
     */
    static void openFolderWithShell(const QString &path, QWidget *parent);

    /**
     * Sorts by z-index in place; screens of equal z-index may change their order. Answers the largest id that
     * was looked at, at least 0. Descending looks at all; ascending looks at the screen that each position
     * but the last holds before the comparisons that fill it. -1 for a null or an empty list, or one that
     * holds a null screen; 0 for a single screen.
     */
    static int sortScreenByZIndexAscending(QList<KyScreen *> *screens);
    static int sortScreenByZIndexDescending(QList<KyScreen *> *screens);

    /** The screen's plug-in if it plays a screen of its own; null otherwise. */
    static QSharedPointer<KyPluginExtScreenInterface> getPluginExtScreenInterface(KyScreen *screen);
    /** The user interface of that plug-in, which stays the plug-in's own; null when there is none. */
    static KyPluginGuiInterface *getPluginGuiInterface(KyScreen *screen);

    /** Where the thumbnail of a media file lies: "folder/._kythumb/name.thumb". */
    static QString getThumbnailFilePath(QString &filePath);

    /**
     * Whether the system can announce changes in \a folder: callers poll where it cannot. False for a missing
     * folder, where the system refuses, as it does in some network folders, and while the number of watches
     * that it allows a user is used up.
     */
    static bool tryInstallFileWatcher(const QString &folder);

    /** Names and one-sentence descriptions of event types and actions, translated. */
    static QString getLocalStringFromEventType(KyEventType::EventType type);
    static QString getLocalDescriptionFromEventType(KyEventType::EventType type);
    static QString getLocalStringFromEventAction(KyEventAction::EventAction action);
    static QString getLocalDescriptionFromEventAction(KyEventAction::EventAction action);

    /**
     * Keeps a dock's area, floating state, geometry and visibility in the user settings, in a group named by
     * its object name, and brings them back; nothing for a dock without a name. What the settings lack, or
     * hold as nonsense, stays as it is. Restoring leaves the dock's frame rectangle in its property
     * "init_rect". Neither operation writes the file: KyEditorUserConfig::sync() does.
     */
    static void storeDockWidgetGeometry(QDockWidget *dock, QMainWindow *window);
    static void restoreDockWidgetGeometry(QDockWidget *dock, QMainWindow *window);

    /**
     * Keeps which docks of \a window are stacked as tabs, in which order and which is in front, under a \a
     * key that names the window, and brings that back. Docks without a name, or whose name is unknown, are
     * left out. Storing writes the settings file.
     */
    static void storeTabifiedSettings(const QString &key, QMainWindow *window);
    static void restoreTabifiedSettings(const QString &key, QMainWindow *window);
    /** The docks of \a window that are stacked as tabs, each group in the order of its tabs, groups in any
     * order. */
    static QList<QList<QDockWidget *>> getTabifiedDockGroups(QMainWindow *window);

    /**
     * Lays \a docks out in their areas by where their "init_rect" is, and holds each at the size of that for
     * 10 ms, until the layout has settled.
     */
    static void reorderDockWidgets(QList<QDockWidget *> docks, QMainWindow *window);
};

} // namespace Kyte
