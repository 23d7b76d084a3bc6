#pragma once

#include <KyWindowControl.h>

#include <QHash>
#include <QProcess>
#include <QStringList>

#ifdef Q_OS_WIN
#include <windows.h>
#endif

namespace Kyte {
namespace Test {

static const int STARTING_TIME = 30000; ///< milliseconds that a program has for its first window

/** A running program that opens windows and prints "KIND HANDLE" for each; it is killed with this object. */
class WindowProgram
{
    Q_DISABLE_COPY(WindowProgram)

public:
    WindowProgram(const QString &name, const QStringList &arguments)
    {
        m_program.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        m_program.start(QStringLiteral(KYTE_TEST_PROGRAM_DIR "/") + name, arguments);
        m_program.waitForStarted();
        m_process.dwProcessId = decltype(m_process.dwProcessId)(m_program.processId());
    }

    ~WindowProgram()
    {
        end();
    }

    void end()
    {
        m_program.kill();
        m_program.waitForFinished();
    }

    /** The handle that the program has printed for the window \a kind; waits for it, 0 when it does not come.
     */
    quint64 handle(const QString &kind)
    {
        while (!m_handles.contains(kind)
               && (m_program.canReadLine() || m_program.waitForReadyRead(STARTING_TIME))) {
            const QList<QByteArray> words = m_program.readLine().trimmed().split(' ');
            m_handles.insert(QString::fromLatin1(words.first()), words.last().toULongLong());
        }
        return m_handles.value(kind);
    }

    /** Waits until a program without windows has come as far as others with their first one. */
    bool waitUntilReady()
    {
        handle(QStringLiteral("ready"));
        return m_handles.contains(QStringLiteral("ready"));
    }

    quint64 mainWindow()
    {
        return KyWindowControl::getWindowHandle(&m_process, true);
    }

    quint64 anyWindow()
    {
        return KyWindowControl::getWindowHandle(&m_process, false);
    }

    PROCESS_INFORMATION process() const
    {
        return m_process;
    }

private:
    QProcess m_program;
    PROCESS_INFORMATION m_process = {};
    QHash<QString, quint64> m_handles;
};

} // namespace Test
} // namespace Kyte
