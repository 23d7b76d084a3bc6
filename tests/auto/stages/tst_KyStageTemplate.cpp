#include "KyStageReference.h"
#include "KyTestMain.h"

#include <KyStageTemplate.h>

#include <QListWidget>
#include <QPointer>
#include <QScreen>
#include <QSignalSpy>
#include <QThread>
#include <QTranslator>
#include <QWidget>

#include <algorithm>
#include <limits>
#include <memory>

using namespace Kyte;

static const int CATALOGUE_SIZE = 11;

/** Writes down the signals of a builder in order, and does something at one of them. */
class Listener : public QObject
{
    Q_OBJECT

public:
    enum Action { DoNothing, Delete, Abort, AbortAtLast, Start, StartOnce, EmptyList };

    explicit Listener(KyStageTemplate *builder, const QString &signal = QString(), Action action = DoNothing)
        : m_builder(builder)
        , m_signal(signal)
        , m_action(action)
    {
        connect(builder, SIGNAL(itemCreated(KyStageListWidgetItem *)), this,
                SLOT(onItemCreated(KyStageListWidgetItem *)));
        connect(builder, SIGNAL(creatingItemListStarted()), this, SLOT(onStarted()));
        connect(builder, SIGNAL(creatingItemListAborted()), this, SLOT(onAborted()));
        connect(builder, SIGNAL(creatingItemListFinished()), this, SLOT(onFinished()));
        connect(builder, SIGNAL(creatingItemListErrorOccured(QString)), this, SLOT(onErrorOccured(QString)));
    }

    /** "started, 11 items, aborted, finished" */
    QString story() const
    {
        QStringList words;
        int count = 0;
        for (const QString &signal : m_signals + QStringList(QString())) {
            if (signal == QLatin1String("item")) {
                ++count;
                continue;
            }
            if (count > 0)
                words.append(QStringLiteral("%1 items").arg(count));
            count = 0;
            words.append(signal);
        }
        words.removeLast();
        return words.join(QStringLiteral(", "));
    }

    QList<KyStageListWidgetItem *> items;
    QList<bool> processing; ///< what isProcessing() said at each signal
    QList<int> listSizes; ///< of the builder's list at each item

private slots:
    void onItemCreated(KyStageListWidgetItem *item)
    {
        items.append(item);
        if (isInBuildersThread())
            listSizes.append(m_builder->listItemList().size());
        record(QStringLiteral("item"));
    }
    void onStarted()
    {
        record(QStringLiteral("started"));
    }
    void onAborted()
    {
        record(QStringLiteral("aborted"));
    }
    void onFinished()
    {
        record(QStringLiteral("finished"));
    }
    void onErrorOccured(const QString &error)
    {
        record(QStringLiteral("error ") + error);
    }

private:
    void record(const QString &signal)
    {
        m_signals.append(signal);
        if (isInBuildersThread())
            processing.append(m_builder->isProcessing());
        if (signal == m_signal)
            act();
    }

    bool isInBuildersThread() const
    {
        return m_builder->thread() == QThread::currentThread();
    }

    void act()
    {
        switch (m_action) {
        case DoNothing:
            break;
        case Delete:
            delete m_builder;
            break;
        case Abort:
            m_builder->abort();
            break;
        case AbortAtLast:
            if (items.size() == CATALOGUE_SIZE)
                m_builder->abort();
            break;
        case Start:
            m_builder->start();
            break;
        case StartOnce:
            m_action = DoNothing;
            m_builder->start();
            break;
        case EmptyList:
            m_builder->setListItemList({});
            break;
        }
    }

    KyStageTemplate *m_builder = nullptr;
    QString m_signal;
    Action m_action = DoNothing;
    QStringList m_signals;
};

class tst_KyStageTemplate : public QObject
{
    Q_OBJECT

private slots:
    void newBuilder_isIdle();
    void accessors_keepWhatIsSet();
    void signals_areDeclaredInOrder();
    void getRoundRect_data();
    void getRoundRect();

