#include "KyTestEnvironment.h"
#include "KyTestMain.h"

#include <KyEditorCommon.h>
#include <KyPluginExtScreenInterface.h>
#include <KyPluginGuiInterface.h>
#include <KyScreen.h>

#include <QDesktopServices>
#include <QDir>
#include <QFileInfo>
#include <QFontMetrics>
#include <QPainter>
#include <QProcess>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QTranslator>
#include <QUrl>

#include <cmath>
#include <limits>
#include <memory>
#include <type_traits>
#include <utility>
#include <vector>

#ifdef Q_OS_WIN
#include <qt_windows.h>
#endif

using namespace Kyte;

static const double NO_NUMBER = std::numeric_limits<double>::quiet_NaN();
static const double ENDLESS = std::numeric_limits<double>::infinity();
static const int INT_LIMIT = std::numeric_limits<int>::max();
static const int CANNOT_LIMIT = 77; // what ky_watch_limit ends with where it is not allowed to do its work

using Names = QMap<QString, int>;

class tst_KyEditorCommon : public QObject
{
    Q_OBJECT

private slots:
    void stageOptions_areBits();
    void object_hasAMetaObjectAndAParent();

    void checkName_data();
    void checkName();
    void checkName_ofEmptyName_changesNothing();
    void checkName_withoutMap_answersTheName();
    void checkName_again_givesTheNextName();

    void getDurationString_data();
    void getDurationString();

    void getDurationImage_isOnePixelLargerAllAround_data();
    void getDurationImage_isOnePixelLargerAllAround();
    void getDurationImage_isWhiteOnAHalfTransparentPlate();
    void getDurationImage_followsTheApplicationFontButNotItsSize();

    void changeImageOpacity_data();
    void changeImageOpacity();
    void changeImageOpacity_leavesTheSourceAlone();
    void changeImageOpacity_keepsTransparentPlacesTransparent();
    void changeImageOpacity_ofADensePixmap_paintsAllOfIt();
    void changeImageOpacity_ofNull_isNull();

    void getByteArrayFromPointer_data();
    void getByteArrayFromPointer();
    void getPointerFromByteArray_data();
    void getPointerFromByteArray();
    void pointer_comesBackFromItsText();

    void openFolderWithShell_data();
    void openFolderWithShell();
    void openFolderWithShell_ofARelativePath_opensTheAbsoluteOne();
    void openFolderWithShell_ofAnEmptyPath_doesNothing();

    void sortScreenByZIndex_data();
    void sortScreenByZIndex();
    void sortScreenByZIndex_ofUselessLists_isMinusOne();
    void sortScreenByZIndex_followsTheSwapPattern_data();
    void sortScreenByZIndex_followsTheSwapPattern();

    void pluginInterfaces_data();
    void pluginInterfaces();
    void pluginInterfaces_ofNull_areNull();
    void pluginInterface_keepsThePluginAlive();

    void getThumbnailFilePath_data();
    void getThumbnailFilePath();

    void tryInstallFileWatcher_data();
    void tryInstallFileWatcher();
    void tryInstallFileWatcher_onALockedFolder_isFalse();
    void tryInstallFileWatcher_leavesNothingBehind();
    void tryInstallFileWatcher_whileTheUsersLimitIsReached_isFalse_data();
    void tryInstallFileWatcher_whileTheUsersLimitIsReached_isFalse();

    void eventTypeTexts_data();
    void eventTypeTexts();
    void eventActionTexts_data();
    void eventActionTexts();
    void eventTexts_areTranslatedInTheContextOfTheClass();
};

void tst_KyEditorCommon::stageOptions_areBits()
{
    static_assert(
        std::is_same<decltype(STAGE_OPTION_ZOOM_TO_DESKTOP_SIZE), const unsigned int>::value
            && std::is_same<decltype(STAGE_OPTION_CORRECT_SCREEN_POS_SIZE), const unsigned int>::value,
        "bits of an unsigned number");
    QCOMPARE(STAGE_OPTION_ZOOM_TO_DESKTOP_SIZE, 1u);
    QCOMPARE(STAGE_OPTION_CORRECT_SCREEN_POS_SIZE, 2u);
}

void tst_KyEditorCommon::object_hasAMetaObjectAndAParent()
{
    QObject parent;
    const auto *object = new KyEditorCommon(&parent);

    QCOMPARE(object->parent(), &parent);
    QCOMPARE(object->metaObject()->className(), "Kyte::KyEditorCommon");
}

