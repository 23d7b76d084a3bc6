#include "KyTestEnvironment.h"
#include "KyTestMain.h"

#include <KyMessageBoxWithCheckBox.h>

#include <QAccessible>
#include <QCheckBox>
#include <QDialogButtonBox>
#include <QGridLayout>
#include <QPushButton>
#include <QTextEdit>
#include <QTimer>

#include <functional>

using namespace Kyte;

/** Does something with the message box that is open, once there is one. */
class Actor : public QObject
{
    Q_OBJECT

public:
    explicit Actor(std::function<void(KyMessageBoxWithCheckBox *)> action)
        : m_action(std::move(action))
    {
        m_timer.start(10);
        connect(&m_timer, SIGNAL(timeout()), this, SLOT(look()));
    }
    int count = 0;

private slots:
    void look()
    {
        auto *box = qobject_cast<KyMessageBoxWithCheckBox *>(QApplication::activeModalWidget());
        if (!box || !box->isVisible())
            return;
        ++count;
        m_timer.stop();
        m_action(box);
    }

private:
    QTimer m_timer;
    std::function<void(KyMessageBoxWithCheckBox *)> m_action;
};

/** The cells of a widget in its grid, as "row,column rows x columns". */
static QString cells(const QMessageBox &box, QWidget *widget)
{
    const auto *grid = qobject_cast<QGridLayout *>(box.layout());
    const int index = grid ? grid->indexOf(widget) : -1;
    if (index < 0)
        return QStringLiteral("nowhere");
    int row = 0;
    int column = 0;
    int rows = 0;
    int columns = 0;
    grid->getItemPosition(index, &row, &column, &rows, &columns);
    return QStringLiteral("%1,%2 %3x%4").arg(row).arg(column).arg(rows).arg(columns);
}

static QCheckBox *checkBox(const QMessageBox &box)
{
    return box.findChild<QCheckBox *>(QStringLiteral("ky_msgbox_checkbox"));
}

static QDialogButtonBox *buttonBox(const QMessageBox &box)
{
    return box.findChild<QDialogButtonBox *>();
}

/** What of the box overlaps something or is cut off; empty when all is well. */
static QString overlapIn(const QMessageBox &box)
{
    QList<QWidget *> widgets;
    for (QWidget *widget : box.findChildren<QWidget *>(QString(), Qt::FindDirectChildrenOnly)) {
        if (widget->isVisible())
            widgets.append(widget);
    }
    for (QWidget *widget : qAsConst(widgets)) {
        if (!box.rect().contains(widget->geometry()))
            return QStringLiteral("%1 sticks out").arg(widget->objectName());
        const int needed = widget->hasHeightForWidth() ? widget->heightForWidth(widget->width())
                                                       : widget->minimumSizeHint().height();
        if (widget->height() < needed)
            return QStringLiteral("%1 is squeezed").arg(widget->objectName());
        for (QWidget *other : qAsConst(widgets)) {
            if (other != widget && other->geometry().intersects(widget->geometry()))
                return QStringLiteral("%1 overlaps %2").arg(widget->objectName(), other->objectName());
        }
    }
    return QString();
}

class tst_KyMessageBoxWithCheckBox : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void constructors();
    void properties();
    void checkBoxText_isKept();
    void checkBoxVisible_isKept();

    void grid_isArranged_data();
    void grid_isArranged();
    void grid_isArrangedAnew_data();
    void grid_isArrangedAnew();
    void grid_withQtsOwnCheckBox();
    void nothingOverlaps_data();
    void nothingOverlaps();
    void deletedBox_deletesEverythingOnce();

    void exec_notRemembered_shows();
    void exec_remembered_answersAtOnce();
    void exec_remembered_afterItWasShown();
    void exec_remembered_deletesOnClose();
    void exec_rereadsTheTick();
    void exec_hiddenCheckBox_isObeyed();

    void okTicked_isRemembered();
    void okUnticked_isForgotten();
    void otherButtons_storeNothing_data();
    void otherButtons_storeNothing();
    void closingTheWindow_storesNothing();
    void escapeOnASingleOk_isOk();
    void twoBoxesOfOneText_shareTheAnswer();
    void otherText_isAsked();
    void withoutSettings_alwaysShows();
    void deletedSettings_areForgotten();

    void roundTrip_data();
    void roundTrip();
    void file_isAsDocumented();
    void write_replacesAndKeepsTheRest();
    void write_skipsTheEmptyName();
    void write_order_isThatOfTheKeys();
    void write_withoutSettings_doesNothing();
    void write_syncsAtOnce();
    void read_skipsElementsWithoutName();
    void read_laterElementWins();
    void read_missingFlag_isFalse();
    void read_damagedFiles_data();
    void read_damagedFiles();
    void read_isRelativeToTheCurrentGroup();
    void emptyText_isNeverRemembered();

    void keyboard_walk();
    void keyboard_buttonsAddedLater();
    void accessible_readsTextCheckBoxAndButtons();