    void start_buildsTheCatalogue();
    void start_tellsEachItemWhenItIsInTheList();
    void start_buildsItemsWithStageAndIcon();
    void start_drawsEachIconLikeTheStraightforwardDrawing();
    void start_translatesTheTexts();
    void start_again_deletesTheFormerItems_data();
    void start_again_deletesTheFormerItems();
    void start_withItemsHandedIn_deletesThemOnce();
    void start_withItemsInAView_takesThemOut();
    void start_isProcessingUntilItFinishes();
    void start_fromASlot_data();
    void start_fromASlot();
    void start_fromASlotOfFinished_startsAgain();

    void abort_beforeStart_buildsNothing();
    void abort_betweenItems_keepsWhatIsBuilt();
    void abort_atTheLastItem_isToldAllTheSame();
    void abort_staysUntilItIsTakenBack();
    void emptyingTheList_whileItIsBuilt_isAllowed();

    void deletingTheBuilder_inASlot_data();
    void deletingTheBuilder_inASlot();
    void deletingTheBuilder_inASlotOfTheView();

    void destructor_deletesTheItemsOnDemand_data();
    void destructor_deletesTheItemsOnDemand();
    void setListItemList_doesNotDeleteTheFormerItems();

    void monitor_isThatOfTheParent();
    void monitor_withoutAWidget_isThePrimaryOne_data();
    void monitor_withoutAWidget_isThePrimaryOne();

    void worker_buildsTheCatalogue();
    void worker_isCancelledFromTheGuiThread();
    void worker_doesNotTouchTheDesktopWidget();
};

static QStringList namesOf(const QList<KyStageListWidgetItem *> &items)
{
    QStringList names;
    for (const KyStageListWidgetItem *item : items)
        names.append(item->text());
    return names;
}

static QStringList catalogueNames()
{
    return {"Background Only",
            "1 Multimedia Screen",
            "1 Multimedia Screen (no margin)",
            "1 Multimedia Screen and 1 Telop Screen",
            "1 Multimedia Screen and 1 Telop Screen",
            "2 Multimedia Screens and 1 Telop Screen",
            "2 Multimedia Screens and 1 Telop Screen (no margin)",
            "1 Multimedia Screen on vertical Stage",
            "1 Multimedia Screen on vertical Stage (no margin",
            "2 Multimedia Screens on vertical Stage",
            "2 Multimedia Screens on vertical Stage (no margin)"};
}

static QList<QPointer<KyStage>> stagesOf(const QList<KyStageListWidgetItem *> &items)
{
    QList<QPointer<KyStage>> stages;
    for (const KyStageListWidgetItem *item : items)
        stages.append(item->stage());
    return stages;
}

static int existing(const QList<QPointer<KyStage>> &stages)
{
    return int(std::count_if(stages.cbegin(), stages.cend(), [](const QPointer<KyStage> &stage) {
        return !stage.isNull();
    }));
}

void tst_KyStageTemplate::newBuilder_isIdle()
{
    QObject parent;
    const auto *builder = new KyStageTemplate(&parent);
    QCOMPARE(builder->parent(), &parent);
    QCOMPARE(builder->metaObject()->className(), "Kyte::KyStageTemplate");
    QVERIFY(!builder->isProcessing());
    QVERIFY(!builder->canceled());
    QVERIFY(!builder->autoDeleteListItem());
    QVERIFY(builder->listItemList().isEmpty());
}

void tst_KyStageTemplate::accessors_keepWhatIsSet()
{
    KyStageTemplate builder(nullptr);
    builder.setCanceled(true);
    QVERIFY(builder.canceled());
    builder.setCanceled(false);
    QVERIFY(!builder.canceled());
    QMetaObject::invokeMethod(&builder, "abort");
    QVERIFY(builder.canceled());
    builder.setAutoDeleteListItem(true);
    QVERIFY(builder.autoDeleteListItem());
    auto *item = new KyStageListWidgetItem;
    builder.setListItemList({item});
    QCOMPARE(builder.listItemList(), QList<KyStageListWidgetItem *>{item});
    builder.listItemList().clear(); // a copy
    QCOMPARE(builder.listItemList().size(), 1);
}

void tst_KyStageTemplate::signals_areDeclaredInOrder()
{
    const QMetaObject &meta = KyStageTemplate::staticMetaObject;
    QStringList methods;
    for (int i = meta.methodOffset(); i < meta.methodCount(); ++i)
        methods.append(QString::fromLatin1(meta.method(i).methodSignature()));
    const QStringList expected{"itemCreated(KyStageListWidgetItem*)",
                               "creatingItemListFinished()",
                               "creatingItemListAborted()",
                               "creatingItemListStarted()",
                               "creatingItemListErrorOccured(QString)",
                               "start()",
                               "abort()"};
    QCOMPARE(methods, expected);
}