void tst_KyEditorCommon::checkName_data()
{
    QTest::addColumn<QStringList>("used");
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("expected");

    const auto addRow = [](const char *row, const QStringList &used, const QString &name,
                           const QString &expected) {
        QTest::newRow(row) << used << name << expected;
    };
    /** The name is the one that is in use. */
    const auto addTaken = [&addRow](const char *row, const QString &name, const QString &expected) {
        addRow(row, {name}, name, expected);
    };
    const QString screen = QStringLiteral("Screen");
    const QString first = QStringLiteral("Screen (1)");
    const QString second = QStringLiteral("Screen (2)");

    addRow("free", {}, screen, screen);
    addRow("free with a counter", {screen}, QStringLiteral("Screen (5)"), QStringLiteral("Screen (5)"));
    addRow("free with blanks", {QStringLiteral("A B")}, QStringLiteral(" A  B (3) "),
           QStringLiteral(" A  B (3) "));
    addRow("other case is another name", {QStringLiteral("screen")}, screen, screen);
    addTaken("taken", screen, first);
    addTaken("counter taken, base free", first, second);
    addRow("next counter", {screen, first}, screen, second);
    addRow("gap", {screen, first, QStringLiteral("Screen (3)")}, screen, second);
    addRow("six taken",
           {screen, first, second, QStringLiteral("Screen (3)"), QStringLiteral("Screen (4)"),
            QStringLiteral("Screen (5)"), QStringLiteral("Screen (6)")},
           QStringLiteral("Screen (3)"), QStringLiteral("Screen (7)"));
    addTaken("letters are no counter", QStringLiteral("Screen (x)"), QStringLiteral("Screen (x) (1)"));
    addTaken("counter without digits", QStringLiteral("Screen ()"), first);
    addTaken("counter with leading zeros", QStringLiteral("Screen (01)"), first);
    addTaken("counter beyond an int", QStringLiteral("Screen (99999999999999999999)"), first);
    addTaken("last counter of an int", QStringLiteral("Screen (2147483646)"), first);
    addTaken("counter alone", QStringLiteral("(1)"), QStringLiteral("(1) (1)"));
    addTaken("two counters", QStringLiteral("Screen (1) (2)"), QStringLiteral("Screen (1) (1)"));
    addTaken("blanks stay without a counter", QStringLiteral("A  B"), QStringLiteral("A  B (1)"));
    addTaken("blanks collapse with a counter", QStringLiteral("A  B (3)"), QStringLiteral("A B (1)"));
    addTaken("outer blanks stay without a counter", QStringLiteral(" A "), QStringLiteral(" A  (1)"));
    addTaken("outer blanks go with a counter", QStringLiteral(" A (3) "), QStringLiteral("A (1)"));
    addTaken("blank alone", QStringLiteral(" "), QStringLiteral("  (1)"));
    addTaken("tab is no separator", QStringLiteral("A\t(1)"), QStringLiteral("A\t(1) (1)"));
    addTaken("place markers", QStringLiteral("%1 %2"), QStringLiteral("%1 %2 (1)"));
    addTaken("place markers with a counter", QStringLiteral("%2%1 (4)"), QStringLiteral("%2%1 (1)"));
    addTaken("other alphabets", QStringLiteral("\u6620\u753b (2)"), QStringLiteral("\u6620\u753b (1)"));
}

void tst_KyEditorCommon::checkName()
{
    QFETCH(QStringList, used);
    QFETCH(QString, name);
    QFETCH(QString, expected);
    Names names;
    for (const QString &key : used)
        names.insert(key, 7);
    Names namesAfter = names;
    namesAfter.insert(expected, 42);

    QCOMPARE(KyEditorCommon::checkName(name, 42, &names), expected);
    QCOMPARE(names, namesAfter);
}

void tst_KyEditorCommon::checkName_ofEmptyName_changesNothing()
{
    Names names = {{QString(), 1}};

    QCOMPARE(KyEditorCommon::checkName(QString(), 2, &names), QString());
    QCOMPARE(names, Names({{QString(), 1}}));
}

void tst_KyEditorCommon::checkName_withoutMap_answersTheName()
{
    QCOMPARE(KyEditorCommon::checkName(QStringLiteral(" A  (1)"), 2, nullptr), QStringLiteral(" A  (1)"));
}

void tst_KyEditorCommon::checkName_again_givesTheNextName()
{
    Names names;
    for (int count = 0; count < 2000; ++count) {
        const QString expected =
            count == 0 ? QStringLiteral("Screen") : QStringLiteral("Screen (%1)").arg(count);
        QCOMPARE(KyEditorCommon::checkName(QStringLiteral("Screen"), count, &names), expected);
        QCOMPARE(names.value(expected, -1), count);
    }
    QCOMPARE(names.size(), 2000);
}

void tst_KyEditorCommon::getDurationString_data()
{
    QTest::addColumn<double>("seconds");
    QTest::addColumn<bool>("plus");
    QTest::addColumn<QString>("expected");

    QTest::newRow("zero") << 0.0 << false << QStringLiteral("00:00:00.0");
    QTest::newRow("minus zero") << -0.0 << false << QStringLiteral("00:00:00.0");
    QTest::newRow("least positive") << std::numeric_limits<double>::denorm_min() << false
                                    << QStringLiteral("00:00:00.0");
    QTest::newRow("just below a second") << std::nextafter(1.0, 0.0) << false << QStringLiteral("00:00:00.9");
    QTest::newRow("not rounded") << 59.99 << false << QStringLiteral("00:00:59.9");
    QTest::newRow("minutes") << 65.5 << false << QStringLiteral("00:01:05.5");
    QTest::newRow("just below an hour, plus") << 3599.95 << true << QStringLiteral("00:59:59.9+");
    QTest::newRow("hour") << 3600.0 << false << QStringLiteral("01:00:00.0");
    QTest::newRow("all parts") << 45296.75 << false << QStringLiteral("12:34:56.7");
    QTest::newRow("100 hours") << 360000.0 << false << QStringLiteral("100:00:00.0");
    // The tenths are those of the binary number, which may be a little less than the decimal one.
    QTest::newRow("2.3") << 2.3 << false << QStringLiteral("00:00:02.2");
    QTest::newRow("4.6") << 4.6 << false << QStringLiteral("00:00:04.5");
    QTest::newRow("10.1") << 10.1 << false << QStringLiteral("00:00:10.0");
    QTest::newRow("0.3") << 0.3 << false << QStringLiteral("00:00:00.3");
    QTest::newRow("plus") << 65.5 << true << QStringLiteral("00:01:05.5+");
    QTest::newRow("negative") << -0.1 << false << QStringLiteral("--:--:--");
    QTest::newRow("negative, plus") << -0.1 << true << QStringLiteral("--:--:--");
    QTest::newRow("least negative") << -std::numeric_limits<double>::denorm_min() << false
                                    << QStringLiteral("--:--:--");
    QTest::newRow("no number") << NO_NUMBER << false << QStringLiteral("--:--:--");
    QTest::newRow("no number, plus") << -NO_NUMBER << true << QStringLiteral("--:--:--");
    QTest::newRow("minus infinity") << -ENDLESS << false << QStringLiteral("--:--:--");
    QTest::newRow("largest int") << double(INT_LIMIT) << false << QStringLiteral("596523:14:07.0");
    QTest::newRow("largest int and a half") << INT_LIMIT + 0.5 << false << QStringLiteral("596523:14:07.5");
    QTest::newRow("beyond an int") << INT_LIMIT + 1.0 << false << QStringLiteral("596523:14:07.9");
    QTest::newRow("far beyond an int, plus") << 1e300 << true << QStringLiteral("596523:14:07.9+");
    QTest::newRow("infinity") << ENDLESS << false << QStringLiteral("596523:14:07.9");
}

