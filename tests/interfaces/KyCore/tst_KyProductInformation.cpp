#include "KyTestMain.h"

#include <KyProductInformation.h>

using namespace Kyte;

class tst_KyProductInformation : public QObject
{
    Q_OBJECT

private slots:
    void newInformation_isEmpty();
    void information_holdsNameAndVersion();
};

void tst_KyProductInformation::newInformation_isEmpty()
{
    const KyProductInformation information;

    QCOMPARE(information.name(), QString());
    QCOMPARE(information.version(), QString());
}

void tst_KyProductInformation::information_holdsNameAndVersion()
{
    KyProductInformation information(QStringLiteral("Suite"), QStringLiteral("1.2"));
    const KyProductInformation copy = information;
    information.setName(QStringLiteral("Other"));
    information.setVersion(QStringLiteral("2.0"));

    QCOMPARE(information.name(), QStringLiteral("Other"));
    QCOMPARE(information.version(), QStringLiteral("2.0"));
    QCOMPARE(copy.name(), QStringLiteral("Suite"));
    QCOMPARE(copy.version(), QStringLiteral("1.2"));
}

KYTE_TEST_MAIN(tst_KyProductInformation)
#include "tst_KyProductInformation.moc"
