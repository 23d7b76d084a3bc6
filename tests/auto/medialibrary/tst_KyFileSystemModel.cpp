#include "KyFileModelProbe.h"
#include "KyTestEnvironment.h"
#include "KyTestMain.h"

#include <QDateTime>
#include <QDir>
#include <QFileIconProvider>
#include <QMetaMethod>
#include <QTemporaryDir>
#include <QTranslator>

#include <memory>

#ifdef Q_OS_UNIX
#include <unistd.h>
#endif

using namespace Kyte;
using namespace Kyte::Test;

/** What the model shows of a node, its flags and settings; the tree itself is tested elsewhere. */
class tst_KyFileSystemModel : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void newModel_hasTheDocumentedValues();
    void settings_areStoredAndReadNothing();
    void signalsAndSlots_areAnnounced();
    void headers_data();
    void headers();

    void data_data();
    void data();
    void data_ofOtherRoles();
    void data_ofNoNode();
    void alignment_isAnsweredBeforeTheNode();
    void foreground_data();
    void foreground();
    void foreground_followsThePatterns();
    void accessors();
    void icon_isThatOfTheNode();

    void sizes_data();
    void sizes();
    void texts_followTheDefaultLocale();
    void texts_followTheTranslators();
    void texts_areThoseOfTheNode();

    void flags_data();
    void flags();
    void flags_withoutPermission();

private:
    QModelIndex at(const QString &name, int column = 0) const;
    QString path(const QString &name) const;

    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<FileModel> m_model;
};

void tst_KyFileSystemModel::init()
{
    m_folder.reset(new QTemporaryDir);
    makeEntries(m_folder->path(), {"folder/", "file.mp4", "Grey.txt"});
    writeFile(path(QStringLiteral("file.mp4")), QByteArray(1536, 'x'));
    m_model.reset(new FileModel);
    m_model->setRootPath(m_folder->path());
}

void tst_KyFileSystemModel::cleanup()
{
    QLocale::setDefault(QLocale::c());
    m_model.reset();
    m_folder.reset();
}

QString tst_KyFileSystemModel::path(const QString &name) const
{
    return m_folder->filePath(name);
}

QModelIndex tst_KyFileSystemModel::at(const QString &name, int column) const
{
    return m_model->index(path(name), column);
}

void tst_KyFileSystemModel::newModel_hasTheDocumentedValues()
{
    const FileModel model;
    QCOMPARE(model.rootPath(), QString());
    QCOMPARE(model.filter(), QDir::AllEntries | QDir::NoDotAndDotDot);
    QCOMPARE(model.sortFlag(), QDir::Name | QDir::DirsFirst | QDir::IgnoreCase);
    QCOMPARE(model.nameFilters(), QStringList());
    QCOMPARE(model.nameFiltersInRoot(), QStringList());
    QCOMPARE(model.exclusionNamePattern(), QStringList());
    QCOMPARE(model.grayoutNamePattern(), QStringList());
    QVERIFY(!model.canInstallFileSystemWatcher());
    QVERIFY(model.useFileSystemWatcher());
    QVERIFY(model.isReadOnly());
    QCOMPARE(model.watched(), QStringList());
    QObject owner;
    QCOMPARE((new KyFileSystemModel(&owner))->QObject::parent(), &owner);
}

void tst_KyFileSystemModel::settings_areStoredAndReadNothing()
{
    FileModel &model = *m_model;
    auto *recorder = new SignalRecorder(&model, m_folder->path());
    const QStringList tree = treeOf(model);
    model.setNameFilters({"*.a"});
    model.setNameFiltersInRoot({"*.b"});
    model.setExclusionNamePattern({"f.*"});
    model.setGrayoutNamePattern({"g.*"});
    model.setFilter(QDir::Files);
    model.setSortFlag(QDir::Size);
    model.setReadOnly(false);
    model.setUseFileSystemWatcher(false);
    QCOMPARE(model.nameFilters(), QStringList({"*.a"}));
    QCOMPARE(model.nameFiltersInRoot(), QStringList({"*.b"}));
    QCOMPARE(model.exclusionNamePattern(), QStringList({"f.*"}));
    QCOMPARE(model.grayoutNamePattern(), QStringList({"g.*"}));
    QCOMPARE(model.filter(), QDir::Filters(QDir::Files));
    QCOMPARE(model.sortFlag(), QDir::SortFlags(QDir::Size));
    QVERIFY(!model.isReadOnly());
    QVERIFY(!model.useFileSystemWatcher());
    QCOMPARE(treeOf(model), tree);
    QCOMPARE(recorder->take(), QStringList());
}

