#include "KyStageReference.h"
#include "KyTestEnvironment.h"
#include "KyTestMain.h"

#include <KyStagePreview.h>
#include <KyThumbnail.h>

#include <QDir>
#include <QFile>
#include <QPainter>
#include <QTemporaryDir>

#include <limits>
#include <memory>

using namespace Kyte;

static const int INT_LOWEST = std::numeric_limits<int>::lowest();
static const int INT_HIGHEST = std::numeric_limits<int>::max();
static const double INFINITE = std::numeric_limits<double>::infinity();
static const double NO_NUMBER = std::numeric_limits<double>::quiet_NaN();

class tst_KyStagePreview : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void newPreview_isAFrameWithoutAPicture();
    void slots_areDeclaredInOrder();
    void getOffsetPoint_data();
    void getOffsetPoint();
    void getScaledRect_data();
    void getScaledRect();

    void setStage_copiesTheStageAndMakesThePicture();
    void setStage_schedulesARepaint();
    void setImage_replacesThePointerOnly();
    void getImage_answersThePicture();
    void clear_deletesThePicture();
    void clear_repaints();

    void picture_equalsTheStraightforwardDrawing_data();
    void picture_equalsTheStraightforwardDrawing();
    void picture_ofStagesOfAllShapes_data();
    void picture_ofStagesOfAllShapes();
    void picture_isArgb32();
    void picture_withoutScreens_isTheStageFromTheTopLeft();
    void picture_fitsTheLongerSideFirst_data();
    void picture_fitsTheLongerSideFirst();
    void picture_laterScreensCoverEarlierOnes();
    void picture_label_data();
    void picture_label();
    void picture_usesTheWidgetsFont();
    void picture_leavesOutMissingScreens();
    void picture_ofDegenerateStages_isTransparent_data();
    void picture_ofDegenerateStages_isTransparent();
    void picture_ofHugeStages_isDrawn_data();
    void picture_ofHugeStages_isDrawn();
    void picture_ofThousandsOfScreens_isDrawn();

    void background_isStretchedOverTheStage_data();
    void background_isStretchedOverTheStage();
    void background_pathIsJoinedWhateverItBeginsWith_data();
    void background_pathIsJoinedWhateverItBeginsWith();
    void background_thatCannotBeRead_leavesTheColour_data();
    void background_thatCannotBeRead_leavesTheColour();
    void background_ofAStageThatWasNeverSaved_isLeftOut();
    void background_thatChanges_isReadAgain();

    void thumbnail_ofTheExactSize_isShown();
    void thumbnail_ofAnotherSize_isNotShown_data();
    void thumbnail_ofAnotherSize_isNotShown();
    void thumbnail_needsTheStageFile();
    void thumbnail_thatCannotBeRead_isNotShown();
    void thumbnail_isUsedOnceTheSizeIsRight();

    void painting_withoutAPicture_isTheGradient();
    void painting_drawsThePictureAtTheTopLeft();
    void painting_afterResizing_makesThePictureAnew();
    void painting_inTheSameSize_keepsThePicture();
    void painting_ofTinyWidgets_isTheGradient_data();
    void painting_ofTinyWidgets_isTheGradient();
    void painting_afterGrowingFromNothing_showsTheStage();
    void painting_replacesAnImageOfAnotherSize();

private:
    QString path(const QString &name) const;
    KyStage savedStage() const;
    QString writeBackground(const QString &name = QStringLiteral("background.png")) const;

    std::unique_ptr<QTemporaryDir> m_folder;
};

/** What Qt has to say. */
static QStringList messages;
static QtMessageHandler formerHandler = nullptr;

static void keepMessage(QtMsgType, const QMessageLogContext &, const QString &message)
{
    messages.append(message);
}

static void listen()
{
    messages.clear();
    formerHandler = qInstallMessageHandler(keepMessage);
}

void tst_KyStagePreview::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    QVERIFY(m_folder->isValid());
}

void tst_KyStagePreview::cleanup()
{
    if (formerHandler)
        qInstallMessageHandler(formerHandler);
    formerHandler = nullptr;
}

QString tst_KyStagePreview::path(const QString &name) const
{
    return m_folder->filePath(name);
}

static KyStage makeStage(const QRect &rect = QRect(0, 0, 1920, 1080))
{
    KyStage stage;
    stage.setName(QStringLiteral("Lobby"));
    stage.setRect(rect);
    stage.setBackgroundColor(QColor(20, 120, 60));
    return stage;
}

/** A stage whose file and data folder exist. */
KyStage tst_KyStagePreview::savedStage() const
{
    KyStage stage = makeStage();
    stage.setFilePath(path(QStringLiteral("lobby.kystage")));
    Test::writeFile(stage.filePath(), "stage");
    QDir(m_folder->path()).mkpath(QStringLiteral("lobby_data"));
    return stage;
}

