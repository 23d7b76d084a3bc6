#pragma once

#include "KyEditorCommonExport.h"

#include <QIODevice>
#include <QObject>
#include <QPointer>
#include <QProcess>
#include <QProcessEnvironment>
#include <QString>
#include <QStringList>
#include <QTimer>
#include <qwindowdefs.h>

namespace Kyte {

class KyChildProcess;

/**
 * Starts another program, relays the signals of its process with a pointer to itself, and finds the main
 * window of the program by asking for it every 50 ms until there is one or the program has ended.
 *
 * The object belongs to the thread that made it, which has to be the GUI thread where windows are looked for.
 * Its process ends with it. Listeners may delete it, and may start the program again, in any slot. Copies
 * share the process and do not keep it alive; the signals come from the object that started it.
 */
class KYEDITORCOMMON_EXPORT KyExecuteProcess : public QObject
{
    Q_OBJECT

public:
    KyExecuteProcess(const QString &program,
                     const QStringList &arguments,
                     QIODevice::OpenMode mode,
                     QObject *parent);
    /** Copies everything, the process itself included, and takes the parent of \a other. */
    KyExecuteProcess(const KyExecuteProcess &other);
    /** Kills the program if this object has started it. */
    ~KyExecuteProcess() override;

    /** What the next startProcess() starts, and how. An empty environment is that of this application. */
    void setProcessProgram(const QString &program);
    void setProcessArguments(const QStringList &arguments);
    void setProcessEnvironment(const QProcessEnvironment &environment);
    void setProcessOpenMode(QIODevice::OpenMode mode);

    /** The process as started last, null before; it stays this object's. */
    QProcess *process() const;
    /** The main window of the program that was started last; 0 until it is found. */
    WId processWindowHandle() const;

public slots:
    /**
     * Starts the program. One that was started before is killed first, and its end relayed; when a listener
     * to that starts the program again itself, that is the one that stays. Ends with processStarted(null).
     */
    void startProcess();
    /** Kills the program and waits for its end; nothing without one. */
    void closeProcess();
    /** Asks the program to end; nothing without one. */
    void terminateProcess();

signals:
    /** Twice for each start: with null as soon as the start was asked for, with this object when it runs. */
    void processStarted(KyExecuteProcess *exProc);
    void processError(QProcess::ProcessError error, KyExecuteProcess *exProc);
    void processFinished(int exitCode, QProcess::ExitStatus exitStatus, KyExecuteProcess *exProc);
    void processStageChanged(QProcess::ProcessState state, KyExecuteProcess *exProc);
    void windowHandleGotten(WId wid);

private slots:
    void onProcessStarted();
    void onProcessErrorOccured(QProcess::ProcessError error);
    void onProcessFinished(int exitCode, QProcess::ExitStatus exitStatus);
    void onProcessStatateChanged(QProcess::ProcessState newState);
    void onGetWindowHandle();

private:
    void initialize();
    bool forgetProcess();

    QPointer<KyChildProcess> m_process; // owned by the object that started it
    QProcessEnvironment m_environment;
    QString m_program;
    QStringList m_arguments;
    QIODevice::OpenMode m_openMode = QIODevice::NotOpen;
    WId m_windowHandle = 0;
    bool m_isWindowHandleWanted = true;
    QTimer m_windowTimer{this}; // one for all processes: a restart must not make two polls of one
};

} // namespace Kyte
