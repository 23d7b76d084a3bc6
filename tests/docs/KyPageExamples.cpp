#include "KyPageExamples.h"

#include <KyDestination.h>
#include <KyDetachableProcess.h>
#include <KyEditorCommon.h>
#include <KyEditorConfig.h>
#include <KyEditorUserConfig.h>
#include <KyExecuteProcess.h>
#include <KyFileSystemModel.h>
#include <KyIconReaderAsync.h>
#include <KyPptConversion.h>
#include <KyPreservedEvent.h>
#include <KyScreen.h>
#include <KyStageTemplate.h>
#include <KySvgReader.h>

#include <QApplication>
#include <QProgressBar>
#include <QThread>
#include <QTreeView>

#include <memory>

namespace Kyte {

void KyPageExamples::prepareApplication()
{
    QApplication::setAttribute(Qt::AA_EnableHighDpiScaling);
    QApplication::setAttribute(Qt::AA_UseHighDpiPixmaps);
}

bool KyPageExamples::fail(const QString &message)
{
    errors.append(message);
    return false;
}

bool KyPageExamples::configuration(QString *result)
{
    if (!KyEditorConfig::readStandardConfigFile() && !KyEditorConfig::createDefaultEnvironment())
        return fail(tr("There is no configuration, and none can be made."));
    const QString background = KyEditorConfig::getAbsolutePath("images/background.png"); // in the data folder
    const QString stored = KyEditorConfig::getRelativePath(background); // as it is kept in files
    *result = stored;
    return true;
}

void KyPageExamples::settings(const QString &folder)
{
    KyEditorUserConfig::beginGroup("uploader");
    KyEditorUserConfig::setValue("lastFolder", folder);
    KyEditorUserConfig::endGroup();
    KyEditorUserConfig::sync(); // on disk now, not only when the event loop comes to it
}

bool KyPageExamples::destinations()
{
    KyDestination destination;
    destination.setSettingMode(true); // edits go to a copy until they are saved
    connect(&destination, SIGNAL(itemsHasRead(QList<KyUploadItemInfo>)), this,
            SLOT(onItemsHasRead(QList<KyUploadItemInfo>)));
    if (!destination.init())
        return fail(destination.lastErrorMessage());
    destination.startToRead(); // the channels, then the destinations in lists of ten
    int group = -1;
    if (!destination.addNewGroup("Entrances", &group))
        return fail(destination.lastErrorMessage());
    destination.changeDestinationCategory({1, 2}, group, KyDestination::Data_Group);
    if (!destination.saveData())
        return fail(destination.lastErrorMessage());
    return true;
}

void KyPageExamples::onItemsHasRead(const QList<KyUploadItemInfo> &items)
{
    itemCount += items.size();
}

QStringList KyPageExamples::names()
{
    QMap<QString, int> used;
    KyEditorCommon::checkName("Screen", 0, &used); // "Screen"
    KyEditorCommon::checkName("Screen", 0, &used); // "Screen (1)"
    KyEditorCommon::checkName("Screen (1)", 0, &used); // "Screen (2)"
    return used.keys();
}

void KyPageExamples::events(const KyEvent &event, KyScreen *screen)
{
    KyPreservedEvent step(screen->id());
    step.addEvent(event, screen); // changes the screen
    step.undo(screen);
    step.redo(screen);
}

void KyPageExamples::mediaLibrary(const QString &library, QTreeView *tree)
{
    auto *model = new KyFileSystemModel(this);
    model->setReadOnly(false); // names can be edited, files dropped
    model->setRefreshDelay(100); // a burst of changes on disk is one refresh
    model->setExclusionNamePattern({"thumbs\\.db"});
    model->setRootPath(library);
    tree->setModel(model); // no proxy in between, see below
}

void KyPageExamples::thumbnails(const QStringList &paths)
{
    auto *reader = new KyIconReaderAsync(paths); // deletes itself at the end
    connect(reader, SIGNAL(iconReadCompleted(QString, QIcon *)), this, SLOT(onIconRead(QString, QIcon *)));
    connect(reader, SIGNAL(iconReadFailed(QString)), this, SLOT(onIconFailed(QString)));
    reader->start();
}

void KyPageExamples::onIconRead(const QString &path, QIcon *icon)
{
    const std::unique_ptr<QIcon> owned(icon);
    read.append(path);
}

void KyPageExamples::onIconFailed(const QString &path)
{
    unread.append(path);
}

QIcon KyPageExamples::svg()
{
    const QIcon icon = KySvgReader::getIcon(":/images/folder_win10.svg", 64, 64, Qt::KeepAspectRatio);
    return icon;
}

void KyPageExamples::templates()
{
    QThread thread;
    thread.start();
    auto *builder = new KyStageTemplate(nullptr);
    connect(builder, SIGNAL(itemCreated(KyStageListWidgetItem *)), this,
            SLOT(onItemCreated(KyStageListWidgetItem *)));
    builder->moveToThread(&thread); // or not: start() works on any thread
    QMetaObject::invokeMethod(builder, "start", Qt::QueuedConnection);
    connect(builder, SIGNAL(creatingItemListFinished()), builder, SLOT(deleteLater()));
    connect(builder, SIGNAL(destroyed()), &thread, SLOT(quit()), Qt::DirectConnection);
    thread.wait();
}

void KyPageExamples::onItemCreated(KyStageListWidgetItem *item)
{
    const std::unique_ptr<KyStageListWidgetItem> owned(item);
    ++stageCount;
}

void KyPageExamples::viewer(const QString &program, const QStringList &arguments)
{
    auto *viewer = new KyExecuteProcess(program, arguments, QIODevice::ReadOnly, this);
    connect(viewer, SIGNAL(windowHandleGotten(WId)), this, SLOT(onViewerShown(WId)));
    connect(viewer, SIGNAL(processFinished(int, QProcess::ExitStatus, KyExecuteProcess *)), this,
            SLOT(onViewerEnded()));
    viewer->startProcess();
}

void KyPageExamples::onViewerShown(WId)
{
    errors.append(QStringLiteral("a program without a window has one"));
}

void KyPageExamples::onViewerEnded()
{
    viewerEnded = true;
}

void KyPageExamples::updater(const QString &program, const QStringList &arguments)
{
    KyDetachableProcess *updater = new KyDetachableProcess(this);
    updater->setProgram(program);
    updater->setArguments(arguments);
    connect(updater, SIGNAL(detached()), updater, SLOT(deleteLater()));
    updater->start();
    updater->detach();
}

void KyPageExamples::conversion(const QString &presentation, const QString &folder)
{
    auto *bar = new QProgressBar;
    connect(this, SIGNAL(destroyed()), bar, SLOT(deleteLater()));
    KyPptConversion *conversion = new KyPptConversion(presentation, folder, false, this);
    connect(conversion, SIGNAL(progressUpdated(int)), bar, SLOT(setValue(int)));
    connect(conversion, SIGNAL(errorOccured(QString, bool)), this, SLOT(onError(QString, bool)));
    connect(conversion, SIGNAL(finished()), conversion, SLOT(deleteLater()));
    conversion->startAsync();
}

void KyPageExamples::onError(const QString &message, bool)
{
    errors.append(message);
}

} // namespace Kyte
