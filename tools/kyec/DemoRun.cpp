#include "DemoRun.h"

#include "DestinationTables.h"
#include "KyecOutput.h"
#include "KyecPlatform.h"
#include "SampleEnvironment.h"

#include <KyDestination.h>
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

static bool
moveTo(KyDestination *destination, const QStringList &names, int categoryId, KyDestination::DataType type)
{
    const QList<int> ids = SampleEnvironment::destinationIds(names);
    return destination->changeDestinationCategory(ids, categoryId, type) == ids;
}

/** Whether both show the same rows. Passwords are left out: each enciphering gives another text. */
static bool isSamePicture(const DestinationPicture &left, const DestinationPicture &right)
{
    return destinationsToJson(left) == destinationsToJson(right)
        && categoriesToJson(left.channels, left.destinations)
        == categoriesToJson(right.channels, right.destinations)
        && categoriesToJson(left.groups, left.destinations)
        == categoriesToJson(right.groups, right.destinations);
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

bool DemoRun::readInNormalMode()
{
    KyDestination destination;
    destination.setDataType(KyDestination::Data_Channel);
    {
        const DemoRecorder recorder(&destination, &m_result.readingSignals);
        const auto read = [&destination] {
            destination.startToRead();
            return destination.lastErrorMessage().isEmpty();
        };
        if (!step(&destination, QStringLiteral("normal mode: init()"),
                  [&] {
                      return destination.init();
                  })
            || !step(&destination, QStringLiteral("startToRead()"), read))
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
    if (!step(&destination, QStringLiteral("setting mode: init()"), [&] {
            return destination.init();
        }))
        return false;
    const QString workingFile = destination.getWorkingDatabaseFilePath();
    takeFingerprint(QStringLiteral("opened for editing"), workingFile, destination);
    if (!editDestinations(&destination))
        return false;
    takeFingerprint(QStringLiteral("edited"), workingFile, destination);
    if (!DestinationReader(&destination).read(&m_edited))
        return fail(destination.lastErrorMessage());
    if (!step(&destination, QStringLiteral("saveData()"), [&] {
            return destination.saveData();
        }))
        return false;
    takeFingerprint(QStringLiteral("saved"), destination.getStandardDatabaseFilePath(), destination);
    m_result.fingerprintAfter = m_result.fingerprints.last().hash;
    return true;
}

bool DemoRun::editDestinations(KyDestination *destination)
{
    static const QStringList entrances{QStringLiteral("Bridge entrance"),   QStringLiteral("Bus stops"),
                                       QStringLiteral("North entrance"),    QStringLiteral("South entrance"),
                                       QStringLiteral("Supermarket, door"), QStringLiteral("Taxi rank")};
    static const QStringList openLate{
        QStringLiteral("Food court, north"), QStringLiteral("Food court, south"),
        QStringLiteral("Kiosk, concourse"),  QStringLiteral("Kiosk, platform 5"),
        QStringLiteral("Soup bar"),          QStringLiteral("Supermarket, till")};
    static const QStringList toConcourse{QStringLiteral("First-aid room"), QStringLiteral("Lost property")};
    static const QStringList toPlatforms{QStringLiteral("Kiosk, platform 5")};

    const QString add = QStringLiteral("add group \"%1\"");
    const QString move = QStringLiteral("move %1 to %2 \"%3\"");
    const auto moveText = [&move](const QStringList &names, const QString &kind, const QString &name) {
        return move.arg(counted(names.size(), QStringLiteral("destination")), kind, name);
    };
    const QString group = QStringLiteral("group");
    const QString channel = QStringLiteral("channel");
    int entrancesId = -1;
    int eveningId = -1;
    return step(destination, add.arg(ENTRANCES),
                [&] {
                    return destination->addNewGroup(ENTRANCES, &entrancesId);
                })
        && step(destination, moveText(entrances, group, ENTRANCES),
                [&] {
                    return moveTo(destination, entrances, entrancesId, KyDestination::Data_Group);
                })
        && step(destination, add.arg(EVENING),
                [&] {
                    return destination->addNewGroup(EVENING, &eveningId);
                })
        && step(destination, moveText(openLate, group, EVENING),
                [&] {
                    return moveTo(destination, openLate, eveningId, KyDestination::Data_Group);
                })
        && step(destination, QStringLiteral("rename group \"%1\" to \"%2\"").arg(EVENING, OPEN_LATE),
                [&] {
                    return destination->renameGroup(eveningId, OPEN_LATE);
                })
        && step(destination, moveText(toConcourse, channel, m_result.before.channelNames.value(CONCOURSE)),
                [&] {
                    return moveTo(destination, toConcourse, CONCOURSE, KyDestination::Data_Channel);
                })
        && step(destination, moveText(toPlatforms, channel, m_result.before.channelNames.value(PLATFORMS)),
                [&] {
                    return moveTo(destination, toPlatforms, PLATFORMS, KyDestination::Data_Channel);
                });
}

bool DemoRun::readBack()
{
    KyDestination destination;
    if (!step(&destination, QStringLiteral("reopen in normal mode: init()"), [&] {
            return destination.init();
        }))
        return false;
    takeFingerprint(QStringLiteral("reopened"), destination.getStandardDatabaseFilePath(), destination);
    if (!DestinationReader(&destination).read(&m_result.after))
        return fail(destination.lastErrorMessage());
    return isSamePicture(m_edited, m_result.after)
        || fail(QStringLiteral("What was read back is not what was edited."));
}

template<typename Action>
bool DemoRun::step(KyDestination *destination, const QString &text, Action action)
{
    QElapsedTimer timer;
    timer.start();
    const bool done = action();
    m_result.steps.append({text, timer.nsecsElapsed() / 1e6});
    return done || fail(QStringLiteral("%1: %2").arg(text, destination->lastErrorMessage()));
}

void DemoRun::takeFingerprint(const QString &moment, const QString &path, const KyDestination &destination)
{
    const QString hash = Path::getHashSha1(path);
    m_result.fingerprints.append(
        {moment, QFileInfo(path).fileName(), hash, hash == destination.reservedDatabaseFileHashSha1()});
}

} // namespace Kyte