void tst_KyFileSystemModel::signalsAndSlots_areAnnounced()
{
    const QMetaObject &type = KyFileSystemModel::staticMetaObject;
    QVERIFY(type.inherits(&QAbstractItemModel::staticMetaObject));
    for (const char *name :
         {"directoryLoaded(QString)", "fileRenamed(QString,QString,QString)", "itemDeleted(QList<void*>)"}) {
        const int index = type.indexOfSignal(name);
        QVERIFY2(index >= 0, name);
    }
    for (const char *name : {"onDirectoryChanged(QString)", "onFileChanged(QString)"}) {
        const int index = type.indexOfSlot(name);
        QVERIFY2(index >= 0, name);
        QCOMPARE(type.method(index).access(), QMetaMethod::Protected);
    }
}

void tst_KyFileSystemModel::headers_data()
{
    QTest::addColumn<int>("section");
    QTest::addColumn<int>("orientation");
    QTest::addColumn<int>("role");
    QTest::addColumn<QVariant>("value");
    QTest::newRow("0") << 0 << int(Qt::Horizontal) << int(Qt::DisplayRole) << QVariant("Name");
    QTest::newRow("1") << 1 << int(Qt::Horizontal) << int(Qt::DisplayRole) << QVariant("Size");
    QTest::newRow("2") << 2 << int(Qt::Horizontal) << int(Qt::DisplayRole) << QVariant("Type");
    QTest::newRow("3") << 3 << int(Qt::Horizontal) << int(Qt::DisplayRole) << QVariant("Date Modified");
    QTest::newRow("4") << 4 << int(Qt::Horizontal) << int(Qt::DisplayRole) << QVariant();
    QTest::newRow("-1") << -1 << int(Qt::Horizontal) << int(Qt::DisplayRole) << QVariant();
    QTest::newRow("vertical") << 7 << int(Qt::Vertical) << int(Qt::DisplayRole) << QVariant(7);
    QTest::newRow("vertical 0") << 0 << int(Qt::Vertical) << int(Qt::DisplayRole) << QVariant(0);
    QTest::newRow("alignment") << 0 << int(Qt::Horizontal) << int(Qt::TextAlignmentRole) << QVariant();
    QTest::newRow("edit") << 0 << int(Qt::Horizontal) << int(Qt::EditRole) << QVariant();
    QTest::newRow("vertical edit") << 0 << int(Qt::Vertical) << int(Qt::EditRole) << QVariant();
}

void tst_KyFileSystemModel::headers()
{
    QFETCH(int, section);
    QFETCH(int, orientation);
    QFETCH(int, role);
    QFETCH(QVariant, value);
    const QVariant header = m_model->headerData(section, Qt::Orientation(orientation), role);
    QCOMPARE(header, value);
    QCOMPARE(header.type(), value.type());
}

void tst_KyFileSystemModel::data_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("column");
    QTest::addColumn<int>("role");
    QTest::addColumn<QVariant>("value");
    QTest::newRow("name") << "file.mp4" << 0 << int(Qt::DisplayRole) << QVariant("file.mp4");
    QTest::newRow("size") << "file.mp4" << 1 << int(Qt::DisplayRole) << QVariant("1 KB");
    QTest::newRow("size of an empty file") << "Grey.txt" << 1 << int(Qt::DisplayRole) << QVariant("0 bytes");
    QTest::newRow("folder") << "folder" << 0 << int(Qt::DisplayRole) << QVariant("folder");
    QTest::newRow("size of a folder") << "folder" << 1 << int(Qt::DisplayRole) << QVariant();
    QTest::newRow("edit") << "file.mp4" << 0 << int(Qt::EditRole) << QVariant("file.mp4");
    QTest::newRow("edit, column 1") << "file.mp4" << 1 << int(Qt::EditRole) << QVariant();
    QTest::newRow("edit, column 3") << "file.mp4" << 3 << int(Qt::EditRole) << QVariant();
    QTest::newRow("decoration, column 1") << "file.mp4" << 1 << int(Qt::DecorationRole) << QVariant();
    QTest::newRow("alignment, column 0") << "file.mp4" << 0 << int(Qt::TextAlignmentRole) << QVariant();
    QTest::newRow("alignment, column 1") << "file.mp4" << 1 << int(Qt::TextAlignmentRole) << QVariant(130);
    QTest::newRow("alignment, column 2") << "file.mp4" << 2 << int(Qt::TextAlignmentRole) << QVariant();
    QTest::newRow("alignment of a folder") << "folder" << 1 << int(Qt::TextAlignmentRole) << QVariant(130);
    QTest::newRow("display, column 4") << "file.mp4" << 4 << int(Qt::DisplayRole) << QVariant();
}

