#include "KyTestMain.h"

#include <KyCommonInputNameDialog.h>
#include <KyInputNameChecker.h>

#include <QAccessible>
#include <QClipboard>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTranslator>

using namespace Kyte;

/** Refuses names in a list and counts how often it is asked. */
class Checker : public KyInputNameChecker
{
    Q_OBJECT

public:
    explicit Checker(const QStringList &used = QStringList({QStringLiteral("taken")}))
        : KyInputNameChecker(nullptr)
        , m_used(used)
    {
        setErrorMessage(QStringLiteral("The name is in use."));
    }
    bool validateText(const QString &text) override
    {
        ++count;
        return !m_used.contains(text);
    }
    int count = 0;

private:
    QStringList m_used;
};

/** A dialog whose parts the test reaches by the names that the applications' style sheets use. */
class Dialog : public KyCommonInputNameDialog
{
public:
    Dialog()
        : KyCommonInputNameDialog(nullptr)
    {
    }
    Dialog(const QString &text, KyInputNameChecker *checker, bool renameMode = false)
        : KyCommonInputNameDialog(
            nullptr, QStringLiteral("Rename"), QStringLiteral("Name of the stage"), text, checker, renameMode)
    {
    }
    QLineEdit *edit() const
    {
        return findChild<QLineEdit *>(QStringLiteral("lineEdit"));
    }
    QLabel *header() const
    {
        return findChild<QLabel *>(QStringLiteral("label_header"));
    }
    QLabel *warning() const
    {
        return findChild<QLabel *>(QStringLiteral("label_warrning"));
    }
    QPushButton *ok() const
    {
        return findChild<QPushButton *>(QStringLiteral("pushButton_ok"));
    }
    QPushButton *cancel() const
    {
        return findChild<QPushButton *>(QStringLiteral("pushButton_cancel"));
    }
    void start()
    {
        show();
        QApplication::setActiveWindow(this);
        QVERIFY(QTest::qWaitForWindowActive(this));
        edit()->setFocus();
    }
};

/** Puts the form's texts into brackets, in the context of the form alone. */
class FormTranslator : public QTranslator
{
public:
    QString translate(const char *context, const char *text, const char *, int) const override
    {
        if (qstrcmp(context, "KyCommonInputNameDialog") == 0)
            return QLatin1Char('[') + QString::fromUtf8(text) + QLatin1Char(']');
        if (qstrcmp(context, "Kyte::KyCommonInputNameDialog") == 0)
            return QLatin1Char('<') + QString::fromUtf8(text) + QLatin1Char('>');
        return QString();
    }
    bool isEmpty() const override
    {
        return false;
    }
};

class tst_KyCommonInputNameDialog : public QObject
{
    Q_OBJECT

private slots:
    void cleanup();

    void form_isAsNamed();
    void form_sizesAndFlags();
    void form_isTranslatedInItsOwnContext();
    void shortConstructor_isEmpty();
    void longConstructor_setsEverything();
    void accessors();
    void properties();
    void construction_validatesNothing();

    void maxTextLength_limitsTheLineEdit();
    void maxTextLength_strangeValues_areHarmless_data();
    void maxTextLength_strangeValues_areHarmless();

    void inputChecker_belongsToTheDialog();
    void inputChecker_replaced_isDeleted();
    void inputChecker_sameAgain_isKept();
    void inputChecker_null_acceptsEverything();
    void inputChecker_withoutValidator_restrictsNothing();
    void inputChecker_deletedOutside_isForgotten();

    void typing_forbiddenCharacterHasNoEffect_data();
    void typing_forbiddenCharacterHasNoEffect();
    void pasting_forbiddenCharacters_isRefusedWhole();
    void setText_isNotFiltered();
    void clearing_disablesOkAndWarns();
    void typing_clearsTheCheckersWarning();

    void accept_asksTheChecker_data();
    void accept_asksTheChecker();
    void accept_refused_warnsAndStays();
    void accept_checkerWithoutMessage_showsNothing();
    void accept_listenerReplacesTheChecker_isHarmless();
    void accept_emptyTextSetByTheProgram_isAccepted();
    void cancel_rejects();

