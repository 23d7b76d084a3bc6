#include "KyTestMain.h"

#include <KyInputNameChecker.h>

#include <QLineEdit>
#include <QRegExpValidator>

using namespace Kyte;

/** Refuses what it is told to. */
class Checker : public KyInputNameChecker
{
    Q_OBJECT

public:
    explicit Checker(QObject *parent = nullptr)
        : KyInputNameChecker(parent)
    {
    }
    bool validateText(const QString &text) override
    {
        asked.append(text);
        if (!messageOfTheTest.isEmpty())
            setErrorMessage(messageOfTheTest);
        return !refused.contains(text);
    }

    QStringList asked;
    QStringList refused;
    QString messageOfTheTest;
};

class tst_KyInputNameChecker : public QObject
{
    Q_OBJECT

private slots:
    void construction();
    void checkText_asksAndAnnounces_data();
    void checkText_asksAndAnnounces();
    void errorMessage_mayBeSetByTheTest();
    void deletedByListener_isHarmless();
    void validator_isOfTheProductsExpression();
    void validator_refusesCharacters_data();
    void validator_refusesCharacters();
    void setValidator_ownsTheNewAndDeletesTheOld();
    void setValidator_sameAgain_keepsIt();
    void setValidator_null_liftsTheRestriction();
};

void tst_KyInputNameChecker::construction()
{
    QObject parent;
    const Checker checker(&parent);
    QCOMPARE(checker.parent(), &parent);
    QCOMPARE(checker.errorMessage(), QString());
    QVERIFY(checker.validator());
    QCOMPARE(checker.validator()->parent(), &checker);
}

void tst_KyInputNameChecker::checkText_asksAndAnnounces_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("expected");
    QTest::newRow("accepted") << "Foyer" << true;
    QTest::newRow("refused") << "taken" << false;
    QTest::newRow("empty, as the subclass wants it") << "" << true;
    QTest::newRow("not asked of the validator") << "a:b" << true;
}

void tst_KyInputNameChecker::checkText_asksAndAnnounces()
{
    QFETCH(QString, text);
    QFETCH(bool, expected);
    Checker checker;
    checker.refused.append(QStringLiteral("taken"));
    checker.setErrorMessage(QStringLiteral("The name is in use."));
    QCOMPARE(checker.errorMessage(), QStringLiteral("The name is in use."));
    QSignalSpy failured(&checker, SIGNAL(failured(QString)));
    QSignalSpy succeeded(&checker, SIGNAL(succeeded()));
    QCOMPARE(checker.checkText(text), expected);
    QCOMPARE(checker.asked, QStringList({text}));
    QCOMPARE(succeeded.count(), expected ? 1 : 0);
    QCOMPARE(failured.count(), expected ? 0 : 1);
    if (!expected)
        QCOMPARE(failured.at(0).at(0).toString(), QStringLiteral("The name is in use."));
}

void tst_KyInputNameChecker::errorMessage_mayBeSetByTheTest()
{
    Checker checker;
    checker.refused.append(QStringLiteral("taken"));
    checker.messageOfTheTest = QStringLiteral("\"taken\" is reserved.");
    QSignalSpy failured(&checker, SIGNAL(failured(QString)));
    QVERIFY(!checker.checkText(QStringLiteral("taken")));
    QCOMPARE(failured.count(), 1);
    QCOMPARE(failured.at(0).at(0).toString(), QStringLiteral("\"taken\" is reserved."));
}

void tst_KyInputNameChecker::deletedByListener_isHarmless()
{
    auto *checker = new Checker;
    const QPointer<Checker> guard(checker);
    checker->refused.append(QStringLiteral("taken"));
    connect(checker, &KyInputNameChecker::failured, [checker]() {
        delete checker;
    });
    QVERIFY(!checker->checkText(QStringLiteral("taken")));
    QVERIFY(!guard);
}

void tst_KyInputNameChecker::validator_isOfTheProductsExpression()
{
    const Checker checker;
    const auto *validator = qobject_cast<QRegExpValidator *>(checker.validator());
    QVERIFY(validator);
    QCOMPARE(validator->regExp().pattern(), QStringLiteral("[^\\\\/:\\*\\?\"<>|;]+"));
    QCOMPARE(validator->regExp().pattern().size(), 17);
    QCOMPARE(validator->regExp().caseSensitivity(), Qt::CaseSensitive);
    QCOMPARE(validator->regExp().patternSyntax(), QRegExp::RegExp);
}

void tst_KyInputNameChecker::validator_refusesCharacters_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("expected");
    for (const QChar character : QStringLiteral("\\/:*?\"<>|;")) {
        QTest::newRow(qPrintable(QStringLiteral("alone %1").arg(character)))
            << QString(character) << int(QValidator::Invalid);
        QTest::newRow(qPrintable(QStringLiteral("within %1").arg(character)))
            << QStringLiteral("a%1b").arg(character) << int(QValidator::Invalid);
    }
    QTest::newRow("empty") << "" << int(QValidator::Intermediate);
    QTest::newRow("letters") << "Foyer 1" << int(QValidator::Acceptable);
    QTest::newRow("other signs") << "a.b,c-d_e(f)[g]{h}'i'+&%$#@!~^`=" << int(QValidator::Acceptable);
    QTest::newRow("non-ASCII") << QString::fromUtf8("Eingang Süd 入口") << int(QValidator::Acceptable);
    QTest::newRow("new line") << "a\nb" << int(QValidator::Acceptable);
}

void tst_KyInputNameChecker::validator_refusesCharacters()
{
    QFETCH(QString, text);
    QFETCH(int, expected);
    const Checker checker;
    int position = 0;
    QCOMPARE(int(checker.validator()->validate(text, position)), expected);
}

void tst_KyInputNameChecker::setValidator_ownsTheNewAndDeletesTheOld()
{
    auto *checker = new Checker;
    const QPointer<QValidator> first(checker->validator());
    const QPointer<QValidator> second(new QIntValidator);
    checker->setValidator(second);
    QVERIFY(!first);
    QCOMPARE(checker->validator(), second.data());
    QCOMPARE(second->parent(), checker);
    delete checker;
    QVERIFY(!second);
}

void tst_KyInputNameChecker::setValidator_sameAgain_keepsIt()
{
    Checker checker;
    const QPointer<QValidator> validator(checker.validator());
    checker.setValidator(validator);
    QVERIFY(validator);
    QCOMPARE(checker.validator(), validator.data());
}

void tst_KyInputNameChecker::setValidator_null_liftsTheRestriction()
{
    Checker checker;
    checker.setValidator(nullptr);
    QVERIFY(!checker.validator());
    QVERIFY(checker.checkText(QStringLiteral("a:b")));
}

KYTE_TEST_MAIN(tst_KyInputNameChecker)
#include "tst_KyInputNameChecker.moc"
