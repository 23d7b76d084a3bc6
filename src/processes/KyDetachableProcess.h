#pragma once

#include "KyEditorCommonExport.h"

#include <QProcess>
#include <QString>
#include <QStringList>

namespace Kyte {

/**
 * A QProcess whose program can be cut loose, so that it goes on when the object is deleted.
 *
 * From then on nobody reads what the program writes. On Unix that would end it, so programs are started with
 * SIGPIPE ignored and get an error from writing instead, as on Windows. As with every QProcess, a slot of
 * errorOccured() deletes the object with deleteLater().
 */
class KYEDITORCOMMON_EXPORT KyDetachableProcess : public QProcess
{
    Q_OBJECT
    Q_DISABLE_COPY(KyDetachableProcess)

public:
    explicit KyDetachableProcess(QObject *parent);

    /** The program, or without arguments a whole command line, in which double quotes hold blanks together.
     */
    QString program() const;
    void setProgram(const QString &program);
    QStringList arguments() const;
    void setArguments(const QStringList &arguments);

public slots:
    /** Starts the program for reading and writing. */
    void start();
    /**
     * Cuts the program loose, after waiting up to 30 seconds while it is being started, and ends with
     * detached(), also when there is no program because it could not be started.
     */
    void detach();

signals:
    void detached();
    void errorOccured();

protected:
    void setupChildProcess() override;

private slots:
    void onErrorOccured(QProcess::ProcessError error);

private:
    QString m_program;
    QStringList m_arguments;
};

} // namespace Kyte
