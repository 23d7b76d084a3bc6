#include "KyFileModelProbe.h"
#include "KyTestEnvironment.h"
#include "KyTestMain.h"

#include <KyFileSystemItem.h>
#include <Path.h>

#include <QDir>
#include <QFileIconProvider>
#include <QPixmap>
#include <QTemporaryDir>

#include <memory>

using namespace Kyte;
using Kyte::Test::namesIn;
using Kyte::Test::namesOf;
using Kyte::Test::writeFile;

using Item = KyFileSystemItem;

class tst_KyFileSystemItem : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();

    void newItem_ofAFile();
    void newItem_ofAFolder_canBeFetchedAndHasTheFolderIcon();
    void newItem_ofAMissingFile();
    void newItem_goesToItsRow_data();
    void newItem_goesToItsRow();
    void newItem_byName_goesBehindTheFirstLesserName();
    void newItem_byName_withoutParent_isARoot();
    void setters();
    void fileInfo_isAsItWasWhenTheNodeWasMade();

    void copy_sharesTheChildren();
    void assignment_replacesAllFive();
    void assignment_givesNewNames();
    void destruction_takesTheChildrenInTheListAlong();
    void destruction_ofAListWithOneChildTwice();

    void addChild_twice_leavesOne();
    void addChild_afterItWasCleared_addsIt();
    void insertChild_data();
    void insertChild();
    void insertChild_twice_leavesTwo();
    void insertChildByName_data();
    void insertChildByName();
    void childAt_outside_isNull();
    void childPosition_isTheFirstOne();
    void positionInParent_data();
    void positionInParent();
    void positionInParent_ofAChildTheParentDoesNotHold();
    void clearChild_ofAnother_changesNothing();
    void clearChildren_data();
    void clearChildren();
    void clearAllChildren_destroysNone();
    void nullChildren_areNeverEntered();

    void statics_areOneEach();
    void folderIcon_isMadeOnceAndHasTheResource();
    void folderIcon_isTakenFromTheList();
    void icon_isAskedForOnce();
    void icon_thatWasSet_isKept();
    void getIcon_ofAKnownType_touchesNoDisk();
    void getIcon_ofANewType_isWrittenToDisk();
    void getIcon_afterARestart_readsTheImages();
    void getIcon_ofAFolderWithoutImages_asksTheSystem_data();
    void getIcon_ofAFolderWithoutImages_asksTheSystem();
    void iconCacheFolder_isFormedAndNotMade();
    void readPixmaps_data();
    void readPixmaps();
    void readPixmaps_appends();
    void writePixmaps_data();
    void writePixmaps();
    void writePixmaps_makesTheFolders();
    void writePixmaps_whereNoFolderCanBe();

private:
    QString cacheRoot() const;
};

static QFileInfo named(const QString &name)
{
    return QFileInfo(QStringLiteral("/none/") + name);
}

static std::unique_ptr<Item> folderOf(const QStringList &names)
{
    std::unique_ptr<Item> folder(new Item(named(QStringLiteral("folder")), nullptr, -1));
    for (const QString &name : names)
        new Item(named(name), folder.get(), -1);
    return folder;
}

static QStringList letters(const char *text)
{
    return QString::fromUtf8(text).split(QLatin1Char(' '), Qt::SkipEmptyParts);
}

static QPixmap square(int size, const QColor &colour = Qt::red)
{
    QPixmap pixmap(size, size);
    pixmap.fill(colour);
    return pixmap;
}

static QColor colourOf(const QIcon &icon, int size)
{
    return icon.pixmap(size, size).toImage().pixelColor(size / 2, size / 2);
}

QString tst_KyFileSystemItem::cacheRoot() const
{
    return Path::getApplicationCacheFolderPath() + QStringLiteral("/kyteeditoricons");
}

void tst_KyFileSystemItem::initTestCase()
{
    const QString folder = Path::getApplicationCacheFolderPath();
    QVERIFY(folder.startsWith(QDir::tempPath()) || folder.contains(QStringLiteral("/qttest/")));
}

/** As after a restart without anything kept on disk. */
void tst_KyFileSystemItem::init()
{
    Item::getIconList()->clear();
    QVERIFY(QDir(cacheRoot()).removeRecursively());
}

void tst_KyFileSystemItem::newItem_ofAFile()
{
    QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("clip.mp4"));
    writeFile(path, "12345");
    const Item item(QFileInfo(path), nullptr, -1);
    QVERIFY(!item.parent());
    QCOMPARE(item.childCount(), 0);
    QCOMPARE(item.fileName(), QStringLiteral("clip.mp4"));
    QCOMPARE(item.absolutePath(), path);
    QCOMPARE(item.fileInfo().size(), 5);
    QVERIFY(!item.canFetchMore());
    QVERIFY(Item::getIconList()->isEmpty()); // no icon was asked for
}

