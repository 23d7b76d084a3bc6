#include "KyStageReference.h"
#include "KyTestMain.h"

#include <KyStageListWidgetItem.h>

#include <QListWidget>
#include <QPointer>
#include <QTranslator>

#include <limits>
#include <memory>
#include <type_traits>

using namespace Kyte;

static const QString LABEL = QStringLiteral("Background");
static const int INT_HIGHEST = std::numeric_limits<int>::max();
static const double NO_NUMBER = std::numeric_limits<double>::quiet_NaN();
static const double INFINITE = std::numeric_limits<double>::infinity();

using Item = KyStageListWidgetItem;

class tst_KyStageListWidgetItem : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void newItem_hasNoStage();
    void constructors_passTheirArgumentsOn();
    void constructor_ofAStage_keepsACopy();
    void constructor_ofAListItem_hasNoStage();
    void copy_ownsAStageOfItsOwn();
    void assignment_replacesTheStage();
    void assignment_ofItself_changesNothing();
    void assignment_ofAnItemWithoutStage_leavesNone();
    void assignment_inAList_isShown();

    void setStage_takesItAndShowsItsName();
    void setStage_doesNotDeleteTheFormerStage();
    void setStage_null_leavesNoStageAndNoText();
    void destructor_deletesTheStage();
    void view_deletesItemAndStage();

    void icon_hasNinePixmaps();
    void icon_isDrawnForTheNormalState();
    void icon_followsTheIconSizeWhenItIsDrawnAgain();
    void icon_withoutAStage_staysAsItIs();
    void icon_ofTheTemplates_equalsTheStraightforwardDrawing_data();
    void icon_ofTheTemplates_equalsTheStraightforwardDrawing();
    void icon_ofAnyStage_equalsTheStraightforwardDrawing_data();
    void icon_ofAnyStage_equalsTheStraightforwardDrawing();
    void icon_ofOtherShapes_equalsTheStraightforwardDrawing_data();
    void icon_ofOtherShapes_equalsTheStraightforwardDrawing();
    void icon_withoutScreens_isAGreyStage();
    void icon_ofAScreenOutside_showsASmallerStageOffCentre();
    void icon_laterScreensCoverEarlierOnes();
    void icon_namesAreNotClippedByTheirScreen();
    void icon_isTransparentAround();
    void icon_followsTheTranslation();
    void icon_leavesOutMissingScreens();
    void icon_ofDegenerateStages_isTransparent_data();
    void icon_ofDegenerateStages_isTransparent();
    void icon_ofUselessSizes_hasNoPixmap_data();
    void icon_ofUselessSizes_hasNoPixmap();
    void icon_ofThousandsOfScreens_isDrawn();
};

/** What Qt has to say. */
static QStringList messages;

static void keepMessage(QtMsgType, const QMessageLogContext &, const QString &message)
{
    messages.append(message);
}

static QtMessageHandler formerHandler = nullptr;

void tst_KyStageListWidgetItem::init()
{
    messages.clear();
}

void tst_KyStageListWidgetItem::cleanup()
{
    if (formerHandler)
        qInstallMessageHandler(formerHandler);
    formerHandler = nullptr;
}

static std::unique_ptr<KyStage> makeStage(const QString &name, const QRect &rect = QRect(0, 0, 1920, 1080))
{
    auto stage = std::make_unique<KyStage>();
    stage->setName(name);
    stage->setRect(rect);
    return stage;
}

/** The icon's pixmap for \a factor, as it is. */
static QImage iconImage(const Item &item, double factor)
{
    return item.icon().pixmap((QSizeF(item.iconSize()) * factor).toSize()).toImage();
}

/** As a pixmap shows it. */
static QImage shown(const QImage &image)
{
    return QPixmap::fromImage(image).toImage();
}

