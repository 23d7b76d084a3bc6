#include "TemplatesPanel.h"

#include "EmptyHint.h"
#include "MessageBar.h"

#include <KyStage.h>
#include <KyStageListWidgetItem.h>
#include <KyStageTemplate.h>
#include <KyWaitingImageWidget.h>

#include <QHBoxLayout>
#include <QLabel>
#include <QListWidget>
#include <QMetaObject>
#include <QPushButton>

using namespace Kyte;

static const QSize ICON_SIZE(72, 72);
static const int DESCRIPTION_HEIGHT = 96;

TemplatesPanel::TemplatesPanel(QWidget *parent)
    : QWidget(parent)
    , m_list(new QListWidget(this))
    , m_description(new QLabel(this))
    , m_use(new QPushButton(tr("&New stage from it"), this))
    , m_stop(new QPushButton(tr("&Stop"), this))
    , m_build(new QPushButton(tr("List &again"), this))
    , m_messages(new MessageBar(this))
    , m_waiting(new KyWaitingImageWidget(this))
    , m_builder(new KyStageTemplate(nullptr)) // an object with a parent could not be moved
{
    m_list->setObjectName(QStringLiteral("templates"));
    m_list->setIconSize(ICON_SIZE);
    m_list->setWordWrap(true);
    m_list->setSpacing(1);
    new EmptyHint(tr("No templates are listed."), m_list);
    m_description->setWordWrap(true);
    m_description->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    m_description->setMinimumHeight(DESCRIPTION_HEIGHT);
    m_use->setObjectName(QStringLiteral("useTemplate"));
    m_stop->setObjectName(QStringLiteral("stopTemplates"));
    m_build->setObjectName(QStringLiteral("listTemplates"));
    m_use->setEnabled(false);
    m_stop->setEnabled(false);

    auto *buttons = new QHBoxLayout;
    buttons->addWidget(m_use);
    buttons->addStretch();
    buttons->addWidget(m_waiting);
    buttons->addWidget(m_stop);
    buttons->addWidget(m_build);
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(m_messages);
    layout->addWidget(m_list, 1);
    layout->addWidget(m_description);
    layout->addLayout(buttons);
    m_waiting->hide();

    connect(m_list, SIGNAL(currentItemChanged(QListWidgetItem *, QListWidgetItem *)), this,
            SLOT(onCurrentItemChanged(QListWidgetItem *)));
    connect(m_list, SIGNAL(itemActivated(QListWidgetItem *)), this, SLOT(choose()));
    connect(m_use, SIGNAL(clicked()), this, SLOT(choose()));
    connect(m_stop, SIGNAL(clicked()), this, SLOT(stop()));
    connect(m_build, SIGNAL(clicked()), this, SLOT(build()));
    connect(m_builder, SIGNAL(creatingItemListStarted()), this, SLOT(onStarted()));
    connect(m_builder, SIGNAL(itemCreated(KyStageListWidgetItem *)), this,
            SLOT(onItemCreated(KyStageListWidgetItem *)));
    connect(m_builder, SIGNAL(creatingItemListAborted()), this, SLOT(onAborted()));
    connect(m_builder, SIGNAL(creatingItemListFinished()), this, SLOT(onFinished()));
    m_builder->moveToThread(&m_thread);
    m_thread.start();
}

TemplatesPanel::~TemplatesPanel()
{
    m_builder->abort();
    m_thread.quit();
    m_thread.wait();
    deleteUndelivered();
    delete m_builder;
}

void TemplatesPanel::build()
{
    if (!m_build->isEnabled())
        return;
    m_build->setEnabled(false);
    m_messages->clear();
    m_list->clear();
    // The items are the list's and gone with it; the builder would delete them once more.
    m_builder->setListItemList({});
    m_builder->setCanceled(false);
    QMetaObject::invokeMethod(m_builder, "start", Qt::QueuedConnection);
}

void TemplatesPanel::stop()
{
    m_builder->abort();
}

void TemplatesPanel::onStarted()
{
    m_stop->setEnabled(true);
    m_waiting->show();
}

void TemplatesPanel::onItemCreated(KyStageListWidgetItem *item)
{
    m_list->addItem(item); // which owns it from now on
    item->setToolTip(item->text());
}

void TemplatesPanel::onAborted()
{
    m_messages->showWarning(tr("The listing was stopped before its end."));
}

void TemplatesPanel::onFinished()
{
    m_stop->setEnabled(false);
    m_build->setEnabled(true);
    m_waiting->hide();
    emit filled();
}

void TemplatesPanel::onCurrentItemChanged(QListWidgetItem *)
{
    const KyStage *stage = currentStage();
    m_use->setEnabled(stage);
    m_description->setText(stage ? stage->description() : QString());
    if (stage)
        emit templateSelected(*stage);
}

void TemplatesPanel::choose()
{
    if (const KyStage *stage = currentStage())
        emit templateChosen(*stage);
}

const KyStage *TemplatesPanel::currentStage() const
{
    const QListWidgetItem *item = m_list->currentItem();
    if (!item || item->type() != KyStageListWidgetItem::Default_Type)
        return nullptr;
    return static_cast<const KyStageListWidgetItem *>(item)->stage();
}

/** Items that never arrived belong to nobody: those without a list are still the builder's to delete. */
void TemplatesPanel::deleteUndelivered()
{
    const QList<KyStageListWidgetItem *> items = m_builder->listItemList();
    for (KyStageListWidgetItem *item : items) {
        if (!item->listWidget())
            delete item;
    }
}