/** A colourful image in the stage's data folder; answers its path. */
QString tst_KyStagePreview::writeBackground(const QString &name) const
{
    QImage image(320, 200, QImage::Format_RGB32);
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            image.setPixel(x, y, qRgb(x * 7 % 256, y * 3 % 256, x * y % 256));
    }
    const QString file = path(QStringLiteral("lobby_data/") + name);
    QDir(m_folder->path()).mkpath(QFileInfo(file).path());
    if (!image.save(file))
        qFatal("Cannot write %s", qPrintable(file));
    return file;
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
    QImage nothing(image.size(), QImage::Format_ARGB32);
    nothing.fill(Qt::transparent);
    return differentPixels(image, nothing) == 0;
}

/** What the widget shows, drawn the straightforward way. */
static QImage referenceWidget(const QSize &size, const QImage &picture)
{
    QImage image(size, QImage::Format_RGB32);
    QPainter painter(&image);
    QLinearGradient gradient(QPointF(1.0, 0.0), QPointF(1.0, 0.8 * (size.height() - 1)));
    gradient.setSpread(QGradient::ReflectSpread);
    gradient.setColorAt(0.0, QColor(96, 96, 128, 255));
    gradient.setColorAt(1.0, QColor(64, 64, 80, 255));
    painter.fillRect(image.rect(), gradient);
    painter.drawImage(0, 0, picture);
    return image;
}

static QImage painted(KyStagePreview *preview)
{
    QImage image(preview->size(), QImage::Format_RGB32);
    image.fill(Qt::magenta);
    preview->render(&image);
    return image;
}

void tst_KyStagePreview::newPreview_isAFrameWithoutAPicture()
{
    QWidget parent;
    const auto *preview = new KyStagePreview(&parent, Qt::Tool);
    QVERIFY(qobject_cast<const QFrame *>(preview));
    QCOMPARE(preview->metaObject()->className(), "Kyte::KyStagePreview");
    QCOMPARE(preview->parentWidget(), &parent);
    QCOMPARE(preview->windowType(), Qt::Tool);
    QCOMPARE(preview->image(), nullptr);
    QCOMPARE(preview->stage().name(), QString());
}

void tst_KyStagePreview::slots_areDeclaredInOrder()
{
    const QMetaObject &meta = KyStagePreview::staticMetaObject;
    QStringList methods;
    for (int i = meta.methodOffset(); i < meta.methodCount(); ++i) {
        methods.append(QString::fromLatin1(meta.method(i).methodSignature()));
        QCOMPARE(meta.method(i).methodType(), QMetaMethod::Slot);
        QCOMPARE(meta.method(i).access(), QMetaMethod::Public);
    }
    QCOMPARE(methods, (QStringList{"clear()", "setStage(KyStage)", "getImage(QImage**)"}));
}

void tst_KyStagePreview::getOffsetPoint_data()
{
    QTest::addColumn<QRect>("rect");
    QTest::addColumn<QPoint>("point");
    QTest::addColumn<QPoint>("expected");
    QTest::newRow("origin") << QRect(0, 0, 10, 10) << QPoint(0, 0) << QPoint(0, 0);
    QTest::newRow("both count") << QRect(10, -20, 5, 5) << QPoint(3, 4) << QPoint(-13, 16);
    QTest::newRow("null") << QRect() << QPoint(-3, -4) << QPoint(3, 4);
    QTest::newRow("far") << QRect(QPoint(INT_LOWEST, INT_HIGHEST), QPoint(INT_LOWEST, INT_HIGHEST))
                         << QPoint(-1, 1) << QPoint(INT_HIGHEST, INT_LOWEST);
}

void tst_KyStagePreview::getOffsetPoint()
{
    QFETCH(QRect, rect);
    QFETCH(QPoint, point);
    QFETCH(QPoint, expected);
    QCOMPARE(KyStagePreview::getOffsetPoint(rect, point), expected);
}

void tst_KyStagePreview::getScaledRect_data()
{
    QTest::addColumn<QRect>("rect");
    QTest::addColumn<double>("factor");
    QTest::addColumn<QRect>("expected");
    QTest::newRow("half") << QRect(10, 20, 30, 40) << 0.5 << QRect(5, 10, 15, 20);
    QTest::newRow("edges are rounded, not the size") << QRect(1, 1, 3, 3) << 0.5 << QRect(1, 1, 1, 1);
    QTest::newRow("a third") << QRect(10, 20, 40, 50) << 1.0 / 3 << QRect(3, 7, 14, 16);
    QTest::newRow("below zero") << QRect(-3, -5, 10, 10) << 0.5 << QRect(-1, -2, 5, 5);
    QTest::newRow("nothing") << QRect(10, 20, 30, 40) << 0.0 << QRect(0, 0, 0, 0);
    QTest::newRow("no number") << QRect(10, 20, 30, 40) << NO_NUMBER << QRect(0, 0, 0, 0);
    QTest::newRow("beyond everything")
        << QRect(0, 0, 30, 40) << 1e300 << QRect(0, 0, (1 << 30) - 1, (1 << 30) - 1);
}

void tst_KyStagePreview::getScaledRect()
{
    QFETCH(QRect, rect);
    QFETCH(double, factor);
    QFETCH(QRect, expected);
    QCOMPARE(KyStagePreview::getScaledRect(rect, factor), expected);
}

