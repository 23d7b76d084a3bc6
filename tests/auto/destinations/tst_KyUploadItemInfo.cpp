#include "KyTestMain.h"

#include <KyUploadItemInfo.h>

#include <QThread>

#include <type_traits>

namespace Kyte {

/** Declares its signals as the library's classes do: inside of the namespace, so that their texts leave it
 * out. */
class RecordSender : public QObject
{
    Q_OBJECT

signals:
    void itemHasRead(KyUploadItemInfo item);
    void itemsHasRead(QList<KyUploadItemInfo> items);
};

/** Tells every record that it gets as "id|name|password", and by which thread it got it. */
class RecordReceiver : public QObject
{
    Q_OBJECT

public slots:
    void onItemHasRead(KyUploadItemInfo item)
    {
        onItemsHasRead({item});
    }
    void onItemsHasRead(QList<KyUploadItemInfo> items)
    {
        QStringList texts;
        for (const KyUploadItemInfo &item : qAsConst(items))
            texts.append(
                QStringLiteral("%1|%2|%3").arg(QString::number(item.id()), item.name(), item.password()));
        emit received(texts, QThread::currentThread() == thread());
    }

signals:
    void received(QStringList texts, bool isOwnThread);
};

} // namespace Kyte

using namespace Kyte;

static QStringList describe(const KyUploadItemInfo &item)
{
    return {QString::number(item.itemType()),
            QString::number(item.id()),
            item.name(),
            QString::number(item.posIndex()),
            item.address(),
            item.sharedFolder(),
            QString::number(item.channelId()),
            QString::number(item.groupId()),
            item.userName(),
            item.password()};
}

static const QStringList FULL_RECORD = {"2",      "-7", "name", "3",    "address",
                                        "folder", "4",  "5",    "user", "password"};

/** A record with a value of its own in every field. */
static KyUploadItemInfo fullRecord()
{
    return KyUploadItemInfo(KyUploadItemInfo::Item_Group, -7, QStringLiteral("name"), 3,
                            QStringLiteral("address"), QStringLiteral("folder"), 4, 5, QStringLiteral("user"),
                            QStringLiteral("password"), nullptr);
}

static QList<KyUploadItemInfo> twoRecords()
{
    KyUploadItemInfo other = fullRecord();
    other.setId(8);
    other.setName(QStringLiteral("\u540D\u524D"));
    return {fullRecord(), other};
}

class tst_KyUploadItemInfo : public QObject
{
    Q_OBJECT

private slots:
    void types_haveTheirFixedValues();
    void newRecord_isEmpty();
    void fullConstructor_takesItsArgumentsInOrder();
    void setter_changesItsFieldAlone_data();
    void setter_changesItsFieldAlone();
    void copy_hasAllFieldsAndNoParent();
    void copy_outlivesTheParentOfItsOriginal();
    void copy_isIndependent();
    void assignment_keepsTheParent();
    void assignment_toItself_changesNothing();
    void class_isABareObject();
    void metaTypes_areRegisteredUnderTheTextsOfTheSignals_data();
    void metaTypes_areRegisteredUnderTheTextsOfTheSignals();
    void signalSpy_holdsTheRecords();
    void queuedConnection_deliversAcrossThreads_data();
    void queuedConnection_deliversAcrossThreads();
};

void tst_KyUploadItemInfo::types_haveTheirFixedValues()
{
    QCOMPARE(int(KyUploadItemInfo::Item_Destination), 0);
    QCOMPARE(int(KyUploadItemInfo::Item_Channel), 1);
    QCOMPARE(int(KyUploadItemInfo::Item_Group), 2);
}

void tst_KyUploadItemInfo::newRecord_isEmpty()
{
    QObject parent;
    const KyUploadItemInfo item;
    const KyUploadItemInfo child(&parent);

    QVERIFY(!item.parent());
    QCOMPARE(child.parent(), &parent);
    QCOMPARE(item.name(), QString());
    QCOMPARE(item.address(), QString());
    QCOMPARE(item.sharedFolder(), QString());
    QCOMPARE(item.userName(), QString());
    QCOMPARE(item.password(), QString());
}

void tst_KyUploadItemInfo::fullConstructor_takesItsArgumentsInOrder()
{
    QObject parent;
    const KyUploadItemInfo item(KyUploadItemInfo::Item_Channel, 1, QStringLiteral("a"), 2,
                                QStringLiteral("b"), QStringLiteral("c"), 3, 4, QStringLiteral("d"),
                                QStringLiteral("e"), &parent);

    QCOMPARE(describe(item), QStringList({"1", "1", "a", "2", "b", "c", "3", "4", "d", "e"}));
    QCOMPARE(item.parent(), &parent);
    QCOMPARE(describe(fullRecord()), FULL_RECORD);
}