void tst_KyStageTemplate::getRoundRect_data()
{
    QTest::addColumn<QRectF>("rect");
    QTest::addColumn<QRectF>("expected");
    QTest::newRow("whole") << QRectF(1, 2, 3, 4) << QRectF(1, 2, 3, 4);
    QTest::newRow("edges, not the size") << QRectF(30.35, 54, 546.3, 972) << QRectF(30, 54, 547, 972);
    QTest::newRow("half goes up") << QRectF(-0.5, 0.5, 1, 2) << QRectF(0, 1, 1, 2);
    QTest::newRow("null") << QRectF() << QRectF();
    const double noNumber = std::numeric_limits<double>::quiet_NaN();
    QTest::newRow("no number") << QRectF(noNumber, noNumber, noNumber, noNumber) << QRectF();
}

void tst_KyStageTemplate::getRoundRect()
{
    QFETCH(QRectF, rect);
    QFETCH(QRectF, expected);
    QCOMPARE(KyStageTemplate(nullptr).getRoundRect(rect), expected);
}

void tst_KyStageTemplate::start_buildsTheCatalogue()
{
    KyStageTemplate builder(nullptr);
    builder.setAutoDeleteListItem(true);
    const Listener listener(&builder);
    builder.start();
    QCOMPARE(listener.story(), QStringLiteral("started, 11 items, finished"));
    QCOMPARE(namesOf(builder.listItemList()), catalogueNames());
    QCOMPARE(listener.items, builder.listItemList());
    QVERIFY(!builder.canceled());
}

void tst_KyStageTemplate::start_tellsEachItemWhenItIsInTheList()
{
    KyStageTemplate builder(nullptr);
    builder.setAutoDeleteListItem(true);
    const Listener listener(&builder);
    builder.start();
    QCOMPARE(listener.listSizes, (QList<int>{1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11}));
}

void tst_KyStageTemplate::start_buildsItemsWithStageAndIcon()
{
    KyStageTemplate builder(nullptr);
    builder.setAutoDeleteListItem(true);
    builder.start();
    const QList<int> screenCounts{0, 1, 1, 2, 2, 3, 3, 1, 1, 2, 2};
    const QSize monitor = QGuiApplication::primaryScreen()->geometry().size();
    const QSize vertical(int(monitor.height() * 0.5625), monitor.height());
    for (int i = 0; i < CATALOGUE_SIZE; ++i) {
        const KyStageListWidgetItem *item = builder.listItemList().at(i);
        QCOMPARE(item->type(), 1929);
        QCOMPARE(item->listWidget(), nullptr);
        QCOMPARE(item->stage()->name(), item->text());
        QCOMPARE(item->description(), item->stage()->description());
        QVERIFY(item->description().startsWith(QStringLiteral("This template ")));
        QCOMPARE(item->stage()->screenList().size(), screenCounts.at(i));
        QCOMPARE(item->stage()->rect(), QRect(QPoint(0, 0), i < 7 ? monitor : vertical));
        QCOMPARE(item->stage()->options(), i < 7 ? 3u : 0u);
        QCOMPARE(item->icon().availableSizes().size(), 9);
    }
    QCOMPARE(builder.listItemList().at(5)->stage()->screenList().at(1)->name(), QStringLiteral("Multi 2"));
    QCOMPARE(int(builder.listItemList().at(5)->stage()->screenList().at(2)->type()), 2);
}

void tst_KyStageTemplate::start_drawsEachIconLikeTheStraightforwardDrawing()
{
    KyStageTemplate builder(nullptr);
    builder.setAutoDeleteListItem(true);
    builder.start();
    for (const KyStageListWidgetItem *item : builder.listItemList()) {
        for (double factor : Test::iconFactors()) {
            const QImage expected =
                Test::referenceIcon(*item->stage(), QSize(128, 128), factor, QStringLiteral("Background"));
            QCOMPARE(item->icon().pixmap(expected.size()).toImage(), QPixmap::fromImage(expected).toImage());
        }
    }
}

