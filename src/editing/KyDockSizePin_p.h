#pragma once

#include <QObject>
#include <QSize>
#include <QTimer>

class QDockWidget;

namespace Kyte {

/**
 * Holds a dock at one size for 10 milliseconds and then gives it its former limits back. It lives on the
 * dock. Holding a dock that is held already begins the time anew and keeps the limits from before the first
 * time: those that the dock has now are not its own, and giving them back would hold it for ever.
 */
class KyDockSizePin : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY(KyDockSizePin)

public:
    static void pin(QDockWidget *dock, const QSize &size);

private slots:
    void onTimeout();

private:
    explicit KyDockSizePin(QDockWidget *dock);

    QDockWidget *m_dock = nullptr;
    QSize m_minimumSize;
    QSize m_maximumSize;
    QTimer m_timer;
};

} // namespace Kyte
