#include "KyTestMain.h"

#include <KyTextEpoch_p.h>

#include <QTranslator>

using namespace Kyte;

/** Translates nothing, but is not empty. */
class SomeTranslator : public QTranslator
{
    Q_OBJECT

public:
    bool isEmpty() const override
    {
        return false;
    }
};

class tst_KyTextEpoch : public QObject
{
    Q_OBJECT

private slots:
    void quietTime_changesNothing();
    void translators_changeIt();
    void defaultLocale_changesIt_data();
    void defaultLocale_changesIt();
    void eventsOfOthers_changeNothing();
    void localeOfTheSystem_changesIt();
};

void tst_KyTextEpoch::quietTime_changesNothing()
{
    const quint32 epoch = KyTextEpoch::current();
    QVERIFY(epoch > 0);
    QCOMPARE(KyTextEpoch::current(), epoch);
    QCoreApplication::processEvents();
    QCOMPARE(KyTextEpoch::current(), epoch);
}

void tst_KyTextEpoch::translators_changeIt()
{
    const quint32 epoch = KyTextEpoch::current();
    SomeTranslator translator;
    QVERIFY(QCoreApplication::installTranslator(&translator));
    const quint32 installed = KyTextEpoch::current();
    QVERIFY(installed != epoch);
    QVERIFY(QCoreApplication::removeTranslator(&translator));
    QVERIFY(KyTextEpoch::current() != installed);
    QVERIFY(KyTextEpoch::current() != epoch);
}

void tst_KyTextEpoch::defaultLocale_changesIt_data()
{
    QTest::addColumn<QLocale>("locale");
    QTest::newRow("language") << QLocale(QLocale::German, QLocale::Germany);
    QTest::newRow("country") << QLocale(QLocale::German, QLocale::Switzerland);
    QLocale options(QLocale::C);
    options.setNumberOptions(QLocale::RejectGroupSeparator);
    QTest::newRow("number options") << options;
}

void tst_KyTextEpoch::defaultLocale_changesIt()
{
    QFETCH(QLocale, locale);
    const QLocale former;
    const quint32 epoch = KyTextEpoch::current();
    QLocale::setDefault(locale);
    const quint32 changed = KyTextEpoch::current();
    QLocale::setDefault(former);
    const quint32 restored = KyTextEpoch::current();
    QVERIFY(changed != epoch);
    QVERIFY(restored != changed && restored != epoch);
}

void tst_KyTextEpoch::eventsOfOthers_changeNothing()
{
    const quint32 epoch = KyTextEpoch::current();
    QObject other;
    QEvent change(QEvent::LanguageChange);
    QCoreApplication::sendEvent(&other, &change);
    QEvent palette(QEvent::PaletteChange);
    QCoreApplication::sendEvent(qApp, &palette);
    QCOMPARE(KyTextEpoch::current(), epoch);
}

void tst_KyTextEpoch::localeOfTheSystem_changesIt()
{
    const quint32 epoch = KyTextEpoch::current();
    QEvent change(QEvent::LocaleChange);
    QCoreApplication::sendEvent(qApp, &change);
    QVERIFY(KyTextEpoch::current() != epoch);
}

KYTE_TEST_MAIN(tst_KyTextEpoch)
#include "tst_KyTextEpoch.moc"
