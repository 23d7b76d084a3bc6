#include "KyTextEpoch_p.h"

#include <QCoreApplication>
#include <QEvent>
#include <QPointer>

namespace Kyte {

static quint32 epoch = 1;

quint32 KyTextEpoch::current()
{
    static QPointer<KyTextEpoch> watcher;
    static QLocale locale;
    if (!watcher && QCoreApplication::instance()) {
        watcher = new KyTextEpoch(QCoreApplication::instance());
        ++epoch;
    }
    const QLocale current;
    if (locale != current) {
        locale = current;
        ++epoch;
    }
    return epoch;
}

KyTextEpoch::KyTextEpoch(QObject *application)
    : QObject(application)
{
    application->installEventFilter(this);
}

bool KyTextEpoch::eventFilter(QObject *watched, QEvent *event)
{
    if ((event->type() == QEvent::LanguageChange || event->type() == QEvent::LocaleChange)
        && watched == parent())
        ++epoch;
    return QObject::eventFilter(watched, event);
}

} // namespace Kyte