    void keyboard_walk();
    void keyboard_returnAndEscape();
    void keyboard_returnWithDisabledOk_stays();
    void accessible_readsEveryControl();
    void everythingIsInside_data();
    void everythingIsInside();
    void rightToLeft_buttonsAreOnTheLeft();
};

void tst_KyCommonInputNameDialog::cleanup()
{
    QApplication::setLayoutDirection(Qt::LeftToRight);
}

void tst_KyCommonInputNameDialog::form_isAsNamed()
{
    const Dialog dialog;
    QCOMPARE(dialog.objectName(), QStringLiteral("KyCommonInputNameDialog"));
    const auto *vertical = qobject_cast<QVBoxLayout *>(dialog.layout());
    QVERIFY(vertical);
    QCOMPARE(vertical->objectName(), QStringLiteral("verticalLayout"));
    QCOMPARE(vertical->count(), 4);
    QCOMPARE(vertical->itemAt(0)->widget(), dialog.header());
    QCOMPARE(vertical->itemAt(1)->widget(), dialog.edit());
    QCOMPARE(vertical->itemAt(2)->widget(), dialog.warning());
    QVERIFY(!dialog.header()->wordWrap());
    QVERIFY(dialog.warning()->wordWrap());
    QCOMPARE(dialog.warning()->styleSheet(), QStringLiteral("color: rgb(255, 0, 0);"));

    QWidget *buttons = vertical->itemAt(3)->widget();
    QCOMPARE(buttons->objectName(), QStringLiteral("widget_buttons"));
    const auto *horizontal = qobject_cast<QHBoxLayout *>(buttons->layout());
    QVERIFY(horizontal);
    QCOMPARE(horizontal->objectName(), QStringLiteral("horizontalLayout"));
    QCOMPARE(horizontal->contentsMargins(), QMargins());
    QCOMPARE(horizontal->count(), 3);
    QVERIFY(horizontal->itemAt(0)->spacerItem());
    QCOMPARE(horizontal->itemAt(0)->spacerItem()->sizeHint(), QSize(212, 20));
    QCOMPARE(horizontal->itemAt(0)->spacerItem()->sizePolicy().horizontalPolicy(), QSizePolicy::Expanding);
    QCOMPARE(horizontal->itemAt(0)->spacerItem()->sizePolicy().verticalPolicy(), QSizePolicy::Minimum);
    QCOMPARE(horizontal->itemAt(1)->widget(), dialog.ok());
    QCOMPARE(horizontal->itemAt(2)->widget(), dialog.cancel());
    QCOMPARE(dialog.ok()->text(), QStringLiteral("OK"));
    QCOMPARE(dialog.cancel()->text(), QStringLiteral("Cancel"));
}

void tst_KyCommonInputNameDialog::form_sizesAndFlags()
{
    const Dialog dialog;
    QCOMPARE(dialog.size(), QSize(395, 129));
    QVERIFY(!(dialog.windowFlags() & Qt::WindowContextHelpButtonHint));
    QCOMPARE(dialog.windowType(), Qt::Dialog);
}

void tst_KyCommonInputNameDialog::form_isTranslatedInItsOwnContext()
{
    FormTranslator translator;
    QCoreApplication::installTranslator(&translator);
    Dialog dialog;
    QCOMPARE(dialog.title(), QStringLiteral("[Dialog]"));
    QCOMPARE(dialog.ok()->text(), QStringLiteral("[OK]"));
    QCOMPARE(dialog.cancel()->text(), QStringLiteral("[Cancel]"));
    emit dialog.edit()->textEdited(QString());
    QCOMPARE(dialog.warning()->text(), QStringLiteral("<Please input the characters.>"));
    QCoreApplication::removeTranslator(&translator);
}

void tst_KyCommonInputNameDialog::shortConstructor_isEmpty()
{
    QWidget parent;
    const KyCommonInputNameDialog dialog(&parent);
    QCOMPARE(dialog.parentWidget(), &parent);
    QCOMPARE(dialog.title(), QStringLiteral("Dialog"));
    QCOMPARE(dialog.label(), QString());
    QCOMPARE(dialog.text(), QString());
    QCOMPARE(dialog.initialText(), QString());
    QVERIFY(!dialog.inputChecker());
    QCOMPARE(dialog.maxTextLength(), 256);
    QVERIFY(!dialog.renameMode());
}

