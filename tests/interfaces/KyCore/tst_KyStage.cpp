#include "KyTestMain.h"

#include <KyEvent.h>
#include <KyScreen.h>
#include <KyStage.h>

using namespace Kyte;

static const unsigned int ZOOM_TO_DESKTOP_SIZE = 1;
static const unsigned int CORRECT_SCREEN_POS_SIZE = 2;

static KyScreen *makeScreen(int id)
{
    auto *screen = new KyScreen;
    screen->setId(id);
    screen->waitEventList()->append(new KyEvent(KyEvent::Wait, KyEventType::Clicked, screen));
    return screen;
}

static QList<int> screenIds(const KyStage &stage)
{
    QList<int> ids;
    for (const KyScreen *screen : stage.screenList())
        ids.append(screen->id());
    return ids;
}

class tst_KyStage : public QObject
{
    Q_OBJECT

private slots:
    void newStage_hasItsDefaults();
    void setters_replaceOneField();
    void setOption_data();
    void setOption();
    void hasOption_ofNothing_isFalse();
    void hasOption_ofBoth_needsBoth();
    void setOptions_keepsUnknownBits();
    void screenListPtr_isTheStagesOwn();
    void copy_takesEveryFieldOver();
    void copy_holdsItsOwnScreensInOrder();
    void copy_takesNoParentAndNoObjectNameAlong();
    void copy_leavesNullScreensOut();
    void copy_outlivesTheOriginal();
    void assignment_replacesScreensAndKeepsParentAndList();
    void assignmentToItself_keepsTheScreens();
    void metaObject_isTheClassesOwn();
};

void tst_KyStage::newStage_hasItsDefaults()
{
    KyStage stage;

    QCOMPARE(stage.name(), QString());
    QCOMPARE(stage.description(), QString());
    QCOMPARE(stage.filePath(), QString());
    QCOMPARE(stage.backgroundColor(), QColor(Qt::black));
    QCOMPARE(stage.backgroundImage(), QString());
    QCOMPARE(stage.rect(), QRect());
    QCOMPARE(stage.options(), ZOOM_TO_DESKTOP_SIZE);
    QVERIFY(stage.screenList().isEmpty());
    QVERIFY(!stage.parent());
}

void tst_KyStage::setters_replaceOneField()
{
    KyStage stage;
    stage.setName(QStringLiteral("Lobby"));
    stage.setDescription(QStringLiteral("<b>Lobby</b>"));
    stage.setFilePath(QStringLiteral("/stages/lobby.kystage"));
    stage.setBackgroundColor(Qt::blue);
    stage.setBackgroundImage(QStringLiteral("back.png"));
    stage.setRect(QRect(0, 0, 1920, 1080));
    stage.setOptions(CORRECT_SCREEN_POS_SIZE);

    QCOMPARE(stage.name(), QStringLiteral("Lobby"));
    QCOMPARE(stage.description(), QStringLiteral("<b>Lobby</b>"));
    QCOMPARE(stage.filePath(), QStringLiteral("/stages/lobby.kystage"));
    QCOMPARE(stage.backgroundColor(), QColor(Qt::blue));
    QCOMPARE(stage.backgroundImage(), QStringLiteral("back.png"));
    QCOMPARE(stage.rect(), QRect(0, 0, 1920, 1080));
    QCOMPARE(stage.options(), CORRECT_SCREEN_POS_SIZE);
}

void tst_KyStage::setOption_data()
{
    QTest::addColumn<unsigned int>("before");
    QTest::addColumn<unsigned int>("option");
    QTest::addColumn<bool>("on");
    QTest::addColumn<unsigned int>("after");

    QTest::newRow("set the first") << 0u << ZOOM_TO_DESKTOP_SIZE << true << 1u;
    QTest::newRow("set the second") << 1u << CORRECT_SCREEN_POS_SIZE << true << 3u;
    QTest::newRow("set again") << 3u << CORRECT_SCREEN_POS_SIZE << true << 3u;
    QTest::newRow("clear the first") << 3u << ZOOM_TO_DESKTOP_SIZE << false << 2u;
    QTest::newRow("clear the second") << 3u << CORRECT_SCREEN_POS_SIZE << false << 1u;
    QTest::newRow("clear again") << 1u << CORRECT_SCREEN_POS_SIZE << false << 1u;
}

void tst_KyStage::setOption()
{
    QFETCH(unsigned int, before);
    QFETCH(unsigned int, option);
    QFETCH(bool, on);
    KyStage stage;
    stage.setOptions(before);

    stage.setOption(option, on);

    QTEST(stage.options(), "after");
    QCOMPARE(stage.hasOption(option), on);
}

void tst_KyStage::hasOption_ofNothing_isFalse()
{
    const KyStage stage;

    QVERIFY(!stage.hasOption(0));
}