void tst_KyStagePreview::setStage_copiesTheStageAndMakesThePicture()
{
    KyStagePreview preview(nullptr, Qt::WindowFlags());
    preview.resize(201, 151);
    KyStage stage = makeStage();
    Test::addScreen(&stage, QStringLiteral("Multi 1"), QRectF(0, 0, 960, 1080), Qt::red);
    preview.setStage(stage);
    stage.setName(QStringLiteral("changed"));
    stage.screenList().first()->setBackgoundColor(Qt::blue);

    QCOMPARE(preview.stage().name(), QStringLiteral("Lobby"));
    QCOMPARE(preview.stage().screenList().first()->backgoundColor(), QColor(Qt::red));
    QVERIFY(preview.image());
    QCOMPARE(preview.image()->size(), QSize(200, 150));
    QCOMPARE(preview.image()->pixelColor(10, 10), QColor(Qt::red));

    QVERIFY(QMetaObject::invokeMethod(&preview, "clear"));
    preview.setStage(preview.stage());
    QCOMPARE(preview.stage().name(), QStringLiteral("Lobby"));
    QVERIFY(preview.image());
}

/** Counts paint events. */
class PaintCounter : public QObject
{
public:
    explicit PaintCounter(QWidget *widget)
    {
        widget->installEventFilter(this);
    }
    bool eventFilter(QObject *object, QEvent *event) override
    {
        count += event->type() == QEvent::Paint;
        return QObject::eventFilter(object, event);
    }

    int count = 0;
};

void tst_KyStagePreview::setStage_schedulesARepaint()
{
    KyStagePreview preview;
    preview.resize(201, 151);
    preview.show();
    QVERIFY(QTest::qWaitForWindowExposed(&preview));
    QCoreApplication::processEvents();
    PaintCounter counter(&preview);
    preview.setStage(makeStage());
    QCOMPARE(counter.count, 0);
    QTRY_VERIFY(counter.count > 0);
}

void tst_KyStagePreview::setImage_replacesThePointerOnly()
{
    KyStagePreview preview;
    preview.resize(201, 151);
    preview.setStage(makeStage());
    const std::unique_ptr<QImage> former(preview.image());
    auto *image = new QImage(200, 150, QImage::Format_RGB32);
    preview.setImage(image);
    QCOMPARE(preview.image(), image);
    QCOMPARE(former->size(), QSize(200, 150)); // still there
    QCOMPARE(former->pixelColor(10, 10), QColor(20, 120, 60));
}

void tst_KyStagePreview::getImage_answersThePicture()
{
    KyStagePreview preview;
    QImage other;
    QImage *image = &other;
    preview.getImage(&image);
    QCOMPARE(image, nullptr);
    preview.resize(201, 151);
    preview.setStage(makeStage());
    preview.getImage(&image);
    QVERIFY(image);
    QCOMPARE(image, preview.image());
    preview.getImage(nullptr);
}

void tst_KyStagePreview::clear_deletesThePicture()
{
    KyStagePreview preview;
    preview.resize(201, 151);
    preview.setStage(makeStage());
    const QImage picture = *preview.image();
    QVERIFY(!picture.isDetached());
    preview.clear();
    QCOMPARE(preview.image(), nullptr);
    QVERIFY(picture.isDetached());
    QCOMPARE(preview.stage().name(), QStringLiteral("Lobby"));
    preview.resize(100, 100);
    QCOMPARE(painted(&preview), referenceWidget(preview.size(), QImage()));
    QCOMPARE(preview.image(), nullptr);
    preview.clear();
    QCOMPARE(preview.image(), nullptr);
}

void tst_KyStagePreview::clear_repaints()
{
    KyStagePreview preview;
    preview.resize(201, 151);
    preview.setStage(makeStage());
    preview.show();
    QVERIFY(QTest::qWaitForWindowExposed(&preview));
    QCoreApplication::processEvents();
    PaintCounter counter(&preview);
    preview.clear();
    QTRY_VERIFY(counter.count > 0);
}

void tst_KyStagePreview::picture_equalsTheStraightforwardDrawing_data()
{
    QTest::addColumn<quint32>("seed");
    for (quint32 seed = 1; seed <= 24; ++seed)
        QTest::addRow("seed %u", seed) << seed;
}

void tst_KyStagePreview::picture_equalsTheStraightforwardDrawing()
{
    QFETCH(quint32, seed);
    KyStage stage = savedStage();
    Test::fillAtRandom(&stage, seed);
    QString file;
    if (seed % 3 == 0) {
        file = writeBackground();
        stage.setBackgroundImage(QStringLiteral("background.png"));
    }
    KyStagePreview preview;
    preview.resize(120 + int(seed) * 7, 340 - int(seed) * 5);
    preview.setStage(stage);
    const QImage expected = Test::referencePicture(stage, file, preview.size() - QSize(1, 1), preview.font());
    QCOMPARE(differentPixels(*preview.image(), expected), 0);
}

