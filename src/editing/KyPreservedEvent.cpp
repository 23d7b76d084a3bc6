#include "KyPreservedEvent.h"

#include <KyScreen.h>

#include <algorithm>

namespace Kyte {

/** The list of a side of a screen in which an event of \a type lives. */
static QList<KyEvent *> *raiseList(KyScreen *screen, KyEventType::EventType type)
{
    return type == KyEventType::Ignore ? screen->ignoreRaiseEventList() : screen->raiseEventList();
}

static QList<KyEvent *> *waitList(KyScreen *screen, KyEventType::EventType type)
{
    return type == KyEventType::Ignore ? screen->ignoreWaitEventList() : screen->waitEventList();
}

static KyEvent *copyWithParent(const KyEvent &event, KyScreen *parent)
{
    auto *copy = new KyEvent(event);
    copy->setParent(parent);
    return copy;
}

/** Copies all events of \a events to the end of \a records and deletes them; false when there was none. */
static bool takeAll(QList<KyEvent *> *events, QList<KyEvent> *records)
{
    const int formerCount = records->size();
    for (const KyEvent *event : qAsConst(*events)) {
        if (event) // the lists are open to everybody
            records->append(*event);
    }
    qDeleteAll(*events);
    events->clear();
    return records->size() > formerCount;
}

static void removeRaised(const QList<KyEvent> &events, KyScreen *screen)
{
    for (const KyEvent &event : events) {
        if (!KyPreservedEvent::removeFromList(event, screen->raiseEventList()))
            KyPreservedEvent::removeFromList(event, screen->ignoreRaiseEventList());
    }
}

static void removeAwaited(const QList<KyEvent> &events, KyScreen *screen)
{
    for (const KyEvent &event : events) {
        if (!KyPreservedEvent::removeFromList(event, screen->waitEventList()))
            KyPreservedEvent::removeFromList(event, screen->ignoreWaitEventList());
    }
}

/**
 * Puts an event back unless its list has a match. Only addEvent() gives its copy a parent; the one that the
 * record carries is dropped, because its screen may be gone by now.
 */
static void restore(const KyEvent &event, QList<KyEvent *> *events)
{
    if (!KyPreservedEvent::containInList(event, events))
        events->append(copyWithParent(event, nullptr));
}

static void restoreRaised(const QList<KyEvent> &events, KyScreen *screen)
{
    for (const KyEvent &event : events)
        restore(event, raiseList(screen, event.type()));
}

static void restoreAwaited(const QList<KyEvent> &events, KyScreen *screen)
{
    for (const KyEvent &event : events)
        restore(event, waitList(screen, event.type()));
}

KyPreservedEvent::KyPreservedEvent(int screenId)
    : m_screenId(screenId)
{
}

int KyPreservedEvent::screenId() const
{
    return m_screenId;
}

void KyPreservedEvent::setScreenId(int screenId)
{
    m_screenId = screenId;
}

QList<KyEvent> KyPreservedEvent::removedRaiseEventList() const
{
    return m_removedRaiseEventList;
}

void KyPreservedEvent::setRemovedRaiseEventList(const QList<KyEvent> &events)
{
    m_removedRaiseEventList = events;
}

QList<KyEvent> KyPreservedEvent::addedRaiseEventList() const
{
    return m_addedRaiseEventList;
}

void KyPreservedEvent::setAddedRaiseEventList(const QList<KyEvent> &events)
{
    m_addedRaiseEventList = events;
}

QList<KyEvent> KyPreservedEvent::removedListenEventList() const
{
    return m_removedListenEventList;
}

void KyPreservedEvent::setRemovedListenEventList(const QList<KyEvent> &events)
{
    m_removedListenEventList = events;
}

QList<KyEvent> KyPreservedEvent::addedListenEventList() const
{
    return m_addedListenEventList;
}

void KyPreservedEvent::setAddedListenEventList(const QList<KyEvent> &events)
{
    m_addedListenEventList = events;
}

bool KyPreservedEvent::addEvent(const KyEvent &event, KyScreen *screen)
{
    if (!isOurs(screen))
        return false;
    if (containInList(event, m_addedRaiseEventList) || containInList(event, m_addedListenEventList)
        || containInList(event, screen->raiseEventList())
        || containInList(event, screen->ignoreRaiseEventList())
        || containInList(event, screen->waitEventList())
        || containInList(event, screen->ignoreWaitEventList()))
        return false;

    switch (event.direction()) {
    case KyEvent::Raise:
        raiseList(screen, event.type())->append(copyWithParent(event, screen));
        m_addedRaiseEventList.append(event);
        return true;
    case KyEvent::Wait:
        waitList(screen, event.type())->append(copyWithParent(event, screen));
        // Waiting for an event implies waiting at the end of the content. A second wait event preserves that,
        // not what was set before the first one: undo has always brought back no more than the last value.
        if (event.type() != KyEventType::Ignore)
            preserveAction(screen, KyEventAction::Wait);
        m_addedListenEventList.append(event);
        return true;
    }
    return false;
}

bool KyPreservedEvent::removeEvent(const KyEvent &event, KyScreen *screen)
{
    if (!isOurs(screen))
        return false;
    if (containInList(event, m_removedRaiseEventList) || containInList(event, m_removedListenEventList))
        return false;

    const KyEvent record(event); // the argument may be the very event that is deleted
    if (removeFromList(record, screen->raiseEventList())
        || removeFromList(record, screen->ignoreRaiseEventList())) {
        m_removedRaiseEventList.append(record);
        return true;
    }
    if (removeFromList(record, screen->waitEventList())) {
        m_removedListenEventList.append(record);
        if (screen->waitEventList()->isEmpty())
            preserveAction(screen, KyEventAction::None);
        return true;
    }
    if (removeFromList(record, screen->ignoreWaitEventList())) {
        m_removedListenEventList.append(record);
        return true;
    }
    return false;
}

bool KyPreservedEvent::removeAllEvents(KyEvent::EventDirection direction, KyScreen *screen, bool withIgnore)
{
    // The screen's id is not compared: editors clear screens whose ids they are about to change.
    if (!screen)
        return false;
    bool hasRemoved = false;
    if (direction & KyEvent::Raise) {
        hasRemoved |= takeAll(screen->raiseEventList(), &m_removedRaiseEventList);
        if (withIgnore)
            hasRemoved |= takeAll(screen->ignoreRaiseEventList(), &m_removedRaiseEventList);
    }
    if (direction & KyEvent::Wait) {
        hasRemoved |= takeAll(screen->waitEventList(), &m_removedListenEventList);
        preserveAction(screen, KyEventAction::None); // also where there was no event
        if (withIgnore)
            hasRemoved |= takeAll(screen->ignoreWaitEventList(), &m_removedListenEventList);
    }
    return hasRemoved;
}

void KyPreservedEvent::undo(KyScreen *screen)
{
    if (!isOurs(screen))
        return;
    removeRaised(m_addedRaiseEventList, screen);
    removeAwaited(m_addedListenEventList, screen);
    restoreRaised(m_removedRaiseEventList, screen);
    restoreAwaited(m_removedListenEventList, screen);
    swapAction(screen);
}

void KyPreservedEvent::redo(KyScreen *screen)
{
    if (!isOurs(screen))
        return;
    removeRaised(m_removedRaiseEventList, screen);
    removeAwaited(m_removedListenEventList, screen);
    restoreRaised(m_addedRaiseEventList, screen);
    restoreAwaited(m_addedListenEventList, screen);
    swapAction(screen);
}

bool KyPreservedEvent::containInList(const KyEvent &event, const QList<KyEvent> &events)
{
    return std::any_of(events.cbegin(), events.cend(), [&event](const KyEvent &other) {
        return event.isMatch(other);
    });
}

bool KyPreservedEvent::containInList(const KyEvent &event, QList<KyEvent *> *events)
{
    return events && std::any_of(events->cbegin(), events->cend(), [&event](const KyEvent *other) {
               return event.isMatch(other);
           });
}

bool KyPreservedEvent::removeFromList(const KyEvent &event, QList<KyEvent *> *events)
{
    if (!events)
        return false;
    const auto match = std::find_if(events->begin(), events->end(), [&event](const KyEvent *other) {
        return event.isMatch(other);
    });
    if (match == events->end())
        return false;
    KyEvent *removed = *match;
    events->erase(match);
    delete removed;
    return true;
}

bool KyPreservedEvent::isOurs(const KyScreen *screen) const
{
    return screen && screen->id() == m_screenId;
}

/** Keeps the screen's media-finished action and sets \a action in its place. */
void KyPreservedEvent::preserveAction(KyScreen *screen, KyEventAction::EventAction action)
{
    m_preservedMediaFinishedAction = screen->mediaFinishedAction();
    screen->setMediaFinishedAction(action);
}

/**
 * Exchanges the action with the preserved one, on every undo and redo, also of a step that never preserved
 * any: the first undo of such a step then sets none, and its redo brings the action back.
 */
void KyPreservedEvent::swapAction(KyScreen *screen)
{
    const int preserved = m_preservedMediaFinishedAction;
    preserveAction(screen, static_cast<KyEventAction::EventAction>(preserved));
}

} // namespace Kyte
