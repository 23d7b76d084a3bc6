#pragma once

#include <KyEditorCommonExport.h>
#include <KyStageListWidgetItem.h>

#include <QList>
#include <QMutex>
#include <QObject>
#include <QRectF>
#include <QString>

namespace Kyte {

class KyStage;

/**
 * The catalogue of eleven stage templates that a new stage is made from. start() builds it item by item; each
 * item owns a new stage and has its icon drawn. The items belong to the caller unless autoDeleteListItem() is
 * true. An application that puts them into a list widget, which deletes them, takes them out of the list with
 * setListItemList().
 *
 * The stages are as large as the monitor on which the parent widget lies; without a parent widget it is the
 * primary one. The object may be moved to a worker thread and started there; only abort(), canceled() and
 * setCanceled() may then be called from other threads. The stages belong to the GUI thread in any case.
 *
 * The object may be deleted from a slot of each of its signals.
 */
class KYEDITORCOMMON_EXPORT KyStageTemplate : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY(KyStageTemplate)

public:
    explicit KyStageTemplate(QObject *parent = nullptr);
    /** Deletes the items in the list if autoDeleteListItem() is true. */
    ~KyStageTemplate() override;

    /** What abort() sets. It stays set, also after start(), until it is set to false. */
    bool canceled() const;
    void setCanceled(bool canceled);

    /** True while start() runs; for the thread that it runs on. */
    bool isProcessing() const;

    /** False until set. */
    bool autoDeleteListItem() const;
    void setAutoDeleteListItem(bool autoDelete);

    /** The items built so far, in the order of the catalogue. A list that is replaced keeps its items. */
    QList<KyStageListWidgetItem *> listItemList() const;
    void setListItemList(const QList<KyStageListWidgetItem *> &list);

    /**
     * \a rect snapped to whole pixels, edge by edge. Edges are bounded to 2^30 - 1 either way, and what is
     * not a number counts as 0.
     */
    QRectF getRoundRect(QRectF rect);

public slots:
    /**
     * Deletes the items in the list, whatever autoDeleteListItem() says, and builds the catalogue:
     * creatingItemListStarted(), itemCreated() for each item, creatingItemListAborted() if canceled() is true
     * by then, creatingItemListFinished() in every case. Between two items it stops when canceled() is true.
     * Does nothing while it runs already.
     */
    void start();
    /** Makes start() end before the next item. Any thread may call it. */
    void abort();

signals:
    void itemCreated(KyStageListWidgetItem *item);
    void creatingItemListFinished();
    void creatingItemListAborted();
    void creatingItemListStarted();
    /** For listeners of other builders; this one has no errors to tell. */
    void creatingItemListErrorOccured(const QString &error);

private:
    void createListItemList();
    KyStageListWidgetItem *createTemplate(KyStage *stage);
    KyStageListWidgetItem *createLayout(int layout);

    KyStageListWidgetItem *createTemplateOfStageOnly();
    KyStageListWidgetItem *createTemplateOfOneMultiMediaScreen();
    KyStageListWidgetItem *createTemplateOfOneMultiMediaScreenNoMargin();
    KyStageListWidgetItem *createTemplateOfOneMultiMediaScreenAndOneTelopScreen();
    KyStageListWidgetItem *createTemplateOfOneMultiMediaScreenAndOneTelopScreenNoMargin();
    KyStageListWidgetItem *createTemplateOfTwoMultiMediaScreensAndOneTelopScreen();
    KyStageListWidgetItem *createTemplateOfTwoMultiMediaScreensAndOneTelopScreenNoMargin();
    KyStageListWidgetItem *createTemplateOfOneMultiMediaScreenVertical();
    KyStageListWidgetItem *createTemplateOfOneMultiMediaScreenVerticalNoMargin();
    KyStageListWidgetItem *createTemplateOfTwoMultiMediaScreensVertical();
    KyStageListWidgetItem *createTemplateOfTwoMultiMediaScreensVerticalNoMargin();

    QList<KyStageListWidgetItem *> m_listItemList; // owned if m_autoDeleteListItem says so
    bool m_autoDeleteListItem = false;
    bool m_canceled = false; ///< read and written under the mutex only
    mutable QMutex m_mutex;
    bool m_isProcessing = false;
};

} // namespace Kyte