void tst_KyEditorCommon::getDurationString()
{
    QFETCH(double, seconds);
    QFETCH(bool, plus);
    QTEST(KyEditorCommon::getDurationString(seconds, plus), "expected");
}

static QFont badgeFont()
{
    QFont font;
    font.setPointSizeF(8.0);
    return font;
}

void tst_KyEditorCommon::getDurationImage_isOnePixelLargerAllAround_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("duration") << QStringLiteral("00:01:05.5");
    QTest::newRow("plus") << QStringLiteral("00:01:05.5+");
    QTest::newRow("blanks") << QStringLiteral("a b c");
    QTest::newRow("lines") << QStringLiteral("a\nb");
    QTest::newRow("empty") << QString();
}

void tst_KyEditorCommon::getDurationImage_isOnePixelLargerAllAround()
{
    QFETCH(QString, text);
    const QSize textSize = QFontMetrics(badgeFont()).size(Qt::TextSingleLine, text);

    const QPixmap badge = KyEditorCommon::getDurationImage(text);

    QCOMPARE(badge.size(), textSize + QSize(2, 2));
    QVERIFY(badge.hasAlphaChannel());
}

void tst_KyEditorCommon::getDurationImage_isWhiteOnAHalfTransparentPlate()
{
    const QString text = QStringLiteral("00:00:00.0");
    const QRgb plate = qRgba(0, 0, 0, 127);
    const QImage badge = KyEditorCommon::getDurationImage(text).toImage();

    // What lies outside of the text is plate, the outermost pixels are in any case.
    QImage expected(badge.size(), QImage::Format_ARGB32_Premultiplied);
    expected.fill(QColor(0, 0, 0, 127));
    QPainter painter(&expected);
    painter.setFont(badgeFont());
    painter.setPen(Qt::white);
    painter.drawText(QRectF(1.0, 1.0, badge.width() - 2, badge.height() - 2), text);
    painter.end();
    int brightest = 0;
    for (int y = 0; y < badge.height(); ++y) {
        for (int x = 0; x < badge.width(); ++x) {
            const QRgb pixel = badge.pixel(x, y);
            QCOMPARE(pixel, expected.pixel(x, y));
            brightest = qMax(brightest, qMin(qRed(pixel), qMin(qGreen(pixel), qBlue(pixel))));
        }
    }
    QVERIFY(brightest > 200);
    for (int x = 0; x < badge.width(); ++x) {
        QCOMPARE(badge.pixel(x, 0), plate);
        QCOMPARE(badge.pixel(x, badge.height() - 1), plate);
    }
    for (int y = 0; y < badge.height(); ++y) {
        QCOMPARE(badge.pixel(0, y), plate);
        QCOMPARE(badge.pixel(badge.width() - 1, y), plate);
    }
}

void tst_KyEditorCommon::getDurationImage_followsTheApplicationFontButNotItsSize()
{
    const QString text = QStringLiteral("00:00:00.0");
    const QFont former = QApplication::font();
    const QImage before = KyEditorCommon::getDurationImage(text).toImage();
    QFont font = former;
    font.setPointSizeF(former.pointSizeF() + 10);
    QApplication::setFont(font);
    const QImage sameFamily = KyEditorCommon::getDurationImage(text).toImage();
    font.setBold(true);
    QApplication::setFont(font);
    const QImage bold = KyEditorCommon::getDurationImage(text).toImage();
    QApplication::setFont(former);

    QCOMPARE(sameFamily, before);
    QVERIFY(bold != before);
}

void tst_KyEditorCommon::changeImageOpacity_data()
{
    QTest::addColumn<double>("opacity");
    QTest::addColumn<int>("expectedAlpha");
    QTest::newRow("none") << 0.0 << 0;
    QTest::newRow("a fifth") << 0.2 << 51;
    QTest::newRow("three fifths") << 0.6 << 153;
    QTest::newRow("full") << 1.0 << 255;
    QTest::newRow("below the range") << -3.0 << 0;
    QTest::newRow("above the range") << 3.0 << 255;
}

void tst_KyEditorCommon::changeImageOpacity()
{
    QFETCH(double, opacity);
    QFETCH(int, expectedAlpha);
    QPixmap source(6, 4);
    source.fill(Qt::red);

    const QPixmap faded = KyEditorCommon::changeImageOpacity(source, opacity);

    QCOMPARE(faded.size(), QSize(6, 4));
    const QImage image = faded.toImage();
    for (const QPoint &corner : {QPoint(0, 0), QPoint(5, 0), QPoint(0, 3), QPoint(5, 3)}) {
        const QColor color = image.pixelColor(corner);
        QVERIFY2(qAbs(color.alpha() - expectedAlpha) <= 1, qPrintable(color.name(QColor::HexArgb)));
        if (expectedAlpha > 0)
            QCOMPARE(color.rgb(), QColor(Qt::red).rgb());
    }
}