static int differentPixels(const QImage &left, const QImage &right)
{
    if (left.size() != right.size())
        return -1;
    int count = 0;
    for (int y = 0; y < left.height(); ++y) {
        for (int x = 0; x < left.width(); ++x)
            count += left.pixel(x, y) != right.pixel(x, y);
    }
    return count;
}

static bool isTransparent(const QImage &image)
{
    QImage nothing(image.size(), QImage::Format_ARGB32_Premultiplied);
    nothing.fill(Qt::transparent);
    return differentPixels(image, nothing) == 0;
}

/** Draws the icon and compares each of its pixmaps with the straightforward drawing. */
static void compareWithReference(Item *item)
{
    item->createIconImage();
    for (double factor : Test::iconFactors()) {
        const QImage expected = shown(Test::referenceIcon(*item->stage(), item->iconSize(), factor, LABEL));
        QCOMPARE(iconImage(*item, factor).size(), expected.size());
        QCOMPARE(differentPixels(iconImage(*item, factor), expected), 0);
    }
}

void tst_KyStageListWidgetItem::newItem_hasNoStage()
{
    const Item item;
    QCOMPARE(item.stage(), nullptr);
    QCOMPARE(item.description(), QString());
    QCOMPARE(item.text(), QString());
    QCOMPARE(item.iconSize(), QSize(128, 128));
    QVERIFY(item.icon().isNull());
    static_assert(Item::Default_Type == 1929, "product-wide");
    QCOMPARE(item.type(), 1929);
    QVERIFY(item.type() > int(QListWidgetItem::UserType));
    static_assert(std::has_virtual_destructor<Item>::value, "deleted through QListWidgetItem");
}

void tst_KyStageListWidgetItem::constructors_passTheirArgumentsOn()
{
    QListWidget view;
    QPixmap pixmap(8, 8);
    pixmap.fill(Qt::red);
    const KyStage stage;
    const auto *plain = new Item(&view, 1001);
    const auto *text = new Item(QStringLiteral("text"), &view, 1002);
    const auto *icon = new Item(QIcon(pixmap), QStringLiteral("icon"), &view, 1003);
    const auto *ofStage = new Item(stage, &view, 1004);

    QCOMPARE(view.count(), 4);
    const QList<const Item *> items{plain, text, icon, ofStage};
    for (int row = 0; row < items.size(); ++row) {
        QCOMPARE(view.item(row), items.at(row));
        QCOMPARE(items.at(row)->type(), 1001 + row);
        QCOMPARE(items.at(row)->iconSize(), QSize(128, 128));
    }
    QCOMPARE(text->text(), QStringLiteral("text"));
    QCOMPARE(icon->text(), QStringLiteral("icon"));
    QCOMPARE(icon->icon().pixmap(8).toImage().pixelColor(4, 4), QColor(Qt::red));
    QCOMPARE(text->stage(), nullptr);
    QCOMPARE(icon->stage(), nullptr);
}

void tst_KyStageListWidgetItem::constructor_ofAStage_keepsACopy()
{
    auto stage = makeStage(QStringLiteral("Lobby"));
    stage->setDescription(QStringLiteral("<b>ground floor</b>"));
    Test::addScreen(stage.get(), QStringLiteral("Multi 1"), QRectF(0, 0, 10, 10));
    const Item item(*stage, nullptr, Item::Default_Type);

    QVERIFY(item.stage() != stage.get());
    stage->setName(QStringLiteral("changed"));
    stage->screenList().first()->setName(QStringLiteral("changed"));
    QCOMPARE(item.text(), QStringLiteral("Lobby"));
    QCOMPARE(item.stage()->name(), QStringLiteral("Lobby"));
    QCOMPARE(item.description(), QStringLiteral("<b>ground floor</b>"));
    QCOMPARE(item.stage()->screenList().first()->name(), QStringLiteral("Multi 1"));
}