void tst_KyUploadItemInfo::setter_changesItsFieldAlone_data()
{
    QTest::addColumn<int>("field");

    int field = 0;
    for (const char *name : {"itemType", "id", "name", "posIndex", "address", "sharedFolder", "channelId",
                             "groupId", "userName", "password"})
        QTest::newRow(name) << field++;
}

void tst_KyUploadItemInfo::setter_changesItsFieldAlone()
{
    QFETCH(int, field);
    static const struct
    {
        std::function<void(KyUploadItemInfo *)> set;
        QString expected;
    } SETTERS[] = {
        {[](KyUploadItemInfo *item) {
             item->setItemType(KyUploadItemInfo::Item_Channel);
         },
         "1"},
        {[](KyUploadItemInfo *item) {
             item->setId(91);
         },
         "91"},
        {[](KyUploadItemInfo *item) {
             item->setName("new");
         },
         "new"},
        {[](KyUploadItemInfo *item) {
             item->setPosIndex(-93);
         },
         "-93"},
        {[](KyUploadItemInfo *item) {
             item->setAddress("new");
         },
         "new"},
        {[](KyUploadItemInfo *item) {
             item->setSharedFolder("new");
         },
         "new"},
        {[](KyUploadItemInfo *item) {
             item->setChannelId(96);
         },
         "96"},
        {[](KyUploadItemInfo *item) {
             item->setGroupId(2147483647);
         },
         "2147483647"},
        {[](KyUploadItemInfo *item) {
             item->setUserName("new");
         },
         "new"},
        {[](KyUploadItemInfo *item) {
             item->setPassword("new");
         },
         "new"},
    };
    KyUploadItemInfo item = fullRecord();

    SETTERS[field].set(&item);

    QStringList expected = FULL_RECORD;
    expected[field] = SETTERS[field].expected;
    QCOMPARE(describe(item), expected);
}

void tst_KyUploadItemInfo::copy_hasAllFieldsAndNoParent()
{
    QObject parent;
    KyUploadItemInfo item = fullRecord();
    item.setParent(&parent);

    const KyUploadItemInfo copy(item);

    QCOMPARE(describe(copy), FULL_RECORD);
    QVERIFY(!copy.parent());
    QCOMPARE(item.parent(), &parent);
}

void tst_KyUploadItemInfo::copy_outlivesTheParentOfItsOriginal()
{
    auto parent = std::make_unique<QObject>();
    const QPointer<KyUploadItemInfo> item = new KyUploadItemInfo(parent.get());
    *item = fullRecord();
    const auto copy = std::make_unique<KyUploadItemInfo>(*item);
    const QPointer<KyUploadItemInfo> guard = copy.get();

    parent.reset();

    QVERIFY(!item);
    QVERIFY(guard);
    QCOMPARE(describe(*copy), FULL_RECORD);
}

void tst_KyUploadItemInfo::copy_isIndependent()
{
    QList<KyUploadItemInfo> items = twoRecords();
    const QList<KyUploadItemInfo> former = items;

    items[0].setName(QStringLiteral("other"));

    QCOMPARE(items.at(0).name(), QStringLiteral("other"));
    QCOMPARE(describe(former.at(0)), FULL_RECORD);
    QCOMPARE(former.at(1).id(), 8);
}

void tst_KyUploadItemInfo::assignment_keepsTheParent()
{
    QObject parent;
    QObject otherParent;
    KyUploadItemInfo source = fullRecord();
    source.setParent(&otherParent);
    KyUploadItemInfo item(&parent);

    QCOMPARE(&(item = source), &item);

    QCOMPARE(describe(item), FULL_RECORD);
    QCOMPARE(item.parent(), &parent);
    QCOMPARE(source.parent(), &otherParent);
}

void tst_KyUploadItemInfo::assignment_toItself_changesNothing()
{
    QObject parent;
    KyUploadItemInfo item = fullRecord();
    item.setParent(&parent);
    const KyUploadItemInfo &same = item;

    item = same;

    QCOMPARE(describe(item), FULL_RECORD);
    QCOMPARE(item.parent(), &parent);
}