void tst_KyStagePreview::picture_ofStagesOfAllShapes_data()
{
    QTest::addColumn<QRect>("rect");
    QTest::addColumn<QSize>("size");
    QTest::newRow("wide in wide") << QRect(0, 0, 1920, 1080) << QSize(321, 181);
    QTest::newRow("wide in high") << QRect(0, 0, 1920, 1080) << QSize(181, 321);
    QTest::newRow("high in wide") << QRect(0, 0, 1080, 1920) << QSize(321, 181);
    QTest::newRow("high in high") << QRect(0, 0, 1080, 1920) << QSize(181, 321);
    QTest::newRow("square in wide") << QRect(0, 0, 1000, 1000) << QSize(321, 181);
    QTest::newRow("square in high") << QRect(0, 0, 1000, 1000) << QSize(181, 321);
    QTest::newRow("enlarged") << QRect(0, 0, 16, 9) << QSize(321, 181);
    QTest::newRow("elsewhere") << QRect(-500, 300, 1920, 1080) << QSize(321, 181);
    QTest::newRow("strip") << QRect(0, 0, 5000, 20) << QSize(321, 181);
}

void tst_KyStagePreview::picture_ofStagesOfAllShapes()
{
    QFETCH(QRect, rect);
    QFETCH(QSize, size);
    KyStage stage = makeStage(rect);
    Test::addScreen(&stage, QStringLiteral("Multi 1"),
                    QRectF(rect.left() - 3.5, rect.top(), rect.width() * 0.5, rect.height() * 0.4),
                    Qt::white);
    KyStagePreview preview;
    preview.resize(size);
    preview.setStage(stage);
    const QImage expected = Test::referencePicture(stage, QString(), size - QSize(1, 1), preview.font());
    QCOMPARE(differentPixels(*preview.image(), expected), 0);
}

void tst_KyStagePreview::picture_isArgb32()
{
    KyStagePreview preview;
    preview.resize(201, 151);
    preview.setStage(makeStage());
    QCOMPARE(preview.image()->format(), QImage::Format_ARGB32);
}

void tst_KyStagePreview::picture_withoutScreens_isTheStageFromTheTopLeft()
{
    KyStagePreview preview;
    preview.resize(161, 201);
    preview.setStage(makeStage(QRect(300, 200, 1600, 900)));
    const QImage &image = *preview.image();
    QCOMPARE(image.size(), QSize(160, 200));
    QCOMPARE(image.pixelColor(1, 1), QColor(20, 120, 60));
    QCOMPARE(image.pixelColor(158, 88), QColor(20, 120, 60));
    for (int y = 91; y < image.height(); ++y)
        QCOMPARE(qAlpha(image.pixel(80, y)), 0);
}

void tst_KyStagePreview::picture_fitsTheLongerSideFirst_data()
{
    QTest::addColumn<QSize>("stage");
    QTest::addColumn<QSize>("target");
    QTest::addColumn<QSize>("expected"); // of the coloured rectangle
    QTest::newRow("wide") << QSize(200, 100) << QSize(100, 100) << QSize(100, 50);
    QTest::newRow("wide, overflowing") << QSize(200, 100) << QSize(100, 40) << QSize(80, 40);
    QTest::newRow("high") << QSize(100, 200) << QSize(100, 100) << QSize(50, 100);
    QTest::newRow("high, overflowing") << QSize(100, 200) << QSize(40, 100) << QSize(40, 80);
    QTest::newRow("square, by its width") << QSize(100, 100) << QSize(80, 120) << QSize(80, 80);
    QTest::newRow("square, overflowing") << QSize(100, 100) << QSize(120, 80) << QSize(80, 80);
}

void tst_KyStagePreview::picture_fitsTheLongerSideFirst()
{
    QFETCH(QSize, stage);
    QFETCH(QSize, target);
    QFETCH(QSize, expected);
    KyStagePreview preview;
    preview.resize(target + QSize(1, 1));
    preview.setStage(makeStage(QRect(QPoint(0, 0), stage)));
    const QImage &image = *preview.image();
    QCOMPARE(image.size(), target);
    const QPoint inside(expected.width() - 3, expected.height() - 3);
    QCOMPARE(image.pixelColor(inside), QColor(20, 120, 60));
    const QPoint right(expected.width() + 2, 3);
    const QPoint below(3, expected.height() + 2);
    if (image.rect().contains(right))
        QCOMPARE(qAlpha(image.pixel(right)), 0);
    if (image.rect().contains(below))
        QCOMPARE(qAlpha(image.pixel(below)), 0);
}

void tst_KyStagePreview::picture_laterScreensCoverEarlierOnes()
{
    KyStage stage = makeStage(QRect(0, 0, 100, 100));
    Test::addScreen(&stage, QString(), QRectF(10, 10, 60, 60), Qt::red)->setZIndex(9);
    Test::addScreen(&stage, QString(), QRectF(40, 40, 60, 60), Qt::blue)->setZIndex(1);
    KyStagePreview preview;
    preview.resize(101, 101);
    preview.setStage(stage);
    QCOMPARE(preview.image()->pixelColor(20, 20), QColor(Qt::red));
    QCOMPARE(preview.image()->pixelColor(55, 55), QColor(Qt::blue));
}