void tst_KyStageListWidgetItem::constructor_ofAListItem_hasNoStage()
{
    QListWidgetItem other(QStringLiteral("plain"));
    other.setToolTip(QStringLiteral("tip"));
    const Item item(other);
    QCOMPARE(item.text(), QStringLiteral("plain"));
    QCOMPARE(item.toolTip(), QStringLiteral("tip"));
    QCOMPARE(item.stage(), nullptr);
    QCOMPARE(item.iconSize(), QSize(128, 128));
}

void tst_KyStageListWidgetItem::copy_ownsAStageOfItsOwn()
{
    QPointer<KyStage> copied;
    {
        std::unique_ptr<Item> copy;
        {
            Item item(*makeStage(QStringLiteral("Lobby")), nullptr, Item::Default_Type);
            Test::addScreen(item.stage(), QStringLiteral("Multi 1"), QRectF(0, 0, 10, 10));
            item.setIconSize(QSize(64, 32));
            item.createIconImage();
            copy = std::make_unique<Item>(item);
            copied = copy->stage();
            QVERIFY(copy->stage() != item.stage());
            QVERIFY(copy->stage()->screenList().first() != item.stage()->screenList().first());
        }
        QVERIFY(copied);
        QCOMPARE(copy->text(), QStringLiteral("Lobby"));
        QCOMPARE(copy->stage()->name(), QStringLiteral("Lobby"));
        QCOMPARE(copy->stage()->screenList().first()->name(), QStringLiteral("Multi 1"));
        QCOMPARE(copy->iconSize(), QSize(64, 32));
        QCOMPARE(copy->icon().availableSizes().size(), 9);
        QCOMPARE(copy->type(), int(QListWidgetItem::Type)); // no copied item has the type of the other one
    }
    QVERIFY(!copied);

    const Item empty;
    QCOMPARE(Item(empty).stage(), nullptr);
}

void tst_KyStageListWidgetItem::assignment_replacesTheStage()
{
    Item item(*makeStage(QStringLiteral("Lobby")), nullptr, Item::Default_Type);
    Item other(*makeStage(QStringLiteral("Bar")), nullptr, Item::Default_Type);
    other.setIconSize(QSize(64, 32));
    const QPointer<KyStage> former = item.stage();
    item = other;
    QVERIFY(!former);
    QVERIFY(item.stage() != other.stage());
    QCOMPARE(item.stage()->name(), QStringLiteral("Bar"));
    QCOMPARE(item.text(), QStringLiteral("Bar"));
    QCOMPARE(item.iconSize(), QSize(64, 32));
}

void tst_KyStageListWidgetItem::assignment_ofItself_changesNothing()
{
    Item item(*makeStage(QStringLiteral("Lobby")), nullptr, Item::Default_Type);
    const QPointer<KyStage> stage = item.stage();
    const Item &self = item;
    item = self;
    QVERIFY(stage);
    QCOMPARE(item.stage(), stage.data());
    QCOMPARE(item.text(), QStringLiteral("Lobby"));
}

void tst_KyStageListWidgetItem::assignment_ofAnItemWithoutStage_leavesNone()
{
    Item item(*makeStage(QStringLiteral("Lobby")), nullptr, Item::Default_Type);
    const QPointer<KyStage> former = item.stage();
    item = Item(QStringLiteral("plain"), nullptr, Item::Default_Type);
    QVERIFY(!former);
    QCOMPARE(item.stage(), nullptr);
    QCOMPARE(item.text(), QStringLiteral("plain"));
}

void tst_KyStageListWidgetItem::assignment_inAList_isShown()
{
    QListWidget view;
    auto *item = new Item(*makeStage(QStringLiteral("Lobby")), &view, Item::Default_Type);
    *item = Item(*makeStage(QStringLiteral("Bar")), nullptr, Item::Default_Type);
    QCOMPARE(view.model()->index(0, 0).data().toString(), QStringLiteral("Bar"));
    QCOMPARE(item->listWidget(), &view);
}

