#pragma once

#include <KyCoreExport.h>
#include <KyEventAction.h>
#include <ScreenType.h>

#include <QColor>
#include <QList>
#include <QRectF>
#include <QSharedPointer>
#include <QString>

namespace Kyte {

class KyEvent;
class KyPluginCommonInterface;

/**
 * One rectangular area of a stage that plays content. A screen owns the events in its four lists and deletes
 * them with itself; a copy holds copies of them, with the copy as their parent, and shares the plug-in. A
 * screen has no thread of its own: one thread at a time uses it.
 */
class KYCORE_EXPORT KyScreen
{
public:
    KyScreen();
    KyScreen(const KyScreen &other);
    ~KyScreen();
    /** The four lists stay where they are: pointers to them remain good, their former events are deleted. */
    KyScreen &operator=(const KyScreen &other);

    /** Unique within a stage; -1 until set. */
    int id() const;
    void setId(int id);

    /** The stacking order, higher ones in front; 0 until set. */
    int zIndex() const;
    void setZIndex(int zIndex);

    QString name() const;
    void setName(const QString &name);

    /** In pixels of the stage. */
    QRectF rect() const;
    void setRect(const QRectF &rect);

    /** ScreenType::MultiMedia until set. */
    ScreenType::ScreenTypes type() const;
    void setType(ScreenType::ScreenTypes type);

    /** Black until set. */
    QColor backgoundColor() const;
    void setBackgoundColor(const QColor &color);

    /** The plug-in that plays the content, null when there is none. */
    QSharedPointer<KyPluginCommonInterface> plugin() const;
    void setPlugin(const QSharedPointer<KyPluginCommonInterface> &plugin);

    /** What the screen does when its content ends; KyEventAction::None until set. */
    KyEventAction::EventAction mediaFinishedAction() const;
    void setMediaFinishedAction(const KyEventAction::EventAction &action);

    /**
     * The screen's own list, never null, to be changed in place: an event put in belongs to the screen, one
     * taken out belongs to the caller. The "ignore" lists hold the events of type KyEventType::Ignore.
     */
    QList<KyEvent *> *raiseEventList();
    QList<KyEvent *> *ignoreRaiseEventList(); ///< see raiseEventList()
    QList<KyEvent *> *waitEventList(); ///< see raiseEventList()
    QList<KyEvent *> *ignoreWaitEventList(); ///< see raiseEventList()

private:
    QList<KyEvent *> copyEvents(const QList<KyEvent *> &events);
    void replaceEvents(QList<KyEvent *> *own, const QList<KyEvent *> &events);

    int m_id = -1;
    int m_zIndex = 0;
    QString m_name;
    QRectF m_rect;
    ScreenType::ScreenTypes m_type = ScreenType::MultiMedia;
    QColor m_backgoundColor = Qt::black;
    QSharedPointer<KyPluginCommonInterface> m_plugin;
    KyEventAction::EventAction m_mediaFinishedAction = KyEventAction::None;
    QList<KyEvent *> m_raiseEventList; // owned
    QList<KyEvent *> m_ignoreRaiseEventList; // owned
    QList<KyEvent *> m_waitEventList; // owned
    QList<KyEvent *> m_ignoreWaitEventList; // owned
};

} // namespace Kyte