void tst_KyFileSystemItem::newItem_ofAFolder_canBeFetchedAndHasTheFolderIcon()
{
    QTemporaryDir folder;
    Item item(QFileInfo(folder.path()), nullptr, -1);
    QVERIFY(item.canFetchMore());
    QCOMPARE(Item::getIconList()->keys(), QStringList(QStringLiteral("Folder")));
    QCOMPARE(item.icon().cacheKey(), Item::getFolderIcon().cacheKey());

    Item::getIconList()->clear();
    Item byName(nullptr, QFileInfo(folder.path()), Qt::CaseSensitive);
    QVERIFY(byName.canFetchMore());
    QCOMPARE(Item::getIconList()->keys(), QStringList(QStringLiteral("Folder")));
    QCOMPARE(byName.icon().cacheKey(), Item::getFolderIcon().cacheKey());
}

void tst_KyFileSystemItem::newItem_ofAMissingFile()
{
    const Item item(QFileInfo(), nullptr, -1);
    QVERIFY(!item.canFetchMore());
    QCOMPARE(item.fileName(), QString());
    QCOMPARE(item.absolutePath(), QString());
}

void tst_KyFileSystemItem::newItem_goesToItsRow_data()
{
    QTest::addColumn<int>("row");
    QTest::addColumn<QStringList>("names");
    QTest::newRow("negative appends") << -1 << letters("a b c new");
    QTest::newRow("very negative appends") << -9 << letters("a b c new");
    QTest::newRow("0") << 0 << letters("new a b c");
    QTest::newRow("2") << 2 << letters("a b new c");
    QTest::newRow("at the count") << 3 << letters("a b c new");
    QTest::newRow("beyond") << 99 << letters("a b c new");
}

void tst_KyFileSystemItem::newItem_goesToItsRow()
{
    QFETCH(int, row);
    QFETCH(QStringList, names);
    const auto folder = folderOf(letters("a b c"));
    Item *item = new Item(named(QStringLiteral("new")), folder.get(), row);
    QCOMPARE(item->parent(), folder.get());
    QCOMPARE(namesOf(*folder), names);
    QCOMPARE(item->positionInParent(), names.indexOf(QStringLiteral("new")));
}

void tst_KyFileSystemItem::newItem_byName_goesBehindTheFirstLesserName()
{
    const auto folder = folderOf(letters("b c"));
    Item *item = new Item(folder.get(), named(QStringLiteral("d")), Qt::CaseSensitive);
    QCOMPARE(item->parent(), folder.get());
    QCOMPARE(namesOf(*folder), letters("b d c"));
}

void tst_KyFileSystemItem::newItem_byName_withoutParent_isARoot()
{
    const Item item(nullptr, named(QStringLiteral("d")), Qt::CaseSensitive);
    QVERIFY(!item.parent());
    QCOMPARE(item.positionInParent(), -1);
}

void tst_KyFileSystemItem::setters()
{
    Item item(named(QStringLiteral("a")), nullptr, -1);
    item.setCanFetchMore(true);
    QVERIFY(item.canFetchMore());
    item.setCanFetchMore(false);
    QVERIFY(!item.canFetchMore());
    const QIcon icon(square(16));
    item.setIcon(icon);
    QCOMPARE(item.icon().cacheKey(), icon.cacheKey());
}

void tst_KyFileSystemItem::fileInfo_isAsItWasWhenTheNodeWasMade()
{
    QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("a"));
    writeFile(path, "12345");
    const QFileInfo info(path);
    QCOMPARE(info.size(), 5);
    const Item item(info, nullptr, -1);
    writeFile(path, "1");
    QCOMPARE(item.fileInfo().size(), 5);
    item.fileInfo().refresh(); // of the copy
    QCOMPARE(item.fileInfo().size(), 5);
}

void tst_KyFileSystemItem::copy_sharesTheChildren()
{
    const auto root = folderOf({});
    Item *folder = new Item(named(QStringLiteral("b")), root.get(), -1);
    Item *child = new Item(named(QStringLiteral("c")), folder, -1);
    const QIcon icon(square(16));
    folder->setIcon(icon);
    folder->setCanFetchMore(true);

    Item copy(*folder);
    QCOMPARE(copy.parent(), root.get());
    QCOMPARE(copy.childAt(0), child);
    QCOMPARE(copy.childCount(), 1);
    QCOMPARE(copy.absolutePath(), folder->absolutePath());
    QCOMPARE(copy.icon().cacheKey(), icon.cacheKey());
    QVERIFY(copy.canFetchMore());
    QCOMPARE(child->parent(), folder);
    QCOMPARE(namesOf(*root), letters("b")); // nobody entered the copy
    QCOMPARE(copy.positionInParent(), -1);

    copy.addChild(child); // is there already
    QCOMPARE(copy.childCount(), 1);
    copy.clearAllChildren();
    QCOMPARE(folder->childCount(), 1);
    QCOMPARE(child->positionInParent(), 0);
}

