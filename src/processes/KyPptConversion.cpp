#include "KyPptConversion.h"

#include "KyChildProcess_p.h"
#include "KyConversionCommand_p.h"
#include "KyConversionProtocol_p.h"
#include "KyConversionThread_p.h"

#include <KyProcessInfo.h>

#include <QCoreApplication>
#include <QDebug>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QMutexLocker>
#include <QTimer>

namespace Kyte {

// The extension is part of the name on every system.
static const QString CONVERTER = QStringLiteral("KyPptCnv.exe");
static const QString PRESENTATION_PROGRAM = QStringLiteral("POWERPNT");
static const int CONVERTER_PATIENCE = 3000; // milliseconds that an unwanted converter has to end by itself
static const int FINISHED_DELAY = 10; // milliseconds
static const int THREAD_DELAY = 2 * FINISHED_DELAY; // milliseconds: a delayed finished() is never cut off

KyPptConversion::KyPptConversion(const QString &inputPath,
                                 const QString &outputPath,
                                 bool copyFile,
                                 QObject *parent)
    : QObject(parent)
    , m_inputPath(inputPath)
    , m_outputPath(outputPath)
    , m_copyFile(copyFile)
{
}

KyPptConversion::~KyPptConversion()
{
    KyChildProcess::releaseChildrenOf(this);
}

int KyPptConversion::width() const
{
    return m_width;
}

void KyPptConversion::setWidth(int width)
{
    m_width = width;
}

int KyPptConversion::height() const
{
    return m_height;
}

void KyPptConversion::setHeight(int height)
{
    m_height = height;
}

int KyPptConversion::framesPerSecond() const
{
    return m_framesPerSecond;
}

void KyPptConversion::setFramesPerSecond(int framesPerSecond)
{
    m_framesPerSecond = framesPerSecond;
}

bool KyPptConversion::useTimingsAndNarrations() const
{
    return m_useTimingsAndNarrations;
}

void KyPptConversion::setUseTimingsAndNarrations(bool useTimingsAndNarrations)
{
    m_useTimingsAndNarrations = useTimingsAndNarrations;
}

int KyPptConversion::defaultSlideDuration() const
{
    return m_defaultSlideDuration;
}

void KyPptConversion::setDefaultSlideDuration(int seconds)
{
    m_defaultSlideDuration = seconds;
}

int KyPptConversion::vertResolution() const
{
    return m_vertResolution;
}

void KyPptConversion::setVertResolution(int vertResolution)
{
    m_vertResolution = vertResolution;
}

int KyPptConversion::quality() const
{
    return m_quality;
}

void KyPptConversion::setQuality(int quality)
{
    m_quality = quality;
}

bool KyPptConversion::canceled() const
{
    const QMutexLocker locker(&m_mutex);
    return m_canceled;
}

void KyPptConversion::setCanceled(bool canceled)
{
    const QMutexLocker locker(&m_mutex);
    m_canceled = canceled;
}

int KyPptConversion::getMessageCode(const QString &text, QString *message)
{
    QString collected;
    const int code = ConversionProtocol::parseMessage(text, &collected);
    if (message)
        *message = collected;
    return code;
}

int KyPptConversion::getPercent(const QString &text)
{
    return ConversionProtocol::firstNumber(text);
}

void KyPptConversion::start()
{
    if (m_workers == 0)
        m_asynchronous = false;
    setCanceled(false);
    exec();
}

void KyPptConversion::exec()
{
    const QString converter = QDir(QCoreApplication::applicationDirPath()).absoluteFilePath(CONVERTER);
    if (!QFile::exists(converter))
        return fail(tr("PowerPoint File Conversion Software is Not Found. You should reinstall."));
    const QFileInfo input(m_inputPath);
    if (!input.exists())
        return fail(tr("File \"%1\" is Not found. ").arg(input.fileName()));
    if (!input.isFile())
        return fail(tr("\"%1\" is Not File.").arg(input.fileName()));

    const QDir folder = outputFolder(input);
    if (!folder.exists() && !folder.mkpath(folder.absolutePath()))
        return fail(tr("Can Not create an output folder."));
    if (m_copyFile && !copyInto(folder, input))
        return;
    if (canceled()) {
        endThreadWhenIdle();
        emit aborted();
        return;
    }
    startConverter(converter, folder);
}

QDir KyPptConversion::outputFolder(const QFileInfo &input) const
{
    if (!m_outputPath.isNull())
        return QDir(m_outputPath);
    // In the current directory, wherever the presentation lies.
    return QDir(QDir(QString()).absoluteFilePath(QStringLiteral("%1_ppt").arg(input.completeBaseName())));
}

/** False when the copy failed, which was told, or when a listener has deleted this object. */
bool KyPptConversion::copyInto(const QDir &folder, const QFileInfo &input)
{
    const QPointer<KyPptConversion> self(this);
    emit informationUpdated(tr("Copying the PowerPoint file..."));
    if (!self)
        return false;
    const QFileInfo target(folder, input.fileName());
    if (target.exists() && target == input)
        return true;
    if (target.exists() && !QFile::remove(target.filePath())) {
        fail(tr("Can Not remove the PowerPoint file."));
        return false;
    }
    if (!QFile::copy(input.absoluteFilePath(), target.filePath())) {
        fail(tr("Can Not copy the PowerPoint file."));
        return false;
    }
    return true;
}

void KyPptConversion::startConverter(const QString &converter, const QDir &folder)
{
    KyChildProcess::releaseChildrenOf(this);
    m_process = new KyChildProcess(CONVERTER_PATIENCE, this);
    connect(m_process, SIGNAL(readyReadStandardOutput()), this, SLOT(onReadyRead()));
    connect(m_process, SIGNAL(finished(int, QProcess::ExitStatus)), this,
            SLOT(onProcessFinished(int, QProcess::ExitStatus)));
    connect(m_process, SIGNAL(error(QProcess::ProcessError)), this,
            SLOT(onProcessErrorOccured(QProcess::ProcessError)));
    connect(m_process, SIGNAL(stateChanged(QProcess::ProcessState)), this,
            SLOT(onProcessStateChanged(QProcess::ProcessState)));
    // Nobody may be left to delete this object when the application ends.
    connect(QCoreApplication::instance(), SIGNAL(aboutToQuit()), m_process, SLOT(release()));

    ConversionJob job;
    // The presentation itself, also where there is a copy of it.
    job.inputPath = m_inputPath;
    job.imageFormat = m_imageFormat;
    job.outputFolder = folder.absolutePath();
    job.width = m_width;
    job.height = m_height;
    job.defaultSlideDuration = m_defaultSlideDuration;
    job.vertResolution = m_vertResolution;
    job.framesPerSecond = m_framesPerSecond;
    job.quality = m_quality;
    job.useTimingsAndNarrations = m_useTimingsAndNarrations;

    QStringList arguments = QProcess::splitCommand(conversionCommand(converter, job));
    const QString program = arguments.takeFirst();
    m_process->setProcessEnvironment(QProcessEnvironment::systemEnvironment());
    m_process->start(program, arguments, QIODevice::ReadWrite);
}

/** Tells an error. Nothing of this object may be touched afterwards: a listener may have deleted it. */
void KyPptConversion::fail(const QString &message)
{
    endThreadWhenIdle();
    emit errorOccured(message, true);
}

void KyPptConversion::startAsync()
{
    m_asynchronous = true;
    KyPptConversion *worker = makeWorker();
    KyConversionThread *thread = new KyConversionThread;
    connect(thread, SIGNAL(started()), worker, SLOT(start()));
    // The worker itself ends the thread, see endThreadWhenIdle(): finished() may come while the converter
    // still runs, and does not come after an error or an abort.
    connect(thread, SIGNAL(finished()), worker, SLOT(deleteLater()));
    connect(worker, SIGNAL(destroyed()), thread, SLOT(deleteLater()));
    connect(this, SIGNAL(requestAbort()), worker, SLOT(abort()), Qt::QueuedConnection);
    connect(worker, SIGNAL(aborted()), this, SLOT(onAborted()), Qt::QueuedConnection);
    connect(worker, SIGNAL(errorOccured(QString, bool)), this, SLOT(onErrorOccured(QString, bool)),
            Qt::QueuedConnection);
    connect(worker, SIGNAL(finished()), this, SLOT(onFinished()), Qt::QueuedConnection);
    connect(worker, SIGNAL(informationUpdated(QString)), this, SLOT(onInformationUpdated(QString)),
            Qt::QueuedConnection);
    connect(worker, SIGNAL(progressUpdated(int)), this, SLOT(onProgressUpdated(int)), Qt::QueuedConnection);
    connect(worker, SIGNAL(creationCompleted(QString)), this, SLOT(onCreationCompleted(QString)),
            Qt::QueuedConnection);
    connect(thread, SIGNAL(finished()), this, SLOT(onWorkerEnded()), Qt::QueuedConnection);

    ++m_workers;
    worker->moveToThread(thread);
    thread->start(QThread::InheritPriority);
}

KyPptConversion *KyPptConversion::makeWorker() const
{
    KyPptConversion *worker = new KyPptConversion(m_inputPath, m_outputPath, m_copyFile);
    worker->m_imageFormat = m_imageFormat;
    worker->m_width = m_width;
    worker->m_height = m_height;
    worker->m_useTimingsAndNarrations = m_useTimingsAndNarrations;
    worker->m_defaultSlideDuration = m_defaultSlideDuration;
    worker->m_vertResolution = m_vertResolution;
    worker->m_framesPerSecond = m_framesPerSecond;
    worker->m_quality = m_quality;
    return worker;
}

void KyPptConversion::abort()
{
    setCanceled(true);
    if (m_asynchronous)
        return abortWorkers();

    const QProcess::ProcessState state = m_process ? m_process->state() : QProcess::NotRunning;
    if (state == QProcess::Starting) {
        // A request now might reach it before it is the converter, and be lost.
        connect(m_process, SIGNAL(started()), m_process, SLOT(terminate()), Qt::UniqueConnection);
    } else if (state == QProcess::Running) {
        if (!m_process->isEnding())
            m_process->terminate();
        QList<KyProcessInfo> programs =
            KyProcessInfo::getProcessesByName(PRESENTATION_PROGRAM, nullptr, false);
        for (KyProcessInfo &program : programs)
            program.kill();
    }
    doAborting();
    endThreadWhenIdle();
    emit aborted();
}

/** Workers end by themselves; without any left to answer, this object does. */
void KyPptConversion::abortWorkers()
{
    const bool isAnswered = m_workers > 0;
    m_awaitedAborts += m_workers;
    const QPointer<KyPptConversion> self(this);
    emit requestAbort();
    if (self && !isAnswered)
        emit aborted();
}

void KyPptConversion::onWorkerEnded()
{
    --m_workers;
    if (m_workers > 0 || m_awaitedAborts == 0)
        return;
    // The request came when the worker was ending already.
    m_awaitedAborts = 0;
    emit aborted();
}

/**
 * Of a worker, ends its thread when nothing more can come from here. The end of the converter's process leads
 * here again, whatever came before it.
 */
void KyPptConversion::endThreadWhenIdle()
{
    QThread *workerThread = qobject_cast<KyConversionThread *>(thread());
    const bool isAwaited = m_process && m_process->state() != QProcess::NotRunning
        && m_process->error() != QProcess::FailedToStart;
    if (!workerThread || isAwaited)
        return;
    QTimer::singleShot(THREAD_DELAY, this, [workerThread]() {
        workerThread->quit();
    });
}

void KyPptConversion::doAborting()
{
}

void KyPptConversion::onErrorOccured(QString message, bool abort)
{
    emit errorOccured(message, abort);
}

void KyPptConversion::onInformationUpdated(QString info)
{
    emit informationUpdated(info);
}

void KyPptConversion::onProgressUpdated(int percent)
{
    emit progressUpdated(percent);
}

void KyPptConversion::onAborted()
{
    m_awaitedAborts = qMax(0, m_awaitedAborts - 1);
    emit aborted();
}

void KyPptConversion::onFinished()
{
    emit finished();
}

void KyPptConversion::onCreationCompleted(QString outFolderPath)
{
    emit creationCompleted(outFolderPath);
}

void KyPptConversion::onProcessFinished(int exitCode, QProcess::ExitStatus exitStatus)
{
    const KyChildProcess::Relay relay(sender());
    qDebug() << "exitCode:" << exitCode << " status:" << exitStatus;
    endThreadWhenIdle();
    // A second time on purpose: the converter's own message is the first.
    if (!canceled() && exitCode == 0)
        emit creationCompleted(m_outputPath);
}

void KyPptConversion::onProcessErrorOccured(QProcess::ProcessError error)
{
    const KyChildProcess::Relay relay(sender());
    const int exitCode = m_process ? m_process->exitCode() : 0;
    fail(tr(ConversionProtocol::processErrorText(error, exitCode)));
}

void KyPptConversion::delayEmitFinished()
{
    endThreadWhenIdle();
    emit finished();
}

void KyPptConversion::onReadyRead()
{
    const KyChildProcess::Relay relay(sender());
    qDebug() << "onReadyRead";
    const QByteArray bytes = m_process ? m_process->readAll() : QByteArray();
    QString message;
    // Of several messages that arrive together only the first one counts.
    const ConversionProtocol::Report *report =
        ConversionProtocol::findReport(getMessageCode(QString::fromUtf8(bytes), &message));
    if (!report)
        return;

    const QPointer<KyPptConversion> self(this);
    if (report->hasProgress)
        emit progressUpdated(getPercent(message));
    if (!self)
        return;
    QString text = tr(report->text);
    if (report->argument == ConversionProtocol::Argument::Number)
        text = text.arg(getPercent(message));
    else if (report->argument == ConversionProtocol::Argument::Message)
        text = text.arg(message);
    if (report->kind == ConversionProtocol::Kind::Error)
        return fail(text);
    emit informationUpdated(text);
    if (!self || !report->isCompletion)
        return;
    emit creationCompleted(m_outputPath);
    if (self)
        QTimer::singleShot(FINISHED_DELAY, this, SLOT(delayEmitFinished()));
}

void KyPptConversion::onProcessStateChanged(QProcess::ProcessState state)
{
    qDebug() << "ProcessState Changed:" << state;
}

} // namespace Kyte