void tst_KyStageListWidgetItem::setStage_takesItAndShowsItsName()
{
    Item item(QStringLiteral("former"), nullptr, Item::Default_Type);
    auto *stage = makeStage(QStringLiteral("Lobby")).release();
    stage->setDescription(QStringLiteral("ground floor"));
    item.setStage(stage);
    QCOMPARE(item.stage(), stage);
    QCOMPARE(item.text(), QStringLiteral("Lobby"));
    QCOMPARE(item.description(), QStringLiteral("ground floor"));
    QVERIFY(item.icon().isNull());
}

void tst_KyStageListWidgetItem::setStage_doesNotDeleteTheFormerStage()
{
    Item item;
    const std::unique_ptr<KyStage> first = makeStage(QStringLiteral("Lobby"));
    item.setStage(first.get());
    item.setStage(makeStage(QStringLiteral("Bar")).release());
    QCOMPARE(first->name(), QStringLiteral("Lobby"));
    QCOMPARE(item.text(), QStringLiteral("Bar"));
}

void tst_KyStageListWidgetItem::setStage_null_leavesNoStageAndNoText()
{
    const std::unique_ptr<KyStage> stage = makeStage(QStringLiteral("Lobby"));
    Item item;
    item.setStage(stage.get());
    item.setStage(nullptr);
    QCOMPARE(item.stage(), nullptr);
    QCOMPARE(item.text(), QString());
    QCOMPARE(item.description(), QString());
}

void tst_KyStageListWidgetItem::destructor_deletesTheStage()
{
    QPointer<KyStage> stage = makeStage(QStringLiteral("Lobby")).release();
    {
        Item item;
        item.setStage(stage);
    }
    QVERIFY(!stage);
}

void tst_KyStageListWidgetItem::view_deletesItemAndStage()
{
    auto view = std::make_unique<QListWidget>();
    const auto *item = new Item(*makeStage(QStringLiteral("Lobby")), view.get(), Item::Default_Type);
    const QPointer<KyStage> stage = item->stage();
    view.reset();
    QVERIFY(!stage);
}

void tst_KyStageListWidgetItem::icon_hasNinePixmaps()
{
    Item item(*makeStage(QStringLiteral("Lobby")), nullptr, Item::Default_Type);
    item.createIconImage();
    QList<QSize> expected;
    for (int side : {128, 160, 192, 224, 256, 288, 320, 352, 384})
        expected.append(QSize(side, side));
    QCOMPARE(item.icon().availableSizes(QIcon::Normal, QIcon::Off), expected);
    for (const QSize &size : qAsConst(expected)) {
        QCOMPARE(item.icon().pixmap(size).size(), size);
        QCOMPARE(item.icon().pixmap(size).devicePixelRatio(), 1.0);
    }
}

void tst_KyStageListWidgetItem::icon_isDrawnForTheNormalState()
{
    Item item(*makeStage(QStringLiteral("Lobby")), nullptr, Item::Default_Type);
    item.createIconImage();
    QVERIFY(item.icon().availableSizes(QIcon::Normal, QIcon::On).isEmpty());
    QVERIFY(item.icon().availableSizes(QIcon::Disabled, QIcon::Off).isEmpty());
    QVERIFY(item.icon().availableSizes(QIcon::Selected, QIcon::Off).isEmpty());
}

void tst_KyStageListWidgetItem::icon_followsTheIconSizeWhenItIsDrawnAgain()
{
    Item item(*makeStage(QStringLiteral("Lobby")), nullptr, Item::Default_Type);
    item.createIconImage();
    item.setIconSize(QSize(61, 33));
    QCOMPARE(item.iconSize(), QSize(61, 33));
    QCOMPARE(item.icon().availableSizes().first(), QSize(128, 128));
    item.createIconImage();
    QCOMPARE(item.icon().availableSizes().size(), 9);
    QCOMPARE(item.icon().availableSizes().at(0), QSize(61, 33));
    QCOMPARE(item.icon().availableSizes().at(1), QSize(76, 41)); // 76.25 x 41.25
    QCOMPARE(item.icon().availableSizes().at(2), QSize(92, 50)); // 91.5 x 49.5
}