void tst_KyFileSystemItem::assignment_replacesAllFive()
{
    const auto root = folderOf({});
    Item *source = new Item(named(QStringLiteral("source")), root.get(), -1);
    Item *child = new Item(named(QStringLiteral("c")), source, -1);
    const QIcon icon(square(16));
    source->setIcon(icon);
    source->setCanFetchMore(true);

    Item target(named(QStringLiteral("target")), nullptr, -1);
    const std::unique_ptr<Item> former(new Item(named(QStringLiteral("former")), &target, -1));
    target = *source;
    QCOMPARE(target.parent(), root.get());
    QCOMPARE(namesOf(target), letters("c"));
    QCOMPARE(target.childAt(0), child);
    QCOMPARE(target.fileName(), QStringLiteral("source"));
    QCOMPARE(target.icon().cacheKey(), icon.cacheKey());
    QVERIFY(target.canFetchMore());
    QCOMPARE(former->fileName(), QStringLiteral("former")); // still alive
    target.clearAllChildren();

    Item *self = source;
    *source = *self;
    QCOMPARE(namesOf(*source), letters("c"));
}

void tst_KyFileSystemItem::assignment_givesNewNames()
{
    const auto folder = folderOf(letters("m"));
    new Item(folder.get(), named(QStringLiteral("x")), Qt::CaseSensitive);
    new Item(folder.get(), named(QStringLiteral("n")), Qt::CaseSensitive);
    QCOMPARE(namesOf(*folder), letters("m n x"));
    *folder->childAt(0) = Item(named(QStringLiteral("z")), nullptr, -1);
    new Item(folder.get(), named(QStringLiteral("o")), Qt::CaseSensitive); // n is the first that is less now
    QCOMPARE(namesOf(*folder), letters("z n o x"));
}

/** A node has no mark of its end, but what it holds has: the data of its icon's engine. */
class CountingEngine : public QIconEngine
{
public:
    explicit CountingEngine(int *count)
        : m_count(count)
    {
        ++*m_count;
    }

    ~CountingEngine() override
    {
        --*m_count;
    }

    void paint(QPainter *, const QRect &, QIcon::Mode, QIcon::State) override
    {
    }

    QIconEngine *clone() const override
    {
        return new CountingEngine(m_count);
    }

private:
    int *m_count;
};

void tst_KyFileSystemItem::destruction_takesTheChildrenInTheListAlong()
{
    int alive = 0;
    auto folder = folderOf(letters("a b c"));
    new Item(named(QStringLiteral("below")), folder->childAt(1), -1);
    for (Item *item : {folder.get(), folder->childAt(0), folder->childAt(1), folder->childAt(2),
                       folder->childAt(1)->childAt(0)})
        item->setIcon(QIcon(new CountingEngine(&alive)));
    QCOMPARE(alive, 5);
    const std::unique_ptr<Item> kept(folder->childAt(0));
    folder->clearChild(kept.get());
    QCOMPARE(alive, 5);
    folder.reset();
    QCOMPARE(alive, 1);
}

void tst_KyFileSystemItem::destruction_ofAListWithOneChildTwice()
{
    int alive = 0;
    auto folder = folderOf(letters("a b c"));
    folder->childAt(1)->setIcon(QIcon(new CountingEngine(&alive)));
    folder->insertChild(folder->childAt(1), 0);
    folder->insertChild(folder->childAt(2), 99);
    QCOMPARE(namesOf(*folder), letters("b a b c b"));
    folder.reset();
    QCOMPARE(alive, 0);
}

void tst_KyFileSystemItem::addChild_twice_leavesOne()
{
    const auto folder = folderOf(letters("a"));
    Item *child = new Item(named(QStringLiteral("b")), nullptr, -1);
    folder->addChild(child);
    folder->addChild(child);
    QCOMPARE(namesOf(*folder), letters("a b"));
    QVERIFY(!child->parent()); // only the constructor says who the parent is
    folder->insertChild(child, 0);
    folder->addChild(child);
    QCOMPARE(namesOf(*folder), letters("b a b"));
}

void tst_KyFileSystemItem::addChild_afterItWasCleared_addsIt()
{
    const auto folder = folderOf(letters("a b"));
    Item *child = folder->childAt(0);
    folder->clearChild(child);
    folder->addChild(child);
    QCOMPARE(namesOf(*folder), letters("b a"));
    QCOMPARE(child->positionInParent(), 1);
}

void tst_KyFileSystemItem::insertChild_data()
{
    newItem_goesToItsRow_data();
    QTest::newRow("negative is the first") << -1 << letters("new a b c");
}

