#include "KyEvent.h"

namespace Kyte {

KyEvent::KyEvent(EventDirection direction, KyEventType::EventType type, KyScreen *parent)
    : m_direction(direction)
    , m_type(type)
    , m_parent(parent)
{
}

KyEvent::EventDirection KyEvent::direction() const
{
    return m_direction;
}

void KyEvent::setDirection(EventDirection direction)
{
    m_direction = direction;
}

KyEventType::EventType KyEvent::type() const
{
    return m_type;
}

void KyEvent::setType(KyEventType::EventType type)
{
    m_type = type;
}

KyEventAction::EventAction KyEvent::action() const
{
    return m_action;
}

void KyEvent::setAction(KyEventAction::EventAction action)
{
    m_action = action;
}

int KyEvent::senderScreenId() const
{
    return m_senderScreenId;
}

void KyEvent::setSenderScreenId(int screenId)
{
    m_senderScreenId = screenId;
}

int KyEvent::contentNumber() const
{
    return m_contentNumber;
}

void KyEvent::setContentNumber(int number)
{
    m_contentNumber = number;
}

int KyEvent::elapsedTime() const
{
    return m_elapsedTime;
}

void KyEvent::setElapsedTime(int milliseconds)
{
    m_elapsedTime = milliseconds;
}

KyScreen *KyEvent::parent() const
{
    return m_parent;
}

void KyEvent::setParent(KyScreen *parent)
{
    m_parent = parent;
}

bool KyEvent::isMatch(const KyEvent &other) const
{
    return m_direction == other.m_direction && m_type == other.m_type
        && m_senderScreenId == other.m_senderScreenId && m_elapsedTime == other.m_elapsedTime;
}

bool KyEvent::isMatch(const KyEvent *other) const
{
    return other && isMatch(*other);
}

} // namespace Kyte
