#pragma once

#include <KyStageListWidgetItem.h>
#include <KyUploadItemInfo.h>

#include <QIcon>
#include <QObject>
#include <QProcess>
#include <QStringList>

class QListView;
class QTreeView;

namespace Kyte {

class KyEvent;
class KyScreen;

/** What the examples of the pages have around them in an application. Each function holds one, or one page's.
 */
class KyPageExamples : public QObject
{
    Q_OBJECT

public:
    static void prepareApplication();

    bool configuration(QString *stored);
    void settings(const QString &folder);
    bool destinations();
    QStringList names();
    void events(const KyEvent &event, KyScreen *screen);
    void mediaLibrary(const QString &library, QTreeView *tree);
    void thumbnails(const QStringList &paths);
    QIcon svg();
    void templates();
    void viewer(const QString &program, const QStringList &arguments);
    void updater(const QString &program, const QStringList &arguments);
    void conversion(const QString &presentation, const QString &folder);

    int itemCount = 0;
    int stageCount = 0;
    QStringList read; ///< paths whose thumbnails were read
    QStringList unread;
    QStringList errors;
    bool viewerEnded = false;

private slots:
    void onItemsHasRead(const QList<KyUploadItemInfo> &items);
    void onItemCreated(KyStageListWidgetItem *item);
    void onIconRead(const QString &path, QIcon *icon);
    void onIconFailed(const QString &path);
    void onViewerShown(WId window);
    void onViewerEnded();
    void onError(const QString &message, bool abort);

private:
    bool fail(const QString &message);
};

} // namespace Kyte