private:
    QString path() const
    {
        return m_folder->filePath(QStringLiteral("usersettings.ini"));
    }
    QString lines() const
    {
        m_settings->sync();
        return QString::fromUtf8(Test::readFile(path()));
    }

    QScopedPointer<QTemporaryDir> m_folder;
    QScopedPointer<QSettings> m_settings;
};

static const QString TEXT = QStringLiteral("The stage was saved.");

void tst_KyMessageBoxWithCheckBox::init()
{
    m_folder.reset(new QTemporaryDir);
    m_settings.reset(new QSettings(path(), QSettings::IniFormat));
    m_settings->setIniCodec("UTF-8");
}

void tst_KyMessageBoxWithCheckBox::cleanup()
{
    QApplication::setLayoutDirection(Qt::LeftToRight);
    m_settings.reset();
    m_folder.reset();
}

void tst_KyMessageBoxWithCheckBox::constructors()
{
    QWidget parent;
    const KyMessageBoxWithCheckBox plain(&parent);
    QCOMPARE(plain.parentWidget(), &parent);
    QCOMPARE(plain.text(), QString());
    const KyMessageBoxWithCheckBox box(QMessageBox::Question, QStringLiteral("title"), TEXT,
                                       QMessageBox::Ok | QMessageBox::Cancel, &parent, Qt::Tool);
    QCOMPARE(box.parentWidget(), &parent);
    QCOMPARE(box.icon(), QMessageBox::Question);
    QCOMPARE(box.windowTitle(), QStringLiteral("title"));
    QCOMPARE(box.text(), TEXT);
    QCOMPARE(box.standardButtons(), QMessageBox::Ok | QMessageBox::Cancel);
    QCOMPARE(box.windowType(), Qt::Tool);
    for (const KyMessageBoxWithCheckBox *made : {&plain, &box}) {
        QVERIFY(checkBox(*made));
        QCOMPARE(checkBox(*made)->parent(), made);
        QCOMPARE(checkBox(*made)->text(), QStringLiteral("Do not show this message again."));
        QCOMPARE(made->checkBoxText(), QStringLiteral("Do not show this message again."));
        QVERIFY(!made->isChecked());
        QVERIFY(made->isCheckBoxVisible());
    }
}

void tst_KyMessageBoxWithCheckBox::properties()
{
    KyMessageBoxWithCheckBox box;
    QVERIFY(box.setProperty("checkBoxText", QStringLiteral("Never again")));
    QVERIFY(box.setProperty("checkBoxVisible", false));
    QCOMPARE(box.checkBoxText(), QStringLiteral("Never again"));
    QVERIFY(!box.isCheckBoxVisible());
}

void tst_KyMessageBoxWithCheckBox::checkBoxText_isKept()
{
    KyMessageBoxWithCheckBox box;
    box.setCheckBoxText(QStringLiteral("Never again"));
    QCOMPARE(box.checkBoxText(), QStringLiteral("Never again"));
    QCOMPARE(checkBox(box)->text(), QStringLiteral("Never again"));
    box.setIcon(QMessageBox::Warning); // the same check box finds its place
    QCOMPARE(box.checkBoxText(), QStringLiteral("Never again"));
}

void tst_KyMessageBoxWithCheckBox::checkBoxVisible_isKept()
{
    KyMessageBoxWithCheckBox box(QMessageBox::Information, QStringLiteral("title"), TEXT, QMessageBox::Ok);
    box.setCheckBoxVisible(false);
    QVERIFY(!box.isCheckBoxVisible());
    box.setIcon(QMessageBox::Warning);
    box.show();
    QVERIFY(!box.isCheckBoxVisible());
    QVERIFY(!checkBox(box)->isVisible());
    box.setCheckBoxVisible(true);
    QVERIFY(box.isCheckBoxVisible());
    QVERIFY(checkBox(box)->isVisible());
    QTRY_COMPARE(overlapIn(box), QString());
}

void tst_KyMessageBoxWithCheckBox::grid_isArranged_data()
{
    QTest::addColumn<int>("icon");
    QTest::addColumn<QString>("checkBoxCells");
    QTest::addColumn<QString>("buttonCells");
    // With an icon there is a column more. The check box begins beside the icon and the buttons span
    // everything.
    QTest::newRow("no icon") << int(QMessageBox::NoIcon) << "2,1 1x1"
                             << "3,0 1x2";
    QTest::newRow("information") << int(QMessageBox::Information) << "2,1 1x2"
                                 << "3,0 1x3";
    QTest::newRow("warning") << int(QMessageBox::Warning) << "2,1 1x2"
                             << "3,0 1x3";
    QTest::newRow("critical") << int(QMessageBox::Critical) << "2,1 1x2"
                              << "3,0 1x3";
    QTest::newRow("question") << int(QMessageBox::Question) << "2,1 1x2"
                              << "3,0 1x3";
}

void tst_KyMessageBoxWithCheckBox::grid_isArranged()
{
    QFETCH(int, icon);
    QFETCH(QString, checkBoxCells);
    QFETCH(QString, buttonCells);
    const KyMessageBoxWithCheckBox box(static_cast<QMessageBox::Icon>(icon), QStringLiteral("title"), TEXT,
                                       QMessageBox::Ok);
    QCOMPARE(cells(box, checkBox(box)), checkBoxCells);
    QCOMPARE(cells(box, buttonBox(box)), buttonCells);
}

