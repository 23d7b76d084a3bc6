#include "DestinationStore.h"

#include <KyDestination.h>
#include <Path.h>

#include <QFileInfo>
#include <QFileSystemWatcher>
#include <QTimer>

using namespace Kyte;

static const int NO_CHANNEL = -1;
static const int CHECK_DELAY = 200; // milliseconds: another program writes in several steps

DestinationStore::DestinationStore(QObject *parent)
    : QObject(parent)
    , m_watcher(new QFileSystemWatcher(this))
    , m_checking(new QTimer(this))
{
    qRegisterMetaType<QList<int>>("QList<int>");
    m_checking->setSingleShot(true);
    m_checking->setInterval(CHECK_DELAY);
    connect(m_watcher, SIGNAL(fileChanged(QString)), m_checking, SLOT(start()));
    connect(m_watcher, SIGNAL(directoryChanged(QString)), m_checking, SLOT(start()));
    connect(m_checking, SIGNAL(timeout()), this, SLOT(checkFile()));
}

DestinationStore::~DestinationStore() = default;

void DestinationStore::open()
{
    m_destination = nullptr; // before the next one takes its connection
    m_destination = std::make_unique<KyDestination>();
    m_destination->setSettingMode(true);
    connect(m_destination.get(), SIGNAL(errorOccured(QString)), this, SIGNAL(failed(QString)));
    connect(m_destination.get(), SIGNAL(itemsHasRead(QList<KyUploadItemInfo>)), this,
            SIGNAL(itemsRead(QList<KyUploadItemInfo>)));
    if (!m_destination->init())
        return;
    // What was copied a moment ago; init() tells where it lies.
    m_fileFingerprint = m_reportedFingerprint = fileFingerprint();
    watch();
    emit opened();
    emit editedChanged(false);
    m_destination->readGroups();
    m_destination->startToRead();
    m_destination->readDestinationsInChannel(NO_CHANNEL); // which startToRead() leaves out
    emit readingFinished();
}

void DestinationStore::save(bool overwrite)
{
    if (!m_destination)
        return;
    if (!overwrite && fileFingerprint() != m_fileFingerprint) {
        emit conflictFound();
        return;
    }
    if (!m_destination->saveData()) {
        emit failed(m_destination->lastErrorMessage()); // the only operation that does not tell it itself
        return;
    }
    m_fileFingerprint = m_reportedFingerprint = fileFingerprint();
    watch();
    tellEdited();
    emit saved();
}

void DestinationStore::addGroup(const QString &name)
{
    int id = -1;
    if (m_destination && m_destination->addNewGroup(name, &id))
        emit groupAdded(id, name);
    tellEdited();
}

void DestinationStore::renameGroup(int id, const QString &name)
{
    if (m_destination && m_destination->renameGroup(id, name))
        emit groupRenamed(id, name);
    tellEdited();
}

void DestinationStore::removeGroup(int id)
{
    if (m_destination && m_destination->removeGroup(id))
        emit groupRemoved(id);
    tellEdited();
}

void DestinationStore::moveDestinations(const QList<int> &ids, int categoryId, int type)
{
    if (!m_destination)
        return;
    m_destination->clearLastErrorMessage();
    const QList<int> moved =
        m_destination->changeDestinationCategory(ids, categoryId, static_cast<KyDestination::DataType>(type));
    if (!moved.isEmpty())
        emit destinationsMoved(moved, categoryId, type);
    else if (m_destination->lastErrorMessage().isEmpty()) // else it was told
        emit failed(tr("The destinations could not be moved."));
    tellEdited();
}

void DestinationStore::checkFile()
{
    watch();
    const QString fingerprint = fileFingerprint();
    if (!m_destination || fingerprint == m_fileFingerprint || fingerprint == m_reportedFingerprint)
        return;
    m_reportedFingerprint = fingerprint;
    emit fileChanged();
}

/** Of the folder, because a file that is replaced is not watched any more, and of the file where it is. */
void DestinationStore::watch()
{
    if (!m_destination)
        return;
    const QString file = m_destination->getStandardDatabaseFilePath();
    const QString folder = QFileInfo(file).path();
    if (!m_watcher->directories().contains(folder))
        m_watcher->addPath(folder);
    if (!m_watcher->files().contains(file) && QFileInfo::exists(file))
        m_watcher->addPath(file);
}

/** The working copy differs from what it was when it was made or saved. */
void DestinationStore::tellEdited()
{
    if (!m_destination)
        return;
    emit editedChanged(m_destination->currentDatabaseFileHashSha1()
                       != m_destination->reservedDatabaseFileHashSha1());
}

/** Of the file that saving replaces, not of the working copy. Empty while there is none. */
QString DestinationStore::fileFingerprint() const
{
    return Path::getHashSha1(m_destination->getStandardDatabaseFilePath());
}
