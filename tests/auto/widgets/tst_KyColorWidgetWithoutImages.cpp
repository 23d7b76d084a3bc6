#include "KyTestMain.h"

#include <KyColorWidget.h>

using namespace Kyte;

/** The widget compiled without the library's images, as in an application that strips them. */
class tst_KyColorWidgetWithoutImages : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void translucentColor_isDrawnWithoutWarning();
};

static int warningCount = 0;

static void countWarnings(QtMsgType, const QMessageLogContext &, const QString &)
{
    ++warningCount;
}

void tst_KyColorWidgetWithoutImages::initTestCase()
{
    QVERIFY(!QFile::exists(QStringLiteral(":/images/transparent_background.png")));
}

void tst_KyColorWidgetWithoutImages::translucentColor_isDrawnWithoutWarning()
{
    const QtMessageHandler former = qInstallMessageHandler(countWarnings);
    KyColorWidget widget;
    widget.resize(30, 20);
    widget.setBackColor(QColor(255, 0, 0, 128));
    const QImage image = widget.grab().toImage();
    qInstallMessageHandler(former);
    QCOMPARE(warningCount, 0);
    const QColor color(image.pixel(15, 10));
    QVERIFY(color.red() > color.green() + 50); // the colour over the background of the window
    QVERIFY(color.green() > 50);
}

KYTE_TEST_MAIN(tst_KyColorWidgetWithoutImages)
#include "tst_KyColorWidgetWithoutImages.moc"
