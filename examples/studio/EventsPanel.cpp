#include "EventsPanel.h"

#include "MessageBar.h"
#include "StageDocument.h"

#include <KyEditorCommon.h>
#include <KyScreen.h>

#include <QAction>
#include <QComboBox>
#include <QDoubleSpinBox>
#include <QFormLayout>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QTreeWidget>

using namespace Kyte;

enum EventColumn { EventNameColumn, SenderColumn, ActionColumn, EventColumnCount };

static const int INDEX_ROLE = Qt::UserRole; // in the list of shown events
static const int ANY_SENDER = -1;

static const KyEventType::EventType EVENT_TYPES[] = {KyEventType::Started,
                                                     KyEventType::Paused,
                                                     KyEventType::Finished,
                                                     KyEventType::HeadTransitionFinished,
                                                     KyEventType::TailTransitionStarted,
                                                     KyEventType::TimeElapsed,
                                                     KyEventType::Clicked,
                                                     KyEventType::Ignore};
// None with a content number: contents are not edited here.
static const KyEventAction::EventAction EVENT_ACTIONS[] = {KyEventAction::Start,
                                                           KyEventAction::Pause,
                                                           KyEventAction::Finish,
                                                           KyEventAction::TransitToNextContent,
                                                           KyEventAction::HideScreen,
                                                           KyEventAction::ShowScreen,
                                                           KyEventAction::Repeat,
                                                           KyEventAction::Wait,
                                                           KyEventAction::TransitToSameNumberAsSender};

static QString eventText(const KyEvent &event)
{
    QString name = KyEditorCommon::getLocalStringFromEventType(event.type());
    if (event.type() != KyEventType::TimeElapsed)
        return name;
    return EventsPanel::tr("%1: %2").arg(
        name, KyEditorCommon::getDurationString(event.elapsedTime() / 1000.0, false));
}

EventsPanel::EventsPanel(StageDocument *document, QWidget *parent)
    : QWidget(parent)
    , m_document(document)
    , m_title(new QLabel(this))
    , m_atEnd(new QLabel(this))
    , m_messages(new MessageBar(this))
    , m_tree(new QTreeWidget(this))
{
    m_title->setTextFormat(Qt::PlainText);
    QFont font = m_title->font();
    font.setBold(true);
    m_title->setFont(font);
    m_tree->setObjectName(QStringLiteral("events"));
    m_tree->setColumnCount(EventColumnCount);
    m_tree->setHeaderLabels({tr("Event"), tr("From"), tr("Action")});
    m_tree->header()->setSectionResizeMode(QHeaderView::ResizeToContents);
    m_tree->setRootIsDecorated(false);
    m_tree->setMinimumHeight(110);
    makeForm();

    auto *layout = new QVBoxLayout(this);
    layout->addWidget(m_title);
    layout->addWidget(m_messages);
    layout->addWidget(m_tree, 1);
    layout->addWidget(m_atEnd);
    layout->addWidget(m_form);
    layout->addWidget(m_explanation);
    layout->addWidget(makeButtons());

    connect(m_document, SIGNAL(screensChanged()), this, SLOT(refresh()));
    connect(m_document, SIGNAL(eventsChanged(int)), this, SLOT(onEventsChanged(int)));
    connect(m_tree, SIGNAL(currentItemChanged(QTreeWidgetItem *, QTreeWidgetItem *)), this,
            SLOT(onCurrentItemChanged()));
    refresh();
    onChoiceChanged();
}

void EventsPanel::setScreen(int screenId)
{
    m_screenId = screenId;
    m_messages->clear();
    refresh();
}