void tst_KyFileSystemModel::data()
{
    QFETCH(QString, name);
    QFETCH(int, column);
    QFETCH(int, role);
    QFETCH(QVariant, value);
    for (int time = 0; time < 2; ++time) { // the second answer is a kept one
        const QVariant shown = m_model->data(at(name, column), role);
        QCOMPARE(shown, value);
        QCOMPARE(shown.type(), value.type());
    }
}

static QString dateOf(const QFileInfo &info)
{
    QT_WARNING_PUSH
    QT_WARNING_DISABLE_DEPRECATED
    return info.lastModified().toString(Qt::LocaleDate);
    QT_WARNING_POP
}

void tst_KyFileSystemModel::data_ofOtherRoles()
{
    const QFileIconProvider provider;
    for (const char *text : {"file.mp4", "folder"}) {
        const QString name = QLatin1String(text);
        const QFileInfo info(path(name));
        QCOMPARE(at(name, 2).data().toString(), provider.type(info));
        QVERIFY(!provider.type(info).isEmpty());
        QCOMPARE(at(name, 3).data().toString(), dateOf(info));
        QVERIFY(!dateOf(info).isEmpty());
        for (int column = 0; column < 4; ++column) {
            for (const int role :
                 {int(Qt::ToolTipRole), int(Qt::StatusTipRole), int(Qt::FontRole), int(Qt::BackgroundRole),
                  int(Qt::CheckStateRole), int(Qt::SizeHintRole), int(Qt::UserRole), -1})
                QVERIFY(!m_model->data(at(name, column), role).isValid());
        }
    }
}

void tst_KyFileSystemModel::data_ofNoNode()
{
    const QModelIndex stale = at(QStringLiteral("file.mp4"));
    m_model->deleteItem(m_model->getItem(stale));
    for (const int role :
         {int(Qt::DisplayRole), int(Qt::EditRole), int(Qt::DecorationRole), int(Qt::ForegroundRole)})
        QVERIFY(!m_model->data(stale, role).isValid());
    QCOMPARE(m_model->data(m_model->rootIndex()).toString(), QFileInfo(m_folder->path()).fileName());
    QVERIFY(!m_model->data(QModelIndex()).isValid());
}

void tst_KyFileSystemModel::alignment_isAnsweredBeforeTheNode()
{
    const QModelIndex stale = at(QStringLiteral("file.mp4"), 1);
    m_model->deleteItem(m_model->getItem(stale));
    QCOMPARE(m_model->data(stale, Qt::TextAlignmentRole), QVariant(130));
    QVERIFY(!m_model->data(QModelIndex(), Qt::TextAlignmentRole).isValid());
    QCOMPARE(FileModel().data(stale, Qt::TextAlignmentRole), QVariant(130));
}

void tst_KyFileSystemModel::foreground_data()
{
    QTest::addColumn<QStringList>("patterns");
    QTest::addColumn<bool>("grey");
    QTest::newRow("none") << QStringList() << false;
    QTest::newRow("whole name") << QStringList({"Grey\\.txt"}) << true;
    QTest::newRow("other case") << QStringList({"grey\\.txt", "GREY.*"}) << false;
    QTest::newRow("part of a name") << QStringList({"Grey", "txt"}) << false;
    QTest::newRow("the last of three") << QStringList({"a", "b", ".*txt"}) << true;
    QTest::newRow("wildcard") << QStringList({"*.txt"}) << false;
    QTest::newRow("broken") << QStringList({"[G", "("}) << false;
}

