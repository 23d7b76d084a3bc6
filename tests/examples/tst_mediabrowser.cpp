#include <BrowserWindow.h>
#include <KyTestEnvironment.h>
#include <KyTestMain.h>
#include <KyThumbnail.h>

#include <QLineEdit>
#include <QListView>
#include <QMessageBox>
#include <QProcess>
#include <QTreeView>

namespace Kyte {
namespace Test {

/** The media browser in the hands of a user, while another program works on the same files. */
class MediaBrowserTest : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void rootFolder_isShownAtFirst();
    void thumbnails_comeFromTheWorker();
    void filterLine_narrowsBothViews();
    void picturesOfAFolder_areOpenedByTheTree();

    void nameEditedInPlace_isThatOnDisk();
    void nameInUse_isRefused();
    void folderRenamed_staysOpen();

    void fileDraggedToAFolder_data();
    void fileDraggedToAFolder();
    void fileDraggedToAFolderThatHasIt_stays();

    void changesOfAnotherProgram_areFollowed();
    void folderRemovedByAnotherProgram_showsTheOneAbove();
    void burstOfAnotherProgram_isFollowed();
    void changeDuringEditing_isHarmless();

    void screenshot_isSaved();

private:
    QString path(const QString &name) const;
    QStringList pictures() const;
    QModelIndex picture(const QString &name) const;
    QModelIndex treeRow(const QString &folder) const;
    QColor colour(const QString &name) const;
    void edit(const QString &name, const QString &newName);
    void drag(const QPoint &from, const QPoint &to, Qt::KeyboardModifiers modifiers);
    void change(const QStringList &words);

    QScopedPointer<QTemporaryDir> m_folder;
    QScopedPointer<QProcess> m_otherProgram;
    QScopedPointer<BrowserWindow> m_window;
    QTreeView *m_tree = nullptr;
    QListView *m_pictures = nullptr;
    QLineEdit *m_filter = nullptr;
};

static QModelIndex childNamed(const QAbstractItemModel *model, const QModelIndex &parent, const QString &name)
{
    for (int row = 0; row < model->rowCount(parent); ++row) {
        const QModelIndex index = model->index(row, 0, parent);
        if (index.data().toString() == name)
            return index;
    }
    return QModelIndex();
}

static void addThumbnail(const QString &file, const QColor &colour)
{
    QPixmap pixmap(64, 48);
    pixmap.fill(colour);
    KyThumbnail thumbnail(file, nullptr, false);
    thumbnail.setPixmap(pixmap);
    if (!thumbnail.write(true))
        qFatal("Cannot write the thumbnail of %s", qPrintable(file));
}

static void sendMouse(QWidget *widget,
                      QEvent::Type type,
                      const QPoint &position,
                      Qt::MouseButtons buttons,
                      Qt::KeyboardModifiers modifiers)
{
    const Qt::MouseButton button = type == QEvent::MouseMove ? Qt::NoButton : Qt::LeftButton;
    QMouseEvent event(type, position, widget->mapToGlobal(position), button, buttons, modifiers);
    QCoreApplication::sendEvent(widget, &event);
}

/** "Clips" with dawn.png (red), dusk.png (blue) and plain.png, "Posters" with opera.png, "Spare" with
 * nothing. */
void MediaBrowserTest::init()
{
    m_folder.reset(new QTemporaryDir);
    for (const char *name : {"Clips", "Posters", "Spare"})
        QVERIFY(QDir(m_folder->path()).mkdir(QLatin1String(name)));
    for (const char *name : {"Clips/dawn.png", "Clips/dusk.png", "Clips/plain.png", "Posters/opera.png"})
        writeFile(path(QLatin1String(name)), "picture");
    addThumbnail(path(QStringLiteral("Clips/dawn.png")), Qt::red);
    addThumbnail(path(QStringLiteral("Clips/dusk.png")), Qt::blue);
    m_otherProgram.reset(new QProcess);
    m_otherProgram->start(QStringLiteral(KYTE_TEST_PROGRAM_DIR "/ky_change_files"), QStringList());

    m_window.reset(new BrowserWindow(m_folder->path()));
    m_tree = m_window->findChild<QTreeView *>();
    m_pictures = m_window->findChild<QListView *>();
    m_filter = m_window->findChild<QLineEdit *>();
    QVERIFY(m_tree && m_pictures && m_filter);
    m_window->show();
    m_window->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(m_window.data()));
    m_window->openFolder(path(QStringLiteral("Clips")));
    QTRY_COMPARE(pictures(), (QStringList{"dawn.png", "dusk.png", "plain.png"}));
}

