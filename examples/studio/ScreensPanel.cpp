#include "ScreensPanel.h"

#include "EmptyHint.h"
#include "NameChecker.h"
#include "StageDocument.h"

#include <KyColorWidget.h>
#include <KyCommonInputNameDialog.h>
#include <KyEditorCommon.h>
#include <KyScreen.h>

#include <QAction>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QScopedValueRollback>
#include <QTableWidget>
#include <QToolBar>

using namespace Kyte;

enum ScreenColumn { ColorColumn, NameColumn, KindColumn, PlaceColumn, ScreenColumnCount };

static const int ID_ROLE = Qt::UserRole;
static const QSize SWATCH_SIZE(36, 22);

ScreensPanel::ScreensPanel(StageDocument *document, QWidget *parent)
    : QWidget(parent)
    , m_document(document)
    , m_title(new QLabel(tr("No stage"), this))
    , m_size(new QLabel(this))
    , m_background(new KyColorWidget(this))
    , m_table(new QTableWidget(0, ScreenColumnCount, this))
{
    QFont font = m_title->font();
    font.setBold(true);
    font.setPointSizeF(font.pointSizeF() * 1.25);
    m_title->setFont(font);
    m_title->setWordWrap(true);
    m_background->setObjectName(QStringLiteral("backgroundColor"));
    m_background->setFixedSize(SWATCH_SIZE);
    m_background->setToolTip(tr("The stage's background colour"));
    m_background->setEnabled(false);
    makeTable();
    makeActions();

    auto *bar = new QToolBar(this);
    bar->addActions({m_addMultimedia, m_addTelop, m_rename, m_remove});
    auto *title = new QHBoxLayout;
    title->addWidget(m_title, 1);
    title->addWidget(new QLabel(tr("Background:"), this));
    title->addWidget(m_background);
    auto *layout = new QVBoxLayout(this);
    layout->addLayout(title);
    layout->addWidget(m_size);
    layout->addWidget(bar);
    layout->addWidget(m_table, 1);

    connect(m_document, SIGNAL(stageReplaced()), this, SLOT(onStageReplaced()));
    connect(m_document, SIGNAL(screensChanged()), this, SLOT(refresh()));
    connect(m_table, SIGNAL(currentCellChanged(int, int, int, int)), this, SLOT(onCurrentCellChanged()));
    connect(m_background, SIGNAL(colorChanged(QColor, QColor)), this, SLOT(onBackgroundColorChanged(QColor)));
}

void ScreensPanel::makeTable()
{
    m_table->setObjectName(QStringLiteral("screens"));
    m_table->setHorizontalHeaderLabels({QString(), tr("Screen"), tr("Kind"), tr("Position and size")});
    m_table->verticalHeader()->hide();
    m_table->horizontalHeader()->setHighlightSections(false);
    m_table->horizontalHeader()->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    m_table->horizontalHeader()->setSectionResizeMode(QHeaderView::ResizeToContents);
    m_table->horizontalHeader()->setSectionResizeMode(NameColumn, QHeaderView::Stretch);
    m_table->setShowGrid(false);
    m_table->setSelectionBehavior(QAbstractItemView::SelectRows);
    m_table->setSelectionMode(QAbstractItemView::SingleSelection);
    m_table->setEditTriggers(QAbstractItemView::NoEditTriggers);
    new EmptyHint(tr("Choose a stage template, or add a screen to the stage."), m_table);
}

void ScreensPanel::makeActions()
{
    m_addMultimedia = new QAction(tr("Add multimedia"), this);
    m_addTelop = new QAction(tr("Add telop"), this);
    m_rename = new QAction(tr("Rename…"), this);
    m_remove = new QAction(tr("Remove"), this);
    m_rename->setShortcut(Qt::Key_F2);
    m_remove->setShortcut(QKeySequence::Delete);
    const QPair<QAction *, const char *> triggers[] = {{m_addMultimedia, SLOT(addMultimediaScreen())},
                                                       {m_addTelop, SLOT(addTelopScreen())},
                                                       {m_rename, SLOT(renameScreen())},
                                                       {m_remove, SLOT(removeScreen())}};
    for (const auto &trigger : triggers) {
        trigger.first->setShortcutContext(Qt::WidgetWithChildrenShortcut);
        trigger.first->setEnabled(false);
        connect(trigger.first, SIGNAL(triggered()), this, trigger.second);
        m_table->addAction(trigger.first);
    }
    m_table->setContextMenuPolicy(Qt::ActionsContextMenu);
}