void tst_KyStagePreview::picture_label_data()
{
    QTest::addColumn<QColor>("background");
    QTest::addColumn<QColor>("expected");
    QTest::newRow("black") << QColor(Qt::black) << QColor(Qt::white);
    QTest::newRow("white") << QColor(Qt::white) << QColor(Qt::black);
    QTest::newRow("exactly 0.6") << QColor(153, 153, 153) << QColor(Qt::white);
    QTest::newRow("just above") << QColor(154, 154, 154) << QColor(Qt::black);
    QTest::newRow("red, 0.5") << QColor(Qt::red) << QColor(Qt::white);
    QTest::newRow("pink") << QColor(255, 120, 120) << QColor(Qt::black);
}

void tst_KyStagePreview::picture_label()
{
    QFETCH(QColor, background);
    QFETCH(QColor, expected);
    KyStage stage = makeStage(QRect(0, 0, 200, 100));
    Test::addScreen(&stage, QStringLiteral("\u2588\u2588\u2588"), QRectF(0, 0, 200, 100), background);
    KyStagePreview preview;
    preview.resize(201, 101);
    preview.setStage(stage);
    int labelPixels = 0;
    for (int y = 30; y < 70; ++y) {
        for (int x = 60; x < 140; ++x)
            labelPixels += preview.image()->pixelColor(x, y) == expected;
    }
    QVERIFY2(labelPixels > 50, qPrintable(QString::number(labelPixels)));
}

void tst_KyStagePreview::picture_usesTheWidgetsFont()
{
    KyStage stage = makeStage(QRect(0, 0, 200, 100));
    Test::addScreen(&stage, QStringLiteral("Multi 1"), QRectF(0, 0, 200, 100));
    KyStagePreview preview;
    preview.resize(201, 101);
    QFont font = preview.font();
    font.setPixelSize(40); // a font without a point size
    font.setBold(true);
    preview.setFont(font);
    listen();
    preview.setStage(stage);
    cleanup();
    QCOMPARE(messages, QStringList());
    const QImage expected = Test::referencePicture(stage, QString(), QSize(200, 100), font);
    QCOMPARE(differentPixels(*preview.image(), expected), 0);
    QVERIFY(
        differentPixels(*preview.image(), Test::referencePicture(stage, QString(), QSize(200, 100), QFont()))
        > 0);
}

void tst_KyStagePreview::picture_leavesOutMissingScreens()
{
    // A stage that is copied leaves them out already; the widget works on a copy.
    KyStage stage = makeStage();
    stage.screenListPtr()->append(nullptr);
    KyStagePreview preview;
    preview.resize(201, 151);
    preview.setStage(stage);
    QCOMPARE(differentPixels(*preview.image(),
                             Test::referencePicture(makeStage(), QString(), QSize(200, 150), preview.font())),
             0);
}

void tst_KyStagePreview::picture_ofDegenerateStages_isTransparent_data()
{
    QTest::addColumn<QRect>("stage");
    QTest::addColumn<QRectF>("screen");
    const QRect none;
    QTest::newRow("zero") << none << QRectF();
    QTest::newRow("no width") << QRect(0, 0, 0, 100) << QRectF();
    QTest::newRow("no height") << QRect(0, 0, 100, 0) << QRectF();
    QTest::newRow("negative") << QRect(100, 100, -50, -20) << QRectF();
    QTest::newRow("negative width") << QRect(100, 100, -50, 20) << QRectF();
    QTest::newRow("screen below half a pixel") << none << QRectF(0.1, 0.1, 0.3, 0.3);
    QTest::newRow("screen of a negative size") << none << QRectF(10, 10, -5, -5);
    QTest::newRow("screen at no number") << none << QRectF(NO_NUMBER, 0, 10, 10);
}

void tst_KyStagePreview::picture_ofDegenerateStages_isTransparent()
{
    QFETCH(QRect, stage);
    QFETCH(QRectF, screen);
    KyStage degenerate = makeStage(stage);
    Test::addScreen(&degenerate, QStringLiteral("Multi 1"), screen, Qt::red);
    KyStagePreview preview;
    preview.resize(201, 151);
    listen();
    preview.setStage(degenerate);
    const QImage image = painted(&preview);
    cleanup();
    QCOMPARE(messages, QStringList());
    QCOMPARE(preview.image()->size(), QSize(200, 150));
    QVERIFY(isTransparent(*preview.image()));
    QCOMPARE(image, referenceWidget(preview.size(), QImage()));
}