void MediaBrowserTest::cleanup()
{
    m_window.reset();
    m_otherProgram->closeWriteChannel();
    m_otherProgram->waitForFinished();
}

QString MediaBrowserTest::path(const QString &name) const
{
    return m_folder->filePath(name);
}

QStringList MediaBrowserTest::pictures() const
{
    QStringList names;
    for (int row = 0; row < m_pictures->model()->rowCount(m_pictures->rootIndex()); ++row)
        names.append(m_pictures->model()->index(row, 0, m_pictures->rootIndex()).data().toString());
    return names;
}

QModelIndex MediaBrowserTest::picture(const QString &name) const
{
    return childNamed(m_pictures->model(), m_pictures->rootIndex(), name);
}

QModelIndex MediaBrowserTest::treeRow(const QString &folder) const
{
    return childNamed(m_tree->model(), QModelIndex(), folder);
}

/** What is painted in the middle of the file's picture. */
QColor MediaBrowserTest::colour(const QString &name) const
{
    const QRect cell = m_pictures->visualRect(picture(name));
    const QPoint middle(cell.center().x(), cell.top() + m_pictures->iconSize().height() / 2);
    return m_pictures->viewport()->grab().toImage().pixelColor(middle);
}

void MediaBrowserTest::edit(const QString &name, const QString &newName)
{
    QTest::mouseClick(m_pictures->viewport(), Qt::LeftButton, Qt::NoModifier,
                      m_pictures->visualRect(picture(name)).center());
    QTest::keyClick(m_pictures, Qt::Key_F2);
    auto *editor = m_pictures->viewport()->findChild<QLineEdit *>();
    QVERIFY(editor);
    QCOMPARE(editor->text(), name);
    QTest::keyClicks(editor, newName); // all is selected
    QTest::keyClick(editor, Qt::Key_Return);
}

/** Drags what is at \a from in the pictures to \a to in the tree. */
void MediaBrowserTest::drag(const QPoint &from, const QPoint &to, Qt::KeyboardModifiers modifiers)
{
    QWidget *source = m_pictures->viewport();
    QWidget *target = m_tree->viewport();
    // Dragging has an event loop of its own.
    const auto hover = [target, to, modifiers]() {
        sendMouse(target, QEvent::MouseMove, to, Qt::LeftButton, modifiers);
    };
    QTimer::singleShot(100, source, hover);
    QTimer::singleShot(200, source, hover);
    QTimer::singleShot(300, source, [target, to, modifiers]() {
        sendMouse(target, QEvent::MouseButtonRelease, to, Qt::NoButton, modifiers);
    });
    sendMouse(source, QEvent::MouseButtonPress, from, Qt::LeftButton, Qt::NoModifier);
    const QPoint away(QApplication::startDragDistance() * 2, 0);
    sendMouse(source, QEvent::MouseMove, from + away, Qt::LeftButton, Qt::NoModifier);
    sendMouse(source, QEvent::MouseMove, from + away * 2, Qt::LeftButton, Qt::NoModifier);
}