void tst_KyFileSystemModel::foreground()
{
    QFETCH(QStringList, patterns);
    QFETCH(bool, grey);
    m_model->setGrayoutNamePattern(patterns);
    for (int column = 0; column < 4; ++column) {
        const QModelIndex index = at(QStringLiteral("Grey.txt"), column);
        const QVariant value = m_model->data(index, Qt::ForegroundRole);
        if (grey)
            QCOMPARE(value.value<QBrush>(), QBrush(Qt::gray));
        else
            QCOMPARE(value, index.data()); // falls through
        QCOMPARE(value.userType() == qMetaTypeId<QBrush>(), grey);
        QCOMPARE(at(QStringLiteral("folder"), column).data(Qt::ForegroundRole),
                 at(QStringLiteral("folder"), column).data());
    }
}

void tst_KyFileSystemModel::foreground_followsThePatterns()
{
    const QModelIndex index = at(QStringLiteral("Grey.txt"));
    QCOMPARE(index.data(Qt::ForegroundRole), QVariant("Grey.txt"));
    m_model->setGrayoutNamePattern({"Grey.*"});
    QCOMPARE(index.data(Qt::ForegroundRole).value<QBrush>().color(), QColor(Qt::gray));
    m_model->setGrayoutNamePattern({"file.*"});
    QCOMPARE(index.data(Qt::ForegroundRole), QVariant("Grey.txt"));
    QCOMPARE(at(QStringLiteral("file.mp4")).data(Qt::ForegroundRole).value<QBrush>().style(),
             Qt::SolidPattern);
    m_model->setGrayoutNamePattern({});
    QCOMPARE(at(QStringLiteral("file.mp4")).data(Qt::ForegroundRole), QVariant("file.mp4"));
    // Grey names are shown and exclusion is something else.
    QVERIFY(!m_model->isExclusionFileName(QFileInfo(path(QStringLiteral("Grey.txt")))));
}

void tst_KyFileSystemModel::accessors()
{
    for (int column = 0; column < 4; ++column) {
        const QModelIndex file = at(QStringLiteral("file.mp4"), column);
        QCOMPARE(m_model->fileInfo(file).size(), 1536);
        QCOMPARE(m_model->filePath(file), path(QStringLiteral("file.mp4")));
        QCOMPARE(m_model->fileName(file), QStringLiteral("file.mp4"));
        QVERIFY(!m_model->isDir(file));
        QVERIFY(m_model->isDir(at(QStringLiteral("folder"), column)));
        QVERIFY(!m_model->icon(file).isNull());
    }
}

void tst_KyFileSystemModel::icon_isThatOfTheNode()
{
    const QModelIndex file = at(QStringLiteral("file.mp4"));
    QCOMPARE(m_model->icon(file).cacheKey(), KyFileSystemItem::getIcon(m_model->fileInfo(file)).cacheKey());
    QCOMPARE(file.data(Qt::DecorationRole).value<QIcon>().cacheKey(), m_model->icon(file).cacheKey());
    QCOMPARE(m_model->icon(at(QStringLiteral("folder"))).cacheKey(),
             KyFileSystemItem::getFolderIcon().cacheKey());
    QPixmap pixmap(8, 8);
    pixmap.fill(Qt::red);
    const QIcon own(pixmap);
    m_model->getItem(file)->setIcon(own);
    QCOMPARE(file.data(Qt::DecorationRole).value<QIcon>().cacheKey(), own.cacheKey());
}

