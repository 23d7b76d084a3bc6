#include "KyTestMain.h"

#include <KyEvent.h>
#include <KyPluginCommonInterface.h>
#include <KyScreen.h>

using namespace Kyte;

/** Fills each list with events that differ between the lists. */
static void addEvents(KyScreen *screen)
{
    screen->raiseEventList()->append(new KyEvent(KyEvent::Raise, KyEventType::Started, screen));
    screen->raiseEventList()->append(new KyEvent(KyEvent::Raise, KyEventType::Finished, screen));
    screen->ignoreRaiseEventList()->append(new KyEvent(KyEvent::Raise, KyEventType::Ignore, screen));
    screen->waitEventList()->append(new KyEvent(KyEvent::Wait, KyEventType::Clicked, screen));
    screen->ignoreWaitEventList()->append(new KyEvent(KyEvent::Wait, KyEventType::Ignore, screen));
}

static const QList<QList<KyEvent *> *> eventLists(KyScreen *screen)
{
    return {screen->raiseEventList(), screen->ignoreRaiseEventList(), screen->waitEventList(),
            screen->ignoreWaitEventList()};
}

/** Whether each list of \a copy holds matching events of its own that are its children. */
static bool holdsOwnCopies(KyScreen *copy, KyScreen *original)
{
    for (int list = 0; list < 4; ++list) {
        const QList<KyEvent *> copies = *eventLists(copy).at(list);
        const QList<KyEvent *> originals = *eventLists(original).at(list);
        if (copies.size() != originals.size())
            return false;
        for (int i = 0; i < copies.size(); ++i) {
            if (copies.at(i) == originals.at(i) || !copies.at(i)->isMatch(originals.at(i))
                || copies.at(i)->parent() != copy || originals.at(i)->parent() != original)
                return false;
        }
    }
    return true;
}

class tst_KyScreen : public QObject
{
    Q_OBJECT

private slots:
    void enumeration_hasTheValuesThatFilesHold();
    void newScreen_hasItsDefaults();
    void setters_replaceOneField();
    void lists_areTheScreensOwn();
    void copy_takesEveryFieldOver();
    void copy_holdsItsOwnEvents();
    void copy_outlivesTheOriginal();
    void copy_leavesNullEventsOut();
    void assignment_replacesEventsAndKeepsTheLists();
    void assignmentToItself_keepsTheEvents();
    void plugin_livesAsLongAsOneScreenHoldsIt();
};

void tst_KyScreen::enumeration_hasTheValuesThatFilesHold()
{
    QCOMPARE(int(ScreenType::MultiMedia), 1);
    QCOMPARE(int(ScreenType::Telop), 2);
}

void tst_KyScreen::newScreen_hasItsDefaults()
{
    KyScreen screen;

    QCOMPARE(screen.id(), -1);
    QCOMPARE(screen.zIndex(), 0);
    QCOMPARE(screen.name(), QString());
    QCOMPARE(screen.rect(), QRectF());
    QCOMPARE(screen.type(), ScreenType::MultiMedia);
    QCOMPARE(screen.backgoundColor(), QColor(Qt::black));
    QVERIFY(screen.plugin().isNull());
    QCOMPARE(screen.mediaFinishedAction(), KyEventAction::None);
    for (const QList<KyEvent *> *list : eventLists(&screen))
        QVERIFY(list && list->isEmpty());
}

void tst_KyScreen::setters_replaceOneField()
{
    const auto plugin = QSharedPointer<KyPluginCommonInterface>::create();
    KyScreen screen;
    screen.setId(3);
    screen.setZIndex(-2);
    screen.setName(QStringLiteral("Multi 1"));
    screen.setRect(QRectF(1.5, 2, 3, 4.25));
    screen.setType(ScreenType::Telop);
    screen.setBackgoundColor(Qt::red);
    screen.setPlugin(plugin);
    screen.setMediaFinishedAction(KyEventAction::Wait);

    QCOMPARE(screen.id(), 3);
    QCOMPARE(screen.zIndex(), -2);
    QCOMPARE(screen.name(), QStringLiteral("Multi 1"));
    QCOMPARE(screen.rect(), QRectF(1.5, 2, 3, 4.25));
    QCOMPARE(screen.type(), ScreenType::Telop);
    QCOMPARE(screen.backgoundColor(), QColor(Qt::red));
    QCOMPARE(screen.plugin(), plugin);
    QCOMPARE(screen.mediaFinishedAction(), KyEventAction::Wait);
}

