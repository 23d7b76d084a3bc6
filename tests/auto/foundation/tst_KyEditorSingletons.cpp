#include "KyTestMain.h"

#include <KyConfig.h>
#include <KyEditorConfig.h>
#include <KyEditorUserConfig.h>
#include <KyProductInformation.h>

#include <QSettings>

#include <atomic>
#include <thread>
#include <vector>

using namespace Kyte;

/** What \a get answers to several threads that ask at the same moment. */
template<typename T>
static QSet<T *> askFromManyThreads(T *(*get)())
{
    const int count = 8;
    std::atomic<int> waiting{count};
    std::vector<T *> answers(count, nullptr);
    std::vector<std::thread> threads;
    for (T *&answer : answers) {
        threads.emplace_back([&waiting, &answer, get] {
            --waiting;
            while (waiting > 0)
                std::this_thread::yield();
            answer = get();
        });
    }
    for (std::thread &thread : threads)
        thread.join();
    return QSet<T *>(answers.begin(), answers.end());
}

/** A program of its own, because here an instance comes into being in a race, and one is even deleted. */
class tst_KyEditorSingletons : public QObject
{
    Q_OBJECT

private slots:
    void userConfig_isCreatedOnce();
    void editorConfig_isCreatedOnceAndDeletesWhatItOwns();
};

void tst_KyEditorSingletons::userConfig_isCreatedOnce()
{
    const QSet<QSettings *> answers = askFromManyThreads(&KyEditorUserConfig::settings);

    QCOMPARE(answers, QSet<QSettings *>({KyEditorUserConfig::settings()}));
    QVERIFY(KyEditorUserConfig::settings());
}

void tst_KyEditorSingletons::editorConfig_isCreatedOnceAndDeletesWhatItOwns()
{
    const QSet<KyEditorConfig *> answers = askFromManyThreads(&KyEditorConfig::getInstance);
    QCOMPARE(answers, QSet<KyEditorConfig *>({KyEditorConfig::getInstance()}));
    QVERIFY(KyEditorConfig::getInstance());
    QCOMPARE(KyEditorConfig::getConfig()->dataDir(), QString()); // nothing is read before it is asked for
    QCOMPARE(KyEditorConfig::uploadManagerProcess(), nullptr);
    QCOMPARE(KyEditorConfig::channelExporterProcess(), nullptr);
    QCOMPARE(KyEditorConfig::productInformation(), nullptr);

    const QPointer<QProcess> uploadManager = new QProcess;
    const auto channelExporter = std::make_unique<QProcess>();
    const QPointer<QProcess> exporterGuard = channelExporter.get();
    KyProductInformation information(QStringLiteral("Editor"));
    KyEditorConfig::setUploadManagerProcess(uploadManager);
    KyEditorConfig::setChannelExporterProcess(channelExporter.get());
    KyEditorConfig::setProductInformation(&information);

    delete KyEditorConfig::getInstance(); // the last use of the class in this process

    QVERIFY(!uploadManager);
    QVERIFY(exporterGuard);
    QCOMPARE(information.name(), QStringLiteral("Editor"));
}

KYTE_TEST_MAIN(tst_KyEditorSingletons)
#include "tst_KyEditorSingletons.moc"