void EventsPanel::makeForm()
{
    m_form = new QWidget(this);
    m_direction = new QComboBox(m_form);
    m_type = new QComboBox(m_form);
    m_elapsed = new QDoubleSpinBox(m_form);
    m_sender = new QComboBox(m_form);
    m_action = new QComboBox(m_form);
    m_explanation = new QLabel(this);
    m_direction->setObjectName(QStringLiteral("eventDirection"));
    m_type->setObjectName(QStringLiteral("eventType"));
    m_sender->setObjectName(QStringLiteral("eventSender"));
    m_action->setObjectName(QStringLiteral("eventAction"));
    m_direction->addItem(tr("The screen waits for"), KyEvent::Wait);
    m_direction->addItem(tr("The screen raises"), KyEvent::Raise);
    for (KyEventType::EventType type : EVENT_TYPES)
        m_type->addItem(KyEditorCommon::getLocalStringFromEventType(type), type);
    for (KyEventAction::EventAction action : EVENT_ACTIONS)
        m_action->addItem(KyEditorCommon::getLocalStringFromEventAction(action), action);
    m_elapsed->setRange(0.1, 86400);
    m_elapsed->setDecimals(1);
    m_elapsed->setValue(10);
    m_elapsed->setSuffix(tr(" s"));
    m_explanation->setWordWrap(true);
    m_explanation->setForegroundRole(QPalette::Dark);
    m_explanation->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    m_explanation->setMinimumHeight(4 * m_explanation->fontMetrics().lineSpacing());

    m_formLayout = new QFormLayout(m_form);
    m_formLayout->setContentsMargins(0, 0, 0, 0);
    m_formLayout->addRow(m_direction, m_type);
    m_formLayout->addRow(tr("after"), m_elapsed);
    m_formLayout->addRow(tr("from"), m_sender);
    m_formLayout->addRow(tr("and does"), m_action);
    for (QComboBox *box : {m_direction, m_type, m_action})
        connect(box, SIGNAL(currentIndexChanged(int)), this, SLOT(onChoiceChanged()));
}

QWidget *EventsPanel::makeButtons()
{
    auto *buttons = new QWidget(this);
    m_add = new QPushButton(tr("&Add"), buttons);
    m_remove = new QPushButton(tr("Re&move"), buttons);
    m_removeAll = new QPushButton(tr("Remove a&ll"), buttons);
    m_add->setObjectName(QStringLiteral("addEvent"));
    m_remove->setObjectName(QStringLiteral("removeEvent"));
    m_removeAll->setObjectName(QStringLiteral("removeAllEvents"));
    auto *layout = new QHBoxLayout(buttons);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_add);
    layout->addStretch();
    layout->addWidget(m_remove);
    layout->addWidget(m_removeAll);
    connect(m_add, SIGNAL(clicked()), this, SLOT(addEvent()));
    connect(m_remove, SIGNAL(clicked()), this, SLOT(removeEvent()));
    connect(m_removeAll, SIGNAL(clicked()), this, SLOT(removeAllEvents()));
    auto *removing = new QAction(this);
    removing->setShortcut(QKeySequence::Delete);
    removing->setShortcutContext(Qt::WidgetShortcut);
    m_tree->addAction(removing);
    connect(removing, SIGNAL(triggered()), this, SLOT(removeEvent()));
    return buttons;
}

void EventsPanel::refresh()
{
    KyScreen *screen = m_document->screen(m_screenId);
    m_title->setText(screen ? screen->name() : tr("No screen is chosen."));
    m_form->setEnabled(screen);
    m_add->setEnabled(screen);
    m_shown.clear();
    m_tree->clear();
    m_atEnd->clear();
    fillSenders();
    if (screen) {
        auto *raised = new QTreeWidgetItem(m_tree, {tr("Raises")});
        fill(raised, *screen->raiseEventList() + *screen->ignoreRaiseEventList());
        auto *awaited = new QTreeWidgetItem(m_tree, {tr("Waits for")});
        fill(awaited, *screen->waitEventList() + *screen->ignoreWaitEventList());
        const KyEventAction::EventAction action = screen->mediaFinishedAction();
        m_atEnd->setText(
            action == KyEventAction::None
                ? tr("When its content ends: nothing")
                : tr("When its content ends: %1").arg(KyEditorCommon::getLocalStringFromEventAction(action)));
    }
    m_removeAll->setEnabled(!m_shown.isEmpty());
    onCurrentItemChanged();
}

