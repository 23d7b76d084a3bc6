#include "KyDockSizePin_p.h"

#include <QDockWidget>

namespace Kyte {

static const int PIN_DURATION = 10; // milliseconds

KyDockSizePin::KyDockSizePin(QDockWidget *dock)
    : QObject(dock)
    , m_dock(dock)
{
    m_timer.setSingleShot(true);
    connect(&m_timer, SIGNAL(timeout()), this, SLOT(onTimeout()));
}

void KyDockSizePin::pin(QDockWidget *dock, const QSize &size)
{
    auto *pin = dock->findChild<KyDockSizePin *>(QString(), Qt::FindDirectChildrenOnly);
    if (!pin)
        pin = new KyDockSizePin(dock);
    if (!pin->m_timer.isActive()) {
        pin->m_minimumSize = dock->minimumSize();
        pin->m_maximumSize = dock->maximumSize();
    }
    pin->m_timer.start(PIN_DURATION);
    dock->setMinimumSize(size);
    dock->setMaximumSize(size);
}

void KyDockSizePin::onTimeout()
{
    m_dock->setMinimumSize(m_minimumSize);
    m_dock->setMaximumSize(m_maximumSize);
}

} // namespace Kyte
