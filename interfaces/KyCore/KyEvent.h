#pragma once

#include <KyCoreExport.h>
#include <KyEventAction.h>
#include <KyEventType.h>

namespace Kyte {

class KyScreen;

/**
 * One event that a screen raises or waits for. A plain value: copying copies every field, the parent
 * included, and the event owns nothing. May be used from any thread, one at a time.
 */
class KYCORE_EXPORT KyEvent
{
public:
    /** Bit flags: both together make 3. The underlying type is fixed, so that such a value stays defined. */
    enum EventDirection : int {
        Raise = 1, ///< the screen sends the event
        Wait = 2 ///< the screen listens to the event
    };

    KyEvent(EventDirection direction, KyEventType::EventType type, KyScreen *parent = nullptr);

    EventDirection direction() const;
    void setDirection(EventDirection direction);

    KyEventType::EventType type() const;
    void setType(KyEventType::EventType type);

    /** What a listening screen does; KyEventAction::None at first. */
    KyEventAction::EventAction action() const;
    void setAction(KyEventAction::EventAction action);

    /** The id of the screen that sends the event, -1 when none is named. */
    int senderScreenId() const;
    void setSenderScreenId(int screenId);

    /** The content that KyEventAction::TransitToSpecifiedContent goes to, -1 when none is named. */
    int contentNumber() const;
    void setContentNumber(int number);

    /** Milliseconds from the start of a content to a KyEventType::TimeElapsed event; 0 at first. */
    int elapsedTime() const;
    void setElapsedTime(int milliseconds);

    /** The screen that holds the event; not owned, may be null. */
    KyScreen *parent() const;
    void setParent(KyScreen *parent);

    /**
     * Whether both denote the same event: equal direction, type, sender screen id and elapsed time. Action,
     * content number and parent say what is done about the event and where it is kept, so they do not count.
     */
    bool isMatch(const KyEvent &other) const;
    /** As above; false for null. */
    bool isMatch(const KyEvent *other) const;

private:
    EventDirection m_direction = Raise;
    KyEventType::EventType m_type = KyEventType::Ignore;
    KyEventAction::EventAction m_action = KyEventAction::None;
    int m_senderScreenId = -1;
    int m_contentNumber = -1;
    int m_elapsedTime = 0;
    KyScreen *m_parent = nullptr;
};

} // namespace Kyte
