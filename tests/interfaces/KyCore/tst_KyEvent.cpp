#include "KyTestMain.h"

#include <KyEvent.h>
#include <KyScreen.h>

#include <functional>

using namespace Kyte;

using Change = std::function<void(KyEvent *)>;
Q_DECLARE_METATYPE(Change)

class tst_KyEvent : public QObject
{
    Q_OBJECT

private slots:
    void enumerations_haveTheValuesThatFilesHold();
    void newEvent_hasItsDefaults();
    void setters_replaceOneField();
    void copy_takesEveryFieldOver();
    void isMatch_data();
    void isMatch();
    void isMatch_ofNull_isFalse();
};

void tst_KyEvent::enumerations_haveTheValuesThatFilesHold()
{
    QCOMPARE(int(KyEvent::Raise), 1);
    QCOMPARE(int(KyEvent::Wait), 2);
    QCOMPARE(KyEvent::Raise | KyEvent::Wait, 3);

    QCOMPARE(int(KyEventType::Ignore), 1);
    QCOMPARE(int(KyEventType::Started), 2);
    QCOMPARE(int(KyEventType::Paused), 3);
    QCOMPARE(int(KyEventType::Finished), 4);
    QCOMPARE(int(KyEventType::HeadTransitionFinished), 5);
    QCOMPARE(int(KyEventType::TailTransitionStarted), 6);
    QCOMPARE(int(KyEventType::TimeElapsed), 7);
    QCOMPARE(int(KyEventType::Clicked), 8);

    QCOMPARE(int(KyEventAction::None), 0);
    QCOMPARE(int(KyEventAction::Start), 1);
    QCOMPARE(int(KyEventAction::Pause), 2);
    QCOMPARE(int(KyEventAction::Finish), 3);
    QCOMPARE(int(KyEventAction::TransitToNextContent), 4);
    QCOMPARE(int(KyEventAction::TransitToSpecifiedContent), 5);
    QCOMPARE(int(KyEventAction::HideScreen), 6);
    QCOMPARE(int(KyEventAction::ShowScreen), 7);
    QCOMPARE(int(KyEventAction::Repeat), 8);
    QCOMPARE(int(KyEventAction::Wait), 9);
    QCOMPARE(int(KyEventAction::TransitToSameNumberAsSender), 10);
}

void tst_KyEvent::newEvent_hasItsDefaults()
{
    const KyEvent event(KyEvent::Wait, KyEventType::Clicked);

    QCOMPARE(event.direction(), KyEvent::Wait);
    QCOMPARE(event.type(), KyEventType::Clicked);
    QCOMPARE(event.action(), KyEventAction::None);
    QCOMPARE(event.senderScreenId(), -1);
    QCOMPARE(event.contentNumber(), -1);
    QCOMPARE(event.elapsedTime(), 0);
    QVERIFY(!event.parent());
}

void tst_KyEvent::setters_replaceOneField()
{
    KyScreen screen;
    KyEvent event(KyEvent::Raise, KyEventType::Started);
    event.setDirection(KyEvent::Wait);
    event.setType(KyEventType::TimeElapsed);
    event.setAction(KyEventAction::ShowScreen);
    event.setSenderScreenId(4);
    event.setContentNumber(5);
    event.setElapsedTime(1500);
    event.setParent(&screen);

    QCOMPARE(event.direction(), KyEvent::Wait);
    QCOMPARE(event.type(), KyEventType::TimeElapsed);
    QCOMPARE(event.action(), KyEventAction::ShowScreen);
    QCOMPARE(event.senderScreenId(), 4);
    QCOMPARE(event.contentNumber(), 5);
    QCOMPARE(event.elapsedTime(), 1500);
    QCOMPARE(event.parent(), &screen);
}

void tst_KyEvent::copy_takesEveryFieldOver()
{
    KyScreen screen;
    KyEvent event(KyEvent::Raise, KyEventType::Paused, &screen);
    event.setAction(KyEventAction::Repeat);
    event.setSenderScreenId(7);
    event.setContentNumber(8);
    event.setElapsedTime(9);

    const KyEvent copy(event);

    QCOMPARE(copy.direction(), KyEvent::Raise);
    QCOMPARE(copy.type(), KyEventType::Paused);
    QCOMPARE(copy.action(), KyEventAction::Repeat);
    QCOMPARE(copy.senderScreenId(), 7);
    QCOMPARE(copy.contentNumber(), 8);
    QCOMPARE(copy.elapsedTime(), 9);
    QCOMPARE(copy.parent(), &screen);
}

void tst_KyEvent::isMatch_data()
{
    static KyScreen screen;
    QTest::addColumn<Change>("change");
    QTest::addColumn<bool>("expected");

    QTest::newRow("same") << Change([](KyEvent *) {}) << true;
    QTest::newRow("direction") << Change([](KyEvent *e) {
        e->setDirection(KyEvent::Raise);
    }) << false;
    QTest::newRow("type") << Change([](KyEvent *e) {
        e->setType(KyEventType::Paused);
    }) << false;
    QTest::newRow("sender") << Change([](KyEvent *e) {
        e->setSenderScreenId(1);
    }) << false;
    QTest::newRow("elapsed time") << Change([](KyEvent *e) {
        e->setElapsedTime(1);
    }) << false;
    QTest::newRow("action") << Change([](KyEvent *e) {
        e->setAction(KyEventAction::Start);
    }) << true;
    QTest::newRow("content number") << Change([](KyEvent *e) {
        e->setContentNumber(1);
    }) << true;
    QTest::newRow("parent") << Change([](KyEvent *e) {
        e->setParent(&screen);
    }) << true;
}

void tst_KyEvent::isMatch()
{
    QFETCH(Change, change);
    QFETCH(bool, expected);
    const KyEvent event(KyEvent::Wait, KyEventType::Started);
    KyEvent other(event);
    change(&other);

    QCOMPARE(event.isMatch(other), expected);
    QCOMPARE(other.isMatch(event), expected);
    QCOMPARE(event.isMatch(&other), expected);
}

void tst_KyEvent::isMatch_ofNull_isFalse()
{
    const KyEvent event(KyEvent::Raise, KyEventType::Ignore);
    const KyEvent *none = nullptr;

    QVERIFY(!event.isMatch(none));
}

KYTE_TEST_MAIN(tst_KyEvent)
#include "tst_KyEvent.moc"