void tst_KyMessageBoxWithCheckBox::grid_isArrangedAnew_data()
{
    QTest::addColumn<bool>("shown");
    QTest::newRow("before it is shown") << false;
    QTest::newRow("while it is shown") << true;
}

void tst_KyMessageBoxWithCheckBox::grid_isArrangedAnew()
{
    QFETCH(bool, shown);
    KyMessageBoxWithCheckBox box(QMessageBox::NoIcon, QStringLiteral("title"), TEXT, QMessageBox::Ok);
    box.setVisible(shown);
    box.setIcon(QMessageBox::Warning);
    QCOMPARE(cells(box, checkBox(box)), QStringLiteral("2,1 1x2"));
    QCOMPARE(cells(box, buttonBox(box)), QStringLiteral("3,0 1x3"));
    box.setInformativeText(QStringLiteral("informative"));
    QCOMPARE(cells(box, checkBox(box)), QStringLiteral("2,1 1x2"));
    QCOMPARE(cells(box, buttonBox(box)), QStringLiteral("3,0 1x3"));
    box.setDetailedText(QStringLiteral("detailed"));
    QCOMPARE(cells(box, checkBox(box)), QStringLiteral("2,1 1x2"));
    QCOMPARE(cells(box, buttonBox(box)), QStringLiteral("3,0 1x3"));
    box.setIconPixmap(QPixmap());
    QCOMPARE(cells(box, checkBox(box)), QStringLiteral("2,1 1x1"));
    QCOMPARE(cells(box, buttonBox(box)), QStringLiteral("3,0 1x2"));
    box.setInformativeText(QString());
    box.setDetailedText(QString());
    QCOMPARE(cells(box, checkBox(box)), QStringLiteral("2,1 1x1"));
    QCOMPARE(cells(box, buttonBox(box)), QStringLiteral("3,0 1x2"));
    QCOMPARE(box.findChildren<QCheckBox *>().size(), 1);
}

void tst_KyMessageBoxWithCheckBox::grid_withQtsOwnCheckBox()
{
    KyMessageBoxWithCheckBox box(QMessageBox::Warning, QStringLiteral("title"), TEXT, QMessageBox::Ok);
    box.setCheckBox(new QCheckBox(QStringLiteral("Also for the other stages")));
    box.setInformativeText(QStringLiteral("informative"));
    QVERIFY(cells(box, box.checkBox()) != cells(box, checkBox(box)));
    box.show();
    QVERIFY(QTest::qWaitForWindowExposed(&box));
    QTRY_COMPARE(overlapIn(box), QString());
    QVERIFY(box.checkBox()->geometry().bottom() < checkBox(box)->geometry().top());
}

void tst_KyMessageBoxWithCheckBox::nothingOverlaps_data()
{
    QTest::addColumn<int>("icon");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("informative");
    QTest::addColumn<QString>("detailed");
    QTest::addColumn<bool>("rightToLeft");
    const QString longText =
        QStringLiteral("A long message about many things that may happen. ").repeated(12);
    const QStringList texts = {TEXT, longText};
    for (int icon = QMessageBox::NoIcon; icon <= QMessageBox::Question; ++icon) {
        for (int variant = 0; variant < 16; ++variant) {
            const bool isExtreme = variant == 0 || variant == 7 || variant == 15;
            if (icon > QMessageBox::Information && !isExtreme)
                continue; // every icon has the same size
            QTest::newRow(qPrintable(QStringLiteral("icon %1 variant %2").arg(icon).arg(variant)))
                << icon << texts.at(variant & 1) << (variant & 2 ? longText : QString())
                << (variant & 4 ? longText : QString()) << bool(variant & 8);
        }
    }
}

void tst_KyMessageBoxWithCheckBox::nothingOverlaps()
{
    QFETCH(int, icon);
    QFETCH(QString, text);
    QFETCH(QString, informative);
    QFETCH(QString, detailed);
    QFETCH(bool, rightToLeft);
    if (rightToLeft)
        QApplication::setLayoutDirection(Qt::RightToLeft);
    KyMessageBoxWithCheckBox box(static_cast<QMessageBox::Icon>(icon), QStringLiteral("title"), text,
                                 QMessageBox::Ok | QMessageBox::Cancel);
    box.setInformativeText(informative);
    box.setDetailedText(detailed);
    box.show();
    QVERIFY(QTest::qWaitForWindowExposed(&box));
    QTRY_COMPARE(overlapIn(box), QString());
    const QRect boxOfCheck = checkBox(box)->geometry();
    QVERIFY(boxOfCheck.bottom() < buttonBox(box)->geometry().top());
    const QWidget *label = box.findChild<QWidget *>(QStringLiteral("qt_msgbox_label"));
    QVERIFY(label->geometry().bottom() < boxOfCheck.top());
    if (detailed.isEmpty())
        return;

    for (QAbstractButton *button : box.buttons()) { // unfold the details
        if (box.buttonRole(button) == QMessageBox::ActionRole)
            button->click();
    }
    const auto *edit = box.findChild<QTextEdit *>();
    QTRY_VERIFY(edit->isVisible());
    QTRY_COMPARE(overlapIn(box), QString());
    QVERIFY(edit->mapTo(&box, QPoint()).y() > buttonBox(box)->geometry().bottom());
}