void tst_KyFileSystemItem::insertChild()
{
    QFETCH(int, row);
    QFETCH(QStringList, names);
    if (row < 0)
        names = letters("new a b c");
    const auto folder = folderOf(letters("a b c"));
    folder->insertChild(new Item(named(QStringLiteral("new")), nullptr, -1), row);
    QCOMPARE(namesOf(*folder), names);
}

void tst_KyFileSystemItem::insertChild_twice_leavesTwo()
{
    const auto folder = folderOf(letters("a b"));
    const std::unique_ptr<Item> child(new Item(named(QStringLiteral("x")), nullptr, -1));
    folder->insertChild(child.get(), 0);
    folder->insertChild(child.get(), 2);
    QCOMPARE(namesOf(*folder), letters("x a x b"));
    QCOMPARE(folder->childPosition(child.get()), 0);
    folder->clearChild(child.get());
    QCOMPARE(namesOf(*folder), letters("a b"));
    QCOMPARE(child->fileName(), QStringLiteral("x"));
}

void tst_KyFileSystemItem::insertChildByName_data()
{
    QTest::addColumn<QStringList>("before");
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("sensitive");
    QTest::addColumn<QStringList>("after");
    QTest::newRow("d into b c") << letters("b c") << "d" << true << letters("b d c");
    QTest::newRow("a into b c") << letters("b c") << "a" << true << letters("b c a");
    QTest::newRow("into nothing") << letters("") << "a" << true << letters("a");
    QTest::newRow("an equal name stops nothing") << letters("b b a") << "b" << true << letters("b b a b");
    QTest::newRow("behind the first lesser") << letters("c b a") << "bb" << true << letters("c b bb a");
    QTest::newRow("B into a, insensitive") << letters("a") << "B" << false << letters("a B");
    QTest::newRow("a into B, insensitive") << letters("B") << "a" << false << letters("B a");
    QTest::newRow("C into B b, insensitive") << letters("B b") << "C" << false << letters("B C b");
    QTest::newRow("B into a c, sensitive") << letters("a c") << "B" << true << letters("a c B");
    QTest::newRow("a into B, sensitive") << letters("B c") << "a" << true << letters("B a c");
    QTest::newRow("equal but for case") << letters("B a") << "b" << false << letters("B a b");
    QTest::newRow("non-ASCII, insensitive") << letters("Ü z") << "ü" << false << letters("Ü z ü");
    QTest::newRow("non-ASCII, sensitive") << letters("Ü z") << "ü" << true << letters("Ü ü z");
}

void tst_KyFileSystemItem::insertChildByName()
{
    QFETCH(QStringList, before);
    QFETCH(QString, name);
    QFETCH(bool, sensitive);
    QFETCH(QStringList, after);
    const auto folder = folderOf(before);
    folder->insertChildByName(new Item(named(name), nullptr, -1),
                              sensitive ? Qt::CaseSensitive : Qt::CaseInsensitive);
    if (name == QLatin1String("b") && !sensitive)
        QCOMPARE(folder->childAt(2)->fileName(), QStringLiteral("b"));
    QCOMPARE(namesOf(*folder), after);
}

void tst_KyFileSystemItem::childAt_outside_isNull()
{
    const auto folder = folderOf(letters("a b"));
    QVERIFY(!folder->childAt(-1));
    QVERIFY(!folder->childAt(2));
    QVERIFY(!folder->childAt(INT_MIN));
    QVERIFY(!folder->childAt(INT_MAX));
    QCOMPARE(folder->childAt(1)->fileName(), QStringLiteral("b"));
    QVERIFY(!folder->childAt(1)->childAt(0));
}

void tst_KyFileSystemItem::childPosition_isTheFirstOne()
{
    const auto folder = folderOf(letters("a b c"));
    Item other(named(QStringLiteral("b")), nullptr, -1);
    QCOMPARE(folder->childPosition(folder->childAt(2)), 2);
    QCOMPARE(folder->childPosition(&other), -1);
    QCOMPARE(folder->childPosition(nullptr), -1);
    QCOMPARE(other.childPosition(folder->childAt(0)), -1);
    folder->insertChild(folder->childAt(2), 1);
    QCOMPARE(folder->childPosition(folder->childAt(1)), 1);
    QCOMPARE(folder->childAt(1)->positionInParent(), 1);
}

void tst_KyFileSystemItem::positionInParent_data()
{
    QTest::addColumn<int>("clearFrom");
    QTest::addColumn<int>("clearTo");
    QTest::addColumn<int>("insertions");
    QTest::newRow("untouched") << 1 << 0 << 0;
    QTest::newRow("after removals in front") << 0 << 30 << 0;
    QTest::newRow("after insertions in front") << 1 << 0 << 30;
    QTest::newRow("after both") << 5 << 20 << 40;
}