void tst_KyCommonInputNameDialog::longConstructor_setsEverything()
{
    QWidget parent;
    auto *checker = new Checker;
    const KyCommonInputNameDialog dialog(&parent, QStringLiteral("title"), QStringLiteral("label"),
                                         QStringLiteral("text"), checker, true);
    QCOMPARE(dialog.parentWidget(), &parent);
    QCOMPARE(dialog.title(), QStringLiteral("title"));
    QCOMPARE(dialog.windowTitle(), QStringLiteral("title"));
    QCOMPARE(dialog.label(), QStringLiteral("label"));
    QCOMPARE(dialog.text(), QStringLiteral("text"));
    QCOMPARE(dialog.initialText(), QStringLiteral("text"));
    QCOMPARE(dialog.inputChecker(), checker);
    QCOMPARE(checker->parent(), &dialog);
    QCOMPARE(dialog.maxTextLength(), 256);
    QVERIFY(dialog.renameMode());
    const auto *edit = dialog.findChild<QLineEdit *>();
    QCOMPARE(edit->validator(), checker->validator());
    QCOMPARE(edit->maxLength(), 256);
}

void tst_KyCommonInputNameDialog::accessors()
{
    Dialog dialog;
    dialog.setTitle(QStringLiteral("title"));
    QCOMPARE(dialog.windowTitle(), QStringLiteral("title"));
    dialog.setLabel(QStringLiteral("A & B"));
    QCOMPARE(dialog.label(), QStringLiteral("A & B"));
    QCOMPARE(dialog.header()->text(), QStringLiteral("A & B"));
    QVERIFY(!dialog.header()->buddy()); // the ampersand is shown, not taken for a shortcut
    dialog.setText(QStringLiteral("text"));
    QCOMPARE(dialog.edit()->text(), QStringLiteral("text"));
    QCOMPARE(dialog.initialText(), QString());
    dialog.setInitialText(QStringLiteral("initial"));
    QCOMPARE(dialog.initialText(), QStringLiteral("initial"));
    QCOMPARE(dialog.text(), QStringLiteral("text"));
    dialog.setRenameMode(true);
    QVERIFY(dialog.renameMode());
    dialog.setRenameMode(false);
    QVERIFY(!dialog.renameMode());
}

void tst_KyCommonInputNameDialog::properties()
{
    Dialog dialog;
    QVERIFY(dialog.setProperty("title", QStringLiteral("title")));
    QVERIFY(dialog.setProperty("label", QStringLiteral("label")));
    QVERIFY(dialog.setProperty("text", QStringLiteral("text")));
    QVERIFY(dialog.setProperty("initialText", QStringLiteral("initial")));
    QVERIFY(dialog.setProperty("maxTextLength", 12));
    QVERIFY(dialog.setProperty("renameMode", true));
    QCOMPARE(QStringList({dialog.title(), dialog.label(), dialog.text(), dialog.initialText()}),
             QStringList({QStringLiteral("title"), QStringLiteral("label"), QStringLiteral("text"),
                          QStringLiteral("initial")}));
    QCOMPARE(dialog.maxTextLength(), 12);
    QVERIFY(dialog.renameMode());
}

void tst_KyCommonInputNameDialog::construction_validatesNothing()
{
    auto *checker = new Checker;
    const Dialog empty(QString(), checker);
    QVERIFY(empty.ok()->isEnabled());
    QCOMPARE(empty.warning()->text(), QString());
    QCOMPARE(checker->count, 0);
    auto *other = new Checker;
    const Dialog taken(QStringLiteral("taken"), other);
    QVERIFY(taken.ok()->isEnabled());
    QCOMPARE(taken.warning()->text(), QString());
    QCOMPARE(other->count, 0);
}

void tst_KyCommonInputNameDialog::maxTextLength_limitsTheLineEdit()
{
    Dialog dialog;
    QCOMPARE(dialog.edit()->maxLength(), 256);
    dialog.setMaxTextLength(3);
    QCOMPARE(dialog.maxTextLength(), 3);
    QCOMPARE(dialog.edit()->maxLength(), 3);
    QTest::keyClicks(dialog.edit(), QStringLiteral("abcdef"));
    QCOMPARE(dialog.text(), QStringLiteral("abc"));
    dialog.setText(QStringLiteral("uvwxyz"));
    QCOMPARE(dialog.text(), QStringLiteral("uvw"));
}