void tst_KyMessageBoxWithCheckBox::deletedBox_deletesEverythingOnce()
{
    auto *box =
        new KyMessageBoxWithCheckBox(QMessageBox::Warning, QStringLiteral("title"), TEXT, QMessageBox::Ok);
    box->setInformativeText(QStringLiteral("informative"));
    box->setDetailedText(QStringLiteral("detailed"));
    const QPointer<QCheckBox> check(checkBox(*box));
    const QPointer<QDialogButtonBox> buttons(buttonBox(*box));
    delete box; // items that were in two layouts would be deleted twice
    QVERIFY(!check);
    QVERIFY(!buttons);
}

/** Runs a box with the settings, ticks it or not, and clicks; the answer of exec(). */
static int run(QSettings *settings,
               const QString &text,
               bool tick,
               QMessageBox::StandardButton click,
               int *shown = nullptr,
               QMessageBox::StandardButtons buttons = QMessageBox::Ok | QMessageBox::Cancel
                   | QMessageBox::Yes)
{
    KyMessageBoxWithCheckBox box(QMessageBox::Information, QStringLiteral("title"), text, buttons);
    box.setSettings(settings);
    const Actor actor([&](KyMessageBoxWithCheckBox *open) {
        checkBox(*open)->setChecked(tick);
        open->button(click)->click();
    });
    const int result = box.exec();
    if (shown)
        *shown = actor.count;
    return result;
}

void tst_KyMessageBoxWithCheckBox::exec_notRemembered_shows()
{
    int shown = 0;
    QCOMPARE(run(m_settings.data(), TEXT, false, QMessageBox::Yes, &shown), int(QMessageBox::Yes));
    QCOMPARE(shown, 1);
}

void tst_KyMessageBoxWithCheckBox::exec_remembered_answersAtOnce()
{
    KyMessageBoxWithCheckBox box(QMessageBox::Information, QStringLiteral("title"), TEXT,
                                 QMessageBox::Ok | QMessageBox::Cancel);
    box.setSettings(m_settings.data());
    box.setCheckedToSettings(true);
    QSignalSpy finished(&box, SIGNAL(finished(int)));
    QSignalSpy accepted(&box, SIGNAL(accepted()));
    QSignalSpy rejected(&box, SIGNAL(rejected()));
    QSignalSpy clicked(&box, SIGNAL(buttonClicked(QAbstractButton *)));
    struct Shows : QObject
    {
        bool eventFilter(QObject *, QEvent *event) override
        {
            count += event->type() == QEvent::Show;
            return false;
        }
        int count = 0;
    } shows;
    box.installEventFilter(&shows);
    QCOMPARE(box.exec(), 1024);
    QCOMPARE(box.result(), 1024);
    QVERIFY(box.isChecked());
    QVERIFY(!box.isVisible());
    QCOMPARE(shows.count, 0);
    QCOMPARE(finished.count() + accepted.count() + rejected.count() + clicked.count(), 0);
    QVERIFY(box.checkedFromSettings());
}

/** A box that was shown knows which button Esc stands for; that must not become the result. */
void tst_KyMessageBoxWithCheckBox::exec_remembered_afterItWasShown()
{
    KyMessageBoxWithCheckBox box(QMessageBox::Information, QStringLiteral("title"), TEXT,
                                 QMessageBox::Ok | QMessageBox::Cancel);
    box.setSettings(m_settings.data());
    const Actor actor([](KyMessageBoxWithCheckBox *open) {
        checkBox(*open)->setChecked(true);
        open->button(QMessageBox::Ok)->click();
    });
    QCOMPARE(box.exec(), 1024);
    QCOMPARE(actor.count, 1);
    QSignalSpy finished(&box, SIGNAL(finished(int)));
    QCOMPARE(box.exec(), 1024);
    QCOMPARE(box.result(), 1024);
    QCOMPARE(finished.count(), 0);
}

void tst_KyMessageBoxWithCheckBox::exec_remembered_deletesOnClose()
{
    const QPointer<KyMessageBoxWithCheckBox> box(new KyMessageBoxWithCheckBox);
    box->setAttribute(Qt::WA_DeleteOnClose);
    box->setSettings(m_settings.data());
    box->setText(TEXT);
    box->setCheckedToSettings(true);
    QCOMPARE(box->exec(), 1024);
    QTRY_VERIFY(!box);
}