/** Puts what is in the class's context into brackets. */
class BracketTranslator : public QTranslator
{
public:
    QString translate(const char *context, const char *sourceText, const char *, int) const override
    {
        return qstrcmp(context, "Kyte::KyStageTemplate") == 0
            ? QStringLiteral("[%1]").arg(QString::fromUtf8(sourceText))
            : QString();
    }
    bool isEmpty() const override
    {
        return false;
    }
};

void tst_KyStageTemplate::start_translatesTheTexts()
{
    BracketTranslator translator;
    QVERIFY(QCoreApplication::installTranslator(&translator));
    KyStageTemplate builder(nullptr);
    builder.setAutoDeleteListItem(true);
    builder.start();
    QCoreApplication::removeTranslator(&translator);
    const KyStageListWidgetItem *item = builder.listItemList().at(3);
    QCOMPARE(item->text(), QStringLiteral("[1 Multimedia Screen and 1 Telop Screen]"));
    QVERIFY(item->description().startsWith(QStringLiteral("[This template")));
    QCOMPARE(item->stage()->screenList().at(0)->name(), QStringLiteral("[Multi 1]"));
    QCOMPARE(item->stage()->screenList().at(1)->name(), QStringLiteral("[Telop 1]"));
}

void tst_KyStageTemplate::start_again_deletesTheFormerItems_data()
{
    QTest::addColumn<bool>("autoDelete");
    QTest::addColumn<bool>("isCanceled");
    QTest::addColumn<int>("newItems");
    QTest::newRow("the caller's") << false << false << CATALOGUE_SIZE;
    QTest::newRow("the builder's") << true << false << CATALOGUE_SIZE;
    QTest::newRow("cancelled, the caller's") << false << true << 0;
    QTest::newRow("cancelled, the builder's") << true << true << 0;
}

void tst_KyStageTemplate::start_again_deletesTheFormerItems()
{
    QFETCH(bool, autoDelete);
    QFETCH(bool, isCanceled);
    QFETCH(int, newItems);
    KyStageTemplate builder(nullptr);
    builder.start();
    const QList<QPointer<KyStage>> former = stagesOf(builder.listItemList());
    QCOMPARE(existing(former), CATALOGUE_SIZE);
    builder.setAutoDeleteListItem(autoDelete);
    builder.setCanceled(isCanceled);
    builder.start();
    QCOMPARE(existing(former), 0);
    QCOMPARE(builder.listItemList().size(), newItems);
    builder.setAutoDeleteListItem(true);
}

void tst_KyStageTemplate::start_withItemsHandedIn_deletesThemOnce()
{
    KyStageTemplate builder(nullptr);
    builder.setAutoDeleteListItem(true);
    auto *item = new KyStageListWidgetItem;
    item->setStage(new KyStage);
    const QPointer<KyStage> stage = item->stage();
    builder.setListItemList({item, nullptr, item});
    builder.start();
    QVERIFY(!stage);
    QCOMPARE(builder.listItemList().size(), CATALOGUE_SIZE);
}

void tst_KyStageTemplate::start_withItemsInAView_takesThemOut()
{
    QListWidget view;
    KyStageTemplate builder(nullptr);
    builder.start();
    for (KyStageListWidgetItem *item : builder.listItemList())
        view.addItem(item);
    QCOMPARE(view.count(), CATALOGUE_SIZE);
    builder.start();
    QCOMPARE(view.count(), 0);
    builder.setAutoDeleteListItem(true);
}

void tst_KyStageTemplate::start_isProcessingUntilItFinishes()
{
    KyStageTemplate builder(nullptr);
    builder.setAutoDeleteListItem(true);
    const Listener listener(&builder, QStringLiteral("item"), Listener::AbortAtLast);
    builder.start();
    QCOMPARE(listener.story(), QStringLiteral("started, 11 items, aborted, finished"));
    QList<bool> expected;
    for (int i = 0; i < CATALOGUE_SIZE + 2; ++i)
        expected.append(true);
    expected.append(false);
    QCOMPARE(listener.processing, expected);
    QVERIFY(!builder.isProcessing());
}