void tst_KyUploadItemInfo::class_isABareObject()
{
    const QMetaObject &metaObject = KyUploadItemInfo::staticMetaObject;

    QVERIFY(std::has_virtual_destructor<KyUploadItemInfo>::value);
    QCOMPARE(metaObject.className(), "Kyte::KyUploadItemInfo");
    QCOMPARE(metaObject.superClass(), &QObject::staticMetaObject);
    QCOMPARE(metaObject.methodCount(), QObject::staticMetaObject.methodCount());
    QCOMPARE(metaObject.propertyCount(), QObject::staticMetaObject.propertyCount());
}

void tst_KyUploadItemInfo::metaTypes_areRegisteredUnderTheTextsOfTheSignals_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<int>("type");

    QTest::newRow("record") << QByteArray("KyUploadItemInfo") << qMetaTypeId<KyUploadItemInfo>();
    QTest::newRow("list") << QByteArray("QList<KyUploadItemInfo>") << qMetaTypeId<QList<KyUploadItemInfo>>();
}

void tst_KyUploadItemInfo::metaTypes_areRegisteredUnderTheTextsOfTheSignals()
{
    QFETCH(QByteArray, text);
    QFETCH(int, type);

    QVERIFY(type != QMetaType::UnknownType);
    QCOMPARE(QMetaType::type(text), type);
}

void tst_KyUploadItemInfo::signalSpy_holdsTheRecords()
{
    RecordSender sender;
    QSignalSpy items(&sender, SIGNAL(itemsHasRead(QList<KyUploadItemInfo>)));
    QSignalSpy item(&sender, SIGNAL(itemHasRead(KyUploadItemInfo)));
    QVERIFY(items.isValid() && item.isValid());

    emit sender.itemsHasRead(twoRecords());
    emit sender.itemsHasRead({});
    emit sender.itemHasRead(fullRecord());

    QCOMPARE(items.count(), 2);
    const auto held = items.at(0).at(0).value<QList<KyUploadItemInfo>>();
    QCOMPARE(held.size(), 2);
    QCOMPARE(describe(held.at(0)), FULL_RECORD);
    QCOMPARE(describe(held.at(1)), describe(twoRecords().at(1)));
    QVERIFY(items.at(1).at(0).canConvert<QList<KyUploadItemInfo>>());
    QVERIFY(items.at(1).at(0).value<QList<KyUploadItemInfo>>().isEmpty());
    QCOMPARE(item.count(), 1);
    QCOMPARE(describe(item.at(0).at(0).value<KyUploadItemInfo>()), FULL_RECORD);
}

void tst_KyUploadItemInfo::queuedConnection_deliversAcrossThreads_data()
{
    QTest::addColumn<bool>("toWorker");

    QTest::newRow("to a worker") << true;
    QTest::newRow("from a worker") << false;
}

void tst_KyUploadItemInfo::queuedConnection_deliversAcrossThreads()
{
    QFETCH(bool, toWorker);
    QThread thread;
    RecordSender sender;
    RecordReceiver receiver;
    QSignalSpy received(&receiver, SIGNAL(received(QStringList, bool)));
    QVERIFY(connect(&sender, SIGNAL(itemsHasRead(QList<KyUploadItemInfo>)), &receiver,
                    SLOT(onItemsHasRead(QList<KyUploadItemInfo>)), Qt::QueuedConnection));
    QVERIFY(connect(&sender, SIGNAL(itemHasRead(KyUploadItemInfo)), &receiver,
                    SLOT(onItemHasRead(KyUploadItemInfo)), Qt::QueuedConnection));
    QObject *moved = toWorker ? static_cast<QObject *>(&receiver) : &sender;
    moved->moveToThread(&thread);
    thread.start();

    const auto send = [&] {
        QList<KyUploadItemInfo> items = twoRecords();
        emit sender.itemsHasRead(items);
        items.clear();
        emit sender.itemHasRead(fullRecord());
    };
    if (toWorker) {
        send();
        QMetaObject::invokeMethod(
            &receiver,
            [&thread] {
                thread.quit();
            },
            Qt::QueuedConnection);
    } else {
        QMetaObject::invokeMethod(&sender, send);
        QTRY_COMPARE(received.count(), 2);
        thread.quit();
    }
    QVERIFY(thread.wait()); // until then the spy belongs to the thread of the receiver

    QCOMPARE(received.count(), 2);
    QCOMPARE(received.at(0).at(0).toStringList(),
             QStringList({QStringLiteral("-7|name|password"), QStringLiteral("8|\u540D\u524D|password")}));
    QCOMPARE(received.at(1).at(0).toStringList(), QStringList({"-7|name|password"}));
    QVERIFY(received.at(0).at(1).toBool() && received.at(1).at(1).toBool());
}

KYTE_TEST_MAIN(tst_KyUploadItemInfo)
#include "tst_KyUploadItemInfo.moc"