void tst_KyMessageBoxWithCheckBox::exec_rereadsTheTick()
{
    KyMessageBoxWithCheckBox box(QMessageBox::Information, QStringLiteral("title"), TEXT,
                                 QMessageBox::Cancel);
    box.setSettings(m_settings.data());
    checkBox(box)->setChecked(true); // says nothing: only the settings count
    bool ticked = true;
    const Actor actor([&](KyMessageBoxWithCheckBox *open) {
        ticked = open->isChecked();
        open->button(QMessageBox::Cancel)->click();
    });
    QCOMPARE(box.exec(), int(QMessageBox::Cancel));
    QCOMPARE(actor.count, 1);
    QVERIFY(!ticked);
}

void tst_KyMessageBoxWithCheckBox::exec_hiddenCheckBox_isObeyed()
{
    KyMessageBoxWithCheckBox box(QMessageBox::Information, QStringLiteral("title"), TEXT,
                                 QMessageBox::Cancel);
    box.setSettings(m_settings.data());
    box.setCheckBoxVisible(false);
    box.setCheckedToSettings(true);
    QCOMPARE(box.exec(), 1024);
}

void tst_KyMessageBoxWithCheckBox::okTicked_isRemembered()
{
    int shown = 0;
    QCOMPARE(run(m_settings.data(), TEXT, true, QMessageBox::Ok, &shown), 1024);
    QCOMPARE(shown, 1);
    QCOMPARE(run(m_settings.data(), TEXT, false, QMessageBox::Cancel, &shown), 1024);
    QCOMPARE(shown, 0);
}

void tst_KyMessageBoxWithCheckBox::okUnticked_isForgotten()
{
    KyMessageBoxWithCheckBox box(QMessageBox::Information, QStringLiteral("title"), TEXT, QMessageBox::Ok);
    box.setSettings(m_settings.data());
    box.setCheckedToSettings(true);
    QMap<QString, bool> all = box.readAllCheckedFromSettings();
    QCOMPARE(all, (QMap<QString, bool>{{TEXT, true}}));
    box.show(); // a box that is shown, not run, is not ticked anew
    checkBox(box)->setChecked(false);
    box.button(QMessageBox::Ok)->click();
    QCOMPARE(box.readAllCheckedFromSettings(), (QMap<QString, bool>()));
}

void tst_KyMessageBoxWithCheckBox::otherButtons_storeNothing_data()
{
    QTest::addColumn<int>("button");
    QTest::addColumn<bool>("remembered");
    for (bool remembered : {false, true}) {
        QTest::newRow(remembered ? "cancel, remembered" : "cancel") << int(QMessageBox::Cancel) << remembered;
        QTest::newRow(remembered ? "yes, remembered" : "yes") << int(QMessageBox::Yes) << remembered;
        QTest::newRow(remembered ? "save, remembered" : "save") << int(QMessageBox::Save) << remembered;
    }
}

void tst_KyMessageBoxWithCheckBox::otherButtons_storeNothing()
{
    QFETCH(int, button);
    QFETCH(bool, remembered);
    KyMessageBoxWithCheckBox box(QMessageBox::Information, QStringLiteral("title"), TEXT,
                                 QMessageBox::Ok | QMessageBox::Cancel | QMessageBox::Yes
                                     | QMessageBox::Save);
    box.setSettings(m_settings.data());
    box.setCheckedToSettings(remembered);
    const QString before = lines();
    box.show();
    checkBox(box)->setChecked(!remembered);
    box.button(static_cast<QMessageBox::StandardButton>(button))->click();
    QCOMPARE(lines(), before);
    QCOMPARE(box.checkedFromSettings(), remembered);
}

void tst_KyMessageBoxWithCheckBox::closingTheWindow_storesNothing()
{
    KyMessageBoxWithCheckBox box(QMessageBox::Information, QStringLiteral("title"), TEXT, QMessageBox::Ok);
    box.setSettings(m_settings.data());
    QSignalSpy finished(&box, SIGNAL(finished(int)));
    box.show();
    checkBox(box)->setChecked(true);
    box.close();
    QCOMPARE(finished.count(), 1);
    QCOMPARE(finished.at(0).at(0).toInt(), 0); // although result() says OK afterwards
    QVERIFY(!box.checkedFromSettings());
}

void tst_KyMessageBoxWithCheckBox::escapeOnASingleOk_isOk()
{
    KyMessageBoxWithCheckBox box(QMessageBox::Information, QStringLiteral("title"), TEXT, QMessageBox::Ok);
    box.setSettings(m_settings.data());
    box.show();
    checkBox(box)->setChecked(true);
    QTest::keyClick(&box, Qt::Key_Escape); // clicks the only button there is
    QVERIFY(box.checkedFromSettings());
}

void tst_KyMessageBoxWithCheckBox::twoBoxesOfOneText_shareTheAnswer()
{
    KyMessageBoxWithCheckBox first(QMessageBox::Information, QStringLiteral("one"), TEXT, QMessageBox::Ok);
    KyMessageBoxWithCheckBox second(QMessageBox::Warning, QStringLiteral("two"), TEXT, QMessageBox::Yes);
    first.setSettings(m_settings.data());
    second.setSettings(m_settings.data());
    first.setCheckedToSettings(true);
    QVERIFY(second.checkedFromSettings());
    QCOMPARE(second.exec(), 1024);
    second.setCheckedToSettings(false);
    QVERIFY(!first.checkedFromSettings());
}