void tst_KyCommonInputNameDialog::maxTextLength_strangeValues_areHarmless_data()
{
    QTest::addColumn<int>("length");
    QTest::newRow("none") << 0;
    QTest::newRow("negative") << -1;
    QTest::newRow("smallest") << std::numeric_limits<int>::min();
    QTest::newRow("largest") << std::numeric_limits<int>::max();
}

void tst_KyCommonInputNameDialog::maxTextLength_strangeValues_areHarmless()
{
    QFETCH(int, length);
    Dialog dialog(QStringLiteral("Foyer"), new Checker);
    dialog.setMaxTextLength(length);
    QCOMPARE(dialog.maxTextLength(), length);
    QTest::keyClicks(dialog.edit(), QStringLiteral("abc"));
    dialog.ok()->click();
    QCOMPARE(dialog.result(), int(QDialog::Accepted));
}

void tst_KyCommonInputNameDialog::inputChecker_belongsToTheDialog()
{
    const QPointer<Checker> checker(new Checker);
    {
        Dialog dialog;
        dialog.setInputChecker(checker);
        QCOMPARE(dialog.inputChecker(), checker.data());
        QCOMPARE(checker->parent(), &dialog);
        QCOMPARE(dialog.edit()->validator(), checker->validator());
    }
    QVERIFY(!checker);
}

void tst_KyCommonInputNameDialog::inputChecker_replaced_isDeleted()
{
    const QPointer<Checker> first(new Checker);
    const QPointer<Checker> second(new Checker);
    Dialog dialog(QString(), first);
    dialog.setInputChecker(second);
    QVERIFY(!first);
    QCOMPARE(dialog.edit()->validator(), second->validator());
}

void tst_KyCommonInputNameDialog::inputChecker_sameAgain_isKept()
{
    const QPointer<Checker> checker(new Checker);
    Dialog dialog(QString(), checker);
    dialog.setInputChecker(checker);
    QVERIFY(checker);
    QCOMPARE(dialog.inputChecker(), checker.data());
}

void tst_KyCommonInputNameDialog::inputChecker_null_acceptsEverything()
{
    Dialog dialog(QString(), new Checker);
    dialog.setInputChecker(nullptr);
    QVERIFY(!dialog.inputChecker());
    QTest::keyClicks(dialog.edit(), QStringLiteral("a:b"));
    QCOMPARE(dialog.text(), QStringLiteral("a:b"));
    dialog.ok()->click();
    QCOMPARE(dialog.result(), int(QDialog::Accepted));
}

void tst_KyCommonInputNameDialog::inputChecker_withoutValidator_restrictsNothing()
{
    auto *checker = new Checker;
    checker->setValidator(nullptr);
    Dialog dialog(QString(), checker);
    QTest::keyClicks(dialog.edit(), QStringLiteral("a:b"));
    QCOMPARE(dialog.text(), QStringLiteral("a:b"));
}

void tst_KyCommonInputNameDialog::inputChecker_deletedOutside_isForgotten()
{
    Dialog dialog(QString(), new Checker);
    delete dialog.inputChecker();
    QVERIFY(!dialog.inputChecker());
    dialog.ok()->click();
    QCOMPARE(dialog.result(), int(QDialog::Accepted));
}

void tst_KyCommonInputNameDialog::typing_forbiddenCharacterHasNoEffect_data()
{
    QTest::addColumn<QString>("character");
    for (const QChar character : QStringLiteral("\\/:*?\"<>|;"))
        QTest::newRow(qPrintable(QString(character))) << QString(character);
}

void tst_KyCommonInputNameDialog::typing_forbiddenCharacterHasNoEffect()
{
    QFETCH(QString, character);
    Dialog dialog(QStringLiteral("Foyer"), new Checker);
    QSignalSpy changes(dialog.edit(), SIGNAL(textChanged(QString)));
    QTest::keyClicks(dialog.edit(), character);
    QCOMPARE(dialog.text(), QStringLiteral("Foyer"));
    QCOMPARE(changes.count(), 0);
    QTest::keyClicks(dialog.edit(), QStringLiteral("1"));
    QCOMPARE(dialog.text(), QStringLiteral("Foyer1"));
}