void tst_KyStageListWidgetItem::icon_withoutAStage_staysAsItIs()
{
    QPixmap pixmap(8, 8);
    pixmap.fill(Qt::red);
    Item item(QIcon(pixmap), QStringLiteral("plain"), nullptr, Item::Default_Type);
    item.createIconImage();
    QCOMPARE(item.icon().availableSizes(), QList<QSize>{QSize(8, 8)});
}

void tst_KyStageListWidgetItem::icon_ofTheTemplates_equalsTheStraightforwardDrawing_data()
{
    QTest::addColumn<QRect>("stage");
    QTest::addColumn<QVector<QRectF>>("screens");
    const QRect wide(0, 0, 1920, 1080);
    const QRect high(0, 0, 607, 1080);
    using Rects = QVector<QRectF>;
    QTest::newRow("stage only") << wide << Rects();
    QTest::newRow("one, margin") << wide << Rects{{96, 54, 1728, 972}};
    QTest::newRow("one") << wide << Rects{{0, 0, 1920, 1080}};
    QTest::newRow("strip, margin") << wide << Rects{{96, 54, 1728, 855}, {96, 929, 1728, 97}};
    QTest::newRow("strip") << wide << Rects{{0, 0, 1920, 950}, {0, 950.4, 1920, 129.6}};
    QTest::newRow("two and strip, margin")
        << wide << Rects{{96, 54, 1261, 855}, {1392, 54, 432, 855}, {96, 929, 1728, 97}};
    QTest::newRow("two and strip") << wide
                                   << Rects{{0, 0, 1402, 972}, {1402, 0, 518, 972}, {0, 972, 1920, 108}};
    QTest::newRow("vertical, margin") << high << Rects{{30, 54, 547, 972}};
    QTest::newRow("vertical") << high << Rects{{0, 0, 607, 1080}};
    QTest::newRow("vertical two, margin") << high << Rects{{30, 54, 547, 486}, {30, 540, 547, 486}};
    QTest::newRow("vertical two") << high << Rects{{0, 0, 607, 540}, {0, 540, 607, 540}};
}

void tst_KyStageListWidgetItem::icon_ofTheTemplates_equalsTheStraightforwardDrawing()
{
    QFETCH(QRect, stage);
    QFETCH(QVector<QRectF>, screens);
    Item item;
    item.setStage(makeStage(QStringLiteral("template"), stage).release());
    for (int i = 0; i < screens.size(); ++i)
        Test::addScreen(item.stage(), QStringLiteral("Multi %1").arg(i + 1), screens.at(i));
    compareWithReference(&item);
}

void tst_KyStageListWidgetItem::icon_ofAnyStage_equalsTheStraightforwardDrawing_data()
{
    QTest::addColumn<quint32>("seed");
    for (quint32 seed = 1; seed <= 24; ++seed)
        QTest::addRow("seed %u", seed) << seed;
}

void tst_KyStageListWidgetItem::icon_ofAnyStage_equalsTheStraightforwardDrawing()
{
    QFETCH(quint32, seed);
    Item item;
    item.setStage(new KyStage);
    Test::fillAtRandom(item.stage(), seed);
    compareWithReference(&item);
}