void tst_KyStage::hasOption_ofBoth_needsBoth()
{
    KyStage stage;
    QVERIFY(!stage.hasOption(ZOOM_TO_DESKTOP_SIZE | CORRECT_SCREEN_POS_SIZE));

    stage.setOption(CORRECT_SCREEN_POS_SIZE, true);
    QVERIFY(stage.hasOption(ZOOM_TO_DESKTOP_SIZE | CORRECT_SCREEN_POS_SIZE));
}

void tst_KyStage::setOptions_keepsUnknownBits()
{
    KyStage stage;
    stage.setOptions(0x80000004u);
    stage.setOption(ZOOM_TO_DESKTOP_SIZE, true);

    QCOMPARE(stage.options(), 0x80000005u);
}

void tst_KyStage::screenListPtr_isTheStagesOwn()
{
    KyStage stage;
    stage.screenListPtr()->append(makeScreen(7));
    stage.screenListPtr()->append(makeScreen(3));

    QCOMPARE(screenIds(stage), QList<int>({7, 3}));
}

void tst_KyStage::copy_takesEveryFieldOver()
{
    KyStage stage;
    stage.setName(QStringLiteral("Lobby"));
    stage.setDescription(QStringLiteral("text"));
    stage.setFilePath(QStringLiteral("/stages/lobby.kystage"));
    stage.setBackgroundColor(Qt::blue);
    stage.setBackgroundImage(QStringLiteral("back.png"));
    stage.setRect(QRect(1, 2, 3, 4));
    stage.setOptions(2);

    KyStage assigned;
    assigned = stage;
    const KyStage copied(stage);

    for (const KyStage *copy : {const_cast<const KyStage *>(&assigned), &copied}) {
        QCOMPARE(copy->name(), stage.name());
        QCOMPARE(copy->description(), stage.description());
        QCOMPARE(copy->filePath(), stage.filePath());
        QCOMPARE(copy->backgroundColor(), stage.backgroundColor());
        QCOMPARE(copy->backgroundImage(), stage.backgroundImage());
        QCOMPARE(copy->rect(), stage.rect());
        QCOMPARE(copy->options(), stage.options());
    }
}

void tst_KyStage::copy_holdsItsOwnScreensInOrder()
{
    KyStage stage;
    stage.screenListPtr()->append(makeScreen(7));
    stage.screenListPtr()->append(makeScreen(3));

    const KyStage copy(stage);

    QCOMPARE(screenIds(copy), QList<int>({7, 3}));
    for (int i = 0; i < 2; ++i) {
        KyScreen *screen = copy.screenList().at(i);
        QVERIFY(screen != stage.screenList().at(i));
        QCOMPARE(screen->waitEventList()->size(), 1);
        QCOMPARE(screen->waitEventList()->first()->parent(), screen);
    }
}

void tst_KyStage::copy_takesNoParentAndNoObjectNameAlong()
{
    QObject parent;
    KyStage stage(&parent);
    stage.setObjectName(QStringLiteral("stage"));

    const KyStage copy(stage);

    QVERIFY(!copy.parent());
    QCOMPARE(copy.objectName(), QString());
    QCOMPARE(parent.children().size(), 1);
}

void tst_KyStage::copy_leavesNullScreensOut()
{
    KyStage stage;
    stage.screenListPtr()->append(nullptr);
    stage.screenListPtr()->append(makeScreen(1));

    QCOMPARE(screenIds(KyStage(stage)), QList<int>({1}));
}

void tst_KyStage::copy_outlivesTheOriginal()
{
    auto stage = std::make_unique<KyStage>();
    stage->screenListPtr()->append(makeScreen(5));
    const KyStage copy(*stage);
    stage.reset();

    QCOMPARE(screenIds(copy), QList<int>({5}));
}

void tst_KyStage::assignment_replacesScreensAndKeepsParentAndList()
{
    QObject parent;
    KyStage target(&parent);
    target.screenListPtr()->append(makeScreen(1));
    const QList<KyScreen *> *list = target.screenListPtr();
    KyStage stage;
    stage.screenListPtr()->append(makeScreen(8));
    stage.screenListPtr()->append(makeScreen(9));

    target = stage;

    QCOMPARE(screenIds(target), QList<int>({8, 9}));
    QVERIFY(target.screenList().first() != stage.screenList().first());
    QCOMPARE(target.screenListPtr(), list);
    QCOMPARE(target.parent(), &parent);
}

void tst_KyStage::assignmentToItself_keepsTheScreens()
{
    KyStage stage;
    stage.screenListPtr()->append(makeScreen(4));
    KyScreen *screen = stage.screenList().first();
    const KyStage &same = stage;

    stage = same;

    QCOMPARE(stage.screenList(), QList<KyScreen *>({screen}));
    QCOMPARE(screen->id(), 4);
}

void tst_KyStage::metaObject_isTheClassesOwn()
{
    KyStage stage;
    QObject *object = &stage;

    QCOMPARE(object->metaObject()->className(), "Kyte::KyStage");
    QCOMPARE(qobject_cast<KyStage *>(object), &stage);
}

KYTE_TEST_MAIN(tst_KyStage)
#include "tst_KyStage.moc"
