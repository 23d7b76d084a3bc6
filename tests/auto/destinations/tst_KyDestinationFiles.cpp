#include "KyTestMain.h"

#include "KyDestinationTest.h"

#include <KyDestinationFiles_p.h>
#include <KyFileStore_p.h>

#include <QSqlDatabase>
#include <QSqlQuery>

#include <memory>

#ifdef Q_OS_UNIX
#include <cerrno>

#include <sys/stat.h>
#include <unistd.h>
#endif

using namespace Kyte;
using namespace Kyte::Test;

static const QStringList JOURNALS = {QStringLiteral("-journal"), QStringLiteral("-wal"),
                                     QStringLiteral("-shm")};

class tst_KyDestinationFiles : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void readLock_keepsWritersOut();
    void readLock_makesNothing_data();
    void readLock_makesNothing();
    void readLock_honoursAJournal();

    void remove_takesTheJournalsAlong();
    void remove_ofNothing_succeeds();
    void remove_ofAFolder_fails_data();
    void remove_ofAFolder_fails();

    void copy_isExact();
    void copy_honoursAJournal();
    void copy_fails_data();
    void copy_fails();

    void replace_putsACopyInPlace_data();
    void replace_putsACopyInPlace();
    void replace_takesTheJournalsOfTheTargetAlong();
    void replace_isRefusedByAFolder();
    void replace_ofNothing_fails();
    void replace_copiesLargeFiles();

    void deletability_isTold_data();
    void deletability_isTold();
    void storeReplace_tellsWhatFailed();
#ifdef Q_OS_UNIX
    void fileInASealedFolder_cannotBeDeleted();
    void fileOfAnotherInAStickyFolder_cannotBeDeleted();
    void fileThatIsReadOnly_canBeDeleted();
    void sync_tellsWhatFailed();
#endif

private:
    QString path(const QString &name) const;
    /** A database with 200 rows of \a text. */
    void makeDatabase(const QString &name, const QString &text) const;
    QStringList files() const;

    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<MessageWatch> m_watch;
};

void tst_KyDestinationFiles::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    m_watch = std::make_unique<MessageWatch>();
}

void tst_KyDestinationFiles::cleanup()
{
    const QStringList complaints = m_watch->take();
    m_watch.reset();
    m_folder.reset();
    QCOMPARE(complaints, QStringList());
    QVERIFY(QSqlDatabase::connectionNames().isEmpty());
}

QString tst_KyDestinationFiles::path(const QString &name) const
{
    return m_folder->filePath(name);
}

void tst_KyDestinationFiles::makeDatabase(const QString &name, const QString &text) const
{
    execute(path(name),
            {QStringLiteral("CREATE TABLE t(id INTEGER PRIMARY KEY, text)"),
             QStringLiteral("WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i+1 FROM n WHERE i < 200)"
                            " INSERT INTO t SELECT i, '%1' FROM n")
                 .arg(text)});
}

QStringList tst_KyDestinationFiles::files() const
{
    return QDir(m_folder->path())
        .entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot, QDir::Name);
}

void tst_KyDestinationFiles::readLock_keepsWritersOut()
{
    makeDatabase(QStringLiteral("db"), QStringLiteral("a"));
    const QString other = QStringLiteral("other");
    {
        QSqlDatabase writer = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), other);
        writer.setDatabaseName(path(QStringLiteral("db")));
        writer.setConnectOptions(QStringLiteral("QSQLITE_BUSY_TIMEOUT=0"));
        QVERIFY(writer.open());
        QSqlQuery query(writer);
        {
            const DestinationFiles::ReadLock lock(path(QStringLiteral("db")));
            QVERIFY(!query.exec(QStringLiteral("UPDATE t SET text='b'")));
            QVERIFY(query.exec(QStringLiteral("SELECT * FROM t")));
            query.finish();
            const DestinationFiles::ReadLock second(
                path(QStringLiteral("db"))); // two do not disturb each other
        }
        QVERIFY(query.exec(QStringLiteral("UPDATE t SET text='b'")));
    }
    QSqlDatabase::removeDatabase(other);
}