void tst_KyStageListWidgetItem::icon_ofOtherShapes_equalsTheStraightforwardDrawing_data()
{
    QTest::addColumn<QSize>("iconSize");
    QTest::addColumn<QRect>("rect");
    const QRect wide(0, 0, 1920, 1080);
    const QRect high(0, 0, 1080, 1920);
    QTest::newRow("flat, cut off") << QSize(128, 40) << wide;
    QTest::newRow("narrow, cut off") << QSize(40, 128) << high;
    QTest::newRow("flat") << QSize(128, 40) << high;
    QTest::newRow("narrow") << QSize(40, 128) << wide;
    QTest::newRow("small") << QSize(16, 16) << wide;
    QTest::newRow("odd") << QSize(117, 83) << wide;
    QTest::newRow("square stage") << QSize(128, 128) << QRect(0, 0, 1000, 1000);
    QTest::newRow("stage elsewhere") << QSize(128, 128) << QRect(-2000, 5000, 1920, 1080);
    QTest::newRow("large numbers") << QSize(128, 128) << QRect(-1000000000, 0, 2000000000, 1000000000);
    QTest::newRow("strip of a stage") << QSize(128, 128) << QRect(0, 0, 5000, 60);
}

void tst_KyStageListWidgetItem::icon_ofOtherShapes_equalsTheStraightforwardDrawing()
{
    QFETCH(QSize, iconSize);
    QFETCH(QRect, rect);
    Item item;
    item.setIconSize(iconSize);
    item.setStage(makeStage(QStringLiteral("stage"), rect).release());
    Test::addScreen(item.stage(), QStringLiteral("Multi 1"),
                    QRectF(rect.left(), rect.top(), rect.width() * 0.5, rect.height() * 0.5));
    compareWithReference(&item);
}

void tst_KyStageListWidgetItem::icon_withoutScreens_isAGreyStage()
{
    Item item(*makeStage(QStringLiteral("Lobby")), nullptr, Item::Default_Type);
    item.createIconImage();
    const QImage image = iconImage(item, 1.0);
    QCOMPARE(image.pixelColor(20, 40), QColor(Qt::lightGray));
    QCOMPARE(image.pixelColor(110, 90), QColor(Qt::lightGray));
    QCOMPARE(image.pixelColor(5, 60), QColor(Qt::black)); // the outline
    QCOMPARE(image.pixelColor(60, 31), QColor(Qt::black));
    QCOMPARE(image.pixelColor(60, 30), QColor(Qt::transparent));
    QCOMPARE(image.pixelColor(4, 60), QColor(Qt::transparent));
    int darkPixels = 0; // of the text, in the middle
    for (int x = 30; x < 98; ++x)
        darkPixels += image.pixelColor(x, 64).lightness() < 100;
    QVERIFY2(darkPixels > 5, qPrintable(QString::number(darkPixels)));
}

void tst_KyStageListWidgetItem::icon_ofAScreenOutside_showsASmallerStageOffCentre()
{
    Item item(*makeStage(QStringLiteral("Lobby"), QRect(0, 0, 1000, 1000)), nullptr, Item::Default_Type);
    Test::addScreen(item.stage(), QString(), QRectF(900, 900, 1100, 1100));
    item.createIconImage();
    const QImage image = iconImage(item, 1.0);
    // 2000 pixels in 118: the stage ends in the middle.
    QCOMPARE(image.pixelColor(10, 10), QColor(Qt::lightGray));
    QCOMPARE(image.pixelColor(50, 20), QColor(Qt::lightGray));
    QCOMPARE(image.pixelColor(75, 20), QColor(Qt::transparent));
    QCOMPARE(image.pixelColor(20, 75), QColor(Qt::transparent));
    QCOMPARE(image.pixelColor(100, 100), QColor(Qt::darkGray));
}

void tst_KyStageListWidgetItem::icon_laterScreensCoverEarlierOnes()
{
    Item item(*makeStage(QStringLiteral("Lobby"), QRect(0, 0, 1000, 1000)), nullptr, Item::Default_Type);
    Test::addScreen(item.stage(), QStringLiteral("#####"), QRectF(200, 200, 600, 600))->setZIndex(9);
    item.createIconImage();
    const QImage first = iconImage(item, 1.0);
    Test::addScreen(item.stage(), QString(), QRectF(100, 100, 800, 800));
    item.createIconImage();
    const QImage covered = iconImage(item, 1.0);
    int text = 0;
    int rest = 0;
    for (int y = 40; y < 90; ++y) {
        for (int x = 40; x < 90; ++x) {
            text += first.pixelColor(x, y) != QColor(Qt::darkGray);
            rest += covered.pixelColor(x, y) != QColor(Qt::darkGray);
        }
    }
    QVERIFY(text > 20);
    QCOMPARE(rest, 0);
}

