#include <KyDateTexts_p.h>
#include <KyFileTime_p.h>
#include <KyTestEnvironment.h>
#include <KyTestMain.h>

#include <QDateTime>
#include <QTemporaryDir>

#include <ctime>

using namespace Kyte;

class tst_KyDateTexts : public QObject
{
    Q_OBJECT

private slots:
    void cleanup();

    void text_isTheLocales_data();
    void text_isTheLocales();
    void text_followsTheLocale();
    void manyTexts_staySound();

    void modificationTime_isTheFiles();
    void modificationTime_ofAMissingFile_isNone();
};

static const qint64 MINUTE = 60 * 1000;

static void setTimeZone(const QByteArray &zone)
{
    qputenv("TZ", zone);
#ifdef Q_OS_WIN
    _tzset();
#else
    tzset();
#endif
}

static QString plainText(qint64 time)
{
    return QLocale().toString(QDateTime::fromMSecsSinceEpoch(time), QLocale::ShortFormat);
}

void tst_KyDateTexts::cleanup()
{
    QLocale::setDefault(QLocale::c());
    qunsetenv("TZ");
    setTimeZone("UTC");
}

void tst_KyDateTexts::text_isTheLocales_data()
{
    QTest::addColumn<QByteArray>("zone");
    QTest::addColumn<qint64>("time");
    const qint64 now = 1700000000000;
    for (const char *zone :
         {"UTC", "Europe/Berlin", "Asia/Kathmandu", "Australia/Lord_Howe", "Africa/Monrovia"}) {
        const QByteArray name(zone);
        QTest::newRow(qPrintable(QString("now in %1").arg(zone))) << name << now;
        QTest::newRow(qPrintable(QString("1970 in %1").arg(zone))) << name << qint64(1);
        QTest::newRow(qPrintable(QString("before 1970 in %1").arg(zone))) << name << qint64(-987654321);
        // Monrovia was 44 minutes and 30 seconds behind until then.
        QTest::newRow(qPrintable(QString("January 1972 in %1").arg(zone))) << name << qint64(63593050000);
    }
    QTest::newRow("before summer time begins") << QByteArray("Europe/Berlin") << qint64(1679792399999);
    QTest::newRow("after summer time began") << QByteArray("Europe/Berlin") << qint64(1679792400000);
}

void tst_KyDateTexts::text_isTheLocales()
{
    QFETCH(QByteArray, zone);
    QFETCH(qint64, time);
    setTimeZone(zone);
    for (const char *locale : {"C", "de_DE", "en_US", "ja_JP", "ar_EG"}) {
        QLocale::setDefault(QLocale(locale));
        KyDateTexts texts;
        for (const qint64 offset :
             {qint64(0), qint64(1), qint64(29500), MINUTE - 1, MINUTE, 61 * MINUTE, -MINUTE})
            QCOMPARE(texts.text(time + offset), plainText(time + offset));
    }
}

void tst_KyDateTexts::text_followsTheLocale()
{
    const qint64 time = 1700000000000;
    KyDateTexts texts;
    QLocale::setDefault(QLocale("de_DE"));
    const QString german = texts.text(time);
    QCOMPARE(german, plainText(time));
    QLocale::setDefault(QLocale("en_US"));
    QCOMPARE(texts.text(time), plainText(time));
    QVERIFY(texts.text(time) != german);
}

void tst_KyDateTexts::manyTexts_staySound()
{
    KyDateTexts texts;
    const qint64 begin = 1700000000000;
    for (int i = 0; i < 25000; ++i) {
        const qint64 time = begin + i * MINUTE;
        if (i % 500 == 0)
            QCOMPARE(texts.text(time), plainText(time));
        else
            texts.text(time);
    }
    QCOMPARE(texts.text(begin), plainText(begin));
}

void tst_KyDateTexts::modificationTime_isTheFiles()
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("größe.png"));
    Test::writeFile(path, "x");
    const QDateTime modified(QDate(2001, 2, 3), QTime(4, 5, 6, 789), Qt::UTC);
    QFile file(path);
    QVERIFY(file.open(QIODevice::ReadWrite));
    QVERIFY(file.setFileTime(modified, QFile::FileModificationTime));
    file.close();
    QCOMPARE(fileModificationTime(QFileInfo(path)), modified.toMSecsSinceEpoch());
    QCOMPARE(fileModificationTime(QFileInfo(path)), QFileInfo(path).lastModified().toMSecsSinceEpoch());
}

void tst_KyDateTexts::modificationTime_ofAMissingFile_isNone()
{
    QCOMPARE(fileModificationTime(QFileInfo(QStringLiteral("/nowhere/file"))), qint64(0));
}

KYTE_TEST_MAIN(tst_KyDateTexts)
#include "tst_KyDateTexts.moc"
