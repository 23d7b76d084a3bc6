#pragma once

#include <QProcess>

namespace Kyte {

/**
 * A process that belongs to an object which relays its signals, and which any listener may delete meanwhile.
 * Qt goes on using a QProcess after each of its signals, so that one must not be deleted there: the owner has
 * a Relay in each slot that passes a signal on, and its destructor calls releaseChildrenOf().
 */
class KyChildProcess : public QProcess
{
    Q_OBJECT
    Q_DISABLE_COPY(KyChildProcess)

public:
    /** Marks the process whose signal is being relayed; null where a slot was called without one. */
    class Relay
    {
        Q_DISABLE_COPY(Relay)

    public:
        explicit Relay(QObject *sender);
        ~Relay();

    private:
        KyChildProcess *m_process = nullptr;
    };

    /** \a patience: how many milliseconds the program has to end by itself when the object is deleted. */
    KyChildProcess(int patience, QObject *owner);
    /** Asks the program to end, and kills it when it does not; it has ended afterwards. */
    ~KyChildProcess() override;

    static void releaseChildrenOf(QObject *owner);

    /**
     * Whether the program is gone while Qt still says that it runs, or has not forgotten its id: so in a slot
     * of the signal that reports a crash. There is nothing to wait for then, and its id may not be used.
     */
    bool isEnding() const;

    /** Kills the program and waits for its end, except where it is gone already: that wait never ends. */
    void close() override;

public slots:
    /**
     * Separates the process from its owner and deletes it, at once or, during a relay, from the event loop.
     * Without one it goes with the application object.
     */
    void release();

private:
    int m_patience = 0;
    int m_relays = 0;
};

} // namespace Kyte