void tst_KyEditorCommon::changeImageOpacity_leavesTheSourceAlone()
{
    QPixmap source(2, 2);
    source.fill(Qt::blue);
    const QImage before = source.toImage();
    const qint64 key = source.cacheKey();

    KyEditorCommon::changeImageOpacity(source, 0.5);

    QCOMPARE(source.cacheKey(), key);
    QCOMPARE(source.toImage(), before);
}

void tst_KyEditorCommon::changeImageOpacity_keepsTransparentPlacesTransparent()
{
    QImage image(2, 1, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    image.setPixelColor(1, 0, QColor(0, 255, 0, 102));
    QPixmap source = QPixmap::fromImage(image);

    const QImage faded = KyEditorCommon::changeImageOpacity(source, 0.5).toImage();

    QCOMPARE(faded.pixelColor(0, 0).alpha(), 0);
    QVERIFY(qAbs(faded.pixelColor(1, 0).alpha() - 51) <= 1);
}

void tst_KyEditorCommon::changeImageOpacity_ofADensePixmap_paintsAllOfIt()
{
    QPixmap source(8, 6);
    source.fill(Qt::red);
    source.setDevicePixelRatio(2.0);

    const QPixmap faded = KyEditorCommon::changeImageOpacity(source, 1.0);

    QCOMPARE(faded.size(), QSize(8, 6));
    QCOMPARE(faded.devicePixelRatio(), 2.0);
    const QImage image = faded.toImage();
    for (int y = 0; y < 6; ++y) {
        for (int x = 0; x < 8; ++x)
            QCOMPARE(image.pixelColor(x, y), QColor(Qt::red));
    }
}

void tst_KyEditorCommon::changeImageOpacity_ofNull_isNull()
{
    static int messageCount = 0; // a painter complains about a null pixmap
    const QtMessageHandler former =
        qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &) {
            ++messageCount;
        });
    QPixmap null;
    const QPixmap faded = KyEditorCommon::changeImageOpacity(null, 0.5);
    qInstallMessageHandler(former);

    QVERIFY(faded.isNull());
    QCOMPARE(messageCount, 0);
}

void tst_KyEditorCommon::getByteArrayFromPointer_data()
{
    QTest::addColumn<qint64>("pointer");
    QTest::addColumn<QByteArray>("expected");
    QTest::newRow("address") << qint64(0x1f2a40) << QByteArray("1f2a40");
    QTest::newRow("null") << qint64(0) << QByteArray("0");
    QTest::newRow("largest") << std::numeric_limits<qint64>::max() << QByteArray("7fffffffffffffff");
    QTest::newRow("minus one") << qint64(-1) << QByteArray("ffffffffffffffff");
    QTest::newRow("least") << std::numeric_limits<qint64>::min() << QByteArray("8000000000000000");
}

void tst_KyEditorCommon::getByteArrayFromPointer()
{
    QFETCH(qint64, pointer);
    QTEST(KyEditorCommon::getByteArrayFromPointer(pointer), "expected");
}

void tst_KyEditorCommon::getPointerFromByteArray_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<qint64>("expected");
    QTest::newRow("address") << QByteArray("1f2a40") << qint64(0x1f2a40);
    QTest::newRow("upper case") << QByteArray("1F2A40") << qint64(0x1f2a40);
    QTest::newRow("null") << QByteArray("0") << qint64(0);
    QTest::newRow("largest") << QByteArray("7fffffffffffffff") << std::numeric_limits<qint64>::max();
    QTest::newRow("beyond the largest") << QByteArray("8000000000000000") << qint64(0);
    QTest::newRow("minus one") << QByteArray("ffffffffffffffff") << qint64(0);
    QTest::newRow("empty") << QByteArray() << qint64(0);
    QTest::newRow("letters") << QByteArray("pointer") << qint64(0);
    QTest::newRow("rest") << QByteArray("1f2a40;") << qint64(0);
}

void tst_KyEditorCommon::getPointerFromByteArray()
{
    QFETCH(QByteArray, bytes);
    QTEST(KyEditorCommon::getPointerFromByteArray(bytes), "expected");
}

void tst_KyEditorCommon::pointer_comesBackFromItsText()
{
    const qint64 pointer = reinterpret_cast<qint64>(this);
    const QByteArray text = KyEditorCommon::getByteArrayFromPointer(pointer);

    QCOMPARE(KyEditorCommon::getPointerFromByteArray(text), pointer);
}

/** Receives what the process wants to be opened, in the place of the desktop. */
class Desktop : public QObject
{
    Q_OBJECT

public:
    Desktop()
    {
        QDesktopServices::setUrlHandler(QStringLiteral("file"), this, "open");
    }

    ~Desktop() override
    {
        QDesktopServices::unsetUrlHandler(QStringLiteral("file"));
    }

    QList<QUrl> urls;

public slots:
    void open(const QUrl &url)
    {
        urls.append(url);
    }
};

void tst_KyEditorCommon::openFolderWithShell_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("expected");

    QTest::newRow("folder") << QStringLiteral("films") << QStringLiteral("films");
    QTest::newRow("folder with a separator") << QStringLiteral("films/") << QStringLiteral("films");
    QTest::newRow("file") << QStringLiteral("films/a.mp4") << QStringLiteral("films");
    QTest::newRow("missing file") << QStringLiteral("films/none.mp4") << QStringLiteral("films");
    QTest::newRow("missing file in a missing folder")
        << QStringLiteral("none/none.mp4") << QStringLiteral("none");
    QTest::newRow("way round") << QStringLiteral("films/../films/./a.mp4") << QStringLiteral("films");
    QTest::newRow("odd characters") << QStringLiteral("a #1 %20;?&'$(x) \u6620")
                                    << QStringLiteral("a #1 %20;?&'$(x) \u6620");
}