void MediaBrowserTest::change(const QStringList &words)
{
    m_otherProgram->write((words.join(QLatin1Char('\t')) + QLatin1Char('\n')).toUtf8());
    QTRY_VERIFY(m_otherProgram->canReadLine());
    QCOMPARE(m_otherProgram->readLine().trimmed(), QByteArray("done"));
}

void MediaBrowserTest::rootFolder_isShownAtFirst()
{
    m_window.reset(new BrowserWindow(m_folder->path()));
    m_pictures = m_window->findChild<QListView *>();
    m_window->show();
    m_window->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(m_window.data()));
    QCOMPARE(pictures(), (QStringList{"Clips", "Posters", "Spare"}));
    m_window->findChild<QTreeView *>()->setFocus();
    QCoreApplication::processEvents();
    QCOMPARE(pictures(), (QStringList{"Clips", "Posters", "Spare"}));
}

void MediaBrowserTest::thumbnails_comeFromTheWorker()
{
    QTRY_COMPARE(colour(QStringLiteral("dawn.png")), QColor(Qt::red));
    QTRY_COMPARE(colour(QStringLiteral("dusk.png")), QColor(Qt::blue));
    const QColor plain = colour(QStringLiteral("plain.png"));
    QVERIFY(plain != QColor(Qt::red) && plain != QColor(Qt::blue));
}

void MediaBrowserTest::filterLine_narrowsBothViews()
{
    QTest::keyClicks(m_filter, QStringLiteral("daw"));
    QTRY_COMPARE(pictures(), QStringList("dawn.png"));
    QCOMPARE(m_tree->model()->rowCount(treeRow(QStringLiteral("Clips"))), 1);
    QVERIFY(treeRow(QStringLiteral("Posters")).isValid()); // folders stay
    QVERIFY(m_tree->isExpanded(treeRow(QStringLiteral("Clips"))));

    m_filter->clear();
    QTest::keyClicks(m_filter, QStringLiteral("d?s*"));
    QTRY_COMPARE(pictures(), QStringList("dusk.png"));
    m_filter->clear();
    QTRY_COMPARE(pictures().size(), 3);
    QTRY_COMPARE(colour(QStringLiteral("dawn.png")), QColor(Qt::red));
}

void MediaBrowserTest::picturesOfAFolder_areOpenedByTheTree()
{
    const QPoint posters = m_tree->visualRect(treeRow(QStringLiteral("Posters"))).center();
    QTest::mouseClick(m_tree->viewport(), Qt::LeftButton, Qt::NoModifier, posters);
    QTRY_COMPARE(pictures(), QStringList("opera.png"));
}

void MediaBrowserTest::nameEditedInPlace_isThatOnDisk()
{
    QTRY_COMPARE(colour(QStringLiteral("dawn.png")), QColor(Qt::red));
    edit(QStringLiteral("dawn.png"), QStringLiteral("sunrise"));
    QTRY_COMPARE(pictures(), (QStringList{"dusk.png", "plain.png", "sunrise.png"}));
    QVERIFY(QFile::exists(path(QStringLiteral("Clips/sunrise.png"))));
    QVERIFY(!QFile::exists(path(QStringLiteral("Clips/dawn.png"))));
    QTRY_COMPARE(colour(QStringLiteral("sunrise.png")), QColor(Qt::red));
}

void MediaBrowserTest::nameInUse_isRefused()
{
    QString text;
    QTimer closing;
    connect(&closing, &QTimer::timeout, [&text]() {
        auto *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget());
        if (!box)
            return;
        text = box->text();
        QTest::keyClick(box, Qt::Key_Return);
    });
    closing.start(50);
    edit(QStringLiteral("dawn.png"), QStringLiteral("dusk.png"));
    QTRY_COMPARE(text,
                 QStringLiteral("<b>The name \"dusk.png\" is alrady in use.</b><p>Try using another name."));
    QTRY_VERIFY(!QApplication::activeModalWidget());
    QCOMPARE(pictures(), (QStringList{"dawn.png", "dusk.png", "plain.png"}));
    QVERIFY(QFile::exists(path(QStringLiteral("Clips/dawn.png"))));
}