void tst_KyMessageBoxWithCheckBox::otherText_isAsked()
{
    KyMessageBoxWithCheckBox box(nullptr);
    box.setSettings(m_settings.data());
    box.setText(TEXT);
    box.setCheckedToSettings(true);
    box.setText(TEXT.toUpper());
    QCOMPARE(box.text(), TEXT.toUpper());
    QVERIFY(!box.checkedFromSettings());
    box.setText(TEXT);
    QVERIFY(box.checkedFromSettings());
}

void tst_KyMessageBoxWithCheckBox::withoutSettings_alwaysShows()
{
    int shown = 0;
    QCOMPARE(run(nullptr, TEXT, true, QMessageBox::Ok, &shown), 1024);
    QCOMPARE(shown, 1);
    QCOMPARE(run(nullptr, TEXT, true, QMessageBox::Ok, &shown), 1024);
    QCOMPARE(shown, 1);
    KyMessageBoxWithCheckBox box;
    box.setCheckedToSettings(true);
    QVERIFY(!box.checkedFromSettings());
    QCOMPARE(box.readAllCheckedFromSettings(), (QMap<QString, bool>()));
}

void tst_KyMessageBoxWithCheckBox::deletedSettings_areForgotten()
{
    KyMessageBoxWithCheckBox box;
    box.setText(TEXT);
    box.setSettings(m_settings.data());
    box.setCheckedToSettings(true);
    m_settings.reset();
    QVERIFY(!box.checkedFromSettings());
    box.setCheckedToSettings(false);
}

void tst_KyMessageBoxWithCheckBox::roundTrip_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("plain") << "Saved";
    QTest::newRow("commas") << "one, two, three,";
    QTest::newRow("slashes") << "C:\\stages\\foyer and /srv/stages";
    QTest::newRow("quotes") << "\"Foyer\" and 'Entrance'";
    QTest::newRow("new lines") << "first\nsecond\r\nthird\ttab";
    QTest::newRow("non-ASCII") << QString::fromUtf8("Änderungen an „Foyer“ – 保存しました – сохранено");
    QTest::newRow("beyond the first plane") << QString::fromUtf8("done \xf0\x9f\x8e\x89!");
    QTest::newRow("percent") << "100 % of %1, %20 and %%";
    QTest::newRow("ini signs") << "[group] key=value ;comment @ByteArray(x) @Invalid()";
    QTest::newRow("blanks around") << "  text  ";
    QTest::newRow("rich text") << "<b>Saved</b> &amp; closed";
    QTest::newRow("null character") << QString(QLatin1String("a\0b", 3));
    QTest::newRow("long") << QString(20000, QLatin1Char('x'));
}

void tst_KyMessageBoxWithCheckBox::roundTrip()
{
    QFETCH(QString, text);
    KyMessageBoxWithCheckBox box;
    box.setSettings(m_settings.data());
    box.setText(text);
    box.setCheckedToSettings(true);

    QSettings fromFile(path(), QSettings::IniFormat); // what another run of the application finds
    KyMessageBoxWithCheckBox other;
    other.setSettings(&fromFile);
    other.setText(text);
    QVERIFY(other.checkedFromSettings());
    QCOMPARE(other.readAllCheckedFromSettings(), (QMap<QString, bool>{{text, true}}));
}

void tst_KyMessageBoxWithCheckBox::file_isAsDocumented()
{
    KyMessageBoxWithCheckBox box;
    box.setSettings(m_settings.data());
    box.setText(QStringLiteral("a, b"));
    box.setCheckedToSettings(true);
    const QString file = lines().remove(QLatin1Char('\r'));
    QVERIFY(file.contains(QStringLiteral("[dialog]\n")));
    QVERIFY(file.contains(QStringLiteral("checked\\size=1\n")));
    QVERIFY(file.contains(QStringLiteral("checked\\1\\name=@ByteArray(a%2C%20b)\n")));
    QVERIFY(file.contains(QStringLiteral("checked\\1\\checked=true\n")));
    QCOMPARE(m_settings->value(QStringLiteral("dialog/checked/1/name")).type(), QVariant::ByteArray);
    QCOMPARE(m_settings->group(), QString());
}