void tst_KyEditorCommon::openFolderWithShell()
{
#ifdef Q_OS_WIN
    QSKIP("The shell is asked directly here; tst_windowsDesktop looks for its windows");
#endif
    QFETCH(QString, path);
    QFETCH(QString, expected);
    const QTemporaryDir folder;
    QVERIFY(QDir(folder.path()).mkdir(QStringLiteral("films")));
    QVERIFY(QDir(folder.path()).mkdir(QStringLiteral("a #1 %20;?&'$(x) \u6620")));
    Test::writeFile(folder.filePath(QStringLiteral("films/a.mp4")), "film");
    QWidget window;
    Desktop desktop;

    KyEditorCommon::openFolderWithShell(folder.path() + QLatin1Char('/') + path, nullptr);
    KyEditorCommon::openFolderWithShell(folder.path() + QLatin1Char('/') + path, &window);

    const QUrl url = QUrl::fromLocalFile(folder.filePath(expected));
    QCOMPARE(desktop.urls, QList<QUrl>({url, url}));
    QCOMPARE(desktop.urls.first().toLocalFile(), folder.filePath(expected));
}

void tst_KyEditorCommon::openFolderWithShell_ofARelativePath_opensTheAbsoluteOne()
{
#ifdef Q_OS_WIN
    QSKIP("The shell is asked directly here; tst_windowsDesktop looks for its windows");
#endif
    const QTemporaryDir folder;
    QVERIFY(QDir(folder.path()).mkdir(QStringLiteral("films")));
    const QString former = QDir::currentPath();
    QDir::setCurrent(folder.path());
    const QString current = QDir::currentPath();
    Desktop desktop;
    KyEditorCommon::openFolderWithShell(QStringLiteral("."), nullptr);
    KyEditorCommon::openFolderWithShell(QStringLiteral("films"), nullptr);
    KyEditorCommon::openFolderWithShell(QStringLiteral("none.mp4"), nullptr);
    QDir::setCurrent(former);

    QCOMPARE(
        desktop.urls,
        QList<QUrl>({QUrl::fromLocalFile(current), QUrl::fromLocalFile(current + QStringLiteral("/films")),
                     QUrl::fromLocalFile(current)}));
}

void tst_KyEditorCommon::openFolderWithShell_ofAnEmptyPath_doesNothing()
{
    Desktop desktop;
    QWidget window;
    KyEditorCommon::openFolderWithShell(QString(), &window);

    QVERIFY(desktop.urls.isEmpty());
}

/** The screens that a text names, "id:z id:z". */
class Screens
{
public:
    Screens() = default;

    explicit Screens(const QString &text)
    {
        const QStringList entries = text.split(QLatin1Char(' '));
        for (const QString &entry : entries)
            append(entry.section(QLatin1Char(':'), 0, 0).toInt(), entry.section(QLatin1Char(':'), 1).toInt());
    }

    void append(int id, int zIndex)
    {
        m_screens.emplace_back(new KyScreen);
        m_screens.back()->setId(id);
        m_screens.back()->setZIndex(zIndex);
        list.append(m_screens.back().get());
    }

    QString ids() const
    {
        QStringList texts;
        for (const KyScreen *screen : list)
            texts.append(QString::number(screen->id()));
        return texts.join(QLatin1Char(' '));
    }

    QList<KyScreen *> list;

private:
    std::vector<std::unique_ptr<KyScreen>> m_screens;
};

void tst_KyEditorCommon::sortScreenByZIndex_data()
{
    QTest::addColumn<QString>("screens");
    QTest::addColumn<QString>("ascending");
    QTest::addColumn<int>("ascendingId");
    QTest::addColumn<QString>("descending");
    QTest::addColumn<int>("descendingId");

    const auto addRow = [](const char *row, const char *screens, const char *ascending, int ascendingId,
                           const char *descending, int descendingId) {
        QTest::newRow(row) << QString::fromLatin1(screens) << QString::fromLatin1(ascending) << ascendingId
                           << QString::fromLatin1(descending) << descendingId;
    };
    addRow("one", "5:3", "5", 0, "5", 0);
    addRow("two in order, the last is not looked at", "1:1 9:2", "1 9", 1, "9 1", 9);
    addRow("two exchanged", "9:2 1:1", "1 9", 9, "9 1", 9);
    addRow("three in order", "1:1 2:2 3:3", "1 2 3", 2, "3 2 1", 3);
    addRow("three in reverse, two are not looked at", "1:3 2:2 3:1", "3 2 1", 1, "1 2 3", 3);
    addRow("all equal", "1:1 2:1 3:1", "1 2 3", 2, "1 2 3", 3);
    addRow("ties change their order", "1:2 2:2 3:1", "3 2 1", 2, "1 2 3", 3);
    addRow("ties of three", "1:2 2:2 3:2 4:1", "4 2 3 1", 3, "1 2 3 4", 4);
    addRow("ties behind", "1:1 2:1 3:1 4:2", "1 2 3 4", 3, "4 2 3 1", 4);
    addRow("ties of two kinds", "1:1 2:2 3:1 4:2 5:1", "1 3 5 4 2", 4, "2 4 3 1 5", 5);
    addRow("negative ids", "-3:2 -1:1 -2:3", "-1 -3 -2", 0, "-2 -3 -1", 0);
    addRow("negative z-indexes", "4:-1 3:-5 2:0", "3 4 2", 4, "2 4 3", 4);
    addRow("extreme z-indexes", "1:5 2:2147483647 3:-2147483648", "3 1 2", 2, "2 1 3", 3);
}