void tst_KyDestinationFiles::readLock_makesNothing_data()
{
    QTest::addColumn<QString>("obstacle");
    for (const char *name : {"missing", "folder", "garbage", "empty"})
        QTest::newRow(name) << QString::fromLatin1(name);
}

void tst_KyDestinationFiles::readLock_makesNothing()
{
    QFETCH(QString, obstacle);
    if (obstacle == QLatin1String("folder"))
        QVERIFY(QDir().mkdir(path(obstacle)));
    else if (obstacle == QLatin1String("garbage"))
        writeFile(path(obstacle), QByteArray(5000, 'x'));
    else if (obstacle == QLatin1String("empty"))
        writeFile(path(obstacle), QByteArray());
    const QStringList before = files();
    const QByteArray content = readFile(path(obstacle));
    {
        const DestinationFiles::ReadLock lock(path(obstacle));
        QCOMPARE(files(), before);
    }
    QCOMPARE(files(), before);
    QCOMPARE(readFile(path(obstacle)), content);
}

void tst_KyDestinationFiles::readLock_honoursAJournal()
{
    makeDatabase(QStringLiteral("db"), QStringLiteral("a"));
    const QByteArray whole = readFile(path(QStringLiteral("db")));
    interruptTransaction(path(QStringLiteral("db")),
                         QStringLiteral("UPDATE t SET text=hex(randomblob(300))"));
    QVERIFY(readFile(path(QStringLiteral("db"))) != whole);
    {
        const DestinationFiles::ReadLock lock(path(QStringLiteral("db")));
        QCOMPARE(readFile(path(QStringLiteral("db"))), whole);
    }
    QCOMPARE(files(), QStringList({QStringLiteral("db")}));
}

void tst_KyDestinationFiles::remove_takesTheJournalsAlong()
{
    for (const QString &suffix : QStringList({QString()}) + JOURNALS)
        writeFile(path(QStringLiteral("db") + suffix), "x");
    writeFile(path(QStringLiteral("db-other")), "x");
    QString reason;
    QVERIFY(DestinationFiles::remove(path(QStringLiteral("db")), &reason));
    QCOMPARE(reason, QString());
    QCOMPARE(files(), QStringList({QStringLiteral("db-other")}));
}

void tst_KyDestinationFiles::remove_ofNothing_succeeds()
{
    QString reason;
    QVERIFY(DestinationFiles::remove(path(QStringLiteral("db")), &reason));
    QCOMPARE(reason, QString());
    for (const QString &suffix : JOURNALS)
        writeFile(path(QStringLiteral("db") + suffix), "x");
    QVERIFY(DestinationFiles::remove(path(QStringLiteral("db")), &reason));
    QCOMPARE(files(), QStringList());
}

void tst_KyDestinationFiles::remove_ofAFolder_fails_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("database") << QStringLiteral("db");
    QTest::newRow("journal") << QStringLiteral("db-journal");
}

void tst_KyDestinationFiles::remove_ofAFolder_fails()
{
    QFETCH(QString, name);
    QVERIFY(QDir().mkdir(path(name)));
    QString reason;
    QVERIFY(!DestinationFiles::remove(path(QStringLiteral("db")), &reason));
    QFile file(path(name));
    QVERIFY(!file.remove());
    QCOMPARE(reason, file.errorString());
}

void tst_KyDestinationFiles::copy_isExact()
{
    makeDatabase(QStringLiteral("db"), QStringLiteral("a"));
    QString reason;
    QVERIFY(DestinationFiles::copy(path(QStringLiteral("db")), path(QStringLiteral("copy")), &reason));
    QCOMPARE(readFile(path(QStringLiteral("copy"))), readFile(path(QStringLiteral("db"))));
    QCOMPARE(files(), QStringList({QStringLiteral("copy"), QStringLiteral("db")}));
}

