#include "KyTestMain.h"

#include "KyDestinationTest.h"

#include <KyConfig.h>
#include <KyEditorConfig.h>

using namespace Kyte;
using namespace Kyte::Test;

static int s_calls = 0;
static int s_lastCall = 0; // 0: no call is the last one

/** In place of the library's own: the configuration is there until it is asked for the time s_lastCall. */
KyConfig *KyEditorConfig::getConfig()
{
    static KyConfig *const config = new KyConfig;
    return ++s_calls == s_lastCall ? nullptr : config;
}

class tst_KyDestinationNoConfig : public QObject
{
    Q_OBJECT

private slots:
    void missingConfiguration_isAnErrorWithoutText();
};

void tst_KyDestinationNoConfig::missingConfiguration_isAnErrorWithoutText()
{
    const Environment environment;
    environment.writeConfig(makeDestinations(1, 3));
    environment.writeChannel(0, QStringLiteral("Channel"), 0);
    s_calls = 0;
    {
        KyDestination destination;
        QVERIFY(destination.init());
    }
    QVERIFY2(s_calls > 1, "The library does not use this program's configuration");
    backdate(environment.databaseFile());
    const QString columns = QStringLiteral("id name channel_id updatetime");
    const QStringList before =
        literalRows(environment.databaseFile(), QStringLiteral("destination_tbl"), columns);
    QCOMPARE(before.size(), 3);
    environment.writeConfig(makeDestinations(7, 1));
    environment.writeChannel(0, QStringLiteral("Renamed"), 0);

    // The last to ask is the synchronisation of the destinations.
    s_lastCall = s_calls;
    s_calls = 0;
    KyDestination destination;
    DestinationRecorder recorder(&destination);
    QVERIFY(!destination.init());
    QCOMPARE(s_calls, s_lastCall);
    s_lastCall = 0;
    QCOMPARE(recorder.takeSignals(), QStringList({QStringLiteral("errorOccured()")}));
    QCOMPARE(destination.lastErrorMessage(), QString());
    QVERIFY(!isOpen());
    QCOMPARE(literalRows(environment.databaseFile(), QStringLiteral("destination_tbl"), columns), before);
    QCOMPARE(queryRows(environment.databaseFile(), QStringLiteral("SELECT name FROM channel_tbl")),
             QStringList({QStringLiteral("Renamed")}));
}

KYTE_TEST_MAIN(tst_KyDestinationNoConfig)
#include "tst_KyDestinationNoConfig.moc"