void tst_KyStageTemplate::start_fromASlot_data()
{
    QTest::addColumn<QString>("signal");
    QTest::newRow("started") << QStringLiteral("started");
    QTest::newRow("item") << QStringLiteral("item");
}

void tst_KyStageTemplate::start_fromASlot()
{
    QFETCH(QString, signal);
    KyStageTemplate builder(nullptr);
    builder.setAutoDeleteListItem(true);
    const Listener listener(&builder, signal, Listener::Start);
    builder.start();
    QCOMPARE(listener.story(), QStringLiteral("started, 11 items, finished"));
    QCOMPARE(listener.items, builder.listItemList());
}

void tst_KyStageTemplate::start_fromASlotOfFinished_startsAgain()
{
    KyStageTemplate builder(nullptr);
    builder.setAutoDeleteListItem(true);
    const Listener listener(&builder, QStringLiteral("finished"), Listener::StartOnce);
    builder.start();
    QCOMPARE(listener.story(), QStringLiteral("started, 11 items, finished, started, 11 items, finished"));
    QCOMPARE(builder.listItemList().size(), CATALOGUE_SIZE);
}

void tst_KyStageTemplate::abort_beforeStart_buildsNothing()
{
    KyStageTemplate builder(nullptr);
    const Listener listener(&builder);
    builder.abort();
    builder.start();
    QCOMPARE(listener.story(), QStringLiteral("started, aborted, finished"));
    QVERIFY(builder.listItemList().isEmpty());
}

void tst_KyStageTemplate::abort_betweenItems_keepsWhatIsBuilt()
{
    KyStageTemplate builder(nullptr);
    builder.setAutoDeleteListItem(true);
    const Listener listener(&builder, QStringLiteral("item"), Listener::Abort);
    builder.start();
    QCOMPARE(listener.story(), QStringLiteral("started, 1 items, aborted, finished"));
    QCOMPARE(namesOf(builder.listItemList()), QStringList(catalogueNames().first()));
}

void tst_KyStageTemplate::abort_atTheLastItem_isToldAllTheSame()
{
    KyStageTemplate builder(nullptr);
    builder.setAutoDeleteListItem(true);
    const Listener listener(&builder, QStringLiteral("item"), Listener::AbortAtLast);
    builder.start();
    QCOMPARE(listener.story(), QStringLiteral("started, 11 items, aborted, finished"));
    QCOMPARE(builder.listItemList().size(), CATALOGUE_SIZE);
}

void tst_KyStageTemplate::abort_staysUntilItIsTakenBack()
{
    KyStageTemplate builder(nullptr);
    builder.setAutoDeleteListItem(true);
    const Listener listener(&builder);
    builder.abort();
    builder.start();
    QVERIFY(builder.canceled());
    builder.start();
    builder.setCanceled(false);
    builder.start();
    QCOMPARE(listener.story(),
             QStringLiteral(
                 "started, aborted, finished, started, aborted, finished, started, 11 items, finished"));
}

void tst_KyStageTemplate::emptyingTheList_whileItIsBuilt_isAllowed()
{
    KyStageTemplate builder(nullptr);
    const Listener listener(&builder, QStringLiteral("item"), Listener::EmptyList);
    builder.start();
    QCOMPARE(listener.story(), QStringLiteral("started, 11 items, finished"));
    QVERIFY(builder.listItemList().isEmpty());
    QCOMPARE(namesOf(listener.items), catalogueNames());
    qDeleteAll(listener.items);
}

void tst_KyStageTemplate::deletingTheBuilder_inASlot_data()
{
    QTest::addColumn<QString>("signal");
    QTest::addColumn<bool>("isCanceled");
    QTest::addColumn<QString>("story");
    QTest::newRow("started") << QStringLiteral("started") << false << QStringLiteral("started");
    QTest::newRow("item") << QStringLiteral("item") << false << QStringLiteral("started, 1 items");
    QTest::newRow("aborted") << QStringLiteral("aborted") << true << QStringLiteral("started, aborted");
    QTest::newRow("finished") << QStringLiteral("finished") << false
                              << QStringLiteral("started, 11 items, finished");
    QTest::newRow("finished, cancelled")
        << QStringLiteral("finished") << true << QStringLiteral("started, aborted, finished");
}

