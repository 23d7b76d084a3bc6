#pragma once

#include <QProcess>

namespace Kyte {

/**
 * A program that the converter uses, with everything that starts below it. When the converter is asked to
 * end, or ends, so do they all.
 */
class KyCnvProcess : public QProcess
{
    Q_OBJECT
    Q_DISABLE_COPY(KyCnvProcess)

public:
    explicit KyCnvProcess(QObject *parent = nullptr);
    ~KyCnvProcess() override;

    /** Runs the event loop until the program has ended. True when it ended by itself with success. */
    bool waitForSuccess();
    /** Ends the program and what it has started, at once. */
    void endTree();

    /** Call once, before anything is started. */
    static void prepareConverter();
    /** Whether the converter was asked to end: SIGTERM, SIGINT, SIGHUP, or the console's close button. */
    static bool isEndRequested();

protected:
    void setupChildProcess() override;

private:
    qint64 m_startedId = 0;
};

} // namespace Kyte