void MediaBrowserTest::folderRenamed_staysOpen()
{
    m_tree->setFocus();
    m_tree->setCurrentIndex(treeRow(QStringLiteral("Clips")));
    QTest::keyClick(m_tree, Qt::Key_F2);
    auto *editor = m_tree->viewport()->findChild<QLineEdit *>();
    QVERIFY(editor);
    QTest::keyClicks(editor, QStringLiteral("Films"));
    QTest::keyClick(editor, Qt::Key_Return);
    QTRY_VERIFY(m_tree->isExpanded(treeRow(QStringLiteral("Films"))));
    QVERIFY(QFile::exists(path(QStringLiteral("Films/dawn.png"))));
    QTRY_COMPARE(pictures(), (QStringList{"dawn.png", "dusk.png", "plain.png"}));
    QTRY_VERIFY(m_tree->selectionModel()->isSelected(treeRow(QStringLiteral("Films"))));
}

void MediaBrowserTest::fileDraggedToAFolder_data()
{
    QTest::addColumn<int>("modifiers");
    QTest::addColumn<QString>("target");
    QTest::addColumn<QStringList>("left");
    QTest::addColumn<QStringList>("arrived");
    const QStringList others{"dusk.png", "plain.png"};
    const QStringList all{"dawn.png", "dusk.png", "plain.png"};
    QTest::newRow("moved") << int(Qt::NoModifier) << "Posters" << others
                           << QStringList{"dawn.png", "opera.png"};
    QTest::newRow("copied") << int(Qt::ControlModifier) << "Posters" << all
                            << QStringList{"dawn.png", "opera.png"};
    QTest::newRow("to an empty folder")
        << int(Qt::NoModifier) << "Spare" << others << QStringList{"dawn.png"};
}

void MediaBrowserTest::fileDraggedToAFolder()
{
    QFETCH(int, modifiers);
    QFETCH(QString, target);
    QFETCH(QStringList, left);
    QFETCH(QStringList, arrived);
    m_tree->expand(treeRow(target));

    drag(m_pictures->visualRect(picture(QStringLiteral("dawn.png"))).center(),
         m_tree->visualRect(treeRow(target)).center(), Qt::KeyboardModifiers(modifiers));

    QTRY_COMPARE(pictures(), left);
    QTRY_COMPARE(m_tree->model()->rowCount(treeRow(target)), arrived.size());
    m_window->openFolder(path(target));
    QTRY_COMPARE(pictures(), arrived);
    QTRY_COMPARE(colour(QStringLiteral("dawn.png")), QColor(Qt::red)); // with its thumbnail
    QVERIFY(QFile::exists(path(target + QStringLiteral("/dawn.png"))));
    QCOMPARE(QFile::exists(path(QStringLiteral("Clips/dawn.png"))), left.contains(QLatin1String("dawn.png")));
}

void MediaBrowserTest::fileDraggedToAFolderThatHasIt_stays()
{
    writeFile(path(QStringLiteral("Posters/dawn.png")), "another");
    drag(m_pictures->visualRect(picture(QStringLiteral("dawn.png"))).center(),
         m_tree->visualRect(treeRow(QStringLiteral("Posters"))).center(), Qt::NoModifier);
    QCOMPARE(readFile(path(QStringLiteral("Posters/dawn.png"))), QByteArray("another"));
    QCOMPARE(readFile(path(QStringLiteral("Clips/dawn.png"))), QByteArray("picture"));
    QCOMPARE(pictures(), (QStringList{"dawn.png", "dusk.png", "plain.png"}));
}