void tst_KyFileSystemModel::sizes_data()
{
    QTest::addColumn<qint64>("size");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("german");
    const qint64 tera = Q_INT64_C(1) << 40;
    const qint64 giga = Q_INT64_C(1) << 30;
    const qint64 mega = Q_INT64_C(1) << 20;
    QTest::newRow("0") << Q_INT64_C(0) << "0 bytes"
                       << "0 bytes";
    QTest::newRow("1023") << Q_INT64_C(1023) << "1023 bytes"
                          << "1.023 bytes";
    QTest::newRow("1024") << Q_INT64_C(1024) << "1 KB"
                          << "1 KB";
    QTest::newRow("1536") << Q_INT64_C(1536) << "1 KB"
                          << "1 KB";
    QTest::newRow("2047") << Q_INT64_C(2047) << "1 KB"
                          << "1 KB";
    QTest::newRow("below 1 MB") << mega - 1 << "1023 KB"
                                << "1.023 KB";
    QTest::newRow("1 MB") << mega << "1.0 MB"
                          << "1,0 MB";
    QTest::newRow("1.5 MB") << mega * 3 / 2 << "1.5 MB"
                            << "1,5 MB";
    QTest::newRow("below 1 GB") << giga - 1 << "1024.0 MB"
                                << "1.024,0 MB";
    QTest::newRow("1 GB") << giga << "1.00 GB"
                          << "1,00 GB";
    QTest::newRow("1.25 GB") << giga * 5 / 4 << "1.25 GB"
                             << "1,25 GB";
    QTest::newRow("below 1 TB") << tera - 1 << "1024.00 GB"
                                << "1.024,00 GB";
    QTest::newRow("1 TB") << tera << "1.000 TB"
                          << "1,000 TB";
    QTest::newRow("2000.125 TB") << tera * 2000 + tera / 8 << "2000.125 TB"
                                 << "2.000,125 TB";
    QTest::newRow("negative") << Q_INT64_C(-5) << "-5 bytes"
                              << "-5 bytes";
}

void tst_KyFileSystemModel::sizes()
{
    QFETCH(qint64, size);
    QFETCH(QString, text);
    QFETCH(QString, german);
    QCOMPARE(m_model->getFileSizeString(size), text);
    QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany));
    QCOMPARE(m_model->getFileSizeString(size), german);
}

void tst_KyFileSystemModel::texts_followTheDefaultLocale()
{
    writeFile(path(QStringLiteral("large")), QByteArray());
    QVERIFY(QFile::resize(path(QStringLiteral("large")), 3 << 19));
    m_model->update(QModelIndex());
    const QModelIndex size = at(QStringLiteral("large"), 1);
    const QModelIndex date = at(QStringLiteral("large"), 3);
    const QString former = date.data().toString();
    QCOMPARE(size.data().toString(), QStringLiteral("1.5 MB"));
    QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany));
    QCOMPARE(size.data().toString(), QStringLiteral("1,5 MB"));
    QCOMPARE(date.data().toString(), dateOf(m_model->fileInfo(date)));
    QVERIFY(date.data().toString() != former);
    QLocale::setDefault(QLocale::c());
    QCOMPARE(size.data().toString(), QStringLiteral("1.5 MB"));
    QCOMPARE(date.data().toString(), former);
}

/** Puts the texts of every context between brackets. */
class Brackets : public QTranslator
{
    Q_OBJECT

public:
    bool isEmpty() const override
    {
        return false;
    }

    QString translate(const char *, const char *text, const char *, int) const override
    {
        return QStringLiteral("[%1]").arg(QString::fromUtf8(text));
    }
};

void tst_KyFileSystemModel::texts_followTheTranslators()
{
    const QModelIndex size = at(QStringLiteral("file.mp4"), 1);
    const QModelIndex type = at(QStringLiteral("file.mp4"), 2);
    const QString formerType = type.data().toString();
    QCOMPARE(size.data().toString(), QStringLiteral("1 KB"));
    {
        Brackets brackets;
        QCoreApplication::installTranslator(&brackets);
        QCOMPARE(size.data().toString(), QStringLiteral("[1 KB]"));
        QCOMPARE(type.data().toString(), QFileIconProvider().type(m_model->fileInfo(type)));
        QVERIFY(type.data().toString() != formerType);
        // The labels are those of the time when the model was made.
        QCOMPARE(m_model->headerData(0, Qt::Horizontal).toString(), QStringLiteral("Name"));
        QCOMPARE(FileModel().headerData(3, Qt::Horizontal).toString(), QStringLiteral("[Date Modified]"));
        for (const qint64 value : {1, 1 << 10, 1 << 20, 1 << 30})
            QVERIFY(m_model->getFileSizeString(value).startsWith(QLatin1Char('[')));
        QVERIFY(m_model->getFileSizeString(Q_INT64_C(1) << 40).startsWith(QLatin1Char('[')));
    }
    QCOMPARE(size.data().toString(), QStringLiteral("1 KB"));
    QCOMPARE(type.data().toString(), formerType);
}