void tst_KyStageTemplate::deletingTheBuilder_inASlot()
{
    QFETCH(QString, signal);
    QFETCH(bool, isCanceled);
    QFETCH(QString, story);
    auto *builder = new KyStageTemplate(nullptr);
    builder->setAutoDeleteListItem(true);
    builder->setCanceled(isCanceled);
    const QPointer<KyStageTemplate> guard(builder);
    const Listener listener(builder, signal, Listener::Delete);
    builder->start();
    QVERIFY(!guard);
    QCOMPARE(listener.story(), story);
}

/** Deletes the builder when the view loses an item. */
class Demolisher : public QObject
{
    Q_OBJECT

public:
    Demolisher(QAbstractItemModel *model, KyStageTemplate *builder)
        : m_builder(builder)
    {
        connect(model, SIGNAL(rowsRemoved(QModelIndex, int, int)), this, SLOT(onRowsRemoved()));
    }

private slots:
    void onRowsRemoved()
    {
        delete m_builder;
    }

private:
    QPointer<KyStageTemplate> m_builder;
};

void tst_KyStageTemplate::deletingTheBuilder_inASlotOfTheView()
{
    QListWidget view;
    const QPointer<KyStageTemplate> builder(new KyStageTemplate(nullptr));
    builder->setAutoDeleteListItem(true);
    builder->start();
    const QList<QPointer<KyStage>> stages = stagesOf(builder->listItemList());
    for (KyStageListWidgetItem *item : builder->listItemList())
        view.addItem(item);
    const Demolisher demolisher(view.model(), builder);
    const Listener listener(builder);
    builder->start();
    QVERIFY(!builder);
    QCOMPARE(listener.story(), QStringLiteral("started"));
    QCOMPARE(existing(stages), 0);
}

void tst_KyStageTemplate::destructor_deletesTheItemsOnDemand_data()
{
    QTest::addColumn<bool>("autoDelete");
    QTest::newRow("the builder's") << true;
    QTest::newRow("the caller's") << false;
}

void tst_KyStageTemplate::destructor_deletesTheItemsOnDemand()
{
    QFETCH(bool, autoDelete);
    QList<KyStageListWidgetItem *> items;
    QList<QPointer<KyStage>> stages;
    {
        KyStageTemplate builder(nullptr);
        builder.setAutoDeleteListItem(autoDelete);
        builder.start();
        items = builder.listItemList();
        stages = stagesOf(items);
    }
    QCOMPARE(existing(stages), autoDelete ? 0 : CATALOGUE_SIZE);
    if (!autoDelete)
        qDeleteAll(items);
}

void tst_KyStageTemplate::setListItemList_doesNotDeleteTheFormerItems()
{
    KyStageTemplate builder(nullptr);
    builder.start();
    const QList<KyStageListWidgetItem *> items = builder.listItemList();
    const QList<QPointer<KyStage>> stages = stagesOf(items);
    builder.setAutoDeleteListItem(true);
    builder.setListItemList({});
    QCOMPARE(existing(stages), CATALOGUE_SIZE);
    builder.start();
    QCOMPARE(existing(stages), CATALOGUE_SIZE);
    qDeleteAll(items);
}

static QRect firstStageRect(KyStageTemplate *builder)
{
    builder->setAutoDeleteListItem(true);
    builder->start();
    return builder->listItemList().first()->stage()->rect();
}

void tst_KyStageTemplate::monitor_isThatOfTheParent()
{
    QWidget parent;
    parent.resize(100, 100);
    parent.show();
    QVERIFY(QTest::qWaitForWindowExposed(&parent));
    auto *builder = new KyStageTemplate(&parent);
    QCOMPARE(firstStageRect(builder), QRect(QPoint(0, 0), parent.screen()->geometry().size()));
}

void tst_KyStageTemplate::monitor_withoutAWidget_isThePrimaryOne_data()
{
    QTest::addColumn<bool>("hasParent");
    QTest::newRow("no parent") << false;
    QTest::newRow("a parent that is no widget") << true;
}

void tst_KyStageTemplate::monitor_withoutAWidget_isThePrimaryOne()
{
    QFETCH(bool, hasParent);
    QObject object;
    KyStageTemplate builder(hasParent ? &object : nullptr);
    const QRect rect = firstStageRect(&builder);
    QVERIFY(!rect.isEmpty());
    QCOMPARE(rect, QRect(QPoint(0, 0), QGuiApplication::primaryScreen()->geometry().size()));
}