void tst_KyEditorCommon::sortScreenByZIndex()
{
    QFETCH(QString, screens);
    Screens ascending(screens);
    Screens descending(screens);

    QTEST(KyEditorCommon::sortScreenByZIndexAscending(&ascending.list), "ascendingId");
    QTEST(ascending.ids(), "ascending");
    QTEST(KyEditorCommon::sortScreenByZIndexDescending(&descending.list), "descendingId");
    QTEST(descending.ids(), "descending");
}

void tst_KyEditorCommon::sortScreenByZIndex_ofUselessLists_isMinusOne()
{
    QList<KyScreen *> empty;
    Screens screens(QStringLiteral("2:2 1:1"));
    screens.list.append(nullptr);
    const QList<KyScreen *> before = screens.list;

    QCOMPARE(KyEditorCommon::sortScreenByZIndexAscending(nullptr), -1);
    QCOMPARE(KyEditorCommon::sortScreenByZIndexDescending(nullptr), -1);
    QCOMPARE(KyEditorCommon::sortScreenByZIndexAscending(&empty), -1);
    QCOMPARE(KyEditorCommon::sortScreenByZIndexDescending(&empty), -1);
    QCOMPARE(KyEditorCommon::sortScreenByZIndexAscending(&screens.list), -1);
    QCOMPARE(KyEditorCommon::sortScreenByZIndexDescending(&screens.list), -1);
    QCOMPARE(screens.list, before);
}

struct IdAndZ
{
    int id;
    int z;
};

/** The order that stored stages have been drawn in; answers the largest id that is looked at on the way. */
static int exchangeSort(std::vector<IdAndZ> *screens, bool isAscending)
{
    int largest = 0;
    for (std::size_t i = 0; i + 1 < screens->size(); ++i) {
        IdAndZ &outer = (*screens)[i];
        if (outer.id > largest)
            largest = outer.id;
        for (std::size_t j = i + 1; j < screens->size(); ++j) {
            IdAndZ &inner = (*screens)[j];
            if (isAscending ? outer.z > inner.z : outer.z < inner.z)
                std::swap(outer, inner);
            if (!isAscending && outer.id > largest)
                largest = outer.id;
            if (!isAscending && inner.id > largest)
                largest = inner.id;
        }
    }
    return largest;
}

void tst_KyEditorCommon::sortScreenByZIndex_followsTheSwapPattern_data()
{
    QTest::addColumn<quint32>("seed");
    for (quint32 seed = 1; seed <= 5; ++seed)
        QTest::addRow("seed %u", seed) << seed;
}

void tst_KyEditorCommon::sortScreenByZIndex_followsTheSwapPattern()
{
    QFETCH(quint32, seed);
    QRandomGenerator random(seed);
    for (int round = 0; round < 400; ++round) {
        const bool isAscending = round % 2 == 0;
        Screens screens;
        std::vector<IdAndZ> expected;
        const int count = random.bounded(1, 30);
        const int differentZ = random.bounded(1, 12);
        for (int i = 0; i < count; ++i) {
            const IdAndZ screen = {random.bounded(-20, 20), random.bounded(differentZ) - 3};
            screens.append(screen.id, screen.z);
            expected.push_back(screen);
        }
        const int expectedId = exchangeSort(&expected, isAscending);
        QStringList expectedIds;
        for (const IdAndZ &screen : expected)
            expectedIds.append(QString::number(screen.id));

        QCOMPARE(isAscending ? KyEditorCommon::sortScreenByZIndexAscending(&screens.list)
                             : KyEditorCommon::sortScreenByZIndexDescending(&screens.list),
                 expectedId);
        QCOMPARE(screens.ids(), expectedIds.join(QLatin1Char(' ')));
    }
}

class Gui : public KyPluginGuiInterface
{
};

class PlainPlugin : public KyPluginCommonInterface
{
};

/** Plays a screen of its own, with or without a user interface. */
class ScreenPlugin : public KyPluginExtScreenInterface
{
public:
    explicit ScreenPlugin(KyPluginGuiInterface *gui)
        : m_gui(gui)
    {
    }

    KyPluginGuiInterface *guiInterface() override
    {
        return m_gui;
    }

private:
    KyPluginGuiInterface *m_gui = nullptr;
};

using Plugin = QSharedPointer<KyPluginCommonInterface>;
Q_DECLARE_METATYPE(Plugin)

void tst_KyEditorCommon::pluginInterfaces_data()
{
    static Gui gui;
    QTest::addColumn<Plugin>("plugin");
    QTest::addColumn<bool>("isExtended");
    QTest::addColumn<void *>("guiInterface");

    QTest::newRow("none") << Plugin() << false << static_cast<void *>(nullptr);
    QTest::newRow("plain") << Plugin(new PlainPlugin) << false << static_cast<void *>(nullptr);
    QTest::newRow("extended screen") << Plugin(new ScreenPlugin(nullptr)) << true
                                     << static_cast<void *>(nullptr);
    QTest::newRow("extended screen with user interface")
        << Plugin(new ScreenPlugin(&gui)) << true << static_cast<void *>(&gui);
}

void tst_KyEditorCommon::pluginInterfaces()
{
    QFETCH(Plugin, plugin);
    QFETCH(bool, isExtended);
    KyScreen screen;
    screen.setPlugin(plugin);

    const QSharedPointer<KyPluginExtScreenInterface> extended =
        KyEditorCommon::getPluginExtScreenInterface(&screen);

    QCOMPARE(static_cast<KyPluginCommonInterface *>(extended.data()), isExtended ? plugin.data() : nullptr);
    QTEST(static_cast<void *>(KyEditorCommon::getPluginGuiInterface(&screen)), "guiInterface");
}