void tst_KyMessageBoxWithCheckBox::write_replacesAndKeepsTheRest()
{
    m_settings->setValue(QStringLiteral("dialog/other"), 7);
    m_settings->setValue(QStringLiteral("dialog/checked/5/name"), QByteArray("old"));
    m_settings->setValue(QStringLiteral("window/geometry"), 8);
    KyMessageBoxWithCheckBox box;
    box.setSettings(m_settings.data());
    box.writeCheckedToSettings({{QStringLiteral("a"), true}, {QStringLiteral("b"), false}});
    QStringList keys = m_settings->allKeys();
    keys.sort();
    QCOMPARE(
        keys,
        QStringList({"dialog/checked/1/checked", "dialog/checked/1/name", "dialog/checked/2/checked",
                     "dialog/checked/2/name", "dialog/checked/size", "dialog/other", "window/geometry"}));
    QCOMPARE(box.readAllCheckedFromSettings(),
             (QMap<QString, bool>{{QStringLiteral("a"), true}, {QStringLiteral("b"), false}}));
    box.writeCheckedToSettings({});
    QCOMPARE(box.readAllCheckedFromSettings(), (QMap<QString, bool>()));
    QVERIFY(!m_settings->contains(QStringLiteral("dialog/checked/1/name")));
    QCOMPARE(m_settings->value(QStringLiteral("dialog/other")).toInt(), 7);
}

void tst_KyMessageBoxWithCheckBox::write_skipsTheEmptyName()
{
    KyMessageBoxWithCheckBox box;
    box.setSettings(m_settings.data());
    box.writeCheckedToSettings({{QString(), true}, {QStringLiteral("a"), true}});
    QCOMPARE(m_settings->value(QStringLiteral("dialog/checked/size")).toInt(), 1);
    QCOMPARE(m_settings->value(QStringLiteral("dialog/checked/1/name")).toByteArray(), QByteArray("a"));
}

void tst_KyMessageBoxWithCheckBox::write_order_isThatOfTheKeys()
{
    KyMessageBoxWithCheckBox box;
    box.setSettings(m_settings.data());
    box.writeCheckedToSettings(
        {{QStringLiteral("c"), true}, {QStringLiteral("a"), true}, {QStringLiteral("b"), true}});
    for (int i = 0; i < 3; ++i)
        QCOMPARE(m_settings->value(QStringLiteral("dialog/checked/%1/name").arg(i + 1)).toByteArray(),
                 QByteArray(1, static_cast<char>('a' + i)));
}

void tst_KyMessageBoxWithCheckBox::write_withoutSettings_doesNothing()
{
    KyMessageBoxWithCheckBox box;
    box.writeCheckedToSettings({{QStringLiteral("a"), true}});
    QCOMPARE(Test::namesIn(m_folder->path()), QStringList());
}

void tst_KyMessageBoxWithCheckBox::write_syncsAtOnce()
{
    KyMessageBoxWithCheckBox box;
    box.setSettings(m_settings.data());
    box.writeCheckedToSettings({{QStringLiteral("a"), true}});
    QVERIFY(Test::readFile(path()).contains("checked\\1\\name=@ByteArray(a)"));
}

void tst_KyMessageBoxWithCheckBox::read_skipsElementsWithoutName()
{
    m_settings->setValue(QStringLiteral("dialog/checked/size"), 3);
    m_settings->setValue(QStringLiteral("dialog/checked/1/checked"), true);
    m_settings->setValue(QStringLiteral("dialog/checked/2/name"), QByteArray());
    m_settings->setValue(QStringLiteral("dialog/checked/3/name"), QByteArray("c"));
    m_settings->setValue(QStringLiteral("dialog/checked/3/checked"), true);
    KyMessageBoxWithCheckBox box;
    box.setSettings(m_settings.data());
    QCOMPARE(box.readAllCheckedFromSettings(), (QMap<QString, bool>{{QStringLiteral("c"), true}}));
}

void tst_KyMessageBoxWithCheckBox::read_laterElementWins()
{
    m_settings->setValue(QStringLiteral("dialog/checked/size"), 12);
    m_settings->setValue(QStringLiteral("dialog/checked/2/name"), QByteArray("a"));
    m_settings->setValue(QStringLiteral("dialog/checked/2/checked"), true);
    m_settings->setValue(QStringLiteral("dialog/checked/12/name"), QByteArray("%61")); // the same, encoded
    m_settings->setValue(QStringLiteral("dialog/checked/12/checked"), false);
    KyMessageBoxWithCheckBox box;
    box.setSettings(m_settings.data());
    QCOMPARE(box.readAllCheckedFromSettings(), (QMap<QString, bool>{{QStringLiteral("a"), false}}));
}

void tst_KyMessageBoxWithCheckBox::read_missingFlag_isFalse()
{
    m_settings->setValue(QStringLiteral("dialog/checked/size"), 1);
    m_settings->setValue(QStringLiteral("dialog/checked/1/name"), QByteArray("a"));
    KyMessageBoxWithCheckBox box;
    box.setSettings(m_settings.data());
    QCOMPARE(box.readAllCheckedFromSettings(), (QMap<QString, bool>{{QStringLiteral("a"), false}}));
}