void tst_KyFileSystemItem::positionInParent()
{
    QFETCH(int, clearFrom);
    QFETCH(int, clearTo);
    QFETCH(int, insertions);
    QStringList names;
    for (int i = 0; i < 100; ++i)
        names.append(QString::number(i));
    const auto folder = folderOf(names);
    std::vector<std::unique_ptr<Item>> cleared;
    if (clearFrom <= clearTo) {
        for (int row = clearFrom; row <= clearTo; ++row)
            cleared.emplace_back(folder->childAt(row));
        folder->clearChildren(clearFrom, clearTo);
    }
    for (int i = 0; i < insertions; ++i)
        new Item(named(QStringLiteral("new")), folder.get(), 0);
    for (int row = 0; row < folder->childCount(); ++row)
        QCOMPARE(folder->childAt(row)->positionInParent(), row);
    for (int row = folder->childCount() - 1; row >= 0; --row)
        QCOMPARE(folder->childAt(row)->positionInParent(), row);
    for (const std::unique_ptr<Item> &item : cleared)
        QCOMPARE(item->positionInParent(), -1);
}

void tst_KyFileSystemItem::positionInParent_ofAChildTheParentDoesNotHold()
{
    const auto folder = folderOf(letters("a b"));
    const auto other = folderOf(letters("c"));
    QCOMPARE(folder->positionInParent(), -1);
    const std::unique_ptr<Item> child(folder->childAt(0));
    const std::unique_ptr<Item> neighbour(folder->childAt(1));
    folder->clearAllChildren();
    QCOMPARE(child->positionInParent(), -1);
    other->insertChild(child.get(), 0);
    QCOMPARE(child->parent(), folder.get());
    QCOMPARE(child->positionInParent(), -1);
    other->clearChild(child.get());
}

void tst_KyFileSystemItem::clearChild_ofAnother_changesNothing()
{
    const auto folder = folderOf(letters("a b"));
    Item other(named(QStringLiteral("a")), nullptr, -1);
    folder->clearChild(&other);
    folder->clearChild(nullptr);
    QCOMPARE(namesOf(*folder), letters("a b"));
}

void tst_KyFileSystemItem::clearChildren_data()
{
    QTest::addColumn<QString>("before");
    QTest::addColumn<int>("from");
    QTest::addColumn<int>("to");
    QTest::addColumn<QString>("after");
    QTest::newRow("5 to 2 is the last") << "a b c" << 5 << 2 << "a b";
    QTest::newRow("-3 to 10 is all") << "a b c" << -3 << 10 << "";
    QTest::newRow("one") << "a b c" << 1 << 1 << "a c";
    QTest::newRow("closed range") << "a b c d" << 1 << 2 << "a d";
    QTest::newRow("to below from is from") << "a b c" << 1 << -5 << "a c";
    QTest::newRow("both below") << "a b c" << -5 << -3 << "b c";
    QTest::newRow("both behind") << "a b c" << 7 << 9 << "a b";
    QTest::newRow("extremes") << "a b c" << INT_MIN << INT_MAX << "";
    QTest::newRow("swapped extremes") << "a b c" << INT_MAX << INT_MIN << "a b";
    QTest::newRow("empty list") << "" << -3 << 10 << "";
    QTest::newRow("empty list, 0 to 0") << "" << 0 << 0 << "";
}

void tst_KyFileSystemItem::clearChildren()
{
    QFETCH(QString, before);
    QFETCH(int, from);
    QFETCH(int, to);
    QFETCH(QString, after);
    const auto folder = folderOf(before.split(QLatin1Char(' '), Qt::SkipEmptyParts));
    std::vector<Item *> items;
    for (int row = 0; row < folder->childCount(); ++row)
        items.push_back(folder->childAt(row));
    folder->clearChildren(from, to);
    QCOMPARE(namesOf(*folder), after.split(QLatin1Char(' '), Qt::SkipEmptyParts));
    for (Item *item : items) {
        if (folder->childPosition(item) < 0)
            delete item; // is whole and ours now
    }
}

void tst_KyFileSystemItem::clearAllChildren_destroysNone()
{
    const auto folder = folderOf(letters("a b"));
    const std::unique_ptr<Item> a(folder->childAt(0));
    const std::unique_ptr<Item> b(folder->childAt(1));
    folder->clearAllChildren();
    QCOMPARE(folder->childCount(), 0);
    QCOMPARE(a->fileName() + b->fileName(), QStringLiteral("ab"));
    folder->clearAllChildren();
    QCOMPARE(folder->childCount(), 0);
}

void tst_KyFileSystemItem::nullChildren_areNeverEntered()
{
    const auto folder = folderOf(letters("a"));
    folder->addChild(nullptr);
    folder->insertChild(nullptr, 0);
    folder->insertChildByName(nullptr, Qt::CaseSensitive);
    QCOMPARE(namesOf(*folder), letters("a"));
}

