#pragma once

#include "KyEditorCommonExport.h"

#include <KyEvent.h>

#include <QList>

namespace Kyte {

class KyScreen;

/**
 * One editing step on the event lists of one screen, which can be undone and redone.
 *
 * A record is made for a screen id, filled by addEvent(), removeEvent() and removeAllEvents(), which also do
 * the change, and then kept on an undo stack. It holds copies and never owns a screen's events; it makes and
 * deletes those only through the screen's lists. Events are compared by KyEvent::isMatch() throughout. Every
 * operation with a null screen, or with a screen of another id, does nothing (removeAllEvents() does not look
 * at the id).
 */
class KYEDITORCOMMON_EXPORT KyPreservedEvent
{
public:
    explicit KyPreservedEvent(int screenId);

    int screenId() const;
    void setScreenId(int screenId);

    /** What the step took from the screen's raise lists, plain and ignore, and what it put there. */
    QList<KyEvent> removedRaiseEventList() const;
    void setRemovedRaiseEventList(const QList<KyEvent> &events);
    QList<KyEvent> addedRaiseEventList() const;
    void setAddedRaiseEventList(const QList<KyEvent> &events);
    /** The same for the wait lists. */
    QList<KyEvent> removedListenEventList() const;
    void setRemovedListenEventList(const QList<KyEvent> &events);
    QList<KyEvent> addedListenEventList() const;
    void setAddedListenEventList(const QList<KyEvent> &events);

    /**
     * Puts a copy of \a event, with the screen as its parent, into the list for its direction and type. A
     * wait event that is not of type KyEventType::Ignore also makes the screen wait when its content ends.
     * False, and nothing changed, when the screen or this record has such an event already or the direction
     * is neither.
     */
    bool addEvent(const KyEvent &event, KyScreen *screen);
    /**
     * Deletes the first matching event of the screen. With the last wait event the screen's media-finished
     * action becomes none. False when there is no such event, or when this record has removed one already.
     */
    bool removeEvent(const KyEvent &event, KyScreen *screen);
    /**
     * Deletes all events of \a direction (bits: 1 raise, 2 wait), the ignore lists' only if \a withIgnore.
     * Bit 2 makes the media-finished action none even where there was no event. True when anything was
     * deleted.
     */
    bool removeAllEvents(KyEvent::EventDirection direction, KyScreen *screen, bool withIgnore);

    /** Takes the step back. Events put back have no parent. The media-finished action is always swapped. */
    void undo(KyScreen *screen);
    /** Does the step again, the mirror of undo(). */
    void redo(KyScreen *screen);

    /** Whether an event of \a events matches \a event; false for a null list. */
    static bool containInList(const KyEvent &event, const QList<KyEvent> &events);
    static bool containInList(const KyEvent &event, QList<KyEvent *> *events);
    /** Takes the first match out of \a events and deletes it; false when there is none. */
    static bool removeFromList(const KyEvent &event, QList<KyEvent *> *events);

private:
    bool isOurs(const KyScreen *screen) const;
    void preserveAction(KyScreen *screen, KyEventAction::EventAction action);
    void swapAction(KyScreen *screen);

    int m_screenId = -1;
    QList<KyEvent> m_removedRaiseEventList;
    QList<KyEvent> m_addedRaiseEventList;
    QList<KyEvent> m_removedListenEventList;
    QList<KyEvent> m_addedListenEventList;
    int m_preservedMediaFinishedAction = 0;
};

} // namespace Kyte