void tst_KyDestinationFiles::copy_honoursAJournal()
{
    makeDatabase(QStringLiteral("db"), QStringLiteral("a"));
    const QByteArray whole = readFile(path(QStringLiteral("db")));
    interruptTransaction(path(QStringLiteral("db")),
                         QStringLiteral("UPDATE t SET text=hex(randomblob(300))"));
    QString reason;
    QVERIFY(DestinationFiles::copy(path(QStringLiteral("db")), path(QStringLiteral("copy")), &reason));
    QCOMPARE(readFile(path(QStringLiteral("copy"))), whole);
}

void tst_KyDestinationFiles::copy_fails_data()
{
    QTest::addColumn<QString>("source");
    QTest::addColumn<QString>("target");
    QTest::newRow("no source") << QStringLiteral("missing") << QStringLiteral("copy");
    QTest::newRow("folder") << QStringLiteral("folder") << QStringLiteral("copy");
    QTest::newRow("target exists") << QStringLiteral("db") << QStringLiteral("other");
    QTest::newRow("no folder for the target") << QStringLiteral("db") << QStringLiteral("missing/copy");
}

void tst_KyDestinationFiles::copy_fails()
{
    QFETCH(QString, source);
    QFETCH(QString, target);
    makeDatabase(QStringLiteral("db"), QStringLiteral("a"));
    writeFile(path(QStringLiteral("other")), "kept");
    QVERIFY(QDir().mkdir(path(QStringLiteral("folder"))));
    const QStringList before = files();
    QString reason;
    QVERIFY(!DestinationFiles::copy(path(source), path(target), &reason));
    QFile file(path(source));
    QVERIFY(!file.copy(path(target)));
    QCOMPARE(reason, file.errorString());
    QVERIFY(!reason.isEmpty());
    QCOMPARE(files(), before);
    QCOMPARE(readFile(path(QStringLiteral("other"))), QByteArray("kept"));
}

void tst_KyDestinationFiles::replace_putsACopyInPlace_data()
{
    QTest::addColumn<bool>("isThere");
    QTest::newRow("old file") << true;
    QTest::newRow("no file") << false;
}

void tst_KyDestinationFiles::replace_putsACopyInPlace()
{
    QFETCH(bool, isThere);
    makeDatabase(QStringLiteral("new"), QStringLiteral("new"));
    if (isThere)
        makeDatabase(QStringLiteral("db"), QStringLiteral("old"));
    const QByteArray content = readFile(path(QStringLiteral("new")));
    QString reason;
    QVERIFY(DestinationFiles::replace(path(QStringLiteral("new")), path(QStringLiteral("db")), &reason)
            == DestinationFiles::ReplaceResult::Done);
    QCOMPARE(readFile(path(QStringLiteral("db"))), content);
    QCOMPARE(readFile(path(QStringLiteral("new"))), content);
    QCOMPARE(files(), QStringList({QStringLiteral("db"), QStringLiteral("new")}));
}

void tst_KyDestinationFiles::replace_takesTheJournalsOfTheTargetAlong()
{
    makeDatabase(QStringLiteral("new"), QStringLiteral("new"));
    makeDatabase(QStringLiteral("db"), QStringLiteral("old"));
    interruptTransaction(path(QStringLiteral("db")),
                         QStringLiteral("UPDATE t SET text=hex(randomblob(300))"));
    QString reason;
    QVERIFY(DestinationFiles::replace(path(QStringLiteral("new")), path(QStringLiteral("db")), &reason)
            == DestinationFiles::ReplaceResult::Done);
    QCOMPARE(files(), QStringList({QStringLiteral("db"), QStringLiteral("new")}));
    QCOMPARE(queryRows(path(QStringLiteral("db")), QStringLiteral("SELECT DISTINCT text FROM t")),
             QStringList({QStringLiteral("new")}));
}

