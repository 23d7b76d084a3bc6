#pragma once

#include <KyPptConversion.h>

#include <QObject>
#include <QString>
#include <QStringList>

namespace Kyte {

/** A line of the terminal that shows how far something is, written anew each time. */
class ProgressLine
{
    Q_DISABLE_COPY(ProgressLine)

public:
    /** Shows nothing where the error stream is no terminal. */
    ProgressLine();
    ~ProgressLine();

    /** \a percent below 0: there is no number to show. */
    void show(const QString &text, int percent);
    void clear();

private:
    void write(const QString &line);

    bool m_isShown = false;
    int m_length = 0; // of what stands there
};

/** One conversion of a presentation from its start until its converter has ended. */
class ConversionRun : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY(ConversionRun)

public:
    enum class Output { Images, Video };

    /** \a outputPath: null for the folder that the library chooses. */
    ConversionRun(const QString &inputPath, const QString &outputPath, Output output);

    /** Converts, showing the progress on a terminal. False with lastErrorMessage() when it fails. */
    bool run();
    QString lastErrorMessage() const;

    QString folder() const; ///< absolute; empty when nothing was started
    QStringList files() const; ///< that were made, by name, numbers in order

private slots:
    void onErrorOccured(const QString &message);
    void onInformationUpdated(const QString &info);
    void onProgressUpdated(int percent);
    void onCreationCompleted();
    void onConverterEnded();
    void onInterrupt();

private:
    void fail(const QString &message);
    QStringList stampedFiles() const;

    KyPptConversion m_conversion;
    bool m_isVideo = false;
    bool m_isCompleted = false;
    bool m_isEnding = false; // asked to end, by the user or after an error
    int m_percent = -1;
    int m_exitCode = 0; // of the converter
    QString m_folder;
    QStringList m_formerFiles;
    QString m_lastErrorMessage;
    ProgressLine m_progress;
};

} // namespace Kyte