void tst_KyStagePreview::picture_ofHugeStages_isDrawn_data()
{
    QTest::addColumn<QRect>("stage");
    QTest::addColumn<QRectF>("screen");
    const QRect usual(0, 0, 1920, 1080);
    QTest::newRow("wide") << QRect(0, 0, INT_HIGHEST, 10) << QRectF(0, 0, 10, 10);
    QTest::newRow("high") << QRect(0, 0, 10, INT_HIGHEST) << QRectF(0, 0, 10, 10);
    QTest::newRow("both") << QRect(0, 0, INT_HIGHEST, INT_HIGHEST) << QRectF(0, 0, 10, 10);
    QTest::newRow("wider than an int")
        << QRect(QPoint(INT_LOWEST, INT_LOWEST), QPoint(INT_HIGHEST, INT_HIGHEST)) << QRectF(0, 0, 10, 10);
    QTest::newRow("screen") << usual << QRectF(-1e300, -1e300, 2e300, 2e300);
    QTest::newRow("screen far away") << usual << QRectF(1e18, 1e18, 10, 10);
    QTest::newRow("infinite screen") << usual << QRectF(0, 0, INFINITE, INFINITE);
}

void tst_KyStagePreview::picture_ofHugeStages_isDrawn()
{
    QFETCH(QRect, stage);
    QFETCH(QRectF, screen);
    KyStage huge = makeStage(stage);
    Test::addScreen(&huge, QStringLiteral("Multi 1"), screen, Qt::red);
    KyStagePreview preview;
    preview.resize(201, 151);
    listen();
    preview.setStage(huge);
    painted(&preview);
    cleanup();
    QCOMPARE(messages, QStringList());
    QCOMPARE(preview.image()->size(), QSize(200, 150));
}

void tst_KyStagePreview::picture_ofThousandsOfScreens_isDrawn()
{
    KyStage stage = makeStage();
    for (int i = 0; i < 2000; ++i)
        Test::addScreen(&stage, QStringLiteral("Screen %1").arg(i),
                        QRectF(i % 100 * 19, i / 100 * 20, 30, 30), Qt::red);
    KyStagePreview preview;
    preview.resize(201, 151);
    preview.setStage(stage);
    QVERIFY(!isTransparent(*preview.image()));
}

void tst_KyStagePreview::background_isStretchedOverTheStage_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QSize>("size");
    QTest::newRow("smaller") << QStringLiteral("background.png") << QSize(161, 91);
    QTest::newRow("larger") << QStringLiteral("background.png") << QSize(641, 361);
    QTest::newRow("other proportions") << QStringLiteral("background.png") << QSize(301, 301);
    QTest::newRow("in a folder") << QStringLiteral("images/background.bmp") << QSize(301, 301);
    QTest::newRow("another format") << QStringLiteral("background.jpg") << QSize(301, 301);
}

void tst_KyStagePreview::background_isStretchedOverTheStage()
{
    QFETCH(QString, name);
    QFETCH(QSize, size);
    KyStage stage = savedStage();
    const QString file = writeBackground(name);
    stage.setBackgroundImage(name);
    KyStagePreview preview;
    preview.resize(size);
    preview.setStage(stage);
    const QImage expected = Test::referencePicture(stage, file, size - QSize(1, 1), preview.font());
    QCOMPARE(differentPixels(*preview.image(), expected), 0);
    QVERIFY(preview.image()->pixelColor(50, 50) != QColor(20, 120, 60));
}

void tst_KyStagePreview::background_pathIsJoinedWhateverItBeginsWith_data()
{
    QTest::addColumn<QString>("begin");
    QTest::newRow("name") << QString();
    QTest::newRow("slash") << QStringLiteral("/");
    QTest::newRow("back-slash") << QStringLiteral("\\");
    QTest::newRow("slashes") << QStringLiteral("//");
}

void tst_KyStagePreview::background_pathIsJoinedWhateverItBeginsWith()
{
    QFETCH(QString, begin);
    KyStage stage = savedStage();
    const QString file = writeBackground();
    stage.setBackgroundImage(begin + QStringLiteral("background.png"));
    KyStagePreview preview;
    preview.resize(201, 151);
    preview.setStage(stage);
    const QImage expected = Test::referencePicture(stage, file, QSize(200, 150), preview.font());
    QCOMPARE(differentPixels(*preview.image(), expected), 0);

    // An absolute path names nothing: it would have to lie in the data folder.
    stage.setBackgroundImage(file);
    preview.setStage(stage);
    const QImage bare = Test::referencePicture(stage, QString(), QSize(200, 150), preview.font());
    QCOMPARE(differentPixels(*preview.image(), bare), 0);
}

void tst_KyStagePreview::background_thatCannotBeRead_leavesTheColour_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("missing") << QStringLiteral("none.png");
    QTest::newRow("no image") << QStringLiteral("text.png");
    QTest::newRow("folder") << QStringLiteral("folder.png");
    QTest::newRow("the data folder") << QStringLiteral("/");
}

void tst_KyStagePreview::background_thatCannotBeRead_leavesTheColour()
{
    QFETCH(QString, name);
    KyStage stage = savedStage();
    Test::writeFile(path(QStringLiteral("lobby_data/text.png")), "no image");
    QVERIFY(QDir(m_folder->path()).mkpath(QStringLiteral("lobby_data/folder.png")));
    stage.setBackgroundImage(name);
    KyStagePreview preview;
    preview.resize(201, 151);
    listen();
    preview.setStage(stage);
    cleanup();
    QCOMPARE(messages, QStringList());
    const QImage expected = Test::referencePicture(stage, QString(), QSize(200, 150), preview.font());
    QCOMPARE(differentPixels(*preview.image(), expected), 0);
}

