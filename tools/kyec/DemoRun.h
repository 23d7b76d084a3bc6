#pragma once

#include "DestinationReader.h"

#include <KyDestination.h>

#include <QList>
#include <QObject>
#include <QString>

namespace Kyte {

class SampleEnvironment;

/** Something that was done, and how long it took. */
struct DemoStep
{
    QString text;
    double milliseconds;
};

/** A signal of a KyDestination, and what it brought. */
struct DemoSignal
{
    QString name;
    int items; ///< number of records, 0 for signals without
    QString content;
};

/** The fingerprint of a database file at some moment, and whether it is the one that was reserved last. */
struct DemoFingerprint
{
    QString moment;
    QString file;
    QString hash;
    bool isReserved;
};

struct DemoResult
{
    QList<DemoStep> steps;
    QList<DemoSignal> readingSignals; ///< of the reading in normal mode, in order
    QList<DemoFingerprint> fingerprints; ///< in order; the first is from before the editing
    QString fingerprintBefore; ///< of the database file, before the editing
    QString fingerprintAfter; ///< of the database file, right after the saving
    DestinationPicture before;
    DestinationPicture after; ///< as read back at the end
};

/** Writes down the signals of a KyDestination in order while it lives. */
class DemoRecorder : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY(DemoRecorder)

public:
    DemoRecorder(KyDestination *destination, QList<DemoSignal> *record);

private slots:
    void onInitialized();
    void onItemsHasRead(QList<KyUploadItemInfo> itemInfoList);
    void onAllItemsReadingFinished();

private:
    QList<DemoSignal> *m_record = nullptr;
    int m_batches = 0;
};

/**
 * The library's main job from end to end: what an uploader does to show its list of destinations, an editing
 * round as in the settings of an editor, and the proof that a later start finds what was edited.
 */
class DemoRun
{
    Q_DISABLE_COPY(DemoRun)

public:
    DemoRun() = default;

    /** Makes \a environment, takes its configuration file for the standard one and does everything. */
    bool run(SampleEnvironment *environment);
    QString lastErrorMessage() const;
    DemoResult result() const;

private:
    bool fail(const QString &message);
    bool open(KyDestination *destination, const QString &text);
    bool startToRead(KyDestination *destination);
    bool addGroup(KyDestination *destination, const QString &name, int *id);
    bool renameGroup(KyDestination *destination, int id, const QString &from, const QString &to);
    bool move(KyDestination *destination,
              const QString &names,
              KyDestination::DataType type,
              int id,
              const QString &category);
    bool save(KyDestination *destination);
    bool readInNormalMode();
    bool editInSettingMode();
    bool editDestinations(KyDestination *destination);
    bool readBack();
    void takeFingerprint(const QString &moment, const QString &path, const KyDestination &destination);

    QString m_lastErrorMessage;
    DemoResult m_result;
    DestinationPicture m_edited; // before saving
};

} // namespace Kyte