void ScreensPanel::onStageReplaced()
{
    refresh();
    if (m_table->rowCount() > 0)
        m_table->setCurrentCell(0, NameColumn);
    emit currentScreenChanged(currentScreenId());
}

void ScreensPanel::refresh()
{
    const KyStage &stage = m_document->stage();
    const QList<KyScreen *> screens = stage.screenList();
    m_title->setText(stage.name());
    m_size->setText(tr("%1 × %2 pixels").arg(stage.rect().width()).arg(stage.rect().height()));
    {
        const QScopedValueRollback<bool> filling(m_isFilling, true);
        m_background->setBackColor(stage.backgroundColor());
        m_table->setRowCount(screens.size());
        for (int row = 0; row < screens.size(); ++row)
            fillRow(row, *screens.at(row));
    }
    m_background->setEnabled(true);
    m_addMultimedia->setEnabled(true);
    m_addTelop->setEnabled(true);
    onCurrentCellChanged();
}

/** Cells and swatches stay when they are there already: a swatch may be what brought us here. */
void ScreensPanel::fillRow(int row, const KyScreen &screen)
{
    auto *swatch = qobject_cast<KyColorWidget *>(m_table->cellWidget(row, ColorColumn));
    if (!swatch) {
        swatch = new KyColorWidget(m_table);
        swatch->setMinimumSize(SWATCH_SIZE);
        connect(swatch, SIGNAL(colorChanged(QColor, QColor)), this, SLOT(onScreenColorChanged(QColor)));
        m_table->setCellWidget(row, ColorColumn, swatch);
        for (int column = NameColumn; column < ScreenColumnCount; ++column)
            m_table->setItem(row, column, new QTableWidgetItem);
    }
    swatch->setProperty("screenId", screen.id());
    swatch->setBackColor(screen.backgoundColor());
    swatch->setToolTip(tr("The colour of \"%1\"").arg(screen.name()));
    const QRect rect = screen.rect().toRect();
    m_table->item(row, NameColumn)->setText(screen.name());
    m_table->item(row, NameColumn)->setData(ID_ROLE, screen.id());
    m_table->item(row, KindColumn)
        ->setText(screen.type() == ScreenType::Telop ? tr("Telop") : tr("Multimedia"));
    m_table->item(row, PlaceColumn)
        ->setText(tr("%1, %2   %3 × %4").arg(rect.x()).arg(rect.y()).arg(rect.width()).arg(rect.height()));
}

void ScreensPanel::onCurrentCellChanged()
{
    if (m_isFilling)
        return;
    const int id = currentScreenId();
    m_rename->setEnabled(id >= 0);
    m_remove->setEnabled(id >= 0);
    emit currentScreenChanged(id);
}

void ScreensPanel::onScreenColorChanged(const QColor &color)
{
    if (!m_isFilling)
        m_document->setScreenColor(sender()->property("screenId").toInt(), color);
}

void ScreensPanel::onBackgroundColorChanged(const QColor &color)
{
    if (!m_isFilling)
        m_document->setBackgroundColor(color);
}

void ScreensPanel::addMultimediaScreen()
{
    addScreen(ScreenType::MultiMedia);
}

void ScreensPanel::addTelopScreen()
{
    addScreen(ScreenType::Telop);
}

void ScreensPanel::addScreen(int type)
{
    select(m_document->addScreen(static_cast<ScreenType::ScreenTypes>(type)));
}

void ScreensPanel::renameScreen()
{
    const KyScreen *screen = m_document->screen(currentScreenId());
    if (!screen)
        return;
    QStringList usedNames = m_document->screenNames();
    usedNames.removeOne(screen->name()); // another letter case of its own name is free
    KyCommonInputNameDialog dialog(this, tr("Rename screen"), tr("Name of the screen:"), screen->name(),
                                   new NameChecker(usedNames), true);
    const int id = screen->id();
    if (dialog.exec() == QDialog::Accepted)
        m_document->renameScreen(id, dialog.text().trimmed());
}

void ScreensPanel::removeScreen()
{
    m_document->removeScreen(currentScreenId()); // undoing it is easier than answering a question
}

int ScreensPanel::currentScreenId() const
{
    const QTableWidgetItem *item = m_table->item(m_table->currentRow(), NameColumn);
    return item ? item->data(ID_ROLE).toInt() : -1;
}

void ScreensPanel::select(int screenId)
{
    for (int row = 0; row < m_table->rowCount(); ++row) {
        if (m_table->item(row, NameColumn)->data(ID_ROLE).toInt() == screenId)
            m_table->setCurrentCell(row, NameColumn);
    }
}