void tst_KyFileSystemItem::statics_areOneEach()
{
    QVERIFY(Item::getIconProvidoer());
    QCOMPARE(Item::getIconProvidoer(), Item::getIconProvidoer());
    QVERIFY(Item::getIconList());
    QCOMPARE(Item::getIconList(), Item::getIconList());
}

void tst_KyFileSystemItem::folderIcon_isMadeOnceAndHasTheResource()
{
    const QIcon icon = Item::getFolderIcon();
    QVERIFY(!icon.isNull());
    QCOMPARE(Item::getIconList()->keys(), QStringList(QStringLiteral("Folder")));
    QCOMPARE(Item::getFolderIcon().cacheKey(), icon.cacheKey());

    QIcon expected = Item::getIconProvidoer()->icon(QFileIconProvider::Folder);
    const QIcon bare = expected;
    for (const QIcon::State state : {QIcon::Off, QIcon::On})
        expected.addFile(QStringLiteral(":/images/folder_win10.svg"), QSize(), QIcon::Normal, state);
    for (const QIcon::State state : {QIcon::Off, QIcon::On}) {
        for (const int size : {16, 64, 200}) {
            const QImage image = icon.pixmap(size, size, QIcon::Normal, state).toImage();
            QCOMPARE(image, expected.pixmap(size, size, QIcon::Normal, state).toImage());
            QVERIFY(!image.isNull());
        }
        const QSize own(64, 64); // of the resource
        QVERIFY(icon.availableSizes(QIcon::Normal, state).contains(own));
        QVERIFY(!bare.availableSizes(QIcon::Normal, state).contains(own));
    }
}

void tst_KyFileSystemItem::folderIcon_isTakenFromTheList()
{
    const QIcon icon(square(16));
    Item::getIconList()->insert(QStringLiteral("Folder"), icon);
    QCOMPARE(Item::getFolderIcon().cacheKey(), icon.cacheKey());
    QTemporaryDir folder;
    Item item(QFileInfo(folder.path()), nullptr, -1);
    QCOMPARE(item.icon().cacheKey(), icon.cacheKey());
}

static QFileInfo fileOfType(const QTemporaryDir &folder, const QString &name)
{
    writeFile(folder.filePath(name), QByteArray());
    return QFileInfo(folder.filePath(name));
}

void tst_KyFileSystemItem::icon_isAskedForOnce()
{
    QTemporaryDir folder;
    Item item(fileOfType(folder, QStringLiteral("a.once")), nullptr, -1);
    const QIcon icon = item.icon();
    QVERIFY(!icon.isNull());
    Item::getIconList()->clear();
    QCOMPARE(item.icon().cacheKey(), icon.cacheKey());
    QVERIFY(Item::getIconList()->isEmpty());
    item.setIcon(QIcon());
    QVERIFY(!item.icon().isNull());
    QCOMPARE(Item::getIconList()->size(), 1);
}

void tst_KyFileSystemItem::icon_thatWasSet_isKept()
{
    Item item(named(QStringLiteral("a.set")), nullptr, -1);
    const QIcon icon(square(16));
    item.setIcon(icon);
    QCOMPARE(item.icon().cacheKey(), icon.cacheKey());
    QVERIFY(Item::getIconList()->isEmpty());
}

void tst_KyFileSystemItem::getIcon_ofAKnownType_touchesNoDisk()
{
    QTemporaryDir folder;
    const QFileInfo info = fileOfType(folder, QStringLiteral("a.known"));
    const QFileInfo other = fileOfType(folder, QStringLiteral("b.known"));
    const QString key = Item::getIconProvidoer()->type(info);
    const QIcon icon = Item::getIcon(info);
    QVERIFY(QDir(Item::iconCacheFolder(key)).removeRecursively());
    QCOMPARE(Item::getIcon(other).cacheKey(), icon.cacheKey());
    QVERIFY(!QFileInfo::exists(Item::iconCacheFolder(key)));

    // What a caller put into the list counts, a null icon as well.
    const QIcon inserted(square(16));
    Item::getIconList()->insert(key, inserted);
    QCOMPARE(Item::getIcon(info).cacheKey(), inserted.cacheKey());
    Item::getIconList()->insert(key, QIcon());
    QVERIFY(Item::getIcon(info).isNull());
    QVERIFY(!QFileInfo::exists(Item::iconCacheFolder(key)));
}

