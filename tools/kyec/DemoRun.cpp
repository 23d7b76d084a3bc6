#include "DemoRun.h"

#include "DestinationTables.h"
#include "KyecOutput.h"
#include "KyecPlatform.h"
#include "SampleEnvironment.h"

#include <Path.h>

#include <QElapsedTimer>
#include <QFileInfo>

namespace Kyte {

static const QString ENTRANCES = QStringLiteral("Entrances");
static const QString EVENING = QStringLiteral("Evening");
static const QString OPEN_LATE = QStringLiteral("Open late");
static const int CONCOURSE = 0;
static const int PLATFORMS = 1;

static QString itemKind(KyUploadItemInfo::ItemType type)
{
    switch (type) {
    case KyUploadItemInfo::Item_Channel:
        return QStringLiteral("channel");
    case KyUploadItemInfo::Item_Group:
        return QStringLiteral("group");
    case KyUploadItemInfo::Item_Destination:
        break;
    }
    return QStringLiteral("destination");
}

/** Adds a step with the time from its making to its end. */
class StepTimer
{
    Q_DISABLE_COPY(StepTimer)

public:
    StepTimer(DemoResult *result, const QString &text)
        : m_result(result)
        , m_text(text)
    {
        m_timer.start();
    }

    ~StepTimer()
    {
        m_result->steps.append({m_text, double(m_timer.nsecsElapsed()) / 1e6});
    }

private:
    DemoResult *m_result = nullptr;
    QString m_text;
    QElapsedTimer m_timer;
};

/** Whether both show the same rows. Passwords are left out: each enciphering gives another text. */
static bool isSamePicture(const DestinationPicture &left, const DestinationPicture &right)
{
    return destinationsToJson(left) == destinationsToJson(right) && left.channelNames == right.channelNames
        && left.groupNames == right.groupNames;
}

DemoRecorder::DemoRecorder(KyDestination *destination, QList<DemoSignal> *record)
    : m_record(record)
{
    connect(destination, SIGNAL(initialized()), this, SLOT(onInitialized()));
    connect(destination, SIGNAL(itemsHasRead(QList<KyUploadItemInfo>)), this,
            SLOT(onItemsHasRead(QList<KyUploadItemInfo>)));
    connect(destination, SIGNAL(allItemsReadingFinished()), this, SLOT(onAllItemsReadingFinished()));
}

void DemoRecorder::onInitialized()
{
    m_record->append({QStringLiteral("initialized"), 0, QString()});
}

void DemoRecorder::onItemsHasRead(QList<KyUploadItemInfo> itemInfoList)
{
    QString content = QStringLiteral("nothing");
    if (!itemInfoList.isEmpty()) {
        const KyUploadItemInfo &first = itemInfoList.first();
        content = QStringLiteral("%1: %2 … %3")
                      .arg(counted(itemInfoList.size(), itemKind(first.itemType())), first.name(),
                           itemInfoList.last().name());
        if (first.itemType() == KyUploadItemInfo::Item_Destination)
            content.prepend(QStringLiteral("batch %1, ").arg(++m_batches));
    }
    m_record->append({QStringLiteral("itemsHasRead"), itemInfoList.size(), content});
}

void DemoRecorder::onAllItemsReadingFinished()
{
    m_record->append({QStringLiteral("allItemsReadingFinished"), 0, QString()});
}

bool DemoRun::run(SampleEnvironment *environment)
{
    if (!environment->create())
        return fail(environment->lastErrorMessage());
    setConfigFile(environment->configFile());
    return readInNormalMode() && editInSettingMode() && readBack();
}

QString DemoRun::lastErrorMessage() const
{
    return m_lastErrorMessage;
}

DemoResult DemoRun::result() const
{
    return m_result;
}

bool DemoRun::fail(const QString &message)
{
    m_lastErrorMessage = message;
    return false;
}

bool DemoRun::open(KyDestination *destination, const QString &text)
{
    const StepTimer timer(&m_result, text);
    return destination->init() || fail(destination->lastErrorMessage());
}

bool DemoRun::startToRead(KyDestination *destination)
{
    const StepTimer timer(&m_result, QStringLiteral("startToRead()"));
    destination->startToRead();
    return destination->lastErrorMessage().isEmpty() || fail(destination->lastErrorMessage());
}

bool DemoRun::addGroup(KyDestination *destination, const QString &name, int *id)
{
    const StepTimer timer(&m_result, QStringLiteral("add group \"%1\"").arg(name));
    return destination->addNewGroup(name, id) || fail(destination->lastErrorMessage());
}

bool DemoRun::renameGroup(KyDestination *destination, int id, const QString &from, const QString &to)
{
    const StepTimer timer(&m_result, QStringLiteral("rename group \"%1\" to \"%2\"").arg(from, to));
    return destination->renameGroup(id, to) || fail(destination->lastErrorMessage());
}

/** Moves the destinations \a names to the channel or group \a id, which is called \a category. */
bool DemoRun::move(KyDestination *destination,
                   const QString &names,
                   KyDestination::DataType type,
                   int id,
                   const QString &category)
{
    const QList<int> ids = SampleEnvironment::destinationIds(names);
    const QString kind =
        type == KyDestination::Data_Group ? QStringLiteral("group") : QStringLiteral("channel");
    const StepTimer timer(&m_result,
                          QStringLiteral("move %1 to %2 \"%3\"")
                              .arg(counted(ids.size(), QStringLiteral("destination")), kind, category));
    return destination->changeDestinationCategory(ids, id, type) == ids
        || fail(destination->lastErrorMessage());
}

bool DemoRun::save(KyDestination *destination)
{
    const StepTimer timer(&m_result, QStringLiteral("saveData()"));
    return destination->saveData() || fail(destination->lastErrorMessage());
}

bool DemoRun::readInNormalMode()
{
    KyDestination destination;
    destination.setDataType(KyDestination::Data_Channel);
    {
        const DemoRecorder recorder(&destination, &m_result.readingSignals);
        if (!open(&destination, QStringLiteral("normal mode: init()")) || !startToRead(&destination))
            return false;
    }
    takeFingerprint(QStringLiteral("before editing"), destination.getStandardDatabaseFilePath(), destination);
    m_result.fingerprintBefore = m_result.fingerprints.last().hash;
    return DestinationReader(&destination).read(&m_result.before) || fail(destination.lastErrorMessage());
}

bool DemoRun::editInSettingMode()
{
    KyDestination destination;
    destination.setSettingMode(true);
    if (!open(&destination, QStringLiteral("setting mode: init()")))
        return false;
    const QString workingFile = destination.getWorkingDatabaseFilePath();
    takeFingerprint(QStringLiteral("opened for editing"), workingFile, destination);
    if (!editDestinations(&destination))
        return false;
    takeFingerprint(QStringLiteral("edited"), workingFile, destination);
    if (!DestinationReader(&destination).read(&m_edited))
        return fail(destination.lastErrorMessage());
    if (!save(&destination))
        return false;
    takeFingerprint(QStringLiteral("saved"), destination.getStandardDatabaseFilePath(), destination);
    m_result.fingerprintAfter = m_result.fingerprints.last().hash;
    return true;
}

bool DemoRun::editDestinations(KyDestination *destination)
{
    const QString entrances = QStringLiteral("Bridge entrance;Bus stops;North entrance;South entrance;"
                                             "Supermarket, door;Taxi rank");
    const QString openLate = QStringLiteral("Food court, north;Food court, south;Kiosk, concourse;"
                                            "Kiosk, platform 5;Soup bar;Supermarket, till");
    const QString toConcourse = QStringLiteral("First-aid room;Lost property");
    const QString toPlatforms = QStringLiteral("Kiosk, platform 5");
    const QMap<int, QString> &channels = m_result.before.channelNames;
    int entrancesId = -1;
    int eveningId = -1;
    return addGroup(destination, ENTRANCES, &entrancesId)
        && move(destination, entrances, KyDestination::Data_Group, entrancesId, ENTRANCES)
        && addGroup(destination, EVENING, &eveningId)
        && move(destination, openLate, KyDestination::Data_Group, eveningId, EVENING)
        && renameGroup(destination, eveningId, EVENING, OPEN_LATE)
        && move(destination, toConcourse, KyDestination::Data_Channel, CONCOURSE, channels.value(CONCOURSE))
        && move(destination, toPlatforms, KyDestination::Data_Channel, PLATFORMS, channels.value(PLATFORMS));
}

bool DemoRun::readBack()
{
    KyDestination destination;
    if (!open(&destination, QStringLiteral("reopen in normal mode: init()")))
        return false;
    takeFingerprint(QStringLiteral("reopened"), destination.getStandardDatabaseFilePath(), destination);
    if (!DestinationReader(&destination).read(&m_result.after))
        return fail(destination.lastErrorMessage());
    return isSamePicture(m_edited, m_result.after)
        || fail(QStringLiteral("What was read back is not what was edited."));
}

void DemoRun::takeFingerprint(const QString &moment, const QString &path, const KyDestination &destination)
{
    const QString hash = Path::getHashSha1(path);
    m_result.fingerprints.append(
        {moment, QFileInfo(path).fileName(), hash, hash == destination.reservedDatabaseFileHashSha1()});
}

} // namespace Kyte
