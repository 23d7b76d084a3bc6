#include "PickerWindow.h"

#include <KyScreen.h>
#include <KyStage.h>
#include <KyStageListWidgetItem.h>
#include <KyStagePreview.h>
#include <KyStageTemplate.h>

#include <QGridLayout>
#include <QLabel>
#include <QListWidget>
#include <QMetaObject>

using namespace Kyte;

static const QSize ICON_SIZE(128, 128);
static const QColor SCREEN_COLORS[] = {QColor(40, 70, 120), QColor(110, 60, 90), QColor(220, 200, 120)};

PickerWindow::PickerWindow(QWidget *parent)
    : QWidget(parent)
    , m_list(new QListWidget(this))
    , m_preview(new KyStagePreview(this, Qt::WindowFlags()))
    , m_description(new QLabel(this))
    , m_builder(new KyStageTemplate(nullptr)) // an object with a parent could not be moved
{
    setWindowTitle(tr("New stage"));
    resize(960, 640);
    m_list->setIconSize(ICON_SIZE);
    m_list->setWordWrap(true);
    m_list->setFixedWidth(360);
    m_description->setWordWrap(true);
    m_description->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    m_description->setMinimumHeight(110);

    auto *layout = new QGridLayout(this);
    layout->addWidget(m_list, 0, 0, 2, 1);
    layout->addWidget(m_preview, 0, 1);
    layout->addWidget(m_description, 1, 1);
    layout->setColumnStretch(1, 1);
    layout->setRowStretch(0, 1);

    connect(m_list, SIGNAL(currentItemChanged(QListWidgetItem *, QListWidgetItem *)), this,
            SLOT(onCurrentItemChanged(QListWidgetItem *)));
    connect(m_builder, SIGNAL(itemCreated(KyStageListWidgetItem *)), this,
            SLOT(onItemCreated(KyStageListWidgetItem *)));
    connect(m_builder, SIGNAL(creatingItemListFinished()), this, SIGNAL(filled()));
    m_builder->moveToThread(&m_thread);
    m_thread.start();
    QMetaObject::invokeMethod(m_builder, "start", Qt::QueuedConnection);
}

PickerWindow::~PickerWindow()
{
    m_builder->abort();
    m_thread.quit();
    m_thread.wait();
    // Items that never arrived belong to nobody: those without a list are still the builder's to delete.
    const QList<KyStageListWidgetItem *> items = m_builder->listItemList();
    for (KyStageListWidgetItem *item : items) {
        if (!item->listWidget())
            delete item;
    }
    delete m_builder;
}

void PickerWindow::onItemCreated(KyStageListWidgetItem *item)
{
    m_list->addItem(item); // which owns it from now on
    if (m_list->count() == 1)
        m_list->setCurrentItem(item);
}

void PickerWindow::onCurrentItemChanged(QListWidgetItem *item)
{
    if (!item || item->type() != KyStageListWidgetItem::Default_Type)
        return;
    const auto *stageItem = static_cast<KyStageListWidgetItem *>(item);
    KyStage stage(*stageItem->stage());
    // All screens of a template are black; colours tell them apart.
    stage.setBackgroundColor(QColor(30, 34, 40));
    int number = 0;
    const QList<KyScreen *> screens = stage.screenList();
    for (KyScreen *screen : screens)
        screen->setBackgoundColor(SCREEN_COLORS[number++ % 3]);
    m_preview->setStage(stage);
    m_description->setText(stageItem->description());
}