void tst_KyCommonInputNameDialog::pasting_forbiddenCharacters_isRefusedWhole()
{
    Dialog dialog(QStringLiteral("Foyer"), new Checker);
    QApplication::clipboard()->setText(QStringLiteral("good:bad"));
    dialog.edit()->selectAll();
    dialog.edit()->paste();
    QCOMPARE(dialog.text(), QStringLiteral("Foyer"));
    QApplication::clipboard()->setText(QStringLiteral("good"));
    dialog.edit()->selectAll();
    dialog.edit()->paste();
    QCOMPARE(dialog.text(), QStringLiteral("good"));
}

void tst_KyCommonInputNameDialog::setText_isNotFiltered()
{
    Dialog dialog(QStringLiteral("a:b"), new Checker);
    QCOMPARE(dialog.text(), QStringLiteral("a:b"));
    dialog.setText(QStringLiteral("c/d"));
    QCOMPARE(dialog.text(), QStringLiteral("c/d"));
    dialog.setText(QString());
    QVERIFY(dialog.ok()->isEnabled()); // only what the user does is judged
    QCOMPARE(dialog.warning()->text(), QString());
}

void tst_KyCommonInputNameDialog::clearing_disablesOkAndWarns()
{
    Dialog dialog(QStringLiteral("ab"), new Checker);
    QTest::keyClick(dialog.edit(), Qt::Key_Backspace);
    QVERIFY(dialog.ok()->isEnabled());
    QCOMPARE(dialog.warning()->text(), QString());
    QTest::keyClick(dialog.edit(), Qt::Key_Backspace);
    QVERIFY(!dialog.ok()->isEnabled());
    QCOMPARE(dialog.warning()->text(), QStringLiteral("Please input the characters."));
    QTest::keyClicks(dialog.edit(), QStringLiteral("x"));
    QVERIFY(dialog.ok()->isEnabled());
    QCOMPARE(dialog.warning()->text(), QString());
}

void tst_KyCommonInputNameDialog::typing_clearsTheCheckersWarning()
{
    Dialog dialog(QStringLiteral("taken"), new Checker);
    dialog.ok()->click();
    QVERIFY(!dialog.warning()->text().isEmpty());
    QTest::keyClicks(dialog.edit(), QStringLiteral("2"));
    QCOMPARE(dialog.warning()->text(), QString());
}

void tst_KyCommonInputNameDialog::accept_asksTheChecker_data()
{
    QTest::addColumn<QString>("initial");
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("renameMode");
    QTest::addColumn<bool>("asks");
    QTest::addColumn<bool>("accepted");
    QTest::newRow("new name") << ""
                              << "Foyer" << false << true << true;
    QTest::newRow("taken name") << ""
                                << "taken" << false << true << false;
    QTest::newRow("unchanged, not renaming") << "taken"
                                             << "taken" << false << true << false;
    QTest::newRow("renaming, unchanged and taken") << "taken"
                                                   << "taken" << true << false << true;
    QTest::newRow("renaming, unchanged and free") << "Foyer"
                                                  << "Foyer" << true << false << true;
    QTest::newRow("renaming, letter case changed") << "Taken"
                                                   << "taken" << true << true << false;
    QTest::newRow("renaming, changed to free") << "taken"
                                               << "Foyer" << true << true << true;
    QTest::newRow("renaming, changed to taken") << "Foyer"
                                                << "taken" << true << true << false;
    QTest::newRow("renaming, both empty") << ""
                                          << "" << true << false << true;
}