void tst_KyDestinationFiles::replace_isRefusedByAFolder()
{
    makeDatabase(QStringLiteral("new"), QStringLiteral("new"));
    QVERIFY(QDir().mkdir(path(QStringLiteral("db"))));
    QString reason;
    QVERIFY(DestinationFiles::replace(path(QStringLiteral("new")), path(QStringLiteral("db")), &reason)
            == DestinationFiles::ReplaceResult::TargetIsProtected);
    QVERIFY(!reason.isEmpty());
    QCOMPARE(files(), QStringList({QStringLiteral("db"), QStringLiteral("new")}));
}

void tst_KyDestinationFiles::replace_ofNothing_fails()
{
    makeDatabase(QStringLiteral("db"), QStringLiteral("old"));
    const QByteArray content = readFile(path(QStringLiteral("db")));
    QString reason;
    QVERIFY(DestinationFiles::replace(path(QStringLiteral("new")), path(QStringLiteral("db")), &reason)
            == DestinationFiles::ReplaceResult::Failed);
    QVERIFY(!reason.isEmpty());
    QCOMPARE(readFile(path(QStringLiteral("db"))), content);
    QCOMPARE(files(), QStringList({QStringLiteral("db")}));
}

void tst_KyDestinationFiles::replace_copiesLargeFiles()
{
    QByteArray content;
    for (int i = 0; content.size() < 5 << 20; ++i)
        content += QByteArray::number(i);
    writeFile(path(QStringLiteral("new")), content); // of several blocks, the last not full
    QString reason;
    QVERIFY(DestinationFiles::replace(path(QStringLiteral("new")), path(QStringLiteral("db")), &reason)
            == DestinationFiles::ReplaceResult::Done);
    QVERIFY(readFile(path(QStringLiteral("db"))) == content);
}

void tst_KyDestinationFiles::deletability_isTold_data()
{
    QTest::addColumn<QString>("kind");
    for (const char *name : {"file", "folder", "missing", "link", "dangling link"})
        QTest::newRow(name) << QString::fromLatin1(name);
}

void tst_KyDestinationFiles::deletability_isTold()
{
    QFETCH(QString, kind);
    const QString target = path(QStringLiteral("target"));
    if (kind == QLatin1String("file"))
        writeFile(target, "x");
    else if (kind == QLatin1String("folder"))
        QVERIFY(QDir().mkdir(target));
    else if (kind == QLatin1String("link"))
        QVERIFY(QFile::link(m_folder->path(), target));
    else if (kind == QLatin1String("dangling link"))
        QVERIFY(QFile::link(path(QStringLiteral("nowhere")), target));
    const QStringList before = files();
    QString reason;
    const bool isDeletable = FileStore::canBeDeleted(target, &reason);
    QCOMPARE(files(), before);
    QFile file(target);
    QCOMPARE(isDeletable, file.remove()); // as the system has it
    QCOMPARE(reason, isDeletable ? QString() : file.errorString());
}

void tst_KyDestinationFiles::storeReplace_tellsWhatFailed()
{
    writeFile(path(QStringLiteral("new")), "new");
    writeFile(path(QStringLiteral("db")), "old");
    QVERIFY(QDir().mkdir(path(QStringLiteral("folder"))));
    QString reason;
    QVERIFY(FileStore::replace(path(QStringLiteral("missing")), path(QStringLiteral("db")), &reason)
            == FileStore::ReplaceResult::Failed);
    QVERIFY(!reason.isEmpty());
    QVERIFY(FileStore::replace(path(QStringLiteral("new")), path(QStringLiteral("missing/db")), &reason)
            == FileStore::ReplaceResult::Failed);
    QVERIFY(FileStore::replace(path(QStringLiteral("new")), path(QStringLiteral("folder")), &reason)
            == FileStore::ReplaceResult::TargetIsProtected);
    QCOMPARE(readFile(path(QStringLiteral("db"))), QByteArray("old"));
    QVERIFY(FileStore::replace(path(QStringLiteral("new")), path(QStringLiteral("db")), &reason)
            == FileStore::ReplaceResult::Done);
    QCOMPARE(readFile(path(QStringLiteral("db"))), QByteArray("new"));
    QVERIFY(!QFile::exists(path(QStringLiteral("new"))));
    FileStore::syncFolder(m_folder->path());
    FileStore::syncFolder(path(QStringLiteral("missing"))); // nothing to be done, and nothing to be said
}