void MediaBrowserTest::changesOfAnotherProgram_areFollowed()
{
    change({"create", path(QStringLiteral("Clips/noon.png"))});
    QTRY_COMPARE(pictures(), (QStringList{"dawn.png", "dusk.png", "noon.png", "plain.png"}));
    change({"rename", path(QStringLiteral("Clips/dawn.png")), path(QStringLiteral("Clips/sunset.png"))});
    QTRY_COMPARE(pictures(), (QStringList{"dusk.png", "noon.png", "plain.png", "sunset.png"}));
    change({"remove", path(QStringLiteral("Clips/plain.png"))});
    QTRY_COMPARE(pictures(), (QStringList{"dusk.png", "noon.png", "sunset.png"}));

    // The whole library is read anew then: what was open stays so.
    change({"folder", path(QStringLiteral("Actors"))});
    QTRY_VERIFY(treeRow(QStringLiteral("Actors")).isValid());
    change({"remove", path(QStringLiteral("Spare"))});
    QTRY_VERIFY(!treeRow(QStringLiteral("Spare")).isValid());
    QTRY_VERIFY(m_tree->isExpanded(treeRow(QStringLiteral("Clips"))));
    QTRY_VERIFY(m_tree->selectionModel()->isSelected(treeRow(QStringLiteral("Clips"))));
    QTRY_COMPARE(pictures(), (QStringList{"dusk.png", "noon.png", "sunset.png"}));
    QTRY_COMPARE(colour(QStringLiteral("dusk.png")), QColor(Qt::blue));
}

void MediaBrowserTest::folderRemovedByAnotherProgram_showsTheOneAbove()
{
    change({"remove", path(QStringLiteral("Clips"))});
    QTRY_COMPARE(pictures(), (QStringList{"Posters", "Spare"}));
    QVERIFY(!treeRow(QStringLiteral("Clips")).isValid());
}

void MediaBrowserTest::burstOfAnotherProgram_isFollowed()
{
    const int count = 300;
    for (int i = 0; i < count; ++i)
        m_otherProgram->write(
            QStringLiteral("create\t%1\n").arg(path(QStringLiteral("Clips/burst %1.png").arg(i))).toUtf8());
    QTRY_COMPARE(pictures().size(), 3 + count);
    QCOMPARE(m_tree->model()->rowCount(treeRow(QStringLiteral("Clips"))), 3 + count);
}

void MediaBrowserTest::changeDuringEditing_isHarmless()
{
    QTest::mouseClick(m_pictures->viewport(), Qt::LeftButton, Qt::NoModifier,
                      m_pictures->visualRect(picture(QStringLiteral("dawn.png"))).center());
    QTest::keyClick(m_pictures, Qt::Key_F2);
    const QPointer<QLineEdit> editor = m_pictures->viewport()->findChild<QLineEdit *>();
    QVERIFY(editor);
    QTest::keyClicks(editor, QStringLiteral("sunrise"));
    change({"create", path(QStringLiteral("Clips/noon.png"))});
    QTRY_COMPARE(pictures(), (QStringList{"dawn.png", "dusk.png", "noon.png", "plain.png"}));
    if (editor)
        QTest::keyClick(editor, Qt::Key_Return);
    QCoreApplication::processEvents();
    QCOMPARE(namesIn(path(QStringLiteral("Clips"))).filter(QStringLiteral("png")),
             (QStringList{"dawn.png", "dusk.png", "noon.png", "plain.png"}));
}

void MediaBrowserTest::screenshot_isSaved()
{
    const QString file = path(QStringLiteral("window.png"));
    QProcess program;
    program.start(QStringLiteral(KYTE_TEST_PROGRAM_DIR "/mediabrowser"), {"--screenshot", file});
    QVERIFY(program.waitForFinished());
    QCOMPARE(program.exitStatus(), QProcess::NormalExit);
    QCOMPARE(program.exitCode(), 0);
    QVERIFY(QImage(file).width() > 600);
}

} // namespace Test
} // namespace Kyte

KYTE_TEST_MAIN(Kyte::Test::MediaBrowserTest)

#include "tst_mediabrowser.moc"
