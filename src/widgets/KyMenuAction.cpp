#include "KyMenuAction.h"

namespace Kyte {

KyMenuAction::KyMenuAction(QObject *parent)
    : QAction(parent)
{
    init();
}

KyMenuAction::KyMenuAction(const QString &text, QObject *parent)
    : QAction(text, parent)
{
    init();
}

KyMenuAction::KyMenuAction(const QIcon &icon, const QString &text, QObject *parent)
    : QAction(icon, text, parent)
{
    init();
}

void KyMenuAction::onTriggered(bool checked)
{
    emit triggered(objectName(), checked);
}

void KyMenuAction::init()
{
    connect(this, SIGNAL(triggered(bool)), this, SLOT(onTriggered(bool)));
}

} // namespace Kyte