#ifdef Q_OS_UNIX
void tst_KyDestinationFiles::fileInASealedFolder_cannotBeDeleted()
{
    const uid_t user = geteuid();
    const uid_t nobody = 65534;
    const QString folder = path(QStringLiteral("sealed"));
    QVERIFY(QDir().mkdir(folder));
    writeFile(folder + QStringLiteral("/file"), "x");
    QVERIFY(QFile::setPermissions(m_folder->path(), QFile::Permissions(0x7555)));
    QVERIFY(QFile::setPermissions(folder, QFile::Permissions(0x5555)));
    if (user == 0)
        QCOMPARE(::seteuid(nobody), 0); // the superuser may do anything
    QString reason;
    const bool isDeletable = FileStore::canBeDeleted(folder + QStringLiteral("/file"), &reason);
    QCOMPARE(::seteuid(user), 0);
    QVERIFY(QFile::setPermissions(folder, QFile::Permissions(0x7777)));
    QVERIFY(!isDeletable);
    QCOMPARE(reason, qt_error_string(EACCES));
}

void tst_KyDestinationFiles::fileOfAnotherInAStickyFolder_cannotBeDeleted()
{
    if (geteuid() != 0)
        QSKIP("Takes the rights to hand a file over to somebody else");
    const uid_t nobody = 65534;
    const QString folder = path(QStringLiteral("sticky"));
    QVERIFY(QDir().mkdir(folder));
    QCOMPARE(::chmod(QFile::encodeName(m_folder->path()).constData(), 0755), 0);
    QCOMPARE(::chmod(QFile::encodeName(folder).constData(), 01777), 0);
    writeFile(folder + QStringLiteral("/foreign"), "x");
    writeFile(folder + QStringLiteral("/own"), "x");
    QCOMPARE(::chown(QFile::encodeName(folder + QStringLiteral("/own")).constData(), nobody, nobody), 0);

    QCOMPARE(::seteuid(nobody), 0);
    QString reason;
    const bool isForeignDeletable = FileStore::canBeDeleted(folder + QStringLiteral("/foreign"), &reason);
    const QString foreignReason = reason;
    const bool isOwnDeletable = FileStore::canBeDeleted(folder + QStringLiteral("/own"), &reason);
    QCOMPARE(::seteuid(0), 0);
    QVERIFY(!isForeignDeletable);
    QCOMPARE(foreignReason, qt_error_string(EPERM));
    QVERIFY(isOwnDeletable);
}

void tst_KyDestinationFiles::fileThatIsReadOnly_canBeDeleted()
{
    writeFile(path(QStringLiteral("db")), "x");
    QVERIFY(QFile::setPermissions(path(QStringLiteral("db")), QFile::ReadOwner));
    QString reason;
    QVERIFY(FileStore::canBeDeleted(path(QStringLiteral("db")), &reason));
    QVERIFY(QFile::remove(path(QStringLiteral("db"))));
}

void tst_KyDestinationFiles::sync_tellsWhatFailed()
{
    QFile device(QStringLiteral("/dev/null"));
    QVERIFY(device.open(QIODevice::WriteOnly));
    QString reason;
    QVERIFY(!FileStore::sync(&device, &reason));
    QCOMPARE(reason, qt_error_string(EINVAL));
    QFile file(path(QStringLiteral("file")));
    QVERIFY(file.open(QIODevice::WriteOnly));
    QVERIFY(FileStore::sync(&file, &reason));
}
#endif

KYTE_TEST_MAIN(tst_KyDestinationFiles)
#include "tst_KyDestinationFiles.moc"