void tst_KyCommonInputNameDialog::accept_asksTheChecker()
{
    QFETCH(QString, initial);
    QFETCH(QString, text);
    QFETCH(bool, renameMode);
    QFETCH(bool, asks);
    QFETCH(bool, accepted);
    auto *checker = new Checker;
    Dialog dialog(initial, checker, renameMode);
    dialog.start();
    dialog.setText(text);
    QSignalSpy finished(&dialog, SIGNAL(finished(int)));
    QTest::mouseClick(dialog.ok(), Qt::LeftButton);
    QCOMPARE(checker->count, asks ? 1 : 0);
    QCOMPARE(finished.count(), accepted ? 1 : 0);
    QCOMPARE(dialog.isVisible(), !accepted);
    QCOMPARE(dialog.warning()->text(), accepted ? QString() : QStringLiteral("The name is in use."));
    if (accepted)
        QCOMPARE(finished.at(0).at(0).toInt(), int(QDialog::Accepted));
}

void tst_KyCommonInputNameDialog::accept_refused_warnsAndStays()
{
    auto *checker = new Checker;
    Dialog dialog(QStringLiteral("taken"), checker);
    dialog.start();
    QSignalSpy failured(checker, SIGNAL(failured(QString)));
    QSignalSpy succeeded(checker, SIGNAL(succeeded()));
    dialog.ok()->click();
    dialog.ok()->click();
    QCOMPARE(failured.count(), 2);
    QCOMPARE(succeeded.count(), 0);
    QVERIFY(dialog.isVisible());
    QVERIFY(dialog.ok()->isEnabled());
    QCOMPARE(dialog.text(), QStringLiteral("taken"));
    dialog.setText(QStringLiteral("free"));
    dialog.ok()->click();
    QCOMPARE(succeeded.count(), 1);
    QCOMPARE(dialog.result(), int(QDialog::Accepted));
}

void tst_KyCommonInputNameDialog::accept_checkerWithoutMessage_showsNothing()
{
    auto *checker = new Checker;
    checker->setErrorMessage(QString());
    Dialog dialog(QStringLiteral("taken"), checker);
    dialog.start();
    dialog.ok()->click();
    QVERIFY(dialog.isVisible());
    QCOMPARE(dialog.warning()->text(), QString());
}

void tst_KyCommonInputNameDialog::accept_listenerReplacesTheChecker_isHarmless()
{
    Dialog dialog(QStringLiteral("taken"), new Checker);
    dialog.start();
    connect(dialog.inputChecker(), &KyInputNameChecker::failured, [&dialog]() {
        dialog.setInputChecker(nullptr);
    });
    dialog.ok()->click();
    QVERIFY(dialog.isVisible());
    dialog.ok()->click();
    QVERIFY(!dialog.isVisible());
}

void tst_KyCommonInputNameDialog::accept_emptyTextSetByTheProgram_isAccepted()
{
    Dialog dialog;
    dialog.start();
    dialog.ok()->click();
    QCOMPARE(dialog.result(), int(QDialog::Accepted));
}

void tst_KyCommonInputNameDialog::cancel_rejects()
{
    auto *checker = new Checker;
    Dialog dialog(QStringLiteral("taken"), checker);
    dialog.start();
    QSignalSpy rejected(&dialog, SIGNAL(rejected()));
    QTest::mouseClick(dialog.cancel(), Qt::LeftButton);
    QCOMPARE(rejected.count(), 1);
    QCOMPARE(checker->count, 0);
    QCOMPARE(dialog.result(), int(QDialog::Rejected));
}

void tst_KyCommonInputNameDialog::keyboard_walk()
{
    Dialog dialog(QStringLiteral("Foyer"), new Checker);
    dialog.start();
    const QList<QWidget *> order = {dialog.edit(), dialog.ok(), dialog.cancel(), dialog.edit()};
    for (QWidget *widget : order) {
        QCOMPARE(QApplication::focusWidget(), widget);
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    }
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Backtab);
    QCOMPARE(QApplication::focusWidget(), dialog.edit());
    dialog.edit()->selectAll();
    QTest::keyClick(&dialog, Qt::Key_Tab);
    QTest::keyClick(&dialog, Qt::Key_Tab);
    QCOMPARE(QApplication::focusWidget(), dialog.cancel());
    QTest::keyClick(dialog.cancel(), Qt::Key_Space);
    QCOMPARE(dialog.result(), int(QDialog::Rejected));
    QVERIFY(!dialog.isVisible());
}