void tst_KyFileSystemItem::getIcon_ofANewType_isWrittenToDisk()
{
    QTemporaryDir folder;
    const QFileInfo info = fileOfType(folder, QStringLiteral("a.new"));
    const QString key = Item::getIconProvidoer()->type(info);
    const QIcon expected = Item::getIconProvidoer()->icon(info);
    const QIcon icon = Item::getIcon(info);
    QCOMPARE(Item::getIconList()->keys(), QStringList(key));
    QCOMPARE(icon.pixmap(32, 32).toImage(), expected.pixmap(32, 32).toImage());

    QStringList names;
    for (const int size : {16, 32, 48, 256}) {
        const QPixmap pixmap = expected.pixmap(size, size, QIcon::Normal, QIcon::Off);
        if (!pixmap.isNull())
            names.append(QString::number(pixmap.width()) + QStringLiteral(".png"));
    }
    names.removeDuplicates();
    names.sort();
    const QString cache = Item::iconCacheFolder(key);
    QCOMPARE(namesIn(cache), names);
    QVERIFY(names.contains(QStringLiteral("16.png")));
    const QImage written(cache + QStringLiteral("/32.png"), "PNG");
    QCOMPARE(written.convertToFormat(QImage::Format_ARGB32),
             expected.pixmap(32, 32).toImage().convertToFormat(QImage::Format_ARGB32));
}

void tst_KyFileSystemItem::getIcon_afterARestart_readsTheImages()
{
    QTemporaryDir folder;
    const QFileInfo info = fileOfType(folder, QStringLiteral("a.restarted"));
    const QString key = Item::getIconProvidoer()->type(info);
    QList<QPixmap> pixmaps = {square(16, Qt::red), square(32, Qt::blue)};
    QVERIFY(Item::putIconPixmapToFile(QDir(Item::iconCacheFolder(key)), pixmaps));
    const QIcon icon = Item::getIcon(info);
    QList<QSize> sizes = icon.availableSizes();
    std::sort(sizes.begin(), sizes.end(), [](const QSize &a, const QSize &b) {
        return a.width() < b.width();
    });
    QCOMPARE(sizes, QList<QSize>({QSize(16, 16), QSize(32, 32)}));
    QCOMPARE(colourOf(icon, 16), QColor(Qt::red));
    QCOMPARE(colourOf(icon, 32), QColor(Qt::blue));
    QCOMPARE(Item::getIconList()->value(key).cacheKey(), icon.cacheKey());
    QCOMPARE(namesIn(Item::iconCacheFolder(key)), QStringList({"16.png", "32.png"})); // nothing is added
}

void tst_KyFileSystemItem::getIcon_ofAFolderWithoutImages_asksTheSystem_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("empty") << QString();
    QTest::newRow("no image in the PNG") << QStringLiteral("16.png");
    QTest::newRow("another kind of file") << QStringLiteral("16.txt");
}

void tst_KyFileSystemItem::getIcon_ofAFolderWithoutImages_asksTheSystem()
{
    QFETCH(QString, name);
    QTemporaryDir folder;
    const QFileInfo info = fileOfType(folder, QStringLiteral("a.unreadable"));
    const QString cache = Item::iconCacheFolder(Item::getIconProvidoer()->type(info));
    QVERIFY(QDir().mkpath(cache));
    if (!name.isEmpty())
        writeFile(cache + QLatin1Char('/') + name, "no image");
    const QIcon icon = Item::getIcon(info);
    QCOMPARE(icon.pixmap(32, 32).toImage(), Item::getIconProvidoer()->icon(info).pixmap(32, 32).toImage());
    QVERIFY(QFileInfo::exists(cache + QStringLiteral("/32.png")));
}

void tst_KyFileSystemItem::iconCacheFolder_isFormedAndNotMade()
{
    QCOMPARE(Item::iconCacheFolder(QString()), cacheRoot());
    QCOMPARE(Item::iconCacheFolder(QStringLiteral("mp4 File")), cacheRoot() + QStringLiteral("/mp4 File"));
    QCOMPARE(Item::iconCacheFolder(QStringLiteral("%1 \u00e4")), cacheRoot() + QStringLiteral("/%1 \u00e4"));
    QVERIFY(QDir::isAbsolutePath(Item::iconCacheFolder(QString())));
    QVERIFY(!QFileInfo::exists(cacheRoot()));
}

void tst_KyFileSystemItem::readPixmaps_data()
{
    QTest::addColumn<QStringList>("images");
    QTest::addColumn<QStringList>("others");
    QTest::addColumn<int>("count");
    QTest::newRow("empty") << QStringList() << QStringList() << 0;
    QTest::newRow("some") << QStringList({"16.png", "x.png"}) << QStringList() << 2;
    QTest::newRow("other names") << QStringList({"16.jpg.bmp"}) << QStringList({"png"}) << 0;
    QTest::newRow("one broken") << QStringList({"16.png"}) << QStringList({"32.png"}) << 1;
    QTest::newRow("all broken") << QStringList() << QStringList({"32.png"}) << 0;
}