/** A thread with an event loop that ends with the object. */
class Worker
{
public:
    Worker()
    {
        m_thread.start();
    }
    ~Worker()
    {
        m_thread.quit();
        m_thread.wait();
    }
    QThread *thread()
    {
        return &m_thread;
    }

private:
    QThread m_thread;
};

void tst_KyStageTemplate::worker_buildsTheCatalogue()
{
    KyStageTemplate builder(nullptr);
    const Listener listener(&builder);
    QSignalSpy finished(&builder, SIGNAL(creatingItemListFinished()));
    {
        Worker worker;
        builder.moveToThread(worker.thread());
        QVERIFY(QMetaObject::invokeMethod(&builder, "start", Qt::QueuedConnection));
        QTRY_COMPARE(listener.story(), QStringLiteral("started, 11 items, finished"));
    }
    QCOMPARE(finished.size(), 1);
    QCOMPARE(namesOf(listener.items), catalogueNames());
    QCOMPARE(builder.listItemList(), listener.items);
    const QRect monitor = QGuiApplication::primaryScreen()->geometry();
    QListWidget view;
    for (KyStageListWidgetItem *item : listener.items) {
        QCOMPARE(item->stage()->thread(), QThread::currentThread());
        QCOMPARE(item->stage()->rect().height(), monitor.height());
        QCOMPARE(item->icon().availableSizes().size(), 9);
        const QImage expected =
            Test::referenceIcon(*item->stage(), QSize(128, 128), 1.0, QStringLiteral("Background"));
        QCOMPARE(item->icon().pixmap(128, 128).toImage(), QPixmap::fromImage(expected).toImage());
        view.addItem(item);
    }
}

/** Cancels from its own thread when the first item arrives, while the worker waits for it. */
class Canceller : public QObject
{
    Q_OBJECT

public:
    explicit Canceller(KyStageTemplate *builder)
        : m_builder(builder)
    {
        connect(builder, SIGNAL(itemCreated(KyStageListWidgetItem *)), this, SLOT(onItemCreated()),
                Qt::BlockingQueuedConnection);
    }

    QThread *thread = nullptr;

private slots:
    void onItemCreated()
    {
        thread = QThread::currentThread();
        m_builder->abort();
    }

private:
    KyStageTemplate *m_builder = nullptr;
};

void tst_KyStageTemplate::worker_isCancelledFromTheGuiThread()
{
    KyStageTemplate builder(nullptr);
    builder.setAutoDeleteListItem(true);
    const Listener listener(&builder);
    const Canceller canceller(&builder);
    {
        Worker worker;
        builder.moveToThread(worker.thread());
        QVERIFY(QMetaObject::invokeMethod(&builder, "start", Qt::QueuedConnection));
        QTRY_COMPARE(listener.story(), QStringLiteral("started, 1 items, aborted, finished"));
    }
    QCOMPARE(canceller.thread, QThread::currentThread());
    QVERIFY(builder.canceled());
    QCOMPARE(builder.listItemList(), listener.items);
}

/** Calls start() in a thread of its own, wherever the builder lives. */
class Starter : public QThread
{
public:
    explicit Starter(KyStageTemplate *builder)
        : m_builder(builder)
    {
    }

protected:
    void run() override
    {
        m_builder->start();
    }

private:
    KyStageTemplate *m_builder = nullptr;
};

void tst_KyStageTemplate::worker_doesNotTouchTheDesktopWidget()
{
    // A builder with a widget for a parent cannot be moved, but it can be called.
    QWidget parent;
    auto *builder = new KyStageTemplate(&parent);
    builder->setAutoDeleteListItem(true);
    Starter starter(builder);
    starter.start();
    QVERIFY(starter.wait());
    QCOMPARE(builder->listItemList().size(), CATALOGUE_SIZE);
    QCOMPARE(builder->listItemList().first()->stage()->rect(),
             QRect(QPoint(0, 0), QGuiApplication::primaryScreen()->geometry().size()));
}

KYTE_TEST_MAIN(tst_KyStageTemplate)
#include "tst_KyStageTemplate.moc"