void tst_KyMessageBoxWithCheckBox::read_damagedFiles_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<int>("expected");
    QTest::newRow("empty") << QByteArray() << 0;
    QTest::newRow("binary") << QByteArray("\0\xff\xfe[[[\n=\n", 9) << 0;
    QTest::newRow("size is enormous")
        << QByteArray("[dialog]\nchecked\\size=2147483647\nchecked\\1\\name=a\nchecked\\1\\checked=true\n")
        << 1;
    QTest::newRow("size is negative") << QByteArray("[dialog]\nchecked\\size=-5\nchecked\\1\\name=a\n") << 0;
    QTest::newRow("size is a text") << QByteArray("[dialog]\nchecked\\size=many\nchecked\\1\\name=a\n") << 0;
    QTest::newRow("size is missing") << QByteArray("[dialog]\nchecked\\1\\name=a\n") << 0;
    QTest::newRow("element has no number")
        << QByteArray("[dialog]\nchecked\\size=1\nchecked\\x\\name=a\n") << 0;
    QTest::newRow("broken encoding") << QByteArray("[dialog]\nchecked\\size=1\nchecked\\1\\name=%zz%\n") << 1;
    QTest::newRow("checked is a value") << QByteArray("[dialog]\nchecked=true\n") << 0;
}

void tst_KyMessageBoxWithCheckBox::read_damagedFiles()
{
    QFETCH(QByteArray, content);
    QFETCH(int, expected);
    m_settings.reset();
    Test::writeFile(path(), content);
    QSettings settings(path(), QSettings::IniFormat);
    KyMessageBoxWithCheckBox box;
    box.setSettings(&settings);
    QCOMPARE(box.readAllCheckedFromSettings().size(), expected);
    box.setText(TEXT);
    box.setCheckedToSettings(true);
    QVERIFY(box.checkedFromSettings());
}

void tst_KyMessageBoxWithCheckBox::read_isRelativeToTheCurrentGroup()
{
    KyMessageBoxWithCheckBox box;
    box.setSettings(m_settings.data());
    box.setText(TEXT);
    m_settings->beginGroup(QStringLiteral("editor"));
    box.setCheckedToSettings(true);
    QCOMPARE(m_settings->group(), QStringLiteral("editor"));
    m_settings->endGroup();
    QVERIFY(!box.checkedFromSettings());
    QVERIFY(m_settings->contains(QStringLiteral("editor/dialog/checked/size")));
}

void tst_KyMessageBoxWithCheckBox::emptyText_isNeverRemembered()
{
    KyMessageBoxWithCheckBox box;
    box.setSettings(m_settings.data());
    box.setCheckedToSettings(true);
    QVERIFY(!box.checkedFromSettings());
}

void tst_KyMessageBoxWithCheckBox::keyboard_walk()
{
    KyMessageBoxWithCheckBox box(QMessageBox::Information, QStringLiteral("title"), TEXT,
                                 QMessageBox::Ok | QMessageBox::Cancel);
    box.setSettings(m_settings.data());
    box.setDefaultButton(QMessageBox::Ok);
    box.show();
    QApplication::setActiveWindow(&box);
    QVERIFY(QTest::qWaitForWindowActive(&box));
    const QList<QWidget *> order = {box.button(QMessageBox::Ok), box.button(QMessageBox::Cancel),
                                    checkBox(box)};
    for (QWidget *widget : order) {
        QTRY_COMPARE(QApplication::focusWidget(), widget);
        if (widget != checkBox(box))
            QTest::keyClick(widget, Qt::Key_Tab);
    }
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Space);
    QVERIFY(box.isChecked());
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return); // the default button's
    QCOMPARE(box.result(), 1024);
    QVERIFY(box.checkedFromSettings());
}

void tst_KyMessageBoxWithCheckBox::keyboard_buttonsAddedLater()
{
    KyMessageBoxWithCheckBox box; // OK is added when it is shown
    box.setText(TEXT);
    box.show();
    QApplication::setActiveWindow(&box);
    QVERIFY(QTest::qWaitForWindowActive(&box));
    QTRY_COMPARE(QApplication::focusWidget(), box.button(QMessageBox::Ok));
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    QCOMPARE(QApplication::focusWidget(), checkBox(box));
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    QCOMPARE(QApplication::focusWidget(), box.button(QMessageBox::Ok));
}

void tst_KyMessageBoxWithCheckBox::accessible_readsTextCheckBoxAndButtons()
{
    KyMessageBoxWithCheckBox box(QMessageBox::Information, QStringLiteral("Editor"), TEXT, QMessageBox::Ok);
    box.show();
    const auto read = [](QWidget *widget) {
        return QAccessible::queryAccessibleInterface(widget)->text(QAccessible::Name);
    };
    QCOMPARE(read(&box), QStringLiteral("Editor"));
    QCOMPARE(read(checkBox(box)), QStringLiteral("Do not show this message again."));
    QCOMPARE(read(box.button(QMessageBox::Ok)), QStringLiteral("OK"));
    QCOMPARE(read(box.findChild<QWidget *>(QStringLiteral("qt_msgbox_label"))), TEXT);
    QCOMPARE(QAccessible::queryAccessibleInterface(checkBox(box))->role(), QAccessible::CheckBox);
    checkBox(box)->setChecked(true);
    QVERIFY(QAccessible::queryAccessibleInterface(checkBox(box))->state().checked);
}

KYTE_TEST_MAIN(tst_KyMessageBoxWithCheckBox)
#include "tst_KyMessageBoxWithCheckBox.moc"
