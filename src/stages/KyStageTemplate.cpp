#include "KyStageTemplate.h"

#include "KyStageGeometry_p.h"
#include "KyStageLayouts_p.h"

#include <KyStage.h>

#include <QApplication>
#include <QDesktopWidget>
#include <QMetaType>
#include <QMutexLocker>
#include <QPointer>
#include <QScreen>
#include <QSet>
#include <QThread>
#include <QWidget>

namespace Kyte {

/** Under the text of the signal, so that an item gets through a queued connection. */
static const int ITEM_TYPE_ID = qRegisterMetaType<KyStageListWidgetItem *>("KyStageListWidgetItem*");

/** The monitor on which \a parent lies, the primary one when that is no widget. */
static QRect monitorGeometry(const QObject *parent)
{
    const auto *widget = qobject_cast<const QWidget *>(parent);
    if (widget && QThread::currentThread() == widget->thread()) // the desktop widget is of the GUI thread
        return QApplication::desktop()->screenGeometry(widget);
    const QScreen *screen = QGuiApplication::primaryScreen();
    return screen ? screen->geometry() : QRect();
}

/** Each once: a list that was handed in may name an item twice. */
static void deleteItems(const QList<KyStageListWidgetItem *> &list)
{
    qDeleteAll(QSet<KyStageListWidgetItem *>(list.cbegin(), list.cend()));
}

KyStageTemplate::KyStageTemplate(QObject *parent)
    : QObject(parent)
{
}

KyStageTemplate::~KyStageTemplate()
{
    if (m_autoDeleteListItem)
        deleteItems(m_listItemList);
}

bool KyStageTemplate::canceled() const
{
    const QMutexLocker locker(&m_mutex);
    return m_canceled;
}

void KyStageTemplate::setCanceled(bool canceled)
{
    const QMutexLocker locker(&m_mutex);
    m_canceled = canceled;
}

bool KyStageTemplate::isProcessing() const
{
    return m_isProcessing;
}

bool KyStageTemplate::autoDeleteListItem() const
{
    return m_autoDeleteListItem;
}

void KyStageTemplate::setAutoDeleteListItem(bool autoDelete)
{
    m_autoDeleteListItem = autoDelete;
}

QList<KyStageListWidgetItem *> KyStageTemplate::listItemList() const
{
    return m_listItemList;
}

void KyStageTemplate::setListItemList(const QList<KyStageListWidgetItem *> &list)
{
    m_listItemList = list;
}

QRectF KyStageTemplate::getRoundRect(QRectF rect)
{
    return StageGeometry::snapped(rect);
}

void KyStageTemplate::start()
{
    if (m_isProcessing)
        return;
    const QPointer<KyStageTemplate> self(this); // null once a listener has deleted the object
    m_isProcessing = true;
    emit creatingItemListStarted();
    if (self)
        createListItemList();
    if (self && canceled())
        emit creatingItemListAborted();
    if (!self)
        return;
    m_isProcessing = false;
    // After an abort as well; the flag stays set until the caller takes it back.
    emit creatingItemListFinished();
}

void KyStageTemplate::abort()
{
    setCanceled(true);
}

void KyStageTemplate::createListItemList()
{
    static KyStageListWidgetItem *(KyStageTemplate::*const CATALOGUE[])() = {
        &KyStageTemplate::createTemplateOfStageOnly,
        &KyStageTemplate::createTemplateOfOneMultiMediaScreen,
        &KyStageTemplate::createTemplateOfOneMultiMediaScreenNoMargin,
        &KyStageTemplate::createTemplateOfOneMultiMediaScreenAndOneTelopScreen,
        &KyStageTemplate::createTemplateOfOneMultiMediaScreenAndOneTelopScreenNoMargin,
        &KyStageTemplate::createTemplateOfTwoMultiMediaScreensAndOneTelopScreen,
        &KyStageTemplate::createTemplateOfTwoMultiMediaScreensAndOneTelopScreenNoMargin,
        &KyStageTemplate::createTemplateOfOneMultiMediaScreenVertical,
        &KyStageTemplate::createTemplateOfOneMultiMediaScreenVerticalNoMargin,
        &KyStageTemplate::createTemplateOfTwoMultiMediaScreensVertical,
        &KyStageTemplate::createTemplateOfTwoMultiMediaScreensVerticalNoMargin,
    };
    const QPointer<KyStageTemplate> self(this);
    QList<KyStageListWidgetItem *> formerItems;
    formerItems.swap(m_listItemList); // a list widget may hold them, and tells its listeners of the deletion
    deleteItems(formerItems);
    for (const auto create : CATALOGUE) {
        if (!self || canceled())
            return;
        KyStageListWidgetItem *item = (this->*create)();
        m_listItemList.append(item);
        emit itemCreated(item);
    }
}

KyStageListWidgetItem *KyStageTemplate::createTemplate(KyStage *stage)
{
    auto *item = new KyStageListWidgetItem(nullptr, KyStageListWidgetItem::Default_Type);
    item->setStage(stage);
    item->createIconImage();
    return item;
}

KyStageListWidgetItem *KyStageTemplate::createLayout(int layout)
{
    const StageLayouts::Translate translate = [](const char *sourceText) {
        return tr(sourceText);
    };
    std::unique_ptr<KyStage> stage = StageLayouts::makeStage(static_cast<StageLayouts::Layout>(layout),
                                                             monitorGeometry(parent()), translate);
    stage->moveToThread(QCoreApplication::instance()->thread()); // where list items are used
    return createTemplate(stage.release());
}

KyStageListWidgetItem *KyStageTemplate::createTemplateOfStageOnly()
{
    return createLayout(StageLayouts::StageOnly);
}

KyStageListWidgetItem *KyStageTemplate::createTemplateOfOneMultiMediaScreen()
{
    return createLayout(StageLayouts::OneMultiMediaScreen);
}

KyStageListWidgetItem *KyStageTemplate::createTemplateOfOneMultiMediaScreenNoMargin()
{
    return createLayout(StageLayouts::OneMultiMediaScreenNoMargin);
}

KyStageListWidgetItem *KyStageTemplate::createTemplateOfOneMultiMediaScreenAndOneTelopScreen()
{
    return createLayout(StageLayouts::OneMultiMediaScreenAndOneTelopScreen);
}

KyStageListWidgetItem *KyStageTemplate::createTemplateOfOneMultiMediaScreenAndOneTelopScreenNoMargin()
{
    return createLayout(StageLayouts::OneMultiMediaScreenAndOneTelopScreenNoMargin);
}

KyStageListWidgetItem *KyStageTemplate::createTemplateOfTwoMultiMediaScreensAndOneTelopScreen()
{
    return createLayout(StageLayouts::TwoMultiMediaScreensAndOneTelopScreen);
}

KyStageListWidgetItem *KyStageTemplate::createTemplateOfTwoMultiMediaScreensAndOneTelopScreenNoMargin()
{
    return createLayout(StageLayouts::TwoMultiMediaScreensAndOneTelopScreenNoMargin);
}

KyStageListWidgetItem *KyStageTemplate::createTemplateOfOneMultiMediaScreenVertical()
{
    return createLayout(StageLayouts::OneMultiMediaScreenVertical);
}

KyStageListWidgetItem *KyStageTemplate::createTemplateOfOneMultiMediaScreenVerticalNoMargin()
{
    return createLayout(StageLayouts::OneMultiMediaScreenVerticalNoMargin);
}

KyStageListWidgetItem *KyStageTemplate::createTemplateOfTwoMultiMediaScreensVertical()
{
    return createLayout(StageLayouts::TwoMultiMediaScreensVertical);
}

KyStageListWidgetItem *KyStageTemplate::createTemplateOfTwoMultiMediaScreensVerticalNoMargin()
{
    return createLayout(StageLayouts::TwoMultiMediaScreensVerticalNoMargin);
}

} // namespace Kyte