void tst_KyStageListWidgetItem::icon_namesAreNotClippedByTheirScreen()
{
    // The name stands on the stage, far beyond a screen that is two pixels wide.
    Item item(*makeStage(QStringLiteral("Lobby"), QRect(0, 0, 1000, 1000)), nullptr, Item::Default_Type);
    Test::addScreen(item.stage(), QStringLiteral("WWWWWW"), QRectF(100, 100, 20, 20));
    item.createIconImage();
    const QImage image = iconImage(item, 1.0);
    int white = 0;
    for (int y = 15; y < 35; ++y) {
        for (int x = 40; x < 80; ++x)
            white += image.pixelColor(x, y).lightness() > 230;
    }
    QVERIFY2(white > 20, qPrintable(QString::number(white)));
}

void tst_KyStageListWidgetItem::icon_isTransparentAround()
{
    Item item(*makeStage(QStringLiteral("Lobby")), nullptr, Item::Default_Type);
    Test::addScreen(item.stage(), QStringLiteral("Multi 1"), QRectF(0, 0, 1920, 1080));
    item.createIconImage();
    for (double factor : Test::iconFactors()) {
        const QImage image = iconImage(item, factor);
        const int last = image.width() - 1;
        for (int i = 0; i <= last; ++i) {
            for (int border = 0; border < 5; ++border) {
                QCOMPARE(qAlpha(image.pixel(i, border)), 0);
                QCOMPARE(qAlpha(image.pixel(i, last - border)), 0);
                QCOMPARE(qAlpha(image.pixel(border, i)), 0);
                QCOMPARE(qAlpha(image.pixel(last - border, i)), 0);
            }
        }
    }
}

/** Translates the label only. */
class LabelTranslator : public QTranslator
{
public:
    QString translate(const char *context, const char *sourceText, const char *, int) const override
    {
        const bool isLabel =
            qstrcmp(context, "Kyte::KyStageListWidgetItem") == 0 && qstrcmp(sourceText, "Background") == 0;
        return isLabel ? QStringLiteral("Grund") : QString();
    }
    bool isEmpty() const override
    {
        return false;
    }
};

void tst_KyStageListWidgetItem::icon_followsTheTranslation()
{
    LabelTranslator translator;
    QVERIFY(QCoreApplication::installTranslator(&translator));
    Item item(*makeStage(QStringLiteral("Lobby")), nullptr, Item::Default_Type);
    item.createIconImage();
    QCoreApplication::removeTranslator(&translator);
    const QImage expected =
        shown(Test::referenceIcon(*item.stage(), item.iconSize(), 1.0, QStringLiteral("Grund")));
    QCOMPARE(differentPixels(iconImage(item, 1.0), expected), 0);
}

void tst_KyStageListWidgetItem::icon_leavesOutMissingScreens()
{
    Item item(*makeStage(QStringLiteral("Lobby")), nullptr, Item::Default_Type);
    const QImage expected = shown(Test::referenceIcon(*item.stage(), item.iconSize(), 1.0, LABEL));
    item.stage()->screenListPtr()->append(nullptr);
    item.createIconImage();
    QCOMPARE(differentPixels(iconImage(item, 1.0), expected), 0);
}