void tst_KyScreen::lists_areTheScreensOwn()
{
    KyScreen screen;
    addEvents(&screen);

    QCOMPARE(screen.raiseEventList()->size(), 2);
    QCOMPARE(screen.ignoreRaiseEventList()->size(), 1);
    QCOMPARE(screen.waitEventList()->size(), 1);
    QCOMPARE(screen.ignoreWaitEventList()->size(), 1);
    QCOMPARE(screen.raiseEventList()->at(1)->type(), KyEventType::Finished);
}

void tst_KyScreen::copy_takesEveryFieldOver()
{
    KyScreen screen;
    screen.setId(3);
    screen.setZIndex(4);
    screen.setName(QStringLiteral("Telop 1"));
    screen.setRect(QRectF(1, 2, 3, 4));
    screen.setType(ScreenType::Telop);
    screen.setBackgoundColor(Qt::green);
    screen.setPlugin(QSharedPointer<KyPluginCommonInterface>::create());
    screen.setMediaFinishedAction(KyEventAction::Repeat);

    KyScreen assigned;
    assigned = screen;
    const KyScreen copied(screen);

    for (const KyScreen *copy : {const_cast<const KyScreen *>(&assigned), &copied}) {
        QCOMPARE(copy->id(), 3);
        QCOMPARE(copy->zIndex(), 4);
        QCOMPARE(copy->name(), QStringLiteral("Telop 1"));
        QCOMPARE(copy->rect(), QRectF(1, 2, 3, 4));
        QCOMPARE(copy->type(), ScreenType::Telop);
        QCOMPARE(copy->backgoundColor(), QColor(Qt::green));
        QCOMPARE(copy->plugin(), screen.plugin());
        QCOMPARE(copy->mediaFinishedAction(), KyEventAction::Repeat);
    }
}

void tst_KyScreen::copy_holdsItsOwnEvents()
{
    KyScreen screen;
    addEvents(&screen);

    KyScreen copy(screen);

    QVERIFY(holdsOwnCopies(&copy, &screen));
}

void tst_KyScreen::copy_outlivesTheOriginal()
{
    auto screen = std::make_unique<KyScreen>();
    addEvents(screen.get());
    KyScreen copy(*screen);
    screen.reset();

    QCOMPARE(copy.waitEventList()->first()->type(), KyEventType::Clicked);
    QCOMPARE(copy.waitEventList()->first()->parent(), &copy);
}

void tst_KyScreen::copy_leavesNullEventsOut()
{
    KyScreen screen;
    addEvents(&screen);
    screen.raiseEventList()->prepend(nullptr);

    KyScreen copy(screen);

    QCOMPARE(copy.raiseEventList()->size(), 2);
    QVERIFY(!copy.raiseEventList()->contains(nullptr));
}

void tst_KyScreen::assignment_replacesEventsAndKeepsTheLists()
{
    KyScreen screen;
    addEvents(&screen);
    KyScreen target;
    addEvents(&target);
    addEvents(&target);
    const QList<QList<KyEvent *> *> lists = eventLists(&target);

    target = screen;

    QCOMPARE(eventLists(&target), lists);
    QVERIFY(holdsOwnCopies(&target, &screen));
}

void tst_KyScreen::assignmentToItself_keepsTheEvents()
{
    KyScreen screen;
    addEvents(&screen);
    const QList<KyEvent *> events = *screen.raiseEventList();
    const KyScreen &same = screen;

    screen = same;

    QCOMPARE(*screen.raiseEventList(), events);
    QCOMPARE(screen.raiseEventList()->first()->type(), KyEventType::Started);
}

void tst_KyScreen::plugin_livesAsLongAsOneScreenHoldsIt()
{
    QWeakPointer<KyPluginCommonInterface> watched;
    {
        KyScreen copy;
        {
            KyScreen screen;
            screen.setPlugin(QSharedPointer<KyPluginCommonInterface>::create());
            watched = screen.plugin();
            copy = screen;
        }
        QVERIFY(!watched.isNull());
    }
    QVERIFY(watched.isNull());
}

KYTE_TEST_MAIN(tst_KyScreen)
#include "tst_KyScreen.moc"