void tst_KyFileSystemModel::texts_areThoseOfTheNode()
{
    const QModelIndex size = at(QStringLiteral("file.mp4"), 1);
    QCOMPARE(size.data().toString(), QStringLiteral("1 KB"));
    QVERIFY(QFile::resize(path(QStringLiteral("file.mp4")), 5000));
    QCOMPARE(size.data().toString(), QStringLiteral("1 KB"));
    m_model->update(size);
    QCOMPARE(at(QStringLiteral("file.mp4"), 1).data().toString(), QStringLiteral("4 KB"));
    // A node that takes over another file shows that one.
    *m_model->getItem(at(QStringLiteral("file.mp4"))) =
        KyFileSystemItem(*m_model->getItem(at(QStringLiteral("Grey.txt"))));
    QCOMPARE(m_model->index(1, 1).data().toString(), QStringLiteral("0 bytes"));
    QCOMPARE(m_model->index(1, 0).data().toString(), QStringLiteral("Grey.txt"));
}

void tst_KyFileSystemModel::flags_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("column");
    QTest::addColumn<bool>("readOnly");
    QTest::addColumn<int>("expected");
    const int shown = Qt::ItemIsSelectable | Qt::ItemIsEnabled | Qt::ItemIsDragEnabled;
    QTest::newRow("file") << "file.mp4" << 0 << false << (shown | Qt::ItemIsEditable);
    QTest::newRow("file, column 1") << "file.mp4" << 1 << false << shown;
    QTest::newRow("file, read-only") << "file.mp4" << 0 << true << shown;
    QTest::newRow("folder") << "folder" << 0 << false << (shown | Qt::ItemIsEditable | Qt::ItemIsDropEnabled);
    QTest::newRow("folder, column 3") << "folder" << 3 << false << shown;
    QTest::newRow("folder, read-only") << "folder" << 0 << true << shown;
    QTest::newRow("invalid index") << "" << 0 << false << int(Qt::NoItemFlags);
}

void tst_KyFileSystemModel::flags()
{
    QFETCH(QString, name);
    QFETCH(int, column);
    QFETCH(bool, readOnly);
    QFETCH(int, expected);
    m_model->setReadOnly(readOnly);
    const QModelIndex index = name.isEmpty() ? QModelIndex() : at(name, column);
    QCOMPARE(int(m_model->flags(index)), expected);
}

void tst_KyFileSystemModel::flags_withoutPermission()
{
    m_model->setReadOnly(false);
    QVERIFY(QFile::setPermissions(path(QStringLiteral("file.mp4")), QFile::ReadOwner));
    QVERIFY(QFile::setPermissions(path(QStringLiteral("folder")), QFile::ReadOwner | QFile::ExeOwner));
    m_model->update(QModelIndex());
#ifdef Q_OS_UNIX
    // What the user may do is asked for by the real user, and root may do everything.
    const bool isRoot = ::getuid() == 0;
    if (isRoot && ::setreuid(65534, 0) != 0)
        QSKIP("Root may write everything here");
#endif
    const Qt::ItemFlags file = m_model->flags(at(QStringLiteral("file.mp4")));
    const Qt::ItemFlags folder = m_model->flags(at(QStringLiteral("folder")));
#ifdef Q_OS_UNIX
    if (isRoot)
        QCOMPARE(::setreuid(0, 0), 0);
#endif
    const Qt::ItemFlags shown = Qt::ItemIsSelectable | Qt::ItemIsEnabled | Qt::ItemIsDragEnabled;
    QCOMPARE(file, shown);
#ifdef Q_OS_UNIX // what a user may do to folders is nothing that Qt changes elsewhere
    QCOMPARE(folder, shown);
#else
    Q_UNUSED(folder)
#endif
}

KYTE_TEST_MAIN(tst_KyFileSystemModel)
#include "tst_KyFileSystemModel.moc"
