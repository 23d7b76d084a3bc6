#include "KyScreen.h"

#include "KyEvent.h"
#include "KyPluginCommonInterface.h"

namespace Kyte {

KyScreen::KyScreen() = default;

KyScreen::KyScreen(const KyScreen &other)
    : m_id(other.m_id)
    , m_zIndex(other.m_zIndex)
    , m_name(other.m_name)
    , m_rect(other.m_rect)
    , m_type(other.m_type)
    , m_backgoundColor(other.m_backgoundColor)
    , m_plugin(other.m_plugin)
    , m_mediaFinishedAction(other.m_mediaFinishedAction)
    , m_raiseEventList(copyEvents(other.m_raiseEventList))
    , m_ignoreRaiseEventList(copyEvents(other.m_ignoreRaiseEventList))
    , m_waitEventList(copyEvents(other.m_waitEventList))
    , m_ignoreWaitEventList(copyEvents(other.m_ignoreWaitEventList))
{
}

KyScreen::~KyScreen()
{
    qDeleteAll(m_raiseEventList);
    qDeleteAll(m_ignoreRaiseEventList);
    qDeleteAll(m_waitEventList);
    qDeleteAll(m_ignoreWaitEventList);
}

KyScreen &KyScreen::operator=(const KyScreen &other)
{
    if (this == &other)
        return *this;

    m_id = other.m_id;
    m_zIndex = other.m_zIndex;
    m_name = other.m_name;
    m_rect = other.m_rect;
    m_type = other.m_type;
    m_backgoundColor = other.m_backgoundColor;
    m_plugin = other.m_plugin;
    m_mediaFinishedAction = other.m_mediaFinishedAction;
    replaceEvents(&m_raiseEventList, other.m_raiseEventList);
    replaceEvents(&m_ignoreRaiseEventList, other.m_ignoreRaiseEventList);
    replaceEvents(&m_waitEventList, other.m_waitEventList);
    replaceEvents(&m_ignoreWaitEventList, other.m_ignoreWaitEventList);
    return *this;
}

int KyScreen::id() const
{
    return m_id;
}

void KyScreen::setId(int id)
{
    m_id = id;
}

int KyScreen::zIndex() const
{
    return m_zIndex;
}

void KyScreen::setZIndex(int zIndex)
{
    m_zIndex = zIndex;
}

QString KyScreen::name() const
{
    return m_name;
}

void KyScreen::setName(const QString &name)
{
    m_name = name;
}

QRectF KyScreen::rect() const
{
    return m_rect;
}

void KyScreen::setRect(const QRectF &rect)
{
    m_rect = rect;
}

ScreenType::ScreenTypes KyScreen::type() const
{
    return m_type;
}

void KyScreen::setType(ScreenType::ScreenTypes type)
{
    m_type = type;
}

QColor KyScreen::backgoundColor() const
{
    return m_backgoundColor;
}

void KyScreen::setBackgoundColor(const QColor &color)
{
    m_backgoundColor = color;
}

QSharedPointer<KyPluginCommonInterface> KyScreen::plugin() const
{
    return m_plugin;
}

void KyScreen::setPlugin(const QSharedPointer<KyPluginCommonInterface> &plugin)
{
    m_plugin = plugin;
}

KyEventAction::EventAction KyScreen::mediaFinishedAction() const
{
    return m_mediaFinishedAction;
}

void KyScreen::setMediaFinishedAction(const KyEventAction::EventAction &action)
{
    m_mediaFinishedAction = action;
}

QList<KyEvent *> *KyScreen::raiseEventList()
{
    return &m_raiseEventList;
}

QList<KyEvent *> *KyScreen::ignoreRaiseEventList()
{
    return &m_ignoreRaiseEventList;
}

QList<KyEvent *> *KyScreen::waitEventList()
{
    return &m_waitEventList;
}

QList<KyEvent *> *KyScreen::ignoreWaitEventList()
{
    return &m_ignoreWaitEventList;
}

QList<KyEvent *> KyScreen::copyEvents(const QList<KyEvent *> &events)
{
    QList<KyEvent *> copies;
    copies.reserve(events.size());
    for (const KyEvent *event : events) {
        if (!event)
            continue; // the lists are open to everybody
        copies.append(new KyEvent(*event));
        copies.last()->setParent(this);
    }
    return copies;
}

void KyScreen::replaceEvents(QList<KyEvent *> *own, const QList<KyEvent *> &events)
{
    qDeleteAll(*own);
    *own = copyEvents(events);
}

} // namespace Kyte