void tst_KyCommonInputNameDialog::keyboard_returnAndEscape()
{
    Dialog accepted(QString(), new Checker);
    accepted.start();
    QTest::keyClicks(accepted.edit(), QStringLiteral("Foyer"));
    QTest::keyClick(accepted.edit(), Qt::Key_Return);
    QCOMPARE(accepted.result(), int(QDialog::Accepted));
    QVERIFY(!accepted.isVisible());

    Dialog rejected(QStringLiteral("Foyer"), new Checker);
    rejected.start();
    QTest::keyClick(rejected.edit(), Qt::Key_Escape);
    QCOMPARE(rejected.result(), int(QDialog::Rejected));
    QVERIFY(!rejected.isVisible());
}

void tst_KyCommonInputNameDialog::keyboard_returnWithDisabledOk_stays()
{
    auto *checker = new Checker;
    Dialog dialog(QStringLiteral("a"), checker);
    dialog.start();
    QTest::keyClick(dialog.edit(), Qt::Key_Backspace);
    QTest::keyClick(dialog.edit(), Qt::Key_Return);
    QVERIFY(dialog.isVisible());
    QCOMPARE(checker->count, 0);
}

void tst_KyCommonInputNameDialog::accessible_readsEveryControl()
{
    Dialog dialog(QStringLiteral("taken"), new Checker);
    dialog.start();
    const auto read = [](QWidget *widget, QAccessible::Text text) {
        return QAccessible::queryAccessibleInterface(widget)->text(text);
    };
    QCOMPARE(read(&dialog, QAccessible::Name), QStringLiteral("Rename"));
    QCOMPARE(read(dialog.edit(), QAccessible::Name), QStringLiteral("Name of the stage"));
    QCOMPARE(read(dialog.edit(), QAccessible::Value), QStringLiteral("taken"));
    QCOMPARE(read(dialog.edit(), QAccessible::Description), QString());
    QCOMPARE(read(dialog.ok(), QAccessible::Name), QStringLiteral("OK"));
    QCOMPARE(read(dialog.cancel(), QAccessible::Name), QStringLiteral("Cancel"));
    dialog.ok()->click();
    QCOMPARE(read(dialog.warning(), QAccessible::Name), QStringLiteral("The name is in use."));
    QCOMPARE(read(dialog.edit(), QAccessible::Description), QStringLiteral("The name is in use."));
    QTest::keyClicks(dialog.edit(), QStringLiteral("2"));
    QCOMPARE(read(dialog.edit(), QAccessible::Description), QString());
}

void tst_KyCommonInputNameDialog::everythingIsInside_data()
{
    QTest::addColumn<QString>("message");
    QTest::newRow("no warning") << "";
    QTest::newRow("one line") << "The name is in use.";
    QTest::newRow("many lines") << QStringLiteral("This name cannot be used for a stage. ").repeated(12);
}

void tst_KyCommonInputNameDialog::everythingIsInside()
{
    QFETCH(QString, message);
    auto *checker = new Checker;
    checker->setErrorMessage(message);
    Dialog dialog(QStringLiteral("taken"), checker);
    dialog.start();
    dialog.ok()->click();
    const auto fits = [&dialog]() {
        const QLabel *warning = dialog.warning();
        return warning->height() >= warning->heightForWidth(warning->width())
            && warning->geometry().bottom() < dialog.ok()->parentWidget()->geometry().top()
            && dialog.rect().contains(dialog.ok()->parentWidget()->geometry())
            && dialog.ok()->height() >= dialog.ok()->minimumSizeHint().height();
    };
    QTRY_VERIFY(fits());
}

void tst_KyCommonInputNameDialog::rightToLeft_buttonsAreOnTheLeft()
{
    QApplication::setLayoutDirection(Qt::RightToLeft);
    Dialog dialog(QStringLiteral("Foyer"), new Checker);
    dialog.start();
    QVERIFY(dialog.cancel()->mapTo(&dialog, QPoint()).x() < dialog.ok()->mapTo(&dialog, QPoint()).x());
    QVERIFY(dialog.ok()->geometry().right() < dialog.width() / 2);
}

KYTE_TEST_MAIN(tst_KyCommonInputNameDialog)
#include "tst_KyCommonInputNameDialog.moc"