void tst_KyEditorCommon::pluginInterfaces_ofNull_areNull()
{
    QVERIFY(!KyEditorCommon::getPluginExtScreenInterface(nullptr));
    QVERIFY(!KyEditorCommon::getPluginGuiInterface(nullptr));
}

void tst_KyEditorCommon::pluginInterface_keepsThePluginAlive()
{
    Gui gui;
    KyScreen screen;
    screen.setPlugin(Plugin(new ScreenPlugin(&gui)));
    const QWeakPointer<KyPluginCommonInterface> plugin = screen.plugin();

    QSharedPointer<KyPluginExtScreenInterface> extended =
        KyEditorCommon::getPluginExtScreenInterface(&screen);
    screen.setPlugin(Plugin());
    QCOMPARE(extended->guiInterface(), &gui);
    extended.reset();

    QVERIFY(plugin.isNull());
}

void tst_KyEditorCommon::getThumbnailFilePath_data()
{
    QTest::addColumn<QString>("filePath");
    QTest::addColumn<QString>("expected");

    QTest::newRow("file") << QStringLiteral("/media/film.mp4")
                          << QStringLiteral("/media/._kythumb/film.mp4.thumb");
    QTest::newRow("native separators")
        << QStringLiteral("C:\\media\\film.mp4") << QStringLiteral("C:/media/._kythumb/film.mp4.thumb");
    QTest::newRow("network") << QStringLiteral("//server/share/film.mp4")
                             << QStringLiteral("//server/share/._kythumb/film.mp4.thumb");
    QTest::newRow("in a root") << QStringLiteral("/film.mp4") << QStringLiteral("/._kythumb/film.mp4.thumb");
    QTest::newRow("bare name") << QStringLiteral("film.mp4") << QStringLiteral("._kythumb/film.mp4.thumb");
    QTest::newRow("no extension") << QStringLiteral("/media/film")
                                  << QStringLiteral("/media/._kythumb/film.thumb");
    QTest::newRow("extensions") << QStringLiteral("/media/a.tar.GZ")
                                << QStringLiteral("/media/._kythumb/a.tar.GZ.thumb");
    QTest::newRow("place markers") << QStringLiteral("/%1/%2 %1.mp4")
                                   << QStringLiteral("/%1/._kythumb/%2 %1.mp4.thumb");
}

void tst_KyEditorCommon::getThumbnailFilePath()
{
    QFETCH(QString, filePath);
    QString argument = filePath;
    QTEST(KyEditorCommon::getThumbnailFilePath(argument), "expected");
    QCOMPARE(argument, filePath);
}

void tst_KyEditorCommon::tryInstallFileWatcher_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("expected");
    QTest::newRow("folder") << QStringLiteral("films") << true;
    QTest::newRow("folder with a separator") << QStringLiteral("films/") << true;
    QTest::newRow("odd characters") << QStringLiteral("films \u6620") << true;
    QTest::newRow("file") << QStringLiteral("film.mp4") << false;
    QTest::newRow("missing") << QStringLiteral("none") << false;
}

void tst_KyEditorCommon::tryInstallFileWatcher()
{
    QFETCH(QString, name);
    const QTemporaryDir folder;
    QVERIFY(QDir(folder.path()).mkdir(QStringLiteral("films")));
    QVERIFY(QDir(folder.path()).mkdir(QStringLiteral("films \u6620")));
    Test::writeFile(folder.filePath(QStringLiteral("film.mp4")), "film");

    QTEST(KyEditorCommon::tryInstallFileWatcher(folder.path() + QLatin1Char('/') + name), "expected");
    QVERIFY(!KyEditorCommon::tryInstallFileWatcher(QString()));
}

void tst_KyEditorCommon::tryInstallFileWatcher_onALockedFolder_isFalse()
{
#ifdef Q_OS_WIN
    QSKIP("Qt changes no rights of folders here");
#endif
    const QTemporaryDir folder;
    QVERIFY(QFile::setPermissions(folder.path(), QFileDevice::Permissions()));
    const bool isLocked = !QFileInfo(folder.path()).isReadable();
    const bool isPossible = KyEditorCommon::tryInstallFileWatcher(folder.path());
    QVERIFY(QFile::setPermissions(folder.path(),
                                  QFileDevice::ReadUser | QFileDevice::WriteUser | QFileDevice::ExeUser));

    if (!isLocked)
        QSKIP("This user may read every folder");
    QVERIFY(!isPossible);
}

/** The open files and notifiers of this process, 0 where the system does not list them. */
static int openFileCount()
{
#ifdef Q_OS_WIN
    DWORD count = 0;
    return GetProcessHandleCount(GetCurrentProcess(), &count) ? int(count) : 0;
#else
    return QDir(QStringLiteral("/proc/self/fd")).entryList(QDir::AllEntries | QDir::System).size();
#endif
}

void tst_KyEditorCommon::tryInstallFileWatcher_leavesNothingBehind()
{
    const QTemporaryDir folder;
    const int before = openFileCount();
    for (int round = 0; round < 20; ++round)
        QVERIFY(KyEditorCommon::tryInstallFileWatcher(folder.path()));

    QCOMPARE(openFileCount(), before);
}

void tst_KyEditorCommon::tryInstallFileWatcher_whileTheUsersLimitIsReached_isFalse_data()
{
    QTest::addColumn<QString>("limit");
    QTest::newRow("notifiers") << QStringLiteral("instances");
    QTest::newRow("watches") << QStringLiteral("watches");
}