void tst_KyStagePreview::background_ofAStageThatWasNeverSaved_isLeftOut()
{
    savedStage();
    writeBackground();
    KyStage stage = makeStage();
    stage.setBackgroundImage(QStringLiteral("background.png"));
    const QString formerFolder = QDir::currentPath();
    QVERIFY(QDir::setCurrent(path(QStringLiteral("lobby_data"))));
    KyStagePreview preview;
    preview.resize(201, 151);
    preview.setStage(stage);
    QDir::setCurrent(formerFolder);
    const QImage expected = Test::referencePicture(stage, QString(), QSize(200, 150), preview.font());
    QCOMPARE(differentPixels(*preview.image(), expected), 0);
}

void tst_KyStagePreview::background_thatChanges_isReadAgain()
{
    KyStage stage = savedStage();
    const QString file = writeBackground();
    stage.setBackgroundImage(QStringLiteral("background.png"));
    KyStagePreview preview;
    preview.resize(201, 151);
    preview.setStage(stage);
    QImage image(10, 10, QImage::Format_RGB32);
    image.fill(Qt::blue);
    QVERIFY(image.save(file));
    preview.resize(301, 151);
    painted(&preview);
    QCOMPARE(preview.image()->pixelColor(50, 50), QColor(Qt::blue));
    QVERIFY(QFile::remove(file));
    preview.resize(201, 151);
    painted(&preview);
    QCOMPARE(preview.image()->pixelColor(50, 50), QColor(20, 120, 60));
}

/** Stores a thumbnail of one colour for \a stage. */
static void storeThumbnail(const KyStage &stage, const QSize &size, const QColor &color = Qt::yellow)
{
    QPixmap pixmap(size);
    pixmap.fill(color);
    KyThumbnail thumbnail(stage.filePath(), nullptr, false);
    thumbnail.setPixmap(pixmap);
    QVERIFY(thumbnail.write(true));
}

void tst_KyStagePreview::thumbnail_ofTheExactSize_isShown()
{
    const KyStage stage = savedStage();
    storeThumbnail(stage, QSize(200, 150));
    KyStagePreview preview;
    preview.resize(201, 151);
    preview.setStage(stage);
    QCOMPARE(preview.image()->size(), QSize(200, 150));
    QCOMPARE(preview.image()->pixelColor(5, 5), QColor(Qt::yellow));
    QCOMPARE(preview.image()->pixelColor(199, 149), QColor(Qt::yellow));
}

void tst_KyStagePreview::thumbnail_ofAnotherSize_isNotShown_data()
{
    QTest::addColumn<QSize>("size");
    QTest::newRow("of the widget") << QSize(201, 151);
    QTest::newRow("wider") << QSize(201, 150);
    QTest::newRow("higher") << QSize(200, 151);
    QTest::newRow("smaller") << QSize(199, 149);
    QTest::newRow("transposed") << QSize(150, 200);
}

void tst_KyStagePreview::thumbnail_ofAnotherSize_isNotShown()
{
    QFETCH(QSize, size);
    const KyStage stage = savedStage();
    storeThumbnail(stage, size);
    KyStagePreview preview;
    preview.resize(201, 151);
    preview.setStage(stage);
    const QImage expected = Test::referencePicture(stage, QString(), QSize(200, 150), preview.font());
    QCOMPARE(differentPixels(*preview.image(), expected), 0);
}

void tst_KyStagePreview::thumbnail_needsTheStageFile()
{
    const KyStage stage = savedStage();
    storeThumbnail(stage, QSize(200, 150));
    QVERIFY(QFile::remove(stage.filePath()));
    KyStagePreview preview;
    preview.resize(201, 151);
    preview.setStage(stage);
    QCOMPARE(preview.image()->pixelColor(5, 5), QColor(20, 120, 60));
}

void tst_KyStagePreview::thumbnail_thatCannotBeRead_isNotShown()
{
    const KyStage stage = savedStage();
    storeThumbnail(stage, QSize(200, 150));
    QString stageFile = stage.filePath();
    const QString file = KyThumbnail::getFilePropertyFromHashFile(stageFile).thumbnailPath;
    const QByteArray content = Test::readFile(file);
    QVERIFY(content.size() > 60);
    KyStagePreview preview;
    preview.resize(201, 151);
    for (int length : {0, 8, 40}) { // nothing, the signature, the header with the right size
        Test::writeFile(file, content.left(length));
        formerHandler = qInstallMessageHandler(keepMessage); // the image reader has its own to say
        preview.setStage(stage);
        cleanup();
        QCOMPARE(preview.image()->size(), QSize(200, 150));
        QCOMPARE(preview.image()->pixelColor(5, 5), QColor(20, 120, 60));
    }
}