void tst_KyStageListWidgetItem::icon_ofDegenerateStages_isTransparent_data()
{
    QTest::addColumn<QRect>("stage");
    QTest::addColumn<QRectF>("screen");
    const QRect none;
    QTest::newRow("zero") << none << QRectF();
    QTest::newRow("no width") << QRect(0, 0, 0, 100) << QRectF();
    QTest::newRow("no height") << QRect(0, 0, 100, 0) << QRectF();
    QTest::newRow("negative") << QRect(100, 100, -50, -20) << QRectF();
    QTest::newRow("negative width") << QRect(100, 100, -50, 20) << QRectF();
    QTest::newRow("huge and flat") << QRect(0, 0, INT_HIGHEST, 10) << QRectF();
    QTest::newRow("huge and thin") << QRect(0, 0, 10, INT_HIGHEST) << QRectF();
    QTest::newRow("wider than an int") << QRect(QPoint(-INT_HIGHEST, 0), QPoint(INT_HIGHEST, 10)) << QRectF();
    QTest::newRow("infinite screen") << none << QRectF(0, 0, INFINITE, INFINITE);
    QTest::newRow("screen at no number") << none << QRectF(NO_NUMBER, 0, 10, 10);
    QTest::newRow("screen as wide as numbers go") << none << QRectF(-1.7e308, 0, 1.7e308, 10);
    QTest::newRow("screen far away, flat") << QRect(0, 0, 100, 100) << QRectF(1e300, 0, 10, 10);
}

void tst_KyStageListWidgetItem::icon_ofDegenerateStages_isTransparent()
{
    QFETCH(QRect, stage);
    QFETCH(QRectF, screen);
    Item item;
    item.setStage(makeStage(QStringLiteral("Lobby"), stage).release());
    Test::addScreen(item.stage(), QStringLiteral("Multi 1"), screen);
    formerHandler = qInstallMessageHandler(keepMessage);
    item.createIconImage();
    cleanup();
    QCOMPARE(messages, QStringList());
    QCOMPARE(item.icon().availableSizes().size(), 9);
    for (double factor : Test::iconFactors())
        QVERIFY(isTransparent(iconImage(item, factor)));
}

void tst_KyStageListWidgetItem::icon_ofUselessSizes_hasNoPixmap_data()
{
    QTest::addColumn<QSize>("size");
    QTest::addColumn<int>("pixmaps");
    QTest::newRow("invalid") << QSize() << 0;
    QTest::newRow("zero") << QSize(0, 0) << 0;
    QTest::newRow("negative") << QSize(-128, 128) << 0;
    QTest::newRow("beyond everything") << QSize(INT_HIGHEST, INT_HIGHEST) << 0;
    QTest::newRow("long") << QSize(INT_HIGHEST, 1) << 0;
    QTest::newRow("too long from twice on") << QSize(4096, 12) << 5;
    QTest::newRow("one pixel") << QSize(1, 1) << 3; // several factors make the same size
}

void tst_KyStageListWidgetItem::icon_ofUselessSizes_hasNoPixmap()
{
    QFETCH(QSize, size);
    QFETCH(int, pixmaps);
    Item item(*makeStage(QStringLiteral("Lobby")), nullptr, Item::Default_Type);
    item.setIconSize(size);
    formerHandler = qInstallMessageHandler(keepMessage);
    item.createIconImage();
    cleanup();
    QCOMPARE(messages, QStringList());
    QCOMPARE(item.icon().availableSizes().size(), pixmaps);
}

void tst_KyStageListWidgetItem::icon_ofThousandsOfScreens_isDrawn()
{
    Item item(*makeStage(QStringLiteral("Lobby")), nullptr, Item::Default_Type);
    for (int i = 0; i < 2000; ++i)
        Test::addScreen(item.stage(), QStringLiteral("Screen %1").arg(i),
                        QRectF(i % 100 * 19, i / 100 * 20, 30, 30));
    item.createIconImage();
    QCOMPARE(item.icon().availableSizes().size(), 9);
    QVERIFY(!isTransparent(iconImage(item, 1.0)));
}

KYTE_TEST_MAIN(tst_KyStageListWidgetItem)
#include "tst_KyStageListWidgetItem.moc"