void tst_KyEditorCommon::tryInstallFileWatcher_whileTheUsersLimitIsReached_isFalse()
{
#ifdef Q_OS_WIN
    QSKIP("The system has no such limit");
#endif
    QFETCH(QString, limit);
    const QTemporaryDir folder;
    QProcess process;
    process.start(QStringLiteral(KYTE_TEST_PROGRAM_DIR "/ky_watch_limit"), {limit, folder.path()});
    QVERIFY(process.waitForFinished());
    QCOMPARE(process.exitStatus(), QProcess::NormalExit);

    if (process.exitCode() == CANNOT_LIMIT)
        QSKIP("The system does not let a process lower its limits");
    QCOMPARE(process.exitCode(), 0);
    QCOMPARE(process.readAllStandardOutput(), QByteArray("0\n"));
}

void tst_KyEditorCommon::eventTypeTexts_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<QByteArray>("name");
    QTest::addColumn<QByteArray>("description");

    const auto addRow = [](int type, const char *name, const char *description) {
        QTest::addRow("%d", type) << type << QByteArray(name) << QByteArray(description);
    };
    addRow(1, "Ignore", "When this event is specified, events set on the screen will be ignored.");
    addRow(2, "Started", "This event occurs when each content is started.");
    addRow(3, "Paused", "This event occurs when the sequence is paused.");
    addRow(4, "Finished", "This event occurs when each content is finished.");
    addRow(5, "Head Transition Finished", "This event occurs when the head transition of each content ends.");
    addRow(6, "Tail Transition Started",
           "This event occurs when the tail transition of each content is started.");
    addRow(7, "Time Elapsed",
           "This event occurs when the specified time elapses from the start of each content.");
    addRow(8, "Clicked/Touched)", "This event occurs when the screen is clicked or touched.");
    for (int type : {0, 9, -1, INT_LIMIT, -INT_LIMIT - 1})
        addRow(type, "Unknown", "This event is not defined.");
}

void tst_KyEditorCommon::eventTypeTexts()
{
    QFETCH(int, type);
    const auto value = static_cast<KyEventType::EventType>(type);
    QTEST(KyEditorCommon::getLocalStringFromEventType(value).toUtf8(), "name");
    QTEST(KyEditorCommon::getLocalDescriptionFromEventType(value).toUtf8(), "description");
}

void tst_KyEditorCommon::eventActionTexts_data()
{
    QTest::addColumn<int>("action");
    QTest::addColumn<QByteArray>("name");
    QTest::addColumn<QByteArray>("description");

    const auto addRow = [](int action, const char *name, const char *description) {
        QTest::addRow("%d", action) << action << QByteArray(name) << QByteArray(description);
    };
    addRow(1, "Start", "Start if the sequence is stopped or paused.");
    addRow(2, "Pause", "Pause the content of sequence.");
    addRow(3, "Finish", "Stop the playback of the content.");
    addRow(4, "Transit To Next Content", "Transit to the next content and start playback.");
    addRow(5, "Transit To Specified Content",
           "Transit to the content with the specified number and start playback.");
    addRow(6, "Hide Screen", "Hide the screen.");
    addRow(7, "Show Screen", "Show the screen.");
    addRow(8, "Repeat",
           "When content playback is completed, playback will start again. It will not move to the next "
           "content until an event is received.");
    addRow(9, "Wait",
           "When the playback of the content is completed, it will be in a wait state. It will not move to "
           "the next content until an event is received.");
    addRow(10, "Transit To Same Number As Sender", "This event action is not defined.");
    for (int action : {0, 11, -1, INT_LIMIT, -INT_LIMIT - 1})
        addRow(action, "Unknown", "This event action is not defined.");
}

void tst_KyEditorCommon::eventActionTexts()
{
    QFETCH(int, action);
    const auto value = static_cast<KyEventAction::EventAction>(action);
    QTEST(KyEditorCommon::getLocalStringFromEventAction(value).toUtf8(), "name");
    QTEST(KyEditorCommon::getLocalDescriptionFromEventAction(value).toUtf8(), "description");
}

/** "Translates" every text of the class and no other one. */
class Translator : public QTranslator
{
public:
    QString translate(const char *context, const char *source, const char *, int) const override
    {
        if (qstrcmp(context, "Kyte::KyEditorCommon") != 0)
            return QString();
        return QLatin1Char('<') + QString::fromUtf8(source) + QLatin1Char('>');
    }

    bool isEmpty() const override
    {
        return false;
    }
};

static QStringList allEventTexts()
{
    QStringList texts;
    for (int value = 0; value <= 11; ++value) {
        const auto type = static_cast<KyEventType::EventType>(value);
        const auto action = static_cast<KyEventAction::EventAction>(value);
        texts += {KyEditorCommon::getLocalStringFromEventType(type),
                  KyEditorCommon::getLocalDescriptionFromEventType(type),
                  KyEditorCommon::getLocalStringFromEventAction(action),
                  KyEditorCommon::getLocalDescriptionFromEventAction(action)};
    }
    return texts;
}

void tst_KyEditorCommon::eventTexts_areTranslatedInTheContextOfTheClass()
{
    QStringList expected = allEventTexts();
    for (QString &text : expected)
        text = QLatin1Char('<') + text + QLatin1Char('>');
    Translator translator;
    QVERIFY(QCoreApplication::installTranslator(&translator));

    QCOMPARE(allEventTexts(), expected);
}

KYTE_TEST_MAIN(tst_KyEditorCommon)
#include "tst_KyEditorCommon.moc"