void tst_KyStagePreview::thumbnail_isUsedOnceTheSizeIsRight()
{
    const KyStage stage = savedStage();
    storeThumbnail(stage, QSize(200, 150));
    KyStagePreview preview;
    preview.resize(101, 101);
    preview.setStage(stage);
    QCOMPARE(preview.image()->pixelColor(5, 5), QColor(20, 120, 60));
    preview.resize(201, 151);
    painted(&preview);
    QCOMPARE(preview.image()->pixelColor(5, 5), QColor(Qt::yellow));
}

void tst_KyStagePreview::painting_withoutAPicture_isTheGradient()
{
    KyStagePreview preview;
    preview.resize(201, 151);
    const QImage image = painted(&preview);
    QCOMPARE(image, referenceWidget(preview.size(), QImage()));
    QCOMPARE(image.pixelColor(100, 0), QColor(96, 96, 128));
    QCOMPARE(image.pixelColor(100, 120), QColor(64, 64, 80)); // 0.8 of the height, from where it is reflected
    QVERIFY(image.pixelColor(100, 150).blue() > 80);
}

void tst_KyStagePreview::painting_drawsThePictureAtTheTopLeft()
{
    KyStage stage = makeStage();
    Test::addScreen(&stage, QStringLiteral("Multi 1"), QRectF(-200, 100, 1000, 800),
                    QColor(200, 100, 0, 120));
    KyStagePreview preview;
    preview.setFrameStyle(QFrame::Box | QFrame::Plain); // a frame is not painted
    preview.setLineWidth(8);
    preview.resize(201, 151);
    preview.setStage(stage);
    QCOMPARE(painted(&preview), referenceWidget(preview.size(), *preview.image()));
}

void tst_KyStagePreview::painting_afterResizing_makesThePictureAnew()
{
    KyStagePreview preview;
    preview.resize(201, 151);
    preview.setStage(makeStage());
    preview.resize(401, 301);
    QCOMPARE(preview.image()->size(), QSize(200, 150)); // not before it is painted
    painted(&preview);
    QCOMPARE(preview.image()->size(), QSize(400, 300));
    const QImage expected = Test::referencePicture(makeStage(), QString(), QSize(400, 300), preview.font());
    QCOMPARE(differentPixels(*preview.image(), expected), 0);
}

void tst_KyStagePreview::painting_inTheSameSize_keepsThePicture()
{
    KyStagePreview preview;
    preview.resize(201, 151);
    preview.setStage(makeStage());
    auto *image = new QImage(200, 150, QImage::Format_ARGB32);
    image->fill(Qt::cyan);
    preview.clear();
    preview.setImage(image);
    QCOMPARE(painted(&preview).pixelColor(5, 5), QColor(Qt::cyan));
    QCOMPARE(preview.image(), image);
}

void tst_KyStagePreview::painting_ofTinyWidgets_isTheGradient_data()
{
    QTest::addColumn<QSize>("size");
    QTest::newRow("1 x 1") << QSize(1, 1);
    QTest::newRow("1 x 50") << QSize(1, 50);
    QTest::newRow("50 x 1") << QSize(50, 1);
    QTest::newRow("0 x 0") << QSize(0, 0);
}

void tst_KyStagePreview::painting_ofTinyWidgets_isTheGradient()
{
    QFETCH(QSize, size);
    KyStage stage = savedStage();
    writeBackground();
    stage.setBackgroundImage(QStringLiteral("background.png"));
    Test::addScreen(&stage, QStringLiteral("Multi 1"), QRectF(0, 0, 1000, 1000), Qt::red);
    KyStagePreview preview;
    preview.resize(size);
    listen();
    preview.setStage(stage);
    const QImage image = size.isEmpty() ? QImage() : painted(&preview);
    cleanup();
    QCOMPARE(messages, QStringList());
    QVERIFY(preview.image()->isNull());
    if (!size.isEmpty())
        QCOMPARE(image, referenceWidget(size, QImage()));
}

void tst_KyStagePreview::painting_afterGrowingFromNothing_showsTheStage()
{
    KyStagePreview preview;
    preview.resize(1, 1);
    preview.setStage(makeStage());
    painted(&preview);
    preview.resize(201, 151);
    painted(&preview);
    QCOMPARE(preview.image()->size(), QSize(200, 150));
    QCOMPARE(preview.image()->pixelColor(5, 5), QColor(20, 120, 60));
}

void tst_KyStagePreview::painting_replacesAnImageOfAnotherSize()
{
    KyStagePreview preview;
    preview.resize(201, 151);
    preview.setStage(makeStage());
    preview.clear();
    preview.setImage(new QImage(10, 10, QImage::Format_ARGB32));
    painted(&preview);
    QCOMPARE(preview.image()->size(), QSize(200, 150));
    QCOMPARE(preview.image()->pixelColor(5, 5), QColor(20, 120, 60));
    preview.clear();
    preview.setImage(new QImage); // one that could not be read, for instance
    painted(&preview);
    QCOMPARE(preview.image()->size(), QSize(200, 150));
}

KYTE_TEST_MAIN(tst_KyStagePreview)
#include "tst_KyStagePreview.moc"
