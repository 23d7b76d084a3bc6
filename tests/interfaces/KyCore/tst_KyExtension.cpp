#include "KyTestMain.h"

#include <KyExtension.h>
#include <Path.h>

#include <atomic>
#include <thread>

using namespace Kyte;

class tst_KyExtension : public QObject
{
    Q_OBJECT

private slots:
    void noMedia_isZero();
    void mediaType_data();
    void mediaType();
    void defaultConstructedObject_answersToo();
    void manyThreads_getTheSameAnswers();
};

void tst_KyExtension::noMedia_isZero()
{
    QCOMPARE(int(MediaType::None), 0);
}

void tst_KyExtension::mediaType_data()
{
    QTest::addColumn<QString>("extension");
    QTest::addColumn<int>("type");

    const auto row = [](const char *extension, MediaType::MediaTypes type) {
        QTest::newRow(*extension ? extension : "(empty)") << QString::fromUtf8(extension) << int(type);
    };
    for (const char *extension : {"bmp", "gif", "jpg", "jpeg", "png", "svg", "tif", "tiff", "webp"})
        row(extension, MediaType::Image);
    for (const char *extension : {"avi", "flv", "m2ts", "mkv", "mov", "mp4", "mpeg", "mpg", "webm", "wmv"})
        row(extension, MediaType::Video);
    for (const char *extension : {"aac", "flac", "m4a", "mp3", "ogg", "wav", "wma"})
        row(extension, MediaType::Audio);
    for (const char *extension : {"txt", "html", "rtf"})
        row(extension, MediaType::Text);
    for (const char *extension : {"ppt", "pptx", "pps", "ppsx", "odp"})
        row(extension, MediaType::Presentation);
    for (const char *extension : {"PNG", "Png", ".png", ".PNG"})
        row(extension, MediaType::Image);
    for (const char *extension :
         {"", ".", "exe", "kystage", "thumb", "pn", "pngx", "..png", " png", "a.png", "pñg"})
        row(extension, MediaType::None);
}

void tst_KyExtension::mediaType()
{
    QFETCH(QString, extension);

    QTEST(int(KyExtension::getMediaType(extension)), "type");
}

void tst_KyExtension::defaultConstructedObject_answersToo()
{
    QCOMPARE(KyExtension().getMediaType(QStringLiteral("mp4")), MediaType::Video);
}

void tst_KyExtension::manyThreads_getTheSameAnswers()
{
    std::atomic<int> images{0};
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i) {
        threads.emplace_back([&images] {
            for (int round = 0; round < 1000; ++round)
                images += KyExtension().getMediaType(Path::getExtension(QStringLiteral("/a/b.PNG")))
                    == MediaType::Image;
        });
    }
    for (std::thread &thread : threads)
        thread.join();

    QCOMPARE(images.load(), 4000);
}

KYTE_TEST_MAIN(tst_KyExtension)
#include "tst_KyExtension.moc"