void tst_KyFileSystemItem::readPixmaps()
{
    QFETCH(QStringList, images);
    QFETCH(QStringList, others);
    QFETCH(int, count);
    QTemporaryDir folder;
    for (const QString &name : images)
        QVERIFY(square(16).save(folder.filePath(name)));
    for (const QString &name : others)
        writeFile(folder.filePath(name), "no image");
    QVERIFY(QDir(folder.path()).mkdir(QStringLiteral("folder.png")));
    QList<QPixmap> pixmaps;
    QCOMPARE(Item::getIconPixmapFromFile(QDir(folder.path()), &pixmaps), count > 0);
    QCOMPARE(pixmaps.size(), count);
    QVERIFY(!Item::getIconPixmapFromFile(QDir(folder.path()), nullptr));
    QVERIFY(!Item::getIconPixmapFromFile(QDir(folder.filePath(QStringLiteral("none"))), &pixmaps));
    QCOMPARE(pixmaps.size(), count);
}

void tst_KyFileSystemItem::readPixmaps_appends()
{
    QTemporaryDir folder;
    QList<QPixmap> pixmaps = {square(64)};
    QVERIFY(Item::getIconPixmapFromFile(QDir(folder.path()), &pixmaps)); // it is not empty afterwards
    QCOMPARE(pixmaps.size(), 1);
    QVERIFY(square(16).save(folder.filePath(QStringLiteral("16.png"))));
    QVERIFY(Item::getIconPixmapFromFile(QDir(folder.path()), &pixmaps));
    QCOMPARE(pixmaps.size(), 2);
    QCOMPARE(pixmaps.at(0).width(), 64);
    QCOMPARE(pixmaps.at(1).width(), 16);
}

void tst_KyFileSystemItem::writePixmaps_data()
{
    QTest::addColumn<QList<QSize>>("sizes");
    QTest::addColumn<QStringList>("names");
    QTest::newRow("none") << QList<QSize>() << QStringList();
    QTest::newRow("null ones only") << QList<QSize>({QSize(), QSize()}) << QStringList();
    QTest::newRow("by width") << QList<QSize>({QSize(16, 16), QSize(), QSize(40, 20)})
                              << QStringList({"16.png", "40.png"});
    QTest::newRow("the same width twice")
        << QList<QSize>({QSize(8, 8), QSize(8, 4)}) << QStringList({"8.png"});
}

void tst_KyFileSystemItem::writePixmaps()
{
    QFETCH(QList<QSize>, sizes);
    QFETCH(QStringList, names);
    QTemporaryDir folder;
    QList<QPixmap> pixmaps;
    for (const QSize &size : sizes) {
        QPixmap pixmap(size);
        pixmap.fill(Qt::green);
        pixmaps.append(size.isEmpty() ? QPixmap() : pixmap);
    }
    QCOMPARE(Item::putIconPixmapToFile(QDir(folder.path()), pixmaps), !names.isEmpty());
    QCOMPARE(pixmaps.size(), sizes.size());
    QCOMPARE(namesIn(folder.path()), names);
    for (const QString &name : names) {
        const QImage image(folder.filePath(name), "PNG");
        QCOMPARE(image.pixelColor(1, 1), QColor(Qt::green));
    }
    if (names.size() == 1)
        QCOMPARE(QImage(folder.filePath(names.first())).height(), 4); // the later one
}

void tst_KyFileSystemItem::writePixmaps_makesTheFolders()
{
    QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("a/b/c"));
    QList<QPixmap> none;
    QVERIFY(!Item::putIconPixmapToFile(QDir(path), none));
    QVERIFY(!QFileInfo::exists(path)); // nothing to write, nothing made
    QList<QPixmap> nulls = {QPixmap()};
    QVERIFY(!Item::putIconPixmapToFile(QDir(path), nulls));
    QVERIFY(QFileInfo(path).isDir());
    QList<QPixmap> pixmaps = {square(16)};
    QVERIFY(Item::putIconPixmapToFile(QDir(path + QStringLiteral("/d")), pixmaps));
    QCOMPARE(namesIn(path + QStringLiteral("/d")), QStringList({"16.png"}));
}

void tst_KyFileSystemItem::writePixmaps_whereNoFolderCanBe()
{
    QTemporaryDir folder;
    writeFile(folder.filePath(QStringLiteral("file")), QByteArray());
    QList<QPixmap> pixmaps = {square(16)};
    QVERIFY(!Item::putIconPixmapToFile(QDir(folder.filePath(QStringLiteral("file/sub"))), pixmaps));
    // The cache then falls back to the system's icon, and the list keeps it.
    QVERIFY(QDir().mkpath(QFileInfo(cacheRoot()).absolutePath()));
    writeFile(cacheRoot(), QByteArray());
    const QFileInfo info = fileOfType(folder, QStringLiteral("a.nocache"));
    QVERIFY(!Item::getIcon(info).isNull());
    QCOMPARE(Item::getIconList()->size(), 1);
    QVERIFY(QFile::remove(cacheRoot()));
}

KYTE_TEST_MAIN(tst_KyFileSystemItem)
#include "tst_KyFileSystemItem.moc"