void EventsPanel::fill(QTreeWidgetItem *heading, const QList<KyEvent *> &events)
{
    heading->setFlags(Qt::ItemIsEnabled);
    heading->setFirstColumnSpanned(true);
    QFont font = m_tree->font();
    font.setBold(true);
    heading->setFont(EventNameColumn, font);
    heading->setExpanded(true);
    if (events.isEmpty()) {
        auto *nothing = new QTreeWidgetItem(heading, {tr("nothing")});
        nothing->setFlags(Qt::NoItemFlags);
    }
    for (const KyEvent *event : events) {
        auto *item = new QTreeWidgetItem(heading, {eventText(*event)});
        item->setData(EventNameColumn, INDEX_ROLE, m_shown.size());
        item->setToolTip(EventNameColumn, KyEditorCommon::getLocalDescriptionFromEventType(event->type()));
        if (event->direction() == KyEvent::Wait) {
            item->setText(SenderColumn, screenName(event->senderScreenId()));
            item->setText(ActionColumn, KyEditorCommon::getLocalStringFromEventAction(event->action()));
            item->setToolTip(ActionColumn,
                             KyEditorCommon::getLocalDescriptionFromEventAction(event->action()));
        }
        m_shown.append(*event);
    }
}

/** The other screens; the choice stays as long as that screen is there. */
void EventsPanel::fillSenders()
{
    const int chosen = m_sender->currentIndex() < 0 ? ANY_SENDER : m_sender->currentData().toInt();
    m_sender->clear();
    m_sender->addItem(tr("any screen"), ANY_SENDER);
    const QList<KyScreen *> screens = m_document->stage().screenList();
    for (const KyScreen *screen : screens) {
        if (screen->id() != m_screenId)
            m_sender->addItem(screen->name(), screen->id());
    }
    m_sender->setCurrentIndex(qMax(0, m_sender->findData(chosen)));
}

void EventsPanel::onEventsChanged(int screenId)
{
    if (screenId == m_screenId)
        refresh();
}

void EventsPanel::onChoiceChanged()
{
    const KyEvent event = chosenEvent();
    m_elapsed->setEnabled(event.type() == KyEventType::TimeElapsed);
    const bool isAnswered = event.direction() == KyEvent::Wait && event.type() != KyEventType::Ignore;
    m_sender->setEnabled(isAnswered);
    m_action->setEnabled(isAnswered);
    QString explanation = KyEditorCommon::getLocalDescriptionFromEventType(event.type());
    if (isAnswered)
        explanation += QLatin1Char('\n') + KyEditorCommon::getLocalDescriptionFromEventAction(event.action());
    m_explanation->setText(explanation);
}

void EventsPanel::onCurrentItemChanged()
{
    const QTreeWidgetItem *item = m_tree->currentItem();
    m_remove->setEnabled(item && item->data(EventNameColumn, INDEX_ROLE).isValid());
}

KyEvent EventsPanel::chosenEvent() const
{
    KyEvent event(static_cast<KyEvent::EventDirection>(m_direction->currentData().toInt()),
                  static_cast<KyEventType::EventType>(m_type->currentData().toInt()));
    if (event.type() == KyEventType::TimeElapsed)
        event.setElapsedTime(qRound(m_elapsed->value() * 1000));
    if (event.direction() == KyEvent::Wait && event.type() != KyEventType::Ignore) {
        event.setSenderScreenId(m_sender->currentData().toInt());
        event.setAction(static_cast<KyEventAction::EventAction>(m_action->currentData().toInt()));
    }
    return event;
}

QString EventsPanel::screenName(int screenId) const
{
    const KyScreen *screen = m_document->screen(screenId);
    return screen ? screen->name() : screenId == ANY_SENDER ? tr("any screen") : tr("a removed screen");
}

void EventsPanel::addEvent()
{
    const KyEvent event = chosenEvent();
    if (m_document->addEvent(m_screenId, event))
        m_messages->clear();
    else
        m_messages->showError(tr("The screen has the event \"%1\" already.").arg(eventText(event)));
}

void EventsPanel::removeEvent()
{
    const QTreeWidgetItem *item = m_tree->currentItem();
    const QVariant index = item ? item->data(EventNameColumn, INDEX_ROLE) : QVariant();
    if (index.isValid())
        m_document->removeEvent(m_screenId, KyEvent(m_shown.at(index.toInt())));
}

void EventsPanel::removeAllEvents()
{
    m_document->removeAllEvents(m_screenId);
}
