#pragma once

#include "KyEditorCommonExport.h"

#include <QMutex>
#include <QObject>
#include <QPointer>
#include <QProcess>
#include <QString>

class QDir;
class QFileInfo;

namespace Kyte {

class KyChildProcess;

/**
 * Turns a presentation into a folder of slide images by running the product's converter, the program
 * "KyPptCnv.exe" beside the application on every system, and tells in signals how far it is.
 *
 * A job ends with finished(), or with aborted(), or with errorOccured(), after which the listener ends it,
 * usually by abort(). A converter that ends without a word, and one whose last message came together with
 * another, ends without finished(). creationCompleted() comes when the converter says that it is done and
 * again when it ends with success.
 *
 * With start() the converter belongs to this object and ends with it; with startAsync() it belongs to a
 * worker on a thread of its own, which goes on when this object is deleted. Either way it ends with the
 * application: it is asked to, and killed after three seconds. Worker and thread end by themselves, at the
 * latest when the converter has ended.
 *
 * The object belongs to the thread that made it, whose event loop must run. canceled() may be asked, and set,
 * from any thread. Listeners may delete the object in any slot.
 */
class KYEDITORCOMMON_EXPORT KyPptConversion : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY(KyPptConversion)
    /** What the converter makes, by its name for it: "png" unless that is changed, "mp4" for a video. */
    Q_PROPERTY(QString imageFormat MEMBER m_imageFormat)

public:
    /**
     * \a outputPath is made if necessary. Null, unlike an empty path, which is the current directory, means
     * a folder "NAME_ppt" in the current directory, NAME being that of the presentation.
     *
     * \a copyFile: a copy of the presentation is put into the folder first, in the place of a file of that
     * name, unless that is the presentation itself.
     */
    KyPptConversion(const QString &inputPath,
                    const QString &outputPath,
                    bool copyFile,
                    QObject *parent = nullptr);
    ~KyPptConversion() override;

    /** Size of the images in pixels. */
    int width() const;
    void setWidth(int width);
    int height() const;
    void setHeight(int height);

    /** What a video is made with; images need none of it. */
    int framesPerSecond() const;
    void setFramesPerSecond(int framesPerSecond);
    bool useTimingsAndNarrations() const;
    void setUseTimingsAndNarrations(bool useTimingsAndNarrations);
    /** Seconds that a slide without a timing of its own is shown. */
    int defaultSlideDuration() const;
    void setDefaultSlideDuration(int seconds);
    int vertResolution() const;
    void setVertResolution(int vertResolution);
    int quality() const;
    void setQuality(int quality);

    /** Whether an abort was requested; start() forgets it. */
    bool canceled() const;
    void setCanceled(bool canceled);

    /**
     * The code of the first message "[code](text)" in \a text, 0 without one. \a message, which may be null,
     * receives its text with the opening parenthesis before it: "(text".
     */
    static int getMessageCode(const QString &text, QString *message);
    /** The first number in \a text; -1 when there is none or it is no int. */
    static int getPercent(const QString &text);

public slots:
    /**
     * Prepares the folder and starts the converter. A converter that this object started before is ended
     * first.
     */
    void start();
    /** The same on a thread of its own, with the settings as they are now. */
    void startAsync();
    /**
     * Asks the converter to end and ends every process with the name of the presentation program, also those
     * that have nothing to do with it. Ends with aborted() in any case, at once or, asynchronously, when the
     * worker has done it. A converter that does not catch the request is reported as crashed after that.
     */
    void abort();

signals:
    /** \a abort: the conversion cannot go on. It is true for every error of this class. */
    void errorOccured(QString message, bool abort = false);
    void informationUpdated(QString info);
    void progressUpdated(int percent);
    void aborted();
    void finished();
    void requestAbort();
    /** \a outFolderPath is the path that was given to the constructor, empty where that was null. */
    void creationCompleted(QString outFolderPath);

private slots:
    void onErrorOccured(QString message, bool abort);
    void onInformationUpdated(QString info);
    void onProgressUpdated(int percent);
    void onAborted();
    void onFinished();
    void onCreationCompleted(QString outFolderPath);
    void onProcessFinished(int exitCode, QProcess::ExitStatus exitStatus);
    void onProcessErrorOccured(QProcess::ProcessError error);
    void delayEmitFinished();
    void onReadyRead();
    void onProcessStateChanged(QProcess::ProcessState state);
    void onWorkerEnded();

private:
    void exec();
    void doAborting();
    void fail(const QString &message);
    QDir outputFolder(const QFileInfo &input) const;
    bool copyInto(const QDir &folder, const QFileInfo &input);
    void startConverter(const QString &converter, const QDir &folder);
    KyPptConversion *makeWorker() const;
    void abortWorkers();
    void endThreadWhenIdle();

    QString m_inputPath;
    QString m_outputPath;
    bool m_copyFile = false;
    QString m_imageFormat = QStringLiteral("png");
    int m_width = 1280;
    int m_height = 720;
    bool m_useTimingsAndNarrations = true;
    int m_defaultSlideDuration = 5;
    int m_vertResolution = 720;
    int m_framesPerSecond = 30;
    int m_quality = 85;
    mutable QMutex m_mutex; // guards m_canceled
    bool m_canceled = false;
    QPointer<KyChildProcess> m_process; // owned
    bool m_asynchronous = false;
    int m_workers = 0; // that this object controls
    int m_awaitedAborts = 0; // requests that no worker has answered yet
};

} // namespace Kyte
